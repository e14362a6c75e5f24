// SPDX-License-Identifier: MIT
#include "platform/memory/FailingFiles.h"
#include "rotation/RotationFiles.h"
#include "support/EngineTest.h"
#include "support/ForwardingFiles.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace ravlo::test
{
namespace
{

using Lines = std::vector<std::wstring>;

constexpr RotationOptions off{};
constexpr RotationOptions fair{true, false};
constexpr RotationOptions featured{false, true};

std::int32_t NumberRaisedBy(const std::function<void()>& action)
{
    try
    {
        action();
    }
    catch (const RuntimeError& cError)
    {
        return cError.Number();
    }
    return 0;
}

// Files that run something when a stamp is looked at, or report another stamp.
class StampedFiles final : public ForwardingFiles
{
public:
    using ForwardingFiles::ForwardingFiles;

    std::optional<FileStamp> StampOf(const std::wstring& sPath) const override
    {
        std::optional<FileStamp> stamp = m_cInner.StampOf(sPath);
        if (OnStamp && stamp)
            OnStamp(*stamp);
        return stamp;
    }

    std::function<void(FileStamp& stamp)> OnStamp;
};

class RotationFilesTest : public testing::Test
{
protected:
    RotationFilesTest()
    {
        cPorts.cFiles.MakeFolders(L"C:\\Radio\\Scheduler");
        cMod.StoreAppPath(sRadio);
    }
    void PutOptions(const std::string& bytes) { cPorts.cFiles.Put(sOptions, bytes); }
    void PutArtists(const std::string& rows) { cPorts.cFiles.Put(sArtists, "credited,counts_as\r\n" + rows); }
    void RefreshAfter(std::uint32_t lMilliseconds)
    {
        cPorts.cClock.Advance(lMilliseconds);
        cRotation.Refresh();
    }
    Lines Prince() const { return cRotation.Names().Of(L"Prince feat. Cher"); }

    static constexpr const wchar_t* sOptions = L"C:\\Radio\\Scheduler\\Rotation.cfg";
    static constexpr const wchar_t* sArtists = L"C:\\Radio\\Scheduler\\Artists.csv";
    const Lines credit{L"Prince feat. Cher"};
    RadioPorts cPorts;
    StampedFiles cStamped{cPorts.cFiles};
    ModScheduler cMod{cPorts.PortsWith(cStamped)};
    RotationFiles cRotation{cMod};
};

TEST_F(RotationFilesTest, WithoutFilesEverythingIsOffAndNothingIsWritten)
{
    EXPECT_EQ(NumberRaisedBy([&] { cRotation.SetFairRotation(true); }), error::ObjectNotSet);
    cRotation.Serve(sRadio);
    RefreshAfter(5'000);
    cRotation.SetFairRotation(false);
    cRotation.SetFeaturedArtists(false);
    EXPECT_EQ(cRotation.Options(), off);
    EXPECT_TRUE(cRotation.Names().CreditsOnly());
    EXPECT_TRUE(cPorts.cFiles.Operations().empty());
    EXPECT_TRUE(cPorts.LogMessages().empty());
}

TEST_F(RotationFilesTest, FilesAreReadAgainWhenTheirStampChangesOnceASecond)
{
    PutOptions("FeaturedArtists=1\r\n");
    PutArtists("Cher,Sonny\r\nbad\r\n");
    cRotation.Serve(sRadio);
    EXPECT_EQ(cRotation.Options(), featured);
    EXPECT_EQ(Prince(), (Lines{L"Prince feat. Cher", L"Prince", L"Cher", L"Sonny"}));
    EXPECT_EQ(cPorts.LogMessages(), Lines{L"Artists.csv, line 3: 1 field instead of 2"});

    PutOptions("FairRotation=1\r\n");
    PutArtists("Prince feat. Cher,TAFKAP\r\n");
    RefreshAfter(999);
    EXPECT_EQ(cRotation.Options(), featured);
    cPorts.cFiles.ClearOperations();
    RefreshAfter(1);
    EXPECT_EQ(cRotation.Options(), fair);
    EXPECT_EQ(Prince(), (Lines{L"Prince feat. Cher", L"TAFKAP"}));
    const ArtistNames cNames = cRotation.Names();
    RefreshAfter(60'000);
    EXPECT_EQ(cPorts.cFiles.Operations().size(), 2u) << "what has not changed is not read again";
    EXPECT_TRUE(cRotation.Names() == cNames);

    cPorts.cFiles.Delete(sArtists);
    cPorts.cFiles.Delete(sOptions);
    RefreshAfter(1'000);
    EXPECT_EQ(cRotation.Options(), off);
    EXPECT_EQ(Prince(), credit);
    EXPECT_EQ(cPorts.LogMessages().size(), 1u);
}

TEST_F(RotationFilesTest, SetterSavesAtOnceAndKeepsUnknownLines)
{
    PutOptions("# ours\nFairRotation = 0\n");
    PutArtists("Abba,Agnetha\r\n");
    cRotation.Serve(sRadio);
    cRotation.SetFairRotation(true);
    EXPECT_EQ(cPorts.cFiles.Get(sOptions), "# ours\nFairRotation = 1\nFeaturedArtists=0\r\n");
    cRotation.SetFeaturedArtists(true);
    EXPECT_EQ(cRotation.Options(), (RotationOptions{true, true}));
    EXPECT_EQ(cRotation.Names().Of(L"Abba feat. Cher"),
              (Lines{L"Abba feat. Cher", L"Abba", L"Agnetha", L"Cher"}));
    cPorts.cFiles.ClearOperations();
    cRotation.SetFeaturedArtists(true);
    EXPECT_EQ(cPorts.cFiles.Operations(), Lines{std::wstring(L"ReadAll ") + sOptions});
    RefreshAfter(1'000);
    EXPECT_EQ(cRotation.Options(), (RotationOptions{true, true}));
    EXPECT_TRUE(cPorts.LogMessages().empty());
}

TEST_F(RotationFilesTest, OverridesAreInForceAndNeverSaved)
{
    PutOptions("FairRotation=1\r\n");
    cRotation.Serve(sRadio);
    cPorts.cFiles.ClearOperations();
    cRotation.Override({false, true});
    EXPECT_EQ(cRotation.Options(), (RotationOptions{false, true}));
    EXPECT_EQ(Prince(), (Lines{L"Prince feat. Cher", L"Prince", L"Cher"}));
    EXPECT_TRUE(cPorts.cFiles.Operations().empty());
    PutOptions("FeaturedArtists=0\r\n");
    RefreshAfter(1'000);
    cRotation.Serve(sRadio);
    EXPECT_EQ(cRotation.Options(), (RotationOptions{false, true}));
    cRotation.SetFairRotation(false);
    EXPECT_EQ(cPorts.cFiles.Get(sOptions), "FeaturedArtists=0\r\n");
    cRotation.SetFairRotation(true);
    EXPECT_EQ(cPorts.cFiles.Get(sOptions), "FeaturedArtists=0\r\nFairRotation=1\r\n");
    EXPECT_EQ(cRotation.Options(), (RotationOptions{true, true})) << "what is set is in force";
    cRotation.Override({});
    EXPECT_EQ(cRotation.Options(), fair);
    EXPECT_EQ(Prince(), credit);
    cRotation.Override({false, true});
    cRotation.Serve(L"D:\\Other\\");
    EXPECT_EQ(cRotation.Options(), off) << "another station";
}

TEST_F(RotationFilesTest, AStationWhoseFilesCannotBeReadHasNoneOfTheLastOne)
{
    PutOptions("FairRotation=1\r\nFeaturedArtists=1\r\n");
    PutArtists("Prince feat. Cher,TAFKAP\r\n");
    cRotation.Serve(sRadio);
    cPorts.cFiles.SetAway(L"D:\\Other", error::PathNotFound);
    cRotation.Serve(L"D:\\Other\\");
    EXPECT_EQ(cRotation.Options(), off);
    EXPECT_EQ(Prince(), credit);
}

TEST_F(RotationFilesTest, SetterBuildsOnWhatIsInTheFileNow)
{
    cRotation.Serve(sRadio);
    PutOptions("FairRotation=1\r\nNew=7\r\n");
    cRotation.SetFairRotation(true);
    EXPECT_EQ(cPorts.cFiles.Get(sOptions), "FairRotation=1\r\nNew=7\r\n") << "it has the value already";
    EXPECT_EQ(cRotation.Options(), fair);
    cRotation.SetFeaturedArtists(true);
    EXPECT_EQ(cPorts.cFiles.Get(sOptions), "FairRotation=1\r\nNew=7\r\nFeaturedArtists=1\r\n");
}

// A file system that keeps coarse time, and another program that writes as many bytes.
TEST_F(RotationFilesTest, ASetterAndAPopulationIgnoreTheStamp)
{
    cStamped.OnStamp = [](FileStamp& stamp) { stamp.written = 0; };
    PutOptions("FairRotation=0\r\nTheirs=1\r\n");
    PutArtists("Prince feat. Cher,Abba\r\n");
    cRotation.Serve(sRadio);
    PutOptions("FairRotation=1\r\nTheirs=2\r\n");
    PutArtists("Prince feat. Cher,Kiss\r\n");
    RefreshAfter(1'000);
    EXPECT_EQ(cRotation.Options(), off) << "a refresh cannot see it";
    cRotation.Serve(sRadio);
    EXPECT_EQ(cRotation.Options(), fair);
    EXPECT_EQ(Prince(), (Lines{L"Prince feat. Cher", L"Kiss"}));

    PutOptions("FairRotation=0\r\nTheirs=3\r\n");
    cRotation.SetFeaturedArtists(true);
    EXPECT_EQ(cPorts.cFiles.Get(sOptions), "FairRotation=0\r\nTheirs=3\r\nFeaturedArtists=1\r\n");
    EXPECT_EQ(cRotation.Options(), featured);
}

TEST_F(RotationFilesTest, ARefreshReadsAnOlderFileAndOneThatCameBack)
{
    PutOptions("FairRotation=1\r\n");
    cRotation.Serve(sRadio);
    PutOptions("FairRotation=0\r\n");
    cStamped.OnStamp = [](FileStamp& stamp) { stamp.written = -stamp.written; };
    RefreshAfter(1'000);
    EXPECT_EQ(cRotation.Options(), off);

    PutOptions("FairRotation=1\r\n");
    cStamped.OnStamp = [&](FileStamp& stamp) {
        stamp.written = 0;
        cPorts.cFiles.Delete(sOptions);
    };
    RefreshAfter(1'000);
    EXPECT_EQ(cRotation.Options(), off) << "gone after its stamp was taken";
    cStamped.OnStamp = [](FileStamp& stamp) { stamp.written = 0; };
    PutOptions("FairRotation=1\r\n");
    RefreshAfter(1'000);
    EXPECT_EQ(cRotation.Options(), fair);
}

TEST_F(RotationFilesTest, TheTickCountMayStartAgain)
{
    cPorts.cClock.SetTickCount(0xFFFFFF00);
    cRotation.Serve(sRadio);
    PutOptions("FairRotation=1\r\n");
    RefreshAfter(999);
    EXPECT_EQ(cRotation.Options(), off);
    RefreshAfter(1);
    EXPECT_EQ(cRotation.Options(), fair);
}

TEST_F(RotationFilesTest, OnlyAnotherFeaturedArtistsGivesOtherNames)
{
    PutArtists("Prince,TAFKAP\r\n");
    cRotation.Serve(sRadio);
    const ArtistNames cNames = cRotation.Names();
    cRotation.SetFairRotation(true);
    EXPECT_TRUE(cRotation.Names() == cNames);
    cRotation.SetFeaturedArtists(true);
    EXPECT_FALSE(cRotation.Names() == cNames);
}

TEST_F(RotationFilesTest, TwoManagersOfAStationSeeEachOthersChanges)
{
    PutOptions("\xFF");
    RotationFiles cOther(cMod);
    cRotation.Serve(sRadio);
    cOther.Serve(sRadio);
    cRotation.SetFairRotation(true);
    cOther.SetFeaturedArtists(true);
    EXPECT_EQ(cPorts.cFiles.Get(sOptions), "FairRotation=1\r\nFeaturedArtists=1\r\n");
    EXPECT_TRUE(cPorts.cFiles.FileExists(std::wstring(sOptions) + L".bak"));
    EXPECT_FALSE(cPorts.cFiles.FileExists(std::wstring(sOptions) + L".bak2"));
    RefreshAfter(1'000);
    EXPECT_EQ(cRotation.Options(), (RotationOptions{true, true}));
}

TEST_F(RotationFilesTest, DamagedFileIsOffAndKeptBeforeTheFirstWrite)
{
    const std::string damaged = "FairRotation=1\r\n\xFF";
    PutOptions(damaged);
    cRotation.Serve(sRadio);
    EXPECT_EQ(cRotation.Options(), off);
    EXPECT_EQ(cPorts.LogMessages(), Lines{std::wstring(L"Ignored, it is no UTF-8 text: ") + sOptions});
    cRotation.SetFairRotation(true);
    cRotation.SetFairRotation(false);
    EXPECT_EQ(cPorts.cFiles.Get(sOptions), "FairRotation=0\r\nFeaturedArtists=0\r\n");
    EXPECT_EQ(cPorts.cFiles.Get(std::wstring(sOptions) + L".bak"), damaged);
    EXPECT_FALSE(cPorts.cFiles.FileExists(std::wstring(sOptions) + L".bak2"));
}

TEST_F(RotationFilesTest, UnreadableFilesAreOffAndRefuseASetter)
{
    PutOptions("FairRotation=1\r\n");
    PutArtists("Prince feat. Cher,TAFKAP\r\n");
    for (const wchar_t* sFile : {sOptions, sArtists})
        cPorts.cFiles.SetUnreadable(sFile, error::PermissionDenied);
    cRotation.Serve(sRadio);
    RefreshAfter(1'000);
    EXPECT_EQ(cRotation.Options(), off);
    EXPECT_EQ(Prince(), credit);
    for (const bool bOn : {true, false})
        EXPECT_EQ(NumberRaisedBy([&] { cRotation.SetFeaturedArtists(bOn); }), error::PathFileAccess);
    EXPECT_EQ(cPorts.cFiles.Get(sOptions), "FairRotation=1\r\n");
    EXPECT_EQ(cPorts.LogMessages(), (Lines{L"DISPLAYERROR, Scheduler\\Rotation.cfg 70 Permission denied",
                                           L"DISPLAYERROR, Scheduler\\Artists.csv 70 Permission denied"}))
        << "each once";

    cPorts.cFiles.SetUnreadable(sOptions, 0);
    cRotation.SetFeaturedArtists(true);
    EXPECT_EQ(cPorts.cFiles.Get(sOptions), "FairRotation=1\r\nFeaturedArtists=1\r\n");
    cPorts.cFiles.SetUnreadable(sArtists, 0);
    RefreshAfter(1'000);
    EXPECT_EQ(Prince(), (Lines{L"Prince feat. Cher", L"TAFKAP"}));
}

TEST_F(RotationFilesTest, WhatCannotBeReadAgainStaysInForce)
{
    PutOptions("FairRotation=1\r\n");
    PutArtists("Prince feat. Cher,TAFKAP\r\n");
    cRotation.Serve(sRadio);
    PutOptions("");
    PutArtists("");
    const auto setAway = [&](bool bLocked, std::int32_t lAway) {
        cPorts.cFiles.SetLocked(sOptions, bLocked ? -1 : 0);
        cPorts.cFiles.SetLocked(sArtists, bLocked ? -1 : 0);
        cPorts.cFiles.SetAway(L"C:\\Radio\\Scheduler", lAway);
    };
    const int lAttempts = cPorts.cFiles.AttemptsOn(sOptions);
    setAway(true, 0);
    RefreshAfter(1'000);
    EXPECT_EQ(cPorts.cFiles.AttemptsOn(sOptions), lAttempts + 1) << "a refresh does not wait";
    setAway(false, error::PathNotFound);
    RefreshAfter(1'000);
    cRotation.Serve(sRadio);
    EXPECT_EQ(cRotation.Options(), fair);
    EXPECT_EQ(Prince(), (Lines{L"Prince feat. Cher", L"TAFKAP"}));
    EXPECT_EQ(cPorts.LogMessages().size(), 2u);
    setAway(false, 0);
    RefreshAfter(1'000);
    EXPECT_EQ(cRotation.Options(), off);
    EXPECT_EQ(Prince(), credit);
}

TEST_F(RotationFilesTest, AnotherFolderBringsItsOwnFiles)
{
    PutOptions("FeaturedArtists=1\r\n");
    PutArtists("Prince,TAFKAP\r\n");
    cRotation.Serve(sRadio);
    cPorts.cFiles.Put(L"C:\\Jazz\\Scheduler\\Rotation.cfg", "FairRotation=1\r\n");
    cRotation.Serve(L"C:\\Jazz\\");
    EXPECT_EQ(cRotation.Options(), fair);
    EXPECT_EQ(Prince(), credit);
    cRotation.SetFairRotation(false);
    EXPECT_EQ(cPorts.cFiles.Get(sOptions), "FeaturedArtists=1\r\n");
    cPorts.cFiles.SetAway(L"C:\\Radio", error::PathNotFound);
    cRotation.Serve(sRadio);
    EXPECT_EQ(cRotation.Options(), off) << "nothing of another folder's stays in force";
}

TEST_F(RotationFilesTest, FailureAtAnyStepOfASaveChangesNothing)
{
    for (const std::string before : {"FairRotation=0\r\nX\r\n", "FairRotation=1\r\n\xFF"})
        for (int lGood = 0;; ++lGood)
        {
            SCOPED_TRACE(testing::PrintToString(before) + ", good steps: " + std::to_string(lGood));
            MemoryPorts cDisk;
            cDisk.cFiles.Put(sOptions, before);
            FailingFiles cFailing(cDisk.cFiles, lGood);
            cFailing.bCountReads = cFailing.bCountLooks = true;
            ModScheduler cOther(cDisk.PortsWith(cFailing));
            RotationFiles cFiles(cOther);
            cFailing.Arm(1'000);
            cFiles.Serve(sRadio);
            cFailing.Arm(lGood);
            const bool bSaved = NumberRaisedBy([&] { cFiles.SetFairRotation(true); }) == 0;
            EXPECT_EQ(cFiles.Options(), bSaved ? fair : off);
            const bool bOld = cDisk.cFiles.FileExists(sOptions) && cDisk.cFiles.Get(sOptions) == before;
            EXPECT_EQ(bOld, !bSaved);
            if (!cFailing.bFailed)
                break;
        }
}

} // namespace
} // namespace ravlo::test
