// SPDX-License-Identifier: MIT
#include "modscheduler/ModScheduler.h"

#include "base/CaseFolding.h"
#include "base/Text.h"

#include <algorithm>
#include <new>
#include <string_view>
#include <utility>

namespace ravlo
{

namespace
{

constexpr std::int32_t lDefaultSepMins = 60;
constexpr const wchar_t* sSettingsFile = L"Scheduler\\SchedulerSettings.dat";
constexpr std::size_t dateLength = 8; // of a time stamp's "dd/mm/yy"
constexpr std::size_t longestMessage = 1000;
constexpr const wchar_t* sLogFolder = L"Debugging Logs\\Scheduler\\";

std::wstring TwoDigits(int lValue)
{
    return {static_cast<wchar_t>(L'0' + lValue / 10 % 10), static_cast<wchar_t>(L'0' + lValue % 10)};
}

std::wstring LogFileName(int lDayOfMonth) { return L"Scheduler " + TwoDigits(lDayOfMonth) + L".deb"; }

// Shifts a time so that rounding it to whole seconds truncates it: 23:59:59.6 stays in its day. Half a
// millisecond less than half a second, since a whole second is seldom exact as a fraction of a day.
DateTime ForTruncation(DateTime dtWhen) { return dtWhen - 0.4995 / 86'400; }

// 18 characters: "dd/mm/yy hh:mm:ss" and one blank.
std::wstring TimeStamp(DateTime dtWhen)
{
    const DateFields when = FieldsOf(dtWhen);
    return TwoDigits(when.lDay) + L"/" + TwoDigits(when.lMonth) + L"/" + TwoDigits(when.lYear % 100) + L" " +
           TwoDigits(when.lHour) + L":" + TwoDigits(when.lMinute) + L":" + TwoDigits(when.lSecond) + L" ";
}

std::int32_t NeverNegative(std::int32_t lMins) { return lMins < 0 ? lDefaultSepMins : lMins; }

// The number in a line of the settings file; nothing when the line is missing or not a number.
std::optional<std::int32_t> MinutesOf(const std::vector<std::wstring>& colLines, std::size_t line)
{
    const std::optional<double> dValue = line < colLines.size() ? NumericValue(colLines[line]) : std::nullopt;
    const std::optional<std::int32_t> lMins = dValue ? ToLong(*dValue) : std::nullopt;
    return lMins ? std::optional(NeverNegative(*lMins)) : std::nullopt;
}

} // namespace

ModScheduler::ModScheduler(const ravlo::Ports& cPorts) : m_cPorts(cPorts), m_cSavedFiles(m_cPorts.cFiles) {}

std::wstring ModScheduler::AppPath() const
{
    if (m_sAppPath.empty() || m_sAppPath.back() == L'\\')
        return m_sAppPath;
    return m_sAppPath + L"\\";
}

void ModScheduler::StoreAppPath(const std::wstring& sAppPath)
{
    m_sServedPath.clear();
    if (sAppPath == m_sAppPath)
        return;
    FlushDebugLog(); // lines logged until now belong to the old folder
    m_sAppPath = sAppPath;
}

std::wstring ModScheduler::ServedPath() const { return m_sServedPath.empty() ? AppPath() : m_sServedPath; }

void ModScheduler::MoveAppPath(const std::wstring& sAppPath)
{
    std::wstring sServed = ServedPath();
    StoreAppPath(sAppPath);
    if (!sServed.empty() && !EqualIgnoringCase(sServed, AppPath()))
        m_sServedPath = std::move(sServed);
}

void ModScheduler::SettleAppPath()
{
    m_sServedPath.clear();
    LoadSettings();
}

// ---- debug log

void ModScheduler::WriteDebugLog(std::wstring_view sMessage) noexcept
{
    std::size_t before = m_sLines.size();
    try
    {
        const DateTime dtNow = ForTruncation(m_cPorts.cClock.Now());
        const std::int64_t second = WholeSeconds(dtNow);
        if (second != m_stampSecond || m_sStamp.empty())
        {
            std::wstring sStamp = TimeStamp(dtNow);
            // Each line is written to the file of its own day.
            if (sStamp.compare(0, dateLength, m_sStamp, 0, dateLength) != 0)
                FlushDebugLog();
            before = m_sLines.size();
            m_sStamp = std::move(sStamp);
            m_stampSecond = second;
        }
        if (m_sLines.empty())
            m_dtFirstLine = dtNow;
        m_sLines += m_sStamp;
        m_sLines += sMessage.substr(0, longestMessage);
        if (sMessage.size() > longestMessage)
            m_sLines += L"...";
        m_sLines += sCrLf;
    }
    catch (...)
    {
        m_sLines.resize(std::min(before, m_sLines.size()));
        return; // logging must not fail the operation it reports
    }
    if (m_lScopes == 0)
        FlushDebugLog();
}

void ModScheduler::FlushDebugLog() noexcept
{
    if (m_sLines.empty())
        return;
    try
    {
        AppendToLog(std::exchange(m_sLines, {}), m_dtFirstLine);
    }
    catch (...)
    {
        // On purpose: a missing log folder, a full disk or a locked file never reaches the caller.
    }
}

void ModScheduler::AppendToLog(const std::wstring& sLines, DateTime dtFirst)
{
    const std::wstring sAppPath = AppPath();
    if (sAppPath.empty())
        return; // without a host's folder there is no log
    const std::wstring sFolder = sAppPath + sLogFolder;
    // Tomorrow's log file from last month is deleted today, so that about one month of logs is kept.
    const std::wstring sTomorrow = sFolder + LogFileName(FieldsOf(dtFirst + 1).lDay);
    if (m_cPorts.cFiles.FileExists(sTomorrow))
    {
        try
        {
            m_cPorts.cFiles.Delete(sTomorrow);
        }
        catch (const RuntimeError&)
        {
            // Somebody has it open; today's lines matter more.
        }
    }
    const std::wstring sToday = sFolder + LogFileName(FieldsOf(dtFirst).lDay);
    std::wstring sCreation;
    if (!m_cPorts.cFiles.FileExists(sToday))
        sCreation = TimeStamp(dtFirst) + sProgramTitle + L" debugging log created." + sCrLf;
    m_cPorts.cFiles.Append(sToday,
                           m_cPorts.cCodePage.Encode(sCreation.empty() ? sLines : sCreation + sLines));
}

ModScheduler::LogScope::LogScope(ModScheduler& cMod) noexcept : m_cMod(cMod) { ++m_cMod.m_lScopes; }

ModScheduler::LogScope::~LogScope()
{
    if (--m_cMod.m_lScopes == 0)
        m_cMod.FlushDebugLog();
}

ModScheduler::OthersRun::OthersRun(ModScheduler& cMod) noexcept
    : m_cMod(cMod), m_lScopes(std::exchange(cMod.m_lScopes, 0)), m_lOnAir(std::exchange(cMod.m_lOnAir, 0))
{
    cMod.FlushDebugLog();
}

ModScheduler::OthersRun::~OthersRun()
{
    m_cMod.m_lScopes = m_lScopes;
    m_cMod.m_lOnAir = m_lOnAir;
}

// ---- errors, boxes, yielding

void ModScheduler::DISPLAYERROR(std::wstring_view sProcedure, bool bShow, const RuntimeError& cError) noexcept
{
    try
    {
        const std::wstring sNumber = DecimalText(cError.Number());
        const std::wstring sTitle(sProcedure);
        WriteDebugLog(L"DISPLAYERROR, " + sTitle + L" " + sNumber + L" " + cError.Description());
        if (bShow)
            ShowHandled(sTitle, cError.Description(), cError.Number());
    }
    catch (...)
    {
        // Reporting an error must not raise another one.
    }
}

void ModScheduler::ShowHandled(const std::wstring& sTitle, const std::wstring& sText, std::int32_t lNumber)
{
    Box(BoxIcon::Information, BoxButtons::Ok, sTitle,
        std::wstring(L"Handled Error!") + sCrLf + sText + sCrLf + DecimalText(lNumber));
}

void ModScheduler::ShowLater(std::wstring_view sProcedure, const RuntimeError& cError) noexcept
{
    DISPLAYERROR(sProcedure, m_lOnAir == 0, cError);
    if (m_lOnAir == 0)
        return;
    try
    {
        if (m_cWaiting)
            ++m_cWaiting->more;
        else
            m_cWaiting.emplace(Waiting{std::wstring(sProcedure), cError, 0});
    }
    catch (...)
    {
        // The error is in the log.
    }
}

void ModScheduler::ShowWaiting() noexcept
{
    const std::optional<Waiting> cWaiting = std::exchange(m_cWaiting, std::nullopt);
    if (!cWaiting)
        return;
    try
    {
        std::wstring sText = cWaiting->cFirst.Description();
        if (cWaiting->more != 0)
            sText += L" (and " + CountText(cWaiting->more) + L" more, see the debug log)";
        ShowHandled(cWaiting->sTitle, sText, cWaiting->cFirst.Number());
    }
    catch (...)
    {
        // Reporting an error must not raise another one.
    }
}

void ModScheduler::ShowCriticalError(std::wstring_view sTitle, const RuntimeError& cError) noexcept
{
    try
    {
        const std::wstring sText = DecimalText(cError.Number()) + L" " + cError.Description();
        WriteDebugLog(sText);
        Box(BoxIcon::Critical, BoxButtons::Ok, std::wstring(sTitle), sText);
    }
    catch (...)
    {
        // Reporting an error must not raise another one.
    }
}

void ModScheduler::LogError(std::wstring_view sWhere, const RuntimeError& cError) noexcept
{
    DISPLAYERROR(sWhere, false, cError);
}

BoxAnswer ModScheduler::Box(BoxIcon eIcon, BoxButtons eButtons, const std::wstring& sTitle,
                            const std::wstring& sText)
{
    const OthersRun cOthers(*this);
    return m_cPorts.cMessages.Box(eIcon, eButtons, sTitle, sText);
}

std::optional<std::wstring> ModScheduler::Input(const std::wstring& sTitle, const std::wstring& sPrompt,
                                                const std::wstring& sText)
{
    const OthersRun cOthers(*this);
    return m_cPorts.cMessages.Input(sTitle, sPrompt, sText);
}

void ModScheduler::Pump()
{
    const OthersRun cOthers(*this);
    m_cPorts.cHostLoop.PumpMessages();
}

void ModScheduler::Sleep(std::uint32_t lMilliseconds) { m_cPorts.cHostLoop.Sleep(lMilliseconds); }

// ---- settings

void ModScheduler::SetSetting(std::int32_t Settings::*lSetting, std::int32_t lMins)
{
    // A file that was not read has values to keep, except the one set now.
    const bool bOtherFolder = !EqualIgnoringCase(ServedPath(), m_cSettings.sAppPath);
    if (bOtherFolder ||
        (!m_cSettings.bUnsaved && m_cSavedFiles.StateOf(SettingsPath(), this) == SavedFiles::State::NotSeen))
        LoadSettings();
    m_cSettings.*lSetting = NeverNegative(lMins);
    m_cSettings.bUnsaved = true;
    SaveSettings();
}

void ModScheduler::SetGlobalArtistSepMins(std::int32_t lMins) { SetSetting(&Settings::lArtist, lMins); }
void ModScheduler::SetGlobalTitleSepMins(std::int32_t lMins) { SetSetting(&Settings::lTitle, lMins); }
void ModScheduler::SetGlobalAlbumSepMins(std::int32_t lMins) { SetSetting(&Settings::lAlbum, lMins); }

// The file of the separations in use; the library may have moved on without loading another one.
std::wstring ModScheduler::SettingsPath() const { return m_cSettings.sAppPath + sSettingsFile; }

void ModScheduler::LoadSettings()
{
    if (m_cSettings.bUnsaved)
        WriteSettings();
    const std::wstring sAppPath = ServedPath();
    const bool bReload = !sAppPath.empty() && EqualIgnoringCase(sAppPath, m_cSettings.sAppPath);
    if (bReload && m_cSettings.bUnsaved)
        return; // the file is older than the value set
    if (!bReload)
        m_cSettings = {sAppPath};
    if (sAppPath.empty())
        return;
    try
    {
        ReadSettings();
    }
    catch (...)
    {
        LogError(L"LoadSettings", CurrentError());
    }
}

void ModScheduler::ReadSettings()
{
    const std::optional<std::string> bytes = m_cSavedFiles.Read(SettingsPath(), this);
    Settings cRead{m_cSettings.sAppPath};
    if (bytes && !bytes->empty())
    {
        cRead.bNothingRead = true;
        const std::wstring sText = m_cPorts.cCodePage.Decode(*bytes);
        const std::vector<std::wstring> colLines =
            sText.find(sCrLf) == std::wstring::npos ? std::vector<std::wstring>() : Split(sText, sCrLf);
        std::size_t line = 0;
        for (std::int32_t* lSetting : {&cRead.lArtist, &cRead.lTitle, &cRead.lAlbum})
        {
            const std::optional<std::int32_t> lMins = MinutesOf(colLines, line++);
            if (!lMins)
                m_cSavedFiles.NotUnderstood(SettingsPath(), this);
            cRead.bNothingRead = cRead.bNothingRead && !lMins;
            *lSetting = lMins.value_or(lDefaultSepMins);
        }
    }
    m_cSettings = std::move(cRead);
}

bool ModScheduler::SaveSettings() noexcept
{
    try
    {
        if (!EqualIgnoringCase(ServedPath(), m_cSettings.sAppPath))
            return false;
    }
    catch (...)
    {
        LogError(L"SaveSettings", CurrentError());
        return false;
    }
    return WriteSettings();
}

bool ModScheduler::WriteSettings() noexcept
{
    try
    {
        if (m_cSettings.sAppPath.empty())
            return false;
        if (!m_cSettings.bUnsaved && m_cSettings.bNothingRead)
            return false; // these are only defaults
        std::wstring sText;
        for (const std::int32_t lMins : {m_cSettings.lArtist, m_cSettings.lTitle, m_cSettings.lAlbum})
            sText += DecimalText(lMins) + sCrLf;
        FlushDebugLog();
        using Unseen = SavedFiles::Unseen;
        const bool bWritten =
            m_cSavedFiles.Replace(SettingsPath(), m_cSavedFiles.Begin(), m_cPorts.cCodePage.Encode(sText),
                                  this, m_cSettings.bUnsaved ? Unseen::KeepAside : Unseen::LeaveAlone) ==
            SavedFiles::Result::Written;
        m_cSettings.bUnsaved = m_cSettings.bUnsaved && !bWritten;
        return bWritten;
    }
    catch (...)
    {
        LogError(L"SaveSettings", CurrentError());
        return false;
    }
}

namespace
{

// Created while there is memory.
const RuntimeError outOfMemory(7);

RuntimeError Translated()
{
    try
    {
        throw;
    }
    catch (const RuntimeError& cError)
    {
        return cError;
    }
    catch (const std::bad_alloc&)
    {
        return outOfMemory;
    }
    catch (const std::exception& cError)
    {
        const std::string_view sWhat = cError.what();
        return RuntimeError(error::Internal, L"Internal error: " + std::wstring(sWhat.begin(), sWhat.end()));
    }
    catch (...)
    {
        return RuntimeError(error::Internal);
    }
}

} // namespace

RuntimeError CurrentError() noexcept
{
    try
    {
        return Translated();
    }
    catch (...)
    {
        return outOfMemory; // no memory for another error's text
    }
}

} // namespace ravlo
