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

using Lines = std::vector<std::wstring>;

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

TEST_F(StoreTest, WhatWasAddedIsThereAfterReopening)
{
    auto cCut = m_cStore.NewCut();
    cCut->SetKey(L"D:\\Music\\Bj\u00F6rk\\\U0001F600.mp3");
    cCut->SetPath(L"E:\\moved.mp3");
    cCut->SetSecondaryKey(L"second");
    cCut->SetArtist(L"Bj\u00F6rk");
    cCut->SetTitle(L"\u65E5\u672C");
    cCut->SetAlbum(std::wstring(L"nul\0l", 5));
    cCut->SetYear(-44);
    cCut->SetRunTimemS(std::numeric_limits<std::int32_t>::max());
    cCut->SetDurationmS(std::numeric_limits<std::int32_t>::min());
    cCut->SetLastPlayed(45000.520833333336);
    cCut->SetOpener(true);
    cCut->SetCatLevel(40000);
    cCut->AddCategoryName(L"Pop");
    cCut->AddCategoryName(L"AC/DC");
    cCut->AddCategoryName(L"a");
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
    EXPECT_EQ(KeysOf(m_cStore.AllCuts()), (Lines{L"z", L"m", L"b", L"c"}));
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
    const auto raised = RaisedBy([&] { m_cStore.Open(m_cFolder.File("other.rdb")); });
    EXPECT_EQ(raised.lNumber, error::FileAlreadyOpen);
    EXPECT_EQ(raised.sDescription, L"The database \"" + m_sFile + L"\" is open already.");
    EXPECT_EQ(m_cStore.FileName(), m_sFile);
    EXPECT_NE(ByKey(L"a"), nullptr);
    EXPECT_FALSE(std::filesystem::exists(m_cFolder.Path("other.rdb")));
}

TEST_F(StoreTest, EveryMemberOfAClosedDatabaseRaisesError91)
{
    Add(L"a");
    const auto cCut = ByKey(L"a");
    m_cStore.Close();
    const std::pair<const char*, std::function<void()>> members[] = {
        {"FileName", [&] { m_cStore.FileName(); }},
        {"AllCuts", [&] { m_cStore.AllCuts(); }},
        {"CutByKey", [&] { (void)m_cStore.CutByKey(TextKey(L"a")); }},
        {"CutByArtistTitle", [&] { (void)m_cStore.CutByArtistTitle(L"a", L"b"); }},
        {"CutCollection", [&] { m_cStore.CutCollection(); }},
        {"AddCuts", [&] { m_cStore.AddCuts({cCut}); }},
        {"ModifyCuts", [&] { m_cStore.ModifyCuts({cCut}); }},
        {"RemoveCuts", [&] { m_cStore.RemoveCuts({cCut}); }},
        {"ImportCsv", [&] { m_cStore.ImportCsv(L"x.csv"); }},
        {"Batch", [&] { Store::Batch cBatch(m_cStore); }},
    };
    for (const auto& [sName, member] : members)
    {
        const auto raised = RaisedBy(member);
        EXPECT_EQ(raised.lNumber, error::ObjectNotSet) << sName;
        EXPECT_EQ(raised.sDescription, L"The database is not open.") << sName;
    }
}

TEST_F(StoreTest, AClosedDatabaseStillMakesCutsAndTakesListeners)
{
    m_cStore.Close();
    m_cStore.Close();
    EXPECT_FALSE(m_cStore.IsOpen());
    EXPECT_EQ(m_cStore.NewCut()->ID(), 0);
    Recorder& cRecorder = Listen();
    m_cStore.Open(m_sFile);
    Add(L"a");
    EXPECT_EQ(KeysOf(cRecorder.colAdded), Lines{L"a"});
}

TEST_F(StoreTest, ACutOutlivesItsDatabaseAsAFreeStandingOne)
{
    const auto cCut = Add(L"a", L"Artist");
    m_cStore.Close();
    cCut->SetArtist(L"Other");
    cCut->SetKey(L"b");
    EXPECT_EQ(cCut->Artist(), L"Other");
    m_cStore.Open(m_sFile);
    EXPECT_EQ(ByKey(L"a")->Artist(), L"Artist");
    EXPECT_NE(ByKey(L"a"), cCut);
}

