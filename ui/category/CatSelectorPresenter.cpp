// SPDX-License-Identifier: MIT
#include "ui/category/CatSelectorPresenter.h"

#include "base/CaseFolding.h"
#include "base/ScopedFlag.h"
#include "base/Text.h"

#include <algorithm>
#include <utility>

namespace ravlo
{

namespace
{

using enum SelectorControl;

constexpr const wchar_t* sAllLevels = L"ALL";
constexpr SelectorControl eAllControls[] = {lstCat,    lstlvl,         lstsongs0, lstsongs1,
                                            chkOpener, chkSortedSongs, lblMatch};
constexpr SelectorControl eSongControls[] = {lstsongs0, lstsongs1, chkOpener, chkSortedSongs, lblMatch};

std::wstring DisplayText(const Cut& cCut) { return cCut.Artist() + L" - " + cCut.Title(); }

// A level's own cuts, or those of all levels, each once, by their keys in the levels. Reads no cut: one that
// cannot be read would hide all others.
std::shared_ptr<CutCollection> CutsOf(const clsCat& cCat)
{
    if (cCat.CatLevel() != 0)
        return cCat.SchedCuts();
    auto colMerged = std::make_shared<CutCollection>();
    const CatCollection& colSubCats = *cCat.SubCats();
    for (std::size_t i = 0; i < colSubCats.Count(); ++i)
    {
        const std::shared_ptr<CutCollection> colCuts = colSubCats.At(i)->SchedCuts();
        for (std::size_t j = 0; j < colCuts->Count(); ++j)
            colMerged->Insert(colMerged->Count(), colCuts->KeyAt(j), colCuts->At(j));
    }
    return colMerged;
}

} // namespace

CatSelectorPresenter::CatSelectorPresenter(CatSelectorView& cView, ModScheduler& cMod)
    : m_cView(cView), m_cMod(cMod)
{
    m_cView.Show(lstsongs0, false);
    m_cView.Show(lstsongs1, true);
    LoadSortByName();
}

void CatSelectorPresenter::SetAllowMultiCatSelect(bool bAllow)
{
    m_bMulti = bAllow;
    EnableSongs(!bAllow);
}

void CatSelectorPresenter::EnableSongs(bool bEnable)
{
    for (const SelectorControl eControl : eSongControls)
        m_cView.Enable(eControl, bEnable);
}

void CatSelectorPresenter::EnableUI(bool bEnable)
{
    m_cView.Hourglass(!bEnable);
    for (const SelectorControl eControl : eAllControls)
        m_cView.Enable(eControl, bEnable);
    if (bEnable && m_bMulti)
        EnableSongs(false);
}

// ---- filling the lists ----

void CatSelectorPresenter::SetColMainCats(std::shared_ptr<CatCollection> colMainCats)
{
    m_colMainCats = std::move(colMainCats);
    m_cView.ClearSelection(lstCat);
    m_colHidden.clear();
    m_cView.ClearSelection(lstlvl);
    PopulateLists();
}

void CatSelectorPresenter::PopulateLists()
{
    const ScopedFlag cPopulating(m_bPopulating);
    std::vector<std::wstring> colNames;
    if (m_colMainCats)
        for (std::size_t i = 0; i < m_colMainCats->Count(); ++i)
            colNames.push_back(m_colMainCats->At(i)->CatName());
    m_names.Set(std::move(colNames));
    ListCats({});
    FillLevels();
}

// Returns how many entries the list has now.
std::size_t CatSelectorPresenter::Refill(SelectorControl eList, const std::vector<std::wstring>& colEntries)
{
    m_cView.SetEntries(eList, colEntries);
    return colEntries.size();
}

std::vector<std::wstring> CatSelectorPresenter::LevelEntries() const
{
    std::vector<std::wstring> colLevels;
    if (!m_colMainCats || !m_cMainCat)
        return colLevels;
    const CatCollection& colSubCats = *m_cMainCat->SubCats();
    for (std::size_t i = 0; i < colSubCats.Count(); ++i)
        colLevels.push_back(DecimalText(colSubCats.At(i)->CatLevel()));
    if (!colLevels.empty())
        colLevels.emplace_back(sAllLevels);
    return colLevels;
}

void CatSelectorPresenter::FillLevels()
{
    m_levels = Refill(lstlvl, LevelEntries());
    if (m_levels > 0)
        m_cView.SetCurrentEntry(lstlvl, 0);
    if (!m_bPopulating)
        OnLevelClick();
}

void CatSelectorPresenter::FillSongs()
{
    if (m_bMulti)
    {
        EnableSongs(false);
        return;
    }
    m_cView.SetEntries(lstsongs0, {});
    m_cView.SetEntries(lstsongs1, {});
    const SelectorControl eTarget = VisibleSongs();
    m_cView.Show(eTarget, true);
    m_cView.Show(eTarget == lstsongs0 ? lstsongs1 : lstsongs0, false);
    const std::vector<std::wstring> colEntries = MapCuts();
    m_songs = Refill(eTarget, colEntries);
    m_cView.SetMatchText(colEntries.empty() ? L"No items in this category"
                                            : L"Total matching criteria = " +
                                                  DecimalText(static_cast<std::int64_t>(colEntries.size())));
}

SelectorControl CatSelectorPresenter::VisibleSongs() const
{
    return m_cView.Checked(chkSortedSongs) ? lstsongs0 : lstsongs1;
}

std::vector<std::wstring> CatSelectorPresenter::MapCuts()
{
    m_colCutMap.Clear();
    std::vector<std::wstring> colEntries;
    const std::shared_ptr<CutCollection> colCuts = m_cSubCat ? CutsOf(*m_cSubCat) : nullptr;
    // By position: reading a host's cut may change the level.
    for (std::size_t i = 0; colCuts && i < colCuts->Count(); ++i)
    {
        try
        {
            const std::shared_ptr<Cut> cCut = colCuts->At(i);
            const std::wstring sText = DisplayText(*cCut);
            m_colCutMap.Add(TextKey(sText), cCut);
            if (!m_bOpener || cCut->Opener())
                colEntries.push_back(sText);
        }
        catch (...)
        {
            m_cMod.LogError(L"CatSelector",
                            CurrentError()); // one bad cut hides no other
        }
    }
    return colEntries;
}

void CatSelectorPresenter::RefreshLists(std::shared_ptr<CatCollection> colMainCats)
{
    const std::wstring sMainCat = m_cMainCat ? m_cMainCat->CatName() : std::wstring();
    const bool bLevel = m_cSubCat && m_cSubCat->CatLevel() > 0;
    const std::wstring sLevel = bLevel ? DecimalText(m_cSubCat->CatLevel()) : sAllLevels;
    const std::vector<std::wstring> colSelected = SelectedNames();

    m_colMainCats = std::move(colMainCats);
    m_cMainCat = MainCatNamed(sMainCat);
    PopulateLists();
    {
        const ScopedFlag cBusy(m_bBusy);
        ListCats(colSelected);
        MakeCurrent(lstCat, sMainCat);
        if (m_cMainCat)
            MakeCurrent(lstlvl, sLevel);
    }
    if (CategoriesListed)
        CategoriesListed();
    OnLevelClick();
}

// ---- choosing ----

std::shared_ptr<clsCat> CatSelectorPresenter::MainCatNamed(const std::wstring& sName) const
{
    return sName.empty() ? nullptr : MainCatByName(m_colMainCats.get(), sName);
}

// False when no entry has that text.
bool CatSelectorPresenter::MakeCurrent(SelectorControl eList, const std::wstring& sText)
{
    const std::size_t count = eList == lstCat ? m_cats : m_levels;
    for (std::size_t i = 0; i < count; ++i)
    {
        if (!EqualIgnoringCase(m_cView.EntryText(eList, i), sText))
            continue;
        m_cView.SetCurrentEntry(eList, i);
        return true;
    }
    return false;
}

void CatSelectorPresenter::SetSelectedMainCat(const std::shared_ptr<clsCat>& cMainCat)
{
    if (!cMainCat || !ShowCat(cMainCat->CatName()))
        return;
    if (m_bMulti)
        m_cView.SelectEntry(lstCat, *m_cView.CurrentEntry(lstCat), true);
    CatClick();
}

void CatSelectorPresenter::MakeMainCatCurrent(const std::shared_ptr<clsCat>& cMainCat)
{
    if (cMainCat && ShowCat(cMainCat->CatName()))
        CatClick();
}

void CatSelectorPresenter::SetSelectedSubCat(const std::shared_ptr<clsCat>& cSubCat)
{
    if (m_levels == 0)
        return;
    if (!cSubCat)
        m_cView.SetCurrentEntry(lstlvl, m_levels - 1);
    else if (!MakeCurrent(lstlvl, DecimalText(cSubCat->CatLevel())))
        return;
    OnLevelClick();
}

void CatSelectorPresenter::SetOpener(bool bOpener)
{
    if (bOpener == m_bOpener)
        return;
    m_cView.Check(chkOpener, bOpener);
    OpenerClick();
}

void CatSelectorPresenter::CatClick()
{
    if (m_bBusy || m_bPopulating || m_bInClick)
        return;
    const ScopedFlag cGuard(m_bInClick);
    OnCatClick();
}

void CatSelectorPresenter::OnCatClick()
{
    const std::optional<std::size_t> current = m_cView.CurrentEntry(lstCat);
    if (!current)
        return;
    if (std::shared_ptr<clsCat> cMainCat = MainCatNamed(m_cView.EntryText(lstCat, *current)))
        m_cMainCat = std::move(cMainCat);
    if (m_bMulti)
        DropNoCat();
    else
        SelectOnly(*current);
    FillLevels();
}

void CatSelectorPresenter::LevelClick()
{
    OnLevelClick();
    if (!m_bBusy && m_cView.Visible(lstlvl))
        m_cView.Focus(lstlvl);
}

void CatSelectorPresenter::OnLevelClick()
{
    if (m_bBusy)
        return;
    const std::optional<std::size_t> current = m_cView.CurrentEntry(lstlvl);
    const std::wstring sText = current ? m_cView.EntryText(lstlvl, *current) : std::wstring();
    std::shared_ptr<clsCat> cSubCat = m_cMainCat; // "ALL", and a main category without levels
    if (IsNumeric(sText))
        cSubCat = m_cMainCat ? CatByKey(m_cMainCat->SubCats().get(), sText) : nullptr;
    ChooseLevel(std::move(cSubCat));
    FillSongs();
}

void CatSelectorPresenter::ChooseLevel(std::shared_ptr<clsCat> cSubCat)
{
    if (cSubCat == m_cSubCat)
        return;
    m_cSubCat = cSubCat;
    // A category without a level means that the level was deleted; without a category there is nothing to
    // report.
    if (m_cMainCat && CatChanged)
        CatChanged(cSubCat);
}

void CatSelectorPresenter::OpenerClick()
{
    if (m_bInClick)
        return;
    const ScopedFlag cGuard(m_bInClick);
    m_bOpener = m_cView.Checked(chkOpener);
    if (OpenerChanged)
        OpenerChanged(m_bOpener);
    FillSongs();
}

void CatSelectorPresenter::SortedSongsClick() { FillSongs(); }

void CatSelectorPresenter::SortedSongsTab() { m_cView.Focus(lstCat); }

// ---- what is selected ----

std::vector<std::wstring> CatSelectorPresenter::colSelectedSubCatNames()
{
    if (!m_bMulti)
        return {};
    if (!m_cSubCat || m_cSubCat->CatLevel() == 0)
    {
        m_cMod.Box(BoxIcon::Exclamation, BoxButtons::Ok, L"'ALL' is Not Valid",
                   L"Choose a level other than 'ALL' to be able to multi-select categories");
        return {};
    }
    return SelectedNames();
}

Cuts CatSelectorPresenter::SelectedCuts() const
{
    Cuts colCuts;
    const SelectorControl eList = VisibleSongs();
    for (const std::size_t entry : m_cView.SelectedEntries(eList))
        if (const std::shared_ptr<Cut>* cCut = m_colCutMap.Find(m_cView.EntryText(eList, entry)))
            colCuts.push_back(*cCut);
    return colCuts;
}

// ---- the categories of a cut ----

void CatSelectorPresenter::Missing(const wchar_t* sWhat, const std::wstring& sKey)
{
    m_cMod.Box(BoxIcon::Critical, BoxButtons::Ok, L"Error!",
               L"Unexpected!- " + std::wstring(sWhat) + L" " + sKey + sCrLf +
                   L"Doesn't exist in ShowCutCatsAsSelected!");
}

// The existing main categories that contain the cut at its level.
CatCollection CatSelectorPresenter::CatsOf(const Cut& cCut)
{
    CatCollection colFound;
    const std::wstring sLevel = DecimalText(cCut.CatLevel());
    const std::shared_ptr<CatCollection> colMainCats = m_cSchedMan->colMainCats();
    for (const std::wstring& sName : cCut.CategoryNames())
    {
        const std::wstring sKey = CategoryKey(sName, 0);
        const std::shared_ptr<clsCat> cMainCat = CatByKey(colMainCats.get(), sKey);
        if (!cMainCat)
            Missing(L"main cat", sKey);
        else if (!cMainCat->SubCats()->Exists(sLevel))
            Missing(L"sub cat", sLevel);
        else
            colFound.Add(TextKey(cMainCat->CatName()), cMainCat);
    }
    if (colFound.Count() > 1)
        colFound.Remove(sNoCat);
    return colFound;
}

void CatSelectorPresenter::ShowCutCatsAsSelected(const std::shared_ptr<Cut>& cCut)
{
    if (!cCut)
        return;
    if (!m_cSchedMan)
    {
        m_cMod.Box(BoxIcon::None, BoxButtons::Ok, sProgramTitle,
                   L"SchedMan needs to be set in CatSelector first!");
        return;
    }
    try
    {
        const CatCollection colFound = [&] {
            const ScopedFlag cBusy(m_bBusy);
            return CatsOf(*cCut);
        }();
        m_colHidden.clear();
        for (const std::wstring& sName : m_names.All())
            if (colFound.Exists(sName))
                m_colHidden.push_back(sName); // until it is listed
        for (std::size_t i = 0; i < m_cats; ++i)
        {
            const std::wstring sName = m_cView.EntryText(lstCat, i);
            m_cView.SelectEntry(lstCat, i, colFound.Exists(sName));
            std::erase(m_colHidden, sName);
        }
        if (colFound.Empty())
            return;
        // The list shows the current category's levels, so one of the cut's categories must be current.
        if ((!m_cMainCat || !colFound.Exists(m_cMainCat->CatName())) && ShowCat(colFound.At(0)->CatName()))
            CatClick();
        if (MakeCurrent(lstlvl, DecimalText(cCut->CatLevel())))
            OnLevelClick();
    }
    catch (...)
    {
        m_cMod.LogError(L"ShowCutCatsAsSelected",
                        CurrentError()); // a cut that cannot be read is in no category
    }
}

} // namespace ravlo
