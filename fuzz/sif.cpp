// SPDX-License-Identifier: MIT
// A category's .sif: with any bytes every cut is in its level once, and a saved order is read back unchanged.
#include "fuzz/RadioStation.h"

#include "model/LittleEndian.h"
#include "scheduler/HistoryFiles.h"

namespace ravlo::fuzz
{

namespace
{

constexpr std::size_t record = HistoryFiles::recordSize;
constexpr std::size_t atLevel = 765;
constexpr std::size_t atMarker = 769;
constexpr const wchar_t* sCat = L"Pop";

// Includes paths that a record cannot tell apart: equal in their first 255 bytes, or different only in
// letters that the code page lacks.
std::vector<std::pair<std::wstring, std::int32_t>> CutsOfThePop()
{
    const std::wstring sLong = L"D:\\" + std::wstring(260, L'x');
    return {{L"D:\\a.mp3", 1}, {L"D:\\b.mp3", 1},      {L"D:\\c.mp3", 1},      {sLong + L"1", 1},
            {sLong + L"2", 1}, {L"D:\\\x4E00.mp3", 1}, {L"D:\\\x4E8C.mp3", 1}, {L"D:\\?.mp3", 1},
            {L" e ", 2},       {L"D:\\f.mp3", 2}};
}

std::map<std::int32_t, std::multiset<std::wstring>> Contents(const Program& cProgram)
{
    std::map<std::int32_t, std::multiset<std::wstring>> colContents;
    for (const auto& [lLevel, colKeys] : cProgram.Orders(sCat))
        colContents[lLevel].insert(colKeys.begin(), colKeys.end());
    return colContents;
}

// Requires that the levels contain the database's cuts, and that any further level is empty and declared by
// the file.
void RequireContents(const Program& cProgram, std::string_view bytes)
{
    std::map<std::int32_t, std::multiset<std::wstring>> colWanted;
    for (const auto& [sKey, lLevel] : CutsOfThePop())
        colWanted[lLevel].insert(sKey);
    std::set<std::int32_t> colDeclared;
    for (std::size_t at = 0; bytes.size() % record == 0 && at < bytes.size(); at += record)
        if (GetInteger(bytes, at + atMarker) != 0)
            colDeclared.insert(GetLong(bytes, at + atLevel));
    for (const auto& [lLevel, colKeys] : Contents(cProgram))
    {
        const auto wanted = colWanted.find(lLevel);
        RAVLO_REQUIRE(wanted != colWanted.end() ? colKeys == wanted->second
                                                : colKeys.empty() && colDeclared.contains(lLevel));
        colWanted.erase(lLevel);
    }
    RAVLO_REQUIRE(colWanted.empty());
}

} // namespace

} // namespace ravlo::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pBytes, std::size_t size)
{
    using namespace ravlo;
    using namespace ravlo::fuzz;
    const std::string bytes(BytesOf(pBytes, size));
    const std::wstring sPath = RadioStation::SifPath(sCat);
    RadioStation cStation;
    for (const auto& [sKey, lLevel] : CutsOfThePop())
        cStation.cDataBase->Add(sKey, sCat, lLevel);
    cStation.cPorts.cFiles.Put(sPath, bytes);

    std::string written;
    {
        const Program cProgram(cStation);
        RequireContents(cProgram, bytes);
        RAVLO_REQUIRE(cProgram.cSchedMan->SaveHistoryAndOrdering(nullptr));
        written = cStation.Bytes(sPath);
        std::size_t records = 0;
        for (const auto& [lLevel, colKeys] : cProgram.Orders(sCat))
            records += colKeys.empty() ? 1 : colKeys.size();
        RAVLO_REQUIRE(written.size() == records * record);
        // A file that was not fully understood is kept.
        if (bytes.size() % record != 0)
            RAVLO_REQUIRE(cStation.Has(sPath + L".bak"));
        if (cStation.Has(sPath + L".bak"))
            RAVLO_REQUIRE(cStation.Bytes(sPath + L".bak") == bytes);
    }
    {
        const Program cProgram(cStation);
        RAVLO_REQUIRE(cStation.cPorts.cMessages.Boxes.empty());
        RequireContents(cProgram, written);
        RAVLO_REQUIRE(cProgram.cSchedMan->SaveHistoryAndOrdering(nullptr));
        RAVLO_REQUIRE(cStation.Bytes(sPath) == written);
    }
    cStation.RequireTidy();
    return 0;
}
