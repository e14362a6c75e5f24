// SPDX-License-Identifier: MIT
#pragma once

#include "host/client/EventListener.h"

#include <functional>
#include <string>

namespace ravlo
{

// Listens to the progress events of the database or the scheduler for as long as it lives.
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
    // lFirstEvent is the dispatch id of ProgressStart; Progress and ProgressDone follow it. What a handler
    // throws is dropped: it must not pass through the event's source.
    ProgressListener(IUnknown& cSource, REFIID iidEvents, DISPID lFirstEvent, Handlers handlers);

private:
    EventListener m_cListener;
};

} // namespace ravlo
