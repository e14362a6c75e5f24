// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace ravlo
{

// The files that the command line names. What cannot be done throws HostError with the name.

// The name from the current folder made whole, so that it means the same to everyone it is handed to.
std::wstring FullPath(const std::wstring& sPath);

// Throws unless a file of that name is there.
void MustExist(const std::wstring& sPath);
// Throws unless a file of that name is there or can be made: its folder exists, and it is no folder itself.
void MustBeWritable(const std::wstring& sPath);
// Throws unless the database is there and the folder is one or can be made; both as they were typed.
void MustBeStation(const std::wstring& sDataBase, const std::wstring& sAppFolder);
// Throws while another program works on the station, after a moment in which a mere look at it may end. The
// folder as it was typed.
void MustBeFree(const std::wstring& sAppFolder);
bool FileExists(const std::wstring& sPath);
void DeleteIfThere(const std::wstring& sPath) noexcept;

std::string ReadWhole(const std::wstring& sPath);
// In one step: a reader sees the old content or the new one.
void WriteWhole(const std::wstring& sPath, std::string_view bytes);
// With the folders above it; nothing happens when it is there.
void MakeFolder(const std::wstring& sPath);

} // namespace ravlo
