// SPDX-License-Identifier: MIT
// RavloBase.dll: the classes it creates, the types it describes, and its five exported functions for COM.
#include "comkit/Registration.h"
#include "ravlobase/StoreCut.h"
#include "ravlobase/com/DataBaseFace.h"

#include <RavloScheduler.h>

namespace
{

using namespace ravlo;

const CoClass colClasses[] = {
    {DataBaseFace::identity,
     []() -> ComPtr<IUnknown> { return ComPtr<_clsDataBase>(NewObject<DataBaseFace>()); }},
    {CutFace::identity, []() -> ComPtr<IUnknown> { return CutOut(std::make_shared<StoreCut>()); }},
};

const EmbeddedTypeLibrary colTypeLibraries[] = {
    {LIBID_RavloBase, 1, true},
    {LIBID_KorvaCollection, 2, false},
};

// Stays registered when this module is unregistered: the scheduler, which describes the same types.
const CLSID* const colNeighbours[] = {&CLSID_clsSchedMan};

} // namespace

extern "C"
{

    BOOL WINAPI DllMain(HINSTANCE hInstance, DWORD lReason, LPVOID)
    {
        if (lReason == DLL_PROCESS_ATTACH)
            module::Attach(hInstance, {colClasses, colTypeLibraries, colNeighbours});
        return TRUE;
    }

    STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, void** ppvObject)
    {
        return module::GetClassObject(clsid, iid, ppvObject);
    }
    STDAPI DllCanUnloadNow() { return module::CanUnloadNow(); }
    STDAPI DllRegisterServer() { return RegisterModule(RegistrationScope::Machine); }
    STDAPI DllUnregisterServer() { return UnregisterModule(RegistrationScope::Machine); }
    STDAPI DllInstall(BOOL bInstall, LPCWSTR sCommand) { return InstallModule(bInstall != FALSE, sCommand); }

} // extern "C"
