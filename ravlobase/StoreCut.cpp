// SPDX-License-Identifier: MIT
#include "ravlobase/StoreCut.h"

#include "base/RuntimeError.h"
#include "base/Text.h"
#include "media/PlainCut.h"

#include <algorithm>
#include <utility>

namespace ravlo
{

std::wstring StoreCut::DurationText() const { return DurationTextOf(m_values.lDurationmS); }

std::vector<std::wstring> StoreCut::CategoryNames() const
{
    std::vector<std::wstring> colNames;
    colNames.reserve(m_values.colCategories.size());
    for (const auto& cName : m_values.colCategories)
        colNames.push_back(cName.Text());
    return colNames;
}

bool StoreCut::HasCategoryName(std::wstring_view sName) const
{
    return std::any_of(m_values.colCategories.begin(), m_values.colCategories.end(),
                       [&](const TextKey& cName) { return EqualIgnoringCase(cName.Text(), sName); });
}

void StoreCut::AddCategoryName(const std::wstring& sName)
{
    CutValues next = m_values;
    AddNames(next.colCategories, {sName});
    Change(std::move(next));
}

void StoreCut::RemoveCategoryName(const std::wstring& sName)
{
    CutValues next = m_values;
    std::erase_if(next.colCategories,
                  [&](const TextKey& cName) { return EqualIgnoringCase(cName.Text(), sName); });
    Change(std::move(next));
}

std::wstring StoreCut::CategoryText() const { return JoinedNames(m_values.colCategories); }

void StoreCut::SetCategoryText(const std::wstring& sText)
{
    CutValues next = m_values;
    next.colCategories.clear();
    AddNames(next.colCategories, Split(sText, L"/"));
    Change(std::move(next));
}

void StoreCut::SetKey(const std::wstring& sKey)
{
    if (m_pOwner != nullptr)
        throw RuntimeError(error::PermissionDenied, L"The key of a cut of a database cannot be changed.");
    m_values.cKey = TextKey(sKey);
    m_values.cPath = m_values.cKey;
    ++m_revision;
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
    m_lID = lID;
    m_pOwner = &cOwner;
}

void StoreCut::Change(CutValues next)
{
    if (m_pOwner != nullptr)
        m_pOwner->Change(*this, std::move(next));
    else
        Take(std::move(next));
}

} // namespace ravlo
