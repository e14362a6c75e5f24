// SPDX-License-Identifier: MIT
#include "scheduler/HistoryFiles.h"

#include "platform/memory/FailingFiles.h"
#include "support/SchedulerTest.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace ravlo::test
{
namespace
{

using Saved = HistoryFiles::Saved;

class HistoryFilesTest : public testing::Test
{
protected:
    HistoryFilesTest()
    {
        cPorts.cFiles.MakeFolders(L"C:\\Radio\\Scheduler\\History_and_Ordering");
        cMod.StoreAppPath(sRadio);
        cRelay.Listen(&cHost);
    }

    std::shared_ptr<clsCat> NewMainCat(const std::wstring& sName,
                                       const std::vector<std::int32_t>& colLevels = {})
    {
        auto cMainCat = std::make_shared<clsCat>(cMod, sName, 0);
        for (const std::int32_t lLevel : colLevels)
            cMainCat->AddSubCat(std::make_shared<clsCat>(cMod, sName, lLevel));
        colMainCats->Add(TextKey(CategoryKey(sName, 0)), cMainCat);
        return cMainCat;
    }
    std::shared_ptr<FakeCut> AddCut(clsCat& cMainCat, const std::wstring& sKey, std::int32_t lLevel)
    {
        const std::shared_ptr<FakeCut> cCut = cDataBase.Add(sKey, cMainCat.CatName(), lLevel);
        bool bCreatedNewSubCat = false;
        EXPECT_TRUE(cMainCat.AddCut(cCut, bCreatedNewSubCat));
        return cCut;
    }
    // A main category whose level 1 holds cuts named 1.mp3, 2.mp3 ...
    std::shared_ptr<clsCat> NewMainCatOf(const std::wstring& sName, int lCuts)
    {
        const auto cMainCat = NewMainCat(sName);
        for (int lCut = 1; lCut <= lCuts; ++lCut)
            AddCut(*cMainCat, std::to_wstring(lCut) + L".mp3", 1);
        return cMainCat;
    }
    static Keys Order(const clsCat& cMainCat, std::int32_t lLevel)
    {
        Keys colKeys;
        for (const std::shared_ptr<Cut>& cCut : *cMainCat.SubCat(lLevel)->SchedCuts())
            colKeys.push_back(cCut->Key().Text());
        return colKeys;
    }

    Saved Save(const std::shared_ptr<clsCat>& cMainCat) { return cFiles.Save(cMainCat); }
    const std::string& File(const std::wstring& sName) const { return cPorts.cFiles.Get(SifPath(sName)); }
    // Reads a file of this content as the one of Rock.
    void Apply(const std::string& bytes)
    {
        cPorts.cFiles.Put(SifPath(L"Rock"), bytes);
        cFiles.ApplyHistory(*colMainCats, sRadio);
    }

    RadioPorts cPorts;
    ModScheduler cMod{cPorts.Ports()};
    HostEvents cHost;
    EventRelay cRelay{cMod};
    HistoryFiles cFiles{cMod, cRelay};
    std::shared_ptr<CatCollection> colMainCats = std::make_shared<CatCollection>();
    FakeDataBase cDataBase;
    Boxes& boxes = cPorts.cMessages.Boxes;
};

const std::wstring sSaveTitle = L"Error in SaveHistoryAndOrdering [cSchedMan]";

// ---- what is written

TEST_F(HistoryFilesTest, ARecordHasItsFieldsAtFixedPlaces)
{
    static_assert(HistoryFiles::recordSize == 1983);
    const auto cMainCat = NewMainCat(L"Rock");
    const auto cCut = AddCut(*cMainCat, L"D:\\Caf\u00E9.mp3", 0x0102);
    cCut->SetArtist(L"A");
    cCut->SetTitle(L"B \u20AC");
    EXPECT_EQ(Save(cMainCat), Saved::Yes);
    const std::string& bytes = File(L"Rock");
    ASSERT_EQ(bytes.size(), 1983u);
    EXPECT_EQ(bytes.substr(0, 255), "A" + std::string(254, ' '));
    EXPECT_EQ(bytes.substr(255, 255), "B \x80" + std::string(252, ' '));
    EXPECT_EQ(bytes.substr(510, 255), "D:\\Caf\xE9.mp3" + std::string(244, ' '));
    EXPECT_EQ(bytes.substr(765, 4), std::string("\x02\x01\0\0", 4));
    EXPECT_EQ(bytes.substr(769, 2), std::string(2, '\0'));
    EXPECT_EQ(bytes.substr(771), std::string(1212, '\0'));
}

TEST_F(HistoryFilesTest, ALevelWithoutCutsIsOneMarkerWithZeroTexts)
{
    const auto cMainCat = NewMainCat(L"Rock", {7});
    EXPECT_EQ(Save(cMainCat), Saved::Yes);
    const std::string& bytes = File(L"Rock");
    ASSERT_EQ(bytes.size(), 1983u);
    EXPECT_EQ(bytes.substr(0, 765), std::string(765, '\0'));
    EXPECT_EQ(bytes.substr(765, 6), std::string("\7\0\0\0\xFF\xFF", 6));
    EXPECT_EQ(bytes.substr(771), std::string(1212, '\0'));
}

TEST_F(HistoryFilesTest, RecordsStandInTheOrderOfTheLevelsAndOfTheirRotation)
{
    const auto cMainCat = NewMainCat(L"Rock", {3, 5});
    AddCut(*cMainCat, L"z.mp3", 2);
    AddCut(*cMainCat, L"c.mp3", 1);
    AddCut(*cMainCat, L"a.mp3", 1);
    AddCut(*cMainCat, L"y.mp3", 5);
    cMainCat->SubCat(1)->SchedCuts()->MoveToEnd(0);
    EXPECT_EQ(Save(cMainCat), Saved::Yes);
    EXPECT_EQ(File(L"Rock"), SifCut("a.mp3", 1) + SifCut("c.mp3", 1) + SifCut("z.mp3", 2) + SifMarker(3) +
                                 SifCut("y.mp3", 5));
}

TEST_F(HistoryFilesTest, ACutsLevelIsItsOwnNotThatOfItsPlace)
{
    const auto cMainCat = NewMainCat(L"Rock");
    AddCut(*cMainCat, L"a.mp3", 1)->SetCatLevel(4);
    Save(cMainCat);
    EXPECT_EQ(File(L"Rock"), SifCut("a.mp3", 4));
}

TEST_F(HistoryFilesTest, LevelsWithoutANumberAndCutsOfTheMainCategoryAreNotWritten)
{
    const auto cMainCat = NewMainCat(L"Rock", {1, 2});
    AddCut(*cMainCat, L"a.mp3", 1);
    cMainCat->SubCat(2)->SetCatLevel(0);
    Save(cMainCat);
    EXPECT_EQ(File(L"Rock"), SifCut("a.mp3", 1));
}

TEST_F(HistoryFilesTest, TheUniqueKeyIsWrittenNotThePathThatCanBeSetApart)
{
    const auto cMainCat = NewMainCat(L"Rock");
    AddCut(*cMainCat, L"key.mp3", 1)->SetPath(L"elsewhere.mp3");
    Save(cMainCat);
    EXPECT_EQ(File(L"Rock"), SifCut("key.mp3", 1));
}

TEST_F(HistoryFilesTest, TextsAreCutAt255BytesAndEmptyOnesAreBlanks)
{
    const auto cMainCat = NewMainCat(L"Rock");
    const auto cLong = AddCut(*cMainCat, std::wstring(300, L'p'), 1);
    cLong->SetArtist(std::wstring(256, L'a'));
    cLong->SetTitle(std::wstring(255, L't'));
    const auto cEmpty = AddCut(*cMainCat, L"x", 1);
    cEmpty->SetArtist(L"");
    cEmpty->SetTitle(L"");
    Save(cMainCat);
    EXPECT_EQ(File(L"Rock"), SifCut(std::string(255, 'a'), std::string(255, 't'), std::string(255, 'p'), 1) +
                                 SifCut("", "", "x", 1));
}

TEST_F(HistoryFilesTest, WhatTheCodePageLacksIsSubstituted)
{
    const auto cMainCat = NewMainCat(L"Rock");
    const auto cCut = AddCut(*cMainCat, L"\u65E5.mp3", 1);
    cCut->SetArtist(L"\u672C");
    cCut->SetTitle(L"\u0416");
    Save(cMainCat);
    EXPECT_EQ(File(L"Rock"), SifCut("?", "?", "?.mp3", 1));
}

// ---- what a save says and refuses

TEST_F(HistoryFilesTest, ASaveTellsOfItsTwoPhases)
{
    EXPECT_EQ(Save(NewMainCatOf(L"Rock", 3)), Saved::Yes);
    EXPECT_EQ(cHost.colSaid,
              (Lines{L"Start 3: Saving Ordering and hist for: Rock",
                     L"Start 3: Saving info for: Rock to file.", L"Done: Saved Scheduler Info for: Rock"}));
    EXPECT_TRUE(boxes.empty());
    EXPECT_EQ(cPorts.cHostLoop.lPumps, 0);
}

TEST_F(HistoryFilesTest, ASaveReportsEveryTwentiethRecordAtMostOncePer100Milliseconds)
{
    const auto cMainCat = NewMainCatOf(L"Rock", 120);
    const auto advanceAt = [&](std::size_t lCut, std::uint32_t lMilliseconds) {
        static_cast<FakeCut&>(*cDataBase.colCuts[lCut - 1]).OnCall =
            [this, lMilliseconds](const std::string& sMember) {
            if (sMember == "Artist")
                cPorts.cClock.Advance(lMilliseconds);
        };
    };
    advanceAt(1, 100);   // at record 20 exactly 100: not due
    advanceAt(21, 1);    // at 40: 101
    advanceAt(41, 1000); // at 60
    advanceAt(100, 101); // at 100
    // While the records are written only the pumps let time pass, every 50th record.
    cPorts.cHostLoop.OnPump = [this] { cPorts.cClock.Advance(60); };
    EXPECT_EQ(Save(cMainCat), Saved::Yes);
    EXPECT_EQ(cHost.colSaid,
              (Lines{L"Start 120: Saving Ordering and hist for: Rock", L"Progress 40/120: Saved: 40 of 120",
                     L"Progress 60/120: Saved: 60 of 120", L"Progress 100/120: Saved: 100 of 120",
                     L"Start 120: Saving info for: Rock to file.",
                     L"Progress 100/120: Saving item 100 of 120", L"Done: Saved Scheduler Info for: Rock"}));
    EXPECT_EQ(cPorts.cHostLoop.lPumps, 5)
        << "one with each report of the first phase, two at records 50 and 100";
    EXPECT_EQ(cPorts.cHostLoop.lSleeps, 0);
}

TEST_F(HistoryFilesTest, WithoutAnyRecordNothingIsWrittenAndAnOldFileStays)
{
    const auto cMainCat = NewMainCat(L"Rock");
    cPorts.cFiles.Put(SifPath(L"Rock"), "old");
    EXPECT_EQ(Save(cMainCat), Saved::NoRecords);
    EXPECT_EQ(File(L"Rock"), "old");
    EXPECT_TRUE(boxes.empty());
    EXPECT_TRUE(cHost.colSaid.empty());
}

TEST_F(HistoryFilesTest, ALevelIsNoMainCategory)
{
    const auto cMainCat = NewMainCatOf(L"Rock", 1);
    EXPECT_EQ(Save(cMainCat->SubCat(1)), Saved::NotMain);
    EXPECT_EQ(boxes, Boxes{OkBox(BoxIcon::None, L"RavloScheduler",
                                 L"SaveScheduleInfo was expecting a MAIN (level 0) cat!")});
    EXPECT_TRUE(cPorts.cFiles.Paths().empty());
}

TEST_F(HistoryFilesTest, ANameThatCanBeNoFilesNameIsReported)
{
    for (const wchar_t* sName : {L"AC/DC", L"NUL", L"..\\x", L"What?", L"a\tb"})
    {
        boxes.clear();
        const auto cMainCat = NewMainCat(sName, {1});
        EXPECT_EQ(Save(cMainCat), Saved::Failed);
        EXPECT_EQ(boxes,
                  Boxes{CriticalBox(sSaveTitle, L"52 Bad file name: \"" + std::wstring(sName) + L"\"")});
    }
    EXPECT_EQ(cPorts.cFiles.Paths().size(), 1u) << "the log alone";
}

TEST_F(HistoryFilesTest, DotsAreFineInAName)
{
    for (const wchar_t* sName : {L"R.E.M.", L".."})
        EXPECT_EQ(Save(NewMainCat(sName, {1})), Saved::Yes);
    EXPECT_EQ(File(L"R.E.M."), SifMarker(1));
    EXPECT_EQ(cPorts.cFiles.Get(L"C:\\Radio\\Scheduler\\History_and_Ordering\\...sif"), SifMarker(1));
}

TEST_F(HistoryFilesTest, WithoutAnApplicationPathASaveFails)
{
    ModScheduler cOther(cPorts.Ports());
    HistoryFiles cOtherFiles(cOther, cRelay);
    EXPECT_EQ(cOtherFiles.Save(NewMainCat(L"Rock", {1})), Saved::Failed);
    EXPECT_EQ(boxes, Boxes{CriticalBox(sSaveTitle, L"76 Path not found: Rock")});
}

TEST_F(HistoryFilesTest, ACutWithoutKeyIsReportedAndTheOldFileStays)
{
    const auto cMainCat = NewMainCatOf(L"Rock", 3);
    cPorts.cFiles.Put(SifPath(L"Rock"), "old");
    static_cast<FakeCut&>(*cDataBase.colCuts[1]).failing = {"Key"};
    EXPECT_EQ(Save(cMainCat), Saved::Failed);
    EXPECT_EQ(boxes,
              Boxes{CriticalBox(sSaveTitle, L"91 Object variable or With block variable not set: Rock")});
    EXPECT_EQ(File(L"Rock"), "old");
}

TEST_F(HistoryFilesTest, TextsThatCannotBeReadAreBlankAndLogged)
{
    const auto cMainCat = NewMainCatOf(L"Rock", 3);
    static_cast<FakeCut&>(*cDataBase.colCuts[0]).failing = {"Title"};
    static_cast<FakeCut&>(*cDataBase.colCuts[1]).failing = {"Artist", "Title"};
    EXPECT_EQ(Save(cMainCat), Saved::Yes);
    EXPECT_TRUE(boxes.empty());
    EXPECT_EQ(File(L"Rock"),
              SifCut("Artist of 1.mp3", "", "1.mp3", 1) + SifCut("", "", "2.mp3", 1) + SifCut("3.mp3", 1));
    EXPECT_EQ(
        cPorts.LogMessages(),
        Lines{L"Saved as blanks in the order of Rock, texts that cannot be read: 3, the first of 1.mp3: "
              L"91 Object variable or With block variable not set"});
}

TEST_F(HistoryFilesTest, AFailedSaveEndsItsProgress)
{
    const auto cMainCat = NewMainCatOf(L"Rock", 2);
    Save(cMainCat);
    cHost.colSaid.clear();
    cPorts.cFiles.SetReadOnly(SifPath(L"Rock"));
    EXPECT_EQ(Save(cMainCat), Saved::Failed);
    EXPECT_EQ(cHost.colSaid, (Lines{L"Start 2: Saving Ordering and hist for: Rock",
                                    L"Start 2: Saving info for: Rock to file.",
                                    L"Done: Could not save Scheduler Info for: Rock"}));
}

TEST_F(HistoryFilesTest, TheModeDecidesWhatIsSaid)
{
    struct Row
    {
        SaveMode mode;
        std::size_t events;
        std::size_t lBoxes;
    };
    for (const Row& row :
         {Row{{}, 3, 1}, Row{{.bProgress = false}, 0, 1}, Row{{.bBoxes = false}, 3, 0}, Row{quietly, 0, 0}})
    {
        const auto cMainCat = NewMainCat(L"Rock", {1});
        cHost.colSaid.clear();
        cPorts.cFiles.SetReadOnly(SifPath(L"Rock"), false);
        EXPECT_EQ(cFiles.Save(cMainCat, row.mode), Saved::Yes);
        EXPECT_EQ(cHost.colSaid.size(), row.events);
        boxes.clear();
        cPorts.cFiles.Put(RadioPorts::LogPath(), "");
        cPorts.cFiles.SetReadOnly(SifPath(L"Rock"));
        EXPECT_EQ(cFiles.Save(cMainCat, row.mode), Saved::Failed);
        EXPECT_EQ(boxes.size(), row.lBoxes);
        EXPECT_NE(cPorts.cFiles.Get(RadioPorts::LogPath()).find("75 Path/File access error"),
                  std::string::npos);
    }
}

// ---- saving all

TEST_F(HistoryFilesTest, SavingAllSavesEachInTurn)
{
    NewMainCat(L"Rock", {1});
    NewMainCat(L"Pop", {2});
    EXPECT_TRUE(cFiles.SaveAll(colMainCats));
    EXPECT_EQ(File(L"Rock"), SifMarker(1));
    EXPECT_EQ(File(L"Pop"), SifMarker(2));
    EXPECT_EQ(cHost.colSaid.front(), L"Start 1: Saving Ordering and hist for: Rock");
    EXPECT_EQ(cHost.colSaid.back(), L"Done: Saved Scheduler Info for: Pop");
}

TEST_F(HistoryFilesTest, SavingAllGoesOnAfterOneWithoutRecordsOrWithAnError)
{
    NewMainCat(L"Empty");
    NewMainCat(L"AC/DC", {1});
    NewMainCat(L"Rock", {1});
    EXPECT_FALSE(cFiles.SaveAll(colMainCats));
    EXPECT_EQ(File(L"Rock"), SifMarker(1));
    EXPECT_EQ(boxes, Boxes{CriticalBox(sSaveTitle, L"52 Bad file name: \"AC/DC\"")})
        << "one report per category";
}

TEST_F(HistoryFilesTest, SavingAllStopsAtOneThatIsNoMainCategory)
{
    NewMainCat(L"First", {1});
    NewMainCat(L"Second", {1})->SetCatLevel(4);
    NewMainCat(L"Third", {1});
    EXPECT_FALSE(cFiles.SaveAll(colMainCats));
    EXPECT_TRUE(cPorts.cFiles.FileExists(SifPath(L"First")));
    EXPECT_FALSE(cPorts.cFiles.FileExists(SifPath(L"Third")));
    EXPECT_EQ(boxes.size(), 1u);
}

TEST_F(HistoryFilesTest, CategoryDeletedDuringAnEditIsNotSaved)
{
    NewMainCat(L"Rock", {1});
    NewMainCat(L"Pop", {1});
    cHost.OnEvent = [this](const std::wstring&) {
        cHost.OnEvent = nullptr;
        colMainCats->Remove(L"Pop\t0");
        cFiles.DeleteFile(L"Pop");
    };
    EXPECT_TRUE(cFiles.SaveAll(colMainCats));
    EXPECT_FALSE(cPorts.cFiles.FileExists(SifPath(L"Pop")));
}

TEST_F(HistoryFilesTest, ReplacedTreeIsTheOneThatIsSaved)
{
    NewMainCat(L"Rock", {1});
    NewMainCat(L"Pop", {1});
    cHost.OnEvent = [this](const std::wstring&) {
        cHost.OnEvent = nullptr;
        colMainCats = std::make_shared<CatCollection>();
        NewMainCat(L"Pop", {2});
    };
    EXPECT_TRUE(cFiles.SaveAll(colMainCats));
    EXPECT_EQ(File(L"Pop"), SifMarker(2));
}

// ---- saves inside saves

TEST_F(HistoryFilesTest, WhatIsWrittenIsTheOrderAtTheMomentOfTheCall)
{
    const auto cMainCat = NewMainCatOf(L"Rock", 2);
    cHost.OnEvent = [&](const std::wstring&) {
        cHost.OnEvent = nullptr;
        cMainCat->SubCat(1)->SchedCuts()->MoveToEnd(0);
        cMod.StoreAppPath(L"C:\\Elsewhere");
    };
    EXPECT_EQ(Save(cMainCat), Saved::Yes);
    EXPECT_EQ(File(L"Rock"), SifCut("1.mp3", 1) + SifCut("2.mp3", 1));
}

TEST_F(HistoryFilesTest, AnOlderSaveNeverReplacesANewerOne)
{
    // At every event of the outer save, and within the inner one once more.
    for (std::size_t event = 0; event < 3; ++event)
    {
        cHost.colSaid.clear();
        cHost.OnEvent = nullptr;
        const auto cMainCat = NewMainCatOf(L"Cat" + std::to_wstring(event), 3);
        cHost.OnEvent = [&, event](const std::wstring&) {
            if (cHost.colSaid.size() != event + 1)
                return;
            cMainCat->SubCat(1)->SchedCuts()->MoveToEnd(0); // a pick
            EXPECT_EQ(Save(cMainCat), Saved::Yes);
        };
        EXPECT_EQ(Save(cMainCat), Saved::Yes) << "overtaken counts as saved";
        EXPECT_EQ(File(cMainCat->CatName()), SifCut("2.mp3", 1) + SifCut("3.mp3", 1) + SifCut("1.mp3", 1));
        EXPECT_TRUE(cPorts.TemporaryFiles().empty());
    }
}

TEST_F(HistoryFilesTest, ASaveOnItsWayDoesNotBringADeletedFileBack)
{
    const auto cMainCat = NewMainCat(L"Rock", {1});
    Save(cMainCat);
    cHost.OnEvent = [this](const std::wstring&) { cFiles.DeleteFile(L"Rock"); };
    EXPECT_EQ(Save(cMainCat), Saved::Yes);
    EXPECT_FALSE(cPorts.cFiles.FileExists(SifPath(L"Rock")));
    cHost.OnEvent = nullptr;
    EXPECT_EQ(Save(cMainCat), Saved::Yes);
    EXPECT_EQ(File(L"Rock"), SifMarker(1)) << "a save after the deletion writes again";
}

TEST_F(HistoryFilesTest, DeletingAFileThatIsNotThereOrCannotBeIsNoError)
{
    EXPECT_NO_THROW(cFiles.DeleteFile(L"Rock"));
    EXPECT_NO_THROW(cFiles.DeleteFile(L"..\\..\\boot"));
    cPorts.cFiles.Put(SifPath(L"Rock"), "x");
    cPorts.cFiles.SetReadOnly(SifPath(L"Rock"));
    EXPECT_THROW(cFiles.DeleteFile(L"Rock"), RuntimeError);
}

// ---- saves without a word

TEST_F(HistoryFilesTest, AQuietSaveThatFailsIsOwedUntilItSucceeds)
{
    const auto cMainCat = NewMainCat(L"Rock", {1});
    cPorts.cFiles.SetReadOnly(L"C:\\Radio\\Scheduler\\History_and_Ordering");
    cFiles.SaveAfterPick(cMainCat, *colMainCats);
    EXPECT_TRUE(boxes.empty());
    EXPECT_TRUE(cHost.colSaid.empty());
    EXPECT_EQ(cPorts.LogMessages(),
              Lines{L"DISPLAYERROR, SaveHistoryAndOrdering Rock 75 Path/File access error"});
    cPorts.cClock.Advance(UnsavedOrders::lRetryMs);
    cFiles.RetryDue(*colMainCats);
    EXPECT_EQ(cPorts.LogMessages().size(), 2u) << "tried again, failed again, still owed";
    cPorts.cFiles.SetReadOnly(L"C:\\Radio\\Scheduler\\History_and_Ordering", false);
    cPorts.cClock.Advance(UnsavedOrders::lRetryMs);
    cFiles.RetryDue(*colMainCats);
    EXPECT_EQ(File(L"Rock"), SifMarker(1));
    cPorts.cFiles.ClearOperations();
    cFiles.RetryDue(*colMainCats);
    EXPECT_TRUE(cPorts.cFiles.Operations().empty()) << "owed no more";
}

TEST_F(HistoryFilesTest, WhatIsOwedIsSettledByAnySaveOfTheCategoryAndForgottenWithIt)
{
    const auto cRock = NewMainCat(L"Rock", {1});
    const auto cPop = NewMainCat(L"Pop", {1});
    cPorts.cFiles.SetReadOnly(L"C:\\Radio\\Scheduler\\History_and_Ordering");
    cFiles.SaveAfterPick(cRock, *colMainCats);
    cFiles.SaveAfterPick(cPop, *colMainCats);
    cPorts.cFiles.SetReadOnly(L"C:\\Radio\\Scheduler\\History_and_Ordering", false);
    EXPECT_EQ(Save(cRock), Saved::Yes);
    colMainCats->Remove(L"Pop\t0");
    cPorts.cClock.Advance(UnsavedOrders::lRetryMs);
    cPorts.cFiles.ClearOperations();
    cFiles.RetryDue(*colMainCats);
    EXPECT_TRUE(cPorts.cFiles.Operations().empty());
}

// ---- failing files

TEST_F(HistoryFilesTest, AnyFailureOfASaveLosesNothingAndIsShownPerCategory)
{
    NewMainCatOf(L"Rock", 3);
    NewMainCat(L"Pop", {1});
    const std::pair<const wchar_t*, std::string> files[] = {
        {L"Rock", SifCut("1.mp3", 1) + SifCut("2.mp3", 1) + SifCut("3.mp3", 1)}, {L"Pop", SifMarker(1)}};
    for (const bool bStaysBroken : {false, true})
        for (int lGood = 0;; ++lGood)
        {
            MemoryPorts cDisk;
            for (const auto& [sName, bytes] : files)
                cDisk.cFiles.Put(SifPath(sName), "old"); // of another program: never read here
            FailingFiles cFailing(cDisk.cFiles, lGood);
            cFailing.bStaysBroken = bStaysBroken;
            cFailing.bCountReads = cFailing.bCountLooks = true;
            ModScheduler cOther(cDisk.PortsWith(cFailing));
            cOther.StoreAppPath(sRadio);
            HistoryFiles cOtherFiles(cOther, cRelay);
            const bool bSaved = cOtherFiles.SaveAll(colMainCats);
            std::size_t unsaved = 0;
            for (const auto& [sName, bytes] : files)
            {
                const bool bNew =
                    !cDisk.cFiles.FileExists(SifPath(sName)) || cDisk.cFiles.Get(SifPath(sName)) == bytes;
                EXPECT_EQ(cDisk.cFiles.Get(SifPath(sName) + (bNew ? L".bak" : L"")), "old");
                unsaved += bNew && cDisk.cFiles.FileExists(SifPath(sName)) ? 0 : 1;
            }
            EXPECT_EQ(cDisk.cMessages.Boxes.size(), unsaved);
            EXPECT_EQ(bSaved, unsaved == 0);
            if (!cFailing.bFailed)
                break;
            cFailing.bStaysBroken = false;
            EXPECT_TRUE(cOtherFiles.SaveAll(colMainCats)) << "when the disk is well again";
            for (const auto& [sName, bytes] : files)
            {
                EXPECT_EQ(cDisk.cFiles.Get(SifPath(sName)), bytes);
                EXPECT_EQ(cDisk.cFiles.Get(SifPath(sName) + L".bak"), "old");
                EXPECT_FALSE(cDisk.cFiles.FileExists(SifPath(sName) + L".bak2"));
            }
        }
}

TEST_F(HistoryFilesTest, AFailureWhileAnUnappliedFileIsKeptAsideLosesNothing)
{
    const std::string damaged = SifCut("1.mp3", 1) + "x";
    for (int lGood = 0;; ++lGood)
    {
        MemoryPorts cDisk;
        cDisk.cFiles.Put(SifPath(L"Rock"), damaged);
        FailingFiles cFailing(cDisk.cFiles, lGood);
        ModScheduler cOther(cDisk.PortsWith(cFailing));
        cOther.StoreAppPath(sRadio);
        HistoryFiles cOtherFiles(cOther, cRelay);
        colMainCats->Clear();
        const auto cMainCat = NewMainCat(L"Rock", {1});
        cOtherFiles.ApplyHistory(*colMainCats, sRadio);
        const bool bSaved = cOtherFiles.Save(cMainCat) == Saved::Yes;
        const std::wstring sBak = SifPath(L"Rock") + L".bak";
        EXPECT_EQ(cDisk.cFiles.Get(SifPath(L"Rock")), bSaved ? SifMarker(1) : damaged);
        EXPECT_TRUE(!bSaved || cDisk.cFiles.Get(sBak) == damaged);
        if (!cFailing.bFailed)
            break;
        EXPECT_EQ(cOtherFiles.Save(cMainCat), Saved::Yes) << "and the next save does both";
        EXPECT_EQ(cDisk.cFiles.Get(sBak), damaged);
        EXPECT_EQ(cDisk.cFiles.Get(SifPath(L"Rock")), SifMarker(1));
    }
}

// ---- reading

TEST_F(HistoryFilesTest, WithoutAFileTheOrderStaysAndNothingIsSaid)
{
    const auto cMainCat = NewMainCatOf(L"Rock", 3);
    cFiles.ApplyHistory(*colMainCats, sRadio);
    EXPECT_EQ(Order(*cMainCat, 1), (Keys{L"1.mp3", L"2.mp3", L"3.mp3"}));
    EXPECT_TRUE(cHost.colSaid.empty());
    EXPECT_TRUE(boxes.empty());
}

TEST_F(HistoryFilesTest, TheSavedOrderComesBack)
{
    const auto cMainCat = NewMainCatOf(L"Rock", 3);
    Apply(SifCut("3.mp3", 1) + SifCut("1.mp3", 1) + SifCut("2.mp3", 1));
    EXPECT_EQ(Order(*cMainCat, 1), (Keys{L"3.mp3", L"1.mp3", L"2.mp3"}));
    EXPECT_EQ(cHost.colSaid, (Lines{L"Start 3: Getting Ordering and Scheduler History for: Rock",
                                    L"Done: Got Scheduler [from file] Info for: Rock"}));
    EXPECT_EQ(cPorts.cHostLoop.lPumps, 1);
    EXPECT_TRUE(cMainCat->SubCat(1)->SchedCuts()->Exists(L"2.mp3"));
}

TEST_F(HistoryFilesTest, CutsTheFileDoesNotNameComeUpFirstInTheDatabasesOrder)
{
    const auto cMainCat = NewMainCatOf(L"Rock", 5);
    Apply(SifCut("4.mp3", 1) + SifCut("2.mp3", 1));
    EXPECT_EQ(Order(*cMainCat, 1), (Keys{L"1.mp3", L"3.mp3", L"5.mp3", L"4.mp3", L"2.mp3"}));
}

TEST_F(HistoryFilesTest, CutsThatAreNoLongerPresentArePassedOver)
{
    const auto cMainCat = NewMainCatOf(L"Rock", 2);
    Apply(SifCut("2.mp3", 1) + SifCut("gone.mp3", 1) + SifCut("1.mp3", 1));
    EXPECT_EQ(Order(*cMainCat, 1), (Keys{L"2.mp3", L"1.mp3"}));
    EXPECT_TRUE(boxes.empty());
}

TEST_F(HistoryFilesTest, EachLevelIsPutInOrderByItself)
{
    const auto cMainCat = NewMainCat(L"Rock");
    for (const wchar_t* sKey : {L"a.mp3", L"b.mp3"})
    {
        AddCut(*cMainCat, sKey, 1);
        AddCut(*cMainCat, sKey, 2);
    }
    Apply(SifCut("b.mp3", 2) + SifCut("b.mp3", 1) + SifCut("a.mp3", 2) + SifCut("a.mp3", 1));
    EXPECT_EQ(Order(*cMainCat, 1), (Keys{L"b.mp3", L"a.mp3"}));
    EXPECT_EQ(Order(*cMainCat, 2), (Keys{L"b.mp3", L"a.mp3"}));
}

TEST_F(HistoryFilesTest, PathIsFoundInAnyCaseAndWithBlanksAtItsEnds)
{
    const auto cMainCat = NewMainCat(L"Rock");
    for (const wchar_t* sKey : {L"Caf\u00E9.mp3", L" lead.mp3", L"trail.mp3 ", L"x.mp3"})
        AddCut(*cMainCat, sKey, 1);
    Apply(SifCut("x.mp3", 1) + SifCut("trail.mp3", 1) + SifCut("  lead.mp3  ", 1) + SifCut("CAF\xC9.MP3", 1));
    EXPECT_EQ(Order(*cMainCat, 1), (Keys{L"x.mp3", L"trail.mp3 ", L" lead.mp3", L"Caf\u00E9.mp3"}));
}

TEST_F(HistoryFilesTest, PathNamedTwiceTakesItsLastPlace)
{
    const auto cMainCat = NewMainCatOf(L"Rock", 3);
    Apply(SifCut("1.mp3", 1) + SifCut("2.mp3", 1) + SifCut("3.mp3", 1) + SifCut("1.mp3", 1));
    EXPECT_EQ(Order(*cMainCat, 1), (Keys{L"2.mp3", L"3.mp3", L"1.mp3"}));
}

TEST_F(HistoryFilesTest, NamesOutsideTheCodePageKeepTheirPlaces)
{
    const auto cMainCat = NewMainCat(L"Rock");
    for (const wchar_t* sKey : {L"\u65E5.mp3", L"a.mp3", L"\u672C\u672C.mp3", L"b.mp3"})
        AddCut(*cMainCat, sKey, 1);
    Apply(SifCut("b.mp3", 1) + SifCut("??.mp3", 1) + SifCut("a.mp3", 1) + SifCut("?.mp3", 1));
    EXPECT_EQ(Order(*cMainCat, 1), (Keys{L"b.mp3", L"\u672C\u672C.mp3", L"a.mp3", L"\u65E5.mp3"}));
}

TEST_F(HistoryFilesTest, TheKthRecordOfTheSameBytesIsTheKthSuchCut)
{
    const auto cMainCat = NewMainCat(L"Rock");
    for (const wchar_t* sKey : {L"\u65E5.mp3", L"a.mp3", L"\u672C.mp3", L"\u4E2D.mp3"})
        AddCut(*cMainCat, sKey, 1);
    Apply(SifCut("?.mp3", 1) + SifCut("?.mp3", 1) + SifCut("a.mp3", 1) + SifCut("?.mp3", 1) +
          SifCut("?.mp3", 1));
    EXPECT_EQ(Order(*cMainCat, 1), (Keys{L"\u65E5.mp3", L"\u672C.mp3", L"a.mp3", L"\u4E2D.mp3"}));
}

TEST_F(HistoryFilesTest, AnExactKeyComesBeforeTheCutsThatOnlyLookLikeIt)
{
    const auto cMainCat = NewMainCat(L"Rock");
    for (const wchar_t* sKey : {L"\u65E5.mp3", L"?.mp3", L"a.mp3"})
        AddCut(*cMainCat, sKey, 1);
    Apply(SifCut("?.mp3", 1) + SifCut("a.mp3", 1) + SifCut("?.mp3", 1));
    EXPECT_EQ(Order(*cMainCat, 1), (Keys{L"?.mp3", L"a.mp3", L"\u65E5.mp3"}));
}

TEST_F(HistoryFilesTest, PathsThatAgreeInTheirFirst255BytesBothKeepAPlace)
{
    const std::wstring sLong(255, L'p');
    const auto cMainCat = NewMainCat(L"Rock");
    for (const std::wstring& sKey : {sLong + L"1", std::wstring(L"a.mp3"), sLong + L"2", sLong})
        AddCut(*cMainCat, sKey, 1);
    ASSERT_EQ(Save(cMainCat), Saved::Yes);
    const std::string p(255, 'p');
    EXPECT_EQ(File(L"Rock").substr(510, 255), p);
    Apply(SifCut("", "", p, 1) + SifCut("", "", p, 1) + SifCut("a.mp3", 1) + SifCut("", "", p, 1));
    EXPECT_EQ(Order(*cMainCat, 1), (Keys{sLong, sLong + L"1", L"a.mp3", sLong + L"2"}))
        << "they cannot be told apart, but none of them falls to the front";
}

TEST_F(HistoryFilesTest, WhatIsSavedIsWhatComesBack)
{
    constexpr unsigned lSeed = 20240304;
    std::mt19937 random(lSeed);
    for (int lRound = 0; lRound < 20; ++lRound)
    {
        colMainCats->Clear();
        const auto cMainCat = NewMainCat(L"Rock", {9});
        Keys colKeys;
        for (int lCut = 0; lCut < 60; ++lCut)
            AddCut(*cMainCat, std::to_wstring(lCut) + (lCut % 3 ? L".mp3" : L"\u20AC \u00E9.mp3"),
                   1 + lCut % 2);
        const Keys colDataBaseOrder = Order(*cMainCat, 1);
        for (std::size_t move = 0; move < 100; ++move)
            cMainCat->SubCat(1)->SchedCuts()->MoveToEnd(random() % 30);
        colKeys = Order(*cMainCat, 1);
        ASSERT_EQ(Save(cMainCat), Saved::Yes);
        for (const std::wstring& sKey : colDataBaseOrder)
            cMainCat->SubCat(1)->SchedCuts()->SendToBack(TextKey(sKey));
        ASSERT_EQ(Order(*cMainCat, 1), colDataBaseOrder);
        cMainCat->RemoveSubCat(cMainCat->SubCat(9));
        cFiles.ApplyHistory(*colMainCats, sRadio);
        ASSERT_EQ(Order(*cMainCat, 1), colKeys) << "seed " << lSeed << ", round " << lRound;
        ASSERT_TRUE(cMainCat->SubCat(9));
    }
}

TEST_F(HistoryFilesTest, AMarkerMakesAMissingLevelAndLeavesAnExistingOne)
{
    const auto cMainCat = NewMainCatOf(L"Rock", 1);
    Apply(SifMarker(5) + SifMarker(1) + SifMarker(3));
    ASSERT_TRUE(cMainCat->SubCat(5));
    EXPECT_EQ(cMainCat->SubCat(5)->CatName(), L"Rock");
    EXPECT_EQ(cMainCat->SubCat(5)->MainCat(), cMainCat);
    EXPECT_EQ(cMainCat->SubCats()->Count(), 3u);
    EXPECT_EQ(cMainCat->SubCats()->At(1)->CatLevel(), 3);
    EXPECT_EQ(Order(*cMainCat, 1), Keys{L"1.mp3"});
    EXPECT_TRUE(boxes.empty());
}

TEST_F(HistoryFilesTest, AnyNonzeroMarkerIsOneAndTheReservedBytesAreIgnored)
{
    const auto cMainCat = NewMainCatOf(L"Rock", 2);
    std::string marker = SifMarker(5);
    marker[769] = '\1';
    marker[770] = '\0';
    std::string record = SifCut("1.mp3", 1);
    record.replace(771, 1212, std::string(1212, 'x'));
    record.replace(0, 510, std::string(510, '\xFF'));
    Apply(marker + SifCut("2.mp3", 1) + record);
    EXPECT_TRUE(cMainCat->SubCat(5));
    EXPECT_EQ(Order(*cMainCat, 1), (Keys{L"2.mp3", L"1.mp3"}));
}

TEST_F(HistoryFilesTest, RecordsOfLevelZeroAreSkipped)
{
    const auto cMainCat = NewMainCatOf(L"Rock", 2);
    Apply(SifCut("2.mp3", 0) + SifMarker(0) + SifCut("1.mp3", 1));
    EXPECT_EQ(Order(*cMainCat, 1), (Keys{L"2.mp3", L"1.mp3"}));
    EXPECT_EQ(cMainCat->SubCats()->Count(), 1u);
    EXPECT_TRUE(boxes.empty());
}

TEST_F(HistoryFilesTest, ACutOfAMissingLevelStopsTheFileWithABox)
{
    const auto cMainCat = NewMainCatOf(L"Rock", 3);
    const auto cPop = NewMainCatOf(L"Pop", 2);
    cPorts.cFiles.Put(SifPath(L"Pop"), SifCut("2.mp3", 1) + SifCut("1.mp3", 1));
    Apply(SifCut("2.mp3", 1) + SifCut("x.mp3", 4) + SifCut("1.mp3", 1) + SifMarker(7));
    EXPECT_EQ(boxes, Boxes{CriticalBox(L"BUT DIDNT", L"Was expecting to find: Rock 4")});
    EXPECT_EQ(Order(*cMainCat, 1), (Keys{L"1.mp3", L"3.mp3", L"2.mp3"})) << "what came before is applied";
    EXPECT_FALSE(cMainCat->SubCat(7)) << "what comes after is not";
    EXPECT_EQ(Order(*cPop, 1), (Keys{L"2.mp3", L"1.mp3"})) << "the other categories are read";
}

TEST_F(HistoryFilesTest, ACutOfANegativeLevelIsOfAMissingOne)
{
    NewMainCatOf(L"Rock", 1);
    Apply(SifCut("1.mp3", -1));
    EXPECT_EQ(boxes, Boxes{CriticalBox(L"BUT DIDNT", L"Was expecting to find: Rock -1")});
}

TEST_F(HistoryFilesTest, AMarkerOfANegativeLevelIsLoggedAndPassedOver)
{
    const auto cMainCat = NewMainCatOf(L"Rock", 2);
    Apply(SifMarker(-3) + SifCut("2.mp3", 1) + SifCut("1.mp3", 1));
    EXPECT_TRUE(boxes.empty());
    EXPECT_EQ(cPorts.LogMessages(), Lines{L"Ignored, no level can have this number: Rock -3"});
    EXPECT_EQ(Order(*cMainCat, 1), (Keys{L"2.mp3", L"1.mp3"}));
}

TEST_F(HistoryFilesTest, TheFilesLengthIsTheNumberOfItsRecordsOrItIsIgnored)
{
    const auto cMainCat = NewMainCatOf(L"Rock", 2);
    const std::string two = SifCut("2.mp3", 1) + SifCut("1.mp3", 1);
    ASSERT_EQ(two.size(), 3966u);
    for (const std::size_t length : {std::size_t{1}, std::size_t{1982}, std::size_t{1984}, std::size_t{3965}})
    {
        Apply(two.substr(0, length));
        EXPECT_EQ(Order(*cMainCat, 1), (Keys{L"1.mp3", L"2.mp3"})) << length;
    }
    Apply(two + "x"); // 3967
    EXPECT_EQ(Order(*cMainCat, 1), (Keys{L"1.mp3", L"2.mp3"}));
    EXPECT_TRUE(cHost.colSaid.empty());
    EXPECT_TRUE(boxes.empty()) << "without a message";
    EXPECT_EQ(cPorts.LogMessages().back(),
              L"Ignored, its length is no multiple of a record's: " + SifPath(L"Rock"));
    Apply("");
    EXPECT_EQ(Order(*cMainCat, 1), (Keys{L"1.mp3", L"2.mp3"}));
    EXPECT_TRUE(cHost.colSaid.empty()) << "no records, nothing to tell";
    Apply(two); // 3966
    EXPECT_EQ(Order(*cMainCat, 1), (Keys{L"2.mp3", L"1.mp3"}));
}

TEST_F(HistoryFilesTest, ReadingReportsEvery20thRecordOncePer100Milliseconds)
{
    NewMainCatOf(L"Rock", 1);
    std::string bytes;
    for (int lRecord = 0; lRecord < 100; ++lRecord)
        bytes += SifMarker(1);
    // The host's handler takes its time only at the start: then the first sample is due, and no other.
    cHost.OnEvent = [this](const std::wstring& sLine) {
        if (sLine.starts_with(L"Progress"))
            cPorts.cClock.Advance(500); // within the report: does not count towards the next
    };
    cPorts.cHostLoop.OnSleep = [](std::uint32_t lMilliseconds) { EXPECT_EQ(lMilliseconds, 20u); };
    Apply(bytes);
    EXPECT_EQ(cHost.colSaid, (Lines{L"Start 100: Getting Ordering and Scheduler History for: Rock",
                                    L"Done: Got Scheduler [from file] Info for: Rock"}))
        << "while the clock stands still nothing is due";
    EXPECT_EQ(cPorts.cHostLoop.lSleeps, 0);

    TickingClock cTicking(cPorts.cClock, 60); // each look at the tick count takes 60 ms
    Ports ports{cTicking,         cPorts.cHostLoop, cPorts.cFiles, cPorts.cMessages, cPorts.cUserSettings,
                cPorts.cCodePage, cPorts.cRandom};
    ModScheduler cOther(ports);
    cOther.StoreAppPath(sRadio);
    EventRelay cOtherRelay(cOther);
    cOtherRelay.Listen(&cHost);
    cHost.colSaid.clear();
    HistoryFiles(cOther, cOtherRelay).ApplyHistory(*colMainCats, sRadio);
    EXPECT_EQ(cHost.colSaid,
              (Lines{L"Start 100: Getting Ordering and Scheduler History for: Rock",
                     L"Progress 40/100: Retrieving 40 of 100", L"Progress 80/100: Retrieving 80 of 100",
                     L"Done: Got Scheduler [from file] Info for: Rock"}));
    EXPECT_EQ(cPorts.cHostLoop.lSleeps, 2) << "20 ms before each report";
    EXPECT_EQ(cPorts.cHostLoop.lPumps, 2) << "once at the end of each reading";
}

TEST_F(HistoryFilesTest, OnlyMainCategoriesHaveAFile)
{
    NewMainCat(L"Rock", {1})->SetCatLevel(2);
    Apply(SifMarker(5));
    EXPECT_EQ(boxes, Boxes{OkBox(BoxIcon::None, L"RavloScheduler",
                                 L"RetrieveHistoryAndOrdering expects a (level 0) cat!")});
}

TEST_F(HistoryFilesTest, AnUnreadableFileIsReportedAndTheOthersAreRead)
{
    const auto cMainCat = NewMainCatOf(L"Rock", 2);
    const auto cPop = NewMainCatOf(L"Pop", 2);
    cPorts.cFiles.Put(SifPath(L"Pop"), SifCut("2.mp3", 1) + SifCut("1.mp3", 1));
    cPorts.cFiles.SetUnreadable(SifPath(L"Rock"), error::DeviceIo);
    Apply(SifCut("2.mp3", 1));
    EXPECT_EQ(boxes, Boxes{CriticalBox(L"Error in ApplyHistory", L"57 Device I/O error: Rock")});
    EXPECT_EQ(Order(*cMainCat, 1), (Keys{L"1.mp3", L"2.mp3"}));
    EXPECT_EQ(Order(*cPop, 1), (Keys{L"2.mp3", L"1.mp3"}));
}

TEST_F(HistoryFilesTest, ANameThatCanBeNoFilesNameHasNoFileToRead)
{
    const auto cMainCat = NewMainCatOf(L"..\\Rock", 2);
    cPorts.cFiles.Put(L"C:\\Radio\\Scheduler\\Rock.sif", SifCut("2.mp3", 1) + SifCut("1.mp3", 1));
    cFiles.ApplyHistory(*colMainCats, sRadio);
    EXPECT_EQ(Order(*cMainCat, 1), (Keys{L"1.mp3", L"2.mp3"}));
    EXPECT_TRUE(boxes.empty());
}

// ---- files that were not applied in full

TEST_F(HistoryFilesTest, AFileThatWasNotAppliedInFullIsKeptOnceBeforeItIsOverwritten)
{
    struct Row
    {
        std::string bytes;
        std::int32_t lReadError;
    };
    const Row rows[] = {{SifCut("1.mp3", 1) + "x", 0},                // damaged length
                        {SifCut("1.mp3", 1) + SifCut("1.mp3", 8), 0}, // level missing
                        {SifMarker(-2), 0},                           // no such level
                        {SifCut("1.mp3", 1), error::DeviceIo}};       // read error
    for (const Row& row : rows)
    {
        MemoryPorts cDisk;
        ModScheduler cOther(cDisk.Ports());
        cOther.StoreAppPath(sRadio);
        HistoryFiles cOtherFiles(cOther, cRelay);
        colMainCats->Clear();
        const auto cMainCat = NewMainCat(L"Rock", {1});
        cDisk.cFiles.Put(SifPath(L"Rock"), row.bytes);
        cDisk.cFiles.SetUnreadable(SifPath(L"Rock"), row.lReadError);
        cOtherFiles.ApplyHistory(*colMainCats, sRadio);
        EXPECT_EQ(cOtherFiles.Save(cMainCat), Saved::Yes);
        EXPECT_EQ(cDisk.cFiles.Get(SifPath(L"Rock")), SifMarker(1));
        EXPECT_EQ(cDisk.cFiles.Get(SifPath(L"Rock") + L".bak"), row.bytes);
        cDisk.cFiles.SetUnreadable(SifPath(L"Rock"), 0);
        EXPECT_EQ(cOtherFiles.Save(cMainCat), Saved::Yes);
        EXPECT_EQ(cDisk.cFiles.Get(SifPath(L"Rock") + L".bak"), row.bytes) << "kept once";
    }
}

TEST_F(HistoryFilesTest, AFileThatWasAppliedInFullIsOverwrittenWithoutACopy)
{
    const auto cMainCat = NewMainCatOf(L"Rock", 2);
    Apply(SifCut("2.mp3", 1) + "x");
    Apply(SifCut("gone.mp3", 1) + SifCut("2.mp3", 1)); // read again, whole this time
    EXPECT_EQ(Save(cMainCat), Saved::Yes);
    EXPECT_FALSE(cPorts.cFiles.FileExists(SifPath(L"Rock") + L".bak"));
}

// ---- any bytes

TEST_F(HistoryFilesTest, AnyRecordsAreReadWithoutHarm)
{
    constexpr unsigned lSeed = 20240305;
    std::mt19937 random(lSeed);
    for (int lRound = 0; lRound < 400; ++lRound)
    {
        colMainCats->Clear();
        const auto cMainCat = NewMainCatOf(L"Rock", 5);
        AddCut(*cMainCat, L"\u65E5.mp3", 1);
        AddCut(*cMainCat, L"", 2);
        Keys colBefore = Order(*cMainCat, 1);
        std::string bytes;
        for (std::size_t lRecord = random() % 12; lRecord > 0; --lRecord)
        {
            static const char* const paths[] = {"1.mp3", "5.mp3", "?.mp3", "", "no.mp3", "\xFF"};
            std::string record =
                SifCut(paths[random() % std::size(paths)], static_cast<std::int32_t>(random() % 4));
            for (std::size_t byte = random() % 6; byte > 0; --byte)
                record[510 + random() % 262] = static_cast<char>(random());
            bytes += record;
        }
        if (random() % 8 == 0)
            bytes.resize(random() % (bytes.size() + 1));
        Apply(bytes);
        Keys colAfter = Order(*cMainCat, 1);
        std::sort(colBefore.begin(), colBefore.end());
        std::sort(colAfter.begin(), colAfter.end());
        ASSERT_EQ(colAfter, colBefore) << "no cut is lost or doubled: seed " << lSeed << ", round " << lRound;
        ASSERT_EQ(Order(*cMainCat, 2), Keys{L""});
        for (std::size_t at = 0; at < cMainCat->SubCats()->Count(); ++at)
            ASSERT_GT(cMainCat->SubCats()->At(at)->CatLevel(), 0);
    }
}

TEST_F(HistoryFilesTest, EveryTruncationIsIgnoredOrReadWhole)
{
    const auto cMainCat = NewMainCatOf(L"Rock", 2);
    const std::string two = SifCut("2.mp3", 1) + SifCut("1.mp3", 1);
    for (std::size_t length = 0; length < two.size(); length += 13)
    {
        Apply(two.substr(0, length));
        ASSERT_EQ(Order(*cMainCat, 1), (Keys{L"1.mp3", L"2.mp3"})) << length;
    }
}

} // namespace
} // namespace ravlo::test
