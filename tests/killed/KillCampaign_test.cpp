// SPDX-License-Identifier: MIT
// A host is killed at any moment of any operation, over a real database and real files. Each order is then
// the old or the new one, each cut is in its old or its new place, and the next start reports nothing. A few
// kills as a rule, a thousand with RAVLO_LONG; RAVLO_SEED varies them.

#include "killed/StationOnDisk.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <set>
#include <sys/mman.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace ravlo::test
{

namespace
{

using RandomNumbers = std::mt19937;
using Microseconds = std::chrono::microseconds;

// ---- what a host does; its choices come only from the seed, so that it can be repeated

std::shared_ptr<clsCat> AnyMainCat(const Host& host, RandomNumbers& cRandom)
{
    const CatCollection& colMainCats = *host.cSchedMan->colMainCats();
    return colMainCats.At(cRandom() % colMainCats.Count());
}

// Null when the category it tries has none.
std::shared_ptr<clsCat> AnyLevel(const Host& host, RandomNumbers& cRandom)
{
    const std::shared_ptr<CatCollection> colLevels = AnyMainCat(host, cRandom)->SubCats();
    return colLevels->Empty() ? nullptr : colLevels->At(cRandom() % colLevels->Count());
}

Cuts CutsOf(const clsCat& cLevel)
{
    const std::shared_ptr<CutCollection> colCuts = cLevel.SchedCuts();
    return {colCuts->begin(), colCuts->end()};
}

void Picks(Host& host, RandomNumbers& cRandom)
{
    for (int lPick = 0; lPick < 4; ++lPick)
        if (const std::shared_ptr<clsCat> cLevel = AnyLevel(host, cRandom))
        {
            host.cSchedMan->UpdateArtistTitleHistory(
                host.cSchedMan->NextCutFromRotation({CategoryKey(cLevel->CatName(), cLevel->CatLevel())})
                    .cCut);
            host.NoteOrders();
        }
}

void Save(Host& host, RandomNumbers& cRandom)
{
    for (const std::shared_ptr<clsCat>& cMainCat : *host.cSchedMan->colMainCats())
        for (const std::shared_ptr<clsCat>& cLevel : *cMainCat->SubCats())
            if (!cLevel->SchedCuts()->Empty())
                cLevel->SchedCuts()->MoveToEnd(cRandom() % cLevel->SchedCuts()->Count());
    host.cSchedMan->SaveHistoryAndOrdering(nullptr);
    host.cSchedMan->SaveCatNames();
}

void MoveInLevel(Host& host, RandomNumbers& cRandom)
{
    const std::shared_ptr<clsCat> cLevel = AnyLevel(host, cRandom);
    if (cLevel && !cLevel->SchedCuts()->Empty())
        host.cSchedMan->MoveCutsInCategory(cLevel, {CutsOf(*cLevel).back()}, 1);
}

void Shuffle(Host& host, RandomNumbers& cRandom)
{
    host.cSchedMan->ShuffleCategories({AnyMainCat(host, cRandom)});
}

// A cut that is in one level alone, among many others; null when the level it tries is too small. A database
// announces its changes after they are made: after one that takes a level's last cut and a kill, the saved
// order contains a level that is gone, and the next start reports it.
std::shared_ptr<Cut> AnyAmongMany(const Host& host, RandomNumbers& cRandom)
{
    const std::shared_ptr<clsCat> cLevel = AnyLevel(host, cRandom);
    if (!cLevel || cLevel->TotalCuts() < 10)
        return nullptr;
    const std::shared_ptr<Cut> cCut = CutsOf(*cLevel)[cRandom() % 3];
    return cCut->CategoryNames().size() == 1 ? cCut : nullptr;
}

// New cuts, and new titles and categories for old ones.
void Import(Host& host, RandomNumbers& cRandom)
{
    std::string csv = "path,artist,title,categories,level\n";
    const auto row = [&](const std::wstring& sKey) {
        csv += std::string(sKey.begin(), sKey.end()) + ",Artist " + std::to_string(cRandom() % 9) +
               ",Title " + std::to_string(cRandom() % 99) + "," + (cRandom() % 2 == 0 ? "Pop" : "Rock/Soul") +
               "," + std::to_string(1 + cRandom() % 3) + "\n";
    };
    for (int lRow = 0; lRow < 5; ++lRow)
        if (const std::wstring sKey = L"D:\\" + std::to_wstring(cRandom() % 300) + L".mp3";
            !host.cStore->CutByKey(TextKey(sKey)))
            row(sKey);
    for (int lRow = 0; lRow < 4; ++lRow)
        if (const std::shared_ptr<Cut> cCut = AnyAmongMany(host, cRandom))
            row(cCut->Key().Text());
    host.Import(csv);
}

void RemoveCuts(Host& host, RandomNumbers& cRandom)
{
    Cuts colGone;
    for (int lCut = 0; lCut < 3; ++lCut)
        if (const std::shared_ptr<Cut> cCut = AnyAmongMany(host, cRandom))
            colGone.push_back(cCut);
    host.cStore->RemoveCuts(colGone);
}

void MoveOrCopy(Host& host, RandomNumbers& cRandom, eCatDragOptions eOption,
                const std::shared_ptr<clsCat>& cTo, std::size_t most)
{
    const std::shared_ptr<clsCat> cFrom = AnyLevel(host, cRandom);
    if (!cFrom || !cTo)
        return;
    Cuts colCuts = CutsOf(*cFrom);
    colCuts.resize(std::min(colCuts.size(), most));
    bool bCreated = false;
    host.cSchedMan->DoMassCatChange(eOption, {cFrom}, cTo, colCuts, bCreated);
}

constexpr std::size_t allCuts = 1000;
void MoveSome(Host& host, RandomNumbers& cRandom)
{
    MoveOrCopy(host, cRandom, eMoveHere, AnyLevel(host, cRandom), 3);
}
void MoveAll(Host& host, RandomNumbers& cRandom)
{
    MoveOrCopy(host, cRandom, eMoveHere, AnyLevel(host, cRandom), allCuts);
}
void MoveExclusive(Host& host, RandomNumbers& cRandom)
{
    MoveOrCopy(host, cRandom, eMoveExclusiveHere, AnyLevel(host, cRandom), 5);
}
void CopyAll(Host& host, RandomNumbers& cRandom)
{
    MoveOrCopy(host, cRandom, eCopyHere, AnyMainCat(host, cRandom), allCuts);
}

void DeleteLevel(Host& host, RandomNumbers& cRandom)
{
    if (const std::shared_ptr<clsCat> cLevel = AnyLevel(host, cRandom))
        host.cSchedMan->DeleteCats({cLevel});
}

void DeleteCategory(Host& host, RandomNumbers& cRandom)
{
    if (host.cSchedMan->colMainCats()->Count() > 3)
        host.cSchedMan->DeleteCats({AnyMainCat(host, cRandom)});
}

void Create(Host& host, RandomNumbers& cRandom)
{
    std::wstring sName = L"New " + std::to_wstring(cRandom() % 5);
    if (!host.MainCat(sName))
        host.cSchedMan->CreateMainCat(sName);
    host.cPorts.cMessages.Typed = {std::to_wstring(2 + cRandom() % 5)};
    host.cSchedMan->CreateCatLevel(AnyMainCat(host, cRandom));
}

// What earlier works did, and killed ones.
void Undo(Host& host, RandomNumbers&)
{
    if (host.cSchedMan->CanUndo())
        host.cSchedMan->Undo();
}

// What the undo before it took back, in an earlier start.
void Redo(Host& host, RandomNumbers&)
{
    if (host.cSchedMan->CanRedo())
        host.cSchedMan->Redo();
}

void RulesAndSettings(Host& host, RandomNumbers& cRandom)
{
    host.cMod.SetGlobalArtistSepMins(static_cast<std::int32_t>(cRandom() % 90));
    if (const std::shared_ptr<clsCat> cLevel = AnyLevel(host, cRandom))
        cLevel->Rules()->SetTitleSepMins(static_cast<std::int32_t>(cRandom() % 90));
}

struct Work
{
    const char* sName;
    void (*run)(Host&, RandomNumbers&);
};
constexpr Work works[] = {
    {"picks", Picks},
    {"save", Save},
    {"move in a level", MoveInLevel},
    {"shuffle", Shuffle},
    {"import", Import},
    {"remove from the database", RemoveCuts},
    {"move some", MoveSome},
    {"move a level", MoveAll},
    {"move exclusive", MoveExclusive},
    {"copy", CopyAll},
    {"delete a level", DeleteLevel},
    {"delete a category", DeleteCategory},
    {"create", Create},
    {"undo", Undo},
    {"redo", Redo},
    {"rules and settings", RulesAndSettings},
};

// ---- the comparison

// Whether the cuts that both contain have the same order.
bool AgreeInOrder(Keys colLeft, Keys colRight)
{
    const auto isIn = [](const Keys& colKeys) {
        return [colIn = std::set(colKeys.begin(), colKeys.end())](const std::wstring& sKey) {
            return !colIn.contains(sKey);
        };
    };
    const Keys colOfLeft = colLeft;
    std::erase_if(colLeft, isIn(colRight));
    std::erase_if(colRight, isIn(colOfLeft));
    return colLeft == colRight;
}

// Each entry is the one before or after, and so is a missing one.
template <class Map> void ExpectOldOrNew(const Map& now, const Map& before, const Map& after)
{
    const auto valueIn = [](const Map& map, const auto& key) {
        const auto found = map.find(key);
        return found == map.end() ? std::nullopt : std::optional(found->second);
    };
    Map all = before;
    all.insert(after.begin(), after.end());
    for (const auto& [key, value] : now)
        EXPECT_TRUE(all.count(key) == 1) << testing::PrintToString(key) << " is new";
    for (const auto& [key, value] : all)
        EXPECT_TRUE(valueIn(now, key) == valueIn(before, key) || valueIn(now, key) == valueIn(after, key))
            << testing::PrintToString(key) << ": " << testing::PrintToString(valueIn(now, key));
}

void ExpectOrdersOldOrNew(const State& now, const std::vector<Orders>& colSteps)
{
    std::set<std::wstring> colAlways;
    std::set<std::wstring> colEver;
    for (const auto& [sLevel, colKeys] : colSteps.front())
        colAlways.insert(sLevel);
    for (const Orders& orders : colSteps)
    {
        for (const auto& [sLevel, colKeys] : orders)
            colEver.insert(sLevel);
        std::erase_if(colAlways, [&](const std::wstring& sLevel) { return !orders.contains(sLevel); });
    }
    for (const std::wstring& sLevel : colAlways)
        EXPECT_TRUE(now.orders.count(sLevel) == 1) << testing::PrintToString(sLevel) << " is gone";
    for (const auto& level : now.orders)
    {
        const auto& sLevel = level.first;
        const auto& colKeys = level.second;
        EXPECT_TRUE(colEver.count(sLevel) == 1) << testing::PrintToString(sLevel) << " is new";
        // A level that the work was creating has no order to lose yet.
        if (!colSteps.front().contains(sLevel))
            continue;
        EXPECT_TRUE(std::any_of(
            colSteps.begin(), colSteps.end(),
            [&](const Orders& orders) {
            const auto found = orders.find(sLevel);
            return found != orders.end() && AgreeInOrder(found->second, colKeys);
            }))
            << testing::PrintToString(sLevel) << ": " << testing::PrintToString(colKeys) << ", which was "
            << testing::PrintToString(colSteps.front().at(sLevel));
    }
}

// ---- the campaign

struct Shared
{
    std::atomic<bool> bStarted;
};

class KillCampaign : public testing::Test
{
protected:
    void SetUp() override
    {
        void* pMemory =
            mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
        ASSERT_NE(pMemory, MAP_FAILED);
        m_pShared = new (pMemory) Shared{};
    }
    void TearDown() override { munmap(m_pShared, sizeof(Shared)); }

    // Does the work in a host of its own, which is killed that long after it was populated, or, without
    // bStarted, after its start.
    void Kill(const Work& work, unsigned lSeed, bool bStarted, Microseconds lAfter)
    {
        m_pShared->bStarted = false;
        const pid_t lHost = fork();
        ASSERT_GE(lHost, 0);
        if (lHost == 0)
        {
            {
                Host host(m_cState, lSeed);
                m_pShared->bStarted = true;
                RandomNumbers cRandom(lSeed);
                work.run(host, cRandom);
            }
            for (;;)
                pause();
        }
        int lStatus = 0;
        while (bStarted && !m_pShared->bStarted)
        {
            ASSERT_EQ(waitpid(lHost, &lStatus, WNOHANG), 0)
                << "the host ended at its start, status " << lStatus;
            std::this_thread::yield();
        }
        const auto until = std::chrono::steady_clock::now() + lAfter;
        while (std::chrono::steady_clock::now() < until)
            std::this_thread::yield();
        kill(lHost, SIGKILL);
        ASSERT_EQ(waitpid(lHost, &lStatus, 0), lHost);
        ASSERT_TRUE(WIFSIGNALED(lStatus)) << "the host ended by itself, status " << lStatus;
    }

    bool HasParts() const { return std::filesystem::exists(m_cState.Folder() / "Scheduler" / "Undo.parts"); }
    // What a killed work has done of a step in parts is undone whole.
    void ExpectUndoneWhole(const State& before) const
    {
        const StationOnDisk undone(m_cState);
        {
            const Host host(undone, 1);
            if (!host.cSchedMan->UndoText().starts_with(L"Undo interrupted"))
                return;
            host.cSchedMan->Undo();
        }
        const State now = undone.Read();
        EXPECT_EQ(now.cuts, before.cuts);
        EXPECT_EQ(now.orders, before.orders);
    }

    // One kill in the middle of one work, and what is left of the station.
    void Round(const Work& work, RandomNumbers& cRandom)
    {
        const unsigned lSeed = static_cast<unsigned>(cRandom());
        const State before = m_cState.Read();
        // The whole work, on a copy.
        const StationOnDisk twin(m_cState);
        std::vector<Orders> colSteps{before.orders};
        Microseconds lStart{};
        Microseconds lWork{};
        {
            const auto begin = std::chrono::steady_clock::now();
            Host host(twin, lSeed);
            const auto started = std::chrono::steady_clock::now();
            RandomNumbers cSame(lSeed);
            work.run(host, cSame);
            lWork = std::chrono::duration_cast<Microseconds>(std::chrono::steady_clock::now() - started);
            lStart = std::chrono::duration_cast<Microseconds>(started - begin);
            colSteps.insert(colSteps.end(), host.colSteps.begin(), host.colSteps.end());
        }
        const State after = twin.Read();
        EXPECT_EQ(after.colBoxes, Boxes());
        colSteps.push_back(after.orders);

        const bool bStarted = cRandom() % 8 != 0;
        const auto most = static_cast<unsigned>((bStarted ? lWork : lStart).count() * 5 / 4 + 1);
        const bool bPartsOfAnother = HasParts();
        Kill(work, lSeed, bStarted, Microseconds(cRandom() % most));

        m_cState.ExpectTidy();
        const State now = m_cState.Read();
        EXPECT_EQ(now.colBoxes, Boxes()) << "the next start is silent";
        ExpectOldOrNew(now.cuts, before.cuts, after.cuts);
        ExpectOldOrNew(now.categories, before.categories, after.categories);
        ExpectOldOrNew(now.files, before.files, after.files);
        ExpectOrdersOldOrNew(now, colSteps);
        if (!bPartsOfAnother && HasParts())
            ExpectUndoneWhole(before);
    }

    StationOnDisk m_cState;
    Shared* m_pShared = nullptr;
};

long NumberIn(const char* sVariable, long lDefault)
{
    const char* sValue = std::getenv(sVariable);
    return sValue ? std::atol(sValue) : lDefault;
}

TEST_F(KillCampaign, LeavesEverythingOldOrNew)
{
    const long lKills = NumberIn("RAVLO_LONG", 0) != 0 ? 1000 : 3 * static_cast<long>(std::size(works));
    const auto lSeed = static_cast<unsigned>(NumberIn("RAVLO_SEED", 20261121));
    RandomNumbers cRandom(lSeed);
    for (long lKill = 0; lKill < lKills && !HasFailure(); ++lKill)
    {
        const Work& work = works[static_cast<std::size_t>(lKill) % std::size(works)];
        Round(work, cRandom);
        if (lKill % 100 == 99)
            std::printf("%ld kills\n", lKill + 1), std::fflush(stdout);
        EXPECT_FALSE(HasFailure()) << "kill " << lKill << " of seed " << lSeed << ", in: " << work.sName;
    }
}

} // namespace
} // namespace ravlo::test
