// SPDX-License-Identifier: MIT
#include "com/CatRulesFace.h"

#include "comkit/Variant.h"

namespace ravlo
{

const ClassIdentity CatRulesFace::identity{
    CLSID_clsCatRules, LIBID_RavloScheduler,         IID__clsCatRules, nullptr, L"RavloScheduler",
    L"clsCatRules",    L"RavloScheduler.clsCatRules"};

CatRulesFace::CatRulesFace(std::shared_ptr<clsCatRules> cRules)
    : Dispatch(identity), m_cRules(std::move(cRules)),
      m_cEntry(m_cRules.get(), this, static_cast<_clsCatRules*>(this))
{
}

STDMETHODIMP CatRulesFace::get_AlbumSepMins(LONG* pVal)
{
    return Get(pVal, m_cRules, &clsCatRules::AlbumSepMins);
}
STDMETHODIMP CatRulesFace::put_AlbumSepMins(LONG newVal)
{
    return Put(newVal, m_cRules, &clsCatRules::SetAlbumSepMins);
}
STDMETHODIMP CatRulesFace::put_CatID(BSTR newVal) { return Put(newVal, m_cRules, &clsCatRules::SetCatID); }
STDMETHODIMP CatRulesFace::get_CatID(BSTR* pVal) { return Get(pVal, m_cRules, &clsCatRules::CatID); }
STDMETHODIMP CatRulesFace::get_ArtistSepMins(LONG* pVal)
{
    return Get(pVal, m_cRules, &clsCatRules::ArtistSepMins);
}
STDMETHODIMP CatRulesFace::put_ArtistSepMins(LONG newVal)
{
    return Put(newVal, m_cRules, &clsCatRules::SetArtistSepMins);
}
STDMETHODIMP CatRulesFace::get_TitleSepMins(LONG* pVal)
{
    return Get(pVal, m_cRules, &clsCatRules::TitleSepMins);
}
STDMETHODIMP CatRulesFace::put_TitleSepMins(LONG newVal)
{
    return Put(newVal, m_cRules, &clsCatRules::SetTitleSepMins);
}
STDMETHODIMP CatRulesFace::get_IgnoreRules(VARIANT_BOOL* pVal)
{
    return Get(pVal, m_cRules, &clsCatRules::IgnoreRules);
}
STDMETHODIMP CatRulesFace::put_IgnoreRules(VARIANT_BOOL newVal)
{
    return Put(newVal, m_cRules, &clsCatRules::SetIgnoreRules);
}
STDMETHODIMP CatRulesFace::SaveRules(VARIANT_BOOL* pVal)
{
    return Get(pVal, m_cRules, &clsCatRules::SaveRules);
}

ComPtr<_clsCatRules> RulesOut(const std::shared_ptr<clsCatRules>& cRules)
{
    if (!cRules)
        return nullptr;
    return FaceMap<CatRulesFace>::Instance().Get(cRules.get(),
                                                 [&] { return NewObject<CatRulesFace>(cRules); });
}

std::shared_ptr<clsCatRules> RulesFrom(_clsCatRules* pRules)
{
    if (!pRules)
        return nullptr;
    if (const CatRulesFace* pFace = FaceMap<CatRulesFace>::Instance().Find(pRules))
        return pFace->Core();
    throw RuntimeError(error::TypeMismatch);
}

} // namespace ravlo
