// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <initializer_list>
#include <string>
#include <vector>
#include <windows.h>

namespace ravlo::test
{

// What a box shows, as it is read from the screen.
struct BoxOnScreen
{
    std::wstring sTitle;
    std::wstring sText;
    std::vector<int> lButtons; // ids: 1 OK, 2 Cancel, 6 Yes, 7 No

    friend bool operator==(const BoxOnScreen&, const BoxOnScreen&) = default;
};
inline BoxOnScreen OkOnScreen(const std::wstring& sTitle, const std::wstring& sText)
{
    return {sTitle, sText, {IDOK}};
}
inline BoxOnScreen YesNoOnScreen(const std::wstring& sTitle, const std::wstring& sText)
{
    return {sTitle, sText, {IDYES, IDNO}};
}

// Sends a message with a number and the address of something.
inline LRESULT Send(HWND hWindow, UINT lMessage, INT_PTR lNumber = 0, const void* pParam = nullptr)
{
    return ::SendMessageW(hWindow, lMessage, static_cast<WPARAM>(lNumber), reinterpret_cast<LPARAM>(pParam));
}

std::wstring ClassOf(HWND hWindow);
RECT PlaceOf(HWND hWindow); // on the screen
RECT ClientOf(HWND hWindow);
inline int WidthOf(const RECT& rect) { return static_cast<int>(rect.right - rect.left); }
inline bool Shown(HWND hWindow) { return ::IsWindowVisible(hWindow) != FALSE; }
inline bool Enabled(HWND hWindow) { return ::IsWindowEnabled(hWindow) != FALSE; }
bool IsWindowClass(const wchar_t* sClass); // registered in this program

// While one exists, the thread runs messages inside some work: it is not idle, even when no message is left.
class MiddleOfWork
{
public:
    MiddleOfWork() { ++lDepth; }
    ~MiddleOfWork() { --lDepth; }
    MiddleOfWork(const MiddleOfWork&) = delete;
    MiddleOfWork& operator=(const MiddleOfWork&) = delete;

    static inline thread_local int lDepth = 0;
};

// A person at mouse and keyboard, on a thread of their own, while the windows run on the test's thread. Every
// wait has a deadline and throws when it passes. Each action returns when all it caused is done.
class User
{
public:
    // hIdle reports when the other thread is idle.
    User(DWORD lThread, HWND hIdle) : m_lThread(lThread), m_hIdle(hIdle) {}

    void Until(const std::function<bool()>& bTrue, const char* sWhat) const;
    void Idle() const;

    // A visible top-level window of that class.
    HWND Find(const std::wstring& sClass) const;
    HWND WaitFor(const std::wstring& sClass) const;
    void WaitUntilGone(HWND hWindow) const;

    // A descendant by its id, visible or not; throws when there is none.
    static HWND Control(HWND hWindow, int lId);
    static std::wstring Text(HWND hWindow);
    static std::vector<std::wstring> Entries(HWND hList);
    static std::vector<std::wstring> Selected(HWND hList);
    HWND FocusedWindow() const;

    // Real input. Points are client coordinates; a modifier is VK_CONTROL or VK_SHIFT, held down.
    void Click(HWND hControl) const;
    void ClickAt(HWND hWindow, POINT at, int lModifier = 0) const;
    void DoubleClickAt(HWND hWindow, POINT at) const;
    void RightClickAt(HWND hWindow, POINT at) const;
    void ClickEntry(HWND hList, int lEntry, int lModifier = 0) const;
    void ClickTab(HWND hTabs, int lTab) const;
    void Drag(HWND hWindow, POINT from, POINT to) const;
    void Press(HWND hWindow, POINT at) const; // the button stays down ...
    void MoveTo(HWND hWindow, POINT to) const;
    void Release() const;
    void Key(int lKey, int lModifier = 0) const;
    void Keys(std::initializer_list<int> lKeys) const;
    void Type(const std::wstring& sText) const;
    // Marks all of an edit field and types over it.
    void Replace(HWND hEdit, const std::wstring& sText) const;

    // What the system does to a window.
    void Place(HWND hWindow, int x, int y, int lWidth, int lHeight) const;
    void Resize(HWND hWindow, int lWidth, int lHeight) const;
    void ShowAs(HWND hWindow, int lShow) const; // SW_MAXIMIZE ...
    // With a size for 96 dpi.
    void ChangeResolution(HWND hWindow, int lDpi, int lWidth, int lHeight) const;

    // The message box or input box that is open, and its answer.
    BoxOnScreen Box() const;
    HWND BoxWindow() const;
    void Answer(int lButton) const;
    void Answer(const BoxOnScreen& expected, int lButton) const; // after comparing the box
    void AnswerInput(const std::wstring& sText) const;

    void Shot(HWND hWindow, const std::wstring& sName) const;

private:
    void PointAt(HWND hWindow, POINT point) const;
    void Mouse(POINT at, DWORD lFlags) const;
    void SendKey(int lKey, bool bUp) const;
    void Hold(int lModifier) const;

    mutable POINT m_pointer{}; // where the mouse has last been sent
    DWORD m_lThread;
    HWND m_hIdle;
};

// Runs open, which shows windows and returns when they are closed, while drive uses them. When drive throws,
// the test fails and every window of the thread is closed.
void WhileOpen(const std::function<void()>& open, const std::function<void(const User& user)>& drive);

} // namespace ravlo::test
