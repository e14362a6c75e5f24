// SPDX-License-Identifier: MIT
// Picks, plays and the play history.

#include "scheduler/SchedManParts.h"
#include "scheduler/SettingChanges.h"

#include <utility>

namespace ravlo
{

std::shared_ptr<Cut> clsSchedMan::ArtistHistoryCut(const std::wstring& sArtist) const
{
    return m_cParts->cPlayHistory.ArtistHistoryCut(TextKey(sArtist));
}

std::shared_ptr<Cut> clsSchedMan::AlbumHistoryCut(const std::wstring& sAlbum) const
{
    return m_cParts->cPlayHistory.AlbumHistoryCut(TextKey(sAlbum));
}

std::shared_ptr<Cut> clsSchedMan::TitleHistoryCut(const std::wstring& sTitle) const
{
    return m_cParts->cPlayHistory.TitleHistoryCut(TextKey(sTitle));
}

void clsSchedMan::UpdateArtistTitleHistory(const std::shared_ptr<Cut>& cCut)
{
    Parts& my = *m_cParts;
    const Call cCall(*this);
    Trap(my.cMod, Parts::sUpdateHistoryWhere, [&] {
        const std::shared_ptr<ravlo::DataBase> cDataBase =
            my.Serving(); // a look-up may let the host populate
        if (!cCut || !cDataBase)
            return;
        my.RefreshRotation();
        my.NotePlay(*cCut);
        my.cPlayHistory.Record(*cCut, *cDataBase);
    });
}

const PlayHistory& clsSchedMan::History() const noexcept { return m_cParts->cPlayHistory; }

std::size_t clsSchedMan::PendingPlayTimes() const noexcept { return m_cParts->cPlayHistory.PendingTimes(); }

RotationAnswer clsSchedMan::NextCutFromRotation(RotationRequest request, bool bSave)
{
    Parts& my = *m_cParts;
    const Call cCall(*this);
    const ModScheduler::OnAir cOnAir(my.cMod);
    const std::shared_ptr<CatCollection> colMainCats = my.colMainCats;
    request.bRotatesAllowed = my.bRotatesAllowed;
    RotationAnswer answer = my.cPicks.NextCut(colMainCats.get(), request, my.Context());
    // The pick has pumped messages: a category that was deleted or reloaded has no order to save.
    if (answer.bMovedCuts && my.Contains(answer.cMainCat))
    {
        const std::shared_ptr<CatCollection> colPresent = my.colMainCats;
        if (bSave)
            my.cHistoryFiles.SaveAfterPick(answer.cMainCat, *colPresent);
        else
            my.cHistoryFiles.NoteUnsaved(*answer.cMainCat);
    }
    my.cUndo.Save();
    return answer;
}

bool clsSchedMan::RotatesAllowed() const noexcept { return m_cParts->bRotatesAllowed; }
void clsSchedMan::SetRotatesAllowed(bool bAllowed) noexcept { m_cParts->bRotatesAllowed = bAllowed; }

Explanation clsSchedMan::Explain(const std::wstring& strSubCatKey, bool bMustBeOpener,
                                 const std::shared_ptr<Cut>& cPrevSchedCut)
{
    const Call cCall(*this);
    const std::shared_ptr<clsCat> cSubCat = RequireLevel(strSubCatKey);
    SelectionContext context = m_cParts->Context();
    context.rules = [rules = RulesOf(*cSubCat->PresentRules())](clsCat&) { return rules; };
    return ExplainNext(cSubCat, bMustBeOpener, cPrevSchedCut, std::move(context));
}

std::shared_ptr<const Explanation> clsSchedMan::LastExplanation(const std::wstring& strSubCatKey) const
{
    return m_cParts->cPicks.LastExplanation(RequireLevel(strSubCatKey));
}

std::shared_ptr<clsCat> clsSchedMan::RequireLevel(const std::wstring& strSubCatKey) const
{
    if (!m_cParts->colMainCats)
        throw RuntimeError(error::ObjectNotSet);
    std::shared_ptr<clsCat> cSubCat = LevelByKey(m_cParts->colMainCats.get(), strSubCatKey);
    if (!cSubCat)
        throw RuntimeError(error::InvalidProcedureCall);
    return cSubCat;
}

// ---- separations, options and names

void clsSchedMan::ChangeRules(const std::shared_ptr<clsCat>& cCat, const clsCatRules::Edit& edit)
{
    const Call cCall(*this);
    const std::shared_ptr<clsCatRules> cRules = cCat->Rules();
    const clsCatRules::Edit before = cRules->Change(edit);
    NoteRules(*m_cParts, *cCat, before, cRules->Stored());
}

bool clsSchedMan::ApplyRules(const std::shared_ptr<clsCat>& cCat, const clsCatRules::Edit& edit)
{
    const Call cCall(*this);
    const std::shared_ptr<clsCatRules> cRules = cCat->Rules();
    const bool bKnown = !cRules->Unread();
    const clsCatRules::Edit before = cRules->Stored();
    const bool bSaved = cRules->Apply(edit);
    if (bSaved && bKnown)
        NoteRules(*m_cParts, *cCat, before, cRules->Stored());
    return bSaved;
}

RotationFiles& clsSchedMan::PresentRotation()
{
    if (!m_cParts->colMainCats)
        throw RuntimeError(error::ObjectNotSet);
    m_cParts->RefreshRotation();
    return m_cParts->cRotationFiles;
}

RotationOptions clsSchedMan::Options()
{
    const Call cCall(*this);
    return PresentRotation().Options();
}

ArtistNames clsSchedMan::Names()
{
    const Call cCall(*this);
    return PresentRotation().Names();
}

void clsSchedMan::SetOption(StationOption eOption, bool bOn)
{
    const Call cCall(*this);
    Parts& my = *m_cParts;
    ravlo::SetOption(my, PresentRotation(), eOption, bOn);
    my.cPlayHistory.SetNames(my.cRotationFiles.Names());
}

void clsSchedMan::SetFairRotation(bool bOn) { SetOption(StationOption::FairRotation, bOn); }
void clsSchedMan::SetFeaturedArtists(bool bOn) { SetOption(StationOption::FeaturedArtists, bOn); }

void clsSchedMan::OverrideOptions(const OptionOverrides& overrides)
{
    const Call cCall(*this);
    PresentRotation().Override(overrides);
    m_cParts->cPlayHistory.SetNames(m_cParts->cRotationFiles.Names());
}

} // namespace ravlo
