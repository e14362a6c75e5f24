// SPDX-License-Identifier: MIT
#pragma once

#include "media/Cut.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace ravlo
{

// Receives progress: the manager reports to its host and the library window, the filling of a grid only to
// the window.
class ProgressEvents
{
public:
    virtual ~ProgressEvents() = default;
    virtual void ProgressStart(const std::wstring& sReason, std::int32_t lMax) = 0;
    virtual void Progress(const std::wstring& strProgress, std::int32_t lCount, std::int32_t lMax) = 0;
    // sDetail: a second text for the window; empty for the host.
    virtual void ProgressDone(const std::wstring& sStatus, const std::wstring& sDetail) = 0;
};

// The manager's events. The host may call back into the manager from any of them.
class SchedulerEvents : public ProgressEvents
{
public:
    virtual void ShowHelpEvent() = 0;
    // Asks the host to open its cut editor. Returns nothing when no host answered or the answer is not a
    // number.
    virtual std::optional<std::int32_t> RequestEditCut(const std::shared_ptr<Cut>& cCut) = 0;
};

} // namespace ravlo
