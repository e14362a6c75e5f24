// SPDX-License-Identifier: MIT
// A population from another folder or another database: what the present tree does until the new one replaces
// it, and after a failure.
#include "support/SyncTest.h"

#include <functional>
#include <tuple>
#include <utility>

namespace ravlo::test
{
namespace
{

std::wstring RulesPath(const std::wstring& sAppPath)
{
    return sAppPath + L"Scheduler\\Rules\\Rock\u00AC\u00AC\u00AC1.rls";
}
std::wstring SettingsPathOf(const std::wstring& sAppPath)
{
    return sAppPath + L"Scheduler\\SchedulerSettings.dat";
}
std::wstring OrderPath(const std::wstring& sAppPath)
{
    return sAppPath + L"Scheduler\\History_and_Ordering\\Rock.sif";
}

// The record of rules that separate artists by some minutes, below 128, and nothing else.
std::string Rules(char lArtistMins)
{
    std::string bytes(clsCatRules::recordSize, '\0');
    bytes[0] = lArtistMins;
    bytes.replace(4, 4, "\xFF\xFF\xFF\xFF");
    bytes.replace(65, 4, "\xFF\xFF\xFF\xFF");
    return bytes;
}

// The phases of a population in which it can be made to fail.
constexpr const wchar_t* sAtStart = L"AllCuts";
constexpr const wchar_t* sInTheMiddle = L"Start 25: Initialising";
constexpr const wchar_t* sAtTheEnd = L"Start 25: Creating Scheduler Items";

// A station in C:\Radio with separations 10, 20, 30 and rules of 15 minutes; one in C:\Other with 1, 2, 3 and
// rules of 99 minutes. 25 cuts, so that a population pauses.
class ReplacedStationTest : public StationTest
{
protected:
    ReplacedStationTest()
    {
        cPorts.cFiles.MakeFolders(L"C:\\Other");
        cPorts.cFiles.Put(RulesPath(sRadio), Rules(15));
        cPorts.cFiles.Put(SettingsPathOf(sRadio), "10\r\n20\r\n30\r\n");
        cPorts.cFiles.Put(RulesPath(sOtherFolder), Rules(99));
        cPorts.cFiles.Put(SettingsPathOf(sOtherFolder), "1\r\n2\r\n3\r\n");
        colCuts = AddMany(25, L"cut", L"Rock");
        Start();
        cLib.cSchedMan->SetRotatesAllowed(true);
    }
    ~ReplacedStationTest() override
    {
        cLib.cHost.OnEvent = nullptr;
        cPorts.cHostLoop.OnSleep = nullptr;
    }

    // Populates from cDataBase and sAppPath. action runs once in that phase, after which the population fails
    // when bFails is set.
    void Populate(const std::shared_ptr<FakeDataBase>& cDataBase, const std::wstring& sAppPath,
                  const std::wstring& sPhase, bool bFails, const std::function<void()>& action)
    {
        bool bReached = false;
        const auto act = [&] {
            if (!std::exchange(bReached, true))
                action();
        };
        cDataBase->OnAllCuts = [&] {
            if (sPhase == sAtStart)
                act();
        };
        cDataBase->bAllCutsFails = bFails && sPhase == sAtStart;
        cLib.cHost.OnEvent = [&](const std::wstring& sLine) {
            if (sLine.starts_with(sPhase))
                act();
        };
        static_cast<FakeCut&>(*cDataBase->colCuts.front()).OnCall = [&](std::string_view) {
            cPorts.cClock.Advance(20);
        }; // so that a pause is due
        cPorts.cHostLoop.OnSleep = [&](std::uint32_t) {
            if (bFails && bReached)
                throw RuntimeError(error::DeviceIo);
        };
        cLib.cSchedMan->PopulateFromDataBase(cDataBase, sAppPath);
        cDataBase->OnAllCuts = nullptr;
        cDataBase->bAllCutsFails = false;
        static_cast<FakeCut&>(*cDataBase->colCuts.front()).OnCall = nullptr;
        cLib.cHost.OnEvent = nullptr;
        cPorts.cHostLoop.OnSleep = nullptr;
        EXPECT_TRUE(bReached);
        EXPECT_EQ(boxes.size(), bFails ? 1u : 0u);
    }
    // Populates from C:\Other.
    void Move(const std::wstring& sPhase, bool bFails, const std::function<void()>& action)
    {
        Populate(cLib.cDataBase, sOtherFolder, sPhase, bFails, action);
    }

