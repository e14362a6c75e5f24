// SPDX-License-Identifier: MIT
#pragma once

#include "com/ComTest.h"
#include "comkit/Collection.h"
#include "comkit/EventSource.h"
#include "comkit/Unknown.h"

#include <functional>
#include <map>
#include <memory>

namespace ravlo
{

// A host's own object with interface I: early bound only, without type, error or class information.
template <class I> class HostObject : public Untyped<I>
{
public:
    STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override
    {
        return DISP_E_MEMBERNOTFOUND;
    }
};

// A host's own list of objects or names, with the members that a scheduler needs.
class HostCollection final : public HostObject<_clsCollection>
{
public:
    std::vector<std::pair<std::wstring, Variant>> m_colItems; // key and item

    STDMETHODIMP Add(VARIANT Item, VARIANT Key, VARIANT, VARIANT) override
    {
        m_colItems.emplace_back(TextOf(Key.bstrVal), Variant(Item));
        return S_OK;
    }
    STDMETHODIMP get_Item(VARIANT, VARIANT*) override { return E_NOTIMPL; }
    STDMETHODIMP Exists(VARIANT Key, VARIANT_BOOL* pVal) override
    {
        *pVal = BoolOf(Find(TextOf(Key.bstrVal)) != m_colItems.end());
        return S_OK;
    }
    STDMETHODIMP Remove(VARIANT Index) override
    {
        m_colItems.erase(Index.vt == VT_BSTR ? Find(TextOf(Index.bstrVal))
                                             : m_colItems.begin() + Index.lVal - 1);
        return S_OK;
    }
    STDMETHODIMP get_Count(LONG* pVal) override
    {
        *pVal = static_cast<LONG>(m_colItems.size());
        return S_OK;
    }
    STDMETHODIMP get__NewEnum(IUnknown** ppEnum) override
    {
        const auto count = [this] { return m_colItems.size(); };
        const auto at = [this](std::size_t i) { return m_colItems[i].second; };
        *ppEnum = NewEnumerator(ComPtr<IUnknown>(this), count, at).Detach();
        return S_OK;
    }
    STDMETHODIMP Invoke(DISPID lMember, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* pResult, EXCEPINFO*,
                        UINT*) override
    {
        if (lMember != DISPID_NEWENUM)
            return DISP_E_MEMBERNOTFOUND;
        pResult->vt = VT_UNKNOWN;
        return get__NewEnum(&pResult->punkVal);
    }

private:
    std::vector<std::pair<std::wstring, Variant>>::iterator Find(const std::wstring& sKey)
    {
        return std::find_if(m_colItems.begin(), m_colItems.end(),
                            [&](const auto& item) { return item.first == sKey; });
    }
};

// A host's own cut.
class HostCutObject final : public HostObject<_clsCut>
{
public:
    explicit HostCutObject(std::wstring sKey) : m_sKey(std::move(sKey)) {}

    std::wstring m_sKey;
    std::wstring m_sSecondaryKey;
    std::wstring m_sArtist;
    std::wstring m_sTitle;
    std::wstring m_sAlbum;
    std::wstring m_sCategoryKey;
    LONG m_lYear = 0;
    LONG m_lLevel = 1;
    LONG m_lRunTime = 0;
    LONG m_lDuration = 0;
    LONG m_lKind = 0;
    DATE m_dtLastPlayed = 0;
    VARIANT_BOOL m_bOpener = VARIANT_FALSE;
    VARIANT_BOOL m_bMustBeOpener = VARIANT_FALSE;
    ComPtr<HostCollection> m_colNames = NewObject<HostCollection>();
    HRESULT m_hKey = S_OK;            // the answer of get_Key
    std::function<void()> m_onLevel;  // runs in get_CatLevel
    HRESULT m_hCategoryText = S_OK;   // the answer of put_CategoryText
    std::function<void()> m_onAsked;  // runs in QueryInterface
    IRevision* m_pRevision = nullptr; // the object's revisions; null: it has none

