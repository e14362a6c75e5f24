// SPDX-License-Identifier: MIT
#include "host/client/WindowPicture.h"

#include "host/day/HostError.h"
#include "platform/windows/WindowContent.h"

namespace ravlo
{

namespace
{

constexpr UINT lEvery = 100; // ms
constexpr int lQuietLooks = 5;

// The window of this thread that the user can use now; null when there is none.
HWND UsableWindow() noexcept
{
    HWND hFound = nullptr;
    struct Finder
    {
        static BOOL CALLBACK Visit(HWND hWindow, LPARAM lParam)
        {
            if (::IsWindowVisible(hWindow) == FALSE || ::IsWindowEnabled(hWindow) == FALSE)
                return TRUE;
            *reinterpret_cast<HWND*>(lParam) = hWindow;
            return FALSE;
        }
    };
    ::EnumThreadWindows(::GetCurrentThreadId(), &Finder::Visit, reinterpret_cast<LPARAM>(&hFound));
    return hFound;
}

} // namespace

WindowPicture* WindowPicture::m_pOnly = nullptr;

WindowPicture::WindowPicture(const std::wstring& sFile, Close close) : m_sFile(sFile), m_close(close)
{
    if (m_sFile.empty())
        return;
    m_pOnly = this;
    m_lTimer = ::SetTimer(nullptr, 0, lEvery, &WindowPicture::OnTimer);
}

WindowPicture::~WindowPicture()
{
    if (m_lTimer != 0)
        ::KillTimer(nullptr, m_lTimer);
    if (m_pOnly == this)
        m_pOnly = nullptr;
}

void CALLBACK WindowPicture::OnTimer(HWND, UINT, UINT_PTR, DWORD)
{
    if (m_pOnly)
        m_pOnly->Look();
}

void WindowPicture::Look()
{
    const HWND hWindow = UsableWindow();
    constexpr UINT lWork = QS_PAINT | QS_POSTMESSAGE | QS_INPUT;
    const bool bQuiet = hWindow && HIWORD(::GetQueueStatus(lWork)) == 0;
    m_lQuiet = bQuiet ? m_lQuiet + 1 : 0;
    if (m_bDone || m_lQuiet < lQuietLooks)
        return;
    m_bDone = true;
    m_bTaken = WritePng({hWindow}, m_sFile);
    m_close(hWindow);
}

void WindowPicture::MustBeTaken() const
{
    if (!m_sFile.empty() && !m_bTaken)
        throw HostError(m_sFile + L": no picture of the window could be taken");
}

} // namespace ravlo
