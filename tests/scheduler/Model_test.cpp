// SPDX-License-Identifier: MIT
#include "base/CaseFolding.h"
#include "scheduler/UndoSteps.h"
#include "support/BatchingDataBase.h"
#include "support/SyncTest.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <iostream>
#include <random>
#include <tuple>
#include <utility>

namespace ravlo::test
{
namespace
{

template <class Range, class Test> bool AnyOf(const Range& colItems, const Test& test)
{
    return std::any_of(std::begin(colItems), std::end(colItems), test);
}
template <class Range, class Value> bool Contains(const Range& colItems, const Value& value)
{
    return std::find(std::begin(colItems), std::end(colItems), value) != std::end(colItems);
}
// False when it is there already.
template <class Value> bool AddOnce(std::vector<Value>& colItems, const Value& value)
{
    if (Contains(colItems, value))
        return false;
    colItems.push_back(value);
    return true;
}
std::wstring Lower(const std::wstring& sName) { return FoldCase(sName); }
std::string Narrow(const std::wstring& sText) { return {sText.begin(), sText.end()}; }

// ---- the reference: what a station is, written with vectors and maps

struct RefCut
{
    std::shared_ptr<FakeCut> cCut; // the database's
    std::wstring sKey;
    Lines colNames;
    std::int32_t lLevel;
    std::int32_t lRunTime;
    bool bOpener;
    // The names and level it was placed by. A cut that is announced without a change stays where it is.
    Lines colPlacedNames{};
    std::int32_t lPlacedLevel = 0;

    bool HasName(const std::wstring& sName) const
    {
        return AnyOf(colNames, [&](const auto& sOther) { return EqualIgnoringCase(sOther, sName); });
    }
    void AddName(const std::wstring& sName)
    {
        if (!HasName(sName))
            colNames.push_back(sName);
    }
    void RemoveName(const std::wstring& sName)
    {
        std::erase_if(colNames, [&](const auto& sOther) { return EqualIgnoringCase(sOther, sName); });
    }
    void NotePlaced()
    {
        colPlacedNames = colNames;
        lPlacedLevel = lLevel;
    }
    std::string Record() const
    {
        return SifCut(Narrow(cCut->Artist()), Narrow(cCut->Title()), Narrow(sKey), lLevel);
    }
    bool IsUnchanged() const
    {
        return lPlacedLevel == lLevel && std::equal(colNames.begin(), colNames.end(), colPlacedNames.begin(),
                                                    colPlacedNames.end(), EqualIgnoringCase);
    }
};
using RefOrder = std::vector<RefCut*>;
using Levels = std::vector<std::int32_t>;

struct RefMain
{
    std::wstring sName;
    std::map<std::int32_t, RefOrder> colLevels;

    Levels AllLevels() const
    {
        Levels colAll;
        for (const auto& [lLevel, colOrder] : colLevels)
            colAll.push_back(lLevel);
        return colAll;
    }
    // The levels that contain the cut.
    Levels LevelsOf(const RefCut& cut) const
    {
        Levels colOf = AllLevels();
        std::erase_if(colOf, [&](std::int32_t lLevel) { return !Contains(colLevels.at(lLevel), &cut); });
        return colOf;
    }
    // False when it is there already.
    bool Place(RefCut& cut)
    {
        cut.AddName(sName);
        return AddOnce(colLevels[cut.lLevel], &cut);
    }
    // The name goes with the last level.
    void TakeOut(RefCut& cut, std::int32_t lLevel)
    {
        if (std::erase(colLevels[lLevel], &cut) > 0 && LevelsOf(cut).empty())
            cut.RemoveName(sName);
    }
};
using RefMains = std::set<RefMain*>;
using RefPlace = std::pair<RefMain*, std::int32_t>;

struct RefRecord
{
    std::int32_t lLevel;
    std::wstring sKey; // empty in a marker
    std::string bytes;
};
using RefRecords = std::vector<RefRecord>;

using RefLevel = std::pair<std::wstring, std::int32_t>; // folded name of the main category, number

// Artist separations by level, and whether featured artists count.
class RefSettings
{
public:
    static inline const RefLevel featured{};

    std::int32_t Of(const RefLevel& what) const
    {
        const auto found = m_colValues.find(what);
        return found == m_colValues.end() ? Unset(what) : found->second;
    }
    void Set(const RefLevel& what, std::int32_t lValue)
    {
        m_colValues[what] = lValue;
        if (lValue == Unset(what))
            m_colValues.erase(what);
    }
    std::vector<RefLevel> DifferentFrom(const RefSettings& other) const
    {
        std::vector<RefLevel> colDifferent;
        for (const auto* pValues : {&m_colValues, &other.m_colValues})
            for (const auto& [what, lValue] : *pValues)
                if (Of(what) != other.Of(what))
                    AddOnce(colDifferent, what);
        return colDifferent;
    }
    friend bool operator==(const RefSettings&, const RefSettings&) = default;

private:
    static std::int32_t Unset(const RefLevel& what) { return what == featured ? 0 : clsCatRules::lNotSet; }
    std::map<RefLevel, std::int32_t> m_colValues;
};

class Reference
{
public:
    RefSettings settings;
    std::vector<std::unique_ptr<RefCut>> colCuts; // in the database's order
    std::vector<std::unique_ptr<RefMain>> colMains;
    std::map<std::wstring, RefRecords> colFiles; // by folded name
    std::set<std::wstring> colUnsaved;           // folded names; picks moved cuts without saving
    Lines colList;                               // the names in the list of categories
    RefMains colAffected;                        // saved at the end of the step

    RefMain* Main(const std::wstring& sName) const
    {
        for (const auto& pMain : colMains)
            if (EqualIgnoringCase(pMain->sName, sName))
                return pMain.get();
        return nullptr;
    }
    RefMain& Ensure(const std::wstring& sName)
    {
        if (RefMain* pMain = Main(sName))
            return *pMain;
        colMains.push_back(std::make_unique<RefMain>(RefMain{sName, {}}));
        return *colMains.back();
    }
    std::size_t CountLevels() const
    {
        std::size_t count = 0;
        for (const auto& pMain : colMains)
            count += pMain->colLevels.size();
        return count;
    }
    // bAhead: with a marker in front of each level, as it is written ahead of a change.
    void Save(const RefMain& main, bool bAhead = false)
    {
        const std::wstring sFolded = Lower(main.sName);
        colUnsaved.erase(sFolded);
        RefRecords colRecords;
        for (const auto& [lLevel, colOrder] : main.colLevels)
        {
            if (colOrder.empty() || bAhead)
                colRecords.push_back({lLevel, L"", SifMarker(lLevel)});
            for (const RefCut* pCut : colOrder)
                colRecords.push_back({pCut->lLevel, pCut->sKey, pCut->Record()});
        }
        // Without a record the file stays, unless it asks for a level that is missing at every start.
        if (colRecords.empty() && !colNotApplied.contains(sFolded))
            return;
        colFiles[sFolded] = colRecords;
        colNotApplied.erase(sFolded);
    }
    void DeleteFile(const RefMain& main)
    {
        const std::wstring sFolded = Lower(main.sName);
        colUnsaved.erase(sFolded);
        colFiles.erase(sFolded);
        colNotApplied.erase(sFolded);
    }
    // Unless it was not understood.
    void DeleteKnownFile(const RefMain& main)
    {
        if (!colNotApplied.contains(Lower(main.sName)))
            DeleteFile(main);
    }
    void SaveList()
    {
        colList.clear();
        for (const auto& pMain : colMains)
            colList.push_back(pMain->sName);
    }
    // Whether the cut is in this level of every category named.
    bool IsIn(const RefCut& cut, const Lines& colNames, std::int32_t lLevel) const
    {
        return !AnyOf(colNames, [&](const std::wstring& sName) {
            const RefMain* pMain = Main(sName);
            return !pMain || !Contains(pMain->LevelsOf(cut), lLevel);
        });
    }
    // Places the cut where its names and level say, and nowhere else, unless nothing has changed.
    void Follow(RefCut& cut)
    {
        if (cut.IsUnchanged() && IsIn(cut, cut.colNames, cut.lLevel))
            return;
        cut.NotePlaced();
        for (const auto& pMain : colMains)
            for (auto& [lLevel, colOrder] : pMain->colLevels)
                if ((lLevel != cut.lLevel || !cut.HasName(pMain->sName)) && std::erase(colOrder, &cut) > 0)
                    colAffected.insert(pMain.get());
        for (const std::wstring& sName : Lines(cut.colNames))
            if (RefMain& main = Ensure(sName); main.Place(cut))
                colAffected.insert(&main);
    }
    // Before a population reads the files, what picks have left unsaved is saved. So is the list when it
    // lacks a category without cuts, which nothing else would bring back.
    void SaveBeforeReading()
    {
        for (const auto& pMain : colMains)
            if (colUnsaved.contains(Lower(pMain->sName)))
                Save(*pMain);
        if (AnyOf(colMains, [&](const auto& pMain) {
                return !AnyOf(pMain->colLevels, [](const auto& level) { return !level.second.empty(); }) &&
                       !AnyOf(colList, [&](const auto& s) { return EqualIgnoringCase(s, pMain->sName); });
            }))
            SaveList();
    }
    // When a file cannot be applied in full, the orders are taken from the tree before, if there is one.
    void Reload()
    {
        const auto colOld = std::exchange(colMains, {});
        colUnsaved.clear();
        for (const auto& pCut : colCuts)
            for (const std::wstring& sName : pCut->colNames)
                Ensure(sName);
        for (const auto& pCut : colCuts)
        {
            for (const std::wstring& sName : Lines(pCut->colNames))
                Ensure(sName).Place(*pCut);
            pCut->NotePlaced();
        }
        for (const std::wstring& sName : colList)
            Ensure(sName);
        colNotApplied.clear();
        for (const auto& pMain : colMains)
            if (!Apply(*pMain, colFiles))
            {
                colNotApplied.insert(Lower(pMain->sName));
                for (const auto& pOld : colOld)
                    if (EqualIgnoringCase(pOld->sName, pMain->sName))
                        Carry(*pOld, *pMain);
            }
    }

private:
    std::set<std::wstring> colNotApplied; // folded names whose files ask for a level that is missing

