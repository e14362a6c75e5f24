// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ravlo
{

// Which artists the texts of a cut name. A feature word is "feat.", "feat", "ft.", "ft" or "featuring" in any
// case, with neither a letter nor a digit next to it. Brackets are (), [] and {}. White space of any kind
// separates words, and is trimmed around names.

// An artist text, divided at its feature words. Empty when it has none that counts: one counts with a name on
// both sides, so "Little Feat" is one artist.
struct ArtistParts
{
    std::wstring sMain;                  // the name before the first feature word, trimmed
    std::vector<std::wstring> colGuests; // the guest parts, trimmed; none is empty
};
ArtistParts SplitArtist(std::wstring_view sArtist);

// Returns the guest parts of a title. A feature word counts with a name after it.
std::vector<std::wstring> GuestsInTitle(std::wstring_view sTitle);

// Divides a guest part at ",", " & ", " and " and " x " in any case. The names are trimmed; none is empty.
std::vector<std::wstring> SplitGuests(std::wstring_view sGuests);

} // namespace ravlo
