// SPDX-License-Identifier: MIT
#include "ravlobase/StoreCut.h"

#include "base/RuntimeError.h"

#include <cmath>
#include <utility>

namespace ravlo
{

void StoreCut::SetKey(const std::wstring& sKey)
{
    if (m_pOwner != nullptr)
        throw RuntimeError(error::PermissionDenied, L"The key of a cut of a database cannot be changed.");
    PlainCut::SetKey(sKey);
}

void StoreCut::SetLastPlayed(DateTime dtWhen)
{
    if (m_pOwner != nullptr)
        m_pOwner->ChangeLastPlayed(*this, dtWhen);
    else
        TakeLastPlayed(dtWhen);
}

std::shared_ptr<Cut> StoreCut::CloneCut() const
{
    auto cClone = std::make_shared<StoreCut>(*this);
    cClone->Detach();
    return cClone;
}

void StoreCut::Attach(CutValues values, std::int32_t lID, CutOwner& cOwner) noexcept
{
    Take(std::move(values));
    TakeID(lID);
    m_pOwner = &cOwner;
}

void StoreCut::Change(CutValues next)
{
    if (m_pOwner != nullptr)
        m_pOwner->Change(*this, std::move(next));
    else
        Take(std::move(next));
}

void CheckLastPlayed(DateTime dtWhen)
{
    if (!std::isfinite(dtWhen))
        throw RuntimeError(error::InvalidProcedureCall, L"The last-played time is no date.");
}

void CheckValues(const CutValues& values)
{
    if (values.lCatLevel < 1)
        throw RuntimeError(error::InvalidProcedureCall, L"The level of a cut has to be 1 or more.");
    CheckLastPlayed(values.dtLastPlayed);
}

} // namespace ravlo
