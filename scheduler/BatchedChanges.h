// SPDX-License-Identifier: MIT
#pragma once

#include "media/DataBase.h"
#include "scheduler/Filing.h"
#include "scheduler/Station.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <memory>
#include <numeric>
#include <optional>
#include <utility>
#include <vector>

namespace ravlo
{

// Gathers changes to many cuts into few changes on the database's disk, where the database offers that. To be
// committed before anything that lets others run: they may import or close. When the database refuses a batch
// it has put the cuts back as they were; they come to stand at their places again, and the operation goes on
// and reports it at its end.
class BatchedChanges
{
public:
    // Told of each cut of a refused batch, so that the tree can follow it: to be filed anew, at any place.
    using Undone = std::function<void(const std::shared_ptr<Cut>&)>;

    BatchedChanges(const Station& cStation, Filing& cFiling, Undone undone)
        : m_cStation(cStation), m_cFiling(cFiling), m_cDataBase(cStation.cDataBase),
          m_undone(std::move(undone))
    {
        Begin();
    }
    ~BatchedChanges() { Commit(); }
    BatchedChanges(const BatchedChanges&) = delete;
    BatchedChanges& operator=(const BatchedChanges&) = delete;

    // The changes from here on are gathered; nothing happens while they are already.
    void Begin() noexcept
    {
        try
        {
            if (!m_cBatch && m_cDataBase)
                m_cBatch = m_cDataBase->BeginBatch();
        }
        catch (...)
        {
            m_cFiling.Failed(); // each change stands for itself then
        }
    }
    // This cut is about to be changed.
    void Changing(const std::shared_ptr<Cut>& cCut)
    {
        if (!m_cBatch)
            return;
        m_colCuts.push_back(cCut);
        try
        {
            const TextKey cKey = cCut->Key();
            for (const Station::Place& place : m_cStation.PlacesOf(cKey))
                m_colStood.push_back({place.cSubCat, cKey, *place.cSubCat->SchedCuts()->PositionOf(cKey)});
        }
        catch (const RuntimeError&)
        {
            // Where it stands cannot be told; the change meets the same error and reports it.
        }
    }
    // Brings the changes so far to the disk.
    void Commit() noexcept
    {
        const Cuts colCuts = std::exchange(m_colCuts, {});
        const std::vector<Stood> colStood = std::exchange(m_colStood, {});
        try
        {
            if (const std::unique_ptr<DataBase::Batch> cBatch = std::exchange(m_cBatch, nullptr))
                cBatch->Commit();
            return;
        }
        catch (...)
        {
            m_cFiling.Failed();
        }
        for (const std::shared_ptr<Cut>& cCut : colCuts)
            Undo(cCut);
        // The last first: each finds the order as it was when it was about to leave.
        for (auto stood = colStood.rbegin(); stood != colStood.rend(); ++stood)
            PutBack(*stood);
    }

private:
    struct Stood // where a cut stood when it was about to be changed
    {
        std::shared_ptr<clsCat> cSubCat;
        TextKey cKey;
        std::size_t lPosition;
    };

    void Undo(const std::shared_ptr<Cut>& cCut) noexcept
    {
        try
        {
            m_undone(cCut);
        }
        catch (...)
        {
            m_cFiling.Failed(*cCut);
        }
    }

    void PutBack(const Stood& stood) noexcept
    {
        try
        {
            CutCollection& colCuts = *stood.cSubCat->SchedCuts();
            const std::optional<std::size_t> lNow = colCuts.PositionOf(stood.cKey);
            if (!lNow || *lNow <= stood.lPosition)
                return; // elsewhere by the database's word, or never gone
            std::vector<std::size_t> colOrder(colCuts.Count());
            std::iota(colOrder.begin(), colOrder.end(), std::size_t{0});
            const auto At = [&](std::size_t lPosition)
            { return colOrder.begin() + static_cast<std::ptrdiff_t>(lPosition); };
            std::rotate(At(stood.lPosition), At(*lNow), At(*lNow + 1));
            colCuts.Reorder(colOrder);
        }
        catch (...)
        {
            m_cFiling.Failed();
        }
    }

    const Station& m_cStation;
    Filing& m_cFiling;
    std::shared_ptr<DataBase> m_cDataBase;
    Undone m_undone;
    std::unique_ptr<DataBase::Batch> m_cBatch;
    // Of the open batch, in the order of the changes.
    Cuts m_colCuts;
    std::vector<Stood> m_colStood;
};

} // namespace ravlo
