// SPDX-License-Identifier: MIT
// The rotation options and artists' names of a station, as a manager uses them.
#include "support/SchedulerTest.h"

namespace ravlo::test
{
namespace
{

constexpr const wchar_t* sOptions = L"C:\\Radio\\Scheduler\\Rotation.cfg";
constexpr const wchar_t* sArtists = L"C:\\Radio\\Scheduler\\Artists.csv";

// A station whose level Pop 1 has the cuts a, b and c; Cher's cut a has just played.
class StationOptionsTest : public testing::Test
{
protected:
    StationOptionsTest()
    {
        Add(L"a", L"Cher");
        Add(L"b", L"Abba feat. Cher");
        Add(L"c", L"Kiss");
        cLib.cSchedMan->SetRotatesAllowed(true);
    }
    void Add(const std::wstring& sKey, const std::wstring& sArtist)
    {
        cLib.cDataBase->Add(sKey, L"Pop", 1)->SetArtist(sArtist);
    }
    void Play(const std::wstring& sKey)
    {
        const std::shared_ptr<Cut> cPlay = cLib.cDataBase->Own(sKey)->CloneCut();
        cPlay->SetLastPlayed(cPorts.cClock.Now());
        cLib.cSchedMan->UpdateArtistTitleHistory(cPlay);
    }
    // The key of the next cut; the order stays.
    std::wstring Pick()
    {
        const std::shared_ptr<CutCollection> colOrder = cLib.Level(L"Pop", 1)->SchedCuts();
        const std::wstring sKey = cLib.Pick(L"Pop\t1", false);
        for (const wchar_t* sCut : {L"a", L"b", L"c"})
            colOrder->MoveToEnd(*colOrder->PositionOf(TextKey(sCut)));
        return sKey;
    }

