// SPDX-License-Identifier: MIT
#include "scheduler/CutChanges.h"

#include "support/BatchingDataBase.h"
#include "support/ForwardingFiles.h"
#include "support/OutOfMemory.h"
#include "support/SyncTest.h"

namespace ravlo::test
{
namespace
{

TEST(OutOfMemory, FailureOfACutIsKeptThoughItCannotBeCounted)
{
    RadioPorts cPorts;
    ModScheduler cMod(cPorts.Ports());
    Placement cPlacement(cMod);
    const FakeCut cCut;
    try
    {
        throw RuntimeError(error::DeviceIo);
    }
    catch (...)
    {
        const Memory cMemory(0);
        cPlacement.Failed(cCut);
    }
    EXPECT_TRUE(bRanOut);
    std::vector<std::int32_t> colShown;
    cPlacement.Report([&](const RuntimeError& cError) { colShown.push_back(cError.Number()); });
    EXPECT_EQ(colShown, std::vector<std::int32_t>{error::DeviceIo});
}

TEST(OutOfMemory, CommittedStepIsSavedThoughItCannotBeRecorded)
{
    RadioPorts cPorts;
    Library cLib(cPorts);
    const auto cDataBase = std::make_shared<BatchingDataBase>();
    Cuts colCuts{cDataBase->cInner.Add(L"a", L"Rock", 1), cDataBase->cInner.Add(L"b", L"Rock", 1)};
    cLib.cSchedMan->PopulateFromDataBase(cDataBase, sRadio);
    const std::shared_ptr<clsCat> cRock = cLib.MainCat(L"Rock");
    cLib.cSchedMan->SaveHistoryAndOrdering(cRock);
    std::optional<Memory> cMemory;
    int lCalls = 0;
    cDataBase->OnCommit = [&] {
        if (++lCalls == 2) // right after the first commit
            cMemory.emplace(0);
    };
    std::vector<CutRemoval> colRemovals{{colCuts[0], cRock, 0}};
    for (int lCut = 0; lCut < 49; ++lCut) // the step of fifty ends in a report
        colRemovals.push_back({nullptr, nullptr, 0});
    cLib.cSchedMan->RemoveCutsFromCategories(colRemovals, [&](std::size_t) { cMemory.reset(); });
    EXPECT_TRUE(bRanOut);
    EXPECT_EQ(cPorts.cFiles.Get(SifPath(L"Rock")), SifCut("b", 1));
    EXPECT_EQ(cPorts.cMessages.Boxes,
              (Boxes{CriticalBox(L"Error in RemoveCutFromCategory [cSchedMan]", CriticalText(7))}));
}

TEST(OutOfMemory, NamesThatCannotBeTakenLeaveTheHistoryAsItWas)
{
    RadioPorts cPorts;
    FakeDataBase cDataBase;
    cDataBase.Add(L"a", L"Rock", 1)->SetArtist(L"Abba feat. Cher");
    PlayHistory cHistory(cPorts.cClock, [](const RuntimeError&, bool) {});
    const std::shared_ptr<Cut> cPlay = cDataBase.Own(L"a")->CloneCut();
    cPlay->SetLastPlayed(cPorts.cClock.Now());
    cHistory.Record(*cPlay, cDataBase);
    const ArtistNames cNames = ArtistNames().With(true);
    const TextKey cCredit(L"Abba feat. Cher");
    const TextKey cGuest(L"Cher");
    bool bTaken = false;
    for (int lAllocations = 0; !bTaken; ++lAllocations)
    {
        try
        {
            const Memory cMemory(lAllocations);
            cHistory.SetNames(cNames);
            bTaken = true;
        }
        catch (const std::bad_alloc&)
        {
            ASSERT_TRUE(cHistory.Names().CreditsOnly());
            ASSERT_TRUE(cHistory.ArtistHistoryCut(cCredit));
            ASSERT_FALSE(cHistory.ArtistHistoryCut(cGuest));
        }
    }
    EXPECT_TRUE(cHistory.ArtistHistoryCut(cGuest));
}

// Files after whose look at the table of artists only so many allocations succeed, for as long as memory is
// not given back.
class ShortOfMemory final : public ForwardingFiles
{
public:
    using ForwardingFiles::ForwardingFiles;
    std::optional<FileStamp> StampOf(const std::wstring& sPath) const override
    {
        std::optional<FileStamp> stamp = m_cInner.StampOf(sPath);
        if (lAllocations >= 0 && sPath.ends_with(L"Artists.csv"))
            cMemory.emplace(lAllocations);
        return stamp;
    }
    int lAllocations = -1;
    mutable std::optional<Memory> cMemory;
};

// A folder must come into use with its tree, although its options cannot be taken yet.
TEST(OutOfMemory, PopulationThatCannotTakeTheOptionsIsComplete)
{
    bool bTaken = false;
    for (int lAllocations = 0; !bTaken; ++lAllocations)
    {
        RadioPorts cPorts;
        ShortOfMemory cFiles(cPorts.cFiles);
        Library cLib(cPorts, cFiles);
        cLib.cDataBase->Add(L"a", L"Rock", 1)->SetArtist(L"Abba feat. Cher");
        cLib.Populate();
        const std::shared_ptr<Cut> cPlay = cLib.cDataBase->Own(L"a")->CloneCut();
        cPlay->SetLastPlayed(cPorts.cClock.Now());
        cLib.cSchedMan->UpdateArtistTitleHistory(cPlay);
        const std::shared_ptr<CatCollection> colBefore = cLib.cSchedMan->colMainCats();
        cPorts.cFiles.Put(L"C:\\Jazz\\Scheduler\\Rotation.cfg", "FeaturedArtists=1");

        cFiles.lAllocations = lAllocations;
        cLib.Populate(L"C:\\Jazz\\");
        cFiles.lAllocations = -1;
        cFiles.cMemory.reset();
        bTaken = !bRanOut;
        ASSERT_NE(cLib.cSchedMan->colMainCats(), colBefore) << lAllocations;
        ASSERT_EQ(cLib.cMod.AppPath(), L"C:\\Jazz\\") << lAllocations;
        cPorts.cClock.Advance(1'000);
        ASSERT_TRUE(cLib.cSchedMan->Options().bFeaturedArtists) << lAllocations;
        ASSERT_TRUE(cLib.cSchedMan->ArtistHistoryCut(L"Cher")) << lAllocations;
        ASSERT_TRUE(cLib.SaveAll());
        ASSERT_TRUE(cPorts.cFiles.FileExists(L"C:\\Jazz\\Scheduler\\History_and_Ordering\\Rock.sif"));
    }
}

} // namespace
} // namespace ravlo::test
