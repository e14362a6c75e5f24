// SPDX-License-Identifier: MIT
#include "ui/category/frmCatPresenter.h"

#include "base/ScopedFlag.h"

#include <algorithm>
#include <utility>

namespace ravlo
{

namespace
{

constexpr const wchar_t* sSection = L"Settings";
constexpr const wchar_t* sShowRulesKey = L"frmCatShowRules";

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
    // Stored after every answer, also after No.
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
    ForgetOutlook();
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
    ForgetOutlook();
    if (m_cSelector.SelectedMainCat() || !m_cMainCat)
        return;
    m_cMainCat = m_cSubCat = nullptr;
    ForgetEdits(RulesPane::Category);
    ShowPane(RulesPane::Global);
}

void frmCatPresenter::StripClick(bool bToggle)
{
    if (!bToggle || !Ready())
        return;
    m_bRulesShown = !m_bRulesShown;
    m_cView.ShowRulesArea(m_bRulesShown);
    m_cMod.Ports().cUserSettings.Set(sProgramTitle, sSection, sShowRulesKey, m_bRulesShown ? L"1" : L"0");
    ShowOutlook();
}

} // namespace ravlo
