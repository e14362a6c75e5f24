// SPDX-License-Identifier: MIT
#include "host/client/LevelFigures.h"

#include "base/Text.h"
#include "comkit/Errors.h"
#include "host/client/MediaLibrary.h"
#include "host/day/TextTable.h"
#include "plan/DayLog.h"

#include <algorithm>

namespace ravlo
{

namespace
{

using Side = TextTable::Side;

template <class Value>
Value Read(_clsLevelHealth& cLevel, HRESULT (STDMETHODCALLTYPE _clsLevelHealth::*get)(Value*))
{
    Value value{};
    ThrowIfFailed((cLevel.*get)(&value), cLevel, __uuidof(_clsLevelHealth));
    return value;
}

using GetItems = HRESULT (STDMETHODCALLTYPE _clsLevelHealth::*)(_clsCollection**);

ComPtr<_clsCollection> Items(_clsLevelHealth& cLevel, GetItems get)
{
    return ComPtr<_clsCollection>::Adopt(Read<_clsCollection*>(cLevel, get));
}

std::int32_t CountIn(_clsLevelHealth& cLevel, GetItems get)
{
    LONG lCount = 0;
    ThrowIfFailed(Items(cLevel, get)->get_Count(&lCount));
    return lCount;
}

std::vector<std::wstring> TextsIn(_clsCollection& colTexts)
{
    std::vector<std::wstring> texts;
    LONG lCount = 0;
    ThrowIfFailed(colTexts.get_Count(&lCount));
    for (LONG l = 1; l <= lCount; ++l)
    {
        Variant cText;
        ThrowIfFailed(colTexts.get_Item(Variant(static_cast<std::int32_t>(l)), &cText));
        texts.push_back(TextOf(cText.bstrVal));
    }
    return texts;
}

LevelFigures FiguresOf(_clsLevelHealth& cLevel)
{
    LevelFigures figures;
    Bstr sKey;
    ThrowIfFailed(cLevel.get_Key(sKey.Receive()), cLevel, __uuidof(_clsLevelHealth));
    figures.sKey = sKey.Text();
    figures.lLight = Read(cLevel, &_clsLevelHealth::get_Light);
    figures.lCuts = Read(cLevel, &_clsLevelHealth::get_Cuts);
    figures.lPicks = Read(cLevel, &_clsLevelHealth::get_Picks);
    figures.lArtistSepMins = Read(cLevel, &_clsLevelHealth::get_ArtistSepMins);
    figures.lAttainableArtistMins = Read(cLevel, &_clsLevelHealth::get_AttainableArtistMins);
    figures.lFewestPlays = Read(cLevel, &_clsLevelHealth::get_FewestPlays);
    figures.dMeanPlays = Read(cLevel, &_clsLevelHealth::get_MeanPlays);
    figures.lMostPlays = Read(cLevel, &_clsLevelHealth::get_MostPlays);
    figures.lNeverPlayed = CountIn(cLevel, &_clsLevelHealth::get_NeverPlayed);
    figures.lUnderHalf = CountIn(cLevel, &_clsLevelHealth::get_UnderHalf);
    figures.lRulesBroken = Read(cLevel, &_clsLevelHealth::get_RulesBroken);
    return figures;
}

template <class Visit> void ForEachLevel(_clsSimulation& cSimulation, const Visit& visit)
{
    ComPtr<_clsCollection> colLevels;
    ThrowIfFailed(cSimulation.get_Levels(colLevels.Receive()), cSimulation, __uuidof(_clsSimulation));
    ForEach(*colLevels, [&](IDispatch& cItem) { visit(*ComPtr<IDispatch>(&cItem).As<_clsLevelHealth>()); });
}

// "rock:2"
std::wstring NameOfLevel(const std::wstring& sKey)
{
    std::wstring sName = sKey;
    for (wchar_t& c : sName)
        c = c == L'\t' ? L':' : c;
    return sName;
}

} // namespace

std::vector<LevelFigures> FiguresOf(_clsSimulation& cSimulation)
{
    std::vector<LevelFigures> levels;
    ForEachLevel(cSimulation, [&](_clsLevelHealth& cLevel) { levels.push_back(FiguresOf(cLevel)); });
    return levels;
}

void AddAdvice(_clsSimulation& cSimulation, std::vector<LevelFigures>& levels,
               const std::function<void(double dFrom, double dTo)>& begin)
{
    const auto isNotGreen = [](const LevelFigures& level) { return level.lLight != lGreen; };
    const auto dWanting = static_cast<double>(std::count_if(levels.begin(), levels.end(), isNotGreen));
    double dAdvised = 0;
    auto level = levels.begin();
    ForEachLevel(cSimulation, [&](_clsLevelHealth& cLevel) {
        if (isNotGreen(*level))
        {
            begin(dAdvised / dWanting, (dAdvised + 1) / dWanting);
            level->advice = TextsIn(*Items(cLevel, &_clsLevelHealth::get_Advice));
            ++dAdvised;
        }
        ++level;
    });
}

std::vector<std::wstring> OverAsked(_clsSimulation& cSimulation)
{
    ComPtr<_clsCollection> colTexts;
    ThrowIfFailed(cSimulation.get_ArtistsOverAsked(colTexts.Receive()), cSimulation,
                  __uuidof(_clsSimulation));
    return TextsIn(*colTexts);
}

std::wstring HealthTable(const std::vector<LevelFigures>& levels)
{
    static const wchar_t* const sLights[] = {L"green", L"yellow", L"red"};
    TextTable table({Side::Left, Side::Left, Side::Right, Side::Right, Side::Right, Side::Right, Side::Right,
                     Side::Right, Side::Right, Side::Right});
    table.Row({L"Level", L"Light", L"Cuts", L"Picks", L"Fewest", L"Mean", L"Most", L"Never", L"Under half",
               L"Broken"});
    for (const LevelFigures& level : levels)
        table.Row({NameOfLevel(level.sKey), sLights[level.lLight], DecimalText(level.lCuts),
                   DecimalText(level.lPicks), DecimalText(level.lFewestPlays), MinutesText(level.dMeanPlays),
                   DecimalText(level.lMostPlays), DecimalText(level.lNeverPlayed),
                   DecimalText(level.lUnderHalf), DecimalText(level.lRulesBroken)});
    return table.Text();
}

namespace
{

// Empty for a level without cuts and one whose cuts have no artist: neither has a separation to speak of.
std::wstring SeparationClause(const LevelFigures& level)
{
    constexpr std::int32_t lAnyMins = 2'000'000'000; // what is attainable without artists
    if (level.lCuts == 0 || level.lAttainableArtistMins >= lAnyMins)
        return {};
    return L", where the artist separation is " + DecimalText(level.lArtistSepMins) + L" minutes and " +
           DecimalText(level.lAttainableArtistMins) + L" can be kept";
}

} // namespace

std::wstring AdviceLines(const std::vector<LevelFigures>& levels)
{
    std::wstring sText;
    for (const LevelFigures& level : levels)
    {
        if (level.advice.empty())
            continue;
        sText += NameOfLevel(level.sKey) + SeparationClause(level) + L":\n";
        for (const std::wstring& sRemedy : level.advice)
            sText += L"  " + sRemedy + L"\n";
    }
    return sText;
}

} // namespace ravlo
