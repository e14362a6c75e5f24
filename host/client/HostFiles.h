// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace ravlo
{

// The files named on the command line. Failures throw HostError with the file's name.

// The full path of a name in the current folder, so that it means the same to everyone who receives it.
std::wstring FullPath(const std::wstring& sPath);

// Throws unless the file exists.
void MustExist(const std::wstring& sPath);
// Throws unless the file exists or can be created: its folder exists, and the name is not a folder.
void MustBeWritable(const std::wstring& sPath);
// Throws unless the database exists and the folder is a station, both as they were typed. Most commands ask
// this: for a folder with a typo, they would otherwise make a new station and report on that.
void MustBeStation(const std::wstring& sDataBase, const std::wstring& sAppFolder);
// For a command that makes the station when it is missing: throws unless the database exists and the folder
// is one or can be made.
void MayBeStation(const std::wstring& sDataBase, const std::wstring& sAppFolder);
// Makes the folder of a station that is missing. Returns "New station: <folder>" to say so, with its line
// end, and nothing for one that is there. sAppFolder as it was typed.
std::wstring MakeStation(const std::wstring& sAppFolder);
// Throws when another program works on the station. Waits up to three seconds before, since a program that
// only looks at the station may end in that time. sAppFolder as it was typed.
void MustBeFree(const std::wstring& sAppFolder);
bool FileExists(const std::wstring& sPath);
void DeleteIfThere(const std::wstring& sPath) noexcept;

std::string ReadWhole(const std::wstring& sPath);
// Writes in one step: a reader sees the old content or the new one.
void WriteWhole(const std::wstring& sPath, std::string_view bytes);

} // namespace ravlo
