// SPDX-License-Identifier: MIT
#pragma once

// The automation headers, in the order they need.
#include <windows.h>

#include <ocidl.h>
#include <oleauto.h>
#include <olectl.h>
