// SPDX-License-Identifier: MIT
#pragma once

#include "platform/common/MersenneRandom.h"
#include "platform/windows/RegistryUserSettings.h"
#include "platform/windows/SystemCodePage.h"
#include "platform/windows/WindowsClock.h"
#include "platform/windows/WindowsFiles.h"
#include "platform/windows/WindowsHostLoop.h"
#include "platform/windows/WindowsMessages.h"
#include "platform/Ports.h"

namespace ravlo
{

// Everything a library on Windows is given.
struct WindowsWorld
{
    WindowsWorld() = default;
    WindowsWorld(const WindowsWorld&) = delete;
    WindowsWorld& operator=(const WindowsWorld&) = delete;

    WindowsClock cClock;
    WindowsHostLoop cHostLoop;
    WindowsFiles cFiles;
    WindowsMessages cMessages;
    RegistryUserSettings cUserSettings;
    SystemCodePage cCodePage;
    MersenneRandom cRandom;

    Ports AllPorts() { return {cClock, cHostLoop, cFiles, cMessages, cUserSettings, cCodePage, cRandom}; }
};

} // namespace ravlo
