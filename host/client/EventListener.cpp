// SPDX-License-Identifier: MIT
#include "host/client/EventListener.h"

#include "comkit/Errors.h"
#include "comkit/Unknown.h"

#include <utility>

namespace ravlo
{

namespace
{

class Sink final : public Unknown<IDispatch>
{
public:
    Sink(REFIID iidEvents, EventListener::Handler handler)
        : m_iidEvents(iidEvents), m_handler(std::move(handler))
    {
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

protected:
    bool Answers(REFIID iid) const noexcept override { return iid == IID_IDispatch || iid == m_iidEvents; }

private:
    IID m_iidEvents;
    EventListener::Handler m_handler;
};

} // namespace

EventListener::EventListener(IUnknown& cSource, REFIID iidEvents, Handler handler)
{
    const auto cSink = NewObject<Sink>(iidEvents, std::move(handler));
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
