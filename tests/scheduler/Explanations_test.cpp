// SPDX-License-Identifier: MIT
#include "base/RuntimeError.h"
#include "rotation/Explanation.h"

#include "support/SyncTest.h"

namespace ravlo::test
{
namespace
{

class ExplanationsTest : public StationTest
{
protected:
    ExplanationsTest()
    {
        Start(L"Rock 1: a b");
        Man().SetRotatesAllowed(true);
    }
    clsSchedMan& Man() { return *cLib.cSchedMan; }
    Explanation Next(const std::wstring& sKey = L"Rock\t1") { return Man().Explain(sKey, false, nullptr); }
    std::shared_ptr<const Explanation> Last(const std::wstring& sKey = L"Rock\t1")
    {
        return Man().LastExplanation(sKey);
    }
    // The number of the error; 0 for none.
    template <class Body> static std::int32_t ErrorOf(Body&& body)
    {
        try
        {
            body();
            return 0;
        }
        catch (const RuntimeError& cError)
        {
            return cError.Number();
        }
    }
};

TEST_F(ExplanationsTest, NeedAPopulationAndAKeyThatNamesALevel)
{
    for (const wchar_t* sKey : {L"", L"Rock", L"Rock\t0", L"Rock\t2", L"Jazz\t1", L"Rock\t1\t1"})
    {
        EXPECT_EQ(ErrorOf([&] { Next(sKey); }), error::InvalidProcedureCall);
        EXPECT_EQ(ErrorOf([&] { Last(sKey); }), error::InvalidProcedureCall);
    }
    EXPECT_EQ(ErrorOf([&] { Last(L"rOCK\t1"); }), 0);
    const auto cNew = std::make_shared<clsSchedMan>(cLib.cMod);
    EXPECT_EQ(ErrorOf([&] { cNew->Explain(L"Rock\t1", false, nullptr); }), error::ObjectNotSet);
    EXPECT_EQ(ErrorOf([&] { cNew->LastExplanation(L"Rock\t1"); }), error::ObjectNotSet);
}

TEST_F(ExplanationsTest, OfTheNextPickLeavesNoTraceInFilesAndLog)
{
    const std::wstring sTree = Tree();
    EXPECT_EQ(Next().Text(), L"Chosen: Artist of a - Title of a; it breaks no rule.");
    EXPECT_EQ(Tree(), sTree);
    EXPECT_TRUE(Log().empty());
    EXPECT_TRUE(boxes.empty());
    cLib.End();
    for (const std::wstring& sPath : cPorts.cFiles.Paths())
        EXPECT_FALSE(sPath.ends_with(L".rls")) << "no rules file, also not at the end";
}

TEST_F(ExplanationsTest, RulesOfAFileCountBeforeThePickThatLoadsThem)
{
    Level(L"Rock", 1)->Rules()->SetIgnoreRules(true);
    cLib.End();
    cLib.Restart();
    CutOf(L"a")->SetLastPlayed(cPorts.cClock.Now());
    Man().UpdateArtistTitleHistory(CutOf(L"a"));
    EXPECT_EQ(Next().cCut, CutOf(L"a"));
}

TEST_F(ExplanationsTest, OfTheLastPickOutlivesAPopulation)
{
    EXPECT_EQ(Last(), nullptr);
    CutOf(L"a")->SetLastPlayed(cPorts.cClock.Now());
    Man().UpdateArtistTitleHistory(CutOf(L"a"));
    const std::wstring sText = Next().Text();
    EXPECT_EQ(cLib.Pick(L"Rock\t1"), L"b");
    EXPECT_EQ(Last()->Text(), sText);
    EXPECT_TRUE(sText.starts_with(L"Passed over: Artist of a - Title of a; the title played 0 minutes ago"));
    cLib.Populate();
    EXPECT_EQ(Last()->Text(), sText);
    Man().SetRotatesAllowed(false);
    cLib.Pick(L"Rock\t1");
    EXPECT_EQ(Last()->Text(), sText) << "a deferred rotation is no pick";
}

TEST_F(ExplanationsTest, OfTheLastPickFollowsItsLevelNotItsName)
{
    cLib.Pick(L"Rock\t1");
    const std::wstring sText = Last()->Text();
    EXPECT_TRUE(Man().RenameMainCat(L"Rock", L"Pop"));
    EXPECT_EQ(Last(L"Pop\t1")->Text(), sText);
    cLib.Populate();
    EXPECT_EQ(Last(L"Pop\t1")->Text(), sText);
    const auto cHeld = Level(L"Pop", 1); // by a host
    EXPECT_TRUE(Man().DeleteCats({MainCat(L"Pop")}));
    CutOf(L"a")->SetCategoryText(L"Pop");
    cLib.Populate();
    EXPECT_EQ(Last(L"Pop\t1"), nullptr) << "another level of the name";
}

} // namespace
} // namespace ravlo::test
