// SPDX-License-Identifier: MIT
#include "host/client/CutEditor.h"

#include "com/Station.h"
#include "host/client/EventListener.h"
#include "ui/windows/User.h"

namespace ravlo::test
{

namespace
{

class CutEditor : public ComStationTest
{
protected:
    CutEditor()
        : m_cCut(AddCut(L"Waterloo", L"Pop/Gold", 2)),
          m_listener(*m_cDataBase.Get(), DIID___clsDataBase,
                     [this](DISPID lEvent, const EventArguments&) { m_lModified += lEvent == lCutsModified; })
    {
        EXPECT_EQ(m_cCut->put_Artist(Bstr(L"Abba").Get()), S_OK);
        EXPECT_EQ(m_cCut->put_Year(1974), S_OK);
        EXPECT_EQ(m_cCut->put_Opener(VARIANT_TRUE), S_OK);
    }

    // Whether the user edited the cut.
    bool Edit(const std::function<void(const User& user, HWND hDialog)>& drive)
    {
        bool bEdited = false;
        WhileOpen([&] { bEdited = EditCut(nullptr, *m_cCut.Get(), *m_cDataBase.Get()); },
                  [&](const User& user) { drive(user, user.WaitFor(L"#32770")); });
        return bEdited;
    }
    std::wstring Shown(HWND hDialog, int lControl) { return User::Text(::GetDlgItem(hDialog, lControl)); }
    std::wstring Categories()
    {
        Bstr sText;
        EXPECT_EQ(m_cCut->get_CategoryText(sText.Receive()), S_OK);
        return sText.Text();
    }
    LONG Level()
    {
        LONG lLevel = 0;
        EXPECT_EQ(m_cCut->get_CatLevel(&lLevel), S_OK);
        return lLevel;
    }

