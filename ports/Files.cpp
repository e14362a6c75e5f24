// SPDX-License-Identifier: MIT
#include "ports/Files.h"

#include "ports/RuntimeError.h"

#include <atomic>
#include <random>

namespace ravlo
{

namespace
{

// A short name no file in the folder has. The start is drawn by chance, so that two processes that write into
// one folder do not choose the same name between the look and the write.
std::wstring TemporaryPathBeside(const Files& cFiles, const std::wstring& sPath)
{
    static std::atomic<std::uint32_t> lNext{std::random_device{}()};
    const std::size_t lSeparator = sPath.find_last_of(L"\\/");
    const std::wstring sFolder = lSeparator == std::wstring::npos ? L"" : sPath.substr(0, lSeparator + 1);
    for (;;)
    {
        std::wstring sTemporary = sFolder + L"~";
        const std::uint32_t lNumber = lNext++;
        for (int lShift = 28; lShift >= 0; lShift -= 4)
            sTemporary += L"0123456789abcdef"[(lNumber >> lShift) & 15];
        sTemporary += L".tmp";
        if (!cFiles.FileExists(sTemporary) && !cFiles.FolderExists(sTemporary))
            return sTemporary;
    }
}

} // namespace

void ReplaceFile(Files& cFiles, const std::wstring& sPath, std::string_view bytes)
{
    const std::wstring sTemporary = TemporaryPathBeside(cFiles, sPath);
    try
    {
        cFiles.WriteNew(sTemporary, bytes);
        cFiles.Rename(sTemporary, sPath);
    }
    catch (...)
    {
        try
        {
            if (cFiles.FileExists(sTemporary))
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
