// SPDX-License-Identifier: MIT
#include "scheduler/HistoryFiles.h"
#include "support/SyncTest.h"

#include <algorithm>

namespace ravlo::test
{
namespace
{

// A station with Rock, Pop and Jazz, in which a pick from Rock could not save the new order.
class OwedSaves : public StationTest
{
public:
    OwedSaves()
    {
        for (const wchar_t* sKey : {L"r1", L"r2"})
            Add(sKey, L"Rock");
        for (const wchar_t* sKey : {L"p1", L"p2"})
            Add(sKey, L"Pop");
        Add(L"j", L"Jazz");
        Start();
        cLib.cSchedMan->SetRotatesAllowed(true);
        cPorts.cFiles.SetReadOnly(SifPath(L"Rock"));
        Pick(L"Rock\t1");
        cPorts.cFiles.SetReadOnly(SifPath(L"Rock"), false);
        EXPECT_EQ(File(L"Rock"), SifCut("r1", 1) + SifCut("r2", 1)) << "owed";
        cPorts.cClock.Advance(UnsavedOrders::lRetryMs); // a pick tries again what has waited so long
        Forget();
    }
    void TestBody() override {}

    void Pick(const std::wstring& sKey) { cLib.Pick(sKey); }
    Cuts CutsOfPop() const
    {
        return {Level(L"Pop", 1)->SchedCuts()->begin(), Level(L"Pop", 1)->SchedCuts()->end()};
    }
};

struct Operation
{
    const char* sName;
    void (*run)(OwedSaves&);
};

// Each saves another category than the one that is owed, or none.
const Operation operations[] =
    {
        {"explicit_save",
         [](OwedSaves& s) {
    s.cLib.cSchedMan->SaveHistoryAndOrdering(s.MainCat(L"Pop"));
         }},
        {"pick", [](OwedSaves& s) { s.Pick(L"Pop\t1"); }},
        {"create_category",
         [](OwedSaves& s) {
    std::wstring sName = L"Soul";
    EXPECT_TRUE(s.cLib.cSchedMan->CreateMainCat(sName));
         }},
                {"create_level",
                 [](OwedSaves& s) {
    s.cPorts.cMessages.Typed = {L"7"};
    EXPECT_TRUE(s.cLib.cSchedMan->CreateCatLevel(s.MainCat(L"Pop")));
                 }},
    {"shuffle", [](OwedSaves& s) { s.cLib.cSchedMan->ShuffleCategories({s.MainCat(L"Pop")}); }},
    {"delete_level", [](OwedSaves& s) { EXPECT_TRUE(s.cLib.cSchedMan->DeleteCats({s.Level(L"Pop", 1)})); }},
    {"delete_category", [](OwedSaves& s) { EXPECT_TRUE(s.cLib.cSchedMan->DeleteCats({s.MainCat(L"Pop")})); }},
    {"move_in_category",
     [](OwedSaves& s) {
    s.cLib.cSchedMan->MoveCutsInCategory(s.Level(L"Pop", 1), {s.CutsOfPop().back()}, 1);
     }},
    {"mass_change",
     [](OwedSaves& s) {
    bool bCreated = false;
    s.cLib.cSchedMan->DoMassCatChange(eMoveHere, {s.Level(L"Pop", 1)}, s.Level(L"Jazz", 1), s.CutsOfPop(),
                                      bCreated);
     }},
    {"remove_from_categories",
     [](OwedSaves& s) {
    s.cLib.cSchedMan->RemoveCutsFromCategories({{s.CutsOfPop()[0], s.MainCat(L"Pop"), 0}},
                                               [](std::size_t) {});
     }},
    {"cuts_added", [](OwedSaves& s) { s.Added({s.Add(L"p3", L"Pop")}); }},
    {"cuts_modified",
     [](OwedSaves& s) {
    const Cuts colCuts = s.CutsOfPop();
    colCuts[0]->SetCatLevel(2);
    s.Modified({colCuts[0]});
     }},
    {"cuts_removed", [](OwedSaves& s) { s.Removed({s.CutsOfPop()[0]}); }},
    };

class OwedSavesTest : public testing::TestWithParam<Operation>
{
};

TEST_P(OwedSavesTest, AreRetriedSilentlyByTheNextOperationThatSaves)
{
    OwedSaves s;
    GetParam().run(s);
    EXPECT_EQ(s.File(L"Rock"), SifCut("r2", 1) + SifCut("r1", 1));
    const Lines colWritten = s.Written();
    EXPECT_EQ(std::count(colWritten.begin(), colWritten.end(), L"Rock"), 1);
    for (const std::wstring& sLine : s.said)
        EXPECT_EQ(sLine.find(L"Rock"), std::wstring::npos);
    EXPECT_EQ(s.boxes, Boxes());
}

TEST_P(OwedSavesTest, AreOwedUntilOneSucceedsAndThenNoMore)
{
    OwedSaves s;
    s.cPorts.cFiles.SetReadOnly(SifPath(L"Rock"));
    GetParam().run(s);
    EXPECT_EQ(s.File(L"Rock"), SifCut("r1", 1) + SifCut("r2", 1));
    EXPECT_EQ(s.boxes, Boxes()) << "a failing retry is logged only";
    s.cPorts.cFiles.SetReadOnly(SifPath(L"Rock"), false);
    s.cLib.cSchedMan->SaveHistoryAndOrdering(s.MainCat(L"Jazz"));
    EXPECT_EQ(s.File(L"Rock"), SifCut("r1", 1) + SifCut("r2", 1)) << "not again within a second";
    s.cPorts.cClock.Advance(UnsavedOrders::lRetryMs);
    s.cLib.cSchedMan->SaveHistoryAndOrdering(s.MainCat(L"Jazz"));
    EXPECT_EQ(s.File(L"Rock"), SifCut("r2", 1) + SifCut("r1", 1));
    s.cPorts.cFiles.ClearOperations();
    s.cLib.cSchedMan->SaveHistoryAndOrdering(s.MainCat(L"Jazz"));
    EXPECT_EQ(s.Written(), (Lines{L"Jazz"}));
}

TEST(OwedSave, PickInsideASaveIsNotSettledByThatSavesOlderOrder)
{
    OwedSaves s;
    s.Pick(L"Rock\t1"); // r1 first again, and saved
    ASSERT_EQ(s.File(L"Rock"), SifCut("r1", 1) + SifCut("r2", 1));
    s.cLib.cHost.OnEvent = [&](const std::wstring& sLine) {
        if (sLine != L"Start 2: Saving Ordering and hist for: Rock")
            return;
        s.cPorts.cFiles.SetReadOnly(SifPath(L"Rock"));
        s.Pick(L"Rock\t1");
        s.cPorts.cFiles.SetReadOnly(SifPath(L"Rock"), false);
    };
    EXPECT_TRUE(s.cLib.cSchedMan->SaveHistoryAndOrdering(s.MainCat(L"Rock")));
    EXPECT_EQ(s.Order(L"Rock", 1), (Keys{L"r2", L"r1"}));
    s.cPorts.cClock.Advance(UnsavedOrders::lRetryMs);
    s.cLib.cSchedMan->SaveHistoryAndOrdering(s.MainCat(L"Jazz"));
    EXPECT_EQ(s.File(L"Rock"), SifCut("r2", 1) + SifCut("r1", 1));
}

INSTANTIATE_TEST_SUITE_P(Operations, OwedSavesTest, testing::ValuesIn(operations),
                         [](const testing::TestParamInfo<Operation>& operation) {
    return std::string(operation.param.sName);
});

} // namespace
} // namespace ravlo::test