    static constexpr DISPID lCutsModified = 2;
    ComPtr<_clsCut> m_cCut;
    int m_lModified = 0;
    EventListener m_listener;
};

} // namespace

TEST_F(CutEditor, ShowsTheCutAndChangesNothingWhenCancelled)
{
    EXPECT_FALSE(Edit([&](const User& user, HWND hDialog) {
        EXPECT_EQ(User::Text(hDialog), L"Edit Cut");
        EXPECT_EQ(Shown(hDialog, lCutPath), L"C:\\Waterloo.mp3");
        EXPECT_EQ(Shown(hDialog, lCutArtist), L"Abba");
        EXPECT_EQ(Shown(hDialog, lCutTitle), L"Waterloo");
        EXPECT_EQ(Shown(hDialog, lCutAlbum), L"");
        EXPECT_EQ(Shown(hDialog, lCutYear), L"1974");
        EXPECT_EQ(Shown(hDialog, lCutCategories), L"Pop/Gold");
        EXPECT_EQ(Shown(hDialog, lCutLevel), L"2");
        EXPECT_EQ(::IsDlgButtonChecked(hDialog, lCutOpener), static_cast<UINT>(BST_CHECKED));
        user.Shot(hDialog, L"cut-editor");
        user.Replace(::GetDlgItem(hDialog, lCutLevel), L"3");
        user.Key(VK_ESCAPE);
    }));
    EXPECT_EQ(Level(), 2);
    EXPECT_EQ(m_lModified, 0);
}

TEST_F(CutEditor, WhatIsTypedReachesTheCutAndIsAnnouncedOnce)
{
    EXPECT_TRUE(Edit([&](const User& user, HWND hDialog) {
        user.Replace(::GetDlgItem(hDialog, lCutCategories), L"Gold/Rock");
        user.Replace(::GetDlgItem(hDialog, lCutLevel), L"3");
        user.Click(::GetDlgItem(hDialog, lCutOpener));
        user.Key(VK_RETURN);
    }));
    EXPECT_EQ(Categories(), L"Gold/Rock");
    EXPECT_EQ(Level(), 3);
    VARIANT_BOOL bOpener = VARIANT_TRUE;
    EXPECT_EQ(m_cCut->get_Opener(&bOpener), S_OK);
    EXPECT_EQ(bOpener, VARIANT_FALSE);
    EXPECT_EQ(m_lModified, 1);
}

TEST_F(CutEditor, OkWithoutAChangeAnnouncesNothing)
{
    EXPECT_TRUE(Edit([&](const User& user, HWND) { user.Key(VK_RETURN); }));
    EXPECT_EQ(m_lModified, 0);
}

TEST_F(CutEditor, AWrongFieldIsExplainedAndCanBeCorrected)
{
    EXPECT_TRUE(Edit([&](const User& user, HWND hDialog) {
        user.Replace(::GetDlgItem(hDialog, lCutLevel), L"0");
        user.Key(VK_RETURN);
        EXPECT_EQ(user.Box().sText, L"The level is a whole number from 1 to 32764.");
        user.Answer(IDOK);
        user.Until([&] { return user.FocusedWindow() == ::GetDlgItem(hDialog, lCutLevel); },
                   "the level's field");
        user.Type(L"4"); // all of it is marked
        user.Key(VK_RETURN);
    }));
    EXPECT_EQ(Level(), 4);
    EXPECT_EQ(m_lModified, 1);
}

TEST_F(CutEditor, ACategoryThatCannotBeIsRefusedInTheBox)
{
    EXPECT_FALSE(Edit([&](const User& user, HWND hDialog) {
        user.Replace(::GetDlgItem(hDialog, lCutCategories), L"Pop/CON");
        user.Key(VK_RETURN);
        EXPECT_EQ(user.Box().sText, L"There can be no category \"CON\": this is the name of a device.");
        user.Answer(IDOK);
        user.Until([&] { return user.FocusedWindow() == ::GetDlgItem(hDialog, lCutCategories); },
                   "the categories' field");
        user.Key(VK_ESCAPE);
    }));
    EXPECT_EQ(Categories(), L"Pop/Gold");
    EXPECT_EQ(m_lModified, 0);
}

TEST_F(CutEditor, IsCentredOnItsOwnerAndHasItsIcon)
{
    const HWND hOwner = ::CreateWindowExW(0, L"STATIC", L"Owner", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 300, 200,
                                          900, 700, nullptr, nullptr, nullptr, nullptr);
    const auto lIcon = reinterpret_cast<LPARAM>(::LoadIconW(nullptr, IDI_INFORMATION));
    ::SendMessageW(hOwner, WM_SETICON, ICON_SMALL, lIcon);
    WhileOpen([&] { EditCut(hOwner, *m_cCut.Get(), *m_cDataBase.Get()); },
              [&](const User& user) {
        const HWND hDialog = user.WaitFor(L"#32770");
        RECT owner{};
        RECT dialog{};
        ::GetWindowRect(hOwner, &owner);
        ::GetWindowRect(hDialog, &dialog);
        EXPECT_NEAR(owner.left + owner.right, dialog.left + dialog.right, 2);
        EXPECT_NEAR(owner.top + owner.bottom, dialog.top + dialog.bottom, 2);
        EXPECT_EQ(::SendMessageW(hDialog, WM_GETICON, ICON_SMALL, 0), lIcon);
        user.Key(VK_ESCAPE);
    });
    ::DestroyWindow(hOwner);
}

TEST_F(CutEditor, ACutThatRefusesAChangeIsAsItWasBefore)
{
    const auto cRefusing = NewObject<HostCutObject>(L"C:\\refusing.mp3");
    cRefusing->m_sArtist = L"Abba";
    cRefusing->m_lLevel = 2;
    cRefusing->FileIn(L"Pop");
    cRefusing->m_hCategoryText = ErrorResult(70);
    HRESULT hResult = S_OK;
    WhileOpen(
        [&] {
        try
        {
            EditCut(nullptr, *cRefusing.Get(), *m_cDataBase.Get());
        }
        catch (...)
        {
            hResult = ErrorResult(70);
        }
        },
        [&](const User& user) {
        const HWND hDialog = user.WaitFor(L"#32770");
        user.Replace(::GetDlgItem(hDialog, lCutArtist), L"Another");
        user.Replace(::GetDlgItem(hDialog, lCutCategories), L"Gold");
        user.Replace(::GetDlgItem(hDialog, lCutLevel), L"3");
        user.Key(VK_RETURN);
    });
    EXPECT_EQ(hResult, ErrorResult(70));
    EXPECT_EQ(cRefusing->m_sArtist, L"Abba");
    EXPECT_EQ(cRefusing->m_lLevel, 2);
    EXPECT_EQ(m_lModified, 0);
}

TEST_F(CutEditor, EveryFieldIsReachedByItsMnemonic)
{
    EXPECT_FALSE(Edit([&](const User& user, HWND hDialog) {
        const std::pair<int, int> colMnemonics[] = {{'A', lCutArtist},     {'T', lCutTitle},
                                                    {'B', lCutAlbum},      {'Y', lCutYear},
                                                    {'C', lCutCategories}, {'L', lCutLevel}};
        for (const auto& [lKey, lControl] : colMnemonics)
        {
            user.Key(lKey, VK_MENU);
            EXPECT_EQ(user.FocusedWindow(), ::GetDlgItem(hDialog, lControl)) << static_cast<char>(lKey);
        }
        user.Key('O', VK_MENU);
        EXPECT_EQ(::IsDlgButtonChecked(hDialog, lCutOpener), static_cast<UINT>(BST_UNCHECKED));
        user.Key(VK_ESCAPE);
    }));
}

} // namespace ravlo::test
