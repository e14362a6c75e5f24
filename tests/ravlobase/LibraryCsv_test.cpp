// SPDX-License-Identifier: MIT
#include "ravlobase/LibraryCsv.h"

#include "ravlobase/Support.h"

namespace ravlo
{
namespace
{

using namespace std::string_literals;

class Rows : public LibraryCsvSink
{
public:
    void OnCut(LibraryRow row) override { colRows.push_back(std::move(row)); }
    void OnReject(std::size_t line, const std::wstring& sReason) override
    {
        colRejects.push_back(L"Line " + DecimalText(static_cast<std::int64_t>(line)) + L": " + sReason);
    }
    std::vector<LibraryRow> colRows;
    Lines colRejects;
};

Rows Read(const std::string& bytes)
{
    Rows cRows;
    ReadLibraryCsv(bytes, cRows);
    return cRows;
}

TEST(LibraryCsv, AMapNamesTheColumnsOfAnotherProgram)
{
    Rows cRows;
    ReadLibraryCsv(
        "Performer;Name;File;Length;artist;Duration\nAnn;One;a.mp3;1:02:03;?;?\nBob;Two;b.mp3;long;?;?\n",
        cRows, ParseColumnMap(L"artist = performer,title=Name,path=FILE,duration=Length"), ';');
    ASSERT_EQ(cRows.colRows.size(), 1U);
    EXPECT_EQ(cRows.colRows[0].cPath.Text(), L"a.mp3");
    EXPECT_EQ(cRows.colRows[0].sArtist, L"Ann") << "the mapped column, not the one of the same name";
    EXPECT_EQ(cRows.colRows[0].sTitle, L"One");
    EXPECT_EQ(cRows.colRows[0].lDurationmS, 3723000);
    EXPECT_EQ(cRows.colRejects, Lines{L"Line 3: duration: \"long\" is not a length such as 3:25"});

    const auto raised = [](const wchar_t* sMap, const char* bytes = "path\n") {
        return RaisedBy([&] {
            Rows cNone;
            ReadLibraryCsv(bytes, cNone, ParseColumnMap(sMap));
        });
    };
    EXPECT_EQ(raised(L""), Raised{});
    EXPECT_EQ(raised(L"artist"), (Raised{5, L"\"artist\" maps no column (expected: artist=Their name)."}));
    EXPECT_EQ(raised(L"singer=Artist"), (Raised{5, L"\"singer\" is no column of a library."}));
    EXPECT_EQ(raised(L"title=Name"),
              (Raised{321, L"This is no library CSV: its header line has no column \"Name\"."}));
}

TEST(LibraryCsv, EveryColumnIsTaken)
{
    const auto cRows = Read("path,artist,title,album,year,duration_ms,run_time_ms,categories,level,opener,"
                            "secondary_key,last_played\n"
                            "D:\\a.mp3,Bj\xC3\xB6rk,\"Oh, So\",Post,1995,181000,175000,pop/rock,2,Y,K1,"
                            "2024-02-29T13:14:15\n");
    ASSERT_EQ(cRows.colRejects, Lines{});
    ASSERT_EQ(cRows.colRows.size(), 1U);
    const auto& row = cRows.colRows[0];
    EXPECT_EQ(row.line, 2U);
    EXPECT_EQ(row.cPath.Text(), L"D:\\a.mp3");
    EXPECT_EQ(row.sArtist, L"Bj\u00F6rk");
    EXPECT_EQ(row.sTitle, L"Oh, So");
    EXPECT_EQ(row.sAlbum, L"Post");
    EXPECT_EQ(row.lYear, 1995);
    EXPECT_EQ(row.lDurationmS, 181000);
    EXPECT_EQ(row.lRunTimemS, 175000);
    EXPECT_EQ(row.colCategories, (Lines{L"pop", L"rock"}));
    EXPECT_EQ(row.lLevel, 2);
    EXPECT_EQ(row.bOpener, true);
    EXPECT_EQ(row.sSecondaryKey, L"K1");
    ASSERT_TRUE(row.dtLastPlayed);
    EXPECT_EQ(IsoText(*row.dtLastPlayed), L"2024-02-29T13:14:15");
}

TEST(LibraryCsv, ColumnsHaveAnyOrderAndCaseAndUnknownOnesAreIgnored)
{
    const auto cRows = Read("\xEF\xBB\xBFMood, TITLE ,PATH,mood\nhappy,T, a.mp3 ,sad\n");
    ASSERT_EQ(cRows.colRows.size(), 1U);
    EXPECT_EQ(cRows.colRows[0].cPath.Text(), L" a.mp3 ") << "a path is taken unchanged";
    EXPECT_EQ(cRows.colRows[0].sTitle, L"T");
    EXPECT_EQ(Read("\xEF\xBB\xBFpath\na.mp3\n").colRows.size(), 1U) << "no part of the first name";
}

TEST(LibraryCsv, WithoutAUsableHeaderLineTheFileIsRefused)
{
    const std::pair<std::string, const wchar_t*> files[] = {
        {"", L"This is no library CSV: it has no header line."},
        {"\r\n\n", L"This is no library CSV: it has no header line."},
        {"artist;path\na;b\n",
         L"This is no library CSV: its header line has no column \"path\" (columns are parted by commas)."},
        {"artist\nx\n",
         L"This is no library CSV: its header line has no column \"path\" (columns are parted by commas)."},
        {"path,title,Path\n", L"This is no library CSV: its header line names the column \"path\" twice."},
        {"path,\"title\n", L"This is no library CSV: in its header line a quotation mark is never closed."},
        {"path,ti\"tle\n",
         L"This is no library CSV: in its header line a quotation mark is where none may be."},
        {"\xFF\xFEp\0a\0t\0h\0"s, L"This is no library CSV: it is UTF-16, and UTF-8 is needed."},
        {"\xFE\xFF\0p\0a\0t\0h"s, L"This is no library CSV: it is UTF-16, and UTF-8 is needed."},
    };
    for (const auto& file : files)
        EXPECT_EQ(RaisedBy([&] { Read(file.first); }), (Raised{321, file.second})) << file.first;
    const auto cRows = Read("path\n");
    EXPECT_TRUE(cRows.colRows.empty());
    EXPECT_TRUE(cRows.colRejects.empty());
}

TEST(LibraryCsv, ABlankCellSaysNothing)
{
    const auto cRows = Read("path,artist,title,album,year,duration_ms,run_time_ms,categories,level,opener,"
                            "secondary_key,last_played\n"
                            "a.mp3,,,,,,,,,,,\n"
                            "b.mp3, , , , , , , , , , , \n"
                            "c.mp3,,,,,,,/ /,0,,,\n");
    ASSERT_EQ(cRows.colRejects, Lines{});
    ASSERT_EQ(cRows.colRows.size(), 3U);
    for (const auto& row : cRows.colRows)
    {
        EXPECT_FALSE(row.sArtist || row.sTitle || row.sAlbum || row.sSecondaryKey);
        EXPECT_FALSE(row.lYear || row.lDurationmS || row.lRunTimemS || row.lLevel);
        EXPECT_FALSE(row.colCategories || row.bOpener || row.dtLastPlayed);
    }
}

TEST(LibraryCsv, CellsThatCannotBeUsedRejectTheirRow)
{
    struct Case
    {
        const char* sColumn;
        std::string cell;
        const wchar_t* sReason; // null: the cell can be used
    };
    const Case cases[] = {
        {"year", "0", nullptr},
        {"year", "9999", nullptr},
        {"year", " 1984 ", nullptr},
        {"year", "10000", L"year: \"10000\" is not a year from 0 to 9999"},
        {"year", "-1", L"year: \"-1\" is not a year from 0 to 9999"},
        {"year", "1984.5", L"year: \"1984.5\" is not a year from 0 to 9999"},
        {"year", "MCM", L"year: \"MCM\" is not a year from 0 to 9999"},
        {"year", "-", L"year: \"-\" is not a year from 0 to 9999"},
        {"duration_ms", "2147483647", nullptr},
        {"duration_ms", "0", nullptr},
        {"duration_ms", "-0", nullptr},
        {"duration_ms", "000000000000000012", nullptr},
        {"duration_ms", "2147483648",
         L"duration_ms: \"2147483648\" is not a whole number from 0 to 2147483647"},
        {"duration_ms", "99999999999999999999999999999999999999999999",
         L"duration_ms: \"9999999999999999999999999999999999999999...\" is not a whole number from 0 to "
         L"2147483647"},
        {"run_time_ms", "-5", L"run_time_ms: \"-5\" is not a whole number from 0 to 2147483647"},
        {"run_time_ms", "3:20", L"run_time_ms: \"3:20\" is not a whole number from 0 to 2147483647"},
        {"level", "1", nullptr},
        {"level", "2147483647", nullptr},
        {"level", "-1", L"level: \"-1\" is not a whole number from 1 to 2147483647"},
        {"level", "2147483648", L"level: \"2147483648\" is not a whole number from 1 to 2147483647"},
        {"level", "two", L"level: \"two\" is not a whole number from 1 to 2147483647"},
        {"opener", "y", nullptr},
        {"opener", " n ", nullptr},
        {"opener", "yes", L"opener: \"yes\" is not Y or N"},
        {"opener", "1", L"opener: \"1\" is not Y or N"},
        {"last_played", "2024-02-29", nullptr},
        {"last_played", "2024-06-01 08:15", nullptr},
        {"last_played", "2023-02-29", L"last_played: \"2023-02-29\" is not a date in ISO 8601 form"},
        {"last_played", "01/02/2024", L"last_played: \"01/02/2024\" is not a date in ISO 8601 form"},
        {"artist", "a\0b"s, L"artist: a NUL character"},
        {"artist", "Bj\xF6rk", L"artist: not UTF-8"},
        {"title", "\xED\xA0\x80", L"title: not UTF-8"},
        {"mood", "\xFF\0"s, nullptr},
    };
    for (const auto& test : cases)
    {
        const auto cRows = Read(std::string("path,") + test.sColumn + "\na.mp3," + test.cell + "\nb.mp3,\n");
        const auto colExpected = test.sReason ? Lines{std::wstring(L"Line 2: ") + test.sReason} : Lines{};
        EXPECT_EQ(cRows.colRejects, colExpected) << test.sColumn << " " << test.cell;
        EXPECT_EQ(cRows.colRows.size(), test.sReason ? 1U : 2U) << "the other row goes in";
    }
}

TEST(LibraryCsv, OpenerIsYesOrNo)
{
    for (const auto& [cell, bOpener] :
         {std::pair("Y", true), std::pair("y", true), std::pair("N", false), std::pair("n", false)})
        EXPECT_EQ(Read(std::string("path,opener\na,") + cell).colRows.at(0).bOpener, bOpener) << cell;
}

TEST(LibraryCsv, CategoryNamesAreTrimmedAndEmptyOnesSkipped)
{
    const auto cRows = Read("path,categories\na, pop / / hard rock /\n");
    EXPECT_EQ(cRows.colRows.at(0).colCategories, (Lines{L"pop", L"hard rock"}));
}

TEST(LibraryCsv, ARowNeedsItsFieldsAndAPath)
{
    const auto cRows = Read("artist,path,title\na,b\nc,d,e,f\ng\nh,i,j\nx,,z\ny, ,z\n");
    EXPECT_EQ(cRows.colRejects,
              (Lines{L"Line 2: 2 fields instead of 3", L"Line 3: 4 fields instead of 3",
                     L"Line 4: 1 field instead of 3", L"Line 6: no path", L"Line 7: no path"}));
    EXPECT_EQ(cRows.colRows.size(), 1U);
}

TEST(LibraryCsv, OfUsableRowsWithTheSamePathTheFirstCounts)
{
    const auto cRows =
        Read("year,path\nx,D:\\\xC3\x84.mp3\n1,D:\\\xC3\x84.mp3\n2,other\n3,d:\\\xC3\xA4.MP3\n");
    EXPECT_EQ(cRows.colRejects, (Lines{L"Line 2: year: \"x\" is not a year from 0 to 9999",
                                       L"Line 5: line 3 has the same path"}));
    ASSERT_EQ(cRows.colRows.size(), 2U);
    EXPECT_EQ(cRows.colRows[0].lYear, 1);
}

TEST(LibraryCsv, TheLineOfARowIsItsFirstOne)
{
    const auto cRows = Read("path,title\n\na,\"one\ntwo\"\nb,\"x\ny\",z\n\"c,d\ne,f\n");
    EXPECT_EQ(cRows.colRejects,
              (Lines{L"Line 5: 3 fields instead of 2", L"Line 7: a quotation mark is never closed"}));
    ASSERT_EQ(cRows.colRows.size(), 2U);
    EXPECT_EQ(cRows.colRows[0].line, 3U);
    EXPECT_EQ(cRows.colRows[1].line, 8U);
}

} // namespace
} // namespace ravlo
