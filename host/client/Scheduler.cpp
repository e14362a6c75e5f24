// SPDX-License-Identifier: MIT
#include "host/client/Scheduler.h"

#include "base/Text.h"
#include "comkit/Errors.h"
#include "host/day/HostError.h"
#include "media/Cut.h"

namespace ravlo
{

namespace
{

constexpr DISPID lProgressStart = 2; // of the scheduler's events

std::wstring TextFrom(_clsCut& cCut, HRESULT (STDMETHODCALLTYPE _clsCut::*get)(BSTR*))
{
    Bstr sText;
    ThrowIfFailed((cCut.*get)(sText.Receive()));
    return sText.Text();
}

} // namespace

PlayedCut PlayedCutOf(_clsCut& cCut)
{
    LONG lDurationmS = 0;
    ThrowIfFailed(cCut.get_DurationmS(&lDurationmS));
    return {TextFrom(cCut, &_clsCut::get_Artist), TextFrom(cCut, &_clsCut::get_Title),
            TextFrom(cCut, &_clsCut::get_Album), PathOf(cCut), lDurationmS};
}

std::wstring PathOf(_clsCut& cCut) { return TextFrom(cCut, &_clsCut::get_Path); }

Scheduler::Scheduler(MediaLibrary& cLibrary, bool bSaveEach) : m_cLibrary(cLibrary), m_bSaveEach(bSaveEach)
{
    void* pvObject = nullptr;
    ThrowIfFailed(CoCreateInstance(CLSID_clsSchedMan, nullptr, CLSCTX_INPROC_SERVER, __uuidof(_clsSchedMan),
                                   &pvObject));
    m_cManager = ComPtr<_clsSchedMan>::Adopt(static_cast<_clsSchedMan*>(pvObject));
}

void Scheduler::Populate(const std::wstring& sAppFolder, const MediaLibrary::Progress& progress)
{
    const ProgressListener listener = Follow({progress, progress, [](const std::wstring&) {}});
    ThrowIfFailed(m_cManager->PopulateFromDataBase(&m_cLibrary.Object(), Bstr(sAppFolder).Get()),
                  *m_cManager.Get(), __uuidof(_clsSchedMan));
    ThrowIfFailed(m_cManager->put_RotatesAllowed(VARIANT_TRUE));
}

ProgressListener Scheduler::Follow(ProgressListener::Handlers handlers)
{
    return ProgressListener(*m_cManager.Get(), DIID___clsSchedMan, lProgressStart, std::move(handlers));
}

void Scheduler::Remember(_clsCut& cCut)
{
    ThrowIfFailed(m_cManager->UpdateArtistTitleHistory(&cCut), *m_cManager.Get(), __uuidof(_clsSchedMan));
}

Playout::Answer Scheduler::Play(const Slot& slot, DateTime dtStart)
{
    const ComPtr<_clsCut> cCut = Pick(slot, dtStart);
    LONG lKind = 0;
    ThrowIfFailed(cCut->get_KindCode(&lKind));
    if (!IsRealCut(lKind))
        return {lKind, std::nullopt};
    ThrowIfFailed(cCut->put_LastPlayed(dtStart));
    if (m_pBook != nullptr)
        m_pBook->Add(TextFrom(*cCut, &_clsCut::get_Key), dtStart);
    Remember(*cCut);
    return {lKind, PlayedCutOf(*cCut)};
}

ComPtr<_clsCut> Scheduler::Pick(const Slot& slot, DateTime dtStart)
{
    // Separations are measured at the end of the previous cut. A cut without duration that starts at dtStart
    // sets that time directly, also after a gap.
    const ComPtr<_clsCut> cPrevious = m_cLibrary.NewCut();
    ThrowIfFailed(cPrevious->put_LastPlayed(dtStart));
    ComPtr<_clsCat> cMainCat;
    ComPtr<_clsCat> cSubCat;
    Bstr sMainCatKey;
    ComPtr<_clsCut> cCut;
    const Bstr sKey(CategoryKey(slot.sCategory, slot.lLevel));
    ThrowIfFailed(m_cManager->get_NextCutFromRotation(sKey.Get(), BoolOf(slot.bOpener), cPrevious.Get(),
                                                      cMainCat.Receive(), cSubCat.Receive(),
                                                      sMainCatKey.Receive(), VARIANT_FALSE,
                                                      BoolOf(m_bSaveEach), cCut.Receive()),
                  *m_cManager.Get(), __uuidof(_clsSchedMan));
    return cCut;
}

void Scheduler::SaveOrders()
{
    if (Save(nullptr))
        return;
    // A main category without cuts has no order to save and also gives false: find the ones that failed.
    ComPtr<_clsCollection> cMainCats;
    ThrowIfFailed(m_cManager->get_colMainCats(cMainCats.Receive()));
    std::wstring sFailed;
    ForEach(*cMainCats, [&](IDispatch& cItem) {
        const auto cMainCat = ComPtr<IDispatch>(&cItem).As<_clsCat>();
        LONG lCuts = 0;
        if (cMainCat && SUCCEEDED(cMainCat->get_TotalCuts(&lCuts)) && lCuts > 0 && !Save(cMainCat.Get()))
        {
            Bstr sName;
            ThrowIfFailed(cMainCat->get_CatName(sName.Receive()));
            sFailed += (sFailed.empty() ? L"" : L", ") + sName.Text();
        }
    });
    if (!sFailed.empty())
        throw HostError(L"the rotation order could not be saved: " + sFailed);
}

bool Scheduler::Save(_clsCat* pMainCat)
{
    VARIANT_BOOL bSaved = VARIANT_FALSE;
    ThrowIfFailed(m_cManager->SaveHistoryAndOrdering(pMainCat, &bSaved), *m_cManager.Get(),
                  __uuidof(_clsSchedMan));
    return bSaved != VARIANT_FALSE;
}

} // namespace ravlo
