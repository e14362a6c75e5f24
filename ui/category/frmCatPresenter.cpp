// SPDX-License-Identifier: MIT
#include "ui/category/frmCatPresenter.h"

#include "base/ScopedFlag.h"
#include "base/Text.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace ravlo
{

namespace
{

using enum RuleBox;

constexpr const wchar_t* sGlobalTitle =
    L"Global Rules (for all categories where separations not explictly set).";
constexpr const wchar_t* sSection = L"Settings";
constexpr const wchar_t* sShowRulesKey = L"frmCatShowRules";

RulesPane PaneOf(RuleBox eBox)
{
    return eBox <= txtGlobalAlbumSepMins ? RulesPane::Global : RulesPane::Category;
}

} // namespace

// Scope of a command that opens other windows or pumps messages: nothing in the window can be used, and the
// pointer is the hourglass.
class frmCatPresenter::Busy
{
public:
    explicit Busy(frmCatPresenter& cForm) : m_cCommand(cForm.m_bInCommand), m_cForm(cForm)
    {
        m_cForm.SetBusy(true);
    }
    ~Busy() { m_cForm.SetBusy(false); }
    Busy(const Busy&) = delete;
    Busy& operator=(const Busy&) = delete;

private:
    ScopedFlag m_cCommand;
    frmCatPresenter& m_cForm;
};

frmCatPresenter::frmCatPresenter(frmCatView& cView, CatSelectorPresenter& cSelector, ModScheduler& cMod)
    : m_cView(cView), m_cSelector(cSelector), m_cMod(cMod)
{
    m_cSelector.CatChanged = [this](std::shared_ptr<clsCat>& cCat) { OnCatChanged(cCat); };
    m_cSelector.OpenerChanged = [this](bool bOpener) { m_bOpener = bOpener; };
}

// The window remembers the focus before the selector's controls are disabled and restores it after they are
// enabled.
void frmCatPresenter::SetBusy(bool bBusy) noexcept
{
    try
    {
        if (bBusy)
            m_cView.SetBusy(true);
        m_cSelector.EnableUI(!bBusy);
        if (!bBusy)
            m_cView.SetBusy(false);
    }
    catch (...)
    {
        m_cMod.LogError(L"frmCat.SetBusy", CurrentError());
    }
}

// ---- opening and closing ----

std::int32_t frmCatPresenter::ShowUI(std::shared_ptr<clsSchedMan> cSchedMan, CategoryRequest& request)
{
    m_cSchedMan = std::move(cSchedMan);
    m_cCut = request.bAllowMultiSelect ? request.cCut : nullptr;
    Open(request);
    Choose(request);
    m_cView.ShowModal();
    if (m_bCancelled)
        return lNotChosen;
    TakeChoice(request);
    return lChosen;
}

void frmCatPresenter::Open(const CategoryRequest& request)
{
    m_cView.ShowNewButtons(request.bAllowNew);
    m_cSelector.SetAllowMultiCatSelect(request.bAllowMultiSelect);
    m_cSelector.SetSchedMan(m_cSchedMan);
    if (!request.sCaption.empty())
        m_cView.SetCaption(request.sCaption);
    m_bRulesShown = m_cMod.Ports().cUserSettings.Get(sProgramTitle, sSection, sShowRulesKey, L"1") != L"0";
    m_cView.ShowRulesArea(m_bRulesShown);
    FillGlobalPane();
    ShowPane(RulesPane::Global);
}

void frmCatPresenter::Choose(const CategoryRequest& request)
{
    if (const std::shared_ptr<CatCollection> colMainCats = m_cSchedMan->colMainCats())
    {
        m_cSelector.SetColMainCats(colMainCats);
        if (request.cMainCatChosen)
        {
            m_cSelector.SetSelectedMainCat(request.cMainCatChosen);
            m_cSelector.SetSelectedSubCat(request.cSubCatChosen);
        }
    }
    else
        m_cMod.Box(BoxIcon::None, BoxButtons::Ok, sProgramTitle,
                   L"Cat Selector NEEDS the collection of main cats!");
    m_cSelector.SetOpener(request.bOpenerChosen);
    if (m_cCut)
        m_cSelector.ShowCutCatsAsSelected(m_cCut);
}

void frmCatPresenter::TakeChoice(CategoryRequest& request) const
{
    if (m_colNames)
        m_cSchedMan->AssignCut(m_cCut, m_cSubCat->CatLevel(), *m_colNames);
    request.cMainCatChosen = m_cMainCat;
    request.cSubCatChosen = m_cSubCat;
    request.bOpenerChosen = m_bOpener;
    request.colSelCuts = m_colSelCuts;
}

void frmCatPresenter::OKClick()
{
    if (!Ready())
        return;
    m_colSelCuts = m_cSelector.SelectedCuts();
    m_bCancelled = false;
    Finish();
}

void frmCatPresenter::CancelClick()
{
    if (!Ready())
        return;
    m_bCancelled = true;
    Finish();
}

void frmCatPresenter::Finish()
{
    const ScopedFlag cCommand(m_bInCommand);
    if (QuestionDue())
        AskPending();
    // With every answer.
    StoreGlobalArtistAndTitle();
    m_cMod.SaveSettings();
    std::vector<std::wstring> colNames;
    if (!m_bCancelled && m_cCut)
        colNames = NamesForTheCut();
    // After the last box: the host may have reloaded during any of them.
    const std::shared_ptr<clsCat> cSubCat = SubCat();
    m_cMainCat = MainCat();
    m_cSubCat = cSubCat;
    // The cut does not change when "ALL" was refused with a box, or when no category is selected any more: a
    // cut in no category is in "NOCAT", which can be chosen.
    if (m_cSubCat && !colNames.empty())
        m_colNames = std::move(colNames);
    m_bClosed = true;
    m_cView.Close();
}

// Leaves out deleted categories, which placing the cut would create again.
std::vector<std::wstring> frmCatPresenter::NamesForTheCut()
{
    std::vector<std::wstring> colNames = m_cSelector.colSelectedSubCatNames();
    const std::shared_ptr<CatCollection> colMainCats = m_cSchedMan->colMainCats();
    std::erase_if(colNames,
                  [&](const std::wstring& sName) { return !MainCatByName(colMainCats.get(), sName); });
    return colNames;
}

// ---- choosing ----

void frmCatPresenter::OnCatChanged(const std::shared_ptr<clsCat>& cCat)
{
    if (QuestionDue() && !AskPending())
        FillGlobalPane();
    const bool bLevel = cCat && cCat->CatLevel() > 0;
    m_cMainCat = m_cSelector.SelectedMainCat();
    m_cSubCat = bLevel ? cCat : nullptr;
    ShowRules();
}

// The tree's present category for the chosen one; null when none is chosen or it no longer exists.
std::shared_ptr<clsCat> frmCatPresenter::MainCat() const
{
    return m_cMainCat ? MainCatByName(m_cSchedMan->colMainCats().get(), m_cMainCat->CatName()) : nullptr;
}

// As MainCat, for the chosen level; null also for all levels.
std::shared_ptr<clsCat> frmCatPresenter::SubCat() const
{
    const std::shared_ptr<clsCat> cMainCat = m_cSubCat ? MainCat() : nullptr;
    return cMainCat ? cMainCat->SubCat(m_cSubCat->CatLevel()) : nullptr;
}

void frmCatPresenter::NewClick()
{
    if (!Ready())
        return;
    const Busy cBusy(*this);
    std::wstring sName;
    const bool bCreated = m_cSchedMan->CreateMainCat(sName);
    RefreshSelector();
    if (!bCreated || sName.empty())
        return;
    if (const std::shared_ptr<clsCat> cMainCat = MainCatByName(m_cSchedMan->colMainCats().get(), sName))
        m_cSelector.MakeMainCatCurrent(cMainCat);
}

void frmCatPresenter::NewLevelClick()
{
    if (!Ready())
        return;
    const Busy cBusy(*this);
    m_cSchedMan->CreateCatLevel(m_cSelector.SelectedMainCat());
    RefreshSelector();
}

void frmCatPresenter::MenuOpening() { m_cView.EnableLibraryMenu(!m_cSchedMan->UIShowing()); }

void frmCatPresenter::SchedLibClick()
{
    if (!Ready() || m_cSchedMan->UIShowing())
        return;
    const Busy cBusy(*this);
    m_cSchedMan->ShowLibraryUI();
    RefreshSelector(); // categories may have been created or deleted there
}

void frmCatPresenter::RefreshSelector()
{
    m_cSelector.RefreshLists(m_cSchedMan->colMainCats());
    if (m_cSelector.SelectedMainCat() || !m_cMainCat)
        return;
    m_cMainCat = m_cSubCat = nullptr;
    ForgetEdits(RulesPane::Category);
    ShowPane(RulesPane::Global);
}

// ---- the rules on the screen ----

void frmCatPresenter::StripClick(bool bToggle)
{
    if (!bToggle || !Ready())
        return;
    m_bRulesShown = !m_bRulesShown;
    m_cView.ShowRulesArea(m_bRulesShown);
    m_cMod.Ports().cUserSettings.Set(sProgramTitle, sSection, sShowRulesKey, m_bRulesShown ? L"1" : L"0");
}

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
    Fill(txtArtistSepMins1, cRules->ArtistSepMins());
    Fill(txtTitleSepMins1, cRules->TitleSepMins());
    Fill(txtAlbumSepMins, cRules->AlbumSepMins());
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
}