    RadioPorts cPorts;
    Library cLib{cPorts};
};

TEST_F(StationOptionsTest, NothingIsKnownBeforeThePopulation)
{
    const std::function<void()> calls[] = {
        [&] { cLib.cSchedMan->Options(); }, [&] { cLib.cSchedMan->Names(); },
        [&] { cLib.cSchedMan->SetFairRotation(true); }, [&] { cLib.cSchedMan->SetFeaturedArtists(true); },
        [&] { cLib.cSchedMan->OverrideOptions({}); }};
    for (const std::function<void()>& call : calls)
        EXPECT_THROW(call(), RuntimeError);
    cLib.Populate();
    EXPECT_EQ(cLib.cSchedMan->Options(), RotationOptions());
    EXPECT_TRUE(cLib.cSchedMan->Names().CreditsOnly());
    EXPECT_FALSE(cPorts.cFiles.FileExists(sOptions));
}

TEST_F(StationOptionsTest, FairRotationKeepsThePlaceOfWhatIsPassedOver)
{
    cLib.Populate();
    Play(L"a");
    cLib.Pick(L"Pop\t1");
    EXPECT_EQ(cLib.Order(L"Pop", 1), (Keys{L"c", L"a", L"b"}));
    cLib.cSchedMan->SetFairRotation(true);
    Play(L"c");
    EXPECT_EQ(cLib.Pick(L"Pop\t1"), L"b");
    EXPECT_EQ(cLib.Order(L"Pop", 1), (Keys{L"c", L"a", L"b"}));
    EXPECT_EQ(cPorts.cFiles.Get(sOptions), "FairRotation=1\r\nFeaturedArtists=0\r\n");
    cLib.Restart();
    EXPECT_TRUE(cLib.cSchedMan->Options().bFairRotation);
}

TEST_F(StationOptionsTest, FairPickSavesTheOrderWhenItMovedACut)
{
    cLib.Populate();
    cLib.cSchedMan->SetFairRotation(true);
    Play(L"a");
    cPorts.cFiles.ClearOperations();
    EXPECT_EQ(cLib.NextCut(L"Pop\t1", true)->KindCode(), eKindNothingSchedulable) << "no opener";
    for (const std::wstring& sOperation : cPorts.cFiles.Operations())
        EXPECT_NE(sOperation.find(L"Debugging Logs"), std::wstring::npos) << "nothing moved";
    EXPECT_EQ(cLib.NextCut(L"Pop\t1", false)->Key().Text(), L"b");
    cLib.Restart();
    EXPECT_EQ(cLib.Order(L"Pop", 1), (Keys{L"a", L"c", L"b"}));
}

TEST_F(StationOptionsTest, ExplanationsUseTheOptionsFileAndNameTheArtist)
{
    cLib.Populate();
    Play(L"a");
    cPorts.cFiles.Put(sOptions, "FairRotation=1\r\nFeaturedArtists=1");
    cPorts.cClock.Advance(1'000);
    const std::wstring sText = cLib.cSchedMan->Explain(L"Pop\t1", false, nullptr).Text();
    EXPECT_NE(sText.find(L"Passed over: Abba feat. Cher - Title of b; Cher played"), std::wstring::npos)
        << testing::PrintToString(sText);
    EXPECT_EQ(cLib.NextCut(L"Pop\t1", false)->Key().Text(), L"c");
    EXPECT_EQ(cLib.Order(L"Pop", 1), (Keys{L"a", L"b", L"c"})) << "fair: what is passed over stays";
}

TEST_F(StationOptionsTest, AnotherManagerSeesWhatOneSetsWithinASecond)
{
    cLib.Populate();
    ModScheduler cOtherMod(cPorts.PortsWith(cPorts.cFiles));
    const auto cOther = std::make_shared<clsSchedMan>(cOtherMod);
    cOther->PopulateFromDataBase(cLib.cDataBase, sRadio);
    cLib.cSchedMan->SetFairRotation(true);
    cPorts.cClock.Advance(1'000);
    EXPECT_EQ(cOther->Options(), (RotationOptions{true, false}));
    cOther->SetFeaturedArtists(true);
    EXPECT_EQ(cPorts.cFiles.Get(sOptions), "FairRotation=1\r\nFeaturedArtists=1\r\n") << "nothing is lost";
}

TEST_F(StationOptionsTest, OptionsAndNamesAreInForceWithTheNextPick)
{
    cLib.Populate();
    Play(L"a");
    EXPECT_EQ(Pick(), L"b") << "the credit itself has not played";
    cLib.cSchedMan->SetFeaturedArtists(true);
    EXPECT_EQ(Pick(), L"c");
    cLib.cSchedMan->SetFeaturedArtists(false);
    EXPECT_EQ(Pick(), L"b");

    cLib.cSchedMan->OverrideOptions({{}, true});
    EXPECT_EQ(Pick(), L"c");
    cLib.cSchedMan->OverrideOptions({});
    EXPECT_EQ(Pick(), L"b");

    cPorts.cFiles.Put(sArtists, "credited,counts_as\r\nKiss,Cher\r\nAbba feat. Cher,Cher\r\n");
    EXPECT_EQ(Pick(), L"b") << "looked at once a second";
    cPorts.cClock.Advance(1'000);
    const std::wstring sLeast = Pick();
    EXPECT_EQ(cLib.cSchedMan->ArtistHistoryCut(L"cher")->Key().Text(), L"a");
    EXPECT_EQ(sLeast, L"a") << "every cut breaks the rule";
    cPorts.cClock.Advance(1'000);
    cPorts.cFiles.Delete(sArtists);
    cPorts.cFiles.Put(sOptions, "FeaturedArtists=1");
    Play(L"b");
    EXPECT_EQ(cLib.cSchedMan->ArtistHistoryCut(L"Abba")->Key().Text(), L"b") << "checked before a play";
}

TEST_F(StationOptionsTest, PresentFolderIsServedUntilAnotherOneIsPopulated)
{
    cPorts.cFiles.Put(sOptions, "FeaturedArtists=1");
    cPorts.cFiles.Put(L"C:\\Jazz\\Scheduler\\Rotation.cfg", "FairRotation=1");
    cLib.Populate();
    Play(L"a");
    cLib.cDataBase->bAllCutsFails = true;
    cLib.Populate(L"C:\\Jazz\\");
    EXPECT_EQ(cLib.cSchedMan->Options(), (RotationOptions{false, true})) << "the population failed";
    EXPECT_EQ(Pick(), L"c");

    cLib.cDataBase->bAllCutsFails = false;
    RotationOptions during;
    cLib.cHost.OnEvent = [&](const std::wstring&) { during = cLib.cSchedMan->Options(); };
    cLib.Populate(L"C:\\Jazz\\");
    cLib.cHost.OnEvent = nullptr;
    EXPECT_EQ(during, (RotationOptions{false, true})) << "while the next tree is built";
    EXPECT_EQ(cLib.cSchedMan->Options(), (RotationOptions{true, false}));
    EXPECT_EQ(Pick(), L"b") << "plays count for the names of the folder in use";
    cLib.cSchedMan->SetFairRotation(false);
    EXPECT_EQ(cPorts.cFiles.Get(sOptions), "FeaturedArtists=1");
}

} // namespace
} // namespace ravlo::test
