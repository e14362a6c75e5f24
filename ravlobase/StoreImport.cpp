// SPDX-License-Identifier: MIT
// Cuts from a library file.
#include "ravlobase/Store.h"

#include "base/RuntimeError.h"
#include "base/Text.h"
#include "base/csv/CsvReader.h"
#include "ravlobase/FilePath.h"
#include "ravlobase/LibraryCsv.h"
#include "ravlobase/StoreEdit.h"

#include <utility>

namespace ravlo
{

namespace
{

// The values, with those of the row where it has any.
CutValues Merged(CutValues values, const LibraryRow& row)
{
    const auto TakeText = [](TextKey& cField, const std::optional<std::wstring>& sText) {
        if (sText)
            cField = TextKey(*sText);
    };
    TakeText(values.cArtist, row.sArtist);
    TakeText(values.cTitle, row.sTitle);
    TakeText(values.cAlbum, row.sAlbum);
    TakeText(values.cSecondaryKey, row.sSecondaryKey);
    values.lYear = row.lYear.value_or(values.lYear);
    values.lDurationmS = row.lDurationmS.value_or(values.lDurationmS);
    values.lRunTimemS = row.lRunTimemS.value_or(values.lRunTimemS);
    values.lCatLevel = row.lLevel.value_or(values.lCatLevel);
    values.bOpener = row.bOpener.value_or(values.bOpener);
    values.dtLastPlayed = row.dtLastPlayed.value_or(values.dtLastPlayed);
    if (row.colCategories)
    {
        values.colCategories.clear();
        AddNames(values.colCategories, *row.colCategories);
    }
    return values;
}

CutValues NewCutOf(const LibraryRow& row)
{
    CutValues values;
    values.cKey = row.cPath;
    values.cPath = row.cPath;
    values.lCatLevel = 1;
    return Merged(std::move(values), row);
}

// Collects the rows of a file and reports progress. Nothing is written at this time, so listeners may do
// anything.
class RowCollector final : public LibraryCsvSink
{
public:
    RowCollector(const StoreListeners& cListeners, std::size_t lines)
        : m_cListeners(cListeners), m_lines(lines)
    {
    }

    void OnCut(LibraryRow row) override
    {
        const std::size_t line = row.line;
        colRows.push_back(std::move(row));
        if (colRows.size() % StoreListeners::progressEvery == 0)
            m_cListeners.Progress(L"Reading line " + CountText(line), line, m_lines);
    }
    void OnReject(std::size_t line, const std::wstring& sReason) override
    {
        colRejects.push_back({line, sReason});
        m_cListeners.Progress(L"Line " + CountText(line) + L" rejected: " + sReason, line, m_lines);
    }

    std::vector<LibraryRow> colRows;
    std::vector<ImportReject> colRejects;

private:
    const StoreListeners& m_cListeners;
    std::size_t m_lines;
};

} // namespace

void Store::Apply(StoreEdit& edit, const std::vector<LibraryRow>& colRows) const
{
    for (const LibraryRow& row : colRows)
    {
        std::shared_ptr<Cut> cCut = m_cContent.ByKey(row.cPath);
        if (!cCut)
        {
            edit.Add(nullptr, NewCutOf(row));
            continue;
        }
        const CutValues& values = StoreContent::Own(cCut).Values();
        CutValues next = Merged(values, row);
        if (!SameValues(values, next))
            edit.Modify(std::move(cCut), std::move(next));
    }
}

std::int32_t Store::ImportCsv(const std::wstring& sFile)
{
    NeedOpenAndNoBatch();
    ImportReport report;
    StoreEdit::Done done;
    try
    {
        const std::string bytes = ReadFile(sFile);
        const std::size_t lines = CountLines(bytes);
        m_cListeners.WithProgress(L"Importing cuts", lines, [&] {
            RowCollector cRows(m_cListeners, lines);
            ReadLibraryCsv(bytes, cRows);
            NeedOpenAndNoBatch(); // again: a listener may have closed it
            StoreEdit edit;
            Apply(edit, cRows.colRows);
            edit.WriteTo(*m_pFile, sqlite::Transaction::Wait::Command);
            done = edit.TakeInto(m_cContent, *this);
            report.lAdded = LongCount(done.colAdded.size());
            report.lChanged = LongCount(done.colModified.size());
            report.lUnchanged = LongCount(cRows.colRows.size()) - report.lAdded - report.lChanged;
            report.colRejects = std::move(cRows.colRejects);
            m_report = report;
            return report.Summary();
        });
    }
    catch (const RuntimeError& e)
    {
        m_report = {};
        m_report.sFailure = e.Description();
        throw;
    }
    m_cListeners.Added(done.colAdded);
    m_cListeners.Modified(done.colModified);
    return report.lAdded + report.lChanged;
}

} // namespace ravlo
