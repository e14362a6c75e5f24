// SPDX-License-Identifier: MIT
// Cuts added, modified and removed, by this program and by others.
#include "ravlobase/StoreImpl.h"

#include <unordered_map>
#include <unordered_set>

namespace ravlo
{

namespace
{

const Cut& Given(const std::shared_ptr<Cut>& cCut)
{
    if (!cCut)
        throw RuntimeError(error::ObjectNotSet);
    return *cCut;
}

} // namespace

// --- adding

auto Store::Impl::AdditionOf(const std::shared_ptr<Cut>& cCut) -> Addition
{
    Addition addition{nullptr, ValuesOf(Given(cCut))};
    auto cFree = std::dynamic_pointer_cast<StoreCut>(cCut);
    if (cFree && cFree->Owner() == nullptr)
        addition.cCut = std::move(cFree);
    auto& values = addition.values;
    if (values.cKey.Empty())
        values.cKey = values.cPath;
    if (values.cPath.Empty())
        values.cPath = values.cKey;
    if (values.cKey.Empty())
        throw RuntimeError(error::InvalidProcedureCall, L"A cut needs a key.");
    if (values.lCatLevel == 0)
        values.lCatLevel = 1;
    CheckValues(values);
    return addition;
}

auto Store::Impl::Gather(const Cuts& colGiven) -> std::vector<Addition>
{
    std::vector<Addition> colAdditions;
    colAdditions.reserve(colGiven.size());
    for (const auto& cCut : colGiven)
    {
        colAdditions.push_back(AdditionOf(cCut));
        if (colAdditions.size() % lProgressEvery == 0)
            RaiseProgress(L"Adding cuts", colAdditions.size(), colGiven.size());
    }
    return colAdditions;
}

void Store::Impl::NeedNewKeys(const std::vector<Addition>& colAdditions) const
{
    std::unordered_set<TextKey> keys(colAdditions.size());
    for (const auto& addition : colAdditions)
    {
        const auto& cKey = addition.values.cKey;
        if (colCuts.Exists(cKey) || !keys.insert(cKey).second)
        {
            throw RuntimeError(error::KeyAlreadyExists,
                               L"There is a cut with the key \"" + cKey.Text() + L"\" already.");
        }
    }
}

std::vector<std::int32_t> Store::Impl::InsertAll(const std::vector<Addition>& colAdditions)
{
    std::vector<std::int32_t> colIDs;
    colIDs.reserve(colAdditions.size());
    for (const auto& addition : colAdditions)
        colIDs.push_back(pFile->Insert(addition.values));
    return colIDs;
}

Cuts Store::Impl::TakeIn(std::vector<Addition>& colAdditions, const std::vector<std::int32_t>& colIDs)
{
    Cuts colAdded;
    colAdded.reserve(colAdditions.size());
    for (std::size_t i = 0; i < colAdditions.size(); ++i)
    {
        auto cCut = colAdditions[i].cCut ? std::move(colAdditions[i].cCut) : std::make_shared<StoreCut>();
        cCut->Attach(std::move(colAdditions[i].values), colIDs[i], *this);
        colCuts.Add(cCut->Values().cKey, cCut);
        cIndex.Add(*cCut);
        colAdded.push_back(std::move(cCut));
    }
    return colAdded;
}

std::int32_t Store::Impl::AddCuts(const Cuts& colGiven)
{
    NeedOpenAndNoBatch();
    if (colGiven.empty())
        return 0;
    Cuts colAdded;
    WithProgress(L"Adding cuts", colGiven.size(), [&] {
        auto colAdditions = Gather(colGiven);
        NeedOpenAndNoBatch(); // a listener may have closed it meanwhile
        NeedNewKeys(colAdditions);
        sqlite::Transaction cTransaction(pFile->Sql());
        const auto colIDs = InsertAll(colAdditions);
        cTransaction.Commit();
        colAdded = TakeIn(colAdditions, colIDs);
        return CutsText(colAdded.size()) + L" added.";
    });
    Raise([&](DataBaseEvents& cEvents) { cEvents.CutsAdded(colAdded); });
    return Long(colAdded.size());
}

// --- modifying and removing

auto Store::Impl::ModificationOf(const std::shared_ptr<Cut>& cGiven) -> Modification
{
    if (IsOwn(cGiven))
        return {cGiven, std::nullopt};
    auto next = ValuesOf(Given(cGiven));
    auto cCut = ByKey(next.cKey);
    if (!cCut)
    {
        throw RuntimeError(error::InvalidProcedureCall,
                           L"There is no cut with the key \"" + next.cKey.Text() + L"\".");
    }
    next.cKey = cCut->Key();
    if (next.lCatLevel == 0)
        next.lCatLevel = cCut->CatLevel();
    CheckValues(next);
    return {std::move(cCut), std::move(next)};
}

auto Store::Impl::ModificationsOf(const Cuts& colGiven) -> std::vector<Modification>
{
    std::vector<Modification> colModifications;
    std::unordered_map<const Cut*, std::size_t> positions;
    for (const auto& cGiven : colGiven)
    {
        auto modification = ModificationOf(cGiven);
        const auto [it, bNew] = positions.try_emplace(modification.cCut.get(), colModifications.size());
        if (bNew)
            colModifications.push_back(std::move(modification));
        else if (modification.next)
            colModifications[it->second].next = std::move(modification.next);
    }
    return colModifications;
}

void Store::Impl::WriteAll(const std::vector<Modification>& colModifications)
{
    for (const auto& modification : colModifications)
    {
        if (modification.next)
        {
            const auto& cCut = Own(modification.cCut);
            pFile->Update(cCut.ID(), cCut.Values(), *modification.next);
        }
    }
}

Cuts Store::Impl::TakeOver(std::vector<Modification>& colModifications)
{
    Cuts colModified;
    for (auto& modification : colModifications)
    {
        if (modification.next)
            TakeValues(Own(modification.cCut), std::move(*modification.next));
        colModified.push_back(std::move(modification.cCut));
    }
    return colModified;
}

std::int32_t Store::Impl::ModifyCuts(const Cuts& colGiven)
{
    NeedOpenAndNoBatch();
    auto colModifications = ModificationsOf(colGiven);
    if (colModifications.empty())
        return 0;
    // A mere announcement needs no write lock.
    if (std::any_of(colModifications.begin(), colModifications.end(),
                    [](const Modification& modification) { return modification.next.has_value(); }))
    {
        sqlite::Transaction cTransaction(pFile->Sql());
        WriteAll(colModifications);
        cTransaction.Commit();
    }
    const auto colModified = TakeOver(colModifications);
    Raise([&](DataBaseEvents& cEvents) { cEvents.CutsModified(colModified); });
    return Long(colModified.size());
}

void Store::Impl::TakeOut(const Cuts& colRemoved)
{
    for (const auto& cCut : colRemoved)
    {
        cIndex.Remove(Own(cCut));
        gathered.Forget(Own(cCut));
        Own(cCut).Detach();
    }
    // Many removals one by one would move the pointers behind each of them: then what stays is gathered
    // anew.
    constexpr std::size_t few = 16;
    if (colRemoved.size() <= few)
    {
        for (const auto& cCut : colRemoved)
            colCuts.Remove(Own(cCut).Values().cKey);
        return;
    }
    OrderedKeyedCollection<std::shared_ptr<Cut>> colStay;
    colStay.Reserve(colCuts.Count() - colRemoved.size());
    for (const auto& cCut : colCuts)
        if (Own(cCut).Owner() == this)
            colStay.Add(Own(cCut).Values().cKey, cCut);
    colCuts = std::move(colStay);
}

std::int32_t Store::Impl::RemoveCuts(const Cuts& colGiven)
{
    NeedOpenAndNoBatch();
    Cuts colRemoved;
    std::unordered_set<const Cut*> seen;
    for (const auto& cCut : colGiven)
    {
        auto cOwn = ByKey(Given(cCut).Key());
        if (cOwn && seen.insert(cOwn.get()).second)
            colRemoved.push_back(std::move(cOwn));
    }
    if (colRemoved.empty())
        return 0;
    sqlite::Transaction cTransaction(pFile->Sql());
    for (const auto& cCut : colRemoved)
        pFile->Delete(cCut->ID());
    cTransaction.Commit();
    TakeOut(colRemoved);
    Raise([&](DataBaseEvents& cEvents) { cEvents.CutsRemoved(colRemoved); });
    return Long(colRemoved.size());
}

// --- changes of other programs

auto Store::Impl::ChangesTo(std::vector<StoredCut>& colStored) -> Changes
{
    Changes changes;
    std::unordered_map<std::int32_t, std::shared_ptr<Cut>> left;
    for (const auto& cCut : colCuts)
        left.emplace(cCut->ID(), cCut);
    for (auto& stored : colStored)
    {
        const auto it = left.find(stored.lID);
        if (it == left.end() || !SameText(Own(it->second).Values().cKey, stored.values.cKey))
        {
            changes.colAdded.push_back(
                std::make_shared<StoreCut>(std::move(stored.values), stored.lID, this));
            continue;
        }
        const auto& cOwn = Own(it->second);
        if (gathered.Contains(cOwn))
            stored.values.dtLastPlayed = cOwn.LastPlayed();
        if (!SameValues(cOwn.Values(), stored.values))
            changes.colModified.push_back({it->second, std::move(stored.values)});
        left.erase(it);
    }
    for (const auto& cCut : colCuts)
        if (left.contains(cCut->ID()))
            changes.colRemoved.push_back(cCut);
    return changes;
}

void Store::Impl::Insert(const Cuts& colAdded)
{
    if (colAdded.empty())
        return;
    Cuts colAll(colCuts.begin(), colCuts.end());
    colAll.insert(colAll.end(), colAdded.begin(), colAdded.end());
    std::sort(colAll.begin(), colAll.end(),
              [](const auto& left, const auto& right) { return left->ID() < right->ID(); });
    OrderedKeyedCollection<std::shared_ptr<Cut>> colOrdered;
    colOrdered.Reserve(colAll.size());
    for (const auto& cCut : colAll)
        colOrdered.Add(Own(cCut).Values().cKey, cCut);
    colCuts = std::move(colOrdered);
    for (const auto& cCut : colAdded)
        cIndex.Add(Own(cCut));
}

std::int32_t Store::Impl::TakeInChanges()
{
    if (!batches.empty() || !pFile->ChangedByOthers())
        return 0;
    auto colStored = pFile->Read();
    auto changes = ChangesTo(colStored);
    TakeOut(changes.colRemoved);
    Insert(changes.colAdded);
    const auto colModified = TakeOver(changes.colModified);
    const auto Announce = [&](const Cuts& colChanged, void (DataBaseEvents::*tell)(const Cuts&)) {
        if (!colChanged.empty())
            Raise([&](DataBaseEvents& cEvents) { (cEvents.*tell)(colChanged); });
    };
    Announce(changes.colRemoved, &DataBaseEvents::CutsRemoved);
    Announce(changes.colAdded, &DataBaseEvents::CutsAdded);
    Announce(colModified, &DataBaseEvents::CutsModified);
    return Long(changes.colRemoved.size() + changes.colAdded.size() + colModified.size());
}

} // namespace ravlo
