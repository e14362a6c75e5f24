// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Random.h"

#include <random>

namespace ravlo
{

// Random numbers for a station on air: seeded from the timer, at first and on each Randomize.
class MersenneRandom final : public Random
{
public:
    MersenneRandom() { Randomize(); }
    void Randomize() override;
    double Next() override { return static_cast<double>(m_engine() >> 11) * 0x1p-53; }

private:
    std::mt19937_64 m_engine;
};

} // namespace ravlo
