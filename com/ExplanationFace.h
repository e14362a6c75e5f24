// SPDX-License-Identifier: MIT
#pragma once

#include "comkit/Dispatch.h"
#include "rotation/Explanation.h"

#include <RavloScheduler.h>

#include <cstddef>
#include <memory>

namespace ravlo
{

// _clsExplanation over an explanation.
class ExplanationFace final : public Dispatch<_clsExplanation>
{
public:
    explicit ExplanationFace(std::shared_ptr<const Explanation> cExplanation);

    STDMETHODIMP get_Cut(_clsCut** pVal) override;
    STDMETHODIMP get_KindCode(LONG* pVal) override;
    STDMETHODIMP get_Text(BSTR* pVal) override;
    STDMETHODIMP get_Steps(_clsCollection** pVal) override;

    static const ClassIdentity identity;

private:
    std::shared_ptr<const Explanation> m_cExplanation;
};

// _clsExplanationStep over a step of one.
class ExplanationStepFace final : public Dispatch<_clsExplanationStep>
{
public:
    ExplanationStepFace(std::shared_ptr<const Explanation> cExplanation, std::size_t step);

    STDMETHODIMP get_Cut(_clsCut** pVal) override;
    STDMETHODIMP get_Verdict(LONG* pVal) override;
    STDMETHODIMP get_MinsAgo(FLOAT* pVal) override;
    STDMETHODIMP get_RequiredMins(LONG* pVal) override;
    STDMETHODIMP get_BlockedBy(_clsCut** pVal) override;
    STDMETHODIMP get_Text(BSTR* pVal) override;

    static const ClassIdentity identity;

private:
    const Explanation::Step& Step() const noexcept { return m_cExplanation->steps[m_step]; }

    std::shared_ptr<const Explanation> m_cExplanation;
    std::size_t m_step;
};

// Null for null.
ComPtr<_clsExplanation> ExplanationOut(const std::shared_ptr<const Explanation>& cExplanation);

} // namespace ravlo
