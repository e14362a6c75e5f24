// SPDX-License-Identifier: MIT
#include "ravlobase/StoreListeners.h"

#include "base/RuntimeError.h"

#include <algorithm>
#include <cstdint>

namespace ravlo
{

std::int32_t LongCount(std::size_t count) noexcept
{
    return static_cast<std::int32_t>(std::min<std::size_t>(count, INT32_MAX));
}

void StoreListeners::Add(DataBaseEvents& cEvents)
{
    if (std::find(m_colListeners.begin(), m_colListeners.end(), &cEvents) == m_colListeners.end())
        m_colListeners.push_back(&cEvents);
}

void StoreListeners::Remove(DataBaseEvents& cEvents) noexcept { std::erase(m_colListeners, &cEvents); }

void StoreListeners::Raise(const std::function<void(DataBaseEvents&)>& event) const
{
    const std::vector<DataBaseEvents*> colNow = m_colListeners;
    for (DataBaseEvents* pListener : colNow)
    {
        if (std::find(m_colListeners.begin(), m_colListeners.end(), pListener) == m_colListeners.end())
            continue; // an earlier listener has removed it
        try
        {
            event(*pListener);
        }
        catch (...)
        {
        }
    }
}

void StoreListeners::Announce(const Cuts& colCuts, void (DataBaseEvents::*pEvent)(const Cuts&)) const
{
    if (!colCuts.empty())
        Raise([&](DataBaseEvents& cEvents) { (cEvents.*pEvent)(colCuts); });
}

void StoreListeners::Progress(const std::wstring& sText, std::size_t count, std::size_t max) const
{
    Raise([&](DataBaseEvents& cEvents) { cEvents.Progress(sText, LongCount(count), LongCount(max)); });
}

void StoreListeners::WithProgress(const std::wstring& sReason, std::size_t max,
                                  const std::function<std::wstring()>& work) const
{
    Raise([&](DataBaseEvents& cEvents) { cEvents.ProgressStart(sReason, LongCount(max)); });
    const auto Done = [&](const std::wstring& sStatus) {
        Raise([&](DataBaseEvents& cEvents) { cEvents.ProgressDone(sStatus); });
    };
    try
    {
        Done(work());
    }
    catch (const RuntimeError& e)
    {
        Done(sReason + L" failed: " + e.Description());
        throw;
    }
    catch (...)
    {
        Done(sReason + L" failed.");
        throw;
    }
}

} // namespace ravlo
