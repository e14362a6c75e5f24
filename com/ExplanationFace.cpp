// SPDX-License-Identifier: MIT
#include "com/ExplanationFace.h"

#include "comkit/Collection.h"
#include "comkit/CutFace.h"

namespace ravlo
{

const ClassIdentity ExplanationFace::identity{CLSID_clsExplanation,
                                              LIBID_RavloScheduler,
                                              IID__clsExplanation,
                                              nullptr,
                                              L"RavloScheduler",
                                              L"clsExplanation",
                                              L"RavloScheduler.clsExplanation"};
const ClassIdentity ExplanationStepFace::identity{CLSID_clsExplanationStep,
                                                  LIBID_RavloScheduler,
                                                  IID__clsExplanationStep,
                                                  nullptr,
                                                  L"RavloScheduler",
                                                  L"clsExplanationStep",
                                                  L"RavloScheduler.clsExplanationStep"};

ExplanationFace::ExplanationFace(std::shared_ptr<const Explanation> cExplanation)
    : Dispatch(identity), m_cExplanation(std::move(cExplanation))
{
}

STDMETHODIMP ExplanationFace::get_Cut(_clsCut** pVal)
{
    return Return(pVal, [&] { return CutOut(m_cExplanation->cCut); });
}
STDMETHODIMP ExplanationFace::get_KindCode(LONG* pVal)
{
    return Return(pVal, [&] { return static_cast<LONG>(m_cExplanation->eKind); });
}
STDMETHODIMP ExplanationFace::get_Text(BSTR* pVal) { return Get(pVal, m_cExplanation, &Explanation::Text); }
STDMETHODIMP ExplanationFace::get_Steps(_clsCollection** pVal)
{
    return Return(pVal, [&] {
        const auto colSteps = std::make_shared<ItemCollection>();
        for (std::size_t step = 0; step < m_cExplanation->steps.size(); ++step)
        {
            const auto cFace = NewObject<ExplanationStepFace>(m_cExplanation, step);
            colSteps->Insert(step, nullptr, Variant(static_cast<IDispatch*>(cFace.Get())));
        }
        return ComPtr<_clsCollection>(NewCollection(colSteps));
    });
}

ExplanationStepFace::ExplanationStepFace(std::shared_ptr<const Explanation> cExplanation, std::size_t step)
    : Dispatch(identity), m_cExplanation(std::move(cExplanation)), m_step(step)
{
}

STDMETHODIMP ExplanationStepFace::get_Cut(_clsCut** pVal)
{
    return Return(pVal, [&] { return CutOut(Step().candidate.cCut); });
}
STDMETHODIMP ExplanationStepFace::get_Verdict(LONG* pVal)
{
    return Return(pVal, [&] { return static_cast<LONG>(Step().eVerdict); });
}
STDMETHODIMP ExplanationStepFace::get_MinsAgo(FLOAT* pVal)
{
    return Return(pVal, [&] { return Step().breach.MinsAgo; });
}
STDMETHODIMP ExplanationStepFace::get_RequiredMins(LONG* pVal)
{
    return Return(pVal, [&] { return Step().breach.lRequiredMins; });
}
STDMETHODIMP ExplanationStepFace::get_BlockedBy(_clsCut** pVal)
{
    return Return(pVal, [&] { return CutOut(Step().breach.cBlockedBy); });
}
STDMETHODIMP ExplanationStepFace::get_Text(BSTR* pVal)
{
    return Return(pVal, [&] { return Step().Text(); });
}

ComPtr<_clsExplanation> ExplanationOut(const std::shared_ptr<const Explanation>& cExplanation)
{
    if (!cExplanation)
        return nullptr;
    return ComPtr<_clsExplanation>(NewObject<ExplanationFace>(cExplanation));
}

} // namespace ravlo
