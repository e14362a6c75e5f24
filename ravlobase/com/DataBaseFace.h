// SPDX-License-Identifier: MIT
#pragma once

#include "comkit/CutFace.h"
#include "ravlobase/Store.h"

#include <RavloBase.h>

#include <memory>
#include <vector>

namespace ravlo
{

// The further interfaces of a database.

class BatchesFace final : public Part<IBatchedChanges>
{
public:
    BatchesFace(IUnknown& cOwner, Store& cStore) noexcept : Part(cOwner), m_cStore(cStore) {}

    STDMETHODIMP BeginBatch() override;
    STDMETHODIMP CommitBatch() override;
    STDMETHODIMP RollbackBatch() override;

    // Undoes every open batch, the innermost one first.
    void RollbackAll() noexcept;

private:
    std::unique_ptr<Store::Batch> TakeInnermost();

    Store& m_cStore;
    std::vector<std::unique_ptr<Store::Batch>> m_colBatches;
};

class PlaysFace final : public Part<IGatheredPlays>
{
public:
    PlaysFace(IUnknown& cOwner, Store& cStore) noexcept : Part(cOwner), m_cStore(cStore) {}

    STDMETHODIMP BeginGathering() override;
    STDMETHODIMP WriteGathered() override;
    STDMETHODIMP EndGathering() override;

private:
    Store& m_cStore;
};

class SharedFace final : public Part<ISharedDataBase>
{
public:
    SharedFace(IUnknown& cOwner, Store& cStore) noexcept : Part(cOwner), m_cStore(cStore) {}

    STDMETHODIMP TakeInChanges() override;

private:
    Store& m_cStore;
};

// _clsDataBase over its own store, whose events it raises. Cuts is a view of the store's cuts; only AddCuts,
// RemoveCuts and ImportCsv add to it and remove from it.
class DataBaseFace final : public Dispatch<_clsDataBase>, public IRevision, private DataBaseEvents
{
public:
    DataBaseFace();
    ~DataBaseFace() override;

    STDMETHODIMP QueryInterface(REFIID iid, void** ppvObject) override;
    STDMETHODIMP_(ULONG) AddRef() override { return Dispatch::AddRef(); }
    STDMETHODIMP_(ULONG) Release() override { return Dispatch::Release(); }
    STDMETHODIMP InterfaceSupportsErrorInfo(REFIID iid) override;

    STDMETHODIMP Revision(hyper* pVal) override;

    STDMETHODIMP Open(BSTR sFile) override;
    STDMETHODIMP Close() override;
    STDMETHODIMP get_FileName(BSTR* pVal) override;
    STDMETHODIMP get_Cuts(_clsCollection** pVal) override;
    STDMETHODIMP CutByKey(BSTR sKey, _clsCut** pVal) override;
    STDMETHODIMP CutByArtistTitle(BSTR sArtist, BSTR sTitle, _clsCut** pVal) override;
    STDMETHODIMP NewCut(_clsCut** pVal) override;
    STDMETHODIMP AddCuts(IDispatch* colCuts, LONG* pVal) override;
    STDMETHODIMP ModifyCuts(IDispatch* colCuts, LONG* pVal) override;
    STDMETHODIMP RemoveCuts(IDispatch* colCuts, LONG* pVal) override;
    STDMETHODIMP ImportCsv(BSTR sFile, LONG* pVal) override;
    STDMETHODIMP PlaysCsv(DATE dtFrom, DATE dtTo, BSTR sBy, BSTR* pVal) override;
    STDMETHODIMP ImportFolder(BSTR sFolder, BSTR sCategory, VARIANT_BOOL bTrial, LONG* pVal) override;
    STDMETHODIMP ImportPlaylist(BSTR sFile, BSTR sCategory, VARIANT_BOOL bTrial, LONG* pVal) override;
    STDMETHODIMP ImportMappedCsv(BSTR sFile, BSTR sMap, VARIANT_BOOL bTrial, LONG* pVal) override;
    STDMETHODIMP CancelImport() override;
    STDMETHODIMP get_LastImportReport(BSTR* pVal) override;

    static const ClassIdentity identity;

protected:
    EventSource* Events() noexcept override { return &m_cEvents; }

private:
    void CutsAdded(const Cuts& colCuts) override;
    void CutsModified(const Cuts& colCuts) override;
    void CutsRemoved(const Cuts& colCuts) override;
    void ProgressStart(const std::wstring& sReason, std::int32_t lMax) override;
    void Progress(const std::wstring& strProgress, std::int32_t lCount, std::int32_t lMax) override;
    void ProgressDone(const std::wstring& sStatus) override;
    void FireCuts(DISPID lEvent, const Cuts& colCuts);

    std::shared_ptr<Store> m_cStore;
    EventSource m_cEvents;
    BatchesFace m_cBatches{*static_cast<_clsDataBase*>(this), *m_cStore};
    PlaysFace m_cPlays{*static_cast<_clsDataBase*>(this), *m_cStore};
    SharedFace m_cShared{*static_cast<_clsDataBase*>(this), *m_cStore};
};

} // namespace ravlo
