// SPDX-License-Identifier: MIT
#include "ui/library/LibraryFilling.h"

#include "base/Text.h"
#include "ui/library/ColumnLayout.h"
#include "ui/library/NodeKey.h"

#include <algorithm>
#include <functional>
#include <limits>
#include <utility>
#include <vector>

namespace ravlo
{

namespace
{

constexpr std::size_t collectedPerSample = 20;
constexpr std::uint32_t lCollectGapMs = 101;
constexpr std::size_t rowsPerSample = 50;
constexpr std::uint32_t lFillGapMs = 201;

std::int32_t AsLong(std::size_t count)
{
    return static_cast<std::int32_t>(std::min<std::size_t>(count, std::numeric_limits<std::int32_t>::max()));
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
using RowsDone = std::function<void(std::size_t rows)>;
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
        const NodeKey node = ParseNodeKey(strCatKey);
        m_shown.bShowingAllAudio = node.bAllAudio;
        if (node.bAllAudio)
        {
            m_shown.strCatKey = CategoryKey(node.sName, node.lLevel.value_or(0));
            m_sWhat = L"All Audio";
            return;
        }
        m_shown.strCatKey = node.lLevel ? CategoryKey(node.sName, *node.lLevel) : strCatKey;
        const std::shared_ptr<clsCat> cMainCat = MainCatByName(m_cSchedMan.colMainCats().get(), node.sName);
        m_sWhat = cMainCat ? cMainCat->CatName() : node.sName;
        const std::wstring sLevel = node.lLevel ? DecimalText(*node.lLevel) : node.sLevel;
        if (node.lLevel != 0)
            m_sWhat += L" " + sLevel;
        if (!cMainCat)
        {
            m_cMod.WriteDebugLog(L"Unexpected - why does the main cat NOT exist?");
            return;
        }
        m_shown.bShowingMoreThanOneLevel = node.lLevel == 0;
        m_shown.cCatShown = CatOf(m_cSchedMan, m_shown.strCatKey);
        if (!m_shown.cCatShown)
            m_cMod.WriteDebugLog(L"Unexpected - subcat " + sLevel + L" does not exist in: " + node.sName);
    }

    // The cuts to list, with the reports that go with gathering them.
    ListedCuts Collect()
    {
        ListedCuts listed;
        if (m_shown.bShowingAllAudio)
            listed.colCuts = m_cSchedMan.DataBase() ? m_cSchedMan.DataBase()->AllCuts() : Cuts();
        else if (m_shown.cCatShown && m_shown.bShowingMoreThanOneLevel)
            for (const std::shared_ptr<clsCat>& cSubCat : *m_shown.cCatShown->SubCats())
                Append(listed, cSubCat);
        else if (m_shown.cCatShown)
            Append(listed, m_shown.cCatShown);

        const std::size_t cuts = listed.colCuts.size();
        Start(L"Collecting Database info...", cuts);
        for (std::size_t count = collectedPerSample; count <= cuts; count += collectedPerSample)
            if (Ticks() - m_lLast >= lCollectGapMs)
                Report(CountText(count), count);
        End(L"Finished Collecting Info.", L"Got " + CountText(cuts) + L" total.");
        return listed;
    }

    static void Append(ListedCuts& listed, const std::shared_ptr<clsCat>& cLevel)
    {
        const CutCollection& colSchedCuts = *cLevel->SchedCuts();
        for (std::size_t i = 0; i < colSchedCuts.Count(); ++i)
        {
            const TextKey* pKey = colSchedCuts.KeyAt(i);
            listed.colCuts.push_back(colSchedCuts.At(i));
            listed.colKeys.push_back(pKey ? *pKey : TextKey());
        }
        listed.colRuns.push_back({cLevel, listed.colCuts.size()});
    }

    void Fill(ListedCuts listed)
    {
        const std::size_t rows = listed.colCuts.size();
        Start(L"Populating Grid...", rows);
        m_fill(std::move(listed), [this, rows](std::size_t row) { ReportRow(row, rows); });
        End(L"Showing " + m_sWhat, L"Showing " + CountText(rows) + L" total.");
    }

    void ReportRow(std::size_t row, std::size_t rows)
    {
        if (row % rowsPerSample != 0)
            return;
        if (Ticks() - m_lLast < lFillGapMs)
            m_cMod.Sleep(1);
        else
            Report(L"Populating Grid - " + CountText(row) + L" of " + CountText(rows), row);
    }