    template <class Test> static void MoveToEnd(RefOrder& colOrder, const Test& test)
    {
        const auto found = std::find_if(colOrder.begin(), colOrder.end(), test);
        if (found != colOrder.end())
            std::rotate(found, found + 1, colOrder.end());
    }
    static void Carry(const RefMain& from, RefMain& to)
    {
        for (const auto& level : from.colLevels)
        {
            RefOrder& colOrder = to.colLevels[level.first];
            for (const RefCut* pCut : level.second)
                MoveToEnd(colOrder, [&](const RefCut* pOther) { return pOther == pCut; });
        }
        for (const std::int32_t lLevel : to.AllLevels())
            if (to.colLevels[lLevel].empty() && !from.colLevels.contains(lLevel))
                to.colLevels.erase(lLevel);
    }
    static bool Apply(RefMain& main, const std::map<std::wstring, RefRecords>& colFiles)
    {
        const auto found = colFiles.find(Lower(main.sName));
        for (const RefRecord& record : found == colFiles.end() ? RefRecords() : found->second)
        {
            if (!main.colLevels.contains(record.lLevel) && !record.sKey.empty())
                return false;
            MoveToEnd(main.colLevels[record.lLevel],
                      [&](const RefCut* pCut) { return pCut->sKey == record.sKey; });
        }
        return true;
    }
};

// ---- undo: a step is the difference between two states

struct RefState
{
    Lines colMains; // in the tree's order
    std::map<RefLevel, Keys> colOrders;
    std::map<std::wstring, std::pair<Lines, std::int32_t>> colCuts; // key -> names and level
    RefSettings settings;

    friend bool operator==(const RefState&, const RefState&) = default;

    bool HasMain(const std::wstring& sName) const
    {
        return AnyOf(colMains, [&](const auto& sOther) { return EqualIgnoringCase(sOther, sName); });
    }
    bool IsIn(const std::wstring& sKey, const RefLevel& level) const
    {
        const auto found = colOrders.find(level);
        return found != colOrders.end() && Contains(found->second, sKey);
    }
};

RefState StateOf(const Reference& ref)
{
    RefState state;
    for (const auto& pMain : ref.colMains)
    {
        state.colMains.push_back(pMain->sName);
        for (const auto& [lLevel, colOrder] : pMain->colLevels)
            for (Keys& colKeys = state.colOrders[{Lower(pMain->sName), lLevel}];
                 const RefCut* pCut : colOrder)
                colKeys.push_back(pCut->sKey);
    }
    for (const auto& pCut : ref.colCuts)
        state.colCuts[pCut->sKey] = {pCut->colNames, pCut->lLevel};
    state.settings = ref.settings;
    return state;
}

struct RefStep
{
    RefState before;
    RefState after;
    std::wstring sSeries{}; // one that may go on; empty: none

    // The next step of the series changes the same levels, which nobody has changed between.
    bool GoesOn(const RefStep& next) const
    {
        const auto touched = Touched();
        return !sSeries.empty() && sSeries == next.sSeries && touched == next.Touched() &&
               std::all_of(touched.begin(), touched.end(), [&](const RefLevel& level) {
                   return after.colOrders.at(level) == next.before.colOrders.at(level);
               });
    }
    // Makes the next step one with this one, without what others have changed between.
    void Take(const RefStep& next)
    {
        RefStep whole = next;
        for (const RefLevel& level : Touched())
            whole.before.colOrders.at(level) = before.colOrders.at(level);
        for (const auto& [sKey, state] : before.colCuts)
            if (after.colCuts.at(sKey) != state || IsMoved(sKey))
            {
                whole.before.colCuts[sKey] = state;
                whole.after.colCuts[sKey] = after.colCuts.at(sKey);
            }
        *this = whole;
    }
    bool IsMoved(const std::wstring& sKey) const
    {
        const auto touched = Touched();
        return AnyOf(touched, [&](const RefLevel& level) {
            return before.IsIn(sKey, level) != after.IsIn(sKey, level);
        });
    }

    // The levels that the step has made, deleted or changed.
    std::set<RefLevel> Touched() const
    {
        std::set<RefLevel> colTouched;
        for (const RefState* pState : {&before, &after})
            for (const auto& [level, colKeys] : pState->colOrders)
            {
                const auto was = before.colOrders.find(level);
                const auto is = after.colOrders.find(level);
                if (was == before.colOrders.end() || is == after.colOrders.end() || was->second != is->second)
                    colTouched.insert(level);
            }
        return colTouched;
    }
};

// Takes a step back: what others have changed since stays.
class RefReversal
{
public:
    RefReversal(Reference& ref, const RefStep& step) : m_ref(ref), m_step(step), m_colTouched(step.Touched())
    {
        for (const auto& pCut : ref.colCuts)
            if (const auto after = step.after.colCuts.find(pCut->sKey);
                after != step.after.colCuts.end() && IsOfTheStep(pCut->sKey) &&
                after->second.second == pCut->lLevel && Folded(after->second.first) == Folded(pCut->colNames))
                colCuts.push_back(pCut.get());
    }
    // Whether cuts may leave the level. An empty one that the step deleted had none to record.
    bool Touches(const RefMain& main, std::int32_t lLevel) const
    {
        const RefLevel level{Lower(main.sName), lLevel};
        const auto before = m_step.before.colOrders.find(level);
        return m_colTouched.contains(level) &&
               (before == m_step.before.colOrders.end() || !before->second.empty() ||
                m_step.after.colOrders.contains(level));
    }
    bool ChangesLevel(const RefCut& cut) const { return Before(cut).second != cut.lLevel; }
    bool ChangesNames(const RefCut& cut) const { return Before(cut).first != cut.colNames; }

    void Run()
    {
        const std::size_t mains = m_ref.colMains.size();
        MakeAgain();
        const bool bMade = m_ref.colMains.size() != mains;
        for (RefCut* pCut : colCuts)
            PutBack(*pCut);
        for (const RefLevel& level : m_colTouched)
            PutInOrder(level);
        const bool bDeleted = DeleteMade();
        if (bMade || bDeleted)
            m_ref.SaveList();
        SetBack();
    }