    STDMETHODIMP QueryInterface(REFIID iid, void** ppvObject) override
    {
        if (m_onAsked)
            m_onAsked();
        if (m_pRevision && iid == IID_IRevision)
        {
            *ppvObject = m_pRevision;
            AddRef();
            return S_OK;
        }
        return HostObject::QueryInterface(iid, ppvObject);
    }
    void FileIn(const std::wstring& sCatName)
    {
        m_colNames->m_colItems.emplace_back(sCatName, Variant(std::wstring_view(sCatName)));
    }

    STDMETHODIMP get_ID(LONG* pVal) override { return Get(pVal, LONG{7}); }
    STDMETHODIMP get_Key(BSTR* pVal) override { return FAILED(m_hKey) ? m_hKey : Get(pVal, m_sKey); }
    STDMETHODIMP put_Key(BSTR newVal) override { return Put(m_sKey, newVal); }
    STDMETHODIMP get_SecondaryKey(BSTR* pVal) override { return Get(pVal, m_sSecondaryKey); }
    STDMETHODIMP put_SecondaryKey(BSTR newVal) override { return Put(m_sSecondaryKey, newVal); }
    STDMETHODIMP get_Path(BSTR* pVal) override { return Get(pVal, m_sKey); }
    STDMETHODIMP put_Path(BSTR newVal) override { return Put(m_sKey, newVal); }
    STDMETHODIMP get_Artist(BSTR* pVal) override { return Get(pVal, m_sArtist); }
    STDMETHODIMP put_Artist(BSTR newVal) override { return Put(m_sArtist, newVal); }
    STDMETHODIMP get_Title(BSTR* pVal) override { return Get(pVal, m_sTitle); }
    STDMETHODIMP put_Title(BSTR newVal) override { return Put(m_sTitle, newVal); }
    STDMETHODIMP get_Album(BSTR* pVal) override { return Get(pVal, m_sAlbum); }
    STDMETHODIMP put_Album(BSTR newVal) override { return Put(m_sAlbum, newVal); }
    STDMETHODIMP get_Year(LONG* pVal) override { return Get(pVal, m_lYear); }
    STDMETHODIMP put_Year(LONG newVal) override { return Put(m_lYear, newVal); }
    STDMETHODIMP get_CatLevel(LONG* pVal) override
    {
        if (m_onLevel)
            m_onLevel();
        return Get(pVal, m_lLevel);
    }
    STDMETHODIMP put_CatLevel(LONG newVal) override { return Put(m_lLevel, newVal); }
    STDMETHODIMP get_CategoryText(BSTR* pVal) override
    {
        std::wstring sText;
        for (const auto& [sName, cItem] : m_colNames->m_colItems)
            sText += (sText.empty() ? L"" : L"/") + sName;
        return Get(pVal, sText);
    }
    STDMETHODIMP put_CategoryText(BSTR newVal) override
    {
        if (FAILED(m_hCategoryText))
            return m_hCategoryText;
        m_colNames->m_colItems.clear();
        std::wstring sText = TextOf(newVal);
        while (!sText.empty())
        {
            const std::size_t end = sText.find(L'/');
            FileIn(sText.substr(0, end));
            sText = end == std::wstring::npos ? L"" : sText.substr(end + 1);
        }
        return S_OK;
    }
    STDMETHODIMP get_Categories(_clsCollection** pVal) override
    {
        *pVal = ComPtr<_clsCollection>(m_colNames).Detach();
        return S_OK;
    }
    STDMETHODIMP get_RunTimemS(LONG* pVal) override { return Get(pVal, m_lRunTime); }
    STDMETHODIMP put_RunTimemS(LONG newVal) override { return Put(m_lRunTime, newVal); }
    STDMETHODIMP get_DurationmS(LONG* pVal) override { return Get(pVal, m_lDuration); }
    STDMETHODIMP put_DurationmS(LONG newVal) override { return Put(m_lDuration, newVal); }
    STDMETHODIMP get_DurationText(BSTR* pVal) override { return Get(pVal, std::wstring(L"1:23")); }
    STDMETHODIMP get_LastPlayed(DATE* pVal) override { return Get(pVal, m_dtLastPlayed); }
    STDMETHODIMP put_LastPlayed(DATE newVal) override { return Put(m_dtLastPlayed, newVal); }
    STDMETHODIMP get_Opener(VARIANT_BOOL* pVal) override { return Get(pVal, m_bOpener); }
    STDMETHODIMP put_Opener(VARIANT_BOOL newVal) override { return Put(m_bOpener, newVal); }
    STDMETHODIMP get_CategoryKey(BSTR* pVal) override { return Get(pVal, m_sCategoryKey); }
    STDMETHODIMP put_CategoryKey(BSTR newVal) override { return Put(m_sCategoryKey, newVal); }
    STDMETHODIMP get_MustBeOpener(VARIANT_BOOL* pVal) override { return Get(pVal, m_bMustBeOpener); }
    STDMETHODIMP put_MustBeOpener(VARIANT_BOOL newVal) override { return Put(m_bMustBeOpener, newVal); }
    STDMETHODIMP get_KindCode(LONG* pVal) override { return Get(pVal, m_lKind); }
    STDMETHODIMP put_KindCode(LONG newVal) override { return Put(m_lKind, newVal); }
    STDMETHODIMP CloneCut(_clsCut** pVal) override
    {
        auto cClone = NewObject<HostCutObject>(m_sKey);
        cClone->m_sArtist = m_sArtist;
        cClone->m_sTitle = m_sTitle;
        cClone->m_lLevel = m_lLevel;
        *pVal = ComPtr<_clsCut>(cClone).Detach();
        return S_OK;
    }

private:
    static HRESULT Get(BSTR* pVal, const std::wstring& sText)
    {
        *pVal = NewBstr(sText);
        return S_OK;
    }
    template <class Value> static HRESULT Get(Value* pVal, Value value)
    {
        *pVal = value;
        return S_OK;
    }
    static HRESULT Put(std::wstring& sTarget, BSTR newVal)
    {
        sTarget = TextOf(newVal);
        return S_OK;
    }
    template <class Value> static HRESULT Put(Value& target, Value value)
    {
        target = value;
        return S_OK;
    }
};

// A foreign category, which does nothing.
class HostCatObject : public HostObject<_clsCat>
{
public:
    STDMETHODIMP get_MainCat(_clsCat**) override { return E_NOTIMPL; }
    STDMETHODIMP putref_MainCat(_clsCat*) override { return E_NOTIMPL; }
    STDMETHODIMP put_CatName(BSTR) override { return E_NOTIMPL; }
    STDMETHODIMP get_CatName(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP get_CatLevel(LONG*) override { return E_NOTIMPL; }
    STDMETHODIMP put_CatLevel(LONG) override { return E_NOTIMPL; }
    STDMETHODIMP get_Rules(_clsCatRules**) override { return E_NOTIMPL; }
    STDMETHODIMP putref_Rules(_clsCatRules*) override { return E_NOTIMPL; }
    STDMETHODIMP get_AverageRunTimemS(LONG*) override { return E_NOTIMPL; }
    STDMETHODIMP get_SchedCuts(_clsCollection**) override { return E_NOTIMPL; }
    STDMETHODIMP putref_SchedCuts(IDispatch*) override { return E_NOTIMPL; }
    STDMETHODIMP AddCut(_clsCut*, VARIANT_BOOL*, VARIANT_BOOL*) override { return E_NOTIMPL; }
    STDMETHODIMP RemoveCut(_clsCut*, VARIANT_BOOL*) override { return E_NOTIMPL; }
    STDMETHODIMP get_TotalCuts(LONG*) override { return E_NOTIMPL; }
    STDMETHODIMP get_SubCats(_clsCollection**) override { return E_NOTIMPL; }
    STDMETHODIMP AddSubCat(_clsCat*, VARIANT_BOOL*) override { return E_NOTIMPL; }
    STDMETHODIMP RemoveSubCat(_clsCat*, VARIANT_BOOL*) override { return E_NOTIMPL; }
    STDMETHODIMP get_CatID(BSTR*) override { return E_NOTIMPL; }
};

// A host database's batches of changes, which records the calls.
class HostBatches final : public Unknown<IBatchedChanges>
{
public:
    std::vector<std::wstring> m_colCalls;
    HRESULT m_hBegin = S_OK; // the calls' answers
    HRESULT m_hCommit = S_OK;
    std::function<void()> m_onCommit = [] {};
    std::function<void()> m_onRollback = [] {};

