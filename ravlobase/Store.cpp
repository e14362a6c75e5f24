// SPDX-License-Identifier: MIT
// The file, property changes, gathered plays and batches.
#include "ravlobase/Store.h"

#include "base/RuntimeError.h"
#include "ravlobase/CutFile.h"
#include "ravlobase/PlayReport.h"

#include <optional>
#include <utility>

namespace ravlo
{

Store::Store() = default;
Store::~Store() { Close(); }

// --- open and close

void Store::Open(const std::wstring& sFile)
{
    if (m_pFile)
        throw RuntimeError(error::FileAlreadyOpen, L"The database \"" + m_sFile + L"\" is open already.");
    std::vector<StoredCut> colStored;
    auto pOpened = std::make_unique<CutFile>(sFile, colStored);
    try
    {
        m_sFile = sFile;
        m_cContent.Reserve(colStored.size());
        for (StoredCut& stored : colStored)
        {
            auto cCut = std::make_shared<StoreCut>();
            cCut->Attach(std::move(stored.values), stored.lID, *this);
            if (!m_cContent.Add(cCut))
                throw RuntimeError(error::InvalidFileFormat,
                                   L"The database \"" + sFile + L"\" is damaged: it contains a key twice.");
        }
    }
    catch (...)
    {
        Forget();
        throw;
    }
    m_pFile = std::move(pOpened);
}

void Store::Close() noexcept
{
    m_cBatches.Undo(0);
    try
    {
        if (m_pFile && m_cGathered.On())
            m_cGathered.Write(*m_pFile);
    }
    catch (...)
    {
        // A host that needs the error calls WriteGathered before closing.
    }
    Forget();
    m_pFile.reset();
}

void Store::Forget() noexcept
{
    m_cContent.Clear();
    m_cGathered.Clear();
    m_cGathered.End();
    m_sFile.clear();
}

void Store::NeedOpen() const
{
    if (!m_pFile)
        throw RuntimeError(error::ObjectNotSet, L"The database is not open.");
}

void Store::NeedOpenAndNoBatch() const
{
    NeedOpen();
    if (m_cBatches.Any())
        throw RuntimeError(error::InvalidProcedureCall, L"This cannot be done inside a batch of changes.");
}

// --- the cuts

std::wstring Store::FileName() const
{
    NeedOpen();
    return m_sFile;
}

Cuts Store::AllCuts() const
{
    const StoreContent::Collection& colCuts = CutCollection();
    return {colCuts.begin(), colCuts.end()};
}

const StoreContent::Collection& Store::CutCollection() const
{
    NeedOpen();
    return m_cContent.All();
}

std::shared_ptr<Cut> Store::CutByKey(const TextKey& cKey) const
{
    NeedOpen();
    return m_cContent.ByKey(cKey);
}

std::shared_ptr<Cut> Store::CutByArtistTitle(const std::wstring& sArtist, const std::wstring& sTitle) const
{
    NeedOpen();
    return m_cContent.ByArtistTitle(sArtist, sTitle);
}

std::shared_ptr<Cut> Store::NewCut() const { return std::make_shared<StoreCut>(); }

// --- property changes

void Store::Change(StoreCut& cCut, CutValues next)
{
    CheckValues(next);
    m_cBatches.NeedSound();
    if (SameValues(cCut.Values(), next))
        return;
    m_cBatches.WillChange(cCut);
    try
    {
        sqlite::Transaction cTransaction(m_pFile->Sql());
        m_pFile->Update(cCut.ID(), cCut.Values(), next);
        if (IsPlay(cCut.Values(), next))
            m_pFile->InsertPlay(PlayOf(next));
        cTransaction.Commit();
    }
    catch (...)
    {
        m_cBatches.NoteFailure(m_pFile->Sql());
        throw;
    }
    m_cContent.SetValues(cCut, std::move(next));
}

void Store::ChangeLastPlayed(StoreCut& cCut, DateTime dtWhen)
{
    if (!m_cGathered.On() || m_cBatches.Any())
    {
        CutValues next = cCut.Values();
        next.dtLastPlayed = dtWhen;
        Change(cCut, std::move(next));
        return;
    }
    CheckLastPlayed(dtWhen);
    if (cCut.LastPlayed() != dtWhen)
    {
        m_cGathered.Add(cCut, dtWhen);
        cCut.TakeLastPlayed(dtWhen);
    }
}

// --- gathered plays

void Store::BeginGathering()
{
    NeedOpen();
    m_cGathered.Begin();
}

void Store::WriteGathered()
{
    NeedOpenAndNoBatch(); // a batch could undo the write
    if (m_cGathered.On())
        m_cGathered.Write(*m_pFile);
}

void Store::EndGathering()
{
    WriteGathered();
    m_cGathered.End();
}

// --- the record of plays

std::wstring Store::PlaysCsv(DateTime dtFrom, DateTime dtTo, const std::wstring& sBy)
{
    NeedOpen();
    const std::optional<PlaysBy> eBy = PlaysByNamed(sBy);
    if (!eBy)
        throw RuntimeError(error::InvalidProcedureCall,
                           L"Plays can be summed by \"cut\" or by \"artist\", not by \"" + sBy + L"\".");
    if (m_cGathered.On() && !m_cBatches.Any())
        m_cGathered.Write(*m_pFile);
    PlayReport report(*eBy);
    m_pFile->ForEachPlay(dtFrom, dtTo, [&](const RecordedPlay& play) { report.Add(play); });
    return report.Text();
}

// --- batches

Store::Batch::Batch(Store& cStore) : m_cStore(cStore)
{
    cStore.NeedOpen();
    m_depth = cStore.m_cBatches.Begin(cStore.m_pFile->Sql());
}

Store::Batch::~Batch() { m_cStore.m_cBatches.Undo(m_depth); }

void Store::Batch::Commit()
{
    m_cStore.NeedOpen();
    m_cStore.m_cBatches.Commit(m_depth);
}

} // namespace ravlo
