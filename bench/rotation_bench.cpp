// SPDX-License-Identifier: MIT
#include "bench/Radio.h"
#include "bench/Ratios.h"
#include "rotation/Selection.h"

#include <list>
#include <map>

namespace ravlo::bench
{

namespace
{

// The least that a selection has to do, without case, errors, levels or log: a list of the cuts and three
// maps.
struct BarePlays
{
    struct Entry
    {
        std::shared_ptr<Cut> cCut;
        std::wstring sArtist;
        std::wstring sTitle;
        std::wstring sAlbum;
    };
    using Plays = std::unordered_map<std::wstring, std::shared_ptr<Cut>>;

    explicit BarePlays(const Radio& radio)
    {
        for (const std::shared_ptr<Cut>& cCut : radio.cDataBase->AllCuts())
        {
            colOrder.push_back({cCut, cCut->Artist(), cCut->Title(), cCut->Album()});
            colArtists[cCut->Artist()] = cCut;
            colTitles[cCut->Title()] = cCut;
            colAlbums[cCut->Album()] = cCut;
        }
    }
    static BarePlays& OfSize(std::int64_t cuts)
    {
        static std::map<std::int64_t, std::unique_ptr<BarePlays>> colPlays;
        std::unique_ptr<BarePlays>& plays = colPlays[cuts];
        if (!plays)
            plays = std::make_unique<BarePlays>(Radio::OfSize(cuts));
        return *plays;
    }

    const Entry& SpliceAndLookUp()
    {
        colOrder.splice(colOrder.end(), colOrder, colOrder.begin());
        const Entry& entry = colOrder.back();
        benchmark::DoNotOptimize(colTitles.find(entry.sTitle)->second->LastPlayed());
        benchmark::DoNotOptimize(colArtists.find(entry.sArtist)->second->LastPlayed());
        benchmark::DoNotOptimize(colAlbums.find(entry.sAlbum)->second->LastPlayed());
        return entry;
    }

    std::list<Entry> colOrder;
    Plays colArtists;
    Plays colTitles;
    Plays colAlbums;
};

enum class Log
{
    None,
    Written, // as on air: each line is made, stamped, encoded and appended; no disk
};

// A cut that played a day ago breaks no separation of an hour, and every one of two days.
constexpr std::int32_t lHour = 60;
constexpr std::int32_t lTwoDays = 2 * 24 * 60;

SelectionContext ContextOf(Radio& radio, std::int32_t lSeparation, Log eLog)
{
    auto cRules = std::make_shared<clsCatRules>(radio.cMod);
    cRules->Apply({lSeparation, lSeparation, lSeparation, false});
    radio.cLevel->SetRules(cRules);
    SelectionContext context = LiveContext(radio.cMod, radio.cHistory, radio.cDataBase);
    if (eLog == Log::None)
        context.note = [](const TraceStep& step) { benchmark::DoNotOptimize(step.eKind); };
    return context;
}

template <Log eLog> void PickWhoseHeadFits(benchmark::State& state)
{
    Radio& radio = Radio::OfSize(state.range(0));
    const SelectionContext context = ContextOf(radio, lHour, eLog);
    for (auto _ : state)
    {
        const ModScheduler::LogScope cScope(radio.cMod);
        const Pick pick = NextCutFromCategory(radio.cLevel, false, nullptr, context);
        if (pick.cCut->KindCode() != eKindChosen)
            state.SkipWithError("the head does not fit");
    }
    state.SetItemsProcessed(state.iterations());
}

void BarePick(benchmark::State& state)
{
    BarePlays& plays = BarePlays::OfSize(state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(plays.SpliceAndLookUp().cCut->CloneCut());
    state.SetItemsProcessed(state.iterations());
}

// A line as written to the disk: stamped, joined, one byte per character.
void AppendBareLine(std::string& bytes, const char* sWhat, const BarePlays::Entry& entry)
{
    bytes.append("21/11/26 12:00:00 ").append(sWhat);
    bytes.append(entry.sArtist.begin(), entry.sArtist.end()).append(" - ");
    bytes.append(entry.sTitle.begin(), entry.sTitle.end()).append("\r\n");
}

constexpr int lLinesOfPick = 6;
constexpr int lLinesOfViolator = 3;

void BarePickWithLines(benchmark::State& state)
{
    BarePlays& plays = BarePlays::OfSize(state.range(0));
    for (auto _ : state)
    {
        const BarePlays::Entry& entry = plays.SpliceAndLookUp();
        benchmark::DoNotOptimize(entry.cCut->CloneCut());
        std::string bytes;
        for (int i = 0; i < lLinesOfPick; ++i)
            AppendBareLine(bytes, "NextCutFromCategory returns: ", entry);
        benchmark::DoNotOptimize(bytes.data());
    }
    state.SetItemsProcessed(state.iterations());
}

template <Log eLog> void WalkOverViolators(benchmark::State& state)
{
    Radio& radio = Radio::OfSize(state.range(0));
    const SelectionContext context = ContextOf(radio, lTwoDays, eLog);
    for (auto _ : state)
    {
        const ModScheduler::LogScope cScope(radio.cMod);
        const Pick pick = NextCutFromCategory(radio.cLevel, false, nullptr, context);
        if (pick.cCut->KindCode() != eKindTitleViolation)
            state.SkipWithError("not every cut breaks a rule");
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BareWalk(benchmark::State& state)
{
    BarePlays& plays = BarePlays::OfSize(state.range(0));
    for (auto _ : state)
    {
        for (std::int64_t i = 0; i < state.range(0); ++i)
            benchmark::DoNotOptimize(plays.SpliceAndLookUp());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BareWalkWithLines(benchmark::State& state)
{
    BarePlays& plays = BarePlays::OfSize(state.range(0));
    for (auto _ : state)
    {
        std::string bytes;
        for (std::int64_t i = 0; i < state.range(0); ++i)
        {
            const BarePlays::Entry& entry = plays.SpliceAndLookUp();
            if (i % 5 == 0)
                bytes.clear(); // as at a pump
            for (int lLine = 0; lLine < lLinesOfViolator; ++lLine)
                AppendBareLine(bytes, "NextCutFromCategory returns: ", entry);
        }
        benchmark::DoNotOptimize(bytes.data());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

const bool bRotationAdded =
    AddRatio({"pick whose head fits", "one splice, three look-ups, one clone", colAllSizes,
              &PickWhoseHeadFits<Log::None>, &BarePick, 5.0}) &&
    AddRatio({"pick whose head fits, with its log", "the same and six stamped lines", colAllSizes,
              &PickWhoseHeadFits<Log::Written>, &BarePickWithLines, 0}) &&
    AddRatio({"walk over violators, a cut", "one splice, three look-ups", colAllSizes,
              &WalkOverViolators<Log::None>, &BareWalk, 4.0}) &&
    AddRatio({"walk over violators with its log, a cut", "the same and three stamped lines", colAllSizes,
              &WalkOverViolators<Log::Written>, &BareWalkWithLines, 0});

} // namespace

} // namespace ravlo::bench
