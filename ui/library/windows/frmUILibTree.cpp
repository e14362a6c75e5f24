// SPDX-License-Identifier: MIT
#include "ui/library/windows/frmUILibWindow.h"

#include <windowsx.h>

namespace ravlo
{

// ---- what the category tree reports ----

LRESULT frmUILibWindow::OnTreeNotify(const NMHDR& header, LPARAM lParam)
{
    switch (header.code)
    {
    case NM_DBLCLK:
        OnTreeDblClick();
        [[fallthrough]]; // the second click of a pair on a check box is reported only here
    case NM_CLICK:
        if (const std::optional<CategoryTreeWindow::Hit> hit =
                m_cTree->HitTest({GET_X_LPARAM(::GetMessagePos()), GET_Y_LPARAM(::GetMessagePos())});
            hit && hit->bOnBox)
            m_cTree->BeforeToggle(hit->node);
        ::PostMessageW(Handle(), ePostedChecks, 0, 0);
        return 0;
    case NM_RCLICK:
        if (const std::optional<CategoryTreeWindow::Hit> hit =
                m_cTree->HitTest({GET_X_LPARAM(::GetMessagePos()), GET_Y_LPARAM(::GetMessagePos())}))
            m_cTree->Select(hit->node);
        return 0;
    case TVN_KEYDOWN:
        if (reinterpret_cast<const NMTVKEYDOWN*>(lParam)->wVKey != VK_SPACE)
            return 0;
        if (const std::optional<CategoryTreePresenter::Node> selected = m_cTree->Selected())
            m_cTree->BeforeToggle(*selected);
        ::PostMessageW(Handle(), ePostedChecks, 0, 0);
        return 0;
    case NM_CUSTOMDRAW:
        return m_cTree->OnCustomDraw(*reinterpret_cast<NMTVCUSTOMDRAW*>(lParam));
    case TVN_BEGINLABELEDITW:
        return m_cTree->MayEdit() ? FALSE : TRUE;
    case TVN_ENDLABELEDITW:
        return OnLabelEdited(*reinterpret_cast<const NMTVDISPINFOW*>(lParam));
    case TVN_ITEMEXPANDINGW:
    case TVN_ITEMEXPANDEDW:
        return OnExpanded(*reinterpret_cast<const NMTREEVIEWW*>(lParam));
    default:
        return 0;
    }
}

// The tree shows the new name when the category has it.
LRESULT frmUILibWindow::OnLabelEdited(const NMTVDISPINFOW& info)
{
    m_cTree->EditEnded();
    m_sRenamed = info.item.pszText ? std::optional<std::wstring>(info.item.pszText) : std::nullopt;
    ::PostMessageW(Handle(), ePostedRenamed, 0, 0);
    return FALSE;
}

void frmUILibWindow::OnTreeDblClick()
{
    const DWORD lPoint = ::GetMessagePos();
    const std::optional<CategoryTreeWindow::Hit> hit =
        m_cTree->HitTest({GET_X_LPARAM(lPoint), GET_Y_LPARAM(lPoint)});
    if (hit && hit->bOnRow)
        ::PostMessageW(Handle(), ePostedShowNode, 0, 0);
}

// The root is never collapsed. Some tree views ignore the refusal; then it is expanded again.
LRESULT frmUILibWindow::OnExpanded(const NMTREEVIEWW& change)
{
    const std::optional<CategoryTreePresenter::Node> node = m_cTree->NodeOf(change.itemNew.hItem);
    if (!node)
        return FALSE;
    const bool bCollapse = change.action == TVE_COLLAPSE;
    const bool bDone = change.hdr.code == TVN_ITEMEXPANDEDW;
    const bool bRefused = bCollapse && CategoryTreePresenter::IsRoot(*node);
    if (bDone && bRefused)
        ::PostMessageW(Handle(), ePostedExpandRoot, 0, 0);
    else if (bDone)
        m_cForm->Panes().NodeExpanded(*node, !bCollapse);
    return bRefused && !bDone;
}

void frmUILibWindow::CompareChecks()
{
    for (const CategoryTreePresenter::Node node : m_cTree->CheckedByUser())
        m_cForm->Panes().NodeCheck(node, m_cTree->ShowsCheck(node));
    m_cTree->Repaint();
}

} // namespace ravlo
