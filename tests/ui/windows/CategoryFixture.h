// SPDX-License-Identifier: MIT
#pragma once

#include "ui/category/windows/ControlIds.h"
#include "ui/windows/TestStation.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace ravlo::test
{

using Texts = std::vector<std::wstring>;

// The category window before a host's window, of a station with Rock (levels 1 and 3), Jazz (level 2) and
// NOCAT.
struct CategoryWindowTest : ::testing::Test
{
    CategoryWindowTest()
    {
        Add(L"a", L"Rock", 1, L"Zebra", L"Stripes");
        Add(L"b", L"Rock", 1, L"Apple", L"Core")->SetOpener(true);
        Add(L"c", L"Rock", 3, L"Mango", L"Stone");
        Add(L"d", L"Jazz", 2, L"Cool", L"Cat");
        Add(L"e", L"NOCAT", 1, L"No", L"Where");
        cState.Populate();
        request.bAllowNew = true;
    }
    std::shared_ptr<FakeCut> Add(const std::wstring& sKey, const std::wstring& sCategories, int lLevel,
                                 const std::wstring& sArtist, const std::wstring& sTitle)
    {
        const auto cCut = cState.cDataBase->Add(sKey, sCategories, lLevel);
        cCut->SetArtist(sArtist);
        cCut->SetTitle(sTitle);
        return cCut;
    }
    void StartOn(const std::wstring& sCat, int lLevel)
    {
        request.cMainCatChosen = cState.MainCat(sCat);
        request.cSubCatChosen = lLevel > 0 ? cState.Level(sCat, lLevel) : nullptr;
    }

    // Opens the window, lets the user act and closes it with Esc when it is still open. Returns its answer.
    std::int32_t Open(const std::function<void(const User&)>& drive)
    {
        return OpenWith([&] { return cState.cSchedMan->ShowCatUI(request); }, drive);
    }
    std::int32_t OpenWith(const std::function<std::int32_t()>& show,
                          const std::function<void(const User&)>& drive)
    {
        std::int32_t lAnswer = 0;
        WhileOpen([&] { lAnswer = show(); },
                  [&](const User& user) {
            hWindow = user.WaitFor(sfrmCatClass);
            drive(user);
            if (::IsWindow(hWindow))
                user.Key(VK_ESCAPE);
            user.WaitUntilGone(hWindow);
        });
        return lAnswer;
    }
    HWND At(int lId) const { return User::Control(hWindow, lId); }
    HWND Box(int lPane, int lId) const
    {
        return User::Control(User::Control(hWindow, lPane == 0 ? eIdpicRules0 : eIdpicRules1), lId);
    }
    std::shared_ptr<Cut> CutOf(std::size_t at) const { return cState.cDataBase->colCuts[at]; }
    // The texts of a list: all, and those selected.
    Texts Entries(int lId) const { return User::Entries(At(lId)); }
    Texts Selected(int lId) const { return User::Selected(At(lId)); }
    // A click on an entry of a list, by its position.
    void Pick(const User& user, int lId, int lEntry, int lModifier = 0) const
    {
        user.ClickEntry(At(lId), lEntry, lModifier);
    }
    void ClickTab(const User& user, int lTab) const { user.ClickTab(At(eIdTabStrip1), lTab); }
    bool RulesShown() const { return Shown(At(eIdTabStrip1)); }
    static BoxOnScreen Question(const std::wstring& sCat)
    {
        return YesNoOnScreen(L"Press No To Discard the Rule Changes You Made.",
                             L"Save the pending rules changes to: " + sCat);
    }

    HostWindow cHost;
    TestStation cState;
    CategoryRequest request;
    HWND hWindow = nullptr;
};

} // namespace ravlo::test
