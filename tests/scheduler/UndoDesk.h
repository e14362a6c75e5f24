// SPDX-License-Identifier: MIT
#pragma once

#include "rotation/OptionsText.h"
#include "support/SchedulerTest.h"

#include <functional>
#include <initializer_list>
#include <utility>

namespace ravlo::test
{

inline constexpr const wchar_t* sStation = L"Rock 1: a b c d e f | Rock 2: x y | Pop 1: p q | Soul 3: s";
inline constexpr const wchar_t* sOptionsPath = L"C:\\Radio\\Scheduler\\Rotation.cfg";

// What a user does at sStation.
class UndoDesk
{
public:
    UndoDesk(Library& cLib, MemoryPorts& cPorts) : m_cLib(cLib), m_cPorts(cPorts) {}

    clsSchedMan& Man() const { return *m_cLib.cSchedMan; }
    std::shared_ptr<clsCat> Main(const std::wstring& sName) const { return m_cLib.MainCat(sName); }
    std::shared_ptr<clsCat> Sub(const std::wstring& sName, std::int32_t lLevel) const
    {
        return m_cLib.Level(sName, lLevel);
    }
    std::shared_ptr<Cut> CutNamed(const wchar_t* sKey) const
    {
        return Man().DataBase()->CutByKey(TextKey(sKey));
    }
    Cuts CutsNamed(std::initializer_list<const wchar_t*> colKeys) const
    {
        Cuts colCuts;
        for (const wchar_t* sKey : colKeys)
            colCuts.push_back(CutNamed(sKey));
        return colCuts;
    }
    void Move(std::initializer_list<const wchar_t*> colKeys, const std::shared_ptr<clsCat>& cTo,
              eCatDragOptions eOption = eMoveHere)
    {
        m_cLib.Change(eOption, Sub(L"Rock", 1), cTo, CutsNamed(colKeys));
    }
    void Remove(std::initializer_list<const wchar_t*> colKeys, const std::wstring& sName) const
    {
        std::vector<CutRemoval> colRemovals;
        for (const std::shared_ptr<Cut>& cCut : CutsNamed(colKeys))
            colRemovals.push_back({cCut, sName.empty() ? nullptr : Main(sName), 0});
        Man().RemoveCutsFromCategories(colRemovals, [](std::size_t) {});
    }
    void CreateLevel(const std::wstring& sName, const std::wstring& sLevel)
    {
        m_cPorts.cMessages.Typed = {sLevel};
        EXPECT_TRUE(Man().CreateCatLevel(Main(sName)));
    }
    void MoveTo(const wchar_t* sKey, std::int32_t PosInto) const
    {
        Man().MoveCutsInCategory(Sub(L"Rock", 1), {CutNamed(sKey)}, PosInto);
    }

    // ---- everything a unit of work may change

