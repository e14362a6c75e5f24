// SPDX-License-Identifier: MIT
#include "ui/controls/windows/Module.h"

extern "C" IMAGE_DOS_HEADER __ImageBase; // the linker puts it at the module's start

namespace ravlo
{

HINSTANCE ThisModule() noexcept { return reinterpret_cast<HINSTANCE>(&__ImageBase); }

} // namespace ravlo