    void Start(const std::wstring& sReason, std::size_t lMax)
    {
        if (m_cProgress)
            m_cProgress->ProgressStart(sReason, AsLong(lMax));
        m_lLast = Ticks();
    }
    void Report(const std::wstring& sText, std::size_t value)
    {
        if (m_cProgress)
            m_cProgress->Progress(sText, AsLong(value));
        m_lLast = Ticks();
    }
    void End(const std::wstring& sFirst, const std::wstring& sSecond)
    {
        if (m_cProgress)
            m_cProgress->ProgressEnd(sFirst, sSecond);
    }
    std::uint32_t Ticks() const { return m_cMod.Ports().cClock.TickCount(); }

    clsSchedMan& m_cSchedMan;
    ModScheduler& m_cMod;
    GridTarget& m_cGrid;
    FillRows m_fill;
    ProgressTarget* m_cProgress;
    std::uint32_t m_lLast;
    ShownCuts m_shown;
    std::wstring m_sWhat; // is shown, for the user
};

void FillRow(CellGrid& cGrid, std::size_t row, const Cut& cCut)
{
    cGrid.SetRowKey(row, cCut.Key().Text());
    cGrid.SetCell(row, L"Pos", AsLong(row));
    cGrid.SetCell(row, L"ID", cCut.ID());
    cGrid.SetCell(row, L"Artist", cCut.Artist());
    cGrid.SetCell(row, L"Title", cCut.Title());
    cGrid.SetCell(row, L"Dur", cCut.DurationText());
    cGrid.SetCell(row, L"Cat", cCut.CategoryText());
    cGrid.SetCell(row, L"Lvl", cCut.CatLevel());
    cGrid.SetCell(row, L"Year", cCut.Year());
    cGrid.SetCell(row, L"Opener", std::wstring(cCut.Opener() ? L"Y" : L"N"));
    cGrid.SetCell(row, L"Path", cCut.Path());
}

void FillCells(CellGrid& cGrid, const Cuts& colCuts, const RowsDone& done)
{
    cGrid.SetRowCount(colCuts.size());
    for (std::size_t row = 1; row <= colCuts.size(); ++row)
    {
        FillRow(cGrid, row, *colCuts[row - 1]);
        done(row);
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

struct TreeNode
{
    std::wstring sParentKey; // empty for the root
    std::wstring sKey;
    std::wstring sText;
    bool bSorted; // its children
};

// Parents in front of their children.
std::vector<TreeNode> NodesOf(const CatCollection& colMainCats)
{
    std::vector<TreeNode> colNodes{{L"", RootKey(), sAllAudio, true}};
    for (const std::shared_ptr<clsCat>& cMainCat : colMainCats)
    {
        const std::wstring& sName = cMainCat->CatName();
        if (EqualIgnoringCase(sName, sAllAudio))
            continue;
        const std::wstring sMainKey = CategoryKey(sName, 0);
        colNodes.push_back({RootKey(), sMainKey, sName, true});
        for (const std::shared_ptr<clsCat>& cSubCat : *cMainCat->SubCats())
            colNodes.push_back({sMainKey, CategoryKey(cSubCat->CatName(), cSubCat->CatLevel()),
                                DecimalText(cSubCat->CatLevel()), false});
    }
    return colNodes;
}

} // namespace

void PopulateTreeView(const CatCollection* colMainCats, TreeTarget& cTree)
{
    // Taken down first: a host's tree may change categories while it is filled.
    const std::vector<TreeNode> colNodes = colMainCats ? NodesOf(*colMainCats) : std::vector<TreeNode>();
    cTree.Clear();
    for (const TreeNode& node : colNodes)
    {
        cTree.AddNode(node.sParentKey, node.sKey, node.sText, sImageClosed);
        if (node.bSorted)
            cTree.SetSorted();
    }
    if (!colNodes.empty())
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
    const FillRows fill = [&cGrid](const ListedCuts& listed, const RowsDone& done) {
        FillCells(cGrid, listed.colCuts, done);
    };
    return Show(cSchedMan, cGrid, fill, strCatKey, cTree, cProgress);
}

std::optional<ShownCuts> ShowGridCuts(clsSchedMan& cSchedMan, CutGrid& cGrid, const std::wstring& strCatKey,
                                      TreeImages* cTree, ProgressTarget* cProgress)
{
    const FillRows fill = [&cGrid](ListedCuts listed, const RowsDone&) { cGrid.TakeRows(std::move(listed)); };
    return Show(cSchedMan, cGrid, fill, strCatKey, cTree, cProgress);
}

} // namespace ravlo
