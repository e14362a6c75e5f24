// SPDX-License-Identifier: MIT
#pragma once

#include <utility>

namespace ravlo
{

// Sets a flag for the length of a scope, then restores it.
class ScopedFlag
{
public:
    explicit ScopedFlag(bool& bFlag) : m_bFlag(bFlag), m_bBefore(std::exchange(bFlag, true)) {}
    ~ScopedFlag() { m_bFlag = m_bBefore; }
    ScopedFlag(const ScopedFlag&) = delete;
    ScopedFlag& operator=(const ScopedFlag&) = delete;

private:
    bool& m_bFlag;
    bool m_bBefore;
};

} // namespace ravlo
