// SPDX-License-Identifier: MIT
// Cuts from a library file.
#include "base/csv/CsvReader.h"
#include "ravlobase/FilePath.h"
#include "ravlobase/LibraryCsv.h"
#include "ravlobase/StoreImpl.h"

namespace ravlo
{

namespace
{

std::wstring Decimal(std::size_t count) { return DecimalText(static_cast<std::int64_t>(count)); }

// What a row says, laid over what is there already.
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

} // namespace

std::wstring ImportReport::Summary() const
{
    if (!sFailure.empty())
        return L"Nothing was imported: " + sFailure;
    return DecimalText(lAdded) + (lAdded == 1 ? L" cut" : L" cuts") + L" added, " + DecimalText(lChanged) +
           L" changed, " + DecimalText(lUnchanged) + L" unchanged, " + Decimal(colRejects.size()) +
           (colRejects.size() == 1 ? L" row rejected." : L" rows rejected.");
}

std::wstring ImportReport::Text() const
{
    std::wstring sText = Summary();
    for (const auto& reject : colRejects)
        sText += sCrLf + (L"Line " + Decimal(reject.line)) + L": " + reject.sReason;
    return sText;
}

// Collects what a file says and reports on the way. Nothing is written meanwhile, so listeners may do as
// they like.
struct Store::Impl::Rows : LibraryCsvSink
{
    Rows(Impl& cStoreIn, std::size_t linesIn) : cStore(cStoreIn), lines(linesIn) {}

    void OnCut(LibraryRow row) override
    {
        const std::size_t line = row.line;
        colRows.push_back(std::move(row));
        if (colRows.size() % lProgressEvery == 0)
            cStore.RaiseProgress(L"Reading line " + Decimal(line), line, lines);
    }

    void OnReject(std::size_t line, const std::wstring& sReason) override
    {
        colRejects.push_back({line, sReason});
        cStore.RaiseProgress(L"Line " + Decimal(line) + L" rejected: " + sReason, line, lines);
    }

    Impl& cStore;
    std::size_t lines;
    std::vector<LibraryRow> colRows;
    std::vector<ImportReject> colRejects;
};

auto Store::Impl::WriteRows(const std::vector<LibraryRow>& colRows) -> Imported
{
    std::vector<Addition> colAdditions;
    std::vector<Modification> colModifications;
    for (const auto& row : colRows)
    {
        auto cCut = ByKey(row.cPath);
        if (!cCut)
        {
            colAdditions.push_back({nullptr, NewCutOf(row)});
            continue;
        }
        auto next = Merged(Own(cCut).Values(), row);
        if (!SameValues(Own(cCut).Values(), next))
            colModifications.push_back({std::move(cCut), std::move(next)});
    }
    sqlite::Transaction cTransaction(pFile->Sql(), sqlite::Transaction::Wait::eCommand);
    const auto colIDs = InsertAll(colAdditions);
    WriteAll(colModifications);
    cTransaction.Commit();
    return {TakeIn(colAdditions, colIDs), TakeOver(colModifications)};
}

std::int32_t Store::Impl::ImportCsv(const std::wstring& sCsv)
{
    NeedOpenAndNoBatch();
    ImportReport newReport;
    Imported imported;
    try
    {
        const std::string bytes = ReadFile(sCsv);
        const std::size_t lines = CountLines(bytes);
        WithProgress(L"Importing cuts", lines, [&] {
            Rows cRows(*this, lines);
            ReadLibraryCsv(bytes, cRows);
            NeedOpenAndNoBatch(); // a listener may have closed it meanwhile
            imported = WriteRows(cRows.colRows);
            newReport.lAdded = Long(imported.colAdded.size());
            newReport.lChanged = Long(imported.colModified.size());
            newReport.lUnchanged = Long(cRows.colRows.size()) - newReport.lAdded - newReport.lChanged;
            newReport.colRejects = std::move(cRows.colRejects);
            report = newReport;
            return report.Summary();
        });
    }
    catch (const RuntimeError& e)
    {
        report = {};
        report.sFailure = e.Description();
        throw;
    }
    if (!imported.colAdded.empty())
        Raise([&](DataBaseEvents& cEvents) { cEvents.CutsAdded(imported.colAdded); });
    if (!imported.colModified.empty())
        Raise([&](DataBaseEvents& cEvents) { cEvents.CutsModified(imported.colModified); });
    return newReport.lAdded + newReport.lChanged;
}

} // namespace ravlo
