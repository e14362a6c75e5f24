// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Files.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace ravlo
{

// The files that are read at the start and rewritten later: orders, category list, rules and settings.
// Remembers for each path, without regard to case, whether its content is known and how new it is, so that a
// save neither destroys content that its author has not understood nor replaces newer content by older.
class SavedFiles
{
public:
    // When a save's content was taken; a later one is greater.
    using Stamp = std::uint64_t;
    // The object that reads a file and saves it later, by address. What one author has read, another may not
    // have.
    using Author = const void*;

    // An author's knowledge of a file.
    enum class State
    {
        NotSeen,       // never read nor written here, or this author's last look or reading failed
        NotUnderstood, // read, but this author could not use all of it
        Absent,        // was not there when it was read, or was deleted here
        Known,         // read in full, written here, or kept aside
    };
    // What a save does to an existing file that no author has seen.
    enum class Unseen
    {
        KeepAside,
        LeaveAlone,
    };
    enum class Result
    {
        Written,
        Overtaken, // newer content has been written since the stamp was taken: nothing changed
        LeftAlone, // see Unseen
    };

    // Most copies kept of a file: <path>.bak, <path>.bak2 ... When all exist, the last is replaced.
    static constexpr int lMostCopies = 9;

    explicit SavedFiles(Files& cFiles) noexcept : m_cFiles(cFiles) {}
    SavedFiles(const SavedFiles&) = delete;
    SavedFiles& operator=(const SavedFiles&) = delete;

    // Returns a file's bytes, on which cAuthor's later saves are based; nothing when there is no file. Throws
    // when it cannot be checked or read; its state is then NotSeen, never Absent.
    std::optional<std::string> Read(const std::wstring& sPath, Author cAuthor,
                                    Patience ePatience = Patience::UpToASecond);
    // As Read, for a caller that saves nothing: remembers nothing.
    std::optional<std::string> Peek(const std::wstring& sPath,
                                    Patience ePatience = Patience::UpToASecond) const;
    // Call when cAuthor could not use all of what it read last.
    void NotUnderstood(const std::wstring& sPath, Author cAuthor);
    State StateOf(const std::wstring& sPath, Author cAuthor) const;

    // Begins a save. Call when its content is taken.
    Stamp Begin() noexcept { return ++m_lStamps; }
    // The stamp of the newest content written, or of the deletion; 0 for neither.
    Stamp NewestOf(const std::wstring& sPath) const;

    // Replaces a file's content in one step. Content that cAuthor has not understood, or that nobody has seen
    // (see Unseen), is first copied to a numbered copy; an unreadable file is renamed instead. Throws when
    // any of this fails: the old content is then in its place, or in a copy when it cannot be put back. The
    // next attempt makes no second copy.
    Result Replace(const std::wstring& sPath, Stamp lStamp, std::string_view bytes, Author cAuthor,
                   Unseen eUnseen = Unseen::KeepAside, Patience ePatience = Patience::UpToASecond);
    // Deletes a file if it exists. A save begun before does not restore it, even when this throws.
    void Delete(const std::wstring& sPath, Author cAuthor);

    // Forgets an author. Call when it ends: the next one may get its address.
    void Forget(Author cAuthor) noexcept;

private:
    struct File
    {
        Stamp lNewest = 0;
        State eState = State::NotSeen; // for authors without a mark of their own
    };
    // Throws when it cannot be checked.
    bool Exists(const std::wstring& sPath) const;
    void ReplaceUnknown(const std::wstring& sPath, std::string_view bytes, Author cAuthor,
                        Patience ePatience);
    // Returns false when the file cannot be read.
    bool CopyTo(const std::wstring& sPath, const std::wstring& sCopy, Patience ePatience);
    void PutBack(const std::wstring& sCopy, const std::wstring& sPath, Patience ePatience) noexcept;
    void MarkKnown(const std::wstring& sFolded, Author cAuthor);
    std::wstring CopyFor(const std::wstring& sPath) const;

    Files& m_cFiles;
    Stamp m_lStamps = 0;
    std::unordered_map<std::wstring, File> m_colFiles;           // by folded path
    std::map<std::pair<Author, std::wstring>, State> m_colMarks; // NotSeen or NotUnderstood
};

} // namespace ravlo
