// SPDX-License-Identifier: MIT
#pragma once

#include "model/clsCat.h"
#include "modscheduler/ModScheduler.h"
#include "scheduler/EventRelay.h"
#include "scheduler/OrderRecords.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace ravlo
{

// The history/ordering files, one per main category, by which the rotation order of every level and the
// levels without cuts survive a restart. Reads and saves them, and remembers what is still to be saved. What
// is in them: OrderRecords.h; what reading them does to a tree: OrderRestorer.h.
class HistoryFiles
{
public:
    static constexpr std::size_t recordSize = orderRecordSize;

    HistoryFiles(ModScheduler& cMod, EventRelay& cEvents) noexcept : m_cMod(cMod), m_cEvents(cEvents) {}
    ~HistoryFiles() { m_cMod.Saved().Forget(this); }
    HistoryFiles(const HistoryFiles&) = delete;
    HistoryFiles& operator=(const HistoryFiles&) = delete;

    // The application path of the tree in use: saves go there from now on. What was to be saved under another
    // one is forgotten with that one's tree. Before the first call, saves go to the library's own.
    void Serve(const std::wstring& sAppPath);

    // ---- saving

    // How a save tells of itself.
    enum class Manner
    {
        Explicit,        // progress events and yields; errors are shown
        WithoutProgress, // errors are shown
        WithoutBox,      // progress events and yields; errors are logged, the caller shows them
        Quiet,           // errors are logged only, and a locked file is not waited for: for picks on air
    };

    enum class Saved
    {
        Yes,
        NoRecords, // nothing to write: an existing file that was understood is left as it is
        NotMain,   // no main category, which was shown
        Failed,
    };

    // Saves one main category. What is written is the order at the moment of the call, whatever the host does
    // while it is told of the progress; a save that was overtaken by a newer one of the same category writes
    // nothing and counts as saved. Every ProgressStart is followed by a ProgressDone.
    Saved Save(const std::shared_ptr<clsCat>& cMainCat, Manner eManner = Manner::Explicit);

    // Saves every one, in order. False when one of them had no record or could not be saved, or has no key
    // (it cannot be found again and is not saved); one that is no main category ends it. The tree is looked
    // at anew for each, since the host may change or replace it while it is told of the progress: what is
    // gone by then is not saved.
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

    // ---- saves without a word: no box, no event, no waiting. A save that fails is owed.

    static constexpr std::uint32_t lRetryMs = 1000; // what is owed is tried at most once in this time

    // Saves the order after a pick. Before it, one of the other categories that are owed is tried, so a pick
    // tries to write two files at most.
    void SaveAfterPick(const std::shared_ptr<clsCat>& cMainCat, const CatCollection& colMainCats);
    // Saves at once; a failure is logged and owed.
    void SaveQuietly(const std::shared_ptr<clsCat>& cMainCat);
    // A pick has moved cuts of a category and the host saves later.
    void NoteUnsaved(const clsCat& cMainCat);
    // Tries everything that is owed.
    void SaveOwed(const CatCollection& colMainCats);
    // Saves, quietly, everything that is owed or unsaved: before the files are read again.
    void SavePending(const CatCollection& colMainCats);

    // ---- reading

    // Reads the file of each main category under sAppPath and applies it: restores the orders and makes the
    // empty levels. Cuts that the file does not name come to stand first. Files that cannot be read are shown
    // in one box for each kind of error.
    void ApplyHistory(const CatCollection& colMainCats, const std::wstring& sAppPath);

    // Whether a category's order in memory is newer than what was last read from its file: it has changed
    // since, a change from before is not saved, or the file could not be read and applied in full.
    bool IsNewerThanItsReading(const clsCat& cMainCat) const;

    // Removes a category's file when there is one. When that fails, it throws and the deletion is owed, until
    // it succeeds or the category has records to save again: else the next start would bring its levels back.
    void DeleteFile(const std::wstring& sCatName);

private:
    struct Snapshot; // what a save writes, taken before the first yield
    struct Owed
    {
        SavedFiles::Stamp lSince; // a snapshot from here on holds what is owed
        std::uint32_t lTriedAt;   // tick count
    };
    struct Age
    {
        SavedFiles::Stamp lRead = 0;   // taken before the last reading; 0: it was not applied in full
        SavedFiles::Stamp lNewest = 0; // of the order in memory
    };
    class ReadErrors;

    Snapshot TakeSnapshot(const clsCat& cMainCat);
    bool IsEmptying(const std::wstring& sCatName, std::int32_t lLevel) const;
    Saved SaveSnapshot(const Snapshot& cSnapshot, Manner eManner);
    OrderContent Fill(const Snapshot& cSnapshot, Manner eManner);
    void TellOfWriting(const Snapshot& cSnapshot);
    void Write(const Snapshot& cSnapshot, std::string_view bytes, Manner eManner);
    void EmptyNotUnderstood(const Snapshot& cSnapshot, Manner eManner);

    static std::wstring KeyOf(const std::wstring& sCatName);
    void Settle(const std::wstring& sKey, SavedFiles::Stamp lStamp);
    void Owe(const std::wstring& sKey);
    void RetryDeletion(const std::wstring& sKey, const std::wstring& sCatName);
    bool IsDue(const Owed& owed) const;
    void RetryOneExcept(const std::wstring& sKey, const CatCollection& colMainCats);
    void Retry(const std::wstring& sKey, const CatCollection& colMainCats);
    SavedFiles::Stamp NoteChanged(const clsCat& cMainCat);

    // The file's records, none when there is no file. Nothing: there can be no such file, or it is damaged.
    std::optional<std::string> RetrieveHistoryAndOrdering(const clsCat& cMainCat, const std::wstring& sPath);
    void TellOfReading(const std::wstring& sCatName, std::size_t count);
    // False: some of the records were of no use.
    bool Apply(clsCat& cMainCat, std::string_view bytes, const std::wstring& sPath);

    std::wstring SavePathOf(const std::wstring& sCatName) const;

    ModScheduler& m_cMod;
    EventRelay& m_cEvents;
    std::wstring m_sAppPath;
    std::unordered_map<std::wstring, Age> m_colAges; // by folded name
    // By key of the main category, folded.
    std::unordered_map<std::wstring, Owed> m_colOwed;
    std::unordered_map<std::wstring, SavedFiles::Stamp> m_colUnsaved; // since when
    std::unordered_map<std::wstring, std::wstring> m_colToDelete;     // names whose files are; owed as well
    std::unordered_set<std::wstring> m_colNoFileName;                 // names whose error has been logged
    std::vector<const EmptyingLevels*> m_colEmptying;
};

} // namespace ravlo
