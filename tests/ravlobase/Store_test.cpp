// SPDX-License-Identifier: MIT
#include "ravlobase/Store.h"

#include "media/PlainCut.h"
#include "ravlobase/Support.h"

#include <functional>
#include <limits>
#include <utility>

namespace ravlo
{
namespace
{

constexpr double notADate = std::numeric_limits<double>::quiet_NaN();

// A free-standing cut of no database.
std::shared_ptr<Cut> PlainCut(const std::wstring& sKey)
{
    const auto cCut = NewPlainCut();
    cCut->SetKey(sKey);
    return cCut;
}

// Gives a cut a value in every property but the key.
void SetEverything(Cut& cCut)
{
    cCut.SetPath(L"E:\\moved.mp3");
    cCut.SetSecondaryKey(L"second");
    cCut.SetArtist(L"Bj\u00F6rk");
    cCut.SetTitle(L"\u65E5\u672C");
    cCut.SetAlbum(std::wstring(L"nul\0l", 5));
    cCut.SetYear(-44);
    cCut.SetRunTimemS(std::numeric_limits<std::int32_t>::max());
    cCut.SetDurationmS(std::numeric_limits<std::int32_t>::min());
    cCut.SetLastPlayed(45000.520833333336);
    cCut.SetOpener(true);
    cCut.SetCatLevel(40000);
    for (const wchar_t* sName : {L"Pop", L"AC/DC", L"a"})
        cCut.AddCategoryName(sName);
}

// --- opening and closing

TEST_F(StoreTest, OpeningAMissingFileMakesOneEmptyFile)
{
    EXPECT_TRUE(m_cStore.IsOpen());
    EXPECT_EQ(m_cStore.FileName(), m_sFile);
    EXPECT_TRUE(m_cStore.AllCuts().empty());
    EXPECT_EQ(m_cStore.CutCollection().Count(), 0U);
    Add(L"a");
    m_cStore.Close();
    EXPECT_EQ(m_cFolder.Names(), std::vector<std::string>{"library.rdb"});
}

TEST_F(StoreTest, EveryValueIsThereAfterReopening)
{
    const auto cCut = CutNamed(m_cStore, L"D:\\Music\\Bj\u00F6rk\\\U0001F600.mp3");
    SetEverything(*cCut);
    m_cStore.AddCuts({cCut});
    const auto colBefore = ContentOf(m_cStore);
    Reopen();
    ASSERT_EQ(ContentOf(m_cStore), colBefore);
    EXPECT_EQ(m_cStore.AllCuts()[0]->LastPlayed(), 45000.520833333336);
    EXPECT_EQ(m_cStore.AllCuts()[0]->CategoryNames(), (Lines{L"Pop", L"AC/DC", L"a"}));
}

TEST_F(StoreTest, CutsKeepTheirOrderAndNumbersAfterReopening)
{
    for (const auto* sKey : {L"z", L"a", L"m", L"b"})
        Add(sKey);
    m_cStore.RemoveCuts({ByKey(L"a")});
    Add(L"c");
    Reopen();
    EXPECT_EQ(Keys(), (Lines{L"z", L"m", L"b", L"c"}));
    EXPECT_EQ(ByKey(L"z")->ID(), 1);
    EXPECT_EQ(ByKey(L"b")->ID(), 4);
    EXPECT_EQ(ByKey(L"c")->ID(), 5);
    m_cStore.RemoveCuts({ByKey(L"c")});
    Reopen();
    EXPECT_EQ(Add(L"d")->ID(), 6) << "the number of a removed cut is not given again";
}

TEST_F(StoreTest, OpeningTwiceIsRefusedAndChangesNothing)
{
    Add(L"a");
    EXPECT_EQ(RaisedBy([&] { m_cStore.Open(m_cFolder.File("other.rdb")); }),
              (Raised{error::FileAlreadyOpen, L"The database \"" + m_sFile + L"\" is open already."}));
    EXPECT_EQ(m_cStore.FileName(), m_sFile);
    EXPECT_NE(ByKey(L"a"), nullptr);
    EXPECT_FALSE(std::filesystem::exists(m_cFolder.Path("other.rdb")));
}

TEST_F(StoreTest, EveryMemberOfAClosedDatabaseRaisesError91)
{
    const auto cCut = Add(L"a");
    m_cStore.Close();
    m_cStore.Close();
    EXPECT_FALSE(m_cStore.IsOpen());
    const std::pair<const char*, std::function<void()>> members[] = {
        {"FileName", [&] { m_cStore.FileName(); }},
        {"AllCuts", [&] { m_cStore.AllCuts(); }},
        {"CutByKey", [&] { (void)ByKey(L"a"); }},
        {"CutByArtistTitle", [&] { (void)ByNames(L"a", L"b"); }},
        {"CutCollection", [&] { m_cStore.CutCollection(); }},
        {"AddCuts", [&] { m_cStore.AddCuts({cCut}); }},
        {"ModifyCuts", [&] { m_cStore.ModifyCuts({cCut}); }},
        {"RemoveCuts", [&] { m_cStore.RemoveCuts({cCut}); }},
        {"ImportCsv", [&] { m_cStore.ImportCsv(L"x.csv"); }},
        {"Batch", [&] { Store::Batch cBatch(m_cStore); }},
        {"BeginGathering", [&] { m_cStore.BeginGathering(); }},
        {"WriteGathered", [&] { m_cStore.WriteGathered(); }},
    };
    for (const auto& [sName, member] : members)
        EXPECT_EQ(RaisedBy(member), (Raised{error::ObjectNotSet, L"The database is not open."})) << sName;
    // But it makes cuts and takes listeners.
    EXPECT_EQ(m_cStore.NewCut()->ID(), 0);
    Recorder& cRecorder = Listen();
    m_cStore.Open(m_sFile);
    Add(L"b");
    EXPECT_EQ(KeysOf(cRecorder.colAdded), Lines{L"b"});
}

TEST_F(StoreTest, ACutOutlivesItsDatabaseAsAFreeStandingOne)
{
    const auto cCut = Add(L"a", L"Artist");
    const auto& colCuts = m_cStore.CutCollection();
    EXPECT_EQ(colCuts.Count(), 1U);
    m_cStore.Close();
    EXPECT_EQ(colCuts.Count(), 0U);
    cCut->SetArtist(L"Other");
    cCut->SetKey(L"b");
    EXPECT_EQ(cCut->Artist(), L"Other");
    m_cStore.Open(m_sFile);
    EXPECT_EQ(ByKey(L"a")->Artist(), L"Artist");
    EXPECT_NE(ByKey(L"a"), cCut);
    EXPECT_EQ(&m_cStore.CutCollection(), &colCuts) << "the collection is always the same";
    EXPECT_EQ(colCuts.Count(), 1U);
}

// --- finding cuts

TEST_F(StoreTest, KeysAndNamesFindTheOneObjectIgnoringCase)
{
    const auto cCut = Add(L"D:\\\u00C4\u0416.mp3", L"Artist", L"Title");
    EXPECT_EQ(ByKey(L"d:\\\u00E4\u0436.MP3"), cCut);
    EXPECT_EQ(ByNames(L"ARTIST", L"title"), cCut);
    EXPECT_EQ(m_cStore.AllCuts(), Cuts{cCut});
    EXPECT_EQ(*m_cStore.CutCollection().Find(L"d:\\\u00E4\u0436.MP3"), cCut);
    EXPECT_EQ(NumberRaisedBy([&] { Add(L"d:\\\u00E4\u0436.mp3"); }), error::KeyAlreadyExists);
    EXPECT_EQ(ByKey(L"nowhere"), nullptr);
    EXPECT_EQ(ByNames(L"Title", L"Artist"), nullptr);
    EXPECT_EQ(ByNames(L"Artis", L"tTitle"), nullptr) << "each is compared by itself";
    EXPECT_EQ(ByNames(L"Artist", L"Title "), nullptr);
}

TEST_F(StoreTest, ArtistAndTitleFindTheFirstCutInDatabaseOrder)
{
    const auto cFirst = Add(L"1", L"Abba", L"Waterloo");
    const auto cSecond = Add(L"2", L"ABBA", L"WATERLOO");
    const auto cThird = Add(L"3", L"abba", L"waterloo");
    EXPECT_EQ(ByNames(L"Abba", L"Waterloo"), cFirst);
    m_cStore.RemoveCuts({cFirst});
    EXPECT_EQ(ByNames(L"Abba", L"Waterloo"), cSecond);
    cSecond->SetTitle(L"SOS");
    EXPECT_EQ(ByNames(L"Abba", L"Waterloo"), cThird);
    EXPECT_EQ(ByNames(L"Abba", L"sos"), cSecond);
    cSecond->SetTitle(L"Waterloo");
    EXPECT_EQ(ByNames(L"Abba", L"Waterloo"), cSecond) << "before the third";
    Reopen();
    EXPECT_EQ(ByNames(L"Abba", L"Waterloo"), ByKey(L"2"));
}

TEST_F(StoreTest, OneOfArtistAndTitleMayBeEmptyButNotBoth)
{
    auto cNeither = Add(L"0");
    const auto cArtist = Add(L"1", L"Abba", L"");
    const auto cTitle = Add(L"2", L"", L"Waterloo");
    EXPECT_EQ(ByNames(L"abba", L""), cArtist);
    EXPECT_EQ(ByNames(L"", L"waterloo"), cTitle);
    EXPECT_EQ(ByNames(L"", L""), nullptr);
    cNeither->SetTitle(L"Named");
    EXPECT_EQ(ByNames(L"", L"NAMED"), cNeither);
    cNeither->SetTitle(L"");
    EXPECT_EQ(ByNames(L"", L""), nullptr);
    EXPECT_EQ(ByNames(L"", L"NAMED"), nullptr) << "the former name";
    cNeither->SetTitle(L"Last");
    m_cStore.RemoveCuts({cNeither});
    cNeither.reset();
    EXPECT_EQ(ByNames(L"", L"Last"), nullptr) << "of a removed cut";
}

// --- adding

TEST_F(StoreTest, ANewCutThatIsAddedBecomesTheDatabasesOwnObject)
{
    auto cCut = CutNamed(m_cStore, L"a");
    EXPECT_EQ(cCut->ID(), 0);
    EXPECT_EQ(m_cStore.AddCuts({cCut}), 1);
    EXPECT_EQ(ByKey(L"a"), cCut);
    EXPECT_EQ(cCut->ID(), 1);
    cCut->SetArtist(L"Abba");
    ExpectStored();
}

TEST_F(StoreTest, AnyOtherCutIsCopied)
{
    const auto cPlain = PlainCut(L"a");
    SetEverything(*cPlain);
    const auto sExpected = ValuesText(*cPlain);
    Store cOther;
    cOther.Open(m_cFolder.File("other.rdb"));
    const auto cForeign = CutNamed(cOther, L"b", L"Abba");
    cOther.AddCuts({cForeign});
    EXPECT_EQ(m_cStore.AddCuts({cPlain, cForeign}), 2);
    cPlain->SetArtist(L"changed");
    EXPECT_NE(ByKey(L"a"), cPlain);
    EXPECT_EQ(ValuesText(*ByKey(L"a")), sExpected);
    EXPECT_EQ(cPlain->ID(), 0);
    ByKey(L"b")->SetArtist(L"here");
    EXPECT_EQ(cOther.CutByKey(TextKey(L"b")), cForeign) << "a cut of another database stays there";
    EXPECT_EQ(cForeign->Artist(), L"Abba");
}

TEST_F(StoreTest, AddingFillsInWhatACutNeeds)
{
    const auto cCut = NewPlainCut();
    cCut->SetPath(L"D:\\a.mp3");
    for (const wchar_t* sName : {L"Pop", L"", L"Rock"})
        cCut->AddCategoryName(sName);
    EXPECT_EQ(cCut->CatLevel(), 0);
    m_cStore.AddCuts({cCut});
    Reopen();
    const auto cOwn = ByKey(L"d:\\A.mp3");
    EXPECT_EQ(cOwn->Key().Text(), L"D:\\a.mp3");
    EXPECT_EQ(cOwn->CatLevel(), 1);
    for (const wchar_t* sIgnored : {L"", L"POP"})
        cOwn->AddCategoryName(sIgnored);
    EXPECT_EQ(cOwn->CategoryNames(), (Lines{L"Pop", L"Rock"}));
}

TEST_F(StoreTest, AddingIsAllOrNothing)
{
    const auto cOld = Add(L"old");
    const auto cNew = CutNamed(m_cStore, L"new");
    Recorder& cRecorder = Listen();
    const auto expectRefused = [&](const Cuts& colAfterNew, std::int32_t lNumber, const std::wstring& sText) {
        Cuts colCuts{cNew};
        colCuts.insert(colCuts.end(), colAfterNew.begin(), colAfterNew.end());
        EXPECT_EQ(RaisedBy([&] { m_cStore.AddCuts(colCuts); }), (Raised{lNumber, sText}));
        EXPECT_EQ(cRecorder.colLines.back(), L"done: Adding cuts failed: " + sText);
        EXPECT_TRUE(cRecorder.colAdded.empty());
        EXPECT_EQ(Keys(), Lines{L"old"});
        EXPECT_EQ(cNew->ID(), 0);
    };
    const auto Free = [&](const wchar_t* sKey) { return CutNamed(m_cStore, sKey); };
    expectRefused({Free(L"OLD")}, 457, L"There is a cut with the key \"OLD\" already.");
    expectRefused({cOld}, 457, L"There is a cut with the key \"old\" already.");
    expectRefused({Free(L"x"), Free(L"X")}, 457, L"There is a cut with the key \"X\" already.");
    expectRefused({cNew}, 457, L"There is a cut with the key \"new\" already.");
    expectRefused({Free(L"")}, 5, L"A cut needs a key.");
    const auto cBad = Free(L"bad");
    cBad->SetCatLevel(-1);
    expectRefused({cBad}, 5, L"The level of a cut has to be 1 or more.");
    cBad->SetCatLevel(1);
    cBad->SetLastPlayed(notADate);
    expectRefused({cBad}, 5, L"The last-played time is no date.");
    expectRefused({nullptr}, 91, L"Object variable or With block variable not set");
    ExpectStored();
}

TEST_F(StoreTest, AddingReportsEvery500CutsAndThenTheStoredCuts)
{
    Recorder& cRecorder = Listen();
    EXPECT_EQ(m_cStore.AddCuts({CutNamed(m_cStore, L"a"), PlainCut(L"b")}), 2);
    EXPECT_EQ(cRecorder.colLines, (Lines{L"start: Adding cuts 2", L"done: 2 cuts added.", L"added: a b"}));
    EXPECT_EQ(cRecorder.colAdded, m_cStore.AllCuts());
    Cuts colCuts;
    for (int i = 0; i < 1001; ++i)
        colCuts.push_back(CutNamed(m_cStore, L"k" + DecimalText(i)));
    cRecorder.colLines.clear();
    m_cStore.AddCuts(colCuts);
    ASSERT_EQ(cRecorder.colLines.size(), 5U);
    EXPECT_EQ(cRecorder.colLines[1], L"progress: Adding cuts 500/1001");
    EXPECT_EQ(cRecorder.colLines[2], L"progress: Adding cuts 1000/1001");
}

TEST_F(StoreTest, NoCutsRaiseNothing)
{
    Recorder& cRecorder = Listen();
    EXPECT_EQ(m_cStore.AddCuts({}), 0);
    EXPECT_EQ(m_cStore.ModifyCuts({}), 0);
    EXPECT_EQ(m_cStore.RemoveCuts({}), 0);
    EXPECT_EQ(m_cStore.RemoveCuts({CutNamed(m_cStore, L"unknown")}), 0);
    EXPECT_EQ(cRecorder.colLines, Lines{});
}

// --- modifying

TEST_F(StoreTest, ModifyingAnnouncesTheDatabasesOwnCuts)
{
    const auto cA = Add(L"a");
    const auto cB = Add(L"b");
    Recorder& cRecorder = Listen();
    cA->SetArtist(L"quiet");
    EXPECT_EQ(cRecorder.colLines, Lines{}) << "a property change raises nothing";
    EXPECT_EQ(m_cStore.ModifyCuts({cB, cA, cB}), 2);
    EXPECT_EQ(cRecorder.colLines, Lines{L"modified: b a"});
    EXPECT_EQ(cRecorder.colModified, (Cuts{cB, cA}));
}

TEST_F(StoreTest, ModifyingWithCopiesWritesTheLastOnesValuesFirst)
{
    const auto cOwn = Add(L"Key", L"Abba", L"Waterloo");
    const auto cFirst = cOwn->CloneCut();
    cFirst->SetArtist(L"first");
    const auto cLast = cOwn->CloneCut();
    SetEverything(*cLast);
    Recorder& cRecorder = Listen();
    EXPECT_EQ(m_cStore.ModifyCuts({cFirst, cLast, cOwn}), 1);
    EXPECT_EQ(cRecorder.colModified, Cuts{cOwn});
    EXPECT_EQ(ValuesText(*cOwn), ValuesText(*cLast));
    EXPECT_EQ(ByNames(cLast->Artist(), cLast->Title()), cOwn);
    EXPECT_EQ(ByNames(L"abba", L"waterloo"), nullptr);
    ExpectStored();
}

TEST_F(StoreTest, ACopyWithoutALevelLeavesTheLevel)
{
    const auto cOwn = Add(L"a");
    cOwn->SetCatLevel(7);
    m_cStore.ModifyCuts({CutNamed(m_cStore, L"A", L"Abba")});
    EXPECT_EQ(cOwn->CatLevel(), 7);
    EXPECT_EQ(cOwn->Artist(), L"Abba");
    EXPECT_EQ(cOwn->Key().Text(), L"a");
}

TEST_F(StoreTest, ModifyingIsAllOrNothing)
{
    Add(L"a", L"old");
    Recorder& cRecorder = Listen();
    const auto modify = [&](const std::shared_ptr<Cut>& cBad) {
        return RaisedBy([&] { m_cStore.ModifyCuts({CutNamed(m_cStore, L"a", L"new"), cBad}); });
    };
    EXPECT_EQ(modify(CutNamed(m_cStore, L"b")), (Raised{5, L"There is no cut with the key \"b\"."}));
    const auto cNegative = CutNamed(m_cStore, L"a");
    cNegative->SetCatLevel(-1);
    EXPECT_EQ(modify(cNegative).lNumber, error::InvalidProcedureCall);
    EXPECT_EQ(modify(nullptr).lNumber, error::ObjectNotSet);
    EXPECT_EQ(ByKey(L"a")->Artist(), L"old");
    EXPECT_EQ(cRecorder.colLines, Lines{});
}

// --- removing

TEST_F(StoreTest, RemovingTakesCutsOutByKey)
{
    const auto cA = Add(L"a", L"Abba", L"SOS");
    cA->SetCategoryText(L"pop/rock");
    Add(L"b");
    Recorder& cRecorder = Listen();
    EXPECT_EQ(NumberRaisedBy([&] { m_cStore.RemoveCuts({cA, nullptr}); }), error::ObjectNotSet);
    EXPECT_EQ(ByKey(L"a"), cA);
    EXPECT_EQ(m_cStore.RemoveCuts({CutNamed(m_cStore, L"A"), cA, CutNamed(m_cStore, L"unknown")}), 1);
    EXPECT_EQ(cRecorder.colLines, Lines{L"removed: a"});
    EXPECT_EQ(cRecorder.colRemoved, Cuts{cA});
    EXPECT_EQ(ByKey(L"a"), nullptr);
    EXPECT_EQ(ByNames(L"Abba", L"SOS"), nullptr);
    Reopen();
    EXPECT_EQ(Keys(), Lines{L"b"});
}

TEST_F(StoreTest, ManyCutsCanBeRemovedAtOnce)
{
    Cuts colOdd;
    Cuts colEven;
    for (int i = 0; i < 100; ++i)
        (i % 2 == 1 ? colOdd : colEven).push_back(Add(L"k" + DecimalText(i)));
    EXPECT_EQ(m_cStore.RemoveCuts(colOdd), 50);
    EXPECT_EQ(m_cStore.AllCuts(), colEven);
    EXPECT_EQ(m_cStore.CutCollection().Count(), 50U);
    EXPECT_EQ(ByKey(L"k1"), nullptr);
    EXPECT_EQ(ByKey(L"k98"), colEven.back());
    ExpectStored();
}

TEST_F(StoreTest, ARemovedCutIsFreeStandingAndCanBeAddedAgain)
{
    const auto cCut = Add(L"a");
    cCut->SetLastPlayed(45000.5);
    m_cStore.RemoveCuts({cCut});
    EXPECT_EQ(cCut->LastPlayed(), 45000.5);
    cCut->SetArtist(L"Abba");
    cCut->SetLastPlayed(45001);
    EXPECT_EQ(cCut->Artist(), L"Abba");
    EXPECT_EQ(cCut->LastPlayed(), 45001);
    m_cStore.AddCuts({cCut});
    EXPECT_EQ(ByKey(L"a"), cCut);
    EXPECT_EQ(cCut->ID(), 2);
}

// --- events

// Runs React in every CutsModified and ProgressStart.
class Reaction : public Recorder
{
public:
    void CutsModified(const Cuts& colCuts) override
    {
        Recorder::CutsModified(colCuts);
        React();
    }
    void ProgressStart(const std::wstring& sReason, std::int32_t lMax) override
    {
        Recorder::ProgressStart(sReason, lMax);
        React();
    }
    std::function<void()> React = [] {};
};

class ListenerTest : public StoreTest
{
protected:
    ListenerTest() { m_cStore.Advise(m_cReaction); }
    const Lines& HeardOfAChange(const Recorder& cRecorder)
    {
        EXPECT_EQ(m_cStore.ModifyCuts({m_cCut}), 1);
        return cRecorder.colLines;
    }

