// SPDX-License-Identifier: MIT
#include "platform/posix/PosixHostLoop.h"

#include <chrono>
#include <thread>

namespace ravlo
{

void PosixHostLoop::Sleep(std::uint32_t lMilliseconds)
{
    std::this_thread::sleep_for(std::chrono::milliseconds(lMilliseconds));
}

} // namespace ravlo
