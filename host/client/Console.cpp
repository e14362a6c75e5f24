// SPDX-License-Identifier: MIT
#include "host/client/Console.h"

#include "base/Utf8.h"

#include <algorithm>

namespace ravlo
{

namespace
{

bool IsConsole(HANDLE hWhere) noexcept
{
    DWORD lMode = 0;
    return GetConsoleMode(hWhere, &lMode) != FALSE;
}

} // namespace

Console::Console(DWORD lWhich) noexcept : m_hWhere(GetStdHandle(lWhich)), m_bWindow(IsConsole(m_hWhere))
{
    if (m_bWindow)
    {
        m_lCodePageBefore = GetConsoleOutputCP();
        SetConsoleOutputCP(CP_UTF8);
    }
}

Console::~Console()
{
    if (m_bWindow)
        SetConsoleOutputCP(m_lCodePageBefore);
}

void Console::Write(std::wstring_view sText) const
{
    const std::string bytes = Utf8Of(sText);
    std::string_view rest = bytes;
    while (!rest.empty())
    {
        const auto lChunk = static_cast<DWORD>(std::min<std::size_t>(rest.size(), 1 << 16));
        DWORD lWritten = 0;
        if (!WriteFile(m_hWhere, rest.data(), lChunk, &lWritten, nullptr) || lWritten == 0)
            return;
        rest.remove_prefix(lWritten);
    }
}

std::optional<std::wstring> ReadAnswer()
{
    const HANDLE hInput = GetStdHandle(STD_INPUT_HANDLE);
    std::string bytes;
    char c = 0;
    DWORD lRead = 0;
    // Byte by byte: input after the line is not ours.
    while (ReadFile(hInput, &c, 1, &lRead, nullptr) && lRead == 1)
    {
        if (c == '\n')
            return TextFromStore(bytes);
        if (c != '\r')
            bytes += c;
    }
    return bytes.empty() ? std::nullopt : std::optional(TextFromStore(bytes));
}

} // namespace ravlo
