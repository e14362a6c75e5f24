// SPDX-License-Identifier: MIT
// The scheduler's windows as a host opens them: what goes in, what comes back, and what stays alive.
#include "com/Station.h"

#include <utility>

namespace ravlo
{
namespace
{

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
        AddCut(L"First");
        m_cSecond = AddCut(L"Second", L"Rock", 2);
        for (const auto& cCut : {m_cSecond, AddCut(L"Third", L"Rock", 2)})
            Do(cCut, &_clsCut::put_Opener, true);
        AddCut(L"Fourth", L"Pop");
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
        const Variant cAnswer = Get(m_cMan, &_clsSchedMan::ShowCatUI, &pMainCat, &pSubCat, &chosen.bOpener,
                                    sCaption, &pCuts, false, pCut != nullptr, pCut);
        chosen.cMainCat = ComPtr<_clsCat>::Adopt(pMainCat);
        chosen.cSubCat = ComPtr<_clsCat>::Adopt(pSubCat);
        chosen.colCuts = ComPtr<_clsCollection>::Adopt(pCuts);
        EXPECT_EQ(cAnswer.vt, VT_I4);
        return cAnswer.lVal;
    }
    void ExpectRock2(const Chosen& chosen)
    {
        EXPECT_TRUE(IsSame(chosen.cMainCat, MainCat(L"Rock")));
        EXPECT_TRUE(IsSame(chosen.cSubCat, Level(L"Rock", L"2")));
    }
    bool Showing() { return Get(m_cMan, &_clsSchedMan::get_UIShowing); }

    ComPtr<_clsCut> m_cSecond;
};

TEST_F(WindowsTest, WhatIsChosenIsReturnedInTheCallersVariables)
{
    Chosen chosen{MainCat(L"Rock"), Level(L"Rock", L"2"), VARIANT_TRUE, CollectionOf({Long(1)})};
    const auto colBefore = chosen.colCuts;
    std::wstring sCaption(16, L' ');
    const Person person(sfrmCatClass, [&](HWND hWindow) {
        sCaption.resize(static_cast<std::size_t>(GetWindowTextW(hWindow, sCaption.data(), 16)));
        SendMessageW(SongsIn(hWindow), LB_SETSEL, TRUE, 1);
        PressOk(hWindow);
    });
    EXPECT_EQ(ShowCategory(chosen, L"Take one"), 1);
    EXPECT_EQ(sCaption, L"Take one");
    ExpectRock2(chosen);
    EXPECT_EQ(chosen.bOpener, VARIANT_TRUE);
    EXPECT_FALSE(IsSame(chosen.colCuts, colBefore));
    EXPECT_EQ(Titles(chosen.colCuts), Texts{L"Third"});
    EXPECT_EQ(ReferencesTo(colBefore), 1u) << "the variable released it";
}

TEST_F(WindowsTest, EmptyVariablesAreFilledWithTheCategoriesOfTheCut)
{
    Chosen chosen;
    const Person person(sfrmCatClass, PressOk);
    EXPECT_EQ(ShowCategory(chosen, L"", m_cSecond.Get()), 1);
    ExpectRock2(chosen);
    ASSERT_TRUE(chosen.colCuts);
    EXPECT_EQ(Get(m_cSecond, &_clsCut::get_CategoryText), L"Rock");
}

TEST_F(WindowsTest, AWindowThatIsClosedLeavesTheCallersVariablesAlone)
{
    const auto colBefore = CollectionOf({Long(1)});
    Chosen chosen{MainCat(L"Rock"), Level(L"Rock", L"2"), VARIANT_TRUE, colBefore};
    const Person person(sfrmCatClass, [&](HWND hWindow) {
        SendMessageW(SongsIn(hWindow), LB_SETSEL, TRUE, 0);
        Close(hWindow);
    });
    EXPECT_EQ(ShowCategory(chosen), 2);
    ExpectRock2(chosen);
    EXPECT_EQ(chosen.bOpener, VARIANT_TRUE);
    EXPECT_TRUE(IsSame(chosen.colCuts, colBefore));
}

TEST_F(WindowsTest, EveryArgumentIsOptional)
{
    {
        const Person person(sfrmCatClass, PressOk);
        const Variant cAnswer = Get(m_cMan, &_clsSchedMan::ShowCatUI, nullptr, nullptr, nullptr, nullptr,
                                    nullptr, false, false, nullptr);
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
    Variant colCuts(static_cast<IDispatch*>(nullptr)); // a variable that is Nothing
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
    ExpectRock2({ObjectIn<_clsCat>(cMainCat), ObjectIn<_clsCat>(cSubCat), bOpener.boolVal, nullptr});
    EXPECT_EQ(bOpener.boolVal, VARIANT_TRUE);
    EXPECT_EQ(Titles(ObjectIn<IDispatch>(colCuts)), Texts{L"Second"});
}

TEST_F(WindowsTest, TheLibraryIsShowingWhileItIsOpen)
{
    const auto cSink = NewObject<Sink>(DIID___clsSchedMan);
    cSink->m_onEvent = [&](DISPID lEvent, DISPPARAMS& arguments) {
        if (lEvent != 5)
            return;
        EXPECT_TRUE(IsSame(ObjectIn<_clsCut>(arguments.rgvarg[1]), m_cSecond));
        *arguments.rgvarg[0].pvarVal = Long(2).Detach(); // nothing was edited
    };
    const auto cPoint = PointOf(m_cMan, DIID___clsSchedMan);
    const DWORD lCookie = Advise(cPoint, cSink);
    Variant cResult;
    bool bInside = false;
    const Person person(sfrmUILibClass, [&](HWND hWindow) {
        bInside = Showing();
        Do(m_cMan, &_clsSchedMan::RaiseEditRequestCutEvent, m_cSecond, &cResult);
        Close(hWindow);
    });
    EXPECT_FALSE(Showing());
    EXPECT_EQ(m_cMan->ShowLibraryUI(), S_OK);
    EXPECT_TRUE(bInside);
    EXPECT_EQ(cResult.vt, VT_I4) << "the host answers an edit request, too";
    EXPECT_EQ(cResult.lVal, 2);
    EXPECT_FALSE(Showing());
    EXPECT_FALSE(AnyWindowShows());
    EXPECT_EQ(cPoint->Unadvise(lCookie), S_OK);
    cSink->m_onEvent = nullptr;
}

TEST_F(WindowsTest, AHostMayReleaseTheManagerWhileAWindowShows)
{
    const auto releaseAnd = [this](void (*end)(HWND)) {
        return [this, end](HWND hWindow) {
            m_cMan = nullptr;
            end(hWindow);
        };
    };
    {
        const Person person(sfrmUILibClass, releaseAnd(Close));
        EXPECT_EQ(m_cMan->ShowLibraryUI(), S_OK);
        EXPECT_FALSE(m_cMan);
    }
    m_cMan = Create<_clsSchedMan>(CLSID_clsSchedMan);
    Populate();
    const Person person(sfrmCatClass, releaseAnd(PressOk));
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
    AddCut(L"Fifth", L"Jazz"); // the hidden window follows the database
    EXPECT_EQ(m_cMan->ReloadAll(), S_OK);
    EXPECT_FALSE(AnyWindowShows());
}

} // namespace
} // namespace ravlo
