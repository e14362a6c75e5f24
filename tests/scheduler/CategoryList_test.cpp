// SPDX-License-Identifier: MIT
#include "scheduler/CategoryList.h"

#include "support/SchedulerTest.h"

#include <gtest/gtest.h>

#include <random>

namespace ravlo::test
{
namespace
{

class CategoryListTest : public testing::Test
{
protected:
    CategoryListTest()
    {
        cPorts.cFiles.MakeFolders(L"C:\\Radio\\Scheduler");
        cMod.StoreAppPath(sRadio);
    }

    Lines Read(const std::string& bytes)
    {
        cPorts.cFiles.Put(sMainCatsPath, bytes);
        return Read();
    }
    Lines Read()
    {
        const std::shared_ptr<NameCollection> colNames = cList.ReadForTree(cMod.AppPath());
        cList.Serve();
        Lines colRead;
        for (std::size_t at = 0; at < colNames->Count(); ++at)
        {
            colRead.push_back(colNames->At(at));
            EXPECT_EQ(colNames->KeyAt(at)->Text(), colRead.back()) << "keyed by itself";
        }
        return colRead;
    }
    std::shared_ptr<CatCollection> Cats(const Lines& colNames)
    {
        auto colCats = std::make_shared<CatCollection>();
        for (const std::wstring& sName : colNames)
            colCats->Add(TextKey(CategoryKey(sName, 0)), std::make_shared<clsCat>(cMod, sName, 0));
        return colCats;
    }
    bool Save(const Lines& colNames) { return cList.SaveCatNames(Cats(colNames).get(), sRadio); }
    const std::string& File() const { return cPorts.cFiles.Get(sMainCatsPath); }

