// SPDX-License-Identifier: MIT
// A database may announce a copy, another object than before, or a cut whose key has changed.
#include "scheduler/RenamedCuts.h"

#include "scheduler/Placement.h"
#include "scheduler/SchedulerState.h"
#include "support/SyncTest.h"

namespace ravlo::test
{
namespace
{

// The parameter: the database hands out another object for the same cut each time.
class AnnouncedCutTest : public StationTest, public testing::WithParamInterface<bool>
{
protected:
    AnnouncedCutTest() { cLib.cDataBase->bFreshObjects = GetParam(); }

    // What the database announces of one of its cuts.
    static std::shared_ptr<Cut> Announced(const std::shared_ptr<FakeCut>& cCut)
    {
        return GetParam() ? cCut->Twin() : cCut;
    }
    std::shared_ptr<Cut> Entry(const std::wstring& sName, const std::wstring& sKey) const
    {
        const std::shared_ptr<Cut>* cFound = Level(sName, 1)->SchedCuts()->Find(sKey);
        return cFound ? *cFound : nullptr;
    }
};

class RenamedCutTest : public AnnouncedCutTest
{
protected:
    // Starts with these cuts and gives the first one the key z. Without a number the object identifies it.
    std::shared_ptr<FakeCut> Rename(const std::wstring& sTree, bool bHasNumber = true)
    {
        cLib.cDataBase->colCuts.clear();
        const auto cFirst = cLib.cDataBase->AddTree(sTree);
        if (!bHasNumber)
            cFirst->lID = 0;
        Start();
        cFirst->SetKey(L"z");
        return cFirst;
    }
    // The keys under which a level contains its cuts.
    Keys Placed(const std::wstring& sName) const
    {
        Keys colKeys;
        if (const std::shared_ptr<clsCat> cLevel = Level(sName, 1))
            for (std::size_t at = 0; at < cLevel->SchedCuts()->Count(); ++at)
                colKeys.push_back(cLevel->SchedCuts()->KeyAt(at)->Text());
        return colKeys;
    }
};

std::string ModeName(const testing::TestParamInfo<bool>& info)
{
    return info.param ? "FreshObjects" : "SameObjects";
}
INSTANTIATE_TEST_SUITE_P(Modes, AnnouncedCutTest, testing::Bool(), ModeName);
INSTANTIATE_TEST_SUITE_P(Modes, RenamedCutTest, testing::Bool(), ModeName);

// ---- a cut under a new key

TEST_P(RenamedCutTest, CutAnnouncedUnderANewKeyKeepsItsPlaces)
{
    const auto cFirst = Rename(L"Rock 1: a b | Pop 1: a b");
    Modified({Announced(cFirst)});
    EXPECT_EQ(Tree(), L"Rock 1: z b | Pop 1: z b");
    EXPECT_FALSE(Entry(L"Rock", L"a"));
    EXPECT_TRUE(Entry(L"Rock", L"z"));
    EXPECT_EQ(Written(), (Lines{L"Rock", L"Pop"}));
    cLib.Restart();
    EXPECT_EQ(Tree(), L"Rock 1: z b | Pop 1: z b") << "the file has the new key";
    cFirst->SetKey(L"y");
    Added({Announced(cFirst)});
    EXPECT_EQ(Tree(), L"Rock 1: y b | Pop 1: y b") << "announced as new";
    cFirst->SetKey(L"x");
    Modified({cFirst->CloneCut()});
    EXPECT_EQ(Tree(), L"Rock 1: x b | Pop 1: x b") << "announced by a copy";
    cFirst->SetKey(L"w");
    cFirst->SetCategoryText(L"Pop");
    Modified({Announced(cFirst)});
    EXPECT_EQ(Tree(), L"Rock 1: b | Pop 1: w b") << "its other changes are followed too";
    cFirst->SetKey(L"y");
    Modified({Announced(cFirst)});
    EXPECT_EQ(Tree(), L"Rock 1: b | Pop 1: y b") << "a key that it had before";
    EXPECT_TRUE(boxes.empty());
}

TEST_P(RenamedCutTest, LeavesEveryLevelWhenRemoved)
{
    for (const bool bAnnounced : {true, false})
    {
        SCOPED_TRACE(bAnnounced);
        const auto cCut = Rename(L"Rock 1: a b | Pop 1: a", GetParam());
        if (bAnnounced)
            Modified({Announced(cCut)});
        cLib.cDataBase->Remove(*cCut);
        Announce(&DataBaseEvents::CutsRemoved, {Announced(cCut)});
        EXPECT_EQ(Tree(), L"Rock 1: b | Pop 1:");
        EXPECT_EQ(Written(), (Lines{L"Rock", L"Pop"}));
        EXPECT_EQ(boxes, Boxes());
    }
}

// What the scheduler itself does to a cut whose new key was not announced, and where it is afterwards.
TEST_P(RenamedCutTest, OwnChangesFindTheCutUnderItsNewKey)
{
    const auto MassChange = [this](eCatDragOptions eOption, const std::shared_ptr<Cut>& cCut) {
        bool bCreated = false;
        cLib.cSchedMan->DoMassCatChange(eOption, {Level(L"Rock", 1)}, Level(L"Pop", 1), {cCut}, bCreated);
    };
    const struct
    {
        const char* sName;
        std::function<void(const std::shared_ptr<Cut>& cCut)> change;
        Keys colRock;
        Keys colPop;
    } colCases[] =
        {
            {"assign",
             [&](const auto& cCut) { cLib.cSchedMan->AssignCut(cCut, 1, {L"Pop"}); },
             {L"b"},
             {L"p", L"z"}},
            {"move", [&](const auto& cCut) { MassChange(eMoveHere, cCut); }, {L"b"}, {L"p", L"z"}},
            {"copy", [&](const auto& cCut) { MassChange(eCopyHere, cCut); }, {L"z", L"b"}, {L"p", L"z"}},
            {"remove",
             [&](const auto& cCut) {
        cLib.cSchedMan->RemoveCutsFromCategories({{cCut, nullptr, 0}}, {});
             },
             {L"b"},
             {L"p"}},
            {"delete", [&](const auto&) { cLib.cSchedMan->DeleteCats({Level(L"Rock", 1)}); }, {}, {L"p"}},
            {"reorder",
             [&](const auto& cCut) { cLib.cSchedMan->MoveCutsInCategory(Level(L"Rock", 1), {cCut}, 3); },
             {L"b", L"z"},
             {L"p"}},
    };
    for (const auto& entry : colCases)
    {
        SCOPED_TRACE(entry.sName);
        const auto cCut = Rename(L"Rock 1: a b | Pop 1: p", GetParam());
        entry.change(cCut);
        EXPECT_EQ(boxes, Boxes());
        const std::function<void()> steps[] = {[] {}, [&] { Modified({Announced(cCut)}); },
                                               [&] { cLib.Restart(); }};
        for (const auto& step : steps)
        {
            SCOPED_TRACE(&step - steps);
            step();
            EXPECT_EQ(Placed(L"Rock"), entry.colRock);
            EXPECT_EQ(Placed(L"Pop"), entry.colPop);
        }
    }
}

TEST_P(RenamedCutTest, NumberIdentifiesARenamedCutOnlyWhileItIsThatCuts)
{
    const auto cFirst = Start(L"Rock 1: a");
    const auto cSecond = Add(L"b", L"Rock");
    cSecond->lID = cFirst->lID;
    Added({Announced(cSecond)});
    EXPECT_EQ(Tree(), L"Rock 1: a b") << "the database still has a cut under the key before";
    Removed({cFirst});
    const auto cThird = Add(L"c", L"Rock");
    cThird->lID = cFirst->lID;
    Added({Announced(cThird)});
    EXPECT_EQ(Tree(), L"Rock 1: b c") << "the number of a removed cut is free";
}

TEST_F(StationTest, WithoutANumberTheObjectIdentifiesTheRenamedCut)
{
    const auto cFirst = cLib.cDataBase->AddTree(L"Rock 1: a b");
    cFirst->lID = CutOf(L"b")->lID = 0;
    Start();
    cFirst->SetKey(L"z");
    Modified({cFirst});
    EXPECT_EQ(Tree(), L"Rock 1: z b");
    const auto cNew = Add(L"c", L"Rock");
    cNew->lID = 0;
    Added({cNew});
    EXPECT_EQ(Tree(), L"Rock 1: z b c") << "an object that was in no level";
}

TEST(RenamedCutsTest, TreeIsIndexedAgainAfterAReload)
{
    MemoryPorts cPorts;
    ModScheduler cMod(cPorts.Ports());
    SchedulerState cState(cMod);
    cState.colMainCats = std::make_shared<CatCollection>();
    const auto cCut = std::make_shared<FakeCut>(); // without a number
    cCut->SetKey(L"a");
    cCut->SetCatLevel(1);
    bool bCreated = false;
    EnsureMainCat(cMod, *cState.colMainCats, L"Rock")->AddCut(cCut, bCreated);
    RenamedCuts cRenamed(cState);
    for (const wchar_t* sKey : {L"z", L"y"})
    {
        cCut->SetKey(sKey);
        EXPECT_EQ(cRenamed.Follow(cCut, TextKey(sKey)).size(), 1u);
        EXPECT_EQ(cState.PlacesOf(TextKey(sKey)).size(), 1u);
        ++cState.populations;
    }
}

// ---- the object that is placed

TEST_P(AnnouncedCutTest, CopyOfACutIsPlacedAsTheDatabasesOwn)
{
    Start();
    const auto cCut = Add(L"a", L"Rock");
    Added({cCut->CloneCut()});
    cCut->SetTitle(L"later");
    EXPECT_EQ(Entry(L"Rock", L"a")->Title(), L"later");
    cCut->SetCategoryText(L"Pop");
    Modified({cCut->CloneCut()});
    cCut->SetTitle(L"later still");
    EXPECT_EQ(Tree(), L"Rock 1: | Pop 1: a");
    EXPECT_EQ(Entry(L"Pop", L"a")->Title(), L"later still");
    cLib.cDataBase->Remove(*cCut);
    Announce(&DataBaseEvents::CutsRemoved, {cCut->CloneCut()});
    EXPECT_EQ(Tree(), L"Rock 1: | Pop 1:") << "a copy takes it out";
}

TEST_P(AnnouncedCutTest, NamesOfTheDatabaseCountNotThoseOfACopy)
{
    Start();
    const auto cCut = Add(L"a", L"Rock");
    const std::shared_ptr<Cut> cCopy = cCut->CloneCut();
    cCut->SetCategoryText(L"Pop");
    Added({cCopy});
    EXPECT_EQ(Tree(), L"Pop 1: a");
}

TEST_P(AnnouncedCutTest, ModifiedCutTakesTheNewObjectInItsPlace)
{
    const auto cCut = Start(L"Rock 1: a b");
    cLib.cDataBase->Remove(*cCut); // another object altogether, as after a change of the record
    const auto cNew = Add(L"a", L"Rock");
    cNew->lID = cCut->lID;
    cNew->SetTitle(L"later");
    Modified({Announced(cNew)});
    EXPECT_EQ(Entry(L"Rock", L"a")->Title(), L"later");
    EXPECT_EQ(Tree(), L"Rock 1: a b");
    EXPECT_EQ(Written(), Lines()) << "the order has not changed";
}

TEST_P(AnnouncedCutTest, DatabaseThatCannotBeAskedIsFollowedAllTheSame)
{
    Start();
    const auto cCut = Add(L"a", L"Rock");
    cLib.cDataBase->bFails = true;
    Added({Announced(cCut)});
    EXPECT_EQ(Tree(), L"Rock 1: a");
    EXPECT_EQ(boxes, Boxes());
    EXPECT_EQ(Logged(L"DISPLAYERROR, Looking up an announced cut 57 Device I/O error"), 1);
}

} // namespace
} // namespace ravlo::test
