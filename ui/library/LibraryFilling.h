// SPDX-License-Identifier: MIT
#pragma once

#include "scheduler/clsSchedMan.h"
#include "ui/library/LibraryTargets.h"

#include <memory>
#include <optional>
#include <string>

namespace ravlo
{

inline constexpr const wchar_t* sImageOpen = L"Open";
inline constexpr const wchar_t* sImageClosed = L"Closed";

// Rebuilds a tree from the main categories: the root "ALL AUDIO", a node per main category and one per level,
// all closed, children sorted by text, the root expanded. Null colMainCats leaves an empty tree. A category
// named "ALL AUDIO" is left out.
void PopulateTreeView(const CatCollection* colMainCats, TreeTarget& cTree);

// Adds the ten columns to a grid that has none.
void EnsureColumns(GridTarget& cGrid);

// What ShowGridCuts showed.
struct ShownCuts
{
    std::wstring strCatKey; // normalised: name TAB level
    bool bShowingAllAudio = false;
    bool bShowingMoreThanOneLevel = false; // a main category
    std::shared_ptr<clsCat> cCatShown;     // null for all audio, or when there is no such category
};

// Fills a grid with the cuts that a tree node's key names: every cut of the database ("ALL AUDIO"), all
// levels of a main category, or one level in schedule order. An unknown category or level lists nothing and
// is noted in the debug log. cTree and cProgress may be null. Nothing, and nothing is changed, without main
// categories.
std::optional<ShownCuts> ShowGridCuts(clsSchedMan& cSchedMan, CellGrid& cGrid, const std::wstring& strCatKey,
                                      TreeImages* cTree, ProgressTarget* cProgress);
std::optional<ShownCuts> ShowGridCuts(clsSchedMan& cSchedMan, CutGrid& cGrid, const std::wstring& strCatKey,
                                      TreeImages* cTree, ProgressTarget* cProgress);

} // namespace ravlo
