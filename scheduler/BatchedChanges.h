// SPDX-License-Identifier: MIT
#pragma once

#include "media/DataBase.h"
#include "scheduler/Filing.h"

#include <functional>
#include <memory>
#include <utility>

namespace ravlo
{

// Gathers changes to many cuts into few changes on the database's disk, where the database offers that. To be
// committed before anything that lets others run: they may import or close. When the database refuses a batch
// it has put the cuts back as they were; the operation goes on and reports it at its end.
class BatchedChanges
{
public:
    // Told of each cut of a refused batch, so that the tree can follow it.
    using Undone = std::function<void(const std::shared_ptr<Cut>&)>;

    BatchedChanges(const std::shared_ptr<DataBase>& cDataBase, Filing& cFiling, Undone undone)
        : m_cFiling(cFiling), m_cDataBase(cDataBase), m_undone(std::move(undone))
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
        if (m_cBatch)
            m_colCuts.push_back(cCut);
    }
    // Brings the changes so far to the disk.
    void Commit() noexcept
    {
        const Cuts colCuts = std::exchange(m_colCuts, {});
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
    }

private:
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

    Filing& m_cFiling;
    std::shared_ptr<DataBase> m_cDataBase;
    Undone m_undone;
    std::unique_ptr<DataBase::Batch> m_cBatch;
    Cuts m_colCuts; // of the open batch
};

} // namespace ravlo
