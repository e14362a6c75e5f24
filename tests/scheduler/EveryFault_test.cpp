// SPDX-License-Identifier: MIT
// Any operation of a host, with any of its file operations failing: the tree still agrees with the database,
// nothing on the disk is lost, and the next start on a healthy disk reads everything.
#include "platform/memory/FailingFiles.h"
#include "scheduler/UndoRecords.h"
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

// A host's program over a station, on a disk that can be made to fail.
struct Program
{
    Program(const Disk& disk, std::shared_ptr<FakeDataBase> cDataBase) : cLib(cPorts, cFiles)
    {
        for (const auto& [sPath, bytes] : disk)
            cPorts.cFiles.Put(sPath, bytes);
        cLib.cDataBase = std::move(cDataBase);
    }

    std::shared_ptr<clsCat> MainCat(const std::wstring& sName) const { return cLib.MainCat(sName); }
    std::shared_ptr<clsCat> Level(const std::wstring& sName, std::int32_t lLevel = 1) const
    {
        return cLib.Level(sName, lLevel);
    }
    Cuts CutsOf(const std::wstring& sName, std::int32_t lLevel = 1) const
    {
        return cLib.CutsOf(sName, lLevel);
    }
    std::shared_ptr<Cut> FirstOf(const std::wstring& sName) const { return CutsOf(sName)[0]; }

    // ---- operations

