// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>

// What differs between the systems, for this folder's own use.
namespace ravlo::disk
{

#ifdef _WIN32
inline constexpr const wchar_t* separators = L"\\/";
#else
inline constexpr const wchar_t* separators = L"/";
#endif

// Throws 52 for a text that can name no file.
void RequireName(const std::wstring& sPath);

// A file that is open for reading, if it could be opened.
class OpenFile
{
public:
    explicit OpenFile(const std::wstring& sPath);
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;
    ~OpenFile();

    bool IsOpen() const noexcept;
    // Preconditions of the rest: IsOpen.
    std::optional<std::int64_t> Size() const;
    // Fills the buffer from the start of the file; false when the file is shorter or cannot be read.
    bool Read(std::string& bytes) const;

private:
    std::intptr_t m_handle;
};

} // namespace ravlo::disk
