// SPDX-License-Identifier: MIT
#pragma once

#include "base/TextKey.h"

#include <bit>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <new>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

namespace ravlo
{

// An ordered collection whose items may have a key (without regard to case). Costs:
//   item by key, exists, add at end, remove the head, item by position, position of a key: O(1), one hash of
//   the key; send the head to the back: O(1), no allocation; insert or remove in the middle: a move of
//   pointers towards the nearer end; memory: one block an item (the item, a key of two pointers, three words)
//   and two to four pointers in the tables.
// Positions count from 0. An item's key is shared, not copied. Iterate by position (At, Count), never by
// iterator, while the collection may change. An Add or Insert that runs out of memory has changed nothing.
template <class Item> class OrderedKeyedCollection
{
public:
    OrderedKeyedCollection() = default;
    OrderedKeyedCollection(OrderedKeyedCollection&& cOther) noexcept { Swap(cOther); }
    OrderedKeyedCollection& operator=(OrderedKeyedCollection&& cOther) noexcept
    {
        // Destroyed last, when both collections have their new content.
        OrderedKeyedCollection cOld(std::move(*this));
        Swap(cOther);
        return *this;
    }
    OrderedKeyedCollection(const OrderedKeyedCollection&) = delete;
    OrderedKeyedCollection& operator=(const OrderedKeyedCollection&) = delete;
    ~OrderedKeyedCollection()
    {
        BeforeChange(); // of an empty collection no node tells its snapshots
        DeleteNodes();
    }

    std::size_t Count() const noexcept { return m_count; }
    bool Empty() const noexcept { return Count() == 0; }
    // Grows by one with every item added, removed or moved, and with every re-ordering. Callers that let
    // others run see by it whether the order is still the same. Moving from a collection counts, too.
    std::uint64_t Changes() const noexcept { return m_changes; }
    void Reserve(std::size_t count)
    {
        ReserveRing(count);
        ReserveBuckets(count);
    }
    void Clear() noexcept { OrderedKeyedCollection cOld(std::move(*this)); }

    // Adds at the end. False, without a change, when the key is already there.
    bool Add(const TextKey& cKey, Item item) { return Insert(m_count, &cKey, std::move(item)); }
    // Adds at the end without a key.
    void Add(Item item) { Insert(m_count, nullptr, std::move(item)); }
    // Adds the item at that position (at most Count()). cKey may be null: no key.
    bool Insert(std::size_t position, const TextKey* cKey, Item item)
    {
        if (cKey && FindNode(*cKey))
            return false;
        auto pNode = std::make_unique<Node>(std::move(item), cKey ? *cKey : TextKey(), cKey != nullptr);
        ReserveRing(m_count + 1);
        if (cKey)
            ReserveBuckets(m_keyed + 1);
        BeforeChange();
        OpenGap(position);
        Place(m_first + position, pNode.get());
        if (cKey)
            Link(pNode.get());
        static_cast<void>(pNode.release()); // linked now
        ++m_changes;
        return true;
    }

    // Null when there is none. The pointer is valid until the collection changes.
    Item* Find(const TextKey& cKey) noexcept { return ItemOf(FindNode(cKey)); }
    const Item* Find(const TextKey& cKey) const noexcept { return ItemOf(FindNode(cKey)); }
    Item* Find(std::wstring_view sKey) noexcept { return ItemOf(FindNode(sKey)); }
    const Item* Find(std::wstring_view sKey) const noexcept { return ItemOf(FindNode(sKey)); }
    bool Exists(const TextKey& cKey) const noexcept { return Find(cKey) != nullptr; }
    bool Exists(std::wstring_view sKey) const noexcept { return Find(sKey) != nullptr; }

    Item& At(std::size_t position) noexcept { return NodeAt(position)->item; }
    const Item& At(std::size_t position) const noexcept { return NodeAt(position)->item; }
    // Null for an item without a key.
    const TextKey* KeyAt(std::size_t position) const noexcept
    {
        const Node* pNode = NodeAt(position);
        return pNode->bKeyed ? &pNode->cKey : nullptr;
    }
    std::optional<std::size_t> PositionOf(const TextKey& cKey) const noexcept
    {
        return PositionOf(FindNode(cKey));
    }
    std::optional<std::size_t> PositionOf(std::wstring_view sKey) const noexcept
    {
        return PositionOf(FindNode(sKey));
    }

    // False when there is no such key.
    bool Remove(const TextKey& cKey) noexcept { return RemoveNode(FindNode(cKey)); }
    bool Remove(std::wstring_view sKey) noexcept { return RemoveNode(FindNode(sKey)); }
    void RemoveAt(std::size_t position) noexcept { RemoveNode(NodeAt(position)); }

    // Moves the item to the end. False when there is no such key.
    bool SendToBack(const TextKey& cKey) noexcept
    {
        const auto position = PositionOf(cKey);
        if (position)
            MoveToEnd(*position);
        return position.has_value();
    }
    void MoveToEnd(std::size_t position) noexcept
    {
        BeforeChange();
        Node* pNode = NodeAt(position);
        CloseGap(position);
        Place(m_first + m_count, pNode);
        ++m_count;
        ++m_changes;
    }

    // Puts the items into another order, all at once, without touching items and keys. Precondition: colOrder
    // contains every position exactly once, in the new order.
    void Reorder(const std::vector<std::size_t>& colOrder)
    {
        std::vector<Node*> pNodes;
        pNodes.reserve(m_count);
        for (const std::size_t position : colOrder)
            pNodes.push_back(NodeAt(position));
        BeforeChange();
        for (std::size_t i = 0; i < pNodes.size(); ++i)
            Place(m_first + i, pNodes[i]);
        ++m_changes;
    }

    // The keys of a collection in the order they had when this was made, also after the collection has
    // changed. Copies them only when it changes; when there is no memory for the copy, every key is null.
    class OrderSnapshot
    {
    public:
        explicit OrderSnapshot(const OrderedKeyedCollection& cCollection) noexcept
            : m_cCollection(&cCollection), m_count(cCollection.m_count), m_pNext(cCollection.m_pSnapshots)
        {
            cCollection.m_pSnapshots = this;
        }
        OrderSnapshot(const OrderSnapshot&) = delete;
        OrderSnapshot& operator=(const OrderSnapshot&) = delete;
        ~OrderSnapshot()
        {
            if (m_cCollection)
                m_cCollection->Forget(*this);
        }

        std::size_t Count() const noexcept { return m_count; }
        bool Changed() const noexcept { return !m_cCollection; }
        // Null for an item without a key or with an empty one.
        const TextKey* KeyAt(std::size_t position) const noexcept
        {
            if (m_cCollection)
                return m_cCollection->KeyAt(position);
            return m_colKeys.empty() || m_colKeys[position].Empty() ? nullptr : &m_colKeys[position];
        }

    private:
        friend class OrderedKeyedCollection;
        void Copy() noexcept
        try
        {
            m_colKeys.reserve(m_count);
            for (std::size_t i = 0; i < m_count; ++i)
                m_colKeys.push_back(m_cCollection->NodeAt(i)->cKey);
            m_cCollection = nullptr;
        }
        catch (const std::bad_alloc&)
        {
            m_cCollection = nullptr;
        }

        const OrderedKeyedCollection* m_cCollection; // null: it has changed
        std::size_t m_count;
        std::vector<TextKey> m_colKeys; // once it has changed
        OrderSnapshot* m_pNext;
    };

    // Goes through the items in order. Any change of the collection invalidates it.
    class const_iterator
    {
    public:
        using iterator_category = std::random_access_iterator_tag;
        using value_type = Item;
        using difference_type = std::ptrdiff_t;
        using pointer = const Item*;
        using reference = const Item&;

        const_iterator() = default;
        reference operator*() const noexcept { return m_cCollection->At(m_position); }
        pointer operator->() const noexcept { return &**this; }
        reference operator[](difference_type lOffset) const noexcept { return *(*this + lOffset); }
        const_iterator& operator++() noexcept { return *this += 1; }
        const_iterator& operator--() noexcept { return *this -= 1; }
        const_iterator operator++(int) noexcept { return std::exchange(*this, *this + 1); }
        const_iterator operator--(int) noexcept { return std::exchange(*this, *this - 1); }
        const_iterator& operator+=(difference_type lOffset) noexcept
        {
            m_position += static_cast<std::size_t>(lOffset);
            return *this;
        }
        const_iterator& operator-=(difference_type lOffset) noexcept { return *this += -lOffset; }
        friend const_iterator operator+(const_iterator it, difference_type lOffset) noexcept
        {
            return it += lOffset;
        }
        friend const_iterator operator+(difference_type lOffset, const_iterator it) noexcept
        {
            return it += lOffset;
        }
        friend const_iterator operator-(const_iterator it, difference_type lOffset) noexcept
        {
            return it -= lOffset;
        }
        friend difference_type operator-(const const_iterator& a, const const_iterator& b) noexcept
        {
            return static_cast<difference_type>(a.m_position) - static_cast<difference_type>(b.m_position);
        }
        friend bool operator==(const const_iterator& a, const const_iterator& b) noexcept
        {
            return a.m_position == b.m_position;
        }
        friend std::strong_ordering operator<=>(const const_iterator& a, const const_iterator& b) noexcept
        {
            return a.m_position <=> b.m_position;
        }

    private:
        friend class OrderedKeyedCollection;
        const_iterator(const OrderedKeyedCollection& cCollection, std::size_t position) noexcept
            : m_cCollection(&cCollection), m_position(position)
        {
        }
        const OrderedKeyedCollection* m_cCollection = nullptr;
        std::size_t m_position = 0;
    };
    const_iterator begin() const noexcept { return const_iterator(*this, 0); }
    const_iterator end() const noexcept { return const_iterator(*this, m_count); }

private:
    // Items have consecutive sequence numbers. An item's position is its number minus that of the head, so
    // the head can leave or go to the back without renumbering the others. The number modulo the ring's size
    // is the item's place in the ring. Numbers may wrap around: only differences count.
    struct Node
    {
        Node(Item itemIn, TextKey cKeyIn, bool bKeyedIn)
            : item(std::move(itemIn)), cKey(std::move(cKeyIn)), bKeyed(bKeyedIn)
        {
        }
        Item item;
        TextKey cKey;
        std::size_t sequence = 0;
        Node* pNextInBucket = nullptr;
        bool bKeyed;
    };

    void Swap(OrderedKeyedCollection& cOther) noexcept
    {
        BeforeChange();
        cOther.BeforeChange();
        m_pRing.swap(cOther.m_pRing);
        m_pBuckets.swap(cOther.m_pBuckets);
        std::swap(m_first, cOther.m_first);
        std::swap(m_count, cOther.m_count);
        std::swap(m_keyed, cOther.m_keyed);
        ++m_changes;
        ++cOther.m_changes;
    }

    void BeforeChange() noexcept
    {
        while (OrderSnapshot* const pSnapshot = m_pSnapshots)
        {
            m_pSnapshots = pSnapshot->m_pNext;
            pSnapshot->Copy();
        }
    }
    void Forget(const OrderSnapshot& snapshot) const noexcept
    {
        OrderSnapshot** pLink = &m_pSnapshots;
        while (*pLink != &snapshot)
            pLink = &(*pLink)->m_pNext;
        *pLink = snapshot.m_pNext;
    }

    // An item's destructor may look at this collection, so each item leaves it first.
    void DeleteNodes() noexcept
    {
        while (m_count > 0)
            RemoveAt(0);
    }

    Node*& Slot(std::size_t sequence) noexcept { return m_pRing[sequence & (m_pRing.size() - 1)]; }
    Node* NodeAt(std::size_t position) const noexcept
    {
        return m_pRing[(m_first + position) & (m_pRing.size() - 1)];
    }

    void Place(std::size_t sequence, Node* pNode) noexcept
    {
        pNode->sequence = sequence;
        Slot(sequence) = pNode;
    }

    // Makes room at a position by moving the items on the nearer side. The caller fills the slot.
    void OpenGap(std::size_t position) noexcept
    {
        if (position < m_count - position)
        {
            --m_first;
            for (std::size_t i = 0; i < position; ++i)
                Place(m_first + i, NodeAt(i + 1));
        }
        else
        {
            for (std::size_t i = m_count; i > position; --i)
                Place(m_first + i, NodeAt(i - 1));
        }
        ++m_count;
    }

    // Removes the node at a position from the order by moving the items on the nearer side.
    void CloseGap(std::size_t position) noexcept
    {
        if (position < m_count - 1 - position)
        {
            for (std::size_t i = position; i > 0; --i)
                Place(m_first + i, NodeAt(i - 1));
            ++m_first;
        }
        else
        {
            for (std::size_t i = position; i + 1 < m_count; ++i)
                Place(m_first + i, NodeAt(i + 1));
        }
        --m_count;
    }

    void ReserveRing(std::size_t count)
    {
        if (count <= m_pRing.size())
            return;
        std::vector<Node*> pRing(std::bit_ceil(count < 8 ? std::size_t{8} : count));
        pRing.swap(m_pRing);
        for (std::size_t i = 0; i < m_count; ++i)
            Slot(m_first + i) = pRing[(m_first + i) & (pRing.size() - 1)];
    }

    void ReserveBuckets(std::size_t count)
    {
        if (count <= m_pBuckets.size())
            return;
        m_pBuckets = std::vector<Node*>(std::bit_ceil(count < 8 ? std::size_t{8} : count));
        m_keyed = 0;
        for (std::size_t i = 0; i < m_count; ++i)
        {
            if (NodeAt(i)->bKeyed)
                Link(NodeAt(i));
        }
    }

    Node*& Bucket(std::size_t hash) noexcept { return m_pBuckets[hash & (m_pBuckets.size() - 1)]; }

    void Link(Node* pNode) noexcept
    {
        pNode->pNextInBucket = std::exchange(Bucket(pNode->cKey.Hash()), pNode);
        ++m_keyed;
    }

    void Unlink(Node* pNode) noexcept
    {
        Node** pLink = &Bucket(pNode->cKey.Hash());
        while (*pLink != pNode)
            pLink = &(*pLink)->pNextInBucket;
        *pLink = pNode->pNextInBucket;
        --m_keyed;
    }

    template <class Matches> Node* FindNode(std::size_t hash, Matches matches) const noexcept
    {
        Node* pNode = m_pBuckets.empty() ? nullptr : m_pBuckets[hash & (m_pBuckets.size() - 1)];
        while (pNode && !matches(pNode->cKey))
            pNode = pNode->pNextInBucket;
        return pNode;
    }
    Node* FindNode(const TextKey& cKey) const noexcept
    {
        return FindNode(cKey.Hash(), [&](const TextKey& cOther) { return cOther == cKey; });
    }
    Node* FindNode(std::wstring_view sKey) const noexcept
    {
        const std::size_t hash = HashIgnoringCase(sKey);
        return FindNode(hash, [&](const TextKey& cOther) {
            return cOther.Hash() == hash && EqualIgnoringCase(cOther.Text(), sKey);
        });
    }
    static Item* ItemOf(Node* pNode) noexcept { return pNode ? &pNode->item : nullptr; }
    std::optional<std::size_t> PositionOf(const Node* pNode) const noexcept
    {
        return pNode ? std::optional<std::size_t>(pNode->sequence - m_first) : std::nullopt;
    }

    bool RemoveNode(Node* pNode) noexcept
    {
        if (!pNode)
            return false;
        // Destroyed last: code that the item's destructor calls finds the collection without it.
        const std::unique_ptr<Node> pOwned(pNode);
        BeforeChange();
        CloseGap(pNode->sequence - m_first);
        if (pNode->bKeyed)
            Unlink(pNode);
        ++m_changes;
        return true;
    }

    std::vector<Node*> m_pRing;    // its size is a power of two, or 0
    std::vector<Node*> m_pBuckets; // the same
    std::size_t m_first = 0;       // the head's sequence number
    std::size_t m_count = 0;
    std::size_t m_keyed = 0;
    std::uint64_t m_changes = 0;
    mutable OrderSnapshot* m_pSnapshots = nullptr; // those made since the last change
};

} // namespace ravlo