    const std::shared_ptr<Cut> m_cCut = Add(L"a");
    Reaction m_cReaction;
};

TEST_F(ListenerTest, AdvisedTwiceIsCalledOnce)
{
    m_cStore.Advise(m_cReaction);
    EXPECT_EQ(HeardOfAChange(m_cReaction), Lines{L"modified: a"});
    for (int i = 0; i < 2; ++i)
        m_cStore.Unadvise(m_cReaction);
    EXPECT_EQ(HeardOfAChange(m_cReaction), Lines{L"modified: a"});
}

TEST_F(ListenerTest, MayTakeAnotherOffInsideAnEvent)
{
    m_cReaction.React = [&] {
        m_cStore.Unadvise(m_cReaction);
        m_cStore.Unadvise(m_cRecorder);
    };
    EXPECT_EQ(HeardOfAChange(Listen()), Lines{});
    EXPECT_EQ(m_cReaction.colLines, Lines{L"modified: a"});
}

TEST_F(ListenerTest, AnExceptionDisturbsNobody)
{
    m_cReaction.React = [] { throw RuntimeError(error::Internal); };
    EXPECT_EQ(HeardOfAChange(Listen()), Lines{L"modified: a"});
}

TEST_F(ListenerTest, MayChangeTheDatabaseWhileProgressIsReported)
{
    bool bDone = false;
    m_cReaction.React = [&] {
        if (!std::exchange(bDone, true))
            Add(L"inner")->SetArtist(L"Abba");
    };
    Add(L"outer");
    Reopen();
    EXPECT_EQ(Keys(), (Lines{L"a", L"inner", L"outer"}));
    EXPECT_EQ(ByKey(L"inner")->Artist(), L"Abba");
}

TEST_F(ListenerTest, ClosingTheDatabaseEndsTheWorkWithAnError)
{
    m_cReaction.React = [&] { m_cStore.Close(); };
    const auto sCsv = m_cFolder.WithBytes("x.csv", "path\nb\n");
    EXPECT_EQ(NumberRaisedBy([&] { Add(L"b"); }), error::ObjectNotSet);
    m_cStore.Open(m_sFile);
    EXPECT_EQ(NumberRaisedBy([&] { m_cStore.ImportCsv(sCsv); }), error::ObjectNotSet);
    m_cStore.Open(m_sFile);
    EXPECT_EQ(Keys(), Lines{L"a"});
}

// --- gathered plays

class GatheringTest : public StoreTest
{
protected:
    const std::shared_ptr<Cut> m_cA = Add(L"a");
    const std::shared_ptr<Cut> m_cB = Add(L"b");
};

TEST_F(GatheringTest, ABatchKeepsItsOwnPlaysWhileOthersAreGathered)
{
    m_cStore.BeginGathering();
    m_cA->SetLastPlayed(1);
    {
        Store::Batch cBatch(m_cStore);
        m_cA->SetLastPlayed(2);
        m_cB->SetLastPlayed(2);
        EXPECT_EQ(NumberRaisedBy([&] { m_cStore.WriteGathered(); }), error::InvalidProcedureCall);
        EXPECT_EQ(NumberRaisedBy([&] { m_cStore.EndGathering(); }), error::InvalidProcedureCall);
    } // undone
    EXPECT_EQ(m_cA->LastPlayed(), 1);
    EXPECT_EQ(m_cB->LastPlayed(), 0);
    m_cStore.EndGathering();
    ExpectStored();
}

TEST_F(GatheringTest, AGatheredPlayGoesWithItsCut)
{
    m_cStore.BeginGathering();
    m_cA->SetLastPlayed(1);
    m_cB->SetLastPlayed(1);
    m_cStore.RemoveCuts({m_cA});
    m_cStore.WriteGathered();
    m_cA->SetLastPlayed(2); // free-standing now
    ExpectStored();
}

TEST_F(GatheringTest, AGatheredPlayHasToBeADateAndGatheringEndsWithTheFile)
{
    m_cStore.BeginGathering();
    EXPECT_EQ(NumberRaisedBy([&] { m_cA->SetLastPlayed(notADate); }), error::InvalidProcedureCall);
    EXPECT_EQ(m_cA->LastPlayed(), 0);
    Reopen();
    ByKey(L"a")->SetLastPlayed(1);
    ExpectStored(); // at once
}

} // namespace
} // namespace ravlo
