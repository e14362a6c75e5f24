// SPDX-License-Identifier: MIT
#include "rotation/ArtistNames.h"

#include "rotation/Credits.h"

#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace ravlo
{

namespace
{

// The names of one credit, each once.
class NameList
{
public:
    void Add(const TextKey& cName)
    {
        if (m_colSeen.insert(cName).second)
            m_colNames.push_back(cName);
    }
    void Add(const std::vector<TextKey>& colNames)
    {
        for (const TextKey& cName : colNames)
            Add(cName);
    }
    std::vector<TextKey> Take() { return std::move(m_colNames); }

private:
    std::vector<TextKey> m_colNames;
    std::unordered_set<TextKey> m_colSeen;
};

// Adds a part of a credit: itself, and the names of its rows. False when it has no rows.
bool AddPart(NameList& cNames, const TextKey& cPart, const ArtistsTable& cTable)
{
    cNames.Add(cPart);
    const std::vector<TextKey>* colRows = cTable.Find(cPart);
    if (colRows)
        cNames.Add(*colRows);
    return colRows != nullptr;
}

// A guest part that has rows of its own is one artist, as a whole credit is.
void AddGuests(NameList& cNames, const std::vector<std::wstring>& colGuests, const ArtistsTable& cTable)
{
    for (const std::wstring& sGuests : colGuests)
    {
        const TextKey cWhole(sGuests);
        if (cTable.Find(cWhole))
            AddPart(cNames, cWhole, cTable);
        else
            for (std::wstring& sGuest : SplitGuests(sGuests))
                AddPart(cNames, TextKey(std::move(sGuest)), cTable);
    }
}

std::vector<TextKey> NamesFound(const TextKey& cArtist, const TextKey& cTitle, bool bFeaturedArtists,
                                const ArtistsTable& cTable)
{
    if (cArtist.Empty())
        return {};
    NameList cNames;
    const bool bHasRows = AddPart(cNames, cArtist, cTable);
    if (!bFeaturedArtists)
        return cNames.Take();
    if (const ArtistParts parts = bHasRows ? ArtistParts{} : SplitArtist(cArtist.Text());
        !parts.colGuests.empty())
    {
        AddPart(cNames, TextKey(parts.sMain), cTable);
        AddGuests(cNames, parts.colGuests, cTable);
    }
    AddGuests(cNames, GuestsInTitle(cTitle.Text()), cTable);
    return cNames.Take();
}

} // namespace

class ArtistNames::Shared
{
public:
    Shared(bool bFeaturedArtists, std::shared_ptr<const ArtistsTable> cTable)
        : m_bFeaturedArtists(bFeaturedArtists), m_cTable(std::move(cTable))
    {
    }

    bool FeaturedArtists() const noexcept { return m_bFeaturedArtists; }
    const std::shared_ptr<const ArtistsTable>& Table() const noexcept { return m_cTable; }
    std::vector<TextKey> Of(const TextKey& cArtist, const TextKey& cTitle) const
    {
        return NamesFound(cArtist, cTitle, m_bFeaturedArtists, *m_cTable);
    }
    const std::vector<TextKey>& KeysOf(const TextKey& cArtist, const TextKey& cTitle)
    {
        const Credit credit{cArtist, m_bFeaturedArtists ? cTitle : TextKey()};
        const auto it = m_colKeys.find(credit);
        return it != m_colKeys.end() ? it->second
                                     : m_colKeys.emplace(credit, Of(cArtist, cTitle)).first->second;
    }

private:
    const bool m_bFeaturedArtists;
    const std::shared_ptr<const ArtistsTable> m_cTable;                     // never null
    std::unordered_map<Credit, std::vector<TextKey>, CreditHash> m_colKeys; // of the credits asked for
};

ArtistNames::ArtistNames(bool bFeaturedArtists, std::shared_ptr<const ArtistsTable> cTable)
{
    if (!cTable)
        cTable = std::make_shared<ArtistsTable>();
    if (bFeaturedArtists || !cTable->Empty())
        m_cShared = std::make_shared<Shared>(bFeaturedArtists, std::move(cTable));
}

ArtistNames ArtistNames::With(bool bFeaturedArtists) const
{
    if (bFeaturedArtists == (m_cShared && m_cShared->FeaturedArtists()))
        return *this;
    return {bFeaturedArtists, m_cShared ? m_cShared->Table() : nullptr};
}

std::vector<std::wstring> ArtistNames::Of(const std::wstring& sArtist, const std::wstring& sTitle) const
{
    std::vector<std::wstring> colNames;
    if (!m_cShared && !sArtist.empty())
        return {sArtist};
    if (m_cShared)
        for (const TextKey& cName : m_cShared->Of(TextKey(sArtist), TextKey(sTitle)))
            colNames.push_back(cName.Text());
    return colNames;
}

const std::vector<TextKey>& ArtistNames::KeysOf(const TextKey& cArtist, const TextKey& cTitle) const
{
    return m_cShared->KeysOf(cArtist, cTitle);
}

std::vector<TextKey> ArtistNames::NamesOf(const TextKey& cArtist, const TextKey& cTitle) const
{
    std::vector<TextKey> colNames;
    ForEachName(cArtist, cTitle, [&](const TextKey& cName) { colNames.push_back(cName); });
    return colNames;
}

} // namespace ravlo
