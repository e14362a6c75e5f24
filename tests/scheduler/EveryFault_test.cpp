// SPDX-License-Identifier: MIT
// Whatever a host asks for, and whichever of its file operations fails: the tree stays true to the database,
// nothing on the disk is lost, and the next start on a healthy disk reads everything.
#include "platform/memory/FailingFiles.h"
#include "support/SchedulerTest.h"

#include <algorithm>
#include <limits>
#include <map>
#include <ostream>
#include <set>

namespace ravlo::test
{

namespace
{

using Disk = std::map<std::wstring, std::string>; // path -> bytes
using Orders = std::map<std::wstring, Keys>;      // name TAB level -> keys in rotation order

constexpr int lNever = std::numeric_limits<int>::max();

// Everything on the disk but the debug log, which loses the lines that could not be written.
Disk DiskOf(const MemoryFiles& cFiles)
{
    Disk disk;
    for (const std::wstring& sPath : cFiles.Paths())
        if (!sPath.ends_with(L".deb"))
            disk[sPath] = cFiles.Get(sPath);
    return disk;
}

// A host's program over a station, on a disk that can be told to fail.
struct Program
{
    Program(const Disk& disk, std::shared_ptr<FakeDataBase> cDataBase) : cLib(cPorts, cFiles)
    {
        for (const auto& [sPath, bytes] : disk)
            cPorts.cFiles.Put(sPath, bytes);
        cLib.cDataBase = std::move(cDataBase);
    }

    Cuts CutsOf(const std::wstring& sName, std::int32_t lLevel) const
    {
        const std::shared_ptr<CutCollection> colCuts = cLib.Level(sName, lLevel)->SchedCuts();
        return {colCuts->begin(), colCuts->end()};
    }
    std::shared_ptr<clsCatRules> RulesOf(const std::wstring& sName, std::int32_t lLevel) const
    {
        return cLib.Level(sName, lLevel)->Rules();
    }
    void Pick(const std::wstring& sKey, bool bSave)
    {
        std::shared_ptr<clsCat> cMainCat;
        std::shared_ptr<clsCat> cSubCat;
        std::wstring sMainKey;
        EXPECT_TRUE(cLib.cSchedMan->NextCutFromRotation(sKey, false, nullptr, cMainCat, cSubCat, sMainKey,
                                                        true, bSave));
    }
    void Mass(eCatDragOptions eOption, const std::shared_ptr<clsCat>& cFrom,
              const std::shared_ptr<clsCat>& cTo, const Cuts& colCuts)
    {
        bool bCreated = false;
        cLib.cSchedMan->DoMassCatChange(eOption, {cFrom}, cTo, colCuts, bCreated);
    }
    void Announce(void (DataBaseEvents::*pEvent)(const Cuts&), const Cuts& colCuts)
    {
        cLib.cDataBase->Announce(pEvent, colCuts);
    }
    void End()
    {
        if (cLib.cSchedMan)
            cLib.cSchedMan->SetEvents(nullptr);
        cLib.cSchedMan.reset();
    }

    Orders AllOrders() const
    {
        Orders orders;
        for (const std::wstring& sName : cLib.MainCatNames())
            for (const std::shared_ptr<clsCat>& cSubCat : *cLib.MainCat(sName)->SubCats())
                orders[CategoryKey(sName, cSubCat->CatLevel())] = cLib.Order(sName, cSubCat->CatLevel());
        return orders;
    }

