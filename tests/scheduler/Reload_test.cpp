// SPDX-License-Identifier: MIT
// A population while the station is on air: what is picked meanwhile, what fails, and which folder things go
// to.
#include "support/SchedulerTest.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <utility>

namespace ravlo::test
{
namespace
{

const std::wstring sRead = L"Done: Got Scheduler [from file] Info for: ";

// Rock and Pop with four cuts each, whose orders are saved.
class ReloadTest : public testing::Test
{
protected:
    ReloadTest()
    {
        cPorts.cFiles.MakeFolders(L"C:\\Other");
        for (const wchar_t* sCat : {L"Rock", L"Pop"})
            for (int lCut = 1; lCut <= 4; ++lCut)
                cLibrary.cDataBase->Add(sCat + std::to_wstring(lCut), sCat, 1);
        cLibrary.Populate();
        cLibrary.cSchedMan->SetRotatesAllowed(true);
        EXPECT_TRUE(cLibrary.cSchedMan->SaveHistoryAndOrdering(nullptr));
    }

    // The key of the cut that goes on air.
    std::wstring Pick(bool bSave, const std::wstring& sCat = L"Rock")
    {
        return cLibrary.Pick(sCat + L"\t1", bSave);
    }
    // Calls back once, at the first event of that text; Reached tells whether it came.
    void At(const std::wstring& sLine, std::function<void()> action)
    {
        m_bReached = false;
        cLibrary.cHost.OnEvent = [this, sLine, action = std::move(action)](const std::wstring& sSaid) {
            if (m_bReached || !sSaid.starts_with(sLine))
                return;
            m_bReached = true;
            action();
        };
    }
    void Reload(const std::wstring& sAppPath = sRadio)
    {
        cLibrary.Populate(sAppPath);
        cLibrary.cHost.OnEvent = nullptr;
        EXPECT_TRUE(m_bReached);
    }
    Keys OrderAfterARestart()
    {
        cLibrary.Restart();
        return cLibrary.Order(L"Rock", 1);
    }

