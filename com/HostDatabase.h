// SPDX-License-Identifier: MIT
#pragma once

#include "comkit/ComPtr.h"
#include "comkit/Revisions.h"
#include "media/DataBase.h"

#include <RavloBase.h>

#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

namespace ravlo
{

// A media database that the host brings, as the core sees it. Its cuts come as HostCuts; its events reach the
// listeners while there are any, through the connection point __clsDataBase; what is no cut in an announced
// collection is passed over, with a line in the debug log. A database without that
// connection point is simply silent; one that refuses the connection leaves a line in the debug log. One host
// object has one HostDatabase while anyone holds it.
class HostDatabase final : public DataBase, public std::enable_shared_from_this<HostDatabase>
{
public:
    static std::shared_ptr<HostDatabase> Of(_clsDataBase* pHost); // null for none
    HostDatabase(ComPtr<_clsDataBase> cHost, ComPtr<IUnknown> cIdentity);
    ~HostDatabase() override;
    HostDatabase(const HostDatabase&) = delete;
    HostDatabase& operator=(const HostDatabase&) = delete;

    const ComPtr<_clsDataBase>& Host() const noexcept { return m_cHost; }

    Cuts AllCuts() const override;
    std::shared_ptr<Cut> CutByKey(const TextKey& cKey) const override;
    std::shared_ptr<Cut> CutByArtistTitle(const std::wstring& sArtist,
                                          const std::wstring& sTitle) const override;
    std::shared_ptr<Cut> NewCut() const override;
    // Through IBatchedChanges, where the host's database has it.
    std::unique_ptr<Batch> BeginBatch() override;
    void Advise(DataBaseEvents& cEvents) override;
    void Unadvise(DataBaseEvents& cEvents) noexcept override;

    // Called by the sink: tells every listener but those that leave meanwhile.
    template <class Tell> void ForEachListener(Tell&& tell)
    {
        const auto colListeners = m_colListeners;
        for (DataBaseEvents* pListener : colListeners)
            if (IsListening(*pListener))
                tell(*pListener);
    }

private:
    // Calls the host's object: what fails or is thrown becomes a RuntimeError.
    template <class Member, class... Arguments> void Call(Member pMember, Arguments... arguments) const;
    bool IsListening(const DataBaseEvents& cEvents) const noexcept;
    void Connect();
    void Disconnect() noexcept;

    ComPtr<_clsDataBase> m_cHost;
    ComPtr<IUnknown> m_cIdentity;
    mutable Revisions m_cRevisions;
    // What CutByKey found at one revision of the host's database; empty without revisions.
    mutable std::uint64_t m_foundAt = 0;
    mutable std::unordered_map<TextKey, std::weak_ptr<Cut>> m_colFound;
    std::vector<DataBaseEvents*> m_colListeners;
    ComPtr<IConnectionPoint> m_cPoint;
    DWORD m_lCookie = 0;
};

} // namespace ravlo
