// SPDX-License-Identifier: MIT
// Registration by the servers' own exports, seen in the registry. Nothing here uses a manifest.
#include "comkit/Variant.h"

#include <KorvaCollection.h>
#include <RavloBase.h>
#include <RavloScheduler.h>

#include <gtest/gtest.h>

#include <optional>
#include <span>
#include <string>

namespace ravlo
{
namespace
{

class Server
{
public:
    explicit Server(const std::wstring& sName)
        : m_sPath(L"" RAVLO_TEST_BIN + sName), m_hModule(LoadLibraryW(m_sPath.c_str()))
    {
        EXPECT_NE(m_hModule, nullptr);
    }
    ~Server() { FreeLibrary(m_hModule); }
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;

    HRESULT Register() const { return Function<HRESULT(WINAPI*)()>("DllRegisterServer")(); }
    HRESULT Unregister() const { return Function<HRESULT(WINAPI*)()>("DllUnregisterServer")(); }
    HRESULT Install(bool bInstall, const wchar_t* sCommand) const
    {
        return Function<HRESULT(WINAPI*)(BOOL, LPCWSTR)>("DllInstall")(bInstall, sCommand);
    }
    // The module's own path.
    std::wstring Path() const
    {
        std::wstring sPath(1024, L'\0');
        sPath.resize(GetModuleFileNameW(m_hModule, sPath.data(), 1024));
        return sPath;
    }

private:
    template <class F> F Function(const char* sName) const
    {
        return reinterpret_cast<F>(reinterpret_cast<void*>(GetProcAddress(m_hModule, sName)));
    }
    std::wstring m_sPath;
    HMODULE m_hModule;
};

struct Class
{
    const wchar_t* sProgID;
    const CLSID* pClsid;
    const GUID* pLibid;
};
const Class colSchedClasses[] = {
    {L"RavloScheduler.clsSchedMan", &CLSID_clsSchedMan, &LIBID_RavloScheduler},
    {L"RavloScheduler.clsCat", &CLSID_clsCat, &LIBID_RavloScheduler},
    {L"RavloScheduler.clsCatRules", &CLSID_clsCatRules, &LIBID_RavloScheduler},
    {L"RavloScheduler.clsRuleViolation", &CLSID_clsRuleViolation, &LIBID_RavloScheduler},
    {L"RavloScheduler.clsRotation", &CLSID_clsRotation, &LIBID_RavloScheduler},
    {L"KorvaCollection.clsCollection", &CLSID_clsCollection, &LIBID_KorvaCollection},
    {L"KorvaCollection.clsValueList", &CLSID_clsValueList, &LIBID_KorvaCollection},
};
const Class colBaseClasses[] = {
    {L"RavloBase.clsDataBase", &CLSID_clsDataBase, &LIBID_RavloBase},
    {L"RavloBase.clsCut", &CLSID_clsCut, &LIBID_RavloBase},
};

std::wstring TextOfGuid(REFGUID guid)
{
    wchar_t sText[40];
    StringFromGUID2(guid, sText, 40);
    return sText;
}

std::optional<std::wstring> Value(HKEY hRoot, const std::wstring& sKey, const wchar_t* sName = nullptr)
{
    wchar_t sText[1024];
    DWORD lBytes = sizeof sText;
    if (RegGetValueW(hRoot, (L"Software\\Classes\\" + sKey).c_str(), sName, RRF_RT_REG_SZ, nullptr, sText,
                     &lBytes) != ERROR_SUCCESS)
        return std::nullopt;
    return sText;
}

// The file a type library is registered for; empty when it is not.
std::wstring LibraryPath(REFGUID libid)
{
    Bstr sPath;
    if (FAILED(QueryPathOfRegTypeLib(libid, 1, 0, LOCALE_NEUTRAL, sPath.Receive())))
        return {};
    return sPath.Get();
}

class RegistrationTest : public testing::Test
{
protected:
    RegistrationTest()
    {
        EXPECT_EQ(CoInitialize(nullptr), S_OK);
        TakeOut();
    }
    ~RegistrationTest() override
    {
        TakeOut();
        CoUninitialize();
    }
    void TakeOut()
    {
        for (const Server* pServer : {&m_cSched, &m_cBase})
        {
            EXPECT_EQ(pServer->Unregister(), S_OK);
            EXPECT_EQ(pServer->Install(false, L"user"), S_OK);
        }
    }
    static void ExpectRegistered(HKEY hRoot, const Class& one, const std::wstring& sPath)
    {
        const std::wstring sKey = L"CLSID\\" + TextOfGuid(*one.pClsid);
        const std::wstring sName = one.sProgID;
        EXPECT_EQ(Value(hRoot, sKey), sName);
        EXPECT_EQ(Value(hRoot, sKey + L"\\InprocServer32"), sPath);
        EXPECT_EQ(Value(hRoot, sKey + L"\\InprocServer32", L"ThreadingModel"), L"Apartment");
        EXPECT_EQ(Value(hRoot, sKey + L"\\ProgID"), sName + L".1");
        EXPECT_EQ(Value(hRoot, sKey + L"\\VersionIndependentProgID"), sName);
        EXPECT_EQ(Value(hRoot, sKey + L"\\TypeLib"), TextOfGuid(*one.pLibid));
        EXPECT_EQ(Value(hRoot, sKey + L"\\Version"), L"1.0");
        EXPECT_EQ(Value(hRoot, sName + L"\\CLSID"), TextOfGuid(*one.pClsid));
        EXPECT_EQ(Value(hRoot, sName + L"\\CurVer"), sName + L".1");
        EXPECT_EQ(Value(hRoot, sName + L".1\\CLSID"), TextOfGuid(*one.pClsid));
    }
    static void ExpectNotRegistered(HKEY hRoot, const Class& one)
    {
        EXPECT_EQ(Value(hRoot, L"CLSID\\" + TextOfGuid(*one.pClsid)), std::nullopt);
        EXPECT_EQ(Value(hRoot, std::wstring(one.sProgID) + L"\\CLSID"), std::nullopt);
        EXPECT_EQ(Value(hRoot, std::wstring(one.sProgID) + L".1\\CLSID"), std::nullopt);
    }
    static void ExpectRegistered(HKEY hRoot, std::span<const Class> classes, const Server& server)
    {
        for (const Class& one : classes)
            ExpectRegistered(hRoot, one, server.Path());
    }
    static void ExpectNotRegistered(HKEY hRoot, std::span<const Class> classes)
    {
        for (const Class& one : classes)
            ExpectNotRegistered(hRoot, one);
    }
    void RegisterBoth()
    {
        for (const Server* pServer : {&m_cSched, &m_cBase})
            ASSERT_EQ(pServer->Register(), S_OK);
    }
    static HRESULT TryCreate(const CLSID& clsid)
    {
        ComPtr<IUnknown> cObject;
        return CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown,
                                reinterpret_cast<void**>(cObject.Receive()));
    }

