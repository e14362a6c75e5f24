// SPDX-License-Identifier: MIT
#pragma once

#include "base/OrderedKeyedCollection.h"
#include "comkit/Dispatch.h"
#include "comkit/FaceMap.h"

#include <KorvaCollection.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace ravlo
{

// The items of a collection face in order, some with keys. Positions count from 0.
class CollectionModel
{
public:
    virtual ~CollectionModel() = default;
    virtual std::size_t Count() const = 0;
    virtual Variant At(std::size_t position) const = 0;
    // Nothing for an item without a key.
    virtual std::optional<std::wstring> KeyAt(std::size_t position) const = 0;
    virtual std::optional<std::size_t> PositionOf(const std::wstring& sKey) const = 0;
    // Error 457 when the key is there already, 13 for an item of the wrong kind.
    virtual void Insert(std::size_t position, const std::optional<std::wstring>& sKey,
                        const VARIANT& item) = 0;
    virtual void RemoveAt(std::size_t position) = 0;
};

// A live view of an OrderedKeyedCollection. Adapter has two static functions: Variant ToVariant(const Item&),
// and Item FromVariant(const VARIANT&), which throws error 13 for a value it cannot convert. accept, if set,
// throws for an item that must not be added.
template <class Item, class Adapter> class LiveCollection final : public CollectionModel
{
public:
    using Accept = std::function<void(const Item&)>;
    explicit LiveCollection(std::shared_ptr<OrderedKeyedCollection<Item>> colItems, Accept accept = {})
        : m_colItems(std::move(colItems)), m_accept(std::move(accept))
    {
    }

    std::size_t Count() const override { return m_colItems->Count(); }
    Variant At(std::size_t position) const override
    {
        // A copy: what the conversion calls may change the collection.
        const Item item = m_colItems->At(position);
        return Adapter::ToVariant(item);
    }
    std::optional<std::wstring> KeyAt(std::size_t position) const override
    {
        const TextKey* pKey = m_colItems->KeyAt(position);
        return pKey ? std::optional(pKey->Text()) : std::nullopt;
    }
    std::optional<std::size_t> PositionOf(const std::wstring& sKey) const override
    {
        return m_colItems->PositionOf(sKey);
    }
    void Insert(std::size_t position, const std::optional<std::wstring>& sKey, const VARIANT& item) override
    {
        Item converted = Adapter::FromVariant(item); // may call a host, which may shorten the collection
        const TextKey cKey(sKey.value_or(std::wstring()));
        if (m_accept && !(sKey && m_colItems->Exists(cKey)))
            m_accept(converted);
        if (!m_colItems->Insert(std::min(position, m_colItems->Count()), sKey ? &cKey : nullptr,
                                std::move(converted)))
            throw RuntimeError(error::KeyAlreadyExists);
    }
    void RemoveAt(std::size_t position) override { m_colItems->RemoveAt(position); }

private:
    std::shared_ptr<OrderedKeyedCollection<Item>> m_colItems;
    Accept m_accept;
};

// _clsCollection over any model. Item and Remove take a position from 1 (any number) or a key (a string). A
// missing position is error 9, a missing key error 5, any other index error 13.
class CollectionFace final : public Dispatch<_clsCollection>
{
public:
    // pIdentity is the core object whose face this is.
    CollectionFace(const void* pIdentity, std::unique_ptr<CollectionModel> cModel);

    CollectionModel& Model() const noexcept { return *m_cModel; }

    STDMETHODIMP Add(VARIANT Item, VARIANT Key, VARIANT Before, VARIANT After) override;
    STDMETHODIMP get_Item(VARIANT Index, VARIANT* pVal) override;
    STDMETHODIMP Exists(VARIANT Key, VARIANT_BOOL* pVal) override;
    STDMETHODIMP Remove(VARIANT Index) override;
    STDMETHODIMP get_Count(LONG* pVal) override;
    STDMETHODIMP get__NewEnum(IUnknown** ppEnum) override;

    static const ClassIdentity identity;

private:
    std::unique_ptr<CollectionModel> m_cModel;
    FaceEntry<CollectionFace> m_cEntry;
};

// Returns the one face of a core collection, a new one when it has none. accept as in LiveCollection.
template <class Adapter, class Item>
ComPtr<CollectionFace> FaceOfCollection(const std::shared_ptr<OrderedKeyedCollection<Item>>& colItems,
                                        const typename LiveCollection<Item, Adapter>::Accept& accept = {})
{
    return FaceMap<CollectionFace>::Instance().Get(colItems.get(), [&] {
        return NewObject<CollectionFace>(colItems.get(),
                                         std::make_unique<LiveCollection<Item, Adapter>>(colItems, accept));
    });
}

// A free-standing collection of values of any kind.
using ItemCollection = OrderedKeyedCollection<Variant>;
ComPtr<CollectionFace> NewCollection(const std::shared_ptr<ItemCollection>& colItems);

// Converts a host's position, from 1, of any number type and rounded to whole, to one from 0. Returns nothing
// when it is outside 1 to count. Throws error 13 when the value is no number.
std::optional<std::size_t> FindPosition(const Variant& cIndex, std::size_t count);

// As FindPosition, but throws error 9 when it is outside.
std::size_t PositionFrom(const Variant& cIndex, std::size_t count);

// Items that are texts.
struct TextAdapter
{
    static Variant ToVariant(const std::wstring& sText) { return Variant(std::wstring_view(sText)); }
    static std::wstring FromVariant(const VARIANT& value);
};

// Calls body with each item, in order, of an automation collection, which is any object with _NewEnum. Throws
// error 451 when it has none, error 91 when there is no object.
void ForEachItem(IDispatch* colItems, const std::function<void(const Variant&)>& body);

// Returns an enumerator over at(position) for each position below count(). It keeps cOwner alive. The items
// may change during the walk, since it goes by position.
ComPtr<IUnknown> NewEnumerator(ComPtr<IUnknown> cOwner, std::function<std::size_t()> count,
                               std::function<Variant(std::size_t)> at);

} // namespace ravlo
