// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Ports.h"
#include "platform/common/Latin1252CodePage.h"
#include "platform/common/MersenneRandom.h"
#include "platform/posix/IniUserSettings.h"
#include "platform/posix/PosixFiles.h"

namespace ravlo
{

// The system's clock, in local time to the millisecond.
class SystemClock final : public Clock
{
public:
    DateTime Now() const override;
    std::uint32_t TickCount() const override;
};

// For a program without windows: there are no messages to process.
class PosixHostLoop final : public HostLoop
{
public:
    void PumpMessages() override {}
    void Sleep(std::uint32_t lMilliseconds) override;
};

// For a program without windows: prints boxes to the standard error output; nobody answers.
class StandardMessages final : public Messages
{
public:
    BoxAnswer Box(BoxIcon eIcon, BoxButtons eButtons, const std::wstring& sTitle,
                  const std::wstring& sText) override;
    std::optional<std::wstring> Input(const std::wstring& sTitle, const std::wstring& sPrompt,
                                      const std::wstring& sText = {}) override;
};

// The ports of a program on a POSIX system.
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
