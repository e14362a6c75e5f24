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
    return Guard([&] { StoreIn(pVal, [&] { return m_violation.TitleMinsAgo; }); });
}
STDMETHODIMP RuleViolationFace::put_TitleMinsAgo(FLOAT newVal)
{
    return Guard([&] { m_violation.TitleMinsAgo = newVal; });
}
STDMETHODIMP RuleViolationFace::get_ArtistMinsAgo(FLOAT* pVal)
{
    return Guard([&] { StoreIn(pVal, [&] { return m_violation.ArtistMinsAgo; }); });
}
STDMETHODIMP RuleViolationFace::put_ArtistMinsAgo(FLOAT newVal)
{
    return Guard([&] { m_violation.ArtistMinsAgo = newVal; });
}
STDMETHODIMP RuleViolationFace::get_AlbumMinsAgo(FLOAT* pVal)
{
    return Guard([&] { StoreIn(pVal, [&] { return m_violation.AlbumMinsAgo; }); });
}
STDMETHODIMP RuleViolationFace::put_AlbumMinsAgo(FLOAT newVal)
{
    return Guard([&] { m_violation.AlbumMinsAgo = newVal; });
}
STDMETHODIMP RuleViolationFace::get_ViolationIndex(LONG* pVal)
{
    return Guard([&] { StoreIn(pVal, [&] { return m_violation.ViolationIndex; }); });
}
STDMETHODIMP RuleViolationFace::put_ViolationIndex(LONG newVal)
{
    return Guard([&] { m_violation.ViolationIndex = static_cast<std::int32_t>(newVal); });
}
STDMETHODIMP RuleViolationFace::get_Cut(_clsCut** pVal)
{
    return Guard([&] { StoreIn(pVal, [&] { return CutOut(m_violation.Cut).Detach(); }); });
}
STDMETHODIMP RuleViolationFace::putref_Cut(_clsCut* newVal)
{
    return Guard([&] { m_violation.Cut = CutFrom(newVal); });
}
STDMETHODIMP RuleViolationFace::get_Violation(::eRuleViolation* pVal)
{
    return Guard(
        [&] { StoreIn(pVal, [&] { return static_cast<::eRuleViolation>(m_violation.Violation); }); });
}
STDMETHODIMP RuleViolationFace::put_Violation(::eRuleViolation newVal)
{
    return Guard([&] { m_violation.Violation = static_cast<std::int32_t>(newVal); });
}
STDMETHODIMP RuleViolationFace::get_MinsAgo(FLOAT* pVal)
{
    return Guard([&] { StoreIn(pVal, [&] { return m_violation.MinsAgo; }); });
}
STDMETHODIMP RuleViolationFace::put_MinsAgo(FLOAT newVal)
{
    return Guard([&] { m_violation.MinsAgo = newVal; });
}

} // namespace ravlo
