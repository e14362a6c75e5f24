// SPDX-License-Identifier: MIT
#pragma once

#include "modscheduler/ModScheduler.h"
#include "ui/controls/windows/Handles.h"
#include "ui/controls/windows/ModalLoop.h"
#include "ui/controls/windows/Window.h"
#include "ui/rotation/RotationListPresenter.h"
#include "ui/rotation/RotationListView.h"

#include <memory>
#include <string>
#include <vector>
#include <windows.h>

#include <commctrl.h>

namespace ravlo
{

// A resizable window with a heading, a list and a sentence about the chosen row. Ctrl+C copies all of it, F5
// reads it again, Esc closes.
class RotationListWindow final : public Window, private RotationListView
{
public:
    // hOwner: the window it stays in front of; null for none.
    RotationListWindow(HWND hOwner, ModScheduler& cMod, ListSource source);
    ~RotationListWindow() override;

    // Shows it until it is closed. Its size and place are remembered under sPlaceKey.
    void ShowModal(const std::wstring& sPlaceKey);

private:
    void SetTitle(const std::wstring& sTitle) override;
    void ShowPage(const ListPage& page, std::size_t chosen) override;
    void ShowSentence(const std::wstring& sText) override;
    void CopyText(const std::wstring& sText) override;
    void Close() override;

    LRESULT OnMessage(UINT lMessage, WPARAM wParam, LPARAM lParam) override;
    void OnException() noexcept override;
    void OnCommand(int lId);
    LRESULT OnNotify(NMHDR& header);
    void OnGetDispInfo(NMLVDISPINFOW& info);
    LRESULT OnCustomDraw(NMLVCUSTOMDRAW& draw) const;

    void MakeControls();
    void MakeColumns(const ListPage& page);
    void SetLook(int lDpi);
    void LayOut();
    void SizeColumns();
    SIZE SmallestClient() const;
    SIZE ButtonSize(HWND hButton) const;
    int HeadingHeight(int lWidth) const;
    int LineHeight() const;
    int px(int lAt96) const;
    // The list's first column is the one that names its rows; on the screen it keeps its place.
    int ListColumn(std::size_t column) const;
    LRESULT SendList(UINT lMessage, WPARAM wParam = 0, LPARAM lParam = 0) const;

    ModScheduler& m_cMod;
    UniqueAccelerators m_hAccelerators;
    UniqueFont m_hFont;
    UniqueFont m_hBold;
    int m_lDpi = 96;
    HWND m_hHeading = nullptr;
    HWND m_hList = nullptr;
    HWND m_hSentence = nullptr;
    HWND m_hCopy = nullptr;
    HWND m_hRefresh = nullptr;
    HWND m_hClose = nullptr;
    const ListPage* m_page = nullptr; // the presenter's, once shown
    std::wstring m_sCell;             // the text last given to the list
    std::unique_ptr<ModalLoop> m_cLoop;
    RotationListPresenter m_cPresenter;
};

} // namespace ravlo
