// SPDX-License-Identifier: MIT
#pragma once

#include "base/DateTime.h"
#include "comkit/Variant.h"

#include <RavloBase.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace ravlo
{

// Calls fVisit with every object of a collection, in order.
void ForEach(_clsCollection& cCollection, const std::function<void(IDispatch& cItem)>& fVisit);

// The embedded media database, used as any host uses it. Throws RuntimeError with the database's description.
class MediaLibrary
{
public:
    using Progress = std::function<void(const std::wstring& sText, long lCount, long lMax)>;

    // What planning needs to know of a cut, and the database's object.
    struct Entry
    {
        ComPtr<_clsCut> cCut;
        std::vector<std::wstring> categories;
        std::int32_t lLevel = 0;
        DateTime dtLastPlayed = 0; // 0 = never
    };

    // Makes the database object; no file is open yet.
    MediaLibrary();
    MediaLibrary(const MediaLibrary&) = delete;
    MediaLibrary& operator=(const MediaLibrary&) = delete;
    ~MediaLibrary();

    // Makes the file when it is missing.
    void Open(const std::wstring& sFile);
    // Returns the number of cuts; sReport receives the database's report of the import.
    std::int32_t ImportCsv(const std::wstring& sFile, const Progress& progress, std::wstring& sReport);
    // The same for any of the database's imports.
    using ImportCall = std::function<HRESULT(_clsDataBase& cDataBase, LONG* plCuts)>;
    std::int32_t Import(const ImportCall& call, const Progress& progress, std::wstring& sReport);
    // The report of the last import, with what it could not use, in lines ended with LF.
    std::wstring ImportReport() const;
    // The text of a CSV file (docs/formats/plays-csv.md).
    std::wstring PlaysCsv(DateTime dtFrom, DateTime dtTo, const std::wstring& sBy) const;
    // Every cut, in the database's order.
    std::vector<Entry> Entries() const;
    // Makes the database read, and announce, other programs' changes of its file.
    void TakeInChanges();
    ComPtr<_clsCut> NewCut() const;
    _clsDataBase& Object() const noexcept { return *m_cDataBase; }

private:
    ComPtr<_clsDataBase> m_cDataBase;
};

} // namespace ravlo
