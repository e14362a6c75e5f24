// SPDX-License-Identifier: MIT
#include "com/RuleViolationFace.h"

namespace ravlo
{

const ClassIdentity RuleViolationFace::identity{CLSID_clsRuleViolation,
                                                LIBID_RavloScheduler,
                                                IID__clsRuleViolation,
                                                nullptr,
                                                L"RavloScheduler",
                                                L"clsRuleViolation",
                                                L"RavloScheduler.clsRuleViolation"};

RuleViolationFace::RuleViolationFace() : Dispatch(identity) {}

STDMETHODIMP RuleViolationFace::get_TitleMinsAgo(FLOAT* pVal)
{
    return Get(pVal, &m_violation, &clsRuleViolation::TitleMinsAgo);
}
STDMETHODIMP RuleViolationFace::put_TitleMinsAgo(FLOAT newVal)
{
    return Put(newVal, &m_violation, &clsRuleViolation::TitleMinsAgo);
}
STDMETHODIMP RuleViolationFace::get_ArtistMinsAgo(FLOAT* pVal)
{
    return Get(pVal, &m_violation, &clsRuleViolation::ArtistMinsAgo);
}
STDMETHODIMP RuleViolationFace::put_ArtistMinsAgo(FLOAT newVal)
{
    return Put(newVal, &m_violation, &clsRuleViolation::ArtistMinsAgo);
}
STDMETHODIMP RuleViolationFace::get_AlbumMinsAgo(FLOAT* pVal)
{
    return Get(pVal, &m_violation, &clsRuleViolation::AlbumMinsAgo);
}
STDMETHODIMP RuleViolationFace::put_AlbumMinsAgo(FLOAT newVal)
{
    return Put(newVal, &m_violation, &clsRuleViolation::AlbumMinsAgo);
}
STDMETHODIMP RuleViolationFace::get_ViolationIndex(LONG* pVal)
{
    return Get(pVal, &m_violation, &clsRuleViolation::ViolationIndex);
}
STDMETHODIMP RuleViolationFace::put_ViolationIndex(LONG newVal)
{
    return Put(newVal, &m_violation, &clsRuleViolation::ViolationIndex);
}
STDMETHODIMP RuleViolationFace::get_Cut(_clsCut** pVal)
{
    return Return(pVal, [&] { return CutOut(m_violation.Cut); });
}
STDMETHODIMP RuleViolationFace::putref_Cut(_clsCut* newVal)
{
    return Guard([&] { m_violation.Cut = CutFrom(newVal); });
}
STDMETHODIMP RuleViolationFace::get_Violation(::eRuleViolation* pVal)
{
    return Guard([&] { Out(pVal) = static_cast<::eRuleViolation>(m_violation.Violation); });
}
STDMETHODIMP RuleViolationFace::put_Violation(::eRuleViolation newVal)
{
    return Guard([&] { m_violation.Violation = static_cast<std::int32_t>(newVal); });
}
STDMETHODIMP RuleViolationFace::get_MinsAgo(FLOAT* pVal)
{
    return Get(pVal, &m_violation, &clsRuleViolation::MinsAgo);
}
STDMETHODIMP RuleViolationFace::put_MinsAgo(FLOAT newVal)
{
    return Put(newVal, &m_violation, &clsRuleViolation::MinsAgo);
}

} // namespace ravlo
