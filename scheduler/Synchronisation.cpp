// SPDX-License-Identifier: MIT
#include "scheduler/Synchronisation.h"

#include "collections/Text.h"

#include <algorithm>
#include <utility>

namespace ravlo
{

namespace
{

constexpr std::size_t lAddedPerReport = 30;
constexpr std::size_t lRemovedPerReport = 50;
constexpr std::uint32_t lPauseMs = 10;

std::wstring UpdatedText(std::size_t lCount, std::size_t lTotal)
{
    return L"Updated " + CountText(lCount) + L" of " + CountText(lTotal);
}

bool Holds(const std::vector<std::wstring>& colNames, const std::wstring& sName)
{
    return std::any_of(colNames.begin(), colNames.end(),
                       [&](const std::wstring& sOther) { return EqualIgnoringCase(sOther, sName); });
}

// Whether a main category's level of that number holds the cut.
bool StandsIn(const clsCat& cMainCat, std::int32_t lLevel, const TextKey& cKey)
{
    const std::shared_ptr<clsCat> cSubCat = cMainCat.SubCat(lLevel);
    return cSubCat && cSubCat->SchedCuts()->Exists(cKey);
}

// For a box. What a box says decides nothing: a cut whose texts cannot be read may be filed all the same.
std::wstring ArtistAndTitle(const Cut& cCut)
{
    try
    {
        return cCut.Artist() + L" - " + cCut.Title();
    }
    catch (const RuntimeError&)
    {
        return {};
    }
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

void Synchronisation::Stop() noexcept
{
    if (m_cFollowed)
        m_cFollowed->Unadvise(*this);
    m_cFollowed.reset();
    m_colWaiting.clear(); // they told of a database that is no longer ours
}

void Synchronisation::Notify(Kind eKind, const Cuts& colCuts)
{
    m_colWaiting.push_back({eKind, colCuts});
    if (m_lHolds == 0)
        HandleWaiting();
}

void Synchronisation::HandleWaiting() noexcept
{
    if (m_colWaiting.empty() || !m_cStation.colMainCats)
        return;
    const std::shared_ptr<void> cKeepAlive = m_cOwner.lock();
    const ModScheduler::LogScope cScope(m_cStation.cMod);
    ++m_lHolds; // what arrives while one is handled is handled after it, by this loop
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
    --m_lHolds;
}

void Synchronisation::ProgressStart(const std::wstring& sReason, std::int32_t lMax)
{
    const std::shared_ptr<void> cKeepAlive = m_cOwner.lock();
    m_cStation.cEvents.ProgressStart(sReason, lMax);
}

void Synchronisation::Progress(const std::wstring& strProgress, std::int32_t lCount, std::int32_t lMax)
{
    const std::shared_ptr<void> cKeepAlive = m_cOwner.lock();
    m_cStation.cEvents.Progress(strProgress, lCount, lMax);
}

void Synchronisation::ProgressDone(const std::wstring& sStatus)
{
    const std::shared_ptr<void> cKeepAlive = m_cOwner.lock();
    m_cStation.cEvents.ProgressDone(sStatus);
}

// ---- cuts added ----

void Synchronisation::HandleAdded(const Cuts& colCuts)
{
    ModScheduler& cMod = m_cStation.cMod;
    Filing cFiling(cMod);
    const auto ShowError = [&cMod](const RuntimeError& cError)
    { cMod.DISPLAYERROR(L"m_cDataBase_CutsAdded", true, cError); };
    try
    {
        cMod.WriteDebugLog(L"m_cDataBase_CutsAdded at start...");
        cMod.WriteDebugLog(L"objptr colcuts = " +
                           DecimalText(reinterpret_cast<std::intptr_t>(colCuts.data())));
        cMod.WriteDebugLog(L"Raising Event ProgressStart....");
        m_cStation.cEvents.ProgressStart(L"Updating Scheduler with Added items", std::ssize(colCuts));
        cMod.WriteDebugLog(L"Raised Event ProgressStart");
        cMod.WriteDebugLog(L"Adding Cuts to cats...");
        AffectedCats cAffected;
        AddCuts(colCuts, cAffected, cFiling);
        cFiling.RecalcTouched(); // before anybody is told
        cMod.WriteDebugLog(L"Finished Adding Cuts to cats.");
        cMod.WriteDebugLog(L"Saving History And Ordering now...there are: " + CountText(cAffected.Count()) +
                           L" Cats affected by this add.");
        SaveAffected(cAffected);
        cMod.WriteDebugLog(L"Saved History and Ordering now...");
        cMod.WriteDebugLog(L"RaisingEvent ProgressDone");
        m_cStation.cEvents.ProgressDone(L"Updated Scheduler with new items.");
        cMod.WriteDebugLog(L"Raised Event ProgressDone.");
        RefreshLibrary(L"Refreshing Schedlib in m_cDataBase_CutsAdded");
        cFiling.Report(ShowError);
    }
    catch (...)
    {
        ShowError(CurrentError());
    }
    cMod.WriteDebugLog(L"Done with m_cDataBase_cutsadded");
}

void Synchronisation::AddCuts(const Cuts& colCuts, AffectedCats& cAffected, Filing& cFiling)
{
    const std::uint64_t lPopulation = m_cStation.lPopulations;
    NameLists cNameLists(m_cStation.cFiledCuts);
    std::size_t lCount = 0;
    for (const std::shared_ptr<Cut>& cCut : colCuts)
    {
        if (++lCount % lAddedPerReport == 0)
        {
            m_cStation.cMod.Sleep(lPauseMs);
            m_cStation.cEvents.Progress(UpdatedText(lCount, colCuts.size()),
                                        static_cast<std::int64_t>(lCount), std::ssize(colCuts));
            m_cStation.cMod.Pump();
        }
        if (m_cStation.lPopulations != lPopulation)
            return; // the host has reloaded meanwhile: the new tree came from the database as it is now
        try
        {
            const TextKey cKey = cCut->Key();
            const NameLists::Names& names = cNameLists.Of(*cCut);
            if (m_cStation.cFiledCuts.Knows(cKey) && !m_cStation.cFiledCuts.IsUnchanged(*cCut))
                ModifyCut(cCut, cAffected, cFiling); // announced as new, but filed elsewhere already
            else
                AddCutToCategories(cCut, names, cAffected, cFiling);
            if (m_cStation.lPopulations != lPopulation)
                return; // reloaded while a box was shown; the numbers are those of the tree before
            m_cStation.cFiledCuts.Remember(cKey, names.lNumber, cCut->CatLevel());
        }
        catch (...)
        {
            cFiling.Failed(*cCut);
        }
    }
}

void Synchronisation::AddCutToCategory(const std::shared_ptr<Cut>& cCut, const std::wstring& sCatName,
                                       AffectedCats& cAffected, Filing& cFiling)
{
    if (const std::shared_ptr<clsCat> cMainCat = m_cStation.MainCat(sCatName))
        FileInto(cCut, *cMainCat, cAffected, cFiling);
    else
        m_cStation.cMod.Box(BoxIcon::Critical, BoxButtons::Ok, sProgramTitle,
                            L"In addcuttocategory, main cat was specified, but doesnt exist!");
}

void Synchronisation::AddCutToCategories(const std::shared_ptr<Cut>& cCut, const NameLists::Names& names,
                                         AffectedCats& cAffected, Filing& cFiling)
{
    if (!m_cStation.colMainCats)
        return;
    if (names.bEmptyName)
        cFiling.EmptyName(BoxIcon::None, std::wstring(L"Zero-length cat names are illegal!") + sCrLf +
                                             ArtistAndTitle(*cCut));
    for (const NameLists::Name& name : names.colNames)
        FileInto(cCut, *EnsureMainCat(m_cStation.cMod, *m_cStation.colMainCats, name), cAffected, cFiling);
}

void Synchronisation::FileInto(const std::shared_ptr<Cut>& cCut, clsCat& cMainCat, AffectedCats& cAffected,
                               Filing& cFiling)
{
    bool bCreated = false;
    if (cFiling.File(cCut, cMainCat, bCreated) || StandsIn(cMainCat, cCut->CatLevel(), cCut->Key()))
        cAffected.Touch(cMainCat.CatName());
}

// ---- cuts modified ----

void Synchronisation::HandleModified(const Cuts& colCuts)
{
    ModScheduler& cMod = m_cStation.cMod;
    Trap(cMod, L"m_cDataBase_CutsModified",
         [&]
         {
             AffectedCats cAffected;
             Filing cFiling(cMod);
             for (const std::shared_ptr<Cut>& cCut : colCuts)
             {
                 try
                 {
                     ModifyCut(cCut, cAffected, cFiling);
                 }
                 catch (...)
                 {
                     cFiling.Failed(*cCut);
                 }
             }
             cFiling.RecalcTouched();
             SaveAffected(cAffected, HistoryFiles::Manner::WithoutProgress);
             RefreshLibrary(nullptr);
             cFiling.Report([&cMod](const RuntimeError& cError)
                            { cMod.DISPLAYERROR(L"ModifyCut [SchedMan]", true, cError); });
         });
}

void Synchronisation::ModifyCut(const std::shared_ptr<Cut>& cCut, AffectedCats& cAffected, Filing& cFiling)
{
    if (!m_cStation.colMainCats || (m_cStation.cFiledCuts.IsUnchanged(*cCut) && StandsWhereAssigned(*cCut)))
        return;
    const TextKey cKey = cCut->Key();
    const std::int32_t lLevel = cCut->CatLevel();
    std::vector<std::wstring> colNames = AssignedNames(*cCut);
    colNames.erase(std::remove(colNames.begin(), colNames.end(), std::wstring()), colNames.end());
    // Where the cut stood is read from the tree. Its category names are the database's new ones already, so
    // it leaves the orders directly: taking it out through the category would take names off it.
    for (const Station::Place& place : m_cStation.PlacesOf(cKey))
        if (place.cSubCat->CatLevel() != lLevel || !Holds(colNames, place.cSubCat->CatName()))
            Leave(place, cKey, cAffected, cFiling);
    for (const std::wstring& sName : colNames)
    {
        const std::shared_ptr<clsCat> cMainCat =
            EnsureMainCat(m_cStation.cMod, *m_cStation.colMainCats, sName);
        if (!StandsIn(*cMainCat, lLevel, cKey))
            AddCutToCategory(cCut, sName, cAffected, cFiling);
    }
    m_cStation.cFiledCuts.Remember(*cCut);
}

// A host may have taken it out of a category itself.
bool Synchronisation::StandsWhereAssigned(const Cut& cCut) const
{
    const std::int32_t lLevel = cCut.CatLevel();
    if (lLevel <= 0)
        return true; // nowhere
    const std::vector<std::wstring> colNames = AssignedNames(cCut);
    const TextKey cKey = cCut.Key();
    return std::all_of(colNames.begin(), colNames.end(),
                       [&](const std::wstring& sName)
                       {
                           const std::shared_ptr<clsCat> cMainCat = m_cStation.MainCat(sName);
                           return sName.empty() || (cMainCat && StandsIn(*cMainCat, lLevel, cKey));
                       });
}

void Synchronisation::Refile(const std::shared_ptr<Cut>& cCut, AffectedCats& cAffected, Filing& cFiling)
{
    m_cStation.cFiledCuts.Forget(cCut->Key());
    ModifyCut(cCut, cAffected, cFiling);
}

void Synchronisation::Leave(const Station::Place& place, const TextKey& cKey, AffectedCats& cAffected,
                            Filing& cFiling)
{
    place.cSubCat->SchedCuts()->Remove(cKey);
    cFiling.Touch(place.cSubCat);
    cAffected.Touch(place.cMainCat->CatName());
}

// ---- cuts removed ----

void Synchronisation::HandleRemoved(const Cuts& colCuts)
{
    ModScheduler& cMod = m_cStation.cMod;
    Trap(cMod, L"m_cDataBase_CutsRemoved",
         [&]
         {
             m_cStation.cEvents.ProgressStart(L"Updating Scheduler with deleted items", colCuts.size());
             AffectedCats cAffected;
             Filing cFiling(cMod);
             RemoveCuts(colCuts, cAffected, cFiling);
             cFiling.RecalcTouched();
             SaveAffected(cAffected);
             m_cStation.cEvents.ProgressDone(L"Updated Scheduler with deleted items.");
             RefreshLibrary(nullptr);
             cFiling.Report([&cMod](const RuntimeError& cError)
                            { cMod.DISPLAYERROR(L"m_cDataBase_CutsRemoved", true, cError); });
         });
}

void Synchronisation::RemoveCuts(const Cuts& colCuts, AffectedCats& cAffected, Filing& cFiling)
{
    const std::uint64_t lPopulation = m_cStation.lPopulations;
    std::size_t lCount = 0;
    for (const std::shared_ptr<Cut>& cCut : colCuts)
    {
        if (++lCount % lRemovedPerReport == 0)
        {
            m_cStation.cMod.Sleep(lPauseMs);
            m_cStation.cEvents.Progress(UpdatedText(lCount, colCuts.size()), lCount, colCuts.size());
        }
        if (m_cStation.lPopulations != lPopulation)
            return;
        try
        {
            RemoveEverywhere(cCut, cAffected, cFiling);
        }
        catch (...)
        {
            cFiling.Failed(*cCut);
        }
    }
}

void Synchronisation::RemoveEverywhere(const std::shared_ptr<Cut>& cCut, AffectedCats& cAffected,
                                       Filing& cFiling)
{
    const TextKey cKey = cCut->Key();
    CatCollection colRemovedFrom;
    try
    {
        RemoveCutFromCategory(nullptr, cCut, colRemovedFrom, 0, cFiling);
        // The database may have changed the cut's names or level before it removed it: search where it
        // really stands.
        for (const Station::Place& place : m_cStation.PlacesOf(cKey))
            if (TakeOut(cCut, place, cFiling))
                cAffected.Touch(place.cMainCat->CatName());
    }
    catch (...)
    {
        // It is gone from the database, so it leaves the orders even when it takes no changes any more.
        cFiling.Failed(*cCut);
        for (const Station::Place& place : m_cStation.PlacesOf(cKey))
            Leave(place, cKey, cAffected, cFiling);
    }
    for (const std::shared_ptr<clsCat>& cMainCat : colRemovedFrom)
        cAffected.Touch(cMainCat->CatName());
    m_cStation.cFiledCuts.Forget(cKey);
}

void Synchronisation::RemoveCutFromCategory(const std::shared_ptr<clsCat>& cMainCat,
                                            const std::shared_ptr<Cut>& cCut, CatCollection& colMainCatsIN,
                                            std::int32_t LevelToRemoveFrom, Filing& cFiling)
{
    if (!cCut)
        return;
    const Hold cHold(*this);
    const FiledCuts::OwnChange cOwnChange(m_cStation.cFiledCuts, *cCut);
    const std::int32_t lLevel = LevelToRemoveFrom != 0 ? LevelToRemoveFrom : cCut->CatLevel();
    std::vector<std::wstring> colNames; // taken before removing, which takes names off the cut
    if (!cMainCat)
        colNames = AssignedNames(*cCut);
    else if (cMainCat->CatLevel() == 0)
        colNames = {cMainCat->CatName()};
    for (const std::wstring& sName : colNames)
    {
        const std::shared_ptr<clsCat> cFrom = m_cStation.MainCat(sName);
        const std::shared_ptr<clsCat> cSubCat = cFrom ? cFrom->SubCat(lLevel) : nullptr;
        if (cSubCat && TakeOut(cCut, {cFrom, cSubCat}, cFiling))
            colMainCatsIN.Add(TextKey(cFrom->CatName()), cFrom);
    }
}

bool Synchronisation::TakeOut(const std::shared_ptr<Cut>& cCut, const Station::Place& place, Filing& cFiling)
{
    if (!place.cSubCat->RemoveCut(cCut))
        return false;
    // A cut that no longer carried the name took no run time with it.
    cFiling.Touch(place.cSubCat);
    const TextKey cKey = cCut->Key();
    const CatCollection& colSubCats = *place.cMainCat->SubCats();
    if (std::any_of(colSubCats.begin(), colSubCats.end(),
                    [&](const std::shared_ptr<clsCat>& cOther) { return cOther->SchedCuts()->Exists(cKey); }))
        cCut->AddCategoryName(place.cMainCat->CatName());
    return true;
}

// ---- afterwards ----

void Synchronisation::SaveAffected(const AffectedCats& cAffected, HistoryFiles::Manner eManner)
{
    for (const std::wstring& sName : cAffected)
        if (const std::shared_ptr<clsCat> cMainCat = m_cStation.MainCat(sName))
            m_cStation.cHistoryFiles.Save(cMainCat, eManner);
    m_cStation.SaveOwed();
}

void Synchronisation::RefreshLibrary(const wchar_t* sLogLine)
{
    if (!m_cStation.cWindows || !m_cStation.cWindows->LibraryExists())
        return;
    if (sLogLine)
        m_cStation.cMod.WriteDebugLog(sLogLine);
    m_cStation.cWindows->RefreshLibrary();
}

} // namespace ravlo