// ---- edits ----

void frmCatPresenter::BoxChanged(RuleBox eBox)
{
    if (m_bFilling)
        return;
    m_bEdited[static_cast<std::size_t>(eBox)] = true;
    m_cView.EnableApply(PaneEdited(m_ePane));
}

void frmCatPresenter::IgnoreClick()
{
    EnableArtistAndTitle();
    if (m_bFilling)
        return;
    m_bIgnoreEdited = true;
    m_cView.EnableApply(PaneEdited(m_ePane));
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
}

void frmCatPresenter::SaveGlobal()
{
    StoreGlobalArtistAndTitle();
    if (const auto lAlbum = Minutes(txtGlobalAlbumSepMins))
        m_cMod.SetGlobalAlbumSepMins(*lAlbum);
    m_cMod.SaveSettings();
    FillGlobalPane();
    // A category shows the global value where it has none of its own.
    if (!PaneEdited(RulesPane::Category))
        FillCategoryPane();
}

void frmCatPresenter::StoreGlobalArtistAndTitle()
{
    if (const auto lArtist = AbsoluteMinutes(txtArtistSepMins0))
        m_cMod.SetGlobalArtistSepMins(*lArtist);
    if (const auto lTitle = AbsoluteMinutes(txtTitleSepMins0))
        m_cMod.SetGlobalTitleSepMins(*lTitle);
}

