// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
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

// While one exists the thread runs messages in the middle of some work: it is not idle, even when no message
// is left.
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
// wait has a deadline and throws when it passes. After each action everything it set off has been done.
class User
{
public:
    // The window that tells when the other thread is idle.
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

    // Real input, at the place where the control is to be seen.
    void Click(HWND hControl) const;
    // Client coordinates; VK_CONTROL or VK_SHIFT held down.
    void ClickAt(HWND hWindow, int x, int y, int lModifier = 0) const;
    void DoubleClickAt(HWND hWindow, int x, int y) const;
    void RightClickAt(HWND hWindow, int x, int y) const;
    void ClickEntry(HWND hList, int lEntry, int lModifier = 0) const; // VK_CONTROL or VK_SHIFT held down
    void ClickTab(HWND hTabs, int lTab) const;
    void Drag(HWND hWindow, POINT from, POINT to) const; // client coordinates
    void Press(HWND hWindow, POINT at) const;            // the button stays down ...
    void MoveTo(HWND hWindow, POINT to) const;
    void Release() const;
    void Key(int lKey, int lModifier = 0) const;
    void Type(const std::wstring& sText) const;
    // Marks all of an edit field and types over it.
    void Replace(HWND hEdit, const std::wstring& sText) const;

    // The message box or input box that is open, and its answer.
    BoxOnScreen Box() const;
    void Answer(int lButton) const;
    void AnswerInput(const std::wstring& sText) const;

    void Shot(HWND hWindow, const std::wstring& sName) const;

private:
    HWND Dialog() const;
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
