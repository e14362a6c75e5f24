// SPDX-License-Identifier: MIT
#include "scheduler/OrderRestorer.h"

#include "scheduler/OrderRecords.h"

#include <limits>
#include <memory>
#include <string>
#include <unordered_map>

namespace ravlo
{

namespace
{

// The new order of one level. Cuts that a record names go to the end; the others stay in front, in their
// present order.
class RestoredLevel
{
public:
    RestoredLevel(const CodePage& cCodePage, std::shared_ptr<clsCat> cLevel)
        : m_cCodePage(cCodePage), m_cSubCat(std::move(cLevel)), m_colCuts(m_cSubCat->SchedCuts()),
          m_colPlaceOf(m_colCuts->Count(), nowhere)
    {
        m_colPlaced.reserve(m_colCuts->Count());
    }

    std::int32_t CatLevel() const noexcept { return m_cSubCat->CatLevel(); }
    // Takes a record's path field, as bytes.
    void Take(std::string_view field);
    void Finish() const;

private:
    static constexpr std::size_t nowhere = std::numeric_limits<std::size_t>::max();
    // For one path field: the positions of the cuts that have it, in order, and how many of them are used.
    struct Alike
    {
        std::vector<std::size_t> colPositions;
        std::size_t taken = 0;
    };

    void Place(std::size_t position);
    std::optional<std::size_t> NextAlike(const std::string& field);
    void Index();

    const CodePage& m_cCodePage;
    std::shared_ptr<clsCat> m_cSubCat;
    std::shared_ptr<CutCollection> m_colCuts;
    // Positions of the cuts named so far, in order; nowhere where a later record names the cut again.
    std::vector<std::size_t> m_colPlaced;
    std::vector<std::size_t> m_colPlaceOf; // by position: index into m_colPlaced, or nowhere
    // By path field. Filled only when a record's path is not exactly that of a cut.
    std::unordered_map<std::string, Alike> m_colAlike;
    bool m_bIndexed = false;
};

void RestoredLevel::Place(std::size_t position)
{
    if (m_colPlaceOf[position] != nowhere)
        m_colPlaced[m_colPlaceOf[position]] = nowhere;
    m_colPlaceOf[position] = m_colPlaced.size();
    m_colPlaced.push_back(position);
}

void RestoredLevel::Take(std::string_view field)
{
    const std::wstring sPath = m_cCodePage.Decode(field);
    // The order has usually not changed: try the next cut first.
    const std::size_t next =
        m_colPlaced.empty() || m_colPlaced.back() == nowhere ? 0 : m_colPlaced.back() + 1;
    if (next < m_colPlaceOf.size() && m_colPlaceOf[next] == nowhere)
        if (const TextKey* cKey = m_colCuts->KeyAt(next); cKey && cKey->Text() == sPath)
            return Place(next);
    const std::optional<std::size_t> exact = m_colCuts->PositionOf(sPath);
    if (exact && m_colPlaceOf[*exact] == nowhere)
        Place(*exact);
    else if (const std::optional<std::size_t> alike = NextAlike(std::string(field)))
        Place(*alike);
    else if (exact)
        Place(*exact); // named twice: the last record counts
}

void RestoredLevel::Index()
{
    m_bIndexed = true;
    for (std::size_t position = 0; position < m_colCuts->Count(); ++position)
        if (const TextKey* cKey = m_colCuts->KeyAt(position))
            m_colAlike[OrderPathField(m_cCodePage, cKey->Text())].colPositions.push_back(position);
}

// The next cut with that field that no record has named yet.
std::optional<std::size_t> RestoredLevel::NextAlike(const std::string& field)
{
    if (!m_bIndexed)
        Index();
    const auto found = m_colAlike.find(field);
    if (found == m_colAlike.end())
        return std::nullopt;
    Alike& alike = found->second;
    while (alike.taken < alike.colPositions.size() &&
           m_colPlaceOf[alike.colPositions[alike.taken]] != nowhere)
        ++alike.taken;
    if (alike.taken == alike.colPositions.size())
        return std::nullopt;
    return alike.colPositions[alike.taken];
}

void RestoredLevel::Finish() const
{
    std::vector<std::size_t> colOrder;
    colOrder.reserve(m_colPlaceOf.size());
    for (std::size_t position = 0; position < m_colPlaceOf.size(); ++position)
        if (m_colPlaceOf[position] == nowhere)
            colOrder.push_back(position);
    for (const std::size_t position : m_colPlaced)
        if (position != nowhere)
            colOrder.push_back(position);
    m_colCuts->Reorder(colOrder);
}

// The level of a record, created when the record is its marker; null when there is none.
std::shared_ptr<clsCat> LevelOf(ModScheduler& cMod, clsCat& cMainCat, const OrderRecord& record)
{
    std::shared_ptr<clsCat> cSubCat = cMainCat.SubCat(record.lLevel);
    if (cSubCat || !record.bLevelMarker || record.lLevel < 0)
        return cSubCat;
    cMainCat.AddSubCat(std::make_shared<clsCat>(cMod, cMainCat.CatName(), record.lLevel));
    return cMainCat.SubCat(record.lLevel);
}

} // namespace

OrderLeftOver RestoreOrder(ModScheduler& cMod, clsCat& cMainCat, std::string_view records)
{
    const CodePage& cCodePage = cMod.Ports().cCodePage;
    OrderLeftOver leftOver;
    std::unordered_map<std::int32_t, RestoredLevel> colLevels;
    RestoredLevel* cLevel = nullptr;     // of the previous record: a level's records follow each other
    std::optional<std::int32_t> lMarked; // by the previous record
    for (; records.size() >= orderRecordSize; records.remove_prefix(orderRecordSize))
    {
        const OrderRecord record = FirstOrderRecord(records);
        if (record.lLevel == 0)
            continue;
        if (!cLevel || cLevel->CatLevel() != record.lLevel)
        {
            const auto found = colLevels.find(record.lLevel);
            cLevel = found == colLevels.end() ? nullptr : &found->second;
        }
        if (!cLevel)
        {
            std::shared_ptr<clsCat> cSubCat = LevelOf(cMod, cMainCat, record);
            if (cSubCat)
                cLevel = &colLevels.try_emplace(record.lLevel, cCodePage, std::move(cSubCat)).first->second;
            else if (record.bLevelMarker)
                leftOver.colImpossibleLevels.push_back(record.lLevel);
            else
                leftOver.lMissingLevel = record.lLevel;
        }
        if (leftOver.lMissingLevel)
            break;
        if (cLevel && !record.bLevelMarker)
            cLevel->Take(record.path);
        leftOver.bInTheMiddleOfAChange |= !record.bLevelMarker && lMarked == record.lLevel;
        lMarked = record.bLevelMarker ? std::optional(record.lLevel) : std::nullopt;
    }
    for (const auto& [lLevel, cFinished] : colLevels)
        cFinished.Finish();
    return leftOver;
}

} // namespace ravlo
