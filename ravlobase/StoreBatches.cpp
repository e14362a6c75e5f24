// SPDX-License-Identifier: MIT
#include "ravlobase/StoreBatches.h"

#include "base/RuntimeError.h"
#include "ravlobase/Sqlite.h"

#include <utility>

namespace ravlo
{

StoreBatches::StoreBatches(StoreContent& cContent) : m_cContent(cContent) {}
StoreBatches::~StoreBatches() = default;

std::size_t StoreBatches::Begin(sqlite::Connection& cConnection)
{
    NeedSound();
    m_batches.push_back({std::make_unique<sqlite::Transaction>(cConnection), m_colUndo.size()});
    return m_batches.size();
}

void StoreBatches::Commit(std::size_t depth)
{
    NeedSound();
    if (m_batches.size() != depth)
        throw RuntimeError(error::InvalidProcedureCall, L"This batch of changes has ended already.");
    m_batches.back().pTransaction->Commit();
    m_batches.pop_back();
    if (m_batches.empty())
        m_colUndo.clear();
}

void StoreBatches::Undo(std::size_t depth) noexcept
{
    while (!m_batches.empty() && m_batches.size() >= depth)
    {
        UndoTo(m_batches.back().undoFrom);
        m_batches.pop_back();
    }
    m_bLost = m_bLost && !m_batches.empty();
}

void StoreBatches::WillChange(StoreCut& cCut)
{
    if (!m_batches.empty())
        m_colUndo.push_back({&cCut, cCut.Values()});
}

void StoreBatches::NoteFailure(const sqlite::Connection& cConnection) noexcept
{
    if (!m_batches.empty() && !cConnection.InTransaction())
    {
        m_bLost = true;
        UndoTo(0);
    }
}

void StoreBatches::NeedSound() const
{
    if (m_bLost)
        throw RuntimeError(error::DeviceIo, L"An earlier failure has undone this batch of changes.");
}

void StoreBatches::UndoTo(std::size_t size) noexcept
{
    while (m_colUndo.size() > size)
    {
        m_cContent.SetValues(*m_colUndo.back().pCut, std::move(m_colUndo.back().old));
        m_colUndo.pop_back();
    }
}

} // namespace ravlo
