// SPDX-License-Identifier: MIT
#include "model/clsCatRules.h"

#include "model/clsCat.h"
#include "support/EngineTest.h"
#include "support/Raised.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <tuple>
#include <vector>

namespace ravlo::test
{
namespace
{

using namespace std::string_literals;
using Boxes = std::vector<ShownBox>;
using Lines = std::vector<std::wstring>;

// A rules record as it is on the disk, put together by hand: two separations, the ignore field, the key of
// 55 bytes, the album separation.
std::string Record(const std::string& artist, const std::string& title, const std::string& ignore,
                   const std::string& catId, const std::string& album)
{
    return artist + title + ignore + catId + std::string(55 - catId.size(), ' ') + album;
}

// A separation of less than 256 minutes.
std::string Mins(char cMins) { return {cMins, '\0', '\0', '\0'}; }

const std::string notSet = "\xFF\xFF\xFF\xFF";
const std::string yes = "\xFF\xFF";
const std::string no = "\0\0"s;
const std::string popRules = Record(Mins(1), Mins(2), yes, "Pop", Mins(3));
const std::string emptyRules = Record(notSet, notSet, no, "Pop", notSet);
const std::string separator = "\xAC\xAC\xAC"; // between a category's name and its level

using Values = std::tuple<std::int32_t, std::int32_t, std::int32_t, bool>;
const Values noneSet{71, 72, -1, false}; // the global rules, except for the album

// Artist, title, album, ignore.
Values ValuesOf(const clsCatRules& cRules)
{
    return {cRules.ArtistSepMins(), cRules.TitleSepMins(), cRules.AlbumSepMins(), cRules.IgnoreRules()};
}

class RulesTest : public testing::Test
{
protected:
    RulesTest()
    {
        cPorts.cFiles.MakeFolders(L"C:\\Radio\\Scheduler\\Rules");
        cMod.StoreAppPath(L"C:\\Radio");
        cMod.SetGlobalArtistSepMins(71);
        cMod.SetGlobalTitleSepMins(72);
        cMod.SetGlobalAlbumSepMins(73);
        cPorts.cFiles.ClearOperations();
    }

    static std::wstring PathOf(const std::wstring& sName)
    {
        return L"C:\\Radio\\Scheduler\\Rules\\" + sName + L".rls";
    }
    void Put(const std::string& bytes) { cPorts.cFiles.Put(sPop, bytes); }

    std::unique_ptr<clsCatRules> NewRules(const std::wstring& sCatID = L"Pop")
    {
        auto cRules = std::make_unique<clsCatRules>(cMod);
        cRules->SetCatID(sCatID);
        return cRules;
    }
    std::optional<std::string> FileOf(const std::wstring& sName = L"Pop") const
    {
        if (!cPorts.cFiles.FileExists(PathOf(sName)))
            return std::nullopt;
        return cPorts.cFiles.Get(PathOf(sName));
    }

