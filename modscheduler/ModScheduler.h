// SPDX-License-Identifier: MIT
#pragma once

#include "base/RuntimeError.h"
#include "modscheduler/SavedFiles.h"
#include "platform/Ports.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace ravlo
{

// What the whole library shares: application path, debug log, error display and global separations. One
// instance serves all managers of the library; it must outlive everything that refers to it.
class ModScheduler
{
public:
    explicit ModScheduler(const ravlo::Ports& cPorts);
    ModScheduler(const ModScheduler&) = delete;
    ModScheduler& operator=(const ModScheduler&) = delete;

    const ravlo::Ports& Ports() const noexcept { return m_cPorts; }
    // The files that the parts of the library read and rewrite.
    SavedFiles& Saved() noexcept { return m_cSavedFiles; }

    // The host's application folder with a trailing backslash; empty when not set.
    std::wstring AppPath() const;
    void StoreAppPath(const std::wstring& sAppPath);
    // The folder whose rules and settings are in use, with a trailing backslash: AppPath, except between
    // MoveAppPath and SettleAppPath.
    std::wstring ServedPath() const;
    // As StoreAppPath, for a population of another folder, which may fail: rules and settings still use the
    // present tree's folder. To go back, call it with ServedPath().
    void MoveAppPath(const std::wstring& sAppPath);
    // Call when the population has succeeded: rules and settings use AppPath from now on. Loads the settings.
    void SettleAppPath();

    // ---- debug log

    // Logs one line with the present time; cuts the message after 1000 characters. Inside a LogScope, lines
    // are gathered and appended together when the outermost scope ends; otherwise each is appended at once.
    // File format: docs/formats/debug-log.md.
    void WriteDebugLog(std::wstring_view sMessage) noexcept;
    // Appends the gathered lines. Called before everything that lets others run: an event, a box, a pump, a
    // save.
    void FlushDebugLog() noexcept;
    class LogScope
    {
    public:
        explicit LogScope(ModScheduler& cMod) noexcept;
        ~LogScope();
        LogScope(const LogScope&) = delete;
        LogScope& operator=(const LogScope&) = delete;

    private:
        ModScheduler& m_cMod;
    };
    // For the time that others run inside one of our calls, perhaps over night behind an input box: appends
    // the gathered lines and stops gathering. Their own calls gather separately.
    class OthersRun
    {
    public:
        explicit OthersRun(ModScheduler& cMod) noexcept;
        ~OthersRun();
        OthersRun(const OthersRun&) = delete;
        OthersRun& operator=(const OthersRun&) = delete;

    private:
        ModScheduler& m_cMod;
        int m_lScopes;
        int m_lOnAir;
    };

    // ---- error display

    // Logs "DISPLAYERROR, <procedure> <number> <description>". With bShow also shows the information box
    // titled with the procedure's name: "Handled Error!", description and number on three lines.
    void DISPLAYERROR(std::wstring_view sProcedure, bool bShow, const RuntimeError& cError) noexcept;
    // Shows the critical box "<number> <description>" under sTitle and logs one line.
    void ShowCriticalError(std::wstring_view sTitle, const RuntimeError& cError) noexcept;
    // Logs one line; no box.
    void LogError(std::wstring_view sWhere, const RuntimeError& cError) noexcept;

    // While one exists, nobody watches the screen: ShowLater only logs. Suspended by OthersRun.
    class OnAir
    {
    public:
        explicit OnAir(ModScheduler& cMod) noexcept : m_cMod(cMod) { ++m_cMod.m_lOnAir; }
        ~OnAir() { --m_cMod.m_lOnAir; }
        OnAir(const OnAir&) = delete;
        OnAir& operator=(const OnAir&) = delete;

    private:
        ModScheduler& m_cMod;
    };
    bool IsOnAir() const noexcept { return m_lOnAir != 0; }
    // As DISPLAYERROR with its box; on air the box is delayed until ShowWaiting.
    void ShowLater(std::wstring_view sProcedure, const RuntimeError& cError) noexcept;
    // Shows the first of the delayed errors, once, and how many more are in the log. Call it where a user
    // edits or opens a window.
    void ShowWaiting() noexcept;

    // ---- boxes and yielding; the debug log is appended before anything that lets others run

    BoxAnswer Box(BoxIcon eIcon, BoxButtons eButtons, const std::wstring& sTitle, const std::wstring& sText);
    std::optional<std::wstring> Input(const std::wstring& sTitle, const std::wstring& sPrompt,
                                      const std::wstring& sText = {});
    void Pump();
    void Sleep(std::uint32_t lMilliseconds);

    // ---- global separations, in minutes, never negative; file format: docs/formats/settings.md

    std::int32_t GlobalArtistSepMins() const noexcept { return m_cSettings.lArtist; }
    std::int32_t GlobalTitleSepMins() const noexcept { return m_cSettings.lTitle; }
    std::int32_t GlobalAlbumSepMins() const noexcept { return m_cSettings.lAlbum; }
    // A negative value becomes 60. Each setter writes the settings file at once. A file that could not be
    // read before is read first, so that it keeps its other values.
    void SetGlobalArtistSepMins(std::int32_t lMins);
    void SetGlobalTitleSepMins(std::int32_t lMins);
    void SetGlobalAlbumSepMins(std::int32_t lMins);
    // Reads the file of ServedPath(); without a folder every separation is 60. First saves a setter's unsaved
    // value to its own folder. When that fails, or the file cannot be read, a reload of the same folder keeps
    // the present values; another folder starts with 60 when its file cannot be read. Errors are logged.
    void LoadSettings();
    // Returns false when the separations do not belong to ServedPath() or the file could not be written.
    // Without a setter's value to save, leaves alone a file that was not read or in which no line is a
    // number.
    bool SaveSettings() noexcept;

private:
    // The separations and their folder.
    struct Settings
    {
        std::wstring sAppPath; // empty: no folder
        std::int32_t lArtist = 60;
        std::int32_t lTitle = 60;
        std::int32_t lAlbum = 60;
        bool bUnsaved = false;     // a setter's value is not in the file yet
        bool bNothingRead = false; // the file exists, but no line of it is a number
    };

    void AppendToLog(const std::wstring& sLines, DateTime dtFirst);
    void ShowHandled(const std::wstring& sTitle, const std::wstring& sText, std::int32_t lNumber);
    void SetSetting(std::int32_t Settings::*lSetting, std::int32_t lMins);
    void ReadSettings();
    bool WriteSettings() noexcept;
    std::wstring SettingsPath() const;

    ravlo::Ports m_cPorts;
    std::wstring m_sAppPath;
    std::wstring m_sServedPath; // empty: AppPath
    Settings m_cSettings;
    SavedFiles m_cSavedFiles;

    int m_lOnAir = 0;
    struct Waiting
    {
        std::wstring sTitle;
        RuntimeError cFirst;
        std::size_t more;
    };
    std::optional<Waiting> m_cWaiting;

    std::wstring m_sLines; // gathered, formatted as in the file
    DateTime m_dtFirstLine = 0;
    std::wstring m_sStamp; // the time stamp of the last line
    std::int64_t m_stampSecond = 0;
    int m_lScopes = 0;
};

// The current exception as a RuntimeError: itself, 7 for lack of memory (also while making another error's
// text), 51 with the exception's text for any other. Call inside a catch block.
RuntimeError CurrentError() noexcept;

// Runs a public operation. An error is shown in the critical form under sTitle, and the failure result is
// returned.
template <class Result, class Body>
Result TrapCritical(ModScheduler& cMod, const wchar_t* sTitle, Result failure, Body&& body)
{
    try
    {
        return std::forward<Body>(body)();
    }
    catch (...)
    {
        cMod.ShowCriticalError(sTitle, CurrentError());
        return failure;
    }
}

// The same for a body without a result.
template <class Body> void TrapCritical(ModScheduler& cMod, const wchar_t* sTitle, Body&& body)
{
    try
    {
        std::forward<Body>(body)();
    }
    catch (...)
    {
        cMod.ShowCriticalError(sTitle, CurrentError());
    }
}

// As TrapCritical, with the "Handled Error!" form under the location text sWhere.
template <class Result, class Body>
Result Trap(ModScheduler& cMod, const wchar_t* sWhere, Result failure, Body&& body)
{
    try
    {
        return std::forward<Body>(body)();
    }
    catch (...)
    {
        cMod.DISPLAYERROR(sWhere, true, CurrentError());
        return failure;
    }
}

// The same for a body without a result.
template <class Body> void Trap(ModScheduler& cMod, const wchar_t* sWhere, Body&& body)
{
    try
    {
        std::forward<Body>(body)();
    }
    catch (...)
    {
        cMod.DISPLAYERROR(sWhere, true, CurrentError());
    }
}

} // namespace ravlo
