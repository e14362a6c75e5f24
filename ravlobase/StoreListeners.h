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

// The listeners to a database's changes. Not owned; they may be added and removed during an event. Exceptions
// of a listener are ignored: the change has happened, and the others need to know.
class StoreListeners
{
public:
    static constexpr std::size_t progressEvery = 500; // cuts or lines between two reports

    void Add(DataBaseEvents& cEvents); // adding one twice has no further effect
    void Remove(DataBaseEvents& cEvents) noexcept;

    // Announce changes, except of zero cuts.
    void Added(const Cuts& colCuts) const { Announce(colCuts, &DataBaseEvents::CutsAdded); }
    void Modified(const Cuts& colCuts) const { Announce(colCuts, &DataBaseEvents::CutsModified); }
    void Removed(const Cuts& colCuts) const { Announce(colCuts, &DataBaseEvents::CutsRemoved); }

    void Progress(const std::wstring& sText, std::size_t count, std::size_t max) const;
    // Announces the start, does the work and announces its end with the status that the work returns, or with
    // its failure, which is then rethrown.
    void WithProgress(const std::wstring& sReason, std::size_t max,
                      const std::function<std::wstring()>& work) const;

private:
    void Announce(const Cuts& colCuts, void (DataBaseEvents::*pEvent)(const Cuts&)) const;
    void Raise(const std::function<void(DataBaseEvents&)>& event) const;

    std::vector<DataBaseEvents*> m_colListeners;
};

} // namespace ravlo
