// SPDX-License-Identifier: MIT
// What is particular to the POSIX platform.
#ifndef _WIN32

#include "platform/TempFolder.h"
#include "platform/memory/MemoryFiles.h"
#include "platform/posix/IniUserSettings.h"
#include "platform/posix/PosixFiles.h"
#include "platform/posix/PosixPorts.h"
#include "support/Raised.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace ravlo
{
namespace
{

TEST(PosixText, BackslashesMeanSlashesInPaths)
{
    EXPECT_EQ(NativePathOf(L"\\home\\\u00FC\\a b.sif"), "/home/\xC3\xBC/a b.sif");
    EXPECT_EQ(HostPathOf("/home/\xC3\xBC"), L"\\home\\\u00FC");
    EXPECT_THROW(NativePathOf(std::wstring(L"a\0b", 3)), RuntimeError);
    EXPECT_THROW(NativePathOf(std::wstring(1, static_cast<wchar_t>(0xD800))), RuntimeError);
}

class PosixFilesTest : public testing::Test
{
protected:
    const TempFolder cFolder;
    PosixFiles cFiles;
};

TEST_F(PosixFilesTest, SlashesAreSeparatorsToo)
{
    cFiles.CreateFolder(cFolder.Path() + L"/Sub");
    cFiles.WriteNew(cFolder.Path() + L"\\Sub/a.sif", "x");
    EXPECT_EQ(cFiles.ReadAll(cFolder.Path() + L"/Sub\\a.sif"), "x");
}

TEST_F(PosixFilesTest, BehindALinkToNowhereNothingIsKnown)
{
    const std::string sLink = NativePathOf(cFolder.Path() + L"\\Share");
    ASSERT_EQ(::symlink("/nowhere/at/all", sLink.c_str()), 0);
    EXPECT_EQ(cFiles.PresenceOfFolder(cFolder.Path() + L"\\Share"), Presence::Unknown);
    EXPECT_EQ(cFiles.PresenceOf(cFolder.Path() + L"\\Share\\Scheduler\\a.sif"), Presence::Unknown);
}

TEST_F(PosixFilesTest, AReplacedFileKeepsItsMode)
{
    const std::wstring sPath = cFolder.Path() + L"\\a.sif";
    cFiles.WriteNew(sPath, "old");
    ASSERT_EQ(::chmod(NativePathOf(sPath).c_str(), 0660), 0);
    ReplaceFile(cFiles, sPath, "new");
    struct stat status;
    ASSERT_EQ(::stat(NativePathOf(sPath).c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0660u);
    EXPECT_EQ(cFiles.ReadAll(sPath), "new");
}

TEST_F(PosixFilesTest, ANameThatIsTooLongRaises52AndTheLimit)
{
    EXPECT_EQ(RaisedBy([&] { cFiles.WriteNew(cFolder.Path() + L"\\" + std::wstring(256, L'a'), "x"); }),
              (Raised{error::BadFileName,
                      L"Bad file name: longer than 255 bytes in a name, or than 4095 in the whole path"}));
}

TEST(IniUserSettings, TheFileIsPlainToRead)
{
    MemoryFiles cFiles;
    IniUserSettings cSettings(cFiles, L"C:\\Users\\me\\.config");
    cSettings.Set(L"RavloScheduler", L"Split", L"Position", L"50%");
    cSettings.Set(L"RavloScheduler", L"Grid", L"Layout", L"a\r\nb\\");
    cSettings.Set(L"RavloScheduler", L"split", L"a=[b]", L"\u00FC=x");
    EXPECT_EQ(
        cFiles.Get(L"C:\\Users\\me\\.config\\RavloScheduler.ini"),
        "[Split]\nPosition=50%\na\\003d\\005bb\\005d=\xC3\xBC=x\n[Grid]\nLayout=a\\000d\\000ab\\005c\n");
}

TEST(IniUserSettings, ReadsWhatAPersonTyped)
{
    MemoryFiles cFiles{
        {L"C:\\App.ini", "stray\r\n[Grid]\r\n; Layout=no\r\nLayout=C:\\temp\r\n\r\nLate=1\r\n"}};
    const IniUserSettings cSettings(cFiles, L"C:");
    EXPECT_EQ(cSettings.Get(L"App", L"Grid", L"Layout", L""), L"C:\\temp");
    EXPECT_EQ(cSettings.Get(L"App", L"Grid", L"Late", L""), L"1");
    EXPECT_EQ(cSettings.Get(L"App", L"Grid", L"; Layout", L"none"), L"none");
}

TEST(IniUserSettings, AnApplicationsNameNeverLeavesTheFolder)
{
    MemoryFiles cFiles{{L"C:\\App.ini", "[S]\nK=1\n"}, {L"C:\\Settings\\x.ini", ""}};
    IniUserSettings cSettings(cFiles, L"C:\\Settings");
    for (const wchar_t* sName : {L"", L"..\\App", L"../App", L"\\App"})
    {
        EXPECT_EQ(cSettings.Get(sName, L"S", L"K", L"default"), L"default") << sName;
        EXPECT_FALSE(cSettings.Set(sName, L"S", L"K", L"2")) << sName;
    }
    EXPECT_EQ(cFiles.Get(L"C:\\App.ini"), "[S]\nK=1\n");
}

TEST(IniUserSettings, AFileThatCannotBeReadOrWrittenIsNoError)
{
    MemoryFiles cFiles{{L"C:\\App.ini", "[S]\nK=1\n"}};
    IniUserSettings cSettings(cFiles, L"C:");
    cFiles.SetUnreadable(L"C:\\App.ini", error::PermissionDenied);
    EXPECT_EQ(cSettings.Get(L"App", L"S", L"K", L"default"), L"default");
    EXPECT_FALSE(cSettings.Set(L"App", L"S", L"K", L"2")); // the other settings in it would be lost
    cFiles.SetUnreadable(L"C:\\App.ini", 0);
    cFiles.SetReadOnly(L"C:\\App.ini");
    EXPECT_FALSE(cSettings.Set(L"App", L"S", L"K", L"2"));
    EXPECT_EQ(cFiles.Get(L"C:\\App.ini"), "[S]\nK=1\n");
}

TEST(IniUserSettings, TheUsersFolderIsTheConfiguredOneOrLiesInTheHomeFolder)
{
    const char* pOld = std::getenv("XDG_CONFIG_HOME");
    const std::string sOld = pOld ? pOld : "";
    const std::string sHome = std::getenv("HOME") ? std::getenv("HOME") : "";
    ::setenv("XDG_CONFIG_HOME", "/etc/me", 1);
    ::setenv("HOME", "/home/me", 1);
    EXPECT_EQ(IniUserSettings::UserFolder(), L"\\etc\\me");
    ::setenv("XDG_CONFIG_HOME", "relative", 1); // ignored by convention
    EXPECT_EQ(IniUserSettings::UserFolder(), L"\\home\\me\\.config");
    ::unsetenv("XDG_CONFIG_HOME");
    EXPECT_EQ(IniUserSettings::UserFolder(), L"\\home\\me\\.config");
    if (pOld)
        ::setenv("XDG_CONFIG_HOME", sOld.c_str(), 1);
    ::setenv("HOME", sHome.c_str(), 1);
}

TEST(StandardMessages, PrintsOnTheErrorOutputAndAnswersNothing)
{
    StandardMessages cMessages;
    ::testing::internal::CaptureStderr();
    EXPECT_EQ(cMessages.Box(BoxIcon::Question, BoxButtons::YesNo, L"T\u00FC", L"Really?"), BoxAnswer::None);
    EXPECT_EQ(cMessages.Input(L"Title", L"Prompt"), std::nullopt);
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "T\xC3\xBC: Really?\nTitle: Prompt\n");
}

} // namespace
} // namespace ravlo

#endif
