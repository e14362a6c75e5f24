// SPDX-License-Identifier: MIT
#include "platform/memory/FailingFiles.h"
#include "support/SyncTest.h"

#include <algorithm>
#include <array>
#include <cstdlib>

namespace ravlo::test
{
namespace
{

// A small station, in which every operation reports at least once: Rock 1 and 2, Pop 1, and Jazz without
// cuts.
constexpr std::size_t rockCuts = 104;

struct SmallStation
{
    explicit SmallStation(Files* cFiles = nullptr) : cLib(cPorts, cFiles ? *cFiles : cPorts.cFiles) {}

    void Fill()
    {
        for (std::size_t lCut = 1; lCut <= rockCuts; ++lCut)
            cLib.cDataBase->Add(L"r" + std::to_wstring(lCut), lCut % 3 == 0 ? L"Rock/Pop" : L"Rock", 1);
        for (int lCut = 1; lCut <= 3; ++lCut)
            cLib.cDataBase->Add(L"s" + std::to_wstring(lCut), L"Rock", 2);
        cLib.cDataBase->Add(L"p", L"Pop", 1);
        cLib.Populate();
        std::wstring sName = L"Jazz";
        cLib.cSchedMan->CreateMainCat(sName);
        cLib.cSchedMan->SaveHistoryAndOrdering(nullptr);
        cLib.cSchedMan->SetRotatesAllowed(true);
        cPorts.cMessages.Boxes.clear();
    }

    Cuts CutsOf(const std::wstring& sName, std::int32_t lLevel) const
    {
        const std::shared_ptr<clsCat> cLevel = cLib.Level(sName, lLevel);
        return cLevel ? Cuts(cLevel->SchedCuts()->begin(), cLevel->SchedCuts()->end()) : Cuts();
    }
    std::shared_ptr<Cut> Pick(const std::wstring& sKey, bool bMustBeOpener = true)
    {
        std::shared_ptr<clsCat> cMainCat;
        std::shared_ptr<clsCat> cSubCat;
        std::wstring sMainCatKey;
        return cLib.cSchedMan->NextCutFromRotation(sKey, bMustBeOpener, nullptr, cMainCat, cSubCat,
                                                   sMainCatKey);
    }
    void Change(eCatDragOptions eOption, const std::shared_ptr<clsCat>& cFrom,
                const std::shared_ptr<clsCat>& cTo, const Cuts& colCuts)
    {
        bool bCreated = false;
        if (cFrom && cTo)
            cLib.cSchedMan->DoMassCatChange(eOption, {cFrom}, cTo, colCuts, bCreated);
    }
    Cuts AddToDataBase(std::size_t count, const std::wstring& sCategoryText)
    {
        Cuts colCuts;
        for (std::size_t lCut = 0; lCut < count; ++lCut)
            colCuts.push_back(cLib.cDataBase->Add(L"new" + std::to_wstring(++lAdded), sCategoryText, 1));
        return colCuts;
    }

