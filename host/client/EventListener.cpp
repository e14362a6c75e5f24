// SPDX-License-Identifier: MIT
#include "host/client/EventListener.h"

#include "com/kit/Errors.h"

#include <utility>

namespace ravlo
{

namespace
{

class Sink final : public IDispatch
{
public:
    Sink(REFIID iidEvents, EventListener::Handler handler)
        : m_iidEvents(iidEvents), m_handler(std::move(handler))
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
            m_handler(lEvent, EventArguments(*pParameters));
        }
        catch (...)
        {
            // The work that raised the event goes on as if nobody had listened.
        }
        return S_OK;
    }

private:
    ULONG m_lReferences = 0;
    IID m_iidEvents;
    EventListener::Handler m_handler;
};

} // namespace

EventListener::EventListener(IUnknown& cSource, REFIID iidEvents, Handler handler)
{
    const ComPtr<Sink> cSink(new Sink(iidEvents, std::move(handler)));
    const auto cContainer = ComPtr<IUnknown>(&cSource).As<IConnectionPointContainer>();
    if (!cContainer)
    {
        throw ComError(E_NOINTERFACE, L"The object raises no events");
    }
    ThrowIfFailed(cContainer->FindConnectionPoint(iidEvents, m_cPoint.Receive()));
    ThrowIfFailed(m_cPoint->Advise(cSink.Get(), &m_lCookie));
}

EventListener::~EventListener() { m_cPoint->Unadvise(m_lCookie); }

} // namespace ravlo
