// SPDX-License-Identifier: MIT
// The settings file: any bytes give three separations that can be used, and saving them settles the file.
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
    RadioStation cState;
    cState.cPorts.cFiles.Put(sPath, BytesOf(pBytes, size));
    ModScheduler cMod(cState.cPorts.Ports());
    cMod.StoreAppPath(RadioStation::sFolder);
    cMod.LoadSettings();
    const std::vector<std::int32_t> colRead = ValuesIn(cMod);
    RAVLO_REQUIRE(cMod.SaveSettings());
    const std::string written = cState.Bytes(sPath);
    RAVLO_REQUIRE(written.size() <= 36);

    ModScheduler cNext(cState.cPorts.Ports());
    cNext.StoreAppPath(RadioStation::sFolder);
    cNext.LoadSettings();
    RAVLO_REQUIRE(ValuesIn(cNext) == colRead);
    RAVLO_REQUIRE(cNext.SaveSettings());
    RAVLO_REQUIRE(cState.Bytes(sPath) == written);
    cNext.SetGlobalTitleSepMins(7);
    RAVLO_REQUIRE(cNext.GlobalTitleSepMins() == 7 && cNext.GlobalArtistSepMins() == colRead[0] &&
                  cNext.GlobalAlbumSepMins() == colRead[2]);
    RAVLO_REQUIRE(cState.cPorts.cMessages.Boxes.empty());
    cState.RequireTidy();
    return 0;
}
