// SPDX-License-Identifier: MIT
#include "scheduler/clsSchedMan.h"

#include "support/SyncTest.h"

#include <algorithm>
#include <functional>
#include <stdexcept>

namespace ravlo::test
{
namespace
{

class SchedManTest : public testing::Test
{
protected:
    SchedManTest() { cPorts.cFiles.MakeFolders(L"C:\\Radio"); }

    // Populates from these cuts; returns the first one.
    std::shared_ptr<FakeCut> Populate(const std::wstring& sTree)
    {
        const auto cFirst = cLibrary.cDataBase->AddTree(sTree);
        cLibrary.Populate();
        return cFirst;
    }
    const std::string& File(const std::wstring& sPath) const { return cPorts.cFiles.Get(sPath); }

    RadioPorts cPorts;
    Library cLibrary{cPorts};
    std::shared_ptr<clsSchedMan>& cSchedMan = cLibrary.cSchedMan;
    Boxes& boxes = cPorts.cMessages.Boxes;
    Lines& colSaid = cLibrary.cHost.colSaid;
};

// ---- before population

TEST_F(SchedManTest, NewManagerIsEmptyAndTouchesNoFile)
{
    EXPECT_EQ(cSchedMan->colMainCats(), nullptr);
    EXPECT_EQ(cSchedMan->DataBase(), nullptr);
    EXPECT_EQ(cSchedMan->AppPath(), L"");
    EXPECT_EQ(cSchedMan->colCuts(L"Rock"), nullptr);
    EXPECT_EQ(cSchedMan->colSavedCatNames()->Count(), 0u);
    EXPECT_EQ(cSchedMan->ArtistHistoryCut(L"x"), nullptr);
    EXPECT_EQ(cSchedMan->TitleHistoryCut(L"x"), nullptr);
    EXPECT_EQ(cSchedMan->AlbumHistoryCut(L"x"), nullptr);
    EXPECT_FALSE(cSchedMan->UIShowing());
    EXPECT_TRUE(cPorts.cFiles.Operations().empty());
    EXPECT_TRUE(colSaid.empty());
}

TEST_F(SchedManTest, TheIllegalCharactersAreNineInTheirOrderWithoutKeys)
{
    const std::shared_ptr<NameCollection>& colChars = cSchedMan->colIllegalChars();
    ASSERT_EQ(colChars->Count(), 9u);
    std::wstring sAll;
    for (std::size_t at = 0; at < colChars->Count(); ++at)
    {
        sAll += colChars->At(at);
        EXPECT_EQ(colChars->At(at).size(), 1u);
        EXPECT_EQ(colChars->KeyAt(at), nullptr);
    }
    EXPECT_EQ(sAll, L"*/:<>?\\|\"");
    EXPECT_EQ(cSchedMan->colIllegalChars(), colChars) << "the collection itself";
}

TEST_F(SchedManTest, BeforePopulationNothingIsSaved)
{
    EXPECT_FALSE(cSchedMan->SaveCatNames());
    EXPECT_FALSE(cSchedMan->SaveHistoryAndOrdering(nullptr));
    EXPECT_TRUE(cPorts.cFiles.Operations().empty());
    EXPECT_TRUE(boxes.empty());
}

// ---- accessors

TEST_F(SchedManTest, ThePathIsTheLibrarysAndHasATrailingBackslash)
{
    for (const wchar_t* sPath : {L"C:\\Radio", L"C:\\Radio\\"})
    {
        cLibrary.Populate(sPath);
        EXPECT_EQ(cSchedMan->AppPath(), sRadio);
    }
    EXPECT_EQ(std::make_shared<clsSchedMan>(cLibrary.cMod)->AppPath(), sRadio);
    EXPECT_EQ(cSchedMan->colMainCats(), cSchedMan->colMainCats()) << "the collection itself";
}

TEST_F(SchedManTest, CutsAreThoseOfALevelOrOfAWholeMainCategory)
{
    const auto cFirst = Populate(L"Rock 2: a | Rock 1: b");
    const auto keysOf = [](const std::shared_ptr<CutCollection>& colCuts) {
        Keys colKeys;
        for (const std::shared_ptr<Cut>& cCut : *colCuts)
            colKeys.push_back(cCut->Key().Text());
        return colKeys;
    };
    EXPECT_EQ(keysOf(cSchedMan->colCuts(L"rock", 2)), Keys{L"a"});
    EXPECT_EQ(cSchedMan->colCuts(L"Rock", 2), cLibrary.Level(L"Rock", 2)->SchedCuts()) << "the level's own";
    EXPECT_EQ(keysOf(cSchedMan->colCuts(L"Rock")), (Keys{L"b", L"a"}));
    EXPECT_EQ(keysOf(cSchedMan->colCuts(L"Rock", 0)), (Keys{L"b", L"a"}));
    EXPECT_EQ(cSchedMan->colCuts(L""), nullptr);
    EXPECT_EQ(cSchedMan->colCuts(L"Jazz"), nullptr);
    EXPECT_EQ(cSchedMan->colCuts(L"Rock", 3), nullptr);
    EXPECT_EQ(cSchedMan->colCuts(L"Rock", -1), nullptr);
    cFirst->failing = {"Key"};
    EXPECT_EQ(cSchedMan->colCuts(L"Rock"), nullptr) << "no error";
    EXPECT_TRUE(boxes.empty());
}

TEST_F(SchedManTest, SavedNamesAreReadEachTime)
{
    cLibrary.Populate();
    cPorts.cFiles.Put(sMainCatsPath, "\r\nRock\r\nPop");
    EXPECT_EQ(cSchedMan->colSavedCatNames()->Count(), 2u);
    cPorts.cFiles.Put(sMainCatsPath, "\r\nJazz");
    ASSERT_EQ(cSchedMan->colSavedCatNames()->Count(), 1u);
    EXPECT_TRUE(cSchedMan->colSavedCatNames()->Exists(L"jazz"));
    EXPECT_TRUE(cSchedMan->colMainCats()->Empty()) << "reading them changes no category";
}

// ---- events and windows

TEST_F(SchedManTest, ShowHelpRaisesItsEventAndDoesNothingElse)
{
    cPorts.cFiles.ClearOperations();
    cSchedMan->ShowHelp();
    EXPECT_EQ(colSaid, Lines{L"Help"});
    EXPECT_TRUE(cPorts.cFiles.Operations().empty());
    EXPECT_TRUE(boxes.empty());
}

TEST_F(SchedManTest, ARequestToEditACutComesBackWithTheHostsAnswer)
{
    const std::shared_ptr<Cut> cCut = NewPlainCut();
    cCut->SetKey(L"a.mp3");
    EXPECT_EQ(cSchedMan->RaiseEditRequestCutEvent(cCut), std::nullopt);
    cLibrary.cHost.lEditAnswer = 1;
    EXPECT_EQ(cSchedMan->RaiseEditRequestCutEvent(cCut), 1);
    EXPECT_EQ(colSaid, (Lines{L"Edit a.mp3", L"Edit a.mp3"}));
}

TEST_F(SchedManTest, ReloadingConcernsTheWindowAlone)
{
    Populate(L"Rock 1: a");
    cSchedMan->ReloadAll(); // without windows nothing happens
    CountingWindows cWindows;
    cSchedMan->SetWindows(&cWindows);
    cLibrary.cDataBase->bAllCutsFails = true;
    cPorts.cFiles.ClearOperations();
    colSaid.clear();
    const auto colBefore = cSchedMan->colMainCats();
    cSchedMan->ReloadAll();
    EXPECT_EQ(cWindows.lReloads, 1) << "the window side makes one when there is none";
    EXPECT_EQ(cSchedMan->colMainCats(), colBefore);
    EXPECT_TRUE(cPorts.cFiles.Operations().empty());
    EXPECT_TRUE(colSaid.empty());
    cWindows.OnReload = [] { throw std::runtime_error("no window"); };
    EXPECT_NO_THROW(cSchedMan->ReloadAll());
    EXPECT_TRUE(boxes.empty()) << "errors are ignored";
    for (const bool bShowing : {false, true})
    {
        cWindows.bExists = bShowing;
        EXPECT_EQ(cSchedMan->UIShowing(), bShowing);
    }
    cSchedMan->SetWindows(nullptr);
}

TEST_F(SchedManTest, AManagerReleasedInACallbackLivesUntilItReturns)
{
    const std::shared_ptr<Cut> cCut = NewPlainCut();
    CountingWindows cWindows;
    const std::function<void(clsSchedMan&)> members[] = {
        [](clsSchedMan& cCalled) { cCalled.ShowHelp(); },
        [&](clsSchedMan& cCalled) { cCalled.RaiseEditRequestCutEvent(cCut); },
        [](clsSchedMan& cCalled) { cCalled.ReloadAll(); },
    };
    for (const std::function<void(clsSchedMan&)>& call : members)
    {
        cSchedMan = std::make_shared<clsSchedMan>(cLibrary.cMod);
        cSchedMan->SetEvents(&cLibrary.cHost);
        cSchedMan->SetWindows(&cWindows);
        const std::weak_ptr<clsSchedMan> cWeak = cSchedMan;
        bool bReleased = false;
        const auto release = [&] {
            cSchedMan.reset();
            EXPECT_FALSE(cWeak.expired());
            bReleased = true;
        };
        cLibrary.cHost.OnEvent = [&](const std::wstring&) { release(); };
        cWindows.OnReload = [&] {
            release();
            throw std::runtime_error("no window"); // which is still logged
        };
        call(*cSchedMan);
        EXPECT_TRUE(bReleased);
        EXPECT_TRUE(cWeak.expired());
    }
    cLibrary.cHost.OnEvent = nullptr;
}

TEST_F(SchedManTest, LinesLoggedWhileTheHostEditsACutAreInTheFileAtOnce)
{
    cLibrary.Populate();
    cLibrary.cHost.OnEvent = [&](const std::wstring&) {
        cLibrary.cMod.WriteDebugLog(L"edited");
        EXPECT_EQ(cPorts.LogMessages().back(), L"edited");
    };
    cSchedMan->RaiseEditRequestCutEvent(NewPlainCut());
    EXPECT_EQ(colSaid.back(), L"Edit ");
}

TEST_F(SchedManTest, ProgressFollowersHearProgressOnlyAfterTheHost)
{
    HostEvents cWindow;
    cSchedMan->SetProgressFollower(&cWindow);
    Lines colBoth;
    cLibrary.cHost.OnEvent = [&](const std::wstring& sLine) { colBoth.push_back(L"host " + sLine); };
    cWindow.OnEvent = [&](const std::wstring& sLine) { colBoth.push_back(L"window " + sLine); };
    Populate(L"Rock 1: a");
    EXPECT_EQ(cWindow.colSaid, colSaid);
    EXPECT_EQ(Lines(colBoth.begin(), colBoth.begin() + 2),
              (Lines{L"host " + colSaid[0], L"window " + colSaid[0]}));
    cSchedMan->ShowHelp();
    EXPECT_EQ(cWindow.colSaid.size() + 1, colSaid.size());
    cSchedMan->SetProgressFollower(nullptr);
    cLibrary.Populate();
    EXPECT_LT(cWindow.colSaid.size() + 1, colSaid.size());
}

TEST_F(SchedManTest, AnErrorWhileAPlayIsRecordedIsShownUnderItsLocation)
{
    const auto cCut = Populate(L"Rock 1: a");
    cCut->SetLastPlayed(40'000);
    cLibrary.cDataBase->bFails = true;
    cSchedMan->UpdateArtistTitleHistory(cCut);
    EXPECT_EQ(boxes, Boxes{HandledError(L"UpdateArtistTitleHistory", StandardText(57), L"57")});
    EXPECT_EQ(cSchedMan->TitleHistoryCut(L"Title of a"), nullptr);
}

// A station of two cuts whose database refuses the times of plays for a while.
class RefusedPlaysTest : public SchedManTest
{
protected:
    RefusedPlaysTest()
    {
        cFirst = Populate(L"Rock 1: a b");
        cSecond = cLibrary.cDataBase->Own(L"b");
        Refuse(true);
    }
    void Refuse(bool bRefuse)
    {
        for (const auto& cCut : {cFirst, cSecond})
            if (bRefuse)
                cCut->failing.insert("SetLastPlayed");
            else
                cCut->failing.clear();
    }
    void Play(const std::shared_ptr<FakeCut>& cCut, DateTime dtWhen)
    {
        const std::shared_ptr<Cut> cPlay = test::PlainCopyOf(*cCut);
        cPlay->SetLastPlayed(dtWhen);
        cSchedMan->UpdateArtistTitleHistory(cPlay);
    }

    std::shared_ptr<FakeCut> cFirst;
    std::shared_ptr<FakeCut> cSecond;
};

TEST_F(RefusedPlaysTest, ErrorIsShownOnceThenLogged)
{
    for (int i = 0; i < 4; ++i)
    {
        Play(i % 2 == 0 ? cFirst : cSecond, 45000.0 + i);
        cPorts.cClock.Advance(1'000);
    }
    EXPECT_EQ(boxes, Boxes{HandledError(L"UpdateArtistTitleHistory", StandardText(91), L"91")});
    const Lines colLines = cPorts.LogMessages();
    EXPECT_EQ(std::count(colLines.begin(), colLines.end(),
                         L"DISPLAYERROR, UpdateArtistTitleHistory 91 " + StandardText(91)),
              4);
    EXPECT_EQ(cSchedMan->PendingPlayTimes(), 2u);
}

TEST_F(RefusedPlaysTest, AnotherDatabaseIsNotGivenWhatIsPending)
{
    Play(cFirst, 45000.5);
    cLibrary.cDataBase = std::make_shared<FakeDataBase>();
    const auto cSameKey = cLibrary.cDataBase->Add(cFirst->Key().Text(), L"Rock", 1);
    cLibrary.Populate();
    Refuse(false);
    cSchedMan->SaveHistoryAndOrdering(nullptr);
    EXPECT_EQ(cFirst->LastPlayed(), 45000.5);
    EXPECT_EQ(cSameKey->LastPlayed(), 0);
}

TEST_F(RefusedPlaysTest, PopulationSavingAndTheEndWriteWhatIsPending)
{
    const std::function<void()> colOccasions[] = {[&] { cLibrary.Populate(); },
                                                  [&] { cSchedMan->SaveHistoryAndOrdering(nullptr); },
                                                  [&] { cLibrary.End(); }};
    DateTime dtWhen = 45000;
    for (const auto& occasion : colOccasions)
    {
        Refuse(true);
        Play(cFirst, ++dtWhen);
        EXPECT_EQ(cSchedMan->PendingPlayTimes(), 1u);
        Refuse(false);
        occasion();
        EXPECT_EQ(cFirst->LastPlayed(), dtWhen);
    }
}

TEST_F(SchedManTest, AnErrorWhileAskingIsShownUnderTheOperationsOwnTitle)
{
    Populate(L"Rock 1: a");
    const auto cRock = cLibrary.MainCat(L"Rock");
    cPorts.cMessages.Typed = {L"x"};
    const std::pair<const wchar_t*, std::function<void()>> operations[] = {
        {L"CreateCatLevel", [&] { EXPECT_FALSE(cSchedMan->CreateCatLevel(cRock)); }},
        {L"ShuffleCategories", [&] { cSchedMan->ShuffleCategories({cRock}, true); }},
        {L"CreateMainCat", [&] { EXPECT_FALSE(cLibrary.CreateMainCat(L"Rock")); }},
    };
    for (const auto& [sName, operation] : operations)
    {
        boxes.clear();
        Once(cPorts.cMessages.OnShown, [] { throw RuntimeError(error::DeviceIo); }); // the screen fails
        operation();
        ASSERT_FALSE(boxes.empty());
        EXPECT_EQ(boxes.back(),
                  CriticalBox(L"Error in " + std::wstring(sName) + L" [cSchedMan]", CriticalText(57)));
    }
    EXPECT_EQ(cLibrary.MainCat(L"Rock")->SubCats()->Count(), 1u);
}

// ---- saving

TEST_F(SchedManTest, ACategorySavesItselfAndNothingSavesAll)
{
    Populate(L"Rock 1: a | Pop 1: a");
    EXPECT_TRUE(cLibrary.Save(L"Pop"));
    EXPECT_FALSE(cPorts.cFiles.FileExists(SifPath(L"Rock")));
    EXPECT_EQ(File(SifPath(L"Pop")), SifCut("a", 1));
    EXPECT_TRUE(cLibrary.SaveAll());
    EXPECT_EQ(File(SifPath(L"Rock")), SifCut("a", 1));
    EXPECT_FALSE(cSchedMan->SaveHistoryAndOrdering(cLibrary.Level(L"Rock", 1)));
    EXPECT_EQ(boxes, Boxes{OkBox(BoxIcon::None, L"RavloScheduler",
                                 L"SaveScheduleInfo was expecting a MAIN (level 0) cat!")});
    EXPECT_TRUE(cSchedMan->SaveCatNames());
    EXPECT_EQ(File(sMainCatsPath), "\r\nRock\r\nPop");
}

TEST_F(SchedManTest, AManagerReleasedInsideItsOwnSaveFinishesIt)
{
    Populate(L"Rock 1: a");
    clsSchedMan* const pSchedMan = cSchedMan.get();
    cLibrary.cHost.OnEvent = [this](const std::wstring&) { cSchedMan.reset(); };
    EXPECT_TRUE(pSchedMan->SaveHistoryAndOrdering(nullptr));
    EXPECT_EQ(File(SifPath(L"Rock")), SifCut("a", 1));
    EXPECT_EQ(File(sMainCatsPath), "\r\nRock") << "and then ends";
}

// ---- the end

TEST_F(SchedManTest, AManagerWithoutATreeWritesNothingAtItsEnd)
{
    cPorts.cFiles.Put(sMainCatsPath, "\r\nRock");
    const auto expectOldFiles = [this] {
        cLibrary.End();
        EXPECT_EQ(File(sMainCatsPath), "\r\nRock");
        EXPECT_FALSE(cPorts.cFiles.FileExists(sSettingsPath));
    };
    cPorts.cFiles.ClearOperations();
    cLibrary.End(); // never populated
    EXPECT_TRUE(cPorts.cFiles.Operations().empty());
    cLibrary.cDataBase->bAllCutsFails = true;
    cLibrary.Restart();
    expectOldFiles();
    cLibrary.cDataBase = nullptr;
    cLibrary.Restart();
    expectOldFiles();
}

TEST_F(SchedManTest, AtItsEndAManagerSavesListSettingsAndRulesQuietly)
{
    cPorts.cFiles.Put(sSettingsPath, "5\r\nx\r\n-1\r\n");
    Populate(L"Rock 2: a");
    cLibrary.Level(L"Rock", 2)->Rules();
    colSaid.clear();
    cSchedMan.reset();
    EXPECT_EQ(File(sMainCatsPath), "\r\nRock");
    EXPECT_EQ(File(sSettingsPath), "5\r\n60\r\n60\r\n");
    EXPECT_EQ(File(L"C:\\Radio\\Scheduler\\Rules\\Rock\u00AC\u00AC\u00AC2.rls").size(), 69u);
    EXPECT_FALSE(cPorts.cFiles.FileExists(SifPath(L"Rock"))) << "orders are saved when they change";
    EXPECT_TRUE(colSaid.empty());
    EXPECT_TRUE(boxes.empty());
}

TEST_F(SchedManTest, AtItsEndAManagerSavesToTheFolderItWasPopulatedFrom)
{
    Populate(L"Rock 1: a");
    cPorts.cFiles.Put(L"C:\\Other\\Scheduler\\MainCats.txt", "\r\nTheirs");
    cPorts.cFiles.Put(L"C:\\Other\\Scheduler\\SchedulerSettings.dat", "1\r\n2\r\n3\r\n");
    cLibrary.cMod.SetGlobalArtistSepMins(9);

    auto cOther = std::make_shared<clsSchedMan>(cLibrary.cMod);
    cOther->PopulateFromDataBase(std::make_shared<FakeDataBase>(), L"C:\\Other");
    EXPECT_EQ(cSchedMan->AppPath(), L"C:\\Other\\") << "the library's";
    EXPECT_TRUE(cSchedMan->SaveCatNames());
    EXPECT_TRUE(cSchedMan->SaveHistoryAndOrdering(nullptr));
    cLibrary.End();
    EXPECT_EQ(File(sMainCatsPath), "\r\nRock");
    EXPECT_EQ(File(SifPath(L"Rock")), SifCut("a", 1));
    EXPECT_EQ(File(sSettingsPath), "9\r\n60\r\n60\r\n") << "not the other folder's";
    EXPECT_EQ(File(L"C:\\Other\\Scheduler\\MainCats.txt"), "\r\nTheirs");
    cOther.reset();
    EXPECT_EQ(File(L"C:\\Other\\Scheduler\\SchedulerSettings.dat"), "1\r\n2\r\n3\r\n");
}

TEST_F(SchedManTest, AtItsEndUnreadSettingsStayAndADamagedListIsKeptAside)
{
    const std::string damaged = "\r\nRock\r\nRock\r\nJazz";
    cPorts.cFiles.Put(sMainCatsPath, damaged);
    cPorts.cFiles.Put(sSettingsPath, "1\r\n2\r\n3\r\n");
    cPorts.cFiles.SetUnreadable(sSettingsPath, error::PermissionDenied);
    cLibrary.Populate();
    boxes.clear();
    cLibrary.End();
    EXPECT_EQ(File(sMainCatsPath), "\r\nRock");
    EXPECT_EQ(File(std::wstring(sMainCatsPath) + L".bak"), damaged);
    EXPECT_EQ(File(sSettingsPath), "1\r\n2\r\n3\r\n");
    EXPECT_TRUE(boxes.empty());
}

TEST_F(SchedManTest, AtItsEndThePendingOrdersOfPicksAreSaved)
{
    Populate(L"Rock 1: a b");
    cSchedMan->SetRotatesAllowed(true);
    cPorts.cFiles.SetReadOnly(L"C:\\Radio\\Scheduler\\History_and_Ordering");
    EXPECT_EQ(cLibrary.Pick(L"Rock\t1"), L"a");
    EXPECT_TRUE(boxes.empty()) << "no box on air";
    EXPECT_FALSE(cPorts.cFiles.FileExists(SifPath(L"Rock")));
    cPorts.cFiles.SetReadOnly(L"C:\\Radio\\Scheduler\\History_and_Ordering", false);
    cLibrary.End();
    EXPECT_EQ(File(SifPath(L"Rock")), SifCuts("b a"));
}

TEST_F(SchedManTest, AFailureAtTheEndIsShownAndTheOldListStays)
{
    cPorts.cFiles.Put(sMainCatsPath, "\r\nOld");
    Populate(L"Rock 1: a");
    cPorts.cFiles.SetReadOnly(sMainCatsPath);
    EXPECT_NO_THROW(cLibrary.End());
    EXPECT_EQ(File(sMainCatsPath), "\r\nOld");
    EXPECT_EQ(boxes, Boxes{CriticalBox(L"Error in SaveCatNames [cSchedMan]", L"75 Path/File access error")});
    EXPECT_EQ(File(sSettingsPath), "60\r\n60\r\n60\r\n") << "the rest is saved";
}

} // namespace
} // namespace ravlo::test