    STDMETHODIMP BeginBatch() override
    {
        m_colCalls.push_back(L"begin");
        return m_hBegin;
    }
    STDMETHODIMP CommitBatch() override
    {
        m_colCalls.push_back(L"commit");
        m_onCommit();
        return m_hCommit;
    }
    STDMETHODIMP RollbackBatch() override
    {
        m_colCalls.push_back(L"rollback");
        m_onRollback();
        return S_OK;
    }
};

// A host's own media database. Without events it has no connection point at all.
class HostDataBaseObject final : public HostObject<_clsDataBase>
{
public:
    explicit HostDataBaseObject(bool bEvents = true) : m_bEvents(bEvents) {}

    ComPtr<HostCollection> m_colCuts = NewObject<HostCollection>();
    HRESULT m_hCuts = S_OK; // the answer of get_Cuts
    std::function<void()> m_onCuts;
    std::function<void()> m_onCutByKey;
    EventSource m_cEvents{*this, DIID___clsDataBase};
    ComPtr<IConnectionPointContainer> m_cOwnPoints; // used instead of m_cEvents
    ComPtr<HostBatches> m_cBatches;                 // null: the database has no batches

    ComPtr<HostCutObject> AddCut(const std::wstring& sTitle, const std::wstring& sCatName, LONG lLevel)
    {
        auto cCut = NewObject<HostCutObject>(L"C:\\" + sTitle + L".mp3");
        cCut->m_sTitle = sTitle;
        cCut->m_sArtist = L"Artist of " + sTitle;
        cCut->m_lLevel = lLevel;
        cCut->FileIn(sCatName);
        m_colCuts->m_colItems.emplace_back(cCut->m_sKey, Object(cCut));
        return cCut;
    }

