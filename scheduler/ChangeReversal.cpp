// SPDX-License-Identifier: MIT
#include "scheduler/ChangeReversal.h"

#include "base/CaseFolding.h"
#include "base/Text.h"
#include "rotation/RotationOrder.h"
#include "scheduler/CategoryEditing.h"
#include "scheduler/CutChanges.h"
#include "scheduler/CutNames.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace ravlo
{

namespace
{

std::wstring NameOf(const ChangeRecord::Category& category)
{
    return category.lLevel == 0 ? category.sCatName : category.sCatName + L" " + DecimalText(category.lLevel);
}

bool IsMain(const ChangeRecord::Category& category) { return category.lLevel == 0; }

std::vector<TextKey> KeysIn(const std::optional<SchedulerState::Place>& place)
{
    return place ? OrderOf(*place->cSubCat->SchedCuts()) : std::vector<TextKey>();
}

class Reversal
{
public:
    using Reversed = std::function<void(const ChangeRecord&)>;
    Reversal(SchedulerState& cState, Synchronisation& cSync, const ChangeRecord& record, Failing eFailing,
             const Reversed& reversed)
        : m_cState(cState), m_record(record), m_eFailing(eFailing), m_population(cState.populations),
          m_reversed(reversed), m_cChanges(cState, cSync, CutChanges::Origin::Own,
                                           [this](const ChangeRecord& inverse, std::size_t) {
        m_bReversed = true;
        m_reversed(inverse);
          })
    {
    }
    PassedOver Run(const wchar_t* sTitle);

private:
    struct Level // whose cuts are to be as before
    {
        ChangeRecord::Category category;
        const std::vector<TextKey>* pKeys; // null: a new level, which contained none

        const std::vector<TextKey>& Keys() const noexcept
        {
            static const std::vector<TextKey> colNone;
            return pKeys ? *pKeys : colNone;
        }
    };
    struct Change // of a cut
    {
        const ChangeRecord::Cut* cut;
        std::vector<const Level*> colJoins;
        std::vector<const Level*> colLeaves;
    };

    void FindLevels();
    void FindCuts();
    void FindCut(const ChangeRecord::Cut& cut, std::shared_ptr<Cut> cCut);
    void Fails(const TextKey& cKey);
    void Attempt(const std::function<void()>& body) noexcept;
    void MakeDeletedCats();
    void PlanPlaces();
    void ChangeCuts();
    void ChangeCut(const std::shared_ptr<Cut>& cCut, const Change& change);
    void PutOrderBack(const ChangeRecord::Order& order);
    void DeleteMadeCats();
    void DeleteMadeLevel(const ChangeRecord::Category& made);
    void DeleteMadeMainCat(const ChangeRecord::Category& made);
    void Count(const Level& level);
    void Finish(const wchar_t* sTitle);
    void DeleteFiles();
    std::shared_ptr<clsCat> Ensure(const ChangeRecord::Category& category);
    std::optional<SchedulerState::Place> PlaceOf(const ChangeRecord::Category& category) const;
    void RequireSameTree() const;
    bool IsNoted(const TextKey& cKey) const
    {
        return m_colChangedSince.contains(cKey) || m_colFailed.contains(cKey);
    }

    SchedulerState& m_cState;
    const ChangeRecord& m_record;
    const Failing m_eFailing;
    const std::uint64_t m_population;
    const Reversed& m_reversed;
    bool m_bReversed = false;
    CutChanges m_cChanges;
    std::vector<Level> m_colLevels;
    Cuts m_colCuts;
    std::vector<Change> m_colChanges;                        // of each of m_colCuts
    std::unordered_map<TextKey, std::size_t> m_colPositions; // in m_colCuts
    std::unordered_set<TextKey> m_colGone;
    std::unordered_set<TextKey> m_colChangedSince;
    std::unordered_set<TextKey> m_colNew;
    std::unordered_set<TextKey> m_colFailed;
    std::vector<std::wstring> m_colWithoutLevels; // main categories that lost their last level here
    bool m_bMainCatDeleted = false;
    PassedOver m_passedOver;
};

PassedOver Reversal::Run(const wchar_t* sTitle)
{
    FindLevels();
    FindCuts();
    RequireSameTree();
    MakeDeletedCats();
    PlanPlaces();
    ChangeCuts();
    // From here on the cuts are changed: what fails is passed over.
    for (const ChangeRecord::Order& order : m_record.colOrders)
        Attempt([&] { PutOrderBack(order); });
    Attempt([&] { DeleteMadeCats(); });
    for (const Level& level : m_colLevels)
        Attempt([&] { Count(level); });
    m_passedOver.goneCuts = m_colGone.size();
    m_passedOver.changedCuts = m_colChangedSince.size();
    m_passedOver.newCuts = m_colNew.size();
    m_passedOver.failedCuts = m_colFailed.size();
    Attempt([&] { Finish(sTitle); });
    return m_passedOver;
}

void Reversal::Attempt(const std::function<void()>& body) noexcept
{
    try
    {
        body();
    }
    catch (...)
    {
        m_passedOver.bIncomplete = true;
        m_cState.cMod.LogError(L"ReverseChange", CurrentError());
    }
}

// Reading and changing cuts may let the host run, which may replace the tree. Once all cuts are changed, a
// new tree has their new places, and what is left to do is looked up in it by name.
void Reversal::RequireSameTree() const
{
    if (m_cState.populations != m_population)
        throw RuntimeError(error::PermissionDenied, L"The categories were read from the database again");
}

std::optional<SchedulerState::Place> Reversal::PlaceOf(const ChangeRecord::Category& category) const
{
    const std::shared_ptr<clsCat> cMainCat = m_cState.MainCat(category.sCatName);
    const std::shared_ptr<clsCat> cSubCat = cMainCat ? cMainCat->SubCat(category.lLevel) : nullptr;
    return cSubCat ? std::optional(SchedulerState::Place{cMainCat, cSubCat}) : std::nullopt;
}

// ---- finding

void Reversal::FindLevels()
{
    for (const ChangeRecord::Order& order : m_record.colOrders)
        m_colLevels.push_back({order.category, &order.colKeys});
    for (const ChangeRecord::Category& made : m_record.colMade)
        if (made.lLevel != 0)
            m_colLevels.push_back({made, nullptr});
}

void Reversal::FindCuts()
{
    const std::shared_ptr<DataBase> cDataBase = m_cState.cDataBase;
    for (const ChangeRecord::Cut& cut : m_record.colCuts)
        if (std::shared_ptr<Cut> cCut = cDataBase ? cDataBase->CutByKey(cut.cKey) : nullptr)
            FindCut(cut, std::move(cCut));
        else
            m_colGone.insert(cut.cKey);
}

void Reversal::FindCut(const ChangeRecord::Cut& cut, std::shared_ptr<Cut> cCut)
{
    try
    {
        const auto Is = [lLevel = cCut->CatLevel(), sNames = NamesTextOf(*cCut)](const auto& state) {
            return lLevel == state.lCatLevel && HaveSameNames(sNames, state.sCategoryText);
        };
        if (cut.after && !Is(*cut.after))
        {
            if (!Is(cut.before)) // as in a change that was interrupted before it
                m_colChangedSince.insert(cut.cKey);
            return;
        }
    }
    catch (...)
    {
        return Fails(cut.cKey);
    }
    m_colPositions.emplace(cut.cKey, m_colCuts.size());
    m_colCuts.push_back(std::move(cCut));
    m_colChanges.push_back({&cut, {}, {}});
}

// Call inside a catch block.
void Reversal::Fails(const TextKey& cKey)
{
    const RuntimeError cError = CurrentError();
    RequireSameTree();
    if (m_eFailing == Failing::Prevents)
        throw ReversalFailure(cError, L"leaves out the cuts that fail");
    m_colFailed.insert(cKey);
}

// Plans which levels each cut joins and leaves to be where it was. The recorded orders say where, rather than
// the cut's names: a host may have placed cuts in levels that they do not name.
void Reversal::PlanPlaces()
{
    std::vector<const Level*> colContained(m_colCuts.size()); // the last level that contained the cut
    for (const Level& level : m_colLevels)
    {
        const std::optional<SchedulerState::Place> place = PlaceOf(level.category);
        for (const TextKey& cKey : level.Keys())
            if (const auto found = m_colPositions.find(cKey); found != m_colPositions.end())
            {
                colContained[found->second] = &level;
                if (!place || !place->cSubCat->SchedCuts()->Exists(cKey))
                    m_colChanges[found->second].colJoins.push_back(&level);
            }
        for (const TextKey& cKey : KeysIn(place))
            if (const auto found = m_colPositions.find(cKey);
                found != m_colPositions.end() && colContained[found->second] != &level)
                m_colChanges[found->second].colLeaves.push_back(&level);
    }
}

// ---- changing

std::shared_ptr<clsCat> Reversal::Ensure(const ChangeRecord::Category& category)
{
    const std::wstring& sName = category.sCatName;
    if (!m_cState.MainCat(sName))
        m_cState.cCategoryList.Created(sName);
    const std::shared_ptr<clsCat> cMainCat =
        m_cChanges.Ensure({sName, TextKey(CategoryKey(sName, 0))},
                          category.lLevel == 0 ? category.position : std::numeric_limits<std::size_t>::max());
    m_cChanges.Touch(cMainCat->CatName());
    return cMainCat;
}

void Reversal::MakeDeletedCats()
{
    std::vector<ChangeRecord::Category> colDeleted = m_record.colDeleted;
    const auto levels = std::stable_partition(colDeleted.begin(), colDeleted.end(), IsMain);
    std::sort(colDeleted.begin(), levels,
              [](const auto& left, const auto& right) { return left.position < right.position; });
    for (const ChangeRecord::Category& deleted : colDeleted)
        if (const std::shared_ptr<clsCat> cMainCat = Ensure(deleted); deleted.lLevel != 0)
            m_cChanges.EnsureLevel(cMainCat, deleted.lLevel);
}

void Reversal::ChangeCuts()
{
    if (m_colCuts.empty())
        return;
    CutChanges::Rhythm rhythm;
    rhythm.mayLeave = [&](const SchedulerState::Place& place) {
        return std::any_of(m_colLevels.begin(), m_colLevels.end(), [&](const Level& level) {
            return level.category.lLevel == place.cSubCat->CatLevel() &&
                   EqualIgnoringCase(level.category.sCatName, place.cMainCat->CatName());
        });
    };
    m_cChanges.RunWhole(
        m_colCuts,
        [&](const std::shared_ptr<Cut>& cCut, std::size_t at) { ChangeCut(cCut, m_colChanges[at]); }, rhythm,
        [&](std::size_t at) { Fails(m_colChanges[at].cut->cKey); });
}

void Reversal::ChangeCut(const std::shared_ptr<Cut>& cCut, const Change& change)
{
    const TextKey cKey = cCut->Key();
    const ChangeRecord::State& before = change.cut->before;
    if (cCut->CatLevel() != before.lCatLevel)
        cCut->SetCatLevel(before.lCatLevel);
    if (NamesTextOf(*cCut) != before.sCategoryText)
        SetNamesText(*cCut, before.sCategoryText);
    RequireSameTree();
    for (const Level* level : change.colJoins)
    {
        const std::shared_ptr<clsCat> cMainCat = Ensure(level->category);
        const std::shared_ptr<clsCat> cSubCat = m_cChanges.EnsureLevel(cMainCat, level->category.lLevel);
        if (!cSubCat)
            throw RuntimeError(error::InvalidProcedureCall,
                               NameOf(level->category) + L" cannot be made again");
        m_cChanges.Join({cMainCat, cSubCat}, cCut, cKey);
    }
    for (const Level* level : change.colLeaves)
        if (const std::optional<SchedulerState::Place> place = PlaceOf(level->category))
            m_cChanges.Leave(*place, cKey);
    for (const SchedulerState::Place& place : m_cState.PlacesOf(cKey))
        m_cChanges.Touch(place.cMainCat->CatName()); // its records contain the cut's level
}

void Reversal::PutOrderBack(const ChangeRecord::Order& order)
{
    if (const std::optional<SchedulerState::Place> place = PlaceOf(order.category))
        m_cChanges.PutInOrder(*place, order.colKeys);
    else
        m_passedOver.colGoneCats.push_back(NameOf(order.category));
}

// ---- deleting what was made

void Reversal::DeleteMadeCats()
{
    for (auto made = m_record.colMade.rbegin(); made != m_record.colMade.rend(); ++made)
        if (made->lLevel != 0)
            DeleteMadeLevel(*made);
        else
            DeleteMadeMainCat(*made);
}

void Reversal::DeleteMadeLevel(const ChangeRecord::Category& made)
{
    const std::optional<SchedulerState::Place> place = PlaceOf(made);
    if (!place)
        return;
    if (!place->cSubCat->SchedCuts()->Empty())
    {
        m_passedOver.colKeptCats.push_back(NameOf(made));
        return;
    }
    const std::wstring& sName = place->cMainCat->CatName();
    m_cChanges.Deleting(*place->cSubCat);
    place->cMainCat->SubCats()->Remove(DecimalText(made.lLevel));
    m_cChanges.Touch(sName);
    if (place->cMainCat->SubCats()->Empty())
        m_colWithoutLevels.push_back(sName);
}

void Reversal::DeleteMadeMainCat(const ChangeRecord::Category& made)
{
    const std::shared_ptr<clsCat> cMainCat = m_cState.MainCat(made.sCatName);
    if (!cMainCat || !cMainCat->SubCats()->Empty())
        return;
    m_cChanges.Deleting(*cMainCat);
    m_cState.colMainCats->Remove(CategoryKey(made.sCatName, 0));
    m_cState.cCategoryList.Deleted(made.sCatName);
    m_bMainCatDeleted = true;
}

// ---- the end

void Reversal::Count(const Level& level)
{
    const std::optional<SchedulerState::Place> place = PlaceOf(level.category);
    const std::vector<TextKey> colNow = KeysIn(place);
    std::size_t found = 0;
    for (const TextKey& cKey : level.Keys())
        if (place && place->cSubCat->SchedCuts()->Exists(cKey))
            ++found;
        else if (place && !IsNoted(cKey))
            (m_cState.cPlacedCuts.Contains(cKey) ? m_colChangedSince : m_colGone).insert(cKey);
    if (found == colNow.size())
        return;
    const std::unordered_set<TextKey> colBefore(level.Keys().begin(), level.Keys().end());
    for (const TextKey& cKey : colNow)
        if (!colBefore.contains(cKey) && !IsNoted(cKey))
            m_colNew.insert(cKey);
}

void Reversal::Finish(const wchar_t* sTitle)
{
    for (const std::wstring& sName : m_colWithoutLevels)
        m_cChanges.CallerSaves(sName);
    CutChanges::Ending ending;
    ending.beforeSave = [&](std::size_t) {
        if (!m_bReversed)
            m_reversed({});
    };
    ending.afterSave = [this] { DeleteFiles(); };
    ending.show = [&](const RuntimeError& cError) { m_cState.cMod.ShowCriticalError(sTitle, cError); };
    m_cChanges.Finish(ending);
}

// Deletes the files of categories without levels: they would restore them at the next start.
void Reversal::DeleteFiles()
{
    for (const std::wstring& sName : m_colWithoutLevels)
        m_cState.cHistoryFiles.DeleteKnownFile(sName);
    if (m_bMainCatDeleted)
        m_cState.cCategoryList.SaveCatNames(m_cState.colMainCats.get(), m_cState.AppPath());
}

std::wstring CutsAre(std::size_t count, const wchar_t* sOne, const wchar_t* sMany)
{
    return CountText(count) + (count == 1 ? sOne : sMany);
}

} // namespace

std::wstring PassedOver::Text() const
{
    std::vector<std::wstring> colParts;
    if (goneCuts != 0)
        colParts.push_back(CutsAre(goneCuts, L" cut is gone", L" cuts are gone"));
    if (changedCuts != 0)
        colParts.push_back(CutsAre(changedCuts, L" cut was changed since and stays as it is",
                                   L" cuts were changed since and stay as they are"));
    if (failedCuts != 0)
        colParts.push_back(CutsAre(failedCuts, L" cut could not be changed", L" cuts could not be changed"));
    if (newCuts != 0)
        colParts.push_back(CutsAre(newCuts, L" new cut stays", L" new cuts stay"));
    for (const std::wstring& sCat : colGoneCats)
        colParts.push_back(sCat + L" is gone");
    for (const std::wstring& sCat : colKeptCats)
        colParts.push_back(sCat + L" has cuts and stays");
    for (const std::wstring& sSetting : colSettings)
        colParts.push_back(sSetting + L" was changed since and stays as it is");
    if (bFailed)
        colParts.emplace_back(L"it could not be done");
    if (bIncomplete)
        colParts.emplace_back(L"not everything could be put back, see the debug log");
    std::wstring sText;
    for (const std::wstring& sPart : colParts)
        sText += (sText.empty() ? L" (" : L", ") + sPart;
    return sText.empty() ? sText : sText + L")";
}

PassedOver ReverseChange(SchedulerState& cState, Synchronisation& cSync, const ChangeRecord& record,
                         Failing eFailing, const wchar_t* sTitle,
                         const std::function<void(const ChangeRecord&)>& reversed)
{
    return Reversal(cState, cSync, record, eFailing, reversed).Run(sTitle);
}

} // namespace ravlo
