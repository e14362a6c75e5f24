// SPDX-License-Identifier: MIT
#pragma once

#include "media/Cut.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace ravlo
{

using Cuts = std::vector<std::shared_ptr<Cut>>;

// What a media database announces.
class DataBaseEvents
{
public:
    virtual ~DataBaseEvents() = default;
    virtual void CutsAdded(const Cuts& colCuts) = 0;
    virtual void CutsModified(const Cuts& colCuts) = 0;
    virtual void CutsRemoved(const Cuts& colCuts) = 0;
    virtual void ProgressStart(const std::wstring& sReason, std::int32_t lMax) = 0;
    virtual void Progress(const std::wstring& strProgress, std::int32_t lCount, std::int32_t lMax) = 0;
    virtual void ProgressDone(const std::wstring& sStatus) = 0;
};

// A media database, as far as the scheduler needs it. The same cut is always handed out as the same object
// while anyone holds it. Any call may throw RuntimeError.
class DataBase
{
public:
    virtual ~DataBase() = default;

    // Every cut, in the database's order.
    virtual Cuts AllCuts() const = 0;
    // Null when there is none.
    virtual std::shared_ptr<Cut> CutByKey(const TextKey& cKey) const = 0;
    // Null when there is none; always null for an empty artist and an empty title together.
    virtual std::shared_ptr<Cut> CutByArtistTitle(const std::wstring& sArtist,
                                                  const std::wstring& sTitle) const = 0;
    // A free-standing cut that the database does not hold.
    virtual std::shared_ptr<Cut> NewCut() const = 0;

    // Changes to the properties of cuts between BeginBatch and Commit are one change on the disk, so that a
    // change of thousands of cuts does not wait for the disk thousands of times. A batch that ends without
    // Commit undoes them.
    class Batch
    {
    public:
        virtual ~Batch() = default;
        virtual void Commit() = 0;
    };
    // Null when the database offers none: each change is durable by itself then.
    virtual std::unique_ptr<Batch> BeginBatch() { return nullptr; }

    // Events go to the listener until Unadvise. The listener is not owned. Advising twice replaces nothing:
    // each listener is kept once.
    virtual void Advise(DataBaseEvents& cEvents) = 0;
    virtual void Unadvise(DataBaseEvents& cEvents) noexcept = 0;
};

} // namespace ravlo
