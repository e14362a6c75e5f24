// SPDX-License-Identifier: MIT
#include "host/client/ProgressLine.h"

namespace ravlo
{

namespace
{

constexpr ULONGLONG lLeastLineTicks = 100;

} // namespace

void ProgressLine::Show(const std::wstring& sText)
{
    const auto lTick = GetTickCount64();
    if (!m_bOn || (m_lShown > 0 && lTick - m_lLastTick < lLeastLineTicks))
        return;
    const std::wstring sRest(m_lShown > sText.size() ? m_lShown - sText.size() : 0, L' ');
    m_cError.Write(L"\r" + sText + sRest);
    m_lShown = sText.size();
    m_lLastTick = lTick;
}

void ProgressLine::Clear()
{
    if (m_lShown > 0)
    {
        m_cError.Write(L"\r" + std::wstring(m_lShown, L' ') + L"\r");
        m_lShown = 0;
    }
}

} // namespace ravlo
