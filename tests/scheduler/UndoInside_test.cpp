// SPDX-License-Identifier: MIT
// Units of work that a host runs inside another one.

#include "scheduler/UndoTest.h"

namespace ravlo::test
{
namespace
{

// Rock 1 also has 60 cuts, so that a unit reports in its middle.
class UndoInsideTest : public UndoTest, public testing::WithParamInterface<std::size_t>
{
public:
    UndoInsideTest()
    {
        colMany = AddMany(60, L"r", L"Rock", 1);
        StationTest::Start();
    }
    static std::vector<std::pair<const wchar_t*, std::function<void(UndoInsideTest&)>>> All()
    {
        using T = UndoInsideTest;
        return {
            {L"move of 60 cuts to Soul 3",
             [](T& t) {
            t.AtProgress();
            t.cLib.Change(eMoveHere, t.Level(L"Rock", 1), t.Level(L"Soul", 3), t.colMany);
             }},
            {L"copy of 60 cuts to Soul",
             [](T& t) {
            t.AtCall(*t.CutOf(L"r30"), "AddCategoryName");
            t.cLib.Change(eCopyHere, t.Level(L"Rock", 1), t.MainCat(L"Soul"), t.colMany);
             }},
            {L"removal of 60 cuts from Rock 1, Soul 3, Pop 1",
             [](T& t) {
            std::vector<CutRemoval> colRemovals;
            for (const std::shared_ptr<Cut>& cCut : t.colMany)
                colRemovals.push_back({cCut, t.MainCat(L"Rock"), 0});
            t.Man().RemoveCutsFromCategories(colRemovals, [&](std::size_t) { t.EditOnce(); });
             }},
            {L"deletion of Rock",
             [](T& t) {
            t.AtProgress();
            t.Man().DeleteCats({t.MainCat(L"Rock")});
             }},
            {L"spread of Rock 1, Soul 3, Pop 1",
             [](T& t) {
            t.CutOf(L"a")->SetLastPlayed(t.cPorts.cClock.Now());
            t.AtCall(*t.CutOf(L"s"), "LastPlayed");
            t.Man().SpreadCategories({t.Level(L"Rock", 1), t.Level(L"Soul", 3), t.Level(L"Pop", 1)});
             }},
            {L"assignment of Artist of c - Title of c",
             [](T& t) {
            t.AtCall(*t.CutOf(L"c"), "SetCategoryText");
            t.Man().AssignCut(t.CutOf(L"c"), 3, {L"Soul"});
             }},
            };
    }
    // What the host does inside.
    void EditOnce()
    {
        if (std::exchange(bEdited, true))
            return;
        const std::wstring sStep = Man().UndoText();
        for (const std::int32_t lPosition : {1, 7})
            MoveTo(L"f", lPosition);
        Move({L"e"}, Level(L"Soul", 3));
        Man().AssignCut(CutOf(L"r40"), 1, {L"Rock", L"Pop"});
        CatCollection colLeft;
        Man().RemoveCutFromCategory(MainCat(L"Pop"), CutOf(L"q"), colLeft);
        Man().SaveHistoryAndOrdering(MainCat(L"Pop"));
        EXPECT_EQ(Man().UndoText(), sStep);
        EXPECT_EQ(NumberOf([&] { Man().Undo(); }), error::PermissionDenied);
    }
    void AtProgress()
    {
        cLib.cHost.OnEvent = [this](const std::wstring& sLine) {
            if (sLine.starts_with(L"Progress 50"))
                EditOnce();
        };
    }
    void AtCall(FakeCut& cCut, const std::string& sCalled)
    {
        cCut.OnCall = [=, this](std::string_view sMember) {
            if (sMember == sCalled)
                EditOnce();
        };
    }
    using UndoTest::Man;

