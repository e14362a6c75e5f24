// SPDX-License-Identifier: MIT
// What is particular to the Windows platform: the message loop, boxes that a second thread answers, files in
// use.
#ifdef _WIN32

#include "platform/TempFolder.h"
#include "platform/windows/InputBox.h"
#include "platform/windows/WindowsFiles.h"
#include "platform/windows/WindowsPorts.h"
#include "support/Raised.h"

#include <atomic>
#include <functional>
#include <gtest/gtest.h>
#include <thread>
#include <vector>
#include <windows.h>
#undef ReplaceFile // this system's own function is another one

namespace ravlo
{
namespace
{

std::wstring TextOf(HWND hWindow)
{
    wchar_t aText[1024] = {};
    ::SendMessageW(hWindow, WM_GETTEXT, 1024, reinterpret_cast<LPARAM>(aText));
    return aText;
}

// A message-only window (it needs no screen), which records the messages it gets.
class Receiver
{
public:
    Receiver()
        : m_hWindow(
              ::CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr))
    {
        ::SetWindowLongPtrW(m_hWindow, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
        ::SetWindowLongPtrW(m_hWindow, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Receiver::Proc));
    }
    ~Receiver() { ::DestroyWindow(m_hWindow); }
    Receiver(const Receiver&) = delete;
    Receiver& operator=(const Receiver&) = delete;

    HWND Window() const { return m_hWindow; }
    std::vector<UINT> Got;
    bool bKeepsPosting = false;

private:
    static LRESULT CALLBACK Proc(HWND hWindow, UINT lMessage, WPARAM wParam, LPARAM lParam)
    {
        auto* pThis = reinterpret_cast<Receiver*>(::GetWindowLongPtrW(hWindow, GWLP_USERDATA));
        if (lMessage >= WM_APP)
        {
            pThis->Got.push_back(lMessage);
            if (pThis->bKeepsPosting)
                ::PostMessageW(hWindow, lMessage, 0, 0);
        }
        return ::DefWindowProcW(hWindow, lMessage, wParam, lParam);
    }
    HWND m_hWindow;
};

TEST(WindowsHostLoop, ProcessesAllWaitingMessagesAndReturns)
{
    Receiver cReceiver;
    for (const UINT lMessage : {WM_APP, WM_APP + 1, WM_APP + 2})
        ::PostMessageW(cReceiver.Window(), lMessage, 0, 0);
    WindowsHostLoop().PumpMessages();
    EXPECT_EQ(cReceiver.Got, (std::vector<UINT>{WM_APP, WM_APP + 1, WM_APP + 2}));
}

TEST(WindowsHostLoop, LeavesTheRequestToQuitForTheHostsLoop)
{
    ::PostQuitMessage(7);
    WindowsHostLoop().PumpMessages();
    MSG message{};
    ASSERT_TRUE(::PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));
    EXPECT_EQ(message.wParam, 7u);
}

