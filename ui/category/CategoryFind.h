// SPDX-License-Identifier: MIT
#pragma once

#include "ui/category/CatSelectorPresenter.h"
#include "ui/controls/FindBarView.h"

#include <string>

namespace ravlo
{

// Narrows the category selector's list of categories to those whose names contain each word of the query.
// Selected categories stay selected while they are hidden, and the count says how many these are.
class CategoryFind final : public FindBarListener
{
public:
    // Owns neither. Listens to the selector, and closes the bar when the selector shows all categories.
    CategoryFind(CatSelectorPresenter& cSelector, FindBarView& cBar);
    CategoryFind(const CategoryFind&) = delete;
    CategoryFind& operator=(const CategoryFind&) = delete;

    // Ctrl+F.
    void OpenBar();
    bool IsOpen() const noexcept { return m_bOpen; }

    void QueryChanged(const std::wstring& sQuery) override;
    bool CloseBar() override;
    void GoToList() override;

private:
    void OnListed();

    CatSelectorPresenter& m_cSelector;
    FindBarView& m_cBar;
    bool m_bOpen = false;
    bool m_bNarrowed = false;
};

} // namespace ravlo
