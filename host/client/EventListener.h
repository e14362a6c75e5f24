// SPDX-License-Identifier: MIT
#pragma once

#include "comkit/Variant.h"

#include <functional>

namespace ravlo
{

// The arguments of one event, in the order they are declared.
class EventArguments
{
public:
    explicit EventArguments(const DISPPARAMS& parameters) noexcept : m_parameters(parameters) {}

    UINT Count() const noexcept { return m_parameters.cArgs; }
    // From 0; the caller has checked that there is one.
    const VARIANT& At(UINT lIndex) const noexcept
    {
        return m_parameters.rgvarg[m_parameters.cArgs - 1 - lIndex];
    }

private:
    const DISPPARAMS& m_parameters;
};

// Listens to the events of a COM object for as long as it lives.
class EventListener
{
public:
    // What a handler throws is dropped: it must not pass through the event's source.
    using Handler = std::function<void(DISPID lEvent, const EventArguments& arguments)>;

    EventListener(IUnknown& cSource, REFIID iidEvents, Handler handler);
    EventListener(const EventListener&) = delete;
    EventListener& operator=(const EventListener&) = delete;
    ~EventListener();

private:
    ComPtr<IConnectionPoint> m_cPoint;
    DWORD m_lCookie = 0;
};

} // namespace ravlo
