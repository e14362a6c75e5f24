// SPDX-License-Identifier: MIT
#include "host/day/PlayBook.h"

#include "base/RuntimeError.h"

#include <gtest/gtest.h>

#include <map>
#include <vector>

namespace ravlo
{

namespace
{

// A database that gathers or not, and refuses every write until a time.
class FakeStore : public PlayStore
{
public:
    explicit FakeStore(bool bGathers) : m_bGathers(bGathers) {}

    // As the scheduler reports a play: it ignores a refusal of the database.
    void Report(const std::wstring& sKey, DateTime dtWhen)
    {
        try
        {
            Put(sKey, dtWhen);
        }
        catch (const RuntimeError&)
        {
        }
    }

    void Write() override
    {
        ++lWrites;
        if (m_bGathers && !gathered.empty())
        {
            Refuse();
            for (const auto& [sKey, dtWhen] : gathered)
                disk[sKey] = dtWhen;
            gathered.clear();
        }
    }
    bool Has(const std::wstring& sKey, DateTime dtWhen) override
    {
        const auto& where = gathered.contains(sKey) ? gathered : disk;
        const auto it = where.find(sKey);
        return it != where.end() && it->second == dtWhen;
    }
    void Put(const std::wstring& sKey, DateTime dtWhen) override
    {
        if (m_bGathers)
        {
            gathered[sKey] = dtWhen;
            return;
        }
        Refuse();
        disk[sKey] = dtWhen;
    }

    std::map<std::wstring, DateTime> gathered;
    std::map<std::wstring, DateTime> disk;
    std::int64_t now = 0;
    std::int64_t refusesUntil = 0;
    std::int32_t lError = error::PermissionDenied;
    int lWrites = 0;
    int lRefused = 0;

private:
    void Refuse()
    {
        if (now < refusesUntil)
        {
            ++lRefused;
            throw RuntimeError(lError, L"It is locked.");
        }
    }
    bool m_bGathers;
};

class PlayBookTest : public ::testing::TestWithParam<bool>
{
protected:
    // A slot: reported, entered, and some time passes.
    void Play(const std::wstring& sKey, DateTime dtWhen, std::int64_t lmS = 10)
    {
        m_cBook.Add(sKey, dtWhen);
        m_cStore.Report(sKey, dtWhen);
        m_cStore.now += lmS;
        m_cBook.Tick();
    }

    FakeStore m_cStore{GetParam()};
    int m_lWaited = 0;
    PlayBook m_cBook{m_cStore,
                     {[this] { return m_cStore.now; }, [this](std::int64_t lmS) { m_cStore.now += lmS; }}};
    std::wstring Settle()
    {
        return m_cBook.Settle([this] { ++m_lWaited; });
    }
};

INSTANTIATE_TEST_SUITE_P(GatheringOrNot, PlayBookTest, ::testing::Bool());

} // namespace

TEST_P(PlayBookTest, EveryPlayIsInTheDatabaseAtTheEnd)
{
    Play(L"a", 1);
    Play(L"b", 2);
    Play(L"A", 3);
    EXPECT_EQ(Settle(), L"");
    EXPECT_EQ(m_lWaited, 0);
    EXPECT_EQ(m_cStore.disk.at(L"b"), 2);
    EXPECT_TRUE(m_cStore.Has(L"A", 3));
}

TEST_P(PlayBookTest, WaitsForAnotherProgramThatIsWriting)
{
    m_cStore.refusesUntil = 10'000;
    for (int i = 0; i < 20; ++i)
        Play(std::to_wstring(i), i);
    EXPECT_TRUE(m_cStore.disk.empty());
    EXPECT_EQ(Settle(), L"");
    EXPECT_GT(m_lWaited, 10);
    EXPECT_EQ(m_cStore.disk.size(), 20u);
    EXPECT_LT(m_cStore.now, 10'200);
}

TEST_P(PlayBookTest, CountsTheMissingPlaysWhenPatienceEnds)
{
    Play(L"before", 1, 1000);
    m_cStore.refusesUntil = 1'000'000;
    Play(L"a", 2);
    Play(L"b", 3);
    EXPECT_EQ(Settle(), L"2 plays are not in the database: It is locked.");
    EXPECT_GE(m_cStore.now, 30'000);
    EXPECT_LT(m_cStore.now, 35'000);
}

TEST_P(PlayBookTest, DoesNotWaitForAFullDisk)
{
    m_cStore.refusesUntil = 1'000'000;
    m_cStore.lError = 61;
    Play(L"a", 1);
    EXPECT_EQ(Settle(), L"1 play is not in the database: It is locked.");
    EXPECT_EQ(m_lWaited, 0);
}

TEST_P(PlayBookTest, AsksALockedDatabaseOnceAnAttempt)
{
    m_cStore.refusesUntil = 1'000'000;
    for (int i = 0; i < 500; ++i)
        m_cBook.Add(std::to_wstring(i), 1);
    m_cStore.gathered[L"x"] = 1;
    Settle();
    EXPECT_LE(m_cStore.lRefused, m_lWaited + 1);
}

TEST(PlayBook, WritesWhatIsGatheredOnceASecond)
{
    FakeStore cStore(true);
    PlayBook cBook(cStore, {[&] { return cStore.now; }, [](std::int64_t) {}});
    for (int i = 0; i < 1000; ++i)
    {
        cBook.Add(std::to_wstring(i), 1);
        cStore.Report(std::to_wstring(i), 1);
        cStore.now += 10;
        cBook.Tick();
        EXPECT_LE(cStore.gathered.size(), 100u);
    }
    EXPECT_EQ(cStore.lWrites, 10);
}

TEST(PlayBook, TriesALockedDatabaseOnceASecond)
{
    FakeStore cStore(true);
    PlayBook cBook(cStore, {[&] { return cStore.now; }, [](std::int64_t) {}});
    cStore.refusesUntil = 5'000;
    for (; cStore.now < 10'000; cStore.now += 10)
    {
        cBook.Add(L"a", static_cast<double>(cStore.now));
        cStore.Report(L"a", static_cast<double>(cStore.now));
        cBook.Tick();
    }
    EXPECT_LE(cStore.lRefused, 5);
    EXPECT_GT(cStore.disk.at(L"a"), 8'000);
}

} // namespace ravlo
