// SPDX-License-Identifier: MIT
#include "comkit/Collection.h"

#include <algorithm>

namespace ravlo
{

const ClassIdentity CollectionFace::identity{
    CLSID_clsCollection, LIBID_KorvaCollection,           IID__clsCollection, nullptr, L"KorvaCollection",
    L"clsCollection",    L"KorvaCollection.clsCollection"};

namespace
{

constexpr std::int32_t lNoEnumeration = 451; // "Object not a collection"

// The position of the item that Index names, which must be there.
std::size_t Locate(const CollectionModel& cModel, const VARIANT& index)
{
    const Variant cIndex = Variant::Dereferenced(index);
    if (cIndex.vt != VT_BSTR)
        return PositionFrom(cIndex, cModel.Count());
    const std::optional<std::size_t> position = cModel.PositionOf(TextOf(cIndex.bstrVal));
    if (!position)
        throw RuntimeError(error::InvalidProcedureCall);
    return *position;
}

// Omitted, or undefined, as script languages pass it that cannot omit.
bool IsAbsent(const VARIANT& value)
{
    return IsOmitted(value) || Variant::Dereferenced(value).vt == VT_EMPTY;
}

std::optional<std::wstring> KeyFrom(const VARIANT& value)
{
    if (IsAbsent(value))
        return std::nullopt;
    const Variant cKey = Variant::Dereferenced(value);
    if (cKey.vt != VT_BSTR)
        throw RuntimeError(error::TypeMismatch);
    return TextOf(cKey.bstrVal);
}

std::size_t PlaceFrom(const CollectionModel& cModel, const VARIANT& before, const VARIANT& after)
{
    const bool bBefore = !IsAbsent(before);
    const bool bAfter = !IsAbsent(after);
    if (bBefore && bAfter)
        throw RuntimeError(error::InvalidProcedureCall);
    if (bBefore)
        return Locate(cModel, before);
    return bAfter ? Locate(cModel, after) + 1 : cModel.Count();
}

class Enumerator final : public Unknown<IEnumVARIANT>
{
public:
    Enumerator(ComPtr<IUnknown> cOwner, std::function<std::size_t()> count,
               std::function<Variant(std::size_t)> at, std::size_t next)
        : m_cOwner(std::move(cOwner)), m_count(std::move(count)), m_at(std::move(at)), m_next(next)
    {
    }

