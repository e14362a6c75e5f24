// SPDX-License-Identifier: MIT
#pragma once

#include "host/client/MediaLibrary.h"
#include "host/day/PlayBook.h"

namespace ravlo
{

// The library as the book of plays needs it. With bGather plays are written together if the database can do
// that (IGatheredPlays), as long as this exists; otherwise each is on the disk when the scheduler has
// reported it.
class LibraryPlays : public PlayStore
{
public:
    LibraryPlays(MediaLibrary& cLibrary, bool bGather);
    LibraryPlays(const LibraryPlays&) = delete;
    LibraryPlays& operator=(const LibraryPlays&) = delete;
    ~LibraryPlays() override;

    void Write() override;
    bool Has(const std::wstring& sKey, DateTime dtWhen) override;
    void Put(const std::wstring& sKey, DateTime dtWhen) override;

private:
    ComPtr<_clsCut> CutOf(const std::wstring& sKey) const; // none when there is none

    MediaLibrary& m_cLibrary;
    ComPtr<IGatheredPlays> m_cGathered; // none while each play is written by itself
};

} // namespace ravlo
