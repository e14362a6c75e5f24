// SPDX-License-Identifier: MIT
#include "base/ScopedFlag.h"
#include "ui/library/windows/frmUILibWindow.h"

namespace ravlo
{

// ---- the keyboard ----

bool frmUILibWindow::OnKey(const MSG& message)
{
    if (OnFindKey(message))
        return true;
    const bool bInTree = message.hwnd == m_cTree->Handle();
    if (bInTree && message.message == WM_CHAR)
        return m_cForm->Panes().TypeInTree(static_cast<wchar_t>(message.wParam));
    if (message.message != WM_KEYDOWN && message.message != WM_SYSKEYDOWN)
        return false;
    if (message.wParam == VK_F6 && !Down(VK_CONTROL) && !Down(VK_SHIFT) && !Down(VK_MENU))
    {
        ::SetFocus(bInTree ? m_cGrid->Handle() : m_cTree->Handle());
        return true;
    }
    const bool bAlt = message.message == WM_SYSKEYDOWN;
    const bool bControl = Down(VK_CONTROL) && !Down(VK_MENU); // both are AltGr, which types
    if (bInTree && !bAlt)
        return OnTreeKey(message.wParam, bControl);
    if (message.hwnd != m_cGrid->Handle())
        return false;
    if (!bAlt)
        return OnGridKey(message.wParam, bControl);
    if (message.wParam != VK_UP && message.wParam != VK_DOWN && message.wParam != VK_HOME &&
        message.wParam != VK_END)
        return false;
    // Otherwise the system sees Alt pressed alone and opens the menu when it is released.
    ::DefWindowProcW(message.hwnd, message.message, message.wParam, message.lParam);
    if (message.wParam == VK_HOME)
        m_cForm->Cuts().MoveSelectedToTop();
    else if (message.wParam == VK_END)
        m_cForm->Cuts().MoveSelectedToBottom();
    else
        m_cForm->Cuts().MoveSelected(message.wParam == VK_UP);
    return true;
}

bool frmUILibWindow::OnTreeKey(WPARAM lKey, bool bControl)
{
    if (lKey == VK_RETURN)
        m_cForm->Panes().ShowSelectedNode();
    else if (lKey == VK_F2)
        m_cForm->Do(LibraryCommand::mnuRename);
    else if (lKey == VK_ESCAPE)
        return m_cForm->Cuts().CancelCut();
    else if (lKey == VK_SPACE && !bControl)
        return m_cForm->Panes().TypeInTree(L' '); // else it ticks
    else if (bControl && lKey == 'V')
    {
        const ScopedFlag cByKeyboard(m_bByKeyboard);
        m_cForm->Cuts().Paste();
    }
    else
        return false;
    return true;
}

bool frmUILibWindow::OnGridKey(WPARAM lKey, bool bControl)
{
    if (lKey == VK_RETURN)
        m_cForm->Cuts().CellDblClick(static_cast<std::size_t>(m_cForm->Grid().CurrentRow()), 1);
    else if (lKey == VK_DELETE)
        m_cForm->Cuts().GridDelete();
    else if (bControl && lKey == 'C')
        m_cForm->Cuts().CopySelection();
    else if (bControl && lKey == 'X')
        m_cForm->Cuts().CutSelection();
    else if (lKey == VK_ESCAPE)
        return m_cForm->Cuts().CancelCut();
    else
        return false;
    return true;
}

} // namespace ravlo
