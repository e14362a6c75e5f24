// SPDX-License-Identifier: MIT
#include "scheduler/HistoryFiles.h"

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
        cPorts.cFiles.MakeFolders(sFolder);
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
    std::shared_ptr<FakeCut> AddCut(clsCat& cMainCat, const std::wstring& sKey, std::int32_t lLevel = 1)
    {
        const std::shared_ptr<FakeCut> cCut = cDataBase.Add(sKey, cMainCat.CatName(), lLevel);
        bool bCreatedNewSubCat = false;
        EXPECT_TRUE(cMainCat.AddCut(cCut, bCreatedNewSubCat));
        return cCut;
    }
    // A main category whose level 1 contains these cuts.
    std::shared_ptr<clsCat> NewMainCatOf(const std::wstring& sName, const Keys& colKeys)
    {
        const auto cMainCat = NewMainCat(sName);
        for (const std::wstring& sKey : colKeys)
            AddCut(*cMainCat, sKey);
        return cMainCat;
    }
    // The same with cuts named 1, 2 ...
    std::shared_ptr<clsCat> NewMainCatOf(const std::wstring& sName, int lCuts)
    {
        Keys colKeys;
        for (int lCut = 1; lCut <= lCuts; ++lCut)
            colKeys.push_back(std::to_wstring(lCut));
        return NewMainCatOf(sName, colKeys);
    }
    static Keys Order(const clsCat& cMainCat, std::int32_t lLevel = 1)
    {
        Keys colKeys;
        for (const std::shared_ptr<Cut>& cCut : *cMainCat.SubCat(lLevel)->SchedCuts())
            colKeys.push_back(cCut->Key().Text());
        return colKeys;
    }
    std::wstring Tree() const { return TreeText(*colMainCats); }

    Saved Save(const std::shared_ptr<clsCat>& cMainCat) { return cFiles.Save(cMainCat); }
    const std::string& File(const std::wstring& sName) const { return cPorts.cFiles.Get(SifPath(sName)); }
    bool FileExists(const std::wstring& sName) const { return cPorts.cFiles.FileExists(SifPath(sName)); }
    // Reads a file of this content as the one of Rock.
    void Apply(const std::string& bytes)
    {
        cPorts.cFiles.Put(SifPath(L"Rock"), bytes);
        cFiles.ApplyHistory(*colMainCats, sRadio);
    }

    static constexpr const wchar_t* sFolder = L"C:\\Radio\\Scheduler\\History_and_Ordering";
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
    EXPECT_EQ(Save(NewMainCat(L"Rock", {7})), Saved::Yes);
    EXPECT_EQ(File(L"Rock"),
              std::string(765, '\0') + std::string("\7\0\0\0\xFF\xFF", 6) + std::string(1212, '\0'));
}

TEST_F(HistoryFilesTest, RecordsFollowTheLevelsAndTheirRotation)
{
    const auto cMainCat = NewMainCat(L"Rock", {3, 5});
    AddCut(*cMainCat, L"z", 2);
    AddCut(*cMainCat, L"c", 1);
    AddCut(*cMainCat, L"a", 1);
    AddCut(*cMainCat, L"y", 5);
    cMainCat->SubCat(1)->SchedCuts()->MoveToEnd(0);
    EXPECT_EQ(Save(cMainCat), Saved::Yes);
    EXPECT_EQ(File(L"Rock"), SifCuts("a c", 1) + SifCut("z", 2) + SifMarker(3) + SifCut("y", 5));
}

TEST_F(HistoryFilesTest, ARecordContainsTheCutsKeyAndItsOwnLevel)
{
    const auto cMainCat = NewMainCat(L"Rock");
    AddCut(*cMainCat, L"a")->SetCatLevel(4);
    AddCut(*cMainCat, L"key")->SetPath(L"elsewhere");
    Save(cMainCat);
    EXPECT_EQ(File(L"Rock"), SifCut("a", 4) + SifCut("key", 1));
}

