// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Ports.h"
#include "platform/common/MersenneRandom.h"
#include "platform/windows/RegistryUserSettings.h"
#include "platform/windows/SystemCodePage.h"
#include "platform/windows/WindowsClock.h"
#include "platform/windows/WindowsFiles.h"
#include "platform/windows/WindowsHostLoop.h"
#include "platform/windows/WindowsMessages.h"

namespace ravlo
{

// Everything a library on Windows is given.
struct WindowsPorts
{
    WindowsPorts() = default;
    WindowsPorts(const WindowsPorts&) = delete;
    WindowsPorts& operator=(const WindowsPorts&) = delete;

    WindowsClock cClock;
    WindowsHostLoop cHostLoop;
    WindowsFiles cFiles;
    WindowsMessages cMessages;
    RegistryUserSettings cUserSettings;
    SystemCodePage cCodePage;
    MersenneRandom cRandom;

    ravlo::Ports Ports() { return {cClock, cHostLoop, cFiles, cMessages, cUserSettings, cCodePage, cRandom}; }
};

} // namespace ravlo
