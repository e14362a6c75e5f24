// SPDX-License-Identifier: MIT
#include "ui/health/windows/PaneWindow.h"

#include <utility>

namespace ravlo
{

PaneWindow::PaneWindow(HWND hParent, int lId, std::function<void()> OnSized)
    : Window(L"RavloPane"), m_OnSized(std::move(OnSized))
{
    WindowStart start;
    start.lStyle = WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN | WS_CLIPSIBLINGS;
    start.lExStyle = WS_EX_CONTROLPARENT;
    start.hParent = hParent;
    start.lId = lId;
    Create(start);
}

LRESULT PaneWindow::OnMessage(UINT lMessage, WPARAM wParam, LPARAM lParam)
{
    switch (lMessage)
    {
    case WM_COMMAND:
    case WM_NOTIFY:
        return ::SendMessageW(::GetParent(Handle()), lMessage, wParam, lParam);
    case WM_SIZE:
        m_OnSized();
        return 0;
    default:
        return Default(lMessage, wParam, lParam);
    }
}

} // namespace ravlo
