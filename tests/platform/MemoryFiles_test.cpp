// SPDX-License-Identifier: MIT
// What the files in memory offer tests beyond the contract of Files.
#include "platform/memory/MemoryFiles.h"

#include "platform/FilesWorlds.h"
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

TEST(MemoryFiles, RecordsReadsAndChangesButNoLooking)
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

TEST(MemoryFiles, AReadOnlyFileCannotBeChanged)
{
    MemoryFiles cFiles{{L"C:\\a", "kept"}, {L"C:\\b", "other"}};
    cFiles.SetReadOnly(L"C:\\A");
    EXPECT_EQ(NumberRaisedBy([&] { cFiles.WriteNew(L"C:\\a", "x"); }), error::PathFileAccess);
    EXPECT_EQ(NumberRaisedBy([&] { cFiles.Append(L"C:\\a", "x"); }), error::PathFileAccess);
    EXPECT_EQ(NumberRaisedBy([&] { cFiles.Delete(L"C:\\a"); }), error::PathFileAccess);
    EXPECT_EQ(NumberRaisedBy([&] { cFiles.Rename(L"C:\\b", L"C:\\a"); }), error::PathFileAccess);
    EXPECT_EQ(cFiles.ReadAll(L"C:\\a"), "kept");
    EXPECT_EQ(cFiles.ReadAll(L"C:\\b"), "other");
    cFiles.SetReadOnly(L"C:\\a", false);
    cFiles.WriteNew(L"C:\\a", "x");
    EXPECT_EQ(cFiles.Get(L"C:\\a"), "x");
}

TEST(MemoryFiles, NothingCanBeMadeInAReadOnlyFolder)
{
    MemoryFiles cFiles{{L"C:\\Sub\\a", "old"}};
    cFiles.SetReadOnly(L"C:\\Sub");
    EXPECT_EQ(NumberRaisedBy([&] { cFiles.WriteNew(L"C:\\Sub\\b", "x"); }), error::PathFileAccess);
    EXPECT_EQ(NumberRaisedBy([&] { cFiles.CreateFolder(L"C:\\Sub\\c"); }), error::PathFileAccess);
    EXPECT_EQ(NumberRaisedBy([&] { ReplaceFile(cFiles, L"C:\\Sub\\a", "new"); }), error::PathFileAccess);
    EXPECT_EQ(cFiles.Paths(), Texts{L"C:\\Sub\\a"});
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

TEST(FailingFiles, ReadsAreStepsOnDemandOnly)
{
    MemoryFiles cMemory{{L"C:\\a", "x"}};
    FailingFiles cFiles(cMemory, 0);
    EXPECT_EQ(cFiles.ReadAll(L"C:\\a"), "x");
    cFiles.bCountReads = true;
    EXPECT_EQ(NumberRaisedBy([&] { cFiles.ReadAll(L"C:\\a"); }), error::DiskFull);
    EXPECT_EQ(cFiles.ReadAll(L"C:\\a"), "x");
}

} // namespace
} // namespace ravlo
