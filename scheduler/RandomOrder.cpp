// SPDX-License-Identifier: MIT
#include "scheduler/RandomOrder.h"

#include <algorithm>
#include <bit>

namespace ravlo
{

namespace
{

// The items that are left, as a tree of partial counts: finding and taking out the k-th of them is O(log n),
// where a list would move its tail for every draw.
class Left
{
public:
    explicit Left(std::size_t lCount) : m_colCounts(lCount + 1)
    {
        for (std::size_t lNode = 1; lNode <= lCount; ++lNode)
            m_colCounts[lNode] =
                lNode & (~lNode + 1); // each node counts the items of as many positions as its lowest bit
    }

    // Takes out the item that stands at lPlace, from 0, among those left, and returns its original position.
    std::size_t TakeOut(std::size_t lPlace)
    {
        std::size_t lNode = 0;
        for (std::size_t lStep = std::bit_floor(m_colCounts.size() - 1); lStep > 0; lStep /= 2)
        {
            if (lNode + lStep >= m_colCounts.size() || m_colCounts[lNode + lStep] > lPlace)
                continue;
            lNode += lStep;
            lPlace -= m_colCounts[lNode];
        }
        for (std::size_t lUp = lNode + 1; lUp < m_colCounts.size(); lUp += lUp & (~lUp + 1))
            --m_colCounts[lUp];
        return lNode;
    }

private:
    std::vector<std::size_t> m_colCounts; // from 1
};

} // namespace

std::vector<std::size_t> RandomOrder(Random& cRandom, std::size_t lCount)
{
    std::vector<std::size_t> colOrder;
    colOrder.reserve(lCount);
    Left cLeft(lCount);
    for (std::size_t lLeft = lCount; lLeft > 0; --lLeft)
    {
        const auto lDrawn = static_cast<std::size_t>(cRandom.Next() * static_cast<double>(lLeft));
        colOrder.push_back(cLeft.TakeOut(std::min(lDrawn, lLeft - 1)));
    }
    return colOrder;
}

} // namespace ravlo
