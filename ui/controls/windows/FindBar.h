// SPDX-License-Identifier: MIT
#pragma once

#include "ui/controls/FindBarView.h"
#include "ui/controls/windows/Handles.h"
#include "ui/controls/windows/Window.h"

#include <functional>
#include <string>
#include <windows.h>

namespace ravlo
{

// The controls of a find bar.
enum FindBarId : int
{
    eIdFindLabel = 400, // a magnifying glass, which names the field
    eIdFindQuery,
    eIdFindCount,
    eIdFindClose,
};

// A find bar above a list or tree, hidden at first: field, count and a cross that closes it.
class FindBar final : public Window, public FindBarView
{
public:
    struct Texts
    {
        const wchar_t* sName; // for screen readers
        const wchar_t* sCue;  // in the empty field
    };
    // OnTrouble is called inside the catch block when something fails in a message of the bar.
    FindBar(HWND hParent, int lId, const Texts& texts, std::function<void()> OnTrouble);
    ~FindBar() override;

    // Neither is owned. Precondition: both are set before the bar is shown.
    void SetListener(FindBarListener& cListener) { m_cListener = &cListener; }
    void SetList(HWND hList) noexcept { m_hList = hList; }
    // Called when the bar was shown or hidden: its parent lays out.
    std::function<void()> ShownChanged;

    // The font stays the caller's.
    void SetLook(HFONT hFont, int lDpi);
    // 0 while it is hidden.
    int Height() const;
    // Handles keys with a special meaning in the field; true when it did.
    bool OnKey(const MSG& message);
    bool HasFocus() const;

    // ---- FindBarView
    void ShowBar(bool bShow) override;
    void SetQuery(const std::wstring& sQuery) override;
    void SetCount(const std::wstring& sCount) override;
    void FocusQuery() override;
    void FocusList() override;
    void AskForStep() override;

private:
    LRESULT OnMessage(UINT lMessage, WPARAM wParam, LPARAM lParam) override;
    void OnException() noexcept override;
    void OnCommand(int lId, int lCode);
    void Draw(const DRAWITEMSTRUCT& item) const;
    void DrawGlass(HDC hDC, const RECT& place) const;
    void LayOut();

    std::function<void()> m_OnTrouble;
    FindBarListener* m_cListener = nullptr;
    HWND m_hList = nullptr;
    HWND m_hLabel = nullptr;
    HWND m_hQuery = nullptr;
    HWND m_hCount = nullptr;
    HWND m_hClose = nullptr;
    HFONT m_hFont = nullptr;
    UniqueFont m_hSymbols;
    int m_lDpi = 96;
    bool m_bShown = false;
    bool m_bSetting = false; // the presenter sets the text
};

} // namespace ravlo
