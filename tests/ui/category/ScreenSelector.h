// SPDX-License-Identifier: MIT
#pragma once

#include "base/CaseFolding.h"
#include "ui/category/CatSelectorView.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace ravlo::test
{

using Texts = std::vector<std::wstring>;

// The selector's controls without a screen: each list with its entries, caret and highlight.
class ScreenSelector final : public CatSelectorView
{
public:
    struct List
    {
        Texts colEntries;
        std::optional<std::size_t> current;
        std::set<std::size_t> lSelected;
    };

    std::map<SelectorControl, List> lists;
    std::map<SelectorControl, bool> enabled;
    std::map<SelectorControl, bool> visible;
    std::map<SelectorControl, bool> checked;
    std::wstring sMatch = L"Songs Matching Criteria:";
    std::optional<SelectorControl> eFocus;
    bool bHourglass = false;
    bool bLevelsHidden = false;
    int lSongFillings = 0;

    Texts Entries(SelectorControl eList) { return lists[eList].colEntries; }
    Texts Selected(SelectorControl eList)
    {
        Texts colTexts;
        for (const std::size_t entry : lists[eList].lSelected)
            colTexts.push_back(lists[eList].colEntries[entry]);
        return colTexts;
    }
    std::wstring Current(SelectorControl eList)
    {
        const List& list = lists[eList];
        return list.current ? list.colEntries[*list.current] : L"none";
    }

    void SetEntries(SelectorControl eList, const Texts& colEntries) override
    {
        lists[eList] = {colEntries, std::nullopt, {}};
        if (eList == SelectorControl::lstsongs0)
            std::stable_sort(lists[eList].colEntries.begin(), lists[eList].colEntries.end(),
                             [](const std::wstring& a, const std::wstring& b) {
                return FoldCase(a) < FoldCase(b);
            });
        if (eList == SelectorControl::lstsongs0 || eList == SelectorControl::lstsongs1)
            lSongFillings += colEntries.empty() ? 0 : 1;
    }
    std::wstring EntryText(SelectorControl eList, std::size_t entry) const override
    {
        return lists.at(eList).colEntries.at(entry);
    }
    std::optional<std::size_t> CurrentEntry(SelectorControl eList) const override
    {
        const auto it = lists.find(eList);
        return it == lists.end() ? std::nullopt : it->second.current;
    }
    void SetCurrentEntry(SelectorControl eList, std::size_t entry) override
    {
        lists[eList].current = entry;
        if (eList == SelectorControl::lstlvl)
            lists[eList].lSelected = {entry};
    }
    std::vector<std::size_t> SelectedEntries(SelectorControl eList) const override
    {
        const auto it = lists.find(eList);
        return it == lists.end()
                   ? std::vector<std::size_t>()
                   : std::vector<std::size_t>(it->second.lSelected.begin(), it->second.lSelected.end());
    }
    void SelectEntry(SelectorControl eList, std::size_t entry, bool bSelect) override
    {
        if (bSelect)
            lists[eList].lSelected.insert(entry);
        else
            lists[eList].lSelected.erase(entry);
    }
    void ClearSelection(SelectorControl eList) override
    {
        lists[eList].lSelected.clear();
        if (eList == SelectorControl::lstlvl)
            lists[eList].current.reset();
    }
    void Enable(SelectorControl eControl, bool bEnable) override { enabled[eControl] = bEnable; }
    void Show(SelectorControl eControl, bool bShow) override { visible[eControl] = bShow; }
    bool Visible(SelectorControl eControl) const override
    {
        if (eControl == SelectorControl::lstlvl)
            return !bLevelsHidden;
        const auto it = visible.find(eControl);
        return it == visible.end() || it->second;
    }
    bool Checked(SelectorControl eControl) const override
    {
        const auto it = checked.find(eControl);
        return it != checked.end() && it->second;
    }
    void Check(SelectorControl eControl, bool bCheck) override { checked[eControl] = bCheck; }
    void SetMatchText(const std::wstring& sText) override { sMatch = sText; }
    void Focus(SelectorControl eControl) override { eFocus = eControl; }
    void Hourglass(bool bOn) override { bHourglass = bOn; }
};

} // namespace ravlo::test
