// SPDX-License-Identifier: MIT
#include "comkit/EventSink.h"

namespace ravlo
{

void EventArguments::Expect(UINT lCount) const
{
    if (m_arguments.cArgs != lCount)
        throw RuntimeError(DISP_E_BADPARAMCOUNT, L"Wrong number of arguments");
}

ComPtr<IDispatch> EventArguments::ObjectAt(UINT lIndex) const
{
    auto cObject = ObjectIn<IDispatch>(At(lIndex));
    if (!cObject)
        throw RuntimeError(error::TypeMismatch);
    return cObject;
}

std::wstring EventArguments::TextAt(UINT lIndex) const { return TextOf(As(lIndex, VT_BSTR).bstrVal); }

std::int32_t EventArguments::LongAt(UINT lIndex) const { return FromHost(As(lIndex, VT_I4).lVal); }

Variant EventArguments::As(UINT lIndex, VARTYPE vt) const
{
    std::optional<Variant> cValue = Variant::Dereferenced(At(lIndex)).As(vt);
    if (!cValue)
        throw RuntimeError(error::TypeMismatch);
    return *cValue;
}

STDMETHODIMP EventSink::Invoke(DISPID lEvent, REFIID, LCID, WORD, DISPPARAMS* pArguments, VARIANT*,
                               EXCEPINFO*, UINT*)
{
    const ComPtr<IDispatch> cSelf(this);
    if (!pArguments)
        return E_POINTER;
    return GuardAs(m_iidEvents, m_sSource, [&] { m_handler(lEvent, EventArguments(*pArguments)); });
}

} // namespace ravlo
