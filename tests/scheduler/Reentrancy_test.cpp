// SPDX-License-Identifier: MIT
#include "support/SyncTest.h"

#include <algorithm>
#include <cstdlib>

namespace ravlo::test
{
namespace
{

constexpr std::size_t rockCuts = 104;

// A small station, in which every operation reports at least once: Rock 1 and 2, Pop 1, and Jazz without
// cuts.
struct SmallStation
{
    SmallStation()
    {
        for (std::size_t cut = 1; cut <= rockCuts; ++cut)
            cLib.cDataBase->Add(L"r" + std::to_wstring(cut), cut % 3 == 0 ? L"Rock/Pop" : L"Rock", 1);
        cLib.cDataBase->AddTree(L"Rock 2: s1 s2 s3 | Pop 1: p");
        cLib.Populate();
        cLib.CreateMainCat(L"Jazz");
        cLib.SaveAll();
        cLib.cSchedMan->SetRotatesAllowed(true);
        cPorts.cMessages.Boxes.clear();
    }

    std::shared_ptr<clsCat> MainCat(const std::wstring& sName) const { return cLib.MainCat(sName); }
    std::shared_ptr<clsCat> Level(const std::wstring& sName, std::int32_t lLevel = 1) const
    {
        return cLib.Level(sName, lLevel);
    }
    Cuts Rock() const { return cLib.CutsOf(L"Rock"); }

    // ---- operations, and what the host does in a callback

    void Import(std::size_t count, const std::wstring& sCategoryText)
    {
        Cuts colCuts;
        for (std::size_t cut = 0; cut < count; ++cut)
            colCuts.push_back(cLib.cDataBase->Add(L"new" + std::to_wstring(++added), sCategoryText, 1));
        cLib.cDataBase->Announce(&DataBaseEvents::CutsAdded, colCuts);
    }
    void Modify()
    {
        const Cuts colCuts = Rock();
        for (const std::shared_ptr<Cut>& cCut : colCuts)
            cCut->SetCatLevel(3);
        cLib.cDataBase->Announce(&DataBaseEvents::CutsModified, colCuts);
    }
    void Remove(const Cuts& colCuts)
    {
        for (const std::shared_ptr<Cut>& cCut : colCuts)
            cLib.cDataBase->Remove(*cCut);
        cLib.cDataBase->Announce(&DataBaseEvents::CutsRemoved, colCuts);
    }
    void RemoveTwo() { Remove({cLib.cDataBase->colCuts.end() - 2, cLib.cDataBase->colCuts.end()}); }
    // Deletes those that exist.
    void Delete(Cats colCats)
    {
        std::erase(colCats, nullptr);
        if (!colCats.empty())
            cLib.cSchedMan->DeleteCats(colCats);
    }
    void DeleteTargets() { Delete({Level(L"Pop"), Level(L"Rock", 2), MainCat(L"Jazz")}); }
    // Moves or copies the cuts of Rock 1.
    void Change(eCatDragOptions eOption, const std::shared_ptr<clsCat>& cTo)
    {
        if (Level(L"Rock") && cTo)
            cLib.Change(eOption, Level(L"Rock"), cTo, Rock());
    }
    void MoveInCategory()
    {
        Cuts colCuts = Rock();
        colCuts.resize(40);
        cLib.cSchedMan->MoveCutsInCategory(Level(L"Rock"), colCuts, 60);
    }
    void Shuffle()
    {
        if (const auto cRock = MainCat(L"Rock"))
            cLib.cSchedMan->ShuffleCategories({cRock});
    }
    void SaveAll()
    {
        cLib.SaveAll();
        cLib.cSchedMan->SaveCatNames();
    }
    void CreateCategory()
    {
        cPorts.cMessages.Answers = {BoxAnswer::Yes};
        cPorts.cMessages.Typed = {L"Funk"};
        cLib.CreateMainCat(L"Rock"); // refused first
    }
    void CreateLevel()
    {
        cPorts.cMessages.Answers = {BoxAnswer::Yes};
        cPorts.cMessages.Typed = {L"x", L"1", L"7"};
        cLib.cSchedMan->CreateCatLevel(MainCat(L"Rock"));
    }
    void Pick()
    {
        const std::shared_ptr<Cut> cPicked = cLib.NextCut(L"Rock\t1");
        ASSERT_TRUE(cPicked) << "never none";
        sPicked = cPicked->Key().Text();
    }
    // Takes the first cut that played long enough ago; the others keep their places.
    void PickFairly()
    {
        cLib.cSchedMan->SetFairRotation(true);
        if (const auto cRock = Level(L"Rock"))
            cRock->Rules()->Apply({0, 60, 0, false});
        const Cuts colCuts = Rock();
        for (std::size_t cut = 0; cut < std::min<std::size_t>(12, colCuts.size()); ++cut)
        {
            colCuts[cut]->SetLastPlayed(cPorts.cClock.Now());
            cLib.cSchedMan->UpdateArtistTitleHistory(colCuts[cut]);
        }
        Pick();
    }
    // There is none: it walks the whole level.
    void PickOpener() { EXPECT_TRUE(cLib.NextCut(L"Rock\t1", true)) << "never none"; }

