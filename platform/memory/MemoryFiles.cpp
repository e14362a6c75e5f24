// SPDX-License-Identifier: MIT
#include "platform/memory/MemoryFiles.h"

#include "collections/CaseFolding.h"
#include "ports/RuntimeError.h"

#include <algorithm>

namespace ravlo
{

namespace
{

std::wstring Plain(const std::wstring& sPath)
{
    std::wstring sPlain = sPath;
    std::replace(sPlain.begin(), sPlain.end(), L'/', L'\\');
    while (!sPlain.empty() && sPlain.back() == L'\\')
        sPlain.pop_back();
    return sPlain;
}

std::wstring Folded(const std::wstring& sPath) { return FoldCase(Plain(sPath)); }

std::wstring FolderOf(const std::wstring& sPath)
{
    const std::wstring sPlain = Plain(sPath);
    const std::size_t lSeparator = sPlain.rfind(L'\\');
    return lSeparator == std::wstring::npos ? L"" : sPlain.substr(0, lSeparator);
}

bool IsNameRefused(const std::wstring& sPath)
{
    const std::wstring sPlain = Plain(sPath);
    const std::wstring sName = sPlain.substr(sPlain.rfind(L'\\') + 1); // from the start when there is none
    return sName.empty() || std::any_of(sName.begin(), sName.end(),
                                        [](wchar_t c) {
                                            return c < L' ' || std::wstring_view(L"<>:\"|?*").find(c) !=
                                                                   std::wstring_view::npos;
                                        });
}

} // namespace

MemoryFiles::MemoryFiles()
{
    MakeFolders(L"C:");
    SetLibraryFolder(L"C:\\Program Files\\Ravlo");
}

MemoryFiles::MemoryFiles(std::initializer_list<std::pair<std::wstring, std::string>> contents) : MemoryFiles()
{
    for (const auto& [sPath, bytes] : contents)
        Put(sPath, bytes);
}

bool MemoryFiles::FileExists(const std::wstring& sPath) const { return m_files.count(Folded(sPath)) != 0; }

bool MemoryFiles::FolderExists(const std::wstring& sPath) const
{
    const std::wstring sFolded = Folded(sPath);
    return sFolded.empty() || m_folders.count(sFolded) != 0;
}

void MemoryFiles::CreateFolder(const std::wstring& sPath)
{
    m_sOperations.push_back(L"CreateFolder " + sPath);
    RequirePlaceFor(sPath);
    if (FileExists(sPath) || FolderExists(sPath))
        throw RuntimeError(error::FileAlreadyExists);
    RequireChangeable(FolderOf(sPath));
    m_folders.emplace(Folded(sPath), Plain(sPath));
}

std::string MemoryFiles::ReadAll(const std::wstring& sPath) const
{
    m_sOperations.push_back(L"ReadAll " + sPath);
    const File& file = Existing(sPath);
    if (const auto it = m_unreadable.find(Folded(sPath)); it != m_unreadable.end())
        throw RuntimeError(it->second);
    return file.bytes;
}

void MemoryFiles::WriteNew(const std::wstring& sPath, std::string_view bytes)
{
    m_sOperations.push_back(L"WriteNew " + sPath);
    Writable(sPath).bytes = bytes;
}

void MemoryFiles::Append(const std::wstring& sPath, std::string_view bytes)
{
    m_sOperations.push_back(L"Append " + sPath);
    Writable(sPath).bytes += bytes;
}

void MemoryFiles::Rename(const std::wstring& sFrom, const std::wstring& sTo)
{
    m_sOperations.push_back(L"Rename " + sFrom + L" -> " + sTo);
    const File file{Plain(sTo), Existing(sFrom).bytes};
    RequirePlaceFor(sTo);
    if (FolderExists(sTo))
        throw RuntimeError(error::PathFileAccess);
    RequireChangeable(sTo);
    RequireChangeable(FolderOf(sTo));
    m_files.erase(Folded(sFrom));
    m_files[Folded(sTo)] = file;
}

void MemoryFiles::Delete(const std::wstring& sPath)
{
    m_sOperations.push_back(L"Delete " + sPath);
    Existing(sPath);
    RequireChangeable(sPath);
    m_files.erase(Folded(sPath));
}

void MemoryFiles::Put(const std::wstring& sPath, std::string_view bytes)
{
    MakeFolders(FolderOf(sPath));
    File& file = m_files[Folded(sPath)];
    if (file.sPath.empty())
        file.sPath = Plain(sPath);
    file.bytes = bytes;
}

const std::string& MemoryFiles::Get(const std::wstring& sPath) const { return Existing(sPath).bytes; }

void MemoryFiles::MakeFolders(const std::wstring& sPath)
{
    for (std::wstring sFolder = Plain(sPath); !sFolder.empty(); sFolder = FolderOf(sFolder))
        m_folders.emplace(Folded(sFolder), sFolder);
}

std::vector<std::wstring> MemoryFiles::Paths() const
{
    std::vector<std::wstring> sPaths;
    for (const auto& [sFolded, file] : m_files)
        sPaths.push_back(file.sPath);
    return sPaths;
}

void MemoryFiles::SetLibraryFolder(const std::wstring& sPath)
{
    m_sLibraryFolder = Plain(sPath);
    MakeFolders(sPath);
}

void MemoryFiles::SetReadOnly(const std::wstring& sPath, bool bReadOnly)
{
    m_readOnly[Folded(sPath)] = bReadOnly;
}

void MemoryFiles::SetUnreadable(const std::wstring& sPath, std::int32_t lError)
{
    if (lError == 0)
        m_unreadable.erase(Folded(sPath));
    else
        m_unreadable[Folded(sPath)] = lError;
}

MemoryFiles::File& MemoryFiles::Existing(const std::wstring& sPath)
{
    return const_cast<File&>(std::as_const(*this).Existing(sPath));
}

const MemoryFiles::File& MemoryFiles::Existing(const std::wstring& sPath) const
{
    if (const auto it = m_files.find(Folded(sPath)); it != m_files.end())
        return it->second;
    if (FolderExists(sPath))
        throw RuntimeError(error::PathFileAccess);
    throw RuntimeError(FolderExists(FolderOf(sPath)) ? error::FileNotFound : error::PathNotFound);
}

MemoryFiles::File& MemoryFiles::Writable(const std::wstring& sPath)
{
    RequirePlaceFor(sPath);
    if (FolderExists(sPath))
        throw RuntimeError(error::PathFileAccess);
    RequireChangeable(sPath);
    if (!FileExists(sPath))
        RequireChangeable(FolderOf(sPath));
    File& file = m_files[Folded(sPath)];
    if (file.sPath.empty())
        file.sPath = Plain(sPath);
    return file;
}

void MemoryFiles::RequirePlaceFor(const std::wstring& sPath) const
{
    if (!FolderExists(FolderOf(sPath)))
        throw RuntimeError(error::PathNotFound);
    if (IsNameRefused(sPath))
        throw RuntimeError(error::BadFileName);
}

void MemoryFiles::RequireChangeable(const std::wstring& sPath) const
{
    if (const auto it = m_readOnly.find(Folded(sPath)); it != m_readOnly.end() && it->second)
        throw RuntimeError(error::PathFileAccess);
}

} // namespace ravlo
