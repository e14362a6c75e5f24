// SPDX-License-Identifier: MIT
#include "host/client/KeysWindow.h"

#include "ui/windows/Screenshot.h"
#include "ui/windows/User.h"

#include <gtest/gtest.h>

#include <commctrl.h>

namespace ravlo::test
{

TEST(KeysWindow, ListsEachKeyWithItsMeaningAndClosesByKeyAndMouse)
{
    LookLikeACurrentDesktop();
    for (const int lKey : {VK_ESCAPE, VK_RETURN, 0})
        WhileOpen([] { ShowKeysAndMouse(nullptr); },
                  [&](const User& user) {
            const HWND hDialog = user.WaitFor(L"#32770");
            EXPECT_EQ(User::Text(hDialog), L"Keys and mouse");
            const HWND hList = User::Control(hDialog, lKeysList);
            EXPECT_EQ(Send(hList, LVM_GETITEMCOUNT), static_cast<LRESULT>(KeysAndMouse().size()));
            EXPECT_EQ(user.FocusedWindow(), hList);
            if (lKey == 0)
            {
                user.Shot(hDialog, L"keys-and-mouse");
                user.Click(User::Control(hDialog, IDOK));
            }
            else
                user.Key(lKey);
            user.WaitUntilGone(hDialog);
        });
}

TEST(KeysWindow, EveryMeaningFitsItsColumn)
{
    WhileOpen([] { ShowKeysAndMouse(nullptr); },
              [&](const User& user) {
        const HWND hDialog = user.WaitFor(L"#32770");
        const HWND hList = User::Control(hDialog, lKeysList);
        constexpr int lMargins = 14; // left and right of a text together
        for (const KeyHelp& key : KeysAndMouse())
            for (const auto& [lColumn, sText] : {std::pair{0, key.sKey}, {1, key.sMeaning}})
            {
                const std::wstring sCell = sText ? sText : L"";
                EXPECT_LT(Send(hList, LVM_GETSTRINGWIDTHW, 0, sCell.c_str()) + lMargins,
                          Send(hList, LVM_GETCOLUMNWIDTH, lColumn))
                    << std::string(sCell.begin(), sCell.end());
            }
        user.Key(VK_ESCAPE);
    });
}

} // namespace ravlo::test
