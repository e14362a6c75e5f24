// SPDX-License-Identifier: MIT
#include "scheduler/clsSchedMan.h"

#include "platform/memory/FailingFiles.h"
#include "support/SchedulerTest.h"
#include "support/SyncTest.h"

#include <gtest/gtest.h>

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

    // The manager's end, as when its host releases it.
    void End()
    {
        cLibrary.cSchedMan->SetEvents(nullptr);
        cLibrary.cSchedMan = nullptr;
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

TEST_F(SchedManTest, ThePathComesBackWithATrailingBackslash)
{
    cLibrary.Populate(L"C:\\Radio");
    EXPECT_EQ(cSchedMan->AppPath(), L"C:\\Radio\\");
    cLibrary.Populate(L"C:\\Radio\\");
    EXPECT_EQ(cSchedMan->AppPath(), L"C:\\Radio\\");
}

TEST_F(SchedManTest, ThePathIsTheWholeLibrarys)
{
    cLibrary.Populate();
    EXPECT_EQ(std::make_shared<clsSchedMan>(cLibrary.cMod)->AppPath(), sRadio);
}

TEST_F(SchedManTest, TheMainCategoriesAreTheCollectionItself)
{
    cLibrary.Populate();
    EXPECT_EQ(cSchedMan->colMainCats(), cSchedMan->colMainCats());
}

TEST_F(SchedManTest, CutsAreThoseOfALevelOrOfAWholeMainCategory)
{
    cLibrary.cDataBase->Add(L"a.mp3", L"Rock", 2);
    cLibrary.cDataBase->Add(L"b.mp3", L"Rock", 1);
    cLibrary.Populate();
    const auto keysOf = [](const std::shared_ptr<CutCollection>& colCuts) {
        Keys colKeys;
        for (const std::shared_ptr<Cut>& cCut : *colCuts)
            colKeys.push_back(cCut->Key().Text());
        return colKeys;
    };
    EXPECT_EQ(keysOf(cSchedMan->colCuts(L"rock", 2)), Keys{L"a.mp3"});
    EXPECT_EQ(cSchedMan->colCuts(L"Rock", 2), cLibrary.Level(L"Rock", 2)->SchedCuts()) << "the level's own";
    EXPECT_EQ(keysOf(cSchedMan->colCuts(L"Rock")), (Keys{L"b.mp3", L"a.mp3"}));
    EXPECT_EQ(keysOf(cSchedMan->colCuts(L"Rock", 0)), (Keys{L"b.mp3", L"a.mp3"}));
    EXPECT_EQ(cSchedMan->colCuts(L""), nullptr);
    EXPECT_EQ(cSchedMan->colCuts(L"Jazz"), nullptr);
    EXPECT_EQ(cSchedMan->colCuts(L"Rock", 3), nullptr);
    EXPECT_EQ(cSchedMan->colCuts(L"Rock", -1), nullptr);
}

TEST_F(SchedManTest, CutsThatCannotBeReadAreNothingAndNoError)
{
    const auto cCut = cLibrary.cDataBase->Add(L"a.mp3", L"Rock", 1);
    cLibrary.Populate();
    cCut->failing = {"Key"};
    EXPECT_EQ(cSchedMan->colCuts(L"Rock"), nullptr);
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

class ReloadedWindows final : public SchedulerWindows
{
public:
    bool bShowing = false;
    int lReloads = 0;
    bool bFails = false;
    std::function<void()> OnReload;

    bool LibraryExists() const override { return bShowing; }
    bool LibraryShowing() const override { return bShowing; }
    void ReloadLibrary() override
    {
        ++lReloads;
        if (OnReload)
            OnReload();
        if (bFails)
            throw std::runtime_error("no window");
    }
    void RefreshLibrary() override {}
    void ShowLibrary() override {}
    std::int32_t ShowCategory(CategoryRequest&) override { return lNotChosen; }
};

TEST_F(SchedManTest, ReloadingReloadsTheWindowAndReadsNeitherFilesNorDatabase)
{
    cLibrary.cDataBase->Add(L"a.mp3", L"Rock", 1);
    cLibrary.Populate();
    cSchedMan->ReloadAll(); // without windows nothing happens
    ReloadedWindows cWindows;
    cSchedMan->SetWindows(&cWindows);
    cLibrary.cDataBase->bAllCutsFails = true;
    cPorts.cFiles.ClearOperations();
    colSaid.clear();
    const auto colBefore = cSchedMan->colMainCats();
    cSchedMan->ReloadAll();
    EXPECT_EQ(cWindows.lReloads, 1) << "made first when there is none: that is the window side's";
    EXPECT_EQ(cSchedMan->colMainCats(), colBefore);
    EXPECT_TRUE(cPorts.cFiles.Operations().empty());
    EXPECT_TRUE(colSaid.empty());
    cWindows.bFails = true;
    EXPECT_NO_THROW(cSchedMan->ReloadAll());
    EXPECT_TRUE(boxes.empty()) << "errors are ignored";
    cSchedMan->SetWindows(nullptr);
}

TEST_F(SchedManTest, AManagerReleasedWhileItShowsSomethingLivesUntilThatIsOver)
{
    const std::shared_ptr<Cut> cCut = NewPlainCut();
    ReloadedWindows cWindows;
    cWindows.bFails = true; // what goes wrong afterwards is still logged
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
        cWindows.OnReload = release;
        call(*cSchedMan);
        EXPECT_TRUE(bReleased);
        EXPECT_TRUE(cWeak.expired());
    }
    cLibrary.cHost.OnEvent = nullptr;
}

TEST_F(SchedManTest, LinesLoggedWhileTheHostEditsACutAreInTheFileAtOnce)
{
    cLibrary.Populate();
    bool bAsked = false;
    cLibrary.cHost.OnEvent = [&](const std::wstring&) {
        cLibrary.cMod.WriteDebugLog(L"meanwhile");
        EXPECT_EQ(cPorts.LogMessages().back(), L"meanwhile");
        bAsked = true;
    };
    const std::shared_ptr<Cut> cCut = NewPlainCut();
    cSchedMan->RaiseEditRequestCutEvent(cCut);
    EXPECT_TRUE(bAsked);
}

TEST_F(SchedManTest, ProgressFollowersHearProgressOnlyAfterTheHost)
{
    HostEvents cWindow;
    cLibrary.cDataBase->Add(L"a.mp3", L"Rock", 1);
    cSchedMan->SetProgressFollower(&cWindow);
    Lines colBoth;
    cLibrary.cHost.OnEvent = [&](const std::wstring& sLine) { colBoth.push_back(L"host " + sLine); };
    cWindow.OnEvent = [&](const std::wstring& sLine) { colBoth.push_back(L"window " + sLine); };
    cLibrary.Populate();
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
    const auto cCut = cLibrary.cDataBase->Add(L"a.mp3", L"Rock", 1);
    cLibrary.Populate();
    cCut->SetLastPlayed(40'000);
    cLibrary.cDataBase->bFails = true;
    cSchedMan->UpdateArtistTitleHistory(cCut);
    EXPECT_EQ(boxes, Boxes{HandledError(L"UpdateArtistTitleHistory", StandardText(57), L"57")});
    EXPECT_EQ(cSchedMan->TitleHistoryCut(L"Title of a.mp3"), nullptr);
}

// A station of two cuts whose database refuses the times of plays for a while.
class RefusedPlaysTest : public SchedManTest
{
protected:
    RefusedPlaysTest()
    {
        cFirst = cLibrary.cDataBase->Add(L"a.mp3", L"Rock", 1);
        cSecond = cLibrary.cDataBase->Add(L"b.mp3", L"Rock", 1);
        cLibrary.Populate();
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
        const std::shared_ptr<Cut> cPlay = PlainCopyOf(*cCut);
        cPlay->SetLastPlayed(dtWhen);
        cSchedMan->UpdateArtistTitleHistory(cPlay);
    }

    std::shared_ptr<FakeCut> cFirst;
    std::shared_ptr<FakeCut> cSecond;
};

TEST_F(RefusedPlaysTest, SeparationsHoldWhileTimesArePending)
{
    Play(cFirst, cPorts.cClock.Now());
    std::shared_ptr<clsCat> cMainCat, cSubCat;
    std::wstring sKey;
    const auto cNext =
        cSchedMan->NextCutFromRotation(L"Rock\t1", false, nullptr, cMainCat, cSubCat, sKey, true);
    EXPECT_EQ(cNext->Key().Text(), L"b.mp3");
    EXPECT_EQ(cNext->KindCode(), eKindChosen);
}

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
    Refuse(true);
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
    const std::function<void()> colOccasions[] = {
        [&] { cLibrary.Populate(); }, [&] { cSchedMan->SaveHistoryAndOrdering(nullptr); }, [&] { End(); }};
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
    cLibrary.cDataBase->Add(L"a.mp3", L"Rock", 1);
    cLibrary.Populate();
    const std::function<void()> operations[] = {
        [&] {
        cPorts.cMessages.Typed = {L"x"};
        EXPECT_FALSE(cSchedMan->CreateCatLevel(cLibrary.MainCat(L"Rock")));
        },
        [&] { cSchedMan->ShuffleCategories({cLibrary.MainCat(L"Rock")}, true); },
        [&] {
        std::wstring sName = L"Rock";
        EXPECT_FALSE(cSchedMan->CreateMainCat(sName));
    },
                                };
    const Lines colTitles{L"Error in CreateCatLevel [cSchedMan]", L"Error in ShuffleCategories [cSchedMan]",
                          L"Error in CreateMainCat [cSchedMan]"};
    for (std::size_t at = 0; at < colTitles.size(); ++at)
    {
        boxes.clear();
        cPorts.cMessages.OnShown = [&] {
            cPorts.cMessages.OnShown = nullptr; // the screen fails once
            throw RuntimeError(error::DeviceIo);
        };
        operations[at]();
        ASSERT_FALSE(boxes.empty());
        EXPECT_EQ(boxes.back(), CriticalBox(colTitles[at], CriticalText(57)));
    }
    EXPECT_EQ(cLibrary.MainCat(L"Rock")->SubCats()->Count(), 1u);
}

TEST_F(SchedManTest, WhetherTheLibraryWindowShowsIsTheWindowsWord)
{
    ReloadedWindows cWindows;
    cSchedMan->SetWindows(&cWindows);
    EXPECT_FALSE(cSchedMan->UIShowing());
    cWindows.bShowing = true;
    EXPECT_TRUE(cSchedMan->UIShowing());
    cSchedMan->SetWindows(nullptr);
    EXPECT_FALSE(cSchedMan->UIShowing());
}

// ---- saving

TEST_F(SchedManTest, NothingSavesEveryMainCategoryAndACategoryItself)
{
    cLibrary.cDataBase->Add(L"a.mp3", L"Rock/Pop", 1);
    cLibrary.Populate();
    EXPECT_TRUE(cSchedMan->SaveHistoryAndOrdering(cLibrary.MainCat(L"Pop")));
    EXPECT_FALSE(cPorts.cFiles.FileExists(SifPath(L"Rock")));
    EXPECT_EQ(File(SifPath(L"Pop")), SifCut("a.mp3", 1));
    EXPECT_TRUE(cSchedMan->SaveHistoryAndOrdering(nullptr));
    EXPECT_EQ(File(SifPath(L"Rock")), SifCut("a.mp3", 1));
    EXPECT_FALSE(cSchedMan->SaveHistoryAndOrdering(cLibrary.Level(L"Rock", 1)));
    EXPECT_EQ(boxes, Boxes{OkBox(BoxIcon::None, L"RavloScheduler",
                                 L"SaveScheduleInfo was expecting a MAIN (level 0) cat!")});
}

TEST_F(SchedManTest, TheListIsSavedInTheOrderOfTheMainCategories)
{
    cLibrary.cDataBase->Add(L"a.mp3", L"B/A", 1);
    cLibrary.Populate();
    EXPECT_TRUE(cSchedMan->SaveCatNames());
    EXPECT_EQ(File(sMainCatsPath), "\r\nB\r\nA");
}

TEST_F(SchedManTest, AManagerReleasedInsideItsOwnSaveFinishesIt)
{
    cLibrary.cDataBase->Add(L"a.mp3", L"Rock", 1);
    cLibrary.Populate();
    clsSchedMan* const pSchedMan = cSchedMan.get();
    cLibrary.cHost.OnEvent = [this](const std::wstring&) { cSchedMan.reset(); };
    EXPECT_TRUE(pSchedMan->SaveHistoryAndOrdering(nullptr));
    EXPECT_EQ(File(SifPath(L"Rock")), SifCut("a.mp3", 1));
    EXPECT_EQ(File(sMainCatsPath), "\r\nRock") << "and then ends";
}

// ---- the end

TEST_F(SchedManTest, AManagerNeverPopulatedWritesNothing)
{
    cPorts.cFiles.ClearOperations();
    End();
    EXPECT_TRUE(cPorts.cFiles.Operations().empty());
}

TEST_F(SchedManTest, AManagerThatWasRefusedADatabaseWritesNothing)
{
    cLibrary.cDataBase = nullptr;
    cLibrary.Populate();
    End();
    EXPECT_TRUE(cPorts.cFiles.Paths().empty());
}

TEST_F(SchedManTest, AManagerThatNeverGotItsCutsWritesNothing)
{
    cPorts.cFiles.Put(sMainCatsPath, "\r\nRock");
    cLibrary.cDataBase->bAllCutsFails = true;
    cLibrary.Populate();
    End();
    EXPECT_EQ(File(sMainCatsPath), "\r\nRock");
    EXPECT_FALSE(cPorts.cFiles.FileExists(sSettingsPath));
}

TEST_F(SchedManTest, AtItsEndAPopulatedManagerSavesTheListAndTheSettings)
{
    cLibrary.cDataBase->Add(L"a.mp3", L"Rock", 1);
    cPorts.cFiles.Put(sSettingsPath, "5\r\nx\r\n-1\r\n");
    cLibrary.Populate();
    End();
    EXPECT_EQ(File(sMainCatsPath), "\r\nRock");
    EXPECT_EQ(File(sSettingsPath), "5\r\n60\r\n60\r\n");
    EXPECT_FALSE(cPorts.cFiles.FileExists(SifPath(L"Rock"))) << "orders are saved when they change";
    EXPECT_TRUE(boxes.empty());
}

TEST_F(SchedManTest, AtItsEndEveryRulesObjectLeavesItsFile)
{
    cLibrary.cDataBase->Add(L"a.mp3", L"Rock", 2);
    cLibrary.Populate();
    cLibrary.Level(L"Rock", 2)->Rules();
    End();
    EXPECT_EQ(File(L"C:\\Radio\\Scheduler\\Rules\\Rock\u00AC\u00AC\u00AC2.rls").size(), 69u);
}

TEST_F(SchedManTest, AtItsEndAManagerSavesToTheFolderItWasPopulatedFrom)
{
    cLibrary.cDataBase->Add(L"a.mp3", L"Rock", 1);
    cLibrary.Populate();
    cPorts.cFiles.Put(L"C:\\Other\\Scheduler\\MainCats.txt", "\r\nTheirs");
    cPorts.cFiles.Put(L"C:\\Other\\Scheduler\\SchedulerSettings.dat", "1\r\n2\r\n3\r\n");
    cLibrary.cMod.SetGlobalArtistSepMins(9);

    auto cOther = std::make_shared<clsSchedMan>(cLibrary.cMod);
    cOther->PopulateFromDataBase(std::make_shared<FakeDataBase>(), L"C:\\Other");
    EXPECT_EQ(cSchedMan->AppPath(), L"C:\\Other\\") << "the library's";
    EXPECT_TRUE(cSchedMan->SaveCatNames());
    EXPECT_TRUE(cSchedMan->SaveHistoryAndOrdering(nullptr));
    End();
    EXPECT_EQ(File(sMainCatsPath), "\r\nRock");
    EXPECT_EQ(File(SifPath(L"Rock")), SifCut("a.mp3", 1));
    EXPECT_EQ(File(sSettingsPath), "9\r\n60\r\n60\r\n") << "not the other folder's";
    EXPECT_EQ(File(L"C:\\Other\\Scheduler\\MainCats.txt"), "\r\nTheirs");
    cOther.reset();
    EXPECT_EQ(File(L"C:\\Other\\Scheduler\\SchedulerSettings.dat"), "1\r\n2\r\n3\r\n");
}

TEST_F(SchedManTest, AtItsEndAnUnreadableSettingsFileIsNotOverwritten)
{
    cPorts.cFiles.Put(sSettingsPath, "1\r\n2\r\n3\r\n");
    cPorts.cFiles.SetUnreadable(sSettingsPath, error::PermissionDenied);
    cLibrary.Populate();
    End();
    EXPECT_EQ(File(sSettingsPath), "1\r\n2\r\n3\r\n");
    EXPECT_TRUE(boxes.empty());
}

TEST_F(SchedManTest, AtItsEndADamagedListIsKeptAside)
{
    const std::string damaged = "\r\nRock\r\nRock\r\nJazz";
    cPorts.cFiles.Put(sMainCatsPath, damaged);
    cLibrary.Populate();
    End();
    EXPECT_EQ(File(sMainCatsPath), "\r\nRock");
    EXPECT_EQ(File(std::wstring(sMainCatsPath) + L".bak"), damaged);
}

TEST_F(SchedManTest, EachOfTwoManagersKeepsItsOwnUnreadList)
{
    const std::string damaged = "\r\nRock\r\nRock\r\nJazz";
    const std::wstring sTheirs = L"C:\\Other\\Scheduler\\MainCats.txt";
    for (const bool bOwnIsDamaged : {true, false})
    {
        RadioPorts cBoth;
        cBoth.cFiles.MakeFolders(L"C:\\Radio");
        cBoth.cFiles.MakeFolders(L"C:\\Other");
        cBoth.cFiles.Put(sMainCatsPath, bOwnIsDamaged ? damaged : "\r\nRock");
        cBoth.cFiles.Put(sTheirs, bOwnIsDamaged ? "\r\nBlues" : damaged);
        {
            Library cOwn(cBoth);
            cOwn.Populate();
            const auto cOther = std::make_shared<clsSchedMan>(cOwn.cMod);
            cOther->PopulateFromDataBase(std::make_shared<FakeDataBase>(), L"C:\\Other");
            cOwn.cSchedMan->colSavedCatNames(); // reads where the library is now
            EXPECT_TRUE(cOwn.cSchedMan->SaveCatNames());
            EXPECT_TRUE(cOther->SaveCatNames());
        }
        const std::wstring sDamaged = bOwnIsDamaged ? sMainCatsPath : sTheirs;
        const std::wstring sWhole = bOwnIsDamaged ? sTheirs : sMainCatsPath;
        EXPECT_EQ(cBoth.cFiles.Get(sDamaged + L".bak"), damaged);
        EXPECT_FALSE(cBoth.cFiles.FileExists(sWhole + L".bak"));
    }
}

TEST_F(SchedManTest, AtItsEndTheOrdersOwedByPicksAreSaved)
{
    cLibrary.cDataBase->Add(L"a.mp3", L"Rock", 1);
    cLibrary.cDataBase->Add(L"b.mp3", L"Rock", 1);
    cLibrary.Populate();
    cSchedMan->SetRotatesAllowed(true);
    cPorts.cFiles.SetReadOnly(L"C:\\Radio\\Scheduler\\History_and_Ordering");
    std::shared_ptr<clsCat> cMainCat;
    std::shared_ptr<clsCat> cSubCat;
    std::wstring sMainCatKey;
    EXPECT_EQ(cSchedMan->NextCutFromRotation(L"Rock\t1", false, nullptr, cMainCat, cSubCat, sMainCatKey)
                  ->Key()
                  .Text(),
              L"a.mp3");
    EXPECT_TRUE(boxes.empty()) << "no box on air";
    EXPECT_FALSE(cPorts.cFiles.FileExists(SifPath(L"Rock")));
    cPorts.cFiles.SetReadOnly(L"C:\\Radio\\Scheduler\\History_and_Ordering", false);
    cMainCat = cSubCat = nullptr;
    End();
    EXPECT_EQ(File(SifPath(L"Rock")), SifCut("b.mp3", 1) + SifCut("a.mp3", 1));
}

TEST_F(SchedManTest, AFailureAtTheEndIsShownAndTheOldListStays)
{
    cLibrary.cDataBase->Add(L"a.mp3", L"Rock", 1);
    cPorts.cFiles.Put(sMainCatsPath, "\r\nOld");
    cLibrary.Populate();
    cPorts.cFiles.SetReadOnly(sMainCatsPath);
    EXPECT_NO_THROW(End());
    EXPECT_EQ(File(sMainCatsPath), "\r\nOld");
    EXPECT_EQ(boxes, Boxes{CriticalBox(L"Error in SaveCatNames [cSchedMan]", L"75 Path/File access error")});
    EXPECT_EQ(File(sSettingsPath), "60\r\n60\r\n60\r\n") << "the rest is saved";
}

TEST_F(SchedManTest, HostHearsNothingAtTheEnd)
{
    cLibrary.cDataBase->Add(L"a.mp3", L"Rock", 1);
    cLibrary.Populate();
    colSaid.clear();
    cSchedMan.reset();
    EXPECT_TRUE(colSaid.empty());
}

// ---- a whole session on failing files

TEST_F(SchedManTest, AFailureAtAnyStepOfASessionLeavesEveryFileOldOrNew)
{
    const std::string rockOld = SifCut("b.mp3", 1) + SifCut("a.mp3", 1);
    const std::string rockNew = SifCut("a.mp3", 1) + SifCut("b.mp3", 1);
    const std::wstring sRules = L"C:\\Radio\\Scheduler\\Rules\\Rock\u00AC\u00AC\u00AC1.rls";
    const auto isOneOf = [](const std::string& bytes, std::initializer_list<std::string> colWhole) {
        return std::find(colWhole.begin(), colWhole.end(), bytes) != colWhole.end();
    };
    int lGood = 0;
    for (bool bFailed = true; bFailed; ++lGood)
    {
        MemoryPorts cDisk;
        cDisk.cFiles.MakeFolders(L"C:\\Radio\\Scheduler\\Rules");
        cDisk.cFiles.Put(sMainCatsPath, "\r\nRock\r\nJazz");
        cDisk.cFiles.Put(sSettingsPath, "1\r\n2\r\n3\r\n");
        cDisk.cFiles.Put(SifPath(L"Rock"), rockOld);
        FailingFiles cFiles(cDisk.cFiles, lGood);
        {
            Library cSession(cDisk, cFiles);
            cSession.cDataBase->Add(L"a.mp3", L"Rock", 1);
            cSession.cDataBase->Add(L"b.mp3", L"Rock", 1);
            cSession.Populate();
            EXPECT_EQ(cSession.Order(L"Rock", 1), (Keys{L"b.mp3", L"a.mp3"}));
            cSession.Level(L"Rock", 1)->SchedCuts()->MoveToEnd(0);
            cDisk.cMessages.Boxes.clear();
            const bool bSaved = cSession.cSchedMan->SaveHistoryAndOrdering(cSession.MainCat(L"Rock"));
            EXPECT_EQ(cDisk.cFiles.Get(SifPath(L"Rock")), bSaved ? rockNew : rockOld);
            EXPECT_EQ(cDisk.cMessages.Boxes.size(), bSaved ? 0u : 1u);
            EXPECT_EQ(cSession.Order(L"Rock", 1), (Keys{L"a.mp3", L"b.mp3"})) << "memory keeps the order";
            cSession.Level(L"Rock", 1)->Rules()->SetTitleSepMins(9);
            cSession.cMod.SetGlobalAlbumSepMins(4);
        }
        EXPECT_TRUE(isOneOf(cDisk.cFiles.Get(sMainCatsPath), {"\r\nRock\r\nJazz"}));
        EXPECT_TRUE(isOneOf(cDisk.cFiles.Get(sSettingsPath), {"1\r\n2\r\n3\r\n", "1\r\n2\r\n4\r\n"}));
        EXPECT_TRUE(isOneOf(cDisk.cFiles.Get(SifPath(L"Rock")), {rockOld, rockNew}));
        EXPECT_TRUE(!cDisk.cFiles.FileExists(sRules) || cDisk.cFiles.Get(sRules).size() == 69u);
        for (const std::wstring& sPath : cDisk.cFiles.Paths())
            EXPECT_FALSE(sPath.ends_with(L".tmp")) << lGood;
        bFailed = cFiles.bFailed;
        // What one full disk kept from the files, the next start finds as it was before, in one piece.
        Library cNext(cDisk);
        cNext.cDataBase->Add(L"a.mp3", L"Rock", 1);
        cNext.cDataBase->Add(L"b.mp3", L"Rock", 1);
        cDisk.cMessages.Boxes.clear();
        cNext.Populate();
        EXPECT_TRUE(cDisk.cMessages.Boxes.empty());
        EXPECT_EQ(cNext.MainCatNames(), (Lines{L"Rock", L"Jazz"}));
    }
    EXPECT_GT(lGood, 20) << "a folder, five saves of four steps each";
}

} // namespace
} // namespace ravlo::test
