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

// What the whole library shares: the application path, the debug log, the error display and the global
// separations. One instance serves every manager of the library; it must outlive all that was given it.
class ModScheduler
{
public:
    explicit ModScheduler(const ravlo::Ports& cPorts);
    ModScheduler(const ModScheduler&) = delete;
    ModScheduler& operator=(const ModScheduler&) = delete;

    const ravlo::Ports& Ports() const noexcept { return m_cPorts; }
    // The keeper of the files that every part of the library reads and rewrites.
    SavedFiles& Saved() noexcept { return m_cSavedFiles; }

    // The host's application folder with a trailing backslash; empty when none was stored.
    std::wstring AppPath() const;
    void StoreAppPath(const std::wstring& sAppPath);
    // The folder whose rules and settings are in use, with a trailing backslash: AppPath, except between
    // MoveAppPath and SettleAppPath.
    std::wstring ServedPath() const;
    // StoreAppPath for a population of another folder, which may fail: rules and settings stay those of the
    // tree in use. To return, move back to the folder that is served.
    void MoveAppPath(const std::wstring& sAppPath);
    // The population has succeeded: rules and settings are AppPath's from now on. Loads the settings.
    void SettleAppPath();

    // ---- debug log

    // Notes one line with the present time; a message is cut after 1000 characters. Inside a LogScope lines
    // are gathered and appended together when the outermost scope ends; otherwise the line is appended at
    // once. File format: docs/formats/debug-log.md.
    void WriteDebugLog(std::wstring_view sMessage) noexcept;
    // Appends what was gathered so far. Called before anything that lets others run: an event, a box, a pump,
    // a save.
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
    // While others run inside a call of ours, for which an input box may stay open over night: appends what
    // was gathered, and ends the gathering for so long. Their calls gather for themselves.
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

    // Logs "DISPLAYERROR, <procedure> <number> <description>"; with bShow also shows the information box
    // titled with the procedure's name: "Handled Error!", description and number on three lines.
    void DISPLAYERROR(std::wstring_view sProcedure, bool bShow, const RuntimeError& cError) noexcept;
    // The critical box "<number> <description>" under a title of its own, and one log line.
    void ShowCriticalError(std::wstring_view sTitle, const RuntimeError& cError) noexcept;
    // One log line, no box.
    void LogError(std::wstring_view sWhere, const RuntimeError& cError) noexcept;

    // While one lives, nobody is at the screen: ShowLater only logs. Not while others run.
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
    // As DISPLAYERROR with its box; on air the box waits for ShowWaiting.
    void ShowLater(std::wstring_view sProcedure, const RuntimeError& cError) noexcept;
    // Shows, once, the first of the errors that wait, and how many more the log has. Call it where somebody
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
    // A negative value becomes 60. Each setter writes the settings file at once; a file that could not be
    // read before is read first, so that it keeps its other values.
    void SetGlobalArtistSepMins(std::int32_t lMins);
    void SetGlobalTitleSepMins(std::int32_t lMins);
    void SetGlobalAlbumSepMins(std::int32_t lMins);
    // Reads the file of the served folder; without a folder every separation is 60. A setter's value that is
    // not saved yet is saved first, to its own folder; when that fails, a reload of the same folder keeps the
    // present values. So it does when the file cannot be read; another folder starts with 60 then. Errors are
    // logged.
    void LoadSettings();
    // False when the separations are not those of the served folder, or the file could not be written.
    // Without a setter's value to save, a file that has not been read, or of which no line is a number, is
    // left alone.
    bool SaveSettings() noexcept;

private:
    // The separations, and whose they are.
    struct Settings
    {
        std::wstring sAppPath; // empty: no folder's
        std::int32_t lArtist = 60;
        std::int32_t lTitle = 60;
        std::int32_t lAlbum = 60;
        bool bUnsaved = false;     // a setter's value is not in the file yet
        bool bNothingRead = false; // there is a file, and no line of it is a number
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

    std::wstring m_sLines; // gathered, ready to be appended
    DateTime m_dtFirstLine = 0;
    std::wstring m_sStamp; // of the second in which the last line was noted
    std::int64_t m_stampSecond = 0;
    int m_lScopes = 0;
};

// Turns whatever is being handled in a catch (...) block into a RuntimeError: itself, 7 for lack of memory
// (also for the text of another error), 51 with the exception's text for the rest.
RuntimeError CurrentError() noexcept;

// Runs a public operation and catches at its edge: an error is shown in the critical form under sTitle and
// the failure result comes back.
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