    Cuts colMany;
    bool bEdited = false;
};

TEST_P(UndoInsideTest, IsUndoneAndRedoneWithTheUnitAroundIt)
{
    MoveTo(L"b", 1);
    const std::wstring sBefore = State();
    const Lines colBefore = Levels();
    const auto work = All()[GetParam()];
    work.second(*this);
    ASSERT_TRUE(bEdited);
    const std::wstring sAfter = State();
    const Lines colAfter = Levels();
    EXPECT_EQ(Man().UndoText(), std::wstring(L"Undo ") + work.first);
    for (int lTimes = 0; lTimes < 2; ++lTimes)
    {
        EXPECT_EQ(Man().Undo(), std::wstring(L"Undone: ") + work.first);
        EXPECT_EQ(State(), sBefore);
        EXPECT_EQ(Man().UndoText(), L"Undo re-order of Rock 1");
        EXPECT_EQ(Man().Redo(), std::wstring(L"Redone: ") + work.first);
        EXPECT_EQ(State(), sAfter);
    }
    cLib.Restart();
    EXPECT_EQ(Man().Undo(), std::wstring(L"Undone: ") + work.first);
    EXPECT_EQ(Levels(), colBefore);
    EXPECT_EQ(Man().Redo(), std::wstring(L"Redone: ") + work.first);
    EXPECT_EQ(Levels(), colAfter);
}

INSTANTIATE_TEST_SUITE_P(UndoInsideTest, UndoInsideTest,
                         testing::Range(std::size_t{0}, UndoInsideTest::All().size()));

TEST_F(UndoInsideTest, InAUnitThatChangesNothingItIsTheStep)
{
    cLib.cHost.OnEvent = [this](const std::wstring&) { EditOnce(); };
    const std::wstring sBefore = State();
    CutOf(L"p")->failing = {"SetCatLevel"};
    cLib.Change(eMoveHere, Level(L"Pop", 1), Level(L"Soul", 3), {CutOf(L"p")});
    CutOf(L"p")->failing.clear();
    EXPECT_EQ(Man().UndoText(), L"Undo re-order of Rock 1...");
    Man().Undo();
    EXPECT_EQ(State(), sBefore);
}

TEST_F(UndoInsideTest, ACategoryIsNotRenamedInside)
{
    CutOf(L"b")->OnCall = [this](std::string_view sMember) {
        if (sMember == "SetCatLevel")
            bEdited = Man().RenameMainCat(L"Pop", L"Folk");
    };
    Move({L"b"}, Level(L"Soul", 3));
    EXPECT_FALSE(bEdited);
    EXPECT_EQ(boxes, (Boxes{CriticalBox(L"Error in RenameMainCat [cSchedMan]",
                                        L"70 Cuts are being changed just now")}));
    EXPECT_EQ(Man().UndoText(), L"Undo move of 1 cut to Soul 3");
}

TEST_F(UndoInsideTest, InsideAnUndoItIsUndoneByTheRedo)
{
    Move({L"a", L"b"}, Level(L"Soul", 3));
    const std::wstring sBefore = State();
    AtCall(*CutOf(L"b"), "SetCategoryText");
    EXPECT_TRUE(Man().Undo().starts_with(L"Undone: move of 2 cuts to Soul 3 ("));
    EXPECT_FALSE(Man().CanUndo());
    Man().Redo();
    EXPECT_EQ(State(), sBefore);
}

TEST_F(UndoInsideTest, AUnitThatAnExceptionEndsKeepsAStep)
{
    struct Stop
    {
    };
    const std::wstring sBefore = State();
    std::vector<CutRemoval> colRemovals;
    for (const std::shared_ptr<Cut>& cCut : colMany)
        colRemovals.push_back({cCut, MainCat(L"Rock"), 0});
    Man().RemoveCutsFromCategories(colRemovals, [](std::size_t) { throw Stop(); });
    EXPECT_EQ(Man().UndoText(), L"Undo removal of 50 cuts from Rock 1");
    Man().Undo();
    EXPECT_EQ(State(), sBefore);
}

TEST_F(UndoInsideTest, AReloadEndsARemovalAndOneUndoTakesItBack)
{
    const std::wstring sBefore = State();
    std::vector<CutRemoval> colRemovals;
    for (const std::shared_ptr<Cut>& cCut : colMany)
        colRemovals.push_back({cCut, MainCat(L"Rock"), 0});
    Forget();
    Man().RemoveCutsFromCategories(colRemovals, [this](std::size_t) { cLib.Populate(); });
    EXPECT_EQ(boxes.size(), 1u);
    EXPECT_EQ(Man().UndoText(), L"Undo removal of 50 cuts from Rock 1");
    Man().Undo();
    EXPECT_EQ(State(), sBefore);
}

TEST_F(UndoInsideTest, ItIsTheStepWhenTheUnitFails)
{
    const std::wstring sBefore = State();
    CutOf(L"b")->OnCall = [this](std::string_view sMember) {
        if (sMember != "SetCategoryText" || std::exchange(bEdited, true))
            return;
        Man().AssignCut(CutOf(L"a"), 7, {L"Rock"});
        CutOf(L"b")->failing = {"SetCategoryText"};
    };
    NumberOf([&] { Man().AssignCut(CutOf(L"b"), 7, {L"Rock", L"Pop"}); });
    EXPECT_EQ(Order(L"Rock", 7), Keys{L"a"});
    Man().Undo();
    EXPECT_EQ(State(), sBefore);
}

} // namespace
} // namespace ravlo::test