    RadioPorts cPorts;
    Library cLib;
    std::size_t lAdded = 0;
    std::wstring sPicked; // by an interruption
};

struct Action
{
    const char* sName;
    void (*run)(SmallStation&);
};

// What goes on while the host is called.
const Action operations[] =
    {
        {"import",
         [](SmallStation& s) {
    s.cLib.cDataBase->Announce(&DataBaseEvents::CutsAdded, s.AddToDataBase(61, L"Rock/Soul"));
         }},
        {"modify",
         [](SmallStation& s) {
    Cuts colCuts = s.CutsOf(L"Rock", 1);
    for (const std::shared_ptr<Cut>& cCut : colCuts)
        cCut->SetCatLevel(3);
    s.cLib.cDataBase->Announce(&DataBaseEvents::CutsModified, colCuts);
         }},
             {"remove",
              [](SmallStation& s) {
    const Cuts colCuts = s.CutsOf(L"Rock", 1);
    for (const std::shared_ptr<Cut>& cCut : colCuts)
        s.cLib.cDataBase->Remove(*cCut);
    s.cLib.cDataBase->Announce(&DataBaseEvents::CutsRemoved, colCuts);
              }},
    {"delete", [](SmallStation& s) { s.cLib.cSchedMan->DeleteCats({s.cLib.MainCat(L"Rock")}); }},
    {"delete a level", [](SmallStation& s) { s.cLib.cSchedMan->DeleteCats({s.cLib.Level(L"Rock", 1)}); }},
    {"copy",
     [](SmallStation& s) {
    s.Change(eCopyHere, s.cLib.Level(L"Rock", 1), s.cLib.Level(L"Pop", 1), s.CutsOf(L"Rock", 1));
     }},
    {"move",
     [](SmallStation& s) {
    s.Change(eMoveHere, s.cLib.Level(L"Rock", 1), s.cLib.MainCat(L"Jazz"), s.CutsOf(L"Rock", 1));
     }},
    {"move exclusively",
     [](SmallStation& s) {
    s.Change(eMoveExclusiveHere, s.cLib.Level(L"Rock", 1), s.cLib.Level(L"Rock", 2), s.CutsOf(L"Rock", 1));
     }},
    {"move in category",
     [](SmallStation& s) {
    Cuts colCuts = s.CutsOf(L"Rock", 1);
    colCuts.resize(40);
    s.cLib.cSchedMan->MoveCutsInCategory(s.cLib.Level(L"Rock", 1), colCuts, 60);
     }},
    {"shuffle", [](SmallStation& s) { s.cLib.cSchedMan->ShuffleCategories({s.cLib.MainCat(L"Rock")}); }},
    {"save", [](SmallStation& s) { s.cLib.cSchedMan->SaveHistoryAndOrdering(nullptr); }},
    {"create category",
     [](SmallStation& s) {
    std::wstring sName = L"Rock"; // refused first
    s.cPorts.cMessages.Answers = {BoxAnswer::Yes};
    s.cPorts.cMessages.Typed = {L"Funk"};
    s.cLib.cSchedMan->CreateMainCat(sName);
     }},
    {"create level",
     [](SmallStation& s) {
    s.cPorts.cMessages.Answers = {BoxAnswer::Yes};
    s.cPorts.cMessages.Typed = {L"x", L"1", L"7"};
    s.cLib.cSchedMan->CreateCatLevel(s.cLib.MainCat(L"Rock"));
     }},
    {"pick", [](SmallStation& s) { s.Pick(L"Rock\t1"); }}, // no opener: walks the whole level
    {"populate", [](SmallStation& s) { s.cLib.Populate(); }},
    };

// What the host does in a callback.
const Action interruptions[] =
    {
        {"picks",
         [](SmallStation& s) {
    const std::shared_ptr<Cut> cPicked = s.Pick(L"Rock\t1", false);
    ASSERT_TRUE(cPicked) << "never none";
    s.sPicked = cPicked->Key().Text();
         }},
        {"looks for an opener", [](SmallStation& s) { EXPECT_TRUE(s.Pick(L"Rock\t1")) << "never none"; }},
        {"populates", [](SmallStation& s) { s.cLib.Populate(); }},
        {"imports",
         [](SmallStation& s) {
    s.cLib.cDataBase->Announce(&DataBaseEvents::CutsAdded, s.AddToDataBase(2, L"Rock/Pop"));
         }},
             {"removes",
              [](SmallStation& s) {
    const Cuts colCuts(s.cLib.cDataBase->colCuts.end() - 2, s.cLib.cDataBase->colCuts.end());
    for (const std::shared_ptr<Cut>& cCut : colCuts)
        s.cLib.cDataBase->Remove(*cCut);
    s.cLib.cDataBase->Announce(&DataBaseEvents::CutsRemoved, colCuts);
              }},
    {"deletes Rock",
     [](SmallStation& s) {
    if (const auto cRock = s.cLib.MainCat(L"Rock"))
        s.cLib.cSchedMan->DeleteCats({cRock});
     }},
    {"deletes the targets",
     [](SmallStation& s) {
    Cats colCats;
    for (const auto& cCat : {s.cLib.Level(L"Pop", 1), s.cLib.Level(L"Rock", 2), s.cLib.MainCat(L"Jazz")})
        if (cCat)
            colCats.push_back(cCat);
    s.cLib.cSchedMan->DeleteCats(colCats);
     }},
    {"moves cuts",
     [](SmallStation& s) {
    s.Change(eMoveHere, s.cLib.Level(L"Rock", 1), s.cLib.Level(L"Pop", 1), s.CutsOf(L"Rock", 1));
     }},
    {"saves",
     [](SmallStation& s) {
    s.cLib.cSchedMan->SaveHistoryAndOrdering(nullptr);
    s.cLib.cSchedMan->SaveCatNames();
     }},
    {"shuffles",
     [](SmallStation& s) {
    if (const auto cRock = s.cLib.MainCat(L"Rock"))
        s.cLib.cSchedMan->ShuffleCategories({cRock});
     }},
    {"creates",
     [](SmallStation& s) {
    std::wstring sName = L"Made meanwhile";
    s.cLib.cSchedMan->CreateMainCat(sName);
     }},
    };

// Tree, cuts and files of a station agree: each cut stands once in each of its categories, at its level, and
// nowhere else; levels ascend; run times are the sums; what is on the disk brings the same orders back.
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
            for (std::size_t lAt = 0; lAt < colCuts.Count(); ++lAt)
            {
                ++entries;
                const Cut& cCut = *colCuts.At(lAt);
                total += cCut.RunTimemS();
                ASSERT_EQ(*colCuts.KeyAt(lAt), cCut.Key());
                ASSERT_EQ(cCut.CatLevel(), cSubCat->CatLevel());
                ASSERT_TRUE(cCut.HasCategoryName(cMainCat->CatName()));
                ASSERT_EQ(cLib.cDataBase->CutByKey(cCut.Key()), colCuts.At(lAt)) << "the database's own";
            }
            ASSERT_EQ(std::int64_t{cSubCat->AverageRunTimemS()} * cSubCat->TotalCuts(), total);
        }
    }
    std::size_t assigned = 0;
    for (const std::shared_ptr<Cut>& cCut : cLib.cDataBase->colCuts)
        assigned += cCut->CategoryNames().size();
    ASSERT_EQ(entries, assigned) << "no cut is missing anywhere";
}

