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
    RadioStation cState;
    // The code page lacks the last one's letters.
    const std::vector<std::wstring> colOfCuts = {L"Pop", L"R&B", L"\x97F3\x697D"};
    for (const std::wstring& sName : colOfCuts)
        cState.cDataBase->Add(L"D:\\" + sName + L".mp3", sName, 1);
    cState.cPorts.cFiles.Put(sPath, bytes);

    std::vector<std::wstring> colNames;
    std::string written;
    {
        const Program cProgram(cState);
        colNames = cProgram.Names();
        for (const std::wstring& sName : colOfCuts)
            RAVLO_REQUIRE(cProgram.MainCat(sName) != nullptr);
        RAVLO_REQUIRE(cProgram.cSchedMan->SaveCatNames());
        written = cState.Bytes(sPath);
        RAVLO_REQUIRE(written.size() <= bytes.size() + 20);
        if (cState.Has(sPath + L".bak"))
            RAVLO_REQUIRE(cState.Bytes(sPath + L".bak") == bytes);
    }
    {
        const Program cProgram(cState);
        RAVLO_REQUIRE(cState.cPorts.cMessages.Boxes.empty());
        RAVLO_REQUIRE(cProgram.Names() == colNames);
        RAVLO_REQUIRE(cProgram.cSchedMan->SaveCatNames());
        RAVLO_REQUIRE(cState.Bytes(sPath) == written);
    }
    cState.RequireTidy();
    return 0;
}
