// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace ravlo
{

// What the exception that is being handled has to say.
std::wstring WhatFailed();

} // namespace ravlo
