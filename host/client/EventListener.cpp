// SPDX-License-Identifier: MIT
#include "host/client/EventListener.h"

#include <utility>

namespace ravlo
{

namespace
{

// ProgressStart(reason, max), Progress(text, count, max), ProgressDone(status)
void Handle(const ProgressListener::Handlers& handlers, DISPID lWhich, const EventArguments& given)
{
    if (lWhich == 0)
    {
        given.Expect(2);
        handlers.start(given.TextAt(0), 0, given.LongAt(1));
    }
    else if (lWhich == 1)
    {
        given.Expect(3);
        handlers.progress(given.TextAt(0), given.LongAt(1), given.LongAt(2));
    }
    else if (lWhich == 2)
    {
        given.Expect(1);
        handlers.done(given.TextAt(0));
    }
}

} // namespace

EventListener::EventListener(IUnknown& cSource, REFIID iidEvents, EventSink::Handler handler)
{
    const auto cSink = NewObject<EventSink>(iidEvents, L"RavloHost", std::move(handler));
    const auto cContainer = ComPtr<IUnknown>(&cSource).As<IConnectionPointContainer>();
    if (!cContainer)
        throw RuntimeError(E_NOINTERFACE, L"The object raises no events");
    ThrowIfFailed(cContainer->FindConnectionPoint(iidEvents, m_cPoint.Receive()));
    ThrowIfFailed(m_cPoint->Advise(cSink.Get(), &m_lCookie));
}

EventListener::~EventListener() { m_cPoint->Unadvise(m_lCookie); }

ProgressListener::ProgressListener(IUnknown& cSource, REFIID iidEvents, DISPID lFirstEvent, Handlers handlers)
    : m_cListener(cSource, iidEvents,
                  [lFirstEvent, handlers = std::move(handlers)](DISPID lEvent, const EventArguments& given) {
    Handle(handlers, lEvent - lFirstEvent, given);
      })
{
}

} // namespace ravlo