TEST_F(StoreTest, TheCollectionStaysTheSameObjectAndIsEmptyWhileClosed)
{
    Add(L"a");
    const auto& colCuts = m_cStore.CutCollection();
    EXPECT_EQ(colCuts.Count(), 1U);
    m_cStore.Close();
    EXPECT_EQ(colCuts.Count(), 0U);
    m_cStore.Open(m_sFile);
    EXPECT_EQ(&m_cStore.CutCollection(), &colCuts);
    EXPECT_EQ(colCuts.Count(), 1U);
}

// --- finding cuts

TEST_F(StoreTest, TheSameCutIsTheSameObject)
{
    const auto cCut = Add(L"D:\\A.mp3", L"Artist", L"Title");
    EXPECT_EQ(ByKey(L"d:\\a.MP3"), cCut);
    EXPECT_EQ(m_cStore.CutByArtistTitle(L"ARTIST", L"title"), cCut);
    EXPECT_EQ(m_cStore.AllCuts(), Cuts{cCut});
    EXPECT_EQ(*m_cStore.CutCollection().Find(L"D:\\A.MP3"), cCut);
}

TEST_F(StoreTest, KeysAreFoldedBeyondAscii)
{
    const auto cCut = Add(L"D:\\\u00C4\u0416.mp3");
    EXPECT_EQ(ByKey(L"d:\\\u00E4\u0436.mp3"), cCut);
    EXPECT_EQ(NumberRaisedBy([&] { Add(L"d:\\\u00E4\u0436.mp3"); }), error::KeyAlreadyExists);
    EXPECT_EQ(ByKey(L"nowhere"), nullptr);
}

TEST_F(StoreTest, ArtistAndTitleFindTheFirstCutInDatabaseOrder)
{
    const auto cFirst = Add(L"1", L"Abba", L"Waterloo");
    const auto cSecond = Add(L"2", L"ABBA", L"WATERLOO");
    const auto cThird = Add(L"3", L"abba", L"waterloo");
    EXPECT_EQ(m_cStore.CutByArtistTitle(L"Abba", L"Waterloo"), cFirst);
    m_cStore.RemoveCuts({cFirst});
    EXPECT_EQ(m_cStore.CutByArtistTitle(L"Abba", L"Waterloo"), cSecond);
    cSecond->SetTitle(L"SOS");
    EXPECT_EQ(m_cStore.CutByArtistTitle(L"Abba", L"Waterloo"), cThird);
    EXPECT_EQ(m_cStore.CutByArtistTitle(L"Abba", L"sos"), cSecond);
    cSecond->SetTitle(L"Waterloo");
    EXPECT_EQ(m_cStore.CutByArtistTitle(L"Abba", L"Waterloo"), cSecond) << "it comes before the third";
    Reopen();
    EXPECT_EQ(m_cStore.CutByArtistTitle(L"Abba", L"Waterloo"), ByKey(L"2"));
}

TEST_F(StoreTest, ArtistAndTitleAreComparedEachOnItsOwn)
{
    Add(L"1", L"ab", L"c");
    EXPECT_EQ(m_cStore.CutByArtistTitle(L"a", L"bc"), nullptr);
    EXPECT_EQ(m_cStore.CutByArtistTitle(L"c", L"ab"), nullptr);
    EXPECT_EQ(m_cStore.CutByArtistTitle(L"ab", L"c "), nullptr);
}

TEST_F(StoreTest, OneOfArtistAndTitleMayBeEmptyButNotBoth)
{
    const auto cNeither = Add(L"0");
    const auto cArtist = Add(L"1", L"Abba", L"");
    const auto cTitle = Add(L"2", L"", L"Waterloo");
    EXPECT_EQ(m_cStore.CutByArtistTitle(L"abba", L""), cArtist);
    EXPECT_EQ(m_cStore.CutByArtistTitle(L"", L"waterloo"), cTitle);
    EXPECT_EQ(m_cStore.CutByArtistTitle(L"", L""), nullptr);
    cNeither->SetTitle(L"Named");
    EXPECT_EQ(m_cStore.CutByArtistTitle(L"", L"NAMED"), cNeither);
    cNeither->SetTitle(L"");
    EXPECT_EQ(m_cStore.CutByArtistTitle(L"", L""), nullptr);
    EXPECT_EQ(m_cStore.CutByArtistTitle(L"", L"NAMED"), nullptr);
}

