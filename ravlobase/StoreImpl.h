// SPDX-License-Identifier: MIT
#pragma once

#include "base/Text.h"
#include "ravlobase/ArtistTitleIndex.h"
#include "ravlobase/CutFile.h"
#include "ravlobase/GatheredPlays.h"
#include "ravlobase/Store.h"
#include "ravlobase/StoreErrors.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace ravlo
{

struct LibraryRow;

// What a Store is made of. Its members are in three files: Store.cpp (the file, property changes, batches,
// events), StoreEditing.cpp (cuts added, modified, removed, here and by other programs), StoreImport.cpp.
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

    // --- what every part uses

    static constexpr std::int32_t lProgressEvery = 500; // cuts or lines between two reports

    static std::int32_t Long(std::size_t count)
    {
        return static_cast<std::int32_t>(std::min<std::size_t>(count, INT32_MAX));
    }
    static std::wstring CutsText(std::size_t count); // "1 cut", "2 cuts"
    // Error 5 for values that no database keeps.
    static void CheckValues(const CutValues& values);
    static void CheckLastPlayed(DateTime dtWhen);

    // --- open and close

    void Open(const std::wstring& sName);
    void Close() noexcept;
    void Forget() noexcept;
    void NeedOpen() const;
    void NeedOpenAndNoBatch() const;

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

    void TakeValues(StoreCut& cCut, CutValues values);

    // A property change.
    void Change(StoreCut& cCut, CutValues next) override;
    void ChangeLastPlayed(StoreCut& cCut, DateTime dtWhen) override;

    // --- gathered plays

    void WriteGathered();

    // --- batches

    struct OpenBatch
    {
        std::unique_ptr<sqlite::Transaction> pTransaction;
        std::size_t undoFrom;
    };

    std::size_t BeginBatch();
    void CommitBatch(std::size_t depth);

    // Undoes the batches from the innermost one to the one that stands lDepth deep, if they are still open.
    void EndBatches(std::size_t depth) noexcept;
    void UndoTo(std::size_t size) noexcept;

    // Some failures (a full disk) end SQLite's transaction,
    // and all of the batch with it.
    void NoteLostBatch() noexcept;
    void NeedSoundBatch() const;

    // --- events

    template <class Event> void Raise(Event event)
    {
        const auto colNow = colListeners;
        for (auto* pListener : colNow)
        {
            if (std::find(colListeners.begin(), colListeners.end(), pListener) == colListeners.end())
                continue; // an earlier listener has taken it off
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

    void RaiseProgress(const std::wstring& sText, std::size_t count, std::size_t max);

    // Surrounds the work, which returns the closing status, with ProgressStart and ProgressDone.
    template <class Work> void WithProgress(const std::wstring& sReason, std::size_t max, Work work)
    {
        Raise([&](DataBaseEvents& cEvents) { cEvents.ProgressStart(sReason, Long(max)); });
        const auto Done = [&](const std::wstring& sStatus) {
            Raise([&](DataBaseEvents& cEvents) { cEvents.ProgressDone(sStatus); });
        };
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

    Addition AdditionOf(const std::shared_ptr<Cut>& cCut);
    std::vector<Addition> Gather(const Cuts& colGiven);
    void NeedNewKeys(const std::vector<Addition>& colAdditions) const;
    std::vector<std::int32_t> InsertAll(const std::vector<Addition>& colAdditions);

    // Once they stand in the file.
    Cuts TakeIn(std::vector<Addition>& colAdditions, const std::vector<std::int32_t>& colIDs);
    std::int32_t AddCuts(const Cuts& colGiven);

    // --- modifying and removing

    Modification ModificationOf(const std::shared_ptr<Cut>& cGiven);

    // One for each cut; of several copies of one cut the last one counts.
    std::vector<Modification> ModificationsOf(const Cuts& colGiven);
    void WriteAll(const std::vector<Modification>& colModifications);

    // Once they stand in the file.
    Cuts TakeOver(std::vector<Modification>& colModifications);
    std::int32_t ModifyCuts(const Cuts& colGiven);
    void TakeOut(const Cuts& colRemoved);
    std::int32_t RemoveCuts(const Cuts& colGiven);

    // --- changes of other programs

    struct Changes
    {
        Cuts colRemoved;
        Cuts colAdded;
        std::vector<Modification> colModified;
    };

    // What makes the cuts in memory those of the file. Numbers are never given twice, so a number is a cut.
    Changes ChangesTo(std::vector<StoredCut>& colStored);

    // New cuts may have numbers below those that were added here.
    void Insert(const Cuts& colAdded);
    std::int32_t TakeInChanges();

    // --- importing

    struct Rows;

    struct Imported
    {
        Cuts colAdded;
        Cuts colModified;
    };

    Imported WriteRows(const std::vector<LibraryRow>& colRows);
    std::int32_t ImportCsv(const std::wstring& sCsv);
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

} // namespace ravlo
