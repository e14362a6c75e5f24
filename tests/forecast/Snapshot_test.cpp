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
    EXPECT_EQ(cSnapshot->cHistory->ArtistHistoryCut(TextKey(L"ash"))->LastPlayed(), dtStart - 2);
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
    m_cFirst->OnCall = [this](const std::string& sMember) {
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
    EXPECT_EQ(cSnapshot->cHistory->ArtistHistoryCut(TextKey(L"Fir")), nullptr);
    cLib.cDataBase->Own(L"gone")->failing.clear();
    cLib.cDataBase->Own(L"gone")->SetLastPlayed(1e9);
    EXPECT_EQ(Snapshot()->played.size(), 2u) << "beyond the calendar";
}

TEST_F(SnapshotTest, CutThatCannotBeReadEndsIt)
{
    m_cFirst->failing.insert("Artist");
    EXPECT_THROW(Snapshot(), RuntimeError);
}

} // namespace
} // namespace ravlo::test
