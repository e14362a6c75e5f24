// SPDX-License-Identifier: MIT
#pragma once

#include "modscheduler/ModScheduler.h"
#include "ui/category/frmCatView.h"
#include "ui/controls/windows/Window.h"

#include <array>
#include <functional>
#include <string>

namespace ravlo
{

// One of the two panes picRules: three boxes for minutes with their labels, a note, and in the category's
// pane the check box chkIgnore. It lies on a tab page and has its colour.
class RulesPaneWindow final : public Window
{
public:
    RulesPaneWindow(HWND hParent, RulesPane ePane, ModScheduler& cMod);
    ~RulesPaneWindow() override;

    // Raised by the user: lBox counts from 0 within the pane.
    std::function<void(int lBox)> BoxChanged;
    std::function<void()> IgnoreClick;

    std::wstring BoxText(int lBox) const;
    void SetBoxText(int lBox, const std::wstring& sText);
    void EnableBox(int lBox, bool bEnable);
    bool IgnoreChecked() const;
    void CheckIgnore(bool bCheck);

    void SetLook(HFONT hFont, int lDpi);
    // The height its contents take at a width.
    int HeightAt(int lWidth) const;

private:
    LRESULT OnMessage(UINT lMessage, WPARAM wParam, LPARAM lParam) override;
    void OnException() noexcept override;
    void EnableContents(bool bEnable);
    LRESULT OnColour(HDC hDC, HWND hControl, UINT lMessage);
    int Arrange(int lWidth, bool bMove) const;

    ModScheduler& m_cMod;
    std::array<HWND, 3> m_hLabels{};
    std::array<HWND, 3> m_hBoxes{};
    std::array<bool, 3> m_bBoxes{true, true, true}; // enabled, as long as the pane is
    HWND m_hIgnore = nullptr;                       // in the category's pane
    HWND m_hNote = nullptr;
    HFONT m_hFont = nullptr;
    int m_lDpi = 96;
};

} // namespace ravlo
