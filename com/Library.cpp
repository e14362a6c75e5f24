// SPDX-License-Identifier: MIT
#include "com/Library.h"

#include "platform/windows/WindowsPorts.h"

namespace ravlo
{

ModScheduler& Library()
{
    static WindowsWorld cWorld;
    static ModScheduler cMod(cWorld.AllPorts());
    return cMod;
}

} // namespace ravlo
