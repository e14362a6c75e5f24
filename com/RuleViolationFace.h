// SPDX-License-Identifier: MIT
#pragma once

#include "comkit/CutFace.h"
#include "model/clsRuleViolation.h"

#include <RavloScheduler.h>

namespace ravlo
{

// _clsRuleViolation over its own record.
class RuleViolationFace final : public Dispatch<_clsRuleViolation>
{
public:
    RuleViolationFace();

    STDMETHODIMP get_TitleMinsAgo(FLOAT* pVal) override;
    STDMETHODIMP put_TitleMinsAgo(FLOAT newVal) override;
    STDMETHODIMP get_ArtistMinsAgo(FLOAT* pVal) override;
    STDMETHODIMP put_ArtistMinsAgo(FLOAT newVal) override;
    STDMETHODIMP get_AlbumMinsAgo(FLOAT* pVal) override;
    STDMETHODIMP put_AlbumMinsAgo(FLOAT newVal) override;
    STDMETHODIMP get_ViolationIndex(LONG* pVal) override;
    STDMETHODIMP put_ViolationIndex(LONG newVal) override;
    STDMETHODIMP get_Cut(_clsCut** pVal) override;
    STDMETHODIMP putref_Cut(_clsCut* newVal) override;
    STDMETHODIMP get_Violation(::eRuleViolation* pVal) override;
    STDMETHODIMP put_Violation(::eRuleViolation newVal) override;
    STDMETHODIMP get_MinsAgo(FLOAT* pVal) override;
    STDMETHODIMP put_MinsAgo(FLOAT newVal) override;

    static const ClassIdentity identity;

private:
    clsRuleViolation m_violation;
};

} // namespace ravlo
