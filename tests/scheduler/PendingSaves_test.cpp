// SPDX-License-Identifier: MIT
// Orders that cannot be saved: what is shown, what stays in memory, and when they are saved after all.
#include "support/SyncTest.h"

#include <algorithm>

namespace ravlo::test
{
namespace
{

// A station whose operations concern Rock and Pop.
class StationAtWork : public StationTest
{
public:
    StationAtWork()
    {
        Start(L"Rock 1: r1 r2 r3 | Rock 2: r4 | Pop 1: p1 p2 p3 | Pop 2: p4 | Jazz 1: j1 j2 | Soul 1: s");
        cLib.cSchedMan->SetRotatesAllowed(true);
    }
    void TestBody() override {}

    void AddCuts() { Added({Add(L"a", L"Rock/Pop"), Add(L"b", L"Pop/Rock")}); }
    void ModifyCuts()
    {
        Cuts colCuts = CutsOf(L"Rock");
        colCuts.push_back(CutsOf(L"Pop")[0]);
        for (const std::shared_ptr<Cut>& cCut : colCuts)
            cCut->SetCatLevel(2);
        Modified(colCuts);
    }
    void RemoveCuts() { Removed({CutsOf(L"Rock")[0], CutsOf(L"Pop")[0]}); }
    void Move() { cLib.Change(eMoveHere, Level(L"Rock", 1), Level(L"Pop", 2), CutsOf(L"Rock")); }
    void Copy()
    {
        cLib.Change(eCopyHere, Level(L"Rock", 1), Level(L"Pop", 1), {CutsOf(L"Rock")[0]});
        cLib.Change(eCopyHere, Level(L"Pop", 1), Level(L"Rock", 1), {CutsOf(L"Pop")[0]});
    }
    void RemoveFromCategories()
    {
        cLib.cSchedMan->RemoveCutsFromCategories({{CutsOf(L"Rock")[0], MainCat(L"Rock"), 0},
                                                  {CutsOf(L"Pop")[0], nullptr, 0},
                                                  {CutsOf(L"Rock")[1], nullptr, 0}},
                                                 [](std::size_t) {});
    }
    void DeleteLevels() { cLib.cSchedMan->DeleteCats({Level(L"Rock", 1), Level(L"Pop", 2)}); }
    void MoveInCategory()
    {
        for (const wchar_t* sName : {L"Rock", L"Pop"})
            cLib.cSchedMan->MoveCutsInCategory(Level(sName, 1), {CutsOf(sName).back()}, 1);
    }
    void Rotate()
    {
        for (const wchar_t* sName : {L"Rock", L"Pop"})
            Level(sName, 1)->SchedCuts()->MoveToEnd(0);
    }
    void Shuffle()
    {
        Rotate(); // so that the order is a new one in any case
        cLib.cSchedMan->ShuffleCategories({MainCat(L"Rock"), MainCat(L"Pop")});
    }
    void CreateLevels()
    {
        cPorts.cMessages.Typed = {L"7", L"8"};
        EXPECT_TRUE(cLib.cSchedMan->CreateCatLevel(MainCat(L"Rock")));
        EXPECT_TRUE(cLib.cSchedMan->CreateCatLevel(MainCat(L"Pop")));
    }
    void Save()
    {
        Rotate();
        for (const wchar_t* sName : {L"Rock", L"Pop"})
            cLib.Save(sName);
    }
    void Pick() { cLib.Pick(L"Pop\t1"); }
    void CreateCategory() { EXPECT_TRUE(cLib.CreateMainCat(L"Blues")); }
    void DeleteCategory() { EXPECT_TRUE(cLib.cSchedMan->DeleteCats({MainCat(L"Pop")})); }
};

struct Operation
{
    const char* sName;
    void (StationAtWork::*run)();
};

const Operation operations[] = {
    {"cuts_added", &StationAtWork::AddCuts},
    {"cuts_modified", &StationAtWork::ModifyCuts},
    {"cuts_removed", &StationAtWork::RemoveCuts},
    {"move", &StationAtWork::Move},
    {"copy", &StationAtWork::Copy},
    {"remove_from_categories", &StationAtWork::RemoveFromCategories},
    {"delete_levels", &StationAtWork::DeleteLevels},
    {"move_in_category", &StationAtWork::MoveInCategory},
    {"shuffle", &StationAtWork::Shuffle},
    {"create_levels", &StationAtWork::CreateLevels},
    {"save", &StationAtWork::Save},
};
// Those that do not save both Rock and Pop with boxes.
const Operation others[] = {
    {"pick", &StationAtWork::Pick},
    {"create_category", &StationAtWork::CreateCategory},
    {"delete_category", &StationAtWork::DeleteCategory},
};
std::string NameOf(const testing::TestParamInfo<Operation>& operation) { return operation.param.sName; }

// ---- an operation whose own saves fail

class FailingSavesTest : public testing::TestWithParam<Operation>
{
};
INSTANTIATE_TEST_SUITE_P(Operations, FailingSavesTest, testing::ValuesIn(operations), NameOf);

TEST_P(FailingSavesTest, AreShownOncePerCategoryAndLeaveTheRestWhole)
{
    const auto run = GetParam().run;
    StationAtWork cGood;
    (cGood.*run)();
    EXPECT_EQ(cGood.boxes, Boxes());
    for (const Lines& colReadOnly : {Lines{L"Rock"}, Lines{L"Pop"}, Lines{L"Rock", L"Pop"}})
    {
        StationAtWork s;
        std::map<std::wstring, std::string> before;
        Boxes expected;
        for (const std::wstring& sName : colReadOnly)
        {
            s.SetReadOnly(sName);
            before[sName] = s.File(sName);
            expected.push_back(run == &StationAtWork::Shuffle
                                   ? OkBox(BoxIcon::Exclamation, L"RavloScheduler",
                                           L"Failed to save cat history and ordering for: " + sName)
                                   : CriticalBox(L"Error in SaveHistoryAndOrdering [cSchedMan]",
                                                 L"75 Path/File access error: " + sName));
        }
        (s.*run)();
        EXPECT_EQ(s.boxes.size(), expected.size());
        EXPECT_TRUE(std::is_permutation(s.boxes.begin(), s.boxes.end(), expected.begin(), expected.end()));
        EXPECT_EQ(s.Tree(), cGood.Tree()) << "memory is as if nothing had failed";
        for (const wchar_t* sName : {L"Rock", L"Pop"})
        {
            const auto old = before.find(sName);
            EXPECT_EQ(s.File(sName), old == before.end() ? cGood.File(sName) : old->second);
            EXPECT_NE(cGood.File(sName), old == before.end() ? "none" : old->second);
        }
        EXPECT_EQ(s.cPorts.TemporaryFiles(), Lines());
        for (const std::wstring& sName : colReadOnly)
            s.SetReadOnly(sName, false);
        s.cLib.End();
        for (const wchar_t* sName : {L"Rock", L"Pop"})
            EXPECT_EQ(s.File(sName), cGood.File(sName)) << "the end saves what is pending";
    }
}

TEST(FailingSaves, OfANewCategoryAreShownAndItStays)
{
    StationAtWork s;
    s.cPorts.cFiles.SetReadOnly(L"C:\\Radio\\Scheduler\\History_and_Ordering");
    s.cPorts.cFiles.SetReadOnly(sMainCatsPath);
    EXPECT_TRUE(s.cLib.CreateMainCat(L"Blues"));
    EXPECT_EQ(s.boxes, (Boxes{CriticalBox(L"Error in SaveCatNames [cSchedMan]", L"75 Path/File access error"),
                              CriticalBox(L"Error in SaveHistoryAndOrdering [cSchedMan]",
                                          L"75 Path/File access error: Blues")}));
    EXPECT_TRUE(s.Level(L"Blues", 1));
    EXPECT_EQ(s.File(L"Blues"), "none");
}

// ---- an operation while the order of another category is pending

class PendingSavesTest : public testing::TestWithParam<Operation>
{
protected:
    PendingSavesTest()
    {
        s.SetReadOnly(L"Jazz");
        s.cLib.Pick(L"Jazz\t1");
        EXPECT_EQ(s.File(L"Jazz"), before);
        s.WaitForRetry();
        s.Forget();
    }
    void Run() { (s.*GetParam().run)(); }

