// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace ravlo
{

// The file system. Paths use backslashes, as the host hands them in. Every path is taken literally: '*' and '?' never
// stand for other names. Each operation that fails throws RuntimeError with the number a host knows
// (53, 57, 61, 70, 75, 76 ...) and has then changed nothing, except where said.
class Files
{
public:
    virtual ~Files() = default;

    // Whether a file (not a folder) of exactly that name exists. Never throws: what cannot be looked at is not there.
    virtual bool FileExists(const std::wstring& sPath) const = 0;
    virtual bool FolderExists(const std::wstring& sPath) const = 0;

    // Creates the last component of the path only. 76 when the parent is missing, 58 when the name is taken.
    virtual void CreateFolder(const std::wstring& sPath) = 0;

    // The whole content.
    virtual std::string ReadAll(const std::wstring& sPath) const = 0;

    // Creates the file, or empties an existing one, writes the bytes, brings them to the disk and closes. On failure
    // the file may be left behind with a part of the bytes: use ReplaceFile where an old content matters.
    virtual void WriteNew(const std::wstring& sPath, std::string_view bytes) = 0;

    // Adds the bytes at the end of the file, creating it when it is missing: one open, one write, one close.
    virtual void Append(const std::wstring& sPath, std::string_view bytes) = 0;

    // Gives a file another name in the same folder, in one step. A file that has that name already is replaced.
    virtual void Rename(const std::wstring& sFrom, const std::wstring& sTo) = 0;

    // 53 when there is no such file.
    virtual void Delete(const std::wstring& sPath) = 0;

    // The folder the running library itself lies in, without a trailing backslash.
    virtual std::wstring LibraryFolder() const = 0;
};

#ifdef ReplaceFile
#undef ReplaceFile // the macro of a system header that came first
#endif

// Replaces a file's content in one step: a reader sees the old bytes or the new ones, never a part of either. The new
// content goes to a temporary file beside it, is flushed and renamed. Throws when that fails; the old file is whole then
// and no temporary file is left behind if it could be deleted.
void ReplaceFile(Files& cFiles, const std::wstring& sPath, std::string_view bytes);

} // namespace ravlo
