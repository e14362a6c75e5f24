// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Ports.h"
#include "platform/common/Latin1252CodePage.h"
#include "platform/memory/MemoryClock.h"
#include "platform/memory/MemoryFiles.h"
#include "platform/memory/MemoryHostLoop.h"
#include "platform/memory/MemoryUserSettings.h"
#include "platform/memory/ScriptedMessages.h"
#include "platform/memory/SeededRandom.h"

namespace ravlo
{

// A whole world in memory: what a test, fuzzer or benchmark hands to the code it drives. Sleeping moves its
// clock.
struct MemoryPorts
{
    MemoryPorts() = default;
    MemoryPorts(const MemoryPorts&) = delete;
    MemoryPorts& operator=(const MemoryPorts&) = delete;

    MemoryClock cClock;
    MemoryHostLoop cHostLoop{cClock};
    MemoryFiles cFiles;
    ScriptedMessages cMessages;
    MemoryUserSettings cUserSettings;
    Latin1252CodePage cCodePage;
    SeededRandom cRandom;

    ravlo::Ports Ports() { return PortsWith(cFiles); }
    // The same world with other files, e.g. failing ones.
    ravlo::Ports PortsWith(Files& cOtherFiles)
    {
        return {cClock, cHostLoop, cOtherFiles, cMessages, cUserSettings, cCodePage, cRandom};
    }
};

} // namespace ravlo
