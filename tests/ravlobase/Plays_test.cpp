// SPDX-License-Identifier: MIT
#include "ravlobase/FileLayout.h"
#include "ravlobase/PlayReport.h"
#include "ravlobase/Support.h"

namespace ravlo
{
namespace
{

constexpr DateTime dtNoon = 46000.5; // 2025-12-09, 12:00
constexpr DateTime dtHour = 1.0 / 24;
const std::wstring sHeading = L"start,artist,title,album,duration,key,categories,level\n";

class PlaysTest : public StoreTest
{
protected:
    PlaysTest() : m_cCut(Add(L"D:\\one.mp3", L"Abba", L"Waterloo"))
    {
        m_cCut->SetDurationmS(164600);
        m_cCut->SetCategoryText(L"pop/gold");
    }
    std::wstring Report(const std::wstring& sBy = L"", DateTime dtFrom = 0, DateTime dtTo = 90000)
    {
        return m_cStore.PlaysCsv(dtFrom, dtTo, sBy);
    }
    // The report without its heading.
    std::wstring Rows() { return Report().substr(sHeading.size()); }

    std::shared_ptr<Cut> m_cCut;
};

TEST_F(PlaysTest, APlayKeepsWhatTheCutWasWhenItAired)
{
    m_cCut->SetLastPlayed(dtNoon);
    m_cCut->SetTitle(L"Ring Ring");
    m_cStore.RemoveCuts({m_cCut});
    Reopen();
    EXPECT_EQ(Report(), sHeading + L"2025-12-09T12:00:00,Abba,Waterloo,,0:02:45,D:\\one.mp3,pop/gold,1\n");
}

TEST_F(PlaysTest, ARepeatedTimeAndNeverAreNoPlays)
{
    for (const DateTime dtWhen : {dtNoon, dtNoon, 0.0, dtNoon})
        m_cCut->SetLastPlayed(dtWhen);
    m_cCut->SetYear(1974);
    EXPECT_EQ(Rows(), L"2025-12-09T12:00:00,Abba,Waterloo,,0:02:45,D:\\one.mp3,pop/gold,1\n");
}

TEST_F(PlaysTest, GatheredPlaysAreAllRecorded)
{
    m_cStore.BeginGathering();
    m_cCut->SetLastPlayed(dtNoon);
    m_cCut->SetLastPlayed(dtNoon + dtHour);
    m_cStore.RemoveCuts({m_cCut});
    m_cStore.WriteGathered();
    Reopen();
    EXPECT_EQ(Report(L"artist"), L"artist,plays,duration,first,last\n"
                                 L"Abba,2,0:05:29,2025-12-09T12:00:00,2025-12-09T13:00:00\n");
}

TEST_F(PlaysTest, TheSamePlaysMakeTheSameFileWhereverTheCutsAre)
{
    constexpr int lCuts = 300;
    std::vector<std::vector<char>> elsewhere; // other objects between the cuts of the second database
    const auto played = [&](const std::string& sName, std::size_t between) {
        Store cStore;
        cStore.Open(m_cFolder.File(sName));
        Cuts colCuts;
        for (int i = 0; i < lCuts; ++i)
        {
            colCuts.push_back(cStore.NewCut());
            colCuts.back()->SetPath(L"D:\\" + DecimalText(i) + L".mp3");
            elsewhere.emplace_back(between * static_cast<std::size_t>(i % 7 + 1));
        }
        cStore.AddCuts(colCuts);
        cStore.BeginGathering();
        for (int i = 0; i < lCuts; ++i)
            colCuts[static_cast<std::size_t>(i)]->SetLastPlayed(dtNoon + i * dtHour);
        cStore.EndGathering();
        cStore.Close();
        return BytesOf(m_cFolder.File(sName));
    };
    EXPECT_TRUE(played("first.rdb", 1) == played("second.rdb", 200));
}

TEST_F(PlaysTest, AReportHasThePlaysStillGathered)
{
    m_cStore.BeginGathering();
    m_cCut->SetLastPlayed(dtNoon);
    EXPECT_FALSE(Rows().empty());
}

TEST_F(PlaysTest, AnUndoneBatchRecordsNothing)
{
    {
        Store::Batch cBatch(m_cStore);
        m_cCut->SetLastPlayed(dtNoon);
    }
    EXPECT_EQ(Rows(), L"");
}

TEST_F(PlaysTest, ModifyCutsRecordsAPlayAndAnImportNone)
{
    const auto cCopy = m_cCut->CloneCut();
    cCopy->SetLastPlayed(dtNoon);
    m_cStore.ModifyCuts({cCopy});
    m_cStore.ImportCsv(m_cFolder.WithBytes("a.csv", "path,last_played\nD:\\one.mp3,2026-01-01T10:00:00\n"));
    EXPECT_EQ(m_cCut->LastPlayed(), DateTimeOf({2026, 1, 1, 10, 0, 0}));
    EXPECT_EQ(Rows(), L"2025-12-09T12:00:00,Abba,Waterloo,,0:02:45,D:\\one.mp3,pop/gold,1\n");
}

TEST_F(PlaysTest, APeriodEndsBeforeItsLastMoment)
{
    for (int i = 0; i < 4; ++i)
        m_cCut->SetLastPlayed(46000 + i);
    EXPECT_EQ(Report(L"artist", 46001, 46003), L"artist,plays,duration,first,last\n"
                                               L"Abba,2,0:05:29,2025-12-10T00:00:00,2025-12-11T00:00:00\n");
}

TEST_F(PlaysTest, SumsPutTheMostPlayedFirstAndPartChangedTexts)
{
    const auto cOther = Add(L"D:\\two.mp3", L"Zappa, Frank", L"\"Montana\"");
    m_cCut->SetLastPlayed(dtNoon);
    m_cCut->SetTitle(L"Ring Ring");
    m_cCut->SetLastPlayed(dtNoon + 1);
    m_cCut->SetArtist(L"ABBA");
    for (int i = 2; i < 5; ++i)
        cOther->SetLastPlayed(dtNoon + i);
    m_cCut->SetLastPlayed(dtNoon + 6);
    EXPECT_EQ(Report(L"CUT"),
              L"artist,title,album,key,plays,duration,first,last\n"
              L"\"Zappa, "
              L"Frank\",\"\"\"Montana\"\"\",,D:\\two.mp3,3,0:00:00,2025-12-11T12:00:00,2025-12-13T12:00:00\n"
              L"Abba,Ring Ring,,D:\\one.mp3,2,0:05:29,2025-12-10T12:00:00,2025-12-15T12:00:00\n"
              L"Abba,Waterloo,,D:\\one.mp3,1,0:02:45,2025-12-09T12:00:00,2025-12-09T12:00:00\n");
    EXPECT_EQ(RaisedBy([&] { Report(L"album"); }),
              (Raised{error::InvalidProcedureCall,
                      L"Plays can be summed by \"cut\" or by \"artist\", not by \"album\"."}));
    m_cStore.Close();
    EXPECT_EQ(NumberRaisedBy([&] { Report(); }), error::ObjectNotSet);
}

TEST(PlayLength, IsInWholeSecondsOfAnyLength)
{
    EXPECT_EQ(PlayLengthText(0), L"0:00:00");
    EXPECT_EQ(PlayLengthText(499), L"0:00:00");
    EXPECT_EQ(PlayLengthText(59500), L"0:01:00");
    EXPECT_EQ(PlayLengthText(3599499), L"0:59:59");
    EXPECT_EQ(PlayLengthText(std::int64_t{123} * 3600 * 1000), L"123:00:00");
}

} // namespace
} // namespace ravlo
