// SPDX-License-Identifier: MIT
#pragma once

#include "model/clsCat.h"
#include "scheduler/EventRelay.h"
#include "scheduler/modscheduler/ModScheduler.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace ravlo
{

// The history/ordering files, one per main category, by which the rotation order of every level and the
// levels without cuts survive a restart. File format: docs/formats/sif.md.
class HistoryFiles
{
public:
    static constexpr std::size_t lRecordSize = 1983;
    static constexpr std::size_t lTextWidth = 255; // of artist, title and path, in bytes of the code page

    HistoryFiles(ModScheduler& cMod, EventRelay& cEvents) noexcept : m_cMod(cMod), m_cEvents(cEvents) {}

    // The application path of the tree in use: saves go there from now on. Before, and for reading, it is the
    // library's own.
    void Serve(const std::wstring& sAppPath) { m_sAppPath = sAppPath; }

    // How a save tells of itself.
    enum class Manner
    {
        Explicit,        // progress events and yields; errors are shown
        WithoutProgress, // errors are shown
        WithoutBox,      // progress events and yields; errors are logged, the caller shows them
        Quiet,           // errors are logged only: for picks on air
    };

    enum class Saved
    {
        Yes,
        NoRecords, // nothing to write: an existing file is left as it is
        NotMain,   // no main category, which was shown
        Failed,
    };

    // Saves one main category. What is written is the order at the moment of the call, whatever the host does
    // while it is told of the progress; a save that was overtaken by a newer one of the same category writes
    // nothing and counts as saved.
    Saved Save(const std::shared_ptr<clsCat>& cMainCat, Manner eManner = Manner::Explicit);

    // Saves every one, in order. False when one of them had no record or could not be saved; one that is no
    // main category ends it. The tree is looked at anew for each, since the host may change or replace it
    // while it is told of the progress: what is gone by then is not saved.
    bool SaveAll(const std::shared_ptr<CatCollection>& colMainCats);

    // Saves without a word: for picks on air. A failure is logged and the save is owed: SaveOwed tries again.
    void SaveQuietly(const std::shared_ptr<clsCat>& cMainCat);
    void SaveOwed(const CatCollection& colMainCats);

    // Reads the file of each main category and applies it: restores the orders and makes the empty levels.
    // Cuts that the file does not name come to stand first.
    void ApplyHistory(const CatCollection& colMainCats);

    // Removes a category's file when there is one. Throws.
    void DeleteFile(const std::wstring& sCatName);

    // What a path becomes in a record's field of 255 bytes, without the blanks at its ends: the identity of a
    // cut in the file.
    std::string PathField(const std::wstring& sPath) const;

private:
    struct Record
    {
        std::int32_t lLevel;
        bool bLevelMarker;
        std::string_view path; // the field's bytes without blanks at the ends
    };
    struct Snapshot; // what a save writes, taken before the first yield
    class Content;
    struct LevelOrder; // a level's new order while records are applied
    Snapshot TakeSnapshot(const clsCat& cMainCat);
    Content Fill(const Snapshot& cSnapshot, Manner eManner);
    void FillRecord(std::span<char> record, const Cut* cCut, std::int32_t lLevelOfMarker) const;
    void Write(const Snapshot& cSnapshot, std::string_view bytes, Manner eManner);

    // The file's records. Nothing: there is no file, or it is damaged.
    std::optional<std::string> RetrieveHistoryAndOrdering(const clsCat& cMainCat);
    void Apply(clsCat& cMainCat, std::string_view bytes);
    bool EnsureLevel(clsCat& cMainCat, const Record& record);

    std::wstring SavePathOf(const std::wstring& sCatName) const;
    std::wstring ReadPathOf(const std::wstring& sCatName) const;

    ModScheduler& m_cMod;
    EventRelay& m_cEvents;
    std::wstring m_sAppPath;
    std::uint64_t m_lSnapshots = 0;
    std::unordered_map<std::wstring, std::uint64_t>
        m_colNewestWritten;                           // folded path -> number of its newest snapshot
    std::unordered_set<std::wstring> m_colNotApplied; // folded paths of files not applied in full
    // Keys of main categories -> the number from which on a snapshot holds what is owed.
    std::unordered_map<std::wstring, std::uint64_t> m_colOwed;
};

} // namespace ravlo
