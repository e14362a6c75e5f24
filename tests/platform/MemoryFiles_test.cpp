// SPDX-License-Identifier: MIT
// What the files in memory do for tests beyond the contract of Files.
#include "platform/memory/MemoryFiles.h"

#include "platform/FilesFixtures.h"
#include "platform/memory/FailingFiles.h"

#include <functional>

namespace ravlo
{
namespace
{

using Texts = std::vector<std::wstring>;

TEST(MemoryFiles, StartsWithTheContentsItIsGivenAndTheFoldersTheyNeed)
{
    const MemoryFiles cFiles{{L"C:\\Radio\\b.sif", "b"}, {L"C:\\Radio\\Sub\\a.sif", "a"}};
    EXPECT_TRUE(cFiles.FolderExists(L"C:\\Radio\\Sub"));
    EXPECT_EQ(cFiles.Get(L"c:/radio/B.SIF"), "b");
    EXPECT_EQ(cFiles.Paths(), (Texts{L"C:\\Radio\\b.sif", L"C:\\Radio\\Sub\\a.sif"}));
    EXPECT_TRUE(cFiles.Operations().empty());
}

TEST(MemoryFiles, KeepsTheSpellingANameWasMadeWith)
{
    MemoryFiles cFiles{{L"C:\\Jazz.sif", "old"}};
    cFiles.WriteNew(L"c:\\JAZZ.SIF", "new");
    EXPECT_EQ(cFiles.Paths(), Texts{L"C:\\Jazz.sif"});
    cFiles.Rename(L"C:\\Jazz.sif", L"C:\\JAZZ.sif");
    EXPECT_EQ(cFiles.Paths(), Texts{L"C:\\JAZZ.sif"});
    EXPECT_EQ(cFiles.Get(L"C:\\jazz.sif"), "new");
}

TEST(MemoryFiles, RecordsReadsAndChangesButNoLooks)
{
    MemoryFiles cFiles;
    cFiles.CreateFolder(L"C:\\A");
    cFiles.WriteNew(L"C:\\A\\a", "x");
    cFiles.Append(L"C:\\A\\a", "y");
    cFiles.FileExists(L"C:\\A\\a");
    cFiles.ReadAll(L"C:\\A\\a");
    cFiles.Rename(L"C:\\A\\a", L"C:\\A\\b");
    cFiles.Delete(L"C:\\A\\b");
    NumberRaisedBy([&] { cFiles.Delete(L"C:\\A\\b"); });
    EXPECT_EQ(cFiles.Operations(),
              (Texts{L"CreateFolder C:\\A", L"WriteNew C:\\A\\a", L"Append C:\\A\\a", L"ReadAll C:\\A\\a",
                     L"Rename C:\\A\\a -> C:\\A\\b", L"Delete C:\\A\\b", L"Delete C:\\A\\b"}));
    cFiles.ClearOperations();
    EXPECT_TRUE(cFiles.Operations().empty());
}

TEST(MemoryFiles, WhatIsReadOnlyCannotBeChanged)
{
    MemoryFiles cFiles{{L"C:\\a", "kept"}, {L"C:\\b", "other"}, {L"C:\\Sub\\a", "old"}};
    cFiles.SetReadOnly(L"C:\\A");
    cFiles.SetReadOnly(L"C:\\Sub");
    const std::function<void()> aOperations[] = {
        [&] { cFiles.WriteNew(L"C:\\a", "x"); },
        [&] { cFiles.Append(L"C:\\a", "x"); },
        [&] { cFiles.Delete(L"C:\\a"); },
        [&] { cFiles.Rename(L"C:\\b", L"C:\\a"); },
        [&] { cFiles.WriteNew(L"C:\\Sub\\b", "x"); },
        [&] { cFiles.CreateFolder(L"C:\\Sub\\c"); },
        [&] { ReplaceFile(cFiles, L"C:\\Sub\\a", "new"); },
    };
    for (const auto& operation : aOperations)
        EXPECT_EQ(NumberRaisedBy(operation), error::PathFileAccess);
    EXPECT_EQ(cFiles.ReadAll(L"C:\\a"), "kept");
    EXPECT_EQ(cFiles.ReadAll(L"C:\\b"), "other");
    EXPECT_EQ(cFiles.Paths(), (Texts{L"C:\\a", L"C:\\b", L"C:\\Sub\\a"}));
    cFiles.SetReadOnly(L"C:\\a", false);
    cFiles.WriteNew(L"C:\\a", "x");
    EXPECT_EQ(cFiles.Get(L"C:\\a"), "x");
}

TEST(MemoryFiles, AnUnreadableFileRaisesTheNumberItIsMarkedWith)
{
    MemoryFiles cFiles{{L"C:\\a", "x"}};
    cFiles.SetUnreadable(L"C:\\A", error::PermissionDenied);
    EXPECT_EQ(NumberRaisedBy([&] { cFiles.ReadAll(L"C:\\a"); }), error::PermissionDenied);
    EXPECT_TRUE(cFiles.FileExists(L"C:\\a"));
    cFiles.SetUnreadable(L"C:\\a", 0);
    EXPECT_EQ(cFiles.ReadAll(L"C:\\a"), "x");
}

TEST(MemoryFiles, OnADriveThatIsAwayEverythingIsUnknownAndFails)
{
    MemoryFiles cFiles{{L"C:\\Radio\\a", "kept"}, {L"C:\\Radio 2\\a", "other"}};
    cFiles.SetAway(L"c:\\radio");
    EXPECT_EQ(cFiles.PresenceOf(L"C:\\Radio\\a"), Presence::Unknown);
    EXPECT_EQ(cFiles.PresenceOf(L"C:\\Radio\\Sub\\b"), Presence::Unknown);
    EXPECT_EQ(cFiles.PresenceOfFolder(L"C:\\Radio"), Presence::Unknown);
    EXPECT_FALSE(cFiles.FileExists(L"C:\\Radio\\a"));
    EXPECT_EQ(cFiles.PresenceOf(L"C:\\Radio 2\\a"), Presence::Present);
    const std::function<void()> aOperations[] = {
        [&] { cFiles.ReadAll(L"C:\\Radio\\a"); },
        [&] { cFiles.WriteNew(L"C:\\Radio\\a", "x"); },
        [&] { cFiles.Append(L"C:\\Radio\\a", "x"); },
        [&] { cFiles.Delete(L"C:\\Radio\\a"); },
        [&] { cFiles.Rename(L"C:\\Radio\\a", L"C:\\Radio\\b"); },
        [&] { cFiles.CreateFolder(L"C:\\Radio\\Sub"); },
        [&] { cFiles.FilesIn(L"C:\\Radio"); },
        [&] { cFiles.HoldOpen(L"C:\\Radio\\lock"); },
    };
    for (const auto& operation : aOperations)
        EXPECT_EQ(NumberRaisedBy(operation), error::PathNotFound);
    cFiles.SetAway(L"C:\\Radio", 71);
    EXPECT_EQ(NumberRaisedBy(aOperations[0]), 71);
    cFiles.SetAway(L"C:\\Radio", 0);
    EXPECT_EQ(cFiles.ReadAll(L"C:\\Radio\\a"), "kept");
    EXPECT_EQ(cFiles.Paths().size(), 2u);
}

TEST(MemoryFiles, ALockedFileIsAttemptedAsOftenAsPatienceAllows)
{
    MemoryFiles cFiles{{L"C:\\a", "old"}, {L"C:\\b", "new"}};
    cFiles.SetLocked(L"C:\\a", 3);
    EXPECT_EQ(cFiles.ReadAll(L"C:\\a"), "old");
    EXPECT_EQ(cFiles.AttemptsOn(L"C:\\A"), 4);

    cFiles.SetLocked(L"C:\\a", 1);
    EXPECT_EQ(NumberRaisedBy([&] { cFiles.ReadAll(L"C:\\a", Patience::None); }), error::PermissionDenied);
    EXPECT_EQ(cFiles.AttemptsOn(L"C:\\a"), 5);

    cFiles.SetLocked(L"C:\\a", -1);
    EXPECT_EQ(NumberRaisedBy([&] { ReplaceFile(cFiles, L"C:\\a", "x", Patience::None); }),
              error::PermissionDenied);
    EXPECT_EQ(cFiles.AttemptsOn(L"C:\\a"), 6);
    EXPECT_EQ(NumberRaisedBy([&] { cFiles.Rename(L"C:\\b", L"C:\\a"); }), error::PermissionDenied);
    EXPECT_EQ(cFiles.AttemptsOn(L"C:\\a"), 16);
    EXPECT_EQ(cFiles.Get(L"C:\\a"), "old");
    EXPECT_EQ(cFiles.Get(L"C:\\b"), "new");

    cFiles.SetLocked(L"C:\\a", 0);
    cFiles.Rename(L"C:\\b", L"C:\\a", Patience::None);
    EXPECT_EQ(cFiles.Get(L"C:\\a"), "new");
}

TEST(MemoryFiles, AHeldFileCannotBeWritten)
{
    MemoryFiles cFiles;
    const std::unique_ptr<HeldFile> cHeld = cFiles.HoldOpen(L"C:\\lock");
    EXPECT_EQ(NumberRaisedBy([&] { cFiles.WriteNew(L"C:\\lock", "x"); }), error::PermissionDenied);
    EXPECT_EQ(NumberRaisedBy([&] { cFiles.Append(L"C:\\lock", "x"); }), error::PermissionDenied);
}

TEST(MemoryFiles, AFileGrowsOldUntilItIsWritten)
{
    MemoryFiles cFiles{{L"C:\\Radio\\a", "x"}};
    cFiles.SetAge(L"C:\\Radio\\a", std::chrono::hours(25));
    ASSERT_EQ(cFiles.FilesIn(L"C:\\Radio").size(), 1u);
    EXPECT_EQ(cFiles.FilesIn(L"C:\\Radio")[0].lAge, std::chrono::hours(25));
    cFiles.WriteNew(L"C:\\Radio\\a", "y");
    EXPECT_EQ(cFiles.FilesIn(L"C:\\Radio")[0].lAge, std::chrono::seconds(0));
}

TEST(MemoryFiles, TheLibrarysFolderCanBeMoved)
{
    MemoryFiles cFiles;
    EXPECT_TRUE(cFiles.FolderExists(cFiles.LibraryFolder()));
    cFiles.SetLibraryFolder(L"D:\\Playout\\");
    EXPECT_EQ(cFiles.LibraryFolder(), L"D:\\Playout");
    EXPECT_TRUE(cFiles.FolderExists(L"D:\\Playout"));
}

TEST(FailingFiles, EachStepFailsAsItsNumberSays)
{
    const struct
    {
        int lGood;
        const char* sLeft; // null: no file
    } aCases[] = {{0, nullptr}, {1, "ab"}, {2, "abcd"}};
    for (const auto& testCase : aCases)
    {
        MemoryFiles cMemory;
        FailingFiles cFiles(cMemory, testCase.lGood, error::DeviceIo);
        EXPECT_EQ(NumberRaisedBy([&] { cFiles.WriteNew(L"C:\\a", "abcd"); }), error::DeviceIo);
        EXPECT_TRUE(cFiles.bFailed);
        EXPECT_EQ(cMemory.FileExists(L"C:\\a"), testCase.sLeft != nullptr);
        if (testCase.sLeft)
        {
            EXPECT_EQ(cMemory.Get(L"C:\\a"), testCase.sLeft);
        }
    }
}

TEST(FailingFiles, TheOtherOperationsAreOneStepEachAndChangeNothingWhenTheyFail)
{
    MemoryFiles cMemory{{L"C:\\a", "x"}};
    const std::function<void(Files&)> aOperations[] = {
        [](Files& cFiles) { cFiles.CreateFolder(L"C:\\Sub"); },
        [](Files& cFiles) { cFiles.Append(L"C:\\a", "y"); },
        [](Files& cFiles) { cFiles.Rename(L"C:\\a", L"C:\\b"); },
        [](Files& cFiles) { cFiles.Delete(L"C:\\a"); },
        [](Files& cFiles) { cFiles.HoldOpen(L"C:\\lock"); },
    };
    for (const auto& operation : aOperations)
    {
        FailingFiles cFiles(cMemory, 0);
        EXPECT_EQ(NumberRaisedBy([&] { operation(cFiles); }), error::DiskFull);
        EXPECT_TRUE(cFiles.bFailed);
        EXPECT_FALSE(cMemory.FolderExists(L"C:\\Sub"));
        EXPECT_EQ(cMemory.Get(L"C:\\a"), "x");
        EXPECT_EQ(cMemory.Paths().size(), 1u);
    }
}

TEST(FailingFiles, OnlyOneStepFailsUnlessItStaysBroken)
{
    for (const bool bStaysBroken : {false, true})
    {
        MemoryFiles cMemory;
        FailingFiles cFiles(cMemory, 1);
        cFiles.bStaysBroken = bStaysBroken;
        cFiles.Append(L"C:\\a", "1");
        EXPECT_FALSE(cFiles.bFailed);
        EXPECT_EQ(NumberRaisedBy([&] { cFiles.Append(L"C:\\a", "2"); }), error::DiskFull);
        EXPECT_EQ(NumberRaisedBy([&] { cFiles.Append(L"C:\\a", "3"); }), bStaysBroken ? error::DiskFull : 0);
        EXPECT_EQ(cMemory.Get(L"C:\\a"), bStaysBroken ? "1" : "13");
    }
}

TEST(FailingFiles, ReadsAndLooksAreStepsOnDemandOnly)
{
    MemoryFiles cMemory{{L"C:\\a", "x"}};
    FailingFiles cFiles(cMemory, 0);
    EXPECT_EQ(cFiles.ReadAll(L"C:\\a"), "x");
    cFiles.bCountReads = true;
    EXPECT_EQ(NumberRaisedBy([&] { cFiles.ReadAll(L"C:\\a"); }), error::DiskFull);
    EXPECT_EQ(cFiles.ReadAll(L"C:\\a"), "x");

    FailingFiles cLooks(cMemory, 1);
    EXPECT_TRUE(cLooks.FileExists(L"C:\\a"));
    cLooks.bCountLooks = true;
    EXPECT_EQ(cLooks.PresenceOf(L"C:\\a"), Presence::Present);
    EXPECT_EQ(cLooks.PresenceOfFolder(L"C:"), Presence::Unknown);
    EXPECT_TRUE(cLooks.bFailed);
    EXPECT_EQ(cLooks.PresenceOfFolder(L"C:"), Presence::Present);
}

TEST(FailingFiles, WhatIsAwayFailsAndLooksUnknownWithoutCounting)
{
    MemoryFiles cMemory{{L"C:\\a", "x"}};
    FailingFiles cFiles(cMemory, 0, error::PathNotFound);
    cFiles.bAway = true;
    EXPECT_EQ(cFiles.PresenceOf(L"C:\\a"), Presence::Unknown);
    EXPECT_EQ(NumberRaisedBy([&] { cFiles.StampOf(L"C:\\a"); }), error::PathNotFound);
    EXPECT_EQ(NumberRaisedBy([&] { cFiles.ReadAll(L"C:\\a"); }), error::PathNotFound);
    EXPECT_EQ(NumberRaisedBy([&] { cFiles.FilesIn(L"C:"); }), error::PathNotFound);
    EXPECT_EQ(NumberRaisedBy([&] { cFiles.Append(L"C:\\a", "y"); }), error::PathNotFound);
    cFiles.bAway = false;
    EXPECT_FALSE(cFiles.bFailed);
    EXPECT_EQ(cFiles.ReadAll(L"C:\\a"), "x");
    EXPECT_EQ(NumberRaisedBy([&] { cFiles.Append(L"C:\\a", "y"); }), error::PathNotFound);
}

} // namespace
} // namespace ravlo