using Orders = std::map<std::pair<std::wstring, std::int32_t>, Keys>;

Orders OrdersOf(const Library& cLib)
{
    Orders orders;
    for (const std::shared_ptr<clsCat>& cMainCat : *cLib.cSchedMan->colMainCats())
        for (const std::shared_ptr<clsCat>& cSubCat : *cMainCat->SubCats())
            orders[{cMainCat->CatName(), cSubCat->CatLevel()}] =
                cLib.Order(cMainCat->CatName(), cSubCat->CatLevel());
    return orders;
}

void ExpectARestartBringsAllBack(SmallStation& s)
{
    const Orders before = OrdersOf(s.cLib);
    const Lines colNames = s.cLib.MainCatNames();
    s.cLib.Restart();
    Lines colAfter = s.cLib.MainCatNames();
    std::sort(colAfter.begin(), colAfter.end());
    Lines colSorted = colNames;
    std::sort(colSorted.begin(), colSorted.end());
    ASSERT_EQ(colAfter, colSorted);
    ASSERT_EQ(OrdersOf(s.cLib), before);
    ASSERT_EQ(s.cPorts.TemporaryFiles(), Lines());
}

// Calls do something at the n-th point at which the host runs: an event, a pump, a sleep, a box.
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
    // Every third point, another third for each interruption; all of them with RAVLO_LONG.
    const int lStride = std::getenv("RAVLO_LONG") ? 1 : 3;
    int lFirst = 0;
    for (const Action& interruption : interruptions)
        for (int lAt = lFirst++ % lStride;; lAt += lStride)
        {
            SCOPED_TRACE(std::string(operation.sName) + ", and at point " + std::to_string(lAt) +
                         " the host " + interruption.sName);
            SmallStation s;
            s.Fill();
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
            s.cLib.cSchedMan->SaveHistoryAndOrdering(nullptr);
            if (interruption.sName == std::string("populates"))
                s.cLib.Populate(); // a category made before the host's reload may be saved after it
            ExpectARestartBringsAllBack(s);
            if (HasFailure() || !bReached)
                break;
        }
}

