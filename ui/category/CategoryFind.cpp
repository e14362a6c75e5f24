// SPDX-License-Identifier: MIT
#include "ui/category/CategoryFind.h"

#include "base/Text.h"

#include <utility>

namespace ravlo
{

CategoryFind::CategoryFind(CatSelectorPresenter& cSelector, FindBarView& cBar)
    : m_cSelector(cSelector), m_cBar(cBar)
{
    m_cSelector.CategoriesListed = [this] { OnListed(); };
}

void CategoryFind::OpenBar()
{
    if (!std::exchange(m_bOpen, true))
        m_cBar.ShowBar(true);
    m_cBar.FocusQuery();
}

void CategoryFind::QueryChanged(const std::wstring& sQuery)
{
    m_bNarrowed = false; // an empty query does not close the bar
    m_cSelector.NarrowCategories(sQuery);
}

bool CategoryFind::CloseBar()
{
    if (!std::exchange(m_bOpen, false))
        return false;
    QueryChanged(L"");
    m_cBar.SetQuery(L"");
    m_cBar.ShowBar(false);
    m_cBar.FocusList();
    return true;
}

void CategoryFind::GoToList()
{
    m_cSelector.ChooseFound();
    m_cBar.FocusList();
}

void CategoryFind::OnListed()
{
    const CategoryNames& names = m_cSelector.Names();
    if (std::exchange(m_bNarrowed, names.Narrowed()) && !names.Narrowed())
        CloseBar();
    if (!names.Narrowed())
        return m_cBar.SetCount(L"");
    std::wstring sCount = CountText(names.Shown().size()) + L" of " + CountText(names.All().size());
    if (const std::size_t hidden = m_cSelector.HiddenSelected(); hidden != 0)
        sCount += L", " + CountText(hidden) + L" selected not shown";
    m_cBar.SetCount(sCount);
}

} // namespace ravlo
