// SPDX-License-Identifier: MIT
#include "ui/controls/windows/Controls.h"
#include "ui/health/HealthPictures.h"
#include "ui/health/HealthTexts.h"
#include "ui/health/windows/ControlIds.h"
#include "ui/health/windows/frmHealthWindow.h"

#include "base/Text.h"

#include <commctrl.h>

namespace ravlo
{

namespace
{

constexpr const wchar_t* sSplitId = L"SplitPanelHealth";
constexpr std::int32_t lFirstLevels = 3900; // twips: 260 pixels at 96 dpi

} // namespace

// ---- making, in the order of the Tab key ----

void frmHealthWindow::MakeControls()
{
    MakePlan();
    const auto table = [&](HWND hParent, HealthTable eTable, int lId, const wchar_t* sName) {
        m_cLists[static_cast<std::size_t>(eTable)] =
            std::make_unique<TableWindow>(hParent, lId, sName, m_cForm->Table(eTable));
    };
    table(Handle(), HealthTable::Levels, eIdlstLevels, L"Levels");
    m_cSplit = std::make_unique<SplitPanelWindow>(Handle(), eIdHealthSplit, m_cMod.Ports().cUserSettings,
                                                  [this] { m_cMod.LogError(L"frmHealth", CurrentError()); });
    MakePane();
    const HWND hPane = m_cPane->Handle();
    m_hReasons = MakeControl(hPane, WC_STATICW, L"", SS_LEFT | SS_NOPREFIX | SS_EDITCONTROL, eIdlblReasons);
    table(hPane, HealthTable::Advice, eIdlstAdvice, L"What helps");
    m_hCarryOut = MakeControl(hPane, WC_BUTTONW, L"Carry &Out", BS_PUSHBUTTON | WS_TABSTOP, eIdcmdCarryOut);
    table(hPane, HealthTable::Seldom, eIdlstSeldom, L"Cuts that never or seldom play");
    m_hGoTo = MakeControl(hPane, WC_BUTTONW, L"&Go to Cut", BS_PUSHBUTTON | WS_TABSTOP, eIdcmdGoTo);
    const auto picture = [&](Page ePage, int lId, const wchar_t* sName) {
        m_cPictures[static_cast<std::size_t>(ePage) - (pages - pictures)] = std::make_unique<PictureWindow>(
            hPane, lId, sName, [this, ePage](const PictureRoom& room) { return PictureOf(ePage, room); },
            [this] { m_cMod.LogError(L"frmHealth", CurrentError()); });
    };
    picture(Page::Plays, eIdpicPlays, L"Picture of the plays; the table has the same figures");
    table(hPane, HealthTable::Plays, eIdlstPlays, L"Plays per cut");
    picture(Page::Gaps, eIdpicGaps, L"Picture of the artist gaps; the table has the same figures");
    table(hPane, HealthTable::Gaps, eIdlstGaps, L"Minutes between plays of an artist");
    picture(Page::Hours, eIdpicHours, L"Picture of the hours; the table has the same figures");
    table(hPane, HealthTable::Hours, eIdlstHours, L"Plays by hour of the day");
    m_hStatus = MakeControl(Handle(), WC_STATICW, L"",
                            SS_LEFT | SS_NOPREFIX | SS_CENTERIMAGE | SS_ENDELLIPSIS, eIdHealthStatus);
    m_hProgress = MakeControl(Handle(), PROGRESS_CLASSW, L"Progress", PBS_SMOOTH, eIdHealthProgress);
    m_hCancel = MakeControl(Handle(), WC_BUTTONW, L"Ca&ncel", BS_PUSHBUTTON | WS_TABSTOP, eIdcmdCancelRun);
    m_cSplit->Panel().SetRegistryID(sSplitId);
    m_cSplit->Panel().SetHorizontal(true);
    m_cSplit->Panel().SetPosition(lFirstLevels);
    m_cSplit->SetControls(List(HealthTable::Levels).Handle(), hPane);
}

void frmHealthWindow::MakePlan()
{
    const auto label = [&](const wchar_t* sText, int lId) {
        return MakeControl(Handle(), WC_STATICW, sText, SS_LEFT | SS_CENTERIMAGE, lId);
    };
    const auto button = [&](const wchar_t* sText, int lId, DWORD lStyle = BS_PUSHBUTTON) {
        return MakeControl(Handle(), WC_BUTTONW, sText, lStyle | WS_TABSTOP, lId);
    };
    const auto edit = [&](int lId) {
        return MakeControl(Handle(), WC_EDITW, L"", ES_AUTOHSCROLL | WS_TABSTOP, lId, WS_EX_CLIENTEDGE);
    };
    m_hLabels[0] = label(L"&Clock:", eIdlblClock);
    m_hClock = MakeControl(Handle(), WC_COMBOBOXW, L"",
                           CBS_DROPDOWN | CBS_AUTOHSCROLL | WS_TABSTOP | WS_VSCROLL, eIdcboClock);
    m_hBrowse = button(L"&Browse...", eIdcmdBrowse);
    m_hLabels[1] = label(L"S&tart:", eIdlblStart);
    m_hStart = edit(eIdtxtStart);
    m_hLabels[2] = label(L"&Days:", eIdlblDays);
    m_hDays = edit(eIdtxtDays);
    m_hSimulate = button(L"&Simulate Again", eIdcmdSimulate, BS_DEFPUSHBUTTON);
    m_hReport = button(L"Save &Report...", eIdcmdReport);
    m_hSummary =
        MakeControl(Handle(), WC_STATICW, L"", SS_LEFT | SS_NOPREFIX | SS_EDITCONTROL, eIdlblSummary);
}

void frmHealthWindow::MakePane()
{
    m_cPane = std::make_unique<PaneWindow>(Handle(), eIdHealthPane, [this] { LayOutPane(); });
    m_hTabs = MakeControl(m_cPane->Handle(), WC_TABCONTROLW, L"About the level", WS_TABSTOP | WS_CLIPSIBLINGS,
                          eIdHealthTabs);
    std::wstring sTabs[pages] = {L"What Helps", L"Never Played", L"Plays per Cut", L"Artist Gaps", L"Hours"};
    for (std::size_t page = 0; page < pages; ++page)
    {
        TCITEMW item{};
        item.mask = TCIF_TEXT;
        item.pszText = sTabs[page].data();
        ::SendMessageW(m_hTabs, TCM_INSERTITEMW, page, reinterpret_cast<LPARAM>(&item));
    }
}

// ---- pages ----

Picture frmHealthWindow::PictureOf(Page ePage, const PictureRoom& room) const
{
    const LevelHealth* pLevel = m_cForm->Level();
    if (!pLevel)
        return {};
    const auto chosen = [this](HealthTable eTable) -> std::optional<std::size_t> {
        const std::optional<std::size_t> row = List(eTable).Selected();
        const SortedTable& table = m_cForm->Table(eTable);
        return row && *row < table.Rows() ? std::optional(table.ItemAt(*row)) : std::nullopt;
    };
    if (ePage == Page::Plays)
        return PlaysPicture(*pLevel, room, chosen(HealthTable::Plays));
    if (ePage == Page::Gaps)
        return GapsPicture(*pLevel, room, chosen(HealthTable::Gaps));
    return HoursPicture(*pLevel, room, chosen(HealthTable::Hours));
}

frmHealthWindow::Page frmHealthWindow::ShownPage() const
{
    return static_cast<Page>(::SendMessageW(m_hTabs, TCM_GETCURSEL, 0, 0));
}

void frmHealthWindow::ShowPage(Page ePage)
{
    ::SendMessageW(m_hTabs, TCM_SETCURSEL, static_cast<WPARAM>(ePage), 0);
    const HWND hFocus = ::GetFocus();
    const auto show = [&](HWND hControl, Page eOn) {
        if (eOn != ePage && hControl == hFocus)
            ::SetFocus(m_hTabs); // a hidden control must not keep it
        ::ShowWindow(hControl, eOn == ePage ? SW_SHOWNA : SW_HIDE);
    };
    show(m_hReasons, Page::Advice);
    show(m_hCarryOut, Page::Advice);
    show(m_hGoTo, Page::Seldom);
    for (std::size_t page = 0; page < pages; ++page)
        show(m_cLists[page + 1]->Handle(), static_cast<Page>(page)); // after the levels, as the pages
    for (std::size_t picture = 0; picture < pictures; ++picture)
        show(m_cPictures[picture]->Handle(), static_cast<Page>(picture + pages - pictures));
}

void frmHealthWindow::NextPage(int lSteps)
{
    const int lPages = static_cast<int>(pages);
    ShowPage(static_cast<Page>((static_cast<int>(ShownPage()) + lSteps + lPages) % lPages));
}

void frmHealthWindow::SetTabCaption(Page ePage, const std::wstring& sCaption)
{
    std::wstring sText = sCaption;
    TCITEMW item{};
    item.mask = TCIF_TEXT;
    item.pszText = sText.data();
    ::SendMessageW(m_hTabs, TCM_SETITEMW, static_cast<WPARAM>(ePage), reinterpret_cast<LPARAM>(&item));
}

// ---- what the presenter asks of them ----

void frmHealthWindow::ShowClockChoices(const std::vector<std::wstring>& colChoices)
{
    ::SendMessageW(m_hClock, CB_RESETCONTENT, 0, 0);
    for (const std::wstring& sChoice : colChoices)
        ::SendMessageW(m_hClock, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(sChoice.c_str()));
}

void frmHealthWindow::ShowPlan(const PlanTexts& plan)
{
    ::SetWindowTextW(m_hClock, plan.sClock.c_str());
    ::SetWindowTextW(m_hStart, plan.sStart.c_str());
    ::SetWindowTextW(m_hDays, plan.sDays.c_str());
}

PlanTexts frmHealthWindow::Plan() const
{
    return {WindowText(m_hClock), WindowText(m_hStart), WindowText(m_hDays)};
}

void frmHealthWindow::ShowSummary(const std::wstring& sText)
{
    if (WindowText(m_hSummary) == sText)
        return;
    ::SetWindowTextW(m_hSummary, sText.c_str());
    LayOut(); // it may take another line
}

void frmHealthWindow::ShowStatus(const std::wstring& sText)
{
    ::SetWindowTextW(m_hStatus, sText.c_str());
    ::UpdateWindow(m_hStatus);
}

void frmHealthWindow::ShowRunning(bool bRunning)
{
    if (!bRunning && ::GetFocus() == m_hCancel)
        ::SetFocus(m_hSimulate);
    for (const HWND hControl : {m_hProgress, m_hCancel})
        ::ShowWindow(hControl, bRunning ? SW_SHOWNA : SW_HIDE);
    LayOut();
}

void frmHealthWindow::MoveProgress(double dDone)
{
    constexpr double dWhole = 1000;
    ::SendMessageW(m_hProgress, PBM_SETPOS, static_cast<WPARAM>(dDone * dWhole), 0);
    ::UpdateWindow(m_hProgress);
}

void frmHealthWindow::ShowTable(HealthTable eTable) { List(eTable).ShowRows(); }

void frmHealthWindow::SelectRow(HealthTable eTable, std::optional<std::size_t> row)
{
    List(eTable).Select(row);
}

void frmHealthWindow::ShowLevel()
{
    const LevelHealth* pLevel = m_cForm->Level();
    const std::size_t never = pLevel ? pLevel->neverPlayed.size() : 0;
    const std::size_t seldom = m_cForm->Table(HealthTable::Seldom).Rows();
    SetTabCaption(Page::Seldom, (seldom > never ? L"Never or Seldom Played (" : L"Never Played (") +
                                    CountText(seldom) + L")");
    for (const std::unique_ptr<PictureWindow>& cPicture : m_cPictures)
        cPicture->Refresh();
    ::EnableWindow(m_hGoTo, seldom > 0);
}

void frmHealthWindow::ShowReasons(const std::wstring& sText)
{
    if (WindowText(m_hReasons) == sText)
        return;
    ::SetWindowTextW(m_hReasons, sText.c_str());
    LayOutPane();
}

void frmHealthWindow::EnableCarryOut(bool bEnable)
{
    if (!bEnable && ::GetFocus() == m_hCarryOut)
        ::SetFocus(List(HealthTable::Advice).Handle());
    ::EnableWindow(m_hCarryOut, bEnable);
}

} // namespace ravlo
