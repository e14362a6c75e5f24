// SPDX-License-Identifier: MIT
#pragma once

#include "ports/Clock.h"
#include "ports/CodePage.h"
#include "ports/Files.h"
#include "ports/HostLoop.h"
#include "ports/Messages.h"
#include "ports/Random.h"
#include "ports/UserSettings.h"

namespace ravlo
{

// Everything the world does to the library, handed in together. Owns nothing: whoever makes the ports keeps them alive
// as long as anything that was given them.
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