    std::wstring Pick() { return cLib.Pick(L"Rock\t1"); }
    std::int32_t ArtistRule() const { return Level(L"Rock", 1)->Rules()->ArtistSepMins(); }
    // The first cut in the saved order.
    std::string FirstSaved(const std::wstring& sAppPath) const
    {
        const std::string bytes = cPorts.cFiles.Get(OrderPath(sAppPath)).substr(510, 8);
        return bytes.substr(0, bytes.find(' '));
    }
    // The first folder's station is served and saved, and the other's files are as they were.
    void ExpectTheFirstStationIsWhole()
    {
        EXPECT_EQ(cLib.cSchedMan->AppPath(), sRadio);
        EXPECT_EQ(ArtistRule(), 15);
        EXPECT_EQ(cLib.cMod.GlobalArtistSepMins(), 10);
        EXPECT_EQ(Pick(), L"cut1");
        EXPECT_EQ(cLib.Order(L"Rock", 1).back(), L"cut1");
        EXPECT_EQ(FirstSaved(sRadio), "cut2");
        Level(L"Rock", 1)->Rules()->SetArtistSepMins(16);
        cLib.cMod.SetGlobalArtistSepMins(11);
        EXPECT_EQ(cPorts.cFiles.Get(RulesPath(sRadio))[0], 16);
        EXPECT_EQ(cPorts.cFiles.Get(SettingsPathOf(sRadio)), "11\r\n20\r\n30\r\n");
        ExpectOtherIsUntouched();
    }
    void ExpectOtherIsUntouched() const
    {
        EXPECT_EQ(cPorts.cFiles.Get(RulesPath(sOtherFolder)), Rules(99));
        EXPECT_EQ(cPorts.cFiles.Get(SettingsPathOf(sOtherFolder)), "1\r\n2\r\n3\r\n");
        EXPECT_FALSE(cPorts.cFiles.FileExists(OrderPath(sOtherFolder)));
    }
    // A database with the same keys, in another order.
    std::shared_ptr<FakeDataBase> SameKeysReversed()
    {
        auto cSecond = std::make_shared<FakeDataBase>();
        for (std::size_t cut = colCuts.size(); cut > 0; --cut)
            cSecond->Add(colCuts[cut - 1]->Key().Text(), L"Rock", 1);
        return cSecond;
    }

