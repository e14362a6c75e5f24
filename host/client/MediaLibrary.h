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

// Calls fVisit with every object of a collection, in its order.
void ForEach(_clsCollection& cCollection, const std::function<void(IDispatch& cItem)>& fVisit);

// The embedded media database, used as any host uses it. Throws RuntimeError with the database's own
// words.
class MediaLibrary
{
public:
    using Progress = std::function<void(const std::wstring& sText, long lCount, long lMax)>;

    // A cut as far as planning needs to know it, and the database's object.
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
    // The number of cuts; sReport receives what the database told about the import when it was done.
    std::int32_t ImportCsv(const std::wstring& sFile, const Progress& progress, std::wstring& sReport);
    // Every cut, in the database's order.
    std::vector<Entry> Entries() const;
    // Has the database take in and announce what other programs have changed in its file.
    void TakeInChanges();
    ComPtr<_clsCut> NewCut() const;
    _clsDataBase& Object() const noexcept { return *m_cDataBase; }

private:
    ComPtr<_clsDataBase> m_cDataBase;
};

} // namespace ravlo
