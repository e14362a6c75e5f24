// SPDX-License-Identifier: MIT
#include "comkit/Module.h"

#include "comkit/Errors.h"
#include "comkit/InterfaceDescription.h"
#include "comkit/Unknown.h"

#include <atomic>
#include <memory>
#include <vector>

namespace ravlo
{

namespace
{

HINSTANCE hModule = nullptr;
ModuleParts moduleParts;
std::atomic<long> lLocks{0};

// References between the libraries resolve while all of them are loaded, registered or not.
std::vector<ComPtr<ITypeLib>> colLoaded;
std::vector<std::unique_ptr<InterfaceDescription>> colDescriptions;

class ClassFactory final : public Unknown<IClassFactory>
{
public:
    explicit ClassFactory(const CoClass& coClass) : m_coClass(coClass) {}

    STDMETHODIMP CreateInstance(IUnknown* pOuter, REFIID iid, void** ppvObject) override
    {
        if (!ppvObject)
            return E_POINTER;
        *ppvObject = nullptr;
        if (pOuter)
            return CLASS_E_NOAGGREGATION;
        ComPtr<IUnknown> cObject;
        const HRESULT hResult = GuardAs(m_coClass.identity.iid, m_coClass.identity.sProgID,
                                        [&] { cObject = m_coClass.Create(); });
        return FAILED(hResult) ? hResult : cObject->QueryInterface(iid, ppvObject);
    }

    STDMETHODIMP LockServer(BOOL bLock) override
    {
        if (bLock)
            module::AddLock();
        else
            module::RemoveLock();
        return S_OK;
    }

private:
    const CoClass& m_coClass;
};

} // namespace

namespace module
{

void Attach(HINSTANCE hInstance, const ModuleParts& parts) noexcept
{
    hModule = hInstance;
    moduleParts = parts;
}

HINSTANCE Instance() noexcept { return hModule; }
const ModuleParts& Parts() noexcept { return moduleParts; }

std::wstring Path()
{
    std::wstring sPath(MAX_PATH, L'\0');
    for (;;)
    {
        const DWORD lLength = GetModuleFileNameW(hModule, sPath.data(), static_cast<DWORD>(sPath.size()));
        if (lLength < sPath.size())
        {
            sPath.resize(lLength);
            return sPath;
        }
        sPath.resize(sPath.size() * 2);
    }
}

std::wstring PathOf(const EmbeddedTypeLibrary& library)
{
    return library.lResource == 1 ? Path() : Path() + L"\\" + std::to_wstring(library.lResource);
}

void AddLock() noexcept { ++lLocks; }
void RemoveLock() noexcept { --lLocks; }
long Locks() noexcept { return lLocks; }

ComPtr<ITypeLib> LoadTypeLibrary(const EmbeddedTypeLibrary& library)
{
    ComPtr<ITypeLib> cLibrary;
    ThrowIfFailed(LoadTypeLibEx(PathOf(library).c_str(), REGKIND_NONE, cLibrary.Receive()));
    return cLibrary;
}

ComPtr<ITypeInfo> TypeInfoOf(REFGUID guid)
{
    if (colLoaded.empty())
        for (const EmbeddedTypeLibrary& library : moduleParts.colTypeLibraries)
            colLoaded.push_back(LoadTypeLibrary(library));
    ComPtr<ITypeInfo> cInfo;
    for (const ComPtr<ITypeLib>& cLibrary : colLoaded)
        if (SUCCEEDED(cLibrary->GetTypeInfoOfGuid(guid, cInfo.Receive())))
            return cInfo;
    throw RuntimeError(TYPE_E_ELEMENTNOTFOUND, L"Element not found");
}

const InterfaceDescription& DescriptionOf(REFIID iid)
{
    for (const std::unique_ptr<InterfaceDescription>& cDescription : colDescriptions)
        if (cDescription->Iid() == iid)
            return *cDescription;
    colDescriptions.push_back(std::make_unique<InterfaceDescription>(iid, TypeInfoOf(iid)));
    return *colDescriptions.back();
}

HRESULT GetClassObject(REFCLSID clsid, REFIID iid, void** ppvObject) noexcept
{
    if (!ppvObject)
        return E_POINTER;
    *ppvObject = nullptr;
    for (const CoClass& coClass : moduleParts.colClasses)
    {
        if (coClass.identity.clsid != clsid)
            continue;
        try
        {
            return NewObject<ClassFactory>(coClass)->QueryInterface(iid, ppvObject);
        }
        catch (...)
        {
            return E_OUTOFMEMORY;
        }
    }
    return CLASS_E_CLASSNOTAVAILABLE;
}

HRESULT CanUnloadNow() noexcept
{
    if (lLocks != 0)
        return S_FALSE;
    colDescriptions.clear();
    colLoaded.clear();
    return S_OK;
}

} // namespace module

} // namespace ravlo
