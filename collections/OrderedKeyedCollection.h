// SPDX-License-Identifier: MIT
#pragma once

#include "collections/TextKey.h"

#include <cstddef>
#include <optional>

namespace ravlo
{

// An ordered collection whose items may carry a key (without regard to case). What it costs:
//   item by key, exists, add at end, remove the head, item by position, position of a key: O(1), one hash of the key;
//   send the head to the back: O(1), no allocation;
//   insert or remove in the middle: a move of pointers towards the nearer end.
// Positions count from 0. An item's key is shared, not copied. Iterating while the collection changes is safe by
// position only (At, Count), never by iterator.
template <class Item> class OrderedKeyedCollection
{
public:
    OrderedKeyedCollection();
    OrderedKeyedCollection(OrderedKeyedCollection&&) noexcept;
    OrderedKeyedCollection& operator=(OrderedKeyedCollection&&) noexcept;
    OrderedKeyedCollection(const OrderedKeyedCollection&) = delete;
    OrderedKeyedCollection& operator=(const OrderedKeyedCollection&) = delete;
    ~OrderedKeyedCollection();

    std::size_t Count() const noexcept;
    bool Empty() const noexcept { return Count() == 0; }
    void Reserve(std::size_t lCount);
    void Clear() noexcept;

    // Adds at the end. False, and nothing changes, when the key is there already.
    bool Add(const TextKey& cKey, Item item);
    // Adds at the end without a key.
    void Add(Item item);
    // Adds so that the item comes to stand at lPosition (at most Count()). cKey may be null: no key.
    bool Insert(std::size_t lPosition, const TextKey* cKey, Item item);

    // Null when there is none. The pointer holds until the collection changes.
    Item* Find(const TextKey& cKey) noexcept;
    const Item* Find(const TextKey& cKey) const noexcept;
    Item* Find(std::wstring_view sKey) noexcept;
    const Item* Find(std::wstring_view sKey) const noexcept;
    bool Exists(const TextKey& cKey) const noexcept { return Find(cKey) != nullptr; }
    bool Exists(std::wstring_view sKey) const noexcept { return Find(sKey) != nullptr; }

    Item& At(std::size_t lPosition) noexcept;
    const Item& At(std::size_t lPosition) const noexcept;
    // Null for an item without a key.
    const TextKey* KeyAt(std::size_t lPosition) const noexcept;
    std::optional<std::size_t> PositionOf(const TextKey& cKey) const noexcept;
    std::optional<std::size_t> PositionOf(std::wstring_view sKey) const noexcept;

    // False when there is no such key.
    bool Remove(const TextKey& cKey) noexcept;
    bool Remove(std::wstring_view sKey) noexcept;
    void RemoveAt(std::size_t lPosition) noexcept;

    // Takes the item out and adds it again at the end, under its key. False when there is no such key.
    bool SendToBack(const TextKey& cKey) noexcept;
    void MoveToEnd(std::size_t lPosition) noexcept;

    // Iterators in order; *it is the item. Any change of the collection ends their life.
    class const_iterator;
    const_iterator begin() const noexcept;
    const_iterator end() const noexcept;
};

} // namespace ravlo
