// SPDX-License-Identifier: MIT
#pragma once

#include "ui/category/CatSelectorPresenter.h"
#include "ui/category/CatSelectorView.h"
#include "ui/category/CategoryFind.h"
#include "ui/controls/windows/FindBar.h"
#include "ui/controls/windows/Window.h"

#include <array>
#include <memory>
#include <string>
#include <vector>

namespace ravlo
{

// The category selector as a child window: three lists side by side, with their labels and filters.
class CatSelectorWindow final : public Window, private CatSelectorView
{
public:
    CatSelectorWindow(HWND hParent, int lId, ModScheduler& cMod);
    ~CatSelectorWindow() override;

    CatSelectorPresenter& Selector() noexcept { return m_cSelector; }

    // Lays out in a font and resolution; the font stays the caller's.
    void SetLook(HFONT hFont, int lDpi);
    // The smallest client size at which everything can be used.
    SIZE SmallestSize() const;
    // Whether EnableUI has set the hourglass, which the surrounding window must show too.
    bool ShowsHourglass() const noexcept { return m_bHourglass; }
    void FocusFirst() { Focus(SelectorControl::lstCat); }
    // Handles keys with a special meaning in its controls; true when it did.
    bool OnKey(const MSG& message);

private:
    void SetEntries(SelectorControl eList, const std::vector<std::wstring>& colEntries) override;
    std::wstring EntryText(SelectorControl eList, std::size_t entry) const override;
    std::optional<std::size_t> CurrentEntry(SelectorControl eList) const override;
    void SetCurrentEntry(SelectorControl eList, std::size_t entry) override;
    std::vector<std::size_t> SelectedEntries(SelectorControl eList) const override;
    void SelectEntry(SelectorControl eList, std::size_t entry, bool bSelect) override;
    void ClearSelection(SelectorControl eList) override;
    void Enable(SelectorControl eControl, bool bEnable) override;
    void Show(SelectorControl eControl, bool bShow) override;
    bool Visible(SelectorControl eControl) const override;
    bool Checked(SelectorControl eControl) const override;
    void Check(SelectorControl eControl, bool bCheck) override;
    void SetMatchText(const std::wstring& sText) override;
    void Focus(SelectorControl eControl) override;
    void Hourglass(bool bOn) override;

    LRESULT OnMessage(UINT lMessage, WPARAM wParam, LPARAM lParam) override;
    void OnException() noexcept override;
    void OnCommand(int lId, int lCode);
    bool OnType(const MSG& message);
    void OnContextMenu(POINT onScreen);
    CatSelectorView& Made(HWND hParent, int lId);
    void MakeControls();
    void LayOut();
    void FitHorizontally(SelectorControl eList) const;
    HWND Of(SelectorControl eControl) const { return m_hControls[static_cast<std::size_t>(eControl)]; }

    ModScheduler& m_cMod;
    std::unique_ptr<FindBar> m_cBar;
    HWND m_hCategoriesLabel = nullptr;
    HWND m_hLevelsLabel = nullptr;
    std::array<HWND, 7> m_hControls{};
    HWND m_hMatchLabel1 = nullptr; // the same as lblMatch, right before lstsongs1
    HFONT m_hFont = nullptr;
    int m_lDpi = 96;
    bool m_bHourglass = false;
    CatSelectorPresenter m_cSelector; // talks to the controls above from its first moment
    CategoryFind m_cFind;
};

} // namespace ravlo
