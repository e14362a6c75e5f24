// SPDX-License-Identifier: MIT
#include "ui/windows/User.h"

#include "ui/windows/Screenshot.h"

#include <gtest/gtest.h>

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

std::wstring ClassOf(HWND hWindow)
{
    wchar_t sClass[100] = L"";
    ::GetClassNameW(hWindow, sClass, ARRAYSIZE(sClass));
    return sClass;
}

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
    std::wstring sText(
        static_cast<std::size_t>(::SendMessageW(hList, LB_GETTEXTLEN, static_cast<WPARAM>(lEntry), 0)),
        L'\0');
    ::SendMessageW(hList, LB_GETTEXT, static_cast<WPARAM>(lEntry), reinterpret_cast<LPARAM>(sText.data()));
    return sText;
}

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

// Whatever is open is closed, so that the test's thread comes back.
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
    // A host's loop goes on when a window has closed; the user may still be waiting for it to come to rest.
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
        throw std::runtime_error("the windows' thread did not come to rest");
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
    std::wstring sText(static_cast<std::size_t>(::SendMessageW(hWindow, WM_GETTEXTLENGTH, 0, 0)) + 1, L'\0');
    sText.resize(static_cast<std::size_t>(
        ::SendMessageW(hWindow, WM_GETTEXT, sText.size(), reinterpret_cast<LPARAM>(sText.data()))));
    return sText;
}

std::vector<std::wstring> User::Entries(HWND hList)
{
    std::vector<std::wstring> colEntries;
    const LRESULT lCount = ::SendMessageW(hList, LB_GETCOUNT, 0, 0);
    for (LRESULT i = 0; i < lCount; ++i)
        colEntries.push_back(EntryText(hList, i));
    return colEntries;
}

std::vector<std::wstring> User::Selected(HWND hList)
{
    std::vector<std::wstring> colEntries;
    const LRESULT lCount = ::SendMessageW(hList, LB_GETCOUNT, 0, 0);
    for (LRESULT i = 0; i < lCount; ++i)
        if (::SendMessageW(hList, LB_GETSEL, static_cast<WPARAM>(i), 0) > 0)
            colEntries.push_back(EntryText(hList, i));
    return colEntries;
}

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

void User::Press(HWND hWindow, POINT at) const
{
    const POINT point = OnScreen(hWindow, at);
    Mouse(point, MOUSEEVENTF_MOVE);
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

void User::ClickAt(HWND hWindow, int x, int y, int lModifier) const
{
    const POINT point = OnScreen(hWindow, {x, y});
    Mouse(point, MOUSEEVENTF_MOVE);
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

// All at once: on a busy machine the second click would come too late else.
void User::DoubleClickAt(HWND hWindow, int x, int y) const
{
    const POINT point = OnScreen(hWindow, {x, y});
    Mouse(point, MOUSEEVENTF_MOVE);
    for (const DWORD lFlags :
         {MOUSEEVENTF_LEFTDOWN, MOUSEEVENTF_LEFTUP, MOUSEEVENTF_LEFTDOWN, MOUSEEVENTF_LEFTUP})
        Mouse(point, lFlags);
    Idle();
}

void User::RightClickAt(HWND hWindow, int x, int y) const
{
    const POINT point = OnScreen(hWindow, {x, y});
    Mouse(point, MOUSEEVENTF_MOVE);
    Mouse(point, MOUSEEVENTF_RIGHTDOWN);
    Mouse(point, MOUSEEVENTF_RIGHTUP);
    Idle();
}

void User::Click(HWND hControl) const
{
    if (!::IsWindowVisible(hControl))
        throw std::runtime_error("nobody can click a control that is not to be seen");
    RECT client{};
    ::GetClientRect(hControl, &client);
    ClickAt(hControl, static_cast<int>(client.right) / 2, static_cast<int>(client.bottom) / 2);
}

void User::ClickEntry(HWND hList, int lEntry, int lModifier) const
{
    RECT item{};
    ::SendMessageW(hList, LB_GETITEMRECT, static_cast<WPARAM>(lEntry), reinterpret_cast<LPARAM>(&item));
    ClickAt(hList, static_cast<int>(item.left) + 6, static_cast<int>(item.top + item.bottom) / 2, lModifier);
}

void User::ClickTab(HWND hTabs, int lTab) const
{
    RECT item{};
    ::SendMessageW(hTabs, TCM_GETITEMRECT, static_cast<WPARAM>(lTab), reinterpret_cast<LPARAM>(&item));
    ClickAt(hTabs, static_cast<int>(item.left + item.right) / 2,
            static_cast<int>(item.top + item.bottom) / 2);
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

// When the pointer has entered a window or the focus has come to one, the display tells a little later which
// keys are down, and knows nothing of these: they are taken for released. Until it has told, they are pressed
// again.
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

// ---- boxes ----

HWND User::Dialog() const
{
    Until([&] { return Find(L"#32770") != nullptr; }, "a box");
    Idle();
    return Find(L"#32770");
}

BoxOnScreen User::Box() const
{
    const HWND hBox = Dialog();
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
    const HWND hBox = Dialog();
    ::SendMessageW(hBox, WM_COMMAND, static_cast<WPARAM>(lButton), 0);
    WaitUntilGone(hBox);
    Idle();
}

void User::AnswerInput(const std::wstring& sText) const
{
    const HWND hBox = Dialog();
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