    const std::wstring sPop = PathOf(L"Pop");
    RadioPorts cPorts;
    ModScheduler cMod{cPorts.Ports()};
    std::vector<ShownBox>& boxes = cPorts.cMessages.Boxes;
};

// ---- values

TEST_F(RulesTest, WhatIsNotSetIsTheGlobalRuleExceptTheAlbum)
{
    const auto cRules = NewRules();
    EXPECT_EQ(ValuesOf(*cRules), noneSet) << "on purpose: the caller applies the global album rule";
    cMod.SetGlobalArtistSepMins(5);
    EXPECT_EQ(cRules->ArtistSepMins(), 5) << "as it is at the moment";
    cRules->SetArtistSepMins(0);
    cRules->SetTitleSepMins(0);
    cRules->SetAlbumSepMins(0);
    EXPECT_EQ(ValuesOf(*cRules), Values(0, 0, 0, false)) << "zero is a value of its own";
    EXPECT_EQ(FileOf(), Record(Mins(0), Mins(0), no, "Pop", Mins(0)));
}

TEST_F(RulesTest, NegativeArtistOrTitleSeparationIsIgnored)
{
    const auto cRules = NewRules();
    cRules->SetArtistSepMins(10);
    cRules->SetTitleSepMins(20);
    cPorts.cFiles.ClearOperations();
    cRules->SetArtistSepMins(-1);
    cRules->SetTitleSepMins(std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(ValuesOf(*cRules), Values(10, 20, -1, false));
    EXPECT_TRUE(cPorts.cFiles.Operations().empty()) << "nor is the file touched";
}

TEST_F(RulesTest, AlbumSeparationIsStoredAsItsAbsoluteValue)
{
    const auto cRules = NewRules();
    for (const char cMins : "\5\24"s)
    {
        cRules->SetAlbumSepMins(-cMins);
        EXPECT_EQ(cRules->AlbumSepMins(), cMins);
        EXPECT_EQ(FileOf(), Record(notSet, notSet, no, "Pop", Mins(cMins)));
    }
    cRules->SetAlbumSepMins(7);
    EXPECT_EQ(cRules->AlbumSepMins(), 7);
    EXPECT_EQ(NumberRaisedBy([&] { cRules->SetAlbumSepMins(std::numeric_limits<std::int32_t>::min()); }),
              error::Overflow)
        << "there is no such value";
    EXPECT_EQ(cRules->AlbumSepMins(), 7);
}

TEST_F(RulesTest, EverySetterRewritesTheFile)
{
    const auto cRules = NewRules();
    EXPECT_EQ(FileOf(), std::nullopt) << "setting the key writes nothing";
    cRules->SetArtistSepMins(0x01020304);
    EXPECT_EQ(FileOf(), Record("\4\3\2\1", notSet, no, "Pop", notSet));
    cRules->SetTitleSepMins(300);
    EXPECT_EQ(FileOf(), Record("\4\3\2\1", "\x2C\1\0\0"s, no, "Pop", notSet));
    cRules->SetIgnoreRules(true);
    EXPECT_EQ(FileOf(), Record("\4\3\2\1", "\x2C\1\0\0"s, yes, "Pop", notSet));
    cRules->SetAlbumSepMins(std::numeric_limits<std::int32_t>::max());
    EXPECT_EQ(FileOf(), Record("\4\3\2\1", "\x2C\1\0\0"s, yes, "Pop", "\xFF\xFF\xFF\x7F"));
    cRules->SetIgnoreRules(false);
    EXPECT_EQ(FileOf(), Record("\4\3\2\1", "\x2C\1\0\0"s, no, "Pop", "\xFF\xFF\xFF\x7F"));
    EXPECT_EQ(FileOf()->size(), 69u);
}

TEST_F(RulesTest, EditorsValuesAreStoredInOneSave)
{
    const auto cRules = NewRules();
    cPorts.cFiles.ClearOperations();
    EXPECT_TRUE(cRules->Apply({1, 2, 3, true}));
    EXPECT_EQ(cPorts.cFiles.Operations().size(), 2u) << "one new file, one rename";
    EXPECT_EQ(FileOf(), popRules);
    EXPECT_TRUE(cRules->Apply({.lArtist = std::nullopt, .lTitle = 5, .lAlbum = -1, .bIgnore = std::nullopt}));
    EXPECT_EQ(FileOf(), Record(Mins(1), Mins(5), yes, "Pop", notSet)) << "-1 unsets the album";
}

// ---- reading

TEST_F(RulesTest, SettingTheKeyLoadsItsFile)
{
    const std::wstring sKey = L"Pop\u00AC\u00AC\u00AC2";
    cPorts.cFiles.Put(PathOf(sKey), popRules + "more, which is not read");
    const auto cRules = NewRules(sKey);
    EXPECT_EQ(ValuesOf(*cRules), Values(1, 2, 3, true));
    EXPECT_EQ(cRules->CatID(), sKey) << "and not what the file says";
    EXPECT_TRUE(cRules->SaveRules());
    EXPECT_EQ(FileOf(sKey), Record(Mins(1), Mins(2), yes, "Pop" + separator + "2", Mins(3)));
    EXPECT_TRUE(boxes.empty());
}

TEST_F(RulesTest, LookAtTheFileLeavesNoTrace)
{
    const std::wstring sLong(60, L'x'); // would be noted in the log when bound
    EXPECT_EQ(ValuesOf(*clsCatRules::Read(cMod, sLong)), noneSet);
    Put(popRules);
    cPorts.cFiles.ClearOperations();
    EXPECT_EQ(ValuesOf(*clsCatRules::Read(cMod, L"Pop")), Values(1, 2, 3, true));
    EXPECT_EQ(cPorts.cFiles.Operations(), Lines{L"ReadAll " + sPop});
    Put("damaged");
    EXPECT_EQ(ValuesOf(*clsCatRules::Read(cMod, L"Pop")), noneSet);
    EXPECT_EQ(cMod.Saved().StateOf(PathOf(L"Pop"), &cMod), SavedFiles::State::NotSeen);
    EXPECT_EQ(FileOf(sLong), std::nullopt);
    EXPECT_TRUE(cPorts.LogMessages().empty());
}

TEST_F(RulesTest, NegativeValueOnDiskReadsAsNotSet)
{
    Put(Record("\xF9\xFF\xFF\xFF", "\0\0\0\x80"s, no, "Pop", "\xFE\xFF\xFF\xFF"));
    const auto cRules = NewRules();
    EXPECT_EQ(ValuesOf(*cRules), noneSet);
    EXPECT_TRUE(cRules->SaveRules());
    EXPECT_EQ(FileOf(), emptyRules);
    Put(Record(Mins(0), Mins(0), no, "Pop", Mins(0)));
    EXPECT_EQ(ValuesOf(*NewRules()), Values(0, 0, 0, false));
}

TEST_F(RulesTest, NonzeroIgnoreFieldIsTrueAndWrittenAsTheUsualOne)
{
    for (const std::string& ignore : {"\1\0"s, "\0\1"s, "\0\x80"s, "\xFE\xFF"s})
    {
        Put(Record(notSet, notSet, ignore, "Pop", notSet));
        EXPECT_TRUE(NewRules()->IgnoreRules()); // and is released
        EXPECT_EQ(FileOf(), Record(notSet, notSet, yes, "Pop", notSet));
    }
}

TEST_F(RulesTest, MissingFileIsNoErrorAndKeepsIgnoreRules)
{
    const auto cRules = NewRules();
    cRules->SetIgnoreRules(true);
    cRules->SetArtistSepMins(5);
    cRules->SetCatID(L"Rock");
    EXPECT_EQ(ValuesOf(*cRules), Values(71, 72, -1, true));
    cPorts.cFiles.MakeFolders(PathOf(L"Folk")); // a folder of that name is no file
    NewRules(L"Folk");
    EXPECT_TRUE(boxes.empty());
}

TEST_F(RulesTest, SecondKeyRebindsTheObjectAndAnEmptyOneIsIgnored)
{
    cPorts.cFiles.Put(PathOf(L"Rock"), Record(Mins(7), notSet, yes, "Rock", notSet));
    auto cRules = NewRules();
    cRules->SetArtistSepMins(5);
    cRules->SetCatID(L"");
    EXPECT_EQ(cRules->CatID(), L"Pop");
    EXPECT_EQ(cRules->ArtistSepMins(), 5);
    cRules->SetCatID(L"Rock");
    EXPECT_EQ(cRules->ArtistSepMins(), 7);
    EXPECT_TRUE(cRules->IgnoreRules());
    cRules->SetTitleSepMins(8);
    cRules.reset();
    EXPECT_EQ(FileOf(), Record(Mins(5), notSet, no, "Pop", notSet));
    EXPECT_EQ(FileOf(L"Rock"), Record(Mins(7), Mins(8), yes, "Rock", notSet));
}

TEST_F(RulesTest, ShortFileIsAnErrorAndNothingOfItIsTaken)
{
    for (std::size_t length = 0; length < popRules.size(); ++length)
    {
        boxes.clear();
        Put(popRules.substr(0, length));
        auto cRules = NewRules();
        EXPECT_EQ(boxes, Boxes{HandledError(L"GetRules", L"Input past end of file", L"62")});
        EXPECT_EQ(ValuesOf(*cRules), noneSet);
        EXPECT_EQ(cRules->CatID(), L"Pop") << "the key is set all the same";
        cRules.reset();
        EXPECT_EQ(FileOf(), emptyRules) << "release repairs it";
        EXPECT_EQ(cPorts.cFiles.Get(sPop + L".bak"), popRules.substr(0, length)) << "and keeps it";
        cPorts.cFiles.Delete(sPop + L".bak");
        boxes.clear();
        NewRules();
        EXPECT_TRUE(boxes.empty()) << "the next start reports nothing";
    }
    EXPECT_EQ(cPorts.LogMessages().front(), L"DISPLAYERROR, GetRules 62 Input past end of file");
    EXPECT_EQ(cPorts.LogMessages().size(), popRules.size());
}

TEST_F(RulesTest, UnreadableFileIsOverwrittenByASetterAlone)
{
    Put(popRules);
    cPorts.cFiles.SetUnreadable(sPop, error::PermissionDenied);
    auto cRules = NewRules();
    EXPECT_EQ(boxes, Boxes{HandledError(L"GetRules", L"Permission denied", L"70")});
    cRules.reset();
    EXPECT_EQ(FileOf(), popRules);
    cRules = NewRules();
    cRules->SetTitleSepMins(9);
    const std::string now = Record(notSet, Mins(9), no, "Pop", notSet);
    EXPECT_EQ(FileOf(), now);
    EXPECT_EQ(cPorts.cFiles.Get(sPop + L".bak"), popRules) << "kept aside";
    cRules.reset();
    EXPECT_EQ(FileOf(), now);
}

TEST_F(RulesTest, UnreadableFileIsReadAgainAfterASecond)
{
    Put(popRules);
    cPorts.cClock.Advance(5'000);
    cPorts.cFiles.SetUnreadable(sPop, error::PermissionDenied);
    auto cRules = NewRules();
    cPorts.cClock.Advance(1'000);
    cRules->RetryReading(); // fails as well
    EXPECT_EQ(cPorts.LogMessages(), Lines(2, L"DISPLAYERROR, GetRules 70 Permission denied"));
    EXPECT_EQ(boxes.size(), 1u);
    cPorts.cFiles.SetUnreadable(sPop, 0);
    NewRules()->SetTitleSepMins(9); // by another object
    for (const std::uint32_t lAfterMs : {0u, 999u})
    {
        cPorts.cClock.Advance(lAfterMs);
        cRules->RetryReading();
        EXPECT_EQ(ValuesOf(*cRules), noneSet);
    }
    cPorts.cClock.Advance(1);
    cRules->RetryReading();
    EXPECT_EQ(ValuesOf(*cRules), Values(1, 9, 3, true));
    Put(popRules);
    cPorts.cClock.Advance(1'000);
    cRules->RetryReading();
    EXPECT_EQ(ValuesOf(*cRules), Values(1, 9, 3, true)) << "once it has been read it is not read again";
    cRules.reset();
    EXPECT_EQ(FileOf(), Record(Mins(1), Mins(9), yes, "Pop", Mins(3))) << "it was the newest that was read";
}

TEST_F(RulesTest, SetterFirstReadsAFileThatHasNotBeenRead)
{
    const std::tuple<clsCatRules::Edit, Values> colEdits[] = {
        {{9, {}, {}, {}}, {9, 2, 3, true}},
        {{{}, 9, {}, {}}, {1, 9, 3, true}},
        {{{}, {}, 9, {}}, {1, 2, 9, true}},
        {{{}, {}, {}, false}, {1, 2, 3, false}},
    };
    for (const bool bUnreadable : {true, false}) // or made by another program after the key was set
        for (const auto& [edit, expected] : colEdits)
        {
            Put(popRules);
            if (!bUnreadable)
                cPorts.cFiles.Delete(sPop);
            cPorts.cFiles.SetUnreadable(sPop, bUnreadable ? error::PermissionDenied : 0);
            const auto cRules = NewRules();
            cPorts.cFiles.SetUnreadable(sPop, 0);
            Put(popRules);
            EXPECT_TRUE(cRules->Apply(edit));
            EXPECT_EQ(ValuesOf(*cRules), expected);
            EXPECT_EQ(ValuesOf(*NewRules()), expected) << "on the disk";
            EXPECT_FALSE(cPorts.cFiles.FileExists(sPop + L".bak"));
        }
}

TEST_F(RulesTest, ValuesSetWhileNothingCouldBeSavedOrReadAreKept)
{
    Put(popRules);
    cPorts.cFiles.SetUnreadable(sPop, error::PermissionDenied);
    cPorts.cFiles.SetReadOnly(sPop + L".bak");
    const auto cRules = NewRules();
    cRules->SetArtistSepMins(9);
    cRules->SetTitleSepMins(8);
    cRules->SetAlbumSepMins(7);
    cRules->SetIgnoreRules(false);
    EXPECT_EQ(FileOf(), popRules);
    cPorts.cFiles.SetUnreadable(sPop, 0);
    cPorts.cFiles.SetReadOnly(sPop + L".bak", false);
    EXPECT_TRUE(cRules->SaveRules());
    EXPECT_EQ(FileOf(), Record(Mins(9), Mins(8), no, "Pop", Mins(7)));
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
        Put(bytes);
        const auto cRules = NewRules();
        ASSERT_GE(cRules->ArtistSepMins(), 0) << "seed " << lSeed << ", round " << lRound;
        ASSERT_GE(cRules->TitleSepMins(), 0);
        ASSERT_GE(cRules->AlbumSepMins(), -1);
        ASSERT_EQ(cRules->CatID(), L"Pop");
    }
}

// ---- keys

TEST_F(RulesTest, KeyIsTrimmedInTheNameAndEncodedInTheFile)
{
    const auto expectKey = [&](const wchar_t* sSet, const wchar_t* sHandedOut, const char* stored) {
        const auto cRules = NewRules(sSet);
        EXPECT_EQ(cRules->CatID(), sHandedOut);
        EXPECT_TRUE(cRules->SaveRules());
        EXPECT_EQ(FileOf(sHandedOut), Record(notSet, notSet, no, stored, notSet));
    };
    expectKey(L"  Pop x  ", L"Pop x", "  Pop x  "); // the field keeps what was set
    expectKey(L"\u65E5\u672C\u20AC", L"\u65E5\u672C\u20AC", "??\x80");
}

TEST_F(RulesTest, LongKeyIsReadInFullAndSavedUnder55Characters)
{
    const std::wstring sLong = std::wstring(50, L'x') + L"\u00AC\u00AC\u00AC12345"; // 58
    cPorts.cFiles.Put(PathOf(sLong), Record(Mins(1), notSet, no, "", notSet));
    const auto cRules = NewRules(sLong);
    EXPECT_EQ(cRules->ArtistSepMins(), 1);
    EXPECT_EQ(cRules->CatID(), sLong.substr(0, 55));
    cRules->SetTitleSepMins(2);
    EXPECT_EQ(FileOf(sLong.substr(0, 55)),
              Record(Mins(1), Mins(2), no, std::string(50, 'x') + separator + "12", notSet));
    EXPECT_EQ(FileOf(sLong), Record(Mins(1), notSet, no, "", notSet));
    EXPECT_EQ(cPorts.LogMessages(), Lines{L"Warning: the rules of " + sLong +
                                          L" are saved under the first 55 characters of that name."});
}

TEST_F(RulesTest, KeyIsCutAt55CharactersAndLosesTheBlanksThere)
{
    const std::wstring sName(53, L'x');
    NewRules(sName + L"  ")->SaveRules(); // 55
    EXPECT_TRUE(cPorts.LogMessages().empty());
    NewRules(sName + L"  tail")->SaveRules();
    EXPECT_EQ(FileOf(sName), Record(notSet, notSet, no, std::string(53, 'x') + "  ", notSet));
    EXPECT_EQ(NewRules(std::wstring(55, L'y'))->CatID(), std::wstring(55, L'y'));
    EXPECT_EQ(cPorts.LogMessages().size(), 1u);
}

TEST_F(RulesTest, WithoutAKeyOrAnApplicationPathNothingIsReadOrSaved)
{
    ModScheduler cNowhere(cPorts.Ports());
    const auto expectNothing = [&](ModScheduler& cIn, const wchar_t* sKey, const wchar_t* sHandedOut) {
        clsCatRules cRules(cIn);
        EXPECT_EQ(ValuesOf(cRules), Values(0, 0, 0, false)) << "before any key";
        EXPECT_EQ(cRules.CatID(), L"");
        cRules.SetCatID(sKey);
        EXPECT_EQ(cRules.CatID(), sHandedOut);
        EXPECT_FALSE(cRules.SaveRules());
        cRules.SetArtistSepMins(5);
        EXPECT_EQ(cRules.ArtistSepMins(), 5);
    };
    expectNothing(cMod, L"", L"");
    expectNothing(cMod, L"   ", L""); // a key of blanks is none
    expectNothing(cNowhere, L"Pop", L"Pop");
    EXPECT_TRUE(cPorts.cFiles.Operations().empty());
    EXPECT_TRUE(boxes.empty());
}

TEST_F(RulesTest, KeyThatIsNoFileNameIsRefusedWhenSaved)
{
    auto cRules = NewRules(L"AC/DC\u00AC\u00AC\u00AC1");
    EXPECT_TRUE(boxes.empty()) << "no such file can be there to be read";
    EXPECT_EQ(cRules->ArtistSepMins(), 71);
    cRules->SetArtistSepMins(5);
    EXPECT_EQ(cRules->ArtistSepMins(), 5);
    const std::wstring sText = L"Bad file name: \"AC/DC\u00AC\u00AC\u00AC1\"";
    EXPECT_EQ(boxes, Boxes{HandledError(L"SaveRules", sText, L"52")});
    cRules.reset();
    EXPECT_EQ(boxes.size(), 1u) << "on release errors are only logged";
    EXPECT_EQ(cPorts.LogMessages().back(), L"DISPLAYERROR, SaveRules 52 " + sText);
    EXPECT_EQ(cPorts.cFiles.Paths().size(), 2u) << "the settings and the log";
    EXPECT_TRUE(NewRules(L"..")->SaveRules()) << "dots stay in the folder";
    EXPECT_TRUE(cPorts.cFiles.FileExists(L"C:\\Radio\\Scheduler\\Rules\\...rls"));
}

// ---- release

TEST_F(RulesTest, ReleaseWritesAMissingFileButLeavesOneCreatedByOthers)
{
    NewRules();
    EXPECT_EQ(FileOf(), emptyRules);
    std::make_shared<clsCat>(cMod, L"Pop", 2)->Rules();
    EXPECT_TRUE(FileOf(L"Pop\u00AC\u00AC\u00AC2"));
    cPorts.cFiles.Delete(sPop);
    auto cRules = NewRules();
    Put(popRules);
    cRules.reset();
    EXPECT_EQ(FileOf(), popRules);
}

TEST_F(RulesTest, ObjectReleasedLateDoesNotBringOldValuesBack)
{
    auto cOld = NewRules();
    auto cNew = NewRules(L"pop");
    cNew->SetArtistSepMins(5);
    cOld.reset();
    EXPECT_EQ(FileOf(), Record(Mins(5), notSet, no, "pop", notSet));

    auto cThird = NewRules();
    cThird->SetTitleSepMins(6);
    cNew->SetArtistSepMins(9); // it writes its own values again: from now on these are the newest
    cThird.reset();
    cNew.reset();
    EXPECT_EQ(FileOf(), Record(Mins(9), notSet, no, "pop", notSet));
}

TEST_F(RulesTest, ObjectSavesToItsOwnFolderAfterAMove)
{
    const std::wstring sOther = L"C:\\Other\\Scheduler\\Rules\\Pop.rls";
    cPorts.cFiles.Put(sOther, "theirs");
    auto cRules = NewRules();
    cMod.StoreAppPath(L"C:\\Other");
    EXPECT_TRUE(cRules->SaveRules());
    EXPECT_TRUE(FileOf());
    cRules.reset();
    EXPECT_EQ(cPorts.cFiles.Get(sOther), "theirs");
}

TEST_F(RulesTest, ObjectMadeBeforeAnyFolderOverwritesNothing)
{
    ModScheduler cOther(cPorts.Ports());
    Put("theirs");
    {
        clsCatRules cRules(cOther);
        cRules.SetCatID(L"Pop");
        cOther.StoreAppPath(sRadio);
    }
    EXPECT_EQ(FileOf(), "theirs");
}

// ---- failing files

TEST_F(RulesTest, FailedSaveIsReportedAndTriedAgainOnRelease)
{
    const std::string oldRules = Record(Mins(1), notSet, no, "Pop", notSet);
    Put(oldRules);
    cPorts.cFiles.SetReadOnly(sPop);
    auto cRules = NewRules();
    EXPECT_FALSE(cRules->Apply({.lArtist = {}, .lTitle = 9, .lAlbum = {}, .bIgnore = {}}));
    EXPECT_EQ(boxes, Boxes{HandledError(L"SaveRules", L"Path/File access error", L"75")});
    EXPECT_EQ(FileOf(), oldRules);
    EXPECT_EQ(cRules->TitleSepMins(), 9) << "memory keeps the value";
    EXPECT_TRUE(cPorts.TemporaryFiles().empty());
    cPorts.cFiles.SetReadOnly(sPop, false);
    cRules.reset();
    EXPECT_EQ(FileOf(), Record(Mins(1), Mins(9), no, "Pop", notSet));
    boxes.clear();
    cRules = NewRules();
    cPorts.cFiles.SetReadOnly(sPop);
    cRules.reset();
    EXPECT_TRUE(boxes.empty()) << "on release errors are only logged";
    EXPECT_EQ(cPorts.LogMessages(), Lines(2, L"DISPLAYERROR, SaveRules 75 Path/File access error"));
}

} // namespace
} // namespace ravlo::test
