// SPDX-License-Identifier: MIT
// What every implementation of the small ports must do: user settings, code page, clock, random numbers.
#include "platform/TempFolder.h"
#include "platform/common/Latin1252CodePage.h"
#include "platform/common/MersenneRandom.h"
#include "platform/memory/MemoryPorts.h"
#ifdef _WIN32
#include "platform/windows/WindowsPorts.h"

#include <windows.h>
#else
#include "platform/posix/IniUserSettings.h"
#include "platform/posix/PosixPorts.h"
#endif

#include <array>
#include <ctime>
#include <gtest/gtest.h>
#include <memory>

namespace ravlo
{
namespace
{

#ifdef _WIN32
using SystemPorts = WindowsPorts;

class SystemSettings
{
public:
    SystemSettings() : m_sApplication(L"RavloTest" + std::to_wstring(::GetCurrentProcessId())) {}
    ~SystemSettings()
    {
        const std::wstring sKey = L"Software\\VB and VBA Program Settings\\" + m_sApplication;
        for (const wchar_t* sSuffix : {L"", L"2"})
            ::RegDeleteTreeW(HKEY_CURRENT_USER, (sKey + sSuffix).c_str());
    }
    std::unique_ptr<UserSettings> Open() { return std::make_unique<RegistryUserSettings>(); }
    std::wstring Application() const { return m_sApplication; }

private:
    std::wstring m_sApplication;
};
#else
using SystemPorts = PosixPorts;

class SystemSettings
{
public:
    std::unique_ptr<UserSettings> Open()
    {
        return std::make_unique<IniUserSettings>(m_cFiles, m_cFolder.Path() + L"\\not\\there yet");
    }
    std::wstring Application() const { return L"RavloTest"; }

private:
    TempFolder m_cFolder;
    PosixFiles m_cFiles;
};
#endif

class MemorySettings
{
public:
    // Does not own the store, which outlives it as a file or the registry does.
    std::shared_ptr<UserSettings> Open() { return {std::shared_ptr<void>(), &m_cStore}; }
    std::wstring Application() const { return L"RavloTest"; }

private:
    MemoryUserSettings m_cStore;
};

template <class Store> class UserSettingsContract : public ::testing::Test
{
protected:
    // Through a new object each time, as in another run of the program.
    bool Set(const std::wstring& sSection, const std::wstring& sKey, const std::wstring& sValue)
    {
        return m_cStore.Open()->Set(m_cStore.Application(), sSection, sKey, sValue);
    }
    std::wstring Get(const std::wstring& sSection, const std::wstring& sKey, const wchar_t* sSuffix = L"")
    {
        return m_cStore.Open()->Get(m_cStore.Application() + sSuffix, sSection, sKey, L"default");
    }

    Store m_cStore;
};
using SettingsStores = ::testing::Types<MemorySettings, SystemSettings>;
TYPED_TEST_SUITE(UserSettingsContract, SettingsStores);

TYPED_TEST(UserSettingsContract, WhatIsMissingIsTheDefault)
{
    EXPECT_EQ(this->Get(L"Grid", L"Layout"), L"default");
    this->Set(L"Grid", L"Layout", L"x");
    EXPECT_EQ(this->Get(L"Grid", L"Other"), L"default");
    EXPECT_EQ(this->Get(L"Other", L"Layout"), L"default");
    EXPECT_EQ(this->Get(L"Grid", L"Layout", L"2"), L"default") << "of another application";
}

TYPED_TEST(UserSettingsContract, AnyTextIsKeptUnchanged)
{
    for (const std::wstring& sValue :
         {std::wstring(), std::wstring(L"1;2;3"), std::wstring(L"  blanks around  "),
          std::wstring(L"line\r\nbreak\tand tab"), std::wstring(L"[section]"), std::wstring(L"; comment"),
          std::wstring(L"a=b"), std::wstring(L"C:\\new\\table \\0041"), std::wstring(L"\"quoted\""),
          std::wstring(L"\u00FC \u20AC \u4E2D \U0001F3B5"), std::wstring(L"\u0085\u00A0\u2028"),
          std::wstring(10'000, L'x'), std::wstring(63, L'x'), std::wstring(64, L'x')})
    {
        EXPECT_TRUE(this->Set(L"Grid", L"Layout", sValue));
        EXPECT_EQ(this->Get(L"Grid", L"Layout"), sValue);
    }
}

TYPED_TEST(UserSettingsContract, NamesIgnoreCaseAndMayBeOdd)
{
    this->Set(L"Grid", L"Layout", L"old");
    this->Set(L"GRID", L"layout", L"new");
    EXPECT_EQ(this->Get(L"Grid", L"Layout"), L"new");
    const std::wstring aNames[] = {L"a=b", L"[x]", L"; y", L"\u00FC", L" z ", L"1", L"a.b", L"\"q\""};
    for (const std::wstring& sName : aNames)
    {
        EXPECT_TRUE(this->Set(sName, L"key", L"section " + sName));
        EXPECT_TRUE(this->Set(L"Grid", sName, L"key " + sName));
    }
    for (const std::wstring& sName : aNames)
    {
        EXPECT_EQ(this->Get(sName, L"key"), L"section " + sName);
        EXPECT_EQ(this->Get(L"Grid", sName), L"key " + sName);
    }
}

TEST(MemoryUserSettings, ABrokenStoreGivesDefaultsAndKeepsNothing)
{
    MemoryUserSettings cSettings;
    cSettings.Set(L"A", L"S", L"K", L"old");
    cSettings.bBroken = true;
    EXPECT_FALSE(cSettings.Set(L"A", L"S", L"K", L"new"));
    EXPECT_EQ(cSettings.Get(L"A", L"S", L"K", L"default"), L"default");
    cSettings.bBroken = false;
    EXPECT_EQ(cSettings.Get(L"A", L"S", L"K", L"default"), L"old");
}

template <class Page> class CodePageContract : public ::testing::Test
{
protected:
    void SetUp() override
    {
#ifdef _WIN32
        if (::GetACP() != 1252)
            GTEST_SKIP() << "this system's ANSI code page is another one";
#endif
    }
    Page m_cPage;
};
#ifdef _WIN32
using CodePages = ::testing::Types<Latin1252CodePage, SystemCodePage>;
#else
using CodePages = ::testing::Types<Latin1252CodePage>;
#endif
TYPED_TEST_SUITE(CodePageContract, CodePages);

TYPED_TEST(CodePageContract, EveryByteSurvivesTheRoundTrip)
{
    for (int i = 0; i < 256; ++i)
    {
        const std::string bytes(1, static_cast<char>(i));
        const std::wstring sText = this->m_cPage.Decode(bytes);
        EXPECT_EQ(sText.size(), 1u) << i;
        EXPECT_EQ(this->m_cPage.Encode(sText), bytes) << i;
    }
}

TYPED_TEST(CodePageContract, DecodesByTheTable)
{
    EXPECT_EQ(this->m_cPage.Decode("\x80\x82\x83\x84\x85\x86\x87\x88\x89\x8A\x8B\x8C\x8E"),
              L"\u20AC\u201A\u0192\u201E\u2026\u2020\u2021\u02C6\u2030\u0160\u2039\u0152\u017D");
    EXPECT_EQ(this->m_cPage.Decode("\x91\x92\x93\x94\x95\x96\x97\x98\x99\x9A\x9B\x9C\x9E\x9F"),
              L"\u2018\u2019\u201C\u201D\u2022\u2013\u2014\u02DC\u2122\u0161\u203A\u0153\u017E\u0178");
    EXPECT_EQ(this->m_cPage.Decode("A\xA0\xAC\xE4\xFF"), L"A\u00A0\u00AC\u00E4\u00FF");
    const std::wstring sUndefined = this->m_cPage.Decode("\x81\x8D\x8F\x90\x9D");
    ASSERT_EQ(sUndefined.size(), 5u);
    for (std::size_t i = 0; i < 5; ++i) // the control characters of the same number
        EXPECT_EQ(static_cast<int>(sUndefined[i]), (std::array{0x81, 0x8D, 0x8F, 0x90, 0x9D})[i]);
    EXPECT_EQ(this->m_cPage.Decode(""), L"");
}

TYPED_TEST(CodePageContract, MissingCharactersBecomeQuestionMarks)
{
    EXPECT_EQ(this->m_cPage.Encode(L"Caf\u00E9 \u4E2D\u6587 \u20AC"), "Caf\xE9 ?? \x80");
    EXPECT_EQ(this->m_cPage.Encode(L"\U0001F3B5"), "??"); // two units on Windows, so two everywhere
    EXPECT_EQ(this->m_cPage.Encode(L""), "");
    EXPECT_EQ(this->m_cPage.Encode(std::wstring_view(L"a\0b", 3)), std::string("a\0b", 3));
}

TEST(SystemPorts, TheClockHasTheLocalTime)
{
    SystemPorts cPorts;
    const std::time_t lBefore = std::time(nullptr);
    const DateTime dtNow = cPorts.cClock.Now();
    const std::time_t lAfter = std::time(nullptr);
    const auto secondsOf = [](std::time_t lWhen) {
        const std::tm tm = *std::localtime(&lWhen);
        return WholeSeconds(
            DateTimeOf({tm.tm_year + 1900, tm.tm_mon + 1, tm.tm_mday, tm.tm_hour, tm.tm_min, tm.tm_sec}));
    };
    EXPECT_GE(WholeSeconds(dtNow), secondsOf(lBefore) - 1);
    EXPECT_LE(WholeSeconds(dtNow), secondsOf(lAfter) + 1);
}

TEST(SystemPorts, TheTickCountRunsDuringASleep)
{
    SystemPorts cPorts;
    const std::uint32_t lStart = cPorts.cClock.TickCount();
    cPorts.cHostLoop.Sleep(40);
    const std::uint32_t lPassed = cPorts.cClock.TickCount() - lStart;
    EXPECT_GE(lPassed, 20u); // ticks may be 16 ms apart
    EXPECT_LT(lPassed, 60'000u);
    cPorts.cHostLoop.PumpMessages(); // returns when nothing is waiting
}

TEST(SystemPorts, HandsOutItsOwnParts)
{
    SystemPorts cPorts;
    const Ports ports = cPorts.Ports();
    EXPECT_EQ(&ports.cFiles, &cPorts.cFiles);
    EXPECT_EQ(&ports.cClock, &cPorts.cClock);
    EXPECT_EQ(&ports.cUserSettings, &cPorts.cUserSettings);
}

template <class Generator> class RandomContract : public ::testing::Test
{
};
using Generators = ::testing::Types<SeededRandom, MersenneRandom>;
TYPED_TEST_SUITE(RandomContract, Generators);

TYPED_TEST(RandomContract, FractionsAreAtLeastZeroBelowOneAndSpreadEvenly)
{
    TypeParam cRandom;
    constexpr int lTenths = 10;
    int aCount[lTenths] = {};
    for (int i = 0; i < 100'000; ++i)
    {
        const double dNext = cRandom.Next();
        ASSERT_GE(dNext, 0);
        ASSERT_LT(dNext, 1);
        ++aCount[static_cast<int>(dNext * lTenths)];
    }
    for (const int lCount : aCount)
        EXPECT_NEAR(lCount, 10'000, 600); // more than six standard deviations
}

TEST(MersenneRandom, IsSeededEachTime)
{
    MersenneRandom cRandom;
    MersenneRandom cOther;
    EXPECT_NE(cRandom.Next(), cOther.Next());
    cRandom.Randomize();
    const double dFirst = cRandom.Next();
    cRandom.Randomize();
    EXPECT_NE(cRandom.Next(), dFirst);
}

} // namespace
} // namespace ravlo
