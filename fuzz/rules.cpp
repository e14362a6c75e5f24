// SPDX-License-Identifier: MIT
// A level's .rls: any bytes give usable minutes, a change can be read back, and a file that was not
// understood is kept until somebody changes a rule.
#include "fuzz/RadioStation.h"

#include "model/clsCatRules.h"

namespace ravlo::fuzz
{

namespace
{

constexpr const wchar_t* sCatID = L"Pop\xAC\xAC\xAC"
                                  L"1";

struct Values
{
    std::int32_t lArtist;
    std::int32_t lTitle;
    std::int32_t lAlbum;
    bool bIgnore;
    bool operator==(const Values&) const = default;
};

Values ValuesOf(const clsCatRules& cRules)
{
    const Values values{cRules.ArtistSepMins(), cRules.TitleSepMins(), cRules.AlbumSepMins(),
                        cRules.IgnoreRules()};
    RAVLO_REQUIRE(values.lArtist >= 0 && values.lTitle >= 0 && values.lAlbum >= -1);
    return values;
}

} // namespace

} // namespace ravlo::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pBytes, std::size_t size)
{
    using namespace ravlo;
    using namespace ravlo::fuzz;
    const std::string bytes(BytesOf(pBytes, size));
    const bool bWhole = bytes.size() >= clsCatRules::recordSize;
    const std::wstring sPath = RadioStation::Path(std::wstring(L"Rules\\") + sCatID + L".rls");
    RadioStation cStation;
    cStation.cPorts.cFiles.Put(sPath, bytes);
    ModScheduler cMod(cStation.cPorts.Ports());
    cMod.StoreAppPath(RadioStation::sFolder);

    Values read{};
    {
        clsCatRules cRules(cMod);
        cRules.SetCatID(sCatID);
        read = ValuesOf(cRules);
        RAVLO_REQUIRE(cRules.CatID() == sCatID);
    }
    // Released without a change: rewritten in the normal form, or kept.
    const std::wstring sKept = sPath + L".bak";
    const bool bRewritten = cStation.Bytes(sPath) != bytes;
    RAVLO_REQUIRE(!bRewritten || cStation.Bytes(sPath).size() == clsCatRules::recordSize);
    RAVLO_REQUIRE(bWhole || !bRewritten || (cStation.Has(sKept) && cStation.Bytes(sKept) == bytes));
    {
        clsCatRules cRules(cMod);
        cRules.SetCatID(sCatID);
        if (bWhole)
            RAVLO_REQUIRE(ValuesOf(cRules) == read);
        cRules.SetTitleSepMins(7);
        cRules.SetAlbumSepMins(-8);
        read = ValuesOf(cRules);
        RAVLO_REQUIRE(read.lTitle == 7 && read.lAlbum == 8);
        RAVLO_REQUIRE(cStation.Bytes(sPath).size() == clsCatRules::recordSize);
    }
    const std::string written = cStation.Bytes(sPath);
    cStation.cPorts.cMessages.Boxes.clear();
    {
        clsCatRules cRules(cMod);
        cRules.SetCatID(sCatID);
        RAVLO_REQUIRE(ValuesOf(cRules) == read);
    }
    RAVLO_REQUIRE(cStation.cPorts.cMessages.Boxes.empty());
    RAVLO_REQUIRE(cStation.Bytes(sPath) == written);
    cStation.RequireTidy();
    return 0;
}