    RefOrder colCuts; // those to change

private:
    static std::set<std::wstring> Folded(const Lines& colNames)
    {
        std::set<std::wstring> colFolded;
        for (const std::wstring& sName : colNames)
            colFolded.insert(Lower(sName));
        return colFolded;
    }
    bool IsOfTheStep(const std::wstring& sKey) const
    {
        return m_step.before.colCuts.at(sKey) != m_step.after.colCuts.at(sKey) || m_step.IsMoved(sKey);
    }
    const std::pair<Lines, std::int32_t>& Before(const RefCut& cut) const
    {
        return m_step.before.colCuts.at(cut.sKey);
    }
    void MakeAgain()
    {
        const Lines& colBefore = m_step.before.colMains;
        for (std::size_t at = 0; at < colBefore.size(); ++at)
            if (!m_step.after.HasMain(colBefore[at]))
            {
                if (!m_ref.Main(colBefore[at]))
                    m_ref.colMains.insert(m_ref.colMains.begin() + static_cast<std::ptrdiff_t>(
                                                                       std::min(at, m_ref.colMains.size())),
                                          std::make_unique<RefMain>(RefMain{colBefore[at], {}}));
                m_ref.colAffected.insert(m_ref.Main(colBefore[at]));
            }
        for (const RefLevel& level : m_colTouched)
            if (!m_step.after.colOrders.contains(level))
                LevelOf(level);
    }
    RefOrder& LevelOf(const RefLevel& level)
    {
        RefMain& main = m_ref.Ensure(level.first);
        m_ref.colAffected.insert(&main);
        return main.colLevels[level.second];
    }
    void PutBack(RefCut& cut)
    {
        std::tie(cut.colNames, cut.lLevel) = Before(cut);
        for (const RefLevel& level : m_colTouched)
            if (m_step.before.IsIn(cut.sKey, level))
                AddOnce(LevelOf(level), &cut);
            else if (RefMain* pMain = m_ref.Main(level.first);
                     pMain && pMain->colLevels.contains(level.second))
                if (std::erase(pMain->colLevels[level.second], &cut) > 0)
                    m_ref.colAffected.insert(pMain);
        for (const auto& pMain : m_ref.colMains)
            if (!pMain->LevelsOf(cut).empty())
                m_ref.colAffected.insert(pMain.get());
        cut.NotePlaced();
    }
    void PutInOrder(const RefLevel& level)
    {
        RefMain* pMain = m_ref.Main(level.first);
        const auto before = m_step.before.colOrders.find(level);
        if (!pMain || !pMain->colLevels.contains(level.second) || before == m_step.before.colOrders.end())
            return;
        RefOrder& colOrder = pMain->colLevels[level.second];
        const RefOrder colNow = colOrder;
        std::stable_sort(colOrder.begin(), colOrder.end(), [&](const RefCut* pLeft, const RefCut* pRight) {
            const auto at = [&](const RefCut* pCut) {
                return std::find(before->second.begin(), before->second.end(), pCut->sKey);
            };
            return at(pLeft) < at(pRight);
        });
        if (colOrder != colNow)
            m_ref.colAffected.insert(pMain);
    }
    void SetBack()
    {
        for (const RefLevel& what : m_step.before.settings.DifferentFrom(m_step.after.settings))
        {
            const RefMain* pMain = m_ref.Main(what.first);
            const bool bThere =
                what == RefSettings::featured || (pMain && pMain->colLevels.contains(what.second));
            if (bThere && m_ref.settings.Of(what) == m_step.after.settings.Of(what))
                m_ref.settings.Set(what, m_step.before.settings.Of(what));
        }
    }
    // Whether a main category was deleted.
    bool DeleteMade()
    {
        for (const RefLevel& level : m_colTouched)
        {
            RefMain* pMain = m_ref.Main(level.first);
            if (m_step.before.colOrders.contains(level) || !pMain ||
                !pMain->colLevels.contains(level.second) || !pMain->colLevels[level.second].empty())
                continue;
            pMain->colLevels.erase(level.second);
            m_ref.colAffected.insert(pMain);
            if (!pMain->colLevels.empty())
                continue;
            m_ref.colAffected.erase(pMain);
            m_ref.DeleteKnownFile(*pMain);
        }
        const std::size_t mains = m_ref.colMains.size();
        std::erase_if(m_ref.colMains, [&](const auto& pMain) {
            return pMain->colLevels.empty() && m_step.after.HasMain(pMain->sName) &&
                   !m_step.before.HasMain(pMain->sName);
        });
        return m_ref.colMains.size() != mains;
    }

    Reference& m_ref;
    const RefStep& m_step;
    const std::set<RefLevel> m_colTouched;
};

// ---- a manager and the reference side by side

const std::array<const wchar_t*, 6> sPool{L"Rock", L"Pop", L"Jazz", L"Soul", L"R.E.M.", L"Caf\u00E9"};
constexpr std::size_t mostCuts = 20;
constexpr std::size_t mostLevel = 4;

class Model
{
public:
    // Odd seeds work on a database that hands out another object for the same cut each time; of four seeds
    // in a row two work on one with batches.
    explicit Model(std::uint32_t seed) : m_engine(seed)
    {
        m_cDataBase->cInner.bFreshObjects = seed % 2 != 0;
        m_cDataBase->bHasBatches = seed % 4 >= 2;
        m_cLib.cSchedMan->SetRotatesAllowed(true);
        Populate();
        m_ref.Reload();
    }

    // One random operation on both. Returns its name, for the trace.
    const char* Step()
    {
        m_cPorts.cMessages.Boxes.clear();
        m_cPorts.cMessages.Inputs.clear();
        m_cPorts.cFiles.ClearOperations();
        m_cLib.cHost.colSaid.clear();
        struct Operation
        {
            const char* sName;
            unsigned weight;
            void (Model::*run)();
            bool bUndoable = false;
        };
        static constexpr std::array operations{
            Operation{"add", 10, &Model::AddCuts},
            Operation{"modify", 12, &Model::ModifyCuts},
            Operation{"remove", 6, &Model::RemoveCuts},
            Operation{"take out", 6, &Model::TakeOut, true},
            Operation{"take out many", 5, &Model::TakeOutMany, true},
            Operation{"assign", 8, &Model::Assign, true},
            Operation{"host places", 6, &Model::HostPlaces},
            Operation{"host places in a second level", 8, &Model::HostPlacesTwice},
            Operation{"host takes out", 4, &Model::HostTakesOut},
            Operation{"create category", 3, &Model::CreateMainCat, true},
            Operation{"create level", 4, &Model::CreateLevel, true},
            Operation{"delete", 3, &Model::Delete, true},
            Operation{"delete what is gone", 1, &Model::DeleteGone},
            Operation{"shuffle", 5, &Model::Shuffle, true},
            Operation{"move in category", 8, &Model::MoveInCategory, true},
            Operation{"mass move", 10, &Model::MassMove, true},
            Operation{"mass copy", 7, &Model::MassCopy, true},
            Operation{"change rules", 6, &Model::ChangeRules, true},
            Operation{"switch featured artists", 3, &Model::SwitchFeatured, true},
            Operation{"host changes rules", 2, &Model::HostChangesRules},
            Operation{"undo", 12, &Model::Undo},
            Operation{"redo", 8, &Model::Redo},
            Operation{"pick", 14, &Model::PickCut},
            Operation{"save", 3, &Model::Save},
            Operation{"reload", 2, &Model::Reload},
            Operation{"restart", 1, &Model::Restart},
        };
        unsigned total = 0;
        for (const Operation& operation : operations)
            total += operation.weight;
        unsigned drawn = Draw(total);
        const Operation* pOperation = operations.data();
        while (drawn >= pOperation->weight)
            drawn -= (pOperation++)->weight;
        const RefState before = StateOf(m_ref);
        (this->*pOperation->run)();
        if (pOperation->bUndoable && StateOf(m_ref) != before)
        {
            m_colRedo.clear();
            AddStep(m_colUndo, before, m_sSeries);
        }
        m_sSeries.clear();
        for (const RefMain* pMain : std::exchange(m_ref.colAffected, {}))
            m_ref.Save(*pMain);
        return pOperation->sName;
    }

