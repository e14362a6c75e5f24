// SPDX-License-Identifier: MIT
#include "support/EngineTest.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <random>
#include <string>

namespace ravlo::test
{
namespace
{

using Mins = std::array<std::int32_t, 3>;
using Lines = std::vector<std::wstring>;

Mins SettingsOf(const ModScheduler& cMod)
{
    return {cMod.GlobalArtistSepMins(), cMod.GlobalTitleSepMins(), cMod.GlobalAlbumSepMins()};
}

class SettingsTest : public testing::Test
{
protected:
    SettingsTest()
    {
        cPorts.cFiles.MakeFolders(L"C:\\Radio\\Scheduler");
        cMod.StoreAppPath(sRadio);
    }

    Mins Load(const std::string& bytes)
    {
        cPorts.cFiles.Put(sFile, bytes);
        cMod.LoadSettings();
        return SettingsOf(cMod);
    }

    // Stores and loads 1, 2, 3.
    void Load123() { Load(old); }
    std::string File() const { return cPorts.cFiles.Get(sFile); }

    static constexpr const char* old = "1\r\n2\r\n3\r\n";
    static constexpr const wchar_t* sFile = L"C:\\Radio\\Scheduler\\SchedulerSettings.dat";
    static constexpr const wchar_t* sOther = L"C:\\Other\\Scheduler\\SchedulerSettings.dat";
    RadioPorts cPorts;
    ModScheduler cMod{cPorts.Ports()};
};

TEST_F(SettingsTest, TheApplicationPathHasOneTrailingBackslash)
{
    ModScheduler cOther(cPorts.Ports());
    EXPECT_EQ(cOther.AppPath(), L"") << "empty when none was stored";
    const std::pair<const wchar_t*, const wchar_t*> rows[] = {
        {L"C:\\Radio", L"C:\\Radio\\"},
        {L"C:\\Radio\\", L"C:\\Radio\\"},
        {L"C:/Radio/", L"C:/Radio/\\"}, // only a backslash counts
    };
    for (const auto& [sStored, sPath] : rows)
    {
        cOther.StoreAppPath(sStored);
        EXPECT_EQ(cOther.AppPath(), sPath);
    }
}

TEST_F(SettingsTest, AFileIsReadLineByLineAndWhatIsNoMinutesIsSixty)
{
    EXPECT_EQ(SettingsOf(cMod), (Mins{60, 60, 60})) << "nothing was read yet";
    const struct
    {
        const char* bytes;
        Mins mins;
    } contents[] = {
        {"45\r\n-3\r\nabc\r\n", {45, 60, 60}},
        {"90\r\n120\r\n0\r\n", {90, 120, 0}},
        {"1\r\n2\r\n3", {1, 2, 3}},
        {"1\r\n2", {1, 2, 60}},
        {"1\r\n", {1, 60, 60}},
        {"\r\n2\r\n3\r\n", {60, 2, 3}},
        {"\r\n", {60, 60, 60}},
        {"45", {60, 60, 60}}, // no CR LF anywhere
        {"45\n50\n55\n", {60, 60, 60}},
        {"", {60, 60, 60}},
        {"1\r\n2\r\n3\r\n4\r\n5\r\n", {1, 2, 3}},
        {" 7 \r\n+8\r\n(9)\r\n", {7, 8, 60}},
        {"2.5\r\n3.5\r\n1e2\r\n", {2, 4, 100}},
        {"-0.4\r\n-0.6\r\n&H10\r\n", {0, 60, 16}},
        {"2147483647\r\n2147483648\r\n1e300\r\n", {2147483647, 60, 60}},
        {"-2147483648\r\n-99999999999\r\n1 2\r\n", {60, 60, 60}},
    };
    for (const auto& content : contents)
    {
        cMod.SetGlobalArtistSepMins(11);
        cMod.SetGlobalTitleSepMins(12);
        cMod.SetGlobalAlbumSepMins(13);
        EXPECT_EQ(Load(content.bytes), content.mins) << testing::PrintToString(content.bytes);
    }
    EXPECT_TRUE(cPorts.cMessages.Boxes.empty());
}

TEST_F(SettingsTest, WithoutAFileAndInAnUnreadFolderEachSeparationIsSixty)
{
    const Mins sixty{60, 60, 60};
    Load123();
    cPorts.cFiles.Delete(sFile);
    cMod.LoadSettings();
    EXPECT_EQ(SettingsOf(cMod), sixty) << "a reload without the file";
    Load123();
    cMod.StoreAppPath(L"C:\\Elsewhere");
    cMod.LoadSettings();
    EXPECT_EQ(SettingsOf(cMod), sixty) << "a folder without one";
    cMod.StoreAppPath(sRadio);
    Load123();
    cPorts.cFiles.Put(sOther, "4\r\n5\r\n6\r\n");
    cPorts.cFiles.SetAway(L"C:\\Other");
    cMod.StoreAppPath(L"C:\\Other");
    cMod.LoadSettings();
    EXPECT_EQ(SettingsOf(cMod), sixty) << "a folder that cannot be read";
    EXPECT_EQ(File(), old);
}

TEST_F(SettingsTest, EachSetterWritesItsValueAtOnceAndSixtyForANegativeOne)
{
    constexpr std::int32_t lMost = std::numeric_limits<std::int32_t>::max();
    constexpr std::int32_t lLeast = std::numeric_limits<std::int32_t>::min();
    const struct
    {
        void (ModScheduler::*pSetter)(std::int32_t);
        std::int32_t lMins;
        const char* bytes;
    } rows[] = {
        {&ModScheduler::SetGlobalArtistSepMins, 5, "5\r\n60\r\n60\r\n"},
        {&ModScheduler::SetGlobalTitleSepMins, 0, "5\r\n0\r\n60\r\n"},
        {&ModScheduler::SetGlobalAlbumSepMins, lMost, "5\r\n0\r\n2147483647\r\n"},
        {&ModScheduler::SetGlobalTitleSepMins, -1, "5\r\n60\r\n2147483647\r\n"},
        {&ModScheduler::SetGlobalArtistSepMins, lLeast, "60\r\n60\r\n2147483647\r\n"},
        {&ModScheduler::SetGlobalAlbumSepMins, -60, "60\r\n60\r\n60\r\n"},
    };
    for (const auto& row : rows)
    {
        (cMod.*row.pSetter)(row.lMins);
        EXPECT_EQ(File(), row.bytes);
        const Mins present = SettingsOf(cMod);
        cMod.LoadSettings();
        EXPECT_EQ(SettingsOf(cMod), present);
    }
}

TEST_F(SettingsTest, WithoutAnApplicationPathNothingIsReadOrWritten)
{
    ModScheduler cOther(cPorts.Ports());
    cPorts.cFiles.ClearOperations();
    cOther.LoadSettings();
    EXPECT_FALSE(cOther.SaveSettings());
    cOther.SetGlobalArtistSepMins(5);
    EXPECT_EQ(cOther.GlobalArtistSepMins(), 5);
    EXPECT_TRUE(cPorts.cFiles.Operations().empty());
    EXPECT_TRUE(cPorts.cMessages.Boxes.empty());
}

TEST_F(SettingsTest, UnreadableFileGivesDefaultsAndStaysUntilASetterRuns)
{
    cPorts.cFiles.Put(sFile, old);
    cPorts.cFiles.SetUnreadable(sFile, 70);
    cMod.LoadSettings();
    EXPECT_EQ(SettingsOf(cMod), (Mins{60, 60, 60}));
    EXPECT_TRUE(cPorts.cMessages.Boxes.empty());
    EXPECT_EQ(cPorts.LogMessages(), Lines{L"DISPLAYERROR, LoadSettings 70 Permission denied"});
    EXPECT_FALSE(cMod.SaveSettings());
    EXPECT_EQ(File(), old);
    cMod.SetGlobalArtistSepMins(7);
    EXPECT_EQ(File(), "7\r\n60\r\n60\r\n");
    EXPECT_TRUE(cMod.SaveSettings());
    cPorts.cFiles.Put(sFile, old);
    cMod.LoadSettings();
    cPorts.cFiles.SetUnreadable(sFile, 0);
    cMod.LoadSettings();
    EXPECT_TRUE(cMod.SaveSettings()) << "once it was read";
    EXPECT_EQ(File(), old);
}

TEST_F(SettingsTest, AFileWithoutANumberIsNotOverwrittenUntilASetterRuns)
{
    const std::wstring sBak = std::wstring(sFile) + L".bak";
    Load("45");
    EXPECT_FALSE(cMod.SaveSettings());
    EXPECT_EQ(File(), "45");
    cMod.SetGlobalAlbumSepMins(7);
    EXPECT_EQ(File(), "60\r\n60\r\n7\r\n");
    EXPECT_EQ(cPorts.cFiles.Get(sBak), "45");
    Load("45\r\nabc\r\n");
    EXPECT_TRUE(cMod.SaveSettings()) << "one of its lines counts";
    EXPECT_EQ(File(), "45\r\n60\r\n60\r\n");
    EXPECT_EQ(cPorts.cFiles.Get(sBak + L"2"), "45\r\nabc\r\n");
}

// ---- a reload of the same folder

TEST_F(SettingsTest, AReloadThatCannotReadKeepsTheValues)
{
    Load123();
    cPorts.cFiles.SetAway(sRadio);
    cMod.LoadSettings();
    EXPECT_EQ(SettingsOf(cMod), (Mins{1, 2, 3}));
    EXPECT_FALSE(cMod.SaveSettings()) << "what was not read is left alone";
    cPorts.cFiles.SetAway(sRadio, 0);
    cPorts.cFiles.Put(sFile, "4\r\n5\r\n6\r\n");
    EXPECT_FALSE(cMod.SaveSettings());
    cMod.SetGlobalTitleSepMins(9);
    EXPECT_EQ(SettingsOf(cMod), (Mins{4, 9, 6})) << "a setter reads again";
    EXPECT_EQ(File(), "4\r\n9\r\n6\r\n");
    EXPECT_TRUE(cPorts.cMessages.Boxes.empty());
}

TEST_F(SettingsTest, AReloadSavesAnUnsavedValueFirst)
{
    Load123();
    cPorts.cFiles.SetReadOnly(sFile);
    cMod.SetGlobalTitleSepMins(9);
    cMod.LoadSettings();
    EXPECT_EQ(SettingsOf(cMod), (Mins{1, 9, 3})) << "still unsaved";
    cPorts.cFiles.SetReadOnly(sFile, false);
    cMod.LoadSettings();
    EXPECT_EQ(SettingsOf(cMod), (Mins{1, 9, 3}));
    EXPECT_EQ(File(), "1\r\n9\r\n3\r\n");
    EXPECT_EQ(Load("4\r\n5\r\n6\r\n"), (Mins{4, 5, 6})) << "saved once";
    EXPECT_TRUE(cPorts.cMessages.Boxes.empty());
}

TEST_F(SettingsTest, AMoveSavesAnUnsavedValueToItsOwnFolder)
{
    Load123();
    cPorts.cFiles.SetReadOnly(sFile);
    cMod.SetGlobalTitleSepMins(9);
    cPorts.cFiles.SetReadOnly(sFile, false);
    cPorts.cFiles.Put(sOther, "4\r\n5\r\n6\r\n");
    cMod.StoreAppPath(L"C:\\Other");
    EXPECT_FALSE(cMod.SaveSettings()) << "the values are not those of the folder";
    cMod.SetGlobalAlbumSepMins(7);
    EXPECT_EQ(SettingsOf(cMod), (Mins{4, 5, 7}));
    EXPECT_EQ(File(), "1\r\n9\r\n3\r\n");
    EXPECT_EQ(cPorts.cFiles.Get(sOther), "4\r\n5\r\n7\r\n");
}

TEST_F(SettingsTest, AFailedSaveIsOnlyLogged)
{
    Load123();
    cPorts.cFiles.SetReadOnly(sFile);
    EXPECT_FALSE(cMod.SaveSettings());
    EXPECT_NO_THROW(cMod.SetGlobalArtistSepMins(9));
    EXPECT_EQ(cMod.GlobalArtistSepMins(), 9);
    EXPECT_TRUE(cPorts.cMessages.Boxes.empty());
    EXPECT_EQ(cPorts.LogMessages(), (Lines{L"DISPLAYERROR, SaveSettings 75 Path/File access error",
                                           L"DISPLAYERROR, SaveSettings 75 Path/File access error"}));
    EXPECT_EQ(File(), old);
    EXPECT_TRUE(cPorts.TemporaryFiles().empty());
}

TEST_F(SettingsTest, AnyBytesGiveMinutesThatAreNotNegative)
{
    constexpr unsigned lSeed = 20240301;
    std::mt19937 random(lSeed);
    const std::string sPieces[] = {"\r\n", "\r", "\n", "-", "1", "99", "e",  "&H",
                                   "(",    ")",  " ",  "$", ",", ".",  "\0", "\xFF"};
    for (int lRound = 0; lRound < 3000; ++lRound)
    {
        std::string bytes;
        for (std::size_t piece = random() % 24; piece > 0; --piece)
            if (random() % 4 != 0)
                bytes += sPieces[random() % std::size(sPieces)];
            else
                bytes += static_cast<char>(random());
        for (const std::int32_t lMins : Load(bytes))
            ASSERT_GE(lMins, 0) << "seed " << lSeed << ", round " << lRound;
    }
    EXPECT_TRUE(cPorts.cMessages.Boxes.empty());
}

} // namespace
} // namespace ravlo::test