    Server m_cSched{L"RavloSched.dll"};
    Server m_cBase{L"RavloBase.dll"};
};

TEST_F(RegistrationTest, ForTheMachineEveryClassCanBeCreatedAndIsGoneAgain)
{
    EXPECT_EQ(TryCreate(CLSID_clsSchedMan), REGDB_E_CLASSNOTREG);
    RegisterBoth();
    ASSERT_EQ(m_cSched.Register(), S_OK) << "registering again changes nothing";
    ExpectRegistered(HKEY_LOCAL_MACHINE, colSchedClasses, m_cSched);
    ExpectRegistered(HKEY_LOCAL_MACHINE, colBaseClasses, m_cBase);
    for (const std::span<const Class>& classes :
         std::initializer_list<std::span<const Class>>{colSchedClasses, colBaseClasses})
        for (const Class& one : classes)
            EXPECT_EQ(TryCreate(*one.pClsid), S_OK);
    ASSERT_EQ(m_cSched.Unregister(), S_OK);
    ASSERT_EQ(m_cBase.Unregister(), S_OK);
    ExpectNotRegistered(HKEY_LOCAL_MACHINE, colSchedClasses);
    ExpectNotRegistered(HKEY_LOCAL_MACHINE, colBaseClasses);
    EXPECT_EQ(TryCreate(CLSID_clsSchedMan), REGDB_E_CLASSNOTREG);
    for (const GUID* pLibid : {&LIBID_KorvaCollection, &LIBID_RavloBase, &LIBID_RavloScheduler})
        EXPECT_EQ(LibraryPath(*pLibid), L"");
}

TEST_F(RegistrationTest, ASchedulerAloneRegistersAllTypesOfItsMembers)
{
    ASSERT_EQ(m_cSched.Register(), S_OK);
    EXPECT_EQ(LibraryPath(LIBID_RavloScheduler), m_cSched.Path());
    EXPECT_EQ(LibraryPath(LIBID_RavloBase), m_cSched.Path() + L"\\2");
    EXPECT_EQ(LibraryPath(LIBID_KorvaCollection), m_cSched.Path() + L"\\3");
}

TEST_F(RegistrationTest, TypeLibraryBelongsToItsHomeModuleInAnyOrder)
{
    RegisterBoth();
    EXPECT_EQ(LibraryPath(LIBID_RavloBase), m_cBase.Path());
    EXPECT_EQ(LibraryPath(LIBID_KorvaCollection), m_cSched.Path() + L"\\3");
    TakeOut();
    ASSERT_EQ(m_cBase.Register(), S_OK);
    EXPECT_EQ(LibraryPath(LIBID_KorvaCollection), m_cBase.Path() + L"\\2");
    ASSERT_EQ(m_cSched.Register(), S_OK);
    EXPECT_EQ(LibraryPath(LIBID_RavloBase), m_cBase.Path());
    EXPECT_EQ(LibraryPath(LIBID_KorvaCollection), m_cSched.Path() + L"\\3");
}

TEST_F(RegistrationTest, UnregisteringLeavesAnotherModulesTypeLibrariesAlone)
{
    RegisterBoth();
    ASSERT_EQ(m_cSched.Unregister(), S_OK);
    EXPECT_EQ(LibraryPath(LIBID_RavloBase), m_cBase.Path());
    EXPECT_EQ(LibraryPath(LIBID_RavloScheduler), L"");
    ExpectRegistered(HKEY_LOCAL_MACHINE, colBaseClasses, m_cBase);
}

TEST_F(RegistrationTest, TypeLibrariesPassToTheOtherServer)
{
    const auto both = [&](bool bUser) {
        for (const Server* pServer : {&m_cSched, &m_cBase})
            ASSERT_EQ(bUser ? pServer->Install(true, L"user") : pServer->Register(), S_OK);
    };
    for (const bool bUser : {false, true})
    {
        const auto unregister = [&](const Server& server) {
            return bUser ? server.Install(false, L"user") : server.Unregister();
        };
        both(bUser);
        ASSERT_EQ(unregister(m_cSched), S_OK);
        EXPECT_EQ(LibraryPath(LIBID_KorvaCollection), m_cBase.Path() + L"\\2");
        EXPECT_EQ(LibraryPath(LIBID_RavloBase), m_cBase.Path());
        EXPECT_EQ(LibraryPath(LIBID_RavloScheduler), L"");
        both(bUser);
        ASSERT_EQ(unregister(m_cBase), S_OK);
        EXPECT_EQ(LibraryPath(LIBID_KorvaCollection), m_cSched.Path() + L"\\3");
        EXPECT_EQ(LibraryPath(LIBID_RavloBase), m_cSched.Path() + L"\\2");
        EXPECT_EQ(LibraryPath(LIBID_RavloScheduler), m_cSched.Path());
        ASSERT_EQ(unregister(m_cSched), S_OK);
        for (const GUID* pLibid : {&LIBID_KorvaCollection, &LIBID_RavloBase, &LIBID_RavloScheduler})
            EXPECT_EQ(LibraryPath(*pLibid), L"");
    }
}

#ifdef _WIN64
constexpr REGSAM lOtherWidth = KEY_WOW64_32KEY;
bool HasOtherWidth() { return true; }
#else
constexpr REGSAM lOtherWidth = KEY_WOW64_64KEY;
bool HasOtherWidth() // not on a 32-bit Windows
{
    BOOL bEmulated = FALSE;
    return IsWow64Process(GetCurrentProcess(), &bEmulated) && bEmulated;
}
#endif

// 32 bit and 64 have class keys of their own and share the names.
TEST_F(RegistrationTest, TheNamesStayWhileTheOtherWidthIsRegistered)
{
    if (!HasOtherWidth())
        GTEST_SKIP() << "this Windows has 32 bit only";
    const Class& one = colBaseClasses[0];
    const std::wstring sKey = L"Software\\Classes\\CLSID\\" + TextOfGuid(*one.pClsid);
    HKEY hOther = nullptr;
    ASSERT_EQ(RegCreateKeyExW(HKEY_LOCAL_MACHINE, (sKey + L"\\InprocServer32").c_str(), 0, nullptr, 0,
                              KEY_WRITE | lOtherWidth, nullptr, &hOther, nullptr),
              ERROR_SUCCESS);
    RegCloseKey(hOther);
    ASSERT_EQ(m_cBase.Register(), S_OK);
    ASSERT_EQ(m_cBase.Unregister(), S_OK);
    EXPECT_EQ(Value(HKEY_LOCAL_MACHINE, L"CLSID\\" + TextOfGuid(*one.pClsid)), std::nullopt);
    for (const std::wstring& sName : {std::wstring(one.sProgID), one.sProgID + std::wstring(L".1")})
        EXPECT_EQ(Value(HKEY_LOCAL_MACHINE, sName + L"\\CLSID"), TextOfGuid(*one.pClsid));
    ExpectNotRegistered(HKEY_LOCAL_MACHINE, colBaseClasses[1]); // which has no other width
    for (const wchar_t* sPart : {L"\\InprocServer32", L""})
        ASSERT_EQ(RegDeleteKeyExW(HKEY_LOCAL_MACHINE, (sKey + sPart).c_str(), lOtherWidth, 0), ERROR_SUCCESS);
    ASSERT_EQ(m_cBase.Unregister(), S_OK);
    ExpectNotRegistered(HKEY_LOCAL_MACHINE, one);
}

// Registers a file for a type library in the other width for as long as it lives.
class OtherWidthsLibrary
{
public:
    explicit OtherWidthsLibrary(REFGUID libid)
        : m_sKey(L"TypeLib\\" + TextOfGuid(libid) + L"\\1.0\\0\\" + sWidth)
    {
        const auto lBytes = static_cast<DWORD>((sPath.size() + 1) * sizeof(wchar_t));
        EXPECT_EQ(RegSetKeyValueW(HKEY_CLASSES_ROOT, m_sKey.c_str(), nullptr, REG_SZ, sPath.c_str(), lBytes),
                  ERROR_SUCCESS);
    }
    ~OtherWidthsLibrary() { RegDeleteTreeW(HKEY_CLASSES_ROOT, m_sKey.c_str()); }
    OtherWidthsLibrary(const OtherWidthsLibrary&) = delete;
    OtherWidthsLibrary& operator=(const OtherWidthsLibrary&) = delete;
    bool IsThere() const { return Value(HKEY_LOCAL_MACHINE, m_sKey) == sPath; }

private:
    inline static const std::wstring sPath = L"" RAVLO_TEST_BIN "KorvaCollection.tlb"; // it can be loaded
    static constexpr const wchar_t* sWidth = lOtherWidth == KEY_WOW64_32KEY ? L"win32" : L"win64";
    std::wstring m_sKey;
};

TEST_F(RegistrationTest, ATypeLibraryOfTheOtherWidthStaysUsable)
{
    const OtherWidthsLibrary other(LIBID_KorvaCollection);
    const std::wstring sInterface = L"Interface\\" + TextOfGuid(IID__clsCollection);
    RegisterBoth();
    for (const Server* pServer : {&m_cBase, &m_cSched})
        ASSERT_EQ(pServer->Unregister(), S_OK);
    EXPECT_TRUE(other.IsThere());
    EXPECT_EQ(Value(HKEY_LOCAL_MACHINE, sInterface + L"\\TypeLib"), TextOfGuid(LIBID_KorvaCollection));
    EXPECT_NE(Value(HKEY_LOCAL_MACHINE, sInterface + L"\\ProxyStubClsid32"), std::nullopt);
}

TEST_F(RegistrationTest, ATypeLibraryIsRegisteredForEachWidth)
{
    const OtherWidthsLibrary other(LIBID_KorvaCollection);
    ASSERT_EQ(m_cBase.Register(), S_OK); // whose module does not own the library
    EXPECT_EQ(LibraryPath(LIBID_KorvaCollection), m_cBase.Path() + L"\\2");
    ASSERT_EQ(m_cBase.Unregister(), S_OK);
    EXPECT_TRUE(other.IsThere());
}

TEST_F(RegistrationTest, ForOneUserTheKeysAreTheUsersOwn)
{
    for (const wchar_t* sCommand : {L"user", L"USER"})
    {
        ASSERT_EQ(m_cSched.Install(true, sCommand), S_OK);
        ExpectRegistered(HKEY_CURRENT_USER, colSchedClasses, m_cSched);
        ExpectNotRegistered(HKEY_LOCAL_MACHINE, colSchedClasses);
        ASSERT_EQ(m_cSched.Install(false, sCommand), S_OK);
        ExpectNotRegistered(HKEY_CURRENT_USER, colSchedClasses);
    }
}

TEST_F(RegistrationTest, WithoutTheCommandAnInstallIsForTheMachine)
{
    ASSERT_EQ(m_cBase.Install(true, nullptr), S_OK);
    ExpectRegistered(HKEY_LOCAL_MACHINE, colBaseClasses, m_cBase);
    ASSERT_EQ(m_cBase.Install(false, L""), S_OK);
    ExpectNotRegistered(HKEY_LOCAL_MACHINE, colBaseClasses);
}

} // namespace
} // namespace ravlo
