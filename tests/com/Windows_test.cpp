// SPDX-License-Identifier: MIT
// The scheduler's windows as a host opens them: what goes in, what comes back, and who is kept alive.
#include "com/Station.h"

#include <utility>

namespace ravlo
{

namespace
{

using Texts = std::vector<std::wstring>;

// What the windows are called among window classes.
constexpr const wchar_t* sfrmCatClass = L"RavloCategory";
constexpr const wchar_t* sfrmUILibClass = L"RavloSchedulerLibrary";

// Acts once, as a person would, in the next window of a class that this thread shows. A window runs a message
// loop of its own, which serves this timer too.
class Person
{
public:
    Person(const wchar_t* sClass, std::function<void(HWND)> act) : m_sClass(sClass), m_act(std::move(act))
    {
        m_pOnly = this;
        m_lTimer = SetTimer(nullptr, 0, USER_TIMER_MINIMUM, OnTimer);
    }
    ~Person()
    {
        KillTimer(nullptr, m_lTimer);
        m_pOnly = nullptr;
        EXPECT_FALSE(m_act) << "no such window came";
    }
    Person(const Person&) = delete;
    Person& operator=(const Person&) = delete;

private:
    static void CALLBACK OnTimer(HWND, UINT, UINT_PTR, DWORD)
    {
        const HWND hWindow = FindWindowW(m_pOnly->m_sClass, nullptr);
        if (hWindow && GetWindowThreadProcessId(hWindow, nullptr) == GetCurrentThreadId() &&
            IsWindowVisible(hWindow) && m_pOnly->m_act)
            std::exchange(m_pOnly->m_act, nullptr)(hWindow);
    }

    inline static Person* m_pOnly = nullptr;
    const wchar_t* m_sClass;
    std::function<void(HWND)> m_act;
    UINT_PTR m_lTimer = 0;
};

void PressOk(HWND hWindow) { PostMessageW(hWindow, WM_COMMAND, IDOK, 0); }
void Close(HWND hWindow) { PostMessageW(hWindow, WM_CLOSE, 0, 0); }

BOOL CALLBACK FindSongs(HWND hChild, LPARAM lParam)
{
    wchar_t sClass[16] = {};
    GetClassNameW(hChild, sClass, static_cast<int>(std::size(sClass)));
    if (lstrcmpiW(sClass, L"ListBox") == 0 && IsWindowVisible(hChild) &&
        (GetWindowLongPtrW(hChild, GWL_STYLE) & LBS_EXTENDEDSEL) != 0)
        *reinterpret_cast<HWND*>(lParam) = hChild;
    return TRUE;
}

// The visible list of songs: the last one in which several entries can be selected.
HWND SongsIn(HWND hWindow)
{
    HWND hSongs = nullptr;
    EnumChildWindows(hWindow, FindSongs, reinterpret_cast<LPARAM>(&hSongs));
    return hSongs;
}

BOOL CALLBACK ContinueAtHidden(HWND hWindow, LPARAM) { return !IsWindowVisible(hWindow); }

bool AnyWindowShows() { return EnumThreadWindows(GetCurrentThreadId(), ContinueAtHidden, 0) == FALSE; }

class WindowsTest : public ComStationTest
{
protected:
    WindowsTest()
    {
        AddCut(L"First", L"Rock", 1);
        m_cSecond = AddCut(L"Second", L"Rock", 2);
        const auto cThird = AddCut(L"Third", L"Rock", 2);
        EXPECT_EQ(m_cSecond->put_Opener(VARIANT_TRUE), S_OK);
        EXPECT_EQ(cThird->put_Opener(VARIANT_TRUE), S_OK);
        AddCut(L"Fourth", L"Pop", 1);
        Populate();
    }

    // The variables a host hands to the category window.
    struct Chosen
    {
        ComPtr<_clsCat> cMainCat;
        ComPtr<_clsCat> cSubCat;
        VARIANT_BOOL bOpener = VARIANT_FALSE;
        ComPtr<_clsCollection> colCuts;
    };
    long ShowCategory(Chosen& chosen, const wchar_t* sCaption = L"", _clsCut* pCut = nullptr)
    {
        _clsCat* pMainCat = chosen.cMainCat.Detach();
        _clsCat* pSubCat = chosen.cSubCat.Detach();
        _clsCollection* pCuts = chosen.colCuts.Detach();
        Variant cAnswer;
        EXPECT_EQ(m_cMan->ShowCatUI(&pMainCat, &pSubCat, &chosen.bOpener, Bstr(sCaption).Get(), &pCuts,
                                    VARIANT_FALSE, BoolOf(pCut != nullptr), pCut, &cAnswer),
                  S_OK);
        chosen.cMainCat = ComPtr<_clsCat>::Adopt(pMainCat);
        chosen.cSubCat = ComPtr<_clsCat>::Adopt(pSubCat);
        chosen.colCuts = ComPtr<_clsCollection>::Adopt(pCuts);
        EXPECT_EQ(cAnswer.vt, VT_I4);
        return cAnswer.lVal;
    }
    bool Showing() { return Get(m_cMan, &_clsSchedMan::get_UIShowing); }

