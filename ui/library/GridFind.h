// SPDX-License-Identifier: MIT
#pragma once

#include "base/SearchText.h"
#include "ui/controls/FindBarView.h"
#include "ui/library/LibraryWork.h"
#include "ui/library/clsSchedLibGridPresenter.h"

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace ravlo
{

// Narrows the cut grid to what the user finds: cuts whose artist, title, album and path contain each word of
// the query. The query stays when another node is shown, or the same one again, and is applied to its cuts.
//
// Reading the texts of a large library takes longer than a person waits for a key. So they are read in short
// steps from the moment the bar opens. A cut that is not read yet is not found yet, and the count ends in
// dots until all are read. What was read is used again when the same cuts are listed again, and then checked
// in further steps, since any of them may have been edited.
class GridFind final : public FindBarListener
{
public:
    // Owns none of them. Narrows every list that the grid shows from now on.
    GridFind(clsSchedLibGridPresenter& cGrid, FindBarView& cBar, LibraryWork& cWork, ModScheduler& cMod);
    GridFind(const GridFind&) = delete;
    GridFind& operator=(const GridFind&) = delete;

    // Ctrl+F.
    void OpenBar();
    // Closes the bar at once, also while something runs, without moving the focus.
    void Leave();

    void QueryChanged(const std::wstring& sQuery) override;
    bool CloseBar() override;
    // Selects a row when none is selected.
    void GoToList() override;
    void Step() override;

private:
    // A listed cut and its fields, folded.
    struct Entry
    {
        std::shared_ptr<Cut> cCut;
        std::string sFields;
        bool bKnown = false; // has been read, though perhaps not since it was listed again
        bool bFound = false;
    };

    bool AllRead() const noexcept { return m_read == m_colEntries.size(); }
    bool HideBar();
    void Proceed();
    void Arrange(ViewOrder& cOrder, const EarlierRows& cEarlier);
    void List(const EarlierRows* pEarlier);
    bool ReadOn();
    bool Read(Entry& entry);
    bool Match();
    bool SetFound(Entry& entry, bool bFound);
    void Narrow(ViewOrder& cOrder) const;
    void ShowCount();

    clsSchedLibGridPresenter& m_cGrid;
    FindBarView& m_cBar;
    LibraryWork& m_cWork;
    ModScheduler& m_cMod;
    bool m_bOpen = false;
    bool m_bPending = false;         // what was typed, opened or closed is not applied yet
    SearchWords m_words;             // as typed
    SearchWords m_matched;           // which the entries were matched with
    std::vector<Entry> m_colEntries; // by listed row; none while the bar is closed
    std::size_t m_read = 0;          // entries, from the first one on, read since they were listed
    std::size_t m_found = 0;
};

} // namespace ravlo
