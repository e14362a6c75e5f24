// SPDX-License-Identifier: MIT
#include "platform/memory/MemoryPorts.h"

#include "base/CaseFolding.h"

namespace ravlo
{

namespace
{

std::wstring PathOf(const std::wstring& sApplication, const std::wstring& sSection, const std::wstring& sKey)
{
    return FoldCase(sApplication + L'\n' + sSection + L'\n' + sKey);
}

} // namespace

DateTime MemoryClock::Now() const { return m_dtStart + static_cast<double>(m_passed) / 86'400'000.0; }

void MemoryClock::SetNow(DateTime dtNow)
{
    m_dtStart = dtNow;
    m_passed = 0;
}

void MemoryClock::Advance(std::uint32_t lMilliseconds)
{
    m_passed += lMilliseconds;
    m_lTickCount += lMilliseconds;
}

void MemoryHostLoop::PumpMessages()
{
    ++lPumps;
    if (const std::function<void()> hook = OnPump)
        hook();
}

void MemoryHostLoop::Sleep(std::uint32_t lMilliseconds)
{
    ++lSleeps;
    sleptmS += lMilliseconds;
    if (m_cClock)
        m_cClock->Advance(lMilliseconds);
    if (const std::function<void(std::uint32_t)> hook = OnSleep)
        hook(lMilliseconds);
}

std::wstring MemoryUserSettings::Get(const std::wstring& sApplication, const std::wstring& sSection,
                                     const std::wstring& sKey, const std::wstring& sDefault) const
{
    const auto it = m_values.find(PathOf(sApplication, sSection, sKey));
    return bBroken || it == m_values.end() ? sDefault : it->second;
}

bool MemoryUserSettings::Set(const std::wstring& sApplication, const std::wstring& sSection,
                             const std::wstring& sKey, const std::wstring& sValue)
{
    if (bBroken)
        return false;
    m_values[PathOf(sApplication, sSection, sKey)] = sValue;
    return true;
}

} // namespace ravlo
