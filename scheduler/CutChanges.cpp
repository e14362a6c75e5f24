// SPDX-License-Identifier: MIT
#include "scheduler/CutChanges.h"

#include "scheduler/CutNames.h"

#include <algorithm>
#include <utility>

namespace ravlo
{

CutChanges::CutChanges(SchedulerState& cState, Synchronisation& cSync, Origin eOrigin, Changed changed)
    : m_cState(cState), m_cHold(cSync), m_eOrigin(eOrigin), m_cPlacement(cState.cMod), m_cRenamed(cState),
      m_changed(std::move(changed))
{
    if (IsOwn())
        m_unit.emplace(cState);
    ++m_cState.openChanges;
}

CutChanges::~CutChanges()
{
    --m_cState.openChanges;
    if (m_bFinished)
        return;
    m_cBatch.reset();
    TakeBack({});
    const auto Attempt = [this](auto&& body) {
        try
        {
            body();
        }
        catch (...)
        {
            m_cState.cMod.LogError(L"CutChanges", CurrentError());
        }
    };
    Attempt([&] { EndRecord(); });
    Attempt([&] {
        m_cPlacement.RecalcTouched();
        SaveAffected(quietly);
    });
}

// ---- the order of work ----

std::size_t CutChanges::Run(const Cuts& colCuts, const Change& change, const Rhythm& rhythm)
{
    const std::span colLeft(colCuts);
    const std::size_t step = rhythm.cuts == 0 ? colCuts.size() : rhythm.cuts;
    std::size_t done = 0;
    Begin();
    for (const std::shared_ptr<Cut>& cCut : colCuts)
    {
        const bool bTell = rhythm.cuts != 0 && (done + 1) % step == 0;
        if (bTell && rhythm.bBeforeTheCut)
            Tell(rhythm, done + 1);
        if (rhythm.goOn && !rhythm.goOn())
            break;
        if (rhythm.mayLeave && done % step == 0)
            GuardEmptying(colLeft.subspan(done, std::min(step, colCuts.size() - done)), rhythm);
        if (cCut)
            Try(cCut, change, done);
        ++done;
        if (!bTell || rhythm.bBeforeTheCut)
            continue;
        Commit();
        if (done < colCuts.size())
            GuardAffected();
        Tell(rhythm, done);
    }
    Commit();
    m_cPlacement.RecalcTouched();
    return done;
}

void CutChanges::RunOne(const std::shared_ptr<Cut>& cCut, const Change& change, const Rhythm& rhythm)
{
    m_bCounts = false;
    Run({cCut}, change, rhythm);
}

void CutChanges::RunWhole(const Cuts& colCuts, const Change& change, const Rhythm& rhythm,
                          const LeaveOut& leaveOut)
{
    Begin();
    if (rhythm.mayLeave)
        GuardEmptying(colCuts, rhythm);
    try
    {
        for (std::size_t at = 0; at < colCuts.size(); ++at)
            TryOrLeaveOut(colCuts[at], change, at, leaveOut);
        if (const std::unique_ptr<DataBase::Batch> cBatch = std::exchange(m_cBatch, nullptr))
            cBatch->Commit();
    }
    catch (...)
    {
        const std::exception_ptr cFailure = std::current_exception();
        m_cBatch.reset();
        TakeBack({});
        m_colUndo.clear(); // what a cut did to follow a tree that was replaced stays
        m_colTouched.clear();
        m_cPlacement.RecalcTouched();
        std::rethrow_exception(cFailure);
    }
    Commit();
    m_cPlacement.RecalcTouched();
}

void CutChanges::Failed(const Cut& cCut) noexcept
{
    if (m_bCounts)
        m_cPlacement.Failed(cCut);
    else
        m_cPlacement.Failed();
}

void CutChanges::Tell(const Rhythm& rhythm, std::size_t done)
{
    Commit();
    if (rhythm.lPauseMs != 0)
        m_cState.cMod.Sleep(rhythm.lPauseMs);
    rhythm.tell(done);
    if (rhythm.bPump)
        m_cState.cMod.Pump();
    Begin();
}

void CutChanges::Begin() noexcept
{
    if (!IsOwn() || m_cBatch)
        return;
    try
    {
        if (const std::shared_ptr<DataBase> cDataBase = m_cState.cDataBase)
            m_cBatch = cDataBase->BeginBatch();
    }
    catch (...)
    {
        m_cPlacement.Failed(); // without a batch, the database writes each change at once
    }
}

void CutChanges::Commit() noexcept
{
    WriteAhead();
    try
    {
        if (const std::unique_ptr<DataBase::Batch> cBatch = std::exchange(m_cBatch, nullptr))
            cBatch->Commit();
    }
    catch (...)
    {
        m_cPlacement.Failed();
        TakeBack({});
    }
    try
    {
        KeepStep();
    }
    catch (...)
    {
        m_cPlacement.Failed(); // the changes are made, only their record is incomplete
    }
}

void CutChanges::WorkInParts(const std::wstring& sWhat)
{
    m_bInParts = true;
    m_unit->WorkInParts(sWhat);
}

void CutChanges::WriteAhead() noexcept
try
{
    if (!m_bInParts)
        return;
    std::vector<ChangeRecord::Cut> colCuts;
    for (; m_cutsAhead < m_colChanged.size(); ++m_cutsAhead)
    {
        ReadAfter(m_colChanged[m_cutsAhead]);
        colCuts.push_back(m_colChanged[m_cutsAhead].record);
    }
    const auto made = static_cast<std::ptrdiff_t>(std::min(m_madeAhead, m_colMade.size()));
    m_madeAhead = m_colMade.size();
    m_unit->WriteAhead(std::move(colCuts), {m_colMade.begin() + made, m_colMade.end()});
}
catch (...)
{
    m_cState.cMod.LogError(L"CutChanges", CurrentError());
}

void CutChanges::KeepStep()
{
    m_colUndo.clear();
    m_colTouched.clear();
    m_cutsAhead = 0;
    m_madeAhead = 0;
    std::vector<ChangedCut> colChanged = std::exchange(m_colChanged, {});
    for (const ChangeRecord::Category& made : std::exchange(m_colMade, {}))
        m_unit->RecordMade(made);
    for (ChangedCut& changed : colChanged)
    {
        ReadAfter(changed);
        m_unit->RecordCut(changed.record, changed.inside);
    }
}

// Does nothing when it is known.
void CutChanges::ReadAfter(ChangedCut& changed) noexcept
try
{
    if (!changed.record.after)
        changed.record.after = ChangeRecord::State{changed.cCut->CatLevel(), NamesTextOf(*changed.cCut)};
}
catch (...)
{
    changed.record.after.reset();
}

ChangeRecord CutChanges::EndRecord() { return m_unit ? m_unit->End(m_changed) : ChangeRecord(); }

ChangeRecord CutChanges::Finish(const Ending& ending)
{
    Commit();
    m_cPlacement.RecalcTouched();
    m_bFinished = true;
    ChangeRecord record = EndRecord();
    if (ending.beforeSave)
        ending.beforeSave(m_cAffected.Count());
    if (ending.save)
        SaveAffected(*ending.save);
    else
        EndGuards();
    const auto IsMain = [](const ChangeRecord::Category& category) { return category.lLevel == 0; };
    if (ending.save && std::any_of(record.colMade.begin(), record.colMade.end(), IsMain))
        m_cState.cCategoryList.SaveCatNames(m_cState.colMainCats.get(), m_cState.AppPath());
    std::exception_ptr cFailure;
    try
    {
        if (ending.afterSave)
            ending.afterSave();
    }
    catch (...)
    {
        cFailure = std::current_exception();
    }
    m_cPlacement.Report(ending.show);
    if (cFailure)
        std::rethrow_exception(cFailure);
    return record;
}

// ---- what a kill may cut in two ----

void CutChanges::Guard(const std::shared_ptr<clsCat>& cMainCat)
{
    const std::wstring& sName = cMainCat->CatName();
    if (m_colGuards.Exists(std::wstring_view(sName)))
        return;
    std::vector<std::int32_t> colLevels;
    for (const std::shared_ptr<clsCat>& cSubCat : *cMainCat->SubCats())
        colLevels.push_back(cSubCat->CatLevel());
    m_colGuards.Add(TextKey(sName), std::make_unique<HistoryFiles::EmptyingLevels>(
                                        m_cState.cHistoryFiles, sName, std::move(colLevels)));
    m_cState.cHistoryFiles.Save(cMainCat, quietly);
}

void CutChanges::GuardAffected()
{
    if (!IsOwn())
        return;
    for (const std::wstring& sName : m_cAffected)
        if (const std::shared_ptr<clsCat> cMainCat = m_cState.MainCat(sName))
            Guard(cMainCat);
}

// Guards each main category of which the step may empty a level: one that contains no other cuts than those
// of the step.
void CutChanges::GuardEmptying(std::span<const std::shared_ptr<Cut>> colStep, const Rhythm& rhythm)
{
    const std::shared_ptr<CatCollection> colMainCats = m_cState.colMainCats;
    if (!IsOwn() || !colMainCats)
        return;
    OrderedKeyedCollection<char> colKeys;
    for (const std::shared_ptr<Cut>& cCut : colStep)
        try
        {
            if (cCut)
            {
                const TextKey cKey = cCut->Key();
                if (!m_cState.cPlacedCuts.Contains(cKey))
                    FollowNewKey(m_cState.OwnOf(cCut),
                                 cKey); // the levels then have the present key
                colKeys.Add(cKey, {});
            }
        }
        catch (...)
        {
            // The change will fail with the same error and report it.
        }
    const auto HoldsOthers = [&](const CutCollection& colCuts) {
        if (colCuts.Count() > colKeys.Count())
            return true;
        for (std::size_t position = 0; position < colCuts.Count(); ++position)
            if (const TextKey* cKey = colCuts.KeyAt(position); !cKey || !colKeys.Exists(*cKey))
                return true;
        return false;
    };
    for (const std::shared_ptr<clsCat>& cMainCat : Cats(colMainCats->begin(), colMainCats->end()))
        if (std::any_of(cMainCat->SubCats()->begin(), cMainCat->SubCats()->end(),
                        [&](const std::shared_ptr<clsCat>& cSubCat) {
            const CutCollection& colCuts = *cSubCat->SchedCuts();
            return !colCuts.Empty() && !HoldsOthers(colCuts) && rhythm.mayLeave({cMainCat, cSubCat});
            }))
            Guard(cMainCat);
}

void CutChanges::CallerSaves(const std::wstring& sCatName)
{
    m_cAffected.Remove(sCatName);
    m_colGuards.Remove(std::wstring_view(sCatName));
}

// Saves guarded categories that did not change once more, without markers. The changed ones are saved at the
// end of the change.
void CutChanges::EndGuards()
{
    std::vector<TextKey> colGuarded;
    for (std::size_t at = 0; at < m_colGuards.Count(); ++at)
        colGuarded.push_back(*m_colGuards.KeyAt(at));
    m_colGuards.Clear();
    for (const TextKey& cName : colGuarded)
        if (const std::shared_ptr<clsCat> cMainCat = m_cState.MainCat(cName.Text());
            cMainCat && !m_cAffected.Contains(cName.Text()))
            m_cState.cHistoryFiles.Save(cMainCat, quietly);
}

void CutChanges::SaveAffected(SaveMode mode)
{
    EndGuards();
    for (const std::wstring& sName : AffectedCats(std::move(m_cAffected)))
        if (const std::shared_ptr<clsCat> cMainCat = m_cState.MainCat(sName))
            m_cState.cHistoryFiles.Save(cMainCat, mode);
    m_cState.RetrySaves();
}

// ---- one cut ----

void CutChanges::Try(const std::shared_ptr<Cut>& cGiven, const Change& change, std::size_t at) noexcept
{
    try
    {
        if (IsOwn())
        {
            TryOwn(m_cState.OwnOf(cGiven), change, at);
            if (!m_cBatch)
                WriteAhead(); // the change is on the disk
        }
        else
            change(cGiven, at);
    }
    catch (...)
    {
        Failed(*cGiven);
    }
}

void CutChanges::TryOwn(const std::shared_ptr<Cut>& cCut, const Change& change, std::size_t at)
{
    const TextKey cKey = cCut->Key();
    FollowNewKey(cCut, cKey);
    const Mark mark = Now();
    m_colChanged.push_back({cCut,
                            {cKey, {cCut->CatLevel(), NamesTextOf(*cCut)}, {}},
                            m_cState.cPlacedCuts.Recall(cKey),
                            m_cState.populations,
                            m_unit->Inside()});
    try
    {
        const PlacedCuts::OwnChange cOwnChange(m_cState.cPlacedCuts, *cCut);
        change(cCut, at);
    }
    catch (...)
    {
        const std::exception_ptr cFailure = std::current_exception();
        TakeBack(mark);
        std::rethrow_exception(cFailure);
    }
}

void CutChanges::TryOrLeaveOut(const std::shared_ptr<Cut>& cCut, const Change& change, std::size_t at,
                               const LeaveOut& leaveOut)
{
    try
    {
        TryOwn(cCut, change, at);
    }
    catch (...)
    {
        if (!leaveOut)
            throw;
        leaveOut(at);
    }
}

void CutChanges::Touch(const std::wstring& sCatName)
{
    if (m_cAffected.Contains(sCatName))
        return;
    if (IsOwn())
        m_colTouched.push_back(sCatName);
    m_cAffected.Touch(sCatName);
}

// ---- taking back ----

void CutChanges::WillUndo(std::function<void()> undo)
{
    if (IsOwn())
        m_colUndo.push_back(std::move(undo));
}

void CutChanges::TakeBack(const Mark& mark) noexcept
{
    while (m_colUndo.size() > mark.undo)
    {
        const std::function<void()> undo = std::move(m_colUndo.back());
        m_colUndo.pop_back();
        try
        {
            undo();
        }
        catch (...)
        {
            m_cPlacement.Failed();
        }
    }
    // One in which others have placed cuts since stays.
    const auto taken = m_colMade.begin() + static_cast<std::ptrdiff_t>(mark.made);
    m_colMade.erase(
        std::remove_if(taken, m_colMade.end(), [this](const auto& made) { return !Exists(made); }),
        m_colMade.end());
    for (; m_colTouched.size() > mark.touched; m_colTouched.pop_back())
        m_cAffected.Remove(m_colTouched.back());
    while (m_colChanged.size() > mark.changed)
    {
        const ChangedCut changed = std::move(m_colChanged.back());
        m_colChanged.pop_back();
        PutBack(changed);
    }
}

// Gives a cut back its names, its level and its place. When the database has undone its batch, the cut
// already has the old values and only the tree is updated.
void CutChanges::PutBack(const ChangedCut& changed) noexcept
{
    const std::shared_ptr<Cut>& cCut = changed.cCut;
    bool bWhole = changed.population == m_cState.populations; // otherwise the tree was replaced since
    const auto Attempt = [&](auto&& body) {
        try
        {
            body();
        }
        catch (...)
        {
            bWhole = false;
            Failed(*cCut);
        }
    };
    Attempt([&] {
        if (NamesTextOf(*cCut) != changed.record.before.sCategoryText)
            SetNamesText(*cCut, changed.record.before.sCategoryText);
    });
    Attempt([&] {
        if (cCut->CatLevel() != changed.record.before.lCatLevel)
            cCut->SetCatLevel(changed.record.before.lCatLevel);
    });
    if (bWhole)
        Attempt([&] { m_cState.cPlacedCuts.Restore(changed.record.cKey, changed.placed); });
    if (bWhole)
        return;
    m_cState.cPlacedCuts.Forget(changed.record.cKey);
    Attempt([&] { ModifyCut(cCut); });
}

} // namespace ravlo
