// SPDX-License-Identifier: MIT
#pragma once

#include "base/DateTime.h"
#include "comkit/ComPtr.h"

#include <optional>
#include <string>

namespace ravlo
{

// What the member PlaysCsv of a host's database returns for a period. It is called by its name, because the
// interface that hosts implement does not have it: nothing when the database does not have it either.
std::optional<std::wstring> RecordedPlaysOf(IDispatch& cDataBase, DateTime dtFrom, DateTime dtTo);

} // namespace ravlo
