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

// How a save reports. One with neither is quiet: its errors are logged only, and it does not wait for a
// locked file.
struct SaveMode
{
    bool bProgress = true; // progress events and yields
    bool bBoxes = true;    // errors are shown; else the caller shows them
};
inline constexpr SaveMode quietly{false, false};

// The history/ordering files, one per main category: they keep the rotation order of every level, and the
// levels without cuts, over a restart. Reads and saves them, and remembers what is still to be saved. Their
// records: OrderRecords.h; what reading them does to a tree: OrderRestorer.h.
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
    // call they go to the library's own. Precondition: when the path is another one, LeaveFolder was called.
    void Serve(const std::wstring& sAppPath);
    const std::wstring& AppPath() const noexcept { return m_sAppPath; }

    // ---- saving

    enum class Saved
    {
        Yes,
        NoRecords, // nothing to write: an existing file that was understood is left as it is
        NotMain,   // no main category, which was shown
        Failed,
    };

    // Saves one main category. Writes the order at the moment of the call, even when the host changes it
    // inside a progress event; a save that a newer one of the same category has overtaken writes nothing and
    // counts as saved. Every ProgressStart is followed by a ProgressDone. A save that fails is retried later.
    Saved Save(const std::shared_ptr<clsCat>& cMainCat, SaveMode mode = {});

    // Saves every one, in order. False when one of them had no record or could not be saved, or has no key
    // (it cannot be found again and is not saved); one that is no main category ends it. Looks each up by
    // key, since the host may change or replace the tree inside a progress event: what is gone by then is not
    // saved.
    bool SaveAll(const std::shared_ptr<CatCollection>& colMainCats);

    // While it lives, every save of the category puts a marker in front of the records of these levels, also
    // of those that hold cuts. Reading makes a level that a marker declares and passes over cuts that are
    // gone. So a file that is saved before a change empties a level serves after it as well.
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

    // Deletes a category's file when there is one. When that fails, it throws, and the deletion is retried
    // until it succeeds or the category has records to save again: else the next start would bring its levels
    // back.
    void DeleteFile(const std::wstring& sCatName);

    // ---- what is still to be saved, quietly

    // Saves the order after a pick, except when a save of it failed a moment ago. Before that, retries one of
    // the other categories, so a pick tries to write two files at most.
    void SaveAfterPick(const std::shared_ptr<clsCat>& cMainCat, const CatCollection& colMainCats);
    // A pick has moved cuts of a category, and the host saves later.
    void NoteUnsaved(const clsCat& cMainCat);
    // Retries what failed, except what failed a moment ago (see UnsavedOrders).
    void RetryDue(const CatCollection& colMainCats) { Retry(UnsavedOrders::Which::Due, colMainCats); }
    // Retries all that failed: at the end.
    void RetryAll(const CatCollection& colMainCats) { Retry(UnsavedOrders::Which::Failed, colMainCats); }
    // Saves all that is newer than its file: before the files are read again.
    void SavePending(const CatCollection& colMainCats) { Retry(UnsavedOrders::Which::All, colMainCats); }
    // As SavePending, before another folder's tree replaces this one. What cannot be saved even now is kept
    // as it is and retried with the rest, in its own folder.
    void LeaveFolder(const CatCollection& colMainCats);

    // ---- reading

    // Reads the file of each main category under sAppPath and applies it: restores the orders and makes the
    // empty levels. Cuts that the file does not name come first. Files that cannot be read are shown in one
    // box for each kind of error.
    void ApplyHistory(const CatCollection& colMainCats, const std::wstring& sAppPath);

    // Whether a category's order in memory is newer than what was last read from its file.
    bool IsNewerThanItsReading(const clsCat& cMainCat) const
    {
        return m_cUnsaved.IsNewerThanItsReading(cMainCat.CatName());
    }

private:
    // What a save writes, taken before the first yield.
    struct Snapshot
    {
        struct Entry
        {
            std::int32_t lLevel;       // of the level marker; a cut's own is read when its record is filled
            std::shared_ptr<Cut> cCut; // null for a level marker
        };
        std::wstring sCatName;
        std::wstring sPath;
        SavedFiles::Stamp lStamp;
        std::vector<Entry> colEntries;
    };
    struct LeftBehind
    {
        std::wstring sPath;
        SavedFiles::Stamp lStamp;
        std::optional<OrderContent> content; // nothing: the file is to be deleted
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

    // The file's records, none when there is no file. Nothing: there can be no such file, or it is damaged.
    std::optional<std::string> RetrieveHistoryAndOrdering(const clsCat& cMainCat, const std::wstring& sPath);
    void TellOfReading(const std::wstring& sCatName, std::size_t count);
    // False: some of the records were of no use.
    bool Apply(clsCat& cMainCat, std::string_view bytes, const std::wstring& sPath);

    std::wstring SavePathOf(const std::wstring& sCatName) const;
    // True once, until the category is saved: for what would be logged again with every save or reading.
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
