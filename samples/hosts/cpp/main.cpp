// SPDX-License-Identifier: MIT
// A playout host in C++ that is bound early, through the headers made from the type libraries: it fills a
// small library, asks for three cuts, reports their plays and counts the scheduler's progress events.
//   cpp_host FOLDER
#include "KorvaCollection.h"
#include "RavloBase.h"
#include "RavloScheduler.h"

#include <comdef.h>
#include <windows.h>

#include <cstdio>
#include <string>

namespace
{

template <class Interface> using Ptr = _com_ptr_t<_com_IIID<Interface, &__uuidof(Interface)>>;

void Check(HRESULT hr)
{
    if (FAILED(hr))
        throw _com_error(hr);
}

// Receives the events of a scheduler for as long as it lives.
class Events final : public IDispatch
{
public:
    explicit Events(_clsSchedMan* scheduler)
    {
        Ptr<IConnectionPointContainer> container(scheduler);
        Check(container->FindConnectionPoint(DIID___clsSchedMan, &m_point));
        Check(m_point->Advise(this, &m_cookie));
    }
    ~Events() { m_point->Unadvise(m_cookie); }

    int Started() const { return m_started; }

    STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override
    {
        constexpr DISPID progressStart = 2;
        if (id == progressStart)
            ++m_started;
        return S_OK;
    }
    STDMETHODIMP QueryInterface(REFIID iid, void** object) override
    {
        const bool known = iid == IID_IUnknown || iid == IID_IDispatch || iid == DIID___clsSchedMan;
        *object = known ? this : nullptr;
        return known ? S_OK : E_NOINTERFACE;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return 1; }
    STDMETHODIMP_(ULONG) Release() override { return 1; }
    STDMETHODIMP GetTypeInfoCount(UINT* count) override
    {
        *count = 0;
        return S_OK;
    }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }

private:
    Ptr<IConnectionPoint> m_point;
    DWORD m_cookie = 0;
    int m_started = 0;
};

void AddCuts(_clsDataBase* dataBase)
{
    const _variant_t leftOut(DISP_E_PARAMNOTFOUND, VT_ERROR);
    Ptr<_clsCollection> cuts;
    Check(cuts.CreateInstance(CLSID_clsCollection));
    for (int number = 1; number <= 3; ++number)
    {
        const std::wstring text = std::to_wstring(number);
        const _bstr_t key((L"C:\\Music\\" + text + L".mp3").c_str());
        Ptr<_clsCut> cut;
        Check(dataBase->NewCut(&cut));
        Check(cut->put_Key(key));
        Check(cut->put_Artist(_bstr_t((L"Artist" + text).c_str())));
        Check(cut->put_Title(_bstr_t((L"Song" + text).c_str())));
        Check(cut->put_CategoryText(_bstr_t(L"Rock")));
        Check(cut->put_CatLevel(1));
        Check(cut->put_RunTimemS(180000));
        Check(cuts->Add(_variant_t(cut.GetInterfacePtr()), _variant_t(key), leftOut, leftOut));
    }
    long added = 0;
    Check(dataBase->AddCuts(cuts, &added));
}

DATE Now()
{
    SYSTEMTIME now{};
    GetLocalTime(&now);
    DATE date = 0;
    SystemTimeToVariantTime(&now, &date);
    return date;
}

void Run(const std::wstring& folder)
{
    Ptr<_clsDataBase> dataBase;
    Check(dataBase.CreateInstance(CLSID_clsDataBase));
    Check(dataBase->Open(_bstr_t((folder + L"\\host.db").c_str())));
    AddCuts(dataBase);

    Ptr<_clsSchedMan> scheduler;
    Check(scheduler.CreateInstance(CLSID_clsSchedMan));
    const Events events(scheduler);
    Check(scheduler->PopulateFromDataBase(dataBase, _bstr_t(folder.c_str())));
    Check(scheduler->put_RotatesAllowed(VARIANT_TRUE));

    std::wstring played;
    for (int pick = 0; pick < 3; ++pick)
    {
        Ptr<_clsCat> mainCat;
        Ptr<_clsCat> subCat;
        Ptr<_clsCut> cut;
        _bstr_t mainCatKey;
        Check(scheduler->get_NextCutFromRotation(_bstr_t(L"Rock\t1"), VARIANT_FALSE, nullptr, &mainCat,
                                                 &subCat, mainCatKey.GetAddress(), VARIANT_FALSE,
                                                 VARIANT_TRUE, &cut));
        _bstr_t title;
        Check(cut->get_Title(title.GetAddress()));
        played += static_cast<const wchar_t*>(title) + std::wstring(L" ");
        Check(cut->put_LastPlayed(Now()));
        Check(scheduler->UpdateArtistTitleHistory(cut));
    }
    std::printf("Played: %ls\n", played.c_str());
    if (events.Started() > 0)
        std::printf("ALL OK\n");
}

} // namespace

int wmain(int count, wchar_t** arguments)
{
    if (count != 2 || FAILED(CoInitialize(nullptr)))
        return 2;
    int status = 0;
    try
    {
        Run(arguments[1]);
    }
    catch (const _com_error& error)
    {
        std::printf("%08lx %ls\n", static_cast<unsigned long>(error.Error()), error.ErrorMessage());
        status = 1;
    }
    CoUninitialize();
    return status;
}
