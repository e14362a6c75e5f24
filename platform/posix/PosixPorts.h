// SPDX-License-Identifier: MIT
#pragma once

#include "platform/common/Latin1252CodePage.h"
#include "platform/common/MersenneRandom.h"
#include "platform/posix/IniUserSettings.h"
#include "platform/posix/PosixFiles.h"
#include "platform/posix/PosixHostLoop.h"
#include "platform/posix/StandardMessages.h"
#include "platform/posix/SystemClock.h"
#include "platform/Ports.h"

namespace ravlo
{

// Everything a program on a POSIX system hands to the library.
struct PosixWorld
{
    PosixWorld() = default;
    PosixWorld(const PosixWorld&) = delete;
    PosixWorld& operator=(const PosixWorld&) = delete;

    SystemClock cClock;
    PosixHostLoop cHostLoop;
    PosixFiles cFiles;
    StandardMessages cMessages;
    IniUserSettings cUserSettings{cFiles, IniUserSettings::UserFolder()};
    Latin1252CodePage cCodePage;
    MersenneRandom cRandom;

    Ports AllPorts() { return {cClock, cHostLoop, cFiles, cMessages, cUserSettings, cCodePage, cRandom}; }
};

} // namespace ravlo
