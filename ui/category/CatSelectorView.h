// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace ravlo
{

// The controls of the category selector, in the order of their tab indexes.
enum class SelectorControl
{
    lstCat,         // names of the main categories; more than one can be selected
    lstlvl,         // level numbers, then "ALL"; one can be selected
    lstsongs0,      // cuts in alphabetical order; more than one can be selected
    lstsongs1,      // cuts in schedule order
    chkOpener,      // "Filter for &Openers Only"
    chkSortedSongs, // "&Sorted alphabetically"
    lblMatch,       // "Songs Matching Criteria:" at first
};

// The selector on the screen. Reports the user's clicks, but not changes made by its presenter. Positions
// count from 0.
class CatSelectorView
{
public:
    virtual ~CatSelectorView() = default;

    // Replaces a list's entries; nothing is current or selected afterwards. lstsongs0 puts them into the
    // alphabetical order of the user's language, the others keep the given one.
    virtual void SetEntries(SelectorControl eList, const std::vector<std::wstring>& colEntries) = 0;
    virtual std::wstring EntryText(SelectorControl eList, std::size_t entry) const = 0;
    // The current entry has the caret; nothing when there is none.
    virtual std::optional<std::size_t> CurrentEntry(SelectorControl eList) const = 0;
    // In a list of single choice the current entry is also the selected one.
    virtual void SetCurrentEntry(SelectorControl eList, std::size_t entry) = 0;
    // The selected (highlighted) entries, top to bottom.
    virtual std::vector<std::size_t> SelectedEntries(SelectorControl eList) const = 0;
    virtual void SelectEntry(SelectorControl eList, std::size_t entry, bool bSelect) = 0;
    // Takes the highlight off every entry, and in a list of single choice the current one.
    virtual void ClearSelection(SelectorControl eList) = 0;

    virtual void Enable(SelectorControl eControl, bool bEnable) = 0;
    virtual void Show(SelectorControl eControl, bool bShow) = 0;
    virtual bool Visible(SelectorControl eControl) const = 0;
    virtual bool Checked(SelectorControl eControl) const = 0;
    virtual void Check(SelectorControl eControl, bool bCheck) = 0;
    virtual void SetMatchText(const std::wstring& sText) = 0;
    virtual void Focus(SelectorControl eControl) = 0;
    virtual void Hourglass(bool bOn) = 0; // the application's mouse pointer; false is the default one
};

} // namespace ravlo
