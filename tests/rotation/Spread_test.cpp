// SPDX-License-Identifier: MIT
#include "rotation/Spread.h"

#include "platform/memory/MemoryPorts.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <map>
#include <numeric>
#include <random>
#include <set>
#include <string>
#include <unordered_map>

namespace ravlo::test
{
namespace
{

using Items = std::vector<SpreadItem>;

SpreadItem By(const std::wstring& sArtist, DateTime dtLastPlayed = 0, const std::wstring& sTitle = {},
              const std::wstring& sAlbum = {})
{
    return {{TextKey(sArtist)}, TextKey(sTitle), TextKey(sAlbum), dtLastPlayed};
}

// One item of artist 0 for each of counts[0], and so on.
Items ByCounts(const std::vector<int>& colCounts)
{
    Items colItems;
    for (std::size_t artist = 0; artist < colCounts.size(); ++artist)
        colItems.insert(colItems.end(), static_cast<std::size_t>(colCounts[artist]),
                        By(std::to_wstring(artist)));
    return colItems;
}

// The smallest number of places between two plays of one artist when the order is repeated forever. Checks
// that it is an order of all items.
std::size_t DistanceOf(const Items& colItems, const std::vector<std::size_t>& colOrder)
{
    EXPECT_EQ(std::set(colOrder.begin(), colOrder.end()).size(), colItems.size());
    std::unordered_map<TextKey, std::size_t> colLast;
    std::size_t smallest = colItems.size();
    for (std::size_t place = 0; place < 2 * colOrder.size(); ++place) // twice: from the end to the beginning
    {
        const TextKey& cArtist = colItems[colOrder[place % colOrder.size()]].colNames[0];
        const auto [last, bNew] = colLast.try_emplace(cArtist, place);
        if (!bNew)
            smallest = std::min(smallest, place - std::exchange(last->second, place));
    }
    return smallest;
}

// Whether the counts can be laid out in a circle with every two of one artist at least distance apart: tries
// everything.
class Search
{
public:
    Search(const std::vector<int>& colCounts, std::size_t distance, std::size_t places)
        : m_colCounts(colCounts), m_colLeft(colCounts), m_distance(distance), m_colCircle(places, -1)
    {
    }
    bool Fits(std::size_t place = 0)
    {
        if (place == m_colCircle.size())
            return true;
        for (std::size_t artist = 0; artist < m_colLeft.size(); ++artist)
        {
            m_colCircle[place] = static_cast<int>(artist);
            if (m_colLeft[artist] == 0 || IsLikeTheOneBefore(artist) || TooNear(place))
                continue;
            --m_colLeft[artist];
            if (Fits(place + 1))
                return true;
            ++m_colLeft[artist];
        }
        m_colCircle[place] = -1;
        return false;
    }

private:
    // Of artists with equally many items that are not in the circle yet, one is as good as another.
    bool IsLikeTheOneBefore(std::size_t artist) const
    {
        const auto unused = [&](std::size_t one) { return m_colLeft[one] == m_colCounts[one]; };
        return artist > 0 && m_colCounts[artist - 1] == m_colCounts[artist] && unused(artist) &&
               unused(artist - 1);
    }
    bool TooNear(std::size_t place) const
    {
        const std::size_t places = m_colCircle.size();
        for (std::size_t apart = 1; apart < std::min(m_distance, places); ++apart)
        {
            if (place >= apart && m_colCircle[place - apart] == m_colCircle[place])
                return true;
            if (place + apart >= places && m_colCircle[place + apart - places] == m_colCircle[place])
                return true;
        }
        return false;
    }