    void CompareTree()
    {
        const CatCollection& colMainCats = *m_cLib.cSchedMan->colMainCats();
        ASSERT_EQ(colMainCats.Count(), m_ref.colMains.size());
        for (std::size_t at = 0; at < colMainCats.Count(); ++at)
            CompareMain(*colMainCats.At(at), *colMainCats.KeyAt(at), *m_ref.colMains[at]);
        for (const auto& pCut : m_ref.colCuts)
        {
            ASSERT_EQ(pCut->cCut->CatLevel(), pCut->lLevel) << pCut->sKey;
            ASSERT_EQ(pCut->cCut->CategoryNames(), pCut->colNames) << pCut->sKey;
        }
        ASSERT_EQ(m_cLib.cSchedMan->Options().bFeaturedArtists,
                  m_ref.settings.Of(RefSettings::featured) != 0);
        ASSERT_EQ(m_cLib.cSchedMan->CanUndo(), !m_colUndo.empty());
        ASSERT_EQ(m_cLib.cSchedMan->CanRedo(), !m_colRedo.empty());
    }

    void CompareFiles()
    {
        std::string list;
        for (const std::wstring& sName : m_ref.colList)
            list += "\r\n" + m_cPorts.cCodePage.Encode(sName);
        ASSERT_EQ(m_cPorts.cFiles.FileExists(sMainCatsPath) ? m_cPorts.cFiles.Get(sMainCatsPath) : "", list);
        std::set<std::wstring> colThere;
        for (const std::wstring& sPath : m_cPorts.cFiles.Paths())
            if (sPath.ends_with(L".sif"))
                colThere.insert(Lower(sPath));
        for (const auto& [sName, colRecords] : m_ref.colFiles)
        {
            ASSERT_EQ(colThere.erase(Lower(SifPath(sName))), 1u);
            std::string bytes;
            for (const RefRecord& record : colRecords)
                bytes += record.bytes;
            ASSERT_TRUE(m_cPorts.cFiles.Get(SifPath(sName)) == bytes) << "file " << Narrow(sName);
        }
        ASSERT_TRUE(colThere.empty()) << "a file too many";
        ASSERT_EQ(m_cPorts.TemporaryFiles(), Lines());
    }

    void ForgetLog() { m_cPorts.cFiles.Delete(RadioPorts::LogPath()); }

private:
    unsigned Draw(std::size_t below) { return below == 0 ? 0 : static_cast<unsigned>(m_engine() % below); }
    bool Chance(unsigned percent) { return Draw(100) < percent; }
    std::wstring DrawName()
    {
        const std::wstring sName = sPool[Draw(sPool.size())];
        return Chance(10) ? Lower(sName) : sName;
    }
    Lines DrawNames()
    {
        RefCut cut{};
        for (unsigned left = Draw(4); left > 0; --left)
            cut.AddName(DrawName());
        return cut.colNames;
    }
    std::int32_t DrawLevel() { return 1 + static_cast<std::int32_t>(Draw(mostLevel)); }
    // One of the items; null when there is none.
    template <class Item> Item* DrawOne(const std::vector<std::unique_ptr<Item>>& colItems)
    {
        return colItems.empty() ? nullptr : colItems[Draw(colItems.size())].get();
    }
    RefCut* DrawCut() { return DrawOne(m_ref.colCuts); }
    RefMain* DrawMain() { return DrawOne(m_ref.colMains); }
    // A main category and one of its levels; null when it has none.
    RefPlace DrawPlace()
    {
        RefMain* pMain = DrawMain();
        if (!pMain || pMain->colLevels.empty())
            return {};
        return {pMain, pMain->AllLevels()[Draw(pMain->colLevels.size())]};
    }
    RefOrder DrawCuts(unsigned most)
    {
        RefOrder colDrawn;
        for (unsigned left = 1 + Draw(most); left > 0 && !m_ref.colCuts.empty(); --left)
            AddOnce(colDrawn, DrawCut());
        return colDrawn;
    }
    std::shared_ptr<Cut> ObjectOf(const RefCut& cut) const
    {
        return m_cDataBase->cInner.bFreshObjects ? cut.cCut->Twin() : cut.cCut;
    }
    // What a host hands in: the database's objects, or copies.
    std::shared_ptr<Cut> GivenOf(RefCut& cut) { return GivenOf(RefOrder{&cut})[0]; }
    Cuts GivenOf(const RefOrder& colRefs)
    {
        Cuts colCuts = ObjectsOf(colRefs);
        for (std::shared_ptr<Cut>& cCut : colCuts)
            cCut = Chance(20) ? cCut->CloneCut() : cCut;
        return colCuts;
    }
    Cuts ObjectsOf(const RefOrder& colRefs) const
    {
        Cuts colCuts;
        for (const RefCut* pCut : colRefs)
            colCuts.push_back(ObjectOf(*pCut));
        return colCuts;
    }
    // Level 0 is the main category; none for null.
    std::shared_ptr<clsCat> CatOf(const RefMain* pMain, std::int32_t lLevel = 0) const
    {
        if (!pMain)
            return nullptr;
        return lLevel == 0 ? m_cLib.MainCat(pMain->sName) : m_cLib.Level(pMain->sName, lLevel);
    }
    void GiveNames(RefCut& cut)
    {
        cut.colNames = DrawNames();
        std::wstring sText;
        for (const std::wstring& sName : cut.colNames)
            sText += sName + L"/";
        cut.cCut->SetCategoryText(sText);
    }
    // The database announces the cuts, and the reference follows.
    void Announce(void (DataBaseEvents::*pEvent)(const Cuts&), const RefOrder& colRefs)
    {
        m_cDataBase->cInner.Announce(pEvent, ObjectsOf(colRefs));
        for (RefCut* pCut : colRefs)
            m_ref.Follow(*pCut);
    }

    // ---- failures

    // What goes wrong in one operation: the database refuses to commit, or one cut refuses one member.
    struct Trouble
    {
        bool bRefusesCommit = false;
        const RefCut* pCut = nullptr;
        std::string sMember;

        bool Hits(const RefCut& cut, const char* sUsed) const { return pCut == &cut && sMember == sUsed; }
    };
    Trouble DrawTrouble(const RefOrder& colCuts)
    {
        static const std::array sMembers{"SetCatLevel", "SetCategoryText", "AddCategoryName",
                                         "RemoveCategoryName"};
        Trouble trouble;
        if (Chance(8))
            trouble.bRefusesCommit = m_cDataBase->bHasBatches;
        else if (Chance(25) && !colCuts.empty())
        {
            trouble.pCut = colCuts[Draw(colCuts.size())];
            trouble.sMember = sMembers[Draw(sMembers.size())];
            trouble.pCut->cCut->failing = {trouble.sMember};
        }
        m_cDataBase->bRefusesCommit = trouble.bRefusesCommit;
        return trouble;
    }
    void EndTrouble(const Trouble& trouble)
    {
        m_cDataBase->bRefusesCommit = false;
        if (trouble.pCut)
            trouble.pCut->cCut->failing.clear();
    }
    // As EndTrouble. What went wrong was shown once, and so was a refusal of copies.
    void EndTrouble(const Trouble& trouble, bool bFailed, bool bRefusedCopies = false)
    {
        EndTrouble(trouble);
        EXPECT_EQ(m_cPorts.cMessages.Boxes.size(), (bFailed ? 1u : 0u) + (bRefusedCopies ? 1u : 0u));
    }
    // The main categories with a level that contains only these cuts and may lose them: they are written
    // ahead of the change, so they are saved whether or not it succeeds. Call before the change.
    RefMains WrittenAhead(const RefOrder& colCuts,
                          const std::function<bool(const RefMain&, std::int32_t)>& mayLeave) const
    {
        RefMains colAhead;
        for (const auto& pMain : m_ref.colMains)
            for (const auto& [lLevel, colOrder] : pMain->colLevels)
                if (!colOrder.empty() && mayLeave(*pMain, lLevel) &&
                    !AnyOf(colOrder, [&](const RefCut* pCut) { return !Contains(colCuts, pCut); }))
                    colAhead.insert(pMain.get());
        return colAhead;
    }

    // ---- what the database does