    RadioPorts cPorts;
    ModScheduler cMod{cPorts.Ports()};
    CategoryList cList{cMod};
    Boxes& boxes = cPorts.cMessages.Boxes;
};

constexpr const wchar_t* sBak = L"C:\\Radio\\Scheduler\\MainCats.txt.bak";

const ShownBox duplicateBox =
    CriticalBox(L"Error in GetSavedCatNames [cSchedMan] ",
                L"457 This key is already associated with an element of this collection");

// ---- writing

TEST_F(CategoryListTest, EachNameFollowsALineBreakInTheCategoriesOrder)
{
    EXPECT_TRUE(Save({L"B", L"A"}));
    EXPECT_EQ(File(), "\x0D\x0A\x42\x0D\x0A\x41");
    EXPECT_EQ(Read(), (Lines{L"B", L"A"}));
}

TEST_F(CategoryListTest, NoCategoriesMakeAnEmptyFile)
{
    cPorts.cFiles.Put(sMainCatsPath, "old");
    EXPECT_TRUE(Save({}));
    EXPECT_EQ(File(), "");
    EXPECT_EQ(Read(), Lines{});
}

TEST_F(CategoryListTest, NamesAreWrittenInTheCodePage)
{
    EXPECT_TRUE(Save({L"Caf\u00E9 \u20AC", L"\u65E5x"}));
    EXPECT_EQ(File(), "\r\nCaf\xE9 \x80\r\n?x");
    EXPECT_EQ(Read(), (Lines{L"Caf\u00E9 \u20AC", L"?x"}));
}

TEST_F(CategoryListTest, ANameThatCannotBeToldFromAnEarlierOneIsLeftOutAndLogged)
{
    EXPECT_TRUE(Save({L"\u65E5\u672C", L"Rock", L"\u4E2D\u56FD", L" rOCK ", L"??"}));
    EXPECT_EQ(File(), "\r\n??\r\nRock");
    EXPECT_EQ(cPorts.LogMessages(), (Lines{L"The category list cannot hold the name: ??",
                                           L"The category list cannot hold the name:  rOCK ",
                                           L"The category list cannot hold the name: ??"}));
    EXPECT_EQ(Read(), (Lines{L"??", L"Rock"})) << "so that reading never meets a name twice";
    EXPECT_TRUE(boxes.empty());
}

TEST_F(CategoryListTest, ANameWithALineBreakIsLeftOutAndLogged)
{
    EXPECT_TRUE(Save({L"C\rD", L"E\nF", L"G"}));
    EXPECT_EQ(File(), "\r\nG");
    EXPECT_EQ(cPorts.LogMessages(), (Lines{L"The category list cannot hold the name: C\rD",
                                           L"The category list cannot hold the name: E\nF"}));
    EXPECT_TRUE(Save({L"A\r\nB", L"G"}));
    EXPECT_EQ(File(), "\r\nG");
}

TEST_F(CategoryListTest, WithoutCategoriesOrFolderNothingIsWritten)
{
    cPorts.cFiles.Put(sMainCatsPath, "old");
    EXPECT_FALSE(cList.SaveCatNames(nullptr, sRadio));
    EXPECT_FALSE(cList.SaveCatNames(Cats({L"A"}).get(), L""));
    EXPECT_EQ(File(), "old");
    EXPECT_TRUE(boxes.empty());
}

TEST_F(CategoryListTest, AFailureIsShownAndFalse)
{
    cPorts.cFiles.Put(sMainCatsPath, "old");
    cPorts.cFiles.SetReadOnly(sMainCatsPath);
    EXPECT_FALSE(Save({L"A"}));
    EXPECT_EQ(boxes, Boxes{CriticalBox(L"Error in SaveCatNames [cSchedMan]", L"75 Path/File access error")});
    EXPECT_EQ(cPorts.LogMessages(), Lines{L"75 Path/File access error"});
    EXPECT_EQ(File(), "old");
    EXPECT_TRUE(cPorts.TemporaryFiles().empty());
}

// ---- reading

TEST_F(CategoryListTest, WithoutAFileOrAFolderThereAreNoNames)
{
    EXPECT_EQ(Read(), Lines{});
    ModScheduler cOther(cPorts.Ports());
    EXPECT_EQ(CategoryList(cOther).GetSavedCatNames()->Count(), 0u);
    EXPECT_TRUE(boxes.empty());
}

TEST_F(CategoryListTest, AListIsReadPieceByPiece)
{
    const struct
    {
        const char* bytes;
        Lines colNames;
    } contents[] = {
        {"", {}},
        {"Rock", {}}, // no line break anywhere
        {"Rock\nPop\n", {}},
        {"\r\n", {}},
        {"\r\nRock", {L"Rock"}},
        {"\r\nRock\r\nPop", {L"Rock", L"Pop"}},
        {"Rock\r\nPop\r\n", {L"Rock", L"Pop"}},
        {"\r\n\r\n\r\nRock\r\n   \r\n", {L"Rock"}},                 // blank lines
        {"\r\n  Rock and Roll  ", {L"Rock and Roll"}},              // blanks at the ends
        {"\r\n\tRock", {L"\tRock"}},                                // only blanks are trimmed
        {"\r\n123\r\nA\r\n-5\r\n1e3\r\n$1,000.50\r\n&HFF", {L"A"}}, // numbers
        {"\r\n12a\r\n1 2\r\n80s", {L"12a", L"1 2", L"80s"}},
        {"\r\nA\nB\r\nC\rD\r\nE", {L"E"}}, // half a line break: no name that could be saved again
        {"\r\nCaf\xE9\r\n\x80", {L"Caf\u00E9", L"\u20AC"}},
    };
    for (const auto& content : contents)
        EXPECT_EQ(Read(content.bytes), content.colNames) << testing::PrintToString(content.bytes);
    EXPECT_TRUE(boxes.empty());
}

TEST_F(CategoryListTest, DuplicateNameIsShownAndEndsTheReading)
{
    EXPECT_EQ(Read("\r\nRock\r\nPop\r\nrock\r\nJazz"), (Lines{L"Rock", L"Pop"}));
    EXPECT_EQ(boxes, Boxes{duplicateBox});
    EXPECT_EQ(cPorts.LogMessages(), Lines{duplicateBox.sText});
}

TEST_F(CategoryListTest, AListNotReadInFullIsKeptOnceBeforeItIsOverwritten)
{
    const std::string damaged = "\r\nRock\r\nRock\r\nJazz";
    Read("\r\nRock");
    EXPECT_TRUE(Save({L"Pop"}));
    EXPECT_FALSE(cPorts.cFiles.FileExists(sBak));
    Read(damaged);
    EXPECT_TRUE(Save({L"Rock"}));
    EXPECT_EQ(File(), "\r\nRock");
    EXPECT_EQ(cPorts.cFiles.Get(sBak), damaged);
    EXPECT_TRUE(Save({L"Rock", L"Pop"}));
    EXPECT_EQ(cPorts.cFiles.Get(sBak), damaged) << "kept once";
}

TEST_F(CategoryListTest, WhatCouldNotBeReadIsRememberedForItsOwnFolder)
{
    const std::string damaged = "\r\nRock\r\nRock\r\nJazz";
    constexpr const wchar_t* sOther = L"C:\\Other\\";
    const std::wstring sOtherList = std::wstring(sOther) + L"Scheduler\\MainCats.txt";
    cPorts.cFiles.Put(sOtherList, "\r\nBlues");
    Read(damaged);
    cMod.StoreAppPath(sOther); // another manager has moved the library
    EXPECT_EQ(Read(), (Lines{L"Blues"}));
    EXPECT_TRUE(cList.SaveCatNames(Cats({L"Blues"}).get(), sOther));
    EXPECT_FALSE(cPorts.cFiles.FileExists(sOtherList + L".bak")) << "that one was read in full";
    EXPECT_TRUE(Save({L"Rock"}));
    EXPECT_EQ(cPorts.cFiles.Get(sBak), damaged) << "this one was not";
}

TEST_F(CategoryListTest, AListThatCannotBeReadAtAllIsShownAndPutAwayWhole)
{
    cPorts.cFiles.SetUnreadable(sMainCatsPath, error::PermissionDenied);
    EXPECT_EQ(Read("\r\nRock"), Lines{});
    EXPECT_EQ(boxes, Boxes{CriticalBox(L"Error in GetSavedCatNames [cSchedMan] ", L"70 Permission denied")});
    EXPECT_TRUE(Save({L"Pop"}));
    EXPECT_EQ(cPorts.cFiles.Get(sBak), "\r\nRock");
    EXPECT_EQ(File(), "\r\nPop");
}

TEST_F(CategoryListTest, AnyBytesAreReadWithoutHarm)
{
    constexpr unsigned lSeed = 20240303;
    std::mt19937 random(lSeed);
    const std::string sPieces[] = {"\r\n", "\r", "\n",   " ",    "Rock", "rock",
                                   "12",   "\t", "\xE9", "\xC9", "&H",   "\x00"};
    for (int lRound = 0; lRound < 2000; ++lRound)
    {
        std::string bytes;
        for (std::size_t piece = random() % 30; piece > 0; --piece)
            bytes += random() % 3 ? sPieces[random() % std::size(sPieces)]
                                  : std::string(1, static_cast<char>(random()));
        for (const std::wstring& sName : Read(bytes))
        {
            ASSERT_FALSE(sName.empty()) << "seed " << lSeed << ", round " << lRound;
            ASSERT_EQ(sName, Trim(sName));
        }
    }
}

} // namespace
} // namespace ravlo::test