    const std::vector<int>& m_colCounts;
    std::vector<int> m_colLeft;
    std::size_t m_distance;
    std::vector<int> m_colCircle;
};

// Every way to divide so many items among artists, largest first.
template <class Body> void ForEachDivision(std::vector<int>& colCounts, int left, int most, Body&& body)
{
    if (left == 0)
        body();
    for (int count = std::min(left, most); count >= 1; --count)
    {
        colCounts.push_back(count);
        ForEachDivision(colCounts, left - count, count, body);
        colCounts.pop_back();
    }
}

TEST(Spread, NoOtherOrderKeepsArtistsFurtherApart)
{
    for (int n = 1; n <= 12; ++n)
    {
        std::vector<int> colCounts;
        ForEachDivision(colCounts, n, n, [&] {
            SCOPED_TRACE(testing::PrintToString(colCounts));
            SeededRandom cRandom;
            const Items colItems = ByCounts(colCounts);
            const std::size_t distance = DistanceOf(colItems, SpreadOrder(colItems, cRandom));
            EXPECT_EQ(distance, static_cast<std::size_t>(n / colCounts.front()));
            const bool bOnce = colCounts.front() == 1; // nothing is repeated within the order
            EXPECT_TRUE(Search(colCounts, distance, static_cast<std::size_t>(n)).Fits());
            EXPECT_TRUE(bOnce || !Search(colCounts, distance + 1, static_cast<std::size_t>(n)).Fits());
        });
    }
}

TEST(Spread, RandomLevelsReachTheGreatestDistance)
{
    const int levels = std::getenv("RAVLO_LONG") ? 20'000 : 2'000;
    std::vector<SpreadItem> colArtists;
    for (int artist = 0; artist < 60; ++artist)
        colArtists.push_back(By(std::to_wstring(artist)));
    std::mt19937 cEngine(20261122);
    SeededRandom cRandom;
    for (int level = 0; level < levels; ++level)
    {
        const std::size_t cuts = std::min<std::size_t>(1 + cEngine() % 500, 1 + cEngine() % 500);
        const std::size_t artists = 1 + cEngine() % colArtists.size();
        Items colItems;
        std::map<std::size_t, std::size_t> colCounts;
        for (std::size_t cut = 0; cut < cuts; ++cut)
        {
            const std::size_t artist = std::min(cEngine() % artists, cEngine() % artists);
            colItems.push_back(colArtists[artist]);
            colItems.back().dtLastPlayed = static_cast<double>(cEngine() % 5);
            ++colCounts[artist];
        }
        const std::size_t most =
            std::max_element(colCounts.begin(), colCounts.end(), [](const auto& left, const auto& right) {
                return left.second < right.second;
            })->second;
        ASSERT_EQ(DistanceOf(colItems, SpreadOrder(colItems, cRandom)), cuts / most) << "level " << level;
    }
}

class SpreadTest : public testing::Test
{
protected:
    std::vector<std::size_t> Spread(const Items& colItems) { return SpreadOrder(colItems, m_cRandom); }

