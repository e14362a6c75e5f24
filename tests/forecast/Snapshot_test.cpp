// SPDX-License-Identifier: MIT
#include "forecast/AiringStation.h"

namespace ravlo::test
{
namespace
{

class SnapshotTest : public AiringStation
{
protected:
    SnapshotTest()
    {
        m_cFirst =
            AddCut(L"a", L"Pop/Rock", 2, L"Ash", L"Sun",
                   {.lDurationmS = 1234, .bOpener = true, .dtLastPlayed = dtStart - 2, .sAlbum = L"B"});
        AddCut(L"b", L"Pop", 2, L"Elm", L"Rain", {.dtLastPlayed = dtStart - 3});
        AddCut(L"gone", L"NOCAT", 0, L"Fir", L"Snow", {.dtLastPlayed = dtStart - 1});
        Start();
    }
    static Keys KeysOf(const StationSnapshot& snapshot, const std::vector<CutNumber>& numbers)
    {
        Keys keys;
        for (const CutNumber number : numbers)
            keys.push_back(snapshot.cuts.at(number).values.cKey.Text());
        return keys;
    }

    // When the last cut of an artist in the history played; nothing when it has none.
    static std::optional<DateTime> PlayedBy(const StationSnapshot& snapshot, const wchar_t* sArtist)
    {
        for (const auto& [cArtist, number] : snapshot.history.artists)
            if (cArtist == TextKey(sArtist))
                return snapshot.cuts.at(number).values.dtLastPlayed;
        return std::nullopt;
    }