    STDMETHODIMP Next(ULONG lCount, VARIANT* pItems, ULONG* plFetched) override
    {
        if (!pItems || (!plFetched && lCount != 1))
            return E_POINTER;
        ULONG lFetched = 0;
        const HRESULT hResult = GuardAs(IID_IEnumVARIANT, CollectionFace::identity.sProgID, [&] {
            for (; lFetched < lCount && m_next < m_count(); ++lFetched)
                pItems[lFetched] = m_at(m_next++).Detach();
        });
        if (FAILED(hResult))
            while (lFetched > 0)
                Clear(pItems[--lFetched]); // a failed call returns no items
        if (plFetched)
            *plFetched = lFetched;
        if (FAILED(hResult))
            return hResult;
        return lFetched == lCount ? S_OK : S_FALSE;
    }
    STDMETHODIMP Skip(ULONG lCount) override
    {
        std::size_t left = 0;
        const HRESULT hResult = GuardAs(IID_IEnumVARIANT, CollectionFace::identity.sProgID, [&] {
            const std::size_t total = m_count();
            left = m_next < total ? total - m_next : 0;
        });
        if (FAILED(hResult))
            return hResult;
        m_next += std::min<std::size_t>(lCount, left);
        return lCount <= left ? S_OK : S_FALSE;
    }
    STDMETHODIMP Reset() override
    {
        m_next = 0;
        return S_OK;
    }
    STDMETHODIMP Clone(IEnumVARIANT** ppEnum) override
    {
        return GuardAs(IID_IEnumVARIANT, CollectionFace::identity.sProgID, [&] {
            StoreIn(ppEnum, [&] { return NewObject<Enumerator>(m_cOwner, m_count, m_at, m_next); });
        });
    }

private:
    ComPtr<IUnknown> m_cOwner;
    std::function<std::size_t()> m_count;
    std::function<Variant(std::size_t)> m_at;
    std::size_t m_next;
};

struct AnyAdapter
{
    static Variant ToVariant(const Variant& cItem) { return cItem; }
    static Variant FromVariant(const VARIANT& value) { return Variant::Dereferenced(value); }
};

} // namespace

CollectionFace::CollectionFace(const void* pIdentity, std::unique_ptr<CollectionModel> cModel)
    : Dispatch(identity), m_cModel(std::move(cModel)),
      m_cEntry(pIdentity, this, static_cast<_clsCollection*>(this))
{
}

STDMETHODIMP CollectionFace::Add(VARIANT Item, VARIANT Key, VARIANT Before, VARIANT After)
{
    return Guard([&] {
        const std::optional<std::wstring> sKey = KeyFrom(Key);
        m_cModel->Insert(PlaceFrom(*m_cModel, Before, After), sKey, Item);
    });
}

STDMETHODIMP CollectionFace::get_Item(VARIANT Index, VARIANT* pVal)
{
    return Return(pVal, [&] { return m_cModel->At(Locate(*m_cModel, Index)); });
}

STDMETHODIMP CollectionFace::Exists(VARIANT Key, VARIANT_BOOL* pVal)
{
    return Return(pVal, [&] {
        const Variant cKey = Variant::Dereferenced(Key);
        const std::optional<std::size_t> position = cKey.vt == VT_BSTR
                                                        ? m_cModel->PositionOf(TextOf(cKey.bstrVal))
                                                        : FindPosition(cKey, m_cModel->Count());
        return position.has_value();
    });
}

STDMETHODIMP CollectionFace::Remove(VARIANT Index)
{
    return Guard([&] { m_cModel->RemoveAt(Locate(*m_cModel, Index)); });
}

STDMETHODIMP CollectionFace::get_Count(LONG* pVal)
{
    return Return(pVal, [&] { return static_cast<LONG>(m_cModel->Count()); });
}

STDMETHODIMP CollectionFace::get__NewEnum(IUnknown** ppEnum)
{
    CollectionModel* const pModel = m_cModel.get(); // lives as long as its owner, which the enumerator holds
    const auto count = [pModel] { return pModel->Count(); };
    const auto at = [pModel](std::size_t position) { return pModel->At(position); };
    const ComPtr<IUnknown> cSelf(static_cast<_clsCollection*>(this));
    return Return(ppEnum, [&] { return NewEnumerator(cSelf, count, at); });
}

std::optional<std::size_t> FindPosition(const Variant& cIndex, std::size_t count)
{
    if (!IsNumber(cIndex))
        throw RuntimeError(error::TypeMismatch);
    const std::optional<Variant> cLong =
        cIndex.As(VT_I4); // nothing: outside 32 bits, and so outside every collection
    if (!cLong || cLong->lVal < 1 || static_cast<std::size_t>(cLong->lVal) > count)
        return std::nullopt;
    return static_cast<std::size_t>(cLong->lVal) - 1;
}

std::size_t PositionFrom(const Variant& cIndex, std::size_t count)
{
    const std::optional<std::size_t> position = FindPosition(cIndex, count);
    if (!position)
        throw RuntimeError(error::SubscriptOutOfRange);
    return *position;
}

ComPtr<CollectionFace> NewCollection(const std::shared_ptr<ItemCollection>& colItems)
{
    return FaceOfCollection<AnyAdapter>(colItems);
}

std::wstring TextAdapter::FromVariant(const VARIANT& value)
{
    const Variant cText = Variant::Dereferenced(value);
    if (cText.vt != VT_BSTR)
        throw RuntimeError(error::TypeMismatch);
    return TextOf(cText.bstrVal);
}

void ForEachItem(IDispatch* colItems, const std::function<void(const Variant&)>& body)
{
    if (!colItems)
        throw RuntimeError(error::ObjectNotSet);
    DISPPARAMS none{};
    Variant cResult;
    const HRESULT hEnum = Outgoing([&] {
        return colItems->Invoke(DISPID_NEWENUM, IID_NULL, LOCALE_USER_DEFAULT,
                                DISPATCH_METHOD | DISPATCH_PROPERTYGET, &none, &cResult, nullptr, nullptr);
    });
    if (FAILED(hEnum))
        throw RuntimeError(lNoEnumeration);
    const auto cEnum = ObjectIn<IEnumVARIANT>(cResult);
    if (!cEnum)
        throw RuntimeError(lNoEnumeration);
    for (;;)
    {
        Variant cItem;
        ULONG lFetched = 0;
        const HRESULT hResult = Outgoing([&] { return cEnum->Next(1, &cItem, &lFetched); });
        ThrowIfFailed(hResult);
        if (hResult != S_OK || lFetched == 0)
            return;
        body(cItem);
    }
}

ComPtr<IUnknown> NewEnumerator(ComPtr<IUnknown> cOwner, std::function<std::size_t()> count,
                               std::function<Variant(std::size_t)> at)
{
    return NewObject<Enumerator>(std::move(cOwner), std::move(count), std::move(at), std::size_t{0});
}

} // namespace ravlo
