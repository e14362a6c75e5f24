// SPDX-License-Identifier: MIT
#pragma once

#include "modscheduler/ModScheduler.h"
#include "platform/memory/MemoryPorts.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace ravlo::test
{

inline constexpr const wchar_t* sRadio = L"C:\\Radio\\";

// An OK box, as most are.
inline ShownBox OkBox(BoxIcon eIcon, const std::wstring& sTitle, const std::wstring& sText)
{
    return {eIcon, BoxButtons::Ok, sTitle, sText};
}
inline ShownBox CriticalBox(const std::wstring& sTitle, const std::wstring& sText)
{
    return OkBox(BoxIcon::Critical, sTitle, sText);
}
// The box of the error display.
inline ShownBox HandledError(const std::wstring& sProcedure, const std::wstring& sDescription,
                             const std::wstring& sNumber)
{
    return OkBox(BoxIcon::Information, sProcedure, L"Handled Error!\r\n" + sDescription + L"\r\n" + sNumber);
}

// A world in memory with the host's folder C:\Radio and a debug log in it.
struct RadioPorts : MemoryPorts
{
    RadioPorts() { MakeLogFolder(); }

    void MakeLogFolder() { cFiles.MakeFolders(std::wstring(sRadio) + L"Debugging Logs\\Scheduler"); }

    static std::wstring LogPath()
    {
        return std::wstring(sRadio) + L"Debugging Logs\\Scheduler\\Scheduler 01.deb";
    }

    // The messages in the log of the clock's first day, without their timestamps and without the creation
    // line.
    std::vector<std::wstring> LogMessages() const
    {
        std::vector<std::wstring> colMessages;
        if (!cFiles.FileExists(LogPath()))
            return colMessages;
        const std::wstring sText = cCodePage.Decode(cFiles.Get(LogPath()));
        for (std::size_t at = 0; at < sText.size();)
        {
            const std::size_t end = sText.find(L"\r\n", at);
            colMessages.push_back(sText.substr(at + 18, end - at - 18));
            at = end + 2;
        }
        colMessages.erase(colMessages.begin());
        return colMessages;
    }

    // The files that a replacement left behind half-way.
    std::vector<std::wstring> TemporaryFiles() const
    {
        std::vector<std::wstring> colPaths;
        for (const std::wstring& sPath : cFiles.Paths())
            if (sPath.ends_with(L".tmp"))
                colPaths.push_back(sPath);
        return colPaths;
    }
};

} // namespace ravlo::test
