// SPDX-License-Identifier: MIT
#pragma once

#include "comkit/CutFace.h"
#include "ravlobase/Store.h"

#include <RavloBase.h>

#include <memory>
#include <vector>

namespace ravlo
{

class DataBaseFace;

// IBatchedChanges of a database: a part of its owner, with which it lives and is counted.
class BatchesFace final : public IBatchedChanges
{
public:
    BatchesFace(DataBaseFace& cOwner, Store& cStore) noexcept : m_cOwner(cOwner), m_cStore(cStore) {}
    BatchesFace(const BatchesFace&) = delete;
    BatchesFace& operator=(const BatchesFace&) = delete;
    virtual ~BatchesFace() = default;

    STDMETHODIMP QueryInterface(REFIID iid, void** ppvObject) override;
    STDMETHODIMP_(ULONG) AddRef() override;
    STDMETHODIMP_(ULONG) Release() override;
    STDMETHODIMP BeginBatch() override;
    STDMETHODIMP CommitBatch() override;
    STDMETHODIMP RollbackBatch() override;

    // Undoes every open batch, the innermost one first.
    void RollbackAll() noexcept;

private:
    template <class Body> HRESULT Guard(Body&& body) noexcept;
    std::unique_ptr<Store::Batch> TakeInnermost();

    DataBaseFace& m_cOwner;
    Store& m_cStore;
    std::vector<std::unique_ptr<Store::Batch>> m_colBatches;
};

// IGatheredPlays of a database: a part of its owner, with which it lives and is counted.
class PlaysFace final : public IGatheredPlays
{
public:
    PlaysFace(DataBaseFace& cOwner, Store& cStore) noexcept : m_cOwner(cOwner), m_cStore(cStore) {}
    PlaysFace(const PlaysFace&) = delete;
    PlaysFace& operator=(const PlaysFace&) = delete;
    virtual ~PlaysFace() = default;

    STDMETHODIMP QueryInterface(REFIID iid, void** ppvObject) override;
    STDMETHODIMP_(ULONG) AddRef() override;
    STDMETHODIMP_(ULONG) Release() override;
    STDMETHODIMP BeginGathering() override;
    STDMETHODIMP WriteGathered() override;
    STDMETHODIMP EndGathering() override;

private:
    template <class Body> HRESULT Guard(Body&& body) noexcept;

    DataBaseFace& m_cOwner;
    Store& m_cStore;
};

// ISharedDataBase of a database: a part of its owner, with which it lives and is counted.
class SharedFace final : public ISharedDataBase
{
public:
    SharedFace(DataBaseFace& cOwner, Store& cStore) noexcept : m_cOwner(cOwner), m_cStore(cStore) {}
    SharedFace(const SharedFace&) = delete;
    SharedFace& operator=(const SharedFace&) = delete;
    virtual ~SharedFace() = default;

    STDMETHODIMP QueryInterface(REFIID iid, void** ppvObject) override;
    STDMETHODIMP_(ULONG) AddRef() override;
    STDMETHODIMP_(ULONG) Release() override;
    STDMETHODIMP TakeInChanges() override;

private:
    DataBaseFace& m_cOwner;
    Store& m_cStore;
};

// _clsDataBase over a store of its own, whose events it raises. Cuts shows the store's cuts as they are; only
// AddCuts, RemoveCuts and ImportCsv change which there are.
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
    BatchesFace m_cBatches{*this, *m_cStore};
    PlaysFace m_cPlays{*this, *m_cStore};
    SharedFace m_cShared{*this, *m_cStore};
};

} // namespace ravlo
