// SPDX-License-Identifier: MIT
#include "rotation/RandomOrder.h"

#include <algorithm>
#include <bit>

namespace ravlo
{

namespace
{

// The items not drawn yet, as a tree of partial counts: finding and removing the k-th is O(log n), where a
// list would move its tail for every draw.
class Remaining
{
public:
    explicit Remaining(std::size_t count) : m_colCounts(count + 1)
    {
        for (std::size_t node = 1; node <= count; ++node)
            m_colCounts[node] = node & (~node + 1); // each node counts as many positions as its lowest bit
    }

    // Removes the item at this position, from 0, among those left, and returns its original position.
    std::size_t TakeOut(std::size_t place)
    {
        std::size_t node = 0;
        for (std::size_t step = std::bit_floor(m_colCounts.size() - 1); step > 0; step /= 2)
        {
            if (node + step >= m_colCounts.size() || m_colCounts[node + step] > place)
                continue;
            node += step;
            place -= m_colCounts[node];
        }
        for (std::size_t up = node + 1; up < m_colCounts.size(); up += up & (~up + 1))
            --m_colCounts[up];
        return node;
    }

private:
    std::vector<std::size_t> m_colCounts; // from 1
};

} // namespace

std::vector<std::size_t> RandomOrder(Random& cRandom, std::size_t count)
{
    std::vector<std::size_t> colOrder;
    colOrder.reserve(count);
    Remaining cLeft(count);
    for (std::size_t left = count; left > 0; --left)
    {
        const auto lDrawn = static_cast<std::size_t>(cRandom.Next() * static_cast<double>(left));
        colOrder.push_back(cLeft.TakeOut(std::min(lDrawn, left - 1)));
    }
    return colOrder;
}

} // namespace ravlo
