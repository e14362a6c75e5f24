// SPDX-License-Identifier: MIT
#pragma once

#include "ui/controls/PopUpItem.h"
#include "ui/library/GridHeadings.h"
#include "ui/library/LibraryCuts.h"
#include "ui/library/LibraryPanes.h"
#include "ui/library/LibraryResults.h"
#include "ui/library/LibraryRotation.h"
#include "ui/library/LibraryWork.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace ravlo
{

// The menu of the selected cuts. What is not possible is grey.
class CutMenu
{
public:
    // Owns none of them.
    CutMenu(LibraryPanes& cPanes, LibraryCuts& cCuts, LibraryRotation& cRotation, GridHeadings& cHeadings,
            LibraryResults& cResults, LibraryWork& cWork, clsSchedLibGridView& cGridView);

    void ShowMenu();

private:
    // What is selected, when the menu opens.
    struct Selection
    {
        std::size_t count = 0;
        bool bMayMove = false;
        std::wstring sShown; // the name of the level or category that is shown; empty for all audio
        std::vector<std::wstring> colTargets; // node keys of the recent ones that exist
    };

    Selection Selected() const;
    PopUpMenu Items(const Selection& selection);
    PopUpItem Targets(const wchar_t* sCaption, eCatDragOptions eOption, const Selection& selection);
    bool MayExplain(const Selection& selection) const;
    std::optional<std::size_t> OnlyRow() const; // that is selected
    void Edit();
    void Explain();

    LibraryPanes& m_cPanes;
    LibraryCuts& m_cCuts;
    LibraryRotation& m_cRotation;
    GridHeadings& m_cHeadings;
    LibraryResults& m_cResults;
    LibraryWork& m_cWork;
    clsSchedLibGridView& m_cGridView;
};

} // namespace ravlo
