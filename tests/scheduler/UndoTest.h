// SPDX-License-Identifier: MIT
#pragma once

#include "scheduler/UndoSteps.h"
#include "support/BatchingDataBase.h"
#include "support/SyncTest.h"

namespace ravlo::test
{

inline constexpr const wchar_t* sStation = L"Rock 1: a b c d e f | Rock 2: x y | Pop 1: p q | Soul 3: s";

class UndoTest : public StationTest
{
protected:
    UndoTest()
    {
        Start(sStation);
        Man().SaveCatNames();
        Man().SetRotatesAllowed(true);
    }

    clsSchedMan& Man() { return *cLib.cSchedMan; }
    // Everything a unit of work may change: the tree, run times, the cuts, the files of orders and the list.
    std::wstring State() const
    {
        std::wstring sState = Tree();
        for (const std::shared_ptr<clsCat>& cMainCat : *cLib.cSchedMan->colMainCats())
            for (const std::shared_ptr<clsCat>& cSubCat : *cMainCat->SubCats())
                sState += L", " + std::to_wstring(TotalOf(cMainCat->CatName(), cSubCat->CatLevel()));
        for (const std::shared_ptr<Cut>& cCut : cLib.cDataBase->colCuts)
            sState += L"\n" + cCut->Key().Text() + L" " + std::to_wstring(cCut->CatLevel()) + L" " +
                      cCut->CategoryText();
        for (const std::wstring& sPath : cPorts.cFiles.Paths())
            if (sPath.ends_with(L".sif") || sPath.ends_with(L".rls") || sPath == sMainCatsPath)
            {
                const std::string bytes = cPorts.cFiles.Get(sPath);
                sState += L"\n" + sPath + L" " + Printable(bytes);
            }
        return sState;
    }
    // The levels with their cuts, and the cuts' categories. A start may put the main categories in another
    // order.
    Lines Levels() const
    {
        Lines colLevels = Split(Tree(), L" | ");
        for (const std::shared_ptr<Cut>& cCut : cLib.cDataBase->colCuts)
            colLevels.push_back(cCut->Key().Text() + std::to_wstring(cCut->CatLevel()) +
                                cCut->CategoryText());
        std::sort(colLevels.begin(), colLevels.end());
        return colLevels;
    }
    // Without fill bytes, and with digits for small binary numbers.
    static std::wstring Printable(const std::string& bytes)
    {
        std::wstring sText;
        for (const char c : bytes)
            if (c != '\0' && (c != ' ' || !sText.ends_with(L' ')))
                sText += c > 0 && c < 10 ? static_cast<wchar_t>(L'0' + c) : static_cast<wchar_t>(c);
        return sText;
    }
    Cuts CutsNamed(std::initializer_list<const wchar_t*> colKeys) const
    {
        Cuts colCuts;
        for (const wchar_t* sKey : colKeys)
            colCuts.push_back(CutOf(sKey));
        return colCuts;
    }
    void Move(std::initializer_list<const wchar_t*> colKeys, const std::shared_ptr<clsCat>& cTo,
              eCatDragOptions eOption = eMoveHere)
    {
        cLib.Change(eOption, Level(L"Rock", 1), cTo, CutsNamed(colKeys));
    }
    void Remove(std::initializer_list<const wchar_t*> colKeys, const std::wstring& sName)
    {
        std::vector<CutRemoval> colRemovals;
        for (const std::shared_ptr<Cut>& cCut : CutsNamed(colKeys))
            colRemovals.push_back({cCut, sName.empty() ? nullptr : MainCat(sName), 0});
        Man().RemoveCutsFromCategories(colRemovals, [](std::size_t) {});
    }
    void CreateLevel(const std::wstring& sName, const std::wstring& sLevel)
    {
        cPorts.cMessages.Typed = {sLevel};
        EXPECT_TRUE(Man().CreateCatLevel(MainCat(sName)));
    }
    void MoveTo(const std::wstring& sKey, std::int32_t PosInto)
    {
        Man().MoveCutsInCategory(Level(L"Rock", 1), {CutOf(sKey)}, PosInto);
    }
};

inline std::int32_t NumberOf(const std::function<void()>& action)
{
    try
    {
        action();
        return 0;
    }
    catch (const RuntimeError& cError)
    {
        return cError.Number();
    }
}

inline constexpr const wchar_t* sUndoPath = L"C:\\Radio\\Scheduler\\Undo.dat";

} // namespace ravlo::test
