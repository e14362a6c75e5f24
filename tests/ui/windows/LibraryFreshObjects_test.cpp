// SPDX-License-Identifier: MIT
// The library window before a database that hands out another object for the same cut each time: what the
// user sees and does goes by the cuts' keys.
#include "ui/windows/LibraryFixture.h"

namespace ravlo::test
{

namespace
{

enum DropItem : int
{
    eCopy,
    eMove,
};
constexpr int lRowAretha = 8; // in the database's order
constexpr int lRowElla = 7;

} // namespace

struct LibraryFreshObjects : LibraryWindowTest
{
    LibraryFreshObjects()
    {
        cState.cDataBase->bFreshObjects = true;
        FillStation();
    }
    void ShowRock1(const User& user) const
    {
        Expand(user, Item(L"Rock"));
        Show(user, Item(L"Rock", L"1"));
    }
    std::wstring StoredCategories(std::size_t cut) const
    {
        return cState.cDataBase->colCuts[cut]->CategoryText();
    }
};

TEST_F(LibraryFreshObjects, RowsAreReOrderedByMouseAndKeys)
{
    Open([&](const User& user) {
        ShowRock1(user);
        SelectRows(user, 3, 4); // Dido, Eagles
        DropOnRow(user, 3, 1);
        EXPECT_EQ(Artists(), (Texts{L"Abba", L"Dido", L"Eagles", L"Blur", L"Cream", L"Feist"}));
        EXPECT_EQ(SelectedArtists(), (Texts{L"Dido", L"Eagles"}));
        user.Key(VK_DOWN, VK_MENU);
        EXPECT_EQ(Artists(), (Texts{L"Abba", L"Blur", L"Dido", L"Eagles", L"Cream", L"Feist"}));
        EXPECT_EQ(SelectedArtists(), (Texts{L"Dido", L"Eagles"}));
        EXPECT_EQ(Order(L"Rock", 1), Artists());
    });
}

TEST_F(LibraryFreshObjects, DeleteTakesCutsOutOfALevelAndOutOfAll)
{
    Open([&](const User& user) {
        ClickRow(user, lRowElla);
        user.Key(VK_DELETE);
        user.Answer(IDYES);
        EXPECT_TRUE(Order(L"Jazz", 1).empty());
        EXPECT_EQ(StoredCategories(lRowElla), L"");
        ShowRock1(user);
        SelectRows(user, 1, 2);
        user.Key(VK_DELETE);
        EXPECT_EQ(Order(L"Rock", 1), (Texts{L"Abba", L"Dido", L"Eagles", L"Feist"}));
        EXPECT_EQ(Artists(), Order(L"Rock", 1));
        EXPECT_EQ(StoredCategories(1), L"");
    });
}

TEST_F(LibraryFreshObjects, AMoveOutOfAllAudioLeavesTheOldLevel)
{
    Open([&](const User& user) {
        Expand(user, Item(L"Jazz"));
        ClickRow(user, lRowAretha);
        DropOnNode(user, lRowAretha, Item(L"Jazz", L"1"));
        Choose(user, eMove);
        user.Idle();
        EXPECT_TRUE(Order(L"r&b", 1).empty());
        EXPECT_EQ(Order(L"Jazz", 1), (Texts{L"Ella", L"Aretha"}));
        EXPECT_EQ(StoredCategories(lRowAretha), L"Jazz");
        EXPECT_EQ(SelectedArtists(), (Texts{L"Aretha"})) << "shown again, with the same selection";
    });
}

TEST_F(LibraryFreshObjects, CutsAreCopiedByDropAndMovedByPaste)
{
    Open([&](const User& user) {
        Expand(user, Item(L"Jazz"));
        ShowRock1(user);
        ClickRow(user, 0);
        DropOnNode(user, 0, Item(L"Jazz", L"1"));
        Choose(user, eCopy);
        user.Idle();
        EXPECT_EQ(Order(L"Jazz", 1), (Texts{L"Ella", L"Abba"}));
        EXPECT_EQ(Order(L"Rock", 1)[0], L"Abba");
        ClickRow(user, 1); // Blur
        user.Key('C', VK_CONTROL);
        ClickNode(user, Item(L"Jazz", L"1"));
        user.Key('V', VK_CONTROL);
        Choose(user, eMove);
        user.Idle();
        EXPECT_EQ(Order(L"Jazz", 1), (Texts{L"Ella", L"Abba", L"Blur"}));
        EXPECT_EQ(Order(L"Rock", 1), (Texts{L"Abba", L"Cream", L"Dido", L"Eagles", L"Feist"}));
    });
}

TEST_F(LibraryFreshObjects, ShufflingReloadingAndDeletingShowWhatIs)
{
    Open([&](const User& user) {
        ShowRock1(user);
        user.Key(VK_SPACE);
        Command(LibraryCommand::mnuShuffle);
        user.Answer(IDYES);
        EXPECT_NE(Artists(), (Texts{L"Abba", L"Blur", L"Cream", L"Dido", L"Eagles", L"Feist"}));
        const Texts colShuffled = Artists();
        EXPECT_EQ(colShuffled, Order(L"Rock", 1));
        Command(LibraryCommand::mnuReloadAll);
        user.Idle();
        EXPECT_EQ(Artists(), colShuffled) << "the order was saved";
        ClickNode(user, Item(L"Rock", L"1"));
        user.Key(VK_SPACE);
        Command(LibraryCommand::mnuCatDelete);
        user.Answer(IDYES);
        EXPECT_EQ(Tree(), (Texts{L"ALL AUDIO", L" Jazz", L"  1", L" r&b", L"  1", L" Rock", L"  2"}));
        EXPECT_EQ(StoredCategories(0), L"");
    });
}

TEST_F(LibraryFreshObjects, AnEditInAllAudioKeepsSelectionAndPlace)
{
    for (int i = 0; i < 90; ++i)
        Add(L"C:\\Music\\more" + std::to_wstring(i) + L".wav", L"Pop", 1, L"Artist " + std::to_wstring(i));
    cEvents.lEditAnswer = 1;
    Open([&](const User& user) {
        cEvents.OnEvent = [&](const std::wstring&) {
            cState.cDataBase->colCuts[60]->SetArtist(L"Edited");
            cState.cDataBase->Announce(&DataBaseEvents::CutsModified, Cuts{cState.cDataBase->colCuts[60]});
        };
        ClickRow(user, 0);
        ::SendMessageW(hGrid, LVM_ENSUREVISIBLE, 62, FALSE);
        const LRESULT lTop = ::SendMessageW(hGrid, LVM_GETTOPINDEX, 0, 0);
        ASSERT_GT(lTop, 0);
        ClickRow(user, 60);
        user.Key(VK_RETURN);
        EXPECT_EQ(cEvents.colSaid.back(), L"Edit C:\\Music\\more51.wav");
        cEvents.OnEvent = nullptr;
        user.Idle();
        EXPECT_EQ(SelectedArtists(), (Texts{L"Edited"}));
        EXPECT_EQ(::SendMessageW(hGrid, LVM_GETTOPINDEX, 0, 0), lTop);
    });
}

} // namespace ravlo::test