TEST_F(HistoryFilesTest, ALevelWithoutANumberIsNotWritten)
{
    const auto cMainCat = NewMainCat(L"Rock", {1, 2});
    AddCut(*cMainCat, L"a");
    cMainCat->SubCat(2)->SetCatLevel(0);
    Save(cMainCat);
    EXPECT_EQ(File(L"Rock"), SifCut("a", 1));
}

TEST_F(HistoryFilesTest, TextsAreCutAt255BytesAndFittedIntoTheCodePage)
{
    const struct
    {
        std::wstring sArtist, sTitle, sKey;
        std::string record;
    } rows[] = {{std::wstring(256, L'a'), std::wstring(255, L't'), std::wstring(300, L'p'),
                 SifCut(std::string(255, 'a'), std::string(255, 't'), std::string(255, 'p'), 1)},
                {L"", L"", L"x", SifCut("", "", "x", 1)},
                {L"\u672C", L"\u0416", L"\u65E5.mp3", SifCut("?", "?", "?.mp3", 1)}};
    const auto cMainCat = NewMainCat(L"Rock");
    std::string expected;
    for (const auto& row : rows)
    {
        const auto cCut = AddCut(*cMainCat, row.sKey);
        cCut->SetArtist(row.sArtist);
        cCut->SetTitle(row.sTitle);
        expected += row.record;
    }
    Save(cMainCat);
    EXPECT_EQ(File(L"Rock"), expected);
}

// ---- what a save reports and refuses

TEST_F(HistoryFilesTest, ASaveReportsItsTwoPhases)
{
    EXPECT_EQ(Save(NewMainCatOf(L"Rock", 3)), Saved::Yes);
    EXPECT_EQ(cHost.colSaid,
              (Lines{L"Start 3: Saving Ordering and hist for: Rock",
                     L"Start 3: Saving info for: Rock to file.", L"Done: Saved Scheduler Info for: Rock"}));
    EXPECT_TRUE(boxes.empty());
    EXPECT_EQ(cPorts.cHostLoop.lPumps, 0);
}

