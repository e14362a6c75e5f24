// SPDX-License-Identifier: MIT
#pragma once

#include "media/Cut.h"

#include <cstdint>
#include <memory>
#include <optional>
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

// A media database, as far as the scheduler needs it. A cut is always the same object while anyone holds it.
// Any call may throw RuntimeError.
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
    // A free-standing cut, not in a database yet.
    virtual std::shared_ptr<Cut> NewCut() const = 0;

    // Makes the changes of cuts' properties between BeginBatch and Commit one change on the disk, so that
    // changing thousands of cuts waits for the disk once. A batch that ends without Commit undoes its
    // changes.
    class Batch
    {
    public:
        virtual ~Batch() = default;
        virtual void Commit() = 0;
    };
    // Null when the database has no batches; each change is then durable by itself.
    virtual std::unique_ptr<Batch> BeginBatch() { return nullptr; }

    // The plays from dtFrom until before dtTo, one line a play; see docs/formats/plays-csv.md. Nothing when
    // the database keeps no record of them.
    virtual std::optional<std::wstring> RecordedPlays(DateTime /*dtFrom*/, DateTime /*dtTo*/)
    {
        return std::nullopt;
    }

    // Sends events to the listener, which is not owned, until Unadvise. Advising twice has no further effect.
    virtual void Advise(DataBaseEvents& cEvents) = 0;
    virtual void Unadvise(DataBaseEvents& cEvents) noexcept = 0;
};

// The database's own cut for a cut or a copy: found by that key, else by artist and title. Null when there is
// none. Throws the database's errors.
std::shared_ptr<Cut> DataBaseCutOf(const Cut& cCut, const TextKey& cKey, const DataBase& cDataBase);

} // namespace ravlo
