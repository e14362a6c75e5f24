// SPDX-License-Identifier: MIT
#include "forecast/StationCopy.h"

#include <exception>
#include <unordered_map>
#include <utility>

namespace ravlo
{

// Shows the start of the slot that is filled.
class StationCopy::SlotClock final : public Clock
{
public:
    DateTime dtNow = 0;
    DateTime Now() const override { return dtNow; }
    std::uint32_t TickCount() const override { return 0; }
};

class StationCopy::CopiedCuts final : public DataBase
{
public:
    CopiedCuts(const StationSnapshot& snapshot, const LetHostRun& letHostRun)
    {
        m_colCuts.reserve(snapshot.cuts.size());
        m_colByKey.reserve(snapshot.cuts.size());
        CutByCut cutByCut(letHostRun);
        for (const SnapshotCut& cut : snapshot.cuts)
        {
            cutByCut.Next();
            // The first one of a key is a level's: its cuts come first.
            m_colByKey.emplace(cut.values.cKey, m_colCuts.emplace_back(NewPlainCut(cut.values)).get());
        }
    }

    const std::shared_ptr<Cut>& At(CutNumber number) const { return m_colCuts.at(number); }
    Cuts AllCuts() const override { return m_colCuts; }
    std::shared_ptr<Cut> CutByKey(const TextKey& cKey) const override
    {
        const auto it = m_colByKey.find(cKey);
        return it == m_colByKey.end() ? nullptr : m_colCuts[ravlo::NumberOf(*it->second)];
    }
    // Each cut of this station is found by its key.
    std::shared_ptr<Cut> CutByArtistTitle(const std::wstring&, const std::wstring&) const override
    {
        return nullptr;
    }
    std::shared_ptr<Cut> NewCut() const override { return NewPlainCut(); }
    void Advise(DataBaseEvents&) override {}
    void Unadvise(DataBaseEvents&) noexcept override {}

private:
    Cuts m_colCuts;
    std::unordered_map<TextKey, const Cut*> m_colByKey;
};

StationCopy::StationCopy(ModScheduler& cMod, const StationSnapshot& snapshot, const RotationOptions& options,
                         TraceSink note, std::function<void()> pump)
    : m_cClock(std::make_shared<SlotClock>()), m_cDataBase(std::make_shared<CopiedCuts>(snapshot, pump)),
      m_cHistory(*m_cClock, [](const RuntimeError&, bool) {}), m_context{m_cHistory,      m_cDataBase,
                                                                         *m_cClock,       std::move(pump),
                                                                         std::move(note), {}}
{
    MakeTree(cMod, snapshot);
    CutByCut cutByCut(m_context.pump);
    m_cHistory.TakeOver(snapshot.history, snapshot.names.With(options.bFeaturedArtists),
                        [&](CutNumber number) -> const std::shared_ptr<Cut>& {
                            cutByCut.Next();
                            return m_cDataBase->At(number);
                        });
    m_context.report = [this](ErrorReport eHow, const wchar_t*, const RuntimeError&) {
        if (eHow == ErrorReport::Critical && !m_failure)
            m_failure = std::current_exception();
    };
    m_context.bFairRotation = options.bFairRotation;
    m_context.rules = [this, &snapshot](clsCat& cSubCat) {
        return snapshot.levels[m_colLevels.at(&cSubCat)].rules;
    };
    m_request.cPrevSchedCut = NewPlainCut();
    m_request.bRotatesAllowed = true;
}

StationCopy::~StationCopy() = default;

void StationCopy::MakeTree(ModScheduler& cMod, const StationSnapshot& snapshot)
{
    CutByCut cutByCut(m_context.pump);
    for (const std::wstring& sName : snapshot.mainCats)
        m_colMainCats.Add(TextKey(CategoryKey(sName, 0)), std::make_shared<clsCat>(cMod, sName, 0));
    for (std::size_t position = 0; position < snapshot.levels.size(); ++position)
    {
        const SnapshotLevel& level = snapshot.levels[position];
        const auto cSubCat = std::make_shared<clsCat>(cMod, level.sCategory, level.lLevel);
        CutCollection& colOrder = *cSubCat->SchedCuts();
        colOrder.Reserve(level.order.size());
        for (const CutNumber number : level.order)
        {
            cutByCut.Next();
            if (!colOrder.Add(snapshot.cuts.at(number).values.cKey, m_cDataBase->At(number)))
                throw RuntimeError(error::KeyAlreadyExists);
        }
        if (const std::shared_ptr<clsCat> cMainCat = MainCatByName(&m_colMainCats, level.sCategory))
            cMainCat->SubCats()->Add(TextKey(DecimalText(level.lLevel)), cSubCat);
        m_colLevels.emplace(cSubCat.get(), position);
    }
}

std::optional<std::size_t> StationCopy::LevelOf(const Slot& slot) const
{
    const std::shared_ptr<clsCat> cSubCat =
        LevelByKey(&m_colMainCats, CategoryKey(slot.sCategory, slot.lLevel));
    return cSubCat ? std::optional(m_colLevels.at(cSubCat.get())) : std::nullopt;
}

std::shared_ptr<Cut> StationCopy::Play(const Slot& slot, DateTime dtStart)
{
    m_cClock->dtNow = dtStart;
    m_request.strSubCatKey = CategoryKey(slot.sCategory, slot.lLevel);
    m_request.bMustBeOpener = slot.bOpener;
    m_request.cPrevSchedCut->SetLastPlayed(dtStart); // without a duration: it ends when the slot starts
    const RotationAnswer answer = NextCutFromRotation(&m_colMainCats, m_request, m_context);
    if (m_failure)
        std::rethrow_exception(std::exchange(m_failure, nullptr));
    if (IsRealCut(answer.eKind))
    {
        answer.cCut->SetLastPlayed(dtStart);
        m_cHistory.Record(*answer.cCut, *m_cDataBase);
    }
    return answer.cCut;
}

CutNumber NumberOf(const Cut& cCut) { return static_cast<CutNumber>(cCut.ID() - 1); }

} // namespace ravlo
