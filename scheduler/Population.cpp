// SPDX-License-Identifier: MIT
#include "scheduler/Population.h"

#include "collections/CaseFolding.h"
#include "collections/Text.h"

#include <array>
#include <unordered_set>

namespace ravlo
{

void CreateFolders(ModScheduler& cMod)
{
    // Parents first: only the last component of each is created. The rules' folder stands twice in the list;
    // the second visit finds it there.
    static constexpr std::array<const wchar_t*, 5> folders = {
        L"Scheduler", L"Scheduler\\History_and_Ordering", L"Scheduler\\Rules", L"Scheduler\\Debugging Logs",
        L"Scheduler\\Rules"};
    TrapCritical(cMod, L"Error in CreateFolders [scheduler]", false,
                 [&]
                 {
                     Files& cFiles = cMod.Outside().cFiles;
                     for (const wchar_t* sFolder : folders)
                         if (!cFiles.FolderExists(cMod.AppPath() + sFolder))
                             cFiles.CreateFolder(cMod.AppPath() + sFolder);
                     return true;
                 });
}

std::wstring AssignedName(const std::wstring& sAssignment)
{
    return sAssignment.substr(0, sAssignment.find(cTab));
}

// The pauses between the samples of a phase: 1 ms, at most once every 15 ms of work, so that a large library
// is not slowed down by sleeping.
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
    std::uint32_t Now() const { return m_cMod.Outside().cClock.TickCount(); }

    ModScheduler& m_cMod;
    std::uint32_t m_lLast;
};

Population::Population(ModScheduler& cMod, EventRelay& cEvents, CategoryList& cCategoryList,
                       HistoryFiles& cHistoryFiles)
    : m_cMod(cMod), m_cEvents(cEvents), m_cCategoryList(cCategoryList), m_cHistoryFiles(cHistoryFiles)
{
}

std::shared_ptr<CatCollection> Population::Build(const DataBase& cDataBase)
{
    m_colMainCats = std::make_shared<CatCollection>();
    m_colProblems.Clear();
    m_colFailed.clear();
    const Cuts colCuts = cDataBase.AllCuts();
    CreateCategories(colCuts);
    PlaceCuts(colCuts);
    AddSavedCategories(*m_cCategoryList.GetSavedCatNames());
    m_cHistoryFiles.ApplyHistory(*m_colMainCats);
    return m_colMainCats;
}

void Population::CreateCategories(const Cuts& colCuts)
{
    std::size_t lEmptyNames = 0;
    RunPhase(
        L"Initialising Scheduler - creating categories", colCuts,
        [&](const std::shared_ptr<Cut>& cCut)
        {
            for (const std::wstring& sAssignment : cCut->CategoryNames())
            {
                const std::wstring sName = AssignedName(sAssignment);
                if (sName.empty())
                    RefuseEmptyName(L"Zero-length cat names are illegal [1]", lEmptyNames);
                else
                    EnsureMainCat(sName);
            }
        },
        [](const std::shared_ptr<Cut>& cCut, std::size_t)
        {
            const std::vector<std::wstring> colNames = cCut->CategoryNames();
            const std::wstring sName = colNames.empty() ? std::wstring() : AssignedName(colNames.back());
            return L"Creating: " + sName + DecimalText(cCut->CatLevel());
        });
    if (lEmptyNames > 1)
        m_cMod.WriteDebugLog(L"Zero-length cat names are illegal [1]: " +
                             DecimalText(static_cast<std::int64_t>(lEmptyNames)) + L" in all.");
    m_cEvents.ProgressDone(L"Got Main and Sub Categories for scheduler.");
}

void Population::PlaceCuts(const Cuts& colCuts)
{
    RunPhase(
        L"Creating Scheduler Items", colCuts,
        [&](const std::shared_ptr<Cut>& cCut)
        {
            std::unordered_set<std::wstring> colSeen; // the same name twice counts once
            for (const std::wstring& sAssignment : cCut->CategoryNames())
            {
                const std::wstring sName = AssignedName(sAssignment);
                if (!sName.empty() && colSeen.insert(FoldCase(sName)).second)
                    Place(cCut, sName);
            }
        },
        [](const std::shared_ptr<Cut>& cCut, std::size_t lCount)
        {
            return DecimalText(static_cast<std::int64_t>(lCount)) + L"Added: " + cCut->Artist() + L" - " +
                   cCut->Title();
        });
}

