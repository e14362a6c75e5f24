// SPDX-License-Identifier: MIT
#pragma once

#include "ravlobase/ImportReport.h"
#include "ravlobase/LibraryCsv.h"

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace ravlo
{

// What a source of an import has collected. Nothing is written while it collects.
class ImportRows
{
public:
    // Reports progress. What it throws ends the import.
    using Progress = std::function<void(const std::wstring& sText, std::size_t count, std::size_t max)>;
    explicit ImportRows(Progress progress) : m_progress(std::move(progress)) {}

    void Report(const std::wstring& sText, std::size_t count, std::size_t max) const
    {
        m_progress(sText, count, max);
    }
    void Reject(const std::wstring& sFile, const std::wstring& sReason)
    {
        colRejects.push_back({0, sReason, sFile});
    }

    std::vector<LibraryRow> colRows;
    std::vector<ImportReject> colRejects;
    std::size_t unchanged = 0; // files that were not read again

private:
    Progress m_progress;
};

} // namespace ravlo
