// SPDX-License-Identifier: MIT
#include "rotation/Spread.h"

#include "rotation/RandomOrder.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

namespace ravlo
{

namespace
{

using Positions = std::vector<std::size_t>;
using Counts = std::unordered_map<TextKey, std::size_t>;

// How many items have each name.
Counts CountNames(const std::vector<SpreadItem>& colItems)
{
    Counts colCounts;
    for (const SpreadItem& item : colItems)
        for (const TextKey& cName : item.colNames)
            ++colCounts[cName];
    return colCounts;
}

// The name that most items share, the first of several; empty when the item has none.
TextKey MostShared(const SpreadItem& item, const Counts& colCounts)
{
    TextKey cBest;
    std::size_t most = 0;
    for (const TextKey& cName : item.colNames)
    {
        const std::size_t count = cName.Empty() ? 0 : colCounts.at(cName);
        if (count <= most)
            continue;
        most = count;
        cBest = cName;
    }
    return cBest;
}

// The positions of each artist's items.
std::vector<Positions> ByArtist(const std::vector<SpreadItem>& colItems)
{
    const Counts colCounts = CountNames(colItems);
    std::vector<Positions> colArtists;
    std::unordered_map<TextKey, std::size_t> colIndex; // into colArtists
    for (std::size_t position = 0; position < colItems.size(); ++position)
    {
        const TextKey cName = MostShared(colItems[position], colCounts);
        const auto [found, bNew] = colIndex.try_emplace(cName, colArtists.size());
        if (bNew || cName.Empty())
            colArtists.push_back({position});
        else
            colArtists[found->second].push_back(position);
    }
    return colArtists;
}

// Puts one artist's items into the order in which they are dealt.
class ArtistOrder
{
public:
    ArtistOrder(const std::vector<SpreadItem>& colItems, Positions& colOwn)
        : m_colItems(colItems), m_colOwn(colOwn)
    {
    }
    void Arrange()
    {
        if (m_colOwn.size() < 2)
            return;
        std::stable_sort(m_colOwn.begin(), m_colOwn.end(), [&](std::size_t left, std::size_t right) {
            return m_colItems[left].dtLastPlayed < m_colItems[right].dtLastPlayed;
        });
        for (std::size_t next = 1; next < m_colOwn.size(); ++next)
            KeepApart(next, m_colItems[m_colOwn[next - 1]]);
    }

private:
    static bool Same(const TextKey& cLeft, const TextKey& cRight)
    {
        return !cLeft.Empty() && cLeft == cRight;
    }
    bool Alike(std::size_t position, const SpreadItem& before) const
    {
        const SpreadItem& item = m_colItems[position];
        return Same(item.cTitle, before.cTitle) || Same(item.cAlbum, before.cAlbum);
    }
    using Text = TextKey SpreadItem::*;
    // Returns the first place from next on whose item has another text than before; next for an empty text.
    // Remembers that place: an exchange leaves the items in front of it alike, so the next search starts
    // there.
    std::size_t EndOfAlike(Text pText, std::size_t next, const SpreadItem& before)
    {
        const TextKey& cText = before.*pText;
        if (cText.Empty())
            return next;
        std::size_t& end = (pText == &SpreadItem::cTitle ? m_colTitleEnds : m_colAlbumEnds)[cText];
        end = std::max(end, next);
        while (end < m_colOwn.size() && m_colItems[m_colOwn[end]].*pText == cText)
            ++end;
        return end;
    }
    // Exchanges the item at next with the first behind it that is unlike the one before it.
    void KeepApart(std::size_t next, const SpreadItem& before)
    {
        if (!Alike(m_colOwn[next], before))
            return;
        const std::size_t from = std::max(EndOfAlike(&SpreadItem::cTitle, next, before),
                                          EndOfAlike(&SpreadItem::cAlbum, next, before));
        const auto found = std::find_if(m_colOwn.begin() + static_cast<std::ptrdiff_t>(from), m_colOwn.end(),
                                        [&](std::size_t one) { return !Alike(one, before); });
        if (found != m_colOwn.end())
            std::swap(m_colOwn[next], *found);
    }

    const std::vector<SpreadItem>& m_colItems;
    Positions& m_colOwn;
    std::unordered_map<TextKey, std::size_t> m_colTitleEnds;
    std::unordered_map<TextKey, std::size_t> m_colAlbumEnds;
};

// The artists from the one with the most cuts on; equally many in random order.
std::vector<Positions> CommonestFirst(const std::vector<Positions>& colArtists, Random& cRandom)
{
    std::vector<Positions> colSorted;
    colSorted.reserve(colArtists.size());
    for (const std::size_t artist : RandomOrder(cRandom, colArtists.size()))
        colSorted.push_back(colArtists[artist]);
    std::stable_sort(colSorted.begin(), colSorted.end(), [](const Positions& left, const Positions& right) {
        return left.size() > right.size();
    });
    return colSorted;
}

// The places of a circle in the order in which they are dealt: it is cut into stretches of nearly equal
// length, the longer ones first; the first place of every stretch comes first, then the second of each.
Positions DealtPlaces(std::size_t places, std::size_t stretches)
{
    const std::size_t length = places / stretches;
    const std::size_t longer = places % stretches; // so many are one place longer
    Positions colPlaces;
    colPlaces.reserve(places);
    for (std::size_t place = 0; place <= length; ++place)
        for (std::size_t stretch = 0; stretch < (place < length ? stretches : longer); ++stretch)
            colPlaces.push_back(stretch * length + std::min(stretch, longer) + place);
    return colPlaces;
}

} // namespace

std::vector<std::size_t> SpreadOrder(const std::vector<SpreadItem>& colItems, Random& cRandom)
{
    if (colItems.empty())
        return {};
    std::vector<Positions> colArtists = CommonestFirst(ByArtist(colItems), cRandom);
    const Positions colPlaces = DealtPlaces(colItems.size(), colArtists.front().size());
    Positions colOrder(colItems.size());
    std::size_t dealt = 0;
    for (Positions& colOwn : colArtists)
    {
        ArtistOrder(colItems, colOwn).Arrange();
        for (const std::size_t position : colOwn)
            colOrder[colPlaces[dealt++]] = position;
    }
    return colOrder;
}

} // namespace ravlo
