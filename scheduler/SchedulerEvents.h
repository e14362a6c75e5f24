// SPDX-License-Identifier: MIT
#pragma once

#include "media/Cut.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace ravlo
{

// Where long work is reported: the manager's to its host and to the library window, the filling of a grid to
// the window alone.
class ProgressEvents
{
public:
    virtual ~ProgressEvents() = default;
    virtual void ProgressStart(const std::wstring& sReason, std::int32_t lMax) = 0;
    virtual void Progress(const std::wstring& strProgress, std::int32_t lCount, std::int32_t lMax) = 0;
    // sDetail: a second text, for the window; empty in what the host is told.
    virtual void ProgressDone(const std::wstring& sStatus, const std::wstring& sDetail) = 0;
};

// What the manager tells its host. The host may call back into the manager from any of these.
class SchedulerEvents : public ProgressEvents
{
public:
    virtual void ShowHelpEvent() = 0;
    // Asks the host to open its cut editor. Nothing when no host answered or its answer is no number.
    virtual std::optional<std::int32_t> RequestEditCut(const std::shared_ptr<Cut>& cCut) = 0;
};

} // namespace ravlo
