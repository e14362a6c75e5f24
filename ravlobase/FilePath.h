// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <string>

namespace ravlo
{

// A path in the platform's form. Throws error 52 for a text that can name no file: an empty one, or one with
// a NUL or half a surrogate pair.
std::filesystem::path FilePath(const std::wstring& sPath);

// A path as text.
std::wstring PathText(const std::filesystem::path& cPath);

// The whole content of a file. Throws 53 when there is none, 75 when it cannot be opened, 57 when reading
// fails.
std::string ReadFile(const std::wstring& sPath);

} // namespace ravlo
