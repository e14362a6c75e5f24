// SPDX-License-Identifier: MIT
#include "com/HostDatabase.h"

#include "com/Library.h"
#include "comkit/CutFace.h"
#include "comkit/Unknown.h"

#include <algorithm>
#include <unordered_map>

namespace ravlo
{

namespace
{

// By the host object's identity; a HostDatabase holds it, so that no other object can come to have the same.
std::unordered_map<IUnknown*, std::weak_ptr<HostDatabase>>& Known()
{
    static std::unordered_map<IUnknown*, std::weak_ptr<HostDatabase>> colKnown;
    return colKnown;
}

// The arguments of an event in the order they are declared.
class EventArguments
{
public:
    EventArguments(const DISPPARAMS& arguments, UINT lExpected) : m_arguments(arguments)
    {
        if (arguments.cArgs != lExpected)
            throw ComError(DISP_E_BADPARAMCOUNT, L"Wrong number of arguments");
    }
    ComPtr<IDispatch> ObjectAt(UINT i) const
    {
        auto cObject = ObjectIn<IDispatch>(At(i));
        if (!cObject)
            throw RuntimeError(error::TypeMismatch);
        return cObject;
    }
    std::wstring TextAt(UINT i) const { return TextOf(As(i, VT_BSTR).bstrVal); }
    std::int32_t LongAt(UINT i) const { return static_cast<std::int32_t>(As(i, VT_I4).lVal); }

private:
    const VARIANT& At(UINT i) const { return m_arguments.rgvarg[m_arguments.cArgs - 1 - i]; }
    Variant As(UINT i, VARTYPE vt) const
    {
        auto cValue = Variant::Dereferenced(At(i)).As(vt);
        if (!cValue)
            throw RuntimeError(error::TypeMismatch);
        return *cValue;
    }
    const DISPPARAMS& m_arguments;
};

// One of the three events that announce cuts.
struct Announcement
{
    const wchar_t* sWhere; // in the debug log
    void (DataBaseEvents::*tell)(const Cuts&);
};
constexpr Announcement colAnnouncements[] = {
    {L"m_cDataBase_CutsAdded", &DataBaseEvents::CutsAdded},
    {L"m_cDataBase_CutsModified", &DataBaseEvents::CutsModified},
    {L"m_cDataBase_CutsRemoved", &DataBaseEvents::CutsRemoved},
};

// Does what may fail and logs its failure: one item that cannot be used does not cost the others.
template <class Body> void LogFailure(const wchar_t* sWhere, Body&& body)
{
    try
    {
        body();
    }
    catch (...)
    {
        Library().LogError(sWhere, CurrentError());
    }
}

// Adds the items that are cuts; any other is logged. Throws when the collection cannot be enumerated to its
// end: colCuts holds those before then.
void AddUsableCuts(Cuts& colCuts, IDispatch* colItems, const wchar_t* sWhere)
{
    ForEachItem(colItems, [&](const Variant& cItem) {
        LogFailure(sWhere, [&] { colCuts.push_back(CutAdapter::FromVariant(cItem)); });
    });
}

// The cuts of an announcement, as far as they can be told.
Cuts AnnouncedCuts(IDispatch& colItems, const wchar_t* sWhere)
{
    Cuts colCuts;
    LogFailure(sWhere, [&] { AddUsableCuts(colCuts, &colItems, sWhere); });
    return colCuts;
}

// What the host's database calls. It holds the database weakly: the connection must not keep it alive.
class DataBaseSink final : public Unknown<IDispatch>
{
public:
    explicit DataBaseSink(std::weak_ptr<HostDatabase> cDataBase) : m_cDataBase(std::move(cDataBase)) {}

