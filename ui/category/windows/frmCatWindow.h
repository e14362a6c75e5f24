// SPDX-License-Identifier: MIT
#pragma once

#include "ui/category/frmCatPresenter.h"
#include "ui/category/frmCatView.h"
#include "ui/category/windows/CatSelectorWindow.h"
#include "ui/category/windows/RulesPaneWindow.h"
#include "ui/controls/windows/Handles.h"
#include "ui/controls/windows/ModalLoop.h"
#include "ui/controls/windows/Window.h"

#include <array>
#include <memory>
#include <string>

namespace ravlo
{

// The category window. Made hidden; shown by the presenter, once.
class frmCatWindow final : public Window, private frmCatView
{
public:
    // hOwner: the window it stays in front of; null for none.
    frmCatWindow(HWND hOwner, ModScheduler& cMod);
    ~frmCatWindow() override;

    frmCatPresenter& Presenter() noexcept { return *m_cPresenter; }

private:
    void SetCaption(const std::wstring& sCaption) override;
    void ShowNewButtons(bool bShow) override;
    void ChoosePane(RulesPane ePane) override;
    void SetRulesTitle(const std::wstring& sTitle) override;
    std::wstring BoxText(RuleBox eBox) const override;
    void SetBoxText(RuleBox eBox, const std::wstring& sText) override;
    void EnableBox(RuleBox eBox, bool bEnable) override;
    bool IgnoreChecked() const override;
    void CheckIgnore(bool bCheck) override;
    bool InheritChecked(RuleBox eBox) const override;
    void CheckInherit(RuleBox eBox, bool bCheck) override;
    void EnableInherit(RuleBox eBox, bool bEnable) override;
    void SetOutlook(const std::wstring& sText) override;
    void EnableApply(bool bEnable) override;
    void ShowRulesArea(bool bShow) override;
    void EnableLibraryMenu(bool bEnable) override;
    void SetBusy(bool bBusy) override;
    void ShowModal() override;
    void Close() override;

    LRESULT OnMessage(UINT lMessage, WPARAM wParam, LPARAM lParam) override;
    void OnException() noexcept override;
    void OnCommand(int lId, int lCode);
    void OnActivate(bool bActive);
    void DrawArrow(const DRAWITEMSTRUCT& item) const;
    void PassFocus(HWND hFrom, HWND hTo);
    void ReturnFocus();
    bool OnKey(MSG& message);
    void NextTab();

    void MakeControls();
    void MakeRulesArea();

    // ---- sizes and places, in frmCatLayout.cpp

    void SetLook(int lDpi);
    void LayOut();
    void MakeRoom();
    void LayOutButtons(int lTop, int lRight);
    void LayOutRulesArea(int lLeft, int lTop, int lWidth, int lBottom);
    // The size of a window that opens for the first time, and the width of the rules area.
    SIZE FirstSize() const;
    int RulesAreaWidth() const;
    SIZE SmallestClient() const;
    SIZE ButtonSize(HWND hButton) const;
    int TitleHeight() const;
    int PaneHeight() const;
    int StripWidth() const;
    int ButtonsWidth() const;
    int px(int lAt96) const;

    ModScheduler& m_cMod;
    UniqueMenu m_hMenu;
    UniqueAccelerators m_hAccelerators;
    UniqueFont m_hFont;
    UniqueFont m_hSymbols;
    int m_lDpi = 96;
    std::unique_ptr<CatSelectorWindow> m_cSelector;
    std::array<std::unique_ptr<RulesPaneWindow>, 2> m_cPanes;
    std::unique_ptr<frmCatPresenter> m_cPresenter;
    std::unique_ptr<ModalLoop> m_cLoop;
    HWND m_hNew = nullptr;
    HWND m_hNewLevel = nullptr;
    HWND m_hTitle = nullptr;
    HWND m_hTabs = nullptr;
    HWND m_hApply = nullptr;
    HWND m_hOK = nullptr;
    HWND m_hCancel = nullptr;
    std::array<HWND, 3> m_hStrip{}; // Label1, Label2, Label3
    HWND m_hFocus = nullptr;        // what had the focus when the window was left or became busy
    bool m_bRulesShown = true;
    bool m_bApply = true; // cmdApply is enabled, except while busy
    bool m_bBusy = false;
};

// Shows the category window in front of the thread's active window until it is closed: lChosen or lNotChosen.
// Gives the focus back afterwards.
std::int32_t ShowCategoryWindow(const std::shared_ptr<clsSchedMan>& cSchedMan, CategoryRequest& request);

} // namespace ravlo
