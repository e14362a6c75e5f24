// SPDX-License-Identifier: MIT
// Undo.dat: content with a valid checksum is either refused, or means the same when written and read again.
// After all its steps were undone and redone, each cut of the database is in a level at most once, and the
// next start can read the files.
#include "fuzz/RadioStation.h"

#include "scheduler/UndoRecords.h"

namespace ravlo::fuzz
{

namespace
{

bool RequireStable(const std::string& file)
{
    const std::optional<UndoContent> read = DecodeUndoFile(file);
    if (!read)
        return false;
    const std::string bytes = EncodeUndoFile(*read);
    const std::optional<UndoContent> again = DecodeUndoFile(bytes);
    RAVLO_REQUIRE(again && EncodeUndoFile(*again) == bytes);
    RAVLO_REQUIRE(again->colUndo.size() == read->colUndo.size());
    RAVLO_REQUIRE(again->colRedo.size() == read->colRedo.size());
    return true;
}

// A step may be impossible, as one that gives a cut a name it cannot have. It stays the next one then.
void ReverseAll(clsSchedMan& cSchedMan, std::wstring (clsSchedMan::*reverse)(), std::size_t steps)
{
    try
    {
        for (; steps > 0; --steps)
            (cSchedMan.*reverse)();
    }
    catch (const RuntimeError&)
    {
    }
}

} // namespace

} // namespace ravlo::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pBytes, std::size_t size)
{
    using namespace ravlo;
    using namespace ravlo::fuzz;
    const std::string file = SealUndoFile(BytesOf(pBytes, size));
    if (!RequireStable(file))
        return 0;
    const std::size_t steps = DecodeUndoFile(file)->colUndo.size();
    RadioStation cStation;
    for (const wchar_t* sKey : {L"D:\\a", L"D:\\b", L"D:\\c"})
        cStation.cDataBase->Add(sKey, L"Pop", 1);
    cStation.cPorts.cFiles.Put(RadioStation::Path(L"Undo.dat"), file);
    {
        const Program cProgram(cStation);
        ReverseAll(*cProgram.cSchedMan, &clsSchedMan::Undo, steps);
        ReverseAll(*cProgram.cSchedMan, &clsSchedMan::Redo, steps);
        for (const std::shared_ptr<clsCat>& cMainCat : *cProgram.cSchedMan->colMainCats())
        {
            RAVLO_REQUIRE(!cMainCat->CatName().empty());
            for (const std::shared_ptr<clsCat>& cSubCat : *cMainCat->SubCats())
                RAVLO_REQUIRE(cSubCat->CatLevel() > 0);
        }
    }
    const Program cNext(cStation);
    cStation.RequireTidy();
    return 0;
}
