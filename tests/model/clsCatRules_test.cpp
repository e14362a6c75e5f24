// SPDX-License-Identifier: MIT
#include "model/clsCatRules.h"

#include "model/clsCat.h"
#include "platform/memory/FailingFiles.h"
#include "support/EngineTest.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <vector>

namespace ravlo::test
{
namespace
{

using namespace std::string_literals;
using Boxes = std::vector<ShownBox>;
using Lines = std::vector<std::wstring>;

// A rules record as it lies on the disk, put together by hand: two separations, the ignore field, the key of
// 55 bytes, the album separation.
std::string Record(const std::string& artist, const std::string& title, const std::string& ignore,
                   const std::string& catId, const std::string& album)
{
    return artist + title + ignore + catId + std::string(55 - catId.size(), ' ') + album;
}

const std::string notSet = "\xFF\xFF\xFF\xFF";
const std::string yes = "\xFF\xFF";
const std::string no = "\0\0"s;

class RulesTest : public testing::Test
{
protected:
    RulesTest()
    {
        cWorld.cFiles.MakeFolders(L"C:\\Radio\\Scheduler\\Rules");
        cMod.StoreAppPath(L"C:\\Radio");
        cMod.SetGlobalArtistSepMins(71);
        cMod.SetGlobalTitleSepMins(72);
        cMod.SetGlobalAlbumSepMins(73);
        cWorld.cFiles.ClearOperations();
    }

    static std::wstring PathOf(const std::wstring& sName)
    {
        return L"C:\\Radio\\Scheduler\\Rules\\" + sName + L".rls";
    }

    std::unique_ptr<clsCatRules> NewRules(const std::wstring& sCatID = L"")
    {
        auto cRules = std::make_unique<clsCatRules>(cMod);
        cRules->SetCatID(sCatID);
        return cRules;
    }
    std::optional<std::string> FileOf(const std::wstring& sName) const
    {
        if (!cWorld.cFiles.FileExists(PathOf(sName)))
            return std::nullopt;
        return cWorld.cFiles.Get(PathOf(sName));
    }

