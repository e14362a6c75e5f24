// SPDX-License-Identifier: MIT
#pragma once

#include "ui/library/LibraryCommand.h"
#include "ui/library/LibraryDialogs.h"
#include "ui/library/LibraryPanes.h"
#include "ui/library/LibraryResults.h"
#include "ui/library/LibraryWork.h"

#include <string>
#include <utility>

namespace ravlo
{

// The commands of the library window's Rotation menu. What is shown or explained is the level in the grid.
class LibraryRotation
{
public:
    // Owns none of them.
    LibraryRotation(LibraryPanes& cPanes, LibraryWork& cWork, LibraryResults& cResults, ModScheduler& cMod)
        : m_cPanes(cPanes), m_cWork(cWork), m_cResults(cResults), m_cMod(cMod)
    {
    }

    const LibraryDialogs& Dialogs() const noexcept { return m_dialogs; }
    void SetDialogs(LibraryDialogs dialogs) { m_dialogs = std::move(dialogs); }

    void Undo(clsSchedMan& cSchedMan);
    void Redo(clsSchedMan& cSchedMan);
    // Shuffle and Spread give the ticked categories another order, after a question.
    void Shuffle(clsSchedMan& cSchedMan);
    void Spread(clsSchedMan& cSchedMan);
    void SwitchFairRotation(clsSchedMan& cSchedMan);
    void ExplainNext(clsSchedMan& cSchedMan);
    void ShowNextCuts(clsSchedMan& cSchedMan);
    void ShowHealth(clsSchedMan& cSchedMan);

    // For a command of another menu: enabled, with its own caption. Throws nothing.
    MenuItem ItemOf(LibraryCommand eCommand) const noexcept;

private:
    void Reverse(clsSchedMan& cSchedMan, std::wstring (clsSchedMan::*reverse)());
    void ReorderChecked(clsSchedMan& cSchedMan,
                        void (clsSchedMan::*reorder)(const Cats& colCats, bool bConfirmFirst),
                        const std::wstring& sVerb, const std::wstring& sDone);
    std::wstring ShownLevelKey(const clsSchedMan& cSchedMan) const;

    LibraryPanes& m_cPanes;
    LibraryWork& m_cWork;
    LibraryResults& m_cResults;
    ModScheduler& m_cMod;
    LibraryDialogs m_dialogs;
};

} // namespace ravlo
