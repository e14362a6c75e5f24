// SPDX-License-Identifier: MIT
#include "platform/Files.h"

#include "base/RuntimeError.h"

#include <atomic>
#include <random>

namespace ravlo
{

namespace
{

constexpr std::wstring_view sDigits = L"0123456789abcdef";
constexpr std::size_t digits = 8;
constexpr std::wstring_view sTemporaryEnd = L".tmp";

// A short name that no file in the folder has. It starts at random, so that two processes that write into
// one folder do not choose the same name between the look and the write.
std::wstring TemporaryPathBeside(const Files& cFiles, const std::wstring& sPath)
{
    static std::atomic<std::uint32_t> lNext{std::random_device{}()};
    const std::size_t separator = sPath.find_last_of(L"\\/");
    const std::wstring sFolder = separator == std::wstring::npos ? L"" : sPath.substr(0, separator + 1);
    for (;;)
    {
        std::wstring sTemporary = sFolder + L"~";
        const std::uint32_t lNumber = lNext++;
        for (int lShift = 28; lShift >= 0; lShift -= 4)
            sTemporary += sDigits[(lNumber >> lShift) & 15];
        sTemporary += sTemporaryEnd;
        if (!cFiles.FileExists(sTemporary) && !cFiles.FolderExists(sTemporary))
            return sTemporary;
    }
}

} // namespace

bool IsTemporaryName(std::wstring_view sName) noexcept
{
    return sName.size() == 1 + digits + sTemporaryEnd.size() && sName.front() == L'~' &&
           sName.ends_with(sTemporaryEnd) &&
           sName.substr(1, digits).find_first_not_of(sDigits) == std::wstring_view::npos;
}

void ReplaceFile(Files& cFiles, const std::wstring& sPath, std::string_view bytes, Patience ePatience)
{
    const std::wstring sTemporary = TemporaryPathBeside(cFiles, sPath);
    try
    {
        cFiles.WriteNew(sTemporary, bytes);
        cFiles.Rename(sTemporary, sPath, ePatience);
    }
    catch (...)
    {
        try
        {
            if (cFiles.PresenceOf(sTemporary) != Presence::Absent)
                cFiles.Delete(sTemporary);
        }
        catch (const RuntimeError&)
        {
            // The first failure is the one to report; a temporary file that cannot be deleted harms nobody.
        }
        throw;
    }
}

} // namespace ravlo
