// SPDX-License-Identifier: MIT
#pragma once

#include "base/RuntimeError.h"
#include "scheduler/ChangeRecord.h"

#include <cstddef>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace ravlo
{

struct SchedulerState;
class Synchronisation;

// What a reversal left as it is, because others have changed it since.
struct PassedOver
{
    std::size_t goneCuts = 0;              // the database or the level has them no more
    std::size_t changedCuts = 0;           // have another level or other categories by now
    std::size_t failedCuts = 0;            // cannot be read or changed
    std::size_t newCuts = 0;               // joined since; they stay, behind the others
    std::vector<std::wstring> colGoneCats; // levels whose order is to be put back
    std::vector<std::wstring> colKeptCats; // levels that were new and contain cuts now
    std::vector<std::wstring> colSettings; // that have another value by now, such as "the artist separation"
    bool bFailed = false;                  // it could not be done at all
    bool bIncomplete = false;              // an error, which is logged, after the cuts were changed

    // Such as " (2 cuts are gone, 1 new cut stays)"; empty when nothing was passed over.
    std::wstring Text() const;
};

// What fails, such as a cut: it prevents a reversal, unless the reversal leaves it out.
class ReversalFailure : public RuntimeError
{
public:
    ReversalFailure(const RuntimeError& cError, std::wstring sNext)
        : RuntimeError(cError), m_sNext(std::move(sNext))
    {
    }
    // What the next attempt does, such as "leaves out the cuts that fail".
    const std::wstring& Next() const noexcept { return m_sNext; }

private:
    std::wstring m_sNext;
};

enum class Failing
{
    Prevents, // the reversal throws ReversalFailure
    IsLeftOut,
};

// Puts back what a record says, as one unit of work (see CutChanges): all of it, or nothing; then throws.
// What others have changed since is left as it is:
// - A cut that is gone, or has another level or other categories than the recorded change gave it.
// - A cut that joined a level since stays, behind the cuts of the recorded order.
// - Picks since do not count: the recorded order returns.
// - A deleted category or level is made again, at its former position, and so is one that others have deleted
//   since when a cut returns to it.
// - A level that the change has made is deleted only when it is empty, a main category when no level is left.
// Calls reversed with the record that reverses the reversal, once, when everything has changed and before
// anything else runs; it is empty when nothing has changed. Errors after that, as of files, are shown under
// sTitle.
PassedOver ReverseChange(SchedulerState& cState, Synchronisation& cSync, const ChangeRecord& record,
                         Failing eFailing, const wchar_t* sTitle,
                         const std::function<void(const ChangeRecord&)>& reversed);

} // namespace ravlo
