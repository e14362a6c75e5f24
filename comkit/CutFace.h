// SPDX-License-Identifier: MIT
#pragma once

#include "comkit/Collection.h"
#include "media/CountsChanges.h"
#include "media/DataBase.h"

#include <RavloBase.h>

#include <memory>

namespace ravlo
{

// _clsCut over a core cut; IRevision too when the core cut counts its changes.
class CutFace final : public Dispatch<_clsCut>, public IRevision
{
public:
    explicit CutFace(std::shared_ptr<Cut> cCut);

    const std::shared_ptr<Cut>& Core() const noexcept { return m_cCut; }

    STDMETHODIMP QueryInterface(REFIID iid, void** ppvObject) override;
    STDMETHODIMP_(ULONG) AddRef() override { return Dispatch::AddRef(); }
    STDMETHODIMP_(ULONG) Release() override { return Dispatch::Release(); }

    STDMETHODIMP Revision(hyper* pVal) override;

    STDMETHODIMP get_ID(LONG* pVal) override;
    STDMETHODIMP get_Key(BSTR* pVal) override;
    STDMETHODIMP put_Key(BSTR newVal) override;
    STDMETHODIMP get_SecondaryKey(BSTR* pVal) override;
    STDMETHODIMP put_SecondaryKey(BSTR newVal) override;
    STDMETHODIMP get_Path(BSTR* pVal) override;
    STDMETHODIMP put_Path(BSTR newVal) override;
    STDMETHODIMP get_Artist(BSTR* pVal) override;
    STDMETHODIMP put_Artist(BSTR newVal) override;
    STDMETHODIMP get_Title(BSTR* pVal) override;
    STDMETHODIMP put_Title(BSTR newVal) override;
    STDMETHODIMP get_Album(BSTR* pVal) override;
    STDMETHODIMP put_Album(BSTR newVal) override;
    STDMETHODIMP get_Year(LONG* pVal) override;
    STDMETHODIMP put_Year(LONG newVal) override;
    STDMETHODIMP get_CatLevel(LONG* pVal) override;
    STDMETHODIMP put_CatLevel(LONG newVal) override;
    STDMETHODIMP get_CategoryText(BSTR* pVal) override;
    STDMETHODIMP put_CategoryText(BSTR newVal) override;
    STDMETHODIMP get_Categories(_clsCollection** pVal) override;
    STDMETHODIMP get_RunTimemS(LONG* pVal) override;
    STDMETHODIMP put_RunTimemS(LONG newVal) override;
    STDMETHODIMP get_DurationmS(LONG* pVal) override;
    STDMETHODIMP put_DurationmS(LONG newVal) override;
    STDMETHODIMP get_DurationText(BSTR* pVal) override;
    STDMETHODIMP get_LastPlayed(DATE* pVal) override;
    STDMETHODIMP put_LastPlayed(DATE newVal) override;
    STDMETHODIMP get_Opener(VARIANT_BOOL* pVal) override;
    STDMETHODIMP put_Opener(VARIANT_BOOL newVal) override;
    STDMETHODIMP get_CategoryKey(BSTR* pVal) override;
    STDMETHODIMP put_CategoryKey(BSTR newVal) override;
    STDMETHODIMP get_MustBeOpener(VARIANT_BOOL* pVal) override;
    STDMETHODIMP put_MustBeOpener(VARIANT_BOOL newVal) override;
    STDMETHODIMP get_KindCode(LONG* pVal) override;
    STDMETHODIMP put_KindCode(LONG newVal) override;
    STDMETHODIMP CloneCut(_clsCut** pVal) override;

    static const ClassIdentity identity;

private:
    std::shared_ptr<Cut> m_cCut;
    const CountsChanges* m_pChanges; // of that cut; null when it does not count them
    FaceEntry<CutFace> m_cEntry;
};

// A core cut as hosts see it: the host's own object for a host's cut, else its one face. Null for null.
ComPtr<_clsCut> CutOut(const std::shared_ptr<Cut>& cCut);

// The core's cut for a host's object. Null for null.
std::shared_ptr<Cut> CutFrom(_clsCut* pCut);

// The cuts of an automation collection, in order. Throws error 13 when an item is no cut.
Cuts CutsIn(IDispatch* colCuts);

// Items that are cuts.
struct CutAdapter
{
    static Variant ToVariant(const std::shared_ptr<Cut>& cCut);
    static std::shared_ptr<Cut> FromVariant(const VARIANT& value); // error 13 when it is no cut
};

} // namespace ravlo
