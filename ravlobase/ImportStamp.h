// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace ravlo
{

// When a file was last modified and how long it was: what an import remembers of it.
struct ImportStamp
{
    std::int64_t modified; // milliseconds since 1970, UTC
    std::int64_t size;
    bool operator==(const ImportStamp&) const = default;
};

} // namespace ravlo
