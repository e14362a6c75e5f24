// SPDX-License-Identifier: MIT
#pragma once

#include <utility>

namespace ravlo
{

// Raises a flag for the length of a scope.
class Raised
{
public:
    explicit Raised(bool& bFlag) : m_bFlag(bFlag), m_bBefore(std::exchange(bFlag, true)) {}
    ~Raised() { m_bFlag = m_bBefore; }
    Raised(const Raised&) = delete;
    Raised& operator=(const Raised&) = delete;

private:
    bool& m_bFlag;
    bool m_bBefore;
};

} // namespace ravlo