    STDMETHODIMP QueryInterface(REFIID iid, void** ppvObject) override
    {
        if (m_cBatches && iid == IID_IBatchedChanges)
        {
            *ppvObject = ComPtr<HostBatches>(m_cBatches).Detach();
            return S_OK;
        }
        if (m_cOwnPoints && iid == IID_IConnectionPointContainer)
        {
            *ppvObject = ComPtr<IConnectionPointContainer>(m_cOwnPoints).Detach();
            return S_OK;
        }
        if (m_bEvents && iid == IID_IConnectionPointContainer)
        {
            *ppvObject = ComPtr<IConnectionPointContainer>(&m_cEvents).Detach();
            return S_OK;
        }
        return HostObject::QueryInterface(iid, ppvObject);
    }
    STDMETHODIMP Open(BSTR) override { return S_OK; }
    STDMETHODIMP Close() override { return S_OK; }
    STDMETHODIMP get_FileName(BSTR* pVal) override
    {
        *pVal = NewBstr(L"in the host");
        return S_OK;
    }
    STDMETHODIMP get_Cuts(_clsCollection** pVal) override
    {
        if (m_onCuts)
            m_onCuts();
        if (SUCCEEDED(m_hCuts))
            *pVal = ComPtr<_clsCollection>(m_colCuts).Detach();
        return m_hCuts;
    }
    STDMETHODIMP CutByKey(BSTR sKey, _clsCut** pVal) override
    {
        if (m_onCutByKey)
            m_onCutByKey();
        return Find(pVal, [&](HostCutObject& cCut) { return cCut.m_sKey == TextOf(sKey); });
    }
    STDMETHODIMP CutByArtistTitle(BSTR sArtist, BSTR sTitle, _clsCut** pVal) override
    {
        return Find(pVal, [&](HostCutObject& cCut) {
            return cCut.m_sArtist == TextOf(sArtist) && cCut.m_sTitle == TextOf(sTitle);
        });
    }
    STDMETHODIMP NewCut(_clsCut** pVal) override
    {
        *pVal = ComPtr<_clsCut>(NewObject<HostCutObject>(L"")).Detach();
        return S_OK;
    }
    STDMETHODIMP AddCuts(IDispatch*, LONG*) override { return E_NOTIMPL; }
    STDMETHODIMP ModifyCuts(IDispatch*, LONG*) override { return E_NOTIMPL; }
    STDMETHODIMP RemoveCuts(IDispatch*, LONG*) override { return E_NOTIMPL; }
    STDMETHODIMP ImportCsv(BSTR, LONG*) override { return E_NOTIMPL; }
    STDMETHODIMP PlaysCsv(DATE, DATE, BSTR, BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP ImportFolder(BSTR, BSTR, VARIANT_BOOL, LONG*) override { return E_NOTIMPL; }
    STDMETHODIMP ImportPlaylist(BSTR, BSTR, VARIANT_BOOL, LONG*) override { return E_NOTIMPL; }
    STDMETHODIMP ImportMappedCsv(BSTR, BSTR, VARIANT_BOOL, LONG*) override { return E_NOTIMPL; }
    STDMETHODIMP CancelImport() override { return E_NOTIMPL; }
    STDMETHODIMP get_LastImportReport(BSTR*) override { return E_NOTIMPL; }

private:
    HRESULT Find(_clsCut** pVal, const std::function<bool(HostCutObject&)>& matches)
    {
        *pVal = nullptr;
        for (const auto& [sKey, cItem] : m_colCuts->m_colItems)
        {
            auto* pCut = static_cast<HostCutObject*>(cItem.pdispVal);
            if (!*pVal && matches(*pCut))
                *pVal = ComPtr<_clsCut>(pCut).Detach();
        }
        return S_OK;
    }

    bool m_bEvents;
};

// An event: its dispatch id and its arguments as texts, joined with "|".
struct Heard
{
    DISPID lEvent;
    std::wstring sArguments;
    bool operator==(const Heard&) const = default;
};
inline std::ostream& operator<<(std::ostream& stream, const Heard& heard)
{
    return stream << heard.lEvent << " " << std::string(heard.sArguments.begin(), heard.sArguments.end());
}

// A sink for events of any kind, which records them, runs m_onEvent and answers m_hAnswer.
class Sink final : public Untyped<IDispatch>
{
public:
    explicit Sink(REFIID iidEvents) : m_iidEvents(iidEvents) {}

