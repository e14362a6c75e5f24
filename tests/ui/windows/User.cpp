// SPDX-License-Identifier: MIT
#include "ui/windows/User.h"

#include "ui/windows/Screenshot.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <commctrl.h>
#include <stdexcept>
#include <thread>

namespace ravlo::test
{

namespace
{

constexpr DWORD lDeadline = 15'000; // milliseconds
constexpr UINT lProve = WM_APP + 1; // wParam: rounds left; lParam: the event to set

// Sets the event once the thread's queue has stayed empty for some rounds through it. A sent message would
// overtake what is posted, so the question goes through the queue itself.
LRESULT CALLBACK IdleProcedure(HWND hWindow, UINT lMessage, WPARAM wParam, LPARAM lParam)
{
    if (lMessage == WM_TIMER)
    {
        ::KillTimer(hWindow, wParam);
        ::PostMessageW(hWindow, lProve, 3, static_cast<LPARAM>(wParam));
        return 0;
    }
    if (lMessage != lProve)
        return ::DefWindowProcW(hWindow, lMessage, wParam, lParam);
    if (wParam > 0)
        ::PostMessageW(hWindow, lProve, wParam - 1, lParam);
    else if (MiddleOfWork::lDepth > 0 || HIWORD(::GetQueueStatus(QS_INPUT | QS_PAINT | QS_POSTMESSAGE)) != 0)
        ::SetTimer(hWindow, static_cast<UINT_PTR>(lParam), 5, nullptr);
    else
        ::SetEvent(reinterpret_cast<HANDLE>(lParam));
    return 0;
}

// Made of the system's calls alone: the host's test program has none of our windows.
class IdleWindow
{
public:
    IdleWindow()
    {
        WNDCLASSEXW wndClass{};
        wndClass.cbSize = sizeof wndClass;
        wndClass.lpfnWndProc = IdleProcedure;
        wndClass.hInstance = ::GetModuleHandleW(nullptr);
        wndClass.lpszClassName = L"RavloTestIdle";
        ::RegisterClassExW(&wndClass);
        m_hWindow = ::CreateWindowExW(0, L"RavloTestIdle", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                                      wndClass.hInstance, nullptr);
    }
    ~IdleWindow() { ::DestroyWindow(m_hWindow); }
    IdleWindow(const IdleWindow&) = delete;
    IdleWindow& operator=(const IdleWindow&) = delete;

