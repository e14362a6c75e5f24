// SPDX-License-Identifier: MIT
#pragma once

#include "comkit/Dispatch.h"
#include "comkit/FaceMap.h"
#include "model/clsCatRules.h"

#include <RavloScheduler.h>

#include <memory>

namespace ravlo
{

// _clsCatRules over a rules object, which rewrites its file with its last release.
class CatRulesFace final : public Dispatch<_clsCatRules>
{
public:
    explicit CatRulesFace(std::shared_ptr<clsCatRules> cRules);

    const std::shared_ptr<clsCatRules>& Core() const noexcept { return m_cRules; }

    STDMETHODIMP get_AlbumSepMins(LONG* pVal) override;
    STDMETHODIMP put_AlbumSepMins(LONG newVal) override;
    STDMETHODIMP put_CatID(BSTR newVal) override;
    STDMETHODIMP get_CatID(BSTR* pVal) override;
    STDMETHODIMP get_ArtistSepMins(LONG* pVal) override;
    STDMETHODIMP put_ArtistSepMins(LONG newVal) override;
    STDMETHODIMP get_TitleSepMins(LONG* pVal) override;
    STDMETHODIMP put_TitleSepMins(LONG newVal) override;
    STDMETHODIMP get_IgnoreRules(VARIANT_BOOL* pVal) override;
    STDMETHODIMP put_IgnoreRules(VARIANT_BOOL newVal) override;
    STDMETHODIMP SaveRules(VARIANT_BOOL* pVal) override;

    static const ClassIdentity identity;

private:
    std::shared_ptr<clsCatRules> m_cRules;
    FaceEntry<CatRulesFace> m_cEntry;
};

// Returns the one face of a rules object; null for null.
ComPtr<_clsCatRules> RulesOut(const std::shared_ptr<clsCatRules>& cRules);

// Returns the rules object of a face; null for null. Throws error 13 for an object that is no face of this
// library.
std::shared_ptr<clsCatRules> RulesFrom(_clsCatRules* pRules);

} // namespace ravlo
