// SPDX-License-Identifier: MIT
#include "model/clsCatRules.h"

#include "base/Text.h"
#include "model/LittleEndian.h"
#include "modscheduler/FileNames.h"

#include <cstdlib>
#include <limits>

namespace ravlo
{

namespace
{

constexpr std::size_t atArtist = 0;
constexpr std::size_t atTitle = 4;
constexpr std::size_t atIgnore = 8;
constexpr std::size_t atCatID = 10;
constexpr std::size_t atAlbum = 65;
static_assert(atCatID + clsCatRules::catIDWidth == atAlbum);
static_assert(atAlbum + 4 == clsCatRules::recordSize);

std::int32_t Absolute(std::int32_t lValue)
{
    if (lValue == std::numeric_limits<std::int32_t>::min())
        throw RuntimeError(error::Overflow);
    return std::abs(lValue);
}

} // namespace

clsCatRules::clsCatRules(ModScheduler& cMod) : m_cMod(cMod) {}

clsCatRules::~clsCatRules()
{
    try
    {
        const std::wstring sPath = PathOf(CatID());
        if (m_eSource != Source::Unread && Folder() == m_cMod.ServedPath() && sPath == m_sSeenPath &&
            m_cMod.Saved().NewestOf(sPath) == m_lSeen)
            Save(Report::LogOnly);
    }
    catch (...)
    {
        // A release must not fail; Save has logged the error.
    }
    m_cMod.Saved().Forget(this);
}

std::shared_ptr<const clsCatRules> clsCatRules::Read(ModScheduler& cMod, const std::wstring& sCatID)
{
    const auto cRules = std::make_shared<clsCatRules>(cMod); // without a CatID, to which no file is bound
    cRules->m_lArtist = cRules->m_lTitle = cRules->m_lAlbum = lNotSet;
    try
    {
        const std::optional<std::string> record =
            !cRules->Folder().empty() && CanBeFileName(sCatID)
                ? cMod.Saved().Peek(cRules->PathOf(sCatID), Patience::None)
                : std::nullopt;
        if (record && record->size() >= recordSize)
            cRules->TakeRecord(*record);
    }
    catch (...)
    {
        // The rules object that is bound to the file reports what is wrong with it.
        cRules->m_eSource = Source::Unread;
    }
    return cRules;
}

void clsCatRules::SetAlbumSepMins(std::int32_t lMins)
{
    Store({.lArtist = {}, .lTitle = {}, .lAlbum = Absolute(lMins), .bIgnore = {}});
}

std::wstring clsCatRules::CatID() const { return Trim(m_sCatID); }

void clsCatRules::SetCatID(const std::wstring& sCatID)
{
    if (sCatID.empty())
        return;
    m_sAppPath = m_cMod.ServedPath();
    GetRules(sCatID);
    m_sCatID = sCatID.substr(0, catIDWidth);
    m_sSeenPath = PathOf(CatID());
    m_lSeen = m_cMod.Saved().NewestOf(m_sSeenPath);
    if (sCatID.size() > catIDWidth)
        m_cMod.WriteDebugLog(L"Warning: the rules of " + sCatID + L" are saved under the first " +
                             DecimalText(catIDWidth) + L" characters of that name.");
}

std::int32_t clsCatRules::ArtistSepMins() const noexcept
{
    return m_lArtist < 0 ? m_cMod.GlobalArtistSepMins() : m_lArtist;
}

void clsCatRules::SetArtistSepMins(std::int32_t lMins)
{
    if (lMins < 0)
        return;
    Store({.lArtist = lMins, .lTitle = {}, .lAlbum = {}, .bIgnore = {}});
}

std::int32_t clsCatRules::TitleSepMins() const noexcept
{
    return m_lTitle < 0 ? m_cMod.GlobalTitleSepMins() : m_lTitle;
}

void clsCatRules::SetTitleSepMins(std::int32_t lMins)
{
    if (lMins < 0)
        return;
    Store({.lArtist = {}, .lTitle = lMins, .lAlbum = {}, .bIgnore = {}});
}

void clsCatRules::SetIgnoreRules(bool bIgnore)
{
    Store({.lArtist = {}, .lTitle = {}, .lAlbum = {}, .bIgnore = bIgnore});
}

bool clsCatRules::Apply(const Edit& edit) { return Store(edit); }

clsCatRules::Edit clsCatRules::Change(const Edit& edit)
{
    if (!IsBound())
        throw RuntimeError(error::ObjectNotSet);
    RequireFileName(CatID());
    ReadAgainUnlessKnown(); // first, so that the values to go back to are the file's
    if (Unread())
        throw RuntimeError(error::PathFileAccess);
    const Edit before = Stored();
    const Edit set = m_cSet;
    try
    {
        Set(edit);
        if (!Write(SavedFiles::Unseen::KeepAside))
            throw RuntimeError(error::PathFileAccess);
        return before;
    }
    catch (...)
    {
        Take(before);
        m_cSet = set;
        throw;
    }
}

clsCatRules::Edit clsCatRules::Stored() const
{
    return {.lArtist = m_lArtist, .lTitle = m_lTitle, .lAlbum = m_lAlbum, .bIgnore = m_bIgnore};
}

bool clsCatRules::Store(const Edit& edit)
{
    Set(edit);
    return SaveRules();
}

void clsCatRules::Set(const Edit& edit)
{
    Take(edit);
    m_cSet.lArtist = edit.lArtist ? edit.lArtist : m_cSet.lArtist;
    m_cSet.lTitle = edit.lTitle ? edit.lTitle : m_cSet.lTitle;
    m_cSet.lAlbum = edit.lAlbum ? edit.lAlbum : m_cSet.lAlbum;
    m_cSet.bIgnore = edit.bIgnore ? edit.bIgnore : m_cSet.bIgnore;
}

void clsCatRules::Take(const Edit& edit)
{
    m_lArtist = edit.lArtist.value_or(m_lArtist);
    m_lTitle = edit.lTitle.value_or(m_lTitle);
    m_lAlbum = edit.lAlbum.value_or(m_lAlbum);
    m_bIgnore = edit.bIgnore.value_or(m_bIgnore);
}

bool clsCatRules::SaveRules() { return Save(Report::Show); }

bool clsCatRules::Save(Report eReport)
{
    if (!IsBound())
        return false;
    try
    {
        RequireFileName(CatID());
        if (eReport == Report::LogOnly)
            return Write(SavedFiles::Unseen::LeaveAlone);
        ReadAgainUnlessKnown(); // when that fails, the save keeps the file aside
        return Write(SavedFiles::Unseen::KeepAside);
    }
    catch (...)
    {
        m_cMod.DISPLAYERROR(L"SaveRules", eReport == Report::Show, CurrentError());
        return false;
    }
}

bool clsCatRules::IsBound() const { return !CatID().empty() && !Folder().empty(); }

// Returns false when the file was left alone. Precondition: IsBound, and the name can be a file's.
bool clsCatRules::Write(SavedFiles::Unseen eUnseen)
{
    const std::wstring sPath = PathOf(CatID());
    m_cMod.FlushDebugLog();
    SavedFiles& cSaved = m_cMod.Saved();
    const SavedFiles::Stamp stamp = cSaved.Begin();
    if (cSaved.Replace(sPath, stamp, Encode(), this, eUnseen) != SavedFiles::Result::Written)
        return false;
    m_sSeenPath = sPath;
    m_lSeen = stamp;
    m_eSource = Source::File;
    return true;
}

void clsCatRules::ReadAgainUnlessKnown() noexcept
{
    if (m_eSource != Source::File && PathOf(CatID()) == m_sReadPath)
        ReadAgain();
}

// Reads the file after a first failure, or because it was created since. Values set here win over those in
// the file.
void clsCatRules::ReadAgain() noexcept
{
    m_lReadAt = m_cMod.Ports().cClock.TickCount();
    try
    {
        const std::optional<std::string> record = ReadRecord(m_sReadPath);
        m_eSource = record ? Source::File : Source::NoFile;
        if (!record)
            return;
        TakeRecord(*record);
        Take(m_cSet);
        if (m_sReadPath == m_sSeenPath)
            m_lSeen = m_cMod.Saved().NewestOf(m_sReadPath);
    }
    catch (...)
    {
        m_cMod.LogError(L"GetRules", CurrentError());
    }
}

void clsCatRules::RetryReading() noexcept
{
    constexpr std::uint32_t lRetryMs = 1000;
    if (m_eSource == Source::Unread && m_cMod.Ports().cClock.TickCount() - m_lReadAt >= lRetryMs)
        ReadAgain();
}

void clsCatRules::GetRules(const std::wstring& sName)
{
    m_lArtist = m_lTitle = m_lAlbum = lNotSet;
    m_eSource = Source::NoFile;
    m_sReadPath = PathOf(sName);
    m_cSet = {};
    // A name that cannot be a file name has no file; only saving under it is an error.
    if (Folder().empty() || !CanBeFileName(sName))
        return;
    try
    {
        if (const std::optional<std::string> record = ReadRecord(m_sReadPath))
        {
            TakeRecord(*record);
            m_eSource = Source::File;
        }
    }
    catch (...)
    {
        const bool bDamaged = m_cMod.Saved().StateOf(m_sReadPath, this) == SavedFiles::State::NotUnderstood;
        m_eSource = bDamaged ? Source::File : Source::Unread;
        m_lReadAt = m_cMod.Ports().cClock.TickCount();
        m_cMod.ShowLater(L"GetRules", CurrentError());
    }
}

std::optional<std::string> clsCatRules::ReadRecord(const std::wstring& sPath)
{
    std::optional<std::string> bytes =
        m_cMod.Saved().Read(sPath, this, m_cMod.IsOnAir() ? Patience::None : Patience::UpToASecond);
    if (bytes && bytes->size() < recordSize)
    {
        m_cMod.Saved().NotUnderstood(sPath, this);
        throw RuntimeError(error::InputPastEnd);
    }
    return bytes;
}

void clsCatRules::TakeRecord(std::string_view record)
{
    const auto SetOrNot = [](std::int32_t lMins) { return lMins < 0 ? lNotSet : lMins; };
    m_lArtist = SetOrNot(GetLong(record, atArtist));
    m_lTitle = SetOrNot(GetLong(record, atTitle));
    m_bIgnore = GetInteger(record, atIgnore) != 0;
    m_lAlbum = SetOrNot(GetLong(record, atAlbum));
}

// A tree's rules stay in its folder, even after the library has moved to another one.
std::wstring clsCatRules::Folder() const { return m_sAppPath.empty() ? m_cMod.ServedPath() : m_sAppPath; }

std::wstring clsCatRules::PathOf(const std::wstring& sFolder, const std::wstring& sName)
{
    return sFolder + L"Scheduler\\Rules\\" + sName + L".rls";
}

std::wstring clsCatRules::PathOf(const std::wstring& sName) const { return PathOf(Folder(), sName); }

// ---- another name

void clsCatRules::Rebind(const std::wstring& sCatID)
{
    m_sCatID = sCatID.substr(0, catIDWidth);
    m_sReadPath = PathOf(sCatID);
    m_sSeenPath = PathOf(CatID());
    m_lSeen = m_cMod.Saved().NewestOf(m_sSeenPath);
}

bool clsCatRules::CopyFile(ModScheduler& cMod, const std::wstring& sFromID, const std::wstring& sToID)
{
    SavedFiles& cSaved = cMod.Saved();
    std::optional<std::string> bytes = cSaved.Peek(PathOf(cMod.ServedPath(), sFromID));
    if (!bytes)
        return false;
    if (bytes->size() >= recordSize)
        PutText(*bytes, atCatID, catIDWidth, cMod.Ports().cCodePage.Encode(sToID.substr(0, catIDWidth)));
    const int lAuthor = 0; // unlike any other: what it has not read is kept aside
    cSaved.Replace(PathOf(cMod.ServedPath(), sToID), cSaved.Begin(), *bytes, &lAuthor);
    cSaved.Forget(&lAuthor);
    return true;
}

void clsCatRules::DeleteFile(ModScheduler& cMod, const std::wstring& sCatID)
{
    const int lAuthor = 0;
    cMod.Saved().Delete(PathOf(cMod.ServedPath(), sCatID), &lAuthor);
    cMod.Saved().Forget(&lAuthor);
}

std::string clsCatRules::Encode() const
{
    std::string bytes(recordSize, '\0');
    PutLong(bytes, atArtist, m_lArtist);
    PutLong(bytes, atTitle, m_lTitle);
    PutInteger(bytes, atIgnore, m_bIgnore ? -1 : 0);
    PutText(bytes, atCatID, catIDWidth, m_cMod.Ports().cCodePage.Encode(m_sCatID));
    PutLong(bytes, atAlbum, m_lAlbum);
    return bytes;
}

} // namespace ravlo
