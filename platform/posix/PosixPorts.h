// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Ports.h"
#include "platform/common/Latin1252CodePage.h"
#include "platform/common/MersenneRandom.h"
#include "platform/posix/IniUserSettings.h"
#include "platform/posix/PosixFiles.h"
#include "platform/posix/PosixHostLoop.h"
#include "platform/posix/StandardMessages.h"
#include "platform/posix/SystemClock.h"

namespace ravlo
{

// Everything a program on a POSIX system hands to the library.
struct PosixPorts
{
    PosixPorts() = default;
    PosixPorts(const PosixPorts&) = delete;
    PosixPorts& operator=(const PosixPorts&) = delete;

    SystemClock cClock;
    PosixHostLoop cHostLoop;
    PosixFiles cFiles;
    StandardMessages cMessages;
    IniUserSettings cUserSettings{cFiles, IniUserSettings::UserFolder()};
    Latin1252CodePage cCodePage;
    MersenneRandom cRandom;

    ravlo::Ports Ports() { return {cClock, cHostLoop, cFiles, cMessages, cUserSettings, cCodePage, cRandom}; }
};

} // namespace ravlo
