// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Ports.h"
#include "platform/common/Latin1252CodePage.h"
#include "platform/memory/MemoryFiles.h"
#include "platform/memory/ScriptedMessages.h"

#include <cstdint>
#include <functional>
#include <map>
#include <random>
#include <string>

namespace ravlo
{

// A clock that moves only on request. It starts at noon of 1 March 2024.
class MemoryClock final : public Clock
{
public:
    DateTime Now() const override;
    std::uint32_t TickCount() const override { return m_lTickCount; }

    void SetNow(DateTime dtNow);
    void SetTickCount(std::uint32_t lTickCount) { m_lTickCount = lTickCount; }
    // Moves the date and the tick count together.
    void Advance(std::uint32_t lMilliseconds);

private:
    DateTime m_dtStart = 45352.5;
    std::uint64_t m_passed = 0; // milliseconds since then, a whole number so that nothing drifts
    std::uint32_t m_lTickCount = 0;
};

// A message loop that counts its calls. A hook does what a host's timers and users do: it calls back into the
// scheduler in the middle of its work. A hook may replace itself.
class MemoryHostLoop final : public HostLoop
{
public:
    MemoryHostLoop() = default;
    // Sleeping advances the clock.
    explicit MemoryHostLoop(MemoryClock& cClock) : m_cClock(&cClock) {}

    void PumpMessages() override;
    void Sleep(std::uint32_t lMilliseconds) override;

    int lPumps = 0;
    int lSleeps = 0;
    std::uint64_t sleptmS = 0;
    std::function<void()> OnPump;
    std::function<void(std::uint32_t lMilliseconds)> OnSleep;

private:
    MemoryClock* m_cClock = nullptr;
};

// Settings that last as long as the object. Names are found without regard to case, as in the real store.
class MemoryUserSettings final : public UserSettings
{
public:
    std::wstring Get(const std::wstring& sApplication, const std::wstring& sSection, const std::wstring& sKey,
                     const std::wstring& sDefault) const override;
    bool Set(const std::wstring& sApplication, const std::wstring& sSection, const std::wstring& sKey,
             const std::wstring& sValue) override;

    // Whether it refuses everything.
    bool bBroken = false;

private:
    std::map<std::wstring, std::wstring> m_values;
};

// Random numbers that depend only on the seed, on every platform. Randomize is only counted.
class SeededRandom final : public Random
{
public:
    explicit SeededRandom(std::uint64_t seed = 1) : m_engine(seed) {}

    void Randomize() override { ++lRandomized; }
    double Next() override { return static_cast<double>(m_engine() >> 11) * 0x1p-53; }

    int lRandomized = 0;

private:
    std::mt19937_64 m_engine;
};

// The ports of a test, fuzzer or benchmark, all in memory. Sleeping advances the clock.
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
    // These ports with other files, e.g. failing ones.
    ravlo::Ports PortsWith(Files& cOtherFiles)
    {
        return {cClock, cHostLoop, cOtherFiles, cMessages, cUserSettings, cCodePage, cRandom};
    }
};

} // namespace ravlo
