// SPDX-License-Identifier: MIT
#pragma once

#include "comkit/HostWrapper.h"
#include "media/DataBase.h"

#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

namespace ravlo
{

// A host's media database as the core sees it. Its cuts are HostCuts. Its events reach the listeners through
// the connection point __clsDataBase; an announced item that is no cut is skipped and logged. A database
// without that connection point announces nothing; a refused connection is logged.
class HostDatabase final : public DataBase,
                           public HostWrapper<HostDatabase, _clsDataBase>,
                           public std::enable_shared_from_this<HostDatabase>
{
public:
    static std::shared_ptr<HostDatabase> Of(_clsDataBase* pHost) // null for none
    {
        return pHost ? HostWrapper::Of(pHost) : nullptr;
    }
    HostDatabase(ComPtr<_clsDataBase> cHost, ComPtr<IUnknown> cIdentity)
        : HostWrapper(std::move(cHost), std::move(cIdentity))
    {
    }
    ~HostDatabase() override;

    Cuts AllCuts() const override;
    std::shared_ptr<Cut> CutByKey(const TextKey& cKey) const override;
    std::shared_ptr<Cut> CutByArtistTitle(const std::wstring& sArtist,
                                          const std::wstring& sTitle) const override;
    std::shared_ptr<Cut> NewCut() const override;
    // Null for a database without IBatchedChanges.
    std::unique_ptr<Batch> BeginBatch() override;
    // See RecordedPlaysOf.
    std::optional<std::wstring> RecordedPlays(DateTime dtFrom, DateTime dtTo) override;
    void Advise(DataBaseEvents& cEvents) override;
    void Unadvise(DataBaseEvents& cEvents) noexcept override;

    // Calls tell for every listener, except those that unadvise before their turn.
    template <class Tell> void ForEachListener(Tell&& tell)
    {
        const std::vector<DataBaseEvents*> colListeners = m_colListeners;
        for (DataBaseEvents* pListener : colListeners)
            if (IsListening(*pListener))
                tell(*pListener);
    }

private:
    bool IsListening(const DataBaseEvents& cEvents) const noexcept;
    void Connect();
    void Disconnect() noexcept;

    // What CutByKey found at one revision of the host's database; empty without revisions.
    mutable std::uint64_t m_foundAt = 0;
    mutable std::unordered_map<TextKey, std::weak_ptr<Cut>> m_colFound;
    std::vector<DataBaseEvents*> m_colListeners;
    ComPtr<IConnectionPoint> m_cPoint;
    DWORD m_lCookie = 0;
};

} // namespace ravlo
