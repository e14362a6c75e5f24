// SPDX-License-Identifier: MIT
#pragma once

#include "base/SearchText.h"
#include "ui/controls/FindBarView.h"
#include "ui/library/CategoryTreePresenter.h"
#include "ui/library/LibraryWork.h"

#include <string>

namespace ravlo
{

// Narrows the category tree to main categories that contain each word of the query in their name or in one of
// their levels' numbers, with all their levels. Ticking by the user, by the menu and by a main category acts
// on nodes that are shown; ticks of hidden ones stay and still count for the commands, whose questions name
// them, and the status bar says how many are not shown.
class TreeFind final : public FindBarListener
{
public:
    // Owns none of them.
    TreeFind(CategoryTreePresenter& cTree, CategoryTreeView& cTreeView, FindBarView& cBar,
             frmUILibView& cView, LibraryWork& cWork);
    TreeFind(const TreeFind&) = delete;
    TreeFind& operator=(const TreeFind&) = delete;

    // Ctrl+Shift+F, and Ctrl+F in the tree.
    void OpenBar();
    // Call after the tree was filled.
    void TreeFilled();
    // Says how many checked nodes are not shown, if any: commands act on them, too.
    void SayHiddenTicks();
    // Closes the bar when it hides the node.
    void Reveal(CategoryTreePresenter::Node node);

    void QueryChanged(const std::wstring& sQuery) override;
    bool CloseBar() override;
    // Selects the first category when the selected one is hidden.
    void GoToList() override;
    void Step() override;

private:
    void Apply();
    void ShowCount();

    CategoryTreePresenter& m_cTree;
    CategoryTreeView& m_cTreeView;
    FindBarView& m_cBar;
    frmUILibView& m_cView;
    LibraryWork& m_cWork;
    bool m_bOpen = false;
    bool m_bPending = false; // the words are not applied yet
    SearchWords m_words;
    std::wstring m_sSelected; // the key of the node selected last, which may be hidden
};

} // namespace ravlo
