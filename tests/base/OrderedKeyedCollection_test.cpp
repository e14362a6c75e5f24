// SPDX-License-Identifier: MIT
#include "base/OrderedKeyedCollection.h"

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <gtest/gtest.h>
#include <new>
#include <optional>
#include <random>
#include <string>

namespace
{

// Counts allocations, and lets the n-th one from now on fail.
std::size_t allocations = 0;
int lAllocationsUntilFailure = -1;

void* Allocate(std::size_t size)
{
    ++allocations;
    if (lAllocationsUntilFailure >= 0 && lAllocationsUntilFailure-- == 0)
        throw std::bad_alloc();
    if (void* pMemory = std::malloc(size == 0 ? 1 : size))
        return pMemory;
    throw std::bad_alloc();
}

} // namespace

void* operator new(std::size_t size) { return Allocate(size); }
void operator delete(void* pMemory) noexcept { std::free(pMemory); }
void operator delete(void* pMemory, std::size_t) noexcept { std::free(pMemory); }

namespace ravlo
{
namespace
{

using Collection = OrderedKeyedCollection<std::wstring>;
using Texts = std::vector<std::wstring>;

Texts TextsOf(const Collection& cCollection) { return Texts(cCollection.begin(), cCollection.end()); }

Collection CollectionOf(const Texts& sKeys)
{
    Collection cCollection;
    for (const std::wstring& sKey : sKeys)
        cCollection.Add(TextKey(sKey), sKey);
    return cCollection;
}

Texts Numbers(std::size_t count)
{
    Texts sTexts;
    for (std::size_t i = 0; i < count; ++i)
        sTexts.push_back(std::to_wstring(i));
    return sTexts;
}

// The items, each of which is found at its position under itself as key.
void ExpectKeyed(const Collection& cCollection, const Texts& sKeys)
{
    EXPECT_EQ(TextsOf(cCollection), sKeys);
    for (std::size_t i = 0; i < sKeys.size(); ++i)
        EXPECT_EQ(cCollection.PositionOf(sKeys[i]), std::optional<std::size_t>(i));
}

TEST(OrderedKeyedCollection, IsEmptyWhenMadeAndWhenCleared)
{
    Collection cCollection;
    for (int i = 0; i < 2; ++i)
    {
        EXPECT_TRUE(cCollection.Empty());
        EXPECT_EQ(cCollection.Count(), 0u);
        EXPECT_EQ(cCollection.Find(L"a"), nullptr);
        EXPECT_FALSE(cCollection.Exists(TextKey()));
        EXPECT_EQ(cCollection.begin(), cCollection.end());
        EXPECT_TRUE(cCollection.Add(TextKey(L"a"), L"a"));
        ExpectKeyed(cCollection, {L"a"});
        cCollection.Clear();
    }
}

TEST(OrderedKeyedCollection, KeepsItsOrderAndFindsKeysIgnoringCase)
{
    const TextKey cKey(L"C:\\\u00C4.mp3");
    Collection cCollection = CollectionOf({L"c", L"a"});
    EXPECT_TRUE(cCollection.Add(cKey, L"path"));
    EXPECT_EQ(TextsOf(cCollection), (Texts{L"c", L"a", L"path"}));
    EXPECT_EQ(cCollection.Find(TextKey(L"c:\\\u00E4.MP3")), &cCollection.At(2));
    EXPECT_EQ(cCollection.Find(L"c:\\\u00E4.MP3"), &cCollection.At(2));
    EXPECT_EQ(cCollection.PositionOf(L"A"), std::optional<std::size_t>(1));
    EXPECT_EQ(cCollection.PositionOf(TextKey(L"A")), std::optional<std::size_t>(1));
    EXPECT_EQ(cCollection.PositionOf(L"b"), std::nullopt);
    EXPECT_EQ(cCollection.Find(L""), nullptr);
    EXPECT_EQ(&cCollection.KeyAt(2)->Text(), &cKey.Text()) << "it shares the key it was given";
}

TEST(OrderedKeyedCollection, RefusesAKeyThatExistsAndChangesNothing)
{
    Collection cCollection = CollectionOf({L"a", L""});
    EXPECT_FALSE(cCollection.Add(TextKey(L"A"), L"other"));
    EXPECT_FALSE(cCollection.Add(TextKey(), L"other")) << "the empty text is a key, too";
    const TextKey cKey(L"A");
    EXPECT_FALSE(cCollection.Insert(0, &cKey, L"other"));
    ExpectKeyed(cCollection, {L"a", L""});
}

TEST(OrderedKeyedCollection, ItemsMayHaveNoKey)
{
    Collection cCollection = CollectionOf({L"a"});
    cCollection.Add(L"loose");
    cCollection.Add(L"loose");
    EXPECT_EQ(TextsOf(cCollection), (Texts{L"a", L"loose", L"loose"}));
    EXPECT_EQ(cCollection.KeyAt(1), nullptr);
    ASSERT_NE(cCollection.KeyAt(0), nullptr);
    EXPECT_EQ(cCollection.KeyAt(0)->Text(), L"a");
    EXPECT_FALSE(cCollection.Exists(L""));
    cCollection.RemoveAt(1);
    cCollection.MoveToEnd(0);
    cCollection.MoveToEnd(0);
    EXPECT_EQ(TextsOf(cCollection), (Texts{L"a", L"loose"}));
    EXPECT_EQ(cCollection.KeyAt(1), nullptr);
}

TEST(OrderedKeyedCollection, InsertsAndRemovesAtEveryPosition)
{
    const Texts sBefore = Numbers(5);
    for (std::size_t position = 0; position <= sBefore.size(); ++position)
    {
        Collection cCollection = CollectionOf(sBefore);
        const TextKey cKey(L"new");
        EXPECT_TRUE(cCollection.Insert(position, &cKey, L"new"));
        Texts sAfter = sBefore;
        sAfter.insert(sAfter.begin() + static_cast<std::ptrdiff_t>(position), L"new");
        ExpectKeyed(cCollection, sAfter);
        cCollection.RemoveAt(position);
        ExpectKeyed(cCollection, sBefore);
        EXPECT_FALSE(cCollection.Exists(L"new"));
    }
}

TEST(OrderedKeyedCollection, RemovesByKey)
{
    Collection cCollection = CollectionOf({L"a", L"b", L"", L"c"});
    EXPECT_TRUE(cCollection.Remove(L"B"));
    EXPECT_FALSE(cCollection.Remove(TextKey(L"b")));
    EXPECT_TRUE(cCollection.Remove(TextKey(L"a")));
    EXPECT_TRUE(cCollection.Remove(L""));
    ExpectKeyed(cCollection, {L"c"});
}

TEST(OrderedKeyedCollection, SendsAnyItemToTheBackUnderItsKey)
{
    Collection cCollection = CollectionOf({L"a", L"b", L"c"});
    EXPECT_TRUE(cCollection.SendToBack(TextKey(L"A")));
    ExpectKeyed(cCollection, {L"b", L"c", L"a"});
    for (int i = 0; i < 2; ++i)
    {
        EXPECT_TRUE(cCollection.SendToBack(TextKey(L"c")));
        ExpectKeyed(cCollection, {L"b", L"a", L"c"});
    }
    EXPECT_FALSE(cCollection.SendToBack(TextKey(L"x")));
    cCollection.MoveToEnd(0);
    ExpectKeyed(cCollection, {L"a", L"c", L"b"});
    Collection cOne = CollectionOf({L"a"});
    EXPECT_TRUE(cOne.SendToBack(TextKey(L"a")));
    ExpectKeyed(cOne, {L"a"});
}

TEST(OrderedKeyedCollection, RotatingAFullRingManyTimesKeepsTheOrder)
{
    Texts sTexts = Numbers(16); // a power of two: no free slot is left
    Collection cCollection = CollectionOf(sTexts);
    for (int i = 0; i < 1000; ++i)
    {
        cCollection.SendToBack(*cCollection.KeyAt(0));
        std::rotate(sTexts.begin(), sTexts.begin() + 1, sTexts.end());
        ASSERT_EQ(TextsOf(cCollection), sTexts);
    }
}

TEST(OrderedKeyedCollection, SendingTheHeadToTheBackAndLookingUpAllocateNothing)
{
    Collection cCollection =
        CollectionOf({L"C:\\Music\\one long path.mp3", L"C:\\Music\\another long path.mp3"});
    const TextKey cKey(L"C:\\Music\\one long path.mp3");
    const std::size_t before = allocations;
    const bool bSent = cCollection.SendToBack(cKey);
    const bool bFound = cCollection.Exists(std::wstring_view(L"C:\\MUSIC\\ANOTHER LONG PATH.MP3"));
    const std::size_t after = allocations;
    EXPECT_TRUE(bSent && bFound);
    EXPECT_EQ(after, before);
}

TEST(OrderedKeyedCollection, ReservingMakesRoomAheadAndKeepsTheContent)
{
    Collection cCollection = CollectionOf({L"a", L"b"});
    cCollection.MoveToEnd(0);
    cCollection.Reserve(1000);
    EXPECT_EQ(TextsOf(cCollection), (Texts{L"b", L"a"}));
    const std::size_t before = allocations;
    for (wchar_t c = L'A'; c < L'Z'; ++c)
        cCollection.Add(TextKey(), L""); // the first is added, the others are there already
    EXPECT_LE(allocations - before, 1u);
    EXPECT_EQ(cCollection.PositionOf(L"a"), std::optional<std::size_t>(1));
}

TEST(OrderedKeyedCollection, TablesDoNotGrowWhileItemsAreReplaced)
{
    Collection cCollection = CollectionOf(Numbers(8)); // both tables are full
    const TextKey cKey(L"1");
    const std::size_t before = allocations;
    for (int i = 0; i < 1000; ++i)
    {
        cCollection.Remove(cKey);
        cCollection.Add(cKey, std::wstring());
    }
    EXPECT_EQ(allocations - before, 1000u); // the item's own block each time
}

TEST(OrderedKeyedCollection, MovingTakesEverythingAndLeavesAnEmptyOne)
{
    Collection cFrom = CollectionOf({L"a", L"b"});
    Collection cTo = std::move(cFrom);
    EXPECT_EQ(TextsOf(cTo), (Texts{L"a", L"b"}));
    // NOLINTBEGIN(bugprone-use-after-move): a collection that was moved from is empty and usable
    EXPECT_TRUE(cFrom.Empty());
    EXPECT_TRUE(cFrom.Add(TextKey(L"a"), L"new"));
    cTo = std::move(cFrom);
    EXPECT_EQ(TextsOf(cTo), Texts{L"new"});
    EXPECT_TRUE(cFrom.Empty());
    // NOLINTEND(bugprone-use-after-move)
}

using OrderSnapshot = Collection::OrderSnapshot;

Texts KeysOf(const OrderSnapshot& snapshot)
{
    Texts sKeys;
    for (std::size_t i = 0; i < snapshot.Count(); ++i)
        sKeys.push_back(snapshot.KeyAt(i) ? snapshot.KeyAt(i)->Text() : L"none");
    return sKeys;
}

TEST(OrderedKeyedCollection, SnapshotKeepsTheOrderThroughEveryChange)
{
    const std::function<void(Collection&)> changes[] = {
        [](Collection& c) { c.Add(L"new"); },
        [](Collection& c) { c.Insert(0, nullptr, L"new"); },
        [](Collection& c) { c.Remove(L"b"); },
        [](Collection& c) { c.MoveToEnd(0); },
        [](Collection& c) { c.SendToBack(TextKey(L"b")); },
        [](Collection& c) {
        c.Reorder({3, 2, 1, 0});
        },
        [](Collection& c) { c.Clear(); },
        [](Collection& c) { Collection cOther(std::move(c)); },
        [](Collection& c) { c = CollectionOf({L"x"}); },
    };
    for (const auto& change : changes)
    {
        Collection cCollection = CollectionOf({L"a", L"b", L"c"});
        cCollection.Insert(1, nullptr, L"without a key");
        const OrderSnapshot snapshot(cCollection);
        const Texts sKeys{L"a", L"none", L"b", L"c"};
        EXPECT_EQ(KeysOf(snapshot), sKeys);
        EXPECT_FALSE(cCollection.Add(TextKey(L"A"), L"refused"));
        EXPECT_FALSE(snapshot.Changed()) << "nothing has changed yet";
        change(cCollection);
        EXPECT_TRUE(snapshot.Changed());
        EXPECT_EQ(KeysOf(snapshot), sKeys);
    }
}

TEST(OrderedKeyedCollection, SnapshotsAreIndependentOfEachOther)
{
    auto cCollection = std::make_unique<Collection>(CollectionOf({L"a", L"b"}));
    auto first = std::make_unique<OrderSnapshot>(*cCollection);
    const OrderSnapshot second(*cCollection);
    auto third = std::make_unique<OrderSnapshot>(*cCollection);
    first.reset();
    third.reset();
    cCollection->MoveToEnd(0);
    const OrderSnapshot later(*cCollection);
    cCollection.reset();
    EXPECT_EQ(KeysOf(second), (Texts{L"a", L"b"}));
    EXPECT_EQ(KeysOf(later), (Texts{L"b", L"a"}));
}

TEST(OrderedKeyedCollection, SnapshotMayOutliveAnEmptyCollection)
{
    auto cCollection = std::make_unique<Collection>();
    const OrderSnapshot snapshot(*cCollection);
    cCollection.reset();
    EXPECT_TRUE(snapshot.Changed());
    EXPECT_EQ(snapshot.Count(), 0u);
}

TEST(OrderedKeyedCollection, SnapshotWithoutMemoryForTheKeysHasNone)
{
    Collection cCollection = CollectionOf({L"a", L"b"});
    const OrderSnapshot snapshot(cCollection);
    lAllocationsUntilFailure = 0;
    cCollection.MoveToEnd(0);
    lAllocationsUntilFailure = -1;
    EXPECT_EQ(KeysOf(snapshot), (Texts{L"none", L"none"}));
    EXPECT_EQ(TextsOf(cCollection), (Texts{L"b", L"a"}));
}

TEST(OrderedKeyedCollection, ItemsMayBeMoveOnlyAndAreChangedInPlace)
{
    OrderedKeyedCollection<std::unique_ptr<int>> cCollection;
    cCollection.Add(TextKey(L"a"), std::make_unique<int>(7));
    cCollection.Add(std::make_unique<int>(8));
    EXPECT_EQ(**cCollection.Find(L"a"), 7);
    *cCollection.Find(L"a") = std::make_unique<int>(9);
    EXPECT_EQ(**cCollection.Find(TextKey(L"a")), 9);
    cCollection.At(1) = nullptr;
    EXPECT_EQ(cCollection.At(1), nullptr);
}

TEST(OrderedKeyedCollection, IteratorsGoAnywhere)
{
    const Collection cCollection = CollectionOf({L"a", L"b", L"c"});
    static_assert(std::random_access_iterator<Collection::const_iterator>);
    auto it = cCollection.begin();
    EXPECT_EQ(*it++, L"a");
    EXPECT_EQ(it->size(), 1u);
    EXPECT_EQ(it[1], L"c");
    EXPECT_EQ(*--it, L"a");
    EXPECT_EQ(cCollection.end() - it, 3);
    EXPECT_LT(it, cCollection.end());
    EXPECT_EQ(*std::find(cCollection.begin(), cCollection.end(), L"b"), L"b");
}

// Calls back when it is destroyed.
struct Watcher
{
    explicit Watcher(std::function<void()> onEndIn) : onEnd(std::move(onEndIn)) {}
    ~Watcher() { onEnd(); }
    std::function<void()> onEnd;
};

TEST(OrderedKeyedCollection, AnItemIsGoneBeforeItIsDestroyed)
{
    OrderedKeyedCollection<std::shared_ptr<Watcher>> cCollection;
    int lEnded = 0;
    bool bWasThere = false;
    const auto add = [&](const wchar_t* sKey) {
        cCollection.Add(TextKey(sKey), std::make_shared<Watcher>([&, sKey] {
                            ++lEnded;
                            bWasThere = bWasThere || cCollection.Exists(sKey);
                            for (std::size_t i = 0; i < cCollection.Count(); ++i)
                                bWasThere = bWasThere || *cCollection.KeyAt(i) == TextKey(sKey);
                        }));
    };
    add(L"a");
    add(L"b");
    add(L"c");
    cCollection.RemoveAt(0);
    EXPECT_EQ(lEnded, 1);
    cCollection.Clear();
    EXPECT_EQ(lEnded, 3);
    EXPECT_FALSE(bWasThere);
}

TEST(OrderedKeyedCollection, RunningOutOfMemoryWhileAddingChangesNothing)
{
    for (const std::size_t count : {0u, 3u, 8u, 16u}) // at 8 and 16 both tables must grow
    {
        const Texts sTexts = Numbers(count);
        for (int lGood = 0;; ++lGood)
        {
            Collection cCollection = CollectionOf(sTexts);
            const TextKey cKey(L"new");
            bool bFailed = false;
            lAllocationsUntilFailure = lGood;
            try
            {
                cCollection.Insert(0, &cKey, std::wstring());
            }
            catch (const std::bad_alloc&)
            {
                bFailed = true;
            }
            lAllocationsUntilFailure = -1;
            if (!bFailed)
            {
                EXPECT_EQ(cCollection.Count(), count + 1);
                EXPECT_GE(lGood, 1);
                break;
            }
            ExpectKeyed(cCollection, sTexts);
            EXPECT_FALSE(cCollection.Exists(L"new"));
            EXPECT_TRUE(cCollection.Add(cKey, L"new"));
        }
    }
}

// A plain reference: a vector of keys and items, searched from front to back.
class Reference
{
public:
    struct Entry
    {
        std::optional<std::wstring> sKey;
        std::wstring sItem;
    };

