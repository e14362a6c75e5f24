// SPDX-License-Identifier: MIT
// What fair rotation and explanations cost compared with the walk.

#include "bench/Radio.h"
#include "bench/Ratios.h"
#include "rotation/NextCut.h"

#include <map>

namespace ravlo::bench
{

namespace
{

enum class How
{
    Walk,
    Fair,
};

constexpr std::int64_t passedOver = 9;

// A level of which a pick passes over nine cuts and takes the tenth, at each pick again: the walk meets nine
// between any two that fit, the fair rotation has nine that stay at the head.
struct Mixed
{
    Mixed(std::int64_t cuts, How eHow) : radio(cuts)
    {
        const Cuts colCuts = radio.cDataBase->AllCuts();
        for (std::int64_t i = 0; i < cuts; ++i)
        {
            const bool bBreaksARule = eHow == How::Walk ? i % (passedOver + 1) != passedOver : i < passedOver;
            if (!bBreaksARule)
                continue;
            Cut& cCut = *colCuts[static_cast<std::size_t>(i)];
            cCut.SetLastPlayed(radio.context.cClock.Now());
            radio.cHistory.Record(cCut, *radio.cDataBase);
        }
    }
    static Radio& OfSize(std::int64_t cuts, How eHow)
    {
        static std::map<std::pair<std::int64_t, How>, std::unique_ptr<Mixed>> colMixed;
        std::unique_ptr<Mixed>& mixed = colMixed[{cuts, eHow}];
        if (!mixed)
            mixed = std::make_unique<Mixed>(cuts, eHow);
        return mixed->radio;
    }

    Radio radio;
};

// How many cuts break a rule: none, nine before each that fits, or all of them.
enum class Violators
{
    None,
    Nine,
    All,
};

// Everything played a day ago, and nine of ten, or the nine, just now: that breaks a title rule of an hour.
constexpr std::int32_t lHour = 60;
constexpr std::int32_t lTwoDays = 2 * 24 * 60;

struct Setting
{
    Radio& radio;
    SelectionContext context;
};

template <Violators eViolators> Setting SettingOf(std::int64_t cuts, How eHow)
{
    Radio& radio = eViolators == Violators::Nine ? Mixed::OfSize(cuts, eHow) : Radio::OfSize(cuts);
    auto cRules = std::make_shared<clsCatRules>(radio.cMod);
    cRules->Apply({0, eViolators == Violators::All ? lTwoDays : lHour, 0, false});
    radio.cLevel->SetRules(cRules);
    SelectionContext context = LiveContext(radio.cMod, radio.cHistory, radio.cDataBase);
    context.bFairRotation = eHow == How::Fair;
    context.note = [](const TraceStep& step) { benchmark::DoNotOptimize(step.eKind); };
    return {radio, context};
}

void Expect(Violators eViolators, CutKind eKind, benchmark::State& state)
{
    if (eKind != (eViolators == Violators::All ? eKindTitleViolation : eKindChosen))
        state.SkipWithError("another number of cuts breaks a rule");
}

template <How eHow, Violators eViolators> void Picks(benchmark::State& state)
{
    const Setting setting = SettingOf<eViolators>(state.range(0), eHow);
    for (auto _ : state)
        Expect(eViolators, NextCutFromCategory(setting.radio.cLevel, false, nullptr, setting.context).eKind,
               state);
    state.SetItemsProcessed(state.iterations());
}

template <How eHow, Violators eViolators> void Explanations(benchmark::State& state)
{
    const Setting setting = SettingOf<eViolators>(state.range(0), eHow);
    for (auto _ : state)
        Expect(eViolators, ExplainNext(setting.radio.cLevel, false, nullptr, setting.context).eKind, state);
    state.SetItemsProcessed(state.iterations());
}

// A pick on air with its log, whose explanation is kept, or not.
template <Violators eViolators, bool bKept> void PicksWithLog(benchmark::State& state)
{
    Setting setting = SettingOf<eViolators>(state.range(0), How::Walk);
    Radio& radio = setting.radio;
    setting.context.note = LiveContext(radio.cMod, radio.cHistory, radio.cDataBase).note;
    CatCollection colMainCats;
    const auto cMainCat = std::make_shared<clsCat>(radio.cMod, L"Pop", 0);
    cMainCat->AddSubCat(radio.cLevel);
    colMainCats.Add(TextKey(cMainCat->CatID()), cMainCat);
    RotationRequest request;
    request.strSubCatKey = L"Pop\t1";
    request.bForEditablePlaylist = true;
    PicksOnAir picks;
    for (auto _ : state)
    {
        const ModScheduler::LogScope cScope(radio.cMod);
        Expect(eViolators,
               bKept ? picks.NextCut(&colMainCats, request, setting.context).eKind
                     : NextCutFromRotation(&colMainCats, request, setting.context).eKind,
               state);
    }
    state.SetItemsProcessed(state.iterations());
}

constexpr double dFairLimit = 2.0;
constexpr double dExplanationLimit = 3.0;
constexpr double dKeptLimit = 2.0;
const std::vector<std::int64_t> colFairSizes{1'000, 10'000, 100'000};
const std::vector<std::int64_t> colSmallSizes{1'000, 10'000};

template <Violators eViolators>
bool AddRows(const std::string& sWhich, const std::vector<std::int64_t>& sizes)
{
    return AddRatio({"fair pick, " + sWhich, "walk that examines as many", sizes,
                     &Picks<How::Fair, eViolators>, &Picks<How::Walk, eViolators>, dFairLimit}) &&
           AddRatio({"explanation of a walk, " + sWhich, "the pick without a log", sizes,
                     &Explanations<How::Walk, eViolators>, &Picks<How::Walk, eViolators>,
                     dExplanationLimit}) &&
           AddRatio({"explanation of a fair pick, " + sWhich, "the pick without a log", sizes,
                     &Explanations<How::Fair, eViolators>, &Picks<How::Fair, eViolators>,
                     dExplanationLimit}) &&
           AddRatio({"pick whose explanation is kept, " + sWhich, "the pick with its log", sizes,
                     &PicksWithLog<eViolators, true>, &PicksWithLog<eViolators, false>, dKeptLimit});
}

const bool bFairAdded = AddRows<Violators::None>("head fits", colFairSizes) &&
                        AddRows<Violators::Nine>("9 passed over", colFairSizes) &&
                        AddRows<Violators::All>("all break a rule", colSmallSizes);

} // namespace

} // namespace ravlo::bench