void frmCatPresenter::SaveCategory()
{
    const std::shared_ptr<clsCat> cCat = RulesCat();
    if (!cCat)
        return;
    const std::shared_ptr<clsCatRules> cRules = cCat->Rules();
    clsCatRules::Edit edit;
    edit.lArtist = AbsoluteMinutes(txtArtistSepMins1);
    edit.lTitle = AbsoluteMinutes(txtTitleSepMins1);
    edit.lAlbum = Minutes(txtAlbumSepMins); // unchanged: below zero unsets the rule
    if (m_bIgnoreEdited)
        edit.bIgnore = m_cView.IgnoreChecked();
    if (!cRules->Apply(edit))
        m_cMod.Box(BoxIcon::None, BoxButtons::Ok, sProgramTitle, L"Cant save rules for: " + cRules->CatID());
    FillCategoryPane();
}

// The number that the user typed into a box; nothing when it was not edited or is not a 32-bit number.
std::optional<std::int32_t> frmCatPresenter::Minutes(RuleBox eBox) const
{
    const auto dValue = Edited(eBox) ? NumericValue(m_cView.BoxText(eBox)) : std::nullopt;
    return dValue ? ToLong(*dValue) : std::nullopt;
}

std::optional<std::int32_t> frmCatPresenter::AbsoluteMinutes(RuleBox eBox) const
{
    const auto dValue = Edited(eBox) ? NumericValue(m_cView.BoxText(eBox)) : std::nullopt;
    return dValue ? ToLong(std::abs(*dValue)) : std::nullopt;
}

} // namespace ravlo
