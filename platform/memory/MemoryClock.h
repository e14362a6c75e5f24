// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Clock.h"

namespace ravlo
{

// A clock that stands still until it is told otherwise. It starts at noon of 1 March 2024.
class MemoryClock final : public Clock
{
public:
    DateTime Now() const override;
    std::uint32_t TickCount() const override { return m_lTickCount; }

    void SetNow(DateTime dtNow);
    void SetTickCount(std::uint32_t lTickCount) { m_lTickCount = lTickCount; }
    // Lets time pass: the date and the tick count go on together.
    void Advance(std::uint32_t lMilliseconds);

private:
    DateTime m_dtStart = 45352.5;
    std::uint64_t m_passed = 0; // milliseconds since then; summed as whole numbers, so that nothing drifts
    std::uint32_t m_lTickCount = 0;
};

} // namespace ravlo
