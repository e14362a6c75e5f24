// SPDX-License-Identifier: MIT
#include "host/client/ProgressListener.h"

#include "com/kit/Errors.h"

#include <utility>

namespace ravlo
{

namespace
{

// Argument lIndex, counted from the first one declared; the caller has checked that there is one.
const VARIANT& Argument(const DISPPARAMS& parameters, UINT lIndex)
{
    return parameters.rgvarg[parameters.cArgs - 1 - lIndex];
}

std::wstring TextIn(const VARIANT& value)
{
    return value.vt == VT_BSTR ? TextOf(value.bstrVal) : std::wstring();
}

long LongIn(const VARIANT& value) { return value.vt == VT_I4 ? value.lVal : 0; }

class Sink final : public IDispatch
{
public:
    Sink(REFIID iidEvents, DISPID lFirstEvent, ProgressListener::Handlers handlers)
        : m_iidEvents(iidEvents), m_lFirstEvent(lFirstEvent), m_handlers(std::move(handlers))
    {
    }
    virtual ~Sink() = default;

    STDMETHODIMP QueryInterface(REFIID iid, void** ppvObject) override
    {
        const bool bKnown = iid == IID_IUnknown || iid == IID_IDispatch || iid == m_iidEvents;
        *ppvObject = bKnown ? static_cast<IDispatch*>(this) : nullptr;
        if (bKnown)
        {
            AddRef();
        }
        return bKnown ? S_OK : E_NOINTERFACE;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return ++m_lReferences; }
    STDMETHODIMP_(ULONG) Release() override
    {
        const ULONG lLeft = --m_lReferences;
        if (lLeft == 0)
        {
            delete this;
        }
        return lLeft;
    }
    STDMETHODIMP GetTypeInfoCount(UINT* plCount) override
    {
        *plCount = 0;
        return S_OK;
    }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    STDMETHODIMP Invoke(DISPID lEvent, REFIID, LCID, WORD, DISPPARAMS* pParameters, VARIANT*, EXCEPINFO*,
                        UINT*) override
    {
        try
        {
            Handle(lEvent - m_lFirstEvent, *pParameters);
        }
        catch (...)
        {
            // The work goes on without its progress being shown.
        }
        return S_OK;
    }

private:
    // ProgressStart(reason, max), Progress(text, count, max), ProgressDone(status)
    void Handle(DISPID lWhich, const DISPPARAMS& parameters)
    {
        if (lWhich == 0 && parameters.cArgs >= 2)
        {
            m_handlers.progress(TextIn(Argument(parameters, 0)), 0, LongIn(Argument(parameters, 1)));
        }
        else if (lWhich == 1 && parameters.cArgs >= 3)
        {
            m_handlers.progress(TextIn(Argument(parameters, 0)), LongIn(Argument(parameters, 1)),
                                LongIn(Argument(parameters, 2)));
        }
        else if (lWhich == 2 && parameters.cArgs >= 1)
        {
            m_handlers.done(TextIn(Argument(parameters, 0)));
        }
    }

    ULONG m_lReferences = 0;
    IID m_iidEvents;
    DISPID m_lFirstEvent;
    ProgressListener::Handlers m_handlers;
};

} // namespace

ProgressListener::ProgressListener(IUnknown& cSource, REFIID iidEvents, DISPID lFirstEvent, Handlers handlers)
{
    const ComPtr<Sink> cSink(new Sink(iidEvents, lFirstEvent, std::move(handlers)));
    const auto cContainer = ComPtr<IUnknown>(&cSource).As<IConnectionPointContainer>();
    if (!cContainer)
    {
        throw ComError(E_NOINTERFACE, L"The object raises no events");
    }
    ThrowIfFailed(cContainer->FindConnectionPoint(iidEvents, m_cPoint.Receive()));
    ThrowIfFailed(m_cPoint->Advise(cSink.Get(), &m_lCookie));
}

ProgressListener::~ProgressListener() { m_cPoint->Unadvise(m_lCookie); }

} // namespace ravlo
