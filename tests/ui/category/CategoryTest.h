// SPDX-License-Identifier: MIT
#pragma once

#include "scheduler/clsSchedMan.h"
#include "support/EngineTest.h"
#include "support/FakeDataBase.h"
#include "ui/category/CatSelectorPresenter.h"
#include "ui/category/ScreenSelector.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace ravlo::test
{

using enum SelectorControl;
using Boxes = std::vector<ShownBox>;

// A station with Rock (levels 1 and 3), Jazz (level 2) and NOCAT (level 1), and a selector that shows it.
struct CategoryTest : ::testing::Test
{
    CategoryTest()
    {
        Add(L"a", L"Rock", 1, L"Zebra", L"Stripes");
        Add(L"b", L"Rock", 1, L"Apple", L"Core")->SetOpener(true);
        Add(L"c", L"Rock", 3, L"Mango", L"Stone");
        Add(L"d", L"Jazz", 2, L"Cool", L"Cat");
        Add(L"e", L"NOCAT", 1, L"No", L"Where");
        cSchedMan->PopulateFromDataBase(cDataBase, sRadio);
        cPorts.cMessages.Boxes.clear();
    }

    std::shared_ptr<FakeCut> Add(const std::wstring& sKey, const std::wstring& sCategories, int lLevel,
                                 const std::wstring& sArtist, const std::wstring& sTitle)
    {
        const auto cCut = cDataBase->Add(sKey, sCategories, lLevel);
        cCut->SetArtist(sArtist);
        cCut->SetTitle(sTitle);
        return cCut;
    }
    std::shared_ptr<FakeCut> CutOf(std::size_t at) const
    {
        return std::static_pointer_cast<FakeCut>(cDataBase->colCuts[at]);
    }
    std::shared_ptr<clsCat> MainCat(const std::wstring& sName) const
    {
        const std::shared_ptr<clsCat>* cFound = cSchedMan->colMainCats()->Find(CategoryKey(sName, 0));
        return cFound ? *cFound : nullptr;
    }
    std::shared_ptr<clsCat> Level(const std::wstring& sName, int lLevel) const
    {
        return MainCat(sName)->SubCat(lLevel);
    }
    Boxes& Shown() { return cPorts.cMessages.Boxes; }

    // What the user does in the lists.
    void ClickCat(const std::wstring& sName, bool bCtrl = false)
    {
        ScreenSelector::List& list = cScreen.lists[lstCat];
        list.current = At(lstCat, sName);
        if (!bCtrl)
            list.lSelected.clear();
        list.lSelected.insert(*list.current);
        cSelector.CatClick();
    }
    void ClickLevel(const std::wstring& sText)
    {
        cScreen.SetCurrentEntry(lstlvl, At(lstlvl, sText));
        cSelector.LevelClick();
    }
    void ClickOpener(bool bChecked)
    {
        cScreen.checked[chkOpener] = bChecked;
        cSelector.OpenerClick();
    }
    void ClickSorted(bool bChecked)
    {
        cScreen.checked[chkSortedSongs] = bChecked;
        cSelector.SortedSongsClick();
    }
    std::size_t At(SelectorControl eList, const std::wstring& sText)
    {
        const Texts colEntries = cScreen.Entries(eList);
        const auto it = std::find(colEntries.begin(), colEntries.end(), sText);
        EXPECT_NE(it, colEntries.end()) << std::string(sText.begin(), sText.end());
        return static_cast<std::size_t>(it - colEntries.begin());
    }

    RadioPorts cPorts;
    ModScheduler cMod{cPorts.Ports()};
    std::shared_ptr<FakeDataBase> cDataBase = std::make_shared<FakeDataBase>();
    std::shared_ptr<clsSchedMan> cSchedMan = std::make_shared<clsSchedMan>(cMod);
    ScreenSelector cScreen;
    CatSelectorPresenter cSelector{cScreen, cMod};
};

} // namespace ravlo::test
