// SPDX-License-Identifier: MIT
#include "comkit/Registration.h"

#include "base/CaseFolding.h"
#include "comkit/Errors.h"
#include "comkit/Variant.h"

#include <string>

// In the platform's import library, but in no header of the cross compiler.
extern "C" HRESULT WINAPI RegisterTypeLibForUser(ITypeLib*, OLECHAR*, OLECHAR*);
extern "C" HRESULT WINAPI UnRegisterTypeLibForUser(REFGUID, WORD, WORD, LCID, SYSKIND);

namespace ravlo
{

namespace
{

constexpr WORD lMajor = 1;
constexpr WORD lMinor = 0;
#ifdef _WIN64
constexpr SYSKIND eSysKind = SYS_WIN64;
constexpr wchar_t sOwnWidth[] = L"win64";
constexpr wchar_t sOtherWidth[] = L"win32";
#else
constexpr SYSKIND eSysKind = SYS_WIN32;
constexpr wchar_t sOwnWidth[] = L"win32";
constexpr wchar_t sOtherWidth[] = L"win64";
#endif

HKEY RootOf(RegistrationScope eScope) noexcept
{
    return eScope == RegistrationScope::User ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE;
}

std::wstring TextOfGuid(REFGUID guid)
{
    wchar_t sText[40];
    StringFromGUID2(guid, sText, 40);
    return sText;
}

std::wstring ClassKey(const CLSID& clsid) { return L"Software\\Classes\\CLSID\\" + TextOfGuid(clsid); }
std::wstring ProgIdKey(const std::wstring& sProgID) { return L"Software\\Classes\\" + sProgID; }

void Write(HKEY hRoot, const std::wstring& sKey, const wchar_t* sName, const std::wstring& sValue)
{
    // Exactly one terminator: readers compare the whole value.
    const auto lBytes = static_cast<DWORD>((sValue.size() + 1) * sizeof(wchar_t));
    const LSTATUS lStatus = RegSetKeyValueW(hRoot, sKey.c_str(), sName, REG_SZ, sValue.c_str(), lBytes);
    if (lStatus != ERROR_SUCCESS)
        throw RuntimeError(HRESULT_FROM_WIN32(static_cast<DWORD>(lStatus)), L"Cannot write " + sKey);
}

void WriteProgId(HKEY hRoot, const std::wstring& sProgID, const ClassIdentity& identity)
{
    Write(hRoot, ProgIdKey(sProgID), nullptr, identity.sProgID);
    Write(hRoot, ProgIdKey(sProgID) + L"\\CLSID", nullptr, TextOfGuid(identity.clsid));
}

void RegisterClass(HKEY hRoot, const ClassIdentity& identity)
{
    const std::wstring sProgID = identity.sProgID;
    const std::wstring sVersioned = sProgID + L".1";
    const std::wstring sKey = ClassKey(identity.clsid);
    Write(hRoot, sKey, nullptr, sProgID);
    Write(hRoot, sKey + L"\\InprocServer32", nullptr, module::Path());
    Write(hRoot, sKey + L"\\InprocServer32", L"ThreadingModel", L"Apartment");
    Write(hRoot, sKey + L"\\ProgID", nullptr, sVersioned);
    Write(hRoot, sKey + L"\\VersionIndependentProgID", nullptr, sProgID);
    Write(hRoot, sKey + L"\\TypeLib", nullptr, TextOfGuid(identity.libid));
    Write(hRoot, sKey + L"\\Version", nullptr, L"1.0");
    Write(hRoot, sKey + L"\\Programmable", nullptr, L"");
    WriteProgId(hRoot, sVersioned, identity);
    WriteProgId(hRoot, sProgID, identity);
    Write(hRoot, ProgIdKey(sProgID) + L"\\CurVer", nullptr, sVersioned);
}

// Whether the class is registered for the other width, 32 bit or 64. Under a system of one width both are the
// same key.
bool RegisteredForOtherWidth(HKEY hRoot, const CLSID& clsid)
{
#ifdef _WIN64
    constexpr REGSAM lOther = KEY_WOW64_32KEY;
#else
    constexpr REGSAM lOther = KEY_WOW64_64KEY;
#endif
    HKEY hKey = nullptr;
    if (RegOpenKeyExW(hRoot, (ClassKey(clsid) + L"\\InprocServer32").c_str(), 0, KEY_READ | lOther, &hKey) !=
        ERROR_SUCCESS)
        return false;
    RegCloseKey(hKey);
    return true;
}

// Each width has its own class keys; both share the names, which the last one removes.
void UnregisterClass(HKEY hRoot, const ClassIdentity& identity) noexcept
try
{
    RegDeleteTreeW(hRoot, ClassKey(identity.clsid).c_str());
    if (RegisteredForOtherWidth(hRoot, identity.clsid))
        return;
    RegDeleteTreeW(hRoot, ProgIdKey(identity.sProgID).c_str());
    RegDeleteTreeW(hRoot, ProgIdKey(identity.sProgID + std::wstring(L".1")).c_str());
}
catch (const std::bad_alloc&)
{
    // The key stays; the rest is still removed.
}

// A text in the registry; empty when there is none.
std::wstring Read(HKEY hRoot, const std::wstring& sKey)
{
    DWORD lBytes = 0;
    if (RegGetValueW(hRoot, sKey.c_str(), nullptr, RRF_RT_REG_SZ, nullptr, nullptr, &lBytes) != ERROR_SUCCESS)
        return {};
    std::wstring sText(lBytes / sizeof(wchar_t), L'\0');
    if (RegGetValueW(hRoot, sKey.c_str(), nullptr, RRF_RT_REG_SZ, nullptr, sText.data(), &lBytes) !=
        ERROR_SUCCESS)
        return {};
    return std::wstring(sText.data()); // without the terminator
}

// The key under Classes that names a type library's file. Both widths share the library's other keys.
std::wstring LibraryKey(REFGUID libid, const wchar_t* sWidth)
{
    return L"TypeLib\\" + TextOfGuid(libid) + L"\\1.0\\0\\" + sWidth;
}

// The file that is registered for the library in this width, for the machine or the user; empty when there is
// none. Not by QueryPathOfRegTypeLib, which also returns the other width's file.
std::wstring RegisteredPath(REFGUID libid) { return Read(HKEY_CLASSES_ROOT, LibraryKey(libid, sOwnWidth)); }

bool IsOurs(const EmbeddedTypeLibrary& library, const std::wstring& sRegistered)
{
    return EqualIgnoringCase(sRegistered, module::PathOf(library)) ||
           EqualIgnoringCase(sRegistered, module::Path() + L"\\" + std::to_wstring(library.lResource));
}

void WriteLibrary(RegistrationScope eScope, ITypeLib& cLibrary, std::wstring sPath)
{
    ThrowIfFailed(eScope == RegistrationScope::User ? RegisterTypeLibForUser(&cLibrary, sPath.data(), nullptr)
                                                    : RegisterTypeLib(&cLibrary, sPath.data(), nullptr));
}

GUID GuidOf(ITypeLib& cLibrary)
{
    TLIBATTR* pAttributes = nullptr;
    ThrowIfFailed(cLibrary.GetLibAttr(&pAttributes));
    const GUID guid = pAttributes->guid;
    cLibrary.ReleaseTLibAttr(pAttributes);
    return guid;
}

void RegisterLibrary(RegistrationScope eScope, const EmbeddedTypeLibrary& library)
{
    std::wstring sPath = module::PathOf(library);
    const std::wstring sRegistered = RegisteredPath(library.libid);
    ComPtr<ITypeLib> cResolved;
    if (!library.bHome && !sRegistered.empty() && !IsOurs(library, sRegistered) &&
        SUCCEEDED(LoadTypeLibEx(sRegistered.c_str(), REGKIND_NONE, cResolved.Receive())))
        return; // its own module has done it
    WriteLibrary(eScope, *module::LoadTypeLibrary(library).Get(), std::move(sPath));
}

// The file that a class is registered with; empty when it is not.
std::wstring ServerPath(HKEY hRoot, const CLSID& clsid)
{
    return Read(hRoot, ClassKey(clsid) + L"\\InprocServer32");
}

// Registers the copy of a library that a neighbour carries. False when none that is registered has one.
bool HandOver(RegistrationScope eScope, REFGUID libid)
{
    for (const CLSID* pNeighbour : module::Parts().colNeighbours)
    {
        const std::wstring sServer = ServerPath(RootOf(eScope), *pNeighbour);
        for (UINT lResource = 1; !sServer.empty(); ++lResource)
        {
            const std::wstring sPath =
                lResource == 1 ? sServer : sServer + L"\\" + std::to_wstring(lResource);
            ComPtr<ITypeLib> cLibrary;
            if (FAILED(LoadTypeLibEx(sPath.c_str(), REGKIND_NONE, cLibrary.Receive())))
                break; // they are numbered without gaps
            if (GuidOf(*cLibrary) != libid)
                continue;
            WriteLibrary(eScope, *cLibrary, sPath);
            return true;
        }
    }
    return false;
}

void UnregisterLibrary(RegistrationScope eScope, const EmbeddedTypeLibrary& library)
{
    if (!IsOurs(library, RegisteredPath(library.libid)) || HandOver(eScope, library.libid))
        return;
    const std::wstring sClasses = L"Software\\Classes\\";
    if (!Read(HKEY_CLASSES_ROOT, LibraryKey(library.libid, sOtherWidth)).empty())
        RegDeleteTreeW(RootOf(eScope), (sClasses + LibraryKey(library.libid, sOwnWidth)).c_str());
    else if (eScope == RegistrationScope::User)
        UnRegisterTypeLibForUser(library.libid, lMajor, lMinor, LOCALE_NEUTRAL, eSysKind);
    else
        UnRegisterTypeLib(library.libid, lMajor, lMinor, LOCALE_NEUTRAL, eSysKind);
}

} // namespace

HRESULT RegisterModule(RegistrationScope eScope) noexcept
{
    const HRESULT hResult = GuardAs(IID_NULL, L"", [&] {
        for (const CoClass& coClass : module::Parts().colClasses)
            RegisterClass(RootOf(eScope), coClass.identity);
        for (const EmbeddedTypeLibrary& library : module::Parts().colTypeLibraries)
            RegisterLibrary(eScope, library);
    });
    if (FAILED(hResult))
        UnregisterModule(eScope);
    return hResult;
}

HRESULT UnregisterModule(RegistrationScope eScope) noexcept
{
    for (const CoClass& coClass : module::Parts().colClasses)
        UnregisterClass(RootOf(eScope), coClass.identity);
    return GuardAs(IID_NULL, L"", [&] {
        for (const EmbeddedTypeLibrary& library : module::Parts().colTypeLibraries)
            UnregisterLibrary(eScope, library);
    });
}

HRESULT InstallModule(bool bInstall, const wchar_t* sCommand) noexcept
{
    const bool bUser = sCommand && EqualIgnoringCase(sCommand, L"user");
    const RegistrationScope eScope = bUser ? RegistrationScope::User : RegistrationScope::Machine;
    return bInstall ? RegisterModule(eScope) : UnregisterModule(eScope);
}

} // namespace ravlo
