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
    return Guard([&] { StoreIn(pVal, [&] { return m_cRules->AlbumSepMins(); }); });
}
STDMETHODIMP CatRulesFace::put_AlbumSepMins(LONG newVal)
{
    return Guard([&] { m_cRules->SetAlbumSepMins(static_cast<std::int32_t>(newVal)); });
}
STDMETHODIMP CatRulesFace::put_CatID(BSTR newVal)
{
    return Guard([&] { m_cRules->SetCatID(TextOf(newVal)); });
}
STDMETHODIMP CatRulesFace::get_CatID(BSTR* pVal)
{
    return Guard([&] { StoreIn(pVal, [&] { return NewBstr(m_cRules->CatID()); }); });
}
STDMETHODIMP CatRulesFace::get_ArtistSepMins(LONG* pVal)
{
    return Guard([&] { StoreIn(pVal, [&] { return m_cRules->ArtistSepMins(); }); });
}
STDMETHODIMP CatRulesFace::put_ArtistSepMins(LONG newVal)
{
    return Guard([&] { m_cRules->SetArtistSepMins(static_cast<std::int32_t>(newVal)); });
}
STDMETHODIMP CatRulesFace::get_TitleSepMins(LONG* pVal)
{
    return Guard([&] { StoreIn(pVal, [&] { return m_cRules->TitleSepMins(); }); });
}
STDMETHODIMP CatRulesFace::put_TitleSepMins(LONG newVal)
{
    return Guard([&] { m_cRules->SetTitleSepMins(static_cast<std::int32_t>(newVal)); });
}
STDMETHODIMP CatRulesFace::get_IgnoreRules(VARIANT_BOOL* pVal)
{
    return Guard([&] { StoreIn(pVal, [&] { return BoolOf(m_cRules->IgnoreRules()); }); });
}
STDMETHODIMP CatRulesFace::put_IgnoreRules(VARIANT_BOOL newVal)
{
    return Guard([&] { m_cRules->SetIgnoreRules(newVal != VARIANT_FALSE); });
}
STDMETHODIMP CatRulesFace::SaveRules(VARIANT_BOOL* pVal)
{
    return Guard([&] { StoreIn(pVal, [&] { return BoolOf(m_cRules->SaveRules()); }); });
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