    // In memory: tree, run times, cuts, rules and options.
    std::wstring InMemory() const
    {
        std::wstring sState = m_cLib.Tree();
        ForEachCat([&](const clsCat& cCat) {
            if (cCat.CatLevel() != 0)
                sState += L", " + std::to_wstring(const_cast<clsCat&>(cCat).AverageRunTimemS());
            sState += L"\n" + RulesText(cCat, *cCat.PresentRules());
        });
        for (const std::shared_ptr<Cut>& cCut : Man().DataBase()->AllCuts())
            sState += L"\n" + cCut->Key().Text() + L" " + std::to_wstring(cCut->CatLevel()) + L" " +
                      cCut->CategoryText();
        return sState + OptionsText(Man().Options());
    }
    // In the files: orders, the list, rules and options.
    std::wstring InFiles() const
    {
        std::wstring sState;
        ForEachCat([&](const clsCat& cCat) {
            const auto cSaved =
                clsCatRules::Read(m_cLib.cMod, clsCat::RulesID(cCat.CatName(), cCat.CatLevel()));
            sState += L"\n" + RulesText(cCat, *cSaved);
        });
        const MemoryFiles& cFiles = m_cPorts.cFiles;
        for (const std::wstring& sPath : cFiles.Paths())
            if (sPath.ends_with(L".sif") || sPath == sMainCatsPath)
                sState += L"\n" + sPath + L" " + Printable(cFiles.Get(sPath));
        return sState + OptionsText(OptionsIn(cFiles.FileExists(sOptionsPath) ? cFiles.Get(sOptionsPath) : "")
                                        .value_or(RotationOptions()));
    }
    // The levels with their cuts, and the cuts' categories. A start may put the main categories in another
    // order.
    Lines Levels() const
    {
        Lines colLevels = Split(m_cLib.Tree(), L" | ");
        for (const std::shared_ptr<Cut>& cCut : Man().DataBase()->AllCuts())
            colLevels.push_back(cCut->Key().Text() + std::to_wstring(cCut->CatLevel()) +
                                cCut->CategoryText());
        ForEachCat([&](const clsCat& cCat) { colLevels.push_back(RulesText(cCat, *cCat.PresentRules())); });
        colLevels.push_back(OptionsText(Man().Options()));
        std::sort(colLevels.begin(), colLevels.end());
        return colLevels;
    }

private:
    void ForEachCat(const std::function<void(const clsCat& cCat)>& body) const
    {
        for (const std::shared_ptr<clsCat>& cMainCat : *Man().colMainCats())
        {
            body(*cMainCat);
            for (const std::shared_ptr<clsCat>& cSubCat : *cMainCat->SubCats())
                body(*cSubCat);
        }
    }
    static std::wstring RulesText(const clsCat& cCat, const clsCatRules& cRules)
    {
        const clsCatRules::Edit rules = cRules.Stored();
        return L"rules of " + cCat.CatName() + L" " + std::to_wstring(cCat.CatLevel()) + L": " +
               std::to_wstring(*rules.lArtist) + L" " + std::to_wstring(*rules.lTitle) + L" " +
               std::to_wstring(*rules.lAlbum) + (*rules.bIgnore ? L" ignored" : L"");
    }
    static std::wstring OptionsText(const RotationOptions& options)
    {
        return std::wstring(options.bFairRotation ? L"\nfair" : L"\nwalk") +
               (options.bFeaturedArtists ? L", featured" : L", credits");
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

    Library& m_cLib;
    MemoryPorts& m_cPorts;
};

// One of each kind of step, with its text.
using UndoKind = std::pair<const wchar_t*, std::function<void(UndoDesk&)>>;

inline void AddOrderKinds(std::vector<UndoKind>& kinds)
{
    using D = UndoDesk;
    kinds.emplace_back(L"shuffle of Rock 1", [](D& d) { d.Man().ShuffleCategories({d.Sub(L"Rock", 1)}); });
    kinds.emplace_back(L"shuffle of Rock, Pop 1, Soul 3... (+1)", [](D& d) {
        d.Man().ShuffleCategories({d.Main(L"Rock"), d.Sub(L"Pop", 1), d.Sub(L"Soul", 3), d.Sub(L"Rock", 2)});
    });
    kinds.emplace_back(L"spread of Rock 1", [](D& d) {
        d.CutNamed(L"a")->SetLastPlayed(45'000);
        d.Man().SpreadCategories({d.Sub(L"Rock", 1)});
    });
    kinds.emplace_back(L"re-order of Rock 1", [](D& d) { d.MoveTo(L"e", 2); });
}

inline void AddPlaceKinds(std::vector<UndoKind>& kinds)
{
    using D = UndoDesk;
    kinds.emplace_back(L"move of 2 cuts to Pop 1", [](D& d) { d.Move({L"b", L"d"}, d.Sub(L"Pop", 1)); });
    kinds.emplace_back(L"move of 1 cut to Pop",
                       [](D& d) { d.Move({L"b"}, d.Main(L"Pop"), eMoveExclusiveHere); });
    kinds.emplace_back(L"move of 6 cuts to Soul 3", [](D& d) {
        d.Move({L"f", L"e", L"d", L"c", L"b", L"a"}, d.Sub(L"Soul", 3));
    });
    kinds.emplace_back(L"move of 2 cuts to Rock 2", [](D& d) { d.Move({L"c", L"a"}, d.Sub(L"Rock", 2)); });
    kinds.emplace_back(L"copy of 2 cuts to Pop 1", [](D& d) {
        d.Move({L"b", L"e"}, d.Sub(L"Pop", 1), eCopyHere);
    });
    kinds.emplace_back(L"copy of 1 cut to Soul", [](D& d) { d.Move({L"b"}, d.Main(L"Soul"), eCopyHere); });
    kinds.emplace_back(L"removal of 2 cuts from Rock 1", [](D& d) { d.Remove({L"b", L"d"}, L"Rock"); });
    kinds.emplace_back(L"removal of 3 cuts from Pop 1, Soul 3", [](D& d) {
        d.Remove({L"p", L"q", L"s"}, L"");
    });
    kinds.emplace_back(L"assignment of Artist of c - Title of c", [](D& d) {
        d.Man().AssignCut(d.CutNamed(L"c"), 2, {L"Pop", L"Rock", L"Folk"});
    });
}

inline void AddCategoryKinds(std::vector<UndoKind>& kinds)
{
    using D = UndoDesk;
    const auto deletion = [&](const wchar_t* sText, auto catsOf) {
        kinds.emplace_back(sText, [=](D& d) { EXPECT_TRUE(d.Man().DeleteCats(catsOf(d))); });
    };
    deletion(L"deletion of Pop 1", [](D& d) { return Cats{d.Sub(L"Pop", 1)}; });
    deletion(L"deletion of Rock", [](D& d) { return Cats{d.Main(L"Rock")}; });
    deletion(L"deletion of Soul, Pop, Rock", [](D& d) {
        return Cats{d.Main(L"Soul"), d.Main(L"Pop"), d.Main(L"Rock")};
    });
    deletion(L"deletion of Soul 3, Rock 2, Soul", [](D& d) {
        return Cats{d.Sub(L"Soul", 3), d.Sub(L"Rock", 2), d.Main(L"Soul")};
    });
    kinds.emplace_back(L"new category Jazz", [](D& d) {
        std::wstring sName = L"Jazz";
        EXPECT_TRUE(d.Man().CreateMainCat(sName));
    });
    kinds.emplace_back(L"new level Pop 7", [](D& d) { d.CreateLevel(L"Pop", L"7"); });
    kinds.emplace_back(L"renaming of Rock to Talk",
                       [](D& d) { EXPECT_TRUE(d.Man().RenameMainCat(L"Rock", L"Talk")); });
}

inline void AddSettingKinds(std::vector<UndoKind>& kinds)
{
    using D = UndoDesk;
    using Rules = clsCatRules::Edit;
    kinds.emplace_back(L"artist separation of Pop 1", [](D& d) {
        d.Man().ChangeRules(d.Sub(L"Pop", 1), Rules{34, {}, {}, {}});
    });
    kinds.emplace_back(L"separations of Rock", [](D& d) {
        EXPECT_TRUE(d.Man().ApplyRules(d.Main(L"Rock"), Rules{1, 2, 0, {}}));
    });
    kinds.emplace_back(L"ignoring of rules of Soul 3", [](D& d) {
        EXPECT_TRUE(d.Man().ApplyRules(d.Sub(L"Soul", 3), Rules{{}, -1, {}, true}));
    });
    kinds.emplace_back(L"fair rotation", [](D& d) { d.Man().SetFairRotation(true); });
    kinds.emplace_back(L"counting of featured artists", [](D& d) { d.Man().SetFeaturedArtists(true); });
}

inline const std::vector<UndoKind>& UndoKinds()
{
    static const std::vector<UndoKind> allKinds = [] {
        std::vector<UndoKind> kinds;
        for (const auto Add : {&AddOrderKinds, &AddPlaceKinds, &AddCategoryKinds, &AddSettingKinds})
            Add(kinds);
        return kinds;
    }();
    return allKinds;
}

} // namespace ravlo::test
