// SPDX-License-Identifier: MIT
// The cost of undoing a move, with the embedded database and files on the disk, compared with the move.
#include "bench/Radio.h"
#include "bench/Ratios.h"
#include "platform/posix/PosixFiles.h"
#include "ravlobase/Store.h"
#include "scheduler/clsSchedMan.h"

#include <cstdlib>
#include <filesystem>

namespace ravlo::bench
{

namespace
{

// Two levels of as many cuts; half of the first one's move to the second one.
class MovingStation
{
public:
    explicit MovingStation(std::int64_t moved) : m_cFolder(NewFolder())
    {
        m_cStore->Open((m_cFolder / "station.db").wstring());
        Cuts colCuts;
        for (std::int64_t number = 0; number < 4 * moved; ++number)
        {
            colCuts.push_back(MadeUpCut(number));
            colCuts.back()->SetCategoryText(number % 2 == 0 ? L"Rock" : L"Pop");
            colCuts.back()->SetCatLevel(number % 2 == 0 ? 1 : 2);
        }
        m_cStore->AddCuts(colCuts);
        m_cSchedMan->PopulateFromDataBase(m_cStore, m_cFolder.wstring());
        const std::shared_ptr<CutCollection> colRock = Level(L"Rock", 1)->SchedCuts();
        for (std::size_t at = 0; at < colRock->Count(); at += 2)
            m_colMoved.push_back(colRock->At(at));
    }
    ~MovingStation()
    {
        m_cSchedMan.reset();
        m_cStore->Close();
        std::filesystem::remove_all(m_cFolder);
    }
    MovingStation(const MovingStation&) = delete;
    MovingStation& operator=(const MovingStation&) = delete;

    void Move()
    {
        bool bCreated = false;
        m_cSchedMan->DoMassCatChange(eMoveHere, {Level(L"Rock", 1)}, Level(L"Pop", 2), m_colMoved, bCreated);
    }
    void Undo() { m_cSchedMan->Undo(); }

private:
    static std::filesystem::path NewFolder()
    {
        std::string sPattern = (std::filesystem::temp_directory_path() / "ravlo-bench-XXXXXX").string();
        return mkdtemp(sPattern.data());
    }
    std::shared_ptr<clsCat> Level(const std::wstring& sName, std::int32_t lLevel) const
    {
        return MainCatByName(m_cSchedMan->colMainCats().get(), sName)->SubCat(lLevel);
    }

    const std::filesystem::path m_cFolder;
    MemoryPorts m_context;
    PosixFiles m_cFiles;
    ModScheduler m_cMod{m_context.PortsWith(m_cFiles)};
    std::shared_ptr<Store> m_cStore = std::make_shared<Store>();
    std::shared_ptr<clsSchedMan> m_cSchedMan = std::make_shared<clsSchedMan>(m_cMod);
    Cuts m_colMoved;
};

void MoveCuts(benchmark::State& state)
{
    MovingStation station(state.range(0));
    for (auto _ : state)
    {
        station.Move();
        state.PauseTiming();
        station.Undo();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void UndoMove(benchmark::State& state)
{
    MovingStation station(state.range(0));
    for (auto _ : state)
    {
        state.PauseTiming();
        station.Move();
        state.ResumeTiming();
        station.Undo();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

const bool bUndoAdded =
    AddRatio({"undo of a move, per cut", "the move", {100, 5'000}, &UndoMove, &MoveCuts, 2.0, true});

} // namespace

} // namespace ravlo::bench
