// SPDX-License-Identifier: MIT
// The artists' names: a credit of any bytes, with any table, counts for itself first and for each name once,
// alike in any case. The input is a table, then a line of three full stops, then artist and title on a line
// each.
#include "fuzz/Fuzz.h"

#include "base/CaseFolding.h"
#include "rotation/ArtistNames.h"

#include <unordered_set>

namespace ravlo::fuzz
{

namespace
{

// The head of the bytes up to a delimiter, which is taken off with it.
std::string_view TakeUpTo(std::string_view& bytes, std::string_view sDelimiter)
{
    const std::size_t at = bytes.find(sDelimiter);
    const std::string_view head = bytes.substr(0, at);
    bytes = at == std::string_view::npos ? std::string_view() : bytes.substr(at + sDelimiter.size());
    return head;
}

std::vector<std::wstring> Folded(std::vector<std::wstring> colNames)
{
    for (std::wstring& sName : colNames)
        sName = FoldCase(sName);
    return colNames;
}

} // namespace

} // namespace ravlo::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pBytes, std::size_t size)
{
    using namespace ravlo;
    using namespace ravlo::fuzz;
    std::string_view bytes = BytesOf(pBytes, size);
    ArtistsTable::Problems problems;
    const auto cTable =
        std::make_shared<ArtistsTable>(ArtistsTable::Parse(TakeUpTo(bytes, "\n...\n"), problems));
    const std::wstring sArtist = TextOf(TakeUpTo(bytes, "\n"));
    const std::wstring sTitle = TextOf(bytes);
    for (const bool bFeatured : {false, true})
    {
        const ArtistNames cNames(bFeatured, cTable);
        const std::vector<std::wstring> colNames = cNames.Of(sArtist, sTitle);
        RAVLO_REQUIRE(colNames.empty() == sArtist.empty());
        RAVLO_REQUIRE(sArtist.empty() || colNames.front() == sArtist);
        const std::vector<std::wstring> colFolded = Folded(colNames);
        RAVLO_REQUIRE(std::unordered_set<std::wstring>(colFolded.begin(), colFolded.end()).size() ==
                      colFolded.size());
        for (const std::wstring& sName : colNames)
            RAVLO_REQUIRE(!sName.empty());
        RAVLO_REQUIRE(Folded(cNames.Of(FoldCase(sArtist), FoldCase(sTitle))) == colFolded);
        if (!cNames.CreditsOnly())
            RAVLO_REQUIRE(cNames.KeysOf(TextKey(sArtist), TextKey(sTitle)).size() == colNames.size());
        else
            RAVLO_REQUIRE(colNames.size() <= 1);
    }
    return 0;
}
