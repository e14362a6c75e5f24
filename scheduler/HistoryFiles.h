// SPDX-License-Identifier: MIT
#pragma once

#include "model/clsCat.h"
#include "modscheduler/ModScheduler.h"
#include "scheduler/EventRelay.h"
#include "scheduler/OrderRecords.h"
#include "scheduler/UnsavedOrders.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace ravlo
{

// How a save reports. With neither it is quiet: errors are only logged, and it does not wait for a locked
// file.
struct SaveMode
{
    bool bProgress = true; // progress events and yields
    bool bBoxes = true;    // errors are shown; otherwise the caller shows them
};
inline constexpr SaveMode quietly{false, false};

// The history/ordering files, one per main category. They keep each level's rotation order, and the levels
// without cuts, over a restart. This class reads and saves them and remembers what is still to be saved. The
// records: OrderRecords.h; applying them to a tree: OrderRestorer.h.
class HistoryFiles
{
public:
    static constexpr std::size_t recordSize = orderRecordSize;

    HistoryFiles(ModScheduler& cMod, EventRelay& cEvents) noexcept
        : m_cMod(cMod), m_cEvents(cEvents), m_cUnsaved(cMod.Ports().cClock)
    {
    }
    ~HistoryFiles() { m_cMod.Saved().Forget(this); }
    HistoryFiles(const HistoryFiles&) = delete;
    HistoryFiles& operator=(const HistoryFiles&) = delete;

    // Saves go to this application path from now on: the tree in use was read from there. Before the first
    // call they go to the library's own path. Precondition: LeaveFolder was called, if the path is another
    // one.
    void Serve(const std::wstring& sAppPath);
    const std::wstring& AppPath() const noexcept { return m_sAppPath; }

    // ---- saving

    enum class Saved
    {
        Yes,
        NoRecords, // nothing to write; an existing file that was understood stays
        NotMain,   // not a main category, which was shown
        Failed,
    };

    // Saves one main category: its order at the moment of the call, even when the host changes it inside a
    // progress event. When a newer save of the same category has finished first, writes nothing and returns
    // Yes. Every ProgressStart is followed by a ProgressDone. A failed save is retried later.
    Saved Save(const std::shared_ptr<clsCat>& cMainCat, SaveMode mode = {});

    // Saves all main categories, in order. Returns false when one had no records, could not be saved, or has
    // no key; it stops at one that is not a main category. Looks each up by key, since the host may change or
    // replace the tree inside a progress event: a category that is gone by then is not saved.
    bool SaveAll(const std::shared_ptr<CatCollection>& colMainCats);

    // While one exists, every save of the category writes a marker in front of the records of these levels,
    // even when they contain cuts. Reading creates each level that has a marker and skips cuts that are gone.
    // So a file saved before a change empties a level is also right after it.
    class EmptyingLevels
    {
    public:
        EmptyingLevels(HistoryFiles& cFiles, std::wstring sCatName, std::vector<std::int32_t> colLevels);
        ~EmptyingLevels();
        EmptyingLevels(const EmptyingLevels&) = delete;
        EmptyingLevels& operator=(const EmptyingLevels&) = delete;

    private:
        friend class HistoryFiles;
        HistoryFiles& m_cFiles;
        std::wstring m_sCatName;
        std::vector<std::int32_t> m_colLevels;
    };

    // Deletes a category's file when there is one. On failure throws, and retries the deletion until it
    // succeeds or the category has records to save again: otherwise the next start would restore its levels.
    void DeleteFile(const std::wstring& sCatName);
    // As DeleteFile, for a file that was read in full or written here; leaves another one alone. A failure is
    // shown.
    void DeleteKnownFile(const std::wstring& sCatName);

    // ---- what is still to be saved, quietly

    // Saves the order after a pick, unless a save of it failed a moment ago. Before that, retries one other
    // category; so a pick tries to write two files at most.
    void SaveAfterPick(const std::shared_ptr<clsCat>& cMainCat, const CatCollection& colMainCats);
    // Records that a pick has moved cuts of a category which the host saves later.
    void NoteUnsaved(const clsCat& cMainCat);
    // Retries failed saves, except those that failed a moment ago (see UnsavedOrders).
    void RetryDue(const CatCollection& colMainCats) { Retry(UnsavedOrders::Which::Due, colMainCats); }
    // Retries all failed saves. Call at the end.
    void RetryAll(const CatCollection& colMainCats) { Retry(UnsavedOrders::Which::Failed, colMainCats); }
    // Saves every order that is newer than its file. Call before the files are read again.
    void SavePending(const CatCollection& colMainCats) { Retry(UnsavedOrders::Which::All, colMainCats); }
    // As SavePending, before another folder's tree replaces this one. Keeps the content of orders that still
    // cannot be saved and retries them later, in their own folder.
    void LeaveFolder(const CatCollection& colMainCats);

    // ---- reading

    // Reads the file of each main category under sAppPath and applies it: restores the orders and creates the
    // empty levels. Cuts that the file does not name come first. Files that cannot be read are shown in one
    // box per kind of error.
    void ApplyHistory(const CatCollection& colMainCats, const std::wstring& sAppPath);

    // Whether a category's order in memory is newer than what was last read from its file.
    bool IsNewerThanItsReading(const clsCat& cMainCat) const
    {
        return m_cUnsaved.IsNewerThanItsReading(cMainCat.CatName());
    }

private:
    // What a save writes. Taken before the first yield.
    struct Snapshot
    {
        struct Entry
        {
            std::int32_t lLevel; // for a level marker; a cut's own number is read when its record is filled
            std::shared_ptr<Cut> cCut; // null for a level marker
        };
        std::wstring sCatName;
        std::wstring sPath;
        SavedFiles::Stamp stamp;
        std::vector<Entry> colEntries;
    };
    struct LeftBehind
    {
        std::wstring sPath;
        SavedFiles::Stamp stamp;
        std::optional<OrderContent> content; // empty: the file is to be deleted
    };
    class ReadErrors;

    Snapshot TakeSnapshot(const clsCat& cMainCat);
    bool IsEmptying(const std::wstring& sCatName, std::int32_t lLevel) const;
    Saved SaveSnapshot(const Snapshot& cSnapshot, SaveMode mode);
    Saved Failed(const std::wstring& sCatName, SaveMode mode);
    OrderContent Fill(const Snapshot& cSnapshot, SaveMode mode);
    void TellOfWriting(const Snapshot& cSnapshot);
    void Write(const Snapshot& cSnapshot, std::string_view bytes, SaveMode mode);
    void EmptyNotUnderstood(const Snapshot& cSnapshot, SaveMode mode);

    void Retry(UnsavedOrders::Which eWhich, const CatCollection& colMainCats);
    void Retry(const std::wstring& sCatName, const CatCollection& colMainCats);
    void KeepBehind(const std::wstring& sCatName, const CatCollection& colMainCats);
    void RetryLeftBehind();

    // Returns the file's records, none when there is no file; nothing when it is damaged or the category
    // cannot have one.
    std::optional<std::string> RetrieveHistoryAndOrdering(const clsCat& cMainCat, const std::wstring& sPath);
    void TellOfReading(const std::wstring& sCatName, std::size_t count);
    // Returns false when some records could not be used.
    bool Apply(clsCat& cMainCat, std::string_view bytes, const std::wstring& sPath);

    std::wstring SavePathOf(const std::wstring& sCatName) const;
    // Returns true once per category until it is saved, so that the same failure is not logged with every
    // save or reading.
    bool IsNews(const std::wstring& sCatName);

    ModScheduler& m_cMod;
    EventRelay& m_cEvents;
    std::wstring m_sAppPath;
    UnsavedOrders m_cUnsaved;
    std::vector<LeftBehind> m_colLeftBehind;      // under other application paths
    std::uint32_t m_lLeftBehindTriedAt = 0;       // tick count
    std::unordered_set<std::wstring> m_colLogged; // see IsNews
    std::vector<const EmptyingLevels*> m_colEmptying;
};

} // namespace ravlo
