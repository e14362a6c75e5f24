// SPDX-License-Identifier: MIT
#include "host/client/ProgressListener.h"

#include <utility>

namespace ravlo
{

namespace
{

std::wstring TextIn(const VARIANT& value)
{
    return value.vt == VT_BSTR ? TextOf(value.bstrVal) : std::wstring();
}

long LongIn(const VARIANT& value) { return value.vt == VT_I4 ? value.lVal : 0; }

// ProgressStart(reason, max), Progress(text, count, max), ProgressDone(status)
void Handle(const ProgressListener::Handlers& handlers, DISPID lWhich, const EventArguments& arguments)
{
    if (lWhich == 0 && arguments.Count() >= 2)
    {
        handlers.start(TextIn(arguments.At(0)), 0, LongIn(arguments.At(1)));
    }
    else if (lWhich == 1 && arguments.Count() >= 3)
    {
        handlers.progress(TextIn(arguments.At(0)), LongIn(arguments.At(1)), LongIn(arguments.At(2)));
    }
    else if (lWhich == 2 && arguments.Count() >= 1)
    {
        handlers.done(TextIn(arguments.At(0)));
    }
}

} // namespace

ProgressListener::ProgressListener(IUnknown& cSource, REFIID iidEvents, DISPID lFirstEvent, Handlers handlers)
    : m_cListener(
          cSource, iidEvents,
          [lFirstEvent, handlers = std::move(handlers)](DISPID lEvent, const EventArguments& arguments) {
    Handle(handlers, lEvent - lFirstEvent, arguments);
          })
{
}

} // namespace ravlo