    ComPtr<_clsCut> m_cSecond;
};

TEST_F(WindowsTest, WhatIsChosenComesBackInTheCallersVariables)
{
    Chosen chosen{MainCat(L"Rock"), Level(L"Rock", L"2"), VARIANT_TRUE, CollectionOf({Long(1)})};
    const auto colBefore = chosen.colCuts;
    std::wstring sCaption;
    const Person person(sfrmCatClass, [&](HWND hWindow) {
        sCaption.resize(static_cast<std::size_t>(GetWindowTextLengthW(hWindow)) + 1);
        sCaption.resize(static_cast<std::size_t>(
            GetWindowTextW(hWindow, sCaption.data(), static_cast<int>(sCaption.size()))));
        SendMessageW(SongsIn(hWindow), LB_SETSEL, TRUE, 1);
        PressOk(hWindow);
    });
    EXPECT_EQ(ShowCategory(chosen, L"Take one"), 1);
    EXPECT_EQ(sCaption, L"Take one");
    EXPECT_TRUE(IsSame(chosen.cMainCat, MainCat(L"Rock")));
    EXPECT_TRUE(IsSame(chosen.cSubCat, Level(L"Rock", L"2")));
    EXPECT_EQ(chosen.bOpener, VARIANT_TRUE);
    ASSERT_TRUE(chosen.colCuts);
    EXPECT_FALSE(IsSame(chosen.colCuts, colBefore));
    EXPECT_EQ(Titles(chosen.colCuts.Get()), Texts{L"Third"});
    colBefore->AddRef();
    EXPECT_EQ(colBefore->Release(), 1u) << "the variable has let go of it";
}

TEST_F(WindowsTest, EmptyVariablesAreFilledWithTheCategoriesOfTheCut)
{
    Chosen chosen;
    const Person person(sfrmCatClass, PressOk);
    EXPECT_EQ(ShowCategory(chosen, L"", m_cSecond.Get()), 1);
    EXPECT_TRUE(IsSame(chosen.cMainCat, MainCat(L"Rock")));
    EXPECT_TRUE(IsSame(chosen.cSubCat, Level(L"Rock", L"2")));
    ASSERT_TRUE(chosen.colCuts);
    EXPECT_EQ(Get(m_cSecond, &_clsCut::get_CategoryText), L"Rock");
}

TEST_F(WindowsTest, AWindowThatIsClosedLeavesTheCallersVariablesAlone)
{
    const auto colBefore = CollectionOf({Long(1)});
    Chosen chosen{MainCat(L"Rock"), Level(L"Rock", L"1"), VARIANT_TRUE, colBefore};
    const Person person(sfrmCatClass, [&](HWND hWindow) {
        SendMessageW(SongsIn(hWindow), LB_SETSEL, TRUE, 0);
        Close(hWindow);
    });
    EXPECT_EQ(ShowCategory(chosen), 2);
    EXPECT_TRUE(IsSame(chosen.cMainCat, MainCat(L"Rock")));
    EXPECT_TRUE(IsSame(chosen.cSubCat, Level(L"Rock", L"1")));
    EXPECT_EQ(chosen.bOpener, VARIANT_TRUE);
    EXPECT_TRUE(IsSame(chosen.colCuts, colBefore));
}

TEST_F(WindowsTest, ACallerMayDoWithoutEveryOptionalArgument)
{
    {
        const Person person(sfrmCatClass, PressOk);
        const auto cAnswer = Get(m_cMan, &_clsSchedMan::ShowCatUI, nullptr, nullptr, nullptr, nullptr,
                                 nullptr, VARIANT_FALSE, VARIANT_FALSE, nullptr);
        EXPECT_EQ(cAnswer.lVal, 1);
    }
    const Person person(sfrmCatClass, Close);
    const Called called = Call(m_cMan.Get(), L"ShowCatUI", DISPATCH_METHOD);
    EXPECT_EQ(called.hResult, S_OK);
    EXPECT_EQ(called.cResult.lVal, 2);
}

TEST_F(WindowsTest, ALateBoundCallNamesItsArguments)
{
    Variant cMainCat = Object(MainCat(L"Rock"));
    Variant cSubCat = Object(Level(L"Rock", L"2"));
    Variant bOpener(true);
    Variant colCuts;
    colCuts.vt = VT_DISPATCH; // a variable that is Nothing
    const Person person(sfrmCatClass, [&](HWND hWindow) {
        SendMessageW(SongsIn(hWindow), LB_SETSEL, TRUE, 0);
        PressOk(hWindow);
    });
    const Called called = Call(m_cMan.Get(), L"ShowCatUI", DISPATCH_METHOD, {},
                               {{L"colSelCuts", ByReference(colCuts)},
                                {L"cSubCatChosen", ByReference(cSubCat)},
                                {L"bOpenerChosen", ByReference(bOpener)},
                                {L"cMainCatChosen", ByReference(cMainCat)},
                                {L"sCaption", Text(L"By name")}});
    ASSERT_EQ(called.hResult, S_OK) << called.lArgument;
    EXPECT_EQ(called.cResult.lVal, 1);
    EXPECT_TRUE(IsSame(ObjectIn<_clsCat>(cMainCat), MainCat(L"Rock")));
    EXPECT_TRUE(IsSame(ObjectIn<_clsCat>(cSubCat), Level(L"Rock", L"2")));
    EXPECT_EQ(bOpener.boolVal, VARIANT_TRUE);
    ASSERT_TRUE(ObjectIn<IDispatch>(colCuts));
    EXPECT_EQ(Titles(ObjectIn<IDispatch>(colCuts).Get()), Texts{L"Second"});
}

TEST_F(WindowsTest, TheLibraryIsShowingWhileItIsOpen)
{
    bool bInside = false;
    const Person person(sfrmUILibClass, [&](HWND hWindow) {
        bInside = Showing();
        Close(hWindow);
    });
    EXPECT_FALSE(Showing());
    EXPECT_EQ(m_cMan->ShowLibraryUI(), S_OK);
    EXPECT_TRUE(bInside);
    EXPECT_FALSE(Showing());
    EXPECT_FALSE(AnyWindowShows());
}

TEST_F(WindowsTest, AHostMayReleaseTheManagerWhileAWindowShows)
{
    const auto letGoAnd = [this](void (*end)(HWND)) {
        return [this, end](HWND hWindow) {
            m_cMan = nullptr;
            end(hWindow);
        };
    };
    {
        const Person person(sfrmUILibClass, letGoAnd(Close));
        EXPECT_EQ(m_cMan->ShowLibraryUI(), S_OK);
        EXPECT_FALSE(m_cMan);
    }
    m_cMan = Create<_clsSchedMan>(CLSID_clsSchedMan);
    Populate();
    const Person person(sfrmCatClass, letGoAnd(PressOk));
    Chosen chosen{MainCat(L"Rock"), Level(L"Rock", L"2"), VARIANT_FALSE, nullptr};
    EXPECT_EQ(ShowCategory(chosen), 1);
    EXPECT_FALSE(m_cMan);
    EXPECT_EQ(TitlesIn(chosen.cSubCat), (Texts{L"Second", L"Third"}));
}

TEST_F(WindowsTest, ReloadingWithoutAWindowShowsNone)
{
    EXPECT_EQ(m_cMan->ReloadAll(), S_OK);
    EXPECT_FALSE(AnyWindowShows());
    EXPECT_FALSE(Showing());
    AddCut(L"Fifth", L"Jazz", 1); // the hidden window follows the database
    EXPECT_EQ(m_cMan->ReloadAll(), S_OK);
    EXPECT_FALSE(AnyWindowShows());
}

TEST_F(WindowsTest, TheHostAnswersAnEditRequestWhileTheLibraryShows)
{
    const auto cSink = NewObject<Sink>(DIID___clsSchedMan);
    const auto cPoint = PointOf(m_cMan, DIID___clsSchedMan);
    cSink->m_onEvent = [&](DISPID lEvent, DISPPARAMS& arguments) {
        if (lEvent != 5)
            return;
        EXPECT_TRUE(IsSame(ObjectIn<_clsCut>(arguments.rgvarg[1]), m_cSecond));
        *arguments.rgvarg[0].pvarVal = Long(2).Detach(); // nothing was edited
    };
    const DWORD lCookie = Advise(cPoint, cSink);
    Variant cResult;
    const Person person(sfrmUILibClass, [&](HWND hWindow) {
        EXPECT_EQ(m_cMan->RaiseEditRequestCutEvent(m_cSecond.Get(), &cResult), S_OK);
        Close(hWindow);
    });
    EXPECT_EQ(m_cMan->ShowLibraryUI(), S_OK);
    EXPECT_EQ(cResult.vt, VT_I4);
    EXPECT_EQ(cResult.lVal, 2);
    EXPECT_EQ(cPoint->Unadvise(lCookie), S_OK);
    cSink->m_onEvent = nullptr;
}

} // namespace

} // namespace ravlo
