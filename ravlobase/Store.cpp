// SPDX-License-Identifier: MIT
#include "ravlobase/StoreImpl.h"

#include <cmath>

namespace ravlo
{

// --- what every part uses

std::wstring Store::Impl::CutsText(std::size_t count)
{
    return DecimalText(static_cast<std::int64_t>(count)) + (count == 1 ? L" cut" : L" cuts");
}

void Store::Impl::CheckValues(const CutValues& values)
{
    if (values.lCatLevel < 1)
        throw RuntimeError(error::InvalidProcedureCall, L"The level of a cut has to be 1 or more.");
    CheckLastPlayed(values.dtLastPlayed);
}

void Store::Impl::CheckLastPlayed(DateTime dtWhen)
{
    if (!std::isfinite(dtWhen))
        throw RuntimeError(error::InvalidProcedureCall, L"The last-played time is no date.");
}

// --- open and close

void Store::Impl::Open(const std::wstring& sName)
{
    if (pFile)
        throw RuntimeError(error::FileAlreadyOpen, L"The database \"" + sFile + L"\" is open already.");
    std::vector<StoredCut> colStored;
    auto pOpened = std::make_unique<CutFile>(sName, colStored);
    try
    {
        sFile = sName;
        colCuts.Reserve(colStored.size());
        cIndex.Reserve(colStored.size());
        for (auto& cut : colStored)
        {
            auto cCut = std::make_shared<StoreCut>(std::move(cut.values), cut.lID, this);
            if (!colCuts.Add(cCut->Values().cKey, cCut))
            {
                throw RuntimeError(error::InvalidFileFormat,
                                   L"The database \"" + sName + L"\" is damaged: a key stands in it twice.");
            }
            cIndex.Add(*cCut);
        }
    }
    catch (...)
    {
        Forget();
        throw;
    }
    pFile = std::move(pOpened);
}

void Store::Impl::Close() noexcept
{
    EndBatches(0);
    try
    {
        WriteGathered();
    }
    catch (...)
    {
        // Whoever wants to know writes before closing.
    }
    Forget();
    pFile.reset();
}

void Store::Impl::Forget() noexcept
{
    for (const auto& cCut : colCuts)
        Own(cCut).Detach();
    colCuts.Clear();
    cIndex.Clear();
    gathered.Clear();
    gathered.End();
    sFile.clear();
}

void Store::Impl::NeedOpen() const
{
    if (!pFile)
        throw RuntimeError(error::ObjectNotSet, L"The database is not open.");
}

void Store::Impl::NeedOpenAndNoBatch() const
{
    NeedOpen();
    if (!batches.empty())
        throw RuntimeError(error::InvalidProcedureCall, L"This cannot be done inside a batch of changes.");
}

// --- the cuts

void Store::Impl::TakeValues(StoreCut& cCut, CutValues values)
{
    // The hash of an unchanged pair stays where it is: nothing is allocated, so nothing can fail.
    const auto& old = cCut.Values();
    if (SameText(old.cArtist, values.cArtist) && SameText(old.cTitle, values.cTitle))
    {
        cCut.Take(std::move(values));
        return;
    }
    cIndex.Remove(cCut);
    cCut.Take(std::move(values));
    cIndex.Add(cCut);
}

void Store::Impl::Change(StoreCut& cCut, CutValues next)
{
    CheckValues(next);
    NeedSoundBatch();
    if (SameValues(cCut.Values(), next))
        return;
    if (!batches.empty())
        colUndo.push_back({&cCut, cCut.Values()});
    try
    {
        sqlite::Transaction cTransaction(pFile->Sql());
        pFile->Update(cCut.ID(), cCut.Values(), next);
        cTransaction.Commit();
    }
    catch (...)
    {
        NoteLostBatch();
        throw;
    }
    TakeValues(cCut, std::move(next));
}

void Store::Impl::ChangeLastPlayed(StoreCut& cCut, DateTime dtWhen)
{
    if (!gathered.On() || !batches.empty())
    {
        auto next = cCut.Values();
        next.dtLastPlayed = dtWhen;
        Change(cCut, std::move(next));
        return;
    }
    CheckLastPlayed(dtWhen);
    if (cCut.LastPlayed() != dtWhen)
    {
        gathered.Add(cCut);
        cCut.TakeLastPlayed(dtWhen);
    }
}

// --- gathered plays

void Store::Impl::WriteGathered()
{
    if (pFile && gathered.On())
        gathered.Write(*pFile);
}

// --- batches

std::size_t Store::Impl::BeginBatch()
{
    NeedOpen();
    NeedSoundBatch();
    batches.push_back({std::make_unique<sqlite::Transaction>(pFile->Sql()), colUndo.size()});
    return batches.size();
}

void Store::Impl::CommitBatch(std::size_t depth)
{
    NeedOpen();
    NeedSoundBatch();
    if (batches.size() != depth)
        throw RuntimeError(error::InvalidProcedureCall, L"This batch of changes has ended already.");
    batches.back().pTransaction->Commit();
    batches.pop_back();
    if (batches.empty())
        colUndo.clear();
}

void Store::Impl::EndBatches(std::size_t depth) noexcept
{
    while (!batches.empty() && batches.size() >= depth)
    {
        UndoTo(batches.back().undoFrom);
        batches.pop_back();
    }
    bBatchLost = bBatchLost && !batches.empty();
}

void Store::Impl::UndoTo(std::size_t size) noexcept
{
    while (colUndo.size() > size)
    {
        TakeValues(*colUndo.back().pCut, std::move(colUndo.back().old));
        colUndo.pop_back();
    }
}

void Store::Impl::NoteLostBatch() noexcept
{
    if (!batches.empty() && !pFile->Sql().InTransaction())
    {
        bBatchLost = true;
        UndoTo(0);
    }
}

void Store::Impl::NeedSoundBatch() const
{
    if (bBatchLost)
        throw RuntimeError(error::DeviceIo, L"An earlier failure has undone this batch of changes.");
}

// --- events

void Store::Impl::RaiseProgress(const std::wstring& sText, std::size_t count, std::size_t max)
{
    Raise([&](DataBaseEvents& cEvents) { cEvents.Progress(sText, Long(count), Long(max)); });
}

// --- the Store

Store::Store() : m_cImpl(std::make_unique<Impl>()) {}
Store::~Store() = default;

void Store::Open(const std::wstring& sFile) { m_cImpl->Open(sFile); }
void Store::Close() noexcept { m_cImpl->Close(); }
bool Store::IsOpen() const noexcept { return m_cImpl->pFile != nullptr; }

std::wstring Store::FileName() const
{
    m_cImpl->NeedOpen();
    return m_cImpl->sFile;
}

Cuts Store::AllCuts() const
{
    m_cImpl->NeedOpen();
    return {m_cImpl->colCuts.begin(), m_cImpl->colCuts.end()};
}

std::shared_ptr<Cut> Store::CutByKey(const TextKey& cKey) const
{
    m_cImpl->NeedOpen();
    return m_cImpl->ByKey(cKey);
}

std::shared_ptr<Cut> Store::CutByArtistTitle(const std::wstring& sArtist, const std::wstring& sTitle) const
{
    m_cImpl->NeedOpen();
    const StoreCut* pCut = m_cImpl->cIndex.Find(sArtist, sTitle);
    return pCut != nullptr ? m_cImpl->ByKey(pCut->Values().cKey) : nullptr;
}

std::shared_ptr<Cut> Store::NewCut() const { return std::make_shared<StoreCut>(); }

void Store::Advise(DataBaseEvents& cEvents)
{
    auto& colListeners = m_cImpl->colListeners;
    if (std::find(colListeners.begin(), colListeners.end(), &cEvents) == colListeners.end())
        colListeners.push_back(&cEvents);
}

void Store::Unadvise(DataBaseEvents& cEvents) noexcept { std::erase(m_cImpl->colListeners, &cEvents); }

const OrderedKeyedCollection<std::shared_ptr<Cut>>& Store::CutCollection() const
{
    m_cImpl->NeedOpen();
    return m_cImpl->colCuts;
}

std::int32_t Store::AddCuts(const Cuts& colCuts) { return m_cImpl->AddCuts(colCuts); }
std::int32_t Store::ModifyCuts(const Cuts& colCuts) { return m_cImpl->ModifyCuts(colCuts); }
std::int32_t Store::RemoveCuts(const Cuts& colCuts) { return m_cImpl->RemoveCuts(colCuts); }
std::int32_t Store::ImportCsv(const std::wstring& sFile) { return m_cImpl->ImportCsv(sFile); }
const ImportReport& Store::LastImport() const noexcept { return m_cImpl->report; }

std::int32_t Store::TakeInChanges()
{
    m_cImpl->NeedOpen();
    return m_cImpl->TakeInChanges();
}

void Store::BeginGathering()
{
    m_cImpl->NeedOpen();
    m_cImpl->gathered.Begin();
}

void Store::WriteGathered()
{
    m_cImpl->NeedOpenAndNoBatch(); // whose end could undo it
    m_cImpl->WriteGathered();
}

void Store::EndGathering()
{
    WriteGathered();
    m_cImpl->gathered.End();
}

Store::Batch::Batch(Store& cStore) : m_cStore(cStore), m_depth(cStore.m_cImpl->BeginBatch()) {}
Store::Batch::~Batch() { m_cStore.m_cImpl->EndBatches(m_depth); }
void Store::Batch::Commit() { m_cStore.m_cImpl->CommitBatch(m_depth); }

} // namespace ravlo
