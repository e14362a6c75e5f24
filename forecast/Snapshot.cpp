// SPDX-License-Identifier: MIT
#include "forecast/Snapshot.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

namespace ravlo
{

namespace
{

const Clock& ClockOf(ModScheduler& cMod) { return cMod.Ports().cClock; }

std::shared_ptr<PlayHistory> NewHistory(ModScheduler& cMod)
{
    return std::make_shared<PlayHistory>(ClockOf(cMod), [](const RuntimeError&, bool) {});
}

// Reads a station. A look at a cut may let the host run, which may change anything: levels and history are
// taken first, as references to the cuts, and only then the cuts are read.
class Reading
{
public:
    Reading(ModScheduler& cMod, StationSnapshot& snapshot)
        : m_snapshot(snapshot), m_cHistory(NewHistory(cMod)), m_cQuiet(cMod)
    {
        m_snapshot.cMod = &cMod;
    }

    void Take(const CatCollection& colMainCats, const PlayHistory& cHistory)
    {
        for (const std::shared_ptr<clsCat>& cMainCat : colMainCats)
        {
            m_snapshot.mainCats.push_back(cMainCat->CatName());
            for (const std::shared_ptr<clsCat>& cSubCat : *cMainCat->SubCats())
                TakeLevel(*cMainCat, *cSubCat);
        }
        m_cHistory->CopyPlays(cHistory, [](const std::shared_ptr<Cut>& cCut) { return cCut; });
    }

    // cHistory is the station's, for the times that its database has not accepted yet.
    void Read(const PlayHistory& cHistory)
    {
        for (std::size_t level = 0; level < m_colOrders.size(); ++level)
        {
            for (const auto& [cKey, cCut] : m_colOrders[level])
                m_snapshot.levels[level].order.push_back(NumberOf(cKey, *cCut));
        }
        const std::shared_ptr<PlayHistory> cCopy = NewHistory(*m_snapshot.cMod);
        cCopy->CopyPlays(*m_cHistory,
                         [&](const std::shared_ptr<Cut>& cCut) { return PlayedCopyOf(*cCut, cHistory); });
        m_snapshot.cHistory = cCopy;
        std::stable_sort(m_snapshot.played.begin(), m_snapshot.played.end(), [&](CutNumber a, CutNumber b) {
            return m_snapshot.cuts[a].values.dtLastPlayed < m_snapshot.cuts[b].values.dtLastPlayed;
        });
    }

private:
    using Order = std::vector<std::pair<TextKey, std::shared_ptr<Cut>>>;

    void TakeLevel(const clsCat& cMainCat, const clsCat& cSubCat)
    {
        m_snapshot.levels.push_back(
            {cMainCat.CatName(), cSubCat.CatLevel(), RulesOf(*cSubCat.PresentRules()), {}});
        const std::shared_ptr<CutCollection> colCuts = cSubCat.SchedCuts();
        Order& colOrder = m_colOrders.emplace_back();
        colOrder.reserve(colCuts->Count());
        for (std::size_t i = 0; i < colCuts->Count(); ++i)
            if (const TextKey* pKey = colCuts->At(i) ? colCuts->KeyAt(i) : nullptr)
                colOrder.emplace_back(*pKey, colCuts->At(i));
    }

    CutNumber NumberOf(const TextKey& cKey, const Cut& cCut)
    {
        const auto [it, bNew] = m_colNumbers.try_emplace(cKey, 0);
        if (bNew)
            it->second = m_snapshot.Add({{cKey, cCut.ArtistKey(), cCut.TitleKey(), cCut.AlbumKey(), 0,
                                          cCut.DurationmS(), cCut.LastPlayed(), cCut.Opener()},
                                         cCut.Path()});
        return it->second;
    }

    // One copy for each cut, which is found under several names. Null for a cut that cannot be read: on air
    // such a play breaks no rule either.
    std::shared_ptr<Cut> PlayedCopyOf(const Cut& cCut, const PlayHistory& cHistory)
    {
        const auto [it, bNew] = m_colCopies.try_emplace(&cCut);
        if (bNew)
        {
            try
            {
                it->second = ReadPlayed(cCut, cHistory);
            }
            catch (const RuntimeError&)
            {
            }
        }
        return it->second;
    }
    std::shared_ptr<Cut> ReadPlayed(const Cut& cCut, const PlayHistory& cHistory)
    {
        const DateTime dtPlayed = cHistory.TimeOf(cCut); // the cut itself may not have it yet
        WholeSeconds(dtPlayed);                          // throws beyond the calendar
        const CutNumber number = NumberOf(cCut.Key(), cCut);
        PlainCutValues& values = m_snapshot.cuts[number].values;
        values.dtLastPlayed = dtPlayed;
        m_snapshot.played.push_back(number);
        return NewPlainCut(values);
    }

    StationSnapshot& m_snapshot;
    std::vector<Order> m_colOrders;          // of the levels
    std::shared_ptr<PlayHistory> m_cHistory; // of the station's cuts
    std::unordered_map<TextKey, CutNumber> m_colNumbers;
    std::unordered_map<const Cut*, std::shared_ptr<Cut>> m_colCopies;
    const ModScheduler::OnAir m_cQuiet; // a file that cannot be read is not waited for, and shows no box
};

} // namespace

CutNumber StationSnapshot::Add(SnapshotCut cut)
{
    cuts.push_back(std::move(cut));
    cuts.back().values.lID = static_cast<std::int32_t>(cuts.size());
    return static_cast<CutNumber>(cuts.size() - 1);
}

std::shared_ptr<StationSnapshot> TakeSnapshot(ModScheduler& cMod, const CatCollection& colMainCats,
                                              const PlayHistory& cHistory, const RotationOptions& options,
                                              const ArtistNames& names)
{
    const auto cSnapshot = std::make_shared<StationSnapshot>();
    cSnapshot->options = options;
    cSnapshot->names = names;
    Reading reading(cMod, *cSnapshot);
    reading.Take(colMainCats, cHistory);
    reading.Read(cHistory);
    return cSnapshot;
}

} // namespace ravlo
