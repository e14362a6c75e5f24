// SPDX-License-Identifier: MIT
// Random late-bound calls of every member of the type libraries, with values of any type and with objects
// that earlier calls returned. Each call ends with a result, or with an error that has a text. After
// everything is released, no object of the servers remains. A thousand calls by default, 100 000 with
// RAVLO_LONG; RAVLO_SEED chooses other calls, and the calls before a crash are printed.
#include "com/BoxAnswerer.h"
#include "com/ComTest.h"
#include "fuzz/com/RandomValues.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <fstream>
#include <thread>

namespace ravlo
{

namespace
{

using fuzz::Member;
using fuzz::RandomValues;

long NumberIn(const char* sVariable, long lDefault)
{
    const char* sValue = std::getenv(sVariable);
    return sValue ? std::atol(sValue) : lDefault;
}

// ---- the person before the screen

// Closes every window the scheduler opens on this thread.
class WindowCloser
{
public:
    WindowCloser() : m_lTimer(SetTimer(nullptr, 0, USER_TIMER_MINIMUM, OnTimer)) {}
    ~WindowCloser() { KillTimer(nullptr, m_lTimer); }
    WindowCloser(const WindowCloser&) = delete;
    WindowCloser& operator=(const WindowCloser&) = delete;

private:
    static void CALLBACK OnTimer(HWND, UINT, UINT_PTR, DWORD)
    {
        EnumThreadWindows(GetCurrentThreadId(), CloseIt, 0);
    }
    static BOOL CALLBACK CloseIt(HWND hWindow, LPARAM)
    {
        wchar_t sClass[64] = {};
        GetClassNameW(hWindow, sClass, 64);
        if (std::wstring_view(sClass).starts_with(L"Ravlo") && IsWindowVisible(hWindow) &&
            IsWindowEnabled(hWindow))
            PostMessageW(hWindow, WM_CLOSE, 0, 0);
        return TRUE;
    }

