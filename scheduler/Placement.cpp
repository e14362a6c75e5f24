// SPDX-License-Identifier: MIT
#include "scheduler/Placement.h"

#include "base/Text.h"

#include <utility>

namespace ravlo
{

std::shared_ptr<clsCat> EnsureMainCat(ModScheduler& cMod, CatCollection& colMainCats,
                                      const std::wstring& sName)
{
    return EnsureMainCat(cMod, colMainCats, {sName, TextKey(CategoryKey(sName, 0))});
}

std::shared_ptr<clsCat> EnsureMainCat(ModScheduler& cMod, CatCollection& colMainCats,
                                      const NameLists::Name& name)
{
    if (const std::shared_ptr<clsCat>* cFound = colMainCats.Find(name.cKey))
        return *cFound;
    auto cMainCat = std::make_shared<clsCat>(cMod, name.sName, 0);
    colMainCats.Add(name.cKey, cMainCat);
    return cMainCat;
}

bool Placement::Place(const std::shared_ptr<Cut>& cCut, clsCat& cInto, bool& bCreatedNewSubCat)
{
    const std::int32_t lLevel = cCut->CatLevel();
    if (lLevel <= 0)
    {
        Problem& cProblem = ProblemOf(cInto.CatName());
        bool& bShown = lLevel == 0 ? cProblem.bLevelZeroShown : cProblem.bNegativeLevelShown;
        if (std::exchange(bShown, true))
        {
            ++cProblem.refused;
            return false;
        }
    }
    try
    {
        return cInto.AddCut(cCut, bCreatedNewSubCat);
    }
    catch (const RuntimeError& cError)
    {
        const std::shared_ptr<clsCat> cSubCat =
            cInto.CatLevel() == 0 ? cInto.SubCat(lLevel) : cInto.shared_from_this();
        if (cError.Number() != error::Overflow || !cSubCat || !cSubCat->SchedCuts()->Exists(cCut->Key()))
            throw;
        ProblemOf(cInto.CatName()).bOverflow = true; // the cut is placed; only the sum is out of range
        return true;
    }
}

void Placement::RecalcTouched()
{
    m_colIsTouched.clear();
    for (const std::shared_ptr<clsCat>& cSubCat : std::exchange(m_colTouched, {}))
    {
        try
        {
            cSubCat->RecalcTotalRunTime();
        }
        catch (const RuntimeError& cError)
        {
            if (cError.Number() == error::Overflow)
                ProblemOf(cSubCat->CatName()).bOverflow = true;
            else
                Failed();
        }
    }
}

void Placement::Failed(const Cut& cCut) noexcept
{
    try
    {
        m_colFailed.insert(&cCut);
    }
    catch (...)
    {
        // Out of memory: not counted, but the error is still kept.
    }
    Failed();
}

void Placement::Failed() noexcept
{
    if (!m_cFirstFailure)
        m_cFirstFailure = CurrentError();
}

void Placement::EmptyName(BoxIcon eIcon, const std::wstring& sText)
{
    if (m_emptyNames++ == 0)
        m_cMod.Box(eIcon, BoxButtons::Ok, sProgramTitle, sText);
}

void Placement::Report(const std::function<void(const RuntimeError&)>& show)
{
    RecalcTouched();
    const OrderedKeyedCollection<Problem> colProblems = std::exchange(m_colProblems, {});
    const std::size_t failed = std::exchange(m_colFailed, {}).size();
    const std::optional<RuntimeError> cFirstFailure = std::exchange(m_cFirstFailure, std::nullopt);
    if (const std::size_t emptyNames = std::exchange(m_emptyNames, 0); emptyNames > 1)
        m_cMod.WriteDebugLog(L"Zero-length cat names are illegal: " + CountText(emptyNames) + L" in all.");
    for (const Problem& cProblem : colProblems)
    {
        if (cProblem.refused > 0)
            m_cMod.WriteDebugLog(L"Not placed in category " + cProblem.sCatName + L", having no level: " +
                                 CountText(cProblem.refused) + L" more cuts.");
        if (cProblem.bOverflow)
            show(RuntimeError(error::Overflow, StandardDescription(error::Overflow) +
                                                   L": run times in category " + cProblem.sCatName));
    }
    if (cFirstFailure)
        show(failed == 0 ? *cFirstFailure
                         : RuntimeError(cFirstFailure->Number(), cFirstFailure->Description() + L" (" +
                                                                     CountText(failed) +
                                                                     L" cuts could not be handled)"));
}

Placement::Problem& Placement::ProblemOf(const std::wstring& sCatName)
{
    const TextKey cKey(sCatName);
    if (!m_colProblems.Exists(cKey))
    {
        Problem cProblem;
        cProblem.sCatName = sCatName;
        m_colProblems.Add(cKey, std::move(cProblem));
    }
    return *m_colProblems.Find(cKey);
}

} // namespace ravlo