TEST_P(ReentrancyTest, AManagerReleasedInACallbackFinishesItsCallAndThenEnds)
{
    const Action& operation = GetParam();
    if (operation.sName == std::string("modify"))
        return; // has no point at which the host runs
    for (int lAt = 0;; ++lAt)
    {
        SCOPED_TRACE(std::string(operation.sName) + ", released at point " + std::to_string(lAt));
        SmallStation s;
        s.Fill();
        // As a COM call does, the operation itself holds nothing; the manager keeps itself alive.
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

TEST(EditingDuringAPopulation, IsRefusedUnderTheOperationsOwnTitleAndTheTreeStaysAsItIs)
{
    const auto Refusal = [](const std::wstring& sOperation) {
        return CriticalBox(L"Error in " + sOperation + L" [cSchedMan]",
                           L"70 The categories are being read from the database just now");
    };
    SmallStation s;
    s.Fill();
    const Orders before = OrdersOf(s.cLib);
    {
        const Interruption cInterruption(s, 2, [&] {
            clsSchedMan& cSchedMan = *s.cLib.cSchedMan;
            std::wstring sName = L"Soul";
            EXPECT_FALSE(cSchedMan.CreateMainCat(sName));
            EXPECT_FALSE(cSchedMan.CreateCatLevel(s.cLib.MainCat(L"Rock")));
            cSchedMan.ShuffleCategories({s.cLib.MainCat(L"Rock")}, true);
            EXPECT_FALSE(cSchedMan.DeleteCats({s.cLib.MainCat(L"Rock")}));
            cSchedMan.MoveCutsInCategory(s.cLib.Level(L"Rock", 1), s.CutsOf(L"Rock", 1), 1);
            s.Change(eMoveHere, s.cLib.Level(L"Rock", 1), s.cLib.Level(L"Pop", 1), s.CutsOf(L"Rock", 1));
            CatCollection colFrom;
            cSchedMan.RemoveCutFromCategory(nullptr, s.CutsOf(L"Rock", 1)[0], colFrom);
            EXPECT_TRUE(colFrom.Empty());
        });
        s.cLib.Populate();
    }
    EXPECT_EQ(s.cPorts.cMessages.Boxes,
              (Boxes{Refusal(L"CreateMainCat"), Refusal(L"CreateCatLevel"), Refusal(L"ShuffleCategories"),
                     Refusal(L"DeleteCats"), Refusal(L"InsertCuts"), Refusal(L"DoMassCatChange"),
                     Refusal(L"RemoveCutFromCategory")}));
    EXPECT_EQ(s.cPorts.cMessages.Inputs, std::vector<ShownInput>());
    EXPECT_EQ(OrdersOf(s.cLib), before);
}

TEST(EditingAfterAPopulation, IsServedOnceTheNewTreeIsComplete)
{
    // In the box that reports what went wrong, and while announcements that waited are handled.
    constexpr std::int32_t lLongest = std::numeric_limits<std::int32_t>::max();
    RadioPorts cPorts;
    cPorts.cFiles.MakeFolders(L"C:\\Radio");
    Library cLib(cPorts);
    for (const wchar_t* sKey : {L"a", L"b"})
        cLib.cDataBase->Add(sKey, L"Rock", 1, lLongest);
    const auto Create = [&](std::wstring sName) { EXPECT_TRUE(cLib.cSchedMan->CreateMainCat(sName)); };
    cPorts.cMessages.OnShown = [&] {
        cPorts.cMessages.OnShown = nullptr;
        Create(L"InTheBox");
    };
    bool bAnnounced = false;
    bool bHandled = false;
    cLib.cHost.OnEvent = [&](const std::wstring& sLine) {
        if (sLine.starts_with(L"Start 2: Creating") && !std::exchange(bAnnounced, true))
            cLib.cDataBase->Announce(&DataBaseEvents::CutsAdded, Cuts{cLib.cDataBase->Add(L"c", L"Pop", 1)});
        if (sLine == L"Done: Updated Scheduler with new items." && !std::exchange(bHandled, true))
            Create(L"WhileHandled");
    };
    cLib.Populate();
    cLib.cHost.OnEvent = nullptr;
    EXPECT_EQ(cLib.MainCatNames(), (Lines{L"Rock", L"InTheBox", L"Pop", L"WhileHandled"}));
    EXPECT_EQ(cPorts.cMessages.Boxes.size(), 1u) << "of the run times alone";
}

// ---- saves that fail

TEST_P(ReentrancyTest, FailingFileOperationIsShownOnceAndDamagesNothingElse)
{
    const Action& operation = GetParam();
    if (operation.sName == std::string("populate"))
        return; // reads
    // What the operation comes to when nothing fails.
    SmallStation cGood;
    cGood.Fill();
    const std::map<std::wstring, std::string> before = [&] {
        std::map<std::wstring, std::string> files;
        for (const std::wstring& sPath : cGood.cPorts.cFiles.Paths())
            files[sPath] = cGood.cPorts.cFiles.Get(sPath);
        return files;
    }();
    operation.run(cGood);
    const Orders expected = OrdersOf(cGood.cLib);
    const std::size_t ownBoxes = cGood.cPorts.cMessages.Boxes.size();

    for (int lGood = 0;; ++lGood)
    {
        SCOPED_TRACE(std::string(operation.sName) + ", failing after " + std::to_string(lGood) + " steps");
        RadioPorts cBack; // the disk
        struct Switch final : Files
        {
            Files* cTo;
            explicit Switch(Files& cFiles) : cTo(&cFiles) {}
            Presence PresenceOf(const std::wstring& s) const override { return cTo->PresenceOf(s); }
            Presence PresenceOfFolder(const std::wstring& s) const override
            {
                return cTo->PresenceOfFolder(s);
            }
            void CreateFolder(const std::wstring& s) override { cTo->CreateFolder(s); }
            std::vector<FileEntry> FilesIn(const std::wstring& s) const override { return cTo->FilesIn(s); }
            std::string ReadAll(const std::wstring& s, Patience e) const override
            {
                return cTo->ReadAll(s, e);
            }
            void WriteNew(const std::wstring& s, std::string_view b) override { cTo->WriteNew(s, b); }
            void Append(const std::wstring& s, std::string_view b) override { cTo->Append(s, b); }
            void Rename(const std::wstring& a, const std::wstring& b, Patience e) override
            {
                cTo->Rename(a, b, e);
            }
            void Delete(const std::wstring& s) override { cTo->Delete(s); }
            std::unique_ptr<HeldFile> HoldOpen(const std::wstring& s) override { return cTo->HoldOpen(s); }
            std::wstring LibraryFolder() const override { return cTo->LibraryFolder(); }
        } cSwitch(cBack.cFiles);
        SmallStation s(&cSwitch);
        s.Fill();
        FailingFiles cFailing(cBack.cFiles, lGood);
        cSwitch.cTo = &cFailing;
        operation.run(s);
        cSwitch.cTo = &cBack.cFiles;

        if (operation.sName != std::string("create category") || s.cLib.MainCat(L"Funk"))
        {
            EXPECT_EQ(OrdersOf(s.cLib), expected) << "memory is as if nothing had failed";
        }
        ExpectSound(s);
        std::size_t lOld = 0;
        for (const std::wstring& sPath : cBack.cFiles.Paths())
        {
            if (!sPath.ends_with(L".sif") && !sPath.ends_with(L"MainCats.txt"))
                continue;
            const std::string& bytes = cBack.cFiles.Get(sPath);
            const bool bNew =
                cGood.cPorts.cFiles.FileExists(sPath) && bytes == cGood.cPorts.cFiles.Get(sPath);
            const auto old = before.find(sPath);
            const bool bAhead = sPath.ends_with(L".sif") && SifWithoutGuards(bytes) != bytes;
            EXPECT_TRUE(bNew || bAhead || (old != before.end() && bytes == old->second))
                << "old, written ahead of the change, or new, never a part";
            lOld += bNew ? 0 : 1;
        }
        EXPECT_LE(lOld, 1u) << "the other files are written";
        EXPECT_EQ(cBack.TemporaryFiles(), Lines());
        EXPECT_LE(s.cPorts.cMessages.Boxes.size(), ownBoxes + 1);
        s.cLib.cSchedMan->SaveHistoryAndOrdering(nullptr);
        ExpectARestartBringsAllBack(s);
        if (HasFailure() || !cFailing.bFailed)
            break;
    }
}

INSTANTIATE_TEST_SUITE_P(Operations, ReentrancyTest, testing::ValuesIn(operations),
                         [](const testing::TestParamInfo<Action>& operation) {
    std::string sName = operation.param.sName;
    std::replace(sName.begin(), sName.end(), ' ', '_');
    return sName;
});

} // namespace
} // namespace ravlo::test
