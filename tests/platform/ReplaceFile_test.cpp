// SPDX-License-Identifier: MIT
#include "platform/FilesFixtures.h"
#include "platform/memory/FailingFiles.h"
#include "platform/memory/MemoryFiles.h"
#include "support/ForwardingFiles.h"

namespace ravlo
{
namespace
{

using ReplaceFileOn = FilesTest;

INSTANTIATE_TEST_SUITE_P(Every, ReplaceFileOn, ::testing::ValuesIn(AllFilesKinds()),
                         [](const auto& kind) { return std::string(kind.param.sName); });

TEST_P(ReplaceFileOn, CreatesAndReplacesAndLeavesNothingElse)
{
    ReplaceFile(m_cFiles, In(L"a.sif"), "old");
    EXPECT_EQ(m_cFiles.ReadAll(In(L"a.sif")), "old");
    ReplaceFile(m_cFiles, In(L"a.sif"), "new");
    EXPECT_EQ(m_cFiles.ReadAll(In(L"a.sif")), "new");
    EXPECT_EQ(m_cPorts->EntriesInRoot(), 1u);
}

TEST_P(ReplaceFileOn, AfterAnyFailingStepTheFileIsOldOrNew)
{
    int lFailures = 0;
    for (int lGood = 0;; ++lGood)
    {
        m_cFiles.WriteNew(In(L"a.sif"), "old content");
        FailingFiles cFailing(m_cFiles, lGood, error::DeviceIo);
        const std::int32_t lNumber =
            NumberRaisedBy([&] { ReplaceFile(cFailing, In(L"a.sif"), "the new content"); });
        EXPECT_EQ(lNumber, cFailing.bFailed ? error::DeviceIo : 0);
        EXPECT_EQ(m_cFiles.ReadAll(In(L"a.sif")), lNumber != 0 ? "old content" : "the new content");
        EXPECT_EQ(m_cPorts->EntriesInRoot(), 1u) << "after " << lGood << " good steps";
        if (!cFailing.bFailed)
            break;
        ++lFailures;
    }
    EXPECT_EQ(lFailures, 4); // create, write, flush, rename
}

TEST_P(ReplaceFileOn, AFailureLeavesNoFileWhereThereWasNone)
{
    for (int lGood = 0; lGood < 4; ++lGood)
    {
        FailingFiles cFailing(m_cFiles, lGood);
        EXPECT_EQ(NumberRaisedBy([&] { ReplaceFile(cFailing, In(L"a.sif"), "new"); }), error::DiskFull);
        EXPECT_EQ(m_cPorts->EntriesInRoot(), 0u) << "after " << lGood << " good steps";
    }
}

TEST_P(ReplaceFileOn, ReportsTheFirstFailureWhenDeletingFailsToo)
{
    m_cFiles.WriteNew(In(L"a.sif"), "old");
    FailingFiles cFailing(m_cFiles, 1, error::DiskFull);
    cFailing.bStaysBroken = true;
    EXPECT_EQ(NumberRaisedBy([&] { ReplaceFile(cFailing, In(L"a.sif"), "new"); }), error::DiskFull);
    EXPECT_EQ(m_cFiles.ReadAll(In(L"a.sif")), "old");
    EXPECT_EQ(NumberRaisedBy([&] { ReplaceFile(m_cFiles, In(L"Sub\\a.sif"), "x"); }), error::PathNotFound);
}

TEST(ReplaceFile, TemporaryFileHasAShortNameInTheSameFolder)
{
    MemoryFiles cFiles{{L"C:\\Radio\\a.sif", "old"}};
    cFiles.ClearOperations();
    ReplaceFile(cFiles, L"C:\\Radio\\a.sif", "new");
    ASSERT_EQ(cFiles.Operations().size(), 2u);
    const std::wstring sWrite = cFiles.Operations()[0];
    const std::wstring sTemporary = sWrite.substr(sWrite.find(L' ') + 1);
    EXPECT_EQ(sWrite, L"WriteNew " + sTemporary);
    EXPECT_EQ(sTemporary.substr(0, 9), L"C:\\Radio\\");
    EXPECT_TRUE(IsTemporaryName(sTemporary.substr(9))) << sTemporary;
    EXPECT_EQ(cFiles.Operations()[1], L"Rename " + sTemporary + L" -> C:\\Radio\\a.sif");
}

TEST(ReplaceFile, OnlyItsOwnNamesAreTemporaryOnes)
{
    EXPECT_TRUE(IsTemporaryName(L"~0123abcd.tmp"));
    for (const wchar_t* sName :
         {L"", L"~.tmp", L"0123abcd.tmp", L"~0123abcd.sif", L"~0123ABCD.tmp", L"~0123abcg.tmp",
          L"~0123abcd0.tmp", L"~0123abc.tmp", L"~0123abcd.tmp.bak", L"~$Report.tmp"})
        EXPECT_FALSE(IsTemporaryName(sName)) << sName;
}

TEST(ReplaceFile, WorksOnANameWithoutAFolder)
{
    MemoryFiles cFiles{{L"a.sif", "old"}};
    ReplaceFile(cFiles, L"a.sif", "new");
    EXPECT_EQ(cFiles.Get(L"a.sif"), "new");
    EXPECT_EQ(cFiles.Paths(), std::vector<std::wstring>{L"a.sif"});
}

// Says that the first three names are taken, and records them.
class CrowdedFiles final : public test::ForwardingFiles
{
public:
    using ForwardingFiles::ForwardingFiles;

    Presence PresenceOf(const std::wstring& sPath) const override
    {
        if (sTaken.size() >= 3)
            return m_cInner.PresenceOf(sPath);
        sTaken.push_back(sPath);
        return Presence::Present;
    }

    mutable std::vector<std::wstring> sTaken;
};

TEST(ReplaceFile, NeverTakesANameThatIsTaken)
{
    MemoryFiles cMemory;
    CrowdedFiles cFiles(cMemory);
    ReplaceFile(cFiles, L"C:\\a.sif", "new");
    ASSERT_EQ(cFiles.sTaken.size(), 3u);
    for (const std::wstring& sTaken : cFiles.sTaken)
        EXPECT_NE(cMemory.Operations()[0], L"WriteNew " + sTaken);
    EXPECT_EQ(cMemory.Get(L"C:\\a.sif"), "new");
}

TEST(ReplaceFile, AReadOnlyFileIsLeftAsItIs)
{
    MemoryFiles cFiles{{L"C:\\a.sif", "old"}};
    cFiles.SetReadOnly(L"C:\\a.sif");
    EXPECT_EQ(NumberRaisedBy([&] { ReplaceFile(cFiles, L"C:\\a.sif", "new"); }), error::PathFileAccess);
    EXPECT_EQ(cFiles.Get(L"C:\\a.sif"), "old");
    EXPECT_EQ(cFiles.Paths().size(), 1u);
}

} // namespace
} // namespace ravlo
