// SPDX-License-Identifier: MIT
#include "host/client/Commands.h"
#include "host/client/HostFiles.h"
#include "host/client/MediaLibrary.h"
#include "host/client/ProgressLine.h"

#include "base/Text.h"
#include "host/day/HostError.h"

namespace ravlo
{

namespace
{

// Deletes the database that this run created, unless the run was completed.
class UndoNewDataBase
{
public:
    explicit UndoNewDataBase(const std::wstring& sFile) : m_sFile(sFile), m_bArmed(!FileExists(sFile)) {}
    UndoNewDataBase(const UndoNewDataBase&) = delete;
    UndoNewDataBase& operator=(const UndoNewDataBase&) = delete;
    ~UndoNewDataBase()
    {
        for (const auto* sSuffix : {L"", L"-wal", L"-shm", L"-journal"})
            if (m_bArmed)
                DeleteIfThere(m_sFile + sSuffix);
    }
    void Keep() noexcept { m_bArmed = false; }

private:
    std::wstring m_sFile;
    bool m_bArmed;
};

} // namespace

void RunImport(const ImportOptions& options, const Console& cOut, const Console& cError)
{
    const auto sDataBase = FullPath(options.sDataBase);
    const auto sCsv = FullPath(options.sCsv);
    MustExist(sCsv);
    MustBeWritable(sDataBase);

    UndoNewDataBase undo(sDataBase);
    ProgressLine line(cError, options.bProgress);
    MediaLibrary library;
    library.Open(sDataBase);
    std::wstring sReport;
    const auto cuts = library.ImportCsv(
        sCsv, [&](const std::wstring& sText, long, long) { line.Show(sText); }, sReport);
    line.Clear();
    undo.Keep();
    cOut.Write(L"Imported " + DecimalText(cuts) + L" cuts from " + options.sCsv + L" into " +
               options.sDataBase + L"\n");
    if (!sReport.empty())
        cOut.Write(sReport + L"\n");
}

} // namespace ravlo
