// SPDX-License-Identifier: MIT
#include "com/CatFace.h"

#include "com/CatRulesFace.h"
#include "com/Library.h"

#include <optional>

namespace ravlo
{

const ClassIdentity CatFace::identity{
    CLSID_clsCat, LIBID_RavloScheduler,    IID__clsCat, nullptr, L"RavloScheduler",
    L"clsCat",    L"RavloScheduler.clsCat"};

CatFace::CatFace(std::shared_ptr<clsCat> cCat)
    : Dispatch(identity), m_cCat(std::move(cCat)), m_cEntry(m_cCat.get(), this, static_cast<_clsCat*>(this))
{
}

STDMETHODIMP CatFace::get_MainCat(_clsCat** pVal)
{
    return Return(pVal, [&] { return CatOut(m_cCat->MainCat()); });
}
STDMETHODIMP CatFace::putref_MainCat(_clsCat* newVal)
{
    return Guard([&] { m_cCat->SetMainCat(CatFrom(newVal)); });
}
STDMETHODIMP CatFace::put_CatName(BSTR newVal) { return Put(newVal, m_cCat, &clsCat::SetCatName); }
STDMETHODIMP CatFace::get_CatName(BSTR* pVal) { return Get(pVal, m_cCat, &clsCat::CatName); }
STDMETHODIMP CatFace::get_CatLevel(LONG* pVal) { return Get(pVal, m_cCat, &clsCat::CatLevel); }
STDMETHODIMP CatFace::put_CatLevel(LONG newVal) { return Put(newVal, m_cCat, &clsCat::SetCatLevel); }
STDMETHODIMP CatFace::get_Rules(_clsCatRules** pVal)
{
    return Return(pVal, [&] { return RulesOut(m_cCat->Rules()); });
}
STDMETHODIMP CatFace::putref_Rules(_clsCatRules* newVal)
{
    return Guard([&] { m_cCat->SetRules(RulesFrom(newVal)); });
}
STDMETHODIMP CatFace::get_AverageRunTimemS(LONG* pVal)
{
    return Get(pVal, m_cCat, &clsCat::AverageRunTimemS);
}
STDMETHODIMP CatFace::get_SchedCuts(_clsCollection** pVal)
{
    return Return(pVal, [&] { return FaceOfCollection<CutAdapter>(m_cCat->SchedCuts()); });
}
STDMETHODIMP CatFace::putref_SchedCuts(IDispatch* newVal)
{
    return Guard([&] {
        // An item that is no cut, and an object that is no collection, are shown; errors of the cuts go to
        // the caller.
        const std::optional<Cuts> colCuts =
            Trap(Library(), L"SchedCuts [clsCat]", std::optional<Cuts>(),
                 [&] { return newVal ? std::optional(CutsIn(newVal)) : std::nullopt; });
        if (colCuts)
            m_cCat->SetSchedCuts(*colCuts);
    });
}
STDMETHODIMP CatFace::AddCut(_clsCut* cCut, VARIANT_BOOL* bCreatedNewSubCat, VARIANT_BOOL* pVal)
{
    return Guard([&] {
        bool bCreated = false;
        const auto report = [&] {
            if (bCreatedNewSubCat && bCreated)
                *bCreatedNewSubCat = VARIANT_TRUE;
        };
        try
        {
            StoreIn(pVal, [&] { return m_cCat->AddCut(CutFrom(cCut), bCreated); });
        }
        catch (const RuntimeError&)
        {
            report(); // the cut may have been placed before the error
            throw;
        }
        report();
    });
}
STDMETHODIMP CatFace::RemoveCut(_clsCut* cCut, VARIANT_BOOL* pVal)
{
    return Return(pVal, [&] { return m_cCat->RemoveCut(CutFrom(cCut)); });
}
STDMETHODIMP CatFace::get_TotalCuts(LONG* pVal) { return Get(pVal, m_cCat, &clsCat::TotalCuts); }
STDMETHODIMP CatFace::get_SubCats(_clsCollection** pVal)
{
    // An item added to the collection becomes a level, as with AddSubCat.
    const auto accept = [cWeak = std::weak_ptr(m_cCat)](const std::shared_ptr<clsCat>& cLevel) {
        const std::shared_ptr<clsCat> cCat = cWeak.lock();
        if (!cCat)
            return;
        cCat->RequireLevel(*cLevel);
        cLevel->SetMainCat(cCat);
    };
    return Return(pVal, [&] { return FaceOfCollection<CatAdapter>(m_cCat->SubCats(), accept); });
}
STDMETHODIMP CatFace::AddSubCat(_clsCat* cSubCat, VARIANT_BOOL* pVal)
{
    return Return(pVal, [&] { return m_cCat->AddSubCat(CatFrom(cSubCat)); });
}
STDMETHODIMP CatFace::RemoveSubCat(_clsCat* cSubCat, VARIANT_BOOL* pVal)
{
    return Return(pVal, [&] { return m_cCat->RemoveSubCat(CatFrom(cSubCat)); });
}
STDMETHODIMP CatFace::get_CatID(BSTR* pVal) { return Get(pVal, m_cCat, &clsCat::CatID); }

ComPtr<_clsCat> CatOut(const std::shared_ptr<clsCat>& cCat)
{
    if (!cCat)
        return nullptr;
    return FaceMap<CatFace>::Instance().Get(cCat.get(), [&] { return NewObject<CatFace>(cCat); });
}

std::shared_ptr<clsCat> CatFrom(_clsCat* pCat)
{
    if (!pCat)
        return nullptr;
    if (const CatFace* pFace = FaceMap<CatFace>::Instance().Find(pCat))
        return pFace->Core();
    throw RuntimeError(error::TypeMismatch);
}

Cats CatsIn(IDispatch* colCats)
{
    Cats colResult;
    if (colCats)
        ForEachItem(colCats,
                    [&](const Variant& cItem) { colResult.push_back(CatAdapter::FromVariant(cItem)); });
    return colResult;
}

Variant CatAdapter::ToVariant(const std::shared_ptr<clsCat>& cCat)
{
    return Variant(static_cast<IDispatch*>(CatOut(cCat).Get()));
}

std::shared_ptr<clsCat> CatAdapter::FromVariant(const VARIANT& value)
{
    const auto cCat = ObjectIn<_clsCat>(value);
    if (!cCat)
        throw RuntimeError(error::TypeMismatch);
    return CatFrom(cCat.Get());
}

} // namespace ravlo
