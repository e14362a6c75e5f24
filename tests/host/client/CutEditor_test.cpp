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
        Do(m_cCut, &_clsCut::put_Artist, L"Abba");
        Do(m_cCut, &_clsCut::put_Year, 1974);
        Do(m_cCut, &_clsCut::put_Opener, true);
    }

    // Whether the user edited the cut.
    bool Edit(const std::function<void(const User& user, HWND hDialog)>& drive)
    {
        bool bEdited = false;
        WhileOpen([&] { bEdited = EditCut(nullptr, *m_cCut.Get(), *m_cDataBase.Get()); },
                  [&](const User& user) { drive(user, user.WaitFor(L"#32770")); });
        return bEdited;
    }
    std::wstring Categories() { return Get(m_cCut, &_clsCut::get_CategoryText); }
    LONG Level() { return Get(m_cCut, &_clsCut::get_CatLevel); }
    // Presses Return with a wrong text in a field: a box says why, and the field has the focus again.
    static void ExpectRefused(const User& user, HWND hDialog, int lControl, const wchar_t* sTyped,
                              const wchar_t* sReason)
    {
        const HWND hField = ::GetDlgItem(hDialog, lControl);
        user.Replace(hField, sTyped);
        user.Key(VK_RETURN);
        EXPECT_EQ(user.Box().sText, sReason);
        user.Answer(IDOK);
        user.Until([&] { return user.FocusedWindow() == hField; }, "the field");
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
        Texts colShown;
        for (const int lControl :
             {lCutPath, lCutArtist, lCutTitle, lCutAlbum, lCutYear, lCutCategories, lCutLevel})
            colShown.push_back(User::Text(::GetDlgItem(hDialog, lControl)));
        EXPECT_EQ(colShown,
                  (Texts{L"C:\\Waterloo.mp3", L"Abba", L"Waterloo", L"", L"1974", L"Pop/Gold", L"2"}));
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
    EXPECT_FALSE(Get(m_cCut, &_clsCut::get_Opener));
    EXPECT_EQ(m_lModified, 1);
    EXPECT_TRUE(Edit([&](const User& user, HWND) { user.Key(VK_RETURN); }));
    EXPECT_EQ(m_lModified, 1) << "OK without a change announces nothing";
}

TEST_F(CutEditor, AWrongFieldIsExplainedAndCanBeCorrected)
{
    EXPECT_TRUE(Edit([&](const User& user, HWND hDialog) {
        ExpectRefused(user, hDialog, lCutCategories, L"Pop/CON",
                      L"There can be no category \"CON\": this is the name of a device.");
        user.Replace(::GetDlgItem(hDialog, lCutCategories), L"Pop/Gold");
        ExpectRefused(user, hDialog, lCutLevel, L"0", L"The level is a whole number from 1 to 32764.");
        EXPECT_EQ(m_lModified, 0);
        user.Type(L"4"); // all of it is marked
        user.Key(VK_RETURN);
    }));
    EXPECT_EQ(Level(), 4);
    EXPECT_EQ(Categories(), L"Pop/Gold");
    EXPECT_EQ(m_lModified, 1);
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