    RadioPorts cPorts;
    FailingFiles cFiles{cPorts.cFiles, lNever};
    Library cLib;
};

std::shared_ptr<FakeDataBase> NewDataBase()
{
    auto cDataBase = std::make_shared<FakeDataBase>();
    for (const wchar_t* sKey : {L"r1", L"r2", L"r3"})
        cDataBase->Add(sKey, L"Rock", 1);
    for (const wchar_t* sKey : {L"r4", L"r5"})
        cDataBase->Add(sKey, L"Rock", 2);
    for (const wchar_t* sKey : {L"p1", L"p2", L"p3"})
        cDataBase->Add(sKey, L"Pop", 1);
    cDataBase->Add(L"p4", L"Pop", 2);
    cDataBase->Add(L"both", L"Rock/Pop", 1);
    cDataBase->Add(L"nowhere", L"", 1);
    return cDataBase;
}

// The disk of a station that was on air for a while: every kind of file, and no order is the database's.
const Disk& StationDisk()
{
    static const Disk disk = [] {
        Program cProgram({}, NewDataBase());
        cProgram.cLib.Populate();
        clsSchedMan& cSchedMan = *cProgram.cLib.cSchedMan;
        std::wstring sName = L"Jazz";
        EXPECT_TRUE(cSchedMan.CreateMainCat(sName));
        for (const auto& [sCat, lLevel] : {std::pair(L"Rock", 1), {L"Rock", 2}, {L"Pop", 1}})
        {
            cProgram.cLib.Level(sCat, lLevel)->SchedCuts()->MoveToEnd(0);
            cProgram.RulesOf(sCat, lLevel)->SetArtistSepMins(lLevel);
        }
        EXPECT_TRUE(cSchedMan.SaveHistoryAndOrdering(nullptr));
        cProgram.cLib.cMod.SetGlobalArtistSepMins(15);
        cProgram.cLib.cMod.SetGlobalTitleSepMins(25);
        cProgram.cLib.cMod.SetGlobalAlbumSepMins(35);
        cProgram.End();
        return DiskOf(cProgram.cPorts.cFiles);
    }();
    return disk;
}

struct Operation
{
    const char* sName;
    void (*run)(Program&);
    // The program's start is part of the operation, so a file may be one that was never read.
    bool bFromStart = false;
    // A level loses all its cuts: when its order cannot be saved either, the next start misses the level.
    bool bEmptiesLevel = false;
    // Files are read, if not for the first time.
    bool bPopulates = bFromStart;
};

void PopulateIt(Program& p) { p.cLib.Populate(); }

const Operation operations[] =
    {
        {"populate", PopulateIt, true},
        {"populate_and_end", [](Program& p) { PopulateIt(p), p.End(); }, true},
        {"populate_and_pick",
         [](Program& p) {
    PopulateIt(p);
    p.Pick(L"Rock\t1", true);
    p.Pick(L"Pop\t1", true);
    p.End();
         },
         true},
        {"populate_and_save_all",
         [](Program& p) {
    PopulateIt(p);
    p.cLib.cSchedMan->SaveHistoryAndOrdering(nullptr);
    p.cLib.cSchedMan->SaveCatNames();
    p.cLib.cMod.SaveSettings();
    p.End();
         },
         true},
                {"populate_and_change_rules",
                 [](Program& p) {
    PopulateIt(p);
    p.RulesOf(L"Rock", 1)->SetTitleSepMins(99);
    p.End();
                 },
                 true},
    {"populate_and_change_settings",
     [](Program& p) {
    PopulateIt(p);
    p.cLib.cMod.SetGlobalTitleSepMins(99);
    p.End();
     },
     true},
    {"populate_again", PopulateIt, false, false, true},
    {"populate_again_after_picks",
     [](Program& p) {
    p.Pick(L"Rock\t1", false);
    p.Pick(L"Pop\t1", true);
    PopulateIt(p);
    p.End();
     }},
    {"pick", [](Program& p) { p.Pick(L"Rock\t1", false); }},
    {"pick_and_save", [](Program& p) { p.Pick(L"Rock\t1", true); }},
    {"picks_and_end",
     [](Program& p) {
    for (const wchar_t* sKey : {L"Rock\t1", L"Pop\t1", L"Jazz\t1", L"Gone\t1"})
        p.Pick(sKey, true);
    p.End();
     }},
    {"play", [](Program& p) { p.cLib.cSchedMan->UpdateArtistTitleHistory(p.CutsOf(L"Rock", 1)[0]); }},
    {"save_list", [](Program& p) { p.cLib.cSchedMan->SaveCatNames(); }},
    {"saved_list", [](Program& p) { p.cLib.cSchedMan->colSavedCatNames(); }},
    {"save_order",
     [](Program& p) {
    p.cLib.Level(L"Rock", 1)->SchedCuts()->MoveToEnd(0);
    p.cLib.cSchedMan->SaveHistoryAndOrdering(p.cLib.MainCat(L"Rock"));
     }},
    {"save_all_orders",
     [](Program& p) {
    for (const wchar_t* sName : {L"Rock", L"Pop"})
        p.cLib.Level(sName, 1)->SchedCuts()->MoveToEnd(0);
    p.cLib.cSchedMan->SaveHistoryAndOrdering(nullptr);
     }},
    {"create_category",
     [](Program& p) {
    std::wstring sName = L"Soul";
    p.cLib.cSchedMan->CreateMainCat(sName);
     }},
    {"create_level",
     [](Program& p) {
    p.cPorts.cMessages.Typed = {L"7"};
    p.cLib.cSchedMan->CreateCatLevel(p.cLib.MainCat(L"Rock"));
     }},
    {"shuffle_level", [](Program& p) { p.cLib.cSchedMan->ShuffleCategories({p.cLib.Level(L"Rock", 1)}); }},
    {"shuffle_categories",
     [](Program& p) {
    p.cLib.cSchedMan->ShuffleCategories({p.cLib.MainCat(L"Rock"), p.cLib.MainCat(L"Pop")});
     }},
    {"delete_level", [](Program& p) { p.cLib.cSchedMan->DeleteCats({p.cLib.Level(L"Rock", 1)}); }, false,
     true},
    {"delete_category", [](Program& p) { p.cLib.cSchedMan->DeleteCats({p.cLib.MainCat(L"Pop")}); }, false,
     true},
    {"delete_empty_category", [](Program& p) { p.cLib.cSchedMan->DeleteCats({p.cLib.MainCat(L"Jazz")}); }},
    {"move_in_category",
     [](Program& p) {
    p.cLib.cSchedMan->MoveCutsInCategory(p.cLib.Level(L"Rock", 1), {p.CutsOf(L"Rock", 1).back()}, 1);
     }},
    {"copy",
     [](Program& p) {
    p.Mass(eCopyHere, p.cLib.Level(L"Rock", 1), p.cLib.Level(L"Pop", 1), p.CutsOf(L"Rock", 1));
     }},
    {"move_one",
     [](Program& p) {
    p.Mass(eMoveHere, p.cLib.Level(L"Rock", 1), p.cLib.Level(L"Pop", 2), {p.CutsOf(L"Rock", 1)[0]});
     }},
    {"move_a_level",
     [](Program& p) {
    p.Mass(eMoveHere, p.cLib.Level(L"Rock", 1), p.cLib.Level(L"Pop", 2), p.CutsOf(L"Rock", 1));
     },
     false, true},
    {"move_exclusive",
     [](Program& p) {
    p.Mass(eMoveExclusiveHere, p.cLib.Level(L"Rock", 1), p.cLib.Level(L"Jazz", 1),
           {p.CutsOf(L"Rock", 1)[0], p.CutsOf(L"Pop", 1)[0]});
     }},
    {"move_to_category",
     [](Program& p) {
    p.Mass(eMoveHere, p.cLib.MainCat(L"Pop"), p.cLib.MainCat(L"Jazz"), p.CutsOf(L"Pop", 2));
     },
     false, true},
    {"remove_and_save",
     [](Program& p) {
    p.cLib.cSchedMan->RemoveCutsFromCategories(
        {{p.CutsOf(L"Rock", 1)[0], p.cLib.MainCat(L"Rock"), 0}, {p.CutsOf(L"Pop", 1)[0], nullptr, 0}},
        [](std::size_t) {});
     }},
    {"remove_from_category",
     [](Program& p) {
    CatCollection colTouched;
    p.cLib.cSchedMan->RemoveCutFromCategory(p.cLib.MainCat(L"Rock"), p.CutsOf(L"Rock", 1)[0], colTouched);
    for (const std::shared_ptr<clsCat>& cMainCat : colTouched)
        p.cLib.cSchedMan->SaveHistoryAndOrdering(cMainCat);
     }},
    {"cuts_added",
     [](Program& p) {
    p.Announce(&DataBaseEvents::CutsAdded,
               {p.cLib.cDataBase->Add(L"a", L"Rock/Soul", 1), p.cLib.cDataBase->Add(L"b", L"Pop", 9)});
     }},
    {"cuts_modified",
     [](Program& p) {
    const Cuts colCuts = {p.CutsOf(L"Rock", 1)[0], p.CutsOf(L"Pop", 1)[0]};
    colCuts[0]->SetCategoryText(L"Pop");
    colCuts[1]->SetCatLevel(2);
    p.Announce(&DataBaseEvents::CutsModified, colCuts);
     }},
    {"cuts_removed",
     [](Program& p) {
    const Cuts colCuts = {p.CutsOf(L"Rock", 1)[0], p.CutsOf(L"Pop", 1)[0]};
    for (const std::shared_ptr<Cut>& cCut : colCuts)
        p.cLib.cDataBase->Remove(*cCut);
    p.Announce(&DataBaseEvents::CutsRemoved, colCuts);
     }},
    {"rules",
     [](Program& p) {
    const std::shared_ptr<clsCatRules> cRules = p.RulesOf(L"Rock", 1);
    cRules->SetArtistSepMins(41);
    cRules->SetTitleSepMins(42);
    cRules->SetAlbumSepMins(43);
    cRules->SetIgnoreRules(true);
    cRules->SaveRules();
     }},
    {"rules_in_one_go",
     [](Program& p) {
    p.RulesOf(L"Pop", 2)->Apply({.lArtist = 1, .lTitle = 2, .lAlbum = 3, .bIgnore = true});
     }},
    {"settings",
     [](Program& p) {
    p.cLib.cMod.SetGlobalArtistSepMins(1);
    p.cLib.cMod.SetGlobalTitleSepMins(2);
    p.cLib.cMod.SetGlobalAlbumSepMins(3);
     }},
    {"end", [](Program& p) { p.End(); }},
    };

// ---- what holds after any fault

// Every cut stands in exactly those levels that the database says, once.
void ExpectTreeIsTrue(const Program& p)
{
    std::set<std::pair<std::wstring, std::wstring>> expected;
    for (const std::shared_ptr<Cut>& cCut : p.cLib.cDataBase->colCuts)
        for (const std::wstring& sName : cCut->CategoryNames())
            expected.emplace(CategoryKey(sName, cCut->CatLevel()), cCut->Key().Text());
    std::set<std::pair<std::wstring, std::wstring>> present;
    for (const auto& [sKey, colKeys] : p.AllOrders())
        for (const std::wstring& sCut : colKeys)
            EXPECT_TRUE(present.emplace(sKey, sCut).second);
    EXPECT_EQ(present, expected);
}

bool IsKeptAside(const Disk& disk, const std::wstring& sPath, const std::string& bytes)
{
    return std::any_of(disk.begin(), disk.end(), [&](const auto& file) {
        return file.first.starts_with(sPath + L".bak") && file.second == bytes;
    });
}

// What the operation makes of the disk when nothing fails.
struct Healthy
{
    Disk disk;
    Orders orders;

