// SPDX-License-Identifier: MIT
// RavloSched.dll: the classes it creates, the types it describes, and its five exported functions for COM.
#include "com/CatFace.h"
#include "com/CatRulesFace.h"
#include "com/Library.h"
#include "com/RotationFace.h"
#include "com/RuleViolationFace.h"
#include "com/SchedManFace.h"
#include "comkit/Registration.h"
#include "comkit/ValueListFace.h"

namespace
{

using namespace ravlo;

ComPtr<IUnknown> CreateSchedMan()
{
    return ComPtr<_clsSchedMan>(NewObject<SchedManFace>(std::make_shared<ravlo::clsSchedMan>(Library())));
}
ComPtr<IUnknown> CreateCat() { return CatOut(std::make_shared<ravlo::clsCat>(Library())); }
ComPtr<IUnknown> CreateCatRules() { return RulesOut(std::make_shared<ravlo::clsCatRules>(Library())); }
ComPtr<IUnknown> CreateRuleViolation() { return ComPtr<_clsRuleViolation>(NewObject<RuleViolationFace>()); }
ComPtr<IUnknown> CreateRotation() { return ComPtr<_clsRotation>(NewObject<RotationFace>()); }
ComPtr<IUnknown> CreateCollection()
{
    return ComPtr<_clsCollection>(NewCollection(std::make_shared<ItemCollection>()));
}
ComPtr<IUnknown> CreateValueList() { return ComPtr<_clsValueList>(NewObject<ValueListFace>()); }

const CoClass colClasses[] = {
    {SchedManFace::identity, CreateSchedMan},   {CatFace::identity, CreateCat},
    {CatRulesFace::identity, CreateCatRules},   {RuleViolationFace::identity, CreateRuleViolation},
    {RotationFace::identity, CreateRotation},   {CollectionFace::identity, CreateCollection},
    {ValueListFace::identity, CreateValueList},
};

const EmbeddedTypeLibrary colTypeLibraries[] = {
    {LIBID_RavloScheduler, 1, true},
    {LIBID_RavloBase, 2, false},
    {LIBID_KorvaCollection, 3, true},
};

// Stays registered when this module is unregistered: the database, whose module describes the same types.
const CLSID* const colNeighbours[] = {&CLSID_clsDataBase};

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
