// SPDX-License-Identifier: MIT
#pragma once

#include "base/RuntimeError.h"

#include <utility>

namespace ravlo
{

// The work cannot be done; the description is one line for the person at the console. The number says
// nothing.
class HostError : public RuntimeError
{
public:
    explicit HostError(std::wstring sText) : RuntimeError(error::InvalidProcedureCall, std::move(sText)) {}
};

} // namespace ravlo
