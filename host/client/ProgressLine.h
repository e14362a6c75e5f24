// SPDX-License-Identifier: MIT
#pragma once

#include "host/client/Console.h"

#include <string>

namespace ravlo
{

// A progress line on standard error, rewritten at most ten times a second.
class ProgressLine
{
public:
    // Silent unless cError is a console window or bForced.
    ProgressLine(const Console& cError, bool bForced) noexcept
        : m_cError(cError), m_bOn(bForced || cError.IsWindow())
    {
    }
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;
    ~ProgressLine() { Clear(); }

    void Show(const std::wstring& sText);
    // Removes the line, so that other text can be written.
    void Clear();

private:
    const Console& m_cError;
    bool m_bOn;
    std::size_t m_shown = 0; // characters on the line
    ULONGLONG m_lastTick = 0;
};

} // namespace ravlo