    std::vector<Heard> m_colHeard;
    std::function<void(DISPID, DISPPARAMS&)> m_onEvent;
    HRESULT m_hAnswer = S_OK;

    STDMETHODIMP Invoke(DISPID lEvent, REFIID, LCID, WORD, DISPPARAMS* pArguments, VARIANT*, EXCEPINFO*,
                        UINT*) override
    {
        const ComPtr<Sink> cSelf(this);
        std::wstring sArguments;
        for (UINT i = pArguments->cArgs; i-- > 0;)
            sArguments += (sArguments.empty() ? L"" : L"|") + TextIn(pArguments->rgvarg[i]);
        m_colHeard.push_back({lEvent, sArguments});
        if (m_onEvent)
            m_onEvent(lEvent, *pArguments);
        return m_hAnswer;
    }

protected:
    bool Answers(REFIID iid) const noexcept override { return iid == IID_IDispatch || iid == m_iidEvents; }

private:
    IID m_iidEvents;
};

template <class I> ComPtr<IConnectionPoint> PointOf(const ComPtr<I>& cObject, REFIID iidEvents)
{
    const auto cContainer = cObject.template As<IConnectionPointContainer>();
    ComPtr<IConnectionPoint> cPoint;
    EXPECT_TRUE(cContainer && SUCCEEDED(cContainer->FindConnectionPoint(iidEvents, cPoint.Receive())));
    return cPoint;
}

inline DWORD Advise(const ComPtr<IConnectionPoint>& cPoint, const ComPtr<Sink>& cSink)
{
    DWORD lCookie = 0;
    EXPECT_EQ(cPoint->Advise(cSink.Get(), &lCookie), S_OK);
    return lCookie;
}

} // namespace ravlo
