// SPDX-License-Identifier: MIT
#pragma once

#include "model/clsCat.h"
#include "rotation/RotationFiles.h"
#include "scheduler/ChangeReversal.h"
#include "scheduler/SchedulerState.h"

#include <functional>
#include <string>

namespace ravlo
{

// Changes of a category's separations and of the station's options as steps to undo.

// Adds what differs between the rules' values before and after a change as a step, and saves it.
void NoteRules(SchedulerState& cState, const clsCat& cCat, const clsCatRules::Edit& before,
               const clsCatRules::Edit& after);
// Saves an option and puts it in force. Adds the step. Throws as RotationFiles::Set.
void SetOption(SchedulerState& cState, RotationFiles& cFiles, StationOption eOption, bool bOn);

// Sets the values of a record back that are still those that its change has made: all of them, or none; then
// throws. A category that is gone has none. Calls reversed with the record that reverses the reversal, once
// everything is saved; it is empty when nothing has changed.
PassedOver ReverseSettings(SchedulerState& cState, RotationFiles& cFiles,
                           const ChangeRecord::Settings& settings, Failing eFailing,
                           const std::function<void(const ChangeRecord&)>& reversed);

} // namespace ravlo