void Population::RunPhase(const std::wstring& sReason, const Cuts& colCuts,
                          const std::function<void(const std::shared_ptr<Cut>&)>& work,
                          const std::function<std::wstring(const std::shared_ptr<Cut>&, std::size_t)>& text)
{
    m_cEvents.ProgressStart(sReason, colCuts.size());
    ProgressThrottle cThrottle(m_cMod.Outside().cClock);
    Pauses cPauses(m_cMod);
    std::size_t lCount = 0;
    for (const std::shared_ptr<Cut>& cCut : colCuts)
    {
        ++lCount;
        try
        {
            work(cCut);
            if (cThrottle.IsDue(lCount))
            {
                m_cEvents.Progress(text(cCut, lCount), lCount, colCuts.size());
                cThrottle.Reported();
            }
        }
        catch (...)
        {
            Problem& cProblem = ProblemOf(L"");
            if (m_colFailed.insert(cCut.get()).second && cProblem.lFailed++ == 0)
                cProblem.cFirstError = CurrentError();
        }
        if (ProgressThrottle::IsSample(lCount))
            cPauses.AtSample();
    }
}

void Population::Place(const std::shared_ptr<Cut>& cCut, const std::wstring& sName)
{
    const std::shared_ptr<clsCat> cMainCat = EnsureMainCat(sName);
    const std::int32_t lLevel = cCut->CatLevel();
    if (lLevel <= 0)
    {
        Problem& cProblem = ProblemOf(cMainCat->CatName());
        if (std::exchange(cProblem.bRefusalShown, true))
        {
            ++cProblem.lRefused;
            return;
        }
    }
    try
    {
        bool bCreatedNewSubCat = false;
        cMainCat->AddCut(cCut, bCreatedNewSubCat);
    }
    catch (const RuntimeError& cError)
    {
        const std::shared_ptr<clsCat> cSubCat = cMainCat->SubCat(lLevel);
        if (cError.Number() != error::Overflow || !cSubCat || !cSubCat->SchedCuts()->Exists(cCut->Key()))
            throw;
        ProblemOf(cMainCat->CatName()).bOverflow = true; // the cut is filed; only the sum cannot be told
    }
}

void Population::AddSavedCategories(const NameCollection& colNames)
{
    std::unordered_set<std::wstring> colAsSaved;
    for (const std::shared_ptr<clsCat>& cMainCat : *m_colMainCats)
        colAsSaved.insert(FoldCase(m_cCategoryList.AsSaved(cMainCat->CatName())));
    std::size_t lEmptyNames = 0;
    for (const std::wstring& sName : colNames)
    {
        if (sName.empty())
            RefuseEmptyName(L"0-length catname", lEmptyNames);
        // A name that the code page could not hold stands in the list with substitutes; it is the category
        // the database has.
        else if (colAsSaved.count(FoldCase(sName)) == 0)
            EnsureMainCat(sName);
    }
}

std::shared_ptr<clsCat> Population::EnsureMainCat(const std::wstring& sName)
{
    const std::wstring sKey = CategoryKey(sName, 0);
    if (const std::shared_ptr<clsCat>* cFound = m_colMainCats->Find(sKey))
        return *cFound;
    auto cMainCat = std::make_shared<clsCat>(m_cMod, sName, 0);
    m_colMainCats->Add(TextKey(sKey), cMainCat);
    return cMainCat;
}

void Population::RefuseEmptyName(const wchar_t* sText, std::size_t& lSeen)
{
    if (lSeen++ == 0) // the others are counted in the debug log
        m_cMod.Box(BoxIcon::None, BoxButtons::Ok, sProgramTitle, sText);
}

Population::Problem& Population::ProblemOf(const std::wstring& sName)
{
    const TextKey cKey(sName);
    if (!m_colProblems.Exists(cKey))
    {
        Problem cProblem;
        cProblem.sCatName = sName;
        m_colProblems.Add(cKey, cProblem);
    }
    return *m_colProblems.Find(cKey);
}

void Population::ReportProblems()
{
    const OrderedKeyedCollection<Problem> colProblems = std::exchange(m_colProblems, {});
    for (const Problem& cProblem : colProblems)
    {
        if (cProblem.lRefused > 0)
            m_cMod.WriteDebugLog(L"Not filed in category " + cProblem.sCatName + L", having no level: " +
                                 DecimalText(static_cast<std::int64_t>(cProblem.lRefused)) + L" more cuts.");
        if (cProblem.bOverflow)
            m_cMod.ShowCriticalError(L"Error in PopulateFromDataBase [cSchedMan]",
                                     RuntimeError(error::Overflow, StandardDescription(error::Overflow) +
                                                                       L": run times in category " +
                                                                       cProblem.sCatName));
        if (cProblem.lFailed > 0)
            m_cMod.ShowCriticalError(
                L"Error in PopulateFromDataBase [cSchedMan]",
                RuntimeError(cProblem.cFirstError.Number(),
                             cProblem.cFirstError.Description() + L" (" +
                                 DecimalText(static_cast<std::int64_t>(cProblem.lFailed)) +
                                 L" cuts could not be filed)"));
    }
}

} // namespace ravlo
