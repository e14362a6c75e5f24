// SPDX-License-Identifier: MIT
#pragma once

#include "media/DataBase.h"

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace ravlo
{

// Returns the count as hosts see it.
std::int32_t LongCount(std::size_t count) noexcept;

// Whom a database tells of its changes. Listeners are not owned and may come and go while they are told. What
// one throws is ignored: the change has happened, and the others want to know.
class StoreListeners
{
public:
    static constexpr std::size_t progressEvery = 500; // cuts or lines between two reports

    void Add(DataBaseEvents& cEvents); // once, however often it is added
    void Remove(DataBaseEvents& cEvents) noexcept;

    // Nothing is announced of no cuts.
    void Added(const Cuts& colCuts) const { Announce(colCuts, &DataBaseEvents::CutsAdded); }
    void Modified(const Cuts& colCuts) const { Announce(colCuts, &DataBaseEvents::CutsModified); }
    void Removed(const Cuts& colCuts) const { Announce(colCuts, &DataBaseEvents::CutsRemoved); }

    void Progress(const std::wstring& sText, std::size_t count, std::size_t max) const;
    // Announces the start, does the work and announces its end: the status that the work returns, or its
    // failure, which is thrown on.
    void WithProgress(const std::wstring& sReason, std::size_t max,
                      const std::function<std::wstring()>& work) const;

private:
    void Announce(const Cuts& colCuts, void (DataBaseEvents::*pEvent)(const Cuts&)) const;
    void Raise(const std::function<void(DataBaseEvents&)>& event) const;

    std::vector<DataBaseEvents*> m_colListeners;
};

} // namespace ravlo