    RadioPorts cPorts;
    Library cLib{cPorts};
    std::size_t added = 0;
    std::wstring sPicked; // by an interruption
};

struct Action
{
    const char* sName;
    void (*run)(SmallStation&);
};

using S = SmallStation;
const Action actions[] = {
    {"import", [](S& s) { s.Import(61, L"Rock/Soul"); }},
    {"modify", [](S& s) { s.Modify(); }},
    {"remove", [](S& s) { s.Remove(s.Rock()); }},
    {"delete", [](S& s) { s.Delete({s.MainCat(L"Rock")}); }},
    {"delete a level", [](S& s) { s.Delete({s.Level(L"Rock")}); }},
    {"copy", [](S& s) { s.Change(eCopyHere, s.Level(L"Pop")); }},
    {"move", [](S& s) { s.Change(eMoveHere, s.MainCat(L"Jazz")); }},
    {"move exclusively", [](S& s) { s.Change(eMoveExclusiveHere, s.Level(L"Rock", 2)); }},
    {"move in category", [](S& s) { s.MoveInCategory(); }},
    {"shuffle", [](S& s) { s.Shuffle(); }},
    {"save", [](S& s) { s.cLib.SaveAll(); }},
    {"create category", [](S& s) { s.CreateCategory(); }},
    {"create level", [](S& s) { s.CreateLevel(); }},
    {"pick", [](S& s) { s.PickOpener(); }},
    {"fair pick", [](S& s) { s.PickFairly(); }},
    {"populate", [](S& s) { s.cLib.Populate(); }},
};

// What the host does in a callback.
const Action interruptions[] = {
    {"picks", [](S& s) { s.Pick(); }},
    {"picks fairly", [](S& s) { s.PickFairly(); }},
    {"looks for an opener", [](S& s) { s.PickOpener(); }},
    {"populates", [](S& s) { s.cLib.Populate(); }},
    {"imports", [](S& s) { s.Import(2, L"Rock/Pop"); }},
    {"removes", [](S& s) { s.RemoveTwo(); }},
    {"deletes Rock", [](S& s) { s.Delete({s.MainCat(L"Rock")}); }},
    {"deletes the targets", [](S& s) { s.DeleteTargets(); }},
    {"moves cuts", [](S& s) { s.Change(eMoveHere, s.Level(L"Pop")); }},
    {"saves", [](S& s) { s.SaveAll(); }},
    {"shuffles", [](S& s) { s.Shuffle(); }},
    {"creates", [](S& s) { s.cLib.CreateMainCat(L"Made inside"); }},
};

// Tree and cuts of a station agree: each cut is once in each of its categories, at its level, and nowhere
// else; levels ascend; run times are the sums.
void ExpectSound(SmallStation& s)
{
    Library& cLib = s.cLib;
    std::map<std::wstring, std::int32_t> colTotals;
    std::size_t entries = 0;
    for (std::size_t main = 0; main < cLib.cSchedMan->colMainCats()->Count(); ++main)
    {
        const std::shared_ptr<clsCat> cMainCat = cLib.cSchedMan->colMainCats()->At(main);
        ASSERT_EQ(cLib.cSchedMan->colMainCats()->KeyAt(main)->Text(), cMainCat->CatName() + L"\t0");
        std::int32_t lBefore = 0;
        for (const std::shared_ptr<clsCat>& cSubCat : *cMainCat->SubCats())
        {
            ASSERT_LT(lBefore, cSubCat->CatLevel());
            lBefore = cSubCat->CatLevel();
            ASSERT_EQ(cSubCat->MainCat(), cMainCat);
            std::int64_t total = 0;
            const CutCollection& colCuts = *cSubCat->SchedCuts();
            for (std::size_t at = 0; at < colCuts.Count(); ++at)
            {
                ++entries;
                const Cut& cCut = *colCuts.At(at);
                total += cCut.RunTimemS();
                ASSERT_EQ(*colCuts.KeyAt(at), cCut.Key());
                ASSERT_EQ(cCut.CatLevel(), cSubCat->CatLevel());
                ASSERT_TRUE(cCut.HasCategoryName(cMainCat->CatName()));
                ASSERT_EQ(cLib.cDataBase->CutByKey(cCut.Key()), colCuts.At(at)) << "the database's own";
            }
            ASSERT_EQ(std::int64_t{cSubCat->AverageRunTimemS()} * cSubCat->TotalCuts(), total);
        }
    }
    std::size_t assigned = 0;
    for (const std::shared_ptr<Cut>& cCut : cLib.cDataBase->colCuts)
        assigned += cCut->CategoryNames().size();
    ASSERT_EQ(entries, assigned) << "no cut is missing in a category";
}

void ExpectARestartBringsAllBack(SmallStation& s)
{
    const auto Levels = [&] { // in any order of the main categories
        std::set<std::wstring> colLevels;
        for (const std::shared_ptr<clsCat>& cMainCat : *s.cLib.cSchedMan->colMainCats())
        {
            CatCollection colOne;
            colOne.Add(cMainCat);
            colLevels.insert(TreeText(colOne));
        }
        return colLevels;
    };
    const std::set<std::wstring> before = Levels();
    s.cLib.Restart();
    ASSERT_EQ(Levels(), before);
    ASSERT_EQ(s.cPorts.TemporaryFiles(), Lines());
}

// Does something at the n-th point at which the host runs: an event, a pump, a sleep, a box.
class Interruption
{
public:
    Interruption(SmallStation& s, int lAt, std::function<void()> something)
        : m_s(s), m_lLeft(lAt), m_something(std::move(something))
    {
        const auto point = [this] { Point(); };
        s.cLib.cHost.OnEvent = [point](const std::wstring&) { point(); };
        s.cPorts.cHostLoop.OnPump = point;
        s.cPorts.cHostLoop.OnSleep = [point](std::uint32_t) { point(); };
        s.cPorts.cMessages.OnShown = point;
    }
    ~Interruption()
    {
        m_s.cLib.cHost.OnEvent = nullptr;
        m_s.cPorts.cHostLoop.OnPump = nullptr;
        m_s.cPorts.cHostLoop.OnSleep = nullptr;
        m_s.cPorts.cMessages.OnShown = nullptr;
    }
    Interruption(const Interruption&) = delete;
    Interruption& operator=(const Interruption&) = delete;

