// SPDX-License-Identifier: MIT
#include "model/clsCatRules.h"

#include "collections/Text.h"
#include "model/LittleEndian.h"
#include "scheduler/modscheduler/FileNames.h"

#include <cstdlib>
#include <limits>

namespace ravlo
{

namespace
{

constexpr std::size_t lAtArtist = 0;
constexpr std::size_t lAtTitle = 4;
constexpr std::size_t lAtIgnore = 8;
constexpr std::size_t lAtCatID = 10;
constexpr std::size_t lAtAlbum = 65;
static_assert(lAtCatID + clsCatRules::lCatIDWidth == lAtAlbum);
static_assert(lAtAlbum + 4 == clsCatRules::lRecordSize);

constexpr std::int32_t lNotSet = -1;

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
        if (!m_bUnread && sPath == m_sSeenPath && m_cMod.FileGeneration(sPath) == m_lSeenGeneration)
            Save(Report::LogOnly);
    }
    catch (...)
    {
        // A release must not fail; Save has logged what there was to say.
    }
}

void clsCatRules::SetAlbumSepMins(std::int32_t lMins)
{
    m_lAlbum = Absolute(lMins);
    SaveRules();
}

std::wstring clsCatRules::CatID() const { return Trim(m_sCatID); }

void clsCatRules::SetCatID(const std::wstring& sCatID)
{
    if (sCatID.empty())
        return;
    GetRules(sCatID);
    m_sCatID = sCatID.substr(0, lCatIDWidth);
    m_sSeenPath = PathOf(CatID());
    m_lSeenGeneration = m_cMod.FileGeneration(m_sSeenPath);
    if (sCatID.size() > lCatIDWidth)
        m_cMod.WriteDebugLog(L"Warning: the rules of " + sCatID + L" are saved under the first " +
                             DecimalText(lCatIDWidth) + L" characters of that name.");
}

std::int32_t clsCatRules::ArtistSepMins() const noexcept
{
    return m_lArtist < 0 ? m_cMod.GlobalArtistSepMins() : m_lArtist;
}

void clsCatRules::SetArtistSepMins(std::int32_t lMins)
{
    if (lMins < 0)
        return;
    m_lArtist = lMins;
    SaveRules();
}

std::int32_t clsCatRules::TitleSepMins() const noexcept
{
    return m_lTitle < 0 ? m_cMod.GlobalTitleSepMins() : m_lTitle;
}

void clsCatRules::SetTitleSepMins(std::int32_t lMins)
{
    if (lMins < 0)
        return;
    m_lTitle = lMins;
    SaveRules();
}

void clsCatRules::SetIgnoreRules(bool bIgnore)
{
    m_bIgnore = bIgnore;
    SaveRules();
}

bool clsCatRules::Apply(const Edit& edit)
{
    m_lArtist = edit.lArtist.value_or(m_lArtist);
    m_lTitle = edit.lTitle.value_or(m_lTitle);
    m_lAlbum = edit.lAlbum.value_or(m_lAlbum);
    m_bIgnore = edit.bIgnore.value_or(m_bIgnore);
    return SaveRules();
}

bool clsCatRules::SaveRules() { return Save(Report::Show); }

bool clsCatRules::Save(Report eReport)
{
    const std::wstring sName = CatID();
    if (sName.empty() || m_cMod.AppPath().empty())
        return false;
    try
    {
        RequireFileName(sName);
        m_cMod.FlushDebugLog();
        const std::wstring sPath = PathOf(sName);
        ReplaceFile(m_cMod.Outside().cFiles, sPath, Encode());
        m_sSeenPath = sPath;
        m_lSeenGeneration = m_cMod.NoteFileWritten(sPath);
        m_bUnread = false;
        return true;
    }
    catch (...)
    {
        m_cMod.DISPLAYERROR(L"SaveRules", eReport == Report::Show, CurrentError());
        return false;
    }
}

void clsCatRules::GetRules(const std::wstring& sName)
{
    m_lArtist = m_lTitle = m_lAlbum = lNotSet;
    m_bUnread = false;
    // A name that can be no file's name has no file; only saving under it is an error.
    if (m_cMod.AppPath().empty() || !CanBeFileName(sName))
        return;
    const std::wstring sPath = PathOf(sName);
    if (!m_cMod.Outside().cFiles.FileExists(sPath))
        return;
    try
    {
        ReadRecord(sPath);
    }
    catch (...)
    {
        m_bUnread = true;
        m_cMod.DISPLAYERROR(L"GetRules", true, CurrentError());
    }
}

void clsCatRules::ReadRecord(const std::wstring& sPath)
{
    const std::string bytes = m_cMod.Outside().cFiles.ReadAll(sPath);
    if (bytes.size() < lRecordSize)
        throw RuntimeError(error::InputPastEnd);
    const auto SetOrNot = [](std::int32_t lMins) { return lMins < 0 ? lNotSet : lMins; };
    m_lArtist = SetOrNot(GetLong(bytes, lAtArtist));
    m_lTitle = SetOrNot(GetLong(bytes, lAtTitle));
    m_bIgnore = GetInteger(bytes, lAtIgnore) != 0;
    m_sCatID = m_cMod.Outside().cCodePage.Decode(std::string_view(bytes).substr(lAtCatID, lCatIDWidth));
    m_lAlbum = SetOrNot(GetLong(bytes, lAtAlbum));
}

std::wstring clsCatRules::PathOf(const std::wstring& sName) const
{
    return m_cMod.AppPath() + L"Scheduler\\Rules\\" + sName + L".rls";
}

std::string clsCatRules::Encode() const
{
    std::string bytes(lRecordSize, '\0');
    PutLong(bytes, lAtArtist, m_lArtist);
    PutLong(bytes, lAtTitle, m_lTitle);
    PutInteger(bytes, lAtIgnore, m_bIgnore ? -1 : 0);
    PutText(bytes, lAtCatID, lCatIDWidth, m_cMod.Outside().cCodePage.Encode(m_sCatID));
    PutLong(bytes, lAtAlbum, m_lAlbum);
    return bytes;
}

} // namespace ravlo
