// SPDX-License-Identifier: MIT
#include "host/day/Rotation.h"

#include "base/Text.h"
#include "host/day/TextTable.h"

#include <algorithm>

namespace ravlo
{

namespace
{

using Side = TextTable::Side;

// "3:05"
std::wstring MinutesAndSeconds(std::int32_t lMilliseconds)
{
    const std::int32_t lSeconds = std::max(lMilliseconds, 0) / 1000;
    const std::wstring sSeconds = DecimalText(lSeconds % 60);
    return DecimalText(lSeconds / 60) + (sSeconds.size() < 2 ? L":0" : L":") + sSeconds;
}

const LevelOrder* Find(const Rotation& rotation, const LevelOrder& level)
{
    const TextKey cName(level.sCategory);
    const auto found = std::find_if(rotation.begin(), rotation.end(), [&](const LevelOrder& other) {
        return other.lLevel == level.lLevel && TextKey(other.sCategory) == cName;
    });
    return found == rotation.end() ? nullptr : &*found;
}

Keys KeysOf(const LevelOrder* level)
{
    Keys keys;
    for (std::size_t l = 0; level && l < level->cuts.size(); ++l)
        keys.insert(TextKey(level->cuts[l].sPath));
    return keys;
}

Keys KeysOf(const Rotation& rotation)
{
    Keys keys;
    for (const LevelOrder& level : rotation)
        keys.merge(KeysOf(&level));
    return keys;
}

LevelChange ChangeOf(const LevelOrder& level, const LevelOrder* before)
{
    LevelChange change{
        level.sCategory, level.lLevel, before ? before->cuts.size() : 0, level.cuts.size(), {}};
    const Keys known = KeysOf(before);
    for (std::size_t l = 0; l < level.cuts.size(); ++l)
        if (!known.contains(TextKey(level.cuts[l].sPath)))
            change.newAt.push_back(l + 1);
    return change;
}

} // namespace

RotationChange ChangeBetween(const Rotation& before, const Rotation& after)
{
    RotationChange change;
    const Keys keysBefore = KeysOf(before);
    Keys joined; // known cuts that joined a level
    Keys fresh;
    for (const LevelOrder& level : after)
    {
        change.levels.push_back(ChangeOf(level, Find(before, level)));
        for (const std::size_t place : change.levels.back().newAt)
        {
            const TextKey cKey(level.cuts[place - 1].sPath);
            (keysBefore.contains(cKey) ? joined : fresh).insert(cKey);
        }
    }
    for (const LevelOrder& level : before)
    {
        const LevelOrder* now = Find(after, level);
        if (!now)
            change.levels.push_back({level.sCategory, level.lLevel, level.cuts.size(), 0, {}});
        const Keys keysNow = KeysOf(now);
        for (const PlayedCut& cut : level.cuts)
            if (!keysNow.contains(TextKey(cut.sPath)))
                joined.insert(TextKey(cut.sPath)); // it left this one
    }
    const Keys keysAfter = KeysOf(after);
    for (const TextKey& cKey : keysBefore)
        change.gone += keysAfter.contains(cKey) ? 0 : 1;
    change.added = fresh.size();
    change.moved = joined.size() - change.gone;
    return change;
}

RotationChange OnlyChanged(RotationChange change)
{
    std::erase_if(change.levels, [](const LevelChange& level) {
        return level.before == level.after && level.newAt.empty();
    });
    return change;
}

const LevelChange* SoonestNew(const RotationChange& change)
{
    const LevelChange* soonest = nullptr;
    for (const LevelChange& level : change.levels)
        if (!level.newAt.empty() && (!soonest || level.newAt.front() < soonest->newAt.front()))
            soonest = &level;
    return soonest;
}

std::wstring ChangeTable(const RotationChange& change)
{
    TextTable table({Side::Left, Side::Right, Side::Right, Side::Right, Side::Left});
    table.Row({L"Category", L"Level", L"Before", L"After", L"New at"});
    for (const LevelChange& level : change.levels)
        table.Row({level.sCategory, DecimalText(level.lLevel), CountText(level.before),
                   CountText(level.after), PlacesText(level.newAt)});
    return table.Text();
}

std::wstring PlacesText(const std::vector<std::size_t>& places)
{
    std::wstring sText;
    for (std::size_t l = 0; l < places.size();)
    {
        std::size_t last = l;
        while (last + 1 < places.size() && places[last + 1] == places[last] + 1)
            ++last;
        sText += (sText.empty() ? L"" : L", ") + CountText(places[l]) +
                 (last > l ? L"-" + CountText(places[last]) : L"");
        l = last + 1;
    }
    return sText;
}

std::wstring OrderLines(const LevelOrder& order, const std::vector<std::size_t>& newAt, std::size_t most)
{
    TextTable table({Side::Right, Side::Left});
    const std::size_t count = most == 0 ? order.cuts.size() : std::min(most, order.cuts.size());
    for (std::size_t l = 0; l < count; ++l)
    {
        const PlayedCut& cut = order.cuts[l];
        const bool bNew = std::binary_search(newAt.begin(), newAt.end(), l + 1);
        table.Row({CountText(l + 1), cut.sArtist + L" - " + cut.sTitle + L" (" +
                                         MinutesAndSeconds(cut.lDurationmS) + L")" +
                                         (bNew ? L"  new" : L"")});
    }
    const std::size_t left = order.cuts.size() - count;
    return table.Text() + (left == 0 ? L"" : L"... and " + CountText(left) + L" more\n");
}

std::wstring LevelTable(const Rotation& rotation)
{
    TextTable table({Side::Left, Side::Right, Side::Right, Side::Right});
    table.Row({L"Category", L"Level", L"Cuts", L"Average"});
    Keys categories;
    std::size_t levels = 0;
    for (const LevelOrder& level : rotation)
    {
        categories.insert(TextKey(level.sCategory));
        levels += level.lLevel == 0 ? 0 : 1;
        table.Row({level.sCategory, level.lLevel == 0 ? L"-" : DecimalText(level.lLevel),
                   CountText(level.cuts.size()),
                   level.cuts.empty() ? L"-" : MinutesAndSeconds(level.lAverageRunTimemS)});
    }
    return table.Text() + CountOf(categories.size(), L"category", L"categories") + L" with " +
           CountOf(levels, L"level", L"levels") + L"\n";
}

std::wstring CountOf(std::size_t count, const wchar_t* sOne, const wchar_t* sMany)
{
    return CountText(count) + L" " + (count == 1 ? sOne : sMany);
}

} // namespace ravlo
