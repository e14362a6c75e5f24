// SPDX-License-Identifier: MIT
// What is still to be saved or deleted, and how new an order is.
#include "base/CaseFolding.h"
#include "modscheduler/FileNames.h"
#include "scheduler/HistoryFiles.h"

#include <utility>

namespace ravlo
{

std::wstring HistoryFiles::KeyOf(const std::wstring& sCatName) { return FoldCase(CategoryKey(sCatName, 0)); }

void HistoryFiles::Settle(const std::wstring& sKey, SavedFiles::Stamp lStamp)
{
    // A pick during the save may owe an order that is newer than the one that was written.
    if (const auto owed = m_colOwed.find(sKey); owed != m_colOwed.end() && owed->second.lSince <= lStamp)
        m_colOwed.erase(owed);
    if (const auto unsaved = m_colUnsaved.find(sKey);
        unsaved != m_colUnsaved.end() && unsaved->second <= lStamp)
        m_colUnsaved.erase(unsaved);
}

void HistoryFiles::Owe(const std::wstring& sKey)
{
    m_colOwed[sKey] = {m_cMod.Saved().Begin(), m_cMod.Ports().cClock.TickCount()};
}

// ---- deleting

void HistoryFiles::DeleteFile(const std::wstring& sCatName)
{
    const std::wstring sPath = SavePathOf(sCatName);
    if (!CanBeFileName(sCatName))
        return;
    const std::wstring sKey = KeyOf(sCatName);
    try
    {
        m_cMod.Saved().Delete(sPath, this);
        m_colToDelete.erase(sKey);
    }
    catch (...)
    {
        m_colToDelete.insert_or_assign(sKey, sCatName);
        Owe(sKey);
        throw;
    }
}

void HistoryFiles::RetryDeletion(const std::wstring& sKey, const std::wstring& sCatName)
{
    try
    {
        DeleteFile(sCatName);
        m_colOwed.erase(sKey);
    }
    catch (...)
    {
        m_cMod.LogError(L"DeleteCats " + sCatName, CurrentError());
    }
}

// ---- picks

void HistoryFiles::SaveAfterPick(const std::shared_ptr<clsCat>& cMainCat, const CatCollection& colMainCats)
{
    const std::wstring sKey = KeyOf(cMainCat->CatName());
    RetryOneExcept(sKey, colMainCats);
    const auto own = m_colOwed.find(sKey);
    if (own != m_colOwed.end() && !IsDue(own->second))
        own->second.lSince = NoteChanged(*cMainCat); // tried a moment ago: a later pick tries again
    else
        SaveQuietly(cMainCat);
}

bool HistoryFiles::IsDue(const Owed& owed) const
{
    return m_cMod.Ports().cClock.TickCount() - owed.lTriedAt >= lRetryMs;
}

// Of the categories that are due, the one that has waited longest.
void HistoryFiles::RetryOneExcept(const std::wstring& sKey, const CatCollection& colMainCats)
{
    const std::uint32_t lNow = m_cMod.Ports().cClock.TickCount();
    const std::wstring* sLongest = nullptr;
    std::uint32_t lLongest = 0;
    for (const auto& [sOwed, owed] : m_colOwed)
        if (const std::uint32_t lWaited = lNow - owed.lTriedAt;
            sOwed != sKey && lWaited >= lRetryMs && lWaited > lLongest)
        {
            sLongest = &sOwed;
            lLongest = lWaited;
        }
    if (sLongest)
        Retry(std::wstring(*sLongest), colMainCats);
}

void HistoryFiles::Retry(const std::wstring& sKey, const CatCollection& colMainCats)
{
    if (const std::shared_ptr<clsCat>* cMainCat = colMainCats.Find(sKey))
        SaveQuietly(std::shared_ptr(*cMainCat));
    else if (const auto file = m_colToDelete.find(sKey); file != m_colToDelete.end())
        RetryDeletion(sKey, std::wstring(file->second));
    else
        m_colOwed.erase(sKey); // it has been deleted
}

void HistoryFiles::SaveQuietly(const std::shared_ptr<clsCat>& cMainCat)
{
    const std::wstring sKey = KeyOf(cMainCat->CatName());
    const std::wstring sFolded = FoldCase(cMainCat->CatName());
    if (m_colNoFileName.count(sFolded) == 0 && Save(cMainCat, Manner::Quiet) != Saved::Failed)
        return;
    if (CanBeFileName(sFolded))
        Owe(sKey);
    else // no save can succeed: it is logged once and never owed
    {
        m_colNoFileName.insert(sFolded);
        m_colOwed.erase(sKey); // it may have been renamed since
    }
}

void HistoryFiles::SaveOwed(const CatCollection& colMainCats)
{
    std::vector<std::wstring> colKeys;
    for (const auto& [sKey, owed] : m_colOwed)
        colKeys.push_back(sKey);
    for (const std::wstring& sKey : colKeys)
        Retry(sKey, colMainCats);
}

void HistoryFiles::NoteUnsaved(const clsCat& cMainCat)
{
    if (const SavedFiles::Stamp lSince = NoteChanged(cMainCat); CanBeFileName(cMainCat.CatName()))
        m_colUnsaved[KeyOf(cMainCat.CatName())] = lSince;
}

void HistoryFiles::SavePending(const CatCollection& colMainCats)
{
    for (const auto& [sKey, lSince] : std::exchange(m_colUnsaved, {}))
        m_colOwed.try_emplace(sKey, Owed{lSince, m_cMod.Ports().cClock.TickCount()});
    SaveOwed(colMainCats);
}

// ---- how new an order is

SavedFiles::Stamp HistoryFiles::NoteChanged(const clsCat& cMainCat)
{
    return m_colAges[FoldCase(cMainCat.CatName())].lNewest = m_cMod.Saved().Begin();
}

bool HistoryFiles::IsNewerThanItsReading(const clsCat& cMainCat) const
{
    const std::wstring sKey = KeyOf(cMainCat.CatName());
    if (m_colOwed.count(sKey) != 0 || m_colUnsaved.count(sKey) != 0)
        return true;
    const auto age = m_colAges.find(FoldCase(cMainCat.CatName()));
    return age != m_colAges.end() && (age->second.lRead == 0 || age->second.lNewest > age->second.lRead);
}

} // namespace ravlo
