// SPDX-License-Identifier: MIT
// Cuts from library files, folders and playlists.
#include "ravlobase/Store.h"

#include "base/RuntimeError.h"
#include "base/ScopedFlag.h"
#include "base/Text.h"
#include "base/csv/CsvReader.h"
#include "platform/disk/Disk.h"
#include "ravlobase/AudioImport.h"
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
    if (row.colCategories && (!row.bOnlyFirstCategories || values.colCategories.empty()))
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

// Collects the rows of a library file.
class RowCollector final : public LibraryCsvSink
{
public:
    RowCollector(ImportRows& rows, std::size_t lines) : m_rows(rows), m_lines(lines) {}

    void OnCut(LibraryRow row) override
    {
        const std::size_t line = row.line;
        m_rows.colRows.push_back(std::move(row));
        if (m_rows.colRows.size() % StoreListeners::progressEvery == 0)
            m_rows.Report(L"Reading line " + CountText(line), line, m_lines);
    }
    void OnReject(std::size_t line, const std::wstring& sReason) override
    {
        m_rows.colRejects.push_back({line, sReason, L""});
        m_rows.Report(L"Line " + CountText(line) + L" rejected: " + sReason, line, m_lines);
    }

private:
    ImportRows& m_rows;
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
            edit.Add(nullptr, NewCutOf(row), row.stamp);
            continue;
        }
        if (row.stamp)
            edit.Stamp(cCut, *row.stamp);
        const CutValues& values = StoreContent::Own(cCut).Values();
        CutValues next = Merged(values, row);
        if (!SameValues(values, next))
            edit.Modify(std::move(cCut), std::move(next));
    }
}

std::wstring Store::Take(ImportRows& rows, ImportReport& report, StoreEdit::Done& done)
{
    NeedOpenAndNoBatch(); // again: a listener may have closed it
    StoreEdit edit;
    Apply(edit, rows.colRows);
    report.lAdded = LongCount(edit.Additions());
    report.lChanged = LongCount(edit.Modifications());
    report.lUnchanged = LongCount(rows.colRows.size() + rows.unchanged) - report.lAdded - report.lChanged;
    report.colRejects = std::move(rows.colRejects);
    if (report.bTrial)
        report.colChanges = edit.Lines();
    else
    {
        edit.WriteTo(*m_pFile, sqlite::Transaction::Wait::Command);
        done = edit.TakeInto(m_cContent, *this);
    }
    m_report = report;
    return report.Summary();
}

std::int32_t Store::Import(ImportReport report, const std::function<std::size_t()>& begin,
                           const std::function<void(ImportRows&)>& collect)
{
    NeedOpenAndNoBatch();
    if (m_bImporting)
        throw RuntimeError(error::InvalidProcedureCall, L"An import is running already.");
    StoreEdit::Done done;
    m_bCancelled = false;
    try
    {
        const ScopedFlag bImporting(m_bImporting);
        const std::size_t steps = begin();
        m_cListeners.WithProgress(L"Importing cuts", steps, [&] {
            ImportRows rows([this](const std::wstring& sText, std::size_t count, std::size_t max) {
                m_cListeners.Progress(sText, count, max);
                if (m_bCancelled)
                    throw RuntimeError(error::UserInterrupt, L"The import was cancelled.");
            });
            collect(rows);
            return Take(rows, report, done);
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

std::int32_t Store::ImportLines(const std::wstring& sFile, bool bTrial, const CsvReading& read)
{
    ImportReport report;
    report.bTrial = bTrial;
    std::string bytes;
    std::size_t lines = 0;
    const auto begin = [&] {
        bytes = disk::ReadFile(sFile);
        return lines = CountLines(bytes);
    };
    return Import(std::move(report), begin, [&](ImportRows& rows) {
        RowCollector cRows(rows, lines);
        read(bytes, cRows);
    });
}

std::int32_t Store::ImportCsv(const std::wstring& sFile)
{
    return ImportLines(sFile, false,
                       [](std::string_view bytes, LibraryCsvSink& cSink) { ReadLibraryCsv(bytes, cSink); });
}

std::int32_t Store::ImportMappedCsv(const std::wstring& sFile, const std::wstring& sMap, bool bTrial)
{
    const ColumnMap map = ParseColumnMap(sMap);
    return ImportLines(sFile, bTrial, [&](std::string_view bytes, LibraryCsvSink& cSink) {
        ReadLibraryCsv(bytes, cSink, map, DelimiterOf(bytes));
    });
}

std::int32_t Store::ImportAudio(const std::wstring& sPath, const std::wstring& sCategory, bool bTrial,
                                AudioCollector collect)
{
    NeedOpen();
    ImportReport report;
    report.bTrial = bTrial;
    report.bFiles = true;
    const std::unordered_map<std::int32_t, ImportStamp> stamps = m_pFile->ImportStamps();
    const auto stampOf = [&](const TextKey& cKey) {
        const std::shared_ptr<Cut> cCut = m_cContent.ByKey(cKey);
        const auto it = cCut ? stamps.find(cCut->ID()) : stamps.end();
        return it == stamps.end() ? std::nullopt : std::optional(it->second);
    };
    const AudioImport import{Trim(sCategory), stampOf};
    return Import(
        std::move(report), [] { return std::size_t{0}; },
        [&](ImportRows& rows) { collect(sPath, import, rows); });
}

std::int32_t Store::ImportFolder(const std::wstring& sFolder, const std::wstring& sCategory, bool bTrial)
{
    return ImportAudio(sFolder, sCategory, bTrial, CollectFolder);
}

std::int32_t Store::ImportPlaylist(const std::wstring& sFile, const std::wstring& sCategory, bool bTrial)
{
    return ImportAudio(sFile, sCategory, bTrial, CollectPlaylist);
}

} // namespace ravlo
