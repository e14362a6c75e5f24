// SPDX-License-Identifier: MIT
// The members that ask a person, and the corners of the others.
#include "com/BoxAnswerer.h"
#include "com/Station.h"

#include <fstream>

namespace ravlo
{

namespace
{

using Texts = std::vector<std::wstring>;
using Answers = std::vector<BoxAnswerer::Answer>;

class CategoryEditingTest : public ComStationTest
{
protected:
    CategoryEditingTest()
    {
        AddCut(L"First", L"Rock", 1);
        AddCut(L"Second", L"Rock/Pop", 1);
        AddCut(L"Third", L"Rock", 2);
        Populate();
    }
    // What CreateCatLevel answers when a person answers as listed, and what the boxes said.
    std::pair<bool, Texts> CreateLevel(const ComPtr<_clsCat>& cMainCat, Answers colAnswers)
    {
        BoxAnswerer cAnswerer(std::move(colAnswers));
        VARIANT_BOOL bCreated = VARIANT_TRUE;
        EXPECT_EQ(m_cMan->CreateCatLevel(cMainCat.Get(), &bCreated), S_OK);
        return {bCreated != VARIANT_FALSE, cAnswerer.Stop()};
    }
    Texts Levels(const std::wstring& sName)
    {
        ComPtr<_clsCollection> colLevels;
        EXPECT_EQ(MainCat(sName)->get_SubCats(colLevels.Receive()), S_OK);
        Texts colNumbers;
        ForEachItem(colLevels.Get(), [&](const Variant& cItem) {
            const auto cLevel = ObjectIn<_clsCat>(cItem);
            colNumbers.push_back(std::to_wstring(Get(cLevel, &_clsCat::get_CatLevel)));
        });
        return colNumbers;
    }
    ComPtr<_clsCut> Cut(const wchar_t* sTitle)
    {
        ComPtr<_clsCut> cCut;
        const Bstr sKey(std::wstring(L"C:\\") + sTitle + L".mp3");
        EXPECT_EQ(m_cDataBase->CutByKey(sKey.Get(), cCut.Receive()), S_OK);
        return cCut;
    }
    std::filesystem::path RulesFile(const wchar_t* sCatID)
    {
        return Folder() / L"Scheduler" / L"Rules" / (std::wstring(sCatID) + L".rls");
    }
};

TEST_F(CategoryEditingTest, ALevelIsCreatedUnderTheNumberThatIsTyped)
{
    const auto [bCreated, colSaid] = CreateLevel(MainCat(L"Rock"), {{IDOK, L"9"}});
    EXPECT_TRUE(bCreated);
    ASSERT_EQ(colSaid.size(), 1u);
    EXPECT_TRUE(colSaid[0].starts_with(L"Enter The New Category Level: "));
    EXPECT_NE(colSaid[0].find(L"This level will be placed under category: Rock"), std::wstring::npos);
    EXPECT_EQ(Levels(L"Rock"), (Texts{L"1", L"2", L"9"}));
}

TEST_F(CategoryEditingTest, ALevelIsAskedForUntilItFits)
{
    const auto [bCreated, colSaid] =
        CreateLevel(MainCat(L"Rock"),
                    {{IDOK, L"nine"}, {}, {IDOK, L"32765"}, {}, {IDOK, L"2"}, {IDYES, L""}, {IDOK, L"3"}});
    EXPECT_TRUE(bCreated);
    ASSERT_EQ(colSaid.size(), 7u);
    EXPECT_EQ(colSaid[1], L"Must Be a Number!: Invalid Entry!");
    EXPECT_EQ(colSaid[3],
              L"Invalid Category Level Entry: Invalid - must be greater than zero and less than 32675!");
    EXPECT_EQ(
        colSaid[5],
        L"Category Level Already Present!: There is already a category level 2 under Rock\r\n\r\nTry Again?");
    EXPECT_EQ(Levels(L"Rock"), (Texts{L"1", L"2", L"3"}));
}

TEST_F(CategoryEditingTest, ALevelIsNotCreatedWhenThePersonGivesUpOrTheCategoryIsUnknown)
{
    EXPECT_FALSE(CreateLevel(MainCat(L"Rock"), {{IDCANCEL, L"9"}}).first);
    EXPECT_FALSE(CreateLevel(MainCat(L"Rock"), {{IDOK, L""}}).first);
    EXPECT_FALSE(CreateLevel(MainCat(L"Rock"), {{IDOK, L"2"}, {IDNO, L""}}).first);
    const auto cStranger = Create<_clsCat>(CLSID_clsCat);
    ASSERT_EQ(cStranger->put_CatName(Bstr(L"Jazz").Get()), S_OK);
    EXPECT_EQ(
        CreateLevel(cStranger, {}),
        std::pair(false, Texts{L"Category Level Creation Aborted: Unexpected! - cant find main cat: Jazz"}));
    EXPECT_EQ(
        CreateLevel(nullptr, {}),
        std::pair(
            false,
            Texts{L"Impossible!: Impossible to create a level is we dont know which main cat it's in!"}));
    EXPECT_EQ(Levels(L"Rock"), (Texts{L"1", L"2"}));
}

TEST_F(CategoryEditingTest, ANameThatIsLeftOutIsAskedFor)
{
    BoxAnswerer cAnswerer({{IDOK, L" Jazz "}, {IDCANCEL, L""}});
    EXPECT_TRUE(Get(m_cMan, &_clsSchedMan::CreateMainCat, nullptr));
    EXPECT_EQ(Levels(L"Jazz"), Texts{L"1"});
    EXPECT_FALSE(Get(m_cMan, &_clsSchedMan::CreateMainCat, nullptr));
    EXPECT_EQ(cAnswerer.Stop(), (Texts{L"New Category Creation: Type the name for the new category",
                                       L"New Category Creation: Type the name for the new category"}));
}

TEST_F(CategoryEditingTest, AShuffleThatIsToBeConfirmedGoesOnOnlyAfterYes)
{
    for (int i = 0; i < 30; ++i)
        AddCut(L"Song" + std::to_wstring(i), L"Gold", 1);
    const Texts colBefore = TitlesIn(Level(L"Gold", L"1"));
    const auto colCats = CollectionOf({Object(MainCat(L"Gold")), Object(Level(L"Rock", L"2"))});
    BoxAnswerer cAnswerer({{IDNO, L""}, {IDYES, L""}});
    EXPECT_EQ(m_cMan->ShuffleCategories(colCats.Get(), VARIANT_TRUE), S_OK);
    EXPECT_EQ(TitlesIn(Level(L"Gold", L"1")), colBefore);
    EXPECT_EQ(m_cMan->ShuffleCategories(colCats.Get(), VARIANT_TRUE), S_OK);
    const Texts colAfter = TitlesIn(Level(L"Gold", L"1"));
    EXPECT_NE(colAfter, colBefore) << "one chance in 30!";
    EXPECT_TRUE(std::is_permutation(colAfter.begin(), colAfter.end(), colBefore.begin(), colBefore.end()));
    EXPECT_EQ(cAnswerer.Stop(), Texts(2, L"Confirm Shuffle.: Really shuffle these categories: Gold, Rock 2"));
}

TEST_F(CategoryEditingTest, ALevelIsTakenOutOfItsMainCategory)
{
    const auto cRock = MainCat(L"Rock");
    const auto cSecond = Level(L"Rock", L"2");
    EXPECT_TRUE(Get(cRock, &_clsCat::RemoveSubCat, cSecond));
    EXPECT_EQ(Levels(L"Rock"), Texts{L"1"});
    EXPECT_FALSE(Get(cRock, &_clsCat::RemoveSubCat, cSecond)) << "it is there no more";
    EXPECT_FALSE(Get(cRock, &_clsCat::RemoveSubCat, nullptr));
    EXPECT_EQ(Get(cSecond, &_clsCat::get_TotalCuts), 1) << "whoever holds it holds its cuts";
}

TEST_F(CategoryEditingTest, RulesAreIgnoredAndSavedThroughTheirObject)
{
    const auto cRules = Get(Level(L"Rock", L"1"), &_clsCat::get_Rules);
    EXPECT_FALSE(Get(cRules, &_clsCatRules::get_IgnoreRules));
    ASSERT_EQ(cRules->put_IgnoreRules(1), S_OK); // any nonzero value is true
    EXPECT_TRUE(Get(cRules, &_clsCatRules::get_IgnoreRules));

    const auto file = RulesFile(L"Rock\u00AC\u00AC\u00AC"
                                L"1");
    ASSERT_TRUE(std::filesystem::remove(file)) << "every change writes the file";
    EXPECT_TRUE(Get(cRules, &_clsCatRules::SaveRules));
    std::string bytes(70, '\0');
    std::ifstream stream(file, std::ios::binary);
    stream.read(bytes.data(), 70);
    EXPECT_EQ(stream.gcount(), 69);
    EXPECT_EQ(bytes.substr(8, 2), "\xFF\xFF");

    const auto cNameless = Create<_clsCatRules>(CLSID_clsCatRules);
    EXPECT_FALSE(Get(cNameless, &_clsCatRules::SaveRules)) << "without an ID there is no file";
}

TEST_F(CategoryEditingTest, AViolationKeepsWhatItIsGiven)
{
    const auto cViolation = Create<_clsRuleViolation>(CLSID_clsRuleViolation);
    EXPECT_EQ(Get(cViolation, &_clsRuleViolation::get_ViolationIndex), 0);
    ASSERT_EQ(cViolation->put_ViolationIndex(-7), S_OK);
    EXPECT_EQ(Get(cViolation, &_clsRuleViolation::get_ViolationIndex), -7);
    for (const int lValue : {0, 1, 3, 99, -1}) // not checked against the enumeration
    {
        ASSERT_EQ(cViolation->put_Violation(static_cast<::eRuleViolation>(lValue)), S_OK);
        ::eRuleViolation eBack = ::eNone;
        ASSERT_EQ(cViolation->get_Violation(&eBack), S_OK);
        EXPECT_EQ(static_cast<int>(eBack), lValue);
    }
    ASSERT_EQ(cViolation->putref_Cut(Cut(L"First").Get()), S_OK);
    ASSERT_EQ(cViolation->putref_Cut(nullptr), S_OK);
    EXPECT_FALSE(Get(cViolation, &_clsRuleViolation::get_Cut));
}

TEST_F(CategoryEditingTest, ACutIsRemovedFromTheLevelThatIsNamed)
{
    // A host may have placed it in a level that is not the cut's own.
    VARIANT_BOOL bCreated = VARIANT_FALSE;
    EXPECT_TRUE(Get(Level(L"Rock", L"2"), &_clsCat::AddCut, Cut(L"First"), &bCreated));
    const auto remove = [&](LONG lLevel) {
        _clsCollection* pAffected = nullptr;
        EXPECT_EQ(
            m_cMan->RemoveCutFromCategory(MainCat(L"Rock").Get(), Cut(L"First").Get(), &pAffected, lLevel),
            S_OK);
        return Get(ComPtr<_clsCollection>::Adopt(pAffected), &_clsCollection::get_Count);
    };
    EXPECT_EQ(remove(7), 0) << "no such level";
    EXPECT_EQ(remove(2), 1);
    EXPECT_EQ(TitlesIn(Level(L"Rock", L"2")), Texts{L"Third"});
    EXPECT_EQ(TitlesIn(Level(L"Rock", L"1")), (Texts{L"First", L"Second"}));
    EXPECT_EQ(Get(Cut(L"First"), &_clsCut::get_CategoryText), L"Rock") << "level 1 holds it still";
    EXPECT_EQ(remove(0), 1) << "its own level";
    EXPECT_EQ(TitlesIn(Level(L"Rock", L"1")), Texts{L"Second"});
    EXPECT_EQ(Get(Cut(L"First"), &_clsCut::get_CategoryText), L"");
}

TEST_F(CategoryEditingTest, NothingToShuffleComesBackAsAnEmptyCollection)
{
    Variant cVariable = Object(Create<_clsCollection>(CLSID_clsCollection));
    ASSERT_EQ(m_cMan->RandomizeCollection(&cVariable), S_OK);
    EXPECT_EQ(Get(ObjectIn<_clsCollection>(cVariable), &_clsCollection::get_Count), 0);
    EXPECT_EQ(m_cMan->RandomizeCollection(nullptr), E_POINTER);
    for (const Variant& cNothing : {Variant(static_cast<IDispatch*>(nullptr)), Variant(), Long(5)})
    {
        Variant cGiven = cNothing;
        BoxAnswerer cAnswerer;
        EXPECT_EQ(m_cMan->RandomizeCollection(&cGiven), S_OK);
        const Texts colSaid = cAnswerer.Stop();
        ASSERT_EQ(colSaid.size(), 1u);
        EXPECT_EQ(colSaid[0].substr(0, colSaid[0].find(L':')), L"Error in Randomize Collection ");
        EXPECT_EQ(cGiven.vt, cNothing.vt) << "it stays as it was";
    }
}

TEST_F(CategoryEditingTest, ACategoryCannotBecomeALevelOfItself)
{
    const auto cMainCat = MainCat(L"Rock");
    const auto cLevel = Level(L"Rock", L"1");
    const auto colLevels = Get(cMainCat, &_clsCat::get_SubCats);
    const auto colOfLevel = Get(cLevel, &_clsCat::get_SubCats);
    const auto add = [](const ComPtr<_clsCollection>& colInto, const ComPtr<_clsCat>& cCat) {
        return colInto->Add(Object(cCat), Text(L"9"), Variant::Omitted(), Variant::Omitted());
    };
    EXPECT_EQ(add(colLevels, cMainCat), ErrorResult(5));
    EXPECT_EQ(add(colOfLevel, cLevel), ErrorResult(5));
    EXPECT_EQ(add(colOfLevel, cMainCat), ErrorResult(5));
    // By a script, which calls late-bound.
    Called called = Call(colLevels.Get(), L"Add", DISPATCH_METHOD, {Object(cMainCat), Text(L"9")});
    EXPECT_EQ(called.hResult, DISP_E_EXCEPTION);
    EXPECT_EQ(called.hError, ErrorResult(5));
    EXPECT_EQ(Get(colLevels, &_clsCollection::get_Count), 2);
    EXPECT_EQ(Get(cMainCat, &_clsCat::get_TotalCuts), 3);
}

TEST_F(CategoryEditingTest, AMassChangeOfNothingDoesNothing)
{
    const auto colFrom = CollectionOf({Object(Level(L"Rock", L"1"))});
    const auto colCuts = CollectionOf({Object(Cut(L"First"))});
    const auto colNone = CollectionOf({});
    const auto cTo = Level(L"Rock", L"2");
    VARIANT_BOOL bCreated = VARIANT_FALSE;
    BoxAnswerer cAnswerer;
    for (const auto eOption : {::eCopyHere, ::eMoveHere, ::eMoveExclusiveHere})
    {
        EXPECT_EQ(m_cMan->DoMassCatChange(eOption, colFrom.Get(), cTo.Get(), nullptr, &bCreated), S_OK);
        EXPECT_EQ(m_cMan->DoMassCatChange(eOption, colFrom.Get(), cTo.Get(), colNone.Get(), &bCreated), S_OK);
        EXPECT_EQ(m_cMan->DoMassCatChange(eOption, colFrom.Get(), nullptr, colCuts.Get(), &bCreated), S_OK);
        EXPECT_EQ(m_cMan->DoMassCatChange(eOption, nullptr, cTo.Get(), colCuts.Get(), &bCreated), S_OK);
        EXPECT_EQ(m_cMan->DoMassCatChange(eOption, colNone.Get(), cTo.Get(), colCuts.Get(), &bCreated), S_OK);
    }
    EXPECT_EQ(m_cMan->DoMassCatChange(::eCancel, colFrom.Get(), cTo.Get(), colCuts.Get(), &bCreated), S_OK);
    EXPECT_EQ(cAnswerer.Stop(), Texts{});
    EXPECT_EQ(TitlesIn(Level(L"Rock", L"1")), (Texts{L"First", L"Second"}));
    EXPECT_EQ(TitlesIn(cTo), Texts{L"Third"});
}

} // namespace

} // namespace ravlo
