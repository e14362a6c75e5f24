// SPDX-License-Identifier: MIT
// The boxes that come up over the category window: texts, icons, buttons, place, keys.
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

    static HWND OpenBox(const User& user)
    {
        user.Until([&] { return user.Find(L"#32770") != nullptr; }, "a box");
        user.Idle();
        return user.Find(L"#32770");
    }
    // Of a message box; null for none.
    static HICON IconOf(HWND hBox)
    {
        for (HWND hChild = ::GetWindow(hBox, GW_CHILD); hChild; hChild = ::GetWindow(hChild, GW_HWNDNEXT))
            if (const auto hIcon = reinterpret_cast<HICON>(::SendMessageW(hChild, STM_GETICON, 0, 0)))
                return hIcon;
        return nullptr;
    }
    void Shot(const User& user, const std::wstring& sName) const
    {
        const HWND hBox = OpenBox(user);
        EXPECT_TRUE(TakeScreenshot(hBox, L"box-" + sName));
        EXPECT_TRUE(TakeScreenshot({hWindow, hBox}, L"category-box-" + sName));
    }
    // Types a name or level into the input box that is open, and looks at the box which that brings.
    void Refused(const User& user, const std::wstring& sTyped, const BoxOnScreen& box, LPCWSTR sIcon,
                 const std::wstring& sShot, int lAnswer) const
    {
        user.AnswerInput(sTyped);
        EXPECT_EQ(user.Box(), box);
        EXPECT_EQ(IconOf(OpenBox(user)), sIcon ? ::LoadIconW(nullptr, sIcon) : nullptr) << sShot.c_str();
        Shot(user, sShot);
        EXPECT_TRUE(TitleFits(OpenBox(user))) << sShot.c_str();
        EXPECT_TRUE(InTheMiddle(OpenBox(user))) << sShot.c_str();
        EXPECT_EQ(Untidiness(OpenBox(user)), std::vector<std::string>()) << sShot.c_str();
        user.Answer(lAnswer);
        if (lAnswer != IDNO)
        {
            EXPECT_EQ(Offered(user), sTyped) << "what was typed is there to be mended";
        }
    }
    // What the input box that is open has in its field, marked.
    static std::wstring Offered(const User& user)
    {
        const HWND hEdit = ::GetDlgItem(OpenBox(user), lInputBoxEdit);
        const std::wstring sText = User::Text(hEdit);
        const LRESULT lMarked = ::SendMessageW(hEdit, EM_GETSEL, 0, 0);
        EXPECT_EQ(lMarked, MAKELRESULT(0, sText.size()));
        return sText;
    }
    // Whether the title bar has the room for the whole title and the close button.
    static bool TitleFits(HWND hBox)
    {
        NONCLIENTMETRICSW metrics{};
        metrics.cbSize = sizeof metrics;
        ::SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
        const UniqueFont hFont(::CreateFontIndirectW(&metrics.lfCaptionFont));
        const FontContext cContext(hBox, hFont.get());
        const RECT place = PlaceOf(hBox);
        return TextSize(cContext.Get(), User::Text(hBox)).cx + ::GetSystemMetrics(SM_CXSIZE) <=
               place.right - place.left;
    }
    // Face and height as they come to the screen.
    static std::pair<std::wstring, LONG> FontOf(HWND hControl)
    {
        const FontContext cContext(hControl,
                                   reinterpret_cast<HFONT>(::SendMessageW(hControl, WM_GETFONT, 0, 0)));
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

} // namespace

TEST_F(CategoryBoxes, EachNameThatIsRefusedIsExplainedAndAskedForAgain)
{
    Open([&](const User& user) {
        user.Click(At(eIdcmdNew));
        EXPECT_EQ(
            user.Box(),
            (BoxOnScreen{L"New Category Creation", L"Type the name for the new category", {IDOK, IDCANCEL}}));
        EXPECT_EQ(Offered(user), L"");
        Shot(user, L"new-category");
        Refused(user, L"2024",
                {L"Invalid Category Name",
                 L"Category Names must not be numeric!\r\n\r\nTry Again?",
                 {IDYES, IDNO}},
                IDI_QUESTION, L"name-numeric", IDYES);
        Refused(user, std::wstring(51, L'x'),
                {L"Category Name Too Long! [max 50 chars]",
                 L"Category Name too long!\r\n\r\nTry Again?",
                 {IDYES, IDNO}},
                IDI_QUESTION, L"name-too-long", IDYES);
        Refused(user, L"Rock",
                {L"Category Rock Already Exists!",
                 L"There is already a category by this name!\r\n\r\nTry Again?",
                 {IDYES, IDNO}},
                IDI_QUESTION, L"name-exists", IDYES);
        Refused(user, L"con",
                {L"Invalid Category Name",
                 L"Unable to create a category with the name: con\r\n\r\nTry Again?",
                 {IDYES, IDNO}},
                IDI_QUESTION, L"name-impossible", IDNO);
        EXPECT_EQ(user.Find(L"#32770"), nullptr);
        EXPECT_EQ(user.Entries(At(eIdlstCat)), (Texts{L"Rock", L"Jazz", L"NOCAT"}));
        EXPECT_EQ(user.Selected(At(eIdlstCat)), (Texts{L"Rock"}));
        EXPECT_EQ(user.FocusedWindow(), At(eIdcmdNew));
    });
}

