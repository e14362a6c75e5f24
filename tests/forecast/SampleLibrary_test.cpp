// SPDX-License-Identifier: MIT
#include "base/Utf8.h"
#include "base/csv/CsvReader.h"
#include "forecast/Health.h"
#include "forecast/MakeUp.h"
#include "forecast/Simulation.h"
#include "support/EngineTest.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>

namespace ravlo::test
{
namespace
{

// Reads the sample library into a snapshot: a level for each number of each category, in the file's order.
class SampleReader final : public CsvSink
{
public:
    explicit SampleReader(StationSnapshot& station) : m_station(station) {}
    void OnRow(std::size_t line, std::span<const std::string> fields) override
    {
        if (line == 1)
            return;
        SnapshotCut cut;
        cut.values.cKey = TextKey(TextFromStore(fields[0]));
        cut.values.cArtist = TextKey(TextFromStore(fields[1]));
        cut.values.cTitle = TextKey(TextFromStore(fields[2]));
        cut.values.cAlbum = TextKey(TextFromStore(fields[3]));
        cut.values.lDurationmS = std::stoi(fields[5]);
        cut.values.bOpener = fields[9] == "Y";
        const CutNumber number = m_station.Add(cut);
        std::istringstream categories(fields[7]);
        for (std::string category; std::getline(categories, category, '/');)
            LevelOf(TextFromStore(category), std::stoi(fields[8])).order.push_back(number);
    }
    void OnBadRow(std::size_t line, CsvFault) override { FAIL() << "line " << line; }

private:
    SnapshotLevel& LevelOf(const std::wstring& sCategory, std::int32_t lLevel)
    {
        for (SnapshotLevel& level : m_station.levels)
            if (level.sCategory == sCategory && level.lLevel == lLevel)
                return level;
        if (std::find(m_station.mainCats.begin(), m_station.mainCats.end(), sCategory) ==
            m_station.mainCats.end())
            m_station.mainCats.push_back(sCategory);
        return m_station.levels.emplace_back(SnapshotLevel{sCategory, lLevel, {}, {}});
    }

    StationSnapshot& m_station;
};

// The sample station under fair rotation, with random clocks of some of its levels and random separations.
class SampleLibraryTest : public testing::TestWithParam<unsigned>
{
protected:
    SampleLibraryTest()
    {
        std::ifstream file(std::filesystem::path(RAVLO_SAMPLES) / "library.csv", std::ios::binary);
        std::ostringstream bytes;
        bytes << file.rdbuf();
        SampleReader reader(cStation);
        ReadCsv(bytes.str(), reader);
        cStation.options.bFairRotation = true;
    }
    std::int32_t Between(std::int32_t lLeast, std::int32_t lMost)
    {
        return lLeast + static_cast<std::int32_t>(engine() % static_cast<unsigned>(lMost - lLeast + 1));
    }
    Plan RandomClock()
    {
        std::vector<const SnapshotLevel*> levels;
        for (const SnapshotLevel& level : cStation.levels)
            levels.push_back(&level);
        std::shuffle(levels.begin(), levels.end(), engine);
        levels.resize(static_cast<std::size_t>(Between(4, 8)));
        Plan clock;
        for (std::int32_t lSlots = Between(12, 18); lSlots > 0; --lSlots)
        {
            const SnapshotLevel& level = *levels[engine() % levels.size()];
            clock.AddSlot({level.sCategory, level.lLevel, Between(1, 8) == 1});
        }
        return clock;
    }
    SimulationResult Month(const Plan& clock)
    {
        return Simulate(cMod, std::make_shared<StationSnapshot>(cStation), clock,
                        DateTimeOf({2024, 3, 1, 6, 0, 0}), 28);
    }
    // Separations that each level keeps well, and that ask too much of no artist.
    void SetAttainableRules(const StationHealth& withoutRules)
    {
        for (std::size_t level = 0; level < cStation.levels.size(); ++level)
        {
            const LevelHealth& health = withoutRules.levels[level];
            cStation.levels[level].rules.lArtist =
                std::min(Between(30, 120), Comfortable(health.lAttainableArtistMins));
            cStation.levels[level].rules.lTitle =
                std::min(Between(60, 300), Comfortable(health.lAttainableTitleMins));
        }
    }

    std::mt19937 engine{GetParam()};
    RadioPorts cPorts;
    ModScheduler cMod{cPorts.PortsWith(cPorts.cFiles)};
    StationSnapshot cStation;
};

TEST_P(SampleLibraryTest, FairRotationStarvesNoCut)
{
    const Plan clock = RandomClock();
    SetAttainableRules(HealthOf(Month(clock)));
    const StationHealth health = HealthOf(Month(clock));
    EXPECT_TRUE(health.overAsked.empty());
    int lAsked = 0;
    for (const LevelHealth& level : health.levels)
    {
        SCOPED_TRACE(Utf8Of(level.sKey));
        EXPECT_TRUE(level.neverPlayed.empty());
        EXPECT_TRUE(level.underHalf.empty());
        EXPECT_EQ(level.lRulesBroken, 0);
        EXPECT_EQ(level.eLight, Light::Green);
        lAsked += level.lPicks > 2 * static_cast<std::int32_t>(level.cuts.size()) ? 1 : 0;
    }
    EXPECT_GE(lAsked, 1);
}

INSTANTIATE_TEST_SUITE_P(TenClocks, SampleLibraryTest, testing::Range(1u, 11u));

} // namespace
} // namespace ravlo::test
