// SPDX-License-Identifier: MIT
#include "host/client/Commands.h"
#include "host/client/HostFiles.h"
#include "host/client/MediaLibrary.h"
#include "host/client/ProgressLine.h"

#include "base/Text.h"
#include "host/day/HostError.h"

#include <atomic>

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
        for (const wchar_t* sSuffix : {L"", L"-wal", L"-shm", L"-journal"})
            if (m_bArmed)
                DeleteIfThere(m_sFile + sSuffix);
    }
    void Keep() noexcept { m_bArmed = false; }

private:
    std::wstring m_sFile;
    bool m_bArmed;
};

// While it exists, Ctrl+C asks for the end of the import instead of ending the program.
class CancelKey
{
public:
    CancelKey() { SetConsoleCtrlHandler(&OnKey, TRUE); }
    CancelKey(const CancelKey&) = delete;
    CancelKey& operator=(const CancelKey&) = delete;
    ~CancelKey() { SetConsoleCtrlHandler(&OnKey, FALSE); }
    static bool Pressed() noexcept { return s_bPressed; }

private:
    // Runs on a thread of the system.
    static BOOL WINAPI OnKey(DWORD lEvent) noexcept
    {
        if (lEvent != CTRL_C_EVENT && lEvent != CTRL_BREAK_EVENT)
            return FALSE;
        s_bPressed = true;
        return TRUE;
    }
    static inline std::atomic<bool> s_bPressed = false;
};

// What is imported, as it was named on the command line.
const std::wstring& SourceOf(const ImportOptions& options)
{
    return !options.sCsv.empty()      ? options.sCsv
           : !options.sFolder.empty() ? options.sFolder
                                      : options.sPlaylist;
}

HRESULT Call(_clsDataBase& cDataBase, const ImportOptions& options, LONG* plCuts)
{
    const Bstr sSource(FullPath(SourceOf(options)));
    const Bstr sCategory(options.sCategory);
    const VARIANT_BOOL bTrial = options.bTrial ? VARIANT_TRUE : VARIANT_FALSE;
    if (!options.sFolder.empty())
        return cDataBase.ImportFolder(sSource.Get(), sCategory.Get(), bTrial, plCuts);
    if (!options.sPlaylist.empty())
        return cDataBase.ImportPlaylist(sSource.Get(), sCategory.Get(), bTrial, plCuts);
    return cDataBase.ImportMappedCsv(sSource.Get(), Bstr(options.sMap).Get(), bTrial, plCuts);
}

} // namespace

void RunImport(const ImportOptions& options, const Console& cOut, const Console& cError)
{
    const std::wstring sDataBase = FullPath(options.sDataBase);
    if (options.sFolder.empty())
        MustExist(FullPath(SourceOf(options)));
    MustBeWritable(sDataBase);

    UndoNewDataBase undo(sDataBase);
    ProgressLine line(cError, options.bProgress);
    MediaLibrary library;
    library.Open(sDataBase);
    const CancelKey cancel;
    std::wstring sReport;
    const std::int32_t cuts = library.Import(
        [&](_clsDataBase& cDataBase, LONG* plCuts) { return Call(cDataBase, options, plCuts); },
        [&](const std::wstring& sText, long, long) {
        line.Show(sText);
        if (CancelKey::Pressed())
            library.Object().CancelImport();
        },
        sReport);
    line.Clear();
    if (!options.bTrial)
    {
        undo.Keep();
        cOut.Write(L"Imported " + DecimalText(cuts) + L" cuts from " + SourceOf(options) + L" into " +
                   options.sDataBase + L"\n");
    }
    cOut.Write(library.ImportReport());
}

} // namespace ravlo
