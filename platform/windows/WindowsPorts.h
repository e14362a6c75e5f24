// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Ports.h"
#include "platform/common/MersenneRandom.h"
#include "platform/windows/WindowsFiles.h"

namespace ravlo
{

// The system's clock, in local time to the millisecond.
class WindowsClock final : public Clock
{
public:
    DateTime Now() const override;
    std::uint32_t TickCount() const override;
};

// The message loop of the calling thread. Each message is shown to the thread's message filter hooks
// (WH_MSGFILTER, code MSGF_USER) first, so that an open window gets its accelerators and dialog keys here as
// it does in its own loop. A request to quit is posted again for the host's loop. Pumping ends after a
// quarter of a second even when messages do not.
class WindowsHostLoop final : public HostLoop
{
public:
    void PumpMessages() override;
    void Sleep(std::uint32_t lMilliseconds) override;
};

// Message boxes and the input box, owned by the calling thread's active window. Without one, each disables
// all windows of the thread while it is open.
class WindowsMessages final : public Messages
{
public:
    BoxAnswer Box(BoxIcon eIcon, BoxButtons eButtons, const std::wstring& sTitle,
                  const std::wstring& sText) override;
    std::optional<std::wstring> Input(const std::wstring& sTitle, const std::wstring& sPrompt,
                                      const std::wstring& sText = {}) override;
};

// Settings in the place of automation hosts' own: the values of
// HKEY_CURRENT_USER\Software\VB and VBA Program Settings\<application>\<section>.
class RegistryUserSettings final : public UserSettings
{
public:
    std::wstring Get(const std::wstring& sApplication, const std::wstring& sSection, const std::wstring& sKey,
                     const std::wstring& sDefault) const override;
    bool Set(const std::wstring& sApplication, const std::wstring& sSection, const std::wstring& sKey,
             const std::wstring& sValue) override;
};

// The system's ANSI code page.
class SystemCodePage final : public CodePage
{
public:
    std::string Encode(std::wstring_view sText) const override;
    std::wstring Decode(std::string_view bytes) const override;
};

// The ports of a library on Windows.
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
