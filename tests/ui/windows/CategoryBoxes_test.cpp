// SPDX-License-Identifier: MIT
// The boxes over the category window: texts, icons, buttons, place, keys.
#include "platform/windows/InputBox.h"
#include "ui/controls/windows/Handles.h"
#include "ui/windows/CategoryFixture.h"
#include "ui/windows/Tidy.h"

#include <cstdlib>
#include <utility>

namespace ravlo::test
{

namespace
{

struct CategoryBoxes : CategoryWindowTest
{
    CategoryBoxes() { StartOn(L"Rock", 3); }

    // Of a message box; null for none.
    static HICON IconOf(HWND hBox)
    {
        for (HWND hChild = ::GetWindow(hBox, GW_CHILD); hChild; hChild = ::GetWindow(hChild, GW_HWNDNEXT))
            if (const auto hIcon = reinterpret_cast<HICON>(Send(hChild, STM_GETICON)))
                return hIcon;
        return nullptr;
    }
    // Checks the box that is open: what it says, its icon, place and look. Saves a screenshot of it.
    void Expect(const User& user, const BoxOnScreen& box, LPCWSTR sIcon, const std::wstring& sShot) const
    {
        SCOPED_TRACE(::testing::PrintToString(sShot));
        EXPECT_EQ(user.Box(), box);
        const HWND hBox = user.BoxWindow();
        EXPECT_EQ(IconOf(hBox), sIcon ? ::LoadIconW(nullptr, sIcon) : nullptr);
        EXPECT_TRUE(TakeScreenshot(hBox, L"box-" + sShot));
        EXPECT_TRUE(TakeScreenshot({hWindow, hBox}, L"category-box-" + sShot));
        EXPECT_TRUE(TitleFits(hBox));
        EXPECT_TRUE(InTheMiddle(hBox));
        if (sIcon) // else the system's box keeps an empty field for it
        {
            EXPECT_EQ(Untidiness(hBox), Faults());
        }
    }
    // Types a name or level into the input box that is open and expects it to be refused.
    void Refused(const User& user, const std::wstring& sTyped, const BoxOnScreen& box, LPCWSTR sIcon,
                 const std::wstring& sShot, int lAnswer) const
    {
        user.AnswerInput(sTyped);
        Expect(user, box, sIcon, sShot);
        user.Answer(lAnswer);
        if (lAnswer != IDNO)
        {
            EXPECT_EQ(Offered(user), sTyped) << "what was typed can be corrected";
        }
    }
    // The text in the input box that is open, which is marked.
    static std::wstring Offered(const User& user)
    {
        const HWND hEdit = ::GetDlgItem(user.BoxWindow(), lInputBoxEdit);
        const std::wstring sText = User::Text(hEdit);
        EXPECT_EQ(Send(hEdit, EM_GETSEL), MAKELRESULT(0, sText.size()));
        return sText;
    }
    // Whether the title bar has room for the whole title and the close button.
    static bool TitleFits(HWND hBox)
    {
        NONCLIENTMETRICSW metrics{};
        metrics.cbSize = sizeof metrics;
        ::SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
        const UniqueFont hFont(::CreateFontIndirectW(&metrics.lfCaptionFont));
        const FontContext cContext(hBox, hFont.get());
        return TextSize(cContext.Get(), User::Text(hBox)).cx + ::GetSystemMetrics(SM_CXSIZE) <=
               WidthOf(PlaceOf(hBox));
    }
    // Face and height on the screen.
    static std::pair<std::wstring, LONG> FontOf(HWND hControl)
    {
        const FontContext cContext(hControl, reinterpret_cast<HFONT>(Send(hControl, WM_GETFONT)));
        wchar_t sFace[LF_FACESIZE] = L"";
        ::GetTextFaceW(cContext.Get(), LF_FACESIZE, sFace);
        TEXTMETRICW metrics{};
        ::GetTextMetricsW(cContext.Get(), &metrics);
        return {sFace, metrics.tmHeight};
    }
    bool InTheMiddle(HWND hBox) const
    {
        const RECT window = PlaceOf(hWindow);
        const RECT box = PlaceOf(hBox);
        return std::abs(static_cast<int>(window.left + window.right - box.left - box.right)) <= 2 &&
               std::abs(static_cast<int>(window.top + window.bottom - box.top - box.bottom)) <= 2;
    }
};

BoxOnScreen TryAgain(const std::wstring& sTitle, const std::wstring& sText)
{
    return YesNoOnScreen(sTitle, sText + L"\r\n\r\nTry Again?");
}

} // namespace

TEST_F(CategoryBoxes, ARefusedNameIsExplainedAndAskedForAgain)
{
    Open([&](const User& user) {
        user.Click(At(eIdcmdNew));
        Expect(user, {L"New Category Creation", L"Type the name for the new category", {IDOK, IDCANCEL}},
               nullptr, L"new-category");
        EXPECT_EQ(Offered(user), L"");
        Refused(user, L"2024", TryAgain(L"Invalid Category Name", L"Category Names must not be numeric!"),
                IDI_QUESTION, L"name-numeric", IDYES);
        Refused(user, std::wstring(51, L'x'),
                TryAgain(L"Category Name Too Long! [max 50 chars]", L"Category Name too long!"), IDI_QUESTION,
                L"name-too-long", IDYES);
        Refused(user, L"Rock",
                TryAgain(L"Category Rock Already Exists!", L"There is already a category by this name!"),
                IDI_QUESTION, L"name-exists", IDYES);
        Refused(user, L"con",
                TryAgain(L"Invalid Category Name", L"Unable to create a category with the name: con"),
                IDI_QUESTION, L"name-impossible", IDNO);
        EXPECT_EQ(user.Find(L"#32770"), nullptr);
        EXPECT_EQ(Entries(eIdlstCat), (Texts{L"Rock", L"Jazz", L"NOCAT"}));
        EXPECT_EQ(Selected(eIdlstCat), (Texts{L"Rock"}));
        EXPECT_EQ(user.FocusedWindow(), At(eIdcmdNew));

        user.Click(At(eIdcmdNew));
        user.AnswerInput(L"AC/DC");
        Expect(user,
               OkOnScreen(L"New Category Creation",
                          L"The category is named: AC_DC\r\n"
                          L"A file of its name is kept, which cannot contain these characters: "
                          L"* / : < > ? \\ | \""),
               IDI_INFORMATION, L"name-replaced");
        user.Answer(IDOK);
        EXPECT_EQ(Selected(eIdlstCat), (Texts{L"AC_DC"}));
    });
}

TEST_F(CategoryBoxes, ARefusedLevelIsExplainedAndAskedForAgain)
{
    Open([&](const User& user) {
        user.Click(At(eIdcmdNewLevel));
        Expect(user,
               {L"Enter The New Category Level",
                L"This level will be placed under category: Rock\r\n"
                L"Valid Values: Greater than zero\r\n"
                L"Type the numeric NEW category level",
                {IDOK, IDCANCEL}},
               nullptr, L"new-level");
        Refused(user, L"two", OkOnScreen(L"Must Be a Number!", L"Invalid Entry!"), IDI_EXCLAMATION,
                L"level-no-number", IDOK);
        for (const wchar_t* sLevel : {L"0", L"32765"})
            Refused(user, sLevel,
                    OkOnScreen(L"Invalid Category Level Entry",
                               L"Invalid - must be greater than zero and less than 32675!"),
                    IDI_EXCLAMATION, L"level-out-of-range", IDOK);
        Refused(
            user, L"3",
            TryAgain(L"Category Level Already Present!", L"There is already a category level 3 under Rock"),
            IDI_QUESTION, L"level-exists", IDNO);
        EXPECT_EQ(user.Find(L"#32770"), nullptr);
        EXPECT_EQ(Entries(eIdlstlvl), (Texts{L"1", L"3", L"ALL"}));
    });
}

TEST_F(CategoryBoxes, LevelsAndCategoryRulesNeedAChosenCategory)
{
    request.cMainCatChosen = nullptr;
    Open([&](const User& user) {
        user.Click(At(eIdcmdNewLevel));
        Expect(user,
               OkOnScreen(L"Impossible!",
                          L"Impossible to create a level is we dont know which main cat it's in!"),
               nullptr, L"level-impossible");
        user.Key(VK_RETURN);
        EXPECT_EQ(user.Find(L"#32770"), nullptr);
        ClickTab(user, 1);
        Expect(user,
               OkOnScreen(L"ALL SONGS Is Not Valid For This!",
                          L"First use the category selector to choose a category"),
               IDI_INFORMATION, L"category-tab-without-category");
        user.Answer(IDOK);
        EXPECT_TRUE(Shown(At(eIdpicRules0)));
        EXPECT_EQ(Send(At(eIdTabStrip1), 0x130B /* TCM_GETCURSEL */), 0);
    });
}

// Before the window itself: it opens when the boxes are closed.
TEST_F(CategoryBoxes, MissingCategoriesOfACutAreReportedFirst)
{
    request.cCut = Add(L"x", L"Polka/Rock", 7, L"A", L"B");
    request.bAllowMultiSelect = true;
    WhileOpen([&] { EXPECT_EQ(cState.cSchedMan->ShowCatUI(request), lNotChosen); },
              [&](const User& user) {
        for (const wchar_t* sMissing : {L"main cat Polka\t0", L"sub cat 7"})
        {
            EXPECT_EQ(user.Box(), OkOnScreen(L"Error!", L"Unexpected!- " + std::wstring(sMissing) +
                                                            L"\r\nDoesn't exist in ShowCutCatsAsSelected!"));
            EXPECT_EQ(IconOf(user.BoxWindow()), ::LoadIconW(nullptr, IDI_ERROR));
            EXPECT_TRUE(TakeScreenshot(user.BoxWindow(), L"box-cut-of-missing-category"));
            user.Answer(IDOK);
        }
        const HWND hOpen = user.WaitFor(sfrmCatClass);
        user.Key(VK_ESCAPE);
        user.WaitUntilGone(hOpen);
    });
}

TEST_F(CategoryBoxes, TheQuestionAboutPendingChangesIsAnsweredByKeys)
{
    Open([&](const User& user) {
        for (const auto& [lKey, lMins] : {std::pair{'N', 60}, std::pair{'Y', 25}})
        {
            ClickTab(user, 1);
            Pick(user, eIdlstCat, 0);
            Pick(user, eIdlstlvl, 1);
            user.Replace(Box(1, eIdtxtArtistSepMins), L"25");
            Pick(user, eIdlstCat, 1);
            Expect(user, Question(L"Rock"), IDI_QUESTION, L"pending-changes");
            EXPECT_FALSE(Enabled(hWindow));
            user.Key(lKey);
            EXPECT_EQ(user.Find(L"#32770"), nullptr);
            EXPECT_TRUE(Enabled(hWindow));
            EXPECT_EQ(cState.Level(L"Rock", 3)->Rules()->ArtistSepMins(), lMins);
            EXPECT_EQ(user.Text(At(eIdlblRulesTitle)), L"Showing Rules for: Jazz 2");
            Pick(user, eIdlstlvl, 1);
            EXPECT_EQ(user.Find(L"#32770"), nullptr) << "asked once";
        }
    });
}

TEST_F(CategoryBoxes, InputBoxIsCentredAndUsableByKeyboard)
{
    Open([&](const User& user) {
        user.Key('N', VK_MENU);
        const HWND hBox = user.BoxWindow();
        const HWND hEdit = ::GetDlgItem(hBox, lInputBoxEdit);
        EXPECT_EQ(::GetWindow(hBox, GW_OWNER), hWindow);
        EXPECT_FALSE(Enabled(hWindow));
        EXPECT_TRUE(InTheMiddle(hBox));
        EXPECT_EQ(Untidiness(hBox), Faults());
        EXPECT_EQ(Nameless(hBox), Faults());
        EXPECT_EQ(FontOf(hEdit), FontOf(At(IDOK)));
        EXPECT_EQ(user.FocusedWindow(), hEdit);
        for (const HWND hNext : {::GetDlgItem(hBox, IDOK), ::GetDlgItem(hBox, IDCANCEL), hEdit})
        {
            user.Key(VK_TAB);
            EXPECT_EQ(user.FocusedWindow(), hNext);
        }
        user.Type(L"Swing");
        user.Key(VK_RETURN);
        EXPECT_EQ(Entries(eIdlstCat), (Texts{L"Rock", L"Jazz", L"NOCAT", L"Swing"}));
        EXPECT_EQ(Selected(eIdlstCat), (Texts{L"Swing"}));
        EXPECT_TRUE(Enabled(hWindow));

        using Keys = std::initializer_list<int>;
        for (const Keys& lGiveUp : {Keys{VK_ESCAPE}, Keys{VK_TAB, VK_TAB, VK_RETURN}}) // Enter on Cancel
        {
            user.Key('N', VK_MENU);
            user.Type(L"Polka");
            user.Keys(lGiveUp);
            EXPECT_EQ(user.Find(L"#32770"), nullptr);
        }
        EXPECT_FALSE(cState.MainCat(L"Polka"));
        user.Click(At(IDOK));
    });
    EXPECT_EQ(request.cMainCatChosen, cState.MainCat(L"Swing"));
}

} // namespace ravlo::test
