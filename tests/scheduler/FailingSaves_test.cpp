// SPDX-License-Identifier: MIT
#include "support/SyncTest.h"

#include <algorithm>

namespace ravlo::test
{
namespace
{

// A station of which one or both of the files that an operation saves cannot be written.
class Station : public StationTest
{
public:
    Station()
    {
        for (const wchar_t* sKey : {L"r1", L"r2", L"r3"})
            Add(sKey, L"Rock");
        Add(L"r4", L"Rock", 2);
        for (const wchar_t* sKey : {L"p1", L"p2", L"p3"})
            Add(sKey, L"Pop");
        Add(L"p4", L"Pop", 2);
        Start();
    }
    void TestBody() override {}

    void ReadOnly(const std::wstring& sName, bool bReadOnly = true)
    {
        cPorts.cFiles.SetReadOnly(SifPath(sName), bReadOnly);
    }
    Cuts CutsOf(const std::wstring& sName) const
    {
        const std::shared_ptr<CutCollection> colCuts = Level(sName, 1)->SchedCuts();
        return {colCuts->begin(), colCuts->end()};
    }
    std::map<std::wstring, Keys> Tree() const
    {
        std::map<std::wstring, Keys> colOrders;
        for (const std::wstring& sName : cLib.MainCatNames())
            for (const std::shared_ptr<clsCat>& cSubCat : *MainCat(sName)->SubCats())
                colOrders[sName + L" " + cSubCat->CatID()] = Order(sName, cSubCat->CatLevel());
        return colOrders;
    }
};

struct Operation
{
    const char* sName;
    void (*run)(Station&);
    bool bShuffle = false;
};

// Each concerns Rock and Pop.
const Operation operations[] =
    {
        {"cuts_added",
         [](Station& s) {
    s.Added({s.Add(L"a", L"Rock/Pop"), s.Add(L"b", L"Pop/Rock")});
         }},
        {"cuts_modified",
         [](Station& s) {
    Cuts colCuts = s.CutsOf(L"Rock");
    colCuts.push_back(s.CutsOf(L"Pop")[0]);
    for (const std::shared_ptr<Cut>& cCut : colCuts)
        cCut->SetCatLevel(2);
    s.Modified(colCuts);
         }},
                {"cuts_removed",
                 [](Station& s) {
    s.Removed({s.CutsOf(L"Rock")[0], s.CutsOf(L"Pop")[0]});
                 }},
    {"move",
     [](Station& s) {
    bool bCreated = false;
    s.cLib.cSchedMan->DoMassCatChange(eMoveHere, {s.Level(L"Rock", 1)}, s.Level(L"Pop", 2), s.CutsOf(L"Rock"),
                                      bCreated);
     }},
    {"copy",
     [](Station& s) {
    bool bCreated = false;
    for (const auto& [sFrom, sTo] : {std::pair(L"Rock", L"Pop"), std::pair(L"Pop", L"Rock")})
        s.cLib.cSchedMan->DoMassCatChange(eCopyHere, {s.Level(sFrom, 1)}, s.Level(sTo, 1),
                                          {s.CutsOf(sFrom)[0]}, bCreated);
     }},
    {"remove_from_categories",
     [](Station& s) {
    s.cLib.cSchedMan->RemoveCutsFromCategories({{s.CutsOf(L"Rock")[0], s.MainCat(L"Rock"), 0},
                                                {s.CutsOf(L"Pop")[0], nullptr, 0},
                                                {s.CutsOf(L"Rock")[1], nullptr, 0}},
                                               [](std::size_t) {});
     }},
    {"delete_levels",
     [](Station& s) {
    s.cLib.cSchedMan->DeleteCats({s.Level(L"Rock", 1), s.Level(L"Pop", 2)});
     }},
    {"move_in_category",
     [](Station& s) {
    for (const wchar_t* sName : {L"Rock", L"Pop"})
        s.cLib.cSchedMan->MoveCutsInCategory(s.Level(sName, 1), {s.CutsOf(sName).back()}, 1);
     }},
    {"shuffle",
     [](Station& s) {
    for (const wchar_t* sName : {L"Rock", L"Pop"})
        s.Level(sName, 1)->SchedCuts()->MoveToEnd(0); // whatever the chance, the order is a new one
    s.cLib.cSchedMan->ShuffleCategories({s.MainCat(L"Rock"), s.MainCat(L"Pop")});
     },
     true},
    {"create_levels",
     [](Station& s) {
    s.cPorts.cMessages.Typed = {L"7", L"8"};
    EXPECT_TRUE(s.cLib.cSchedMan->CreateCatLevel(s.MainCat(L"Rock")));
    EXPECT_TRUE(s.cLib.cSchedMan->CreateCatLevel(s.MainCat(L"Pop")));
     }},
    {"save_all",
     [](Station& s) {
    for (const wchar_t* sName : {L"Rock", L"Pop"})
        s.Level(sName, 1)->SchedCuts()->MoveToEnd(0);
    s.cLib.cSchedMan->SaveHistoryAndOrdering(nullptr);
     }},
    };

class FailingSavesTest : public testing::TestWithParam<Operation>
{
};

TEST_P(FailingSavesTest, AreShownOncePerCategoryWhileMemoryAndTheOtherFilesAreWhole)
{
    Station cGood;
    GetParam().run(cGood);
    EXPECT_EQ(cGood.boxes, Boxes());
    for (const Lines& colReadOnly : {Lines{L"Rock"}, Lines{L"Pop"}, Lines{L"Rock", L"Pop"}})
    {
        Station s;
        std::map<std::wstring, std::string> before;
        Boxes expected;
        for (const std::wstring& sName : colReadOnly)
        {
            s.ReadOnly(sName);
            before[sName] = s.File(sName);
            expected.push_back(GetParam().bShuffle
                                   ? OkBox(BoxIcon::Exclamation, L"RavloScheduler",
                                           L"Failed to save cat history and ordering for: " + sName)
                                   : CriticalBox(L"Error in SaveHistoryAndOrdering [cSchedMan]",
                                                 L"75 Path/File access error: " + sName));
        }
        GetParam().run(s);
        EXPECT_EQ(s.boxes.size(), expected.size());
        EXPECT_TRUE(std::is_permutation(s.boxes.begin(), s.boxes.end(), expected.begin(), expected.end()));
        EXPECT_EQ(s.Tree(), cGood.Tree()) << "memory is as if nothing had failed";
        for (const std::wstring& sName : Lines{L"Rock", L"Pop"})
        {
            const auto old = before.find(sName);
            EXPECT_EQ(s.File(sName), old == before.end() ? cGood.File(sName) : old->second);
            EXPECT_NE(cGood.File(sName), old == before.end() ? "none" : old->second);
        }
        EXPECT_EQ(s.cPorts.TemporaryFiles(), Lines());
        // When the disk can be written again, the manager's end saves all.
        for (const std::wstring& sName : colReadOnly)
            s.ReadOnly(sName, false);
        s.cLib.End();
        for (const wchar_t* sName : {L"Rock", L"Pop"})
            EXPECT_EQ(s.File(sName), cGood.File(sName));
    }
}

INSTANTIATE_TEST_SUITE_P(Operations, FailingSavesTest, testing::ValuesIn(operations),
                         [](const testing::TestParamInfo<Operation>& operation) {
    return std::string(operation.param.sName);
});

TEST(FailingSaves, FailedSavesOfANewCategoryAreShownAndItStays)
{
    Station s;
    s.cPorts.cFiles.SetReadOnly(L"C:\\Radio\\Scheduler\\History_and_Ordering");
    s.cPorts.cFiles.SetReadOnly(sMainCatsPath);
    std::wstring sName = L"Jazz";
    EXPECT_TRUE(s.cLib.cSchedMan->CreateMainCat(sName));
    EXPECT_EQ(s.boxes, (Boxes{CriticalBox(L"Error in SaveCatNames [cSchedMan]", L"75 Path/File access error"),
                              CriticalBox(L"Error in SaveHistoryAndOrdering [cSchedMan]",
                                          L"75 Path/File access error: Jazz")}));
    EXPECT_TRUE(s.Level(L"Jazz", 1));
    EXPECT_EQ(s.File(L"Jazz"), "none");
}

} // namespace
} // namespace ravlo::test
