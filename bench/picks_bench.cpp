// SPDX-License-Identifier: MIT
#include "base/RuntimeError.h"
#include "bench/Radio.h"
#include "bench/Ratios.h"
#include "platform/posix/PosixFiles.h"
#include "scheduler/HistoryFiles.h"
#include "scheduler/clsSchedMan.h"

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <set>
#include <thread>

namespace ravlo::bench
{

namespace
{

// A real disk on which a backup program holds some files open: they cannot be replaced. A patient caller
// waits as long as at a station.
class LockedFiles final : public Files
{
public:
    Presence PresenceOf(const std::wstring& sPath) const override { return m_cDisk.PresenceOf(sPath); }
    Presence PresenceOfFolder(const std::wstring& sPath) const override
    {
        return m_cDisk.PresenceOfFolder(sPath);
    }
    void CreateFolder(const std::wstring& sPath) override { m_cDisk.CreateFolder(sPath); }
    std::vector<FileEntry> FilesIn(const std::wstring& sFolder) const override
    {
        return m_cDisk.FilesIn(sFolder);
    }
    std::optional<FileStamp> StampOf(const std::wstring& sPath) const override
    {
        return m_cDisk.StampOf(sPath);
    }
    std::string ReadAll(const std::wstring& sPath, Patience ePatience = Patience::UpToASecond) const override
    {
        return m_cDisk.ReadAll(sPath, ePatience);
    }
    void WriteNew(const std::wstring& sPath, std::string_view bytes) override
    {
        m_cDisk.WriteNew(sPath, bytes);
    }
    void Append(const std::wstring& sPath, std::string_view bytes) override { m_cDisk.Append(sPath, bytes); }
    void Rename(const std::wstring& sFrom, const std::wstring& sTo,
                Patience ePatience = Patience::UpToASecond) override
    {
        if (!colLocked.contains(sTo))
            return m_cDisk.Rename(sFrom, sTo, ePatience);
        if (ePatience == Patience::UpToASecond)
            std::this_thread::sleep_for(std::chrono::seconds(1));
        throw RuntimeError(error::PermissionDenied);
    }
    void Delete(const std::wstring& sPath) override { m_cDisk.Delete(sPath); }
    std::unique_ptr<HeldFile> HoldOpen(const std::wstring& sPath) override { return m_cDisk.HoldOpen(sPath); }
    std::wstring LibraryFolder() const override { return m_cDisk.LibraryFolder(); }

    std::set<std::wstring> colLocked;

private:
    PosixFiles m_cDisk;
};

// Categories Cat0, Cat1 ... whose picks save. Each pick comes more than a second after the previous one, so
// it retries a failed save.
struct LockedStation
{
    static constexpr int lCats = 31;

    explicit LockedStation(std::int64_t cuts)
    {
        sFolder = (std::filesystem::temp_directory_path() / "ravlo-picks-XXXXXX").string();
        if (!mkdtemp(sFolder.data()))
            std::abort();
        for (std::int64_t i = 0; i < lCats * cuts; ++i)
        {
            const std::shared_ptr<Cut> cCut = MadeUpCut(i);
            cCut->SetCategoryText(L"Cat" + std::to_wstring(i % lCats));
            cDataBase->Add(cCut);
        }
        cSchedMan->SetRotatesAllowed(true);
        cSchedMan->PopulateFromDataBase(cDataBase, std::wstring(sFolder.begin(), sFolder.end()));
        cSchedMan->SaveHistoryAndOrdering(nullptr);
    }
    ~LockedStation()
    {
        cSchedMan.reset();
        std::filesystem::remove_all(sFolder);
    }
    LockedStation(const LockedStation&) = delete;
    LockedStation& operator=(const LockedStation&) = delete;

    void Lock(int lCat)
    {
        cFiles.colLocked.insert(cMod.AppPath() + L"Scheduler\\History_and_Ordering\\Cat" +
                                std::to_wstring(lCat) + L".sif");
    }
    void Pick(int lCat)
    {
        context.cClock.Advance(UnsavedOrders::lRetryMs + 1);
        benchmark::DoNotOptimize(cSchedMan->NextCutFromRotation({L"Cat" + std::to_wstring(lCat) + L"\t1"}));
    }

    std::string sFolder;
    MemoryPorts context;
    LockedFiles cFiles;
    ModScheduler cMod{context.PortsWith(cFiles)};
    std::shared_ptr<RadioDataBase> cDataBase = std::make_shared<RadioDataBase>();
    std::shared_ptr<clsSchedMan> cSchedMan = std::make_shared<clsSchedMan>(cMod);
};

// lOwed: how many other categories have a locked file and a failed save; bOwn: whether the picked category's
// file is locked too.
template <int lOwed, bool bOwn> void LockedPicks(benchmark::State& state)
{
    static std::map<std::int64_t, std::unique_ptr<LockedStation>> colStations;
    std::unique_ptr<LockedStation>& station = colStations[state.range(0)];
    if (!station)
    {
        station = std::make_unique<LockedStation>(state.range(0));
        for (int lCat = 1; lCat <= lOwed; ++lCat)
        {
            station->Lock(lCat);
            station->Pick(lCat);
        }
        if (bOwn)
            station->Lock(0);
    }
    for (auto _ : state)
        station->Pick(0);
    state.SetItemsProcessed(state.iterations());
}

const std::vector<std::int64_t> colLockedSizes{100, 1'000};
// A pick with failed saves to retry writes two files at most, so it costs two picks and the log lines of the
// errors.
constexpr double dLimit = 2.2;

const bool bLocked = AddRatio({"pick whose own file is locked", "pick that saves", colLockedSizes,
                               &LockedPicks<0, true>, &LockedPicks<0, false>, dLimit, true});
const bool bOwed = AddRatio({"pick with 30 locked files owed", "pick that saves", colLockedSizes,
                             &LockedPicks<30, false>, &LockedPicks<0, false>, dLimit, true});
const bool bBoth = AddRatio({"pick with all 31 files locked", "pick that saves", colLockedSizes,
                             &LockedPicks<30, true>, &LockedPicks<0, false>, dLimit, true});

} // namespace

} // namespace ravlo::bench
