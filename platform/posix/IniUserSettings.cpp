// SPDX-License-Identifier: MIT
#include "platform/posix/IniUserSettings.h"

#include "base/CaseFolding.h"
#include "base/RuntimeError.h"
#include "base/Text.h"
#include "base/Utf8.h"
#include "platform/posix/PosixFiles.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace ravlo
{

namespace
{

constexpr std::wstring_view sHexDigits = L"0123456789abcdef";
constexpr std::wstring_view sSpecialInNames = L"\\=[];";
constexpr std::wstring_view sSpecialInValues = L"\\";

std::wstring Escaped(const std::wstring& sText, std::wstring_view sSpecial)
{
    std::wstring sEscaped;
    for (const wchar_t c : sText)
    {
        if (c >= L' ' && sSpecial.find(c) == std::wstring_view::npos)
        {
            sEscaped += c;
            continue;
        }
        sEscaped += L'\\';
        for (int lShift = 12; lShift >= 0; lShift -= 4)
            sEscaped += sHexDigits[(static_cast<unsigned>(c) >> lShift) & 15];
    }
    return sEscaped;
}

std::wstring Unescaped(std::wstring_view sText)
{
    std::wstring sPlain;
    while (!sText.empty())
    {
        unsigned lCode = 0;
        std::size_t digits = 0;
        if (sText.front() == L'\\')
        {
            for (; digits < 4 && digits + 1 < sText.size(); ++digits)
            {
                const std::size_t digit = sHexDigits.find(sText[digits + 1]);
                if (digit == std::wstring_view::npos)
                    break;
                lCode = lCode * 16 + static_cast<unsigned>(digit);
            }
        }
        // A backslash that somebody typed by hand means itself.
        sPlain += digits == 4 ? static_cast<wchar_t>(lCode) : sText.front();
        sText.remove_prefix(digits == 4 ? 5 : 1);
    }
    return sPlain;
}

} // namespace

IniUserSettings::IniUserSettings(Files& cFiles, std::wstring sFolder)
    : m_cFiles(cFiles), m_sFolder(std::move(sFolder))
{
}

std::wstring IniUserSettings::UserFolder()
{
    if (const char* pFolder = std::getenv("XDG_CONFIG_HOME"); pFolder && *pFolder == '/')
        return HostPathOf(pFolder);
    const char* pHome = std::getenv("HOME");
    return HostPathOf(pHome ? pHome : "") + L"\\.config";
}

std::wstring IniUserSettings::Get(const std::wstring& sApplication, const std::wstring& sSection,
                                  const std::wstring& sKey, const std::wstring& sDefault) const
{
    try
    {
        for (const Entry& entry : Read(PathOf(sApplication)))
        {
            if (EqualIgnoringCase(entry.sSection, sSection) && EqualIgnoringCase(entry.sKey, sKey))
                return entry.sValue;
        }
    }
    catch (const RuntimeError&)
    {
        // A setting that cannot be read has its default.
    }
    return sDefault;
}

bool IniUserSettings::Set(const std::wstring& sApplication, const std::wstring& sSection,
                          const std::wstring& sKey, const std::wstring& sValue)
{
    try
    {
        const std::wstring sPath = PathOf(sApplication);
        std::vector<Entry> entries;
        if (m_cFiles.FileExists(sPath))
            entries = Read(sPath);
        const auto isWanted = [&](const Entry& entry) {
            return EqualIgnoringCase(entry.sSection, sSection) && EqualIgnoringCase(entry.sKey, sKey);
        };
        const auto it = std::find_if(entries.begin(), entries.end(), isWanted);
        if (it != entries.end())
            it->sValue = sValue;
        else
            entries.push_back({sSection, sKey, sValue});
        Write(sPath, entries);
        return true;
    }
    catch (const RuntimeError&)
    {
        return false; // a setting that cannot be stored must not stop the work
    }
}

std::wstring IniUserSettings::PathOf(const std::wstring& sApplication) const
{
    if (sApplication.empty() || sApplication.find_first_of(L"\\/") != std::wstring::npos)
        throw RuntimeError(error::BadFileName); // a name must not lead out of the folder
    return m_sFolder + L"\\" + sApplication + L".ini";
}

std::vector<IniUserSettings::Entry> IniUserSettings::Read(const std::wstring& sPath) const
{
    std::vector<Entry> entries;
    std::wstring sSection;
    for (std::wstring& sLine : Split(TextFromStore(m_cFiles.ReadAll(sPath)), L"\n"))
    {
        if (!sLine.empty() && sLine.back() == L'\r')
            sLine.pop_back(); // an editor's; one that belongs to a value is written as \000d
        const std::size_t equals = sLine.find(L'=');
        if (sLine.size() >= 2 && sLine.front() == L'[' && sLine.back() == L']')
            sSection = Unescaped(std::wstring_view(sLine).substr(1, sLine.size() - 2));
        else if (equals != std::wstring::npos && sLine.front() != L';')
            entries.push_back({sSection, Unescaped(std::wstring_view(sLine).substr(0, equals)),
                               Unescaped(std::wstring_view(sLine).substr(equals + 1))});
    }
    return entries;
}

void IniUserSettings::Write(const std::wstring& sPath, const std::vector<Entry>& entries)
{
    // Sections in the order of their first entry, each with all its entries.
    std::vector<bool> written(entries.size());
    std::wstring sText;
    for (std::size_t i = 0; i < entries.size(); ++i)
    {
        if (written[i])
            continue;
        sText += L"[" + Escaped(entries[i].sSection, sSpecialInNames) + L"]\n";
        for (std::size_t j = i; j < entries.size(); ++j)
        {
            if (!EqualIgnoringCase(entries[j].sSection, entries[i].sSection))
                continue;
            written[j] = true;
            sText += Escaped(entries[j].sKey, sSpecialInNames) + L"=" +
                     Escaped(entries[j].sValue, sSpecialInValues) + L"\n";
        }
    }
    MakeFolder(m_sFolder);
    ReplaceFile(m_cFiles, sPath, Utf8Of(sText));
}

void IniUserSettings::MakeFolder(const std::wstring& sFolder)
{
    if (sFolder.empty() || m_cFiles.FolderExists(sFolder))
        return;
    const std::size_t separator = sFolder.find_last_of(L'\\');
    if (separator != std::wstring::npos)
        MakeFolder(sFolder.substr(0, separator));
    m_cFiles.CreateFolder(sFolder);
}

} // namespace ravlo