    UINT_PTR m_lTimer;
};

std::vector<BoxAnswerer::Answer> RandomAnswers(RandomValues& cValues)
{
    static constexpr WPARAM buttons[] = {IDOK, IDOK, IDCANCEL, IDYES, IDNO};
    std::vector<BoxAnswerer::Answer> colAnswers(20'000);
    for (BoxAnswerer::Answer& answer : colAnswers)
    {
        answer.lButton = buttons[cValues.Below(std::size(buttons))];
        answer.sTyped = cValues.Text();
    }
    return colAnswers;
}

// ---- what was called last, for the report of a crash

std::deque<std::string>& LastCalls()
{
    static std::deque<std::string> colCalls;
    return colCalls;
}

void PrintLastCalls(const char* sWhy)
{
    std::printf("%s in the last of these calls:\n", sWhy);
    for (const std::string& sCall : LastCalls())
        std::printf("  %s\n", sCall.c_str());
    std::fflush(stdout);
}

LONG CALLBACK OnCrash(EXCEPTION_POINTERS* pException)
{
    const DWORD lCode = pException->ExceptionRecord->ExceptionCode;
    if (lCode == EXCEPTION_ACCESS_VIOLATION || lCode == EXCEPTION_STACK_OVERFLOW ||
        lCode == EXCEPTION_INT_DIVIDE_BY_ZERO || lCode == EXCEPTION_ILLEGAL_INSTRUCTION)
    {
        std::printf("exception %08lX ", lCode);
        PrintLastCalls("came");
        TerminateProcess(GetCurrentProcess(), 3);
    }
    return EXCEPTION_CONTINUE_SEARCH;
}

std::string Described(const VARIANT& value)
{
    if (const auto cText =
            value.vt == VT_DISPATCH || value.vt == VT_UNKNOWN ? std::nullopt : Variant(value).As(VT_BSTR))
    {
        const std::wstring sText = TextOf(cText->bstrVal).substr(0, 30);
        return std::to_string(value.vt) + ":" + std::string(sText.begin(), sText.end());
    }
    return "type " + std::to_string(value.vt);
}

// Ends the program when a call does not return.
class Watchdog
{
public:
    Watchdog() : m_thread([this] { Run(); }) {}
    ~Watchdog()
    {
        m_bDone = true;
        m_thread.join();
    }
    Watchdog(const Watchdog&) = delete;
    Watchdog& operator=(const Watchdog&) = delete;
    void CallEnded() { ++m_lEnded; }

private:
    void Run()
    {
        long lSeen = -1;
        for (ULONGLONG since = GetTickCount64(); !m_bDone; Sleep(100))
            if (const long lEnded = m_lEnded; lEnded != lSeen)
            {
                lSeen = lEnded;
                since = GetTickCount64();
            }
            else if (GetTickCount64() - since > patience)
            {
                PrintLastCalls("no return");
                TerminateProcess(GetCurrentProcess(), 4);
            }
    }

    static constexpr ULONGLONG patience = 30'000; // ms
    std::atomic<long> m_lEnded{0};
    std::atomic<bool> m_bDone{false};
    std::thread m_thread;
};

void Note(long lCall, const Member& member, const std::vector<Variant>& colArguments)
{
    std::string sCall = std::to_string(lCall) + " " + std::string(member.sName.begin(), member.sName.end());
    for (const Variant& cArgument : colArguments)
        sCall += " [" + Described(cArgument) + "]";
    LastCalls().push_back(sCall);
    if (LastCalls().size() > 30)
        LastCalls().pop_front();
}

// ---- one call

// A host's collection may contain itself. Such a cycle is never released, which is the host's mistake: not
// tested.
bool MakesRing(const Member& member, const Variant& cArgument)
{
    if (member.iid != __uuidof(_clsCollection) && member.iid != __uuidof(_clsValueList))
        return false;
    const auto cObject = ObjectIn<IDispatch>(cArgument);
    if (!cObject)
        return false;
    const IID iid = fuzz::InterfaceOf(*cObject);
    return iid == __uuidof(_clsCollection) || iid == __uuidof(_clsValueList);
}

// Keeps the objects of an enumerator.
void KeepItems(RandomValues& cValues, const VARIANT& value)
{
    const auto cItems = ObjectIn<IEnumVARIANT>(value);
    for (int lItem = 0; cItems && lItem < 5; ++lItem)
    {
        Variant cItem;
        if (cItems->Next(1, &cItem, nullptr) != S_OK)
            break;
        cValues.Keep(cItem);
    }
}

void ExpectProperError(const Member& member, HRESULT hResult, const EXCEPINFO& info)
{
    if (SUCCEEDED(hResult))
        return;
    if (hResult == DISP_E_EXCEPTION)
        EXPECT_TRUE(FAILED(info.scode) && SysStringLen(info.bstrDescription) > 0)
            << testing::PrintToString(member.sName) << " fails without a word";
    else
        EXPECT_TRUE(hResult == DISP_E_TYPEMISMATCH || hResult == DISP_E_BADPARAMCOUNT ||
                    hResult == DISP_E_PARAMNOTOPTIONAL || hResult == DISP_E_MEMBERNOTFOUND ||
                    hResult == DISP_E_PARAMNOTFOUND || hResult == DISP_E_OVERFLOW ||
                    hResult == DISP_E_BADVARTYPE || hResult == DISP_E_NONAMEDARGS)
            << testing::PrintToString(member.sName) << " gives " << std::hex << hResult;
}

void CallOnce(RandomValues& cValues, const Member& member, long lCall)
{
    const ComPtr<IDispatch> cTarget = cValues.Object(member.iid);
    std::vector<Variant> colValues;
    for (const fuzz::Parameter& parameter : member.colParameters)
    {
        colValues.push_back(cValues.For(parameter));
        if (MakesRing(member, colValues.back()))
            colValues.back() = Variant(cValues.Text());
    }
    if (cValues.OneIn(30))
        colValues.resize(cValues.Below(colValues.size() + 2)); // too few, or one too many
    Note(lCall, member, colValues);

    std::vector<VARIANT> colArguments; // the last one first
    for (std::size_t at = colValues.size(); at-- > 0;)
    {
        const bool bReference = at < member.colParameters.size() && member.colParameters[at].bByReference;
        colArguments.push_back(bReference ? ByReference(colValues[at]) : colValues[at]);
    }
    DISPID lPut = DISPID_PROPERTYPUT;
    const bool bPut = (member.wKind & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
    DISPPARAMS arguments{colArguments.data(), bPut ? &lPut : nullptr, static_cast<UINT>(colArguments.size()),
                         bPut ? 1u : 0u};
    Variant cResult;
    EXCEPINFO info{};
    UINT lArgument = 0;
    const HRESULT hResult = cTarget->Invoke(member.lId, IID_NULL, LOCALE_USER_DEFAULT, member.wKind,
                                            &arguments, &cResult, &info, &lArgument);
    if (fuzz::InterfaceOf(*cTarget) == member.iid)
        ExpectProperError(member, hResult, info);
    SysFreeString(info.bstrDescription);
    SysFreeString(info.bstrSource);
    SysFreeString(info.bstrHelpFile);
    cValues.Keep(cResult);
    KeepItems(cValues, cResult);
    for (const Variant& cValue : colValues)
        cValues.Keep(cValue);
}

class RandomCalls : public ComTest
{
protected:
    // A station on air, and one object of each class.
    void Begin(RandomValues& cValues, const fuzz::Surface& surface)
    {
        SetCurrentDirectoryW(Folder().c_str()); // files without a folder in their name are then created here
        std::ofstream csv(Folder() / "library.csv");
        csv << "path,artist,title,categories,level\n";
        for (int lCut = 1; lCut <= 30; ++lCut)
            csv << "C:\\" << lCut << ".mp3,Artist " << lCut % 7 << ",Title " << lCut << ","
                << (lCut % 3 == 0   ? "Pop/Rock"
                    : lCut % 3 == 1 ? "Pop"
                                    : "Rock")
                << "," << 1 + lCut % 2 << "\n";
        csv.close();
        const auto cDataBase = Create<_clsDataBase>(CLSID_clsDataBase);
        LONG lCuts = 0;
        EXPECT_EQ(cDataBase->Open(Bstr((Folder() / L"first.db").wstring()).Get()), S_OK);
        EXPECT_EQ(cDataBase->ImportCsv(Bstr((Folder() / L"library.csv").wstring()).Get(), &lCuts), S_OK);
        const auto cMan = Create<_clsSchedMan>(CLSID_clsSchedMan);
        EXPECT_EQ(cMan->PopulateFromDataBase(cDataBase.Get(), Bstr(Folder().wstring()).Get()), S_OK);
        EXPECT_EQ(cMan->put_RotatesAllowed(VARIANT_TRUE), S_OK);
        cValues.KeepForEver(cDataBase.Get());
        cValues.KeepForEver(cMan.Get());
        for (const CLSID& clsid : surface.colClasses)
            cValues.KeepForEver(Create<IDispatch>(clsid).Get());
    }
};

TEST_F(RandomCalls, EachEndsAndNothingIsLeftAlive)
{
    const PVOID pHandler = AddVectoredExceptionHandler(1, OnCrash);
    const fuzz::Surface surface =
        fuzz::ReadSurface({LIBID_RavloScheduler, LIBID_RavloBase, LIBID_KorvaCollection});
    ASSERT_EQ(surface.colClasses.size(), 9u);
    const auto lSeed = static_cast<unsigned>(NumberIn("RAVLO_SEED", 20261121));
    const long lCalls = NumberIn("RAVLO_CALLS", NumberIn("RAVLO_LONG", 0) != 0 ? 100'000 : 1'000);
    RandomValues cValues(lSeed, Folder().wstring());
    {
        BoxAnswerer cAnswerer(RandomAnswers(cValues));
        const WindowCloser cCloser;
        Watchdog cWatchdog;
        Begin(cValues, surface);
        for (long lCall = 0; lCall < lCalls && !HasFailure(); ++lCall)
        {
            // Each member once, then members at random.
            const auto lTurn = static_cast<std::size_t>(lCall);
            const std::size_t member =
                lTurn < surface.colMembers.size() ? lTurn : cValues.Below(surface.colMembers.size());
            CallOnce(cValues, surface.colMembers[member], lCall);
            cWatchdog.CallEnded();
            if (lCall % 1000 == 999)
                std::printf("%ld calls\n", lCall + 1), std::fflush(stdout);
        }
        cValues.Clear();
    }
    std::printf("%ld calls of %zu members, seed %u\n", lCalls, surface.colMembers.size(), lSeed);
    SetCurrentDirectoryW(L"C:\\");
    RemoveVectoredExceptionHandler(pHandler);
}

} // namespace

} // namespace ravlo
