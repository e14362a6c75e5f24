// SPDX-License-Identifier: MIT
#include "ui/library/LibraryResults.h"

#include "base/ScopedFlag.h"
#include "base/Text.h"
#include "scheduler/CategoryEditing.h"
#include "scheduler/StepParts.h"
#include "ui/library/NodeKey.h"

#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace ravlo
{

namespace
{

// One call of ShowSelection reads lengths for this long, and looks at the clock after this many: a host's
// database may take a microsecond or a hundred for each.
constexpr std::uint32_t lReadMs = 15;
constexpr std::size_t cutsPerLook = 64;

std::wstring TwoDigits(std::int64_t value) { return (value < 10 ? L"0" : L"") + DecimalText(value); }

// 0 for a cut that cannot be read.
std::int64_t LengthOf(const Cut& cCut)
{
    try
    {
        return cCut.DurationmS();
    }
    catch (const std::exception&)
    {
        return 0;
    }
}

} // namespace

Cats Grouped(const Cats& colCats, bool bWhole)
{
    std::unordered_map<const clsCat*, std::size_t> colLevels; // by main category: how many are listed
    std::unordered_set<const clsCat*> colListed;
    for (const std::shared_ptr<clsCat>& cCat : colCats)
        if (colListed.insert(cCat.get()).second && cCat->CatLevel() != 0)
            ++colLevels[cCat->MainCat().get()];
    const auto IsWhole = [&](const clsCat& cMainCat) {
        const auto levels = colLevels.find(&cMainCat);
        return colListed.contains(&cMainCat) &&
               (bWhole || levels == colLevels.end() || levels->second == cMainCat.SubCats()->Count());
    };
    Cats colGrouped;
    for (const std::shared_ptr<clsCat>& cCat : colCats)
        if (cCat->CatLevel() == 0 ? IsWhole(*cCat) : !IsWhole(*cCat->MainCat()))
            colGrouped.push_back(cCat);
    return colGrouped;
}

std::size_t CutsIn(const Cats& colGrouped)
{
    std::size_t cuts = 0;
    for (const std::shared_ptr<clsCat>& cCat : colGrouped)
        if (cCat->CatLevel() != 0)
            cuts += cCat->SchedCuts()->Count();
        else
            for (const std::shared_ptr<clsCat>& cLevel : *cCat->SubCats())
                cuts += cLevel->SchedCuts()->Count();
    return cuts;
}

std::wstring CatsText(const Cats& colGrouped)
{
    constexpr std::size_t mostNamed = 3;
    const std::wstring sNames = colGrouped.size() <= mostNamed
                                    ? ListCats(colGrouped)
                                    : CountText(colGrouped.size()) + L" categories and levels";
    return sNames + L" (" + CountedCuts(CutsIn(colGrouped)) + L")";
}

std::wstring NodeText(const std::wstring& sKey)
{
    const NodeKey node = ParseNodeKey(sKey);
    return node.lLevel.value_or(0) == 0 ? node.sName : node.sName + L" " + node.sLevel;
}

std::wstring LengthText(std::int64_t milliseconds)
{
    const std::int64_t seconds = milliseconds / 1000;
    const std::int64_t minutes = seconds / 60;
    const std::wstring sEnd = L":" + TwoDigits(seconds % 60);
    return minutes < 60 ? DecimalText(minutes) + sEnd
                        : DecimalText(minutes / 60) + L":" + TwoDigits(minutes % 60) + sEnd;
}

void LibraryResults::Say(const std::wstring& sResult)
{
    m_times = std::exchange(m_sDone, sResult) == sResult ? m_times + 1 : 1;
    m_sResult = sResult + (m_times == 1 ? L"" : L" (" + CountText(m_times) + L" times)");
}

void LibraryResults::Remark(const std::wstring& sRemark)
{
    m_sDone.clear();
    m_sResult = sRemark;
}

void LibraryResults::SayLastStep(const clsSchedMan& cSchedMan, const std::wstring& sUndoBefore)
{
    constexpr std::wstring_view sUndo = L"Undo ";
    const std::wstring sNow = cSchedMan.UndoText();
    if (sNow != sUndoBefore && sNow.size() > sUndo.size())
        Say(L"Last change: " + sNow.substr(sUndo.size()));
}

void LibraryResults::SayInterrupted(const clsSchedMan& cSchedMan)
{
    const std::wstring sBegin = std::wstring(L"Undo ") + sInterrupted;
    if (const std::wstring sNext = cSchedMan.UndoText(); sNext.starts_with(sBegin))
        Say(L"The " + sNext.substr(sBegin.size()) + L" was interrupted; Undo brings back what it has done");
}

void LibraryResults::Concern(std::size_t cuts) { m_cView.SetResult(L"Concerns " + CountedCuts(cuts)); }

void LibraryResults::WorkEnded() noexcept
{
    try
    {
        const std::wstring sResult = std::exchange(m_sResult, {});
        m_bShowsResult = m_bShowsResult || !sResult.empty();
        if (!sResult.empty())
            m_cView.SetResult(sResult);
        m_bChanged = true;
        if (!m_bShowsResult)
            AskForSelection();
    }
    catch (...)
    {
        m_cMod.LogError(L"frmUILib.Status", CurrentError());
    }
}

void LibraryResults::SelectionChanged()
{
    m_bChanged = true;
    if (m_cWork.Running())
        return;
    m_bShowsResult = false;
    AskForSelection();
}

void LibraryResults::AskForSelection()
{
    if (!std::exchange(m_bAsked, true))
        m_cView.AskForSelection();
}

void LibraryResults::ShowSelection()
{
    m_bAsked = false;
    if (m_cWork.Running() || m_bShowsResult || m_bReading)
        return; // the end of what runs asks again
    if (std::exchange(m_bChanged, false))
    {
        m_colCuts = m_cGrid.colSelCuts();
        m_added = 0;
        m_length = 0;
    }
    const bool bAll = AddLengths();
    if (m_bShowsResult)
        return; // of a command that ran while a cut was read
    const std::wstring sCount = CountedCuts(m_colCuts.size()) + L" selected";
    m_cView.SetResult(m_colCuts.empty() ? L"" : bAll ? sCount + L", " + LengthText(m_length) : sCount);
    if (!bAll || m_bChanged)
        AskForSelection();
}

// True when every selected cut is added.
bool LibraryResults::AddLengths()
{
    const Clock& cClock = m_cMod.Ports().cClock;
    const std::uint32_t lStart = cClock.TickCount();
    const ScopedFlag cReading(m_bReading);
    while (m_added < m_colCuts.size())
    {
        m_length += LengthOf(*m_colCuts[m_added++]);
        if (m_added % cutsPerLook == 0 && cClock.TickCount() - lStart >= lReadMs)
            break;
    }
    return m_added == m_colCuts.size();
}

} // namespace ravlo
