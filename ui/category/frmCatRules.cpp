// SPDX-License-Identifier: MIT
// The category window's rules: what the panes show, and what of it is saved.
#include "ui/category/frmCatPresenter.h"

#include "base/ScopedFlag.h"
#include "base/Text.h"
#include "ui/category/OutlookText.h"

#include <cmath>

namespace ravlo
{

namespace
{

using enum RuleBox;

constexpr const wchar_t* sGlobalTitle =
    L"Global Rules (for all categories where separations not explictly set).";

RulesPane PaneOf(RuleBox eBox)
{
    return eBox <= txtGlobalAlbumSepMins ? RulesPane::Global : RulesPane::Category;
}

} // namespace

// ---- on the screen ----

void frmCatPresenter::TabClick(RulesPane ePane)
{
    if (!Ready())
        return;
    if (ePane == RulesPane::Category && !m_cMainCat)
    {
        m_cMod.Box(BoxIcon::Information, BoxButtons::Ok, L"ALL SONGS Is Not Valid For This!",
                   L"First use the category selector to choose a category");
        ePane = RulesPane::Global;
    }
    ShowPane(ePane);
}

// The title names the rules that are shown: a category's name would be wrong for the global ones.
void frmCatPresenter::ShowPane(RulesPane ePane)
{
    m_ePane = ePane;
    m_cView.ChoosePane(ePane);
    m_cView.SetRulesTitle(ePane == RulesPane::Global ? sGlobalTitle : Heading());
    m_cView.EnableApply(PaneEdited(ePane));
    ShowOutlook();
}

// The cuts are read only when the pane can be seen: choosing categories stays quick.
void frmCatPresenter::ShowOutlook()
{
    if (m_ePane != RulesPane::Category || !m_bRulesShown)
        return;
    const std::shared_ptr<clsCat> cSubCat = SubCat();
    if (!cSubCat)
        return m_cView.SetOutlook(L"Choose a level to see what its cuts can keep.");
    if (!m_outlook)
    {
        LevelOutlook outlook =
            OutlookOf(*cSubCat, m_cSchedMan->History(), m_cSchedMan->Names(), m_cMod.Ports().cClock.Now());
        if (SubCat() != cSubCat) // chosen by a host's cut while it was read
            return;
        m_outlook = std::move(outlook);
    }
    m_cView.SetOutlook(OutlookText(*m_outlook, MinsToKeep(txtArtistSepMins1), MinsToKeep(txtTitleSepMins1)));
}

// By what the pane shows, saved or not.
std::int32_t frmCatPresenter::MinsToKeep(RuleBox eBox) const
{
    const std::optional<double> dValue =
        m_cView.IgnoreChecked() ? std::nullopt : NumericValue(m_cView.BoxText(eBox));
    return dValue ? ToLong(std::abs(*dValue)).value_or(0) : 0;
}

std::wstring frmCatPresenter::Heading() const
{
    if (m_cSubCat)
        return L"Showing Rules for: " + m_cSubCat->CatName() + L" " + DecimalText(m_cSubCat->CatLevel());
    return L"Showing Rules for: " + m_cMainCat->CatName() + L" [ALL LEVELS].";
}

void frmCatPresenter::ShowRules()
{
    FillCategoryPane();
    ShowPane(m_ePane);
}

void frmCatPresenter::Fill(RuleBox eBox, std::int32_t lMins) { m_cView.SetBoxText(eBox, DecimalText(lMins)); }

void frmCatPresenter::FillRule(RuleBox eBox, std::int32_t lMins, bool bInherit)
{
    Fill(eBox, lMins);
    m_cView.CheckInherit(eBox, bInherit);
}

void frmCatPresenter::FillGlobalPane()
{
    const ScopedFlag cFilling(m_bFilling);
    Fill(txtArtistSepMins0, m_cMod.GlobalArtistSepMins());
    Fill(txtTitleSepMins0, m_cMod.GlobalTitleSepMins());
    Fill(txtGlobalAlbumSepMins, m_cMod.GlobalAlbumSepMins());
    ForgetEdits(RulesPane::Global);
}

void frmCatPresenter::FillCategoryPane()
{
    std::shared_ptr<clsCat> cCat = RulesCat();
    if (!cCat)
        cCat = m_cSubCat ? m_cSubCat : m_cMainCat; // deleted: show its last values
    if (!cCat)
        return;
    const ScopedFlag cFilling(m_bFilling);
    const std::shared_ptr<clsCatRules> cRules = cCat->Rules();
    FillRule(txtArtistSepMins1, cRules->ArtistSepMins(), cRules->InheritsArtist());
    FillRule(txtTitleSepMins1, cRules->TitleSepMins(), cRules->InheritsTitle());
    FillRule(txtAlbumSepMins, cRules->AlbumSepMins(), cRules->AlbumSepMins() < 0);
    m_cView.CheckIgnore(cRules->IgnoreRules());
    EnableArtistAndTitle();
    ForgetEdits(RulesPane::Category);
}

// The album box stays enabled, on purpose.
void frmCatPresenter::EnableArtistAndTitle()
{
    const bool bEnable = !m_cView.IgnoreChecked();
    m_cView.EnableBox(txtArtistSepMins1, bEnable);
    m_cView.EnableBox(txtTitleSepMins1, bEnable);
    m_cView.EnableInherit(txtArtistSepMins1, bEnable);
    m_cView.EnableInherit(txtTitleSepMins1, bEnable);
}

// ---- edits ----

void frmCatPresenter::BoxChanged(RuleBox eBox)
{
    if (m_bFilling)
        return;
    m_bEdited[static_cast<std::size_t>(eBox)] = true;
    if (PaneOf(eBox) == RulesPane::Category)
        m_cView.CheckInherit(eBox, false);
    m_cView.EnableApply(PaneEdited(m_ePane));
    ShowOutlook();
}

// With the tick the box shows what counts without minutes of the level's own: the global ones, and no album
// rule. Without it the level starts from the global minutes.
void frmCatPresenter::InheritClick(RuleBox eBox)
{
    {
        const ScopedFlag cFilling(m_bFilling);
        if (eBox == txtAlbumSepMins)
            Fill(eBox, m_cView.InheritChecked(eBox) ? clsCatRules::lNotSet : m_cMod.GlobalAlbumSepMins());
        else
            Fill(eBox,
                 eBox == txtArtistSepMins1 ? m_cMod.GlobalArtistSepMins() : m_cMod.GlobalTitleSepMins());
    }
    m_bEdited[static_cast<std::size_t>(eBox)] = true;
    m_cView.EnableApply(PaneEdited(m_ePane));
    ShowOutlook();
}

void frmCatPresenter::IgnoreClick()
{
    EnableArtistAndTitle();
    if (m_bFilling)
        return;
    m_bIgnoreEdited = true;
    m_cView.EnableApply(PaneEdited(m_ePane));
    ShowOutlook();
}

bool frmCatPresenter::PaneEdited(RulesPane ePane) const
{
    for (std::size_t i = 0; i < ruleBoxes; ++i)
        if (m_bEdited[i] && PaneOf(static_cast<RuleBox>(i)) == ePane)
            return true;
    return ePane == RulesPane::Category && m_bIgnoreEdited;
}

void frmCatPresenter::ForgetEdits(RulesPane ePane)
{
    for (std::size_t i = 0; i < ruleBoxes; ++i)
        if (PaneOf(static_cast<RuleBox>(i)) == ePane)
            m_bEdited[i] = false;
    if (ePane == RulesPane::Category)
        m_bIgnoreEdited = false;
}

// On purpose: the global album separation alone raises no question; it is stored by Apply.
bool frmCatPresenter::QuestionDue() const
{
    return PaneEdited(RulesPane::Category) || Edited(txtArtistSepMins0) || Edited(txtTitleSepMins0);
}

// Returns true when the answer was Yes and every edited pane was saved.
bool frmCatPresenter::AskPending()
{
    const BoxAnswer eAnswer = m_cMod.Box(
        BoxIcon::Question, BoxButtons::YesNo, L"Press No To Discard the Rule Changes You Made.",
        L"Save the pending rules changes to: " + (m_cMainCat ? m_cMainCat->CatName() : std::wstring()));
    if (eAnswer != BoxAnswer::Yes)
        return false;
    for (const RulesPane ePane : {RulesPane::Global, RulesPane::Category})
        if (PaneEdited(ePane))
            Save(ePane);
    return true;
}

void frmCatPresenter::ApplyClick()
{
    if (!Ready())
        return;
    const ScopedFlag cCommand(m_bInCommand);
    if (m_ePane == RulesPane::Category && m_cMainCat && !RulesCat())
    {
        ForgetEdits(RulesPane::Category); // the category has been deleted
        return RefreshSelector();
    }
    Save(m_ePane);
}

void frmCatPresenter::Save(RulesPane ePane)
{
    if (ePane == RulesPane::Global)
        SaveGlobal();
    else
        SaveCategory();
    m_cView.EnableApply(PaneEdited(m_ePane));
    ShowOutlook();
}

void frmCatPresenter::SaveGlobal()
{
    StoreGlobalArtistAndTitle();
    if (const std::optional<std::int32_t> lAlbum = Minutes(txtGlobalAlbumSepMins))
        m_cMod.SetGlobalAlbumSepMins(*lAlbum);
    m_cMod.SaveSettings();
    FillGlobalPane();
    // A category shows the global value where it has none of its own.
    if (!PaneEdited(RulesPane::Category))
        FillCategoryPane();
}

void frmCatPresenter::StoreGlobalArtistAndTitle()
{
    if (const std::optional<std::int32_t> lArtist = AbsoluteMinutes(txtArtistSepMins0))
        m_cMod.SetGlobalArtistSepMins(*lArtist);
    if (const std::optional<std::int32_t> lTitle = AbsoluteMinutes(txtTitleSepMins0))
        m_cMod.SetGlobalTitleSepMins(*lTitle);
}

void frmCatPresenter::SaveCategory()
{
    const std::shared_ptr<clsCat> cCat = RulesCat();
    if (!cCat)
        return;
    clsCatRules::Edit edit;
    edit.lArtist = OwnMinutes(txtArtistSepMins1);
    edit.lTitle = OwnMinutes(txtTitleSepMins1);
    edit.lAlbum = Minutes(txtAlbumSepMins); // unchanged: below zero unsets the rule
    if (m_bIgnoreEdited)
        edit.bIgnore = m_cView.IgnoreChecked();
    if (!m_cSchedMan->ApplyRules(cCat, edit))
        m_cMod.Box(BoxIcon::None, BoxButtons::Ok, sProgramTitle,
                   L"Cant save rules for: " + cCat->Rules()->CatID());
    FillCategoryPane();
}

// The number that the user typed into a box; nothing when it was not edited or is not a 32-bit number.
std::optional<std::int32_t> frmCatPresenter::Minutes(RuleBox eBox) const
{
    const std::optional<double> dValue = Edited(eBox) ? NumericValue(m_cView.BoxText(eBox)) : std::nullopt;
    return dValue ? ToLong(*dValue) : std::nullopt;
}

// As AbsoluteMinutes, and lNotSet for a box that the user has ticked.
std::optional<std::int32_t> frmCatPresenter::OwnMinutes(RuleBox eBox) const
{
    if (Edited(eBox) && m_cView.InheritChecked(eBox))
        return clsCatRules::lNotSet;
    return AbsoluteMinutes(eBox);
}

std::optional<std::int32_t> frmCatPresenter::AbsoluteMinutes(RuleBox eBox) const
{
    const std::optional<double> dValue = Edited(eBox) ? NumericValue(m_cView.BoxText(eBox)) : std::nullopt;
    return dValue ? ToLong(std::abs(*dValue)) : std::nullopt;
}

} // namespace ravlo
