// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Random.h"

#include <cstdint>
#include <random>

namespace ravlo
{

// Chance that comes out the same for the same seed, on every platform. Randomize is counted and otherwise
// ignored.
class SeededRandom final : public Random
{
public:
    explicit SeededRandom(std::uint64_t seed = 1) : m_engine(seed) {}

    void Randomize() override { ++lRandomized; }
    double Next() override { return static_cast<double>(m_engine() >> 11) * 0x1p-53; }

    int lRandomized = 0;

private:
    std::mt19937_64 m_engine;
};

} // namespace ravlo
