// SPDX-License-Identifier: MIT
#pragma once

#include "com/SimulationFace.h"
#include "comkit/Dispatch.h"
#include "forecast/clsRotation.h"

#include <RavloScheduler.h>

#include <memory>

namespace ravlo
{

// _clsRotation, which hosts create and give the manager to work on.
class RotationFace final : public Dispatch<_clsRotation>
{
public:
    RotationFace();

    STDMETHODIMP get_Scheduler(_clsSchedMan** pVal) override;
    STDMETHODIMP putref_Scheduler(_clsSchedMan* newVal) override;
    STDMETHODIMP get_FairRotation(VARIANT_BOOL* pVal) override;
    STDMETHODIMP put_FairRotation(VARIANT_BOOL newVal) override;
    STDMETHODIMP get_FeaturedArtists(VARIANT_BOOL* pVal) override;
    STDMETHODIMP put_FeaturedArtists(VARIANT_BOOL newVal) override;
    STDMETHODIMP ArtistsOf(BSTR sArtist, BSTR sTitle, _clsCollection** pVal) override;
    STDMETHODIMP ClearPlan() override;
    STDMETHODIMP LoadClock(BSTR sFile) override;
    STDMETHODIMP LoadSlots(BSTR sFile) override;
    STDMETHODIMP AddSlot(BSTR strSubCatKey, VARIANT_BOOL bMustBeOpener) override;
    STDMETHODIMP get_SlotCount(LONG* pVal) override;
    STDMETHODIMP Simulate(DATE dtStart, double dDays, VARIANT vFair, VARIANT vFeatured,
                          _clsSimulation** pVal) override;
    STDMETHODIMP Explain(BSTR strSubCatKey, VARIANT_BOOL bMustBeOpener, _clsCut* cPrevSchedCut,
                         _clsExplanation** pVal) override;
    STDMETHODIMP LastExplanation(BSTR strSubCatKey, _clsExplanation** pVal) override;
    STDMETHODIMP SpreadCategories(IDispatch* colCats, VARIANT_BOOL bConfirmFirst) override;
    STDMETHODIMP WriteReport(_clsSimulation* cSimulation, BSTR sFile) override;
    STDMETHODIMP get_CanUndo(VARIANT_BOOL* pVal) override;
    STDMETHODIMP get_UndoText(BSTR* pVal) override;
    STDMETHODIMP Undo() override;
    STDMETHODIMP get_CanRedo(VARIANT_BOOL* pVal) override;
    STDMETHODIMP get_RedoText(BSTR* pVal) override;
    STDMETHODIMP Redo() override;
    STDMETHODIMP ShowHealthUI() override;
    STDMETHODIMP OverrideOptions(VARIANT vFair, VARIANT vFeatured) override;

    static const ClassIdentity identity;

protected:
    EventSource* Events() noexcept override { return &m_cEvents; }

private:
    SimulationProgress Step(); // raises SimulationStep
    AdviceProgress StepWhileAlive() const;

    ComPtr<_clsSchedMan> m_cManager; // the host's view of the manager that m_cRotation works on
    clsRotation m_cRotation;
    EventSource m_cEvents;
    std::shared_ptr<RotationFace*> m_pThis; // for those that do not keep this object alive
};

} // namespace ravlo
