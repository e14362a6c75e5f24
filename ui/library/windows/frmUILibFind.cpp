// SPDX-License-Identifier: MIT
#include "ui/library/windows/frmUILibWindow.h"

#include "ui/library/windows/ControlIds.h"

namespace ravlo
{

// ---- the find bars ----

std::unique_ptr<FindBar> frmUILibWindow::MakeFindBar(int lId, const FindBar::Texts& texts)
{
    auto cBar = std::make_unique<FindBar>(Handle(), lId, texts,
                                          [this] { m_cMod.LogError(L"frmUILib.Find", CurrentError()); });
    cBar->ShownChanged = [this] { LayOut(); };
    return cBar;
}

void frmUILibWindow::ListenToFindBars()
{
    m_cCategoriesBar->SetListener(m_cForm->Panes().FindCategories());
    m_cCategoriesBar->SetList(m_cTree->Handle());
    m_cCutsBar->SetListener(m_cForm->Panes().FindCuts());
    m_cCutsBar->SetList(m_cGrid->Handle());
}

// Ctrl+F opens the bar of the pane that has the focus, Ctrl+Shift+F that of the tree; Esc in a pane closes
// its bar and, when that was open, does nothing else.
bool frmUILibWindow::OnFindKey(const MSG& message)
{
    if (message.message != WM_KEYDOWN || Down(VK_MENU))
        return false;
    if (m_cCategoriesBar->OnKey(message) || m_cCutsBar->OnKey(message))
        return true;
    const bool bInTree = message.hwnd == m_cTree->Handle();
    if (message.wParam == 'F' && Down(VK_CONTROL))
    {
        OpenFindBar(bInTree || m_cCategoriesBar->HasFocus() || Down(VK_SHIFT));
        return true;
    }
    if (message.wParam != VK_ESCAPE || Down(VK_CONTROL))
        return false;
    if (bInTree)
        return m_cForm->Panes().FindCategories().CloseBar();
    return message.hwnd == m_cGrid->Handle() && m_cForm->Panes().FindCuts().CloseBar();
}

// Not in a pane that the split panel has closed.
void frmUILibWindow::OpenFindBar(bool bCategories)
{
    if (bCategories && ::IsWindowVisible(m_cTree->Handle()))
        m_cForm->Panes().FindCategories().OpenBar();
    else if (!bCategories && ::IsWindowVisible(m_cGrid->Handle()))
        m_cForm->Panes().FindCuts().OpenBar();
}

} // namespace ravlo
