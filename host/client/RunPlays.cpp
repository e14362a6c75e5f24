// SPDX-License-Identifier: MIT
#include "host/client/Commands.h"
#include "host/client/HostFiles.h"
#include "host/client/MediaLibrary.h"

#include "base/Text.h"
#include "base/Utf8.h"
#include "host/day/HostError.h"

#include <algorithm>

namespace ravlo
{

void RunPlays(const PlaysOptions& options, const Console& cOut)
{
    if (options.dtTo <= options.dtFrom)
        throw HostError(L"the period ends before it begins");
    MustExist(FullPath(options.sDataBase));
    if (!options.sCsv.empty())
        MustBeWritable(FullPath(options.sCsv));
    MediaLibrary library;
    library.Open(FullPath(options.sDataBase));
    const std::wstring sReport = library.PlaysCsv(options.dtFrom, options.dtTo, options.sBy);
    if (options.sCsv.empty())
    {
        cOut.Write(sReport);
        return;
    }
    WriteWhole(FullPath(options.sCsv), Utf8Of(sReport));
    cOut.Write(L"Plays: " + options.sCsv + L"\n");
}

} // namespace ravlo
