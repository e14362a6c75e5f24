// SPDX-License-Identifier: MIT
#include "scheduler/SettingChanges.h"

#include "base/Text.h"

#include <algorithm>
#include <optional>

namespace ravlo
{

namespace
{

using SetValue = ChangeRecord::Value;
using SetItem = ChangeRecord::Setting;
using SetItems = ChangeRecord::Settings;

StationOption OptionOf(SetValue eValue) noexcept
{
    return eValue == SetValue::FairRotation ? StationOption::FairRotation : StationOption::FeaturedArtists;
}

std::wstring ValueName(SetValue eValue)
{
    switch (eValue)
    {
    case SetValue::ArtistSeparation:
        return L"artist separation";
    case SetValue::TitleSeparation:
        return L"title separation";
    case SetValue::AlbumSeparation:
        return L"album separation";
    case SetValue::IgnoreRules:
        return L"ignoring of rules";
    case SetValue::FairRotation:
        return L"fair rotation";
    case SetValue::FeaturedArtists:
        return L"counting of featured artists";
    }
    return {};
}

std::wstring OwnerOf(const ChangeRecord::Category& category)
{
    return category.lLevel == 0 ? category.sCatName : category.sCatName + L" " + DecimalText(category.lLevel);
}

// Such as "artist separation of Pop 1", "separations of Pop 1", "fair rotation" and "end of fair rotation".
std::wstring StepTextOf(const SetItems& settings)
{
    const SetItem& first = settings.colItems.front();
    if (settings.category.sCatName.empty())
        return (first.lAfter != 0 ? L"" : L"end of ") + ValueName(first.eValue);
    return (settings.colItems.size() == 1 ? ValueName(first.eValue) : std::wstring(L"separations")) +
           L" of " + OwnerOf(settings.category);
}

// ---- values of rules

std::int32_t RuleIn(const clsCatRules::Edit& rules, SetValue eValue)
{
    switch (eValue)
    {
    case SetValue::ArtistSeparation:
        return *rules.lArtist;
    case SetValue::TitleSeparation:
        return *rules.lTitle;
    case SetValue::AlbumSeparation:
        return *rules.lAlbum;
    default:
        return *rules.bIgnore ? 1 : 0;
    }
}

void PutRule(clsCatRules::Edit& edit, SetValue eValue, std::int32_t lValue)
{
    switch (eValue)
    {
    case SetValue::ArtistSeparation:
        edit.lArtist = lValue;
        break;
    case SetValue::TitleSeparation:
        edit.lTitle = lValue;
        break;
    case SetValue::AlbumSeparation:
        edit.lAlbum = lValue;
        break;
    default:
        edit.bIgnore = lValue != 0;
    }
}

// ---- setting back

class SettingSetter
{
public:
    SettingSetter(SchedulerState& cState, RotationFiles& cFiles, const SetItems& settings)
        : m_cFiles(cFiles), m_settings(settings), m_cCat(CatOf(cState, settings.category))
    {
    }

    bool HasTarget() const noexcept { return m_settings.category.sCatName.empty() || m_cCat; }
    // Sets those back that have the recorded value, and returns the inverse. The others are passed over.
    SetItems Run(PassedOver& passedOver)
    {
        SetItems inverse{m_settings.category, {}};
        for (const SetItem& item : m_settings.colItems)
            if (Present(item.eValue) == item.lAfter)
                inverse.colItems.push_back({item.eValue, item.lAfter, item.lBefore});
            else
                passedOver.colSettings.push_back(L"the " + ValueName(item.eValue));
        if (!inverse.colItems.empty())
            Save(inverse);
        return inverse;
    }

private:
    static std::shared_ptr<clsCat> CatOf(const SchedulerState& cState, const ChangeRecord::Category& category)
    {
        const std::shared_ptr<clsCat> cMainCat = cState.MainCat(category.sCatName);
        return cMainCat && category.lLevel != 0 ? cMainCat->SubCat(category.lLevel) : cMainCat;
    }
    std::int32_t Present(SetValue eValue)
    {
        if (m_cCat && m_cCat->Rules()->Unread())
            throw RuntimeError(error::PathFileAccess);
        if (m_cCat)
            return RuleIn(m_cCat->Rules()->Stored(), eValue);
        return m_cFiles.Saved(OptionOf(eValue)) ? 1 : 0;
    }
    void Save(const SetItems& inverse)
    {
        if (!m_cCat)
            return m_cFiles.Set(OptionOf(inverse.colItems.front().eValue),
                                inverse.colItems.front().lAfter != 0);
        clsCatRules::Edit edit;
        for (const SetItem& item : inverse.colItems)
            PutRule(edit, item.eValue, item.lAfter);
        m_cCat->Rules()->Change(edit);
    }

    RotationFiles& m_cFiles;
    const SetItems& m_settings;
    const std::shared_ptr<clsCat> m_cCat; // null for the station, and for a category that is gone
};

void NoteStep(SchedulerState& cState, SetItems settings)
{
    if (!settings.colItems.empty())
    {
        ChangeRecord record;
        record.settings = std::move(settings);
        cState.cUndo.Add(StepTextOf(record.settings), record);
    }
    cState.cUndo.Save();
}

} // namespace

void NoteRules(SchedulerState& cState, const clsCat& cCat, const clsCatRules::Edit& before,
               const clsCatRules::Edit& after)
{
    SetItems settings{{cCat.CatName(), cCat.CatLevel()}, {}};
    for (const SetValue eValue : {SetValue::ArtistSeparation, SetValue::TitleSeparation,
                                  SetValue::AlbumSeparation, SetValue::IgnoreRules})
        if (RuleIn(before, eValue) != RuleIn(after, eValue))
            settings.colItems.push_back({eValue, RuleIn(before, eValue), RuleIn(after, eValue)});
    NoteStep(cState, std::move(settings));
}

void SetOption(SchedulerState& cState, RotationFiles& cFiles, StationOption eOption, bool bOn)
{
    const bool bBefore = cFiles.Saved(eOption);
    cFiles.Set(eOption, bOn);
    const SetValue eValue =
        eOption == StationOption::FairRotation ? SetValue::FairRotation : SetValue::FeaturedArtists;
    SetItems settings;
    if (bBefore != bOn)
        settings.colItems.push_back({eValue, bBefore ? 1 : 0, bOn ? 1 : 0});
    NoteStep(cState, std::move(settings));
}

PassedOver ReverseSettings(SchedulerState& cState, RotationFiles& cFiles, const SetItems& settings,
                           Failing eFailing, const std::function<void(const ChangeRecord&)>& reversed)
{
    PassedOver passedOver;
    ChangeRecord inverse;
    SettingSetter cSetter(cState, cFiles, settings);
    if (!cSetter.HasTarget())
        passedOver.colGoneCats.push_back(OwnerOf(settings.category));
    else
        try
        {
            inverse.settings = cSetter.Run(passedOver);
        }
        catch (...)
        {
            if (eFailing == Failing::Prevents)
                throw ReversalFailure(CurrentError(), L"passes it over");
            passedOver.bFailed = true;
        }
    reversed(inverse);
    cState.RetrySaves();
    return passedOver;
}

} // namespace ravlo