    StationAtWork s;
    const std::string before = SifCuts("j1 j2");
    const std::string after = SifCuts("j2 j1");
};
INSTANTIATE_TEST_SUITE_P(Operations, PendingSavesTest, testing::ValuesIn(operations), NameOf);
INSTANTIATE_TEST_SUITE_P(Others, PendingSavesTest, testing::ValuesIn(others), NameOf);

TEST_P(PendingSavesTest, AreRetriedSilentlyByTheNextOperationThatSaves)
{
    s.SetReadOnly(L"Jazz", false);
    Run();
    EXPECT_EQ(s.File(L"Jazz"), after);
    const Lines colWritten = s.Written();
    EXPECT_EQ(std::count(colWritten.begin(), colWritten.end(), L"Jazz"), 1);
    for (const std::wstring& sLine : s.said)
        EXPECT_EQ(sLine.find(L"Jazz"), std::wstring::npos);
    EXPECT_EQ(s.boxes, Boxes());
}

TEST_P(PendingSavesTest, AreRetriedUntilOneSucceedsAndThenNoMore)
{
    Run();
    EXPECT_EQ(s.File(L"Jazz"), before);
    EXPECT_EQ(s.boxes, Boxes()) << "a failing retry is logged only";
    s.SetReadOnly(L"Jazz", false);
    s.cLib.Save(L"Soul");
    EXPECT_EQ(s.File(L"Jazz"), before) << "not again within a second";
    s.WaitForRetry();
    s.cLib.Save(L"Soul");
    EXPECT_EQ(s.File(L"Jazz"), after);
    s.Forget();
    s.cLib.Save(L"Soul");
    EXPECT_EQ(s.Written(), Lines{L"Soul"});
}

TEST(PendingSave, OfAPickInsideASaveIsNotSettledByThatSavesOlderOrder)
{
    StationAtWork s;
    s.cLib.cHost.OnEvent = [&](const std::wstring& sLine) {
        if (sLine != L"Start 2: Saving Ordering and hist for: Jazz")
            return;
        s.SetReadOnly(L"Jazz");
        s.cLib.Pick(L"Jazz\t1");
        s.SetReadOnly(L"Jazz", false);
    };
    EXPECT_TRUE(s.cLib.Save(L"Jazz"));
    EXPECT_EQ(s.Order(L"Jazz", 1), (Keys{L"j2", L"j1"}));
    s.WaitForRetry();
    s.cLib.Save(L"Soul");
    EXPECT_EQ(s.File(L"Jazz"), SifCuts("j2 j1"));
}

} // namespace
} // namespace ravlo::test