    Cuts colCuts;
};

// ---- another folder

TEST_F(ReplacedStationTest, RulesAndSeparationsChangeWhenAMoveHasSucceeded)
{
    for (const wchar_t* sPhase : {sInTheMiddle, sAtTheEnd})
    {
        Move(sPhase, false, [&] {
            EXPECT_EQ(cLib.cSchedMan->AppPath(), sOtherFolder) << "from the start";
            EXPECT_EQ(ArtistRule(), 15);
            EXPECT_EQ(cLib.cMod.GlobalArtistSepMins(), 10);
        });
        EXPECT_EQ(ArtistRule(), 99);
        EXPECT_EQ(cLib.cMod.GlobalArtistSepMins(), 1);
        cLib.Populate();
        EXPECT_EQ(cLib.cMod.GlobalArtistSepMins(), 10);
    }
}

TEST_F(ReplacedStationTest, WhatIsSetDuringAMoveIsSavedInThePresentFolder)
{
    const std::shared_ptr<clsCatRules> cHeld = Level(L"Rock", 1)->Rules();
    Move(sAtTheEnd, false, [&] {
        Level(L"Rock", 1)->Rules()->SetArtistSepMins(16);
        cLib.cMod.SetGlobalTitleSepMins(21);
    });
    EXPECT_EQ(cPorts.cFiles.Get(RulesPath(sRadio))[0], 16);
    EXPECT_EQ(cPorts.cFiles.Get(SettingsPathOf(sRadio)), "10\r\n21\r\n30\r\n");
    EXPECT_EQ(ArtistRule(), 99);
    EXPECT_EQ(cLib.cMod.GlobalTitleSepMins(), 2);
    cHeld->SetArtistSepMins(17);
    EXPECT_EQ(cPorts.cFiles.Get(RulesPath(sRadio))[0], 17) << "rules that a host holds stay in their folder";
    ExpectOtherIsUntouched();
}

// ---- a move that fails

// The parameters: where the population fails, and whether the rules are asked for before it does.
class FailedMoveTest : public ReplacedStationTest,
                       public testing::WithParamInterface<std::tuple<const wchar_t*, bool>>
{
};
INSTANTIATE_TEST_SUITE_P(Phases, FailedMoveTest,
                         testing::Combine(testing::Values(sAtStart, sInTheMiddle, sAtTheEnd),
                                          testing::Bool()));

TEST_P(FailedMoveTest, AfterItEverythingIsThePresentFolders)
{
    Move(std::get<0>(GetParam()), true, [&] {
        if (!std::get<1>(GetParam()))
            return;
        EXPECT_EQ(ArtistRule(), 15);
        EXPECT_EQ(cLib.cMod.GlobalArtistSepMins(), 10);
    });
    ExpectTheFirstStationIsWhole();
}

TEST_F(ReplacedStationTest, AFailedMoveLeavesTheFolderOfAnotherManager)
{
    const auto cOtherMan = std::make_shared<clsSchedMan>(cLib.cMod);
    Move(sAtTheEnd, true, [&] { cOtherMan->PopulateFromDataBase(SameKeysReversed(), sOtherFolder); });
    EXPECT_EQ(cLib.cSchedMan->AppPath(), sOtherFolder);
    EXPECT_EQ(cLib.cMod.GlobalArtistSepMins(), 1);
    EXPECT_EQ(Pick(), L"cut1");
    EXPECT_EQ(FirstSaved(sRadio), "cut2") << "orders stay in the folder of their tree";
}

TEST_F(ReplacedStationTest, AFailedMoveLeavesTheLibraryWhereAnotherMovedIt)
{
    cPorts.cFiles.MakeFolders(L"C:\\Third");
    const auto cOtherMan = std::make_shared<clsSchedMan>(cLib.cMod);
    Move(sAtTheEnd, true, [&] { cOtherMan->PopulateFromDataBase(SameKeysReversed(), L"C:\\Third\\"); });
    EXPECT_EQ(cLib.cSchedMan->AppPath(), L"C:\\Third\\");
}

TEST_F(ReplacedStationTest, AManagerThatEndsDuringAnothersMoveSavesItsSettings)
{
    auto cOtherMan = std::make_shared<clsSchedMan>(cLib.cMod);
    cOtherMan->PopulateFromDataBase(SameKeysReversed(), sRadio);
    Move(sAtTheEnd, false, [&] {
        cPorts.cFiles.Delete(SettingsPathOf(sRadio));
        cOtherMan.reset();
    });
    EXPECT_EQ(cPorts.cFiles.Get(SettingsPathOf(sRadio)), "10\r\n20\r\n30\r\n");
    EXPECT_EQ(cPorts.cFiles.Get(SettingsPathOf(sOtherFolder)), "1\r\n2\r\n3\r\n");
}

// ---- another database

TEST_F(ReplacedStationTest, PicksWhileAnotherDatabaseIsReadServeThePresentOne)
{
    const auto cSecond = SameKeysReversed();
    Populate(cSecond, sRadio, sAtTheEnd, false, [&] {
        EXPECT_EQ(cLib.cSchedMan->DataBase(), cSecond) << "from the start";
        EXPECT_EQ(Pick(), L"cut1");
        EXPECT_EQ(*Level(L"Rock", 1)->SchedCuts()->Find(L"cut1"), colCuts[0]);
    });
    EXPECT_EQ(cLib.Order(L"Rock", 1).back(), L"cut1") << "carried over";
    EXPECT_EQ(*Level(L"Rock", 1)->SchedCuts()->Find(L"cut1"), cSecond->colCuts.back());
}

TEST_F(ReplacedStationTest, PicksDoNotNeedTheDatabaseThatIsBeingRead)
{
    const auto cEmpty = std::make_shared<FakeDataBase>();
    cEmpty->Add(L"foreign", L"Rock", 1);
    cEmpty->bFails = true;
    Populate(cEmpty, sRadio, sAtStart, true, [&] { EXPECT_EQ(Pick(), L"cut1"); });
    EXPECT_EQ(cLib.Order(L"Rock", 1).back(), L"cut1");
    EXPECT_EQ(cLib.cSchedMan->DataBase(), cLib.cDataBase);
    EXPECT_EQ(Pick(), L"cut2");
}

TEST_F(ReplacedStationTest, APlayDuringAFailedPopulationIsThePresentDatabases)
{
    const auto cSecond = SameKeysReversed();
    for (const wchar_t* sPhase : {sAtStart, sInTheMiddle, sAtTheEnd})
    {
        boxes.clear();
        const std::shared_ptr<Cut> cPlayed = colCuts[0]->CloneCut();
        cPlayed->SetLastPlayed(40'000);
        Populate(cSecond, sRadio, sPhase, true, [&] { cLib.cSchedMan->UpdateArtistTitleHistory(cPlayed); });
        EXPECT_EQ(colCuts[0]->LastPlayed(), 40'000);
        EXPECT_EQ(cSecond->colCuts.back()->LastPlayed(), 0);
        EXPECT_EQ(cLib.cSchedMan->ArtistHistoryCut(L"Artist of cut1"), colCuts[0]);
        colCuts[0]->SetLastPlayed(41'000);
        cLib.cSchedMan->PopulateFromDataBase(nullptr, sRadio);
        EXPECT_EQ(colCuts[0]->LastPlayed(), 41'000) << "the play was not noted for this population";
        colCuts[0]->SetLastPlayed(0);
    }
}

TEST_F(ReplacedStationTest, APlayWhileAnotherDatabaseIsReadCountsForBoth)
{
    const auto cSecond = SameKeysReversed();
    const std::shared_ptr<Cut> cPlayed = colCuts[0]->CloneCut();
    cPlayed->SetLastPlayed(40'000);
    Populate(cSecond, sRadio, sAtTheEnd, false, [&] { cLib.cSchedMan->UpdateArtistTitleHistory(cPlayed); });
    EXPECT_EQ(colCuts[0]->LastPlayed(), 40'000);
    EXPECT_EQ(cSecond->colCuts.back()->LastPlayed(), 40'000);
    EXPECT_EQ(cLib.cSchedMan->ArtistHistoryCut(L"Artist of cut1"), cSecond->colCuts.back());
}

TEST_F(ReplacedStationTest, AFailedPopulationFollowsThePresentDatabaseAgain)
{
    const auto cSecond = SameKeysReversed();
    const auto colTree = cLib.cSchedMan->colMainCats();
    std::size_t added = 0;
    for (const wchar_t* sPhase : {sAtStart, sInTheMiddle, sAtTheEnd})
    {
        boxes.clear();
        Populate(cSecond, sOtherFolder, sPhase, true,
                 [&] { cSecond->Announce(&DataBaseEvents::CutsAdded, Cuts{cSecond->Add(L"x", L"Pop", 1)}); });
        EXPECT_EQ(cLib.cSchedMan->colMainCats(), colTree);
        EXPECT_EQ(cLib.cSchedMan->DataBase(), cLib.cDataBase);
        EXPECT_TRUE(cSecond->colListeners.empty());
        const std::wstring sNew = L"new" + std::to_wstring(++added);
        Added({Add(sNew, L"Rock")});
        EXPECT_EQ(cLib.Order(L"Rock", 1).back(), sNew);
        EXPECT_FALSE(MainCat(L"Pop"));
        cSecond->colCuts.pop_back();
    }
    ExpectTheFirstStationIsWhole();
}

// ---- a call inside

TEST_F(ReplacedStationTest, ReloadAllDuringAPopulationShowsThePresentTree)
{
    CountingWindows cWindows;
    const auto colTree = cLib.cSchedMan->colMainCats();
    cWindows.OnReload = [&] { EXPECT_EQ(cLib.cSchedMan->colMainCats(), colTree); };
    cLib.cSchedMan->SetWindows(&cWindows);
    Move(sAtTheEnd, false, [&] { cLib.cSchedMan->ReloadAll(); });
    Move(sInTheMiddle, true, [&] {
        cWindows.OnReload = [] {};
        cLib.cSchedMan->ReloadAll();
    });
    EXPECT_EQ(cWindows.lReloads, 2);
    cLib.cSchedMan->SetWindows(nullptr);
}

TEST(FirstPopulation, PicksAndReloadAllInItFindNoTree)
{
    RadioPorts cPorts;
    Library cLib(cPorts);
    cLib.cDataBase->Add(L"a", L"Rock", 1);
    cLib.cSchedMan->SetRotatesAllowed(true);
    std::int32_t lKind = -1;
    cLib.cHost.OnEvent = [&](const std::wstring& sLine) {
        if (!sLine.starts_with(L"Start 1: Creating"))
            return;
        cLib.cSchedMan->ReloadAll();
        const std::shared_ptr<Cut> cCut = cLib.NextCut(L"Rock\t1");
        ASSERT_TRUE(cCut);
        lKind = cCut->KindCode();
    };
    cLib.Populate();
    EXPECT_EQ(lKind, eKindMainCatNotFound);
    EXPECT_EQ(cLib.Order(L"Rock", 1), Keys{L"a"});
    EXPECT_TRUE(cPorts.cMessages.Boxes.empty());
}

} // namespace
} // namespace ravlo::test
