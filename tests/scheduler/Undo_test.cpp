// SPDX-License-Identifier: MIT
#include "scheduler/ChangeReversal.h"

#include "support/BatchingDataBase.h"
#include "support/SyncTest.h"

namespace ravlo::test
{
namespace
{

constexpr const wchar_t* sStation = L"Rock 1: a b c d e f | Rock 2: x y | Pop 1: p q | Soul 3: s";

class UndoTest : public StationTest
{
protected:
    UndoTest()
    {
        Start(sStation);
        Man().SaveCatNames();
    }

    clsSchedMan& Man() { return *cLib.cSchedMan; }
    // Everything a unit of work may change: the tree, run times, the cuts, the files of orders and the list.
    std::wstring State() const
    {
        std::wstring sState = Tree();
        for (const std::shared_ptr<clsCat>& cMainCat : *cLib.cSchedMan->colMainCats())
            for (const std::shared_ptr<clsCat>& cSubCat : *cMainCat->SubCats())
                sState += L", " + std::to_wstring(TotalOf(cMainCat->CatName(), cSubCat->CatLevel()));
        for (const std::shared_ptr<Cut>& cCut : cLib.cDataBase->colCuts)
            sState += L"\n" + cCut->Key().Text() + L" " + std::to_wstring(cCut->CatLevel()) + L" " +
                      cCut->CategoryText();
        for (const std::wstring& sPath : cPorts.cFiles.Paths())
            if (sPath.ends_with(L".sif") || sPath.ends_with(L".rls") || sPath == sMainCatsPath)
            {
                const std::string bytes = cPorts.cFiles.Get(sPath);
                sState += L"\n" + sPath + L" " + Printable(bytes);
            }
        return sState;
    }
    // Without fill bytes, and with digits for small binary numbers.
    static std::wstring Printable(const std::string& bytes)
    {
        std::wstring sText;
        for (const char c : bytes)
            if (c != '\0' && (c != ' ' || !sText.ends_with(L' ')))
                sText += c > 0 && c < 10 ? static_cast<wchar_t>(L'0' + c) : static_cast<wchar_t>(c);
        return sText;
    }
    Cuts CutsNamed(std::initializer_list<const wchar_t*> colKeys) const
    {
        Cuts colCuts;
        for (const wchar_t* sKey : colKeys)
            colCuts.push_back(CutOf(sKey));
        return colCuts;
    }
    void Move(std::initializer_list<const wchar_t*> colKeys, const std::shared_ptr<clsCat>& cTo,
              eCatDragOptions eOption = eMoveHere)
    {
        cLib.Change(eOption, Level(L"Rock", 1), cTo, CutsNamed(colKeys));
    }
    void Remove(std::initializer_list<const wchar_t*> colKeys, const std::wstring& sName)
    {
        std::vector<CutRemoval> colRemovals;
        for (const std::shared_ptr<Cut>& cCut : CutsNamed(colKeys))
            colRemovals.push_back({cCut, sName.empty() ? nullptr : MainCat(sName), 0});
        Man().RemoveCutsFromCategories(colRemovals, [](std::size_t) {});
    }
    void CreateLevel(const std::wstring& sName, const std::wstring& sLevel)
    {
        cPorts.cMessages.Typed = {sLevel};
        EXPECT_TRUE(Man().CreateCatLevel(MainCat(sName)));
    }
    void MoveTo(const std::wstring& sKey, std::int32_t PosInto)
    {
        Man().MoveCutsInCategory(Level(L"Rock", 1), {CutOf(sKey)}, PosInto);
    }
};

// ---- each unit of work

class UndoWorkTest : public UndoTest, public testing::WithParamInterface<std::size_t>
{
public:
    static std::vector<std::pair<const wchar_t*, std::function<void(UndoWorkTest&)>>> All()
    {
        using T = UndoWorkTest;
        return {
            {L"shuffle of Rock 1", [](T& t) { t.Man().ShuffleCategories({t.Level(L"Rock", 1)}); }},
            {L"shuffle of Rock, Pop 1, Soul 3... (+1)",
             [](T& t) {
            t.Man().ShuffleCategories(
                {t.MainCat(L"Rock"), t.Level(L"Pop", 1), t.Level(L"Soul", 3), t.Level(L"Rock", 2)});
             }},
            {L"spread of Rock 1",
             [](T& t) {
            t.CutOf(L"a")->SetLastPlayed(t.cPorts.cClock.Now());
            t.Man().SpreadCategories({t.Level(L"Rock", 1)});
             }},
            {L"re-order of Rock 1", [](T& t) { t.MoveTo(L"e", 2); }},
            {L"move of 2 cuts to Pop 1",
             [](T& t) {
            t.Move({L"b", L"d"}, t.Level(L"Pop", 1));
             }},
            {L"move of 1 cut to Pop", [](T& t) { t.Move({L"b"}, t.MainCat(L"Pop"), eMoveExclusiveHere); }},
            {L"move of 6 cuts to Soul 3",
             [](T& t) {
            t.Move({L"f", L"e", L"d", L"c", L"b", L"a"}, t.Level(L"Soul", 3));
             }},
            {L"move of 2 cuts to Rock 2",
             [](T& t) {
            t.Move({L"c", L"a"}, t.Level(L"Rock", 2));
             }},
            {L"copy of 2 cuts to Pop 1",
             [](T& t) {
            t.Move({L"b", L"e"}, t.Level(L"Pop", 1), eCopyHere);
             }},
            {L"copy of 1 cut to Soul", [](T& t) { t.Move({L"b"}, t.MainCat(L"Soul"), eCopyHere); }},
            {L"removal of 2 cuts from Rock 1",
             [](T& t) {
            t.Remove({L"b", L"d"}, L"Rock");
             }},
            {L"removal of 3 cuts from Pop 1, Soul 3",
             [](T& t) {
            t.Remove({L"p", L"q", L"s"}, L"");
             }},
            {L"deletion of Pop 1", [](T& t) { EXPECT_TRUE(t.Man().DeleteCats({t.Level(L"Pop", 1)})); }},
            {L"deletion of Rock", [](T& t) { EXPECT_TRUE(t.Man().DeleteCats({t.MainCat(L"Rock")})); }},
            {L"deletion of Soul 3, Rock 2, Soul",
             [](T& t) {
            EXPECT_TRUE(t.Man().DeleteCats({t.Level(L"Soul", 3), t.Level(L"Rock", 2), t.MainCat(L"Soul")}));
             }},
            {L"new category Jazz", [](T& t) { EXPECT_TRUE(t.cLib.CreateMainCat(L"Jazz")); }},
            {L"new level Pop 7", [](T& t) { t.CreateLevel(L"Pop", L"7"); }},
            {L"assignment of Artist of c - Title of c",
             [](T& t) {
            t.Man().AssignCut(t.CutOf(L"c"), 2, {L"Pop", L"Rock", L"Folk"});
             }},
            };
    }
    using UndoTest::CreateLevel;
    using UndoTest::Man;
    using UndoTest::Move;
    using UndoTest::MoveTo;
    using UndoTest::Remove;
};

TEST_P(UndoWorkTest, IsTakenBackAndDoneAgain)
{
    const auto work = All()[GetParam()];
    const std::wstring sWhat = work.first;
    const std::wstring sBefore = State();
    EXPECT_EQ(Man().UndoText(), L"");
    work.second(*this);
    const std::wstring sAfter = State();
    EXPECT_NE(sAfter, sBefore);
    for (int lTimes = 0; lTimes < 2; ++lTimes)
    {
        ASSERT_TRUE(Man().CanUndo());
        EXPECT_FALSE(Man().CanRedo());
        EXPECT_EQ(Man().UndoText(), L"Undo " + sWhat);
        EXPECT_EQ(Man().Undo(), L"Undone: " + sWhat);
        EXPECT_EQ(State(), sBefore);
        EXPECT_FALSE(Man().CanUndo());
        EXPECT_EQ(Man().RedoText(), L"Redo " + sWhat);
        EXPECT_EQ(Man().Redo(), L"Redone: " + sWhat);
        EXPECT_EQ(State(), sAfter);
    }
    Man().Undo();
    cLib.Restart();
    EXPECT_EQ(State(), sBefore);
    EXPECT_EQ(boxes, Boxes());
}

INSTANTIATE_TEST_SUITE_P(UndoTest, UndoWorkTest, testing::Range(std::size_t{0}, UndoWorkTest::All().size()));

} // namespace
} // namespace ravlo::test
