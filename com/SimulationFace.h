// SPDX-License-Identifier: MIT
#pragma once

#include "comkit/Collection.h"
#include "forecast/clsSimulation.h"

#include <RavloScheduler.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace ravlo
{

// Returns whom to tell of a search for advice: the object that made the simulation, which the progress keeps
// alive; an empty progress once that object is gone.
using AdviceProgress = std::function<SimulationProgress()>;

// _clsSimulation over a simulation. What it returns is new with every call.
class SimulationFace final : public Dispatch<_clsSimulation>
{
public:
    SimulationFace(std::shared_ptr<const clsSimulation> cSimulation, AdviceProgress cProgress);

    const std::shared_ptr<const clsSimulation>& Core() const noexcept { return m_cSimulation; }

    STDMETHODIMP get_Picks(LONG* pVal) override;
    STDMETHODIMP KindCount(LONG lKind, LONG* pVal) override;
    STDMETHODIMP get_Levels(_clsCollection** pVal) override;
    STDMETHODIMP Plays(BSTR sCutKey, BSTR strSubCatKey, LONG* pVal) override;
    STDMETHODIMP SaveLog(BSTR sFile) override;
    STDMETHODIMP get_Start(DATE* pVal) override;
    STDMETHODIMP get_Days(double* pVal) override;
    STDMETHODIMP get_ArtistsOverAsked(_clsCollection** pVal) override;

    static const ClassIdentity identity;

private:
    std::shared_ptr<const clsSimulation> m_cSimulation;
    AdviceProgress m_cProgress;
    FaceEntry<SimulationFace> m_cEntry;
};

ComPtr<_clsSimulation> SimulationOut(const std::shared_ptr<const clsSimulation>& cSimulation,
                                     const AdviceProgress& cProgress);

// Returns the simulation of a face. Throws error 91 for null, 13 for an object that is no face of this
// library.
std::shared_ptr<const clsSimulation> SimulationFrom(_clsSimulation* pSimulation);

// A new collection of texts.
ComPtr<_clsCollection> TextsOut(const std::vector<std::wstring>& texts);

} // namespace ravlo
