// SPDX-License-Identifier: MIT
#pragma once

#include "modscheduler/ModScheduler.h"
#include "ui/category/frmCatView.h"
#include "ui/controls/windows/Window.h"

#include <array>
#include <functional>
#include <string>
#include <vector>

namespace ravlo
{

// One of the two panes picRules: three boxes for minutes with their labels, and a note. In the category's
// pane also a tick after each box, the check box chkIgnore and what the level can keep. It lies on a tab page
// and has its colour.
class RulesPaneWindow final : public Window
{
public:
    RulesPaneWindow(HWND hParent, RulesPane ePane, ModScheduler& cMod);
    ~RulesPaneWindow() override;

    // Raised by the user: lBox counts from 0 within the pane.
    std::function<void(int lBox)> BoxChanged;
    std::function<void(int lBox)> InheritClick;
    std::function<void()> IgnoreClick;

    std::wstring BoxText(int lBox) const;
    void SetBoxText(int lBox, const std::wstring& sText);
    void EnableBox(int lBox, bool bEnable);
    // A box whose tick is set shows its text greyed.
    bool InheritChecked(int lBox) const;
    void CheckInherit(int lBox, bool bCheck);
    void EnableInherit(int lBox, bool bEnable);
    void SetOutlook(const std::wstring& sText);
    bool IgnoreChecked() const;
    void CheckIgnore(bool bCheck);

    void SetLook(HFONT hFont, int lDpi);
    // The height its contents take at a width.
    int HeightAt(int lWidth) const;

private:
    LRESULT OnMessage(UINT lMessage, WPARAM wParam, LPARAM lParam) override;
    void OnException() noexcept override;
    void EnableContents(bool bEnable);
    void OnCommand(int lId, int lCode);
    LRESULT OnBoxColour(HDC hDC, HWND hBox);
    LRESULT OnColour(HDC hDC, HWND hControl, UINT lMessage);
    std::vector<HWND> Controls() const;
    int Arrange(int lWidth, bool bMove) const;
    int LabelWidth(HDC hDC) const;

    ModScheduler& m_cMod;
    std::array<HWND, 3> m_hLabels{};
    std::array<HWND, 3> m_hBoxes{};
    std::array<bool, 3> m_bBoxes{true, true, true}; // enabled, as long as the pane is
    std::array<HWND, 3> m_hInherits{};              // in the category's pane, as the next two
    std::array<bool, 3> m_bInherits{true, true, true};
    HWND m_hIgnore = nullptr;
    HWND m_hOutlook = nullptr;
    HWND m_hNote = nullptr;
    HFONT m_hFont = nullptr;
    int m_lDpi = 96;
};

} // namespace ravlo
