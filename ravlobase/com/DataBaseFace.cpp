// SPDX-License-Identifier: MIT
#include "ravlobase/com/DataBaseFace.h"

namespace ravlo
{

const ClassIdentity DataBaseFace::identity{CLSID_clsDataBase,       LIBID_RavloBase, IID__clsDataBase,
                                           &DIID___clsDataBase,     L"RavloBase",    L"clsDataBase",
                                           L"RavloBase.clsDataBase"};

namespace
{

const wchar_t* const sSource = DataBaseFace::identity.sProgID;

// The dispatch ids of __clsDataBase.
enum DataBaseEvent : DISPID
{
    eCutsAdded = 1,
    eCutsModified = 2,
    eCutsRemoved = 3,
    eProgressStart = 4,
    eProgress = 5,
    eProgressDone = 6,
};

// All cuts of a store, read-only.
class StoreCuts final : public CollectionModel
{
public:
    explicit StoreCuts(std::shared_ptr<Store> cStore) : m_cStore(std::move(cStore)) {}

    std::size_t Count() const override { return m_cStore->CutCollection().Count(); }
    Variant At(std::size_t position) const override
    {
        return CutAdapter::ToVariant(m_cStore->CutCollection().At(position));
    }
    std::optional<std::wstring> KeyAt(std::size_t position) const override
    {
        return m_cStore->CutCollection().At(position)->Key().Text();
    }
    std::optional<std::size_t> PositionOf(const std::wstring& sKey) const override
    {
        return m_cStore->CutCollection().PositionOf(sKey);
    }
    void Insert(std::size_t, const std::optional<std::wstring>&, const VARIANT&) override { Refuse(); }
    void RemoveAt(std::size_t) override { Refuse(); }

private:
    [[noreturn]] static void Refuse()
    {
        throw RuntimeError(error::NotImplemented, L"Use AddCuts and RemoveCuts to change the database");
    }
    std::shared_ptr<Store> m_cStore;
};

ComPtr<CollectionFace> CollectionOf(const Cuts& colCuts)
{
    auto colResult = std::make_shared<OrderedKeyedCollection<std::shared_ptr<Cut>>>();
    for (const std::shared_ptr<Cut>& cCut : colCuts)
        colResult->Add(cCut->Key(), cCut);
    return FaceOfCollection<CutAdapter>(colResult);
}

// The further interfaces.
bool IsPartOfThis(REFIID iid) noexcept
{
    return iid == IID_IBatchedChanges || iid == IID_IGatheredPlays || iid == IID_ISharedDataBase ||
           iid == IID_IRevision;
}

Variant Text(const std::wstring& sText) { return Variant(std::wstring_view(sText)); }

} // namespace

DataBaseFace::DataBaseFace()
    : Dispatch(identity), m_cStore(std::make_shared<Store>()),
      m_cEvents(*static_cast<_clsDataBase*>(this), DIID___clsDataBase)
{
    m_cStore->Advise(*this);
}

DataBaseFace::~DataBaseFace()
{
    m_cBatches.RollbackAll();
    m_cStore->Unadvise(*this);
}

STDMETHODIMP DataBaseFace::QueryInterface(REFIID iid, void** ppvObject)
{
    if (!ppvObject || !IsPartOfThis(iid))
        return Dispatch::QueryInterface(iid, ppvObject);
    if (iid == IID_IBatchedChanges)
        *ppvObject = static_cast<IBatchedChanges*>(&m_cBatches);
    else if (iid == IID_IGatheredPlays)
        *ppvObject = static_cast<IGatheredPlays*>(&m_cPlays);
    else if (iid == IID_ISharedDataBase)
        *ppvObject = static_cast<ISharedDataBase*>(&m_cShared);
    else
        *ppvObject = static_cast<IRevision*>(this);
    AddRef();
    return S_OK;
}

STDMETHODIMP DataBaseFace::InterfaceSupportsErrorInfo(REFIID iid)
{
    return IsPartOfThis(iid) ? S_OK : Dispatch::InterfaceSupportsErrorInfo(iid);
}

// A closed database has none.
STDMETHODIMP DataBaseFace::Revision(hyper* pVal)
{
    return GuardAs(IID_IRevision, sSource,
                   [&] { Out(pVal) = static_cast<hyper>(m_cStore->CutCollection().Changes() + 1); });
}

STDMETHODIMP DataBaseFace::Open(BSTR sFile)
{
    return Guard([&] { m_cStore->Open(TextOf(sFile)); });
}
STDMETHODIMP DataBaseFace::Close()
{
    return Guard([&] {
        m_cBatches.RollbackAll();
        m_cStore->Close();
    });
}
STDMETHODIMP DataBaseFace::get_FileName(BSTR* pVal) { return Get(pVal, m_cStore, &Store::FileName); }

STDMETHODIMP DataBaseFace::get_Cuts(_clsCollection** pVal)
{
    return Return(pVal, [&] {
        const void* const pIdentity = &m_cStore->CutCollection();
        return FaceMap<CollectionFace>::Instance().Get(pIdentity, [&] {
            return NewObject<CollectionFace>(pIdentity, std::make_unique<StoreCuts>(m_cStore));
        });
    });
}

STDMETHODIMP DataBaseFace::CutByKey(BSTR sKey, _clsCut** pVal)
{
    return Return(pVal, [&] { return CutOut(m_cStore->CutByKey(TextKey(TextOf(sKey)))); });
}
STDMETHODIMP DataBaseFace::CutByArtistTitle(BSTR sArtist, BSTR sTitle, _clsCut** pVal)
{
    return Return(pVal, [&] { return CutOut(m_cStore->CutByArtistTitle(TextOf(sArtist), TextOf(sTitle))); });
}
STDMETHODIMP DataBaseFace::NewCut(_clsCut** pVal)
{
    return Return(pVal, [&] { return CutOut(m_cStore->NewCut()); });
}
STDMETHODIMP DataBaseFace::AddCuts(IDispatch* colCuts, LONG* pVal)
{
    return Return(pVal, [&] { return m_cStore->AddCuts(CutsIn(colCuts)); });
}
STDMETHODIMP DataBaseFace::ModifyCuts(IDispatch* colCuts, LONG* pVal)
{
    return Return(pVal, [&] { return m_cStore->ModifyCuts(CutsIn(colCuts)); });
}
STDMETHODIMP DataBaseFace::RemoveCuts(IDispatch* colCuts, LONG* pVal)
{
    return Return(pVal, [&] { return m_cStore->RemoveCuts(CutsIn(colCuts)); });
}
STDMETHODIMP DataBaseFace::ImportCsv(BSTR sFile, LONG* pVal)
{
    return Return(pVal, [&] { return m_cStore->ImportCsv(TextOf(sFile)); });
}
STDMETHODIMP DataBaseFace::PlaysCsv(DATE dtFrom, DATE dtTo, BSTR sBy, BSTR* pVal)
{
    return Return(pVal, [&] { return m_cStore->PlaysCsv(dtFrom, dtTo, TextOf(sBy)); });
}
STDMETHODIMP DataBaseFace::ImportFolder(BSTR sFolder, BSTR sCategory, VARIANT_BOOL bTrial, LONG* pVal)
{
    return Return(pVal,
                  [&] { return m_cStore->ImportFolder(TextOf(sFolder), TextOf(sCategory), bTrial != 0); });
}
STDMETHODIMP DataBaseFace::ImportPlaylist(BSTR sFile, BSTR sCategory, VARIANT_BOOL bTrial, LONG* pVal)
{
    return Return(pVal,
                  [&] { return m_cStore->ImportPlaylist(TextOf(sFile), TextOf(sCategory), bTrial != 0); });
}
STDMETHODIMP DataBaseFace::ImportMappedCsv(BSTR sFile, BSTR sMap, VARIANT_BOOL bTrial, LONG* pVal)
{
    return Return(pVal, [&] { return m_cStore->ImportMappedCsv(TextOf(sFile), TextOf(sMap), bTrial != 0); });
}
STDMETHODIMP DataBaseFace::CancelImport()
{
    return Guard([&] { m_cStore->CancelImport(); });
}
STDMETHODIMP DataBaseFace::get_LastImportReport(BSTR* pVal)
{
    return Get(pVal, m_cStore, &Store::LastImportReport);
}

STDMETHODIMP BatchesFace::BeginBatch()
{
    return Guard(sSource, [&] { m_colBatches.push_back(std::make_unique<Store::Batch>(m_cStore)); });
}
STDMETHODIMP BatchesFace::CommitBatch()
{
    return Guard(sSource, [&] { TakeInnermost()->Commit(); }); // a batch that cannot be committed is undone
}
STDMETHODIMP BatchesFace::RollbackBatch()
{
    return Guard(sSource, [&] { TakeInnermost(); });
}

std::unique_ptr<Store::Batch> BatchesFace::TakeInnermost()
{
    if (m_colBatches.empty())
        throw RuntimeError(error::InvalidProcedureCall, L"No batch of changes was begun.");
    std::unique_ptr<Store::Batch> cBatch = std::move(m_colBatches.back());
    m_colBatches.pop_back();
    return cBatch;
}

void BatchesFace::RollbackAll() noexcept
{
    while (!m_colBatches.empty())
        m_colBatches.pop_back();
}

STDMETHODIMP PlaysFace::BeginGathering()
{
    return Guard(sSource, [&] { m_cStore.BeginGathering(); });
}
STDMETHODIMP PlaysFace::WriteGathered()
{
    return Guard(sSource, [&] { m_cStore.WriteGathered(); });
}
STDMETHODIMP PlaysFace::EndGathering()
{
    return Guard(sSource, [&] { m_cStore.EndGathering(); });
}

STDMETHODIMP SharedFace::TakeInChanges()
{
    return Guard(sSource, [&] { m_cStore.TakeInChanges(); });
}

void DataBaseFace::FireCuts(DISPID lEvent, const Cuts& colCuts)
{
    if (m_cEvents.HasSinks())
        m_cEvents.Fire(lEvent, {Variant(static_cast<IDispatch*>(CollectionOf(colCuts).Get()))});
}
void DataBaseFace::CutsAdded(const Cuts& colCuts) { FireCuts(eCutsAdded, colCuts); }
void DataBaseFace::CutsModified(const Cuts& colCuts) { FireCuts(eCutsModified, colCuts); }
void DataBaseFace::CutsRemoved(const Cuts& colCuts) { FireCuts(eCutsRemoved, colCuts); }

void DataBaseFace::ProgressStart(const std::wstring& sReason, std::int32_t lMax)
{
    m_cEvents.Fire(eProgressStart, {Text(sReason), Variant(lMax)});
}
void DataBaseFace::Progress(const std::wstring& strProgress, std::int32_t lCount, std::int32_t lMax)
{
    m_cEvents.Fire(eProgress, {Text(strProgress), Variant(lCount), Variant(lMax)});
}
void DataBaseFace::ProgressDone(const std::wstring& sStatus)
{
    m_cEvents.Fire(eProgressDone, {Text(sStatus)});
}

} // namespace ravlo