    void Populate() { cLib.Populate(); }
    void End() { cLib.End(); }
    void Pick(bool bSave = true)
    {
        for (const wchar_t* sKey : {L"Rock\t1", L"Pop\t1", L"Jazz\t1", L"Gone\t1"})
            EXPECT_TRUE(cLib.NextCut(sKey, false, bSave));
    }
    // Passes the first cut over, which is tried first at the next pick.
    void PickFairly(bool bSave)
    {
        cSchedMan->OverrideOptions({true, std::nullopt});
        FirstOf(L"Rock")->SetLastPlayed(cPorts.cClock.Now());
        cSchedMan->UpdateArtistTitleHistory(FirstOf(L"Rock"));
        Pick(bSave);
    }
    void SaveEverything()
    {
        cLib.SaveAll();
        cSchedMan->SaveCatNames();
        cLib.cMod.SaveSettings();
    }
    void Rotate() const
    {
        for (const wchar_t* sName : {L"Rock", L"Pop"})
            Level(sName)->SchedCuts()->MoveToEnd(0);
    }
    // Nothing can be undone when the steps could not be read.
    void Undo(int lTimes)
    {
        for (; lTimes > 0 && cSchedMan->CanUndo(); --lTimes)
            cSchedMan->Undo();
    }
    void Redo()
    {
        if (cSchedMan->CanRedo())
            cSchedMan->Redo();
    }
    void CreateLevel()
    {
        cPorts.cMessages.Typed = {L"7"};
        cSchedMan->CreateCatLevel(MainCat(L"Rock"));
    }
    void ShuffleBoth() { cSchedMan->ShuffleCategories({MainCat(L"Rock"), MainCat(L"Pop")}); }
    void Delete(const std::shared_ptr<clsCat>& cCat) { cSchedMan->DeleteCats({cCat}); }
    void MoveInCategory() { cSchedMan->MoveCutsInCategory(Level(L"Rock"), {CutsOf(L"Rock").back()}, 1); }
    // From Rock 1.
    void Change(eCatDragOptions eOption, const std::shared_ptr<clsCat>& cTo, const Cuts& colCuts)
    {
        cLib.Change(eOption, Level(L"Rock"), cTo, colCuts);
    }
    void MoveExclusively()
    {
        Change(eMoveExclusiveHere, Level(L"Jazz"), {FirstOf(L"Rock"), FirstOf(L"Pop")});
    }
    void MoveToCategory() { cLib.Change(eMoveHere, MainCat(L"Pop"), MainCat(L"Jazz"), CutsOf(L"Pop", 2)); }
    void Remove(bool bSave)
    {
        if (bSave)
            return cSchedMan->RemoveCutsFromCategories(
                {{FirstOf(L"Rock"), MainCat(L"Rock"), 0}, {FirstOf(L"Pop"), nullptr, 0}}, [](std::size_t) {});
        CatCollection colTouched;
        cSchedMan->RemoveCutFromCategory(MainCat(L"Rock"), FirstOf(L"Rock"), colTouched);
        for (const std::shared_ptr<clsCat>& cMainCat : colTouched)
            cSchedMan->SaveHistoryAndOrdering(cMainCat);
    }
    void AddCuts()
    {
        FakeDataBase& cDataBase = *cLib.cDataBase;
        cDataBase.Announce(&DataBaseEvents::CutsAdded,
                           Cuts{cDataBase.Add(L"a", L"Rock/Soul", 1), cDataBase.Add(L"b", L"Pop", 9)});
    }
    void ModifyCuts()
    {
        const Cuts colCuts{FirstOf(L"Rock"), FirstOf(L"Pop")};
        colCuts[0]->SetCategoryText(L"Pop");
        colCuts[1]->SetCatLevel(2);
        cLib.cDataBase->Announce(&DataBaseEvents::CutsModified, colCuts);
    }
    void RemoveCuts()
    {
        const Cuts colCuts{FirstOf(L"Rock"), FirstOf(L"Pop")};
        for (const std::shared_ptr<Cut>& cCut : colCuts)
            cLib.cDataBase->Remove(*cCut);
        cLib.cDataBase->Announce(&DataBaseEvents::CutsRemoved, colCuts);
    }
    void SetRules() const
    {
        const std::shared_ptr<clsCatRules> cRules = Level(L"Rock")->Rules();
        cRules->SetArtistSepMins(41);
        cRules->SetTitleSepMins(42);
        cRules->SetAlbumSepMins(43);
        cRules->SetIgnoreRules(true);
        cRules->SaveRules();
    }
    void ApplyRules() const
    {
        Level(L"Pop", 2)->Rules()->Apply({.lArtist = 1, .lTitle = 2, .lAlbum = 3, .bIgnore = true});
    }
    void SetSettings()
    {
        cLib.cMod.SetGlobalArtistSepMins(1);
        cLib.cMod.SetGlobalTitleSepMins(2);
        cLib.cMod.SetGlobalAlbumSepMins(3);
    }
    void SetOneRule() const { Level(L"Rock")->Rules()->SetTitleSepMins(99); }
    void SetOneSetting() { cLib.cMod.SetGlobalTitleSepMins(99); }
    // All of it, one by one.
    void Work()
    {
        Pick();
        SetOneRule();
        SetOneSetting();
        cLib.CreateMainCat(L"Soul");
        cLib.SaveAll();
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
    std::shared_ptr<clsSchedMan>& cSchedMan = cLib.cSchedMan;
};

std::shared_ptr<FakeDataBase> NewDataBase()
{
    auto cDataBase = std::make_shared<FakeDataBase>();
    cDataBase->AddTree(L"Rock 1: r1 r2 r3 | Rock 2: r4 r5 | Pop 1: p1 p2 p3 | Pop 2: p4 | "
                       L"Rock 1: both | Pop 1: both");
    cDataBase->Add(L"nowhere", L"", 1);
    return cDataBase;
}

// The disk of a station that was on air for a while: every kind of file, and no order is the database's.
const Disk& StationDisk()
{
    static const Disk disk = [] {
        Program cProgram({}, NewDataBase());
        cProgram.cLib.Populate();
        EXPECT_TRUE(cProgram.cLib.CreateMainCat(L"Jazz"));
        for (const auto& [sCat, lLevel] : {std::pair(L"Rock", 1), {L"Rock", 2}, {L"Pop", 1}})
        {
            const std::shared_ptr<clsCat> cLevel = cProgram.Level(sCat, lLevel);
            cLevel->SchedCuts()->MoveToEnd(0);
            cLevel->Rules()->SetArtistSepMins(lLevel);
        }
        EXPECT_TRUE(cProgram.cLib.SaveAll());
        cProgram.cLib.cMod.SetGlobalArtistSepMins(15);
        cProgram.cLib.cMod.SetGlobalTitleSepMins(25);
        cProgram.cLib.cMod.SetGlobalAlbumSepMins(35);
        // To undo: a deletion, a creation, a re-order; to redo: another one.
        cProgram.MoveInCategory();
        EXPECT_TRUE(cProgram.cLib.CreateMainCat(L"Talk"));
        cProgram.Delete(cProgram.MainCat(L"Talk"));
        cProgram.cSchedMan->MoveCutsInCategory(cProgram.Level(L"Rock", 2),
                                               {cProgram.CutsOf(L"Rock", 2).back()}, 1);
        cProgram.Undo(1);
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

using P = Program;
const Operation operations[] = {
    {"populate", [](P& p) { p.Populate(); }, true},
    {"populate_and_end", [](P& p) { p.Populate(), p.End(); }, true},
    {"populate_and_pick", [](P& p) { p.Populate(), p.Pick(), p.End(); }, true},
    {"populate_and_save_all", [](P& p) { p.Populate(), p.SaveEverything(), p.End(); }, true},
    {"populate_and_change_rules", [](P& p) { p.Populate(), p.SetOneRule(), p.End(); }, true},
    {"populate_and_change_settings", [](P& p) { p.Populate(), p.SetOneSetting(), p.End(); }, true},
    {"populate_and_work", [](P& p) { p.Populate(), p.Work(), p.End(); }, true},
    {"populate_again", [](P& p) { p.Populate(); }, false, false, true},
    {"populate_again_after_picks", [](P& p) { p.Pick(false), p.Populate(), p.End(); }},
    {"pick", [](P& p) { p.Pick(false); }},
    {"pick_and_save", [](P& p) { p.Pick(); }},
    {"picks_and_end", [](P& p) { p.Pick(), p.End(); }},
    {"fair_pick", [](P& p) { p.PickFairly(false); }},
    {"fair_pick_and_save", [](P& p) { p.PickFairly(true), p.End(); }},
    {"populate_and_pick_fairly", [](P& p) { p.Populate(), p.PickFairly(true), p.End(); }, true},
    {"spread", [](P& p) { p.cSchedMan->SpreadCategories({p.MainCat(L"Rock")}); }},
    {"play", [](P& p) { p.cSchedMan->UpdateArtistTitleHistory(p.FirstOf(L"Rock")); }},
    {"save_list", [](P& p) { p.cSchedMan->SaveCatNames(); }},
    {"saved_list", [](P& p) { p.cSchedMan->colSavedCatNames(); }},
    {"save_order", [](P& p) { p.Rotate(), p.cLib.Save(L"Rock"); }},
    {"save_all_orders", [](P& p) { p.Rotate(), p.cLib.SaveAll(); }},
    {"create_category", [](P& p) { p.cLib.CreateMainCat(L"Soul"); }},
    {"create_level", [](P& p) { p.CreateLevel(); }},
    {"shuffle_level", [](P& p) { p.cSchedMan->ShuffleCategories({p.Level(L"Rock")}); }},
    {"shuffle_categories", [](P& p) { p.ShuffleBoth(); }},
    {"delete_level", [](P& p) { p.Delete(p.Level(L"Rock")); }, false, true},
    {"delete_category", [](P& p) { p.Delete(p.MainCat(L"Pop")); }, false, true},
    {"delete_empty_category", [](P& p) { p.Delete(p.MainCat(L"Jazz")); }},
    {"move_in_category", [](P& p) { p.MoveInCategory(); }},
    {"undo_a_deletion", [](P& p) { p.Undo(1); }},
    {"undo_a_creation", [](P& p) { p.Undo(2); }},
    {"undo_a_re_order", [](P& p) { p.Undo(3); }},
    {"redo_a_re_order", [](P& p) { p.Redo(); }},
    {"undo_and_end", [](P& p) { p.Populate(), p.Undo(1), p.End(); }, true},
    {"copy", [](P& p) { p.Change(eCopyHere, p.Level(L"Pop"), p.CutsOf(L"Rock")); }},
    {"move_one", [](P& p) { p.Change(eMoveHere, p.Level(L"Pop", 2), {p.FirstOf(L"Rock")}); }},
    {"move_a_level", [](P& p) { p.Change(eMoveHere, p.Level(L"Pop", 2), p.CutsOf(L"Rock")); }, false, true},
    {"move_exclusive", [](P& p) { p.MoveExclusively(); }},
    {"move_to_category", [](P& p) { p.MoveToCategory(); }, false, true},
    {"remove_and_save", [](P& p) { p.Remove(true); }},
    {"remove_from_category", [](P& p) { p.Remove(false); }},
    {"cuts_added", [](P& p) { p.AddCuts(); }},
    {"cuts_modified", [](P& p) { p.ModifyCuts(); }},
    {"cuts_removed", [](P& p) { p.RemoveCuts(); }},
    {"rules", [](P& p) { p.SetRules(); }},
    {"rules_in_one_go", [](P& p) { p.ApplyRules(); }},
    {"settings", [](P& p) { p.SetSettings(); }},
    {"end", [](P& p) { p.End(); }},
};

// ---- rules after any fault

// Every cut is in exactly those levels that the database says, once.
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
    Disk diskAtOnce; // before the manager's end
    Disk disk;
    Orders ordersAtOnce;
    Orders orders;
    std::size_t boxes;

    explicit Healthy(const Operation& operation)
    {
        Program p(StationDisk(), NewDataBase());
        if (!operation.bFromStart)
            p.cLib.Populate();
        operation.run(p);
        diskAtOnce = DiskOf(p.cPorts.cFiles);
        boxes = p.cPorts.cMessages.Boxes.size();
        if (p.cSchedMan)
            ordersAtOnce = p.AllOrders();
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

// Each file contains its old bytes (with markers before its levels when a change was in progress), those of a
// run without fault or those of the tree in memory; else its old bytes are kept aside.
void ExpectNothingLost(const Operation& operation, const Disk& now, const Disk& healthy, const Disk& ofTree)
{
    for (const auto& file : StationDisk())
    {
        const std::wstring& sPath = file.first;
        const std::string& bytes = file.second;
        const auto present = now.find(sPath);
        const auto isIn = [&](const Disk& disk) {
            const auto found = disk.find(sPath);
            return present == now.end() ? found == disk.end()
                                        : found != disk.end() && found->second == present->second;
        };
        const bool bAhead = sPath.ends_with(L".sif") && present != now.end() &&
                            present->second.size() > bytes.size() &&
                            SifWithoutGuards(present->second) == bytes;
        const bool bSteps =
            sPath.ends_with(L"Undo.dat") && present != now.end() && DecodeUndoFile(present->second);
        const bool bKnown = bAhead || bSteps || isIn(StationDisk()) || isIn(healthy) ||
                            (!operation.bFromStart && isIn(ofTree));
        EXPECT_TRUE(bKnown || IsKeptAside(now, sPath, bytes)) << testing::PrintToString(sPath);
    }
}

// The order of the cuts that were in the level before, among each other, is the one before or the one after.
void ExpectOldOrNew(const Orders& now, const Orders& before, const Orders& after)
{
    for (const auto& level : now)
    {
        const Keys& colKeys = level.second;
        const auto asIn = [&](const Orders& orders) {
            const auto found = orders.find(level.first);
            return found == orders.end() || Common(colKeys, found->second) == Common(found->second, colKeys);
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
    {"one_write", false, false},
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
    void ExpectOneFileOldAndOneBox(const Program& p) const;
    void ExpectReadable(const Disk& disk, const std::shared_ptr<FakeDataBase>& cDataBase);

    const Healthy m_cHealthy{Op()};
    const Orders m_before = OrdersOfStation();
};

// A write that fails keeps one order or the list from its file, which is shown once. Memory is as if nothing
// had failed.
void EveryFaultTest::ExpectOneFileOldAndOneBox(const Program& p) const
{
    EXPECT_LE(p.cPorts.cMessages.Boxes.size(), m_cHealthy.boxes + 1);
    if (p.cSchedMan)
    {
        EXPECT_EQ(p.AllOrders(), m_cHealthy.ordersAtOnce);
    }
    const Disk now = DiskOf(p.cPorts.cFiles);
    Disk unequal;
    for (const auto& [one, other] : {std::pair(&now, &m_cHealthy.diskAtOnce), {&m_cHealthy.diskAtOnce, &now}})
        for (const auto& [sPath, bytes] : *one)
            if (const auto found = other->find(sPath); found == other->end() || found->second != bytes)
                if (sPath.ends_with(L".sif") || sPath == sMainCatsPath)
                    unequal[sPath] = bytes;
    EXPECT_LE(unequal.size(), 1u);
}

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
        return disk.contains(SifPath(sName) + L".bak");
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
    if (!How().bReads && !How().bStaysBroken)
        ExpectOneFileOldAndOneBox(p);

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
                return order.second.empty() && !orders.contains(order.first);
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
