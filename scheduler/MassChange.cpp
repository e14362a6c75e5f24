// SPDX-License-Identifier: MIT
#include "scheduler/MassChange.h"

#include "base/Text.h"
#include "scheduler/CategoryEditing.h"
#include "scheduler/UndoTexts.h"

#include <algorithm>

namespace ravlo
{

namespace
{

constexpr std::size_t movedPerReport = 50;
constexpr std::size_t copiedPerReport = 100;
constexpr std::uint32_t lCopyPauseMs = 50;
const wchar_t* const sTargetGone = L"The category to change into does not exist any more";

// The tree's category of that name and number; otherwise the given one, which contains none of the tree's
// cuts.
std::shared_ptr<clsCat> PresentOrGiven(const SchedulerState& cState, const std::shared_ptr<clsCat>& cCat)
{
    const std::shared_ptr<clsCat> cPresent = cState.Present(cCat);
    return cPresent ? cPresent : cCat;
}

} // namespace

std::int32_t OwnLevelOf(const Cut& cCut) { return std::max(cCut.CatLevel(), 1); }

// On purpose no blank after the first comma: stations know the text like this.
void ShowCopyRefused(ModScheduler& cMod)
{
    cMod.Box(BoxIcon::Information, BoxButtons::Ok, L"Multiple Category Levels Not Allowed!",
             L"Items can only be in one category level,"
             L"even though they may be in multiple categories.\r\n\r\n"
             L"Copying the items to this level is therefore not permitted.\r\n\r\n"
             L"You DO have the option to move the items to this level,\r\n"
             L"in which case this will change the level for EVERY category the items are in.");
}

MassChange::MassChange(SchedulerState& cState, Synchronisation& cSync, eCatDragOptions eCatDragOption,
                       const Cats& colSubCatsFrom, const std::shared_ptr<clsCat>& cSubCatTo)
    : m_cState(cState), m_cSync(cSync), m_eOption(eCatDragOption), m_cTo(PresentOrGiven(cState, cSubCatTo)),
      m_cMainCatTo(m_cTo->CatLevel() == 0 ? m_cTo : m_cTo->MainCat())
{
    for (const std::shared_ptr<clsCat>& cFrom : colSubCatsFrom)
        if (cFrom)
            m_colFrom.push_back(PresentOrGiven(cState, cFrom));
}

void MassChange::Run(const Cuts& colCutsToChange, bool& bCreatedNewSubCats)
{
    Cuts colCuts;
    std::copy_if(colCutsToChange.begin(), colCutsToChange.end(), std::back_inserter(colCuts),
                 [](const std::shared_ptr<Cut>& cCut) { return cCut != nullptr; });
    if (colCuts.empty())
        return;
    if (!TargetExists())
        throw RuntimeError(error::InvalidProcedureCall, sTargetGone);
    if (m_eOption == eCopyHere)
        m_bRefused =
            std::erase_if(colCuts, [this](const std::shared_ptr<Cut>& cCut) { return IsRefused(cCut); }) > 0;
    const std::size_t tried = colCuts.empty() ? 0 : RunChanges(colCuts, bCreatedNewSubCats);
    if (m_bRefused)
        ShowCopyRefused(m_cState.cMod);
    if (tried < colCuts.size())
        throw RuntimeError(error::InvalidProcedureCall, std::wstring(sTargetGone) + L" (" +
                                                            CountText(colCuts.size() - tried) +
                                                            L" cuts were left as they are)");
}

// Returns the number of cuts that were tried.
std::size_t MassChange::RunChanges(const Cuts& colCuts, bool& bCreatedNewSubCats)
{
    const auto TextFor = [this](std::size_t cuts) {
        return (m_eOption == eCopyHere ? L"copy of " : L"move of ") + CountedCuts(cuts) + L" to " +
               ListCats({m_cTo});
    };
    CutChanges cChanges(m_cState, m_cSync, CutChanges::Origin::Own,
                        [&](const ChangeRecord& record, std::size_t cuts) {
        m_cState.cUndo.Add(TextFor(cuts), record);
    });
    if (colCuts.size() > movedPerReport)
        cChanges.WorkInParts(TextFor(colCuts.size()));
    const std::size_t tried = m_eOption == eCopyHere ? Copy(cChanges, colCuts) : Move(cChanges, colCuts);
    CutChanges::Ending ending;
    ending.show = [this](const RuntimeError& cError) {
        m_cState.cMod.ShowCriticalError(L"Error in DoMassCatChange [cSchedMan]", cError);
    };
    for (const ChangeRecord::Category& category : cChanges.Finish(ending).colMade)
        bCreatedNewSubCats = bCreatedNewSubCats || category.lLevel != 0;
    return tried;
}

bool MassChange::TargetExists() const
{
    return m_cState.Contains(m_cMainCatTo) &&
           (m_cTo == m_cMainCatTo || m_cMainCatTo->SubCat(m_cTo->CatLevel()) == m_cTo);
}

// ---- copying ----

std::size_t MassChange::Copy(CutChanges& cChanges, const Cuts& colCuts)
{
    const std::wstring sInto = ListCats({m_cTo});
    const std::wstring sFrom = ListCats(m_colFrom, mostListed);
    m_cState.cEvents.ProgressStart(L"Copying into category...", std::ssize(colCuts));
    CutChanges::Rhythm rhythm;
    rhythm.cuts = copiedPerReport;
    rhythm.lPauseMs = lCopyPauseMs;
    rhythm.tell = [&](std::size_t done) {
        m_cState.cEvents.Progress(L"Copying into " + sInto + L" from " + sFrom,
                                  static_cast<std::int64_t>(done), std::ssize(colCuts));
    };
    rhythm.goOn = [this] { return TargetExists(); }; // an event or pump may have deleted or reloaded it
    const std::size_t tried = cChanges.Run(
        colCuts, [&](const std::shared_ptr<Cut>& cCut, std::size_t) { CopyCut(cChanges, cCut); }, rhythm);
    m_cState.cEvents.Progress(L"Copied into " + sInto, static_cast<std::int64_t>(tried), std::ssize(colCuts));
    m_cState.cEvents.ProgressDone(L"Category copy complete.");
    return tried;
}

bool MassChange::MayCopy(const Cut& cCut) const
{
    return m_cTo == m_cMainCatTo || OwnLevelOf(cCut) == m_cTo->CatLevel();
}

bool MassChange::IsRefused(const std::shared_ptr<Cut>& cCut) const noexcept
{
    try
    {
        return !MayCopy(*m_cState.OwnOf(cCut));
    }
    catch (...)
    {
        return false; // the change will fail with the same error and report it
    }
}

void MassChange::CopyCut(CutChanges& cChanges, const std::shared_ptr<Cut>& cCut)
{
    if (!MayCopy(*cCut))
    {
        m_bRefused = true; // others have changed its number since
        return;
    }
    Plan plan{OwnLevelOf(*cCut), {}, {}, {}, {}};
    if (cCut->CatLevel() <= 0)
    {
        // A cut that is in no level yet starts in level 1.
        PlanNames(cChanges, *cCut, {}, plan);
        cCut->SetCatLevel(plan.lLevel);
    }
    for (const std::shared_ptr<clsCat>& cMainCat : plan.colJoins)
        if (cChanges.Place(cCut, cMainCat))
            cChanges.Touch(cMainCat->CatName());
    if (cChanges.Place(cCut, m_cTo))
        cChanges.Touch(m_cMainCatTo->CatName());
}

// ---- moving ----

std::size_t MassChange::Move(CutChanges& cChanges, const Cuts& colCuts)
{
    m_cState.cEvents.ProgressStart(L"Applying Mass Move Change...", std::ssize(colCuts));
    CutChanges::Rhythm rhythm;
    rhythm.cuts = movedPerReport;
    rhythm.tell = [&](std::size_t done) {
        m_cState.cEvents.Progress(L"Applying Mass Move Change " + CountText(done) + L" of " +
                                      CountText(colCuts.size()),
                                  static_cast<std::int64_t>(done), std::ssize(colCuts));
    };
    rhythm.goOn = [this] { return TargetExists(); };
    rhythm.mayLeave = [this](const SchedulerState::Place& place) { return MayLeave(place); };
    const std::size_t tried = cChanges.Run(
        colCuts, [&](const std::shared_ptr<Cut>& cCut, std::size_t) { MoveCut(cChanges, cCut); }, rhythm);
    m_cState.cEvents.ProgressDone(L"Applied Mass Move.");
    return tried;
}

bool MassChange::LeavesCategory(const SchedulerState::Place& place) const
{
    return place.cMainCat != m_cMainCatTo &&
           (m_eOption == eMoveExclusiveHere || Contains(m_colFrom, place.cSubCat));
}

// Whether a move may remove cuts from that level: they leave the category, or get the target's number.
bool MassChange::MayLeave(const SchedulerState::Place& place) const
{
    return LeavesCategory(place) ||
           (m_cTo->CatLevel() != 0 && m_cTo->CatLevel() != place.cSubCat->CatLevel());
}

MassChange::Plan MassChange::PlanFor(CutChanges& cChanges, const Cut& cCut) const
{
    Plan plan{m_cTo->CatLevel() != 0 ? m_cTo->CatLevel() : OwnLevelOf(cCut), {}, {}, {m_cMainCatTo}, {}};
    const std::vector<SchedulerState::Place> colPlaces = m_cState.PlacesOf(cCut.Key());
    for (const SchedulerState::Place& place : colPlaces)
    {
        const bool bLeavesCategory = LeavesCategory(place);
        if (!bLeavesCategory && place.cSubCat->CatLevel() == plan.lLevel)
            plan.colStays.push_back(place.cMainCat); // already in the right level: keeps its position
        else
            plan.colLeaves.push_back(place);
        if (!bLeavesCategory && !Contains(plan.colJoins, place.cMainCat))
            plan.colJoins.push_back(place.cMainCat); // stays in this category, in the new level
    }
    PlanNames(cChanges, cCut, colPlaces, plan);
    std::erase_if(plan.colJoins,
                  [&](const std::shared_ptr<clsCat>& cMainCat) { return Contains(plan.colStays, cMainCat); });
    // A cut may leave one level of a category but stay in another, and then belong in the level it leaves: it
    // moves to the end there.
    std::erase_if(plan.colLeaves, [&](const SchedulerState::Place& place) {
        return place.cSubCat->CatLevel() == plan.lLevel && Contains(plan.colJoins, place.cMainCat);
    });
    for (const SchedulerState::Place& place : plan.colLeaves)
        if (!Contains(plan.colJoins, place.cMainCat) && !Contains(plan.colStays, place.cMainCat))
            plan.colNamesLost.push_back(place.cMainCat->CatName());
    return plan;
}

// Plans the categories that the cut names but has no level in, as happens to a cut without a level number.
// With a number it belongs there and would be there after the next start.
void MassChange::PlanNames(CutChanges& cChanges, const Cut& cCut,
                           const std::vector<SchedulerState::Place>& colPlaces, Plan& plan) const
{
    for (const std::wstring& sName : AssignedNames(cCut))
    {
        const bool bHasPlace =
            std::any_of(colPlaces.begin(), colPlaces.end(), [&](const SchedulerState::Place& place) {
                return EqualIgnoringCase(place.cMainCat->CatName(), sName);
            });
        if (bHasPlace || sName.empty() || EqualIgnoringCase(sName, m_cMainCatTo->CatName()))
            continue;
        if (m_eOption == eMoveExclusiveHere)
            plan.colNamesLost.push_back(sName);
        else
            plan.colJoins.push_back(cChanges.Ensure({sName, TextKey(CategoryKey(sName, 0))}));
    }
}

// Steps that may fail come first. The cut joins before it leaves, so that code called in between finds it in
// at least one of the two.
void MassChange::MoveCut(CutChanges& cChanges, const std::shared_ptr<Cut>& cCut)
{
    const Plan plan = PlanFor(cChanges, *cCut);
    const TextKey cKey = cCut->Key();
    const std::int32_t lOldLevel = cCut->CatLevel();
    ChangeCut(*cCut, plan);
    for (const std::shared_ptr<clsCat>& cMainCat : plan.colJoins)
        cChanges.PlaceLast(cCut, cMainCat);
    for (const SchedulerState::Place& place : plan.colLeaves)
        cChanges.Leave(place, cKey);
    for (const std::shared_ptr<clsCat>& cMainCat : plan.colJoins)
        cChanges.Touch(cMainCat->CatName());
    // Categories where it keeps its position are saved too when its level number changed, since its record
    // contains the number.
    for (const std::shared_ptr<clsCat>& cMainCat : plan.colStays)
        if (cMainCat == m_cMainCatTo || lOldLevel != plan.lLevel)
            cChanges.Touch(cMainCat->CatName());
}

// Gives the cut its new level and category names.
void MassChange::ChangeCut(Cut& cCut, const Plan& plan)
{
    if (cCut.CatLevel() != plan.lLevel)
        cCut.SetCatLevel(plan.lLevel);
    for (const std::shared_ptr<clsCat>& cMainCat : plan.colJoins)
        cCut.AddCategoryName(cMainCat->CatName());
    for (const std::wstring& sName : plan.colNamesLost)
        cCut.RemoveCategoryName(sName);
}

} // namespace ravlo
