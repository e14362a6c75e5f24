// SPDX-License-Identifier: MIT
#include "ui/library/TreeFind.h"

#include "base/Text.h"

#include <algorithm>
#include <utility>

namespace ravlo
{

TreeFind::TreeFind(CategoryTreePresenter& cTree, CategoryTreeView& cTreeView, FindBarView& cBar,
                   frmUILibView& cView, LibraryWork& cWork)
    : m_cTree(cTree), m_cTreeView(cTreeView), m_cBar(cBar), m_cView(cView), m_cWork(cWork)
{
}

void TreeFind::OpenBar()
{
    if (!std::exchange(m_bOpen, true))
        m_cBar.ShowBar(true);
    m_cBar.FocusQuery();
}

void TreeFind::QueryChanged(const std::wstring& sQuery)
{
    m_words = SearchWords(sQuery);
    m_bPending = true;
    Step();
}

bool TreeFind::CloseBar()
{
    if (!std::exchange(m_bOpen, false))
        return false;
    QueryChanged(L"");
    m_cBar.SetQuery(L"");
    m_cBar.ShowBar(false);
    m_cBar.FocusList();
    return true;
}

void TreeFind::GoToList()
{
    const std::vector<CategoryTreePresenter::Node> colVisible = m_cTree.Visible();
    if (!m_cTreeView.Selected() && !colVisible.empty())
        m_cTreeView.Select(colVisible[std::min<std::size_t>(1, colVisible.size() - 1)]);
    m_cBar.FocusList();
}

void TreeFind::Reveal(CategoryTreePresenter::Node node)
{
    if (!m_cTree.At(node).bHidden)
        return;
    m_bOpen = false;
    m_words = SearchWords();
    m_bPending = false;
    m_cBar.SetQuery(L"");
    m_cBar.ShowBar(false);
    Apply();
}

// A tree that a command works on is not changed under it.
void TreeFind::Step()
{
    if (!m_bPending)
        return;
    if (m_cWork.Running())
        return m_cBar.AskForStep();
    m_bPending = false;
    m_cWork.Handle(L"frmUILib.Find", [this](clsSchedMan&) { Apply(); });
}

void TreeFind::Apply()
{
    if (const std::optional<CategoryTreePresenter::Node> selected = m_cTreeView.Selected())
        m_sSelected = m_cTree.At(*selected).sKey;
    if (m_cTree.Narrow(m_words))
    {
        m_cTreeView.ShowTree(m_cTree);
        if (const std::optional<CategoryTreePresenter::Node> node = m_cTree.Find(m_sSelected);
            node && !m_cTree.At(*node).bHidden)
            m_cTreeView.Select(*node);
    }
    ShowCount();
}

void TreeFind::TreeFilled()
{
    if (m_bOpen)
        ShowCount();
}

void TreeFind::ShowCount()
{
    const CategoryTreePresenter::Narrowed narrowed = m_cTree.NarrowedTo();
    if (m_words.Empty())
        return m_cBar.SetCount(L"");
    m_cBar.SetCount(CountText(narrowed.shown) + L" of " + CountText(narrowed.categories));
    SayHiddenTicks();
}

void TreeFind::SayHiddenTicks()
{
    const CategoryTreePresenter::Narrowed narrowed = m_cTree.NarrowedTo();
    if (narrowed.hiddenTicks == 1)
        m_cView.SetStatus(L"1 checked node is not shown.", L"");
    else if (narrowed.hiddenTicks > 1)
        m_cView.SetStatus(CountText(narrowed.hiddenTicks) + L" checked nodes are not shown.", L"");
}

} // namespace ravlo
