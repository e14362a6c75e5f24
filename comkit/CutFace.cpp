// SPDX-License-Identifier: MIT
#include "comkit/CutFace.h"

#include "comkit/HostCut.h"

#include <algorithm>

namespace ravlo
{

const ClassIdentity CutFace::identity{CLSID_clsCut, LIBID_RavloBase, IID__clsCut,        nullptr,
                                      L"RavloBase", L"clsCut",       L"RavloBase.clsCut"};

namespace
{

// The names of the categories a cut is placed in, each keyed by itself.
class CategoriesModel final : public CollectionModel
{
public:
    explicit CategoriesModel(std::shared_ptr<Cut> cCut) : m_cCut(std::move(cCut)) {}

    std::size_t Count() const override { return m_cCut->CategoryNames().size(); }
    Variant At(std::size_t position) const override
    {
        return Variant(std::wstring_view(m_cCut->CategoryNames().at(position)));
    }
    std::optional<std::wstring> KeyAt(std::size_t position) const override
    {
        return m_cCut->CategoryNames().at(position);
    }
    std::optional<std::size_t> PositionOf(const std::wstring& sKey) const override
    {
        const std::vector<std::wstring> colNames = m_cCut->CategoryNames();
        for (std::size_t i = 0; i < colNames.size(); ++i)
            if (EqualIgnoringCase(colNames[i], sKey))
                return i;
        return std::nullopt;
    }
    void Insert(std::size_t position, const std::optional<std::wstring>& sKey, const VARIANT& item) override
    {
        const std::wstring sName = TextAdapter::FromVariant(item);
        if (sKey && !EqualIgnoringCase(*sKey, sName))
            throw RuntimeError(error::InvalidProcedureCall); // a name's only key is itself
        if (PositionOf(sName))
            throw RuntimeError(error::KeyAlreadyExists);
        const std::vector<std::wstring> colNames = m_cCut->CategoryNames();
        m_cCut->AddCategoryName(sName);
        // A cut adds names only at the end: those after the new one are removed and added again.
        for (std::size_t i = position; i < colNames.size(); ++i)
        {
            m_cCut->RemoveCategoryName(colNames[i]);
            m_cCut->AddCategoryName(colNames[i]);
        }
    }
    void RemoveAt(std::size_t position) override
    {
        m_cCut->RemoveCategoryName(m_cCut->CategoryNames().at(position));
    }

private:
    std::shared_ptr<Cut> m_cCut;
};

} // namespace

CutFace::CutFace(std::shared_ptr<Cut> cCut)
    : Dispatch(identity), m_cCut(std::move(cCut)),
      m_pChanges(dynamic_cast<const CountsChanges*>(m_cCut.get())),
      m_cEntry(m_cCut.get(), this, static_cast<_clsCut*>(this))
{
}

STDMETHODIMP CutFace::QueryInterface(REFIID iid, void** ppvObject)
{
    if (!ppvObject || iid != IID_IRevision || !m_pChanges)
        return Dispatch::QueryInterface(iid, ppvObject);
    *ppvObject = static_cast<IRevision*>(this);
    AddRef();
    return S_OK;
}

STDMETHODIMP CutFace::Revision(hyper* pVal)
{
    if (!pVal)
        return E_POINTER;
    *pVal = static_cast<hyper>(m_pChanges->Revision());
    return S_OK;
}

STDMETHODIMP CutFace::get_ID(LONG* pVal) { return Get(pVal, m_cCut, &Cut::ID); }
STDMETHODIMP CutFace::get_Key(BSTR* pVal)
{
    return Return(pVal, [&] { return m_cCut->Key().Text(); });
}
STDMETHODIMP CutFace::put_Key(BSTR newVal) { return Put(newVal, m_cCut, &Cut::SetKey); }
STDMETHODIMP CutFace::get_SecondaryKey(BSTR* pVal) { return Get(pVal, m_cCut, &Cut::SecondaryKey); }
STDMETHODIMP CutFace::put_SecondaryKey(BSTR newVal) { return Put(newVal, m_cCut, &Cut::SetSecondaryKey); }
STDMETHODIMP CutFace::get_Path(BSTR* pVal) { return Get(pVal, m_cCut, &Cut::Path); }
STDMETHODIMP CutFace::put_Path(BSTR newVal) { return Put(newVal, m_cCut, &Cut::SetPath); }
STDMETHODIMP CutFace::get_Artist(BSTR* pVal) { return Get(pVal, m_cCut, &Cut::Artist); }
STDMETHODIMP CutFace::put_Artist(BSTR newVal) { return Put(newVal, m_cCut, &Cut::SetArtist); }
STDMETHODIMP CutFace::get_Title(BSTR* pVal) { return Get(pVal, m_cCut, &Cut::Title); }
STDMETHODIMP CutFace::put_Title(BSTR newVal) { return Put(newVal, m_cCut, &Cut::SetTitle); }
STDMETHODIMP CutFace::get_Album(BSTR* pVal) { return Get(pVal, m_cCut, &Cut::Album); }
STDMETHODIMP CutFace::put_Album(BSTR newVal) { return Put(newVal, m_cCut, &Cut::SetAlbum); }
STDMETHODIMP CutFace::get_Year(LONG* pVal) { return Get(pVal, m_cCut, &Cut::Year); }
STDMETHODIMP CutFace::put_Year(LONG newVal) { return Put(newVal, m_cCut, &Cut::SetYear); }
STDMETHODIMP CutFace::get_CatLevel(LONG* pVal) { return Get(pVal, m_cCut, &Cut::CatLevel); }
STDMETHODIMP CutFace::put_CatLevel(LONG newVal) { return Put(newVal, m_cCut, &Cut::SetCatLevel); }
STDMETHODIMP CutFace::get_CategoryText(BSTR* pVal) { return Get(pVal, m_cCut, &Cut::CategoryText); }
STDMETHODIMP CutFace::put_CategoryText(BSTR newVal) { return Put(newVal, m_cCut, &Cut::SetCategoryText); }

STDMETHODIMP CutFace::get_Categories(_clsCollection** pVal)
{
    const auto make = [&] {
        return NewObject<CollectionFace>(m_cCut.get(), std::make_unique<CategoriesModel>(m_cCut));
    };
    return Return(pVal, [&] { return FaceMap<CollectionFace>::Instance().Get(m_cCut.get(), make); });
}

STDMETHODIMP CutFace::get_RunTimemS(LONG* pVal) { return Get(pVal, m_cCut, &Cut::RunTimemS); }
STDMETHODIMP CutFace::put_RunTimemS(LONG newVal) { return Put(newVal, m_cCut, &Cut::SetRunTimemS); }
STDMETHODIMP CutFace::get_DurationmS(LONG* pVal) { return Get(pVal, m_cCut, &Cut::DurationmS); }
STDMETHODIMP CutFace::put_DurationmS(LONG newVal) { return Put(newVal, m_cCut, &Cut::SetDurationmS); }
STDMETHODIMP CutFace::get_DurationText(BSTR* pVal) { return Get(pVal, m_cCut, &Cut::DurationText); }
STDMETHODIMP CutFace::get_LastPlayed(DATE* pVal) { return Get(pVal, m_cCut, &Cut::LastPlayed); }
STDMETHODIMP CutFace::put_LastPlayed(DATE newVal) { return Put(newVal, m_cCut, &Cut::SetLastPlayed); }
STDMETHODIMP CutFace::get_Opener(VARIANT_BOOL* pVal) { return Get(pVal, m_cCut, &Cut::Opener); }
STDMETHODIMP CutFace::put_Opener(VARIANT_BOOL newVal) { return Put(newVal, m_cCut, &Cut::SetOpener); }
STDMETHODIMP CutFace::get_CategoryKey(BSTR* pVal) { return Get(pVal, m_cCut, &Cut::CategoryKey); }
STDMETHODIMP CutFace::put_CategoryKey(BSTR newVal) { return Put(newVal, m_cCut, &Cut::SetCategoryKey); }
STDMETHODIMP CutFace::get_MustBeOpener(VARIANT_BOOL* pVal) { return Get(pVal, m_cCut, &Cut::MustBeOpener); }
STDMETHODIMP CutFace::put_MustBeOpener(VARIANT_BOOL newVal)
{
    return Put(newVal, m_cCut, &Cut::SetMustBeOpener);
}
STDMETHODIMP CutFace::get_KindCode(LONG* pVal) { return Get(pVal, m_cCut, &Cut::KindCode); }
STDMETHODIMP CutFace::put_KindCode(LONG newVal) { return Put(newVal, m_cCut, &Cut::SetKindCode); }
STDMETHODIMP CutFace::CloneCut(_clsCut** pVal)
{
    return Return(pVal, [&] { return CutOut(m_cCut->CloneCut()); });
}

ComPtr<_clsCut> CutOut(const std::shared_ptr<Cut>& cCut)
{
    if (!cCut)
        return nullptr;
    if (const auto* pHostCut = dynamic_cast<const HostCut*>(cCut.get()))
        return pHostCut->Host();
    return FaceMap<CutFace>::Instance().Get(cCut.get(), [&] { return NewObject<CutFace>(cCut); });
}

std::shared_ptr<Cut> CutFrom(_clsCut* pCut)
{
    if (!pCut)
        return nullptr;
    if (const CutFace* pFace = FaceMap<CutFace>::Instance().Find(pCut))
        return pFace->Core();
    return HostCut::Of(pCut);
}

Cuts CutsIn(IDispatch* colCuts)
{
    Cuts colResult;
    ForEachItem(colCuts, [&](const Variant& cItem) { colResult.push_back(CutAdapter::FromVariant(cItem)); });
    return colResult;
}

Variant CutAdapter::ToVariant(const std::shared_ptr<Cut>& cCut)
{
    return Variant(static_cast<IDispatch*>(CutOut(cCut).Get()));
}

std::shared_ptr<Cut> CutAdapter::FromVariant(const VARIANT& value)
{
    const auto cCut = ObjectIn<_clsCut>(value);
    if (!cCut)
        throw RuntimeError(error::TypeMismatch);
    return CutFrom(cCut.Get());
}

} // namespace ravlo
