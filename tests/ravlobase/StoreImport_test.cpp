// SPDX-License-Identifier: MIT
#include "ravlobase/Store.h"

#include "base/CaseFolding.h"
#include "ravlobase/Support.h"

#include <functional>

namespace ravlo
{
namespace
{

class StoreImportTest : public StoreTest
{
protected:
    std::int32_t Import(std::string_view bytes)
    {
        return m_cStore.ImportCsv(m_cFolder.WithBytes("library.csv", bytes));
    }
};

TEST_F(StoreImportTest, EveryColumnReachesItsPropertyAndBlankCellsChangeNothing)
{
    EXPECT_EQ(
        Import("path,artist,title,album,year,duration_ms,run_time_ms,categories,level,opener,secondary_key,"
               "last_played\n"
               "D:\\a.mp3,Bj\xC3\xB6rk,\"Oh, So\",Post,1995,181000,175000,pop/Pop/rock,2,Y,K1,2024-01-01\n"),
        1);
    const auto cCut = ByKey(L"D:\\a.mp3");
    const std::wstring sRest = L"Post|1995|175000|181000|45292.000000|Y|2|";
    EXPECT_EQ(ContentOf(m_cStore),
              Lines{L"1: D:\\a.mp3|D:\\a.mp3|K1|Bj\u00F6rk|Oh, So|" + sRest + L"[pop][rock]"});
    ExpectStored();
    EXPECT_EQ(Import("path,artist,categories,level,opener,year\nd:\\A.mp3,,,0,,\n"), 0);
    EXPECT_EQ(Import("path,artist,categories\nd:\\A.mp3,B,rock\n"), 1);
    EXPECT_EQ(ByKey(L"D:\\a.mp3"), cCut);
    EXPECT_EQ(ValuesText(*cCut), L"D:\\a.mp3|D:\\a.mp3|K1|B|Oh, So|" + sRest + L"[rock]");
    ExpectStored();
    EXPECT_EQ(ByNames(L"b", L"oh, so"), cCut);
    EXPECT_EQ(ByNames(L"bj\u00F6rk", L"oh, so"), nullptr);
}

TEST_F(StoreImportTest, ANewCutWithoutFurtherCellsHasDefaultsAndLevelOne)
{
    EXPECT_EQ(Import("path,level\na,\nb,0\n"), 2);
    EXPECT_EQ(ContentOf(m_cStore),
              (Lines{L"1: a|a|||||0|0|0|0.000000|N|1|", L"2: b|b|||||0|0|0|0.000000|N|1|"}));
}

TEST_F(StoreImportTest, NewAndChangedCutsAreAnnouncedApartAndUnchangedOnesNotAtAll)
{
    Import("path,year\nsame,1\nchanged,1\n");
    Recorder& cRecorder = Listen();
    EXPECT_EQ(Import("path,year\nnew1,1\nsame,1\nchanged,2\nbad,x\nnew2,1\n"), 3);
    EXPECT_EQ(cRecorder.colLines,
              (Lines{L"start: Importing cuts 6",
                     L"progress: Line 5 rejected: year: \"x\" is not a year from 0 to 9999 5/6",
                     L"done: 2 cuts added, 1 changed, 1 unchanged, 1 row rejected.", L"added: new1 new2",
                     L"modified: changed"}));
    EXPECT_EQ(cRecorder.colAdded, (Cuts{ByKey(L"new1"), ByKey(L"new2")}));
    EXPECT_EQ(cRecorder.colModified, Cuts{ByKey(L"changed")});
    const auto& report = m_cStore.LastImport();
    EXPECT_EQ((std::vector{report.lAdded, report.lChanged, report.lUnchanged}), (std::vector{2, 1, 1}));
    EXPECT_EQ(m_cStore.LastImportReport(), L"2 cuts added, 1 changed, 1 unchanged, 1 row rejected.\r\n"
                                           L"Line 5: year: \"x\" is not a year from 0 to 9999");
}

TEST_F(StoreImportTest, ImportingAgainChangesNothingAndRaisesNoCuts)
{
    const std::string bytes = "path,artist,categories\na,A,x/y\nb,B,\n";
    Import(bytes);
    Recorder& cRecorder = Listen();
    EXPECT_EQ(Import(bytes), 0);
    EXPECT_EQ(cRecorder.colLines, (Lines{L"start: Importing cuts 3",
                                         L"done: 0 cuts added, 0 changed, 2 unchanged, 0 rows rejected."}));
}

TEST_F(StoreImportTest, AChangeOfCaseIsAChangeButNotOfTheKey)
{
    Import("path,artist,categories\na,abba,pop\n");
    EXPECT_EQ(Import("path,artist,categories\nA,ABBA,POP\n"), 1);
    EXPECT_EQ(ByKey(L"a")->Artist(), L"ABBA");
    EXPECT_EQ(ByKey(L"a")->CategoryNames(), Lines{L"POP"});
    EXPECT_EQ(ByKey(L"a")->Key().Text(), L"a");
}

TEST_F(StoreImportTest, OtherRowsThanTheRejectedAreImported)
{
    EXPECT_EQ(Import("path,level\na,1\n\"b,2\n,3\nd,-1\ne\nf,6\nA,7\n"), 2);
    EXPECT_EQ(Keys(), (Lines{L"a", L"f"}));
    EXPECT_EQ(m_cStore.LastImportReport(),
              L"2 cuts added, 0 changed, 0 unchanged, 5 rows rejected.\r\n"
              L"Line 3: a quotation mark is never closed\r\n"
              L"Line 4: no path\r\n"
              L"Line 5: level: \"-1\" is not a whole number from 1 to 2147483647\r\n"
              L"Line 6: 1 field instead of 2\r\n"
              L"Line 8: line 2 has the same path");
}

TEST_F(StoreImportTest, ProgressIsReportedEvery500CutsByLine)
{
    std::string bytes = "path\n";
    for (int i = 0; i < 1100; ++i)
        bytes += "k" + std::to_string(i) + "\n";
    Recorder& cRecorder = Listen();
    EXPECT_EQ(Import(bytes), 1100);
    ASSERT_EQ(cRecorder.colLines.size(), 5U);
    EXPECT_EQ(cRecorder.colLines[0], L"start: Importing cuts 1101");
    EXPECT_EQ(cRecorder.colLines[1], L"progress: Reading line 501 501/1101");
    EXPECT_EQ(cRecorder.colLines[2], L"progress: Reading line 1001 1001/1101");
    EXPECT_EQ(cRecorder.colLines[3], L"done: 1100 cuts added, 0 changed, 0 unchanged, 0 rows rejected.");
}

TEST_F(StoreImportTest, AFileThatCannotBeImportedLeavesTheDatabaseAsItWas)
{
    Add(L"a");
    std::filesystem::create_directory(m_cFolder.Path("folder"));
    const auto sNoCsv = m_cFolder.WithBytes("no.csv", "nonsense\n");
    const auto sMissing = m_cFolder.File("missing.csv");
    const auto sFolder = m_cFolder.File("folder");
    const std::pair<std::wstring, Raised> cases[] = {
        {sMissing, {53, L"The file \"" + sMissing + L"\" was not found."}},
        {sFolder, {75, L"The file \"" + sFolder + L"\" cannot be opened."}},
        {L"", {52, L"\"\" is no file name."}},
        {sNoCsv,
         {321, L"This is no library CSV: its header line has no column \"path\" (columns are parted by "
               L"commas)."}},
    };
    Recorder& cRecorder = Listen();
    for (const auto& [sFile, expected] : cases)
    {
        cRecorder.colLines.clear();
        EXPECT_EQ(RaisedBy([&, &sName = sFile] { m_cStore.ImportCsv(sName); }), expected);
        EXPECT_EQ(m_cStore.LastImportReport(), L"Nothing was imported: " + expected.sDescription);
        const Lines colFailed{L"start: Importing cuts 1",
                              L"done: Importing cuts failed: " + expected.sDescription};
        EXPECT_EQ(cRecorder.colLines, expected.lNumber == 321 ? colFailed : Lines{});
        EXPECT_EQ(Keys(), Lines{L"a"});
    }
}

TEST_F(StoreImportTest, TheReportOfASuccessReplacesThatOfAFailure)
{
    EXPECT_EQ(m_cStore.LastImportReport(), L"0 cuts added, 0 changed, 0 unchanged, 0 rows rejected.");
    EXPECT_EQ(NumberRaisedBy([&] { Import(""); }), 321);
    EXPECT_EQ(Import("path\na\n"), 1);
    EXPECT_EQ(m_cStore.LastImportReport(), L"1 cut added, 0 changed, 0 unchanged, 0 rows rejected.");
}

TEST_F(StoreImportTest, TheFileNameMayContainAnyCharacter)
{
    const auto cPath = m_cFolder.Path("\xE6\x97\xA5\xE6\x9C\xAC \xF0\x9F\x98\x80.csv");
    std::ofstream(cPath) << "path\na\n";
    EXPECT_EQ(m_cStore.ImportCsv(m_cFolder.File("") + L"\u65E5\u672C \U0001F600.csv"), 1);
}

TEST_F(StoreImportTest, AListenerMayAddTheSameCutWhileTheFileIsRead)
{
    struct Adder : Recorder
    {
        void ProgressStart(const std::wstring& sReason, std::int32_t) override
        {
            if (sReason == L"Importing cuts")
                Add();
        }
        std::function<void()> Add;
    };
    Adder cAdder;
    cAdder.Add = [&] { Add(L"a", L"listener"); };
    m_cStore.Advise(cAdder);
    EXPECT_EQ(Import("path,title\na,from file\n"), 1);
    EXPECT_EQ(m_cStore.LastImport().lChanged, 1);
    EXPECT_EQ(ByKey(L"a")->Artist(), L"listener");
    EXPECT_EQ(ByKey(L"a")->Title(), L"from file");
}

// The sample is as awkward as real libraries are.
TEST_F(StoreImportTest, TheSampleLibraryIsImportedAndStoredWhole)
{
    const auto cSample = std::filesystem::path(RAVLO_SAMPLES) / "library.csv";
    const auto bytes = cSample.string();
    EXPECT_EQ(m_cStore.ImportCsv({bytes.begin(), bytes.end()}), 5000);
    EXPECT_EQ(m_cStore.LastImportReport(), L"5000 cuts added, 0 changed, 0 unchanged, 0 rows rejected.");
    ExpectStored();
    for (const auto& cCut : m_cStore.AllCuts())
    {
        const auto cFound = m_cStore.CutByArtistTitle(cCut->Artist(), cCut->Title());
        if (cCut->Artist().empty() && cCut->Title().empty())
        {
            EXPECT_EQ(cFound, nullptr);
            continue;
        }
        ASSERT_NE(cFound, nullptr) << cCut->ID();
        EXPECT_LE(cFound->ID(), cCut->ID());
        EXPECT_TRUE(EqualIgnoringCase(cFound->Title(), cCut->Title()));
    }
}

} // namespace
} // namespace ravlo