TEST_F(CategoryBoxes, EachLevelThatIsRefusedIsExplainedAndAskedForAgain)
{
    Open([&](const User& user) {
        user.Click(At(eIdcmdNewLevel));
        EXPECT_EQ(user.Box(), (BoxOnScreen{L"Enter The New Category Level",
                                           L"This level will be placed under category: Rock\r\n"
                                           L"Valid Values: Greater than zero\r\n"
                                           L"Type the numeric NEW category level",
                                           {IDOK, IDCANCEL}}));
        Shot(user, L"new-level");
        Refused(user, L"two", {L"Must Be a Number!", L"Invalid Entry!", {IDOK}}, IDI_EXCLAMATION,
                L"level-no-number", IDOK);
        for (const wchar_t* sLevel : {L"0", L"32765"})
            Refused(user, sLevel,
                    {L"Invalid Category Level Entry",
                     L"Invalid - must be greater than zero and less than 32675!",
                     {IDOK}},
                    IDI_EXCLAMATION, L"level-out-of-range", IDOK);
        Refused(user, L"3",
                {L"Category Level Already Present!",
                 L"There is already a category level 3 under Rock\r\n\r\nTry Again?",
                 {IDYES, IDNO}},
                IDI_QUESTION, L"level-exists", IDNO);
        EXPECT_EQ(user.Find(L"#32770"), nullptr);
        EXPECT_EQ(user.Entries(At(eIdlstlvl)), (Texts{L"1", L"3", L"ALL"}));
    });
}

TEST_F(CategoryBoxes, ReplacedCharactersAreMentioned)
{
    Open([&](const User& user) {
        user.Click(At(eIdcmdNew));
        user.AnswerInput(L"AC/DC");
        EXPECT_EQ(user.Box(),
                  (BoxOnScreen{L"New Category Creation",
                               L"The category is named: AC_DC\r\n"
                               L"A file of its name is kept, in which these characters cannot stand: "
                               L"* / : < > ? \\ | \"",
                               {IDOK}}));
        EXPECT_EQ(IconOf(OpenBox(user)), ::LoadIconW(nullptr, IDI_INFORMATION));
        Shot(user, L"name-replaced");
        user.Answer(IDOK);
        EXPECT_EQ(user.Selected(At(eIdlstCat)), (Texts{L"AC_DC"}));
    });
}

TEST_F(CategoryBoxes, ALevelNeedsAChosenCategory)
{
    request.cMainCatChosen = nullptr;
    Open([&](const User& user) {
        user.Click(At(eIdcmdNewLevel));
        EXPECT_EQ(user.Box(),
                  (BoxOnScreen{L"Impossible!",
                               L"Impossible to create a level is we dont know which main cat it's in!",
                               {IDOK}}));
        EXPECT_EQ(IconOf(OpenBox(user)), nullptr);
        Shot(user, L"level-impossible");
        user.Key(VK_RETURN);
        EXPECT_EQ(user.Find(L"#32770"), nullptr);
    });
}

TEST_F(CategoryBoxes, CategoryTabWithoutACategoryIsExplained)
{
    request.cMainCatChosen = nullptr;
    Open([&](const User& user) {
        user.ClickTab(At(eIdTabStrip1), 1);
        EXPECT_EQ(user.Box(), (BoxOnScreen{L"ALL SONGS Is Not Valid For This!",
                                           L"First use the category selector to choose a category",
                                           {IDOK}}));
        EXPECT_EQ(IconOf(OpenBox(user)), ::LoadIconW(nullptr, IDI_INFORMATION));
        Shot(user, L"category-tab-without-category");
        user.Answer(IDOK);
    });
}

