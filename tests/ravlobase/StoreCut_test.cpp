// SPDX-License-Identifier: MIT
#include "ravlobase/StoreCut.h"

#include "ravlobase/Support.h"

#include <functional>
#include <limits>
#include <utility>

namespace ravlo
{
namespace
{

using Setter = std::function<void(Cut&)>;

const std::pair<const char*, Setter> setters[] = {
    {"SecondaryKey", [](Cut& cCut) { cCut.SetSecondaryKey(L"K2"); }},
    {"Path", [](Cut& cCut) { cCut.SetPath(L"E:\\b.mp3"); }},
    {"Artist", [](Cut& cCut) { cCut.SetArtist(L"ABBA"); }}, // by case alone
    {"Title", [](Cut& cCut) { cCut.SetTitle(L"\u65E5\u672C"); }},
    {"Album", [](Cut& cCut) { cCut.SetAlbum(L"Album"); }},
    {"Year", [](Cut& cCut) { cCut.SetYear(-1); }},
    {"RunTimemS", [](Cut& cCut) { cCut.SetRunTimemS(123); }},
    {"DurationmS", [](Cut& cCut) { cCut.SetDurationmS(std::numeric_limits<std::int32_t>::max()); }},
    {"LastPlayed", [](Cut& cCut) { cCut.SetLastPlayed(45000.1234567); }},
    {"Opener", [](Cut& cCut) { cCut.SetOpener(true); }},
    {"CatLevel", [](Cut& cCut) { cCut.SetCatLevel(32766); }},
    {"RemoveCategoryName", [](Cut& cCut) { cCut.RemoveCategoryName(L"POP"); }},
    {"CategoryText", [](Cut& cCut) { cCut.SetCategoryText(L"/x//Y/X/"); }},
    {"AddCategoryName", [](Cut& cCut) { cCut.AddCategoryName(L"AC/DC"); }},
};

class StoreCutTest : public StoreTest
{
protected:
    StoreCutTest() { m_cCut->SetCategoryText(L"pop/rock"); }
    void SetAll() const
    {
        for (const auto& [sName, Set] : setters)
            Set(*m_cCut);
    }

