// SPDX-License-Identifier: MIT
#pragma once

#include "model/clsCat.h"
#include "scheduler/clsSchedMan.h"
#include "ui/category/CatSelectorView.h"
#include "ui/category/CategoryNames.h"
#include "ui/controls/TypeAhead.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace ravlo
{

// Lets the user pick a main category, one of its levels and cuts of that level. Reads the categories and
// never changes them. Errors of single cuts and look-ups are ignored: what cannot be read is not shown.
class CatSelectorPresenter
{
public:
    // Boxes go through cMod. Owns none of them.
    CatSelectorPresenter(CatSelectorView& cView, ModScheduler& cMod);
    CatSelectorPresenter(const CatSelectorPresenter&) = delete;
    CatSelectorPresenter& operator=(const CatSelectorPresenter&) = delete;

    void SetSchedMan(std::shared_ptr<clsSchedMan> cSchedMan) { m_cSchedMan = std::move(cSchedMan); }

    // When several categories are allowed, cuts cannot be picked: their lists and filters are disabled.
    bool AllowMultiCatSelect() const noexcept { return m_bMulti; }
    void SetAllowMultiCatSelect(bool bAllow);

    // Keyed by name TAB "0". Setting it clears the selections and fills the lists.
    const std::shared_ptr<CatCollection>& colMainCats() const noexcept { return m_colMainCats; }
    void SetColMainCats(std::shared_ptr<CatCollection> colMainCats);

    // Null when none is chosen. Setting one runs its entry's click and selects it (with multi-select, in
    // addition to the others). Setting null has no effect.
    const std::shared_ptr<clsCat>& SelectedMainCat() const noexcept { return m_cMainCat; }
    void SetSelectedMainCat(const std::shared_ptr<clsCat>& cMainCat);
    // As SetSelectedMainCat, but with multi-select changes no selection.
    void MakeMainCatCurrent(const std::shared_ptr<clsCat>& cMainCat);
    // The main category itself when "ALL" is chosen; null when nothing is. Setting null chooses "ALL".
    const std::shared_ptr<clsCat>& SelectedSubCat() const noexcept { return m_cSubCat; }
    void SetSelectedSubCat(const std::shared_ptr<clsCat>& cSubCat);
    // Whether only openers are listed. Setting another value runs the check box's click.
    bool Opener() const noexcept { return m_bOpener; }
    void SetOpener(bool bOpener);

    // The names of the selected categories, top to bottom; none without multi-select. When no level other
    // than "ALL" is chosen, shows a box and returns none.
    std::vector<std::wstring> colSelectedSubCatNames();
    // Selects the categories and the level that contain a cut, and nothing else; ignores null. Reports a
    // missing category or level. Selects "NOCAT" only for a cut without other categories.
    void ShowCutCatsAsSelected(const std::shared_ptr<Cut>& cCut);
    void EnableUI(bool bEnable);
    // Fills the lists of categories and levels. The first category becomes current; its click does not run.
    void PopulateLists();
    // As PopulateLists, for a collection that may have changed. The choice is found again by name and level,
    // and kept if it still exists.
    void RefreshLists(std::shared_ptr<CatCollection> colMainCats);
    // The cuts selected in the visible list, in its order. Entries with the same text all mean the first
    // such cut.
    Cuts SelectedCuts() const;

    // ---- how the categories are listed

    const CategoryNames& Names() const noexcept { return m_names; }
    // Lists the categories by name or in their own order, and remembers that for the user.
    void SetSortByName(bool bSort);
    // Lists the categories whose names contain each word, all for an empty query. Those that are hidden stay
    // selected. A hidden category that is to be shown or chosen lists all again.
    void NarrowCategories(const std::wstring& sQuery);
    std::size_t HiddenSelected() const noexcept { return m_colHidden.size(); }
    // Chooses the first listed category, when none is chosen there and only one can be.
    void ChooseFound();
    // The arrangement of the list has changed.
    std::function<void()> CategoriesListed;

    // Events. CatChanged receives a level, a main category for "ALL", or null when the clicked level was
    // deleted. EnsureSubCatExists is never raised; the public interface has it.
    std::function<void(std::shared_ptr<clsCat>& cCat)> CatChanged;
    std::function<void(bool bOpener)> OpenerChanged;
    std::function<void()> EnsureSubCatExists;

    // What the user does.
    void CatClick();
    void LevelClick(); // the focus goes to the level list
    void OpenerClick();
    void SortedSongsClick();
    // Goes to the next entry of a list that begins with what is typed, without regard to case and accents,
    // and chooses it as a click does. Where several categories are chosen, only the current entry moves, and
    // a blank that no entry continues with chooses it too, or no longer. False for a character that is not
    // part of a text.
    bool TypeInList(SelectorControl eList, wchar_t cTyped);
    void SortedSongsTab(); // Tab without Shift: the focus wraps round

private:
    void ToggleCat();
    void OnCatClick();
    void OnLevelClick();
    void ChooseLevel(std::shared_ptr<clsCat> cSubCat);
    void DropNoCat();
    void SelectOnly(std::size_t entry);
    void LoadSortByName();
    void ListAgain(const std::function<void()>& change);
    void ListCats(const std::vector<std::wstring>& colSelected);
    std::vector<std::wstring> SelectedNames() const;
    bool ShowCat(const std::wstring& sName);
    std::vector<std::wstring> LevelEntries() const;
    void FillLevels();
    void FillSongs();
    std::vector<std::wstring> MapCuts();
    void EnableSongs(bool bEnable);
    SelectorControl VisibleSongs() const;
    std::size_t Refill(SelectorControl eList, const std::vector<std::wstring>& colEntries);
    std::shared_ptr<clsCat> MainCatNamed(const std::wstring& sName) const;
    bool MakeCurrent(SelectorControl eList, const std::wstring& sText);
    CatCollection CatsOf(const Cut& cCut);
    void Missing(const wchar_t* sWhat, const std::wstring& sKey);

    CatSelectorView& m_cView;
    ModScheduler& m_cMod;
    std::shared_ptr<clsSchedMan> m_cSchedMan;
    std::shared_ptr<CatCollection> m_colMainCats;
    std::shared_ptr<clsCat> m_cMainCat;
    std::shared_ptr<clsCat> m_cSubCat;
    CutCollection m_colCutMap; // keyed by display text
    CategoryNames m_names;
    std::vector<std::wstring> m_colHidden; // selected names that are not listed now
    std::size_t m_cats = 0;                // entries of lstCat
    std::size_t m_levels = 0;              // entries of lstlvl
    std::size_t m_songs = 0;               // entries of the visible list of cuts
    TypeAhead m_typed;
    SelectorControl m_eTyped = SelectorControl::lstCat; // the list it was typed in
    bool m_bMulti = false;
    bool m_bOpener = false;
    bool m_bPopulating = false;
    bool m_bBusy = false;
    bool m_bInClick = false;
};

} // namespace ravlo
