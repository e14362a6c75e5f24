// SPDX-License-Identifier: MIT
#include "ui/library/LibraryFilling.h"

#include "collections/Text.h"
#include "ui/library/ColumnLayout.h"

#include <algorithm>
#include <functional>
#include <limits>
#include <utility>

namespace ravlo
{

namespace
{

constexpr std::size_t lCollectedPerSample = 20;
constexpr std::uint32_t lCollectGapMs = 101;
constexpr std::size_t lRowsPerSample = 50;
constexpr std::uint32_t lFillGapMs = 201;

std::int32_t AsLong(std::size_t lCount)
{
    return static_cast<std::int32_t>(std::min<std::size_t>(lCount, std::numeric_limits<std::int32_t>::max()));
}

// The grid paints nothing while it is filled, and paints again on every way out.
class RedrawOff
{
public:
    explicit RedrawOff(GridTarget& cGrid) : m_cGrid(cGrid) { m_cGrid.SetRedraw(false); }
    ~RedrawOff()
    {
        try
        {
            m_cGrid.SetRedraw(true);
        }
        catch (...)
        {
            // A host's grid that refuses this has said so before, when it refused a row.
        }
    }
    RedrawOff(const RedrawOff&) = delete;
    RedrawOff& operator=(const RedrawOff&) = delete;

private:
    GridTarget& m_cGrid;
};

// What fills a grid of the one or the other kind: called with the cuts, says it has done so many rows.
using RowsDone = std::function<void(std::size_t lRows)>;
using FillRows = std::function<void(ListedCuts listed, const RowsDone& done)>;

class Filling
{
public:
    Filling(clsSchedMan& cSchedMan, GridTarget& cGrid, FillRows fill, ProgressTarget* cProgress)
        : m_cSchedMan(cSchedMan), m_cMod(cSchedMan.Mod()), m_cGrid(cGrid), m_fill(std::move(fill)),
          m_cProgress(cProgress), m_lLast(Ticks())
    {
    }

    ShownCuts Run(const std::wstring& strCatKey)
    {
        Resolve(strCatKey);
        ListedCuts listed = Collect();
        const RedrawOff cOff(m_cGrid);
        m_cGrid.Clear();
        EnsureColumns(m_cGrid);
        Fill(std::move(listed));
        return m_shown;
    }

private:
    void Resolve(const std::wstring& strCatKey)
    {
        const std::vector<std::wstring> colPieces = Split(strCatKey, std::wstring(1, cTab));
        m_sName = colPieces[0];
        const std::optional<double> dLevel = NumericValue(colPieces.size() > 1 ? colPieces[1] : L"0");
        m_lLevel = dLevel ? ToLong(*dLevel).value_or(0) : 0;
        m_shown.strCatKey = CategoryKey(m_sName, m_lLevel);
        m_shown.bShowingAllAudio = EqualIgnoringCase(m_sName, sAllAudio);
        if (m_shown.bShowingAllAudio)
            return;
        const std::shared_ptr<CatCollection> colMainCats = m_cSchedMan.colMainCats();
        const std::shared_ptr<clsCat>* cMainCat = colMainCats->Find(CategoryKey(m_sName, 0));
        if (!cMainCat)
        {
            m_cMod.WriteDebugLog(L"Unexpected - why does the main cat NOT exist?");
            return;
        }
        m_shown.bShowingMoreThanOneLevel = m_lLevel == 0;
        m_shown.cCatShown = m_lLevel == 0 ? *cMainCat : (*cMainCat)->SubCat(m_lLevel);
        if (!m_shown.cCatShown)
            m_cMod.WriteDebugLog(L"Unexpected - subcat " + DecimalText(m_lLevel) + L" does not exist in: " +
                                 m_sName);
    }

    // The cuts to list, with the reports that go with gathering them.
    ListedCuts Collect()
    {
        const wchar_t* const sReason = L"Collecting Database info...";
        ListedCuts listed;
        Cuts& colCuts = listed.colCuts;
        if (m_shown.bShowingAllAudio)
        {
            Start(sReason, 0); // a database may take its time before it has told how many there are
            colCuts = m_cSchedMan.DataBase() ? m_cSchedMan.DataBase()->AllCuts() : Cuts();
        }
        else if (m_shown.cCatShown && m_lLevel == 0)
            for (const std::shared_ptr<clsCat>& cSubCat : *m_shown.cCatShown->SubCats())
                Append(listed, cSubCat);
        else if (m_shown.cCatShown)
            Append(listed, m_shown.cCatShown);

        Start(sReason, colCuts.size());
        for (std::size_t lCount = lCollectedPerSample; lCount <= colCuts.size();
             lCount += lCollectedPerSample)
            if (Ticks() - m_lLast >= lCollectGapMs)
                Report(CountText(lCount), lCount);
        End(L"Finished Collecting Info.", L"Got " + CountText(colCuts.size()) + L" total.");
        return listed;
    }

    static void Append(ListedCuts& listed, const std::shared_ptr<clsCat>& cLevel)
    {
        const CutCollection& colSchedCuts = *cLevel->SchedCuts();
        listed.colCuts.insert(listed.colCuts.end(), colSchedCuts.begin(), colSchedCuts.end());
        listed.colRuns.push_back({cLevel, listed.colCuts.size()});
    }

    void Fill(ListedCuts listed)
    {
        const std::size_t lRows = listed.colCuts.size();
        Start(L"Populating Grid...", lRows);
        m_fill(std::move(listed), [this, lRows](std::size_t lRow) { ReportRow(lRow, lRows); });
        End(L"Showing " + WhatText(), L"Showing " + CountText(lRows) + L" total.");
    }