    std::shared_ptr<FakeCut> m_cFirst;
};

TEST_F(SnapshotTest, HasWhatDecidesPicks)
{
    SetRules(L"Pop", 2, 11, 12, 13, true);
    const auto cSnapshot = Snapshot();
    EXPECT_EQ(cSnapshot->mainCats, cLib.MainCatNames());
    ASSERT_EQ(cSnapshot->levels.size(), 2u);
    const SnapshotLevel& level = cSnapshot->levels[0];
    EXPECT_EQ(level.sCategory + L" " + std::to_wstring(level.lLevel), L"Pop 2");
    EXPECT_EQ(KeysOf(*cSnapshot, level.order), cLib.Order(L"Pop", 2));
    EXPECT_TRUE(level.rules.bIgnore);
    EXPECT_EQ(level.rules.lArtist + 100 * level.rules.lTitle + 10'000 * level.rules.lAlbum, 131'211);
    EXPECT_EQ(KeysOf(*cSnapshot, cSnapshot->levels[1].order), Keys{L"a"});
    EXPECT_EQ(cSnapshot->cuts.size(), 3u) << "a cut in two levels once, and one of no level that played";
    EXPECT_EQ(KeysOf(*cSnapshot, cSnapshot->played), (Keys{L"b", L"a", L"gone"})) << "by time";

    const SnapshotCut& cut = cSnapshot->cuts.at(cSnapshot->levels[1].order.at(0));
    EXPECT_EQ(cut.sPath, m_cFirst->Path());
    EXPECT_EQ(cut.values.cArtist.Text() + cut.values.cTitle.Text() + cut.values.cAlbum.Text(), L"AshSunB");
    EXPECT_EQ(cut.values.lDurationmS, 1234);
    EXPECT_TRUE(cut.values.bOpener);
    EXPECT_EQ(PlayedBy(*cSnapshot, L"ash"), dtStart - 2);
}

TEST_F(SnapshotTest, TimeThatTheDataBaseRefusedIsThePlaysTime)
{
    const std::shared_ptr<Cut> cPlay = m_cFirst->CloneCut();
    cPlay->SetLastPlayed(dtStart - 0.5);
    m_cFirst->failing.insert("SetLastPlayed");
    cLib.cSchedMan->UpdateArtistTitleHistory(cPlay);
    const auto cSnapshot = Snapshot();
    EXPECT_EQ(cSnapshot->cuts.at(cSnapshot->levels[1].order.at(0)).values.dtLastPlayed, dtStart - 0.5);
    EXPECT_EQ(KeysOf(*cSnapshot, cSnapshot->played).back(), L"a");
}

TEST_F(SnapshotTest, ChangesDuringTheReadingDoNotShow)
{
    const Keys order = cLib.Order(L"Pop", 2);
    m_cFirst->OnCall = [this](std::string_view sMember) {
        if (sMember != "Album")
            return;
        m_cFirst->OnCall = nullptr;
        cLib.Level(L"Pop", 2)->SchedCuts()->Clear();
        for (int cut = 0; cut < 100; ++cut)
        {
            const std::wstring sText = std::to_wstring(cut);
            cLib.cSchedMan->UpdateArtistTitleHistory(
                AddCut(L"new" + sText, L"NOCAT", 0, sText, sText, {.dtLastPlayed = dtStart}));
        }
    };
    const auto cSnapshot = Snapshot();
    EXPECT_EQ(m_cFirst->OnCall, nullptr);
    EXPECT_EQ(KeysOf(*cSnapshot, cSnapshot->levels.at(0).order), order);
    EXPECT_EQ(cSnapshot->played.size(), 3u);
}

TEST_F(SnapshotTest, PlayThatCannotBeReadIsLeftOut)
{
    cLib.cDataBase->Own(L"gone")->failing = {"Key"};
    const auto cSnapshot = Snapshot();
    EXPECT_EQ(KeysOf(*cSnapshot, cSnapshot->played), (Keys{L"b", L"a"}));
    EXPECT_EQ(PlayedBy(*cSnapshot, L"Fir"), std::nullopt);
    cLib.cDataBase->Own(L"gone")->failing.clear();
    cLib.cDataBase->Own(L"gone")->SetLastPlayed(1e9);
    EXPECT_EQ(Snapshot()->played.size(), 2u) << "beyond the calendar";
}

TEST_F(SnapshotTest, CutOfALevelThatCannotBeReadEndsItByName)
{
    m_cFirst->failing.insert("Artist");
    try
    {
        Snapshot();
        FAIL();
    }
    catch (const RuntimeError& cError)
    {
        EXPECT_EQ(cError.Description().find(L"a: "), 0u);
    }
}

TEST_F(SnapshotTest, CutMadeAgainUnderAKeyIsAnother)
{
    cLib.cDataBase->Remove(*cLib.cDataBase->Own(L"gone"));
    const std::shared_ptr<Cut> cNew = AddCut(L"gone", L"Pop", 2, L"Yew", L"Hail");
    cLib.cDataBase->Announce(&DataBaseEvents::CutsAdded, Cuts{cNew});
    const auto cSnapshot = Snapshot();
    EXPECT_EQ(cSnapshot->levels.at(0).order.size(), 3u);
    const SnapshotCut& level = cSnapshot->cuts.at(cSnapshot->levels[0].order.back());
    EXPECT_EQ(level.values.cArtist.Text(), L"Yew");
    EXPECT_EQ(level.values.dtLastPlayed, 0);
    const SnapshotCut& played = cSnapshot->cuts.at(cSnapshot->played.back());
    EXPECT_EQ(played.values.cKey.Text() + played.values.cArtist.Text(), L"goneFir");
    EXPECT_EQ(PlayedBy(*cSnapshot, L"Fir"), dtStart - 1);
}

TEST_F(SnapshotTest, RulesThatCannotBeReadAreWarnedOf)
{
    EXPECT_EQ(Snapshot()->warnings, Lines{});
    const std::wstring sRules = sRadio + std::wstring(L"Scheduler\\Rules\\Rock\u00AC\u00AC\u00AC2.rls");
    cPorts.cFiles.Put(sRules, std::string(69, '\0'));
    cPorts.cFiles.SetLocked(sRules, 1);
    const auto cSnapshot = Snapshot();
    EXPECT_EQ(cSnapshot->warnings,
              Lines{L"The rules of Rock 2 cannot be read now. The global separations were used."});
    EXPECT_EQ(cSnapshot->levels.at(1).rules.lArtist, cLib.cMod.GlobalArtistSepMins());
}

TEST_F(SnapshotTest, LetsTheHostRunWhileManyCutsAreRead)
{
    for (int cut = 0; cut < 200; ++cut)
    {
        const std::wstring sText = L"h" + std::to_wstring(cut);
        cLib.cSchedMan->UpdateArtistTitleHistory(
            AddCut(sText, L"NOCAT", 0, sText, sText, {.dtLastPlayed = dtStart}));
    }
    int calls = 0;
    TakeSnapshot(cLib.cMod, *cLib.cSchedMan->colMainCats(), cLib.cSchedMan->History(), {}, {},
                 [&] { ++calls; });
    EXPECT_GE(calls, 200 / 50);
    EXPECT_THROW(TakeSnapshot(cLib.cMod, *cLib.cSchedMan->colMainCats(), cLib.cSchedMan->History(), {}, {},
                              [] { throw RuntimeError(error::UserInterrupt); }),
                 RuntimeError);
}

} // namespace
} // namespace ravlo::test
