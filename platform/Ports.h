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

// Everything the world does to the library, handed in together. Owns nothing: whoever makes the ports keeps
// them alive as long as anything that was given them.
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
