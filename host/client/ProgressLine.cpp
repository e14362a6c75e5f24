// SPDX-License-Identifier: MIT
#include "host/client/ProgressLine.h"

namespace ravlo
{

namespace
{

constexpr ULONGLONG leastLineTicks = 100;

} // namespace

void ProgressLine::Show(const std::wstring& sText)
{
    const ULONGLONG tick = GetTickCount64();
    if (!m_bOn || (m_shown > 0 && tick - m_lastTick < leastLineTicks))
        return;
    const std::wstring sRest(m_shown > sText.size() ? m_shown - sText.size() : 0, L' ');
    m_cError.Write(L"\r" + sText + sRest);
    m_shown = sText.size();
    m_lastTick = tick;
}

void ProgressLine::Clear()
{
    if (m_shown > 0)
    {
        m_cError.Write(L"\r" + std::wstring(m_shown, L' ') + L"\r");
        m_shown = 0;
    }
}

} // namespace ravlo
