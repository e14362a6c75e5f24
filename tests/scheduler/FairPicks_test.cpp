// SPDX-License-Identifier: MIT
// Picks with and without fair rotation while the host does something in any call out of them: into a cut, an
// event or a pump.
#include "support/SyncTest.h"

#include <cstdlib>

namespace ravlo::test
{
namespace
{

// Rock 1, whose first six cuts played too recently: a pick passes them over, and pumps once.
class FairPicksTest : public StationTest, public testing::WithParamInterface<bool>
{
protected:
    struct Action
    {
        const char* sName;
        std::function<void()> run;
    };

    void Begin()
    {
        cPorts.cFiles.MakeFolders(sOtherFolder);
        Start(L"Rock 1: r1 r2 r3 r4 r5 r6 r7 r8 | Pop 1: p1");
        cLib.cSchedMan->SetRotatesAllowed(true);
        cLib.cSchedMan->OverrideOptions({IsFair(), std::nullopt});
        Level(L"Rock", 1)->Rules()->Apply({0, 60, 0, false});
        for (std::size_t cut = 0; cut < 6; ++cut)
        {
            const std::shared_ptr<Cut> cCut = cLib.cDataBase->colCuts[cut];
            cCut->SetLastPlayed(cPorts.cClock.Now());
            cLib.cSchedMan->UpdateArtistTitleHistory(cCut);
        }
        Forget();
    }
    bool IsFair() const { return GetParam(); }

    // Picks, and does something in the n-th call. Returns whether there was one.
    bool PickWith(const Action& action, int lCall)
    {
        std::vector<std::shared_ptr<FakeCut>> colCuts;
        for (const std::shared_ptr<Cut>& cCut : cLib.cDataBase->colCuts)
            colCuts.push_back(CutOf(cCut->Key().Text()));
        int lLeft = lCall;
        const auto point = [&] {
            if (lLeft-- == 0)
                action.run();
        };
        for (const std::shared_ptr<FakeCut>& cCut : colCuts)
            cCut->OnCall = [&](std::string_view) { point(); };
        cLib.cHost.OnEvent = [&](const std::wstring&) { point(); };
        cPorts.cHostLoop.OnPump = point;
        cPicked = cLib.NextCut(L"Rock\t1");
        for (const std::shared_ptr<FakeCut>& cCut : colCuts)
            cCut->OnCall = nullptr;
        cLib.cHost.OnEvent = nullptr;
        cPorts.cHostLoop.OnPump = nullptr;
        return lLeft < 0;
    }
    // Every cut is where the database says, once, also after a restart, which keeps the orders.
    void ExpectSound()
    {
        EXPECT_TRUE(cPicked) << "never none";
        EXPECT_EQ(boxes, Boxes());
        for (const wchar_t* sName : {L"Rock", L"Pop"})
        {
            Keys colPresent = Order(sName, 1);
            Keys colExpected;
            for (const std::shared_ptr<Cut>& cCut : cLib.cDataBase->colCuts)
                if (cCut->HasCategoryName(sName))
                    colExpected.push_back(cCut->Key().Text());
            std::sort(colPresent.begin(), colPresent.end());
            std::sort(colExpected.begin(), colExpected.end());
            EXPECT_EQ(colPresent, colExpected);
        }
        const std::shared_ptr<clsCat> cRock = MainCat(L"Rock");
        ASSERT_TRUE(cRock);
        EXPECT_EQ(cLib.SaveAll(), !cRock->SubCats()->Empty()) << "without levels it has no records";
        const std::vector<Keys> colOrders{Order(L"Rock", 1), Order(L"Pop", 1)};
        cLib.Restart(cLib.cMod.AppPath());
        EXPECT_EQ((std::vector<Keys>{Order(L"Rock", 1), Order(L"Pop", 1)}), colOrders);
    }

    std::shared_ptr<Cut> cPicked;
};

TEST_P(FairPicksTest, AnythingMayHappenInAnyCallOutOfAPick)
{
    const Action actions[] =
        {
            {"nothing", [] {}},
            {"populates", [&] { cLib.Populate(); }},
            {"populates elsewhere", [&] { cLib.Populate(sOtherFolder); }},
            {"turns fair rotation on or off", [&] { cLib.cSchedMan->SetFairRotation(!IsFair()); }},
            {"counts featured artists", [&] { cLib.cSchedMan->SetFeaturedArtists(true); }},
            {"picks", [&] { EXPECT_TRUE(cLib.NextCut(L"Rock\t1")); }},
            {"picks otherwise",
             [&] {
        cLib.cSchedMan->OverrideOptions({!IsFair(), std::nullopt});
        EXPECT_TRUE(cLib.NextCut(L"Rock\t1"));
             }},
            {"spreads", [&] { cLib.cSchedMan->SpreadCategories({Level(L"Rock", 1)}); }},
            {"deletes the level",
             [&] {
        if (Level(L"Rock", 1))
            cLib.cSchedMan->DeleteCats({Level(L"Rock", 1)});
             }},
                 {"removes a cut",
                  [&] {
        if (CutOf(L"r7"))
            Removed({CutOf(L"r7")});
                  }},
        };
    // Every fifth call, another fifth for each action; all of them with RAVLO_LONG.
    const int lStride = std::getenv("RAVLO_LONG") ? 1 : 5;
    int lFirst = 0;
    for (const Action& action : actions)
    {
        for (int lCall = lFirst;; lCall += lStride)
        {
            SCOPED_TRACE(std::string("in call ") + std::to_string(lCall) + " the host " + action.sName);
            Begin();
            const bool bReached = PickWith(action, lCall);
            if (action.sName == std::string("nothing") || !bReached)
            {
                EXPECT_EQ(Tree(), IsFair() ? L"Rock 1: r1 r2 r3 r4 r5 r6 r8 r7 | Pop 1: p1"
                                           : L"Rock 1: r8 r1 r2 r3 r4 r5 r6 r7 | Pop 1: p1");
                EXPECT_EQ(cPicked->Key().Text(), L"r7");
            }
            ExpectSound();
            if (HasFailure() || !bReached)
                break;
        }
        lFirst = (lFirst + 1) % lStride;
    }
}

INSTANTIATE_TEST_SUITE_P(Orders, FairPicksTest, testing::Bool(),
                         [](const auto& order) { return order.param ? "fair" : "walk"; });

} // namespace
} // namespace ravlo::test
