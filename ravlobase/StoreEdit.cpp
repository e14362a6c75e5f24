// SPDX-License-Identifier: MIT
#include "ravlobase/StoreEdit.h"

#include "base/RuntimeError.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

namespace ravlo
{

void StoreEdit::Add(std::shared_ptr<StoreCut> cCut, CutValues values, std::optional<ImportStamp> stamp)
{
    m_colAdditions.push_back({std::move(cCut), std::move(values), 0, stamp});
}

void StoreEdit::Stamp(std::shared_ptr<Cut> cCut, const ImportStamp& stamp)
{
    m_stamps.emplace_back(std::move(cCut), stamp);
}

std::vector<std::wstring> StoreEdit::Lines() const
{
    const auto lineOf = [](const wchar_t* sVerb, const CutValues& values) {
        const std::wstring sNames = JoinedNames(values.colCategories);
        return sVerb + values.cKey.Text() + L": " + values.cArtist.Text() + L" - " + values.cTitle.Text() +
               (sNames.empty() ? L"" : L" [" + sNames + L"]");
    };
    std::vector<std::wstring> colLines;
    for (const Addition& addition : m_colAdditions)
        colLines.push_back(lineOf(L"Add ", addition.values));
    for (const Modification& modification : m_colModifications)
        if (modification.next)
            colLines.push_back(lineOf(L"Change ", *modification.next));
    return colLines;
}

void StoreEdit::Modify(std::shared_ptr<Cut> cCut, std::optional<CutValues> next)
{
    const auto [it, bNew] = m_positions.try_emplace(cCut.get(), m_colModifications.size());
    if (bNew)
        m_colModifications.push_back({std::move(cCut), std::move(next)});
    else if (next)
        m_colModifications[it->second].next = std::move(next);
}

void StoreEdit::NeedNewKeys(const StoreContent& cContent) const
{
    std::unordered_set<TextKey> keys(m_colAdditions.size());
    for (const Addition& addition : m_colAdditions)
    {
        const TextKey& cKey = addition.values.cKey;
        if (cContent.All().Exists(cKey) || !keys.insert(cKey).second)
            throw RuntimeError(error::KeyAlreadyExists,
                               L"There is a cut with the key \"" + cKey.Text() + L"\" already.");
    }
}

bool StoreEdit::NothingToWrite() const noexcept
{
    return m_colAdditions.empty() && m_stamps.empty() &&
           std::none_of(m_colModifications.begin(), m_colModifications.end(),
                        [](const Modification& m) { return m.next.has_value(); });
}

void StoreEdit::WriteTo(CutFile& cFile, sqlite::Transaction::Wait eWait)
{
    if (NothingToWrite())
        return;
    sqlite::Transaction cTransaction(cFile.Sql(), eWait);
    for (Addition& addition : m_colAdditions)
    {
        addition.lID = cFile.Insert(addition.values);
        if (addition.stamp)
            cFile.PutImportStamp(addition.lID, *addition.stamp);
    }
    for (const Modification& modification : m_colModifications)
        if (modification.next)
        {
            const StoreCut& cCut = StoreContent::Own(modification.cCut);
            cFile.Update(cCut.ID(), cCut.Values(), *modification.next);
            if (m_bRecordPlays && IsPlay(cCut.Values(), *modification.next))
                cFile.InsertPlay(PlayOf(*modification.next));
        }
    for (const auto& [cCut, stamp] : m_stamps)
        cFile.PutImportStamp(cCut->ID(), stamp);
    cTransaction.Commit();
}

StoreEdit::Done StoreEdit::TakeInto(StoreContent& cContent, CutOwner& cOwner)
{
    Done done;
    for (Addition& addition : m_colAdditions)
    {
        auto cCut = addition.cCut ? std::move(addition.cCut) : std::make_shared<StoreCut>();
        cCut->Attach(std::move(addition.values), addition.lID, cOwner);
        cContent.Add(cCut);
        done.colAdded.push_back(std::move(cCut));
    }
    for (Modification& modification : m_colModifications)
    {
        if (modification.next)
            cContent.SetValues(StoreContent::Own(modification.cCut), std::move(*modification.next));
        done.colModified.push_back(std::move(modification.cCut));
    }
    *this = {};
    return done;
}

} // namespace ravlo
