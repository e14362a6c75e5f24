// SPDX-License-Identifier: MIT
// The selector's list of categories: narrowed, sorted, and what is selected in it.
#include "ui/category/CatSelectorPresenter.h"

#include "base/CaseFolding.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

namespace ravlo
{

namespace
{

using enum SelectorControl;

constexpr const wchar_t* sSettings = L"Settings";
constexpr const wchar_t* sSortKey = L"CatSelectorSortByName";
constexpr const wchar_t* sYes = L"1";
constexpr const wchar_t* sNo = L"0";

} // namespace

void CatSelectorPresenter::LoadSortByName()
{
    m_names.SortByName(m_cMod.Ports().cUserSettings.Get(sProgramTitle, sSettings, sSortKey, sNo) == sYes);
}

void CatSelectorPresenter::SetSortByName(bool bSort)
{
    m_cMod.Ports().cUserSettings.Set(sProgramTitle, sSettings, sSortKey, bSort ? sYes : sNo);
    ListAgain([&] { m_names.SortByName(bSort); });
}

void CatSelectorPresenter::NarrowCategories(const std::wstring& sQuery)
{
    ListAgain([&] { m_names.Narrow(sQuery); });
}

// Lists the names after a change of their arrangement; selection and current entry stay.
void CatSelectorPresenter::ListAgain(const std::function<void()>& change)
{
    const std::vector<std::wstring> colSelected = SelectedNames();
    const std::optional<std::size_t> current = m_cView.CurrentEntry(lstCat);
    const std::wstring sCurrent = m_cMainCat ? m_cMainCat->CatName()
                                  : current  ? m_cView.EntryText(lstCat, *current)
                                             : std::wstring();
    change();
    ListCats(colSelected);
    if (!MakeCurrent(lstCat, sCurrent) && m_cats > 0)
        m_cView.SetCurrentEntry(lstCat, 0);
    if (CategoriesListed)
        CategoriesListed();
}

// The first one becomes current.
void CatSelectorPresenter::ListCats(const std::vector<std::wstring>& colSelected)
{
    std::unordered_set<TextKey> colLeft;
    for (const std::wstring& sName : colSelected)
        colLeft.insert(TextKey(sName));
    m_cats = Refill(lstCat, m_names.Shown());
    for (std::size_t entry = 0; entry < m_cats; ++entry)
        if (colLeft.erase(TextKey(m_names.Shown()[entry])) != 0)
            m_cView.SelectEntry(lstCat, entry, true);
    m_colHidden.clear();
    for (const std::wstring& sName : m_names.All())
        if (colLeft.erase(TextKey(sName)) != 0)
            m_colHidden.push_back(sName);
    if (m_cats > 0)
        m_cView.SetCurrentEntry(lstCat, 0);
}

// Hidden ones too, in the order of the whole list.
std::vector<std::wstring> CatSelectorPresenter::SelectedNames() const
{
    std::unordered_set<TextKey> colSelected;
    for (const std::wstring& sName : m_colHidden)
        colSelected.insert(TextKey(sName));
    for (const std::size_t entry : m_cView.SelectedEntries(lstCat))
        colSelected.insert(TextKey(m_cView.EntryText(lstCat, entry)));
    std::vector<std::wstring> colNames;
    for (const std::wstring& sName : m_names.All())
        if (colSelected.contains(TextKey(sName)))
            colNames.push_back(sName);
    return colNames;
}

// Makes a category current; shows all categories when it is hidden. False when there is no such category.
bool CatSelectorPresenter::ShowCat(const std::wstring& sName)
{
    if (MakeCurrent(lstCat, sName))
        return true;
    const auto bIsIt = [&](const std::wstring& sEach) { return EqualIgnoringCase(sEach, sName); };
    if (std::none_of(m_names.All().begin(), m_names.All().end(), bIsIt))
        return false;
    NarrowCategories(L"");
    return MakeCurrent(lstCat, sName);
}

bool CatSelectorPresenter::TypeInList(SelectorControl eList, wchar_t cTyped)
{
    if (std::exchange(m_eTyped, eList) != eList)
        m_typed = TypeAhead();
    const bool bToggles = cTyped == L' ' && eList == lstCat && m_bMulti;
    if (!m_typed.Type(cTyped, m_cMod.Ports().cClock.TickCount()))
    {
        if (bToggles)
            ToggleCat();
        return bToggles;
    }
    const std::size_t count = eList == lstCat ? m_cats : eList == lstlvl ? m_levels : m_songs;
    const std::optional<std::size_t> current = m_cView.CurrentEntry(eList);
    const std::optional<std::size_t> found =
        m_typed.Find([&](const std::string& sBeginning, bool bBehind) -> std::optional<std::size_t> {
            for (std::size_t step = 0; step < count; ++step)
            {
                const std::size_t entry = (current.value_or(0) + step + (bBehind && current ? 1 : 0)) % count;
                if (BeginsFolded(m_cView.EntryText(eList, entry), sBeginning))
                    return entry;
            }
            return std::nullopt;
        });
    if (!found && bToggles)
        ToggleCat();
    if (!found)
        return true;
    // Where several categories are chosen, those of the cut stay: only the caret moves.
    const bool bSelects = eList != lstlvl && !(eList == lstCat && m_bMulti);
    if (bSelects)
        m_cView.ClearSelection(eList);
    m_cView.SetCurrentEntry(eList, *found);
    if (eList == lstlvl)
        LevelClick();
    else if (bSelects)
        m_cView.SelectEntry(eList, *found, true);
    if (eList == lstCat)
        CatClick();
    return true;
}

void CatSelectorPresenter::ToggleCat()
{
    m_typed = TypeAhead();
    const std::optional<std::size_t> current = m_cView.CurrentEntry(lstCat);
    if (!current)
        return;
    const std::vector<std::size_t> colSelected = m_cView.SelectedEntries(lstCat);
    m_cView.SelectEntry(lstCat, *current,
                        std::find(colSelected.begin(), colSelected.end(), *current) == colSelected.end());
    CatClick();
}

void CatSelectorPresenter::ChooseFound()
{
    if (m_bMulti || m_cats == 0 || !m_cView.SelectedEntries(lstCat).empty())
        return;
    m_cView.SetCurrentEntry(lstCat, 0);
    CatClick();
}

// "NOCAT" cannot stay selected together with real categories.
void CatSelectorPresenter::DropNoCat()
{
    const std::vector<std::wstring> colSelected = SelectedNames();
    const auto bIsNoCat = [](const std::wstring& sName) { return EqualIgnoringCase(sName, sNoCat); };
    if (std::all_of(colSelected.begin(), colSelected.end(), bIsNoCat))
        return;
    std::erase_if(m_colHidden, bIsNoCat);
    for (const std::size_t entry : m_cView.SelectedEntries(lstCat))
        if (bIsNoCat(m_cView.EntryText(lstCat, entry)))
            m_cView.SelectEntry(lstCat, entry, false);
}

void CatSelectorPresenter::SelectOnly(std::size_t entry)
{
    m_colHidden.clear();
    for (const std::size_t other : m_cView.SelectedEntries(lstCat))
        if (other != entry)
            m_cView.SelectEntry(lstCat, other, false);
    m_cView.SelectEntry(lstCat, entry, true);
}

} // namespace ravlo
