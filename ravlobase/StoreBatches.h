// SPDX-License-Identifier: MIT
#pragma once

#include "ravlobase/StoreContent.h"

#include <cstddef>
#include <memory>
#include <vector>

namespace ravlo
{

namespace sqlite
{
class Connection;
class Transaction;
} // namespace sqlite

// The open batches of a database, the outermost first, with the values that undo them in memory.
class StoreBatches
{
public:
    explicit StoreBatches(StoreContent& cContent);
    StoreBatches(const StoreBatches&) = delete;
    StoreBatches& operator=(const StoreBatches&) = delete;
    ~StoreBatches();

    bool Any() const noexcept { return !m_batches.empty(); }

    // Returns the depth of the new batch: the number of open ones.
    std::size_t Begin(sqlite::Connection& cConnection);
    // Throws error 5 when the innermost open batch is another one.
    void Commit(std::size_t depth);
    // Undoes the batch of that depth and those inside it, if they are still open.
    void Undo(std::size_t depth) noexcept;

    // Call before a change, while the cut has its old values. Does nothing outside a batch.
    void WillChange(StoreCut& cCut);
    // Some failures (a full disk) end SQLite's transaction, and all open batches with it. Call after any.
    void NoteFailure(const sqlite::Connection& cConnection) noexcept;
    // Throws error 57 while the open batches are lost by an earlier failure.
    void NeedSound() const;

private:
    struct OpenBatch
    {
        std::unique_ptr<sqlite::Transaction> pTransaction;
        std::size_t undoFrom;
    };
    struct Change
    {
        StoreCut* pCut;
        CutValues old;
    };
    void UndoTo(std::size_t size) noexcept;

    StoreContent& m_cContent;
    std::vector<OpenBatch> m_batches;
    std::vector<Change> m_colUndo; // the values before each change of the open batches
    bool m_bLost = false;
};

} // namespace ravlo