    std::optional<std::size_t> PositionOf(const std::wstring& sKey) const
    {
        for (std::size_t i = 0; i < m_entries.size(); ++i)
        {
            if (m_entries[i].sKey && EqualIgnoringCase(*m_entries[i].sKey, sKey))
                return i;
        }
        return std::nullopt;
    }
    bool Insert(std::size_t position, const std::optional<std::wstring>& sKey, const std::wstring& sItem)
    {
        if (sKey && PositionOf(*sKey))
            return false;
        m_entries.insert(m_entries.begin() + static_cast<std::ptrdiff_t>(position), {sKey, sItem});
        return true;
    }
    void RemoveAt(std::size_t position)
    {
        m_entries.erase(m_entries.begin() + static_cast<std::ptrdiff_t>(position));
    }
    void MoveToEnd(std::size_t position)
    {
        const auto it = m_entries.begin() + static_cast<std::ptrdiff_t>(position);
        std::rotate(it, it + 1, m_entries.end());
    }
    void Clear() { m_entries.clear(); }
    const std::vector<Entry>& Entries() const { return m_entries; }

private:
    std::vector<Entry> m_entries;
};

class ModelCheck
{
public:
    explicit ModelCheck(unsigned lSeed) : m_engine(lSeed) {}

    void Step(int lStep)
    {
        const std::wstring sKey = SomeKey();
        const std::wstring sItem = std::to_wstring(lStep);
        const std::size_t count = m_cReference.Entries().size();
        const unsigned lChoice = Draw(100);
        if (lChoice < 30)
            EXPECT_EQ(m_cCollection.Add(TextKey(sKey), sItem), m_cReference.Insert(count, sKey, sItem));
        else if (lChoice < 35)
            AddLoose(count, sItem);
        else if (lChoice < 50)
            Insert(Draw(static_cast<unsigned>(count) + 1), sKey, sItem);
        else if (lChoice < 65)
            RemoveByKey(sKey, lChoice % 2 == 0);
        else if (lChoice < 90 && count > 0)
            ByPosition(lChoice, count);
        else if (lChoice < 99)
            SendToBack(sKey);
        else if (Draw(20) == 0)
            Clear();
    }