// Before the window itself: it opens when the box is closed.
TEST_F(CategoryBoxes, ACutOfAMissingCategoryIsReportedWithTheCriticalIcon)
{
    request.cCut = cState.cDataBase->Add(L"p", L"Polka", 1);
    request.bAllowMultiSelect = true;
    WhileOpen([&] { EXPECT_EQ(cState.cSchedMan->ShowCatUI(request), lNotChosen); },
              [&](const User& user) {
        const HWND hBox = OpenBox(user);
        EXPECT_EQ(user.Box(), (BoxOnScreen{L"Error!",
                                           L"Unexpected!- main cat Polka\t0\r\n"
                                           L"Doesn't exist in ShowCutCatsAsSelected!",
                                           {IDOK}}));
        EXPECT_EQ(IconOf(hBox), ::LoadIconW(nullptr, IDI_ERROR));
        EXPECT_TRUE(TakeScreenshot(hBox, L"box-cut-of-missing-category"));
        user.Answer(IDOK);
        hWindow = user.WaitFor(sfrmCatClass);
        user.Key(VK_ESCAPE);
        user.WaitUntilGone(hWindow);
    });
}

TEST_F(CategoryBoxes, TheQuestionAboutPendingChangesHasItsIconAndIsAnsweredByKeys)
{
    Open([&](const User& user) {
        for (const auto& [lKey, lMins] : {std::pair{'N', 60}, std::pair{'Y', 25}})
        {
            user.ClickTab(At(eIdTabStrip1), 1);
            user.ClickEntry(At(eIdlstCat), 0);
            user.ClickEntry(At(eIdlstlvl), 1);
            user.Replace(Box(1, eIdtxtArtistSepMins), L"25");
            user.ClickEntry(At(eIdlstCat), 1);
            EXPECT_EQ(user.Box(), Question(L"Rock"));
            EXPECT_EQ(IconOf(OpenBox(user)), ::LoadIconW(nullptr, IDI_QUESTION));
            EXPECT_FALSE(::IsWindowEnabled(hWindow));
            EXPECT_TRUE(InTheMiddle(OpenBox(user)));
            Shot(user, L"pending-changes");
            user.Key(lKey);
            EXPECT_EQ(user.Find(L"#32770"), nullptr);
            EXPECT_TRUE(::IsWindowEnabled(hWindow));
            EXPECT_EQ(cState.Level(L"Rock", 3)->Rules()->ArtistSepMins(), lMins);
        }
    });
}

TEST_F(CategoryBoxes, InputBoxIsCentredAndUsableByKeyboard)
{
    Open([&](const User& user) {
        user.Key('N', VK_MENU);
        const HWND hBox = OpenBox(user);
        const HWND hEdit = ::GetDlgItem(hBox, lInputBoxEdit);
        EXPECT_EQ(::GetWindow(hBox, GW_OWNER), hWindow);
        EXPECT_FALSE(::IsWindowEnabled(hWindow));
        EXPECT_TRUE(InTheMiddle(hBox));
        EXPECT_EQ(Untidiness(hBox), std::vector<std::string>());
        EXPECT_EQ(Nameless(hBox), std::vector<std::string>());
        EXPECT_EQ(FontOf(hEdit), FontOf(At(IDOK)));

        EXPECT_EQ(user.FocusedWindow(), hEdit);
        user.Key(VK_TAB);
        EXPECT_EQ(user.FocusedWindow(), ::GetDlgItem(hBox, IDOK));
        user.Key(VK_TAB);
        EXPECT_EQ(user.FocusedWindow(), ::GetDlgItem(hBox, IDCANCEL));
        user.Key(VK_TAB);
        EXPECT_EQ(user.FocusedWindow(), hEdit);
        user.Type(L"Swing");
        user.Key(VK_RETURN);
        EXPECT_TRUE(cState.MainCat(L"Swing"));
        EXPECT_TRUE(::IsWindowEnabled(hWindow));

        // Esc, and Enter on Cancel, give up.
        user.Key('N', VK_MENU);
        user.Type(L"Polka");
        user.Key(VK_ESCAPE);
        EXPECT_EQ(user.Find(L"#32770"), nullptr);
        user.Key('N', VK_MENU);
        user.Type(L"Polka");
        user.Key(VK_TAB);
        user.Key(VK_TAB);
        user.Key(VK_RETURN);
        EXPECT_EQ(user.Find(L"#32770"), nullptr);
        EXPECT_FALSE(cState.MainCat(L"Polka"));
    });
}

} // namespace ravlo::test
