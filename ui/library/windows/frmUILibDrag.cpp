// SPDX-License-Identifier: MIT
#include "base/ScopedFlag.h"
#include "ui/library/windows/DragLabel.h"
#include "ui/library/windows/frmUILibWindow.h"

#include <utility>

namespace ravlo
{

namespace
{

constexpr UINT lDragTick = 60; // milliseconds

} // namespace

// Where rows can be dropped.
class frmUILibWindow::Site : public DropSite
{
public:
    explicit Site(frmUILibWindow& cWindow) : m_cWindow(cWindow) {}
    void OnException() noexcept override { m_cWindow.m_cMod.LogError(L"frmUILib drag", CurrentError()); }

protected:
    frmUILibWindow& m_cWindow;
};

class frmUILibWindow::TreeSite final : public Site
{
public:
    using Site::Site;
    bool DragOver(POINT point, const std::wstring& sText) override
    {
        const bool bOwn = m_cWindow.m_bDragging && sText == sGridPayload;
        const std::optional<CategoryTreeWindow::Hit> hit =
            bOwn ? m_cWindow.m_cTree->HitTest(point) : std::nullopt;
        m_cWindow.m_cTree->ShowDropTarget(hit ? std::optional(hit->node) : std::nullopt);
        return hit.has_value();
    }
    void DragLeft() override { m_cWindow.m_cTree->ShowDropTarget(std::nullopt); }
    void Dropped(POINT point, const std::wstring& sText) override
    {
        if (const std::optional<CategoryTreeWindow::Hit> hit = m_cWindow.m_cTree->HitTest(point))
            m_cWindow.OnDropped({true, m_cWindow.m_cForm->Tree().At(hit->node).sKey, std::nullopt, sText});
    }
};

// Takes any text: what was not dragged in this window is refused with a box.
class frmUILibWindow::GridSite final : public Site
{
public:
    using Site::Site;
    bool DragOver(POINT point, const std::wstring&) override
    {
        const clsSchedLibGridPresenter& cGrid = m_cWindow.m_cForm->Grid();
        const std::optional<std::size_t> row = m_cWindow.m_cGrid->DropRow(point);
        const bool bLine = m_cWindow.m_bDragging && cGrid.DropWouldMove(row);
        m_cWindow.m_cGrid->ShowInsertionLine(bLine ? std::optional(row.value_or(cGrid.RowCount()))
                                                   : std::nullopt);
        return true;
    }
    void DragLeft() override { m_cWindow.m_cGrid->ShowInsertionLine(std::nullopt); }
    void Dropped(POINT point, const std::wstring& sText) override
    {
        m_cWindow.OnDropped({false, L"", m_cWindow.m_cGrid->DropRow(point), sText});
    }
};

void frmUILibWindow::TakeDrops()
{
    m_cTreeSite = std::make_unique<TreeSite>(*this);
    m_cGridSite = std::make_unique<GridSite>(*this);
    m_cRegistrations.push_back(std::make_unique<DropRegistration>(m_cTree->Handle(), *m_cTreeSite));
    m_cRegistrations.push_back(std::make_unique<DropRegistration>(m_cGrid->Handle(), *m_cGridSite));
}

void frmUILibWindow::RunDrag()
{
    if (m_bDragging || !Down(VK_LBUTTON) || !m_cForm->Cuts().DragStarted())
        return;
    m_drop.reset();
    {
        const ScopedFlag cDragging(m_bDragging);
        ::SetTimer(Handle(), eTimerDrag, lDragTick, nullptr);
        const DragLabel cLabel(Handle(), m_hFont.get(), m_lDpi, m_cForm->Grid().DraggedText());
        DragText(sGridPayload, [&] { cLabel.Follow(); });
        ::KillTimer(Handle(), eTimerDrag);
    }
    const std::optional<LibraryCuts::Drop> drop = std::exchange(m_drop, std::nullopt);
    // The target stays marked while the user is asked what to do with the cuts.
    if (drop && drop->bOnTree)
        m_cTree->ShowDropTarget(m_cForm->Tree().Find(drop->sNodeKey));
    m_cForm->Cuts().DragCompleted(drop);
    m_cTree->ShowDropTarget(std::nullopt);
}

// Questions and boxes about a drop come after the drag has ended.
void frmUILibWindow::OnDropped(LibraryCuts::Drop drop)
{
    m_drop = std::move(drop);
    if (!m_bDragging)
        ::PostMessageW(Handle(), ePostedDropped, 0, 0);
}

void frmUILibWindow::OnDragTick()
{
    POINT point{};
    ::GetCursorPos(&point);
    if (const std::optional<CategoryTreePresenter::Node> opened = m_cTree->DragTick(point))
        m_cForm->Panes().NodeExpanded(*opened, true);
    if (m_cGrid->DragTick(point))
        m_cGridSite->DragOver(point, sGridPayload); // the line belongs to the row that is there now
}

} // namespace ravlo
