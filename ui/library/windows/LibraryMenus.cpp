// SPDX-License-Identifier: MIT
#include "ui/library/windows/LibraryMenus.h"

#include "ui/library/windows/ControlIds.h"

#include <cwchar>

namespace ravlo
{

namespace
{

using enum LibraryCommand;

constexpr int lCategoriesPlace = 2; // of the categories' menu in the bar

void Add(HMENU hMenu, LibraryCommand eCommand, const std::wstring& sCaption)
{
    ::AppendMenuW(hMenu, MF_STRING, static_cast<UINT_PTR>(IdOf(eCommand)), sCaption.c_str());
}

// As a menu needs it to show "&" as it is.
std::wstring WithoutMnemonics(const std::wstring& sText)
{
    std::wstring sDoubled;
    for (const wchar_t c : sText)
        sDoubled.append(c == L'&' ? 2 : 1, c);
    return sDoubled;
}

// Replaces the caption in front of the item's key. Captions are short enough for the buffer with every "&"
// doubled.
void SetCaption(HMENU hMenu, UINT lId, const std::wstring& sCaption)
{
    wchar_t sBefore[200] = L"";
    ::GetMenuStringW(hMenu, lId, sBefore, ARRAYSIZE(sBefore), MF_BYCOMMAND);
    const wchar_t* const sKey = std::wcschr(sBefore, L'\t');
    std::wstring sText = sCaption + (sKey ? sKey : L"");
    MENUITEMINFOW info{};
    info.cbSize = sizeof info;
    info.fMask = MIIM_STRING;
    info.dwTypeData = sText.data();
    ::SetMenuItemInfoW(hMenu, lId, FALSE, &info);
}

HMENU AddSubMenu(HMENU hMenu, const wchar_t* sCaption)
{
    const HMENU hSub = ::CreatePopupMenu();
    ::AppendMenuW(hMenu, MF_POPUP, reinterpret_cast<UINT_PTR>(hSub), sCaption);
    return hSub;
}

} // namespace

// The blanks in front of the keys keep them apart from the captions on systems that leave no room there.
UniqueMenu LibraryMenuBar()
{
    UniqueMenu hBar(::CreateMenu());
    const HMENU mnuEdit = AddSubMenu(hBar.get(), L"&Edit");
    const HMENU mnuTree = AddSubMenu(mnuEdit, L"Category Tree CheckBoxes...");
    Add(mnuTree, mnuSelectAllTree, L"Select &All");
    Add(mnuTree, mnuSelectNoneTree, L"Select &None");
    Add(mnuTree, mnuSelectInvertTree, L"&Invert Selection");
    const HMENU mnuGrid = AddSubMenu(mnuEdit, L"Grid Selections...");
    Add(mnuGrid, mnuSelectAllGrid, L"Select &All\t  Ctrl+A");
    Add(mnuGrid, mnuSelectNoneGrid, L"Select &None");
    Add(mnuGrid, mnuInvertSelectionGrid, L"&Invert Grid Selection");
    const HMENU mnuSchedLib = AddSubMenu(hBar.get(), L"Ac&tions");
    Add(mnuSchedLib, mnuReloadAll, L"Reload Everything");
    Add(mnuSchedLib, mnuSave, L"Save / Re-Save All\t  Ctrl+S");
    Add(mnuSchedLib, mnuExit, L"Exit\t  Alt+F4");
    const HMENU mnuCats = AddSubMenu(hBar.get(), L"&Categories");
    Add(mnuCats, mnuCatUI, L"Show Category UI");
    const HMENU mnuCatNewMain = AddSubMenu(mnuCats, L"New...");
    Add(mnuCatNewMain, mnuCatNew, L"Category");
    Add(mnuCatNewMain, mnuCatLevelNew, L"Category Level");
    Add(mnuCats, mnuShuffle, L"Shuffle Checked Categories");
    Add(mnuCats, mnuCatDelete, L"Delete Checked Categories");
    const HMENU mnuRotation = AddSubMenu(hBar.get(), L"&Rotation");
    Add(mnuRotation, mnuUndo, L"Undo\t  Ctrl+Z");
    Add(mnuRotation, mnuRedo, L"Redo\t  Ctrl+Y");
    ::AppendMenuW(mnuRotation, MF_SEPARATOR, 0, nullptr);
    Add(mnuRotation, mnuSpread, L"&Spread Checked Categories");
    Add(mnuRotation, mnuFairRotation, L"&Fair Rotation");
    ::AppendMenuW(mnuRotation, MF_SEPARATOR, 0, nullptr);
    Add(mnuRotation, mnuExplainNext, L"&Explain Next Cut");
    Add(mnuRotation, mnuNextCuts, L"&Next 20 Cuts");
    Add(mnuRotation, mnuHealth, L"Rotation &Health");
    Add(hBar.get(), mnuHelp, L"&Help");
    return hBar;
}

HMENU CategoriesMenu(HMENU hBar) noexcept { return ::GetSubMenu(hBar, lCategoriesPlace); }

TreePopUp::TreePopUp(HMENU hCategories) : m_hMenu(hCategories), m_lBefore(::GetMenuItemCount(hCategories))
{
    ::AppendMenuW(m_hMenu, MF_SEPARATOR, 0, nullptr);
    Add(m_hMenu, mnuRename, L"Rename Category\t  F2");
}

TreePopUp::~TreePopUp()
{
    while (::GetMenuItemCount(m_hMenu) > m_lBefore)
        ::RemoveMenu(m_hMenu, static_cast<UINT>(m_lBefore), MF_BYPOSITION);
}

void UpdateMenu(HMENU hMenu, const std::function<MenuItem(LibraryCommand)>& itemOf)
{
    for (int lPlace = ::GetMenuItemCount(hMenu); lPlace-- > 0;)
    {
        const UINT lId = ::GetMenuItemID(hMenu, lPlace);
        const std::optional<LibraryCommand> eCommand = CommandOf(static_cast<int>(lId));
        if (!eCommand)
            continue;
        const MenuItem item = itemOf(*eCommand);
        ::EnableMenuItem(hMenu, lId, item.bEnabled ? MF_ENABLED : MF_GRAYED);
        ::CheckMenuItem(hMenu, lId, item.bTicked ? MF_CHECKED : MF_UNCHECKED);
        if (!item.sText.empty())
            SetCaption(hMenu, lId, WithoutMnemonics(item.sText));
    }
}

void EnableMenuBar(HWND hWindow, bool bEnable) noexcept
{
    const HMENU hBar = ::GetMenu(hWindow);
    for (int lPlace = ::GetMenuItemCount(hBar); lPlace-- > 0;)
        ::EnableMenuItem(hBar, static_cast<UINT>(lPlace), MF_BYPOSITION | (bEnable ? MF_ENABLED : MF_GRAYED));
    ::DrawMenuBar(hWindow);
}

UniqueAccelerators LibraryAccelerators()
{
    // Alt+F4 is here because not every tree view hands it on.
    ACCEL keys[] = {{FVIRTKEY, VK_F1, static_cast<WORD>(IdOf(mnuHelp))},
                    {FVIRTKEY | FALT, VK_F4, static_cast<WORD>(IdOf(mnuExit))},
                    {FVIRTKEY | FCONTROL, 'A', static_cast<WORD>(IdOf(mnuSelectAllGrid))},
                    {FVIRTKEY | FCONTROL, 'S', static_cast<WORD>(IdOf(mnuSave))},
                    {FVIRTKEY | FCONTROL, 'Y', static_cast<WORD>(IdOf(mnuRedo))},
                    {FVIRTKEY | FCONTROL, 'Z', static_cast<WORD>(IdOf(mnuUndo))}};
    return UniqueAccelerators(::CreateAcceleratorTableW(keys, ARRAYSIZE(keys)));
}

std::optional<std::size_t> ChooseFromPopUp(HWND hWindow, POINT onScreen,
                                           const std::vector<std::wstring>& colItems)
{
    const UniqueMenu hMenu(::CreatePopupMenu());
    UINT_PTR lId = 0;
    for (const std::wstring& sItem : colItems)
        ::AppendMenuW(hMenu.get(), MF_STRING, ++lId, WithoutMnemonics(sItem).c_str());
    ::SetForegroundWindow(hWindow); // else a click elsewhere does not dismiss it
    const BOOL lChosenId =
        ::TrackPopupMenuEx(hMenu.get(), TPM_RETURNCMD | TPM_RIGHTBUTTON, static_cast<int>(onScreen.x),
                           static_cast<int>(onScreen.y), hWindow, nullptr);
    return lChosenId > 0 ? std::optional(static_cast<std::size_t>(lChosenId - 1)) : std::nullopt;
}

} // namespace ravlo
