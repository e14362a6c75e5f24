// SPDX-License-Identifier: MIT
#include "modscheduler/SavedFiles.h"

#include "base/CaseFolding.h"
#include "base/RuntimeError.h"

namespace ravlo
{

bool SavedFiles::Exists(const std::wstring& sPath) const
{
    const Presence ePresence = m_cFiles.PresenceOf(sPath);
    if (ePresence == Presence::Unknown)
        throw RuntimeError(error::PathFileAccess);
    return ePresence == Presence::Present;
}

std::optional<std::string> SavedFiles::Peek(const std::wstring& sPath, Patience ePatience) const
{
    if (!Exists(sPath))
        return std::nullopt;
    return m_cFiles.ReadAll(sPath, ePatience);
}

std::optional<std::string> SavedFiles::Read(const std::wstring& sPath, Author cAuthor, Patience ePatience)
{
    const std::wstring sFolded = FoldCase(sPath);
    m_colMarks[{cAuthor, sFolded}] = State::NotSeen; // until it is read
    std::optional<std::string> bytes = Peek(sPath, ePatience);
    m_colFiles[sFolded].eState = bytes ? State::Known : State::Absent;
    m_colMarks.erase({cAuthor, sFolded});
    return bytes;
}

void SavedFiles::NotUnderstood(const std::wstring& sPath, Author cAuthor)
{
    m_colMarks[{cAuthor, FoldCase(sPath)}] = State::NotUnderstood;
}

SavedFiles::State SavedFiles::StateOf(const std::wstring& sPath, Author cAuthor) const
{
    const std::wstring sFolded = FoldCase(sPath);
    if (const auto mark = m_colMarks.find({cAuthor, sFolded}); mark != m_colMarks.end())
        return mark->second;
    const auto file = m_colFiles.find(sFolded);
    return file == m_colFiles.end() ? State::NotSeen : file->second.eState;
}

SavedFiles::Stamp SavedFiles::NewestOf(const std::wstring& sPath) const
{
    const auto file = m_colFiles.find(FoldCase(sPath));
    return file == m_colFiles.end() ? 0 : file->second.lNewest;
}

SavedFiles::Result SavedFiles::Replace(const std::wstring& sPath, Stamp lStamp, std::string_view bytes,
                                       Author cAuthor, Unseen eUnseen, Patience ePatience)
{
    const std::wstring sFolded = FoldCase(sPath);
    if (NewestOf(sPath) > lStamp)
        return Result::Overtaken;
    const State eState = StateOf(sPath, cAuthor);
    if (eState == State::Known || !Exists(sPath))
        ReplaceFile(m_cFiles, sPath, bytes, ePatience);
    else if (eState != State::NotUnderstood && eUnseen == Unseen::LeaveAlone)
        return Result::LeftAlone;
    else
        ReplaceUnknown(sPath, bytes, cAuthor, ePatience);
    MarkKnown(sFolded, cAuthor);
    m_colFiles[sFolded].lNewest = lStamp;
    return Result::Written;
}

void SavedFiles::Delete(const std::wstring& sPath, Author cAuthor)
{
    const std::wstring sFolded = FoldCase(sPath);
    File& file = m_colFiles[sFolded];
    file.lNewest = Begin();
    if (Exists(sPath))
        m_cFiles.Delete(sPath);
    m_colMarks.erase({cAuthor, sFolded});
    file.eState = State::Absent;
}

void SavedFiles::Forget(Author cAuthor) noexcept
{
    const auto first = m_colMarks.lower_bound({cAuthor, std::wstring()});
    auto last = first;
    while (last != m_colMarks.end() && last->first.first == cAuthor)
        ++last;
    m_colMarks.erase(first, last);
}

void SavedFiles::ReplaceUnknown(const std::wstring& sPath, std::string_view bytes, Author cAuthor,
                                Patience ePatience)
{
    const std::wstring sCopy = CopyFor(sPath);
    if (CopyTo(sPath, sCopy, ePatience))
    {
        MarkKnown(FoldCase(sPath),
                  cAuthor); // even when the save fails: no second copy next time
        ReplaceFile(m_cFiles, sPath, bytes, ePatience);
        return;
    }
    m_cFiles.Rename(sPath, sCopy, ePatience); // an unreadable file can still be renamed
    try
    {
        ReplaceFile(m_cFiles, sPath, bytes, ePatience);
    }
    catch (const RuntimeError&)
    {
        PutBack(sCopy, sPath, ePatience);
        throw;
    }
}

void SavedFiles::MarkKnown(const std::wstring& sFolded, Author cAuthor)
{
    m_colFiles[sFolded].eState = State::Known;
    m_colMarks.erase({cAuthor, sFolded});
}

bool SavedFiles::CopyTo(const std::wstring& sPath, const std::wstring& sCopy, Patience ePatience)
{
    std::string bytes;
    try
    {
        bytes = m_cFiles.ReadAll(sPath, ePatience);
    }
    catch (const RuntimeError&)
    {
        return false;
    }
    ReplaceFile(m_cFiles, sCopy, bytes, ePatience);
    return true;
}

void SavedFiles::PutBack(const std::wstring& sCopy, const std::wstring& sPath, Patience ePatience) noexcept
{
    try
    {
        m_cFiles.Rename(sCopy, sPath, ePatience);
    }
    catch (const RuntimeError&)
    {
        // The content stays in the copy.
    }
}

std::wstring SavedFiles::CopyFor(const std::wstring& sPath) const
{
    std::wstring sCopy = sPath + L".bak";
    for (int lCopy = 2; lCopy <= lMostCopies && Exists(sCopy); ++lCopy)
        sCopy = sPath + L".bak" + std::to_wstring(lCopy);
    return sCopy;
}

} // namespace ravlo
