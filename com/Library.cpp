// SPDX-License-Identifier: MIT
#include "com/Library.h"

#include "platform/windows/WindowsPorts.h"

namespace ravlo
{

ModScheduler& Library()
{
    static WindowsPorts cPorts;
    static ModScheduler cMod(cPorts.Ports());
    return cMod;
}

} // namespace ravlo
