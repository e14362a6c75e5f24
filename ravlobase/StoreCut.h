// SPDX-License-Identifier: MIT
#pragma once

#include "media/PlainCut.h"

#include <cstdint>
#include <memory>
#include <string>

namespace ravlo
{

class StoreCut;

// Stores the changes of a database's cuts.
class CutOwner
{
public:
    virtual ~CutOwner() = default;
    // Gives the cut its new values, on the disk first. When it throws, nothing has changed.
    virtual void Change(StoreCut& cCut, CutValues next) = 0;
    // As Change, for a play alone, which the owner may write later.
    virtual void ChangeLastPlayed(StoreCut& cCut, DateTime dtWhen) = 0;
};

// A cut of an embedded database, or a free-standing one that such a database made. A cut without an owner is
// only values in memory. When a cut is removed from its database, or its database is closed, it loses its
// owner and keeps its values.
class StoreCut final : public PlainCut
{
public:
    void SetKey(const std::wstring& sKey) override;
    void SetLastPlayed(DateTime dtWhen) override;
    std::shared_ptr<Cut> CloneCut() const override;

    // For the owner.
    void Attach(CutValues values, std::int32_t lID, CutOwner& cOwner) noexcept;
    void Detach() noexcept { m_pOwner = nullptr; }
    const CutOwner* Owner() const noexcept { return m_pOwner; }
    using PlainCut::Take;
    using PlainCut::TakeLastPlayed;

private:
    void Change(CutValues next) override;

    CutOwner* m_pOwner = nullptr;
};

// Throw error 5 for values that no database keeps.
void CheckLastPlayed(DateTime dtWhen);
void CheckValues(const CutValues& values);

} // namespace ravlo
