// SPDX-License-Identifier: MIT
#include "ui/category/windows/ControlIds.h"
#include "windows/TestStation.h"

#include <gtest/gtest.h>

namespace ravlo::test
{

TEST(CategoryWindow, OpensWithTheStationsCategories)
{
    const HostWindow cHost;
    TestStation cStation;
    for (int i = 0; i < 20; ++i)
        cStation.cDataBase->Add(L"C:\\r" + std::to_wstring(i) + L".wav", L"Rock", 1 + i % 3);
    cStation.cDataBase->Add(L"C:\\j.wav", L"Jazz", 1);
    cStation.cDataBase->Add(L"C:\\p.wav", L"Pop", 1);
    cStation.Populate();
    CategoryRequest request;
    request.bAllowNew = true;
    request.cMainCatChosen = cStation.MainCat(L"Rock");
    request.cSubCatChosen = cStation.Level(L"Rock", 2);
    std::int32_t lAnswer = 0;
    WhileOpen([&] { lAnswer = cStation.cSchedMan->ShowCatUI(request); },
              [&](const User& user)
              {
                  const HWND hWindow = user.WaitFor(sfrmCatClass);
                  user.Shot(hWindow, L"slice");
                  user.ClickTab(user.Control(hWindow, eIdTabStrip1), 1);
                  user.Shot(hWindow, L"slice2");
                  user.Key(VK_ESCAPE);
                  user.WaitUntilGone(hWindow);
              });
    EXPECT_EQ(lAnswer, lNotChosen);
}

} // namespace ravlo::test
