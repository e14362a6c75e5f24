// SPDX-License-Identifier: MIT
#pragma once

#include "scheduler/clsSchedMan.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace ravlo
{

// The contents of a category tree and a cut grid, those of the library window or those that a host passes.
// All are snapshots, since a host may change categories while its tree and grid are filled.

inline constexpr const wchar_t* sImageOpen = L"Open";
inline constexpr const wchar_t* sImageClosed = L"Closed";

struct TreeNode
{
    std::wstring sParentKey; // empty for the root
    std::wstring sKey;
    std::wstring sText;
    bool bSorted = false; // its children, by text
};
// The nodes of a category tree, parents before their children: the root "ALL AUDIO", a node per main category
// and one per level. A category named "ALL AUDIO" is left out. Null colMainCats gives no nodes.
std::vector<TreeNode> NodesOf(const CatCollection* colMainCats);

// The cuts that a tree node names, in the order of a grid's rows.
struct ListedCuts
{
    // Consecutive rows from one level.
    struct Run
    {
        std::shared_ptr<clsCat> cLevel;
        std::size_t end = 0; // one past its last row, from 0
    };
    std::wstring strCatKey; // of the node, normalised: name TAB level
    bool bShowingAllAudio = false;
    bool bShowingMoreThanOneLevel = false; // a main category
    std::shared_ptr<clsCat> cCatShown;     // null for all audio, or when there is no such category
    std::wstring sWhat;                    // is shown, for the user
    Cuts colCuts;
    std::vector<TextKey> colKeys; // one per cut; none for all audio, whose cuts would have to be read
    std::vector<Run> colRuns;     // none for all audio
    std::weak_ptr<CatCollection> colMainCats; // that the cuts were listed from
};
// Lists every cut of the database ("ALL AUDIO"), all levels of a main category, or one level in schedule
// order, and reports progress. An unknown category or level gives an empty list and a line in the debug log.
// Returns nothing without main categories.
std::optional<ListedCuts> ListCuts(clsSchedMan& cSchedMan, const std::wstring& strCatKey);

// Reports the filling of a grid with listed cuts as progress.
class FillingReport
{
public:
    FillingReport(clsSchedMan& cSchedMan, const ListedCuts& listed);
    // Call after each row given to a host, with its number from 1. Pauses or reports at every 50th.
    void RowFilled(std::size_t row);
    void Done();

private:
    clsSchedMan& m_cSchedMan;
    std::wstring m_sWhat;
    std::size_t m_rows;
    std::uint32_t m_lLast; // report, by the clock's tick count
};

} // namespace ravlo