TEST_F(StoreTest, APairThatACutHadOnceIsForgotten)
{
    auto cCut = Add(L"1", L"Abba", L"Waterloo");
    cCut->SetArtist(L"Ace");
    m_cStore.RemoveCuts({cCut});
    cCut.reset();
    EXPECT_EQ(m_cStore.CutByArtistTitle(L"Abba", L"Waterloo"), nullptr);
    EXPECT_EQ(m_cStore.CutByArtistTitle(L"Ace", L"Waterloo"), nullptr);
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
    Reopen();
    EXPECT_EQ(ByKey(L"a")->Artist(), L"Abba");
}

TEST_F(StoreTest, OfAnyOtherCutTheValuesAreTaken)
{
    const auto cPlain = NewPlainCut();
    cPlain->SetKey(L"a");
    cPlain->SetCategoryText(L"pop/rock");
    cPlain->SetCatLevel(3);
    cPlain->SetArtist(L"Abba");
    cPlain->SetLastPlayed(40000.25);
    const auto sExpected = ValuesText(*cPlain);
    EXPECT_EQ(m_cStore.AddCuts({cPlain}), 1);
    cPlain->SetArtist(L"changed");
    ASSERT_NE(ByKey(L"a"), nullptr);
    EXPECT_NE(ByKey(L"a"), cPlain);
    EXPECT_EQ(ValuesText(*ByKey(L"a")), sExpected);
    EXPECT_EQ(cPlain->ID(), 0);
}

TEST_F(StoreTest, ACutOfAnotherDatabaseStaysThere)
{
    Store cOther;
    cOther.Open(m_cFolder.File("other.rdb"));
    const auto cCut = CutNamed(cOther, L"a", L"Abba");
    cOther.AddCuts({cCut});
    m_cStore.AddCuts({cCut});
    ByKey(L"a")->SetArtist(L"here");
    EXPECT_EQ(cOther.CutByKey(TextKey(L"a")), cCut);
    EXPECT_EQ(cCut->Artist(), L"Abba");
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
    const auto Free = [&](const wchar_t* sKey) { return CutNamed(m_cStore, sKey); };
    const auto cNegative = Free(L"negative");
    cNegative->SetCatLevel(-1);
    const auto cUndated = Free(L"undated");
    cUndated->SetLastPlayed(std::numeric_limits<double>::quiet_NaN());
    struct Case
    {
        Cuts colCuts;
        std::int32_t lNumber;
        const wchar_t* sDescription;
    };
    const auto cTwice = Free(L"twice");
    const Case cases[] = {
        {{Free(L"new"), Free(L"OLD")}, 457, L"There is a cut with the key \"OLD\" already."},
        {{Free(L"new"), cOld}, 457, L"There is a cut with the key \"old\" already."},
        {{Free(L"new"), Free(L"x"), Free(L"X")}, 457, L"There is a cut with the key \"X\" already."},
        {{cTwice, cTwice}, 457, L"There is a cut with the key \"twice\" already."},
        {{Free(L"new"), Free(L"")}, 5, L"A cut needs a key."},
        {{Free(L"new"), cNegative}, 5, L"The level of a cut has to be 1 or more."},
        {{Free(L"new"), cUndated}, 5, L"The last-played time is no date."},
        {{Free(L"new"), nullptr}, 91, L"Object variable or With block variable not set"},
    };
    for (const auto& test : cases)
    {
        Recorder cRecorder;
        m_cStore.Advise(cRecorder);
        const auto raised = RaisedBy([&] { m_cStore.AddCuts(test.colCuts); });
        m_cStore.Unadvise(cRecorder);
        EXPECT_EQ(raised.lNumber, test.lNumber) << test.colCuts.size();
        EXPECT_EQ(raised.sDescription, test.sDescription);
        EXPECT_EQ(cRecorder.colLines.back(), L"done: Adding cuts failed: " + raised.sDescription);
        EXPECT_TRUE(cRecorder.colAdded.empty());
        EXPECT_EQ(KeysOf(m_cStore.AllCuts()), Lines{L"old"});
        EXPECT_EQ(test.colCuts[0]->ID(), test.colCuts[0] == cOld ? 1 : 0);
    }
    Reopen();
    EXPECT_EQ(KeysOf(m_cStore.AllCuts()), Lines{L"old"});
}

