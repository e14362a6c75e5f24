// SPDX-License-Identifier: MIT
// What a database announces may be a copy, another object than before, or a cut whose key has changed.
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
    // The keys under which a level holds its cuts.
    Keys Placed(const std::wstring& sName) const
    {
        Keys colKeys;
        const std::shared_ptr<CutCollection> colCuts =
            Level(sName, 1) ? Level(sName, 1)->SchedCuts() : nullptr;
        for (std::size_t at = 0; colCuts && at < colCuts->Count(); ++at)
            colKeys.push_back(colCuts->KeyAt(at)->Text());
        return colKeys;
    }
    // Populates with a and b, in that order, and gives a the key z.
    std::shared_ptr<FakeCut> Rename(const std::wstring& sCategoryText = L"Rock")
    {
        const auto cFirst = Add(L"a", sCategoryText);
        Add(L"b", sCategoryText);
        Start();
        cFirst->SetKey(L"z");
        return cFirst;
    }
};

std::string ModeName(const testing::TestParamInfo<bool>& info)
{
    return info.param ? "FreshObjects" : "SameObjects";
}
INSTANTIATE_TEST_SUITE_P(Modes, AnnouncedCutTest, testing::Bool(), ModeName);
INSTANTIATE_TEST_SUITE_P(Modes, RenamedCutTest, testing::Bool(), ModeName);

// ---- a cut under a new key

TEST_P(RenamedCutTest, ACutAnnouncedUnderANewKeyKeepsItsPlaces)
{
    const auto cFirst = Rename(L"Rock/Pop");
    Modified({Announced(cFirst)});
    EXPECT_EQ(cLib.Order(L"Rock", 1), (Keys{L"z", L"b"}));
    EXPECT_EQ(cLib.Order(L"Pop", 1), (Keys{L"z", L"b"}));
    EXPECT_FALSE(cLib.Level(L"Rock", 1)->SchedCuts()->Exists(L"a"));
    EXPECT_TRUE(cLib.Level(L"Rock", 1)->SchedCuts()->Exists(L"z"));
    cLib.Restart();
    EXPECT_EQ(cLib.Order(L"Rock", 1), (Keys{L"z", L"b"})) << "the file has the new key";
    EXPECT_TRUE(cPorts.cMessages.Boxes.empty());
}

TEST_P(RenamedCutTest, ItKeepsThemWhenItIsAnnouncedAsNewOrByACopy)
{
    const auto cFirst = Rename();
    Added({Announced(cFirst)});
    EXPECT_EQ(cLib.Order(L"Rock", 1), (Keys{L"z", L"b"}));
    cFirst->SetKey(L"y");
    Modified({cFirst->CloneCut()});
    EXPECT_EQ(cLib.Order(L"Rock", 1), (Keys{L"y", L"b"}));
}

TEST_P(RenamedCutTest, LeavesEveryLevelWhenRemoved)
{
    for (const bool bAnnounced : {true, false})
    {
        SCOPED_TRACE(bAnnounced);
        const std::wstring sNumber = bAnnounced ? L"1" : L"2";
        const auto cCut = Add(L"a" + sNumber, L"Rock/Pop");
        Add(L"b", L"Rock");
        cCut->lID = GetParam() ? cCut->lID : 0; // the object tells where there is no number
        Start();
        cCut->SetKey(L"z" + sNumber);
        if (bAnnounced)
            Modified({Announced(cCut)});
        cLib.cDataBase->Remove(*cCut);
        Announce(&DataBaseEvents::CutsRemoved, {Announced(cCut)});
        EXPECT_EQ(cLib.Order(L"Rock", 1), Keys{L"b"});
        EXPECT_EQ(cLib.Order(L"Pop", 1), Keys());
        EXPECT_EQ(Written(), (Lines{L"Rock", L"Pop"}));
        EXPECT_EQ(boxes, Boxes());
        cLib.cDataBase->colCuts.clear();
    }
}

