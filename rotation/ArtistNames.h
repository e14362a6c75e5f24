// SPDX-License-Identifier: MIT
#pragma once

#include "rotation/ArtistsTable.h"

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace ravlo
{

// The artist and title texts of a cut.
struct Credit
{
    TextKey cArtist;
    TextKey cTitle;

    friend bool operator==(const Credit&, const Credit&) = default;
};
struct CreditHash
{
    std::size_t operator()(const Credit& credit) const noexcept
    {
        return credit.cArtist.Hash() * 31 + credit.cTitle.Hash();
    }
};

// Which names a credit counts for in artist separation: itself; with featured artists every artist that its
// artist and title texts name; and what the station's table says of each. A value: copies share their content
// and what they remember.
class ArtistNames
{
public:
    // A credit counts for itself only.
    ArtistNames() = default;
    // cTable: null for none.
    ArtistNames(bool bFeaturedArtists, std::shared_ptr<const ArtistsTable> cTable);

    // Whether every credit counts for itself only. Check it first: no names need to be computed then.
    bool CreditsOnly() const noexcept { return !m_cShared; }
    // Whether both are copies of one object. Objects made apart differ, unless both are CreditsOnly().
    friend bool operator==(const ArtistNames&, const ArtistNames&) = default;

    // The same table with featured artists on or off; a copy of this object when that does not differ.
    ArtistNames With(bool bFeaturedArtists) const;

    // The credit first, then the other names in the order found, each once without regard to case. Empty for
    // an empty credit.
    std::vector<std::wstring> Of(const std::wstring& sArtist, const std::wstring& sTitle = {}) const;
    // The same as keys, which are remembered in the spelling that was asked for first. Valid until this
    // object and its copies have ended. Precondition: not CreditsOnly().
    const std::vector<TextKey>& KeysOf(const TextKey& cArtist, const TextKey& cTitle) const;
    // The same for a caller that need not ask for CreditsOnly(): the credit as it is spelled here, then the
    // other names.
    std::vector<TextKey> NamesOf(const TextKey& cArtist, const TextKey& cTitle) const;
    // Calls take with each of them.
    template <class Take>
    void ForEachName(const TextKey& cArtist, const TextKey& cTitle, const Take& take) const
    {
        if (cArtist.Empty())
            return;
        take(cArtist);
        if (CreditsOnly())
            return;
        const std::vector<TextKey>& colNames = KeysOf(cArtist, cTitle);
        for (std::size_t other = 1; other < colNames.size(); ++other)
            take(colNames[other]);
    }

private:
    class Shared;
    std::shared_ptr<Shared> m_cShared; // null: credits only
};

} // namespace ravlo
