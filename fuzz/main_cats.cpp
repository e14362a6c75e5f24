// SPDX-License-Identifier: MIT
// The list of main categories: any bytes give a station whose list, saved and read again, gives the same
// categories and the same bytes.
#include "fuzz/RadioStation.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pBytes, std::size_t size)
{
    using namespace ravlo;
    using namespace ravlo::fuzz;
    const std::string bytes(BytesOf(pBytes, size));
    const std::wstring sPath = RadioStation::Path(L"MainCats.txt");
    RadioStation cStation;
    // The code page lacks the letters of the last one.
    const std::vector<std::wstring> colOfCuts = {L"Pop", L"R&B", L"\x97F3\x697D"};
    for (const std::wstring& sName : colOfCuts)
        cStation.cDataBase->Add(L"D:\\" + sName + L".mp3", sName, 1);
    cStation.cPorts.cFiles.Put(sPath, bytes);

    std::vector<std::wstring> colNames;
    std::string written;
    {
        const Program cProgram(cStation);
        colNames = cProgram.Names();
        for (const std::wstring& sName : colOfCuts)
            RAVLO_REQUIRE(cProgram.MainCat(sName) != nullptr);
        RAVLO_REQUIRE(cProgram.cSchedMan->SaveCatNames());
        written = cStation.Bytes(sPath);
        RAVLO_REQUIRE(written.size() <= bytes.size() + 20);
        if (cStation.Has(sPath + L".bak"))
            RAVLO_REQUIRE(cStation.Bytes(sPath + L".bak") == bytes);
    }
    {
        const Program cProgram(cStation);
        RAVLO_REQUIRE(cStation.cPorts.cMessages.Boxes.empty());
        RAVLO_REQUIRE(cProgram.Names() == colNames);
        RAVLO_REQUIRE(cProgram.cSchedMan->SaveCatNames());
        RAVLO_REQUIRE(cStation.Bytes(sPath) == written);
    }
    cStation.RequireTidy();
    return 0;
}