    RadioWorld cWorld;
    ModScheduler cMod{cWorld.AllPorts()};
    std::vector<ShownBox>& boxes = cWorld.cMessages.Boxes;
};

// ---- values

TEST_F(RulesTest, ANewObjectHoldsZeroFalseAndNoKey)
{
    const auto cRules = NewRules();
    EXPECT_EQ(cRules->ArtistSepMins(), 0);
    EXPECT_EQ(cRules->TitleSepMins(), 0);
    EXPECT_EQ(cRules->AlbumSepMins(), 0);
    EXPECT_FALSE(cRules->IgnoreRules());
    EXPECT_EQ(cRules->CatID(), L"");
}

TEST_F(RulesTest, WhatAFileDoesNotSetFallsBackToTheGlobalRuleExceptTheAlbum)
{
    const auto cRules = NewRules(L"Pop\u00AC\u00AC\u00AC2");
    EXPECT_EQ(cRules->ArtistSepMins(), 71);
    EXPECT_EQ(cRules->TitleSepMins(), 72);
    EXPECT_EQ(cRules->AlbumSepMins(), -1) << "on purpose: whoever asks applies the global album rule";
    cMod.SetGlobalArtistSepMins(5);
    EXPECT_EQ(cRules->ArtistSepMins(), 5) << "as it is at the moment";
}

TEST_F(RulesTest, ZeroIsAValueOfItsOwn)
{
    const auto cRules = NewRules(L"Pop");
    cRules->SetArtistSepMins(0);
    cRules->SetTitleSepMins(0);
    cRules->SetAlbumSepMins(0);
    EXPECT_EQ(cRules->ArtistSepMins(), 0);
    EXPECT_EQ(cRules->TitleSepMins(), 0);
    EXPECT_EQ(cRules->AlbumSepMins(), 0);
    EXPECT_EQ(FileOf(L"Pop"), Record("\0\0\0\0"s, "\0\0\0\0"s, no, "Pop", "\0\0\0\0"s));
}

TEST_F(RulesTest, ANegativeArtistOrTitleSeparationIsIgnored)
{
    const auto cRules = NewRules(L"Pop");
    cRules->SetArtistSepMins(10);
    cRules->SetTitleSepMins(20);
    cWorld.cFiles.ClearOperations();
    cRules->SetArtistSepMins(-5);
    cRules->SetTitleSepMins(std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(cRules->ArtistSepMins(), 10);
    EXPECT_EQ(cRules->TitleSepMins(), 20);
    EXPECT_TRUE(cWorld.cFiles.Operations().empty()) << "nor is the file touched";
}

TEST_F(RulesTest, ANegativeAlbumSeparationIsStoredAsItsAbsoluteValueAndSaved)
{
    const auto cRules = NewRules(L"Pop");
    cRules->SetAlbumSepMins(-5);
    EXPECT_EQ(cRules->AlbumSepMins(), 5);
    EXPECT_EQ(FileOf(L"Pop"), Record(notSet, notSet, no, "Pop", "\5\0\0\0"s));
    cRules->SetAlbumSepMins(-20);
    EXPECT_EQ(cRules->AlbumSepMins(), 20);
    cRules->SetAlbumSepMins(7);
    EXPECT_EQ(cRules->AlbumSepMins(), 7);
}

TEST_F(RulesTest, AnAlbumSeparationWithoutAbsoluteValueOverflowsAndChangesNothing)
{
    const auto cRules = NewRules(L"Pop");
    cRules->SetAlbumSepMins(7);
    try
    {
        cRules->SetAlbumSepMins(std::numeric_limits<std::int32_t>::min());
        FAIL() << "no error";
    }
    catch (const RuntimeError& cError)
    {
        EXPECT_EQ(cError.Number(), error::Overflow);
    }
    EXPECT_EQ(cRules->AlbumSepMins(), 7);
}

TEST_F(RulesTest, EverySetterRewritesTheFile)
{
    const auto cRules = NewRules(L"Pop\u00AC\u00AC\u00AC2");
    EXPECT_EQ(FileOf(L"Pop\u00AC\u00AC\u00AC2"), std::nullopt) << "setting the key writes nothing";
    const std::string id = "Pop\xAC\xAC\xAC"
                           "2";
    cRules->SetArtistSepMins(0x01020304);
    EXPECT_EQ(FileOf(cRules->CatID()), Record("\4\3\2\1", notSet, no, id, notSet));
    cRules->SetTitleSepMins(300);
    EXPECT_EQ(FileOf(cRules->CatID()), Record("\4\3\2\1", "\x2C\1\0\0"s, no, id, notSet));
    cRules->SetIgnoreRules(true);
    EXPECT_EQ(FileOf(cRules->CatID()), Record("\4\3\2\1", "\x2C\1\0\0"s, yes, id, notSet));
    cRules->SetAlbumSepMins(std::numeric_limits<std::int32_t>::max());
    EXPECT_EQ(FileOf(cRules->CatID()), Record("\4\3\2\1", "\x2C\1\0\0"s, yes, id, "\xFF\xFF\xFF\x7F"));
    cRules->SetIgnoreRules(false);
    EXPECT_EQ(FileOf(cRules->CatID()), Record("\4\3\2\1", "\x2C\1\0\0"s, no, id, "\xFF\xFF\xFF\x7F"));
    EXPECT_EQ(FileOf(cRules->CatID())->size(), 69u);
}

TEST_F(RulesTest, TheEditorsValuesAreStoredInOneSave)
{
    const auto cRules = NewRules(L"Pop");
    cWorld.cFiles.ClearOperations();
    EXPECT_TRUE(cRules->Apply({1, 2, 3, true}));
    EXPECT_EQ(cWorld.cFiles.Operations().size(), 2u) << "one new file, one rename";
    EXPECT_EQ(FileOf(L"Pop"), Record("\1\0\0\0"s, "\2\0\0\0"s, yes, "Pop", "\3\0\0\0"s));
    EXPECT_TRUE(cRules->Apply({.lArtist = std::nullopt, .lTitle = 5, .lAlbum = -1, .bIgnore = std::nullopt}));
    EXPECT_EQ(FileOf(L"Pop"), Record("\1\0\0\0"s, "\5\0\0\0"s, yes, "Pop", notSet)) << "-1 unsets the album";
}

// ---- reading

TEST_F(RulesTest, SettingTheKeyLoadsItsFile)
{
    cWorld.cFiles.Put(PathOf(L"Pop\u00AC\u00AC\u00AC2"), Record("\1\0\0\0"s, "\2\0\0\0"s, yes,
                                                                "Pop\xAC\xAC\xAC"
                                                                "2",
                                                                "\3\0\0\0"s));
    const auto cRules = NewRules(L"Pop\u00AC\u00AC\u00AC2");
    EXPECT_EQ(cRules->ArtistSepMins(), 1);
    EXPECT_EQ(cRules->TitleSepMins(), 2);
    EXPECT_EQ(cRules->AlbumSepMins(), 3);
    EXPECT_TRUE(cRules->IgnoreRules());
    EXPECT_EQ(cRules->CatID(), L"Pop\u00AC\u00AC\u00AC2");
}

TEST_F(RulesTest, ANegativeValueOnDiskReadsAsNotSet)
{
    cWorld.cFiles.Put(PathOf(L"Pop"),
                      Record("\xF9\xFF\xFF\xFF", "\0\0\0\x80"s, no, "Pop", "\xFE\xFF\xFF\xFF"));
    const auto cRules = NewRules(L"Pop");
    EXPECT_EQ(cRules->ArtistSepMins(), 71);
    EXPECT_EQ(cRules->TitleSepMins(), 72);
    EXPECT_EQ(cRules->AlbumSepMins(), -1);
    EXPECT_TRUE(cRules->SaveRules());
    EXPECT_EQ(FileOf(L"Pop"), Record(notSet, notSet, no, "Pop", notSet));
}

TEST_F(RulesTest, AnyNonzeroIgnoreFieldIsTrueAndIsWrittenAsTheUsualOne)
{
    for (const std::string& ignore : {"\1\0"s, "\0\1"s, "\0\x80"s, "\xFE\xFF"s})
    {
        cWorld.cFiles.Put(PathOf(L"Pop"), Record(notSet, notSet, ignore, "Pop", notSet));
        const auto cRules = NewRules(L"Pop");
        EXPECT_TRUE(cRules->IgnoreRules());
        cRules->SaveRules();
        EXPECT_EQ(FileOf(L"Pop"), Record(notSet, notSet, yes, "Pop", notSet));
    }
}

TEST_F(RulesTest, TheKeyAskedForHoldsWhateverTheFileSays)
{
    cWorld.cFiles.Put(PathOf(L"Pop"), Record(notSet, notSet, no, "Rock", notSet));
    const auto cRules = NewRules(L"Pop");
    EXPECT_EQ(cRules->CatID(), L"Pop");
}

TEST_F(RulesTest, BytesAfterTheRecordAreNotLookedAt)
{
    cWorld.cFiles.Put(PathOf(L"Pop"), Record("\1\0\0\0"s, notSet, no, "Pop", notSet) + "more");
    EXPECT_EQ(NewRules(L"Pop")->ArtistSepMins(), 1);
    EXPECT_TRUE(boxes.empty());
}

TEST_F(RulesTest, AMissingFileIsNoErrorAndKeepsIgnoreRules)
{
    const auto cRules = NewRules(L"Pop");
    cRules->SetIgnoreRules(true);
    cRules->SetArtistSepMins(5);
    cRules->SetCatID(L"Rock");
    EXPECT_EQ(cRules->ArtistSepMins(), 71);
    EXPECT_EQ(cRules->AlbumSepMins(), -1);
    EXPECT_TRUE(cRules->IgnoreRules());
    EXPECT_TRUE(boxes.empty());
}

TEST_F(RulesTest, AnEmptyKeyIsIgnored)
{
    const auto cRules = NewRules(L"Pop");
    cRules->SetArtistSepMins(5);
    cRules->SetCatID(L"");
    EXPECT_EQ(cRules->CatID(), L"Pop");
    EXPECT_EQ(cRules->ArtistSepMins(), 5);
}

TEST_F(RulesTest, ASecondKeyRebindsTheObject)
{
    cWorld.cFiles.Put(PathOf(L"Rock"), Record("\7\0\0\0"s, notSet, yes, "Rock", notSet));
    auto cRules = NewRules(L"Pop");
    cRules->SetArtistSepMins(5);
    cRules->SetCatID(L"Rock");
    EXPECT_EQ(cRules->ArtistSepMins(), 7);
    EXPECT_TRUE(cRules->IgnoreRules());
    cRules->SetTitleSepMins(8);
    cRules.reset();
    EXPECT_EQ(FileOf(L"Pop"), Record("\5\0\0\0"s, notSet, no, "Pop", notSet));
    EXPECT_EQ(FileOf(L"Rock"), Record("\7\0\0\0"s, "\x8\0\0\0"s, yes, "Rock", notSet));
}

TEST_F(RulesTest, AFileShorterThanItsRecordIsAnErrorAndNothingOfItIsTaken)
{
    const std::string whole = Record("\1\0\0\0"s, "\2\0\0\0"s, yes, "Pop", "\3\0\0\0"s);
    for (std::size_t lLength = 0; lLength < whole.size(); ++lLength)
    {
        boxes.clear();
        cWorld.cFiles.Put(PathOf(L"Pop"), whole.substr(0, lLength));
        auto cRules = NewRules(L"Pop");
        EXPECT_EQ(boxes, Boxes{HandledError(L"GetRules", L"Input past end of file", L"62")});
        EXPECT_EQ(cRules->ArtistSepMins(), 71);
        EXPECT_EQ(cRules->TitleSepMins(), 72);
        EXPECT_EQ(cRules->AlbumSepMins(), -1);
        EXPECT_FALSE(cRules->IgnoreRules());
        EXPECT_EQ(cRules->CatID(), L"Pop") << "the key is set all the same";
        cRules.reset();
        EXPECT_EQ(FileOf(L"Pop"), Record(notSet, notSet, no, "Pop", notSet)) << "release repairs it";
        EXPECT_EQ(cWorld.cFiles.Get(PathOf(L"Pop") + L".bak"), whole.substr(0, lLength)) << "and keeps it";
        cWorld.cFiles.Delete(PathOf(L"Pop") + L".bak");
        boxes.clear();
        NewRules(L"Pop");
        EXPECT_TRUE(boxes.empty()) << "the next start has nothing to complain of";
    }
    EXPECT_EQ(cWorld.LogMessages().front(), L"DISPLAYERROR, GetRules 62 Input past end of file");
    EXPECT_EQ(cWorld.LogMessages().size(), whole.size());
}

TEST_F(RulesTest, AnUnreadableFileIsReportedAndNotOverwrittenByReleaseButByASetter)
{
    const std::string content = Record("\1\0\0\0"s, "\2\0\0\0"s, yes, "Pop", "\3\0\0\0"s);
    cWorld.cFiles.Put(PathOf(L"Pop"), content);
    cWorld.cFiles.SetUnreadable(PathOf(L"Pop"), error::PermissionDenied);
    auto cRules = NewRules(L"Pop");
    EXPECT_EQ(boxes, Boxes{HandledError(L"GetRules", L"Permission denied", L"70")});
    cRules.reset();
    EXPECT_EQ(FileOf(L"Pop"), content);
    cRules = NewRules(L"Pop");
    cRules->SetTitleSepMins(9);
    const std::string now = Record(notSet, "\x9\0\0\0"s, no, "Pop", notSet);
    EXPECT_EQ(FileOf(L"Pop"), now);
    cRules.reset();
    EXPECT_EQ(FileOf(L"Pop"), now);
}

TEST_F(RulesTest, AFolderOfThatNameIsNoFile)
{
    cWorld.cFiles.MakeFolders(PathOf(L"Pop"));
    NewRules(L"Pop");
    EXPECT_TRUE(boxes.empty());
}

TEST_F(RulesTest, AnyBytesAreReadWithoutHarm)
{
    constexpr unsigned lSeed = 20240302;
    std::mt19937 random(lSeed);
    for (int lRound = 0; lRound < 2000; ++lRound)
    {
        std::string bytes(random() % 140, '\0');
        for (char& c : bytes)
            c = static_cast<char>(random());
        cWorld.cFiles.Put(PathOf(L"Pop"), bytes);
        const auto cRules = NewRules(L"Pop");
        ASSERT_GE(cRules->ArtistSepMins(), 0) << "seed " << lSeed << ", round " << lRound;
        ASSERT_GE(cRules->TitleSepMins(), 0);
        ASSERT_GE(cRules->AlbumSepMins(), -1);
        ASSERT_EQ(cRules->CatID(), L"Pop");
    }
}

// ---- keys

TEST_F(RulesTest, TheKeyIsHandedOutWithoutBlanksAtItsEnds)
{
    const auto cRules = NewRules(L"  Pop x  ");
    EXPECT_EQ(cRules->CatID(), L"Pop x");
    EXPECT_TRUE(cRules->SaveRules());
    EXPECT_EQ(FileOf(L"Pop x"), Record(notSet, notSet, no, "  Pop x  ", notSet))
        << "the field keeps what was set";
}

TEST_F(RulesTest, ALongKeyIsReadUnderTheFullNameAndSavedUnderItsFirst55Characters)
{
    const std::wstring sLong = std::wstring(50, L'x') + L"\u00AC\u00AC\u00AC12345"; // 58
    cWorld.cFiles.Put(PathOf(sLong), Record("\1\0\0\0"s, notSet, no, "", notSet));
    const auto cRules = NewRules(sLong);
    EXPECT_EQ(cRules->ArtistSepMins(), 1);
    EXPECT_EQ(cRules->CatID(), sLong.substr(0, 55));
    cRules->SetTitleSepMins(2);
    EXPECT_EQ(FileOf(sLong.substr(0, 55)), Record("\1\0\0\0"s, "\2\0\0\0"s, no,
                                                  std::string(50, 'x') + "\xAC\xAC\xAC"
                                                                         "12",
                                                  notSet));
    EXPECT_EQ(FileOf(sLong), Record("\1\0\0\0"s, notSet, no, "", notSet));
    EXPECT_EQ(cWorld.LogMessages(), Lines{L"Warning: the rules of " + sLong +
                                          L" are saved under the first 55 characters of that name."});
}

TEST_F(RulesTest, ALongKeyLosesTheBlanksAtItsCutEnd)
{
    const std::wstring sName = std::wstring(53, L'x');
    NewRules(sName + L"  tail")->SaveRules();
    EXPECT_EQ(FileOf(sName), Record(notSet, notSet, no, std::string(53, 'x') + "  ", notSet));
}

TEST_F(RulesTest, AKeyOf55CharactersIsNotCut)
{
    const std::wstring sName(55, L'x');
    const auto cRules = NewRules(sName);
    EXPECT_EQ(cRules->CatID(), sName);
    EXPECT_TRUE(cWorld.LogMessages().empty());
}

TEST_F(RulesTest, WhatTheCodePageLacksIsSubstitutedInTheFileButNotInItsName)
{
    const auto cRules = NewRules(L"\u65E5\u672C\u20AC");
    EXPECT_TRUE(cRules->SaveRules());
    EXPECT_EQ(FileOf(L"\u65E5\u672C\u20AC"), Record(notSet, notSet, no, "??\x80", notSet));
}

TEST_F(RulesTest, WithoutAKeyNothingIsSavedAndNothingSaid)
{
    {
        const auto cRules = NewRules();
        EXPECT_FALSE(cRules->SaveRules());
        cRules->SetArtistSepMins(5);
        EXPECT_EQ(cRules->ArtistSepMins(), 5);
        const auto cBlank = NewRules(L"   ");
        EXPECT_FALSE(cBlank->SaveRules()) << "a key of blanks is none";
    }
    EXPECT_TRUE(cWorld.cFiles.Operations().empty());
    EXPECT_TRUE(boxes.empty());
}

TEST_F(RulesTest, AKeyThatCanBeNoFilesNameIsRefusedWhenItIsSaved)
{
    for (const wchar_t* sKey : {L"AC/DC\u00AC\u00AC\u00AC1", L"..\\..\\x", L"NUL", L"a*"})
    {
        boxes.clear();
        auto cRules = NewRules(sKey);
        EXPECT_TRUE(boxes.empty()) << "no such file can be there to be read";
        EXPECT_EQ(cRules->ArtistSepMins(), 71);
        cRules->SetArtistSepMins(5);
        EXPECT_EQ(cRules->ArtistSepMins(), 5);
        const std::wstring sText = L"Bad file name: \"" + std::wstring(sKey) + L"\"";
        EXPECT_EQ(boxes, Boxes{HandledError(L"SaveRules", sText, L"52")});
        cRules.reset();
        EXPECT_EQ(boxes.size(), 1u) << "on release errors are only logged";
        EXPECT_EQ(cWorld.LogMessages().back(), L"DISPLAYERROR, SaveRules 52 " + sText);
    }
    EXPECT_EQ(cWorld.cFiles.Paths().size(), 2u) << "the settings and the log";
}

TEST_F(RulesTest, ANameFullOfDotsStaysInItsFolder)
{
    EXPECT_TRUE(NewRules(L"..")->SaveRules());
    EXPECT_TRUE(FileOf(L".."));
    EXPECT_TRUE(cWorld.cFiles.FileExists(L"C:\\Radio\\Scheduler\\Rules\\...rls"));
}

TEST_F(RulesTest, WithoutAnApplicationPathNothingIsReadOrWritten)
{
    ModScheduler cOther(cWorld.AllPorts());
    {
        clsCatRules cRules(cOther);
        cRules.SetCatID(L"Pop");
        EXPECT_EQ(cRules.CatID(), L"Pop");
        EXPECT_FALSE(cRules.SaveRules());
        cRules.SetArtistSepMins(5);
        EXPECT_EQ(cRules.ArtistSepMins(), 5);
    }
    EXPECT_TRUE(cWorld.cFiles.Operations().empty());
    EXPECT_TRUE(boxes.empty());
}

// ---- release

TEST_F(RulesTest, EveryObjectThatWasGivenAKeyLeavesItsFile)
{
    NewRules(L"Pop");
    EXPECT_EQ(FileOf(L"Pop"), Record(notSet, notSet, no, "Pop", notSet));
}

TEST_F(RulesTest, ACategoryReleasesItsRules)
{
    {
        const auto cCat = std::make_shared<clsCat>(cMod, L"Pop", 2);
        cCat->Rules();
    }
    EXPECT_TRUE(FileOf(L"Pop\u00AC\u00AC\u00AC2"));
}

TEST_F(RulesTest, AnObjectReleasedLateDoesNotBringOldValuesBack)
{
    auto cOld = NewRules(L"Pop");
    auto cNew = NewRules(L"pop");
    cNew->SetArtistSepMins(5);
    cOld.reset();
    EXPECT_EQ(FileOf(L"Pop"), Record("\5\0\0\0"s, notSet, no, "pop", notSet));

    auto cThird = NewRules(L"Pop");
    cThird->SetTitleSepMins(6);
    cNew->SetArtistSepMins(9); // it writes its own values again: from now on these are the newest
    cThird.reset();
    cNew.reset();
    EXPECT_EQ(FileOf(L"Pop"), Record("\x9\0\0\0"s, notSet, no, "pop", notSet));
}

TEST_F(RulesTest, AnObjectFromAnotherApplicationFolderDoesNotTouchTheNewOne)
{
    cWorld.cFiles.Put(L"C:\\Other\\Scheduler\\Rules\\Pop.rls", "theirs");
    auto cRules = NewRules(L"Pop");
    cMod.StoreAppPath(L"C:\\Other");
    cRules.reset();
    EXPECT_EQ(cWorld.cFiles.Get(L"C:\\Other\\Scheduler\\Rules\\Pop.rls"), "theirs");
}

TEST_F(RulesTest, AnObjectMadeBeforeAnyFolderWasKnownDoesNotOverwriteWhatItNeverRead)
{
    ModScheduler cOther(cWorld.AllPorts());
    cWorld.cFiles.Put(PathOf(L"Pop"), "theirs");
    {
        clsCatRules cRules(cOther);
        cRules.SetCatID(L"Pop");
        cOther.StoreAppPath(sRadio);
    }
    EXPECT_EQ(FileOf(L"Pop"), "theirs");
}

TEST_F(RulesTest, AFailureOnReleaseIsOnlyLogged)
{
    auto cRules = NewRules(L"Pop");
    cWorld.cFiles.SetReadOnly(L"C:\\Radio\\Scheduler\\Rules");
    cRules.reset();
    EXPECT_TRUE(boxes.empty());
    EXPECT_EQ(cWorld.LogMessages(), Lines{L"DISPLAYERROR, SaveRules 75 Path/File access error"});
}

// ---- failing files

TEST_F(RulesTest, AFailedSaveIsReportedAndFalse)
{
    const auto cRules = NewRules(L"Pop");
    cWorld.cFiles.Put(PathOf(L"Pop"), "old");
    cWorld.cFiles.SetReadOnly(PathOf(L"Pop"));
    EXPECT_FALSE(cRules->SaveRules());
    EXPECT_EQ(boxes, Boxes{HandledError(L"SaveRules", L"Path/File access error", L"75")});
    EXPECT_EQ(FileOf(L"Pop"), "old");
    EXPECT_TRUE(cWorld.TemporaryFiles().empty());
    cWorld.cFiles.SetReadOnly(PathOf(L"Pop"), false);
}

TEST_F(RulesTest, AFailureAtAnyStepOfASaveLeavesTheOldFileOrTheNewOneAndIsReportedOnce)
{
    const std::string oldRules = Record("\1\0\0\0"s, notSet, no, "Pop", notSet);
    const std::string newRules = Record("\1\0\0\0"s, "\x9\0\0\0"s, no, "Pop", notSet);
    for (int lGood = 0;; ++lGood)
    {
        MemoryWorld cDisk; // without a log, whose lines would be steps too
        cDisk.cFiles.Put(PathOf(L"Pop"), oldRules);
        FailingFiles cFiles(cDisk.cFiles, lGood);
        ModScheduler cOther(cDisk.AllPortsWith(cFiles));
        cOther.StoreAppPath(sRadio);
        {
            clsCatRules cRules(cOther);
            cRules.SetCatID(L"Pop");
            const bool bSaved = cRules.Apply({.lArtist = {}, .lTitle = 9, .lAlbum = {}, .bIgnore = {}});
            EXPECT_EQ(bSaved, !cFiles.bFailed);
            EXPECT_EQ(cDisk.cFiles.Get(PathOf(L"Pop")), cFiles.bFailed ? oldRules : newRules);
            EXPECT_EQ(cDisk.cMessages.Boxes,
                      cFiles.bFailed ? Boxes{HandledError(L"SaveRules", L"Disk full", L"61")} : Boxes{});
            EXPECT_EQ(cRules.TitleSepMins(), 9) << "memory keeps the value";
            EXPECT_EQ(cDisk.cFiles.Paths().size(), 1u) << "no temporary file is left";
            if (!cFiles.bFailed)
            {
                EXPECT_EQ(lGood, 4) << "create, write, flush, rename";
                break;
            }
        }
        EXPECT_EQ(cDisk.cFiles.Get(PathOf(L"Pop")), newRules) << "the release tried again";
    }
}

} // namespace
} // namespace ravlo::test
