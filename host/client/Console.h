// SPDX-License-Identifier: MIT
#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <string_view>

namespace ravlo
{

// Standard output or standard error. Text is written as UTF-8, independent of the console's code
// page.
class Console
{
public:
    // STD_OUTPUT_HANDLE or STD_ERROR_HANDLE. A console window is switched to UTF-8 for as long as this lives.
    explicit Console(DWORD lWhich) noexcept;
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;
    ~Console();

    bool IsWindow() const noexcept { return m_bWindow; }
    // Drops text that cannot be written: there is nowhere to report it.
    void Write(std::wstring_view sText) const;

private:
    HANDLE m_hWhere;
    bool m_bWindow;
    UINT m_lCodePageBefore = 0;
};

// Returns the next line of standard input without its line end; nothing at the end.
std::optional<std::wstring> ReadAnswer();

} // namespace ravlo
