// SPDX-License-Identifier: MIT
#pragma once

#include "comkit/ComPtr.h"

#include <span>
#include <string>

namespace ravlo
{

class InterfaceDescription;

// A class's names and ids for hosts.
struct ClassIdentity
{
    const CLSID& clsid;
    const GUID& libid;
    const IID& iid;          // its default interface
    const IID* pSource;      // its default source interface; null when it raises no events
    const wchar_t* sLibrary; // "RavloScheduler"
    const wchar_t* sName;    // "clsCat"
    const wchar_t* sProgID;  // "RavloScheduler.clsCat": also the source of its errors
};

// A class that hosts can create.
struct CoClass
{
    const ClassIdentity& identity;
    ComPtr<IUnknown> (*Create)();
};

// A type library among the module's resources.
struct EmbeddedTypeLibrary
{
    const GUID& libid;
    UINT lResource;
    // Whether this module owns the library. Another module's types are included so that references to them
    // always resolve; they are registered only if nobody has done so.
    bool bHome;
};

struct ModuleParts
{
    std::span<const CoClass> colClasses;
    std::span<const EmbeddedTypeLibrary> colTypeLibraries;
    // One class of each other module that includes some of these libraries. When this module is unregistered,
    // a registered neighbour takes them over.
    std::span<const CLSID* const> colNeighbours;
};

// The DLL as COM sees it: its classes, type libraries and number of live objects. All objects belong to one
// apartment thread, as everything in the library does.
namespace module
{
// Call once, when the DLL is loaded. The parts must be static.
void Attach(HINSTANCE hInstance, const ModuleParts& parts) noexcept;
HINSTANCE Instance() noexcept;
const ModuleParts& Parts() noexcept;

// The full path of the DLL's file, and of one of its type libraries ("...\x.dll" or "...\x.dll\2").
std::wstring Path();
std::wstring PathOf(const EmbeddedTypeLibrary& library);

void AddLock() noexcept;
void RemoveLock() noexcept;
long Locks() noexcept;

ComPtr<ITypeLib> LoadTypeLibrary(const EmbeddedTypeLibrary& library);
// A type of the module's libraries by its GUID. Throws when it is in none of them.
ComPtr<ITypeInfo> TypeInfoOf(REFGUID guid);
// The members of a dual interface of the module's libraries; described once.
const InterfaceDescription& DescriptionOf(REFIID iid);

HRESULT GetClassObject(REFCLSID clsid, REFIID iid, void** ppvObject) noexcept;
// Returns S_OK and releases the loaded type libraries when no object lives.
HRESULT CanUnloadNow() noexcept;
} // namespace module

// Keeps the DLL loaded while it lives.
class ModuleLock
{
public:
    ModuleLock() noexcept { module::AddLock(); }
    ModuleLock(const ModuleLock&) noexcept { module::AddLock(); }
    ModuleLock& operator=(const ModuleLock&) = default;
    ~ModuleLock() { module::RemoveLock(); }
};

} // namespace ravlo
