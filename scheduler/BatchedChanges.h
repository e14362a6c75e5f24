// SPDX-License-Identifier: MIT
#pragma once

#include "media/DataBase.h"
#include "scheduler/Filing.h"

#include <memory>
#include <utility>

namespace ravlo
{

// Gathers changes to many cuts into few changes on the database's disk, where the database offers that. To be
// committed before anything that lets others run: they may import or close. What the database refuses it has
// undone; the operation goes on and reports it at its end.
class BatchedChanges
{
public:
    BatchedChanges(const std::shared_ptr<DataBase>& cDataBase, Filing& cFiling)
        : m_cFiling(cFiling), m_cDataBase(cDataBase)
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
    // Brings the changes so far to the disk.
    void Commit() noexcept
    {
        try
        {
            if (const std::unique_ptr<DataBase::Batch> cBatch = std::exchange(m_cBatch, nullptr))
                cBatch->Commit();
        }
        catch (...)
        {
            m_cFiling.Failed();
        }
    }

private:
    Filing& m_cFiling;
    std::shared_ptr<DataBase> m_cDataBase;
    std::unique_ptr<DataBase::Batch> m_cBatch;
};

} // namespace ravlo
