// SPDX-License-Identifier: MIT
#include "scheduler/Population.h"

#include "base/CaseFolding.h"
#include "base/Text.h"

#include <unordered_set>

namespace ravlo
{

// Pauses of a phase: 1 ms, at most once every 15 ms of work, so that sleeping does not slow a large library
// down.
class Population::Pauses
{
public:
    explicit Pauses(ModScheduler& cMod) : m_cMod(cMod), m_lLast(Now()) {}

    void AtSample()
    {
        if (Now() - m_lLast < lMinWorkMs)
            return;
        m_cMod.Sleep(1);
        m_lLast = Now();
    }

private:
    static constexpr std::uint32_t lMinWorkMs = 15;
    std::uint32_t Now() const { return m_cMod.Ports().cClock.TickCount(); }

    ModScheduler& m_cMod;
    std::uint32_t m_lLast;
};

Population::Population(ModScheduler& cMod, EventRelay& cEvents, CategoryList& cCategoryList,
                       HistoryFiles& cHistoryFiles, PlacedCuts& cPlacedCuts)
    : m_cMod(cMod), m_cEvents(cEvents), m_cCategoryList(cCategoryList), m_cHistoryFiles(cHistoryFiles),
      m_cPlacedCuts(cPlacedCuts), m_cPlacement(cMod), m_cNameLists(cPlacedCuts)
{
}

std::shared_ptr<CatCollection> Population::Build(const DataBase& cDataBase, const std::wstring& sAppPath)
{
    m_colMainCats = std::make_shared<CatCollection>();
    const Cuts colCuts = cDataBase.AllCuts();
    m_cPlacedCuts.Reserve(colCuts.size());
    CreateCategories(colCuts);
    PlaceCuts(colCuts);
    AddSavedCategories(*m_cCategoryList.ReadForTree(sAppPath));
    m_cHistoryFiles.ApplyHistory(*m_colMainCats, sAppPath);
    return m_colMainCats;
}

void Population::CreateCategories(const Cuts& colCuts)
{
    RunPhase(
        L"Initialising Scheduler - creating categories", colCuts,
        [&](const std::shared_ptr<Cut>& cCut) {
        if (NamesOf(*cCut).bEmptyName)
            m_cPlacement.EmptyName(BoxIcon::None, L"Zero-length cat names are illegal [1]");
        },
        [](const Cut& cCut, std::size_t) {
        const std::vector<std::wstring> colNames = AssignedNames(cCut);
        return L"Creating: " +
               (colNames.empty() ? std::wstring() : colNames.back() + DecimalText(cCut.CatLevel()));
    });
    m_cEvents.ProgressDone(L"Got Main and Sub Categories for scheduler.");
}

// The names of a cut; creates their missing main categories, once per different list of names.
const NameLists::Names& Population::NamesOf(const Cut& cCut)
{
    const NameLists::Names& names = m_cNameLists.Of(cCut);
    if (names.lNumber >= m_colMainCatsOf.size())
    {
        m_colMainCatsOf.resize(names.lNumber + 1);
        for (const NameLists::Name& name : names.colNames)
            m_colMainCatsOf.back().push_back(EnsureMainCat(m_cMod, *m_colMainCats, name));
    }
    return names;
}

void Population::PlaceCuts(const Cuts& colCuts)
{
    bool bCreated = false;
    RunPhase(
        L"Creating Scheduler Items", colCuts,
        [&](const std::shared_ptr<Cut>& cCut) {
        // Read again: the host was called since the first phase and may have changed the cut.
        const NameLists::Names& names = NamesOf(*cCut);
        for (const std::shared_ptr<clsCat>& cMainCat : m_colMainCatsOf[names.lNumber])
            m_cPlacement.Place(cCut, *cMainCat, bCreated);
        m_cPlacedCuts.Remember(cCut->Key(), names.lNumber, cCut->CatLevel(), DataBaseNumber(*cCut));
        },
        [](const Cut& cCut, std::size_t count) {
        return CountText(count) + L"Added: " + cCut.Artist() + L" - " + cCut.Title();
    });
}

// A cut whose texts cannot be read for a report may still be placed.
std::wstring Population::TextOrNothing(const Text& text, const Cut& cCut, std::size_t count)
{
    try
    {
        return text(cCut, count);
    }
    catch (...)
    {
        m_cMod.LogError(L"PopulateFromDataBase, progress", CurrentError());
        return {};
    }
}

void Population::RunPhase(const std::wstring& sReason, const Cuts& colCuts, const Work& work,
                          const Text& text)
{
    m_cEvents.ProgressStart(sReason, colCuts.size());
    ProgressThrottle cThrottle(m_cMod.Ports().cClock);
    Pauses cPauses(m_cMod);
    std::size_t count = 0;
    for (const std::shared_ptr<Cut>& cCut : colCuts)
    {
        ++count;
        try
        {
            work(cCut);
        }
        catch (...)
        {
            m_cPlacement.Failed(*cCut);
        }
        if (cThrottle.IsDue(count))
        {
            m_cEvents.Progress(TextOrNothing(text, *cCut, count), count, colCuts.size());
            cThrottle.Reported();
        }
        if (ProgressThrottle::IsSample(count))
            cPauses.AtSample();
    }
}

void Population::AddSavedCategories(const NameCollection& colNames)
{
    std::unordered_set<std::wstring> colAsSaved;
    for (const std::shared_ptr<clsCat>& cMainCat : *m_colMainCats)
        colAsSaved.insert(FoldCase(m_cCategoryList.AsSaved(cMainCat->CatName())));
    // The list contains substitutes where the code page lacks a character: such a name is the database's
    // category. No name is empty: the reader skips such lines.
    for (const std::wstring& sName : colNames)
        if (!colAsSaved.contains(FoldCase(sName)))
            EnsureMainCat(m_cMod, *m_colMainCats, sName);
}

void Population::ReportProblems()
{
    m_cPlacement.Report([this](const RuntimeError& cError) {
        m_cMod.ShowCriticalError(L"Error in PopulateFromDataBase [cSchedMan]", cError);
    });
}

} // namespace ravlo