TEST_F(StoreTest, AddingRaisesProgressAndThenTheStoredCuts)
{
    Recorder& cRecorder = Listen();
    const auto cPlain = NewPlainCut();
    cPlain->SetKey(L"b");
    EXPECT_EQ(m_cStore.AddCuts({CutNamed(m_cStore, L"a"), cPlain}), 2);
    EXPECT_EQ(cRecorder.colLines, (Lines{L"start: Adding cuts 2", L"done: 2 cuts added.", L"added: a b"}));
    EXPECT_EQ(cRecorder.colAdded, m_cStore.AllCuts());
}

TEST_F(StoreTest, AddingReportsProgressEvery500Cuts)
{
    Recorder& cRecorder = Listen();
    Cuts colCuts;
    for (int i = 0; i < 1001; ++i)
        colCuts.push_back(CutNamed(m_cStore, L"k" + DecimalText(i)));
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

TEST_F(StoreTest, ModifyingWithACopyWritesItsValuesFirst)
{
    const auto cOwn = Add(L"Key", L"Abba", L"Waterloo");
    const auto cCopy = cOwn->CloneCut();
    cCopy->SetPath(L"new path");
    cCopy->SetSecondaryKey(L"s");
    cCopy->SetArtist(L"Ace");
    cCopy->SetTitle(L"Beautiful");
    cCopy->SetAlbum(L"Album");
    cCopy->SetYear(1998);
    cCopy->SetRunTimemS(1);
    cCopy->SetDurationmS(2);
    cCopy->SetLastPlayed(3.5);
    cCopy->SetOpener(true);
    cCopy->SetCatLevel(4);
    cCopy->SetCategoryText(L"x/y");
    Recorder& cRecorder = Listen();
    EXPECT_EQ(m_cStore.ModifyCuts({cCopy}), 1);
    EXPECT_EQ(cRecorder.colModified, Cuts{cOwn});
    EXPECT_EQ(ValuesText(*cOwn), ValuesText(*cCopy));
    EXPECT_EQ(m_cStore.CutByArtistTitle(L"ace", L"beautiful"), cOwn);
    EXPECT_EQ(m_cStore.CutByArtistTitle(L"abba", L"waterloo"), nullptr);
    Reopen();
    EXPECT_EQ(ValuesText(*ByKey(L"key")), ValuesText(*cCopy));
}

TEST_F(StoreTest, OfSeveralCopiesOfOneCutTheLastCounts)
{
    const auto cOwn = Add(L"a", L"old");
    const auto cFirst = cOwn->CloneCut();
    const auto cSecond = cOwn->CloneCut();
    cFirst->SetArtist(L"first");
    cFirst->SetYear(1);
    cSecond->SetArtist(L"second");
    EXPECT_EQ(m_cStore.ModifyCuts({cFirst, cSecond, cOwn}), 1);
    const auto sExpected = ValuesText(*cSecond);
    EXPECT_EQ(ValuesText(*cOwn), sExpected);
    Reopen();
    EXPECT_EQ(ValuesText(*ByKey(L"a")), sExpected);
}

TEST_F(StoreTest, ACopyWithoutALevelLeavesTheLevel)
{
    const auto cOwn = Add(L"a");
    cOwn->SetCatLevel(7);
    const auto cCopy = CutNamed(m_cStore, L"A", L"Abba");
    m_cStore.ModifyCuts({cCopy});
    EXPECT_EQ(cOwn->CatLevel(), 7);
    EXPECT_EQ(cOwn->Artist(), L"Abba");
    EXPECT_EQ(cOwn->Key().Text(), L"a");
}

TEST_F(StoreTest, ModifyingIsAllOrNothing)
{
    Add(L"a", L"old");
    const auto cGood = CutNamed(m_cStore, L"a", L"new");
    const auto cNegative = CutNamed(m_cStore, L"a");
    cNegative->SetCatLevel(-1);
    const auto cUnknown = CutNamed(m_cStore, L"b");
    Recorder& cRecorder = Listen();
    const auto raised = RaisedBy([&] { m_cStore.ModifyCuts({cGood, cUnknown}); });
    EXPECT_EQ(raised.lNumber, error::InvalidProcedureCall);
    EXPECT_EQ(raised.sDescription, L"There is no cut with the key \"b\".");
    EXPECT_EQ(NumberRaisedBy([&] { m_cStore.ModifyCuts({cGood, cNegative}); }), error::InvalidProcedureCall);
    EXPECT_EQ(NumberRaisedBy([&] { m_cStore.ModifyCuts({cGood, nullptr}); }), error::ObjectNotSet);
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
    const auto cCopy = CutNamed(m_cStore, L"A");
    EXPECT_EQ(m_cStore.RemoveCuts({cCopy, cA, CutNamed(m_cStore, L"unknown")}), 1);
    EXPECT_EQ(cRecorder.colLines, Lines{L"removed: a"});
    EXPECT_EQ(cRecorder.colRemoved, Cuts{cA});
    EXPECT_EQ(ByKey(L"a"), nullptr);
    EXPECT_EQ(m_cStore.CutByArtistTitle(L"Abba", L"SOS"), nullptr);
    Reopen();
    EXPECT_EQ(KeysOf(m_cStore.AllCuts()), Lines{L"b"});
}

TEST_F(StoreTest, ManyCutsCanBeRemovedAtOnce)
{
    Cuts colCuts;
    for (int i = 0; i < 100; ++i)
        colCuts.push_back(Add(L"k" + DecimalText(i)));
    Cuts colOdd;
    Cuts colEven;
    for (std::size_t i = 0; i < colCuts.size(); ++i)
        (i % 2 == 1 ? colOdd : colEven).push_back(colCuts[i]);
    const auto& colLive = m_cStore.CutCollection();
    EXPECT_EQ(m_cStore.RemoveCuts(colOdd), 50);
    EXPECT_EQ(m_cStore.AllCuts(), colEven);
    EXPECT_EQ(colLive.Count(), 50U);
    EXPECT_EQ(ByKey(L"k1"), nullptr);
    EXPECT_EQ(ByKey(L"k98"), colCuts[98]);
    Reopen();
    EXPECT_EQ(KeysOf(m_cStore.AllCuts()), KeysOf(colEven));
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

TEST_F(StoreTest, RemovingNothingRaisesError91AndLeavesTheOthers)
{
    const auto cCut = Add(L"a");
    EXPECT_EQ(NumberRaisedBy([&] { m_cStore.RemoveCuts({cCut, nullptr}); }), error::ObjectNotSet);
    EXPECT_EQ(ByKey(L"a"), cCut);
}

// --- events

TEST_F(StoreTest, ListenerAdvisedTwiceIsCalledOnce)
{
    Recorder& cRecorder = Listen();
    m_cStore.Advise(cRecorder);
    const auto cCut = Add(L"a");
    cRecorder.colLines.clear();
    m_cStore.ModifyCuts({cCut});
    EXPECT_EQ(cRecorder.colLines, Lines{L"modified: a"});
    m_cStore.Unadvise(cRecorder);
    m_cStore.Unadvise(cRecorder);
    m_cStore.ModifyCuts({cCut});
    EXPECT_EQ(cRecorder.colLines, Lines{L"modified: a"});
}

// Does something when an event comes.
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

TEST_F(StoreTest, AListenerMayTakeAnotherOffWhileBeingTold)
{
    const auto cCut = Add(L"a");
    Reaction cFirst;
    Recorder cSecond;
    cFirst.React = [&] {
        m_cStore.Unadvise(cFirst);
        m_cStore.Unadvise(cSecond);
    };
    m_cStore.Advise(cFirst);
    m_cStore.Advise(cSecond);
    m_cStore.ModifyCuts({cCut});
    EXPECT_EQ(cFirst.colLines, Lines{L"modified: a"});
    EXPECT_EQ(cSecond.colLines, Lines{});
}

TEST_F(StoreTest, WhatAListenerThrowsDisturbsNobody)
{
    const auto cCut = Add(L"a");
    Reaction cFirst;
    Recorder cSecond;
    cFirst.React = [] { throw RuntimeError(error::Internal); };
    m_cStore.Advise(cFirst);
    m_cStore.Advise(cSecond);
    EXPECT_EQ(m_cStore.ModifyCuts({cCut}), 1);
    EXPECT_EQ(cSecond.colLines, Lines{L"modified: a"});
}

TEST_F(StoreTest, AListenerMayChangeTheDatabaseWhileProgressIsReported)
{
    Reaction cReaction;
    bool bDone = false;
    cReaction.React = [&] {
        if (std::exchange(bDone, true))
            return;
        Add(L"b");
        ByKey(L"b")->SetArtist(L"Abba");
    };
    m_cStore.Advise(cReaction);
    m_cStore.AddCuts({CutNamed(m_cStore, L"a")});
    Reopen();
    EXPECT_EQ(KeysOf(m_cStore.AllCuts()), (Lines{L"b", L"a"}));
    EXPECT_EQ(ByKey(L"b")->Artist(), L"Abba");
}

TEST_F(StoreTest, AListenerThatClosesTheDatabaseEndsTheWorkWithAnError)
{
    Reaction cReaction;
    cReaction.React = [&] { m_cStore.Close(); };
    m_cStore.Advise(cReaction);
    EXPECT_EQ(NumberRaisedBy([&] { m_cStore.AddCuts({CutNamed(m_cStore, L"a")}); }), error::ObjectNotSet);
    m_cStore.Open(m_sFile);
    EXPECT_EQ(NumberRaisedBy([&] { m_cStore.ImportCsv(m_cFolder.WithBytes("x.csv", "path\na\n")); }),
              error::ObjectNotSet);
    m_cStore.Open(m_sFile);
    EXPECT_TRUE(m_cStore.AllCuts().empty());
}

// --- gathered plays

TEST_F(StoreTest, ABatchKeepsItsOwnPlaysWhileOthersAreGathered)
{
    const auto cA = Add(L"a");
    const auto cB = Add(L"b");
    m_cStore.BeginGathering();
    cA->SetLastPlayed(1);
    {
        Store::Batch cBatch(m_cStore);
        cA->SetLastPlayed(2);
        cB->SetLastPlayed(2);
        EXPECT_EQ(NumberRaisedBy([&] { m_cStore.WriteGathered(); }), error::InvalidProcedureCall);
        EXPECT_EQ(NumberRaisedBy([&] { m_cStore.EndGathering(); }), error::InvalidProcedureCall);
    } // undone
    EXPECT_EQ(cA->LastPlayed(), 1);
    EXPECT_EQ(cB->LastPlayed(), 0);
    m_cStore.EndGathering();
    Reopen();
    EXPECT_EQ(ByKey(L"a")->LastPlayed(), 1);
    EXPECT_EQ(ByKey(L"b")->LastPlayed(), 0);
}

TEST_F(StoreTest, AGatheredPlayGoesWithItsCut)
{
    const auto cA = Add(L"a");
    const auto cB = Add(L"b");
    m_cStore.BeginGathering();
    cA->SetLastPlayed(1);
    cB->SetLastPlayed(1);
    m_cStore.RemoveCuts({cA});
    m_cStore.WriteGathered();
    cA->SetLastPlayed(2); // free-standing now
    EXPECT_EQ(ContentOf(m_sFile), ContentOf(m_cStore));
}

TEST_F(StoreTest, GatheringEndsWithTheFile)
{
    EXPECT_EQ(NumberRaisedBy([] { Store().BeginGathering(); }), error::ObjectNotSet);
    EXPECT_EQ(NumberRaisedBy([] { Store().WriteGathered(); }), error::ObjectNotSet);
    m_cStore.BeginGathering();
    Reopen();
    Add(L"a")->SetLastPlayed(1);
    EXPECT_EQ(ContentOf(m_sFile), ContentOf(m_cStore)) << "written at once";
}

TEST_F(StoreTest, AGatheredPlayHasToBeADate)
{
    const auto cA = Add(L"a");
    m_cStore.BeginGathering();
    EXPECT_EQ(NumberRaisedBy([&] { cA->SetLastPlayed(std::numeric_limits<double>::quiet_NaN()); }),
              error::InvalidProcedureCall);
    EXPECT_EQ(cA->LastPlayed(), 0);
}

} // namespace
} // namespace ravlo