    HWND Handle() const { return m_hWindow; }

private:
    HWND m_hWindow;
};

BOOL CALLBACK AddVisible(HWND hWindow, LPARAM lParam)
{
    if (::IsWindowVisible(hWindow))
        reinterpret_cast<std::vector<HWND>*>(lParam)->push_back(hWindow);
    return TRUE;
}

std::vector<HWND> Windows(DWORD lThread)
{
    std::vector<HWND> hWindows;
    ::EnumThreadWindows(lThread, AddVisible, reinterpret_cast<LPARAM>(&hWindows));
    return hWindows;
}

std::wstring EntryText(HWND hList, LRESULT lEntry)
{
    std::wstring sText(static_cast<std::size_t>(Send(hList, LB_GETTEXTLEN, lEntry)), L'\0');
    Send(hList, LB_GETTEXT, lEntry, sText.data());
    return sText;
}

// The entries for which a message of a list answers more than zero; all with none.
std::vector<std::wstring> EntriesWith(HWND hList, UINT lMessage)
{
    std::vector<std::wstring> colEntries;
    const LRESULT lCount = Send(hList, LB_GETCOUNT);
    for (LRESULT i = 0; i < lCount; ++i)
        if (lMessage == 0 || Send(hList, lMessage, i) > 0)
            colEntries.push_back(EntryText(hList, i));
    return colEntries;
}

POINT MiddleOf(const RECT& rect) { return {(rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2}; }

POINT OnScreen(HWND hWindow, POINT point)
{
    ::ClientToScreen(hWindow, &point);
    return point;
}

void EndDrag()
{
    INPUT inputs[3]{};
    inputs[0].type = INPUT_MOUSE;
    inputs[0].mi.dwFlags = MOUSEEVENTF_LEFTUP;
    inputs[1].type = inputs[2].type = INPUT_KEYBOARD;
    inputs[1].ki.wVk = inputs[2].ki.wVk = VK_ESCAPE;
    inputs[2].ki.dwFlags = KEYEVENTF_KEYUP;
    ::SendInput(ARRAYSIZE(inputs), inputs, sizeof inputs[0]);
}

// Closes every window and box until the test's thread returns from them.
void CloseAll(DWORD lThread, const std::atomic<bool>& bOpen)
{
    while (bOpen)
    {
        for (const HWND hWindow : Windows(lThread))
        {
            if (ClassOf(hWindow) == L"#32770")
                for (const int lButton : {IDCANCEL, IDNO, IDOK})
                    ::PostMessageW(hWindow, WM_COMMAND, static_cast<WPARAM>(lButton), 0);
            ::PostMessageW(hWindow, WM_CLOSE, 0, 0);
        }
        ::Sleep(50);
    }
}

} // namespace

std::wstring ClassOf(HWND hWindow)
{
    wchar_t sClass[100] = L"";
    ::GetClassNameW(hWindow, sClass, ARRAYSIZE(sClass));
    return sClass;
}

RECT PlaceOf(HWND hWindow)
{
    RECT place{};
    ::GetWindowRect(hWindow, &place);
    return place;
}

RECT ClientOf(HWND hWindow)
{
    RECT client{};
    ::GetClientRect(hWindow, &client);
    return client;
}

bool IsWindowClass(const wchar_t* sClass)
{
    WNDCLASSEXW wndClass{};
    wndClass.cbSize = sizeof wndClass;
    return ::GetClassInfoExW(::GetModuleHandleW(nullptr), sClass, &wndClass) != FALSE;
}

void WhileOpen(const std::function<void()>& open, const std::function<void(const User& user)>& drive)
{
    const IdleWindow cIdle;
    const DWORD lThread = ::GetCurrentThreadId();
    std::atomic<bool> bOpen = true;
    std::atomic<bool> bDriving = true;
    std::thread thread([&] {
        try
        {
            drive(User(lThread, cIdle.Handle()));
        }
        catch (const std::exception& cError)
        {
            ADD_FAILURE() << cError.what();
            EndDrag();
            for (const HWND hWindow : Windows(lThread))
                TakeScreenshot(hWindow, L"failed-" + ClassOf(hWindow).substr(0, 40));
            CloseAll(lThread, bOpen);
        }
        bDriving = false;
        ::PostThreadMessageW(lThread, WM_NULL, 0, 0);
    });
    open();
    bOpen = false;
    // A host's loop continues when a window has closed; the user may still be waiting until it is idle.
    MSG message;
    while (bDriving && ::GetMessageW(&message, nullptr, 0, 0) > 0)
    {
        ::TranslateMessage(&message);
        ::DispatchMessageW(&message);
    }
    thread.join();
}

// ---- waiting ----

void User::Until(const std::function<bool()>& bTrue, const char* sWhat) const
{
    const DWORD lStart = ::GetTickCount();
    while (!bTrue())
    {
        if (::GetTickCount() - lStart > lDeadline)
            throw std::runtime_error(std::string("waited in vain for ") + sWhat);
        ::Sleep(2);
    }
}

void User::Idle() const
{
    const HANDLE hEvent = ::CreateEventW(nullptr, TRUE, FALSE, nullptr);
    ::PostMessageW(m_hIdle, lProve, 3, reinterpret_cast<LPARAM>(hEvent));
    const bool bIdle = ::WaitForSingleObject(hEvent, lDeadline) == WAIT_OBJECT_0;
    if (!bIdle) // the event stays: it may be set yet
        throw std::runtime_error("the windows' thread did not become idle");
    ::CloseHandle(hEvent);
}

HWND User::Find(const std::wstring& sClass) const
{
    for (const HWND hWindow : Windows(m_lThread))
        if (ClassOf(hWindow) == sClass)
            return hWindow;
    return nullptr;
}

HWND User::WaitFor(const std::wstring& sClass) const
{
    Until([&] { return Find(sClass) != nullptr; }, "a window");
    const HWND hWindow = Find(sClass);
    Idle();
    return hWindow;
}

void User::WaitUntilGone(HWND hWindow) const
{
    Until([&] { return !::IsWindow(hWindow); }, "a window to close");
}

// ---- looking ----

HWND User::Control(HWND hWindow, int lId)
{
    for (HWND hChild = ::GetWindow(hWindow, GW_CHILD); hChild; hChild = ::GetWindow(hChild, GW_HWNDNEXT))
    {
        if (::GetDlgCtrlID(hChild) == lId)
            return hChild;
        if (::GetWindow(hChild, GW_CHILD))
        {
            try
            {
                return Control(hChild, lId);
            }
            catch (const std::runtime_error&)
            {
                continue; // not in this branch
            }
        }
    }
    throw std::runtime_error("there is no control " + std::to_string(lId));
}

std::wstring User::Text(HWND hWindow)
{
    std::wstring sText(static_cast<std::size_t>(Send(hWindow, WM_GETTEXTLENGTH)) + 1, L'\0');
    const LRESULT lLength = Send(hWindow, WM_GETTEXT, static_cast<INT_PTR>(sText.size()), sText.data());
    sText.resize(static_cast<std::size_t>(lLength));
    return sText;
}

std::vector<std::wstring> User::Entries(HWND hList) { return EntriesWith(hList, 0); }
std::vector<std::wstring> User::Selected(HWND hList) { return EntriesWith(hList, LB_GETSEL); }

HWND User::FocusedWindow() const
{
    GUITHREADINFO info{};
    info.cbSize = sizeof info;
    ::GetGUIThreadInfo(m_lThread, &info);
    return info.hwndFocus;
}

// ---- the mouse ----

// Always with the place: the display may still report an earlier one.
void User::Mouse(POINT at, DWORD lFlags) const
{
    m_pointer = at;
    INPUT input{};
    input.type = INPUT_MOUSE;
    // The middle of the pixel, in 65536ths of the screen.
    const auto share = [](LONG lAt, int lExtent) {
        return ::MulDiv(static_cast<int>(lAt) * 2 + 1, 32768, lExtent);
    };
    input.mi.dx = share(at.x, ::GetSystemMetrics(SM_CXSCREEN));
    input.mi.dy = share(at.y, ::GetSystemMetrics(SM_CYSCREEN));
    input.mi.dwFlags = lFlags | MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE;
    ::SendInput(1, &input, sizeof input);
}

// Waits until the system finds that window there as well. Under Wine a late report of the pointer over the
// window's owner raises the owner, which is disabled: clicks go to it, unheard, until the pointer's next
// movement is reported. A person's clicks come from the display, which knows better.
void User::PointAt(HWND hWindow, POINT point) const
{
    Mouse(point, MOUSEEVENTF_MOVE);
    if (hWindow == ::GetDesktopWindow())
        return; // a place on the screen, of a menu
    const HWND hTop = ::GetAncestor(hWindow, GA_ROOT);
    Until(
        [&] {
        const bool bFound = ::GetAncestor(::WindowFromPoint(point), GA_ROOT) == hTop;
        if (!bFound) // it may have been there before, and not have moved
        {
            Mouse({point.x + 1, point.y}, MOUSEEVENTF_MOVE);
            Mouse(point, MOUSEEVENTF_MOVE);
        }
        return bFound;
        },
        "a window to be under the pointer");
}

void User::Press(HWND hWindow, POINT at) const
{
    const POINT point = OnScreen(hWindow, at);
    PointAt(hWindow, point);
    Idle();
    Mouse(point, MOUSEEVENTF_LEFTDOWN);
    Idle();
}

void User::MoveTo(HWND hWindow, POINT to) const
{
    Mouse(OnScreen(hWindow, to), MOUSEEVENTF_MOVE);
    Idle();
}

void User::Release() const
{
    Mouse(m_pointer, MOUSEEVENTF_LEFTUP);
    Idle();
}

void User::ClickAt(HWND hWindow, POINT at, int lModifier) const
{
    const POINT point = OnScreen(hWindow, at);
    PointAt(hWindow, point);
    if (lModifier != 0)
        Hold(lModifier);
    Mouse(point, MOUSEEVENTF_LEFTDOWN);
    Mouse(point, MOUSEEVENTF_LEFTUP);
    Idle();
    if (lModifier == 0)
        return;
    SendKey(lModifier, true);
    Idle();
}

// All at once: on a busy machine the second click would otherwise be too late.
void User::DoubleClickAt(HWND hWindow, POINT at) const
{
    const POINT point = OnScreen(hWindow, at);
    PointAt(hWindow, point);
    for (const DWORD lFlags :
         {MOUSEEVENTF_LEFTDOWN, MOUSEEVENTF_LEFTUP, MOUSEEVENTF_LEFTDOWN, MOUSEEVENTF_LEFTUP})
        Mouse(point, lFlags);
    Idle();
}

void User::RightClickAt(HWND hWindow, POINT at) const
{
    const POINT point = OnScreen(hWindow, at);
    PointAt(hWindow, point);
    Mouse(point, MOUSEEVENTF_RIGHTDOWN);
    Mouse(point, MOUSEEVENTF_RIGHTUP);
    Idle();
}

void User::Click(HWND hControl) const
{
    if (!::IsWindowVisible(hControl))
        throw std::runtime_error("nobody can click a hidden control");
    ClickAt(hControl, MiddleOf(ClientOf(hControl)));
}

void User::ClickEntry(HWND hList, int lEntry, int lModifier) const
{
    RECT item{};
    Send(hList, LB_GETITEMRECT, lEntry, &item);
    ClickAt(hList, {item.left + 6, MiddleOf(item).y}, lModifier);
}

void User::ClickTab(HWND hTabs, int lTab) const
{
    RECT item{};
    Send(hTabs, TCM_GETITEMRECT, lTab, &item);
    ClickAt(hTabs, MiddleOf(item));
}

void User::Drag(HWND hWindow, POINT from, POINT to) const
{
    const POINT start = OnScreen(hWindow, from);
    const POINT end = OnScreen(hWindow, to);
    Press(hWindow, from);
    constexpr int lSteps = 4;
    for (int i = 1; i <= lSteps; ++i)
    {
        Mouse({start.x + (end.x - start.x) * i / lSteps, start.y + (end.y - start.y) * i / lSteps},
              MOUSEEVENTF_MOVE);
        Idle();
    }
    Release();
}

// ---- the keyboard ----

void User::SendKey(int lKey, bool bUp) const
{
    INPUT input{};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = static_cast<WORD>(lKey);
    input.ki.dwFlags = bUp ? KEYEVENTF_KEYUP : 0u;
    ::SendInput(1, &input, sizeof input);
}

// Shortly after the pointer or the focus enters a window, the display reports which keys are down. It does
// not know these ones, so they count as released: they are pressed again until that report has passed.
void User::Hold(int lModifier) const
{
    constexpr int lSteady = 5; // rounds
    int lRounds = 0;
    Idle();
    Until(
        [&] {
        const bool bDown = ::GetAsyncKeyState(lModifier) < 0;
        lRounds = bDown ? lRounds + 1 : 0;
        if (!bDown)
            SendKey(lModifier, false);
        Idle();
        return lRounds > lSteady;
        },
        "a key to stay down");
}

void User::Key(int lKey, int lModifier) const
{
    if (lModifier != 0)
        SendKey(lModifier, false);
    SendKey(lKey, false);
    SendKey(lKey, true);
    if (lModifier != 0)
        SendKey(lModifier, true);
    Idle();
}

void User::Keys(std::initializer_list<int> lKeys) const
{
    for (const int lKey : lKeys)
        Key(lKey);
}

void User::Type(const std::wstring& sText) const
{
    for (const wchar_t c : sText)
    {
        INPUT inputs[2]{};
        for (INPUT& input : inputs)
        {
            input.type = INPUT_KEYBOARD;
            input.ki.wScan = static_cast<WORD>(c);
            input.ki.dwFlags = KEYEVENTF_UNICODE;
        }
        inputs[1].ki.dwFlags |= KEYEVENTF_KEYUP;
        ::SendInput(2, inputs, sizeof inputs[0]);
    }
    Idle();
}

void User::Replace(HWND hEdit, const std::wstring& sText) const
{
    Click(hEdit);
    Key(VK_END);
    Key(VK_HOME, VK_SHIFT);
    if (sText.empty())
        Key(VK_DELETE);
    Type(sText);
}

// ---- what the system does ----

void User::Place(HWND hWindow, int x, int y, int lWidth, int lHeight) const
{
    ::SetWindowPos(hWindow, nullptr, x, y, lWidth, lHeight, SWP_NOZORDER);
    Idle();
}

void User::Resize(HWND hWindow, int lWidth, int lHeight) const
{
    ::SetWindowPos(hWindow, nullptr, 0, 0, lWidth, lHeight, SWP_NOZORDER | SWP_NOMOVE);
    Idle();
}

void User::ShowAs(HWND hWindow, int lShow) const
{
    ::ShowWindow(hWindow, lShow);
    Idle();
}

void User::ChangeResolution(HWND hWindow, int lDpi, int lWidth, int lHeight) const
{
    const int lScreen = ::GetSystemMetrics(SM_CXSCREEN);
    const RECT place{0, 0, std::min(::MulDiv(lWidth, lDpi, 96), lScreen), ::MulDiv(lHeight, lDpi, 96)};
    Send(hWindow, WM_DPICHANGED, MAKEWPARAM(lDpi, lDpi), &place);
    Idle();
}

// ---- boxes ----

HWND User::BoxWindow() const
{
    Until([&] { return Find(L"#32770") != nullptr; }, "a box");
    Idle();
    return Find(L"#32770");
}

BoxOnScreen User::Box() const
{
    const HWND hBox = BoxWindow();
    BoxOnScreen box;
    box.sTitle = Text(hBox);
    for (HWND hChild = ::GetWindow(hBox, GW_CHILD); hChild; hChild = ::GetWindow(hChild, GW_HWNDNEXT))
    {
        if (ClassOf(hChild) == L"Button" && ::IsWindowVisible(hChild))
            box.lButtons.push_back(::GetDlgCtrlID(hChild));
        else if (ClassOf(hChild) == L"Static" && !Text(hChild).empty())
            box.sText = Text(hChild);
    }
    return box;
}

void User::Answer(int lButton) const
{
    const HWND hBox = BoxWindow();
    ::SendMessageW(hBox, WM_COMMAND, static_cast<WPARAM>(lButton), 0);
    WaitUntilGone(hBox);
    Idle();
}

void User::Answer(const BoxOnScreen& expected, int lButton) const
{
    EXPECT_EQ(Box(), expected);
    Answer(lButton);
}

void User::AnswerInput(const std::wstring& sText) const
{
    const HWND hBox = BoxWindow();
    Type(sText);
    Key(VK_RETURN);
    WaitUntilGone(hBox);
    Idle();
}

void User::Shot(HWND hWindow, const std::wstring& sName) const
{
    Idle();
    EXPECT_TRUE(TakeScreenshot(hWindow, sName));
}

} // namespace ravlo::test