    explicit Healthy(const Operation& operation)
    {
        Program p(StationDisk(), NewDataBase());
        if (!operation.bFromStart)
            p.cLib.Populate();
        operation.run(p);
        p.End();
        disk = DiskOf(p.cPorts.cFiles);
        Program next(disk, p.cLib.cDataBase);
        next.cLib.Populate();
        EXPECT_EQ(next.cPorts.cMessages.Boxes, Boxes());
        ExpectTreeIsTrue(next);
        orders = next.AllOrders();
    }
};

Orders OrdersOfStation()
{
    Program p(StationDisk(), NewDataBase());
    p.cLib.Populate();
    return p.AllOrders();
}

// Each file holds its old bytes (with markers in front of its levels when a change was under way), those of a
// run without fault, those of the tree in memory, or its old bytes
// are kept aside.
void ExpectNothingLost(const Operation& operation, const Disk& now, const Disk& healthy, const Disk& ofTree)
{
    for (const auto& file : StationDisk())
    {
        const auto& sPath = file.first;
        const auto& bytes = file.second;
        const auto present = now.find(sPath);
        const auto isIn = [&](const Disk& disk) {
            const auto found = disk.find(sPath);
            return present == now.end() ? found == disk.end()
                                        : found != disk.end() && found->second == present->second;
        };
        const bool bAhead = sPath.ends_with(L".sif") && present != now.end() &&
                            present->second.size() > bytes.size() &&
                            SifWithoutGuards(present->second) == bytes;
        const bool bKnown =
            bAhead || isIn(StationDisk()) || isIn(healthy) || (!operation.bFromStart && isIn(ofTree));
        EXPECT_TRUE(bKnown || IsKeptAside(now, sPath, bytes)) << testing::PrintToString(sPath);
    }
}

// The order of the cuts that were in the level before, among each other, is the one before or the one after.
void ExpectOldOrNew(const Orders& now, const Orders& before, const Orders& after)
{
    for (const auto& level : now)
    {
        const auto& sKey = level.first;
        const auto& colKeys = level.second;
        const auto asIn = [&](const Orders& orders) {
            const auto found = orders.find(sKey);
            if (found == orders.end())
                return true;
            Keys colThose = found->second;
            std::erase_if(colThose, [&](const std::wstring& sCut) {
                return std::find(colKeys.begin(), colKeys.end(), sCut) == colKeys.end();
            });
            Keys colThese = colKeys;
            std::erase_if(colThese, [&](const std::wstring& sCut) {
                return std::find(colThose.begin(), colThose.end(), sCut) == colThose.end();
            });
            return colThese == colThose;
        };
        EXPECT_TRUE(asIn(before) || asIn(after)) << testing::PrintToString(colKeys);
    }
}

void PrintTo(const Operation& operation, std::ostream* pStream) { *pStream << operation.sName; }

struct Mode
{
    const char* sName;
    bool bReads;       // reading, listing and looking are steps too
    bool bStaysBroken; // and so does everything after the fault
};
const Mode modes[] = {
    {"one_step", true, false},
    {"every_write_from_then_on", false, true},
    {"every_step_from_then_on", true, true},
};

void PrintTo(const Mode& mode, std::ostream* pStream) { *pStream << mode.sName; }

using Case = std::tuple<Operation, Mode>;

class EveryFaultTest : public testing::TestWithParam<Case>
{
protected:
    const Operation& Op() const { return std::get<0>(GetParam()); }
    const Mode& How() const { return std::get<1>(GetParam()); }

