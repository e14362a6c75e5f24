// SPDX-License-Identifier: MIT
#include "com/LevelHealthFace.h"

#include "com/SimulationFace.h"
#include "comkit/CutFace.h"

namespace ravlo
{

const ClassIdentity LevelHealthFace::identity{CLSID_clsLevelHealth,
                                              LIBID_RavloScheduler,
                                              IID__clsLevelHealth,
                                              nullptr,
                                              L"RavloScheduler",
                                              L"clsLevelHealth",
                                              L"RavloScheduler.clsLevelHealth"};
const ClassIdentity StarvedFace::identity{
    CLSID_clsStarved, LIBID_RavloScheduler,        IID__clsStarved, nullptr, L"RavloScheduler",
    L"clsStarved",    L"RavloScheduler.clsStarved"};

LevelHealthFace::LevelHealthFace(std::shared_ptr<const clsSimulation> cSimulation, std::size_t level,
                                 AdviceProgress cProgress)
    : Dispatch(identity), m_cSimulation(std::move(cSimulation)), m_level(level),
      m_cProgress(std::move(cProgress))
{
}

STDMETHODIMP LevelHealthFace::get_Key(BSTR* pVal) { return Get(pVal, Level(), &LevelHealth::sKey); }
STDMETHODIMP LevelHealthFace::get_Cuts(LONG* pVal)
{
    return Return(pVal, [&] { return static_cast<LONG>(Level()->cuts.size()); });
}
STDMETHODIMP LevelHealthFace::get_Artists(LONG* pVal) { return Get(pVal, Level(), &LevelHealth::lArtists); }
STDMETHODIMP LevelHealthFace::get_TopArtist(BSTR* pVal)
{
    return Get(pVal, Level(), &LevelHealth::sTopArtist);
}
STDMETHODIMP LevelHealthFace::get_TopArtistCuts(LONG* pVal)
{
    return Get(pVal, Level(), &LevelHealth::lTopArtistCuts);
}
STDMETHODIMP LevelHealthFace::get_SlotMins(FLOAT* pVal)
{
    return Get(pVal, Level(), &LevelHealth::sngSlotMins);
}
STDMETHODIMP LevelHealthFace::get_AttainableArtistMins(LONG* pVal)
{
    return Get(pVal, Level(), &LevelHealth::lAttainableArtistMins);
}
STDMETHODIMP LevelHealthFace::get_AttainableTitleMins(LONG* pVal)
{
    return Get(pVal, Level(), &LevelHealth::lAttainableTitleMins);
}
STDMETHODIMP LevelHealthFace::get_ArtistSepMins(LONG* pVal)
{
    return Get(pVal, Level(), &LevelHealth::lArtistSepMins);
}
STDMETHODIMP LevelHealthFace::get_TitleSepMins(LONG* pVal)
{
    return Get(pVal, Level(), &LevelHealth::lTitleSepMins);
}
STDMETHODIMP LevelHealthFace::get_Picks(LONG* pVal) { return Get(pVal, Level(), &LevelHealth::lPicks); }
STDMETHODIMP LevelHealthFace::get_FewestPlays(LONG* pVal)
{
    return Get(pVal, Level(), &LevelHealth::lFewestPlays);
}
STDMETHODIMP LevelHealthFace::get_MeanPlays(double* pVal)
{
    return Get(pVal, Level(), &LevelHealth::dMeanPlays);
}
STDMETHODIMP LevelHealthFace::get_MostPlays(LONG* pVal)
{
    return Get(pVal, Level(), &LevelHealth::lMostPlays);
}
STDMETHODIMP LevelHealthFace::get_RulesBroken(LONG* pVal)
{
    return Get(pVal, Level(), &LevelHealth::lRulesBroken);
}
STDMETHODIMP LevelHealthFace::get_NeverPlayed(_clsCollection** pVal)
{
    return Return(pVal, [&] { return StarvedOut(Level()->neverPlayed); });
}
STDMETHODIMP LevelHealthFace::get_UnderHalf(_clsCollection** pVal)
{
    return Return(pVal, [&] { return StarvedOut(Level()->underHalf); });
}
STDMETHODIMP LevelHealthFace::get_Light(LONG* pVal)
{
    return Return(pVal, [&] { return static_cast<LONG>(Level()->eLight); });
}
STDMETHODIMP LevelHealthFace::get_Advice(_clsCollection** pVal)
{
    return Return(pVal, [&] {
        const std::shared_ptr<const clsSimulation> cKeepAlive = m_cSimulation; // a handler may release this
        const SimulationProgress progress = m_cProgress();
        return TextsOut(cKeepAlive->Advice(m_level, progress));
    });
}

ComPtr<_clsCollection> LevelHealthFace::StarvedOut(const std::vector<StarvedCut>& starved) const
{
    const auto colStarved = std::make_shared<ItemCollection>();
    for (const StarvedCut& cut : starved)
    {
        const auto cFace = NewObject<StarvedFace>(m_cSimulation, m_level, cut);
        colStarved->Insert(colStarved->Count(), nullptr, Variant(static_cast<IDispatch*>(cFace.Get())));
    }
    return ComPtr<_clsCollection>(NewCollection(colStarved));
}

StarvedFace::StarvedFace(std::shared_ptr<const clsSimulation> cSimulation, std::size_t level,
                         const StarvedCut& starved)
    : Dispatch(identity), m_cSimulation(std::move(cSimulation)), m_level(level), m_starved(starved)
{
}

STDMETHODIMP StarvedFace::get_Cut(_clsCut** pVal)
{
    return Return(pVal, [&] {
        const LevelHealth& level = m_cSimulation->Health().levels[m_level];
        return CutOut(m_cSimulation->CutOf(level.cuts[m_starved.cut].cKey.Text()));
    });
}
STDMETHODIMP StarvedFace::get_Plays(LONG* pVal) { return Get(pVal, &m_starved, &StarvedCut::lPlays); }
STDMETHODIMP StarvedFace::get_BlockedBy(_clsCut** pVal)
{
    return Return(pVal, [&] {
        const std::vector<BlockingCut>& blockers = m_cSimulation->Health().blockers;
        return CutOut(m_starved.blockedBy ? m_cSimulation->CutOf(blockers[*m_starved.blockedBy].cKey.Text())
                                          : nullptr);
    });
}
STDMETHODIMP StarvedFace::get_Rule(::eRuleViolation* pVal)
{
    return Guard([&] { Out(pVal) = static_cast<::eRuleViolation>(m_starved.eRule); });
}
STDMETHODIMP StarvedFace::get_TimesPassedOver(LONG* pVal)
{
    return Get(pVal, &m_starved, &StarvedCut::lTimesPassedOver);
}

ComPtr<_clsLevelHealth> LevelHealthOut(const std::shared_ptr<const clsSimulation>& cSimulation,
                                       std::size_t level, const AdviceProgress& cProgress)
{
    return ComPtr<_clsLevelHealth>(NewObject<LevelHealthFace>(cSimulation, level, cProgress));
}

} // namespace ravlo