    void Compare() const
    {
        const auto& entries = m_cReference.Entries();
        ASSERT_EQ(m_cCollection.Count(), entries.size());
        for (std::size_t i = 0; i < entries.size(); ++i)
        {
            ASSERT_EQ(m_cCollection.At(i), entries[i].sItem);
            const TextKey* cKey = m_cCollection.KeyAt(i);
            ASSERT_EQ(cKey != nullptr, entries[i].sKey.has_value());
            if (!cKey)
                continue;
            ASSERT_EQ(cKey->Text(), *entries[i].sKey);
            ASSERT_EQ(m_cCollection.PositionOf(*cKey), std::optional<std::size_t>(i));
            ASSERT_EQ(m_cCollection.Find(std::wstring_view(cKey->Text())), &m_cCollection.At(i));
        }
    }

private:
    unsigned Draw(unsigned lBelow) { return static_cast<unsigned>(m_engine() % lBelow); }
    std::wstring SomeKey() { return (Draw(2) == 0 ? L"Cut " : L"CUT ") + std::to_wstring(Draw(120)); }
    void AddLoose(std::size_t count, const std::wstring& sItem)
    {
        m_cCollection.Add(sItem);
        m_cReference.Insert(count, std::nullopt, sItem);
    }
    void Insert(std::size_t position, const std::wstring& sKey, const std::wstring& sItem)
    {
        const TextKey cKey(sKey);
        const bool bKeyed = Draw(4) != 0;
        EXPECT_EQ(m_cCollection.Insert(position, bKeyed ? &cKey : nullptr, sItem),
                  m_cReference.Insert(position, bKeyed ? std::optional(sKey) : std::nullopt, sItem));
    }
    void RemoveByKey(const std::wstring& sKey, bool bAsKey)
    {
        const auto position = m_cReference.PositionOf(sKey);
        EXPECT_EQ(bAsKey ? m_cCollection.Remove(TextKey(sKey)) : m_cCollection.Remove(sKey),
                  position.has_value());
        if (position)
            m_cReference.RemoveAt(*position);
    }
    void ByPosition(unsigned lChoice, std::size_t count)
    {
        // The head often, as in rotation.
        const std::size_t position = lChoice % 3 == 0 ? 0 : Draw(static_cast<unsigned>(count));
        if (lChoice < 75)
        {
            m_cCollection.RemoveAt(position);
            m_cReference.RemoveAt(position);
            return;
        }
        m_cCollection.MoveToEnd(position);
        m_cReference.MoveToEnd(position);
    }
    void SendToBack(const std::wstring& sKey)
    {
        const auto position = m_cReference.PositionOf(sKey);
        EXPECT_EQ(m_cCollection.SendToBack(TextKey(sKey)), position.has_value());
        if (position)
            m_cReference.MoveToEnd(*position);
    }
    void Clear()
    {
        m_cCollection.Clear();
        m_cReference.Clear();
    }

    std::mt19937 m_engine;
    Collection m_cCollection;
    Reference m_cReference;
};

TEST(OrderedKeyedCollection, BehavesAsAPlainVectorUnderRandomOperations)
{
    for (unsigned lSeed = 1; lSeed <= 20; ++lSeed)
    {
        SCOPED_TRACE("seed " + std::to_string(lSeed));
        ModelCheck cCheck(lSeed);
        for (int lStep = 0; lStep < 2000; ++lStep)
        {
            SCOPED_TRACE("step " + std::to_string(lStep));
            cCheck.Step(lStep);
            if (lStep % 7 == 0)
                cCheck.Compare();
            if (::testing::Test::HasFailure())
                return;
        }
    }
}

} // namespace
} // namespace ravlo
