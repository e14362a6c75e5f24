// SPDX-License-Identifier: MIT
#include "scheduler/UnsavedOrders.h"

#include "base/CaseFolding.h"

#include <algorithm>

namespace ravlo
{

UnsavedOrders::Order& UnsavedOrders::Of(const std::wstring& sCatName)
{
    Order& order = m_colOrders[FoldCase(sCatName)];
    order.sCatName = sCatName;
    return order;
}

const UnsavedOrders::Order* UnsavedOrders::Find(const std::wstring& sCatName) const
{
    const auto found = m_colOrders.find(FoldCase(sCatName));
    return found == m_colOrders.end() ? nullptr : &found->second;
}

void UnsavedOrders::SaveFailed(const std::wstring& sCatName, Stamp stamp)
{
    Order& order = Of(sCatName);
    order.newest = order.failed = stamp;
    order.lFailedAt = m_cClock.TickCount();
}

void UnsavedOrders::DeletionFailed(const std::wstring& sCatName, Stamp stamp)
{
    SaveFailed(sCatName, stamp);
    Of(sCatName).deletion = stamp;
}

void UnsavedOrders::Settled(const std::wstring& sCatName, Stamp stamp)
{
    Order& order = Of(sCatName);
    order.settled = std::max(order.settled, stamp);
}

void UnsavedOrders::Forget(const std::wstring& sCatName) { m_colOrders.erase(FoldCase(sCatName)); }

bool UnsavedOrders::IsToDelete(const std::wstring& sCatName) const
{
    const Order* pOrder = Find(sCatName);
    return pOrder && pOrder->deletion > pOrder->settled;
}

bool UnsavedOrders::IsNewerThanItsReading(const std::wstring& sCatName) const
{
    const Order* pOrder = Find(sCatName);
    return pOrder && (pOrder->IsUnsaved() || pOrder->read == 0 || pOrder->newest > pOrder->read);
}

bool UnsavedOrders::IsDue(const std::wstring& sCatName) const
{
    const Order* pOrder = Find(sCatName);
    return !pOrder || !pOrder->HasFailed() || WaitOf(*pOrder) >= lRetryMs;
}

std::vector<std::wstring> UnsavedOrders::Names(Which eWhich) const
{
    std::vector<std::wstring> colNames;
    for (const auto& [sFolded, order] : m_colOrders)
        if (eWhich == Which::All
                ? order.IsUnsaved()
                : order.HasFailed() && (eWhich == Which::Failed || WaitOf(order) >= lRetryMs))
            colNames.push_back(order.sCatName);
    return colNames;
}

std::optional<std::wstring> UnsavedOrders::LongestDueExcept(const std::wstring& sCatName) const
{
    const Order* pOwn = Find(sCatName);
    const Order* pLongest = nullptr;
    for (const auto& [sFolded, order] : m_colOrders)
        if (order.HasFailed() && &order != pOwn && WaitOf(order) >= lRetryMs &&
            (!pLongest || WaitOf(order) > WaitOf(*pLongest)))
            pLongest = &order;
    return pLongest ? std::optional(pLongest->sCatName) : std::nullopt;
}

} // namespace ravlo
