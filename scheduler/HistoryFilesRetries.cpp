// SPDX-License-Identifier: MIT
// Retries of saves and deletions that failed.
#include "base/CaseFolding.h"
#include "modscheduler/FileNames.h"
#include "scheduler/HistoryFiles.h"

#include <utility>

namespace ravlo
{

void HistoryFiles::DeleteFile(const std::wstring& sCatName)
{
    const std::wstring sPath = SavePathOf(sCatName);
    if (!CanBeFileName(sCatName))
        return;
    try
    {
        m_cMod.Saved().Delete(sPath, this);
        m_cUnsaved.Settled(sCatName, m_cMod.Saved().Begin());
    }
    catch (...)
    {
        m_cUnsaved.DeletionFailed(sCatName, m_cMod.Saved().Begin());
        throw;
    }
}

void HistoryFiles::DeleteKnownFile(const std::wstring& sCatName)
{
    TrapCritical(m_cMod, L"Error in SaveHistoryAndOrdering [cSchedMan]", [&] {
        if (m_cMod.Saved().StateOf(SavePathOf(sCatName), this) == SavedFiles::State::Known)
            DeleteFile(sCatName);
    });
}

void HistoryFiles::SaveAfterPick(const std::shared_ptr<clsCat>& cMainCat, const CatCollection& colMainCats)
{
    if (const std::optional<std::wstring> sOther = m_cUnsaved.LongestDueExcept(cMainCat->CatName()))
        Retry(*sOther, colMainCats);
    if (m_cUnsaved.IsDue(cMainCat->CatName()))
        Save(cMainCat, quietly);
    else
        NoteUnsaved(*cMainCat);
}

void HistoryFiles::NoteUnsaved(const clsCat& cMainCat)
{
    m_cUnsaved.Changed(cMainCat.CatName(), m_cMod.Saved().Begin());
}

void HistoryFiles::Retry(UnsavedOrders::Which eWhich, const CatCollection& colMainCats)
{
    const bool bDue = m_cMod.Ports().cClock.TickCount() - m_lLeftBehindTriedAt >= UnsavedOrders::lRetryMs;
    if (eWhich != UnsavedOrders::Which::Due || bDue)
        RetryLeftBehind();
    for (const std::wstring& sCatName : m_cUnsaved.Names(eWhich))
        if (CanBeFileName(sCatName))
            Retry(sCatName, colMainCats);
}

void HistoryFiles::Retry(const std::wstring& sCatName, const CatCollection& colMainCats)
{
    const std::shared_ptr<clsCat>* pFound = colMainCats.Find(CategoryKey(sCatName, 0));
    const std::shared_ptr<clsCat> cMainCat = pFound ? *pFound : nullptr;
    if (cMainCat && EqualIgnoringCase(cMainCat->CatName(), sCatName))
    {
        Save(cMainCat, quietly);
        return;
    }
    if (!m_cUnsaved.IsToDelete(sCatName))
        return m_cUnsaved.Forget(sCatName); // the category was deleted or renamed
    try
    {
        DeleteFile(sCatName);
    }
    catch (...)
    {
        m_cMod.LogError(L"DeleteCats " + sCatName, CurrentError());
    }
}

// ---- what another folder's tree leaves behind

void HistoryFiles::LeaveFolder(const CatCollection& colMainCats)
{
    SavePending(colMainCats);
    for (const std::wstring& sCatName : m_cUnsaved.Names(UnsavedOrders::Which::All))
        try
        {
            if (CanBeFileName(sCatName))
                KeepBehind(sCatName, colMainCats);
        }
        catch (...)
        {
            m_cMod.LogError(L"SaveHistoryAndOrdering " + sCatName, CurrentError());
        }
}

void HistoryFiles::KeepBehind(const std::wstring& sCatName, const CatCollection& colMainCats)
{
    std::optional<OrderContent> content;
    if (const std::shared_ptr<clsCat>* cMainCat = colMainCats.Find(CategoryKey(sCatName, 0)))
        if (const Snapshot cSnapshot = TakeSnapshot(**cMainCat); !cSnapshot.colEntries.empty())
            content = Fill(cSnapshot, quietly);
    if (content || m_cUnsaved.IsToDelete(sCatName))
        m_colLeftBehind.push_back({SavePathOf(sCatName), m_cMod.Saved().Begin(), std::move(content)});
}

void HistoryFiles::RetryLeftBehind()
{
    SavedFiles& cSaved = m_cMod.Saved();
    for (LeftBehind& left : std::exchange(m_colLeftBehind, {}))
        try
        {
            if (left.content)
                cSaved.Replace(left.sPath, left.stamp, left.content->Bytes(), this,
                               SavedFiles::Unseen::KeepAside, Patience::None);
            else if (cSaved.NewestOf(left.sPath) <= left.stamp)
                cSaved.Delete(left.sPath, this);
        }
        catch (...)
        {
            m_cMod.LogError(L"SaveHistoryAndOrdering " + left.sPath, CurrentError());
            if (!left.content)
                left.stamp = cSaved.NewestOf(left.sPath); // a deletion counts as newer even when it fails
            m_colLeftBehind.push_back(std::move(left));
            m_lLeftBehindTriedAt = m_cMod.Ports().cClock.TickCount();
        }
}

} // namespace ravlo
