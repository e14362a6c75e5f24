// SPDX-License-Identifier: MIT
#include "forecast/Snapshot.h"

#include "base/Text.h"

#include <algorithm>
#include <optional>
#include <unordered_map>
#include <utility>

namespace ravlo
{

namespace
{

// Reads a station. A look at a cut may let the host run, which may change anything: levels and history are
// taken first, as references to the cuts, and only then the cuts are read.
class Reading
{
public:
    Reading(ModScheduler& cMod, StationSnapshot& snapshot, const LetHostRun& letHostRun)
        : m_cMod(cMod), m_snapshot(snapshot), m_cutByCut(letHostRun)
    {
    }

    void Take(const CatCollection& colMainCats, const PlayHistory& cHistory)
    {
        const ModScheduler::OnAir cQuiet(m_cMod); // waits for no locked file and shows no box
        for (const std::shared_ptr<clsCat>& cMainCat : colMainCats)
        {
            m_snapshot.mainCats.push_back(cMainCat->CatName());
            for (const std::shared_ptr<clsCat>& cSubCat : *cMainCat->SubCats())
                TakeLevel(*cMainCat, *cSubCat);
        }
        m_history = cHistory.Lists();
    }

    // cHistory is the station's, for the times that its database has not accepted yet.
    void Read(const PlayHistory& cHistory)
    {
        std::size_t cuts = 0;
        for (const Order& colOrder : m_colOrders)
            cuts += colOrder.size();
        cuts = std::max(cuts, m_history.reports.size());
        m_colNumbers.reserve(cuts);
        m_colKnown.reserve(cuts);
        m_snapshot.cuts.reserve(cuts);
        m_snapshot.played.reserve(m_history.reports.size());
        for (std::size_t level = 0; level < m_colOrders.size(); ++level)
        {
            m_snapshot.levels[level].order.reserve(m_colOrders[level].size());
            for (const auto& [cKey, cCut] : m_colOrders[level])
                m_snapshot.levels[level].order.push_back(NumberInLevel(cKey, *cCut));
        }
        m_snapshot.history = m_history.Of<CutNumber>(
            [&](const std::shared_ptr<Cut>& cCut) { return NumberOfPlayed(*cCut, cHistory); });
        std::stable_sort(m_snapshot.played.begin(), m_snapshot.played.end(), [&](CutNumber a, CutNumber b) {
            return m_snapshot.cuts[a].values.dtLastPlayed < m_snapshot.cuts[b].values.dtLastPlayed;
        });
    }

private:
    using Order = std::vector<std::pair<TextKey, std::shared_ptr<Cut>>>;

    // What is known of one of the station's cuts.
    struct Known
    {
        std::optional<CutNumber> number; // nothing: it cannot be read
        bool bPlayRead = false;
    };

    void TakeLevel(const clsCat& cMainCat, const clsCat& cSubCat)
    {
        const std::shared_ptr<const clsCatRules> cRules = cSubCat.PresentRules();
        m_snapshot.levels.push_back({cMainCat.CatName(), cSubCat.CatLevel(), RulesOf(*cRules), {}});
        if (cRules->Unread())
            m_snapshot.warnings.push_back(L"The rules of " + cMainCat.CatName() + L" " +
                                          DecimalText(cSubCat.CatLevel()) +
                                          L" cannot be read now. The global separations were used.");
        const std::shared_ptr<CutCollection> colCuts = cSubCat.SchedCuts();
        Order& colOrder = m_colOrders.emplace_back();
        colOrder.reserve(colCuts->Count());
        for (std::size_t i = 0; i < colCuts->Count(); ++i)
            if (const TextKey* pKey = colCuts->At(i) ? colCuts->KeyAt(i) : nullptr)
                colOrder.emplace_back(*pKey, colCuts->At(i));
    }

    CutNumber NumberInLevel(const TextKey& cKey, const Cut& cCut)
    {
        m_cutByCut.Next();
        const auto [it, bNew] = m_colNumbers.try_emplace(cKey, 0);
        if (bNew)
        {
            it->second = AddLevelCut(cKey, cCut);
            m_colKnown[&cCut].number = it->second;
        }
        return it->second;
    }
    CutNumber AddLevelCut(const TextKey& cKey, const Cut& cCut)
    {
        try
        {
            return Add(cKey, cCut);
        }
        catch (const RuntimeError& cError)
        {
            throw RuntimeError(cError.Number(), cKey.Text() + L": " + cError.Description());
        }
    }
    CutNumber Add(const TextKey& cKey, const Cut& cCut)
    {
        const DateTime dtPlayed = cCut.LastPlayed();
        return m_snapshot.Add({{cKey, cCut.ArtistKey(), cCut.TitleKey(), cCut.AlbumKey(), 0,
                                cCut.DurationmS(), dtPlayed > 0 ? dtPlayed : 0, cCut.Opener()},
                               cCut.Path()});
    }

    // Reads the play of each cut once, which is found under several texts. Nothing for one that cannot be
    // read.
    std::optional<CutNumber> NumberOfPlayed(const Cut& cCut, const PlayHistory& cHistory)
    {
        Known& known = m_colKnown[&cCut];
        if (std::exchange(known.bPlayRead, true))
            return known.number;
        m_cutByCut.Next();
        try
        {
            ReadPlay(known, cCut, cHistory);
        }
        catch (const RuntimeError&)
        {
            known.number = std::nullopt;
        }
        return known.number;
    }
    void ReadPlay(Known& known, const Cut& cCut, const PlayHistory& cHistory)
    {
        const DateTime dtPlayed = cHistory.TimeOf(cCut); // the cut itself may not have it yet
        WholeSeconds(dtPlayed);                          // throws beyond the calendar
        if (!known.number)
            known.number = NumberInHistory(cCut);
        m_snapshot.cuts[*known.number].values.dtLastPlayed = dtPlayed;
        m_snapshot.played.push_back(*known.number);
    }
    // A played cut has the number of a level's cut that it is. A cut that was deleted and made again under
    // the same key is another one.
    CutNumber NumberInHistory(const Cut& cCut)
    {
        const TextKey cKey = cCut.Key();
        if (const auto found = m_colNumbers.find(cKey); found != m_colNumbers.end())
        {
            const PlainCutValues& values = m_snapshot.cuts[found->second].values;
            if (values.cArtist == cCut.ArtistKey() && values.cTitle == cCut.TitleKey() &&
                values.cAlbum == cCut.AlbumKey())
                return found->second;
        }
        return Add(cKey, cCut);
    }

    ModScheduler& m_cMod;
    StationSnapshot& m_snapshot;
    std::vector<Order> m_colOrders;                      // of the levels
    PlayLists<std::shared_ptr<Cut>> m_history;           // of the station's cuts
    std::unordered_map<TextKey, CutNumber> m_colNumbers; // of the levels' cuts
    std::unordered_map<const Cut*, Known> m_colKnown;    // the station's, which the lists above keep
    CutByCut m_cutByCut;
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
                                              const ArtistNames& names, const LetHostRun& letHostRun)
{
    const auto cSnapshot = std::make_shared<StationSnapshot>();
    cSnapshot->options = options;
    cSnapshot->names = names;
    Reading reading(cMod, *cSnapshot, letHostRun);
    reading.Take(colMainCats, cHistory);
    reading.Read(cHistory);
    return cSnapshot;
}

} // namespace ravlo
