// SPDX-License-Identifier: MIT
#include "ravlobase/Store.h"

#include "collections/Text.h"
#include "ravlobase/ArtistTitleIndex.h"
#include "ravlobase/CutFile.h"
#include "ravlobase/FilePath.h"
#include "ravlobase/GatheredPlays.h"
#include "ravlobase/LibraryCsv.h"
#include "ravlobase/StoreErrors.h"
#include "text/CsvReader.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace ravlo
{

namespace
{

constexpr std::int32_t lProgressEvery = 500; // cuts or lines between two reports

std::int32_t Long(std::size_t lCount)
{
    return static_cast<std::int32_t>(std::min<std::size_t>(lCount, INT32_MAX));
}

std::wstring Decimal(std::size_t lCount) { return DecimalText(static_cast<std::int64_t>(lCount)); }

std::wstring CutsText(std::size_t lCount) { return Decimal(lCount) + (lCount == 1 ? L" cut" : L" cuts"); }

void CheckLastPlayed(DateTime dtWhen)
{
    if (!std::isfinite(dtWhen))
    {
        throw RuntimeError(error::InvalidProcedureCall, L"The last-played time is no date.");
    }
}

void CheckValues(const CutValues& values)
{
    if (values.lCatLevel < 1)
    {
        throw RuntimeError(error::InvalidProcedureCall, L"The level of a cut has to be 1 or more.");
    }
    CheckLastPlayed(values.dtLastPlayed);
}

const Cut& Given(const std::shared_ptr<Cut>& cCut)
{
    if (!cCut)
    {
        throw RuntimeError(error::ObjectNotSet);
    }
    return *cCut;
}

// What a row says, laid over what is there already.
CutValues Merged(CutValues values, const LibraryRow& row)
{
    const auto TakeText = [](TextKey& cField, const std::optional<std::wstring>& sText)
    {
        if (sText)
        {
            cField = TextKey(*sText);
        }
    };
    TakeText(values.cArtist, row.sArtist);
    TakeText(values.cTitle, row.sTitle);
    TakeText(values.cAlbum, row.sAlbum);
    TakeText(values.cSecondaryKey, row.sSecondaryKey);
    values.lYear = row.lYear.value_or(values.lYear);
    values.lDurationmS = row.lDurationmS.value_or(values.lDurationmS);
    values.lRunTimemS = row.lRunTimemS.value_or(values.lRunTimemS);
    values.lCatLevel = row.lLevel.value_or(values.lCatLevel);
    values.bOpener = row.bOpener.value_or(values.bOpener);
    values.dtLastPlayed = row.dtLastPlayed.value_or(values.dtLastPlayed);
    if (row.colCategories)
    {
        values.colCategories.clear();
        for (const auto& sName : *row.colCategories)
        {
            AddName(values.colCategories, sName);
        }
    }
    return values;
}

CutValues NewCutOf(const LibraryRow& row)
{
    CutValues values;
    values.cKey = row.cPath;
    values.cPath = row.cPath;
    values.lCatLevel = 1;
    return Merged(std::move(values), row);
}

} // namespace

std::wstring ImportReport::Summary() const
{
    if (!sFailure.empty())
    {
        return L"Nothing was imported: " + sFailure;
    }
    return CutsText(static_cast<std::size_t>(lAdded)) + L" added, " + DecimalText(lChanged) + L" changed, " +
           DecimalText(lUnchanged) + L" unchanged, " + Decimal(colRejects.size()) +
           (colRejects.size() == 1 ? L" row rejected." : L" rows rejected.");
}

std::wstring ImportReport::Text() const
{
    std::wstring sText = Summary();
    for (const auto& reject : colRejects)
    {
        sText += sCrLf + (L"Line " + Decimal(reject.lLine)) + L": " + reject.sReason;
    }
    return sText;
}

struct Store::Impl : CutOwner
{
    struct Undo
    {
        StoreCut* pCut;
        CutValues old;
    };

    // A cut that is about to be added: an object that becomes the database's own, or null for a new one.
    struct Addition
    {
        std::shared_ptr<StoreCut> cCut;
        CutValues values;
    };

    struct Modification
    {
        std::shared_ptr<Cut> cCut;     // one of the database's own
        std::optional<CutValues> next; // nothing: it is announced as it is
    };

    ~Impl() override { Close(); }

    // --- open and close

    void Open(const std::wstring& sName)
    {
        if (pFile)
        {
            throw RuntimeError(error::FileAlreadyOpen, L"The database \"" + sFile + L"\" is open already.");
        }
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
                                       L"The database \"" + sName +
                                           L"\" is damaged: a key stands in it twice.");
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

    void Close() noexcept
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

    void Forget() noexcept
    {
        for (const auto& cCut : colCuts)
        {
            Own(cCut).Detach();
        }
        colCuts.Clear();
        cIndex.Clear();
        gathered.Clear();
        gathered.End();
        sFile.clear();
    }

    void NeedOpen() const
    {
        if (!pFile)
        {
            throw RuntimeError(error::ObjectNotSet, L"The database is not open.");
        }
    }

    void NeedOpenAndNoBatch() const
    {
        NeedOpen();
        if (!batches.empty())
        {
            throw RuntimeError(error::InvalidProcedureCall,
                               L"This cannot be done inside a batch of changes.");
        }
    }

    // --- the cuts

    // The collection holds nothing else.
    static StoreCut& Own(const std::shared_ptr<Cut>& cCut) noexcept { return static_cast<StoreCut&>(*cCut); }

    bool IsOwn(const std::shared_ptr<Cut>& cCut) const noexcept
    {
        const auto* pCut = dynamic_cast<const StoreCut*>(cCut.get());
        return pCut != nullptr && pCut->Owner() == this;
    }

    std::shared_ptr<Cut> ByKey(const TextKey& cKey) const
    {
        const auto* pCut = colCuts.Find(cKey);
        return pCut != nullptr ? *pCut : nullptr;
    }

    void TakeValues(StoreCut& cCut, CutValues values)
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

    // A property change.
    void Change(StoreCut& cCut, CutValues next) override
    {
        CheckValues(next);
        NeedSoundBatch();
        if (SameValues(cCut.Values(), next))
        {
            return;
        }
        if (!batches.empty())
        {
            colUndo.push_back({&cCut, cCut.Values()});
        }
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

    void ChangeLastPlayed(StoreCut& cCut, DateTime dtWhen) override
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

    void WriteGathered()
    {
        if (pFile && gathered.On())
        {
            gathered.Write(*pFile);
        }
    }

    // --- batches

    struct OpenBatch
    {
        std::unique_ptr<sqlite::Transaction> pTransaction;
        std::size_t lUndoFrom;
    };

    std::size_t BeginBatch()
    {
        NeedOpen();
        NeedSoundBatch();
        batches.push_back({std::make_unique<sqlite::Transaction>(pFile->Sql()), colUndo.size()});
        return batches.size();
    }

    void CommitBatch(std::size_t lDepth)
    {
        NeedOpen();
        NeedSoundBatch();
        if (batches.size() != lDepth)
        {
            throw RuntimeError(error::InvalidProcedureCall, L"This batch of changes has ended already.");
        }
        batches.back().pTransaction->Commit();
        batches.pop_back();
        if (batches.empty())
        {
            colUndo.clear();
        }
    }

    // Undoes the batches from the innermost one to the one that stands lDepth deep, if they are still open.
    void EndBatches(std::size_t lDepth) noexcept
    {
        while (!batches.empty() && batches.size() >= lDepth)
        {
            UndoTo(batches.back().lUndoFrom);
            batches.pop_back();
        }
        bBatchLost = bBatchLost && !batches.empty();
    }

    void UndoTo(std::size_t lSize) noexcept
    {
        while (colUndo.size() > lSize)
        {
            TakeValues(*colUndo.back().pCut, std::move(colUndo.back().old));
            colUndo.pop_back();
        }
    }

    // Some failures (a full disk) end SQLite's transaction,
    // and all of the batch with it.
    void NoteLostBatch() noexcept
    {
        if (!batches.empty() && !pFile->Sql().InTransaction())
        {
            bBatchLost = true;
            UndoTo(0);
        }
    }

    void NeedSoundBatch() const
    {
        if (bBatchLost)
        {
            throw RuntimeError(error::DeviceIo, L"An earlier failure has undone this batch of changes.");
        }
    }

    // --- events

    template <class Event> void Raise(Event event)
    {
        const auto colNow = colListeners;
        for (auto* pListener : colNow)
        {
            if (std::find(colListeners.begin(), colListeners.end(), pListener) == colListeners.end())
            {
                continue; // an earlier listener has taken it off
            }
            try
            {
                event(*pListener);
            }
            catch (...)
            {
                // The listener's own trouble: what is announced has happened, and the others want to know.
            }
        }
    }

    void RaiseProgress(const std::wstring& sText, std::size_t lCount, std::size_t lMax)
    {
        Raise([&](DataBaseEvents& cEvents) { cEvents.Progress(sText, Long(lCount), Long(lMax)); });
    }

    // Surrounds the work, which returns the closing status, with ProgressStart and ProgressDone.
    template <class Work> void WithProgress(const std::wstring& sReason, std::size_t lMax, Work work)
    {
        Raise([&](DataBaseEvents& cEvents) { cEvents.ProgressStart(sReason, Long(lMax)); });
        const auto Done = [&](const std::wstring& sStatus)
        { Raise([&](DataBaseEvents& cEvents) { cEvents.ProgressDone(sStatus); }); };
        try
        {
            Done(work());
        }
        catch (const RuntimeError& e)
        {
            Done(sReason + L" failed: " + e.Description());
            throw;
        }
        catch (...)
        {
            Done(sReason + L" failed.");
            throw;
        }
    }

    // --- adding

    Addition AdditionOf(const std::shared_ptr<Cut>& cCut)
    {
        Addition addition{nullptr, ValuesOf(Given(cCut))};
        auto cFree = std::dynamic_pointer_cast<StoreCut>(cCut);
        if (cFree && cFree->Owner() == nullptr)
        {
            addition.cCut = std::move(cFree);
        }
        auto& values = addition.values;
        if (values.cKey.Empty())
        {
            values.cKey = values.cPath;
        }
        if (values.cPath.Empty())
        {
            values.cPath = values.cKey;
        }
        if (values.cKey.Empty())
        {
            throw RuntimeError(error::InvalidProcedureCall, L"A cut needs a key.");
        }
        if (values.lCatLevel == 0)
        {
            values.lCatLevel = 1;
        }
        CheckValues(values);
        return addition;
    }

    std::vector<Addition> Gather(const Cuts& colGiven)
    {
        std::vector<Addition> colAdditions;
        colAdditions.reserve(colGiven.size());
        for (const auto& cCut : colGiven)
        {
            colAdditions.push_back(AdditionOf(cCut));
            if (colAdditions.size() % lProgressEvery == 0)
            {
                RaiseProgress(L"Adding cuts", colAdditions.size(), colGiven.size());
            }
        }
        return colAdditions;
    }

    void NeedNewKeys(const std::vector<Addition>& colAdditions) const
    {
        const auto Hash = [](const TextKey& cKey) noexcept { return cKey.Hash(); };
        std::unordered_set<TextKey, decltype(Hash)> keys(colAdditions.size(), Hash);
        for (const auto& addition : colAdditions)
        {
            const auto& cKey = addition.values.cKey;
            if (colCuts.Exists(cKey) || !keys.insert(cKey).second)
            {
                throw RuntimeError(error::KeyAlreadyExists,
                                   L"There is a cut with the key \"" + cKey.Text() + L"\" already.");
            }
        }
    }

    std::vector<std::int32_t> InsertAll(const std::vector<Addition>& colAdditions)
    {
        std::vector<std::int32_t> colIDs;
        colIDs.reserve(colAdditions.size());
        for (const auto& addition : colAdditions)
        {
            colIDs.push_back(pFile->Insert(addition.values));
        }
        return colIDs;
    }

    // Once they stand in the file.
    Cuts TakeIn(std::vector<Addition>& colAdditions, const std::vector<std::int32_t>& colIDs)
    {
        Cuts colAdded;
        colAdded.reserve(colAdditions.size());
        for (std::size_t i = 0; i < colAdditions.size(); ++i)
        {
            auto cCut = colAdditions[i].cCut ? std::move(colAdditions[i].cCut) : std::make_shared<StoreCut>();
            cCut->Attach(std::move(colAdditions[i].values), colIDs[i], *this);
            colCuts.Add(cCut->Values().cKey, cCut);
            cIndex.Add(*cCut);
            colAdded.push_back(std::move(cCut));
        }
        return colAdded;
    }

    std::int32_t AddCuts(const Cuts& colGiven)
    {
        NeedOpenAndNoBatch();
        if (colGiven.empty())
        {
            return 0;
        }
        Cuts colAdded;
        WithProgress(L"Adding cuts", colGiven.size(),
                     [&]
                     {
                         auto colAdditions = Gather(colGiven);
                         NeedOpenAndNoBatch(); // a listener may have closed it meanwhile
                         NeedNewKeys(colAdditions);
                         sqlite::Transaction cTransaction(pFile->Sql());
                         const auto colIDs = InsertAll(colAdditions);
                         cTransaction.Commit();
                         colAdded = TakeIn(colAdditions, colIDs);
                         return CutsText(colAdded.size()) + L" added.";
                     });
        Raise([&](DataBaseEvents& cEvents) { cEvents.CutsAdded(colAdded); });
        return Long(colAdded.size());
    }

    // --- modifying and removing

    Modification ModificationOf(const std::shared_ptr<Cut>& cGiven)
    {
        if (IsOwn(cGiven))
        {
            return {cGiven, std::nullopt};
        }
        auto next = ValuesOf(Given(cGiven));
        auto cCut = ByKey(next.cKey);
        if (!cCut)
        {
            throw RuntimeError(error::InvalidProcedureCall,
                               L"There is no cut with the key \"" + next.cKey.Text() + L"\".");
        }
        next.cKey = cCut->Key();
        if (next.lCatLevel == 0)
        {
            next.lCatLevel = cCut->CatLevel();
        }
        CheckValues(next);
        return {std::move(cCut), std::move(next)};
    }

    // One for each cut; of several copies of one cut the last one counts.
    std::vector<Modification> ModificationsOf(const Cuts& colGiven)
    {
        std::vector<Modification> colModifications;
        std::unordered_map<const Cut*, std::size_t> positions;
        for (const auto& cGiven : colGiven)
        {
            auto modification = ModificationOf(cGiven);
            const auto [it, bNew] = positions.try_emplace(modification.cCut.get(), colModifications.size());
            if (bNew)
            {
                colModifications.push_back(std::move(modification));
            }
            else if (modification.next)
            {
                colModifications[it->second].next = std::move(modification.next);
            }
        }
        return colModifications;
    }

    void WriteAll(const std::vector<Modification>& colModifications)
    {
        for (const auto& modification : colModifications)
        {
            if (modification.next)
            {
                const auto& cCut = Own(modification.cCut);
                pFile->Update(cCut.ID(), cCut.Values(), *modification.next);
            }
        }
    }

    // Once they stand in the file.
    Cuts TakeOver(std::vector<Modification>& colModifications)
    {
        Cuts colModified;
        for (auto& modification : colModifications)
        {
            if (modification.next)
            {
                TakeValues(Own(modification.cCut), std::move(*modification.next));
            }
            colModified.push_back(std::move(modification.cCut));
        }
        return colModified;
    }

    std::int32_t ModifyCuts(const Cuts& colGiven)
    {
        NeedOpenAndNoBatch();
        auto colModifications = ModificationsOf(colGiven);
        if (colModifications.empty())
        {
            return 0;
        }
        // A mere announcement needs no write lock.
        if (std::any_of(colModifications.begin(), colModifications.end(),
                        [](const Modification& modification) { return modification.next.has_value(); }))
        {
            sqlite::Transaction cTransaction(pFile->Sql());
            WriteAll(colModifications);
            cTransaction.Commit();
        }
        const auto colModified = TakeOver(colModifications);
        Raise([&](DataBaseEvents& cEvents) { cEvents.CutsModified(colModified); });
        return Long(colModified.size());
    }

    void TakeOut(const Cuts& colRemoved)
    {
        for (const auto& cCut : colRemoved)
        {
            cIndex.Remove(Own(cCut));
            gathered.Forget(Own(cCut));
            Own(cCut).Detach();
        }
        // Many removals one by one would move the pointers behind each of them: then what stays is gathered
        // anew.
        constexpr std::size_t lFew = 16;
        if (colRemoved.size() <= lFew)
        {
            for (const auto& cCut : colRemoved)
            {
                colCuts.Remove(Own(cCut).Values().cKey);
            }
            return;
        }
        OrderedKeyedCollection<std::shared_ptr<Cut>> colStay;
        colStay.Reserve(colCuts.Count() - colRemoved.size());
        for (const auto& cCut : colCuts)
        {
            if (Own(cCut).Owner() == this)
            {
                colStay.Add(Own(cCut).Values().cKey, cCut);
            }
        }
        colCuts = std::move(colStay);
    }

    std::int32_t RemoveCuts(const Cuts& colGiven)
    {
        NeedOpenAndNoBatch();
        Cuts colRemoved;
        std::unordered_set<const Cut*> seen;
        for (const auto& cCut : colGiven)
        {
            auto cOwn = ByKey(Given(cCut).Key());
            if (cOwn && seen.insert(cOwn.get()).second)
            {
                colRemoved.push_back(std::move(cOwn));
            }
        }
        if (colRemoved.empty())
        {
            return 0;
        }
        sqlite::Transaction cTransaction(pFile->Sql());
        for (const auto& cCut : colRemoved)
        {
            pFile->Delete(cCut->ID());
        }
        cTransaction.Commit();
        TakeOut(colRemoved);
        Raise([&](DataBaseEvents& cEvents) { cEvents.CutsRemoved(colRemoved); });
        return Long(colRemoved.size());
    }

    // --- changes of other programs

    struct Changes
    {
        Cuts colRemoved;
        Cuts colAdded;
        std::vector<Modification> colModified;
    };

    // What makes the cuts in memory those of the file. Numbers are never given twice, so a number is a cut.
    Changes ChangesTo(std::vector<StoredCut>& colStored)
    {
        Changes changes;
        std::unordered_map<std::int32_t, std::shared_ptr<Cut>> left;
        for (const auto& cCut : colCuts)
        {
            left.emplace(cCut->ID(), cCut);
        }
        for (auto& stored : colStored)
        {
            const auto it = left.find(stored.lID);
            if (it == left.end() || !SameText(Own(it->second).Values().cKey, stored.values.cKey))
            {
                changes.colAdded.push_back(
                    std::make_shared<StoreCut>(std::move(stored.values), stored.lID, this));
                continue;
            }
            const auto& cOwn = Own(it->second);
            if (gathered.Holds(cOwn))
            {
                stored.values.dtLastPlayed = cOwn.LastPlayed();
            }
            if (!SameValues(cOwn.Values(), stored.values))
            {
                changes.colModified.push_back({it->second, std::move(stored.values)});
            }
            left.erase(it);
        }
        for (const auto& cCut : colCuts)
        {
            if (left.contains(cCut->ID()))
            {
                changes.colRemoved.push_back(cCut);
            }
        }
        return changes;
    }

    // New cuts may have numbers below those that were added here.
    void Insert(const Cuts& colAdded)
    {
        if (colAdded.empty())
        {
            return;
        }
        Cuts colAll(colCuts.begin(), colCuts.end());
        colAll.insert(colAll.end(), colAdded.begin(), colAdded.end());
        std::sort(colAll.begin(), colAll.end(),
                  [](const auto& left, const auto& right) { return left->ID() < right->ID(); });
        OrderedKeyedCollection<std::shared_ptr<Cut>> colOrdered;
        colOrdered.Reserve(colAll.size());
        for (const auto& cCut : colAll)
        {
            colOrdered.Add(Own(cCut).Values().cKey, cCut);
        }
        colCuts = std::move(colOrdered);
        for (const auto& cCut : colAdded)
        {
            cIndex.Add(Own(cCut));
        }
    }

    std::int32_t TakeInChanges()
    {
        if (!batches.empty() || !pFile->ChangedByOthers())
        {
            return 0;
        }
        auto colStored = pFile->Read();
        auto changes = ChangesTo(colStored);
        TakeOut(changes.colRemoved);
        Insert(changes.colAdded);
        const auto colModified = TakeOver(changes.colModified);
        const auto Announce = [&](const Cuts& colChanged, void (DataBaseEvents::*tell)(const Cuts&))
        {
            if (!colChanged.empty())
            {
                Raise([&](DataBaseEvents& cEvents) { (cEvents.*tell)(colChanged); });
            }
        };
        Announce(changes.colRemoved, &DataBaseEvents::CutsRemoved);
        Announce(changes.colAdded, &DataBaseEvents::CutsAdded);
        Announce(colModified, &DataBaseEvents::CutsModified);
        return Long(changes.colRemoved.size() + changes.colAdded.size() + colModified.size());
    }

    // --- importing

    // Collects what a file says and reports on the way. Nothing is written meanwhile, so listeners may do as
    // they like.
    struct Rows : LibraryCsvSink
    {
        Rows(Impl& cStoreIn, std::size_t lLinesIn) : cStore(cStoreIn), lLines(lLinesIn) {}

        void OnCut(LibraryRow row) override
        {
            const std::size_t lLine = row.lLine;
            colRows.push_back(std::move(row));
            if (colRows.size() % lProgressEvery == 0)
            {
                cStore.RaiseProgress(L"Reading line " + Decimal(lLine), lLine, lLines);
            }
        }

        void OnReject(std::size_t lLine, const std::wstring& sReason) override
        {
            colRejects.push_back({lLine, sReason});
            cStore.RaiseProgress(L"Line " + Decimal(lLine) + L" rejected: " + sReason, lLine, lLines);
        }

        Impl& cStore;
        std::size_t lLines;
        std::vector<LibraryRow> colRows;
        std::vector<ImportReject> colRejects;
    };

    struct Imported
    {
        Cuts colAdded;
        Cuts colModified;
    };

    Imported WriteRows(const std::vector<LibraryRow>& colRows)
    {
        std::vector<Addition> colAdditions;
        std::vector<Modification> colModifications;
        for (const auto& row : colRows)
        {
            auto cCut = ByKey(row.cPath);
            if (!cCut)
            {
                colAdditions.push_back({nullptr, NewCutOf(row)});
                continue;
            }
            auto next = Merged(Own(cCut).Values(), row);
            if (!SameValues(Own(cCut).Values(), next))
            {
                colModifications.push_back({std::move(cCut), std::move(next)});
            }
        }
        sqlite::Transaction cTransaction(pFile->Sql(), sqlite::Transaction::Wait::eCommand);
        const auto colIDs = InsertAll(colAdditions);
        WriteAll(colModifications);
        cTransaction.Commit();
        return {TakeIn(colAdditions, colIDs), TakeOver(colModifications)};
    }

    std::int32_t ImportCsv(const std::wstring& sCsv)
    {
        NeedOpenAndNoBatch();
        ImportReport newReport;
        Imported imported;
        try
        {
            const std::string bytes = ReadFile(sCsv);
            const std::size_t lLines = CountLines(bytes);
            WithProgress(L"Importing cuts", lLines,
                         [&]
                         {
                             Rows cRows(*this, lLines);
                             ReadLibraryCsv(bytes, cRows);
                             NeedOpenAndNoBatch(); // a listener may have closed it meanwhile
                             imported = WriteRows(cRows.colRows);
                             newReport.lAdded = Long(imported.colAdded.size());
                             newReport.lChanged = Long(imported.colModified.size());
                             newReport.lUnchanged =
                                 Long(cRows.colRows.size()) - newReport.lAdded - newReport.lChanged;
                             newReport.colRejects = std::move(cRows.colRejects);
                             report = newReport;
                             return report.Summary();
                         });
        }
        catch (const RuntimeError& e)
        {
            report = {};
            report.sFailure = e.Description();
            throw;
        }
        if (!imported.colAdded.empty())
        {
            Raise([&](DataBaseEvents& cEvents) { cEvents.CutsAdded(imported.colAdded); });
        }
        if (!imported.colModified.empty())
        {
            Raise([&](DataBaseEvents& cEvents) { cEvents.CutsModified(imported.colModified); });
        }
        return newReport.lAdded + newReport.lChanged;
    }

    std::wstring sFile;
    std::unique_ptr<CutFile> pFile; // null while closed
    OrderedKeyedCollection<std::shared_ptr<Cut>> colCuts;
    ArtistTitleIndex cIndex;
    std::vector<DataBaseEvents*> colListeners;
    std::vector<OpenBatch> batches;
    std::vector<Undo> colUndo; // the values before each change of the open batches
    bool bBatchLost = false;
    GatheredPlays gathered;
    ImportReport report;
};

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
    {
        colListeners.push_back(&cEvents);
    }
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

Store::Batch::Batch(Store& cStore) : m_cStore(cStore), m_lDepth(cStore.m_cImpl->BeginBatch()) {}
Store::Batch::~Batch() { m_cStore.m_cImpl->EndBatches(m_lDepth); }
void Store::Batch::Commit() { m_cStore.m_cImpl->CommitBatch(m_lDepth); }

} // namespace ravlo
