// SPDX-License-Identifier: MIT
#pragma once

#include "base/TextKey.h"

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace ravlo
{

// What a station says about credits in Scheduler\Artists.csv: aliases, members of groups, and credits that
// are one artist. File format: docs/formats/artists.md.
class ArtistsTable
{
public:
    // Receives each row that is skipped, as "line N: <reason>".
    using Problems = std::vector<std::wstring>;

    ArtistsTable() = default;
    // Reads the bytes of the file. Without its heading nothing of it counts.
    static ArtistsTable Parse(std::string_view bytes, Problems& problems);

    bool Empty() const noexcept { return m_colRows.empty(); }
    // The names a credit's rows give it, in their order; null when it has no rows.
    const std::vector<TextKey>* Find(const TextKey& cCredit) const;

private:
    class Reader;
    std::unordered_map<TextKey, std::vector<TextKey>> m_colRows; // by credit
};

} // namespace ravlo
