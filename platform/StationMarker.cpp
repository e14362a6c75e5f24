// SPDX-License-Identifier: MIT
#include "platform/StationMarker.h"

#include "base/RuntimeError.h"

namespace ravlo
{

std::wstring StationMarkerPath(const std::wstring& sAppPath)
{
    const bool bSeparated = !sAppPath.empty() && (sAppPath.back() == L'\\' || sAppPath.back() == L'/');
    return sAppPath + (bSeparated ? L"" : L"\\") + L"Scheduler\\InUse.lock";
}

std::unique_ptr<HeldFile> MarkStation(Files& cFiles, const std::wstring& sAppPath)
{
    return cFiles.HoldOpen(StationMarkerPath(sAppPath));
}

bool IsStationInUse(Files& cFiles, const std::wstring& sAppPath)
{
    if (!cFiles.FileExists(StationMarkerPath(sAppPath)))
        return false;
    try
    {
        return MarkStation(cFiles, sAppPath) == nullptr;
    }
    catch (const RuntimeError&)
    {
        return false; // the next manager in the folder reports what is wrong with it
    }
}

} // namespace ravlo