// What the scheduler itself does to a cut whose new key nobody has announced: the cut, and where it is
// afterwards.
TEST_P(RenamedCutTest, OwnChangesFindTheCutUnderItsNewKey)
{
    const std::shared_ptr<clsSchedMan>& cMan = cLib.cSchedMan;
    bool bCreated = false;
    const auto From = [&] { return Cats{Level(L"Rock", 1)}; };
    const struct
    {
        const char* sName;
        std::function<void(const std::shared_ptr<Cut>& cCut)> change;
        Keys colRock;
        Keys colPop;
    } colCases[] =
        {
            {"assign", [&](const auto& cCut) { cMan->AssignCut(cCut, 1, {L"Pop"}); }, {L"b"}, {L"p", L"z"}},
            {"move",
             [&](const auto& cCut) {
        cMan->DoMassCatChange(eMoveHere, From(), Level(L"Pop", 1), {cCut}, bCreated);
             },
             {L"b"},
             {L"p", L"z"}},
            {"copy",
             [&](const auto& cCut) {
        cMan->DoMassCatChange(eCopyHere, From(), Level(L"Pop", 1), {cCut}, bCreated);
             },
             {L"z", L"b"},
             {L"p", L"z"}},
      {"remove",
       [&](const auto& cCut) {
        cMan->RemoveCutsFromCategories({{cCut, nullptr, 0}}, {});
       },
       {L"b"},
       {L"p"}},
        {"delete", [&](const auto&) { cMan->DeleteCats(From()); }, {}, {L"p"}},
        {"reorder",
         [&](const auto& cCut) { cMan->MoveCutsInCategory(Level(L"Rock", 1), {cCut}, 3); },
         {L"b", L"z"},
         {L"p"}},
        };
    for (const auto& entry : colCases)
    {
        SCOPED_TRACE(entry.sName);
        cLib.cDataBase->colCuts.clear();
        const auto cCut = Add(L"a", L"Rock");
        cCut->lID = GetParam() ? cCut->lID : 0;
        Add(L"b", L"Rock");
        Add(L"p", L"Pop");
        Start();
        cCut->SetKey(L"z");
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

TEST_P(RenamedCutTest, ItsOtherChangesAreFollowedToo)
{
    const auto cFirst = Rename();
    cFirst->SetCategoryText(L"Pop");
    Modified({Announced(cFirst)});
    EXPECT_EQ(cLib.Order(L"Rock", 1), Keys{L"b"});
    EXPECT_EQ(cLib.Order(L"Pop", 1), Keys{L"z"});
}

TEST_P(RenamedCutTest, ANumberOfAKeyTheDatabaseStillHasIsAnotherCuts)
{
    const auto cFirst = Add(L"a", L"Rock");
    Start();
    const auto cSecond = Add(L"b", L"Rock");
    cSecond->lID = cFirst->lID;
    Added({Announced(cSecond)});
    EXPECT_EQ(cLib.Order(L"Rock", 1), (Keys{L"a", L"b"}));
}

TEST_P(RenamedCutTest, TheNumberOfARemovedCutIsFree)
{
    const auto cFirst = Add(L"a", L"Rock");
    Add(L"b", L"Rock");
    Start();
    Removed({cFirst});
    const auto cThird = Add(L"c", L"Rock");
    cThird->lID = cFirst->lID;
    Added({Announced(cThird)});
    EXPECT_EQ(cLib.Order(L"Rock", 1), (Keys{L"b", L"c"}));
}

TEST_F(StationTest, WithoutANumberTheObjectTellsTheRenamedCut)
{
    const auto cFirst = Add(L"a", L"Rock");
    const auto cSecond = Add(L"b", L"Rock");
    cFirst->lID = cSecond->lID = 0;
    Start();
    cFirst->SetKey(L"z");
    Modified({cFirst});
    EXPECT_EQ(cLib.Order(L"Rock", 1), (Keys{L"z", L"b"}));
}

// ---- the object that is placed

TEST_P(AnnouncedCutTest, ACopyOfANewCutIsPlacedAsTheDatabasesOwn)
{
    Start();
    const auto cCut = Add(L"a", L"Rock");
    Added({cCut->CloneCut()});
    cCut->SetTitle(L"later");
    EXPECT_EQ(Entry(L"Rock", L"a")->Title(), L"later");
}

TEST_P(AnnouncedCutTest, ACopyOfAMovedCutIsPlacedAsTheDatabasesOwn)
{
    const auto cCut = Add(L"a", L"Rock");
    Start();
    cCut->SetCategoryText(L"Pop");
    Modified({cCut->CloneCut()});
    cCut->SetTitle(L"later");
    EXPECT_EQ(cLib.Order(L"Rock", 1), Keys());
    EXPECT_EQ(Entry(L"Pop", L"a")->Title(), L"later");
}

TEST_P(AnnouncedCutTest, TheDatabasesWordCountsNotTheCopys)
{
    Start();
    const auto cCut = Add(L"a", L"Rock");
    const std::shared_ptr<Cut> cCopy = cCut->CloneCut();
    cCut->SetCategoryText(L"Pop");
    Added({cCopy});
    EXPECT_EQ(cLib.Order(L"Pop", 1), Keys{L"a"});
    EXPECT_FALSE(MainCat(L"Rock"));
}

TEST_P(AnnouncedCutTest, AModifiedCutTakesTheNewObjectInItsPlace)
{
    const auto cCut = Add(L"a", L"Rock");
    Add(L"b", L"Rock");
    Start();
    cLib.cDataBase->Remove(*cCut); // another object altogether, as after a change of the record
    const auto cNew = Add(L"a", L"Rock");
    cNew->lID = cCut->lID;
    cNew->SetTitle(L"later");
    Modified({Announced(cNew)});
    EXPECT_EQ(Entry(L"Rock", L"a")->Title(), L"later");
    EXPECT_EQ(cLib.Order(L"Rock", 1), (Keys{L"a", L"b"}));
    EXPECT_EQ(Written(), Lines()) << "the order has not changed";
}

TEST_P(AnnouncedCutTest, ACopyOfARemovedCutTakesItOut)
{
    const auto cCut = Add(L"a", L"Rock");
    Add(L"b", L"Rock");
    Start();
    cLib.cDataBase->Remove(*cCut);
    Announce(&DataBaseEvents::CutsRemoved, {cCut->CloneCut()});
    EXPECT_EQ(cLib.Order(L"Rock", 1), Keys{L"b"});
}

TEST_P(AnnouncedCutTest, ADatabaseThatCannotBeAskedIsFollowedAllTheSame)
{
    Start();
    const auto cCut = Add(L"a", L"Rock");
    cLib.cDataBase->bFails = true;
    Added({Announced(cCut)});
    EXPECT_EQ(cLib.Order(L"Rock", 1), Keys{L"a"});
    EXPECT_EQ(boxes, Boxes());
    const Lines colLog = Log();
    EXPECT_EQ(std::count(colLog.begin(), colLog.end(),
                         L"DISPLAYERROR, Looking up an announced cut 57 Device I/O error"),
              1);
}

} // namespace
} // namespace ravlo::test
