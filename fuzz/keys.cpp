// SPDX-License-Identifier: MIT
// The keys that hosts pass: name TAB level for a pick and for the grid, NAME:LEVEL on the command line. Any
// text gets an answer, and only a key that names a level finds one.
#include "fuzz/RadioStation.h"

#include "base/CaseFolding.h"
#include "base/Text.h"
#include "host/day/CategoryName.h"
#include "host/day/HostError.h"
#include "ui/library/LibraryContents.h"

#include <algorithm>

namespace ravlo::fuzz
{

namespace
{

// One program for all inputs: a request changes only the order of a level.
struct Asked
{
    RadioStation cStation;
    std::unique_ptr<Program> cProgram;

    Asked()
    {
        for (const auto* sName : {L"Pop", L"R&B", L"Talk:7", L"-1"})
            for (std::int32_t lLevel = 1; lLevel < 13; lLevel += 5)
                cStation.cDataBase->Add(std::wstring(sName) + DecimalText(lLevel), sName, lLevel);
        cProgram = std::make_unique<Program>(cStation);
        cProgram->cSchedMan->SetRotatesAllowed(true);
    }
};

void Pick(Asked& asked, const std::wstring& sKey)
{
    const std::size_t tab = sKey.find(cTab);
    const RotationAnswer answer = asked.cProgram->cSchedMan->NextCutFromRotation({sKey}, false);
    const std::shared_ptr<clsCat>& cMainCat = answer.cMainCat;
    const std::shared_ptr<clsCat>& cSubCat = answer.cSubCat;
    RAVLO_REQUIRE(answer.cCut != nullptr);
    RAVLO_REQUIRE(answer.cCut->CategoryKey() == sKey);
    RAVLO_REQUIRE(answer.sMainCatKey ==
                  (tab == std::wstring::npos ? L"" : CategoryKey(sKey.substr(0, tab), 0)));
    if (cMainCat)
        RAVLO_REQUIRE(EqualIgnoringCase(cMainCat->CatName(), sKey.substr(0, tab)));
    if (cSubCat)
        RAVLO_REQUIRE(cMainCat && DecimalText(cSubCat->CatLevel()) == sKey.substr(tab + 1));
    const bool bPlaceholder =
        answer.cCut->KindCode() == (cMainCat ? eKindLevelNotFound : eKindMainCatNotFound);
    RAVLO_REQUIRE(bPlaceholder == (cSubCat == nullptr));
}

void Show(Asked& asked, const std::wstring& sKey)
{
    clsSchedMan& cSchedMan = *asked.cProgram->cSchedMan;
    const std::optional<ListedCuts> listed = ListCuts(cSchedMan, sKey);
    RAVLO_REQUIRE(listed.has_value());
    const std::size_t all = asked.cStation.cDataBase->colCuts.size();
    const std::size_t wanted = listed->bShowingAllAudio ? all
                               : listed->cCatShown ? static_cast<std::size_t>(listed->cCatShown->TotalCuts())
                                                   : 0;
    RAVLO_REQUIRE(listed->colCuts.size() == wanted);
    // The key that it returns lists the same again.
    const std::optional<ListedCuts> again = ListCuts(cSchedMan, listed->strCatKey);
    if (listed->cCatShown || listed->bShowingAllAudio)
        RAVLO_REQUIRE(again->cCatShown == listed->cCatShown && again->strCatKey == listed->strCatKey &&
                      again->colCuts.size() == wanted);
}

void Name(const std::wstring& sText)
{
    try
    {
        const CategoryName name = ParseCategoryName(sText);
        RAVLO_REQUIRE(!name.sName.empty() && name.lLevel >= 0);
        if (name.lLevel > 0)
            RAVLO_REQUIRE(ParseCategoryName(TextOf(name)) == name);
        else
            RAVLO_REQUIRE(TextOf(name) == sText);
    }
    catch (const HostError& e)
    {
        RAVLO_REQUIRE(e.Description().find(sText) != std::wstring::npos);
    }
}

} // namespace

} // namespace ravlo::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pBytes, std::size_t size)
{
    using namespace ravlo::fuzz;
    static Asked asked;
    const std::wstring sText = TextOf(BytesOf(pBytes, size));
    Pick(asked, sText);
    Show(asked, sText);
    Name(sText);
    asked.cStation.cPorts.cMessages.Boxes.clear();
    asked.cStation.cPorts.cFiles.ClearOperations();
    return 0;
}
