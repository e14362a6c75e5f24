// SPDX-License-Identifier: MIT
// RavloTest.Events, a helper for script tests where the script host itself cannot bind events:
//   k = helper.Connect(object, handler)   every default event of object calls handler's method of the same
//   name helper.Disconnect k
#include "comkit/Errors.h"
#include "comkit/Registration.h"
#include "comkit/Unknown.h"
#include "comkit/Variant.h"

#include <dispex.h>

#include <map>
#include <string>

namespace ravlo
{

namespace
{

constexpr CLSID CLSID_Events = {0x9d8f1f6c, 0x3f0b, 0x4b6e, {0x8f, 0x51, 0x6d, 0x0a, 0x4c, 0x7e, 0x2b, 0x11}};
const ClassIdentity eventsIdentity{CLSID_Events, GUID_NULL, IID_IDispatch,      nullptr,
                                   L"RavloTest", L"Events", L"RavloTest.Events"};

// VBScript's own objects know their members by the extended interface only.
HRESULT FindMember(const ComPtr<IDispatch>& cHandler, BSTR sName, DISPID& lMember)
{
    if (const auto cExtended = cHandler.As<IDispatchEx>())
        return cExtended->GetDispID(sName, fdexNameCaseInsensitive, &lMember);
    return cHandler->GetIDsOfNames(IID_NULL, &sName, 1, LOCALE_USER_DEFAULT, &lMember);
}

class Forwarder final : public Untyped<IDispatch>
{
public:
    Forwarder(IID iidEvents, ComPtr<ITypeInfo> cEvents, ComPtr<IDispatch> cHandler)
        : m_iidEvents(iidEvents), m_cEvents(std::move(cEvents)), m_cHandler(std::move(cHandler))
    {
    }
    STDMETHODIMP Invoke(DISPID lEvent, REFIID, LCID lcid, WORD, DISPPARAMS* pArguments, VARIANT* pResult,
                        EXCEPINFO* pExcepInfo, UINT* pArgErr) override
    {
        Bstr sName;
        UINT lCount = 0;
        DISPID lMember = 0;
        if (FAILED(m_cEvents->GetNames(lEvent, sName.Receive(), 1, &lCount)) ||
            FAILED(FindMember(m_cHandler, sName.Get(), lMember)))
            return S_OK; // an event the script does not care for
        return m_cHandler->Invoke(lMember, IID_NULL, lcid, DISPATCH_METHOD, pArguments, pResult, pExcepInfo,
                                  pArgErr);
    }

protected:
    bool Answers(REFIID iid) const noexcept override { return iid == IID_IDispatch || iid == m_iidEvents; }

private:
    IID m_iidEvents;
    ComPtr<ITypeInfo> m_cEvents;
    ComPtr<IDispatch> m_cHandler;
};

class Events final : public Untyped<IDispatch>
{
public:
    ~Events() override
    {
        for (auto& [lKey, connection] : m_colConnections)
            connection.cPoint->Unadvise(connection.lCookie);
    }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* pNames, UINT, LCID, DISPID* pIds) override
    {
        *pIds = _wcsicmp(pNames[0], L"Connect") == 0      ? 1
                : _wcsicmp(pNames[0], L"Disconnect") == 0 ? 2
                                                          : DISPID_UNKNOWN;
        return *pIds == DISPID_UNKNOWN ? DISP_E_UNKNOWNNAME : S_OK;
    }
    STDMETHODIMP Invoke(DISPID lMember, REFIID, LCID, WORD, DISPPARAMS* pArguments, VARIANT* pResult,
                        EXCEPINFO*, UINT*) override
    {
        return GuardAs(IID_IDispatch, eventsIdentity.sProgID, [&] {
            if (lMember == 1 && pArguments->cArgs == 2)
            {
                const std::int32_t lKey = Connect(pArguments->rgvarg[1], pArguments->rgvarg[0]);
                if (pResult)
                    *pResult = Variant(lKey).Detach();
            }
            else if (lMember == 2 && pArguments->cArgs == 1)
            {
                Disconnect(Variant::Dereferenced(pArguments->rgvarg[0]));
            }
            else
            {
                throw RuntimeError(DISP_E_BADPARAMCOUNT, L"Wrong number of arguments");
            }
        });
    }

private:
    struct Connection
    {
        ComPtr<IConnectionPoint> cPoint;
        DWORD lCookie;
    };

    std::int32_t Connect(const VARIANT& source, const VARIANT& handler)
    {
        const auto cSource = ObjectIn<IDispatch>(source);
        const auto cProvider = cSource.As<IProvideClassInfo2>();
        const auto cContainer = cSource.As<IConnectionPointContainer>();
        if (!cProvider || !cContainer)
            throw RuntimeError(error::TypeMismatch);
        GUID iidEvents{};
        ThrowIfFailed(cProvider->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &iidEvents));
        Connection connection{};
        ThrowIfFailed(cContainer->FindConnectionPoint(iidEvents, connection.cPoint.Receive()));
        const auto cForwarder =
            NewObject<Forwarder>(iidEvents, EventsOf(*cProvider, iidEvents), ObjectIn<IDispatch>(handler));
        ThrowIfFailed(connection.cPoint->Advise(cForwarder.Get(), &connection.lCookie));
        m_colConnections.emplace(++m_lLastKey, std::move(connection));
        return m_lLastKey;
    }

    // The description of the events: among the types of the class's own library.
    static ComPtr<ITypeInfo> EventsOf(IProvideClassInfo2& cProvider, REFIID iidEvents)
    {
        ComPtr<ITypeInfo> cClass;
        ComPtr<ITypeLib> cLibrary;
        ComPtr<ITypeInfo> cEvents;
        UINT lIndex = 0;
        ThrowIfFailed(cProvider.GetClassInfo(cClass.Receive()));
        ThrowIfFailed(cClass->GetContainingTypeLib(cLibrary.Receive(), &lIndex));
        ThrowIfFailed(cLibrary->GetTypeInfoOfGuid(iidEvents, cEvents.Receive()));
        return cEvents;
    }

    void Disconnect(const Variant& cKey)
    {
        const auto cLong = cKey.As(VT_I4);
        const auto found =
            cLong ? m_colConnections.find(static_cast<std::int32_t>(cLong->lVal)) : m_colConnections.end();
        if (found == m_colConnections.end())
            throw RuntimeError(error::InvalidProcedureCall);
        found->second.cPoint->Unadvise(found->second.lCookie);
        m_colConnections.erase(found);
    }

    std::map<std::int32_t, Connection> m_colConnections;
    std::int32_t m_lLastKey = 0;
};

const CoClass colClasses[] = {
    {eventsIdentity, []() -> ComPtr<IUnknown> { return NewObject<Events>(); }},
};

} // namespace

} // namespace ravlo

extern "C"
{

    BOOL WINAPI DllMain(HINSTANCE hInstance, DWORD lReason, LPVOID)
    {
        if (lReason == DLL_PROCESS_ATTACH)
            ravlo::module::Attach(hInstance, {ravlo::colClasses, {}, {}});
        return TRUE;
    }

    STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, void** ppvObject)
    {
        return ravlo::module::GetClassObject(clsid, iid, ppvObject);
    }
    STDAPI DllCanUnloadNow() { return ravlo::module::CanUnloadNow(); }
    STDAPI DllRegisterServer() { return ravlo::RegisterModule(ravlo::RegistrationScope::Machine); }
    STDAPI DllUnregisterServer() { return ravlo::UnregisterModule(ravlo::RegistrationScope::Machine); }

} // extern "C"
