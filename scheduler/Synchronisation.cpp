// SPDX-License-Identifier: MIT
#include "scheduler/Synchronisation.h"

#include "base/Text.h"
#include "scheduler/CutChanges.h"
#include "scheduler/CutRemoval.h"

#include <iterator>
#include <utility>

namespace ravlo
{

namespace
{

constexpr std::size_t addedPerReport = 30;
constexpr std::size_t removedPerReport = 50;
constexpr std::uint32_t lPauseMs = 10;

std::wstring UpdatedText(std::size_t count, std::size_t total)
{
    return L"Updated " + CountText(count) + L" of " + CountText(total);
}

} // namespace

// ---- listening ----

void Synchronisation::Follow(const std::shared_ptr<DataBase>& cDataBase, std::weak_ptr<void> cOwner)
{
    Stop();
    m_cOwner = std::move(cOwner);
    m_cFollowed = cDataBase;
    if (m_cFollowed)
        m_cFollowed->Advise(*this);
}

void Synchronisation::FollowAgain(const std::shared_ptr<DataBase>& cDataBase, std::weak_ptr<void> cOwner,
                                  Waiting colWaiting)
{
    Waiting colSince = m_cFollowed == cDataBase ? TakeWaiting() : Waiting();
    Follow(cDataBase, std::move(cOwner));
    m_colWaiting = std::move(colWaiting);
    std::move(colSince.begin(), colSince.end(), std::back_inserter(m_colWaiting));
}

void Synchronisation::Stop() noexcept
{
    if (m_cFollowed)
        m_cFollowed->Unadvise(*this);
    m_cFollowed.reset();
    m_colWaiting.clear(); // they concern a database that is no longer ours
}

void Synchronisation::Notify(Kind eKind, const Cuts& colCuts)
{
    m_colWaiting.push_back({eKind, colCuts});
    if (m_lHoldCount == 0)
        HandleWaiting();
}

void Synchronisation::HandleWaiting() noexcept
{
    if (m_colWaiting.empty() || !m_cState.colMainCats)
        return;
    const std::shared_ptr<void> cKeepAlive = m_cOwner.lock();
    const ModScheduler::LogScope cScope(m_cState.cMod);
    ++m_lHoldCount; // notifications that arrive during one are queued, and handled by this loop
    while (!m_colWaiting.empty())
    {
        const Notification notification = std::move(m_colWaiting.front());
        m_colWaiting.pop_front();
        switch (notification.eKind)
        {
        case Kind::Added:
            HandleAdded(notification.colCuts);
            break;
        case Kind::Modified:
            HandleModified(notification.colCuts);
            break;
        case Kind::Removed:
            HandleRemoved(notification.colCuts);
            break;
        }
    }
    --m_lHoldCount;
}

void Synchronisation::ProgressStart(const std::wstring& sReason, std::int32_t lMax)
{
    const std::shared_ptr<void> cKeepAlive = m_cOwner.lock();
    m_cState.cEvents.ProgressStart(sReason, lMax);
}

void Synchronisation::Progress(const std::wstring& strProgress, std::int32_t lCount, std::int32_t lMax)
{
    const std::shared_ptr<void> cKeepAlive = m_cOwner.lock();
    m_cState.cEvents.Progress(strProgress, lCount, lMax);
}

void Synchronisation::ProgressDone(const std::wstring& sStatus)
{
    const std::shared_ptr<void> cKeepAlive = m_cOwner.lock();
    m_cState.cEvents.ProgressDone(sStatus);
}

// ---- cuts added ----

void Synchronisation::HandleAdded(const Cuts& colCuts)
{
    ModScheduler& cMod = m_cState.cMod;
    const auto ShowError = [&cMod](const RuntimeError& cError) {
        cMod.DISPLAYERROR(L"m_cDataBase_CutsAdded", true, cError);
    };
    try
    {
        cMod.WriteDebugLog(L"m_cDataBase_CutsAdded at start...");
        cMod.WriteDebugLog(L"objptr colcuts = " +
                           DecimalText(reinterpret_cast<std::intptr_t>(colCuts.data())));
        cMod.WriteDebugLog(L"Raising Event ProgressStart....");
        m_cState.cEvents.ProgressStart(L"Updating Scheduler with Added items", std::ssize(colCuts));
        cMod.WriteDebugLog(L"Raised Event ProgressStart");
        cMod.WriteDebugLog(L"Adding Cuts to cats...");
        CutChanges cChanges(m_cState, *this, CutChanges::Origin::DataBase);
        AddCuts(colCuts, cChanges);
        cMod.WriteDebugLog(L"Finished Adding Cuts to cats.");
        CutChanges::Ending ending;
        ending.beforeSave = [&cMod](std::size_t affected) {
            cMod.WriteDebugLog(L"Saving History And Ordering now...there are: " + CountText(affected) +
                               L" Cats affected by this add.");
        };
        ending.afterSave = [&] {
            cMod.WriteDebugLog(L"Saved History and Ordering now...");
            cMod.WriteDebugLog(L"RaisingEvent ProgressDone");
            m_cState.cEvents.ProgressDone(L"Updated Scheduler with new items.");
            cMod.WriteDebugLog(L"Raised Event ProgressDone.");
            RefreshLibrary(L"Refreshing Schedlib in m_cDataBase_CutsAdded");
        };
        ending.show = ShowError;
        cChanges.Finish(ending);
    }
    catch (...)
    {
        ShowError(CurrentError());
    }
    cMod.WriteDebugLog(L"Done with m_cDataBase_cutsadded");
}

void Synchronisation::AddCuts(const Cuts& colCuts, CutChanges& cChanges)
{
    NameLists cNameLists(m_cState.cPlacedCuts);
    CutChanges::Rhythm rhythm;
    rhythm.cuts = addedPerReport;
    rhythm.bBeforeTheCut = true;
    rhythm.lPauseMs = lPauseMs;
    rhythm.tell = [&](std::size_t count) {
        m_cState.cEvents.Progress(UpdatedText(count, colCuts.size()), static_cast<std::int64_t>(count),
                                  std::ssize(colCuts));
    };
    rhythm.goOn = WhileNobodyReloads();
    cChanges.Run(
        colCuts, [&](const std::shared_ptr<Cut>& cCut, std::size_t) { AddCut(cCut, cNameLists, cChanges); },
        rhythm);
}

// Becomes false with a reload: the new tree already has the database's present state.
std::function<bool()> Synchronisation::WhileNobodyReloads() const
{
    return [this, population = m_cState.populations] { return m_cState.populations == population; };
}

void Synchronisation::AddCut(const std::shared_ptr<Cut>& cAnnounced, NameLists& cNameLists,
                             CutChanges& cChanges)
{
    const std::function<bool()> isSameTree = WhileNobodyReloads();
    const TextKey cKey = cAnnounced->Key();
    const std::shared_ptr<Cut> cCut = OwnOf(cAnnounced, cKey);
    cChanges.FollowNewKey(cCut, cKey);
    const NameLists::Names& names = cNameLists.Of(*cCut);
    if (m_cState.cPlacedCuts.Contains(cKey) && !m_cState.cPlacedCuts.IsUnchanged(*cCut))
    {
        if (names.bEmptyName)
            cChanges.RefuseEmptyName(*cCut);
        cChanges.ModifyCut(cCut); // announced as new, but already in the tree
    }
    else
        cChanges.AddCutToCategories(cCut, names);
    TakeObject(cCut, cKey);
    if (isSameTree()) // otherwise the tree was reloaded during a box, and the numbers are obsolete
        m_cState.cPlacedCuts.Remember(cKey, names.lNumber, cCut->CatLevel(), DataBaseNumber(*cCut));
}

// The object to place: the database's own, since a host may announce a copy, which would not follow later
// changes. When the database fails, the announced one serves until a pick replaces it.
std::shared_ptr<Cut> Synchronisation::OwnOf(const std::shared_ptr<Cut>& cAnnounced, const TextKey& cKey) const
{
    const std::shared_ptr<DataBase> cDataBase = m_cState.cDataBase; // a look-up may let the host populate
    try
    {
        if (std::shared_ptr<Cut> cOwn = cDataBase ? cDataBase->CutByKey(cKey) : nullptr)
            return cOwn;
    }
    catch (...)
    {
        m_cState.cMod.LogError(L"Looking up an announced cut", CurrentError());
    }
    return cAnnounced;
}

// Replaces a cut's object in the levels it stays in by the database's present one: it may use a new object
// after each change, and the old one may not show the change.
void Synchronisation::TakeObject(const std::shared_ptr<Cut>& cCut, const TextKey& cKey) const
{
    const std::int32_t lLevel = cCut->CatLevel();
    for (const std::wstring& sName : AssignedNames(*cCut))
        if (const std::shared_ptr<clsCat> cMainCat = m_cState.MainCat(sName))
            if (const std::shared_ptr<clsCat> cSubCat = cMainCat->SubCat(lLevel))
                if (std::shared_ptr<Cut>* pEntry = cSubCat->SchedCuts()->Find(cKey))
                    *pEntry = cCut;
}

// ---- cuts modified ----

void Synchronisation::HandleModified(const Cuts& colCuts)
{
    ModScheduler& cMod = m_cState.cMod;
    Trap(cMod, L"m_cDataBase_CutsModified", [&] {
        CutChanges cChanges(m_cState, *this, CutChanges::Origin::DataBase);
        cChanges.Run(
            colCuts,
            [&](const std::shared_ptr<Cut>& cAnnounced, std::size_t) { ModifyCut(cAnnounced, cChanges); },
            {});
        CutChanges::Ending ending;
        ending.save = SaveMode{.bProgress = false};
        ending.afterSave = [this] { RefreshLibrary(nullptr); };
        ending.show = [&cMod](const RuntimeError& cError) {
            cMod.DISPLAYERROR(L"ModifyCut [SchedMan]", true, cError);
        };
        cChanges.Finish(ending);
    });
}

void Synchronisation::ModifyCut(const std::shared_ptr<Cut>& cAnnounced, CutChanges& cChanges)
{
    const TextKey cKey = cAnnounced->Key();
    const std::shared_ptr<Cut> cCut = OwnOf(cAnnounced, cKey);
    cChanges.FollowNewKey(cCut, cKey);
    cChanges.ModifyCut(cCut);
    TakeObject(cCut, cKey);
}

// ---- cuts removed ----

void Synchronisation::HandleRemoved(const Cuts& colCuts)
{
    ModScheduler& cMod = m_cState.cMod;
    Trap(cMod, L"m_cDataBase_CutsRemoved", [&] {
        m_cState.cEvents.ProgressStart(L"Updating Scheduler with deleted items", colCuts.size());
        CutChanges cChanges(m_cState, *this, CutChanges::Origin::DataBase);
        CutChanges::Rhythm rhythm;
        rhythm.cuts = removedPerReport;
        rhythm.bBeforeTheCut = true;
        rhythm.lPauseMs = lPauseMs;
        rhythm.tell = [&](std::size_t count) {
            m_cState.cEvents.Progress(UpdatedText(count, colCuts.size()), count, colCuts.size());
        };
        rhythm.bPump = false;
        rhythm.goOn = WhileNobodyReloads();
        cChanges.Run(
            colCuts, [&](const std::shared_ptr<Cut>& cCut, std::size_t) { RemoveEverywhere(cCut, cChanges); },
            rhythm);
        CutChanges::Ending ending;
        ending.afterSave = [this] {
            m_cState.cEvents.ProgressDone(L"Updated Scheduler with deleted items.");
            RefreshLibrary(nullptr);
        };
        ending.show = [&cMod](const RuntimeError& cError) {
            cMod.DISPLAYERROR(L"m_cDataBase_CutsRemoved", true, cError);
        };
        cChanges.Finish(ending);
    });
}

void Synchronisation::RemoveEverywhere(const std::shared_ptr<Cut>& cCut, CutChanges& cChanges)
{
    const TextKey cKey = cCut->Key();
    try
    {
        cChanges.FollowNewKey(cCut, cKey);
        TakeOutOfCategories(m_cState, cChanges, cCut, {cCut, nullptr, 0});
        // The database may have changed the cut's names or level before removing it: search the whole tree.
        for (const SchedulerState::Place& place : m_cState.PlacesOf(cKey))
            cChanges.TakeOut(cCut, place);
    }
    catch (...)
    {
        // The database no longer has it, so it leaves the orders even when the cut refuses changes.
        cChanges.Problems().Failed(*cCut);
        for (const SchedulerState::Place& place : m_cState.PlacesOf(cKey))
            cChanges.Leave(place, cKey);
    }
    m_cState.cPlacedCuts.Removed(cKey);
}

// ---- afterwards ----

void Synchronisation::RefreshLibrary(const wchar_t* sLogLine)
{
    if (!m_cState.cWindows || !m_cState.cWindows->LibraryExists())
        return;
    if (sLogLine)
        m_cState.cMod.WriteDebugLog(sLogLine);
    m_cState.cWindows->RefreshLibrary();
}

} // namespace ravlo
