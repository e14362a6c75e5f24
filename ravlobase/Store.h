// SPDX-License-Identifier: MIT
#pragma once

#include "base/OrderedKeyedCollection.h"
#include "media/DataBase.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace ravlo
{

// A row of an imported file that could not be used. Lines count from 1.
struct ImportReject
{
    std::size_t line;
    std::wstring sReason;
};

// What an import did.
struct ImportReport
{
    std::int32_t lAdded = 0;
    std::int32_t lChanged = 0;
    std::int32_t lUnchanged = 0; // rows that say what the database holds already
    std::vector<ImportReject> colRejects;
    std::wstring sFailure; // why nothing was imported; empty after a success

    // "3 cuts added, 1 changed, 0 unchanged, 2 rows rejected.", or the failure.
    std::wstring Summary() const;
    // The summary, then one line for each reject: "Line 7: no path".
    std::wstring Text() const;
};

// The embedded media database: one file on the disk (docs/formats/database.md), all of whose cuts are in
// memory while it is open. The same cut is the same object as long as the database is open.
//
// Changing a property of its cut is on the disk when the call returns, and raises nothing. AddCuts,
// ModifyCuts, RemoveCuts and ImportCsv each write everything or nothing; their events come after that, and
// not when the number of cuts is 0. What a listener throws is passed over. A failure is a RuntimeError and
// leaves file and memory as they were; 70 means that another program is writing just then. What another
// program adds or changes shows after TakeInChanges.
//
// All of it belongs to one thread. While no file is open, every member raises error 91, except Open, Close,
// NewCut, Advise and Unadvise.
class Store : public DataBase
{
public:
    Store();
    Store(const Store&) = delete;
    Store& operator=(const Store&) = delete;
    ~Store() override;

    // Makes the file when it is missing. 321: the file is damaged, no database of this program, or newer than
    // it; the file stays as it is, byte for byte. 55: this object has a file open already. After an error no
    // file is open.
    void Open(const std::wstring& sFile);
    // Its cuts stay with whoever holds them, as free-standing ones. Closing twice is fine.
    void Close() noexcept;
    bool IsOpen() const noexcept;
    std::wstring FileName() const; // as it was handed to Open

    Cuts AllCuts() const override;
    std::shared_ptr<Cut> CutByKey(const TextKey& cKey) const override;
    // When several cuts have the pair: the first in the database's order.
    std::shared_ptr<Cut> CutByArtistTitle(const std::wstring& sArtist,
                                          const std::wstring& sTitle) const override;
    std::shared_ptr<Cut> NewCut() const override;
    void Advise(DataBaseEvents& cEvents) override;
    void Unadvise(DataBaseEvents& cEvents) noexcept override;

    // All cuts in database order, by their keys. Live, and the same object as long as the Store lives.
    const OrderedKeyedCollection<std::shared_ptr<Cut>>& CutCollection() const;

    // Each returns the number of cuts, and raises an event with the database's own cuts.

    // A free-standing cut that a Store made becomes the database's own object; of any other the values are
    // taken. A cut without a key gets its path for one, a cut without a level gets level 1. 457 when a key is
    // there already or comes twice; 5 for a cut without key and path, or with a negative level.
    std::int32_t AddCuts(const Cuts& colCuts);
    // Announces the database's own cuts. Any other cut stands for the one with its key, which takes over its
    // values first (its level only when it has one). 5 when there is none with that key.
    std::int32_t ModifyCuts(const Cuts& colCuts);
    // Removes the cuts with these keys; a key that is not there is passed over. The objects live on,
    // free-standing.
    std::int32_t RemoveCuts(const Cuts& colCuts);
    // Adds and changes the cuts of a library CSV (docs/formats/library-csv.md). Rows that cannot be used are
    // left out: LastImport tells which. 53, 75, 57 for a file that cannot be read, 321 for one without a
    // usable header line.
    std::int32_t ImportCsv(const std::wstring& sFile);

    // Takes in what other programs have changed in the file since it was read, and announces it as its own
    // changes: cuts removed, added, modified, each event with the database's own cuts. Gives the number of
    // these cuts. Costs next to nothing when nothing was changed, else about half of what Open costs.
    // Gathered plays stay. Inside a batch nothing is done.
    std::int32_t TakeInChanges();

    // Between BeginGathering and EndGathering a change of LastPlayed alone is in the cut at once and on the
    // disk with the next WriteGathered, EndGathering or Close, as one change with the others: for a host that
    // plans many plays and can spare those since the last WriteGathered in a power cut. Inside a batch it is
    // the batch's as ever. WriteGathered and EndGathering raise 70 and the like as any change does, and 5
    // inside a batch; the plays then stay gathered, and the next call tries again. Close writes what it can.
    void BeginGathering();
    void WriteGathered();
    void EndGathering();

    // Of the last ImportCsv. It stays when the database is closed.
    const ImportReport& LastImport() const noexcept;
    std::wstring LastImportReport() const { return LastImport().Text(); }

    // Property changes between construction and Commit are one change on the disk. Without Commit they are
    // undone, on the disk and in the objects. Batches may stand inside each other. AddCuts and its like raise
    // error 5 inside a batch.
    class Batch
    {
    public:
        explicit Batch(Store& cStore);
        Batch(const Batch&) = delete;
        Batch& operator=(const Batch&) = delete;
        ~Batch();
        void Commit();

    private:
        Store& m_cStore;
        std::size_t m_depth;
    };

private:
    struct Impl;
    std::unique_ptr<Impl> m_cImpl;
};

} // namespace ravlo
