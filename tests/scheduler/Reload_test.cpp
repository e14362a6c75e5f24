// SPDX-License-Identifier: MIT
// A population while the station is on air: picks during it, failures, and the folder that files go to.
#include "support/SyncTest.h"

namespace ravlo::test
{
namespace
{

const std::wstring sRead = L"Done: Got Scheduler [from file] Info for: ";

const std::wstring sOtherOrder = L"C:\\Other\\Scheduler\\History_and_Ordering\\Rock.sif";
const std::wstring sOtherSettings = L"C:\\Other\\Scheduler\\SchedulerSettings.dat";

// Rock and Pop with four cuts each, whose orders are saved.
class ReloadTest : public StationTest
{
protected:
    ReloadTest()
    {
        cPorts.cFiles.MakeFolders(sOtherFolder);
        Start(L"Rock 1: r1 r2 r3 r4 | Pop 1: p1 p2 p3 p4");
        cLib.cSchedMan->SetRotatesAllowed(true);
    }

    // The key of the cut that goes on air.
    std::wstring Pick(bool bSave, const std::wstring& sCat = L"Rock")
    {
        return cLib.Pick(sCat + L"\t1", bSave);
    }
    // Calls back once, at the first event of that text.
    void At(const std::wstring& sLine, std::function<void()> action)
    {
        m_bReached = false;
        cLib.cHost.OnEvent = [this, sLine, action = std::move(action)](const std::wstring& sSaid) {
            if (m_bReached || !sSaid.starts_with(sLine))
                return;
            m_bReached = true;
            action();
        };
    }
    void Reload(const std::wstring& sAppPath = sRadio)
    {
        cLib.Populate(sAppPath);
        cLib.cHost.OnEvent = nullptr;
        EXPECT_TRUE(m_bReached);
    }
    std::wstring Rock() const { return TextOf(L"Rock"); }
    std::wstring TextOf(const std::wstring& sCat) const
    {
        std::wstring sOrder;
        for (const std::wstring& sKey : Order(sCat, 1))
            sOrder += (sOrder.empty() ? L"" : L" ") + sKey;
        return sOrder;
    }
    std::wstring RockAfterARestart()
    {
        cLib.Restart();
        return Rock();
    }
    static void AnnounceNew(FakeDataBase& cDataBase, const std::wstring& sKey)
    {
        cDataBase.Announce(&DataBaseEvents::CutsAdded, Cuts{cDataBase.Add(sKey, L"Rock", 1)});
    }

private:
    bool m_bReached = true;
};

// ---- picks during a reload

TEST_F(ReloadTest, APickDuringAReloadIsNotPlayedAgain)
{
    for (const std::wstring& sMoment : {sRead + L"Rock", std::wstring(L"Start 8: Creating Scheduler Items")})
        for (const bool bSave : {true, false})
        {
            const std::wstring sNext = Order(L"Rock", 1)[0];
            At(sMoment, [&] { EXPECT_EQ(Pick(bSave), sNext); });
            Reload();
            EXPECT_EQ(Order(L"Rock", 1).back(), sNext);
        }
    EXPECT_EQ(Rock(), L"r1 r2 r3 r4") << "each once";
    EXPECT_EQ(Pick(true), L"r1");
    EXPECT_EQ(RockAfterARestart(), L"r2 r3 r4 r1");
}

TEST_F(ReloadTest, PicksThatAreSavedLaterSurviveAReload)
{
    EXPECT_EQ(Pick(false), L"r1");
    Reload();
    EXPECT_EQ(File(L"Rock"), SifCuts("r2 r3 r4 r1")) << "saved before it is read";
    At(sRead + L"Pop", [&] { EXPECT_EQ(Pick(false), L"r2"); });
    Reload();
    EXPECT_EQ(Tree(), L"Rock 1: r3 r4 r1 r2 | Pop 1: p1 p2 p3 p4");
    Reload();
    EXPECT_EQ(RockAfterARestart(), L"r3 r4 r1 r2");
}

TEST_F(ReloadTest, APickThatCouldNotBeSavedSurvivesAReload)
{
    SetReadOnly(L"Rock");
    EXPECT_EQ(Pick(true), L"r1");
    At(sRead + L"Rock", [&] { EXPECT_EQ(Pick(true), L"r2"); });
    Reload();
    EXPECT_EQ(Rock(), L"r3 r4 r1 r2");
    for (std::size_t cut = 0; cut < 4; ++cut)
        cLib.cDataBase->colCuts[cut]->SetCategoryText(L"ROCK");
    Reload();
    EXPECT_EQ(Tree(), L"ROCK 1: r3 r4 r1 r2 | Pop 1: p1 p2 p3 p4") << "another spelling";
    SetReadOnly(L"Rock", false);
    WaitForRetry();
    EXPECT_EQ(Pick(true), L"r3");
    EXPECT_EQ(RockAfterARestart(), L"r4 r1 r2 r3");
}

TEST_F(ReloadTest, APickInsideASaveSurvivesAReload)
{
    At(L"Start 4: Saving info for: Rock", [&] { EXPECT_EQ(Pick(false), L"r1"); });
    EXPECT_TRUE(cLib.Save(L"Rock"));
    Reload();
    EXPECT_EQ(Rock(), L"r2 r3 r4 r1");
}

TEST_F(ReloadTest, APickInsideASaveAfterAFailedOneIsSavedByAReload)
{
    SetReadOnly(L"Rock");
    Pick(true);
    SetReadOnly(L"Rock", false);
    At(L"Start 4: Saving info for: Rock", [&] { EXPECT_EQ(Pick(true), L"r2"); });
    EXPECT_TRUE(cLib.Save(L"Rock"));
    EXPECT_EQ(File(L"Rock"), SifCuts("r2 r3 r4 r1")) << "it failed a moment ago: not tried by the pick";
    Reload();
    EXPECT_EQ(File(L"Rock"), SifCuts("r3 r4 r1 r2"));
}

TEST_F(ReloadTest, CutsThatAreNewInTheDatabaseComeFirst)
{
    Add(L"new1", L"Rock");
    Add(L"new2", L"Rock");
    cLib.cDataBase->Remove(*CutOf(L"r3"));
    At(sRead + L"Rock", [&] { EXPECT_EQ(Pick(true), L"r1"); });
    Reload();
    EXPECT_EQ(Rock(), L"new1 new2 r2 r4 r1");
}

TEST_F(ReloadTest, AnOrderPutIntoTheFileByHandIsTakenByAReload)
{
    Pick(true);
    cPorts.cFiles.Put(SifPath(L"Rock"), SifCuts("r4 r3 r2 r1"));
    Reload();
    EXPECT_EQ(Rock(), L"r4 r3 r2 r1");
}

TEST_F(ReloadTest, AnotherFolderKeepsItsOwnOrders)
{
    At(sRead + L"Rock", [&] { EXPECT_EQ(Pick(false), L"r1"); });
    cPorts.cFiles.Put(sOtherOrder, SifCuts("r4 r3 r2 r1"));
    Reload(sOtherFolder);
    EXPECT_EQ(Rock(), L"r4 r3 r2 r1");
    EXPECT_EQ(RockAfterARestart(), L"r2 r3 r4 r1") << "back in the first";
    cPorts.cFiles.Put(sOtherOrder, "damaged");
    Reload(sOtherFolder);
    EXPECT_EQ(Rock(), L"r1 r2 r3 r4") << "the database's, not the first folder's";
}

TEST_F(ReloadTest, WhatAMoveCouldNotSaveIsSavedInItsFolderLater)
{
    for (const bool bBack : {true, false}) // the end saves it, or the way back
    {
        const Keys colBefore = Order(L"Rock", 1);
        SetReadOnly(L"Rock");
        SetReadOnly(L"Pop");
        EXPECT_EQ(Pick(true), colBefore[0]);
        cLib.cSchedMan->DeleteCats({MainCat(L"Pop")});
        Reload(sOtherFolder);
        SetReadOnly(L"Rock", false);
        SetReadOnly(L"Pop", false);
        if (bBack)
            Reload();
        else
            cLib.Restart();
        EXPECT_EQ(Order(L"Rock", 1), (Keys{colBefore[1], colBefore[2], colBefore[3], colBefore[0]}));
        EXPECT_EQ(File(L"Pop"), "none");
        cLib.cSchedMan->SetRotatesAllowed(true);
        for (std::size_t cut = 4; cut < 8; ++cut)
            cLib.cDataBase->colCuts[cut]->SetCategoryText(L"Pop");
        Reload();
        EXPECT_TRUE(cLib.SaveAll());
    }
}

TEST_F(ReloadTest, WhatAMoveCouldNotSaveIsRetriedOnceASecond)
{
    SetReadOnly(L"Rock");
    SetReadOnly(L"Pop");
    EXPECT_EQ(Pick(true), L"r1");
    EXPECT_FALSE(cLib.cSchedMan->DeleteCats({MainCat(L"Pop")}));
    Reload(sOtherFolder);
    WaitForRetry();
    cLib.Save(L"Rock"); // in the other folder; the retry fails
    SetReadOnly(L"Rock", false);
    SetReadOnly(L"Pop", false);
    cPorts.cClock.Advance(UnsavedOrders::lRetryMs - 1);
    cLib.Save(L"Rock");
    EXPECT_EQ(File(L"Rock"), SifCuts("r1 r2 r3 r4"));
    cPorts.cClock.Advance(1);
    cLib.Save(L"Rock");
    EXPECT_EQ(File(L"Rock"), SifCuts("r2 r3 r4 r1"));
    EXPECT_EQ(File(L"Pop"), "none") << "a deletion that failed twice";
}

TEST_F(ReloadTest, WhatAMoveCouldNotSaveYieldsToNewerOrders)
{
    SetReadOnly(L"Rock");
    EXPECT_EQ(Pick(true), L"r1");
    Reload(sOtherFolder);
    auto cOther = std::make_shared<clsSchedMan>(cLib.cMod); // which has its own station there
    cOther->PopulateFromDataBase(cLib.cDataBase, sRadio);
    SetReadOnly(L"Rock", false);
    EXPECT_TRUE(cOther->SaveHistoryAndOrdering(nullptr));
    const std::string newer = File(L"Rock");
    cLib.End();
    EXPECT_EQ(File(L"Rock"), newer);
}

TEST_F(ReloadTest, AnInterruptedChangeIsLoggedOnce)
{
    const std::wstring sLine =
        L"A change of category Rock was interrupted: some of its cuts may be changed and "
        L"others not.";
    for (const int lInterruption : {1, 2})
    {
        cPorts.cFiles.Put(SifPath(L"Rock"), SifMarker(1) + File(L"Rock"));
        Reload();
        Reload();
        EXPECT_EQ(Logged(sLine), lInterruption);
        EXPECT_TRUE(cLib.SaveAll());
    }
}

// ---- files that cannot be read, or not be written, during a reload

TEST_F(ReloadTest, AnOrderWhoseFileCannotBeReadStaysAsItWas)
{
    EXPECT_EQ(Pick(true), L"r1");
    const std::string saved = File(L"Rock");
    cPorts.cFiles.SetUnreadable(SifPath(L"Rock"), error::DeviceIo);
    Reload();
    EXPECT_EQ(boxes, Boxes{CriticalBox(L"Error in ApplyHistory", L"57 Device I/O error: Rock")});
    EXPECT_EQ(Rock(), L"r2 r3 r4 r1");
    cPorts.cFiles.SetUnreadable(SifPath(L"Rock"), 0);
    cPorts.cFiles.SetLocked(SifPath(L"Rock"), -1);
    Reload();
    EXPECT_EQ(Rock(), L"r2 r3 r4 r1");
    cPorts.cFiles.SetLocked(SifPath(L"Rock"), 0);
    for (const std::string& bytes : {saved.substr(1), SifCut("r1", 1) + SifCut("r2", 9) + SifCut("r3", 1),
                                     SifMarker(-2) + SifCut("r1", 1)})
    {
        cPorts.cFiles.Put(SifPath(L"Rock"), bytes);
        Reload();
        EXPECT_EQ(Rock(), L"r2 r3 r4 r1") << "nor when it is not understood";
    }
    cPorts.cFiles.Put(SifPath(L"Rock"), saved);
    EXPECT_EQ(RockAfterARestart(), L"r2 r3 r4 r1");
}

TEST_F(ReloadTest, ALevelWhoseSaveFailedSurvivesAReload)
{
    SetReadOnly(L"Rock");
    cPorts.cMessages.Typed = {L"7"};
    EXPECT_TRUE(cLib.cSchedMan->CreateCatLevel(MainCat(L"Rock")));
    Reload();
    ASSERT_TRUE(Level(L"Rock", 7));
    EXPECT_EQ(Level(L"Rock", 7)->MainCat(), MainCat(L"Rock"));
    SetReadOnly(L"Rock", false);
    WaitForRetry();
    EXPECT_EQ(Pick(true), L"r1");
    cLib.Restart();
    EXPECT_TRUE(Level(L"Rock", 7));
    SetReadOnly(L"Rock");
    EXPECT_FALSE(cLib.cSchedMan->DeleteCats({Level(L"Rock", 7)}));
    Add(L"new", L"Rock", 3);
    Reload();
    EXPECT_FALSE(Level(L"Rock", 7)) << "nor does a deleted one come back";
    EXPECT_EQ(Order(L"Rock", 3), Keys{L"new"}) << "a level with cuts stays";
}

TEST_F(ReloadTest, ANameThatCanBeNoFilesNameDelaysNoOther)
{
    Add(L"odd1", L"A?C");
    Add(L"odd2", L"A?C");
    Reload();
    EXPECT_EQ(Pick(false, L"A?C"), L"odd1");
    Reload();
    EXPECT_EQ(TextOf(L"A?C"), L"odd2 odd1");
    WaitForRetry();
    SetReadOnly(L"Rock");
    EXPECT_EQ(Pick(true), L"r1");
    SetReadOnly(L"Rock", false);
    WaitForRetry();
    EXPECT_EQ(Pick(true, L"Pop"), L"p1");
    EXPECT_EQ(File(L"Rock"), SifCuts("r2 r3 r4 r1"));
}

// ---- the folder

TEST_F(ReloadTest, AnotherManagersPopulationChangesNothingForThisOne)
{
    cPorts.cFiles.Put(sMainCatsPath, "\r\nRock\r\nPop\r\nJazz");
    auto cOther = std::make_shared<clsSchedMan>(cLib.cMod);
    auto cOtherDataBase = std::make_shared<FakeDataBase>();
    cOtherDataBase->Add(L"z", L"Zydeco", 1);
    At(L"Start 8", [&] { cOther->PopulateFromDataBase(cOtherDataBase, sOtherFolder); });
    cPorts.cFiles.Put(SifPath(L"Rock"), SifCuts("r4 r3 r2 r1"));
    Reload();
    EXPECT_EQ(cLib.MainCatNames(), (Lines{L"Rock", L"Pop", L"Jazz"})) << "its own folder's list";
    EXPECT_EQ(Pick(true), L"r4");
    EXPECT_TRUE(cLib.cSchedMan->SaveCatNames());
    EXPECT_EQ(File(L"Rock"), SifCuts("r3 r2 r1 r4"));
    EXPECT_EQ(cPorts.cFiles.Get(sMainCatsPath), "\r\nRock\r\nPop\r\nJazz");
    EXPECT_TRUE(cOther->SaveCatNames());
    EXPECT_EQ(cPorts.cFiles.Get(L"C:\\Other\\Scheduler\\MainCats.txt"), "\r\nZydeco");
    for (const std::wstring& sPath : cPorts.cFiles.Paths())
        EXPECT_FALSE(sPath.starts_with(L"C:\\Other") && sPath.ends_with(L".sif"))
            << testing::PrintToString(sPath);
}

TEST_F(ReloadTest, AfterAFailedPopulationAllStaysInTheFolderOfTheTree)
{
    cLib.cMod.SetGlobalArtistSepMins(11);
    cPorts.cFiles.Put(sOtherSettings, "1\r\n2\r\n3\r\n");
    cLib.cDataBase->bAllCutsFails = true;
    cLib.Populate(sOtherFolder);
    EXPECT_EQ(boxes,
              Boxes{CriticalBox(L"Error in PopulateFromDataBase [cSchedMan]", L"57 Device I/O error")});
    EXPECT_EQ(cLib.cMod.GlobalArtistSepMins(), 11);
    Level(L"Rock", 1)->Rules()->SetArtistSepMins(5);
    EXPECT_TRUE(cPorts.cFiles.FileExists(L"C:\\Radio\\Scheduler\\Rules\\Rock\u00AC\u00AC\u00AC1.rls"));
    cLib.cMod.SetGlobalArtistSepMins(12);
    EXPECT_EQ(cPorts.cFiles.Get(sOtherSettings), "1\r\n2\r\n3\r\n");
    cLib.cDataBase = nullptr;
    cLib.Populate(sOtherFolder);
    EXPECT_EQ(cLib.cSchedMan->AppPath(), sRadio);
    EXPECT_EQ(Pick(true), L"r1");
    EXPECT_EQ(File(L"Rock"), SifCuts("r2 r3 r4 r1"));
}

TEST_F(ReloadTest, SeparationsStayWhenTheirFileCannotBeRead)
{
    cLib.cMod.SetGlobalArtistSepMins(11);
    cPorts.cFiles.SetUnreadable(sSettingsPath, error::PermissionDenied);
    cLib.Populate();
    EXPECT_EQ(cLib.cMod.GlobalArtistSepMins(), 11);
    cLib.Restart();
    EXPECT_EQ(cLib.cMod.GlobalArtistSepMins(), 11) << "a next manager of the library";
    cLib.cDataBase->bAllCutsFails = true;
    cPorts.cFiles.Put(sOtherSettings, "1\r\n2\r\n3\r\n");
    cLib.Populate(sOtherFolder);
    EXPECT_EQ(cLib.cMod.GlobalArtistSepMins(), 11) << "after a failed population elsewhere";
    EXPECT_EQ(cPorts.cFiles.Get(sSettingsPath), "11\r\n60\r\n60\r\n");
}

// ---- notifications

TEST_F(ReloadTest, AReloadInsideAnImportEndsTheImport)
{
    const Cuts colNew = AddMany(61, L"new", L"Pop");
    At(L"Progress", [&] {
        cLib.cDataBase->Remove(*colNew.back()); // the new tree does not contain it
        cLib.Populate();
    });
    Added(colNew);
    EXPECT_EQ(Order(L"Pop", 1).size(), 64u);
    EXPECT_FALSE(Level(L"Pop", 1)->SchedCuts()->Exists(L"new61"));
}

TEST_F(ReloadTest, AFailedReloadKeepsQueuedNotifications)
{
    FakeDataBase& cDataBase = *cLib.cDataBase;
    cDataBase.OnAllCuts = [&] { AnnounceNew(cDataBase, L"during"); };
    cDataBase.bAllCutsFails = true;
    At(L"Start 1: Updating Scheduler", [&] {
        AnnounceNew(cDataBase, L"queued");
        cLib.Populate();
    });
    AnnounceNew(cDataBase, L"first");
    EXPECT_EQ(Rock(), L"r1 r2 r3 r4 first queued during");
}

TEST_F(ReloadTest, AFailedMoveToAnotherDatabaseKeepsQueuedNotifications)
{
    const auto cFirst = cLib.cDataBase;
    const auto cSecond = std::make_shared<FakeDataBase>();
    cSecond->bAllCutsFails = true;
    cSecond->OnAllCuts = [&] { AnnounceNew(*cSecond, L"foreign"); };
    At(L"Start 1: Updating Scheduler", [&] {
        AnnounceNew(*cFirst, L"queued");
        cLib.cDataBase = cSecond;
        cLib.Populate();
    });
    AnnounceNew(*cFirst, L"first");
    EXPECT_EQ(Rock(), L"r1 r2 r3 r4 first queued");
    EXPECT_EQ(cLib.cSchedMan->DataBase(), cFirst);
}

} // namespace
} // namespace ravlo::test
