// SPDX-License-Identifier: MIT
// A host that is killed at any moment leaves files that can be read, and each order is the one before or
// after the pick.

#include "platform/memory/MemoryWorld.h"
#include "platform/posix/PosixFiles.h"
#include "scheduler/Population.h"
#include "scheduler/clsSchedMan.h"
#include "support/FakeDataBase.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <new>
#include <random>
#include <sys/mman.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace ravlo::test
{

namespace
{

constexpr int lCuts = 7;
constexpr int lKills = 300;

// What the host tells the test while it lives: how many picks it has finished.
struct Shared
{
    std::atomic<int> lPicks;
};

std::wstring NameOf(int lCut) { return L"cut " + std::to_wstring(lCut); }

class KilledHost : public testing::Test
{
protected:
    void SetUp() override
    {
        m_sFolder = (std::filesystem::temp_directory_path() / "ravlo-killed-XXXXXX").string();
        ASSERT_NE(mkdtemp(m_sFolder.data()), nullptr);
        std::filesystem::create_directories(m_sFolder + "/Debugging Logs/Scheduler");
        void* pMemory =
            mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
        ASSERT_NE(pMemory, MAP_FAILED);
        m_pShared = new (pMemory) Shared{};
    }
    void TearDown() override
    {
        munmap(m_pShared, sizeof(Shared));
        std::filesystem::remove_all(m_sFolder);
    }

    std::wstring AppPath() const { return {m_sFolder.begin(), m_sFolder.end()}; }

    // A host on air: picks, saves each time, changes the settings and the list of categories, and never
    // stops.
    [[noreturn]] void PlayForEver()
    {
        MemoryWorld world;
        PosixFiles cFiles;
        ModScheduler cMod(world.AllPortsWith(cFiles));
        const auto cDataBase = DataBaseOfCuts();
        const auto cSchedMan = std::make_shared<clsSchedMan>(cMod);
        cSchedMan->PopulateFromDataBase(cDataBase, AppPath());
        cSchedMan->SetRotatesAllowed(true);
        (*cSchedMan->colMainCats()->Find(CategoryKey(L"Pop", 0)))->SubCat(1)->Rules()->SetIgnoreRules(true);
        for (;;)
        {
            std::shared_ptr<clsCat> cMainCat;
            std::shared_ptr<clsCat> cSubCat;
            std::wstring sKey;
            cSchedMan->NextCutFromRotation(L"Pop\t1", false, nullptr, cMainCat, cSubCat, sKey);
            ++m_pShared->lPicks;
            const int lMins = m_pShared->lPicks % 90;
            cMod.SetGlobalArtistSepMins(lMins);
            cSchedMan->SaveCatNames();
            cSubCat->Rules()->SetArtistSepMins(lMins);
        }
    }

    static std::shared_ptr<FakeDataBase> DataBaseOfCuts()
    {
        auto cDataBase = std::make_shared<FakeDataBase>();
        for (int lCut = 0; lCut < lCuts; ++lCut)
            cDataBase->Add(NameOf(lCut), L"Pop", 1);
        return cDataBase;
    }

    // The number of the cut at the head after a restart, when the order is a rotation of the first one; else
    // -1.
    int HeadAfterRestart()
    {
        MemoryWorld world;
        PosixFiles cFiles;
        ModScheduler cMod(world.AllPortsWith(cFiles));
        const auto cSchedMan = std::make_shared<clsSchedMan>(cMod);
        cSchedMan->PopulateFromDataBase(DataBaseOfCuts(), AppPath());
        EXPECT_TRUE(world.cMessages.Boxes.empty()) << "something could not be read";
        m_lArtistSep = cMod.GlobalArtistSepMins();
        const std::shared_ptr<CutCollection> colCuts = cSchedMan->colCuts(L"Pop", 1);
        const int lHead = std::stoi(colCuts->At(0)->Key().Text().substr(4));
        for (int lPosition = 0; lPosition < lCuts; ++lPosition)
            if (colCuts->At(static_cast<std::size_t>(lPosition))->Key().Text() !=
                NameOf((lHead + lPosition) % lCuts))
                return -1;
        return lHead;
    }

    std::string m_sFolder;
    Shared* m_pShared = nullptr;
    int m_lArtistSep = 0;
};

} // namespace

TEST_F(KilledHost, LeavesEachOrderAsItWasBeforeOrAfterThePick)
{
    std::mt19937 cChance(20261121);
    int lHead = 0; // of the order on the disk
    for (int lKill = 0; lKill < lKills; ++lKill)
    {
        m_pShared->lPicks = 0;
        const pid_t lHost = fork();
        ASSERT_GE(lHost, 0);
        if (lHost == 0)
            PlayForEver();
        // Some are killed while they populate, most at any moment of their first picks.
        const int lPicksToWaitFor = static_cast<int>(cChance() % 4);
        while (m_pShared->lPicks < lPicksToWaitFor)
            std::this_thread::yield();
        const auto until = std::chrono::steady_clock::now() + std::chrono::microseconds(cChance() % 3000);
        while (std::chrono::steady_clock::now() < until)
            std::this_thread::yield();
        kill(lHost, SIGKILL);
        int lStatus = 0;
        ASSERT_EQ(waitpid(lHost, &lStatus, 0), lHost);
        ASSERT_TRUE(WIFSIGNALED(lStatus)) << "the host ended by itself, status " << lStatus;

        const int lPicks = m_pShared->lPicks;
        const int lNow = HeadAfterRestart();
        ASSERT_TRUE(lNow == (lHead + lPicks) % lCuts || lNow == (lHead + lPicks + 1) % lCuts)
            << "kill " << lKill << ": head was " << lHead << ", " << lPicks << " picks, head is " << lNow;
        ASSERT_TRUE(m_lArtistSep == 60 || m_lArtistSep < 90);
        lHead = lNow;
    }
}

} // namespace ravlo::test
