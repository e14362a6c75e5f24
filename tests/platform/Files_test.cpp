// SPDX-License-Identifier: MIT
// What every implementation of Files must do alike.
#include "platform/FilesFixtures.h"
#include "platform/StationMarker.h"

#include <chrono>
#include <functional>

namespace ravlo
{
namespace
{

using FilesContract = FilesTest;

INSTANTIATE_TEST_SUITE_P(Every, FilesContract, ::testing::ValuesIn(AllFilesKinds()),
                         [](const auto& kind) { return std::string(kind.param.sName); });

std::string AllBytes()
{
    std::string bytes;
    for (int i = 0; i < 256; ++i)
        bytes += static_cast<char>(i);
    return bytes;
}

TEST_P(FilesContract, WrittenBytesAreReadBackAsTheyWere)
{
    for (const std::string& bytes :
         {std::string(), std::string("x"), AllBytes(), std::string("a\r\nb\n\x1A")})
    {
        m_cFiles.WriteNew(In(L"a.sif"), bytes);
        EXPECT_EQ(m_cFiles.ReadAll(In(L"a.sif")), bytes);
    }
    const std::string large(3'000'000, 'r');
    m_cFiles.WriteNew(In(L"a.sif"), large);
    EXPECT_TRUE(m_cFiles.ReadAll(In(L"a.sif")) == large);
    m_cFiles.WriteNew(In(L"a.sif"), "new");
    EXPECT_EQ(m_cFiles.ReadAll(In(L"a.sif")), "new") << "writing empties the old content first";
}

TEST_P(FilesContract, PresenceTellsFilesFromFoldersAndFromNothing)
{
    m_cFiles.WriteNew(In(L"a.sif"), "");
    m_cFiles.CreateFolder(In(L"Sub"));
    EXPECT_EQ(m_cFiles.PresenceOf(In(L"a.sif")), Presence::Present);
    EXPECT_TRUE(m_cFiles.FileExists(In(L"a.sif")));
    for (const wchar_t* sName : {L"Sub", L"Sub\\"})
    {
        EXPECT_EQ(m_cFiles.PresenceOfFolder(In(sName)), Presence::Present);
        EXPECT_TRUE(m_cFiles.FolderExists(In(sName)));
    }
    for (const std::wstring& sPath : {In(L"b.sif"), In(L"Sub"), In(L"Sub\\a.sif"), In(L"Other\\Deep\\a.sif"),
                                      In(L"a.sif\\b.sif"), std::wstring(), In(std::wstring(300, L'a'))})
    {
        EXPECT_EQ(m_cFiles.PresenceOf(sPath), Presence::Absent) << sPath;
        EXPECT_FALSE(m_cFiles.FileExists(sPath)) << sPath;
    }
    for (const wchar_t* sName : {L"a.sif", L"b", L"Other\\Deep", L"a.sif\\b"})
    {
        EXPECT_EQ(m_cFiles.PresenceOfFolder(In(sName)), Presence::Absent) << sName;
        EXPECT_FALSE(m_cFiles.FolderExists(In(sName))) << sName;
    }
}

TEST_P(FilesContract, AFolderListsItsFilesWithTheirAge)
{
    EXPECT_TRUE(m_cFiles.FilesIn(m_cPorts->Root()).empty());
    m_cFiles.WriteNew(In(L"\u00FCber.sif"), "x");
    m_cFiles.CreateFolder(In(L"Sub"));
    m_cFiles.WriteNew(In(L"Sub\\b.sif"), "x");
    const std::vector<FileEntry> colFiles = m_cFiles.FilesIn(m_cPorts->Root());
    ASSERT_EQ(colFiles.size(), 1u);
    EXPECT_EQ(colFiles[0].sName, L"\u00FCber.sif");
    EXPECT_LE(std::chrono::abs(colFiles[0].lAge), std::chrono::minutes(10));
    EXPECT_EQ(m_cFiles.FilesIn(m_cPorts->Root() + L"\\").size(), 1u);
    EXPECT_EQ(NumberRaisedBy([&] { m_cFiles.FilesIn(In(L"Other")); }), error::PathNotFound);
}

TEST_P(FilesContract, StampTellsOneContentOfAFileFromAnother)
{
    m_cFiles.CreateFolder(In(L"Sub"));
    for (const wchar_t* sName : {L"a.cfg", L"Sub", L"Sub\\a.cfg", L"Other\\a.cfg", L""})
        EXPECT_EQ(m_cFiles.StampOf(In(sName)), std::nullopt) << sName;
    const auto stampAfter = [&](const std::function<void()>& write) {
        write();
        const std::optional<FileStamp> stamp = m_cFiles.StampOf(In(L"a.cfg"));
        m_cFiles.ReadAll(In(L"a.cfg"));
        m_cFiles.WriteNew(In(L"b.cfg"), "x");
        EXPECT_EQ(m_cFiles.StampOf(In(L"a.cfg")), stamp);
        return stamp.value();
    };
    const FileStamp first = stampAfter([&] { m_cFiles.WriteNew(In(L"a.cfg"), "1"); });
    FileStamp second = first;
    for (int i = 0; i < 10'000 && second == first; ++i) // until the file system's clock has moved on
        second = stampAfter([&] { m_cFiles.WriteNew(In(L"a.cfg"), "2"); });
    const FileStamp third = stampAfter([&] { m_cFiles.Append(In(L"a.cfg"), "3"); });
    const FileStamp fourth = stampAfter([&] { ReplaceFile(m_cFiles, In(L"a.cfg"), "456"); });
    EXPECT_TRUE(second != first && third != second && fourth != third);
}

TEST_P(FilesContract, AFileIsHeldByOneOnlyAndKeepsItsContent)
{
    std::unique_ptr<HeldFile> cHeld = m_cFiles.HoldOpen(In(L"a.lock"));
    ASSERT_TRUE(cHeld);
    EXPECT_TRUE(m_cFiles.FileExists(In(L"a.lock")));
    EXPECT_FALSE(m_cFiles.HoldOpen(In(L"a.lock")));
    EXPECT_TRUE(m_cFiles.HoldOpen(In(L"b.lock")));
    EXPECT_EQ(m_cFiles.ReadAll(In(L"a.lock")), "");
    cHeld = nullptr;
    EXPECT_TRUE(m_cFiles.FileExists(In(L"a.lock")));
    EXPECT_TRUE(m_cFiles.HoldOpen(In(L"a.lock")));
    EXPECT_EQ(NumberRaisedBy([&] { m_cFiles.HoldOpen(In(L"Sub\\a.lock")); }), error::PathNotFound);
    m_cFiles.WriteNew(In(L"a.lock"), "kept");
    EXPECT_TRUE(m_cFiles.HoldOpen(In(L"a.lock")));
    EXPECT_EQ(m_cFiles.ReadAll(In(L"a.lock")), "kept");
}

TEST_P(FilesContract, AStationIsInUseWhileItIsMarked)
{
    const std::wstring sStation = m_cPorts->Root();
    EXPECT_FALSE(IsStationInUse(m_cFiles, sStation));
    EXPECT_EQ(NumberRaisedBy([&] { MarkStation(m_cFiles, sStation); }), error::PathNotFound);
    m_cFiles.CreateFolder(In(L"Scheduler"));
    EXPECT_FALSE(IsStationInUse(m_cFiles, sStation));
    EXPECT_TRUE(m_cFiles.FilesIn(In(L"Scheduler")).empty()) << "asking creates nothing";
    std::unique_ptr<HeldFile> cMark = MarkStation(m_cFiles, sStation + L"\\");
    ASSERT_TRUE(cMark);
    EXPECT_TRUE(IsStationInUse(m_cFiles, sStation));
    EXPECT_FALSE(MarkStation(m_cFiles, sStation));
    cMark = nullptr;
    EXPECT_FALSE(IsStationInUse(m_cFiles, sStation));
    EXPECT_TRUE(MarkStation(m_cFiles, sStation));
}

TEST_P(FilesContract, NamesAreTakenLiterally)
{
    m_cFiles.WriteNew(In(L"a1.sif"), "kept");
    for (const wchar_t* sPattern : {L"a?.sif", L"a*.sif", L"*", L"a1.*", L"?1.sif", L"a1.s<", L"a1\".sif"})
    {
        EXPECT_FALSE(m_cFiles.FileExists(In(sPattern))) << sPattern;
        EXPECT_FALSE(m_cFiles.FolderExists(In(sPattern))) << sPattern;
        EXPECT_NE(NumberRaisedBy([&] { m_cFiles.ReadAll(In(sPattern)); }), 0) << sPattern;
        EXPECT_NE(NumberRaisedBy([&] { m_cFiles.Delete(In(sPattern)); }), 0) << sPattern;
        EXPECT_NE(NumberRaisedBy([&] { m_cFiles.Rename(In(sPattern), In(L"b.sif")); }), 0) << sPattern;
    }
    EXPECT_EQ(m_cFiles.ReadAll(In(L"a1.sif")), "kept");
    EXPECT_EQ(m_cPorts->EntriesInRoot(), 1u);
}

TEST_P(FilesContract, NamesMayContainDotsBlanksAndAnyLetter)
{
    for (const wchar_t* sName : {L"R.E.M..sif", L"..a.sif", L"Top 40 Hits.sif", L"\u00FCber \u20AC.sif",
                                 L"\u4E2D\u6587.sif", L"\U0001F3B5.sif", L"[a]{b}(c)'&%$#@!~`^+=,;.sif"})
    {
        m_cFiles.WriteNew(In(sName), "x");
        EXPECT_TRUE(m_cFiles.FileExists(In(sName))) << sName;
        EXPECT_EQ(m_cFiles.ReadAll(In(sName)), "x") << sName;
        m_cFiles.Delete(In(sName));
        EXPECT_FALSE(m_cFiles.FileExists(In(sName))) << sName;
    }
}

TEST_P(FilesContract, PathsMayBeLongerThanTheClassicLimit)
{
    std::wstring sFolder = m_cPorts->Root();
    for (int i = 0; i < 4; ++i)
    {
        sFolder += L"\\" + std::wstring(100, static_cast<wchar_t>(L'a' + i));
        m_cFiles.CreateFolder(sFolder);
        EXPECT_TRUE(m_cFiles.FolderExists(sFolder));
    }
    const std::wstring sPath = sFolder + L"\\a.sif";
    m_cFiles.WriteNew(sPath, "old");
    ReplaceFile(m_cFiles, sPath, "far down");
    m_cFiles.Append(sPath, "!");
    EXPECT_EQ(m_cFiles.ReadAll(sPath), "far down!");
    m_cFiles.Delete(sPath);
    EXPECT_FALSE(m_cFiles.FileExists(sPath));
}

TEST_P(FilesContract, CreatingAFolderMakesItsLastComponentOnly)
{
    EXPECT_EQ(NumberRaisedBy([&] { m_cFiles.CreateFolder(In(L"A\\B")); }), error::PathNotFound);
    EXPECT_FALSE(m_cFiles.FolderExists(In(L"A")));
    m_cFiles.CreateFolder(In(L"A"));
    m_cFiles.CreateFolder(In(L"A\\B"));
    EXPECT_TRUE(m_cFiles.FolderExists(In(L"A\\B")));
    m_cFiles.WriteNew(In(L"b"), "kept");
    for (const wchar_t* sTaken : {L"A", L"b"})
        EXPECT_EQ(NumberRaisedBy([&] { m_cFiles.CreateFolder(In(sTaken)); }), error::FileAlreadyExists);
    EXPECT_EQ(m_cFiles.ReadAll(In(L"b")), "kept");
}

TEST_P(FilesContract, AMissingFileRaises53AndAMissingFolder76)
{
    EXPECT_EQ(NumberRaisedBy([&] { m_cFiles.ReadAll(In(L"a.sif")); }), error::FileNotFound);
    EXPECT_EQ(NumberRaisedBy([&] { m_cFiles.Delete(In(L"a.sif")); }), error::FileNotFound);
    EXPECT_EQ(NumberRaisedBy([&] { m_cFiles.Rename(In(L"a.sif"), In(L"b.sif")); }), error::FileNotFound);
    EXPECT_EQ(NumberRaisedBy([&] { m_cFiles.ReadAll(In(L"Sub\\a.sif")); }), error::PathNotFound);
    EXPECT_EQ(NumberRaisedBy([&] { m_cFiles.Delete(In(L"Sub\\a.sif")); }), error::PathNotFound);
    EXPECT_EQ(NumberRaisedBy([&] { m_cFiles.WriteNew(In(L"Sub\\a.sif"), "x"); }), error::PathNotFound);
    EXPECT_EQ(NumberRaisedBy([&] { m_cFiles.Append(In(L"Sub\\a.sif"), "x"); }), error::PathNotFound);
    EXPECT_EQ(m_cPorts->EntriesInRoot(), 0u);
    m_cFiles.WriteNew(In(L"a"), "x"); // a file is no folder
    EXPECT_EQ(NumberRaisedBy([&] { m_cFiles.ReadAll(In(L"a\\b")); }), error::PathNotFound);
    EXPECT_EQ(NumberRaisedBy([&] { m_cFiles.WriteNew(In(L"a\\b"), "x"); }), error::PathNotFound);
    EXPECT_EQ(NumberRaisedBy([&] { m_cFiles.CreateFolder(In(L"a\\b")); }), error::PathNotFound);
}

TEST_P(FilesContract, AFolderInPlaceOfAFileRaises75)
{
    m_cFiles.CreateFolder(In(L"Sub"));
    m_cFiles.WriteNew(In(L"a.sif"), "kept");
    EXPECT_EQ(NumberRaisedBy([&] { m_cFiles.ReadAll(In(L"Sub")); }), error::PathFileAccess);
    EXPECT_EQ(NumberRaisedBy([&] { m_cFiles.WriteNew(In(L"Sub"), "x"); }), error::PathFileAccess);
    EXPECT_EQ(NumberRaisedBy([&] { m_cFiles.Append(In(L"Sub"), "x"); }), error::PathFileAccess);
    EXPECT_EQ(NumberRaisedBy([&] { m_cFiles.Delete(In(L"Sub")); }), error::PathFileAccess);
    EXPECT_EQ(NumberRaisedBy([&] { m_cFiles.Rename(In(L"a.sif"), In(L"Sub")); }), error::PathFileAccess);
    EXPECT_EQ(NumberRaisedBy([&] { m_cFiles.Rename(In(L"Sub"), In(L"Other")); }), error::PathFileAccess);
    EXPECT_TRUE(m_cFiles.FolderExists(In(L"Sub")));
    EXPECT_EQ(m_cFiles.ReadAll(In(L"a.sif")), "kept");
}

TEST_P(FilesContract, AppendingCreatesTheFileAndAddsAtItsEnd)
{
    m_cFiles.Append(In(L"a.log"), "one\r\n");
    m_cFiles.Append(In(L"a.log"), "");
    m_cFiles.Append(In(L"a.log"), AllBytes());
    EXPECT_EQ(m_cFiles.ReadAll(In(L"a.log")), "one\r\n" + AllBytes());
}

TEST_P(FilesContract, RenamingReplacesAndDeletingRemovesThatFileOnly)
{
    m_cFiles.WriteNew(In(L"a.sif"), "new");
    m_cFiles.Rename(In(L"a.sif"), In(L"b.sif"));
    EXPECT_FALSE(m_cFiles.FileExists(In(L"a.sif")));
    EXPECT_EQ(m_cFiles.ReadAll(In(L"b.sif")), "new");
    m_cFiles.WriteNew(In(L"c.sif"), "a longer old one");
    m_cFiles.Rename(In(L"b.sif"), In(L"c.sif"));
    EXPECT_EQ(m_cFiles.ReadAll(In(L"c.sif")), "new");
    EXPECT_EQ(m_cPorts->EntriesInRoot(), 1u);
    m_cFiles.WriteNew(In(L"a.sif"), "a");
    m_cFiles.Delete(In(L"a.sif"));
    EXPECT_FALSE(m_cFiles.FileExists(In(L"a.sif")));
    EXPECT_EQ(m_cFiles.ReadAll(In(L"c.sif")), "new");
}

TEST_P(FilesContract, AnEmptyPathIsNoName)
{
    EXPECT_NE(NumberRaisedBy([&] { m_cFiles.ReadAll(L""); }), 0);
    EXPECT_NE(NumberRaisedBy([&] { m_cFiles.WriteNew(L"", "x"); }), 0);
    EXPECT_NE(NumberRaisedBy([&] { m_cFiles.Delete(L""); }), 0);
}

TEST_P(FilesContract, TheLibraryIsInAFolder)
{
    const std::wstring sFolder = m_cFiles.LibraryFolder();
    EXPECT_TRUE(m_cFiles.FolderExists(sFolder)) << sFolder;
    ASSERT_FALSE(sFolder.empty());
    EXPECT_NE(sFolder.back(), L'\\');
    EXPECT_EQ(sFolder.find(L'/'), std::wstring::npos);
}

TEST_P(FilesContract, NamesIgnoreCaseWhereTheSystemDoes)
{
    m_cFiles.WriteNew(In(L"Jazz \u00C4.sif"), "x");
    EXPECT_EQ(m_cFiles.FileExists(In(L"JAZZ \u00E4.SIF")), GetParam().bIgnoresCase);
}

TEST_P(FilesContract, NamesThatWindowsRefusesRaise52OnIt)
{
    if (!GetParam().bIgnoresCase)
        GTEST_SKIP() << "every character except the separator is allowed";
    for (const wchar_t* sName : {L"a?b", L"a*b", L"a<b", L"a>b", L"a|b", L"a\"b", L"a:b", L"a:b.sif",
                                 L"AUX.txt", L"nul", L"Com1.sif"})
    {
        EXPECT_EQ(NumberRaisedBy([&] { m_cFiles.WriteNew(In(sName), "x"); }), error::BadFileName) << sName;
        EXPECT_EQ(NumberRaisedBy([&] { m_cFiles.Append(In(sName), "x"); }), error::BadFileName) << sName;
        EXPECT_EQ(NumberRaisedBy([&] { m_cFiles.CreateFolder(In(sName)); }), error::BadFileName) << sName;
        EXPECT_FALSE(m_cFiles.FileExists(In(sName))) << sName;
    }
    EXPECT_EQ(m_cPorts->EntriesInRoot(), 0u);
}

} // namespace
} // namespace ravlo