    const std::shared_ptr<Cut> m_cCut = Add(L"a", L"Abba", L"SOS");
};

TEST_F(StoreCutTest, EveryPropertyChangeIsOnTheDiskAtOnceAndRaisesNothing)
{
    Recorder& cRecorder = Listen();
    for (const auto& [sName, Set] : setters)
    {
        SCOPED_TRACE(sName);
        const auto cCopy = m_cCut->CloneCut();
        const auto sBefore = ValuesText(*m_cCut);
        EXPECT_EQ(ValuesText(*cCopy), sBefore);
        EXPECT_EQ(cCopy->ID(), m_cCut->ID());
        Set(*cCopy);
        EXPECT_NE(ValuesText(*cCopy), sBefore);
        EXPECT_EQ(ValuesText(*m_cCut), sBefore) << "a copy's properties are its own";
        Set(*m_cCut);
        EXPECT_EQ(ValuesText(*m_cCut), ValuesText(*cCopy));
        ExpectStored();
    }
    EXPECT_EQ(cRecorder.colLines, Lines{});
}

TEST_F(StoreCutTest, OnlyAFreeStandingCutsKeyCanBeSet)
{
    EXPECT_EQ(RaisedBy([&] { m_cCut->SetKey(L"b"); }),
              (Raised{error::PermissionDenied, L"The key of a cut of a database cannot be changed."}));
    EXPECT_EQ(m_cCut->Key().Text(), L"a");
    const auto cCopy = m_cCut->CloneCut();
    cCopy->SetKey(L"b");
    EXPECT_EQ(cCopy->Key().Text(), L"b");
    EXPECT_EQ(cCopy->Path(), L"b");
}

TEST_F(StoreCutTest, ALevelBelowOneAndATimeThatIsNoDateAreRefused)
{
    using Level = std::numeric_limits<std::int32_t>;
    using Time = std::numeric_limits<double>;
    m_cCut->SetCatLevel(5);
    m_cCut->SetLastPlayed(45000);
    for (const std::int32_t lLevel : {0, -1, Level::min()})
        EXPECT_EQ(RaisedBy([&] { m_cCut->SetCatLevel(lLevel); }),
                  (Raised{error::InvalidProcedureCall, L"The level of a cut has to be 1 or more."}));
    for (const double dtWhen : {Time::quiet_NaN(), Time::infinity()})
        EXPECT_EQ(NumberRaisedBy([&] { m_cCut->SetLastPlayed(dtWhen); }), error::InvalidProcedureCall);
    EXPECT_EQ(m_cCut->CatLevel(), 5);
    EXPECT_EQ(m_cCut->LastPlayed(), 45000);
    m_cStore.NewCut()->SetCatLevel(-1); // a free-standing cut may have any
}

TEST_F(StoreCutTest, CategoryNamesKeepTheirOrderAndAreUniqueIgnoringCase)
{
    m_cCut->SetCategoryText(L"pop//Rock/POP/jazz");
    EXPECT_EQ(m_cCut->CategoryNames(), (Lines{L"pop", L"Rock", L"jazz"}));
    EXPECT_EQ(m_cCut->CategoryText(), L"pop/Rock/jazz");
    m_cCut->AddCategoryName(L"ROCK");
    m_cCut->AddCategoryName(L"AC/DC");
    m_cCut->RemoveCategoryName(L"POP");
    m_cCut->RemoveCategoryName(L"missing");
    EXPECT_EQ(m_cCut->CategoryNames(), (Lines{L"Rock", L"jazz", L"AC/DC"}));
    EXPECT_TRUE(m_cCut->HasCategoryName(L"ac/dc"));
    EXPECT_FALSE(m_cCut->HasCategoryName(L"AC"));
    EXPECT_EQ(m_cCut->CategoryText(), L"Rock/jazz/AC/DC");
    ExpectStored();
    m_cCut->SetCategoryText(L"");
    EXPECT_EQ(m_cCut->CategoryText(), L"");
    EXPECT_EQ(m_cCut->CategoryNames(), Lines{});
    ExpectStored();
}

TEST_F(StoreCutTest, ManyCategoryNamesAreUniqueIgnoringCaseToo)
{
    std::wstring sText;
    for (int i = 0; i < 20'000; ++i)
        sText += L"name " + std::to_wstring(i % 10'000) + L"/NAME " + std::to_wstring(i % 10'000) + L"//";
    const auto cCopy = m_cCut->CloneCut();
    cCopy->SetCategoryText(sText);
    const Lines colNames = cCopy->CategoryNames();
    ASSERT_EQ(colNames.size(), 10'000u);
    EXPECT_EQ(colNames.front(), L"name 0");
    EXPECT_EQ(colNames.back(), L"name 9999");
    cCopy->AddCategoryName(L"Name 77");
    EXPECT_EQ(cCopy->CategoryNames().size(), 10'000u);
}

TEST_F(StoreCutTest, PropertiesForHostsAreCopiedButNotStored)
{
    const auto expectHosts = [](const Cut& cCut, const wchar_t* sKey, bool bOpener, std::int32_t lKind) {
        EXPECT_EQ(cCut.CategoryKey(), sKey);
        EXPECT_EQ(cCut.MustBeOpener(), bOpener);
        EXPECT_EQ(cCut.KindCode(), lKind);
    };
    m_cCut->SetCategoryKey(L"Pop\t1");
    m_cCut->SetMustBeOpener(true);
    m_cCut->SetKindCode(eKindTitleViolation);
    m_cCut->SetDurationmS(3 * 60'000 + 7'999);
    EXPECT_EQ(m_cCut->DurationText(), L"3:07");
    expectHosts(*m_cCut->CloneCut(), L"Pop\t1", true, 15);
    Reopen();
    expectHosts(*ByKey(L"a"), L"", false, 0);
}

// --- batches

TEST_F(StoreCutTest, ABatchReachesTheDiskWithItsCommitOrNotAtAll)
{
    const auto colBefore = ContentOf(m_cStore);
    {
        Store::Batch cBatch(m_cStore);
        SetAll();
    }
    EXPECT_EQ(ContentOf(m_cStore), colBefore) << "undone in the objects";
    EXPECT_EQ(ContentOf(m_sFile), colBefore);
    EXPECT_EQ(ByNames(L"abba", L"sos"), m_cCut);
    const std::unique_ptr<DataBase::Batch> cBatch = m_cStore.BeginBatch();
    SetAll();
    EXPECT_EQ(m_cCut->Artist(), L"ABBA") << "the object shows it at once";
    EXPECT_EQ(ContentOf(m_sFile), colBefore) << "others do not see it yet";
    cBatch->Commit();
    EXPECT_NE(ContentOf(m_cStore), colBefore);
    ExpectStored();
    EXPECT_EQ(NumberRaisedBy([&] { cBatch->Commit(); }), error::InvalidProcedureCall) << "it ends once";
    m_cCut->SetYear(7);
    ExpectStored();
}

TEST_F(StoreCutTest, BatchesNest)
{
    {
        Store::Batch cOuter(m_cStore);
        m_cCut->SetYear(1);
        {
            Store::Batch cKept(m_cStore);
            m_cCut->SetAlbum(L"kept");
            cKept.Commit();
        }
        {
            Store::Batch cDropped(m_cStore);
            m_cCut->SetAlbum(L"dropped");
            m_cCut->SetYear(2);
        }
        EXPECT_EQ(m_cCut->Album(), L"kept");
        EXPECT_EQ(m_cCut->Year(), 1);
        cOuter.Commit();
    }
    ExpectStored();
    EXPECT_EQ(m_cCut->Album(), L"kept");
    {
        Store::Batch cOuter(m_cStore);
        Store::Batch cInner(m_cStore);
        m_cCut->SetAlbum(L"lost with the outer one");
        cInner.Commit();
    }
    EXPECT_EQ(m_cCut->Album(), L"kept");
    ExpectStored();
}

TEST_F(StoreCutTest, WholeOperationsAreRefusedInsideABatch)
{
    const auto sCsv = m_cFolder.WithBytes("x.csv", "path\nx\n");
    Store::Batch cBatch(m_cStore);
    const auto expectRefused = [](const std::function<void()>& operation) {
        EXPECT_EQ(RaisedBy(operation),
                  (Raised{error::InvalidProcedureCall, L"This cannot be done inside a batch of changes."}));
    };
    expectRefused([&] { Add(L"x"); });
    expectRefused([&] { m_cStore.ModifyCuts({m_cCut}); });
    expectRefused([&] { m_cStore.RemoveCuts({m_cCut}); });
    expectRefused([&] { m_cStore.ImportCsv(sCsv); });
    EXPECT_EQ(Keys(), Lines{L"a"});
    // Nor does a change that is refused spoil the batch.
    m_cCut->SetYear(1);
    EXPECT_EQ(NumberRaisedBy([&] { m_cCut->SetCatLevel(0); }), error::InvalidProcedureCall);
    m_cCut->SetAlbum(L"Album");
    cBatch.Commit();
    ExpectStored();
    EXPECT_EQ(m_cCut->Year(), 1);
}

TEST_F(StoreCutTest, ClosingUndoesAnOpenBatch)
{
    Store::Batch cBatch(m_cStore);
    m_cCut->SetYear(1);
    m_cStore.Close();
    EXPECT_EQ(m_cCut->Year(), 0);
    EXPECT_EQ(NumberRaisedBy([&] { cBatch.Commit(); }), error::ObjectNotSet);
    m_cStore.Open(m_sFile);
    EXPECT_EQ(ByKey(L"a")->Year(), 0);
}

} // namespace
} // namespace ravlo
