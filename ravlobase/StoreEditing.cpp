// SPDX-License-Identifier: MIT
// Cuts added, modified and removed, by this program and by others.
#include "ravlobase/Store.h"

#include "base/RuntimeError.h"
#include "ravlobase/CutFile.h"
#include "ravlobase/StoreEdit.h"

#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace ravlo
{

namespace
{

const Cut& Given(const std::shared_ptr<Cut>& cCut)
{
    if (!cCut)
        throw RuntimeError(error::ObjectNotSet);
    return *cCut;
}

} // namespace

bool Store::IsOwn(const std::shared_ptr<Cut>& cCut) const noexcept
{
    const auto* pCut = dynamic_cast<const StoreCut*>(cCut.get());
    return pCut && pCut->Owner() == this;
}

// --- adding

void Store::Add(StoreEdit& edit, const std::shared_ptr<Cut>& cGiven) const
{
    CutValues values = ValuesOf(Given(cGiven));
    if (values.cKey.Empty())
        values.cKey = values.cPath;
    if (values.cPath.Empty())
        values.cPath = values.cKey;
    if (values.cKey.Empty())
        throw RuntimeError(error::InvalidProcedureCall, L"A cut needs a key.");
    if (values.lCatLevel == 0)
        values.lCatLevel = 1;
    CheckValues(values);
    auto cFree = std::dynamic_pointer_cast<StoreCut>(cGiven);
    if (cFree && cFree->Owner())
        cFree = nullptr;
    edit.Add(std::move(cFree), std::move(values));
}

std::int32_t Store::AddCuts(const Cuts& colCuts)
{
    NeedOpenAndNoBatch();
    if (colCuts.empty())
        return 0;
    Cuts colAdded;
    m_cListeners.WithProgress(L"Adding cuts", colCuts.size(), [&] {
        StoreEdit edit;
        for (std::size_t i = 0; i < colCuts.size(); ++i)
        {
            Add(edit, colCuts[i]);
            if ((i + 1) % StoreListeners::progressEvery == 0)
                m_cListeners.Progress(L"Adding cuts", i + 1, colCuts.size());
        }
        NeedOpenAndNoBatch(); // again: a listener may have closed it
        edit.NeedNewKeys(m_cContent);
        edit.WriteTo(*m_pFile);
        colAdded = edit.TakeInto(m_cContent, *this).colAdded;
        return CutsText(colAdded.size()) + L" added.";
    });
    m_cListeners.Added(colAdded);
    return LongCount(colAdded.size());
}

// --- modifying

void Store::Modify(StoreEdit& edit, const std::shared_ptr<Cut>& cGiven) const
{
    if (IsOwn(cGiven))
    {
        edit.Modify(cGiven, std::nullopt);
        return;
    }
    CutValues next = ValuesOf(Given(cGiven));
    std::shared_ptr<Cut> cCut = m_cContent.ByKey(next.cKey);
    if (!cCut)
        throw RuntimeError(error::InvalidProcedureCall,
                           L"There is no cut with the key \"" + next.cKey.Text() + L"\".");
    next.cKey = cCut->Key();
    if (next.lCatLevel == 0)
        next.lCatLevel = cCut->CatLevel();
    CheckValues(next);
    edit.Modify(std::move(cCut), std::move(next));
}

std::int32_t Store::ModifyCuts(const Cuts& colCuts)
{
    NeedOpenAndNoBatch();
    StoreEdit edit;
    edit.RecordPlays();
    for (const std::shared_ptr<Cut>& cCut : colCuts)
        Modify(edit, cCut);
    edit.WriteTo(*m_pFile);
    const Cuts colModified = edit.TakeInto(m_cContent, *this).colModified;
    m_cListeners.Modified(colModified);
    return LongCount(colModified.size());
}

// --- removing

void Store::Remove(const Cuts& colRemoved)
{
    for (const std::shared_ptr<Cut>& cCut : colRemoved)
        m_cGathered.Forget(StoreContent::Own(cCut));
    m_cContent.Remove(colRemoved);
}

std::int32_t Store::RemoveCuts(const Cuts& colCuts)
{
    NeedOpenAndNoBatch();
    Cuts colRemoved;
    std::unordered_set<const Cut*> seen;
    for (const std::shared_ptr<Cut>& cCut : colCuts)
    {
        std::shared_ptr<Cut> cOwn = m_cContent.ByKey(Given(cCut).Key());
        if (cOwn && seen.insert(cOwn.get()).second)
            colRemoved.push_back(std::move(cOwn));
    }
    if (colRemoved.empty())
        return 0;
    sqlite::Transaction cTransaction(m_pFile->Sql());
    for (const std::shared_ptr<Cut>& cCut : colRemoved)
        m_pFile->Delete(cCut->ID());
    cTransaction.Commit();
    Remove(colRemoved);
    m_cListeners.Removed(colRemoved);
    return LongCount(colRemoved.size());
}

// --- changes of other programs

std::int32_t Store::TakeInChanges()
{
    NeedOpen();
    if (m_cBatches.Any() || !m_pFile->ChangedByOthers())
        return 0;
    // Numbers are never given twice, so a number is a cut.
    std::unordered_map<std::int32_t, std::shared_ptr<Cut>> left;
    for (const std::shared_ptr<Cut>& cCut : m_cContent.All())
        left.emplace(cCut->ID(), cCut);
    Cuts colAdded;
    StoreEdit edit;
    for (StoredCut& stored : m_pFile->Read())
    {
        const auto it = left.find(stored.lID);
        if (it == left.end() || !SameText(StoreContent::Own(it->second).Values().cKey, stored.values.cKey))
        {
            auto cCut = std::make_shared<StoreCut>();
            cCut->Attach(std::move(stored.values), stored.lID, *this);
            colAdded.push_back(std::move(cCut));
            continue;
        }
        const StoreCut& cOwn = StoreContent::Own(it->second);
        if (m_cGathered.Contains(cOwn))
            stored.values.dtLastPlayed = cOwn.LastPlayed();
        if (!SameValues(cOwn.Values(), stored.values))
            edit.Modify(it->second, std::move(stored.values));
        left.erase(it);
    }
    Cuts colRemoved;
    for (const std::shared_ptr<Cut>& cCut : m_cContent.All())
        if (left.contains(cCut->ID()))
            colRemoved.push_back(cCut);

    Remove(colRemoved);
    m_cContent.Insert(colAdded);
    const Cuts colModified = edit.TakeInto(m_cContent, *this).colModified;
    m_cListeners.Removed(colRemoved);
    m_cListeners.Added(colAdded);
    m_cListeners.Modified(colModified);
    return LongCount(colRemoved.size() + colAdded.size() + colModified.size());
}

} // namespace ravlo
