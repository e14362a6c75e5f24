// SPDX-License-Identifier: MIT
#include "ui/library/LibraryContents.h"

#include "base/CaseFolding.h"
#include "base/Text.h"
#include "ui/library/NodeKey.h"

#include <algorithm>
#include <limits>

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

std::uint32_t Ticks(const clsSchedMan& cSchedMan) { return cSchedMan.Mod().Ports().cClock.TickCount(); }

// Looks the follower up for each report: a host may close the window in between.
template <class Say> void ToFollower(const clsSchedMan& cSchedMan, Say&& say)
{
    if (ProgressEvents* const cFollower = cSchedMan.ProgressFollower())
        say(*cFollower);
}

void Start(const clsSchedMan& cSchedMan, const wchar_t* sReason, std::size_t count)
{
    ToFollower(cSchedMan, [&](ProgressEvents& cWindow) { cWindow.ProgressStart(sReason, AsLong(count)); });
}

void Report(const clsSchedMan& cSchedMan, const std::wstring& sText, std::size_t done, std::size_t count)
{
    ToFollower(cSchedMan,
               [&](ProgressEvents& cWindow) { cWindow.Progress(sText, AsLong(done), AsLong(count)); });
}

void End(const clsSchedMan& cSchedMan, const std::wstring& sStatus, const std::wstring& sDetail)
{
    ToFollower(cSchedMan, [&](ProgressEvents& cWindow) { cWindow.ProgressDone(sStatus, sDetail); });
}

// Finds what the key names, without its cuts.
ListedCuts Resolve(const clsSchedMan& cSchedMan, const std::wstring& strCatKey)
{
    const NodeKey node = ParseNodeKey(strCatKey);
    ListedCuts listed;
    listed.bShowingAllAudio = node.bAllAudio;
    if (node.bAllAudio)
    {
        listed.strCatKey = CategoryKey(node.sName, node.lLevel.value_or(0));
        listed.sWhat = L"All Audio";
        return listed;
    }
    listed.strCatKey = node.lLevel ? CategoryKey(node.sName, *node.lLevel) : strCatKey;
    const std::shared_ptr<clsCat> cMainCat = MainCatByName(cSchedMan.colMainCats().get(), node.sName);
    listed.sWhat = cMainCat ? cMainCat->CatName() : node.sName;
    const std::wstring sLevel = node.lLevel ? DecimalText(*node.lLevel) : node.sLevel;
    if (node.lLevel != 0)
        listed.sWhat += L" " + sLevel;
    if (!cMainCat)
    {
        cSchedMan.Mod().WriteDebugLog(L"Unexpected - why does the main cat NOT exist?");
        return listed;
    }
    listed.bShowingMoreThanOneLevel = node.lLevel == 0;
    listed.cCatShown = CatOf(cSchedMan, listed.strCatKey);
    if (!listed.cCatShown)
        cSchedMan.Mod().WriteDebugLog(L"Unexpected - subcat " + sLevel + L" does not exist in: " +
                                      node.sName);
    return listed;
}

void Append(ListedCuts& listed, const std::shared_ptr<clsCat>& cLevel)
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

void Collect(const clsSchedMan& cSchedMan, ListedCuts& listed)
{
    if (listed.bShowingAllAudio)
        listed.colCuts = cSchedMan.DataBase() ? cSchedMan.DataBase()->AllCuts() : Cuts();
    else if (listed.cCatShown && listed.bShowingMoreThanOneLevel)
        for (const std::shared_ptr<clsCat>& cSubCat : *listed.cCatShown->SubCats())
            Append(listed, cSubCat);
    else if (listed.cCatShown)
        Append(listed, listed.cCatShown);
}

void ReportCollecting(const clsSchedMan& cSchedMan, std::size_t cuts)
{
    Start(cSchedMan, L"Collecting Database info...", cuts);
    std::uint32_t lLast = Ticks(cSchedMan);
    for (std::size_t count = collectedPerSample; count <= cuts; count += collectedPerSample)
        if (Ticks(cSchedMan) - lLast >= lCollectGapMs)
        {
            Report(cSchedMan, CountText(count), count, cuts);
            lLast = Ticks(cSchedMan);
        }
    End(cSchedMan, L"Finished Collecting Info.", L"Got " + CountText(cuts) + L" total.");
}

} // namespace

std::vector<TreeNode> NodesOf(const CatCollection* colMainCats)
{
    if (!colMainCats)
        return {};
    std::vector<TreeNode> colNodes{{L"", RootKey(), sAllAudio, true}};
    for (const std::shared_ptr<clsCat>& cMainCat : *colMainCats)
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

std::optional<ListedCuts> ListCuts(clsSchedMan& cSchedMan, const std::wstring& strCatKey)
{
    const std::shared_ptr<CatCollection> colMainCats = cSchedMan.colMainCats();
    if (!colMainCats || colMainCats->Empty())
        return std::nullopt;
    ListedCuts listed = Resolve(cSchedMan, strCatKey);
    listed.colMainCats = colMainCats;
    Collect(cSchedMan, listed);
    ReportCollecting(cSchedMan, listed.colCuts.size());
    return listed;
}

FillingReport::FillingReport(clsSchedMan& cSchedMan, const ListedCuts& listed)
    : m_cSchedMan(cSchedMan), m_sWhat(listed.sWhat), m_rows(listed.colCuts.size())
{
    Start(m_cSchedMan, L"Populating Grid...", m_rows);
    m_lLast = Ticks(m_cSchedMan);
}

void FillingReport::RowFilled(std::size_t row)
{
    if (row % rowsPerSample != 0)
        return;
    if (Ticks(m_cSchedMan) - m_lLast < lFillGapMs)
        return m_cSchedMan.Mod().Sleep(1);
    Report(m_cSchedMan, L"Populating Grid - " + CountText(row) + L" of " + CountText(m_rows), row, m_rows);
    m_lLast = Ticks(m_cSchedMan);
}

void FillingReport::Done()
{
    End(m_cSchedMan, L"Showing " + m_sWhat, L"Showing " + CountText(m_rows) + L" total.");
}

} // namespace ravlo
