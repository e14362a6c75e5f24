// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Clock.h"
#include "platform/CodePage.h"
#include "platform/Files.h"
#include "platform/HostLoop.h"
#include "platform/Messages.h"
#include "platform/Random.h"
#include "platform/UserSettings.h"

namespace ravlo
{

// All ports to the outside, passed together. Owns nothing. Precondition: the ports outlive everything that
// uses them.
struct Ports
{
    Clock& cClock;
    HostLoop& cHostLoop;
    Files& cFiles;
    Messages& cMessages;
    UserSettings& cUserSettings;
    CodePage& cCodePage;
    Random& cRandom;
};

} // namespace ravlo
