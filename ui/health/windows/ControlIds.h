// SPDX-License-Identifier: MIT
#pragma once

namespace ravlo
{

inline constexpr const wchar_t* sfrmHealthClass = L"RavloHealth";

// The controls of the rotation health window.
enum HealthControlId : int
{
    eIdlblClock = 200,
    eIdcboClock,
    eIdcmdBrowse,
    eIdlblStart,
    eIdtxtStart,
    eIdlblDays,
    eIdtxtDays,
    eIdcmdSimulate,
    eIdcmdReport,
    eIdlblSummary,
    eIdlstLevels,
    eIdHealthSplit,
    eIdHealthPane,
    eIdHealthTabs,
    eIdlblReasons,
    eIdlstAdvice,
    eIdcmdCarryOut,
    eIdlstSeldom,
    eIdcmdGoTo,
    eIdlstPlays,
    eIdlstGaps,
    eIdlstHours,
    eIdpicPlays,
    eIdpicGaps,
    eIdpicHours,
    eIdHealthStatus,
    eIdHealthProgress,
    eIdcmdCancelRun,
    eIdHealthNextTab,
    eIdHealthPreviousTab,
    eIdHealthOtherPane,
    eIdHealthEscape,
};

} // namespace ravlo
