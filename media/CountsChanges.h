// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace ravlo
{

// What a cut may be beside a Cut: one whose changes can be told from outside.
class CountsChanges
{
public:
    // A number above 0 that is another one after every change of a property. Calls nobody.
    virtual std::uint64_t Revision() const noexcept = 0;

protected:
    ~CountsChanges() = default;
};

} // namespace ravlo
