// SPDX-License-Identifier: MIT
#include "ui/library/GridFind.h"

#include "base/Text.h"

#include <algorithm>
#include <exception>
#include <optional>
#include <utility>

namespace ravlo
{

namespace
{

// Each field with its end behind it; empty for one that cannot be read.
std::string FieldsOf(const Cut& cCut)
{
    std::string sFields;
    for (const auto TextOfCut : {&Cut::Artist, &Cut::Title, &Cut::Album, &Cut::Path})
    {
        try
        {
            sFields += FoldForSearch((cCut.*TextOfCut)());
        }
        catch (const std::exception&)
        {
            // A cut that cannot be read is found by its other fields.
        }
        sFields += SearchWords::cFieldEnd;
    }
    return sFields;
}

} // namespace

GridFind::GridFind(clsSchedLibGridPresenter& cGrid, FindBarView& cBar, LibraryWork& cWork, ModScheduler& cMod)
    : m_cGrid(cGrid), m_cBar(cBar), m_cWork(cWork), m_cMod(cMod)
{
    m_cGrid.Arrangers.emplace_back(
        [this](ViewOrder& cOrder, const EarlierRows& cEarlier) { Arrange(cOrder, cEarlier); });
}

// ---- what the user does ----

void GridFind::OpenBar()
{
    if (!std::exchange(m_bOpen, true))
    {
        m_cBar.ShowBar(true);
        m_bPending = true;
        Step();
    }
    m_cBar.FocusQuery();
}

void GridFind::QueryChanged(const std::wstring& sQuery)
{
    m_words = SearchWords(sQuery);
    m_bPending = true;
    Step();
}

bool GridFind::CloseBar()
{
    if (!HideBar())
        return false;
    Step();
    m_cBar.FocusList();
    return true;
}

void GridFind::Leave()
{
    if (HideBar())
        Proceed();
}

// What that means for the list is pending afterwards. False when the bar was not open.
bool GridFind::HideBar()
{
    if (!std::exchange(m_bOpen, false))
        return false;
    m_words = SearchWords();
    m_bPending = true;
    m_cBar.SetQuery(L"");
    m_cBar.ShowBar(false);
    return true;
}

void GridFind::GoToList()
{
    if (m_cGrid.RowCount() != 0 && m_cGrid.SelectedRows().empty())
        m_cGrid.SelectCurrentRow();
    m_cBar.FocusList();
}

// ---- steps ----

void GridFind::Step()
{
    if (!m_bPending && AllRead())
        return;
    if (m_cWork.Running())
        return m_cBar.AskForStep();
    if (m_bPending)
        m_cWork.UserActs();
    m_cWork.GoOn(L"frmUILib.Find", [this](clsSchedMan&) { Proceed(); });
}

void GridFind::Proceed()
{
    m_bPending = false;
    if (m_bOpen && m_colEntries.size() != m_cGrid.ListedCount())
        List(nullptr);
    else if (!m_bOpen)
        m_colEntries.clear();
    m_read = std::min(m_read, m_colEntries.size());
    const bool bWasNarrowed = m_cGrid.Order().IsNarrowed();
    const bool bMatchChanged = Match();
    const bool bReadChanged = ReadOn();
    const bool bNarrows = !m_matched.Empty();
    if (bNarrows != bWasNarrowed || (bNarrows && (bMatchChanged || bReadChanged)))
        m_cGrid.Rearrange([this](ViewOrder& cOrder) { Narrow(cOrder); });
    m_cGrid.SetIncomplete(bNarrows && !AllRead());
    ShowCount();
    if (m_bPending || !AllRead())
        m_cBar.AskForStep();
}

void GridFind::Arrange(ViewOrder& cOrder, const EarlierRows& cEarlier)
{
    if (!m_bOpen)
        return m_colEntries.clear(); // they are of the cuts listed before
    List(&cEarlier);
    Match();
    ReadOn();
    Narrow(cOrder);
    m_cGrid.SetIncomplete(!m_matched.Empty() && !AllRead());
    ShowCount();
    if (!AllRead())
        m_cBar.AskForStep();
}

// ---- reading and matching ----

// Takes over what was read of the same cuts before.
void GridFind::List(const EarlierRows* pEarlier)
{
    const std::vector<Entry> colBefore = std::exchange(m_colEntries, {});
    m_colEntries.resize(m_cGrid.ListedCount());
    m_read = 0;
    m_found = 0;
    m_matched = SearchWords();
    for (std::size_t i = 0; i < m_colEntries.size(); ++i)
    {
        Entry& entry = m_colEntries[i];
        entry.cCut = m_cGrid.ListedCut(i);
        const std::optional<std::size_t> before = pEarlier ? pEarlier->Of(i) : std::nullopt;
        if (!before || *before >= colBefore.size() || !colBefore[*before].bKnown)
            continue;
        entry.sFields = colBefore[*before].sFields;
        entry.bKnown = SetFound(entry, true);
    }
}

// Reads for a step's time. Returns whether other cuts are found now.
bool GridFind::ReadOn()
{
    const Clock& cClock = m_cMod.Ports().cClock;
    const std::uint32_t lStart = cClock.TickCount();
    bool bChanged = false;
    while (!AllRead() && cClock.TickCount() - lStart < lStepMs)
        bChanged |= Read(m_colEntries[m_read++]);
    return bChanged;
}

bool GridFind::Read(Entry& entry)
{
    std::string sFields = FieldsOf(*entry.cCut);
    if (entry.bKnown && sFields == entry.sFields)
        return false;
    entry.sFields = std::move(sFields);
    entry.bKnown = true;
    return SetFound(entry, m_matched.FoundIn(entry.sFields));
}

// Matches what is known with the words as they are typed now. Returns whether other cuts are found.
bool GridFind::Match()
{
    const bool bFewer = m_words.NarrowerThan(m_matched);
    bool bChanged = false;
    for (Entry& entry : m_colEntries)
        if (entry.bKnown && (entry.bFound || !bFewer))
            bChanged |= SetFound(entry, m_words.FoundIn(entry.sFields));
    m_matched = m_words;
    return bChanged;
}

// Returns whether it was another value before.
bool GridFind::SetFound(Entry& entry, bool bFound)
{
    if (std::exchange(entry.bFound, bFound) == bFound)
        return false;
    bFound ? ++m_found : --m_found;
    return true;
}

void GridFind::Narrow(ViewOrder& cOrder) const
{
    std::vector<bool> bKept;
    if (!m_matched.Empty())
        for (const Entry& entry : m_colEntries)
            bKept.push_back(entry.bFound);
    cOrder.Narrow(std::move(bKept));
}

void GridFind::ShowCount()
{
    if (m_matched.Empty())
        return m_cBar.SetCount(L"");
    const wchar_t* sMore = AllRead() ? L"" : L"\u2026";
    m_cBar.SetCount(CountText(m_found) + L" of " + CountText(m_colEntries.size()) + sMore);
}

} // namespace ravlo
