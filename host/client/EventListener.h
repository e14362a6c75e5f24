// SPDX-License-Identifier: MIT
#pragma once

#include "comkit/EventSink.h"

namespace ravlo
{

// Listens to the events of a COM object as long as it exists. The object ignores what the handler throws.
class EventListener
{
public:
    EventListener(IUnknown& cSource, REFIID iidEvents, EventSink::Handler handler);
    EventListener(const EventListener&) = delete;
    EventListener& operator=(const EventListener&) = delete;
    ~EventListener();

private:
    ComPtr<IConnectionPoint> m_cPoint;
    DWORD m_lCookie = 0;
};

// Listens to the progress events of the database or the scheduler as long as it exists.
class ProgressListener
{
public:
    struct Handlers
    {
        using Progress = std::function<void(const std::wstring& sText, long lCount, long lMax)>;
        Progress start; // lCount is 0
        Progress progress;
        std::function<void(const std::wstring& sStatus)> done;
    };
    // lFirstEvent is the dispatch id of ProgressStart; Progress and ProgressDone follow it.
    ProgressListener(IUnknown& cSource, REFIID iidEvents, DISPID lFirstEvent, Handlers handlers);

private:
    EventListener m_cListener;
};

} // namespace ravlo