TEST(WindowsHostLoop, EndsWhileMessagesKeepArriving)
{
    Receiver cReceiver;
    cReceiver.bKeepsPosting = true;
    ::PostMessageW(cReceiver.Window(), WM_APP, 0, 0);
    const DWORD lStart = ::GetTickCount();
    WindowsHostLoop().PumpMessages();
    EXPECT_LT(::GetTickCount() - lStart, 30'000u);
    EXPECT_GT(cReceiver.Got.size(), 1u);
    cReceiver.bKeepsPosting = false;
    WindowsHostLoop().PumpMessages();
}

UINT lFilteredMessage = 0;

LRESULT CALLBACK SwallowFirst(int lCode, WPARAM wParam, LPARAM lParam)
{
    const auto* pMessage = reinterpret_cast<const MSG*>(lParam);
    if (lCode == MSGF_USER && pMessage->message == WM_APP)
    {
        lFilteredMessage = pMessage->message;
        return 1;
    }
    return ::CallNextHookEx(nullptr, lCode, wParam, lParam);
}

TEST(WindowsHostLoop, ShowsEachMessageToTheFilterHooksFirst)
{
    Receiver cReceiver;
    const HHOOK hHook = ::SetWindowsHookExW(WH_MSGFILTER, SwallowFirst, nullptr, ::GetCurrentThreadId());
    ASSERT_NE(hHook, nullptr);
    ::PostMessageW(cReceiver.Window(), WM_APP, 0, 0);
    ::PostMessageW(cReceiver.Window(), WM_APP + 1, 0, 0);
    WindowsHostLoop().PumpMessages();
    ::UnhookWindowsHookEx(hHook);
    EXPECT_EQ(lFilteredMessage, static_cast<UINT>(WM_APP));
    EXPECT_EQ(cReceiver.Got, std::vector<UINT>{WM_APP + 1});
}

// Waits in a second thread for a dialog of this one and hands it to the action.
class Person
{
public:
    explicit Person(std::function<void(HWND)> action)
        : m_lThread(::GetCurrentThreadId()), m_thread([this, action = std::move(action)] { Act(action); })
    {
    }
    ~Person()
    {
        m_bEnd = true;
        m_thread.join();
    }
    Person(const Person&) = delete;
    Person& operator=(const Person&) = delete;

private:
    static BOOL CALLBACK TakeDialog(HWND hWindow, LPARAM lParam)
    {
        wchar_t aClass[16] = {};
        ::GetClassNameW(hWindow, aClass, 16);
        if (std::wstring_view(aClass) != L"#32770" || !::IsWindowVisible(hWindow))
            return TRUE;
        *reinterpret_cast<HWND*>(lParam) = hWindow;
        return FALSE;
    }
    void Act(const std::function<void(HWND)>& action)
    {
        for (HWND hDialog = nullptr; !m_bEnd; ::Sleep(5))
        {
            ::EnumThreadWindows(m_lThread, TakeDialog, reinterpret_cast<LPARAM>(&hDialog));
            if (hDialog)
                return action(hDialog);
        }
    }

    std::atomic<bool> m_bEnd{false};
    DWORD m_lThread;
    std::thread m_thread; // last: it uses the others
};

void Press(HWND hDialog, int lId) { ::PostMessageW(hDialog, WM_COMMAND, static_cast<WPARAM>(lId), 0); }

TEST(WindowsMessages, ABoxShowsItsTitleTextAndButtonsAndGivesTheAnswer)
{
    const struct
    {
        BoxButtons eButtons;
        int lPressed;
        BoxAnswer eAnswer;
    } aCases[] = {
        {BoxButtons::Ok, IDOK, BoxAnswer::Ok},
        {BoxButtons::YesNo, IDYES, BoxAnswer::Yes},
        {BoxButtons::YesNo, IDNO, BoxAnswer::No},
    };
    for (const auto& testCase : aCases)
    {
        std::wstring sTitle;
        std::wstring sText;
        bool aHas[8] = {};
        const Person cPerson([&](HWND hDialog) {
            sTitle = TextOf(hDialog);
            sText = TextOf(::GetDlgItem(hDialog, 0xFFFF));
            for (const int lId : {IDOK, IDCANCEL, IDYES, IDNO})
                aHas[lId] = ::GetDlgItem(hDialog, lId) != nullptr;
            Press(hDialog, testCase.lPressed);
        });
        EXPECT_EQ(WindowsMessages().Box(BoxIcon::Question, testCase.eButtons, L"Title", L"r&b?"),
                  testCase.eAnswer);
        EXPECT_EQ(sTitle, L"Title");
        EXPECT_EQ(sText, L"r&b?");
        const bool bYesNo = testCase.eButtons == BoxButtons::YesNo;
        EXPECT_EQ(aHas[IDOK], !bYesNo);
        EXPECT_EQ(aHas[IDYES], bYesNo);
        EXPECT_EQ(aHas[IDNO], bYesNo);
        EXPECT_FALSE(aHas[IDCANCEL]);
    }
}

TEST(WindowsMessages, AnInputGivesWhatWasTyped)
{
    for (const wchar_t* sTyped : {L"", L"Top 40", L"r&b \u00FC"})
    {
        std::wstring sTitle;
        std::wstring sPrompt;
        const Person cPerson([&](HWND hDialog) {
            sTitle = TextOf(hDialog);
            sPrompt = TextOf(::GetDlgItem(hDialog, lInputBoxPrompt));
            ::SendMessageW(::GetDlgItem(hDialog, lInputBoxEdit), WM_SETTEXT, 0,
                           reinterpret_cast<LPARAM>(sTyped));
            Press(hDialog, IDOK);
        });
        EXPECT_EQ(WindowsMessages().Input(L"New Category", L"Type it:\r\nr&b"),
                  std::optional<std::wstring>(sTyped));
        EXPECT_EQ(sTitle, L"New Category");
        EXPECT_EQ(sPrompt, L"Type it:\r\nr&b");
    }
}

TEST(WindowsMessages, ACancelledInputGivesNothing)
{
    const Person cPerson([&](HWND hDialog) {
        ::SendMessageW(::GetDlgItem(hDialog, lInputBoxEdit), WM_SETTEXT, 0,
                       reinterpret_cast<LPARAM>(L"typed"));
        ::PostMessageW(hDialog, WM_CLOSE, 0, 0);
    });
    EXPECT_EQ(WindowsMessages().Input(L"Title", L"Prompt"), std::nullopt);
}

TEST(InputBox, GrowsWithItsPromptAndKeepsItsControlsApart)
{
    int aHeight[2] = {};
    for (const int lLong : {0, 1})
    {
        std::wstring sPrompt = L"Short";
        for (int i = 0; lLong == 1 && i < 8; ++i)
            sPrompt += L"\r\nanother line";
        RECT prompt{};
        RECT edit{};
        RECT button{};
        RECT window{};
        const Person cPerson([&](HWND hDialog) {
            ::GetWindowRect(hDialog, &window);
            ::GetWindowRect(::GetDlgItem(hDialog, lInputBoxPrompt), &prompt);
            ::GetWindowRect(::GetDlgItem(hDialog, lInputBoxEdit), &edit);
            ::GetWindowRect(::GetDlgItem(hDialog, IDCANCEL), &button);
            Press(hDialog, IDCANCEL);
        });
        WindowsMessages().Input(L"Title", sPrompt);
        EXPECT_LE(prompt.bottom, edit.top);
        EXPECT_LE(edit.bottom, button.top);
        EXPECT_LE(button.bottom, window.bottom);
        EXPECT_LE(button.right, window.right);
        aHeight[lLong] = static_cast<int>(window.bottom - window.top);
    }
    EXPECT_GE(aHeight[1], aHeight[0] + 60);
}

TEST(InputBox, WithoutAnOwnerDisablesTheThreadsOtherWindows)
{
    const HWND hOther = ::CreateWindowExW(0, L"STATIC", L"Other", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 50,
                                          50, nullptr, nullptr, nullptr, nullptr);
    ASSERT_NE(hOther, nullptr);
    bool bEnabledInside = true;
    const Person cPerson([&](HWND hDialog) {
        bEnabledInside = ::IsWindowEnabled(hOther) != FALSE;
        Press(hDialog, IDCANCEL);
    });
    ShowInputBox(nullptr, L"Title", L"Prompt");
    EXPECT_FALSE(bEnabledInside);
    EXPECT_TRUE(::IsWindowEnabled(hOther));
    ::DestroyWindow(hOther);
}

// Holds a file open as another program would.
class Holder
{
public:
    explicit Holder(const std::wstring& sPath)
        : m_hFile(::CreateFileW(sPath.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr))
    {
    }
    ~Holder() { Release(); }
    void Release()
    {
        if (m_hFile != INVALID_HANDLE_VALUE)
            ::CloseHandle(m_hFile);
        m_hFile = INVALID_HANDLE_VALUE;
    }

private:
    HANDLE m_hFile;
};

// A file with the content "old".
class WindowsFilesTest : public testing::Test
{
protected:
    WindowsFilesTest() { cFiles.WriteNew(sPath, "old"); }

    const TempFolder cFolder;
    const std::wstring sPath = cFolder.Path() + L"\\a.sif";
    WindowsFiles cFiles;
};

TEST_F(WindowsFilesTest, AFileInUseRaises70)
{
    Holder cHolder(sPath);
    EXPECT_EQ(NumberRaisedBy([&] { cFiles.ReadAll(sPath); }), error::PermissionDenied);
    EXPECT_EQ(NumberRaisedBy([&] { cFiles.WriteNew(sPath, "x"); }), error::PermissionDenied);
    EXPECT_EQ(NumberRaisedBy([&] { cFiles.Append(sPath, "x"); }), error::PermissionDenied);
    EXPECT_EQ(NumberRaisedBy([&] { cFiles.Delete(sPath); }), error::PermissionDenied);
    EXPECT_NE(NumberRaisedBy([&] { ReplaceFile(cFiles, sPath, "new"); }), 0);
    cHolder.Release();
    EXPECT_EQ(cFiles.ReadAll(sPath), "old");
    EXPECT_EQ(cFolder.EntryCount(), 1u);
}

TEST_F(WindowsFilesTest, ARenameOrReadWaitsForAFileThatIsInUseForAMoment)
{
    std::atomic<bool> bReading = false;
    const std::function<bool()> begins[] = {
        [&] { return cFolder.EntryCount() > 1; }, // the temporary file is there, so the rename is next
        [&] { return bReading.load(); }};
    const std::function<void()> works[] = {[&] { ReplaceFile(cFiles, sPath, "new"); },
                                           [&] {
        bReading = true;
        EXPECT_EQ(cFiles.ReadAll(sPath), "new");
                                           }};
    for (int i = 0; i < 2; ++i)
    {
        Holder cHolder(sPath);
        std::thread cScanner([&] {
            while (!begins[i]())
                std::this_thread::yield();
            ::Sleep(20); // as long as a scanner needs
            cHolder.Release();
        });
        EXPECT_EQ(NumberRaisedBy(works[i]), 0);
        cScanner.join();
    }
    EXPECT_EQ(cFiles.ReadAll(sPath), "new");
}

TEST_F(WindowsFilesTest, WithoutPatienceAFileInUseFailsAtOnce)
{
    const Holder cHolder(sPath);
    const DWORD lStart = ::GetTickCount();
    for (int i = 0; i < 20; ++i)
    {
        EXPECT_EQ(NumberRaisedBy([&] { cFiles.ReadAll(sPath, Patience::None); }), error::PermissionDenied);
        EXPECT_NE(NumberRaisedBy([&] { ReplaceFile(cFiles, sPath, "new", Patience::None); }), 0);
    }
    EXPECT_LT(::GetTickCount() - lStart, 20u * 950u) << "the pauses of patience alone would take longer";
    EXPECT_EQ(cFolder.EntryCount(), 1u);
}

TEST_F(WindowsFilesTest, OfADriveThatIsNotThereNothingIsKnown)
{
    const DWORD lDrives = ::GetLogicalDrives();
    std::wstring sDrive = L"D:";
    while (sDrive[0] < L'Z' && (lDrives >> (sDrive[0] - L'A') & 1) != 0)
        ++sDrive[0];
    ASSERT_EQ(lDrives >> (sDrive[0] - L'A') & 1, 0u) << "no letter is free";
    EXPECT_EQ(cFiles.PresenceOf(sDrive + L"\\Radio\\Scheduler\\MainCats.txt"), Presence::Unknown);
    EXPECT_EQ(cFiles.PresenceOfFolder(sDrive + L"\\Radio\\Scheduler"), Presence::Unknown);
    EXPECT_EQ(cFiles.PresenceOf(L"\\\\no-such-server\\share\\a.sif"), Presence::Unknown);
}

TEST_F(WindowsFilesTest, AHiddenFileIsRewrittenAndStaysHidden)
{
    ASSERT_TRUE(::SetFileAttributesW(sPath.c_str(), FILE_ATTRIBUTE_HIDDEN));
    cFiles.WriteNew(sPath, "it");
    EXPECT_EQ(cFiles.ReadAll(sPath), "it");
    if ((::GetFileAttributesW(sPath.c_str()) & FILE_ATTRIBUTE_HIDDEN) == 0)
        GTEST_SKIP() << "this file system hides no files";
    ReplaceFile(cFiles, sPath, "new");
    EXPECT_NE(::GetFileAttributesW(sPath.c_str()) & FILE_ATTRIBUTE_HIDDEN, 0u);
    EXPECT_EQ(cFiles.ReadAll(sPath), "new");
}

TEST_F(WindowsFilesTest, AReadOnlyFileIsRefusedWithoutWaiting)
{
    ASSERT_TRUE(::SetFileAttributesW(sPath.c_str(), FILE_ATTRIBUTE_READONLY));
    const DWORD lStart = ::GetTickCount();
    EXPECT_EQ(NumberRaisedBy([&] { ReplaceFile(cFiles, sPath, "new"); }), error::PathFileAccess);
    EXPECT_LT(::GetTickCount() - lStart, 900u);
    EXPECT_EQ(cFiles.ReadAll(sPath), "old");
    EXPECT_EQ(cFolder.EntryCount(), 1u);
    ::SetFileAttributesW(sPath.c_str(), FILE_ATTRIBUTE_NORMAL);
}

TEST_F(WindowsFilesTest, ATooLongNameOrPathRaises52AndTheLimit)
{
    const auto raisedFor = [&](const std::wstring& sName) {
        return RaisedBy([&] { cFiles.ReadAll(cFolder.Path() + L"\\" + sName); });
    };
    EXPECT_EQ(raisedFor(std::wstring(256, L'a')),
              (Raised{error::BadFileName,
                      L"Bad file name: longer than 255 characters, which is the limit of a name"}));
    std::wstring sDeep;
    while (sDeep.size() < 33'000)
        sDeep += std::wstring(200, L'a') + L"\\";
    EXPECT_EQ(raisedFor(sDeep + L"a"),
              (Raised{error::BadFileName, L"Bad file name: the path is longer than 32767 characters"}));
    EXPECT_EQ(raisedFor(std::wstring(255, L'a')).lNumber, error::FileNotFound);
}

TEST_F(WindowsFilesTest, DeviceNamesAreNoFiles)
{
    for (const wchar_t* sName : {L"NUL", L"con", L"COM1", L"AUX.txt", L"lpt1.tar.gz", L"PRN .sif"})
    {
        const std::wstring sDevice = cFolder.Path() + L"\\" + sName;
        EXPECT_EQ(cFiles.PresenceOf(sDevice), Presence::Absent) << sName;
        EXPECT_EQ(NumberRaisedBy([&] { cFiles.WriteNew(sDevice, "x"); }), error::BadFileName) << sName;
        EXPECT_EQ(NumberRaisedBy([&] { cFiles.ReadAll(sDevice); }), error::BadFileName) << sName;
    }
    EXPECT_EQ(cFolder.EntryCount(), 1u);
}

TEST_F(WindowsFilesTest, TakesPathsInTheLongFormAndWithSlashes)
{
    cFiles.WriteNew(L"\\\\?\\" + cFolder.Path() + L"\\a.sif", "x");
    EXPECT_EQ(cFiles.ReadAll(cFolder.Path() + L"/a.sif"), "x");
    EXPECT_EQ(NumberRaisedBy([&] { cFiles.WriteNew(L"\\\\?\\" + cFolder.Path() + L"\\a?.sif", "x"); }),
              error::BadFileName);
}

} // namespace
} // namespace ravlo

#endif
