// SPDX-License-Identifier: MIT
#include "ui/controls/windows/PopUpMenu.h"

#include "ui/controls/windows/Handles.h"

namespace ravlo
{

namespace
{

// An item's command is its place in colChosen, from 1.
UniqueMenu MenuOf(const PopUpMenu& menu, std::vector<const PopUpItem*>& colChosen)
{
    UniqueMenu hMenu(::CreatePopupMenu());
    for (const PopUpItem& item : menu)
    {
        const UINT lState = (item.bEnabled ? MF_ENABLED : MF_GRAYED) | (item.bChecked ? MF_CHECKED : 0u);
        if (item.sCaption.empty())
            ::AppendMenuW(hMenu.get(), MF_SEPARATOR, 0, nullptr);
        else if (!item.colItems.empty())
        {
            UniqueMenu hBelow = MenuOf(item.colItems, colChosen);
            const auto lBelow = reinterpret_cast<UINT_PTR>(hBelow.get());
            if (::AppendMenuW(hMenu.get(), MF_POPUP | lState, lBelow, item.sCaption.c_str()))
                hBelow.release(); // the menu's own now
        }
        else
        {
            colChosen.push_back(&item);
            ::AppendMenuW(hMenu.get(), MF_STRING | lState, colChosen.size(), item.sCaption.c_str());
        }
    }
    return hMenu;
}

} // namespace

const PopUpItem* ChooseFromMenu(HWND hWindow, POINT onScreen, const PopUpMenu& menu)
{
    std::vector<const PopUpItem*> colChosen;
    const UniqueMenu hMenu = MenuOf(menu, colChosen);
    ::SetForegroundWindow(hWindow); // else a click elsewhere does not dismiss it
    const BOOL lChosen =
        ::TrackPopupMenuEx(hMenu.get(), TPM_RETURNCMD | TPM_RIGHTBUTTON, static_cast<int>(onScreen.x),
                           static_cast<int>(onScreen.y), hWindow, nullptr);
    return lChosen > 0 ? colChosen[static_cast<std::size_t>(lChosen - 1)] : nullptr;
}

} // namespace ravlo
