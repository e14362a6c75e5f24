// SPDX-License-Identifier: MIT
#pragma once

#include "comkit/CutFace.h"
#include "model/clsCat.h"

#include <RavloScheduler.h>

#include <memory>

namespace ravlo
{

// _clsCat over a category or a category level, which it keeps alive. A level does not keep its main category
// alive.
class CatFace final : public Dispatch<_clsCat>
{
public:
    explicit CatFace(std::shared_ptr<clsCat> cCat);

    const std::shared_ptr<clsCat>& Core() const noexcept { return m_cCat; }

    STDMETHODIMP get_MainCat(_clsCat** pVal) override;
    STDMETHODIMP putref_MainCat(_clsCat* newVal) override;
    STDMETHODIMP put_CatName(BSTR newVal) override;
    STDMETHODIMP get_CatName(BSTR* pVal) override;
    STDMETHODIMP get_CatLevel(LONG* pVal) override;
    STDMETHODIMP put_CatLevel(LONG newVal) override;
    STDMETHODIMP get_Rules(_clsCatRules** pVal) override;
    STDMETHODIMP putref_Rules(_clsCatRules* newVal) override;
    STDMETHODIMP get_AverageRunTimemS(LONG* pVal) override;
    STDMETHODIMP get_SchedCuts(_clsCollection** pVal) override;
    STDMETHODIMP putref_SchedCuts(IDispatch* newVal) override;
    STDMETHODIMP AddCut(_clsCut* cCut, VARIANT_BOOL* bCreatedNewSubCat, VARIANT_BOOL* pVal) override;
    STDMETHODIMP RemoveCut(_clsCut* cCut, VARIANT_BOOL* pVal) override;
    STDMETHODIMP get_TotalCuts(LONG* pVal) override;
    STDMETHODIMP get_SubCats(_clsCollection** pVal) override;
    STDMETHODIMP AddSubCat(_clsCat* cSubCat, VARIANT_BOOL* pVal) override;
    STDMETHODIMP RemoveSubCat(_clsCat* cSubCat, VARIANT_BOOL* pVal) override;
    STDMETHODIMP get_CatID(BSTR* pVal) override;

    static const ClassIdentity identity;

private:
    std::shared_ptr<clsCat> m_cCat;
    FaceEntry<CatFace> m_cEntry;
};

// Returns the one face of a category; null for null.
ComPtr<_clsCat> CatOut(const std::shared_ptr<clsCat>& cCat);

// Returns the category of a face; null for null. Throws error 13 for an object that is no category of this
// library.
std::shared_ptr<clsCat> CatFrom(_clsCat* pCat);

// Returns the categories of an automation collection, in order; none for null. Throws error 13 when an item
// is no category.
Cats CatsIn(IDispatch* colCats);

// Items that are categories.
struct CatAdapter
{
    static Variant ToVariant(const std::shared_ptr<clsCat>& cCat);
    static std::shared_ptr<clsCat> FromVariant(const VARIANT& value);
};

} // namespace ravlo
