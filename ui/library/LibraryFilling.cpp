// SPDX-License-Identifier: MIT
#include "ui/library/LibraryFilling.h"

#include "collections/Text.h"
#include "ui/library/ColumnLayout.h"

#include <algorithm>
#include <limits>

namespace ravlo
{

namespace
{

constexpr std::size_t lCollectedPerSample = 20;
constexpr std::uint32_t lCollectGapMs = 101;
constexpr std::size_t lRowsPerSample = 50;
constexpr std::uint32_t lFillGapMs = 201;

std::wstring CountText(std::size_t lCount) { return DecimalText(static_cast<std::int64_t>(lCount)); }

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

class Filling
{
public:
    Filling(clsSchedMan& cSchedMan, GridTarget& cGrid, ProgressTarget* cProgress)
        : m_cSchedMan(cSchedMan), m_cMod(cSchedMan.Mod()), m_cGrid(cGrid), m_cProgress(cProgress),
          m_lLast(Ticks())
    {
    }

    ShownCuts Run(const std::wstring& strCatKey)
    {
        Resolve(strCatKey);
        const Cuts colCuts = Collect();
        const RedrawOff cOff(m_cGrid);
        m_cGrid.SetRowCount(0);
        EnsureColumns(m_cGrid);
        Fill(colCuts);
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
    Cuts Collect()
    {
        Cuts colCuts;
        if (m_shown.bShowingAllAudio)
            colCuts = m_cSchedMan.DataBase() ? m_cSchedMan.DataBase()->AllCuts() : Cuts();
        else if (m_shown.cCatShown && m_lLevel == 0)
            for (const std::shared_ptr<clsCat>& cSubCat : *m_shown.cCatShown->SubCats())
                colCuts.insert(colCuts.end(), cSubCat->SchedCuts()->begin(), cSubCat->SchedCuts()->end());
        else if (m_shown.cCatShown)
            colCuts.assign(m_shown.cCatShown->SchedCuts()->begin(), m_shown.cCatShown->SchedCuts()->end());

        Start(L"Collecting Database info...", colCuts.size());
        for (std::size_t lCount = lCollectedPerSample; lCount <= colCuts.size();
             lCount += lCollectedPerSample)
            if (Ticks() - m_lLast >= lCollectGapMs)
                Report(CountText(lCount), lCount);
        End(L"Finished Collecting Info.", L"Got " + CountText(colCuts.size()) + L" total.");
        return colCuts;
    }

    void Fill(const Cuts& colCuts)
    {
        Start(L"Populating Grid...", colCuts.size());
        if (!m_cGrid.TakeRows(colCuts))
        {
            m_cGrid.SetRowCount(colCuts.size());
            for (std::size_t lRow = 1; lRow <= colCuts.size(); ++lRow)
            {
                FillRow(lRow, *colCuts[lRow - 1]);
                if (lRow % lRowsPerSample == 0)
                    ReportRow(lRow, colCuts.size());
            }
        }
        End(L"Showing " + WhatText(), L"Showing " + CountText(colCuts.size()) + L" total.");
    }

    void FillRow(std::size_t lRow, const Cut& cCut)
    {
        m_cGrid.SetRowKey(lRow, cCut.Key().Text());
        m_cGrid.SetCell(lRow, L"Pos", AsLong(lRow));
        m_cGrid.SetCell(lRow, L"ID", cCut.ID());
        m_cGrid.SetCell(lRow, L"Artist", cCut.Artist());
        m_cGrid.SetCell(lRow, L"Title", cCut.Title());
        m_cGrid.SetCell(lRow, L"Dur", cCut.DurationText());
        m_cGrid.SetCell(lRow, L"Cat", cCut.CategoryText());
        m_cGrid.SetCell(lRow, L"Lvl", cCut.CatLevel());
        m_cGrid.SetCell(lRow, L"Year", cCut.Year());
        m_cGrid.SetCell(lRow, L"Opener", std::wstring(cCut.Opener() ? L"Y" : L"N"));
        m_cGrid.SetCell(lRow, L"Path", cCut.Path());
    }

    void ReportRow(std::size_t lRow, std::size_t lRows)
    {
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
    ProgressTarget* m_cProgress;
    std::uint32_t m_lLast;
    std::wstring m_sName;
    std::int32_t m_lLevel = 0;
    ShownCuts m_shown;
};

} // namespace

void PopulateTreeView(const CatCollection* colMainCats, TreeTarget& cTree)
{
    cTree.Clear();
    if (!colMainCats)
        return;
    const std::wstring sRootKey = CategoryKey(sAllAudio, 0);
    cTree.AddNode({}, sRootKey, sAllAudio, sImageClosed);
    cTree.SetSorted(sRootKey);
    for (const std::shared_ptr<clsCat>& cMainCat : *colMainCats)
    {
        const std::wstring& sName = cMainCat->CatName();
        if (EqualIgnoringCase(sName, sAllAudio))
            continue;
        const std::wstring sMainKey = CategoryKey(sName, 0);
        cTree.AddNode(sRootKey, sMainKey, sName, sImageClosed);
        cTree.SetSorted(sMainKey);
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

std::optional<ShownCuts> ShowGridCuts(clsSchedMan& cSchedMan, GridTarget& cGrid,
                                      const std::wstring& strCatKey, TreeImages* cTree,
                                      ProgressTarget* cProgress)
{
    const std::shared_ptr<CatCollection> colMainCats = cSchedMan.colMainCats();
    if (!colMainCats || colMainCats->Empty())
        return std::nullopt;
    ShownCuts shown = Filling(cSchedMan, cGrid, cProgress).Run(strCatKey);
    if (cTree)
        cTree->ShowAsOpen(shown.strCatKey);
    return shown;
}

} // namespace ravlo
