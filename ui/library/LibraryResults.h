// SPDX-License-Identifier: MIT
#pragma once

#include "scheduler/UndoTexts.h"
#include "ui/library/LibraryWork.h"
#include "ui/library/clsSchedLibGridPresenter.h"
#include "ui/library/frmUILibView.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace ravlo
{

// What a command works on, by main categories where it takes the whole of one: all its levels are listed, or
// none. With bWhole it takes the whole of each main category that is listed, as shuffling does.
Cats Grouped(const Cats& colCats, bool bWhole);
// The number of cuts in grouped categories.
std::size_t CutsIn(const Cats& colGrouped);
// Grouped categories by name, more than three by number, and their cuts: "pop 1 (583 cuts)".
std::wstring CatsText(const Cats& colGrouped);
// A node's category, or category and level: "Rock", "Rock 1".
std::wstring NodeText(const std::wstring& sKey);
// "m:ss", from an hour on "h:mm:ss".
std::wstring LengthText(std::int64_t milliseconds);

// The status bar's text about the user's work: what the last command did, how many cuts an open question
// concerns, or how many cuts are selected and how long they play.
class LibraryResults
{
public:
    // Owns none of them.
    LibraryResults(frmUILibView& cView, const clsSchedLibGridPresenter& cGrid, const LibraryWork& cWork,
                   ModScheduler& cMod)
        : m_cView(cView), m_cGrid(cGrid), m_cWork(cWork), m_cMod(cMod)
    {
    }

    // What the running command has done. Shown at its end, until the user does something else; a refresh
    // keeps it. The same result again says how often: the user must see that it was done once more.
    void Say(const std::wstring& sResult);
    // As Say, for a command that has changed nothing: why, or what comes next.
    void Remark(const std::wstring& sRemark);
    // The last step to undo, made in a window that was open; nothing when that is still sUndoBefore.
    void SayLastStep(const clsSchedMan& cSchedMan, const std::wstring& sUndoBefore);
    // The next step to undo, when a program was killed in it.
    void SayInterrupted(const clsSchedMan& cSchedMan);
    // How many cuts the question concerns that is about to be asked. Shown at once, until the command's end.
    void Concern(std::size_t cuts);
    // The user has begun a command; a command or a refresh has ended and nothing runs any more.
    void UserActs() noexcept { m_bShowsResult = false; }
    void WorkEnded() noexcept;

    // The selection may have changed. Does nothing while a command runs. Costs next to nothing, so it may be
    // called for each row.
    void SelectionChanged();
    // Shows the selection, when SelectionChanged has asked the view to call this. Reading the lengths of very
    // many cuts takes several calls; until the last one only their number is shown.
    void ShowSelection();

private:
    bool AddLengths();
    void AskForSelection();

    frmUILibView& m_cView;
    const clsSchedLibGridPresenter& m_cGrid;
    const LibraryWork& m_cWork;
    ModScheduler& m_cMod;
    std::wstring m_sResult; // of the running command
    std::wstring m_sDone;   // what was said last, and how often in a row
    std::size_t m_times = 0;
    bool m_bShowsResult = false;
    bool m_bAsked = false;   // the view will call ShowSelection
    bool m_bReading = false; // a cut's length; a host's cut may let anything run
    bool m_bChanged = false; // since m_colCuts were read
    Cuts m_colCuts;          // the selected ones
    std::size_t m_added = 0; // of these
    std::int64_t m_length = 0;
};

} // namespace ravlo