    SeededRandom m_cRandom;
};

using Order = std::vector<std::size_t>;

TEST_F(SpreadTest, DealsIntoLongStretchesFirst)
{
    EXPECT_EQ(Spread({}), Order());
    // Eight places in three stretches: 0 1 2, 3 4 5, 6 7.
    const Order colOrder = Spread(ByCounts({3, 2, 1, 1, 1}));
    EXPECT_EQ((Order{colOrder[0], colOrder[3], colOrder[6]}), (Order{0, 1, 2}));
    EXPECT_EQ((Order{colOrder[1], colOrder[4]}), (Order{3, 4}));
}

TEST_F(SpreadTest, LongestRestedFirstAndNeverPlayedBeforeAll)
{
    EXPECT_EQ(Spread({By(L"A", 3), By(L"A", 0), By(L"a", 2), By(L"A", 0)}), (Order{1, 3, 2, 0}));
}

TEST_F(SpreadTest, ExchangesACutLikeTheOneBeforeIt)
{
    const struct
    {
        const wchar_t* sWhat;
        Items colItems;
        Order colExpected;
    } colCases[] = {
        {L"equal titles",
         {By(L"A", 1, L"x"), By(L"A", 2, L"X"), By(L"A", 3, L"x"), By(L"A", 4, L"y")},
         {0, 3, 2, 1}},
        {L"equal albums",
         {By(L"A", 1, L"x", L"p"), By(L"A", 2, L"y", L"P"), By(L"A", 3, L"z", L"q")},
         {0, 2, 1}},
        {L"no titles or albums", {By(L"A", 1), By(L"A", 2), By(L"A", 3)}, {0, 1, 2}},
        {L"all of one album",
         {By(L"A", 1, L"x", L"p"), By(L"A", 2, L"x", L"p"), By(L"A", 3, L"y", L"p")},
         {0, 1, 2}},
        {L"none left that differs", {By(L"A", 1, L"y"), By(L"A", 2, L"x"), By(L"A", 3, L"x")}, {0, 1, 2}},
    };
    for (const auto& one : colCases)
        EXPECT_EQ(Spread(one.colItems), one.colExpected) << testing::PrintToString(one.sWhat);
}

// What the exchange does, said in the plainest way.
Order ExchangedOneByOne(const Items& colItems)
{
    Order colOrder(colItems.size());
    std::iota(colOrder.begin(), colOrder.end(), std::size_t{0});
    const auto alike = [&](std::size_t left, std::size_t right) {
        return colItems[left].cTitle == colItems[right].cTitle ||
               colItems[left].cAlbum == colItems[right].cAlbum;
    };
    for (std::size_t next = 1; next < colOrder.size(); ++next)
        for (std::size_t other = next; other < colOrder.size(); ++other)
            if (!alike(colOrder[other], colOrder[next - 1]))
            {
                std::swap(colOrder[next], colOrder[other]);
                break;
            }
    return colOrder;
}

TEST_F(SpreadTest, RememberedSearchesFindWhatASearchFromTheStartFinds)
{
    std::mt19937 cEngine(7);
    for (int artist = 0; artist < 3'000; ++artist)
    {
        const std::size_t cuts = 1 + cEngine() % 30;
        const unsigned long texts = 1 + cEngine() % 5;
        Items colItems;
        for (std::size_t cut = 0; cut < cuts; ++cut)
            colItems.push_back(By(L"A", static_cast<double>(cut), L"t" + std::to_wstring(cEngine() % texts),
                                  L"a" + std::to_wstring(cEngine() % texts)));
        ASSERT_EQ(Spread(colItems), ExchangedOneByOne(colItems)) << "artist " << artist;
    }
}

TEST_F(SpreadTest, ACutWithoutAnArtistIsAnArtistOfItsOwn)
{
    Items colItems(4, By(L""));
    colItems[1].colNames.clear();
    colItems.push_back(By(L"A"));
    colItems.push_back(By(L"A"));
    const Order colOrder = Spread(colItems); // the two of A begin the two stretches of three
    EXPECT_EQ((Order{colOrder[0], colOrder[3]}), (Order{4, 5}));
}

TEST_F(SpreadTest, ACutOfSeveralNamesIsPlacedUnderTheMostShared)
{
    const auto names = [](std::initializer_list<const wchar_t*> colNames) {
        SpreadItem item;
        for (const wchar_t* sName : colNames)
            item.colNames.emplace_back(sName);
        return item;
    };
    // B is shared by three; the tie of C and D goes to the first named.
    const Items colItems{names({L"A", L"b"}), names({L"B"}), names({L"B", L"C"}),
                         names({L"D", L"C"}), names({L"D"}), names({L"E"})};
    const Order colOrder = Spread(colItems);
    EXPECT_EQ((Order{colOrder[0], colOrder[2], colOrder[4]}), (Order{0, 1, 2}));
    EXPECT_EQ((Order{colOrder[1], colOrder[3]}), (Order{3, 4}));
}

TEST_F(SpreadTest, ArtistsWithEquallyManyCutsComeInRandomOrder)
{
    const Items colItems = ByCounts({1, 1, 1});
    std::map<Order, int> colSeen;
    for (int time = 0; time < 600; ++time)
        ++colSeen[Spread(colItems)];
    EXPECT_EQ(colSeen.size(), 6u);
}

} // namespace
} // namespace ravlo::test
