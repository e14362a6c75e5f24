// SPDX-License-Identifier: MIT
#pragma once

#include "ui/controls/windows/Handles.h"
#include "ui/controls/windows/ModalLoop.h"
#include "ui/controls/windows/SplitPanelWindow.h"
#include "ui/controls/windows/Window.h"
#include "ui/health/frmHealthPresenter.h"
#include "ui/health/frmHealthView.h"
#include "ui/health/windows/LightImages.h"
#include "ui/health/windows/PaneWindow.h"
#include "ui/health/windows/PictureWindow.h"
#include "ui/health/windows/TableWindow.h"

#include <array>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace ravlo
{

// The rotation health window. Made hidden; shown by its presenter, once.
class frmHealthWindow final : public Window, private frmHealthView
{
public:
    // hOwner: the window it stays in front of; null for none. The memory outlives this.
    frmHealthWindow(HWND hOwner, ModScheduler& cMod, std::weak_ptr<clsSchedMan> cSchedMan,
                    HealthMemory& memory);
    ~frmHealthWindow() override;

    frmHealthPresenter& Form() noexcept { return *m_cForm; }

private:
    // The tabs, in their order; each but the first two shows a picture next to its table.
    enum class Page
    {
        Advice,
        Seldom,
        Plays,
        Gaps,
        Hours,
    };
    static constexpr std::size_t pages = 5;
    static constexpr std::size_t pictures = 3;

    void ShowClockChoices(const std::vector<std::wstring>& colChoices) override;
    void ShowPlan(const PlanTexts& plan) override;
    PlanTexts Plan() const override;
    void ShowSummary(const std::wstring& sText) override;
    void ShowStatus(const std::wstring& sText) override;
    void ShowRunning(bool bRunning) override;
    void MoveProgress(double dDone) override;
    void ShowTable(HealthTable eTable) override;
    void SelectRow(HealthTable eTable, std::optional<std::size_t> row) override;
    void ShowLevel() override;
    void ShowReasons(const std::wstring& sText) override;
    void EnableCarryOut(bool bEnable) override;
    std::optional<std::wstring> AskClockFile(const std::wstring& sPresent) override;
    std::optional<std::wstring> AskReportFile(const std::wstring& sProposed) override;
    void AskForWork() override;
    void ShowModal() override;
    void BringToFront() override;
    void Close() override;

    LRESULT OnMessage(UINT lMessage, WPARAM wParam, LPARAM lParam) override;
    void OnException() noexcept override;
    void OnCommand(int lId, int lCode);
    LRESULT OnNotify(const NMHDR& header, LPARAM lParam);
    void OnActivate(bool bActive);
    bool OnKey(const MSG& message);
    void OnEscape();
    void OnTimer();
    void LetGo();

    // ---- controls, in frmHealthControls.cpp

    void MakeControls();
    void MakePlan();
    void MakePane();
    Picture PictureOf(Page ePage, const PictureRoom& room) const;
    TableWindow& List(HealthTable eTable) { return *m_cLists[static_cast<std::size_t>(eTable)]; }
    const TableWindow& List(HealthTable eTable) const { return *m_cLists[static_cast<std::size_t>(eTable)]; }
    Page ShownPage() const;
    void ShowPage(Page ePage);
    void NextPage(int lSteps);
    void SetTabCaption(Page ePage, const std::wstring& sCaption);

    // ---- sizes and places, in frmHealthLayout.cpp

    void SetLook(int lDpi);
    void LayOut();
    int LayOutPlan(int lRight);
    void LayOutStatus(const RECT& client, int lTop);
    void LayOutPane();
    void MoveInPane();
    SIZE ButtonSize(HWND hButton) const;
    int SummaryHeight(int lWidth) const;
    int px(int lAt96) const;

    ModScheduler& m_cMod;
    UniqueAccelerators m_hAccelerators;
    UniqueFont m_hFont;
    UniqueImageList m_hLights;
    UniqueHandle<HICON, &::DestroyIcon> m_hIcon;
    int m_lDpi = 96;
    std::unique_ptr<frmHealthPresenter> m_cForm;
    std::unique_ptr<SplitPanelWindow> m_cSplit;
    std::unique_ptr<PaneWindow> m_cPane;
    std::array<std::unique_ptr<TableWindow>, healthTables> m_cLists;
    std::array<std::unique_ptr<PictureWindow>, pictures> m_cPictures;
    std::unique_ptr<ModalLoop> m_cLoop;
    std::array<HWND, 3> m_hLabels{}; // clock, start, days
    HWND m_hClock = nullptr;
    HWND m_hBrowse = nullptr;
    HWND m_hStart = nullptr;
    HWND m_hDays = nullptr;
    HWND m_hSimulate = nullptr;
    HWND m_hReport = nullptr;
    HWND m_hSummary = nullptr;
    HWND m_hTabs = nullptr;
    HWND m_hReasons = nullptr;
    HWND m_hCarryOut = nullptr;
    HWND m_hGoTo = nullptr;
    HWND m_hStatus = nullptr;
    HWND m_hProgress = nullptr;
    HWND m_hCancel = nullptr;
    HWND m_hFocus = nullptr; // what had it when the window was left
    bool m_bPlaced = false;  // on the screen: before and after that its size is not the user's
};

} // namespace ravlo
