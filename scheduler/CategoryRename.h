// SPDX-License-Identifier: MIT
#pragma once

#include "scheduler/ChangeRecord.h"

#include <functional>
#include <string>

namespace ravlo
{

struct SchedulerState;
class Synchronisation;

// Why a main category cannot get that name: one sentence. Empty when it can.
std::wstring WhyNotRename(const SchedulerState& cState, const std::wstring& sCatName,
                          const std::wstring& sNewName);

// Gives a main category another name: in the tree, in the names of every cut of the database, in the list of
// categories and in the names of its files. Everything or nothing: when a file or the database refuses,
// everything is put back and the error is thrown. Category and level objects and loaded rules remain the same
// objects. Calls renamed with the record of it, once, when everything is renamed and before anything else
// runs. Returns false when the list could not be saved, which was shown; nothing has changed then.
//
// A kill leaves the category under one name, complete, with all orders. The new files are written first and
// the old ones deleted last, and in between the list has neither name: the cuts alone tell which one counts.
// Only a database without batches may be cut in two; then both names have their cuts in order.
//
// Precondition: WhyNotRename gives no reason.
bool RenameMainCat(SchedulerState& cState, Synchronisation& cSync, const std::wstring& sCatName,
                   const std::wstring& sNewName, const std::function<void(const ChangeRecord&)>& renamed);

} // namespace ravlo
