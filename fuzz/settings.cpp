// SPDX-License-Identifier: MIT
// The settings file: any bytes give three usable separations, and after one save the file no longer changes.
#include "fuzz/RadioStation.h"

namespace ravlo::fuzz
{

namespace
{

std::vector<std::int32_t> ValuesIn(const ModScheduler& cMod)
{
    const std::vector colValues = {cMod.GlobalArtistSepMins(), cMod.GlobalTitleSepMins(),
                                   cMod.GlobalAlbumSepMins()};
    for (const std::int32_t lValue : colValues)
        RAVLO_REQUIRE(lValue >= 0);
    return colValues;
}

} // namespace

} // namespace ravlo::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pBytes, std::size_t size)
{
    using namespace ravlo;
    using namespace ravlo::fuzz;
    const std::wstring sPath = RadioStation::Path(L"SchedulerSettings.dat");
    RadioStation cStation;
    cStation.cPorts.cFiles.Put(sPath, BytesOf(pBytes, size));
    ModScheduler cMod(cStation.cPorts.Ports());
    cMod.StoreAppPath(RadioStation::sFolder);
    cMod.LoadSettings();
    const std::vector<std::int32_t> colRead = ValuesIn(cMod);
    if (!cMod.SaveSettings()) // a file without a number is left alone until a setter runs
    {
        RAVLO_REQUIRE(cStation.Bytes(sPath) == BytesOf(pBytes, size));
        cMod.SetGlobalTitleSepMins(cMod.GlobalTitleSepMins());
    }
    const std::string written = cStation.Bytes(sPath);
    RAVLO_REQUIRE(written.size() <= 36);

    ModScheduler cNext(cStation.cPorts.Ports());
    cNext.StoreAppPath(RadioStation::sFolder);
    cNext.LoadSettings();
    RAVLO_REQUIRE(ValuesIn(cNext) == colRead);
    RAVLO_REQUIRE(cNext.SaveSettings());
    RAVLO_REQUIRE(cStation.Bytes(sPath) == written);
    cNext.SetGlobalTitleSepMins(7);
    RAVLO_REQUIRE(cNext.GlobalTitleSepMins() == 7 && cNext.GlobalArtistSepMins() == colRead[0] &&
                  cNext.GlobalAlbumSepMins() == colRead[2]);
    RAVLO_REQUIRE(cStation.cPorts.cMessages.Boxes.empty());
    cStation.RequireTidy();
    return 0;
}