    // False when the operation has fewer steps than that.
    bool Fail(int lGoodSteps);

private:
    void ExpectReadable(const Disk& disk, const std::shared_ptr<FakeDataBase>& cDataBase);

    const Healthy m_cHealthy{Op()};
    const Orders m_before = OrdersOfStation();
};

// A start on a healthy disk finds every cut, in an order of before or after; what was kept aside was not
// read.
void EveryFaultTest::ExpectReadable(const Disk& disk, const std::shared_ptr<FakeDataBase>& cDataBase)
{
    Program next(disk, cDataBase);
    next.cLib.Populate();
    EXPECT_TRUE(next.cPorts.cMessages.Boxes.empty() || Op().bEmptiesLevel)
        << testing::PrintToString(next.cPorts.cMessages.Boxes);
    ExpectTreeIsTrue(next);
    Orders now = next.AllOrders();
    if (Op().bEmptiesLevel && !next.cPorts.cMessages.Boxes.empty())
        return;
    std::erase_if(now, [&](const auto& order) {
        const std::wstring sName = order.first.substr(0, order.first.find(L'\t'));
        return disk.count(SifPath(sName) + L".bak") != 0;
    });
    ExpectOldOrNew(now, m_before, m_cHealthy.orders);
}

bool EveryFaultTest::Fail(int lGoodSteps)
{
    Program p(StationDisk(), NewDataBase());
    if (!Op().bFromStart)
        p.cLib.Populate();
    p.cFiles.bCountReads = p.cFiles.bCountLooks = How().bReads;
    p.cFiles.bStaysBroken = How().bStaysBroken;
    p.cFiles.Arm(lGoodSteps);
    Op().run(p);
    const bool bFailed = p.cFiles.bFailed;
    p.cFiles.Arm(lNever);

    const Disk disk = DiskOf(p.cPorts.cFiles);
    EXPECT_TRUE(p.cPorts.TemporaryFiles().empty() || How().bStaysBroken);
    Disk ofTree;
    if (p.cLib.cSchedMan)
    {
        ExpectTreeIsTrue(p);
        // One save on a disk that works again brings all there.
        const bool bSaved = p.cLib.cSchedMan->SaveHistoryAndOrdering(nullptr);
        EXPECT_TRUE(bSaved || Op().bPopulates);
        ofTree = DiskOf(p.cPorts.cFiles);
        const Orders orders = p.AllOrders();
        p.End();
        Program next(DiskOf(p.cPorts.cFiles), p.cLib.cDataBase);
        next.cLib.Populate();
        EXPECT_EQ(next.cPorts.cMessages.Boxes, Boxes());
        Orders now = next.AllOrders();
        // A category without cuts whose file could not be read has no level to save: its file stays.
        if (Op().bPopulates)
            std::erase_if(now, [&](const auto& order) {
                return order.second.empty() && orders.count(order.first) == 0;
            });
        EXPECT_EQ(now, orders);
    }
    ExpectNothingLost(Op(), disk, m_cHealthy.disk, ofTree);
    ExpectReadable(disk, p.cLib.cDataBase);
    return bFailed;
}

TEST_P(EveryFaultTest, LosesNothing)
{
    int lSteps = 0;
    while (Fail(lSteps) && !HasFailure())
        ++lSteps;
    EXPECT_FALSE(HasFailure()) << "when step " << lSteps + 1 << " failed";
    EXPECT_LT(lSteps, 1000);
}

INSTANTIATE_TEST_SUITE_P(Operations, EveryFaultTest,
                         testing::Combine(testing::ValuesIn(operations), testing::ValuesIn(modes)),
                         [](const testing::TestParamInfo<Case>& tested) {
    return std::string(std::get<0>(tested.param).sName) + "_" + std::get<1>(tested.param).sName;
});

} // namespace
} // namespace ravlo::test
