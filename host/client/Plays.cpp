// SPDX-License-Identifier: MIT
#include "host/client/Plays.h"

#include <windows.h>

#include <algorithm>

namespace ravlo
{

namespace
{

DateTime Now()
{
    SYSTEMTIME now;
    GetLocalTime(&now);
    return DateTimeOf({now.wYear, now.wMonth, now.wDay, now.wHour, now.wMinute, now.wSecond});
}

} // namespace

Plays::Plays(const std::vector<MediaLibrary::Entry>& entries)
{
    for (const MediaLibrary::Entry& entry : entries)
        if (entry.dtLastPlayed > 0)
            m_plays.push_back(&entry);
    std::stable_sort(m_plays.begin(), m_plays.end(), [](const auto* left, const auto* right) {
        return left->dtLastPlayed < right->dtLastPlayed;
    });
}

DateTime Plays::End() const
{
    if (m_plays.empty())
        return Now();
    const std::int32_t lLengthmS = PlayedCutOf(*m_plays.back()->cCut).lDurationmS;
    return Later(m_plays.back()->dtLastPlayed, lLengthmS > 0 ? lLengthmS : lEmptySlotmS);
}

void Plays::Report(Scheduler& cScheduler, Gaps& cGaps) const
{
    for (const MediaLibrary::Entry* entry : m_plays)
    {
        cScheduler.Remember(*entry->cCut);
        const PlayedCut cut = PlayedCutOf(*entry->cCut);
        cGaps.Record(TextKey(cut.sArtist), TextKey(cut.sTitle), entry->dtLastPlayed);
    }
}

LevelsInUse LevelsOf(const std::vector<MediaLibrary::Entry>& entries)
{
    LevelsInUse levels;
    for (const MediaLibrary::Entry& entry : entries)
        for (const std::wstring& sCategory : entry.categories)
            levels.Add(sCategory, entry.lLevel);
    return levels;
}

} // namespace ravlo
