// SPDX-License-Identifier: MIT
#include "base/csv/CsvWriter.h"

namespace ravlo
{

namespace
{

std::wstring Field(const std::wstring& sText)
{
    if (sText.find_first_of(L",\"\r\n") == std::wstring::npos)
        return sText;
    std::wstring sQuoted = L"\"";
    for (const wchar_t c : sText)
    {
        sQuoted += c;
        if (c == L'"')
            sQuoted += c;
    }
    return sQuoted + L"\"";
}

} // namespace

std::wstring CsvLine(std::span<const std::wstring> fields)
{
    std::wstring sLine;
    for (const std::wstring& sField : fields)
        sLine += (&sField == fields.data() ? L"" : L",") + Field(sField);
    return sLine + L"\n";
}

} // namespace ravlo