    STDMETHODIMP GetTypeInfoCount(UINT* plCount) override
    {
        if (plCount)
            *plCount = 0;
        return S_OK;
    }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return DISP_E_UNKNOWNNAME; }
    STDMETHODIMP Invoke(DISPID lEvent, REFIID, LCID, WORD, DISPPARAMS* pArguments, VARIANT*, EXCEPINFO*,
                        UINT*) override
    {
        const ComPtr<IDispatch> cSelf(this);
        const auto cDataBase = m_cDataBase.lock();
        if (!pArguments)
            return E_POINTER;
        if (!cDataBase)
            return S_OK;
        return GuardAs(DIID___clsDataBase, L"RavloScheduler.clsSchedMan",
                       [&] { Forward(*cDataBase, lEvent, *pArguments); });
    }

protected:
    bool Answers(REFIID iid) const noexcept override
    {
        return iid == IID_IDispatch || iid == DIID___clsDataBase;
    }

private:
    static void Forward(HostDatabase& cDataBase, DISPID lEvent, const DISPPARAMS& arguments)
    {
        if (lEvent >= 1 && lEvent <= 3)
        {
            const auto& [sWhere, tell] = colAnnouncements[lEvent - 1];
            const Cuts colCuts = AnnouncedCuts(*EventArguments(arguments, 1).ObjectAt(0), sWhere);
            cDataBase.ForEachListener(
                [&, tell = tell](DataBaseEvents& cEvents) { (cEvents.*tell)(colCuts); });
        }
        else if (lEvent == 4)
        {
            const EventArguments given(arguments, 2);
            cDataBase.ForEachListener(
                [&](DataBaseEvents& cEvents) { cEvents.ProgressStart(given.TextAt(0), given.LongAt(1)); });
        }
        else if (lEvent == 5)
        {
            const EventArguments given(arguments, 3);
            cDataBase.ForEachListener([&](DataBaseEvents& cEvents) {
                cEvents.Progress(given.TextAt(0), given.LongAt(1), given.LongAt(2));
            });
        }
        else if (lEvent == 6)
        {
            const EventArguments given(arguments, 1);
            cDataBase.ForEachListener(
                [&](DataBaseEvents& cEvents) { cEvents.ProgressDone(given.TextAt(0)); });
        }
    }

    std::weak_ptr<HostDatabase> m_cDataBase;
};

// A batch of the host's database.
class HostBatch final : public DataBase::Batch
{
public:
    explicit HostBatch(ComPtr<IBatchedChanges> cChanges) : m_cChanges(std::move(cChanges))
    {
        Call(&IBatchedChanges::BeginBatch);
        m_bOpen = true;
    }
    HostBatch(const HostBatch&) = delete;
    HostBatch& operator=(const HostBatch&) = delete;
    ~HostBatch() override
    {
        if (m_bOpen)
            Outgoing([&] { return m_cChanges->RollbackBatch(); });
    }
    void Commit() override
    {
        m_bOpen = false; // a batch that cannot be committed is over as well
        Call(&IBatchedChanges::CommitBatch);
    }

private:
    template <class Member> void Call(Member pMember) const
    {
        ThrowIfFailed(Outgoing([&] { return (m_cChanges.Get()->*pMember)(); }), *m_cChanges,
                      IID_IBatchedChanges);
    }

    ComPtr<IBatchedChanges> m_cChanges;
    bool m_bOpen = false;
};

} // namespace

std::shared_ptr<HostDatabase> HostDatabase::Of(_clsDataBase* pHost)
{
    if (!pHost)
        return nullptr;
    ComPtr<IUnknown> cIdentity = IdentityOf(pHost);
    if (!cIdentity)
        ThrowIfFailed(E_NOINTERFACE); // two such objects could not be told apart
    auto& cKnown = Known()[cIdentity.Get()];
    if (auto cFound = cKnown.lock())
        return cFound;
    auto cDataBase = std::make_shared<HostDatabase>(ComPtr<_clsDataBase>(pHost), std::move(cIdentity));
    cKnown = cDataBase;
    return cDataBase;
}

HostDatabase::HostDatabase(ComPtr<_clsDataBase> cHost, ComPtr<IUnknown> cIdentity)
    : m_cHost(std::move(cHost)), m_cIdentity(std::move(cIdentity))
{
}

HostDatabase::~HostDatabase()
{
    Known().erase(m_cIdentity.Get()); // first: disconnecting calls the host, which may ask for a new one
    Disconnect();
}

template <class Member, class... Arguments>
void HostDatabase::Call(Member pMember, Arguments... arguments) const
{
    ThrowIfFailed(Outgoing([&] { return (m_cHost.Get()->*pMember)(arguments...); }), *m_cHost,
                  IID__clsDataBase);
}

