// SPDX-License-Identifier: MIT
#include "com/SimulationFace.h"

#include "com/LevelHealthFace.h"

namespace ravlo
{

const ClassIdentity SimulationFace::identity{
    CLSID_clsSimulation, LIBID_RavloScheduler,           IID__clsSimulation, nullptr, L"RavloScheduler",
    L"clsSimulation",    L"RavloScheduler.clsSimulation"};

SimulationFace::SimulationFace(std::shared_ptr<const clsSimulation> cSimulation, AdviceProgress cProgress)
    : Dispatch(identity), m_cSimulation(std::move(cSimulation)), m_cProgress(std::move(cProgress)),
      m_cEntry(m_cSimulation.get(), this, static_cast<_clsSimulation*>(this))
{
}

STDMETHODIMP SimulationFace::get_Picks(LONG* pVal) { return Get(pVal, m_cSimulation, &clsSimulation::Picks); }
STDMETHODIMP SimulationFace::KindCount(LONG lKind, LONG* pVal)
{
    return Return(pVal, [&] { return m_cSimulation->KindCount(FromHost(lKind)); });
}

STDMETHODIMP SimulationFace::get_Levels(_clsCollection** pVal)
{
    return Return(pVal, [&] {
        const auto colLevels = std::make_shared<ItemCollection>();
        const std::vector<LevelHealth>& levels = m_cSimulation->Health().levels;
        for (std::size_t level = 0; level < levels.size(); ++level)
            colLevels->Add(
                TextKey(levels[level].sKey),
                Variant(static_cast<IDispatch*>(LevelHealthOut(m_cSimulation, level, m_cProgress).Get())));
        return ComPtr<_clsCollection>(NewCollection(colLevels));
    });
}

STDMETHODIMP SimulationFace::Plays(BSTR sCutKey, BSTR strSubCatKey, LONG* pVal)
{
    return Return(pVal, [&] { return m_cSimulation->Plays(TextOf(sCutKey), TextOf(strSubCatKey)); });
}
STDMETHODIMP SimulationFace::SaveLog(BSTR sFile)
{
    return Guard([&] { m_cSimulation->SaveLog(TextOf(sFile)); });
}
STDMETHODIMP SimulationFace::get_Start(DATE* pVal) { return Get(pVal, m_cSimulation, &clsSimulation::Start); }
STDMETHODIMP SimulationFace::get_Days(double* pVal) { return Get(pVal, m_cSimulation, &clsSimulation::Days); }
STDMETHODIMP SimulationFace::get_ArtistsOverAsked(_clsCollection** pVal)
{
    return Return(pVal, [&] { return TextsOut(m_cSimulation->ArtistsOverAsked()); });
}

ComPtr<_clsSimulation> SimulationOut(const std::shared_ptr<const clsSimulation>& cSimulation,
                                     const AdviceProgress& cProgress)
{
    return ComPtr<_clsSimulation>(NewObject<SimulationFace>(cSimulation, cProgress));
}

std::shared_ptr<const clsSimulation> SimulationFrom(_clsSimulation* pSimulation)
{
    if (!pSimulation)
        throw RuntimeError(error::ObjectNotSet);
    if (const SimulationFace* pFace = FaceMap<SimulationFace>::Instance().Find(pSimulation))
        return pFace->Core();
    throw RuntimeError(error::TypeMismatch);
}

ComPtr<_clsCollection> TextsOut(const std::vector<std::wstring>& texts)
{
    const auto colTexts = std::make_shared<ItemCollection>();
    for (const std::wstring& sText : texts)
        colTexts->Insert(colTexts->Count(), nullptr, Variant(std::wstring_view(sText)));
    return ComPtr<_clsCollection>(NewCollection(colTexts));
}

} // namespace ravlo
