// SPDX-License-Identifier: MIT
#include "rotation/RotationFiles.h"

#include "base/CaseFolding.h"
#include "rotation/OptionsText.h"

#include <utility>

namespace ravlo
{

namespace
{

struct OptionMember
{
    bool RotationOptions::*bOption;
    std::optional<bool> OptionOverrides::*bOverride;
};

OptionMember MemberOf(StationOption eOption) noexcept
{
    if (eOption == StationOption::FairRotation)
        return {&RotationOptions::bFairRotation, &OptionOverrides::bFairRotation};
    return {&RotationOptions::bFeaturedArtists, &OptionOverrides::bFeaturedArtists};
}

} // namespace

void RotationFiles::Serve(const std::wstring& sAppPath)
{
    if (!EqualIgnoringCase(sAppPath, m_sAppPath))
    {
        m_sAppPath = sAppPath;
        m_cOptionsFile = {m_cOptionsFile.sName};
        m_cArtistsFile = {m_cArtistsFile.sName};
        m_optionsBytes.clear();
        m_saved = m_options = {};
        m_overrides = {};
        m_cNames = {};
    }
    m_cOptionsFile.bRead = m_cArtistsFile.bRead = false; // a stamp may be too coarse to show a change
    Look(Patience::UpToASecond);
}

void RotationFiles::Refresh() noexcept
{
    constexpr std::uint32_t lMsBetweenLooks = 1000;
    if (!m_sAppPath.empty() && m_cMod.Ports().cClock.TickCount() - m_lLookedAt >= lMsBetweenLooks)
        Look(Patience::None);
}

void RotationFiles::Look(Patience ePatience) noexcept
{
    m_lLookedAt = m_cMod.Ports().cClock.TickCount();
    ReadOrLog(m_cOptionsFile, &RotationFiles::TakeOptions, ePatience);
    ReadOrLog(m_cArtistsFile, &RotationFiles::TakeArtists, ePatience);
}

void RotationFiles::ReadOrLog(File& file, Take take, Patience ePatience) noexcept
{
    try
    {
        ReadIfChanged(file, take, ePatience);
    }
    catch (...)
    {
        if (!std::exchange(file.bFailed, true))
            m_cMod.LogError(file.sName, CurrentError());
    }
}

void RotationFiles::ReadIfChanged(File& file, Take take, Patience ePatience)
{
    const bool bRead = std::exchange(file.bRead, false);
    // Taken first: what is written during the reading has another stamp.
    const std::optional<FileStamp> stamp = m_cMod.Ports().cFiles.StampOf(PathOf(file));
    if (!bRead || stamp != file.stamp)
    {
        std::optional<std::string> bytes = m_cMod.Saved().Read(PathOf(file), this, ePatience);
        file.stamp = bytes ? stamp : std::nullopt; // it may have gone since, and come back with that stamp
        (this->*take)(std::move(bytes));
    }
    file.bRead = true;
    file.bFailed = false;
}

void RotationFiles::TakeOptions(std::optional<std::string> bytes)
{
    m_optionsBytes = std::move(bytes).value_or(std::string());
    const std::optional<RotationOptions> options = OptionsIn(m_optionsBytes);
    if (!options)
    {
        m_cMod.Saved().NotUnderstood(PathOf(m_cOptionsFile), this);
        m_cMod.WriteDebugLog(L"Ignored, it is no UTF-8 text: " + PathOf(m_cOptionsFile));
        m_optionsBytes.clear();
    }
    Use(options.value_or(RotationOptions()), m_overrides);
}

void RotationFiles::TakeArtists(std::optional<std::string> bytes)
{
    std::shared_ptr<ArtistsTable> cTable;
    if (bytes)
    {
        ArtistsTable::Problems problems;
        cTable = std::make_shared<ArtistsTable>(ArtistsTable::Parse(*bytes, problems));
        for (const std::wstring& sProblem : problems)
            m_cMod.WriteDebugLog(L"Artists.csv, " + sProblem);
    }
    m_cNames = ArtistNames(m_options.bFeaturedArtists, std::move(cTable));
}

void RotationFiles::Use(const RotationOptions& saved, const OptionOverrides& overrides)
{
    const RotationOptions options = overrides.Over(saved);
    m_cNames = m_cNames.With(options.bFeaturedArtists);
    m_options = options;
    m_saved = saved;
    m_overrides = overrides;
}

void RotationFiles::Override(const OptionOverrides& overrides) { Use(m_saved, overrides); }

void RotationFiles::ReadOptionsAgain()
{
    if (m_sAppPath.empty())
        throw RuntimeError(error::ObjectNotSet);
    try
    {
        // A coarse stamp may hide a change of another program, which would be lost otherwise.
        m_cOptionsFile.bRead = false;
        ReadIfChanged(m_cOptionsFile, &RotationFiles::TakeOptions, Patience::UpToASecond);
    }
    catch (const RuntimeError&)
    {
        throw RuntimeError(error::PathFileAccess);
    }
}

bool RotationFiles::Saved(StationOption eOption)
{
    ReadOptionsAgain();
    return m_saved.*MemberOf(eOption).bOption;
}

void RotationFiles::Set(StationOption eOption, bool bOn)
{
    ReadOptionsAgain();
    const OptionMember member = MemberOf(eOption);
    RotationOptions saved = m_saved;
    saved.*member.bOption = bOn;
    if (saved != m_saved)
    {
        std::string bytes = WithOptions(m_optionsBytes, saved);
        SavedFiles& cSaved = m_cMod.Saved();
        cSaved.Replace(PathOf(m_cOptionsFile), cSaved.Begin(), bytes, this);
        m_optionsBytes = std::move(bytes); // the stamp stays the old one: the next look reads the file again
    }
    OptionOverrides overrides = m_overrides;
    (overrides.*member.bOverride).reset();
    Use(saved, overrides);
}

} // namespace ravlo