Cuts HostDatabase::AllCuts() const
{
    // Without what other programs have changed the cuts are still good: a failure is no reason not to show
    // them.
    if (const auto cShared = m_cHost.As<ISharedDataBase>())
        LogFailure(L"TakeInChanges",
                   [&] { ThrowIfFailed(cShared->TakeInChanges(), *cShared.Get(), IID_ISharedDataBase); });
    ComPtr<_clsCollection> colCuts;
    Call(&_clsDataBase::get_Cuts, colCuts.Receive());
    Cuts colUsable;
    AddUsableCuts(colUsable, colCuts.Get(), L"PopulateFromDataBase");
    return colUsable;
}

std::shared_ptr<Cut> HostDatabase::CutByKey(const TextKey& cKey) const
{
    const std::uint64_t revision = m_cRevisions.Of(m_cHost.Get());
    if (revision != m_foundAt)
    {
        m_colFound.clear();
        m_foundAt = revision;
    }
    if (const auto found = m_colFound.find(cKey); found != m_colFound.end())
        if (std::shared_ptr<Cut> cCut = found->second.lock())
            return cCut;
    const Bstr sKey{std::wstring_view(cKey.Text())};
    ComPtr<_clsCut> cFound;
    Call(&_clsDataBase::CutByKey, sKey.Get(), cFound.Receive());
    std::shared_ptr<Cut> cCut = CutFrom(cFound.Get());
    // A call that came in during this one may have emptied the table for a later revision.
    if (cCut && revision != 0 && revision == m_foundAt)
        m_colFound.insert_or_assign(cKey, cCut);
    return cCut;
}

std::shared_ptr<Cut> HostDatabase::CutByArtistTitle(const std::wstring& sArtist,
                                                    const std::wstring& sTitle) const
{
    if (sArtist.empty() && sTitle.empty())
        return nullptr;
    const Bstr sArtistValue{std::wstring_view(sArtist)};
    const Bstr sTitleValue{std::wstring_view(sTitle)};
    ComPtr<_clsCut> cCut;
    Call(&_clsDataBase::CutByArtistTitle, sArtistValue.Get(), sTitleValue.Get(), cCut.Receive());
    return CutFrom(cCut.Get());
}

std::shared_ptr<Cut> HostDatabase::NewCut() const
{
    ComPtr<_clsCut> cCut;
    Call(&_clsDataBase::NewCut, cCut.Receive());
    if (!cCut)
        throw RuntimeError(error::ObjectNotSet);
    return CutFrom(cCut.Get());
}

std::unique_ptr<DataBase::Batch> HostDatabase::BeginBatch()
{
    const auto cChanges = m_cHost.As<IBatchedChanges>();
    return cChanges ? std::make_unique<HostBatch>(cChanges) : nullptr;
}

bool HostDatabase::IsListening(const DataBaseEvents& cEvents) const noexcept
{
    return std::find(m_colListeners.begin(), m_colListeners.end(), &cEvents) != m_colListeners.end();
}

void HostDatabase::Advise(DataBaseEvents& cEvents)
{
    if (IsListening(cEvents))
        return;
    m_colListeners.push_back(&cEvents);
    if (!m_cPoint)
        Connect();
}

void HostDatabase::Unadvise(DataBaseEvents& cEvents) noexcept
{
    std::erase(m_colListeners, &cEvents);
    if (m_colListeners.empty())
        Disconnect();
}

void HostDatabase::Connect()
{
    const auto cContainer = m_cHost.As<IConnectionPointContainer>();
    ComPtr<IConnectionPoint> cPoint;
    const auto find = [&] { return cContainer->FindConnectionPoint(DIID___clsDataBase, cPoint.Receive()); };
    if (!cContainer || FAILED(Outgoing(find)) || !cPoint)
        return;
    const auto cSink = NewObject<DataBaseSink>(weak_from_this());
    const HRESULT hAdvised = Outgoing([&] { return cPoint->Advise(cSink.Get(), &m_lCookie); });
    if (SUCCEEDED(hAdvised))
        m_cPoint = std::move(cPoint);
    else
        Library().LogError(L"Advise [HostDatabase]",
                           RuntimeError(static_cast<std::int32_t>(hAdvised),
                                        L"The database's changes will not be followed."));
}

void HostDatabase::Disconnect() noexcept
{
    const ComPtr<IConnectionPoint> cPoint = std::move(m_cPoint);
    if (cPoint)
        Outgoing([&] { return cPoint->Unadvise(m_lCookie); });
}

} // namespace ravlo
