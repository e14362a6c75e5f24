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

TEST_P(RenamedCutTest, ItLeavesEveryLevelWhenItIsRemoved)
{
    const auto cFirst = Rename();
    Modified({Announced(cFirst)});
    cLib.cDataBase->Remove(*cFirst);
    Announce(&DataBaseEvents::CutsRemoved, {Announced(cFirst)});
    EXPECT_EQ(cLib.Order(L"Rock", 1), Keys{L"b"});
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