    bool Reached() const { return m_lLeft < 0; }

private:
    void Point()
    {
        if (m_lLeft-- == 0)
            m_something();
    }

    SmallStation& m_s;
    int m_lLeft;
    std::function<void()> m_something;
};

class ReentrancyTest : public testing::TestWithParam<Action>
{
};

TEST_P(ReentrancyTest, AfterAnyCallbackTreeCutsAndFilesAgree)
{
    const Action& operation = GetParam();
    // Every fifth point, another fifth for each interruption; all of them with RAVLO_LONG.
    const int lStride = std::getenv("RAVLO_LONG") ? 1 : 5;
    int lFirst = 0;
    for (const Action& interruption : interruptions)
        for (int lAt = lFirst++ % lStride;; lAt += lStride)
        {
            SCOPED_TRACE(std::string(operation.sName) + ", and at point " + std::to_string(lAt) +
                         " the host " + interruption.sName);
            SmallStation s;
            bool bReached = false;
            {
                const Interruption cInterruption(s, lAt, [&] { interruption.run(s); });
                operation.run(s);
                bReached = cInterruption.Reached();
            }
            ExpectSound(s);
            if (operation.sName == std::string("populate") && !s.sPicked.empty())
            {
                EXPECT_EQ(s.cLib.Order(L"Rock", 1).back(), s.sPicked) << "it would play again";
            }
            s.cLib.SaveAll();
            if (interruption.sName == std::string("populates"))
                s.cLib.Populate(); // a category made before the host's reload may be saved after it
            ExpectARestartBringsAllBack(s);
            if (HasFailure() || !bReached)
                break;
        }
}

TEST_P(ReentrancyTest, AManagerReleasedInACallbackFinishesItsCall)
{
    const Action& operation = GetParam();
    if (operation.sName == std::string("modify"))
        return; // has no point at which the host runs
    for (int lAt = 0;; ++lAt)
    {
        SCOPED_TRACE(std::string(operation.sName) + ", released at point " + std::to_string(lAt));
        SmallStation s;
        // As a COM call does, the operation itself keeps no reference; the manager keeps itself alive.
        const std::weak_ptr<clsSchedMan> cWeak = s.cLib.cSchedMan;
        std::shared_ptr<clsSchedMan> cAgain;
        bool bReached = false;
        {
            const Interruption cInterruption(s, lAt, [&] {
                s.cLib.cSchedMan.reset();
                cAgain = cWeak.lock();
                EXPECT_TRUE(cAgain) << "alive while its call runs";
                cAgain.reset();
            });
            operation.run(s);
            bReached = cInterruption.Reached();
        }
        if (!bReached)
            break;
        EXPECT_TRUE(cWeak.expired());
        EXPECT_TRUE(s.cLib.cDataBase->colListeners.empty());
        s.cLib.cSchedMan = std::make_shared<clsSchedMan>(s.cLib.cMod);
        s.cLib.Populate();
        ExpectSound(s);
        if (HasFailure())
            break;
    }
}

TEST(EditingDuringAPopulation, IsRefusedUnderTheOperationsOwnTitle)
{
    const auto Refusal = [](const std::wstring& sOperation) {
        return CriticalBox(L"Error in " + sOperation + L" [cSchedMan]",
                           L"70 The categories are being read from the database just now");
    };
    SmallStation s;
    const std::wstring sBefore = s.cLib.Tree();
    {
        const Interruption cInterruption(s, 2, [&] {
            clsSchedMan& cSchedMan = *s.cLib.cSchedMan;
            const std::shared_ptr<clsCat> cRock = s.MainCat(L"Rock");
            EXPECT_FALSE(s.cLib.CreateMainCat(L"Soul"));
            EXPECT_FALSE(cSchedMan.CreateCatLevel(cRock));
            cSchedMan.ShuffleCategories({cRock}, true);
            EXPECT_FALSE(cSchedMan.DeleteCats({cRock}));
            cSchedMan.MoveCutsInCategory(s.Level(L"Rock"), s.Rock(), 1);
            s.Change(eMoveHere, s.Level(L"Pop"));
            CatCollection colFrom;
            cSchedMan.RemoveCutFromCategory(nullptr, s.Rock()[0], colFrom);
            EXPECT_TRUE(colFrom.Empty());
        });
        s.cLib.Populate();
    }
    EXPECT_EQ(s.cPorts.cMessages.Boxes,
              (Boxes{Refusal(L"CreateMainCat"), Refusal(L"CreateCatLevel"), Refusal(L"ShuffleCategories"),
                     Refusal(L"DeleteCats"), Refusal(L"InsertCuts"), Refusal(L"DoMassCatChange"),
                     Refusal(L"RemoveCutFromCategory")}));
    EXPECT_EQ(s.cPorts.cMessages.Inputs, std::vector<ShownInput>());
    EXPECT_EQ(s.cLib.Tree(), sBefore);
}

TEST(EditingAfterAPopulation, IsServedOnceTheNewTreeIsComplete)
{
    // In the box that reports an error, and while queued notifications run.
    constexpr std::int32_t lLongest = std::numeric_limits<std::int32_t>::max();
    RadioPorts cPorts;
    cPorts.cFiles.MakeFolders(L"C:\\Radio");
    Library cLib(cPorts);
    for (const wchar_t* sKey : {L"a", L"b"})
        cLib.cDataBase->Add(sKey, L"Rock", 1, lLongest);
    Once(cPorts.cMessages.OnShown, [&] { EXPECT_TRUE(cLib.CreateMainCat(L"InTheBox")); });
    bool bAnnounced = false;
    bool bHandled = false;
    cLib.cHost.OnEvent = [&](const std::wstring& sLine) {
        if (sLine.starts_with(L"Start 2: Creating") && !std::exchange(bAnnounced, true))
            cLib.cDataBase->Announce(&DataBaseEvents::CutsAdded, Cuts{cLib.cDataBase->Add(L"c", L"Pop", 1)});
        if (sLine == L"Done: Updated Scheduler with new items." && !std::exchange(bHandled, true))
        {
            EXPECT_TRUE(cLib.CreateMainCat(L"WhileHandled"));
        }
    };
    cLib.Populate();
    cLib.cHost.OnEvent = nullptr;
    EXPECT_EQ(cLib.MainCatNames(), (Lines{L"Rock", L"InTheBox", L"Pop", L"WhileHandled"}));
    EXPECT_EQ(cPorts.cMessages.Boxes.size(), 1u) << "of the run times alone";
}

INSTANTIATE_TEST_SUITE_P(Operations, ReentrancyTest, testing::ValuesIn(actions),
                         [](const testing::TestParamInfo<Action>& operation) {
    std::string sName = operation.param.sName;
    std::replace(sName.begin(), sName.end(), ' ', '_');
    return sName;
});

} // namespace
} // namespace ravlo::test