    void ReportRow(std::size_t lRow, std::size_t lRows)
    {
        if (lRow % lRowsPerSample != 0)
            return;
        if (Ticks() - m_lLast < lFillGapMs)
            m_cMod.Sleep(1);
        else
            Report(L"Populating Grid - " + CountText(lRow) + L" of " + CountText(lRows), lRow);
    }

    std::wstring WhatText() const
    {
        if (m_shown.bShowingAllAudio)
            return L"All Audio";
        return m_lLevel == 0 ? m_sName : m_sName + L" " + DecimalText(m_lLevel);
    }

    void Start(const std::wstring& sReason, std::size_t lMax)
    {
        if (m_cProgress)
            m_cProgress->ProgressStart(sReason, AsLong(lMax));
        m_lLast = Ticks();
    }
    void Report(const std::wstring& sText, std::size_t lValue)
    {
        if (m_cProgress)
            m_cProgress->Progress(sText, AsLong(lValue));
        m_lLast = Ticks();
    }
    void End(const std::wstring& sFirst, const std::wstring& sSecond)
    {
        if (m_cProgress)
            m_cProgress->ProgressEnd(sFirst, sSecond);
    }
    std::uint32_t Ticks() const { return m_cMod.Outside().cClock.TickCount(); }

    clsSchedMan& m_cSchedMan;
    ModScheduler& m_cMod;
    GridTarget& m_cGrid;
    FillRows m_fill;
    ProgressTarget* m_cProgress;
    std::uint32_t m_lLast;
    std::wstring m_sName;
    std::int32_t m_lLevel = 0;
    ShownCuts m_shown;
};

void FillRow(CellGrid& cGrid, std::size_t lRow, const Cut& cCut)
{
    cGrid.SetRowKey(lRow, cCut.Key().Text());
    cGrid.SetCell(lRow, L"Pos", AsLong(lRow));
    cGrid.SetCell(lRow, L"ID", cCut.ID());
    cGrid.SetCell(lRow, L"Artist", cCut.Artist());
    cGrid.SetCell(lRow, L"Title", cCut.Title());
    cGrid.SetCell(lRow, L"Dur", cCut.DurationText());
    cGrid.SetCell(lRow, L"Cat", cCut.CategoryText());
    cGrid.SetCell(lRow, L"Lvl", cCut.CatLevel());
    cGrid.SetCell(lRow, L"Year", cCut.Year());
    cGrid.SetCell(lRow, L"Opener", std::wstring(cCut.Opener() ? L"Y" : L"N"));
    cGrid.SetCell(lRow, L"Path", cCut.Path());
}

void FillCells(CellGrid& cGrid, const Cuts& colCuts, const RowsDone& done)
{
    cGrid.SetRowCount(colCuts.size());
    for (std::size_t lRow = 1; lRow <= colCuts.size(); ++lRow)
    {
        FillRow(cGrid, lRow, *colCuts[lRow - 1]);
        done(lRow);
    }
}

std::optional<ShownCuts> Show(clsSchedMan& cSchedMan, GridTarget& cGrid, FillRows fill,
                              const std::wstring& strCatKey, TreeImages* cTree, ProgressTarget* cProgress)
{
    const std::shared_ptr<CatCollection> colMainCats = cSchedMan.colMainCats();
    if (!colMainCats || colMainCats->Empty())
        return std::nullopt;
    ShownCuts shown = Filling(cSchedMan, cGrid, std::move(fill), cProgress).Run(strCatKey);
    if (cTree)
        cTree->ShowAsOpen(shown.strCatKey);
    return shown;
}

} // namespace

void PopulateTreeView(const CatCollection* colMainCats, TreeTarget& cTree)
{
    cTree.Clear();
    if (!colMainCats)
        return;
    const std::wstring sRootKey = CategoryKey(sAllAudio, 0);
    cTree.AddNode({}, sRootKey, sAllAudio, sImageClosed);
    cTree.SetSorted();
    for (const std::shared_ptr<clsCat>& cMainCat : *colMainCats)
    {
        const std::wstring& sName = cMainCat->CatName();
        if (EqualIgnoringCase(sName, sAllAudio))
            continue;
        const std::wstring sMainKey = CategoryKey(sName, 0);
        cTree.AddNode(sRootKey, sMainKey, sName, sImageClosed);
        cTree.SetSorted();
        for (const std::shared_ptr<clsCat>& cSubCat : *cMainCat->SubCats())
            cTree.AddNode(sMainKey, CategoryKey(cSubCat->CatName(), cSubCat->CatLevel()),
                          DecimalText(cSubCat->CatLevel()), sImageClosed);
    }
    cTree.ExpandFirst();
}

void EnsureColumns(GridTarget& cGrid)
{
    if (cGrid.ColCount() != 0)
        return;
    for (const GridColumn& column : colGridColumns)
        cGrid.AddCol(column.sKey, column.sHeader);
}

std::optional<ShownCuts> ShowGridCuts(clsSchedMan& cSchedMan, CellGrid& cGrid, const std::wstring& strCatKey,
                                      TreeImages* cTree, ProgressTarget* cProgress)
{
    const FillRows fill = [&cGrid](const ListedCuts& listed, const RowsDone& done)
    { FillCells(cGrid, listed.colCuts, done); };
    return Show(cSchedMan, cGrid, fill, strCatKey, cTree, cProgress);
}

std::optional<ShownCuts> ShowGridCuts(clsSchedMan& cSchedMan, CutGrid& cGrid, const std::wstring& strCatKey,
                                      TreeImages* cTree, ProgressTarget* cProgress)
{
    const FillRows fill = [&cGrid](ListedCuts listed, const RowsDone&) { cGrid.TakeRows(std::move(listed)); };
    return Show(cSchedMan, cGrid, fill, strCatKey, cTree, cProgress);
}

} // namespace ravlo
