// SPDX-License-Identifier: MIT
// The library window before a database that hands out another object for the same cut each time: what the
// user sees and does goes by the cuts' keys.
#include "ui/windows/LibraryFixture.h"

namespace ravlo::test
{

struct LibraryFreshObjects : FilledLibrary
{
    LibraryFreshObjects() { cState.cDataBase->bFreshObjects = true; }
};

TEST_F(LibraryFreshObjects, CutsAreReOrderedMovedPastedAndRemoved)
{
    OpenOnRock([&](const User& user) {
        SelectRows(user, 3, 4); // Dido, Eagles
        DropAt(user, 3, RowAt(1));
        EXPECT_EQ(Artists(), (Texts{L"Abba", L"Dido", L"Eagles", L"Blur", L"Cream", L"Feist"}));
        EXPECT_EQ(SelectedArtists(), (Texts{L"Dido", L"Eagles"}));
        ClickRow(user, 0);
        DropOnNode(user, 0, Item(L"Jazz"));
        Choose(user, {1, 1}); // level 1, move
        EXPECT_EQ(Order(L"Jazz", 1), (Texts{L"Ella", L"Abba"}));
        ClickRow(user, 2); // Blur
        user.Key('C', VK_CONTROL);
        ClickNode(user, Item(L"Jazz"));
        user.Key('V', VK_CONTROL);
        Choose(user, {1, 0}); // level 1, copy
        EXPECT_EQ(Order(L"Jazz", 1), (Texts{L"Ella", L"Abba", L"Blur"}));
        SelectRows(user, 2, 3);
        user.Key(VK_DELETE);
        EXPECT_EQ(Order(L"Rock", 1), (Texts{L"Dido", L"Eagles", L"Feist"}));
        EXPECT_EQ(Artists(), Order(L"Rock", 1));
        EXPECT_EQ(cState.cDataBase->colCuts[1]->CategoryText(), L"Jazz");
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
            Announce(&DataBaseEvents::CutsModified, 60);
        };
        ClickRow(user, 0);
        Send(hGrid, LVM_ENSUREVISIBLE, 62);
        const int lTop = TopRow();
        ASSERT_GT(lTop, 0);
        ClickRow(user, 60);
        user.Key(VK_RETURN);
        EXPECT_EQ(cEvents.colSaid.back(), L"Edit C:\\Music\\more51.wav");
        cEvents.OnEvent = nullptr;
        user.Idle();
        EXPECT_EQ(SelectedArtists(), (Texts{L"Edited"}));
        EXPECT_EQ(TopRow(), lTop);
    });
}

} // namespace ravlo::test
