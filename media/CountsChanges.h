// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace ravlo
{

// Implemented by cuts that count their changes, next to Cut.
class CountsChanges
{
public:
    // A number above 0 that differs after every change of a property. Calls no other code.
    virtual std::uint64_t Revision() const noexcept = 0;

protected:
    ~CountsChanges() = default;
};

} // namespace ravlo
