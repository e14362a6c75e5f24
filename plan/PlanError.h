// SPDX-License-Identifier: MIT
#pragma once

#include "base/RuntimeError.h"

#include <utility>

namespace ravlo
{

// A plan that cannot be used: error 5, described in one line that names the file and, where there is one, the
// line in it.
class PlanError : public RuntimeError
{
public:
    explicit PlanError(std::wstring sText) : RuntimeError(error::InvalidProcedureCall, std::move(sText)) {}
};

} // namespace ravlo
