// SPDX-License-Identifier: MIT
#pragma once

#include "forecast/Health.h"
#include "forecast/Troubles.h"
#include "scheduler/SpreadOrders.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ravlo
{

enum class RemedyKind
{
    FairRotation,
    Spread,
    ArtistSeparation,
    TitleSeparation,
    MoreCuts,
    FewerCuts,
};

// A remedy that helps a level, as its own simulation has shown.
struct LevelRemedy
{
    // What it does to another level.
    struct Elsewhere
    {
        std::wstring sLevel; // "Pop 1"
        Troubles before;
        Troubles after;
    };

    RemedyKind eKind = RemedyKind::FairRotation;
    std::wstring sName; // as in the advice
    Troubles before;    // of the level
    Troubles after;
    std::int32_t lArtistSepMins = 0;   // of an artist separation
    std::int32_t lTitleSepMins = 0;    // of a title separation
    std::optional<SpreadTrial> spread; // of a spread
    bool bMakesArtistRoom =
        false; // the separation leaves enough room, which by itself makes the light better
    bool bMakesTitleRoom = false;
    Troubles allBefore; // of all levels together, without the cuts that it takes away
    Troubles allAfter;
    std::vector<Elsewhere> worse; // the levels that get worse, the worst first

    // "spread: never played 1 -> 0, under half 1 -> 0, no rule broken", see EffectText; and the remark.
    std::wstring Text() const;
    // What the figures do not show: ", the artist separation leaves enough room", or title, when that is all
    // it helps, and "; Pop 1 gets worse: never played 0 -> 1, ...; 2 other levels get worse". Empty for
    // neither.
    std::wstring Remark() const;
};

// "never played 3 -> 0, under half 4 -> 1, no rule broken", or "..., rules broken 2 -> 1".
std::wstring EffectText(const Troubles& before, const Troubles& after);

// Tells what a remedy for one level does by the simulations without and with it.
class RemedyJudge
{
public:
    // Precondition: the result outlives this.
    RemedyJudge(const SimulationResult& result, std::size_t level);

    // Fills in the figures of a remedy whose trial had these troubles in its levels; staying are those that
    // the level has without it, counted for the cuts that it leaves there. Returns whether it helps: fewer
    // cuts of the level are starved, or fewer rules broken, or it makes room; none of the level's counts is
    // worse; and it does not starve more cuts elsewhere than it helps.
    bool Helps(LevelRemedy& remedy, const std::vector<Troubles>& trial, const Troubles& staying) const;
    // The same by the trial's result. One that leaves a separation less room than it has does not help.
    bool Helps(LevelRemedy& remedy, const SimulationResult& trial) const;

private:
    // What the separations of the level mean next to those that can be kept.
    struct Rooms
    {
        Light eArtist = Light::Green;
        Light eTitle = Light::Green;
    };
    static Rooms RoomsOf(const SimulationResult& result, std::size_t level);
    void AddElsewhere(LevelRemedy& remedy, const std::vector<Troubles>& trial) const;

    const SimulationResult& m_result;
    const std::size_t m_level;
    const std::vector<Troubles> m_present;
    const Rooms m_rooms;
};

} // namespace ravlo
