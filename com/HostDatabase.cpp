// SPDX-License-Identifier: MIT
#include "com/HostDatabase.h"

#include "com/Library.h"
#include "comkit/CutFace.h"
#include "comkit/EventSink.h"
#include "comkit/RecordedPlays.h"

#include <algorithm>

namespace ravlo
{

namespace
{

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

// Logs a failure of body: an unusable item must not cost the others.
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
// end; colCuts then contains the cuts up to there.
void AddUsableCuts(Cuts& colCuts, IDispatch* colItems, const wchar_t* sWhere)
{
    ForEachItem(colItems, [&](const Variant& cItem) {
        LogFailure(sWhere, [&] { colCuts.push_back(CutAdapter::FromVariant(cItem)); });
    });
}

// The usable cuts of an announcement.
Cuts AnnouncedCuts(IDispatch& colItems, const wchar_t* sWhere)
{
    Cuts colCuts;
    LogFailure(sWhere, [&] { AddUsableCuts(colCuts, &colItems, sWhere); });
    return colCuts;
}

// Passes an event of the host's database to the listeners.
void Forward(HostDatabase& cDataBase, DISPID lEvent, const EventArguments& given)
{
    if (lEvent >= 1 && lEvent <= 3)
    {
        given.Expect(1);
        const auto& [sWhere, tell] = colAnnouncements[lEvent - 1];
        const Cuts colCuts = AnnouncedCuts(*given.ObjectAt(0), sWhere);
        cDataBase.ForEachListener([&, tell = tell](DataBaseEvents& cEvents) { (cEvents.*tell)(colCuts); });
    }
    else if (lEvent == 4)
    {
        given.Expect(2);
        cDataBase.ForEachListener(
            [&](DataBaseEvents& cEvents) { cEvents.ProgressStart(given.TextAt(0), given.LongAt(1)); });
    }
    else if (lEvent == 5)
    {
        given.Expect(3);
        cDataBase.ForEachListener([&](DataBaseEvents& cEvents) {
            cEvents.Progress(given.TextAt(0), given.LongAt(1), given.LongAt(2));
        });
    }
    else if (lEvent == 6)
    {
        given.Expect(1);
        cDataBase.ForEachListener([&](DataBaseEvents& cEvents) { cEvents.ProgressDone(given.TextAt(0)); });
    }
}

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
        m_bOpen = false; // also when it fails
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

HostDatabase::~HostDatabase()
{
    Forget(); // before disconnecting, which calls the host, which may ask for a new wrapper
    Disconnect();
}

Cuts HostDatabase::AllCuts() const
{
    // The cuts are usable without the latest changes of other programs, so a failure is only logged.
    if (const auto cShared = Host().As<ISharedDataBase>())
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
    const std::uint64_t revision = Revision();
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
    // A nested call may have cleared the table for a later revision.
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
    return CutFrom(CallForObject<_clsCut>(&_clsDataBase::NewCut).Get());
}

std::unique_ptr<DataBase::Batch> HostDatabase::BeginBatch()
{
    const auto cChanges = Host().As<IBatchedChanges>();
    return cChanges ? std::make_unique<HostBatch>(cChanges) : nullptr;
}

std::optional<std::wstring> HostDatabase::RecordedPlays(DateTime dtFrom, DateTime dtTo)
{
    return RecordedPlaysOf(*Host().Get(), dtFrom, dtTo);
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
    const auto cContainer = Host().As<IConnectionPointContainer>();
    ComPtr<IConnectionPoint> cPoint;
    const auto find = [&] { return cContainer->FindConnectionPoint(DIID___clsDataBase, cPoint.Receive()); };
    if (!cContainer || FAILED(Outgoing(find)) || !cPoint)
        return;
    // Weak: the connection must not keep the database alive.
    const auto forward = [cWeak = weak_from_this()](DISPID lEvent, const EventArguments& given) {
        if (const std::shared_ptr<HostDatabase> cDataBase = cWeak.lock())
            Forward(*cDataBase, lEvent, given);
    };
    const auto cSink = NewObject<EventSink>(DIID___clsDataBase, L"RavloScheduler.clsSchedMan", forward);
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
