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

// Keeps the files that are read at the start and rewritten later: orders, category list, rules and settings.
// Remembers of each path, without regard to case, whether its content is known and how new it is. So a save
// neither destroys what its author has not understood nor replaces newer content with older.
class SavedFiles
{
public:
    // The moment at which the content of a save was taken; a later one is greater.
    using Stamp = std::uint64_t;
    // Who reads a file and saves it later, by address. What one author has read, another may not have.
    using Author = const void*;

    // What an author knows of a file.
    enum class State
    {
        NotSeen,       // never read nor written here, or this author's last look or reading failed
        NotUnderstood, // read, but this author could not use all of it
        Absent,        // was not there when it was read, or was deleted here
        Known,         // read in full, written here, or kept aside
    };
    // What a save does with an existing file that nobody here has seen.
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

    // Copies of a file that are kept: <path>.bak, <path>.bak2 ... The last is replaced when all are taken.
    static constexpr int lMostCopies = 9;

    explicit SavedFiles(Files& cFiles) noexcept : m_cFiles(cFiles) {}
    SavedFiles(const SavedFiles&) = delete;
    SavedFiles& operator=(const SavedFiles&) = delete;

    // A file's bytes, on which cAuthor's later saves are based; nothing when there is no such file. Throws
    // when it cannot be looked at or read: it is not seen then, never absent.
    std::optional<std::string> Read(const std::wstring& sPath, Author cAuthor,
                                    Patience ePatience = Patience::UpToASecond);
    // As Read, for a caller that saves nothing: remembers nothing.
    std::optional<std::string> Peek(const std::wstring& sPath,
                                    Patience ePatience = Patience::UpToASecond) const;
    // cAuthor could not use what it has read last, or not all of it.
    void NotUnderstood(const std::wstring& sPath, Author cAuthor);
    State StateOf(const std::wstring& sPath, Author cAuthor) const;

    // Begins a save: call it when its content is taken.
    Stamp Begin() noexcept { return ++m_lStamps; }
    // The stamp of the newest content written, or of the deletion; 0 for neither.
    Stamp NewestOf(const std::wstring& sPath) const;

    // Replaces a file's content in one step. Content that cAuthor has not understood, or that nobody has seen
    // (see Unseen), is kept as a numbered copy before; what cannot be read is renamed. Throws when any of it
    // fails: the old content is at its place then, or in a copy when it cannot be put back. The next try
    // makes no second copy.
    Result Replace(const std::wstring& sPath, Stamp lStamp, std::string_view bytes, Author cAuthor,
                   Unseen eUnseen = Unseen::KeepAside, Patience ePatience = Patience::UpToASecond);
    // Deletes a file when it is there. A save begun before does not bring it back, even when this throws.
    void Delete(const std::wstring& sPath, Author cAuthor);

    // Forgets what an author knows. Call when it ends: the next one may get its address.
    void Forget(Author cAuthor) noexcept;

private:
    struct File
    {
        Stamp lNewest = 0;
        State eState = State::NotSeen; // for every author without a mark of its own
    };
    // Throws when it cannot be looked at.
    bool Exists(const std::wstring& sPath) const;
    void ReplaceUnknown(const std::wstring& sPath, std::string_view bytes, Author cAuthor,
                        Patience ePatience);
    // False: it cannot be read.
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
