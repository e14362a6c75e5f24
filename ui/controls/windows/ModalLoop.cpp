// SPDX-License-Identifier: MIT
#include "ui/controls/windows/ModalLoop.h"

#include "base/ScopedFlag.h"

#include <cwchar>
#include <utility>

namespace ravlo
{

namespace
{

// The innermost loop of the thread.
thread_local ModalLoop* pInnermost = nullptr;

// Whether the key edits text in the edit control that receives it.
bool EditsText(const MSG& message)
{
    if (message.message != WM_KEYDOWN || ::GetKeyState(VK_CONTROL) >= 0 ||
        !std::wcschr(L"ACVXYZ", static_cast<wchar_t>(message.wParam)))
        return false;
    wchar_t sClass[8] = L"";
    ::GetClassNameW(message.hwnd, sClass, ARRAYSIZE(sClass));
    return ::lstrcmpiW(sClass, L"Edit") == 0;
}

} // namespace

void ModalLoop::Run()
{
    struct Innermost
    {
        ModalLoop* pBefore;
        explicit Innermost(ModalLoop* pLoop) : pBefore(std::exchange(pInnermost, pLoop)) {}
        ~Innermost() { pInnermost = pBefore; }
    } const cInnermost(this);
    const UniqueHook hHook(
        ::SetWindowsHookExW(WH_MSGFILTER, &ModalLoop::Filter, nullptr, ::GetCurrentThreadId()));
    DisableOthers();
    MSG message;
    while (!m_bDone && ::IsWindow(m_hWindow))
    {
        const BOOL lGot = ::GetMessageW(&message, nullptr, 0, 0);
        if (lGot <= 0)
        {
            if (lGot == 0)
                ::PostQuitMessage(static_cast<int>(message.wParam));
            break;
        }
        if (Translate(message))
            continue;
        ::TranslateMessage(&message);
        ::DispatchMessageW(&message);
    }
    EnableOthers();
}

void ModalLoop::End() noexcept
{
    m_bDone = true;
    EnableOthers();
    // The loop may be waiting for a message.
    ::PostMessageW(m_hWindow, WM_NULL, 0, 0);
}

LRESULT CALLBACK ModalLoop::Filter(int lCode, WPARAM wParam, LPARAM lParam)
{
    if (lCode == MSGF_USER && pInnermost && pInnermost->Translate(*reinterpret_cast<MSG*>(lParam)))
        return TRUE;
    return ::CallNextHookEx(nullptr, lCode, wParam, lParam);
}

bool ModalLoop::Translate(MSG& message)
{
    if (message.hwnd != m_hWindow && !::IsChild(m_hWindow, message.hwnd))
        return false;
    if (m_hAccelerators && !EditsText(message) &&
        ::TranslateAcceleratorW(m_hWindow, m_hAccelerators, &message) != 0)
        return true;
    return (OnMessage && OnMessage(message)) || ::IsDialogMessageW(m_hWindow, &message) != FALSE;
}

void ModalLoop::DisableOthers() noexcept
{
    struct Visitor
    {
        static BOOL CALLBACK Disable(HWND hWindow, LPARAM lParam) noexcept
        {
            auto& cLoop = *reinterpret_cast<ModalLoop*>(lParam);
            if (hWindow != cLoop.m_hWindow && ::IsWindowVisible(hWindow) && ::IsWindowEnabled(hWindow))
            {
                cLoop.m_hDisabled.push_back(hWindow);
                ::EnableWindow(hWindow, FALSE);
            }
            return TRUE;
        }
    };
    ::EnumThreadWindows(::GetCurrentThreadId(), &Visitor::Disable, reinterpret_cast<LPARAM>(this));
}

void ModalLoop::EnableOthers() noexcept
{
    for (const HWND hWindow : std::exchange(m_hDisabled, {}))
        ::EnableWindow(hWindow, TRUE);
}

} // namespace ravlo
