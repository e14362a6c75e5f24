// SPDX-License-Identifier: MIT
#pragma once

#include "base/RuntimeError.h"

#include <utility>

namespace ravlo
{

// The work cannot be done. The description is one line for the user at the console; the number has no
// meaning.
class HostError : public RuntimeError
{
public:
    explicit HostError(std::wstring sText) : RuntimeError(error::InvalidProcedureCall, std::move(sText)) {}
};

} // namespace ravlo
