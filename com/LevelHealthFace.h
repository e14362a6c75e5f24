// SPDX-License-Identifier: MIT
#pragma once

#include "com/SimulationFace.h"
#include "comkit/Dispatch.h"
#include "forecast/clsSimulation.h"

#include <RavloScheduler.h>

#include <cstddef>
#include <memory>
#include <vector>

namespace ravlo
{

// _clsLevelHealth over a level of a simulation.
class LevelHealthFace final : public Dispatch<_clsLevelHealth>
{
public:
    LevelHealthFace(std::shared_ptr<const clsSimulation> cSimulation, std::size_t level,
                    AdviceProgress cProgress);

    STDMETHODIMP get_Key(BSTR* pVal) override;
    STDMETHODIMP get_Cuts(LONG* pVal) override;
    STDMETHODIMP get_Artists(LONG* pVal) override;
    STDMETHODIMP get_TopArtist(BSTR* pVal) override;
    STDMETHODIMP get_TopArtistCuts(LONG* pVal) override;
    STDMETHODIMP get_SlotMins(FLOAT* pVal) override;
    STDMETHODIMP get_AttainableArtistMins(LONG* pVal) override;
    STDMETHODIMP get_AttainableTitleMins(LONG* pVal) override;
    STDMETHODIMP get_ArtistSepMins(LONG* pVal) override;
    STDMETHODIMP get_TitleSepMins(LONG* pVal) override;
    STDMETHODIMP get_Picks(LONG* pVal) override;
    STDMETHODIMP get_FewestPlays(LONG* pVal) override;
    STDMETHODIMP get_MeanPlays(double* pVal) override;
    STDMETHODIMP get_MostPlays(LONG* pVal) override;
    STDMETHODIMP get_RulesBroken(LONG* pVal) override;
    STDMETHODIMP get_NeverPlayed(_clsCollection** pVal) override;
    STDMETHODIMP get_UnderHalf(_clsCollection** pVal) override;
    STDMETHODIMP get_Light(LONG* pVal) override;
    STDMETHODIMP get_Advice(_clsCollection** pVal) override;

    static const ClassIdentity identity;

private:
    const LevelHealth* Level() const noexcept { return &m_cSimulation->Health().levels[m_level]; }
    ComPtr<_clsCollection> StarvedOut(const std::vector<StarvedCut>& starved) const;

    std::shared_ptr<const clsSimulation> m_cSimulation;
    std::size_t m_level;
    AdviceProgress m_cProgress;
};

// _clsStarved over a cut of a level.
class StarvedFace final : public Dispatch<_clsStarved>
{
public:
    StarvedFace(std::shared_ptr<const clsSimulation> cSimulation, std::size_t level,
                const StarvedCut& starved);

    STDMETHODIMP get_Cut(_clsCut** pVal) override;
    STDMETHODIMP get_Plays(LONG* pVal) override;
    STDMETHODIMP get_BlockedBy(_clsCut** pVal) override;
    STDMETHODIMP get_Rule(::eRuleViolation* pVal) override;
    STDMETHODIMP get_TimesPassedOver(LONG* pVal) override;

    static const ClassIdentity identity;

private:
    std::shared_ptr<const clsSimulation> m_cSimulation;
    std::size_t m_level;
    StarvedCut m_starved;
};

ComPtr<_clsLevelHealth> LevelHealthOut(const std::shared_ptr<const clsSimulation>& cSimulation,
                                       std::size_t level, const AdviceProgress& cProgress);

} // namespace ravlo
