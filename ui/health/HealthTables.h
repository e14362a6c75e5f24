// SPDX-License-Identifier: MIT
#pragma once

#include "forecast/Health.h"
#include "forecast/LevelAdvice.h"
#include "ui/health/SortedTable.h"

#include <cstddef>
#include <vector>

namespace ravlo
{

enum class HealthTable
{
    Levels,
    Advice, // of the chosen level, as the rest
    Seldom,
    Plays,
    Gaps,
    Hours,
};
inline constexpr std::size_t healthTables = 6;

// The tables of the rotation health window, over the caller's figures.
class HealthTables
{
public:
    HealthTables();
    HealthTables(const HealthTables&) = delete;
    HealthTables& operator=(const HealthTables&) = delete;

    SortedTable& Of(HealthTable eTable) { return m_tables[static_cast<std::size_t>(eTable)]; }
    const SortedTable& Of(HealthTable eTable) const { return m_tables[static_cast<std::size_t>(eTable)]; }

    // Null for none; what is shown must outlive this or be replaced.
    void ShowStation(const StationHealth* pStation);
    void ShowLevel(const LevelHealth* pLevel);
    void ShowAdvice(const std::vector<LevelRemedy>* pRemedies);

    // Items of the tables; precondition: they exist.
    const StarvedCut& Seldom(std::size_t item) const { return m_colSeldom[item]; }

private:
    std::vector<TableColumn> LevelColumns() const;
    std::vector<TableColumn> AdviceColumns() const;
    std::vector<TableColumn> SeldomColumns() const;
    std::vector<TableColumn> PlaysColumns() const;
    std::vector<TableColumn> GapsColumns() const;
    std::vector<TableColumn> HoursColumns() const;

    const StationHealth* m_pStation = nullptr;
    const LevelHealth* m_pLevel = nullptr;
    const std::vector<LevelRemedy>* m_pRemedies = nullptr;
    std::vector<StarvedCut> m_colSeldom; // of the level
    std::vector<SortedTable> m_tables;
};

} // namespace ravlo
