// SPDX-License-Identifier: MIT
#pragma once

#include "media/DataBase.h"
#include "ravlobase/GatheredPlays.h"
#include "ravlobase/ImportReport.h"
#include "ravlobase/StoreBatches.h"
#include "ravlobase/StoreContent.h"
#include "ravlobase/StoreEdit.h"
#include "ravlobase/StoreListeners.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace ravlo
{

class CutFile;
class ImportRows;
class LibraryCsvSink;
struct AudioImport;
struct LibraryRow;

// The embedded media database: one file on the disk (docs/formats/database.md). While it is open, all of its
// cuts are in memory, and each is always the same object.
//
// A changed property of a cut is on the disk when the call returns, and raises no event. AddCuts, ModifyCuts,
// RemoveCuts and ImportCsv each write everything or nothing and then raise their events, except for zero
// cuts. Exceptions of listeners are ignored. A failure throws a RuntimeError and leaves file and memory
// unchanged; 70 means that another program is writing. Changes of other programs appear after TakeInChanges.
//
// Precondition: it is used by one thread. While no file is open, every member throws error 91, except Open,
// Close, NewCut, Advise and Unadvise.
class Store : public DataBase, private CutOwner
{
public:
    Store();
    Store(const Store&) = delete;
    Store& operator=(const Store&) = delete;
    ~Store() override;

    // Creates the file when it is missing. Throws 321 when the file is damaged, or belongs to another program
    // or a newer version; it keeps every byte. Throws 55 when this object already has a file open. After an
    // error no file is open, except after 55.
    void Open(const std::wstring& sFile);
    // Its cuts become free-standing and belong to those who hold them. Closing twice is fine.
    void Close() noexcept;
    bool IsOpen() const noexcept { return m_pFile != nullptr; }
    std::wstring FileName() const; // as it was handed to Open

    Cuts AllCuts() const override;
    std::shared_ptr<Cut> CutByKey(const TextKey& cKey) const override;
    // The first one in the database's order when several cuts have the pair.
    std::shared_ptr<Cut> CutByArtistTitle(const std::wstring& sArtist,
                                          const std::wstring& sTitle) const override;
    std::shared_ptr<Cut> NewCut() const override;
    void Advise(DataBaseEvents& cEvents) override { m_cListeners.Add(cEvents); }
    void Unadvise(DataBaseEvents& cEvents) noexcept override { m_cListeners.Remove(cEvents); }

    // All cuts in database order, by their keys. Live, and the same object as long as the Store lives.
    const StoreContent::Collection& CutCollection() const;

    // These return the number of cuts, and raise an event with the database's own cuts.

    // A free-standing cut made by a Store becomes the database's own object; of any other cut the values are
    // copied. A cut without a key gets its path as key, a cut without a level gets level 1. Throws 457 when a
    // key exists already or comes twice; 5 for a cut without key and path, or with a negative level.
    std::int32_t AddCuts(const Cuts& colCuts);
    // Announces the database's own cuts. The values of any other cut are first copied to the database's cut
    // with its key; its level only when it has one. Throws 5 when there is no cut with that key.
    std::int32_t ModifyCuts(const Cuts& colCuts);
    // Removes the cuts with these keys; unknown keys are skipped. The objects become free-standing.
    std::int32_t RemoveCuts(const Cuts& colCuts);
    // Adds and changes the cuts of a library CSV (docs/formats/library-csv.md). Skips rows that cannot be
    // used; LastImport lists them. Throws 53, 75 or 57 for a file that cannot be read, 321 for one without a
    // usable header line.
    //
    // Of each import: with bTrial nothing is changed, and LastImport says what would be. CancelImport, from a
    // listener to its progress, ends it with error 18 and changes nothing. Another import from there is
    // refused with error 5, and the first one goes on.
    //
    // ImportMappedCsv takes a file of another program: semicolons or TABs may separate its fields, and sMap
    // names its columns (ParseColumnMap).
    std::int32_t ImportCsv(const std::wstring& sFile);
    std::int32_t ImportMappedCsv(const std::wstring& sFile, const std::wstring& sMap, bool bTrial = false);
    // Adds and changes cuts from the tags of audio files (AudioImport.h). A file with the date and the size
    // of its last import is not read again. A cut that has no category gets sCategory, or with an empty
    // sCategory the genre of its file. Files that cannot be read are skipped; LastImport names them.
    std::int32_t ImportFolder(const std::wstring& sFolder, const std::wstring& sCategory = L"",
                              bool bTrial = false);
    std::int32_t ImportPlaylist(const std::wstring& sFile, const std::wstring& sCategory = L"",
                                bool bTrial = false);
    void CancelImport() noexcept { m_bCancelled = true; }

    // Takes in what other programs have changed in the file since it was last read, and announces the cuts
    // removed, added and modified. Returns their number. Cheap when nothing was changed, else about half of
    // what Open costs. Gathered plays stay. Does nothing inside a batch.
    std::int32_t TakeInChanges();

    // Gathers plays, for a host that plans many at once and may lose those since the last WriteGathered in a
    // power cut. Between BeginGathering and EndGathering a change of LastPlayed alone is in the cut at once,
    // and on the disk with the next WriteGathered, EndGathering or Close, together with the others. Inside a
    // batch it belongs to the batch as usual. WriteGathered and EndGathering throw 70 and the like as any
    // change does, and 5 inside a batch; the plays then stay gathered for a retry. Close writes what it can.
    void BeginGathering();
    void WriteGathered();
    void EndGathering();

    // The plays from dtFrom until before dtTo as CSV (docs/formats/plays-csv.md): one line a play, or summed
    // by "cut" or "artist". A play is recorded when LastPlayed of one of the database's cuts gets another
    // time, by itself or with ModifyCuts; an import records none. Writes gathered plays first. Throws 5 for
    // another sBy.
    std::wstring PlaysCsv(DateTime dtFrom, DateTime dtTo, const std::wstring& sBy = L"");

    // Of the last import. Closing keeps it.
    const ImportReport& LastImport() const noexcept { return m_report; }
    std::wstring LastImportReport() const { return m_report.Text(); }

    // Makes the property changes between construction and Commit one change on the disk. Without Commit they
    // are undone, on the disk and in the objects. Batches may be nested. AddCuts, ModifyCuts, RemoveCuts and
    // ImportCsv throw error 5 inside a batch.
    class Batch final : public DataBase::Batch
    {
    public:
        explicit Batch(Store& cStore);
        Batch(const Batch&) = delete;
        Batch& operator=(const Batch&) = delete;
        ~Batch() override;
        void Commit() override;

    private:
        Store& m_cStore;
        std::size_t m_depth;
    };
    std::unique_ptr<DataBase::Batch> BeginBatch() override { return std::make_unique<Batch>(*this); }

private:
    // Property changes of the database's cuts.
    void Change(StoreCut& cCut, CutValues next) override;
    void ChangeLastPlayed(StoreCut& cCut, DateTime dtWhen) override;

    void Forget() noexcept;
    void NeedOpen() const;
    void NeedOpenAndNoBatch() const;
    bool IsOwn(const std::shared_ptr<Cut>& cCut) const noexcept;

    void Add(StoreEdit& edit, const std::shared_ptr<Cut>& cGiven) const;
    void Modify(StoreEdit& edit, const std::shared_ptr<Cut>& cGiven) const;
    void Remove(const Cuts& colRemoved);
    void Apply(StoreEdit& edit, const std::vector<LibraryRow>& colRows) const;
    // Writes and takes in what was collected, unless it is a trial. Returns the summary.
    std::wstring Take(ImportRows& rows, ImportReport& report, StoreEdit::Done& done);
    using CsvReading = std::function<void(std::string_view bytes, LibraryCsvSink& cSink)>;
    std::int32_t ImportLines(const std::wstring& sFile, bool bTrial, const CsvReading& read);
    // begin returns the number of steps.
    std::int32_t Import(ImportReport report, const std::function<std::size_t()>& begin,
                        const std::function<void(ImportRows&)>& collect);
    using AudioCollector = void (*)(const std::wstring& sPath, const AudioImport& import, ImportRows& rows);
    std::int32_t ImportAudio(const std::wstring& sPath, const std::wstring& sCategory, bool bTrial,
                             AudioCollector collect);

    std::wstring m_sFile;
    std::unique_ptr<CutFile> m_pFile; // null while closed
    StoreContent m_cContent;
    StoreBatches m_cBatches{m_cContent};
    GatheredPlays m_cGathered;
    StoreListeners m_cListeners;
    ImportReport m_report;
    bool m_bImporting = false;
    bool m_bCancelled = false; // the import that runs
};

} // namespace ravlo