TEST_F(HistoryFilesTest, ASaveReportsEvery20thRecordOncePer100Milliseconds)
{
    const auto cMainCat = NewMainCatOf(L"Rock", 120);
    const auto advanceAt = [&](std::size_t cut, std::uint32_t lMilliseconds) {
        static_cast<FakeCut&>(*cDataBase.colCuts[cut - 1]).OnCall =
            [this, lMilliseconds](std::string_view sMember) {
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

TEST_F(HistoryFilesTest, WhatHasNoRecordsOrNoFileIsNotSaved)
{
    ModScheduler cPathless(cPorts.Ports());
    HistoryFiles cPathlessFiles(cPathless, cRelay);
    const auto cRock = NewMainCatOf(L"Rock", 1);
    const struct
    {
        HistoryFiles& cFiles;
        std::shared_ptr<clsCat> cCat;
        Saved eSaved;
        Boxes colBoxes;
    } rows[] = {
        {cFiles, NewMainCat(L"Empty"), Saved::NoRecords, {}},
        {cFiles,
         cRock->SubCat(1),
         Saved::NotMain,
         {OkBox(BoxIcon::None, L"RavloScheduler", L"SaveScheduleInfo was expecting a MAIN (level 0) cat!")}},
        {cFiles,
         NewMainCat(L"AC/DC", {1}),
         Saved::Failed,
         {CriticalBox(sSaveTitle, L"52 Bad file name: \"AC/DC\"")}},
        {cPathlessFiles, cRock, Saved::Failed, {CriticalBox(sSaveTitle, L"76 Path not found: Rock")}},
    };
    cPorts.cFiles.Put(SifPath(L"Empty"), "old");
    for (const auto& row : rows)
    {
        boxes.clear();
        EXPECT_EQ(row.cFiles.Save(row.cCat), row.eSaved);
        EXPECT_EQ(boxes, row.colBoxes);
        EXPECT_TRUE(cHost.colSaid.empty());
    }
    EXPECT_EQ(File(L"Empty"), "old");
    EXPECT_EQ(cPorts.cFiles.Paths().size(), 2u) << "that and the log";
    EXPECT_EQ(Save(NewMainCat(L"..", {1})), Saved::Yes) << "dots are fine";
    EXPECT_EQ(cPorts.cFiles.Get(sFolder + std::wstring(L"\\...sif")), SifMarker(1));
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
    EXPECT_EQ(File(L"Rock"), SifCut("Artist of 1", "", "1", 1) + SifCut("", "", "2", 1) + SifCut("3", 1));
    EXPECT_EQ(cPorts.LogMessages(),
              Lines{L"Saved as blanks in the order of Rock, texts that cannot be read: 3, the first of 1: "
                    L"91 Object variable or With block variable not set"});
}

TEST_F(HistoryFilesTest, TheModeDecidesHowASaveIsReported)
{
    const struct
    {
        SaveMode mode;
        bool bEvents;
        bool bBox;
    } rows[] = {{{}, true, true},
                {{.bProgress = false}, false, true},
                {{.bBoxes = false}, true, false},
                {quietly, false, false}};
    const auto cMainCat = NewMainCat(L"Rock", {1});
    const Lines colStarts{L"Start 1: Saving Ordering and hist for: Rock",
                          L"Start 1: Saving info for: Rock to file."};
    for (const auto& row : rows)
    {
        SCOPED_TRACE(&row - rows);
        const auto expectEvents = [&](const std::wstring& sDone) {
            Lines colExpected = colStarts;
            colExpected.push_back(sDone);
            EXPECT_EQ(cHost.colSaid, row.bEvents ? colExpected : Lines());
            cHost.colSaid.clear();
        };
        cPorts.cFiles.SetReadOnly(SifPath(L"Rock"), false);
        EXPECT_EQ(cFiles.Save(cMainCat, row.mode), Saved::Yes);
        expectEvents(L"Done: Saved Scheduler Info for: Rock");
        boxes.clear();
        cPorts.cFiles.Put(RadioPorts::LogPath(), "");
        cPorts.cFiles.SetReadOnly(SifPath(L"Rock"));
        EXPECT_EQ(cFiles.Save(cMainCat, row.mode), Saved::Failed);
        expectEvents(L"Done: Could not save Scheduler Info for: Rock");
        EXPECT_EQ(boxes.size(), row.bBox ? 1u : 0u);
        EXPECT_NE(cPorts.cFiles.Get(RadioPorts::LogPath()).find("75 Path/File access error"),
                  std::string::npos);
    }
}

// ---- saving all

TEST_F(HistoryFilesTest, SavingAllContinuesAfterOneWithoutRecordsOrWithAnError)
{
    NewMainCat(L"Rock", {1});
    NewMainCat(L"Pop", {2});
    EXPECT_TRUE(cFiles.SaveAll(colMainCats));
    EXPECT_EQ(File(L"Rock"), SifMarker(1));
    EXPECT_EQ(File(L"Pop"), SifMarker(2));
    EXPECT_EQ(cHost.colSaid.front(), L"Start 1: Saving Ordering and hist for: Rock");
    EXPECT_EQ(cHost.colSaid.back(), L"Done: Saved Scheduler Info for: Pop");
    NewMainCat(L"Empty");
    NewMainCat(L"Jazz", {1});
    EXPECT_FALSE(cFiles.SaveAll(colMainCats));
    EXPECT_EQ(File(L"Jazz"), SifMarker(1));
    EXPECT_EQ(boxes, Boxes());
    colMainCats->Remove(L"Empty\t0");
    NewMainCat(L"AC/DC", {1});
    NewMainCat(L"Soul", {1});
    EXPECT_FALSE(cFiles.SaveAll(colMainCats));
    EXPECT_EQ(File(L"Soul"), SifMarker(1));
    EXPECT_EQ(boxes.size(), 1u) << "one report per category";
}

TEST_F(HistoryFilesTest, SavingAllStopsAtOneThatIsNoMainCategory)
{
    NewMainCat(L"First", {1});
    NewMainCat(L"Second", {1})->SetCatLevel(4);
    NewMainCat(L"Third", {1});
    EXPECT_FALSE(cFiles.SaveAll(colMainCats));
    EXPECT_TRUE(FileExists(L"First"));
    EXPECT_FALSE(FileExists(L"Third"));
    EXPECT_EQ(boxes.size(), 1u);
}

TEST_F(HistoryFilesTest, SavingAllFindsEachCategoryInTheTreeOfTheMoment)
{
    for (const bool bReplaced : {false, true})
    {
        colMainCats = std::make_shared<CatCollection>();
        NewMainCat(L"Rock", {1});
        NewMainCat(L"Pop", {1});
        cHost.OnEvent = [&](const std::wstring&) {
            cHost.OnEvent = nullptr;
            colMainCats->Remove(L"Pop\t0");
            if (!bReplaced)
                return cFiles.DeleteFile(L"Pop");
            colMainCats = std::make_shared<CatCollection>();
            NewMainCat(L"Pop", {2});
        };
        EXPECT_TRUE(cFiles.SaveAll(colMainCats));
        ASSERT_EQ(FileExists(L"Pop"), bReplaced);
    }
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
    EXPECT_EQ(File(L"Rock"), SifCuts("1 2"));
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
        EXPECT_EQ(File(cMainCat->CatName()), SifCuts("2 3 1"));
        EXPECT_TRUE(cPorts.TemporaryFiles().empty());
    }
}

TEST_F(HistoryFilesTest, ASaveInProgressDoesNotBringADeletedFileBack)
{
    const auto cMainCat = NewMainCat(L"Rock", {1});
    Save(cMainCat);
    cHost.OnEvent = [this](const std::wstring&) { cFiles.DeleteFile(L"Rock"); };
    EXPECT_EQ(Save(cMainCat), Saved::Yes);
    EXPECT_FALSE(FileExists(L"Rock"));
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

// ---- quiet saves

TEST_F(HistoryFilesTest, AQuietSaveThatFailsIsRetriedUntilTheCategoryIsSavedOrGone)
{
    const auto cRock = NewMainCat(L"Rock", {1});
    const auto cPop = NewMainCat(L"Pop", {1});
    const auto cJazz = NewMainCat(L"Jazz", {1});
    const auto retry = [this] {
        cPorts.cClock.Advance(UnsavedOrders::lRetryMs);
        cPorts.cFiles.ClearOperations();
        cFiles.RetryDue(*colMainCats);
    };
    cPorts.cFiles.SetReadOnly(sFolder);
    cFiles.SaveAfterPick(cRock, *colMainCats);
    EXPECT_TRUE(boxes.empty());
    EXPECT_TRUE(cHost.colSaid.empty());
    EXPECT_EQ(cPorts.LogMessages(),
              Lines{L"DISPLAYERROR, SaveHistoryAndOrdering Rock 75 Path/File access error"});
    retry();
    EXPECT_EQ(cPorts.LogMessages().size(), 2u) << "failed again, still pending";
    cFiles.SaveAfterPick(cPop, *colMainCats);
    cFiles.SaveAfterPick(cJazz, *colMainCats);
    cPorts.cFiles.SetReadOnly(sFolder, false);
    EXPECT_EQ(Save(cPop), Saved::Yes);
    colMainCats->Remove(L"Jazz\t0");
    const std::size_t lines = cPorts.LogMessages().size();
    retry();
    EXPECT_EQ(File(L"Rock"), SifMarker(1));
    EXPECT_FALSE(FileExists(L"Jazz"));
    for (const std::wstring& sOperation : cPorts.cFiles.Operations())
        EXPECT_EQ(sOperation.find(L"Pop"), std::wstring::npos) << "saved already";
    EXPECT_EQ(cPorts.LogMessages().size(), lines);
    retry();
    EXPECT_TRUE(cPorts.cFiles.Operations().empty());
}

// ---- reading

TEST_F(HistoryFilesTest, TheSavedOrderComesBack)
{
    const auto cMainCat = NewMainCatOf(L"Rock", 3);
    cFiles.ApplyHistory(*colMainCats, sRadio); // there is no file yet
    EXPECT_EQ(Tree(), L"Rock 1: 1 2 3");
    EXPECT_TRUE(cHost.colSaid.empty());
    Apply("");
    EXPECT_EQ(Tree(), L"Rock 1: 1 2 3");
    EXPECT_TRUE(cHost.colSaid.empty());
    Apply(SifCuts("3 1 2"));
    EXPECT_EQ(Tree(), L"Rock 1: 3 1 2");
    EXPECT_EQ(cHost.colSaid, (Lines{L"Start 3: Getting Ordering and Scheduler History for: Rock",
                                    L"Done: Got Scheduler [from file] Info for: Rock"}));
    EXPECT_EQ(cPorts.cHostLoop.lPumps, 1);
    EXPECT_TRUE(cMainCat->SubCat(1)->SchedCuts()->Exists(L"2"));
    EXPECT_TRUE(boxes.empty());
}

TEST_F(HistoryFilesTest, CutsAreFoundByTheirRecordsPaths)
{
    const std::wstring sLong(255, L'p');
    const std::string p = SifCut("", "", std::string(255, 'p'), 1);
    const struct
    {
        const char* sRule;
        Keys colCuts;
        std::string records;
        Keys colOrder;
    } rows[] = {
        {"unnamed cuts come first", {L"1", L"2", L"3", L"4"}, SifCuts("4 2"), {L"1", L"3", L"4", L"2"}},
        {"absent cuts are skipped", {L"1", L"2"}, SifCuts("2 gone 1"), {L"2", L"1"}},
        {"level 0 is skipped", {L"1", L"2"}, SifCut("2", 0) + SifMarker(0) + SifCut("1", 1), {L"2", L"1"}},
        {"any case, and blanks at the ends",
         {L"Caf\u00E9.mp3", L" lead.mp3", L"trail.mp3 ", L"x.mp3"},
         SifCuts("x.mp3 trail.mp3") + SifCut("  lead.mp3  ", 1) + SifCut("CAF\xC9.MP3", 1),
         {L"x.mp3", L"trail.mp3 ", L" lead.mp3", L"Caf\u00E9.mp3"}},
        {"named twice, it takes the last place", {L"1", L"2", L"3"}, SifCuts("1 2 3 1"), {L"2", L"3", L"1"}},
        {"names outside the code page",
         {L"\u65E5", L"a", L"\u672C\u672C", L"b"},
         SifCuts("b ?? a ?"),
         {L"b", L"\u672C\u672C", L"a", L"\u65E5"}},
        {"the k-th record of the same bytes is the k-th such cut",
         {L"\u65E5", L"a", L"\u672C", L"\u4E2D"},
         SifCuts("? ? a ? ?"),
         {L"\u65E5", L"\u672C", L"a", L"\u4E2D"}},
        {"an exact key comes before what only looks like it",
         {L"\u65E5", L"?", L"a"},
         SifCuts("? a ?"),
         {L"?", L"a", L"\u65E5"}},
        {"paths that agree in their first 255 bytes all keep a place",
         {sLong + L"1", L"a", sLong + L"2", sLong},
         p + p + SifCut("a", 1) + p,
         {sLong, sLong + L"1", L"a", sLong + L"2"}},
    };
    for (const auto& row : rows)
    {
        SCOPED_TRACE(row.sRule);
        colMainCats->Clear();
        const auto cMainCat = NewMainCatOf(L"Rock", row.colCuts);
        Apply(row.records);
        EXPECT_EQ(Order(*cMainCat), row.colOrder);
        EXPECT_EQ(cMainCat->SubCats()->Count(), 1u);
        EXPECT_TRUE(boxes.empty());
    }
}

TEST_F(HistoryFilesTest, EachLevelIsPutInOrderByItself)
{
    const auto cMainCat = NewMainCat(L"Rock");
    for (const wchar_t* sKey : {L"a", L"b"})
        for (const std::int32_t lLevel : {1, 2})
            AddCut(*cMainCat, sKey, lLevel);
    Apply(SifCut("b", 2) + SifCut("b", 1) + SifCut("a", 2) + SifCut("a", 1));
    EXPECT_EQ(Tree(), L"Rock 1: b a | Rock 2: b a");
}

TEST_F(HistoryFilesTest, WhatIsSavedIsWhatComesBack)
{
    constexpr unsigned lSeed = 20240304;
    std::mt19937 random(lSeed);
    for (int lRound = 0; lRound < 20; ++lRound)
    {
        colMainCats->Clear();
        const auto cMainCat = NewMainCat(L"Rock", {9});
        for (int lCut = 0; lCut < 60; ++lCut)
            AddCut(*cMainCat, std::to_wstring(lCut) + (lCut % 3 ? L".mp3" : L"\u20AC \u00E9.mp3"),
                   1 + lCut % 2);
        const Keys colDataBaseOrder = Order(*cMainCat);
        for (std::size_t move = 0; move < 100; ++move)
            cMainCat->SubCat(1)->SchedCuts()->MoveToEnd(random() % 30);
        const Keys colKeys = Order(*cMainCat);
        ASSERT_EQ(Save(cMainCat), Saved::Yes);
        for (const std::wstring& sKey : colDataBaseOrder)
            cMainCat->SubCat(1)->SchedCuts()->SendToBack(TextKey(sKey));
        ASSERT_EQ(Order(*cMainCat), colDataBaseOrder);
        cMainCat->RemoveSubCat(cMainCat->SubCat(9));
        cFiles.ApplyHistory(*colMainCats, sRadio);
        ASSERT_EQ(Order(*cMainCat), colKeys) << "seed " << lSeed << ", round " << lRound;
        ASSERT_TRUE(cMainCat->SubCat(9));
    }
}

TEST_F(HistoryFilesTest, AMarkerMakesAMissingLevelAndLeavesAnExistingOne)
{
    const auto cMainCat = NewMainCatOf(L"Rock", 1);
    Apply(SifMarker(5) + SifMarker(1) + SifMarker(3));
    EXPECT_EQ(Tree(), L"Rock 1: 1 | Rock 3: | Rock 5:");
    EXPECT_EQ(cMainCat->SubCat(5)->MainCat(), cMainCat);
    EXPECT_TRUE(boxes.empty());
}

TEST_F(HistoryFilesTest, AnyNonzeroMarkerIsOneAndTheReservedBytesAreIgnored)
{
    NewMainCatOf(L"Rock", 2);
    std::string marker = SifMarker(5);
    marker[769] = '\1';
    marker[770] = '\0';
    std::string record = SifCut("1", 1);
    record.replace(771, 1212, std::string(1212, 'x'));
    record.replace(0, 510, std::string(510, '\xFF'));
    Apply(marker + SifCut("2", 1) + record);
    EXPECT_EQ(Tree(), L"Rock 1: 2 1 | Rock 5:");
}

TEST_F(HistoryFilesTest, ACutOfAMissingLevelStopsItsFileWithABox)
{
    NewMainCatOf(L"Rock", 3);
    NewMainCatOf(L"Pop", 2);
    cPorts.cFiles.Put(SifPath(L"Pop"), SifCuts("2 1"));
    Apply(SifCut("2", 1) + SifCut("x", 4) + SifCut("1", 1) + SifMarker(7));
    EXPECT_EQ(boxes, Boxes{CriticalBox(L"BUT DIDNT", L"Was expecting to find: Rock 4")});
    EXPECT_EQ(Tree(), L"Rock 1: 1 3 2 | Pop 1: 2 1") << "what precedes it and the other files are applied";
}

TEST_F(HistoryFilesTest, NoLevelHasANegativeNumber)
{
    NewMainCatOf(L"Rock", 2);
    Apply(SifCut("1", -1));
    EXPECT_EQ(boxes, Boxes{CriticalBox(L"BUT DIDNT", L"Was expecting to find: Rock -1")});
    boxes.clear();
    Apply(SifMarker(-3) + SifCuts("2 1"));
    EXPECT_TRUE(boxes.empty()) << "a marker is skipped and logged";
    EXPECT_EQ(cPorts.LogMessages().back(), L"Ignored, no level can have this number: Rock -3");
    EXPECT_EQ(Tree(), L"Rock 1: 2 1");
}

TEST_F(HistoryFilesTest, AFileOfAnyLengthButWholeRecordsIsIgnored)
{
    NewMainCatOf(L"Rock", 2);
    const std::string two = SifCuts("2 1");
    ASSERT_EQ(two.size(), 3966u);
    std::vector<std::size_t> colLengths{1982, 1984, 3965, 3967};
    for (std::size_t length = 1; length < two.size(); length += 13)
        colLengths.push_back(length);
    for (const std::size_t length : colLengths)
    {
        Apply((two + "x").substr(0, length));
        ASSERT_EQ(Tree(), L"Rock 1: 1 2") << length;
        ASSERT_EQ(cPorts.LogMessages().back(),
                  L"Ignored, its length is no multiple of a record's: " + SifPath(L"Rock"));
    }
    EXPECT_TRUE(cHost.colSaid.empty());
    EXPECT_TRUE(boxes.empty());
    Apply(two);
    EXPECT_EQ(Tree(), L"Rock 1: 2 1");
}

TEST_F(HistoryFilesTest, ReadingReportsEvery20thRecordOncePer100Milliseconds)
{
    NewMainCatOf(L"Rock", 1);
    std::string bytes;
    for (int lRecord = 0; lRecord < 100; ++lRecord)
        bytes += SifMarker(1);
    cHost.OnEvent = [this](const std::wstring& sLine) {
        if (sLine.starts_with(L"Progress"))
            cPorts.cClock.Advance(500); // within the report: does not count towards the next
    };
    cPorts.cHostLoop.OnSleep = [](std::uint32_t lMilliseconds) { EXPECT_EQ(lMilliseconds, 20u); };
    Apply(bytes);
    EXPECT_EQ(cHost.colSaid, (Lines{L"Start 100: Getting Ordering and Scheduler History for: Rock",
                                    L"Done: Got Scheduler [from file] Info for: Rock"}))
        << "no time passes, so nothing is due";
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

TEST_F(HistoryFilesTest, OnlyMainCategoriesOfPossibleNamesHaveAFile)
{
    NewMainCatOf(L"..\\Rock", 2);
    cPorts.cFiles.Put(L"C:\\Radio\\Scheduler\\Rock.sif", SifCuts("2 1"));
    cFiles.ApplyHistory(*colMainCats, sRadio);
    EXPECT_EQ(Tree(), L"..\\Rock 1: 1 2");
    EXPECT_TRUE(boxes.empty());
    NewMainCat(L"Rock", {1})->SetCatLevel(2);
    Apply(SifMarker(5));
    EXPECT_EQ(boxes, Boxes{OkBox(BoxIcon::None, L"RavloScheduler",
                                 L"RetrieveHistoryAndOrdering expects a (level 0) cat!")});
}

TEST_F(HistoryFilesTest, AnUnreadableFileIsReportedAndTheOthersAreRead)
{
    NewMainCatOf(L"Rock", 2);
    NewMainCatOf(L"Pop", 2);
    cPorts.cFiles.Put(SifPath(L"Pop"), SifCuts("2 1"));
    cPorts.cFiles.SetUnreadable(SifPath(L"Rock"), error::DeviceIo);
    Apply(SifCut("2", 1));
    EXPECT_EQ(boxes, Boxes{CriticalBox(L"Error in ApplyHistory", L"57 Device I/O error: Rock")});
    EXPECT_EQ(Tree(), L"Rock 1: 1 2 | Pop 1: 2 1");
}

// ---- files that were not applied in full

TEST_F(HistoryFilesTest, AFileNotAppliedInFullIsKeptOnceBeforeItIsOverwritten)
{
    const struct
    {
        const char* sRule;
        std::string bytes;
        std::int32_t lReadError;
        bool bKept;
    } rows[] = {{"damaged length", SifCut("1", 1) + "x", 0, true},
                {"missing level", SifCut("1", 1) + SifCut("1", 8), 0, true},
                {"impossible level", SifMarker(-2), 0, true},
                {"read error", SifCut("1", 1), error::DeviceIo, true},
                {"absent cuts", SifCuts("gone 1"), 0, false}};
    const auto cMainCat = NewMainCat(L"Rock", {1});
    const std::wstring sPath = SifPath(L"Rock");
    const std::wstring sBak = sPath + L".bak";
    for (const auto& row : rows)
        for (const bool bReadAgain : {false, true}) // in full
        {
            SCOPED_TRACE(row.sRule);
            HistoryFiles cReader(cMod, cRelay);
            cPorts.cFiles.Put(sPath, row.bytes);
            cPorts.cFiles.SetUnreadable(sPath, row.lReadError);
            cReader.ApplyHistory(*colMainCats, sRadio);
            if (bReadAgain)
            {
                cPorts.cFiles.SetUnreadable(sPath, 0);
                cPorts.cFiles.Put(sPath, SifCut("1", 1));
                cReader.ApplyHistory(*colMainCats, sRadio);
            }
            for (int lSave = 1; lSave <= 2; ++lSave)
            {
                EXPECT_EQ(cReader.Save(cMainCat), Saved::Yes);
                EXPECT_EQ(File(L"Rock"), SifMarker(1));
                cPorts.cFiles.SetUnreadable(sPath, 0);
                ASSERT_EQ(cPorts.cFiles.FileExists(sBak), row.bKept && !bReadAgain);
                if (cPorts.cFiles.FileExists(sBak))
                {
                    EXPECT_EQ(cPorts.cFiles.Get(sBak), row.bytes) << "kept once";
                }
            }
            if (cPorts.cFiles.FileExists(sBak))
                cPorts.cFiles.Delete(sBak);
        }
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
        AddCut(*cMainCat, L"\u65E5");
        AddCut(*cMainCat, L"", 2);
        Keys colBefore = Order(*cMainCat);
        std::string bytes;
        for (std::size_t record = random() % 12; record > 0; --record)
        {
            static const char* const paths[] = {"1", "5", "?", "", "no", "\xFF"};
            std::string content =
                SifCut(paths[random() % std::size(paths)], static_cast<std::int32_t>(random() % 4));
            for (std::size_t byte = random() % 6; byte > 0; --byte)
                content[510 + random() % 262] = static_cast<char>(random());
            bytes += content;
        }
        if (random() % 8 == 0)
            bytes.resize(random() % (bytes.size() + 1));
        Apply(bytes);
        Keys colAfter = Order(*cMainCat);
        std::sort(colBefore.begin(), colBefore.end());
        std::sort(colAfter.begin(), colAfter.end());
        ASSERT_EQ(colAfter, colBefore) << "no cut is lost or doubled: seed " << lSeed << ", round " << lRound;
        ASSERT_EQ(Order(*cMainCat, 2), Keys{L""});
        for (const std::shared_ptr<clsCat>& cSubCat : *cMainCat->SubCats())
            ASSERT_GT(cSubCat->CatLevel(), 0);
    }
}

} // namespace
} // namespace ravlo::test
