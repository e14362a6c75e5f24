// SPDX-License-Identifier: MIT
#pragma once

#include "ravlobase/CutFile.h"
#include "ravlobase/StoreContent.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace ravlo
{

// New cuts, and new values of a database's cuts: collected, then written to the file in one transaction, then
// applied in memory.
class StoreEdit
{
public:
    // The object becomes the database's own; null makes a new one.
    void Add(std::shared_ptr<StoreCut> cCut, CutValues values, std::optional<ImportStamp> stamp = {});
    // A cut of the database. Without values it is only announced. Of several values the last ones count.
    void Modify(std::shared_ptr<Cut> cCut, std::optional<CutValues> next);

    // The file of a cut of the database has been read.
    void Stamp(std::shared_ptr<Cut> cCut, const ImportStamp& stamp);

    // What it would do, a line for each cut: "Add D:\\a.mp3: Artist - Title".
    std::vector<std::wstring> Lines() const;
    std::size_t Additions() const noexcept { return m_colAdditions.size(); }
    std::size_t Modifications() const noexcept { return m_colModifications.size(); }

    // Counts a new last-played time of a modified cut as a play.
    void RecordPlays() noexcept { m_bRecordPlays = true; }

    // Throws error 457 when the database has the key of a new cut, or two new cuts have the same.
    void NeedNewKeys(const StoreContent& cContent) const;

    // Does not touch the file when there is nothing to write.
    void WriteTo(CutFile& cFile, sqlite::Transaction::Wait eWait = sqlite::Transaction::Wait::OnAir);

    struct Done
    {
        Cuts colAdded;
        Cuts colModified;
    };
    // Precondition: WriteTo has succeeded. Leaves the edit empty.
    Done TakeInto(StoreContent& cContent, CutOwner& cOwner);

private:
    struct Addition
    {
        std::shared_ptr<StoreCut> cCut;
        CutValues values;
        std::int32_t lID;
        std::optional<ImportStamp> stamp;
    };
    struct Modification
    {
        std::shared_ptr<Cut> cCut;
        std::optional<CutValues> next;
    };
    bool NothingToWrite() const noexcept;

    std::vector<Addition> m_colAdditions;
    std::vector<Modification> m_colModifications;
    std::unordered_map<const Cut*, std::size_t> m_positions; // of the modifications
    std::vector<std::pair<std::shared_ptr<Cut>, ImportStamp>> m_stamps;
    bool m_bRecordPlays = false;
};

} // namespace ravlo
