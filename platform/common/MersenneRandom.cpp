// SPDX-License-Identifier: MIT
#include "platform/common/MersenneRandom.h"

#include <chrono>
#include <cstdint>

namespace ravlo
{

void MersenneRandom::Randomize()
{
    // Includes the generator's next number, so that two calls within one tick of the timer differ.
    const auto timer =
        static_cast<std::uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count());
    const auto date = static_cast<std::uint64_t>(std::chrono::system_clock::now().time_since_epoch().count());
    m_engine.seed(timer ^ (date << 20) ^ m_engine());
}

} // namespace ravlo
