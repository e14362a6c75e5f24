// SPDX-License-Identifier: MIT
#include "rotation/RandomOrder.h"

#include "platform/memory/MemoryPorts.h"

#include <gtest/gtest.h>

#include <map>
#include <numeric>
#include <utility>
#include <vector>

namespace ravlo::test
{
namespace
{

// Returns the given fractions, then 0.
class FixedRandom final : public Random
{
public:
    explicit FixedRandom(std::vector<double> dFractions) : m_dFractions(std::move(dFractions)) {}
    void Randomize() override {}
    double Next() override { return m_next < m_dFractions.size() ? m_dFractions[m_next++] : 0; }

private:
    std::vector<double> m_dFractions;
    std::size_t m_next = 0;
};

using Positions = std::vector<std::size_t>;

TEST(RandomOrder, NothingInNothingOut)
{
    SeededRandom cRandom;
    EXPECT_EQ(RandomOrder(cRandom, 0), Positions());
    EXPECT_EQ(RandomOrder(cRandom, 1), (Positions{0}));
}

TEST(RandomOrder, EachDrawTakesOneOfThoseLeftByItsPositionAmongThem)
{
    FixedRandom cFirst({0, 0, 0, 0});
    EXPECT_EQ(RandomOrder(cFirst, 4), (Positions{0, 1, 2, 3}));
    for (const double dLast : {0.999, 1.0})
    {
        FixedRandom cLast(std::vector<double>(4, dLast));
        EXPECT_EQ(RandomOrder(cLast, 4), (Positions{3, 2, 1, 0}));
    }
    FixedRandom cMixed({0.5, 0.34, 0.5, 0.9}); // 2 of 0123, 1 of 013, 1 of 03, 0
    EXPECT_EQ(RandomOrder(cMixed, 4), (Positions{2, 1, 3, 0}));
}

TEST(RandomOrder, IsWhatTakingOutOfAListOneByOneGives)
{
    for (std::size_t count = 0; count <= 70; ++count)
    {
        SeededRandom cRandom(count + 1);
        SeededRandom cSame(count + 1);
        Positions colLeft(count);
        std::iota(colLeft.begin(), colLeft.end(), std::size_t{0});
        Positions colExpected;
        while (!colLeft.empty())
        {
            const auto lDrawn =
                static_cast<std::ptrdiff_t>(cSame.Next() * static_cast<double>(colLeft.size()));
            colExpected.push_back(colLeft[static_cast<std::size_t>(lDrawn)]);
            colLeft.erase(colLeft.begin() + lDrawn);
        }
        EXPECT_EQ(RandomOrder(cRandom, count), colExpected) << count << " items";
    }
}

TEST(RandomOrder, EveryOrderOfFourIsEquallyLikely)
{
    SeededRandom cRandom(7);
    std::map<Positions, int> colSeen;
    for (int lTime = 0; lTime < 24'000; ++lTime)
        ++colSeen[RandomOrder(cRandom, 4)];
    EXPECT_EQ(colSeen.size(), 24u);
    for (const auto& [colOrder, lTimes] : colSeen)
        EXPECT_NEAR(lTimes, 1000, 170) << testing::PrintToString(colOrder); // over five standard deviations
}

} // namespace
} // namespace ravlo::test
