// SPDX-License-Identifier: MIT
#include "com/RotationFace.h"

#include "com/CatFace.h"
#include "com/ExplanationFace.h"
#include "com/Library.h"
#include "com/SchedManFace.h"
#include "com/SimulationFace.h"

namespace ravlo
{

const ClassIdentity RotationFace::identity{
    CLSID_clsRotation, LIBID_RavloScheduler,         IID__clsRotation, &DIID___clsRotation, L"RavloScheduler",
    L"clsRotation",    L"RavloScheduler.clsRotation"};

namespace
{

constexpr DISPID lSimulationStep = 1; // of __clsRotation

// An option that may be replaced; nothing when it was left out.
std::optional<bool> OptionIn(const VARIANT& value)
{
    const Variant cValue = Variant::Dereferenced(value);
    if (IsOmitted(cValue) || cValue.vt == VT_EMPTY)
        return std::nullopt;
    const std::optional<Variant> cBool = cValue.As(VT_BOOL);
    if (!cBool)
        throw RuntimeError(error::TypeMismatch);
    return FromHost(cBool->boolVal);
}

void RaiseStep(EventSource& cEvents, double dDone, bool& bCancel)
{
    Variant cDone;
    cDone.vt = VT_R8;
    cDone.dblVal = dDone;
    VARIANT_BOOL bAnswer = BoolOf(bCancel);
    VARIANT reference{};
    reference.vt = VT_BYREF | VT_BOOL;
    reference.pboolVal = &bAnswer;
    cEvents.Fire(lSimulationStep, {cDone, reference});
    bCancel = FromHost(bAnswer);
}

} // namespace

RotationFace::RotationFace()
    : Dispatch(identity), m_cEvents(*static_cast<_clsRotation*>(this), DIID___clsRotation),
      m_pThis(std::make_shared<RotationFace*>(this))
{
}

// A handler may release this object: the progress keeps it.
SimulationProgress RotationFace::Step()
{
    return [cThis = ComPtr<RotationFace>(this)](double dDone, bool& bCancel) {
        RaiseStep(cThis->m_cEvents, dDone, bCancel);
    };
}

AdviceProgress RotationFace::StepWhileAlive() const
{
    return [pWeak = std::weak_ptr<RotationFace*>(m_pThis)] {
        const std::shared_ptr<RotationFace*> pThis = pWeak.lock();
        return pThis ? (*pThis)->Step() : SimulationProgress();
    };
}

STDMETHODIMP RotationFace::get_Scheduler(_clsSchedMan** pVal)
{
    return Return(pVal, [&] { return m_cManager; });
}
STDMETHODIMP RotationFace::putref_Scheduler(_clsSchedMan* newVal)
{
    return Guard([&] {
        m_cRotation.SetScheduler(SchedManFrom(newVal));
        m_cManager = ComPtr<_clsSchedMan>(newVal);
    });
}

STDMETHODIMP RotationFace::get_FairRotation(VARIANT_BOOL* pVal)
{
    return Get(pVal, &m_cRotation, &clsRotation::FairRotation);
}
STDMETHODIMP RotationFace::put_FairRotation(VARIANT_BOOL newVal)
{
    return Put(newVal, &m_cRotation, &clsRotation::SetFairRotation);
}
STDMETHODIMP RotationFace::get_FeaturedArtists(VARIANT_BOOL* pVal)
{
    return Get(pVal, &m_cRotation, &clsRotation::FeaturedArtists);
}
STDMETHODIMP RotationFace::put_FeaturedArtists(VARIANT_BOOL newVal)
{
    return Put(newVal, &m_cRotation, &clsRotation::SetFeaturedArtists);
}

STDMETHODIMP RotationFace::ArtistsOf(BSTR sArtist, BSTR sTitle, _clsCollection** pVal)
{
    return Return(pVal, [&] { return TextsOut(m_cRotation.ArtistsOf(TextOf(sArtist), TextOf(sTitle))); });
}

STDMETHODIMP RotationFace::ClearPlan()
{
    return Guard([&] { m_cRotation.ClearPlan(); });
}
STDMETHODIMP RotationFace::LoadClock(BSTR sFile)
{
    return Guard([&] { m_cRotation.LoadClock(TextOf(sFile)); });
}
STDMETHODIMP RotationFace::LoadSlots(BSTR sFile)
{
    return Guard([&] { m_cRotation.LoadSlots(TextOf(sFile)); });
}
STDMETHODIMP RotationFace::AddSlot(BSTR strSubCatKey, VARIANT_BOOL bMustBeOpener)
{
    return Guard([&] { m_cRotation.AddSlot(TextOf(strSubCatKey), FromHost(bMustBeOpener)); });
}
STDMETHODIMP RotationFace::get_SlotCount(LONG* pVal)
{
    return Return(pVal, [&] { return static_cast<LONG>(m_cRotation.SlotCount()); });
}

STDMETHODIMP RotationFace::Simulate(DATE dtStart, double dDays, VARIANT vFair, VARIANT vFeatured,
                                    _clsSimulation** pVal)
{
    return Return(pVal, [&] {
        const SimulationOptions options{OptionIn(vFair), OptionIn(vFeatured)};
        return SimulationOut(m_cRotation.Simulate(dtStart, dDays, options, Step()), StepWhileAlive());
    });
}

STDMETHODIMP RotationFace::Explain(BSTR strSubCatKey, VARIANT_BOOL bMustBeOpener, _clsCut* cPrevSchedCut,
                                   _clsExplanation** pVal)
{
    return Return(pVal, [&] {
        return ExplanationOut(std::make_shared<Explanation>(
            m_cRotation.Explain(TextOf(strSubCatKey), FromHost(bMustBeOpener), CutFrom(cPrevSchedCut))));
    });
}
STDMETHODIMP RotationFace::LastExplanation(BSTR strSubCatKey, _clsExplanation** pVal)
{
    return Return(pVal, [&] { return ExplanationOut(m_cRotation.LastExplanation(TextOf(strSubCatKey))); });
}

// An item that is no category is shown like the other errors of a spread.
STDMETHODIMP RotationFace::SpreadCategories(IDispatch* colCats, VARIANT_BOOL bConfirmFirst)
{
    return Guard([&] {
        m_cRotation.MustBePopulated();
        TrapCritical(Library(), L"Error in SpreadCategories [cSchedMan]",
                     [&] { m_cRotation.SpreadCategories(CatsIn(colCats), FromHost(bConfirmFirst)); });
    });
}

STDMETHODIMP RotationFace::WriteReport(_clsSimulation* cSimulation, BSTR sFile)
{
    return Guard([&] {
        m_cRotation.MustBePopulated();
        const std::shared_ptr<const clsSimulation> cCore = SimulationFrom(cSimulation);
        m_cRotation.WriteReport(*cCore, TextOf(sFile), Step());
    });
}

STDMETHODIMP RotationFace::get_CanUndo(VARIANT_BOOL* pVal)
{
    return Get(pVal, &m_cRotation, &clsRotation::CanUndo);
}
STDMETHODIMP RotationFace::get_UndoText(BSTR* pVal)
{
    return Return(pVal, [&] { return m_cRotation.UndoText(); });
}
STDMETHODIMP RotationFace::Undo()
{
    return Guard([&] { m_cRotation.Undo(); });
}
STDMETHODIMP RotationFace::get_CanRedo(VARIANT_BOOL* pVal)
{
    return Get(pVal, &m_cRotation, &clsRotation::CanRedo);
}
STDMETHODIMP RotationFace::get_RedoText(BSTR* pVal)
{
    return Return(pVal, [&] { return m_cRotation.RedoText(); });
}
STDMETHODIMP RotationFace::Redo()
{
    return Guard([&] { m_cRotation.Redo(); });
}

STDMETHODIMP RotationFace::ShowHealthUI()
{
    return Guard([&] {
        m_cRotation.MustBePopulated();
        const ComPtr<_clsSchedMan> cManager = m_cManager; // the host may release this in between
        m_cRotation.ShowHealthUI(FaceMap<SchedManFace>::Instance().Find(cManager.Get())->Windows());
    });
}

STDMETHODIMP RotationFace::OverrideOptions(VARIANT vFair, VARIANT vFeatured)
{
    return Guard([&] { m_cRotation.OverrideOptions({OptionIn(vFair), OptionIn(vFeatured)}); });
}

} // namespace ravlo
