// SPDX-License-Identifier: MIT
#include "rotation/SeparationRules.h"
#include "support/FakeDataBase.h"

#include <gtest/gtest.h>

#include <limits>

namespace ravlo::test
{
namespace
{

class FixedClock final : public Clock
{
public:
    DateTime dtNow = DateTimeOf({2026, 11, 21, 12, 0, 0});
    mutable int lReads = 0;
    DateTime Now() const override
    {
        ++lReads;
        return dtNow;
    }
    std::uint32_t TickCount() const override { return 0; }
};

constexpr double dMinute = 1.0 / (24 * 60);

TEST(MinutesBetweenTest, WholeSecondsDividedBySixtyInSinglePrecision)
{
    const DateTime dtNow = DateTimeOf({2026, 11, 21, 12, 0, 0});
    for (const int lSeconds : {0, 1, 59, 60, 1001, 604801})
        for (const int lSign : {1, -1}) // a play in the future is as far away as one in the past
            EXPECT_EQ(MinutesBetween(dtNow, dtNow - lSign * lSeconds / 86400.0),
                      static_cast<float>(lSeconds) / 60.0F);
    EXPECT_EQ(MinutesBetween(dtNow + 0.4 / 86400, dtNow - 60.4 / 86400), 1.0F) << "rounded on each side";
    EXPECT_EQ(MinutesBetween(dtNow + 0.6 / 86400, dtNow - 59.4 / 86400), 1.0F);
}

TEST(ReferenceTimeTest, IsThePresentWithoutAPreviousCutThatPlayed)
{
    const FixedClock cClock;
    EXPECT_EQ(ReferenceTime(nullptr, cClock), cClock.dtNow);
    for (const DateTime dtPlayed : {0.0, -2.0})
    {
        FakeCut cPrev;
        cPrev.SetLastPlayed(dtPlayed);
        cPrev.SetDurationmS(60'000);
        EXPECT_EQ(ReferenceTime(&cPrev, cClock), cClock.dtNow);
    }
}

TEST(ReferenceTimeTest, IsThePreviousCutsEndWhenItPlayed)
{
    const FixedClock cClock;
    FakeCut cPrev;
    cPrev.SetLastPlayed(cClock.dtNow + 1);
    cPrev.SetDurationmS(90'000);
    EXPECT_EQ(WholeSeconds(ReferenceTime(&cPrev, cClock)), WholeSeconds(cClock.dtNow + 1) + 90);
    cPrev.SetDurationmS(1'499);
    EXPECT_EQ(WholeSeconds(ReferenceTime(&cPrev, cClock)), WholeSeconds(cClock.dtNow + 1) + 1);
    EXPECT_EQ(cClock.lReads, 0);
}

// One measurement: when title, artist and album last played (minutes ago, -1 for never), the rules, and what
// comes out.
struct Case
{
    const char* sRule;
    int lTitlePlayed, lArtistPlayed, lAlbumPlayed;
    SeparationRules rules;
    std::int32_t lViolation;
    float sngMinsAgo, sngTitle, sngArtist, sngAlbum;
};

class MeasureTest : public testing::TestWithParam<Case>
{
protected:
    void Play(int lMinutesAgo, const std::wstring& sArtist, const std::wstring& sTitle,
              const std::wstring& sAlbum)
    {
        if (lMinutesAgo < 0)
            return;
        auto cCut = std::make_shared<FakeCut>();
        cCut->SetKey(sArtist + sTitle + sAlbum);
        cCut->SetArtist(sArtist);
        cCut->SetTitle(sTitle);
        cCut->SetAlbum(sAlbum);
        cCut->SetLastPlayed(cClock.dtNow - lMinutesAgo * dMinute);
        cDataBase.colCuts.push_back(cCut);
        cHistory.Record(*cCut, cDataBase);
    }

    clsRuleViolation Measure(const SeparationRules& rules) { return Check(rules).violation; }
    RuleCheck Check(const SeparationRules& rules)
    {
        Reference reference(nullptr, cClock, [](const RuntimeError&) { FAIL(); });
        return MeasureAgainstRules(
            rules, Candidate{cCandidate, TextKey(L"ASH"), TextKey(L"SUN")}, cHistory, reference,
            [this](const RuntimeError& cError) { colErrors.push_back(cError.Number()); });
    }

    FixedClock cClock;
    FakeDataBase cDataBase;
    PlayHistory cHistory{cClock, [](const RuntimeError&, bool) {}};
    std::shared_ptr<FakeCut> cCandidate = std::make_shared<FakeCut>();
    std::vector<std::int32_t> colErrors; // of the measurements
};

TEST_P(MeasureTest, GivesTheViolationAndTheMinutesOfEachBrokenRule)
{
    const Case& test = GetParam();
    Play(test.lTitlePlayed, L"x", L"Sun", L"");
    Play(test.lArtistPlayed, L"Ash", L"y", L"");
    Play(test.lAlbumPlayed, L"z", L"z", L"Sky");
    cCandidate->SetAlbum(L"SKY");
    const clsRuleViolation violation = Measure(test.rules);
    EXPECT_EQ(violation.Violation, test.lViolation);
    EXPECT_EQ(violation.MinsAgo, test.sngMinsAgo);
    EXPECT_EQ(violation.TitleMinsAgo, test.sngTitle);
    EXPECT_EQ(violation.ArtistMinsAgo, test.sngArtist);
    EXPECT_EQ(violation.AlbumMinsAgo, test.sngAlbum);
    EXPECT_EQ(violation.Cut, test.lViolation == eNone ? nullptr : cCandidate);
    EXPECT_EQ(violation.ViolationIndex, 0);
    EXPECT_LE(cClock.lReads, 1) << "the reference time is one moment";
}

constexpr SeparationRules All(std::int32_t lTitle, std::int32_t lArtist, std::int32_t lAlbum)
{
    return {false, lTitle, lArtist, lAlbum};
}

INSTANTIATE_TEST_SUITE_P(
    Rules, MeasureTest,
    testing::Values(
        Case{"NoHistory", -1, -1, -1, All(60, 60, 60), eNone, 0, 0, 0, 0},
        Case{"TitleTooSoon", 59, -1, -1, All(60, 60, 60), eGlobalTitle, 59, 59, 0, 0},
        Case{"TitleExactlyAtItsSeparation", 60, -1, -1, All(60, 60, 60), eNone, 0, 0, 0, 0},
        Case{"ArtistTooSoon", -1, 59, -1, All(60, 60, 60), eGlobalArtist, 59, 0, 59, 0},
        Case{"ArtistExactlyAtItsSeparation", -1, 60, -1, All(60, 60, 60), eNone, 0, 0, 0, 0},
        Case{"AlbumTooSoon", -1, -1, 59, All(60, 60, 60), eGlobalAlbum, 59, 0, 0, 59},
        Case{"AlbumExactlyAtItsSeparation", -1, -1, 60, All(60, 60, 60), eNone, 0, 0, 0, 0},
        Case{"TitleGoesBeforeArtistAndAlbum", 30, 20, 10, All(60, 60, 60), eGlobalTitle, 30, 30, 20, 10},
        Case{"ArtistGoesBeforeAlbum", 90, 20, 10, All(60, 60, 60), eGlobalArtist, 20, 0, 20, 10},
        Case{"EachRuleHasItsOwnSeparation", 30, 30, 30, All(30, 31, 32), eGlobalArtist, 30, 0, 30, 30},
        Case{"ZeroNeverBreaks", 0, 0, 0, All(0, 0, 0), eNone, 0, 0, 0, 0},
        Case{"MinusOneNeverBreaks", 0, 0, 0, All(-1, -1, -1), eNone, 0, 0, 0, 0},
        Case{"PlayedThisMomentBreaks", 0, 0, 0, All(1, 1, 1), eGlobalTitle, 0, 0, 0, 0},
        Case{"IgnoringRulesBreaksNone", 1, 1, 1, {true, 60, 60, 60}, eNone, 0, 0, 0, 0}),
    [](const testing::TestParamInfo<Case>& test) { return std::string(test.param.sRule); });

TEST_F(MeasureTest, BreachNamesTheFirstBrokenRuleAndThePlayInTheWay)
{
    Play(30, L"x", L"Sun", L"");
    Play(20, L"Ash", L"y", L"");
    Play(10, L"z", L"z", L"Sky");
    cCandidate->SetAlbum(L"SKY");
    struct Broken
    {
        SeparationRules rules;
        eRuleViolation eRule;
        int lMinsAgo, lRequired;
        const wchar_t *sBlockedBy, *sName;
    };
    for (const Broken& test : {Broken{All(60, 61, 62), eGlobalTitle, 30, 60, L"xSun", L""},
                               Broken{All(30, 61, 62), eGlobalArtist, 20, 61, L"Ashy", L"ASH"},
                               Broken{All(30, 20, 62), eGlobalAlbum, 10, 62, L"zzSky", L""}})
    {
        SCOPED_TRACE(test.eRule);
        const Breach breach = Check(test.rules).breach;
        EXPECT_EQ(breach.eRule, test.eRule);
        EXPECT_EQ(breach.MinsAgo, static_cast<float>(test.lMinsAgo));
        EXPECT_EQ(breach.lRequiredMins, test.lRequired);
        ASSERT_TRUE(breach.cBlockedBy);
        EXPECT_EQ(breach.cBlockedBy->Key().Text(), test.sBlockedBy);
        EXPECT_EQ(breach.dtPlayed, cClock.dtNow - test.lMinsAgo * dMinute);
        EXPECT_EQ(breach.dtStart, cClock.dtNow);
        EXPECT_EQ(breach.cName.Text(), test.sName);
    }
    EXPECT_EQ(Check(All(30, 20, 10)).breach.eRule, eNone);
}

TEST_F(MeasureTest, ArtistBreaksByTheNearestPlayOfAnyOfItsNames)
{
    ArtistsTable::Problems problems;
    const auto cTable = std::make_shared<ArtistsTable>(
        ArtistsTable::Parse("credited,counts_as\nAsh,Elm\nAsh,Fir\nAsh,Oak\n", problems));
    cHistory.SetNames(ArtistNames(false, cTable));
    Play(30, L"Ash", L"a", L"");
    Play(20, L"Elm", L"b", L"");
    Play(25, L"Fir", L"c", L"");
    EXPECT_EQ(Check(All(60, 20, 60)).breach.eRule, eNone);
    EXPECT_EQ(cClock.lReads, 1);
    const RuleCheck check = Check(All(60, 60, 60));
    EXPECT_EQ(check.violation.ArtistMinsAgo, 20.0F);
    EXPECT_EQ(check.breach.cName.Text(), L"Elm");
    EXPECT_EQ(check.breach.cBlockedBy, cHistory.ArtistHistoryCut(TextKey(L"Elm")));

    std::static_pointer_cast<FakeCut>(check.breach.cBlockedBy)->failing.insert("LastPlayed");
    EXPECT_EQ(Check(All(60, 60, 60)).breach.cName.Text(), L"Fir");
    EXPECT_EQ(colErrors, std::vector<std::int32_t>{error::ObjectNotSet});
    Play(25, L"ash", L"d", L"");
    EXPECT_EQ(Check(All(60, 60, 60)).breach.cName, TextKey(L"Ash")) << "the first of equally near ones";
}

TEST_F(MeasureTest, NamesMayBeSetWhileTheyAreMeasured)
{
    ArtistsTable::Problems problems;
    const auto cTable = std::make_shared<ArtistsTable>(
        ArtistsTable::Parse("credited,counts_as\nAsh,Elm\nAsh,Fir\n", problems));
    cHistory.SetNames(ArtistNames(false, cTable));
    Play(30, L"Elm", L"a", L"");
    Play(20, L"Fir", L"b", L"");
    const auto cElm = std::static_pointer_cast<FakeCut>(cHistory.ArtistHistoryCut(TextKey(L"Elm")));
    cElm->OnCall = [&](std::string_view) {
        cHistory.SetNames({});
        cHistory.SetNames(ArtistNames(true, nullptr));
        cElm->OnCall = nullptr;
    };
    EXPECT_EQ(Check(All(60, 60, 60)).breach.cName.Text(), L"Fir") << "a candidate has one set of names";
    EXPECT_EQ(Check(All(60, 60, 60)).breach.eRule, eNone) << "the next one has the others";
}

TEST_F(MeasureTest, SeparationLargerThanSinglePrecisionIsNotRounded)
{
    Play(16'777'216, L"x", L"Sun", L""); // 2^24 minutes, where the next single is two further
    EXPECT_EQ(Measure(All(16'777'216, 0, 0)).Violation, eNone);
    EXPECT_EQ(Measure(All(16'777'217, 0, 0)).Violation, eGlobalTitle);
    EXPECT_EQ(Measure(All(std::numeric_limits<std::int32_t>::max(), 0, 0)).Violation, eGlobalTitle);
}

TEST_F(MeasureTest, CandidateWithoutAnAlbumNeverBreaksOnAlbum)
{
    Play(1, L"x", L"y", L"Sky");
    EXPECT_EQ(Measure(All(0, 0, 60)).Violation, eNone);
}

TEST_F(MeasureTest, WithoutAnAlbumRuleTheAlbumIsNotRead)
{
    cCandidate->failing.insert("Album");
    Measure(All(60, 60, -1));
    Measure(All(60, 60, 0));
    EXPECT_TRUE(colErrors.empty());
    Measure(All(60, 60, 1));
    EXPECT_EQ(colErrors, std::vector<std::int32_t>{error::ObjectNotSet});
}

TEST_F(MeasureTest, WithoutAHistoryTheClockIsNotRead)
{
    Measure(All(60, 60, 60));
    EXPECT_EQ(cClock.lReads, 0);
}

TEST_F(MeasureTest, UnreadablePlayLeavesTheOtherRulesMeasured)
{
    Play(10, L"x", L"Sun", L"");
    Play(20, L"Ash", L"y", L"");
    Play(30, L"z", L"z", L"Sky");
    cCandidate->SetAlbum(L"Sky");
    std::static_pointer_cast<FakeCut>(cHistory.TitleHistoryCut(TextKey(L"Sun")))
        ->failing.insert("LastPlayed");
    const clsRuleViolation violation = Measure(All(60, 60, 60));
    EXPECT_EQ(violation.Violation, eGlobalArtist);
    EXPECT_EQ(violation.MinsAgo, 20.0F);
    EXPECT_EQ(violation.AlbumMinsAgo, 30.0F);
    EXPECT_EQ(colErrors, std::vector<std::int32_t>{error::ObjectNotSet});
}

TEST_F(MeasureTest, PendingTimeIsMeasured)
{
    Play(300, L"Ash", L"y", L"");
    const auto cCut = std::static_pointer_cast<FakeCut>(cHistory.ArtistHistoryCut(TextKey(L"Ash")));
    cCut->failing.insert("SetLastPlayed");
    const std::shared_ptr<Cut> cPlay = test::PlainCopyOf(*cCut);
    cPlay->SetLastPlayed(cClock.dtNow - 5 * dMinute);
    cHistory.Record(*cPlay, cDataBase);
    EXPECT_EQ(Measure(All(60, 60, 60)).MinsAgo, 5.0F);
}

TEST(ReferenceTest, IsTakenOnce)
{
    FixedClock cClock;
    Reference present(nullptr, cClock, [](const RuntimeError&) { FAIL(); });
    const DateTime dtFirst = present.Time();
    cClock.dtNow += 1;
    EXPECT_EQ(present.Time(), dtFirst);

    const auto cPrev = std::make_shared<FakeCut>();
    cPrev->SetLastPlayed(dtFirst + 1);
    Reference end(cPrev, cClock, [](const RuntimeError&) { FAIL(); });
    EXPECT_EQ(end.Time(), dtFirst + 1);
    cPrev->calls.clear();
    EXPECT_EQ(end.Time(), dtFirst + 1);
    EXPECT_TRUE(cPrev->calls.empty()) << "the host's cut is asked once";
}

TEST(ReferenceTest, UnusablePreviousCutIsReportedOnce)
{
    const FixedClock cClock;
    for (const char* sMember : {"LastPlayed", "DurationmS", ""})
    {
        const auto cPrev = std::make_shared<FakeCut>();
        cPrev->SetLastPlayed(*sMember ? cClock.dtNow + 1 : 1e9); // the last one lies beyond the calendar
        cPrev->failing.insert(sMember);
        int lErrors = 0;
        Reference reference(cPrev, cClock, [&](const RuntimeError&) { ++lErrors; });
        EXPECT_EQ(reference.Time(), cClock.dtNow) << sMember;
        cPrev->failing.clear();
        EXPECT_EQ(reference.Time(), cClock.dtNow) << "not asked again";
        EXPECT_EQ(lErrors, 1) << sMember;
    }
}

} // namespace
} // namespace ravlo::test