    RadioPorts cPorts;
    Library cLibrary{cPorts};
    Boxes& boxes = cPorts.cMessages.Boxes;

private:
    bool m_bReached = true;
};

// ---- picks during a reload

TEST_F(ReloadTest, APickAfterItsFileWasReadIsNotPlayedAgain)
{
    At(sRead + L"Rock", [&] { EXPECT_EQ(Pick(true), L"Rock1"); });
    Reload();
    EXPECT_EQ(cLibrary.Order(L"Rock", 1), (Keys{L"Rock2", L"Rock3", L"Rock4", L"Rock1"}));
    EXPECT_EQ(Pick(true), L"Rock2");
    EXPECT_EQ(OrderAfterARestart(), (Keys{L"Rock3", L"Rock4", L"Rock1", L"Rock2"}));
}

TEST_F(ReloadTest, APickBeforeItsFileWasReadIsNotPlayedAgain)
{
    for (const bool bSave : {true, false})
    {
        At(L"Start 8: Creating Scheduler Items", [&] { Pick(bSave); });
        Reload();
    }
    EXPECT_EQ(cLibrary.Order(L"Rock", 1), (Keys{L"Rock3", L"Rock4", L"Rock1", L"Rock2"}));
}

TEST_F(ReloadTest, PicksThatAreSavedLaterSurviveAReload)
{
    EXPECT_EQ(Pick(false), L"Rock1");
    Reload();
    EXPECT_EQ(cPorts.cFiles.Get(SifPath(L"Rock")).substr(510, 5), "Rock2") << "saved before it is read";
    At(sRead + L"Pop", [&] { EXPECT_EQ(Pick(false), L"Rock2"); });
    Reload();
    EXPECT_EQ(cLibrary.Order(L"Rock", 1), (Keys{L"Rock3", L"Rock4", L"Rock1", L"Rock2"}));
    EXPECT_EQ(cLibrary.Order(L"Pop", 1), (Keys{L"Pop1", L"Pop2", L"Pop3", L"Pop4"}));
    Reload();
    EXPECT_EQ(OrderAfterARestart(), (Keys{L"Rock3", L"Rock4", L"Rock1", L"Rock2"}));
}

TEST_F(ReloadTest, APickThatCouldNotBeSavedSurvivesAReload)
{
    cPorts.cFiles.SetReadOnly(SifPath(L"Rock"));
    EXPECT_EQ(Pick(true), L"Rock1");
    At(sRead + L"Rock", [&] { EXPECT_EQ(Pick(true), L"Rock2"); });
    Reload();
    EXPECT_EQ(cLibrary.Order(L"Rock", 1), (Keys{L"Rock3", L"Rock4", L"Rock1", L"Rock2"}));
    cPorts.cFiles.SetReadOnly(SifPath(L"Rock"), false);
    cPorts.cClock.Advance(2000);
    EXPECT_EQ(Pick(true), L"Rock3");
    EXPECT_EQ(OrderAfterARestart(), (Keys{L"Rock4", L"Rock1", L"Rock2", L"Rock3"}));
}

TEST_F(ReloadTest, AnUnsavedPickSurvivesAnotherSpellingOfItsCategory)
{
    cPorts.cFiles.SetReadOnly(SifPath(L"Rock"));
    EXPECT_EQ(Pick(true), L"Rock1");
    for (std::size_t cut = 0; cut < 4; ++cut)
        cLibrary.cDataBase->colCuts[cut]->SetCategoryText(L"ROCK");
    Reload();
    EXPECT_EQ(cLibrary.MainCatNames(), (Lines{L"ROCK", L"Pop"}));
    EXPECT_EQ(cLibrary.Order(L"Rock", 1), (Keys{L"Rock2", L"Rock3", L"Rock4", L"Rock1"}));
}

TEST_F(ReloadTest, APickInsideASaveSurvivesAReload)
{
    At(L"Start 4: Saving info for: Rock", [&] { EXPECT_EQ(Pick(false), L"Rock1"); });
    EXPECT_TRUE(cLibrary.cSchedMan->SaveHistoryAndOrdering(cLibrary.MainCat(L"Rock")));
    Reload();
    EXPECT_EQ(cLibrary.Order(L"Rock", 1), (Keys{L"Rock2", L"Rock3", L"Rock4", L"Rock1"}));
}

TEST_F(ReloadTest, CutsThatAreNewInTheDatabaseComeFirst)
{
    cLibrary.cDataBase->Add(L"new1", L"Rock", 1);
    cLibrary.cDataBase->Add(L"new2", L"Rock", 1);
    cLibrary.cDataBase->Remove(*cLibrary.cDataBase->colCuts[2]); // Rock3
    At(sRead + L"Rock", [&] { EXPECT_EQ(Pick(true), L"Rock1"); });
    Reload();
    EXPECT_EQ(cLibrary.Order(L"Rock", 1), (Keys{L"new1", L"new2", L"Rock2", L"Rock4", L"Rock1"}));
}

TEST_F(ReloadTest, AnOrderPutIntoTheFileByHandIsTakenByAReload)
{
    Pick(true);
    cPorts.cFiles.Put(SifPath(L"Rock"),
                      SifCut("Rock4", 1) + SifCut("Rock3", 1) + SifCut("Rock2", 1) + SifCut("Rock1", 1));
    Reload();
    EXPECT_EQ(cLibrary.Order(L"Rock", 1), (Keys{L"Rock4", L"Rock3", L"Rock2", L"Rock1"}));
}

TEST_F(ReloadTest, AnotherFolderKeepsItsOwnOrders)
{
    cPorts.cFiles.Put(L"C:\\Other\\Scheduler\\History_and_Ordering\\Rock.sif",
                      SifCut("Rock4", 1) + SifCut("Rock3", 1) + SifCut("Rock2", 1) + SifCut("Rock1", 1));
    At(sRead + L"Rock", [&] { EXPECT_EQ(Pick(false), L"Rock1"); });
    Reload(L"C:\\Other");
    EXPECT_EQ(cLibrary.Order(L"Rock", 1), (Keys{L"Rock4", L"Rock3", L"Rock2", L"Rock1"}));
    EXPECT_EQ(OrderAfterARestart(), (Keys{L"Rock2", L"Rock3", L"Rock4", L"Rock1"})) << "back in the first";
}

TEST_F(ReloadTest, WhatAMoveCouldNotSaveIsSavedInItsFolderLater)
{
    for (const bool bBack : {true, false}) // the end saves it, or the way back
    {
        const Keys colBefore = cLibrary.Order(L"Rock", 1);
        cPorts.cFiles.SetReadOnly(SifPath(L"Rock"));
        cPorts.cFiles.SetReadOnly(SifPath(L"Pop"));
        EXPECT_EQ(Pick(true), colBefore[0]);
        cLibrary.cSchedMan->DeleteCats({cLibrary.MainCat(L"Pop")});
        Reload(L"C:\\Other");
        cPorts.cFiles.SetReadOnly(SifPath(L"Rock"), false);
        cPorts.cFiles.SetReadOnly(SifPath(L"Pop"), false);
        if (bBack)
            Reload();
        else
            cLibrary.Restart();
        EXPECT_EQ(cLibrary.Order(L"Rock", 1), (Keys{colBefore[1], colBefore[2], colBefore[3], colBefore[0]}));
        EXPECT_FALSE(cPorts.cFiles.FileExists(SifPath(L"Pop")));
        cLibrary.cSchedMan->SetRotatesAllowed(true);
        for (std::size_t cut = 4; cut < 8; ++cut)
            cLibrary.cDataBase->colCuts[cut]->SetCategoryText(L"Pop");
        Reload();
        EXPECT_TRUE(cLibrary.cSchedMan->SaveHistoryAndOrdering(nullptr));
    }
}

TEST_F(ReloadTest, WhatAMoveCouldNotSaveYieldsToNewerOrders)
{
    cPorts.cFiles.SetReadOnly(SifPath(L"Rock"));
    EXPECT_EQ(Pick(true), L"Rock1");
    Reload(L"C:\\Other");
    auto cOther = std::make_shared<clsSchedMan>(cLibrary.cMod); // which has its own station there
    cOther->PopulateFromDataBase(cLibrary.cDataBase, sRadio);
    cPorts.cFiles.SetReadOnly(SifPath(L"Rock"), false);
    EXPECT_TRUE(cOther->SaveHistoryAndOrdering(nullptr));
    const std::string newer = cPorts.cFiles.Get(SifPath(L"Rock"));
    cLibrary.End();
    EXPECT_EQ(cPorts.cFiles.Get(SifPath(L"Rock")), newer);
}

TEST_F(ReloadTest, AnInterruptedChangeIsLoggedOnce)
{
    cPorts.cFiles.Put(SifPath(L"Rock"), SifMarker(1) + cPorts.cFiles.Get(SifPath(L"Rock")));
    const auto interruptions = [&] {
        const Lines colLog = cPorts.LogMessages();
        return std::count_if(colLog.begin(), colLog.end(), [](const std::wstring& sLine) {
            return sLine.find(L"interrupted") != std::wstring::npos;
        });
    };
    Reload();
    Reload();
    EXPECT_EQ(interruptions(), 1);
    EXPECT_TRUE(cLibrary.cSchedMan->SaveHistoryAndOrdering(nullptr));
    cPorts.cFiles.Put(SifPath(L"Rock"), SifMarker(1) + cPorts.cFiles.Get(SifPath(L"Rock")));
    Reload();
    EXPECT_EQ(interruptions(), 2) << "another one";
}

// ---- files that cannot be read, or not be written, during a reload

TEST_F(ReloadTest, AnOrderWhoseFileCannotBeReadStaysAsItWas)
{
    EXPECT_EQ(Pick(true), L"Rock1");
    const Keys colOrder{L"Rock2", L"Rock3", L"Rock4", L"Rock1"};
    cPorts.cFiles.SetUnreadable(SifPath(L"Rock"), error::DeviceIo);
    Reload();
    EXPECT_EQ(boxes, Boxes{CriticalBox(L"Error in ApplyHistory", L"57 Device I/O error: Rock")});
    EXPECT_EQ(cLibrary.Order(L"Rock", 1), colOrder);
    cPorts.cFiles.SetUnreadable(SifPath(L"Rock"), 0);
    cPorts.cFiles.SetLocked(SifPath(L"Rock"), -1);
    Reload();
    EXPECT_EQ(cLibrary.Order(L"Rock", 1), colOrder);
    cPorts.cFiles.SetLocked(SifPath(L"Rock"), 0);
    EXPECT_EQ(OrderAfterARestart(), colOrder);
}

TEST_F(ReloadTest, AnOrderWhoseFileIsNotUnderstoodStaysAsItWas)
{
    EXPECT_EQ(Pick(true), L"Rock1");
    const std::string saved = cPorts.cFiles.Get(SifPath(L"Rock"));
    for (const std::string& bytes :
         {saved.substr(1), SifCut("Rock1", 1) + SifCut("Rock2", 9) + SifCut("Rock3", 1),
          SifMarker(-2) + SifCut("Rock1", 1)})
    {
        cPorts.cFiles.Put(SifPath(L"Rock"), bytes);
        Reload();
        EXPECT_EQ(cLibrary.Order(L"Rock", 1), (Keys{L"Rock2", L"Rock3", L"Rock4", L"Rock1"}));
    }
}

TEST_F(ReloadTest, AnUnreadableFileOfAnotherFolderTakesNoOrderFromThisOne)
{
    EXPECT_EQ(Pick(true), L"Rock1");
    cPorts.cFiles.Put(L"C:\\Other\\Scheduler\\History_and_Ordering\\Rock.sif", "damaged");
    Reload(L"C:\\Other");
    EXPECT_EQ(cLibrary.Order(L"Rock", 1), (Keys{L"Rock1", L"Rock2", L"Rock3", L"Rock4"}));
}

TEST_F(ReloadTest, ALevelWhoseSaveFailedSurvivesAReload)
{
    cPorts.cFiles.SetReadOnly(SifPath(L"Rock"));
    cPorts.cMessages.Typed = {L"7"};
    EXPECT_TRUE(cLibrary.cSchedMan->CreateCatLevel(cLibrary.MainCat(L"Rock")));
    Reload();
    ASSERT_TRUE(cLibrary.Level(L"Rock", 7));
    EXPECT_EQ(cLibrary.Level(L"Rock", 7)->MainCat(), cLibrary.MainCat(L"Rock"));
    cPorts.cFiles.SetReadOnly(SifPath(L"Rock"), false);
    cPorts.cClock.Advance(2000);
    EXPECT_EQ(Pick(true), L"Rock1");
    cLibrary.Restart();
    EXPECT_TRUE(cLibrary.Level(L"Rock", 7));
}

TEST_F(ReloadTest, ADeletedLevelWhoseSaveFailedStaysDeleted)
{
    cPorts.cMessages.Typed = {L"7"};
    EXPECT_TRUE(cLibrary.cSchedMan->CreateCatLevel(cLibrary.MainCat(L"Rock")));
    cPorts.cFiles.SetReadOnly(SifPath(L"Rock"));
    EXPECT_FALSE(cLibrary.cSchedMan->DeleteCats({cLibrary.Level(L"Rock", 7)}));
    cLibrary.cDataBase->Add(L"new", L"Rock", 3);
    Reload();
    EXPECT_FALSE(cLibrary.Level(L"Rock", 7));
    EXPECT_EQ(cLibrary.Order(L"Rock", 3), Keys{L"new"}) << "a level with cuts stays";
}

TEST_F(ReloadTest, ANameThatCanBeNoFilesNameKeepsNoOtherWaiting)
{
    cLibrary.cDataBase->Add(L"odd1", L"A?C", 1);
    cLibrary.cDataBase->Add(L"odd2", L"A?C", 1);
    Reload();
    EXPECT_EQ(Pick(false, L"A?C"), L"odd1");
    Reload();
    EXPECT_EQ(cLibrary.Order(L"A?C", 1), (Keys{L"odd2", L"odd1"}));
    cPorts.cClock.Advance(2000);
    cPorts.cFiles.SetReadOnly(SifPath(L"Rock"));
    EXPECT_EQ(Pick(true), L"Rock1");
    cPorts.cFiles.SetReadOnly(SifPath(L"Rock"), false);
    cPorts.cClock.Advance(2000);
    EXPECT_EQ(Pick(true, L"Pop"), L"Pop1");
    EXPECT_EQ(cPorts.cFiles.Get(SifPath(L"Rock")).substr(510, 5), "Rock2");
}

// ---- the folder

TEST_F(ReloadTest, AnotherManagersPopulationChangesNothingForThisOne)
{
    cPorts.cFiles.Put(sMainCatsPath, "\r\nRock\r\nPop\r\nJazz");
    auto cOther = std::make_shared<clsSchedMan>(cLibrary.cMod);
    auto cOtherDataBase = std::make_shared<FakeDataBase>();
    cOtherDataBase->Add(L"z", L"Zydeco", 1);
    At(L"Start 8", [&] { cOther->PopulateFromDataBase(cOtherDataBase, L"C:\\Other"); });
    cPorts.cFiles.Put(SifPath(L"Rock"),
                      SifCut("Rock4", 1) + SifCut("Rock3", 1) + SifCut("Rock2", 1) + SifCut("Rock1", 1));
    Reload();
    EXPECT_EQ(cLibrary.MainCatNames(), (Lines{L"Rock", L"Pop", L"Jazz"})) << "its own folder's list";
    EXPECT_EQ(Pick(true), L"Rock4");
    EXPECT_TRUE(cLibrary.cSchedMan->SaveCatNames());
    EXPECT_EQ(cPorts.cFiles.Get(SifPath(L"Rock")),
              SifCut("Rock3", 1) + SifCut("Rock2", 1) + SifCut("Rock1", 1) + SifCut("Rock4", 1));
    EXPECT_EQ(cPorts.cFiles.Get(sMainCatsPath), "\r\nRock\r\nPop\r\nJazz");
    EXPECT_TRUE(cOther->SaveCatNames());
    EXPECT_EQ(cPorts.cFiles.Get(L"C:\\Other\\Scheduler\\MainCats.txt"), "\r\nZydeco");
    for (const std::wstring& sPath : cPorts.cFiles.Paths())
        EXPECT_FALSE(sPath.starts_with(L"C:\\Other") && sPath.ends_with(L".sif"))
            << testing::PrintToString(sPath);
}

TEST_F(ReloadTest, AfterAFailedPopulationAllStaysInTheFolderOfTheTree)
{
    cLibrary.cMod.SetGlobalArtistSepMins(11);
    cPorts.cFiles.Put(L"C:\\Other\\Scheduler\\SchedulerSettings.dat", "1\r\n2\r\n3\r\n");
    cLibrary.cDataBase->bAllCutsFails = true;
    cLibrary.Populate(L"C:\\Other");
    EXPECT_EQ(boxes,
              Boxes{CriticalBox(L"Error in PopulateFromDataBase [cSchedMan]", L"57 Device I/O error")});
    EXPECT_EQ(cLibrary.cSchedMan->AppPath(), sRadio);
    EXPECT_EQ(cLibrary.cMod.GlobalArtistSepMins(), 11);
    Pick(true);
    EXPECT_EQ(cPorts.cFiles.Get(SifPath(L"Rock")).substr(510, 5), "Rock2");
    cLibrary.Level(L"Rock", 1)->Rules()->SetArtistSepMins(5);
    EXPECT_TRUE(cPorts.cFiles.FileExists(L"C:\\Radio\\Scheduler\\Rules\\Rock\u00AC\u00AC\u00AC1.rls"));
    cLibrary.cMod.SetGlobalArtistSepMins(12);
    EXPECT_EQ(cPorts.cFiles.Get(L"C:\\Other\\Scheduler\\SchedulerSettings.dat"), "1\r\n2\r\n3\r\n");
}

TEST_F(ReloadTest, SeparationsStayWhenTheirFileCannotBeRead)
{
    cLibrary.cMod.SetGlobalArtistSepMins(11);
    cPorts.cFiles.SetUnreadable(sSettingsPath, error::PermissionDenied);
    cLibrary.Populate();
    EXPECT_EQ(cLibrary.cMod.GlobalArtistSepMins(), 11);
    cLibrary.Restart();
    EXPECT_EQ(cLibrary.cMod.GlobalArtistSepMins(), 11) << "a next manager of the library";
    cLibrary.cDataBase->bAllCutsFails = true;
    cPorts.cFiles.Put(L"C:\\Other\\Scheduler\\SchedulerSettings.dat", "1\r\n2\r\n3\r\n");
    cLibrary.Populate(L"C:\\Other");
    EXPECT_EQ(cLibrary.cMod.GlobalArtistSepMins(), 11) << "after a population elsewhere that failed";
    EXPECT_EQ(cPorts.cFiles.Get(sSettingsPath), "11\r\n60\r\n60\r\n");
}

TEST_F(ReloadTest, ASeparationThatCouldNotBeSavedIsNotReadOver)
{
    cLibrary.cMod.SetGlobalArtistSepMins(11);
    cPorts.cFiles.SetReadOnly(sSettingsPath);
    cLibrary.cMod.SetGlobalArtistSepMins(22);
    cLibrary.Populate();
    EXPECT_EQ(cLibrary.cMod.GlobalArtistSepMins(), 22);
    cPorts.cFiles.SetReadOnly(sSettingsPath, false);
    cLibrary.Populate();
    EXPECT_EQ(cLibrary.cMod.GlobalArtistSepMins(), 22);
    EXPECT_EQ(cPorts.cFiles.Get(sSettingsPath), "22\r\n60\r\n60\r\n");
    EXPECT_EQ(boxes, Boxes());
}

TEST_F(ReloadTest, WithoutADatabaseThePresentTreesFolderStays)
{
    cLibrary.cDataBase = nullptr;
    cLibrary.Populate(L"C:\\Other");
    EXPECT_EQ(cLibrary.cSchedMan->AppPath(), sRadio);
    EXPECT_EQ(Pick(true), L"Rock1");
}

// ---- announcements

TEST_F(ReloadTest, AFailedReloadKeepsWhatWasWaiting)
{
    const auto announce = [&](const wchar_t* sKey) {
        cLibrary.cDataBase->Announce(&DataBaseEvents::CutsAdded,
                                     Cuts{cLibrary.cDataBase->Add(sKey, L"Rock", 1)});
    };
    cLibrary.cDataBase->OnAllCuts = [&] { announce(L"during"); };
    cLibrary.cDataBase->bAllCutsFails = true;
    At(L"Start 1: Updating Scheduler", [&] {
        announce(L"waiting");
        cLibrary.Populate();
    });
    announce(L"first");
    EXPECT_EQ(cLibrary.Order(L"Rock", 1),
              (Keys{L"Rock1", L"Rock2", L"Rock3", L"Rock4", L"first", L"waiting", L"during"}));
}

TEST_F(ReloadTest, AFailedMoveToAnotherDatabaseKeepsWhatWasWaiting)
{
    const auto cFirst = cLibrary.cDataBase;
    const auto cSecond = std::make_shared<FakeDataBase>();
    cSecond->bAllCutsFails = true;
    cSecond->OnAllCuts = [&] {
        cSecond->Announce(&DataBaseEvents::CutsAdded, Cuts{cSecond->Add(L"foreign", L"Rock", 1)});
    };
    At(L"Start 1: Updating Scheduler", [&] {
        cFirst->Announce(&DataBaseEvents::CutsAdded, Cuts{cFirst->Add(L"waiting", L"Rock", 1)});
        cLibrary.cDataBase = cSecond;
        cLibrary.Populate();
    });
    cFirst->Announce(&DataBaseEvents::CutsAdded, Cuts{cFirst->Add(L"first", L"Rock", 1)});
    EXPECT_EQ(cLibrary.Order(L"Rock", 1),
              (Keys{L"Rock1", L"Rock2", L"Rock3", L"Rock4", L"first", L"waiting"}));
    EXPECT_EQ(cLibrary.cSchedMan->DataBase(), cFirst);
}

} // namespace
} // namespace ravlo::test
