// SPDX-License-Identifier: MIT
#include "host/client/LibraryPlays.h"

#include "comkit/Errors.h"

namespace ravlo
{

LibraryPlays::LibraryPlays(MediaLibrary& cLibrary, bool bGather) : m_cLibrary(cLibrary)
{
    if (bGather)
        m_cGathered = ComPtr<_clsDataBase>(&cLibrary.Object()).As<IGatheredPlays>();
    if (m_cGathered)
        ThrowIfFailed(m_cGathered->BeginGathering(), *m_cGathered.Get(), __uuidof(IGatheredPlays));
}

LibraryPlays::~LibraryPlays()
{
    if (m_cGathered)
        m_cGathered->EndGathering(); // callers that need the error call Write before
}

void LibraryPlays::Write()
{
    if (m_cGathered)
        ThrowIfFailed(m_cGathered->WriteGathered(), *m_cGathered.Get(), __uuidof(IGatheredPlays));
}

bool LibraryPlays::Has(const std::wstring& sKey, DateTime dtWhen)
{
    const ComPtr<_clsCut> cCut = CutOf(sKey);
    DATE dtLast = dtWhen;
    if (cCut)
        ThrowIfFailed(cCut->get_LastPlayed(&dtLast), *cCut.Get(), __uuidof(_clsCut));
    return dtLast == dtWhen;
}

void LibraryPlays::Put(const std::wstring& sKey, DateTime dtWhen)
{
    if (const ComPtr<_clsCut> cCut = CutOf(sKey))
        ThrowIfFailed(cCut->put_LastPlayed(dtWhen), *cCut.Get(), __uuidof(_clsCut));
}

ComPtr<_clsCut> LibraryPlays::CutOf(const std::wstring& sKey) const
{
    ComPtr<_clsCut> cCut;
    _clsDataBase& cDataBase = m_cLibrary.Object();
    ThrowIfFailed(cDataBase.CutByKey(Bstr(sKey).Get(), cCut.Receive()), cDataBase, __uuidof(_clsDataBase));
    return cCut;
}

} // namespace ravlo
