// SPDX-License-Identifier: MIT
#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <string_view>

namespace ravlo
{

// One of the two places a console program writes to. Text leaves as UTF-8, whatever the console's code page
// is.
class Console
{
public:
    // STD_OUTPUT_HANDLE or STD_ERROR_HANDLE. A console window is switched to UTF-8 for as long as this lives.
    explicit Console(DWORD lWhich) noexcept;
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;
    ~Console();

    bool IsWindow() const noexcept { return m_bWindow; }
    // What cannot be written is lost: there is no other place to say so.
    void Write(std::wstring_view sText) const;

private:
    HANDLE m_hWhere;
    bool m_bWindow;
    UINT m_lCodePageBefore = 0;
};

// The next line of standard input, without its end; nothing when there is none.
std::optional<std::wstring> ReadAnswer();

} // namespace ravlo