    void AddCuts()
    {
        RefOrder colNew;
        for (unsigned left = 1 + Draw(3); left > 0 && m_ref.colCuts.size() < mostCuts; --left)
        {
            RefCut& cut = *m_ref.colCuts.emplace_back(std::make_unique<RefCut>());
            cut.sKey = L"M:\\" + std::to_wstring(++m_keys) + L".mp3";
            cut.lLevel = DrawLevel();
            cut.lRunTime = static_cast<std::int32_t>(Draw(400'000));
            cut.cCut = m_cDataBase->cInner.Add(cut.sKey, L"", cut.lLevel, cut.lRunTime);
            cut.cCut->SetArtist(L"Artist " + std::to_wstring(Draw(5)));
            cut.cCut->SetTitle(cut.sKey);
            cut.cCut->SetOpener(cut.bOpener = Chance(30));
            GiveNames(cut);
            colNew.push_back(&cut);
        }
        Announce(&DataBaseEvents::CutsAdded, colNew);
    }

    void ModifyCuts()
    {
        const RefOrder colCuts = DrawCuts(4);
        for (RefCut* pCut : colCuts)
        {
            if (Chance(50))
                GiveNames(*pCut);
            if (Chance(50))
                pCut->cCut->SetCatLevel(pCut->lLevel = DrawLevel());
        }
        Announce(&DataBaseEvents::CutsModified, colCuts);
    }

    void RemoveCuts()
    {
        const RefOrder colCuts = DrawCuts(2);
        for (RefCut* pCut : colCuts)
        {
            m_cDataBase->cInner.Remove(*pCut->cCut);
            pCut->colNames.clear();
        }
        Announce(&DataBaseEvents::CutsRemoved, colCuts);
        for (RefCut* pCut : colCuts)
        {
            EXPECT_EQ(pCut->cCut->CategoryText(), L"");
            std::erase_if(m_ref.colCuts, [&](const auto& pOwn) { return pOwn.get() == pCut; });
        }
    }

    // ---- what is done to cuts

    struct Removal
    {
        RefCut* pCut;
        const RefMain* pOnly; // null: from all
        std::int32_t lGiven;  // 0: the cut's own level

        bool Means(const RefMain& main, std::int32_t lLevel) const
        {
            return (!pOnly || pOnly == &main) && (lGiven == 0 || lGiven == lLevel);
        }
    };
    struct Removals
    {
        std::vector<Removal> colRemovals;
        RefOrder colCuts;
        Trouble trouble;
        RefMains colAhead;
    };
    Removals DrawRemovals(unsigned most)
    {
        Removals removals;
        removals.colCuts = DrawCuts(most);
        removals.trouble = DrawTrouble(removals.colCuts);
        for (RefCut* pCut : removals.colCuts)
            removals.colRemovals.push_back(
                {pCut, Chance(60) ? DrawMain() : nullptr, Chance(30) ? DrawLevel() : 0});
        removals.colAhead = WrittenAhead(removals.colCuts, [&](const RefMain& main, std::int32_t lLevel) {
            return AnyOf(removals.colRemovals, [&](const Removal& r) { return r.Means(main, lLevel); });
        });
        return removals;
    }
    // Returns the main categories that a cut has left.
    RefMains Remove(const Removals& removals)
    {
        RefMains colLeft;
        bool bFailed = removals.trouble.bRefusesCommit;
        for (const Removal& removal : removals.colRemovals)
            bFailed = !RemoveOne(removal, removals.trouble, colLeft) || bFailed;
        EndTrouble(removals.trouble, bFailed);
        return colLeft;
    }
    // False when the cut fails.
    bool RemoveOne(const Removal& removal, const Trouble& trouble, RefMains& colLeft)
    {
        RefCut& cut = *removal.pCut;
        const std::int32_t lLevel = removal.lGiven != 0 ? removal.lGiven : cut.lLevel;
        RefMains colFrom;
        bool bLosesName = false;
        for (const auto& pMain : m_ref.colMains)
        {
            const Levels colAt = pMain->LevelsOf(cut);
            if (!Contains(colAt, lLevel) ||
                (removal.pOnly ? removal.pOnly != pMain.get() : !cut.HasName(pMain->sName)))
                continue;
            colFrom.insert(pMain.get());
            bLosesName = bLosesName || colAt.size() == 1;
        }
        if (bLosesName && trouble.Hits(cut, "RemoveCategoryName"))
            return false;
        if (trouble.bRefusesCommit)
            return true;
        for (RefMain* pMain : colFrom)
            pMain->TakeOut(cut, lLevel);
        cut.NotePlaced();
        colLeft.merge(colFrom);
        return true;
    }

    void TakeOut()
    {
        if (m_ref.colCuts.empty())
            return;
        const Removals removals = DrawRemovals(1);
        const Removal& removal = removals.colRemovals[0];
        CatCollection colFrom;
        m_sSeries = L"removal";
        m_cLib.cSchedMan->RemoveCutFromCategory(CatOf(removal.pOnly), GivenOf(*removal.pCut), colFrom,
                                                removal.lGiven);
        for (const RefMain* pMain : removals.colAhead)
            m_ref.Save(*pMain, true);
        const RefMains colLeft = Remove(removals);
        for (RefMain* pMain : removals.colAhead)
            if (!colLeft.contains(pMain))
                m_ref.colAffected.insert(pMain);
        for (const RefMain* pMain : colLeft)
            EXPECT_TRUE(colFrom.Exists(pMain->sName));
        EXPECT_EQ(colFrom.Count(), colLeft.size());
    }

    void TakeOutMany()
    {
        const Removals removals = DrawRemovals(4);
        std::vector<CutRemoval> colGiven;
        for (const Removal& removal : removals.colRemovals)
            colGiven.push_back({GivenOf(*removal.pCut), CatOf(removal.pOnly), removal.lGiven});
        m_cLib.cSchedMan->RemoveCutsFromCategories(colGiven, [](std::size_t) {});
        m_ref.colAffected = removals.colAhead;
        m_ref.colAffected.merge(Remove(removals));
    }

    void Assign()
    {
        RefCut* pCut = DrawCut();
        const Lines colNames = DrawNames();
        if (!pCut || colNames.empty())
            return;
        const std::int32_t lLevel = DrawLevel();
        const Trouble trouble = DrawTrouble({pCut});
        const bool bFails = trouble.bRefusesCommit ||
                            (lLevel != pCut->lLevel && trouble.Hits(*pCut, "SetCatLevel")) ||
                            (pCut->colNames != colNames && trouble.Hits(*pCut, "SetCategoryText")) ||
                            (!m_ref.IsIn(*pCut, colNames, lLevel) && trouble.Hits(*pCut, "AddCategoryName"));
        if (bFails)
            EXPECT_THROW(m_cLib.cSchedMan->AssignCut(GivenOf(*pCut), lLevel, colNames), RuntimeError);
        else
            m_cLib.cSchedMan->AssignCut(GivenOf(*pCut), lLevel, colNames);
        EndTrouble(trouble);
        m_ref.colAffected = WrittenAhead({pCut}, [&](const RefMain& main, std::int32_t lAt) {
            return lAt != lLevel ||
                   !AnyOf(colNames, [&](const auto& sName) { return EqualIgnoringCase(sName, main.sName); });
        });
        if (bFails)
            return;
        const std::size_t mainsBefore = m_ref.colMains.size();
        pCut->colNames = colNames;
        pCut->lLevel = lLevel;
        m_ref.Follow(*pCut);
        pCut->NotePlaced();
        if (m_ref.colMains.size() != mainsBefore)
            m_ref.SaveList();
    }

    void HostPlacesTwice()
    {
        RefCut* pCut = DrawCut();
        const auto [pMain, lLevel] = DrawPlace();
        if (!pCut || !pMain || !pCut->HasName(pMain->sName) || Contains(pMain->colLevels[lLevel], pCut))
            return;
        bool bCreated = false;
        EXPECT_TRUE(CatOf(pMain, lLevel)->AddCut(ObjectOf(*pCut), bCreated));
        pMain->colLevels[lLevel].push_back(pCut);
    }

    void HostPlaces()
    {
        RefCut* pCut = DrawCut();
        RefMain* pMain = DrawMain();
        if (!pCut || !pMain)
            return;
        bool bCreated = false;
        const std::size_t levelsBefore = m_ref.CountLevels();
        const bool bPlaced = CatOf(pMain)->AddCut(ObjectOf(*pCut), bCreated);
        EXPECT_EQ(bPlaced, pMain->Place(*pCut));
        EXPECT_EQ(bCreated, m_ref.CountLevels() != levelsBefore);
        Announce(&DataBaseEvents::CutsModified, {pCut}); // a host that edits announces it
    }

    void HostTakesOut()
    {
        RefCut* pCut = DrawCut();
        const auto [pMain, lLevel] = DrawPlace();
        if (!pCut || !pMain)
            return;
        const bool bThere = std::erase(pMain->colLevels[lLevel], pCut) > 0;
        EXPECT_EQ(CatOf(pMain, lLevel)->RemoveCut(ObjectOf(*pCut)), bThere);
        if (bThere)
            pCut->RemoveName(pMain->sName);
        Announce(&DataBaseEvents::CutsModified, {pCut});
    }

    void MassMove()
    {
        const RefPlace place = DrawPlace();
        const RefPlace source = DrawPlace();
        const RefOrder colCuts = DrawCuts(5);
        if (!place.first || !source.first)
            return;
        RefMain& to = *place.first;
        const std::int32_t lTo = Chance(30) ? 0 : place.second;
        const bool bExclusive = Chance(40);
        const Trouble trouble = DrawTrouble(colCuts);
        bool bCreated = false;
        m_cLib.cSchedMan->DoMassCatChange(bExclusive ? eMoveExclusiveHere : eMoveHere,
                                          {CatOf(source.first, source.second)}, CatOf(&to, lTo),
                                          GivenOf(colCuts), bCreated);
        m_ref.colAffected = WrittenAhead(colCuts, [&](const RefMain& main, std::int32_t lLevel) {
            const bool bLeaves =
                &main != &to && (bExclusive || (&main == source.first && lLevel == source.second));
            return bLeaves || (lTo != 0 && lTo != lLevel);
        });
        bool bFailed = trouble.bRefusesCommit && !colCuts.empty();
        const std::size_t levelsBefore = m_ref.CountLevels();
        for (RefCut* pCut : colCuts)
            bFailed = !MoveOne(*pCut, to, lTo, bExclusive, source, trouble) || bFailed;
        EXPECT_EQ(bCreated, m_ref.CountLevels() != levelsBefore);
        EndTrouble(trouble, bFailed);
    }
    // Main category by main category: the cut leaves, keeps its position, or joins at the end of its level.
    // False when it fails.
    bool MoveOne(RefCut& cut, RefMain& to, std::int32_t lTo, bool bExclusive, const RefPlace& source,
                 const Trouble& trouble)
    {
        const std::int32_t lLevel = lTo != 0 ? lTo : cut.lLevel;
        RefMains colStays, colLeaves;
        std::vector<RefMain*> colJoins;
        for (const auto& pMain : m_ref.colMains)
        {
            const Levels colAt = pMain->LevelsOf(cut);
            const bool bTarget = pMain.get() == &to;
            const auto Keeps = [&](std::int32_t lAt) {
                return bTarget || !(bExclusive || RefPlace(pMain.get(), lAt) == source);
            };
            if (colAt.empty() && !bTarget)
                continue;
            if (!bTarget && !AnyOf(colAt, Keeps))
                colLeaves.insert(pMain.get());
            else if (Contains(colAt, lLevel) && Keeps(lLevel))
                colStays.insert(pMain.get());
            else
                colJoins.push_back(pMain.get());
        }
        if ((lLevel != cut.lLevel && trouble.Hits(cut, "SetCatLevel")) ||
            (!colJoins.empty() && trouble.Hits(cut, "AddCategoryName")) ||
            (!colLeaves.empty() && trouble.Hits(cut, "RemoveCategoryName")))
            return false;
        if (trouble.bRefusesCommit)
            return true;
        for (RefMain* pMain : colStays)
            if (pMain == &to || lLevel != cut.lLevel || pMain->LevelsOf(cut).size() > 1)
                m_ref.colAffected.insert(pMain);
        cut.lLevel = lLevel;
        for (const auto& pMain : m_ref.colMains)
            for (auto& [lAt, colOrder] : pMain->colLevels)
                if (!colStays.contains(pMain.get()) || lAt != lLevel)
                    std::erase(colOrder, &cut);
        for (RefMain* pMain : colLeaves)
            cut.RemoveName(pMain->sName);
        for (RefMain* pMain : colJoins)
            pMain->Place(cut);
        cut.NotePlaced();
        m_ref.colAffected.merge(colLeaves);
        m_ref.colAffected.insert(colJoins.begin(), colJoins.end());
        return true;
    }

    void MassCopy()
    {
        const RefPlace place = DrawPlace();
        RefOrder colCuts = DrawCuts(5);
        if (!place.first)
            return;
        RefMain& to = *place.first;
        const std::int32_t lTo = Chance(50) ? 0 : place.second;
        const Trouble trouble = DrawTrouble(colCuts);
        bool bCreated = false;
        m_cLib.cSchedMan->DoMassCatChange(eCopyHere, {CatOf(&to, place.second)}, CatOf(&to, lTo),
                                          GivenOf(colCuts), bCreated);
        const bool bRefusedCopies =
            std::erase_if(colCuts, [&](const RefCut* pCut) { return lTo != 0 && pCut->lLevel != lTo; }) > 0;
        const std::size_t levelsBefore = m_ref.CountLevels();
        bool bFailed = trouble.bRefusesCommit && !colCuts.empty();
        for (RefCut* pCut : colCuts)
            if (trouble.Hits(*pCut, "AddCategoryName"))
                bFailed = true;
            else if (!trouble.bRefusesCommit)
            {
                if (to.Place(*pCut))
                    m_ref.colAffected.insert(&to);
                pCut->NotePlaced();
            }
        EXPECT_EQ(bCreated, m_ref.CountLevels() != levelsBefore);
        EndTrouble(trouble, bFailed, bRefusedCopies);
    }

    // ---- what is done to categories

    void CreateMainCat()
    {
        std::wstring sName = DrawName();
        const bool bNew = !m_ref.Main(sName);
        EXPECT_EQ(m_cLib.cSchedMan->CreateMainCat(sName), bNew);
        if (!bNew)
            return;
        RefMain& main = m_ref.Ensure(sName);
        main.colLevels[1];
        m_ref.colAffected.insert(&main);
        m_ref.SaveList();
    }

    void CreateLevel()
    {
        RefMain* pMain = DrawMain();
        if (!pMain)
            return;
        const std::int32_t lLevel = DrawLevel();
        m_cPorts.cMessages.Typed = {std::to_wstring(lLevel)};
        const bool bNew = pMain->colLevels.emplace(lLevel, RefOrder()).second;
        EXPECT_EQ(m_cLib.cSchedMan->CreateCatLevel(CatOf(pMain)), bNew);
        if (bNew)
            m_ref.colAffected.insert(pMain);
    }

    // Main categories (level 0) and levels, as a user ticks them.
    std::vector<RefPlace> DrawTicks()
    {
        std::vector<RefPlace> colTicks;
        for (unsigned left = 1 + Draw(3); left > 0; --left)
            if (const RefPlace place = Chance(30) ? RefPlace{DrawMain(), 0} : DrawPlace(); place.first)
                colTicks.push_back(place);
        return colTicks;
    }
    Cats CatsOf(const std::vector<RefPlace>& colTicks) const
    {
        Cats colCats;
        for (const auto& [pMain, lLevel] : colTicks)
            colCats.push_back(CatOf(pMain, lLevel));
        return colCats;
    }
    // Main category by main category, each number once, in the order of the ticks.
    static std::vector<std::pair<RefMain*, Levels>> ByMain(const std::vector<RefPlace>& colTicks)
    {
        std::vector<std::pair<RefMain*, Levels>> colByMain;
        for (const RefPlace& tick : colTicks)
        {
            auto found = std::find_if(colByMain.begin(), colByMain.end(),
                                      [&](const auto& chosen) { return chosen.first == tick.first; });
            if (found == colByMain.end())
                found = colByMain.insert(colByMain.end(), {tick.first, {}});
            AddOnce(found->second, tick.second);
        }
        return colByMain;
    }

    void Delete()
    {
        const auto colTicks = DrawTicks();
        const Trouble trouble = DrawTrouble(DrawCuts(1));
        const bool bAnswer = m_cLib.cSchedMan->DeleteCats(CatsOf(colTicks));
        bool bAll = true;
        bool bFailed = false;
        for (auto& [pMain, colLevels] : ByMain(colTicks))
        {
            const bool bMain = std::erase(colLevels, 0) > 0;
            if (colLevels.empty())
                colLevels = pMain->AllLevels();
            for (const std::int32_t lLevel : colLevels)
            {
                bFailed = !DeleteLevel(*pMain, lLevel, trouble) || bFailed;
                bAll = bAll && !pMain->colLevels.contains(lLevel) && !trouble.bRefusesCommit;
            }
            if (!pMain->colLevels.empty())
            {
                m_ref.colAffected.insert(pMain);
                continue;
            }
            m_ref.DeleteFile(*pMain);
            if (!bMain)
                continue;
            std::erase_if(m_ref.colMains, [pGone = pMain](const auto& pOwn) { return pOwn.get() == pGone; });
            m_ref.SaveList();
        }
        EXPECT_EQ(bAnswer, bAll);
        EndTrouble(trouble, bFailed);
    }
    // False when the database or a cut refuses.
    static bool DeleteLevel(RefMain& main, std::int32_t lLevel, const Trouble& trouble)
    {
        bool bFailed = trouble.bRefusesCommit;
        for (RefCut* pCut : RefOrder(main.colLevels[lLevel]))
            if (main.LevelsOf(*pCut).size() == 1 && pCut->HasName(main.sName) &&
                trouble.Hits(*pCut, "RemoveCategoryName"))
                bFailed = true;
            else if (!trouble.bRefusesCommit)
            {
                main.TakeOut(*pCut, lLevel);
                pCut->NotePlaced();
            }
        if (main.colLevels[lLevel].empty())
            main.colLevels.erase(lLevel);
        return !bFailed;
    }

    void DeleteGone()
    {
        EXPECT_FALSE(m_cLib.cSchedMan->DeleteCats({std::make_shared<clsCat>(m_cLib.cMod, L"Gone", Draw(3))}));
    }

    void Shuffle()
    {
        const auto colTicks = DrawTicks();
        m_cLib.cSchedMan->ShuffleCategories(CatsOf(colTicks));
        for (const auto& [pMain, colLevels] : ByMain(colTicks))
        {
            for (const std::int32_t lLevel : Contains(colLevels, 0) ? pMain->AllLevels() : colLevels)
            {
                RefOrder colLeft = std::exchange(pMain->colLevels[lLevel], {});
                while (!colLeft.empty())
                {
                    const auto drawn =
                        colLeft.begin() + static_cast<std::ptrdiff_t>(m_cSameChance.Next() *
                                                                      static_cast<double>(colLeft.size()));
                    pMain->colLevels[lLevel].push_back(*drawn);
                    colLeft.erase(drawn);
                }
            }
            m_ref.colAffected.insert(pMain);
        }
    }

    void MoveInCategory()
    {
        const auto [pMain, lLevel] = DrawPlace();
        if (!pMain)
            return;
        RefOrder& colOrder = pMain->colLevels[lLevel];
        RefOrder colMoved = DrawCuts(3);
        for (RefCut* pCut : colOrder)
            if (Chance(30))
                AddOnce(colMoved, pCut);
        const auto end = static_cast<std::int32_t>(colOrder.size()) + 1;
        const std::int32_t lPosInto = static_cast<std::int32_t>(Draw(colOrder.size() + 5)) - 2;
        m_sSeries = pMain->sName + std::to_wstring(lLevel);
        for (const RefCut* pCut : colMoved)
            m_sSeries += L" " + pCut->sKey;
        m_cLib.cSchedMan->MoveCutsInCategory(CatOf(pMain, lLevel), ObjectsOf(colMoved), lPosInto);
        std::erase_if(colMoved, [&](const RefCut* pCut) { return !Contains(colOrder, pCut); });
        if (colMoved.empty())
            return;
        const auto IsMoved = [&](const RefCut* pCut) { return Contains(colMoved, pCut); };
        const auto into = colOrder.begin() + std::clamp(lPosInto, 1, end) - 1;
        const auto at = into - colOrder.begin() - std::count_if(colOrder.begin(), into, IsMoved);
        std::erase_if(colOrder, IsMoved);
        colOrder.insert(colOrder.begin() + at, colMoved.begin(), colMoved.end());
        m_ref.colAffected.insert(pMain);
    }

    // ---- settings

    void ChangeRules()
    {
        const auto [pMain, lLevel] = DrawPlace();
        if (!pMain)
            return;
        const auto lMins = static_cast<std::int32_t>(Draw(3));
        m_cLib.cSchedMan->ChangeRules(CatOf(pMain, lLevel), {lMins, {}, {}, {}});
        m_ref.settings.Set({Lower(pMain->sName), lLevel}, lMins);
    }
    void HostChangesRules()
    {
        const auto [pMain, lLevel] = DrawPlace();
        if (!pMain)
            return;
        const auto lMins = static_cast<std::int32_t>(Draw(3));
        CatOf(pMain, lLevel)->Rules()->SetArtistSepMins(lMins);
        m_ref.settings.Set({Lower(pMain->sName), lLevel}, lMins);
    }
    void SwitchFeatured()
    {
        const bool bOn = Chance(50);
        m_cLib.cSchedMan->SetFeaturedArtists(bOn);
        m_ref.settings.Set(RefSettings::featured, bOn ? 1 : 0);
    }

    // ---- undo

    using Steps = std::vector<RefStep>;
    void AddStep(Steps& colSteps, const RefState& before, const std::wstring& sSeries = {})
    {
        if (StateOf(m_ref) == before)
            return;
        const RefStep step{before, StateOf(m_ref), sSeries};
        if (!colSteps.empty() && colSteps.back().GoesOn(step))
        {
            colSteps.back().Take(step);
            if (colSteps.back().Touched().empty())
                colSteps.pop_back();
            return;
        }
        EndSeries();
        colSteps.push_back(step);
        if (colSteps.size() > UndoSteps::mostSteps)
            colSteps.erase(colSteps.begin());
    }
    void EndSeries()
    {
        for (RefStep& step : m_colUndo)
            step.sSeries.clear();
    }
    void Undo() { Reverse(m_colUndo, m_colRedo, &clsSchedMan::Undo); }
    void Redo() { Reverse(m_colRedo, m_colUndo, &clsSchedMan::Redo); }
    void Reverse(Steps& colFrom, Steps& colTo, std::wstring (clsSchedMan::*reverse)())
    {
        const auto run = [&] { (m_cLib.cSchedMan.get()->*reverse)(); };
        EndSeries();
        const std::optional<RefState> failed = std::exchange(m_failed, {});
        if (colFrom.empty())
        {
            EXPECT_THROW(run(), RuntimeError);
            return;
        }
        RefReversal reversal(m_ref, colFrom.back());
        const Trouble trouble = DrawTrouble(reversal.colCuts);
        const bool bCutFails =
            trouble.pCut && ((reversal.ChangesLevel(*trouble.pCut) && trouble.sMember == "SetCatLevel") ||
                             (reversal.ChangesNames(*trouble.pCut) && trouble.sMember == "SetCategoryText"));
        const bool bLeavesOut = bCutFails && failed == colFrom.back().before;
        const bool bFails =
            (trouble.bRefusesCommit && !reversal.colCuts.empty()) || (bCutFails && !bLeavesOut);
        if (bCutFails && !bLeavesOut)
            m_failed = colFrom.back().before;
        m_ref.colAffected = WrittenAhead(reversal.colCuts, [&](const RefMain& main, std::int32_t lLevel) {
            return reversal.Touches(main, lLevel);
        });
        if (bFails)
            EXPECT_THROW(run(), RuntimeError);
        else
            run();
        EndTrouble(trouble, false);
        if (bFails)
            return;
        const RefState now = StateOf(m_ref);
        if (bLeavesOut)
            std::erase(reversal.colCuts, trouble.pCut);
        reversal.Run();
        colFrom.pop_back();
        AddStep(colTo, now);
    }

    // ---- picks, saves and starts

    void PickCut()
    {
        const std::wstring sName = DrawName();
        const std::int32_t lLevel = DrawLevel();
        const bool bOpener = Chance(40);
        const bool bSave = Chance(60);
        const RotationRequest request{sName + L"\t" + std::to_wstring(lLevel), bOpener, nullptr, Chance(50)};
        const std::shared_ptr<Cut> cPicked = m_cLib.cSchedMan->NextCutFromRotation(request, bSave).cCut;
        ASSERT_TRUE(cPicked);
        RefMain* pMain = m_ref.Main(sName);
        if (!pMain || !pMain->colLevels.contains(lLevel))
        {
            EXPECT_EQ(cPicked->KindCode(), pMain ? eKindLevelNotFound : eKindMainCatNotFound);
            return;
        }
        RefOrder& colOrder = pMain->colLevels[lLevel];
        const RefCut* pChosen = nullptr;
        for (std::size_t left = colOrder.size(); left > 0 && !pChosen; --left)
        {
            RefCut* pHead = colOrder.front();
            std::rotate(colOrder.begin(), colOrder.begin() + 1, colOrder.end());
            if (!bOpener || pHead->bOpener)
                pChosen = pHead;
        }
        EXPECT_EQ(cPicked->KindCode(), pChosen            ? eKindChosen
                                       : colOrder.empty() ? eKindLevelEmpty
                                                          : eKindNothingSchedulable);
        EXPECT_EQ(cPicked->Key().Text(), pChosen ? pChosen->sKey : L"");
        if (colOrder.empty())
            return;
        if (bSave)
            m_ref.colAffected.insert(pMain);
        else
            m_ref.colUnsaved.insert(Lower(pMain->sName));
    }

    void Save()
    {
        if (RefMain* pMain = DrawMain(); pMain && Chance(50))
        {
            EXPECT_EQ(m_cLib.cSchedMan->SaveHistoryAndOrdering(CatOf(pMain)), !pMain->colLevels.empty());
            m_ref.Save(*pMain);
            return;
        }
        for (const auto& pMain : m_ref.colMains)
            m_ref.Save(*pMain);
        EXPECT_EQ(m_cLib.cSchedMan->SaveHistoryAndOrdering(nullptr),
                  !AnyOf(m_ref.colMains, [](const auto& pMain) { return pMain->colLevels.empty(); }));
        EXPECT_TRUE(m_cLib.cSchedMan->SaveCatNames());
        m_ref.SaveList();
    }

    void Populate()
    {
        EndSeries();
        m_cLib.cSchedMan->PopulateFromDataBase(m_cDataBase, sRadio);
    }

    // Steps that name cuts, but none that is still there, are taken for those of another database.
    bool StepsAreForeign() const
    {
        const auto namesACut = [&](const RefStep& step) {
            const std::set<RefLevel> touched = step.Touched();
            return AnyOf(m_ref.colCuts, [&](const auto& pCut) {
                return AnyOf(touched,
                             [&](const RefLevel& level) { return step.before.IsIn(pCut->sKey, level); });
            });
        };
        const bool bNone = m_colUndo.empty() && m_colRedo.empty();
        return !bNone && !AnyOf(m_colUndo, namesACut) && !AnyOf(m_colRedo, namesACut);
    }

    void Reload()
    {
        if (StepsAreForeign())
            return;
        m_ref.SaveBeforeReading();
        Populate();
        m_ref.Reload();
    }

    void Restart()
    {
        if (StepsAreForeign())
            return;
        m_cLib.cSchedMan = std::make_shared<clsSchedMan>(m_cLib.cMod);
        Populate();
        m_cLib.cSchedMan->SetRotatesAllowed(true);
        m_ref.SaveList();
        m_ref.colMains.clear();
        m_ref.Reload();
    }

    // ---- comparing

    void CompareMain(clsCat& cMainCat, const TextKey& cKey, const RefMain& main)
    {
        ASSERT_EQ(cMainCat.CatName(), main.sName);
        ASSERT_TRUE(EqualIgnoringCase(cKey.Text(), main.sName + L"\t0"));
        const CatCollection& colSubCats = *cMainCat.SubCats();
        ASSERT_EQ(colSubCats.Count(), main.colLevels.size());
        std::size_t at = 0;
        for (const auto& [lLevel, colOrder] : main.colLevels)
        {
            clsCat& cSubCat = *colSubCats.At(at);
            ASSERT_EQ(cSubCat.CatLevel(), lLevel);
            ASSERT_EQ(cSubCat.CatName(), main.sName);
            ASSERT_EQ(cSubCat.MainCat().get(), &cMainCat);
            ASSERT_EQ(colSubCats.KeyAt(at++)->Text(), std::to_wstring(lLevel));
            CompareLevel(cSubCat, colOrder);
            const std::int32_t lMins = m_ref.settings.Of({Lower(main.sName), lLevel});
            const auto cSaved = clsCatRules::Read(m_cLib.cMod, clsCat::RulesID(main.sName, lLevel));
            ASSERT_EQ(*cSubCat.PresentRules()->Stored().lArtist, lMins);
            ASSERT_EQ(*cSaved->Stored().lArtist, lMins);
        }
    }

    static void CompareLevel(clsCat& cSubCat, const RefOrder& colOrder)
    {
        const CutCollection& colCuts = *cSubCat.SchedCuts();
        ASSERT_EQ(colCuts.Count(), colOrder.size());
        ASSERT_EQ(cSubCat.TotalCuts(), static_cast<std::int32_t>(colOrder.size()));
        double dTotal = 0;
        for (std::size_t at = 0; at < colOrder.size(); ++at)
        {
            ASSERT_EQ(colCuts.KeyAt(at)->Text(), colOrder[at]->sKey);
            const Cut& cCut = *colCuts.At(at);
            ASSERT_EQ(cCut.Key(), *colCuts.KeyAt(at));
            ASSERT_EQ(cCut.CategoryNames(), colOrder[at]->colNames); // an object of the database, not a copy
            dTotal += colOrder[at]->lRunTime;
        }
        const double dAverage = colOrder.empty() ? 0 : dTotal / static_cast<double>(colOrder.size());
        ASSERT_EQ(cSubCat.AverageRunTimemS(), static_cast<std::int32_t>(std::nearbyint(dAverage)));
    }

    std::mt19937 m_engine;
    RadioPorts m_cPorts;
    Library m_cLib{m_cPorts};
    std::shared_ptr<BatchingDataBase> m_cDataBase = std::make_shared<BatchingDataBase>();
    SeededRandom m_cSameChance; // draws what the manager's draws
    Reference m_ref;
    std::wstring m_sSeries;           // of the operation that runs
    std::optional<RefState> m_failed; // before the step that a cut has just kept from being reversed
    Steps m_colUndo;                  // the next one last
    Steps m_colRedo;
    unsigned m_keys = 0;
};

void RunModel(std::uint32_t seed, int steps)
{
    SCOPED_TRACE("RAVLO_MODEL_SEED=" + std::to_string(seed));
    Model cModel(seed);
    for (int step = 1; step <= steps; ++step)
    {
        const char* sOperation = cModel.Step();
        cModel.CompareTree();
        cModel.CompareFiles();
        if (step % 1000 == 0)
            cModel.ForgetLog();
        ASSERT_FALSE(testing::Test::HasFailure()) << "step " << step << ": " << sOperation;
    }
}

// RAVLO_LONG=1 runs 400 000 operations; RAVLO_MODEL_SEED=n repeats one seed of them.
TEST(Model, RandomOperationsAgreeWithAPlainReference)
{
    constexpr std::uint32_t seeds = 8;
    const bool bLong = std::getenv("RAVLO_LONG") != nullptr;
    const char* sGiven = std::getenv("RAVLO_MODEL_SEED");
    const int steps = bLong || sGiven ? 50'000 : 1'000;
    const std::uint32_t first = sGiven ? static_cast<std::uint32_t>(std::strtoul(sGiven, nullptr, 10)) : 1;
    for (std::uint32_t seed = first; seed < first + (sGiven ? 1 : seeds); ++seed)
    {
        std::cout << "seed " << seed << ", " << steps << " operations" << std::endl;
        RunModel(seed, steps);
        ASSERT_FALSE(HasFatalFailure());
    }
}

} // namespace
} // namespace ravlo::test
