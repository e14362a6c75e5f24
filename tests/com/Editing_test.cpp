// SPDX-License-Identifier: MIT
// The members that change the categories, as an early-bound host calls them.
#include "com/BoxAnswerer.h"
#include "com/Station.h"

#include <fstream>
#include <map>

namespace ravlo
{
namespace
{

class CategoryEditingTest : public SmallStationTest
{
protected:
    // Creates a level with a person who answers as listed; returns what the boxes say.
    Texts CreateLevel(const ComPtr<_clsCat>& cMainCat, bool bCreated,
                      std::vector<BoxAnswerer::Answer> colAnswers)
    {
        return BoxesOf([&] { EXPECT_EQ(Get(m_cMan, &_clsSchedMan::CreateCatLevel, cMainCat), bCreated); },
                       std::move(colAnswers));
    }
    Texts Levels(const std::wstring& sName)
    {
        Texts colNumbers;
        ForEachItem(Get(MainCat(sName), &_clsCat::get_SubCats).Get(), [&](const Variant& cItem) {
            const LONG lLevel = Get(ObjectIn<_clsCat>(cItem), &_clsCat::get_CatLevel);
            colNumbers.push_back(std::to_wstring(lLevel));
        });
        return colNumbers;
    }
};

TEST_F(CategoryEditingTest, ALevelIsAskedForUntilItFitsOrThePersonGivesUp)
{
    const auto cRock = MainCat(L"Rock");
    for (const BoxAnswerer::Answer& answer : {BoxAnswerer::Answer{IDCANCEL, L"9"}, {IDOK, L""}})
        EXPECT_EQ(CreateLevel(cRock, false, {answer}).size(), 1u);
    EXPECT_EQ(CreateLevel(cRock, false, {{IDOK, L"2"}, {IDNO, L""}}).size(), 2u);
    const auto cStranger = Create<_clsCat>(CLSID_clsCat);
    Do(cStranger, &_clsCat::put_CatName, L"Jazz");
    EXPECT_EQ(CreateLevel(cStranger, false, {}),
              Texts{L"Category Level Creation Aborted: Unexpected! - cant find main cat: Jazz"});
    EXPECT_EQ(CreateLevel(nullptr, false, {}),
              Texts{L"Impossible!: Impossible to create a level is we dont know which main cat it's in!"});
    EXPECT_EQ(Levels(L"Rock"), (Texts{L"1", L"2"}));

    const Texts colSaid = CreateLevel(
        cRock, true, {{IDOK, L"nine"}, {}, {IDOK, L"32765"}, {}, {IDOK, L"2"}, {IDYES, L""}, {IDOK, L"3"}});
    ASSERT_EQ(colSaid.size(), 7u);
    EXPECT_TRUE(colSaid[0].starts_with(L"Enter The New Category Level: "));
    EXPECT_NE(colSaid[0].find(L"This level will be placed under category: Rock"), std::wstring::npos);
    EXPECT_EQ(colSaid[1], L"Must Be a Number!: Invalid Entry!");
    EXPECT_EQ(colSaid[3],
              L"Invalid Category Level Entry: Invalid - must be greater than zero and less than 32675!");
    EXPECT_EQ(
        colSaid[5],
        L"Category Level Already Present!: There is already a category level 2 under Rock\r\n\r\nTry Again?");
    EXPECT_EQ(Levels(L"Rock"), (Texts{L"1", L"2", L"3"}));
}

TEST_F(CategoryEditingTest, ACategoryIsCreatedUnderTheNameThatComesBack)
{
    BSTR sName = NewBstr(L"Jazz/Funk");
    EXPECT_TRUE(Get(m_cMan, &_clsSchedMan::CreateMainCat, &sName));
    EXPECT_EQ(TextOf(sName), L"Jazz_Funk");
    SysFreeString(sName);
    EXPECT_EQ(Levels(L"Jazz_Funk"), Texts{L"1"});
    Variant cName = Text(L"A?B");
    EXPECT_EQ(Call(m_cMan.Get(), L"CreateMainCat", DISPATCH_METHOD, {ByReference(cName)}).cResult.boolVal,
              VARIANT_TRUE);
    EXPECT_EQ(TextOf(cName.bstrVal), L"A_B");

    const auto ask = [&] {
        EXPECT_TRUE(Get(m_cMan, &_clsSchedMan::CreateMainCat, nullptr));
        EXPECT_FALSE(Get(m_cMan, &_clsSchedMan::CreateMainCat, nullptr));
    };
    EXPECT_EQ(BoxesOf(ask, {{IDOK, L" Jazz "}, {IDCANCEL, L""}}),
              Texts(2, L"New Category Creation: Type the name for the new category"));
    EXPECT_EQ(Levels(L"Jazz"), Texts{L"1"});
}

TEST_F(CategoryEditingTest, CategoriesAreListedByNameAndLevel)
{
    EXPECT_EQ(Get(m_cMan, &_clsSchedMan::ListCats,
                  CollectionOf({Object(MainCat(L"Pop")), Object(Level(L"Rock", L"2"))})),
              L"Pop, Rock 2");
    EXPECT_EQ(Get(m_cMan, &_clsSchedMan::ListCats, nullptr), L"");
}

TEST_F(CategoryEditingTest, LevelsAreDeletedAndTakenOut)
{
    const auto cSecond = Level(L"Rock", L"2");
    EXPECT_TRUE(Get(m_cMan, &_clsSchedMan::DeleteCats, CollectionOf(Level(L"Rock", L"1"))));
    EXPECT_EQ(TitlesIn(MainCat(L"Rock")), Texts{L"Third"});
    const auto cRock = MainCat(L"Rock");
    EXPECT_TRUE(Get(cRock, &_clsCat::RemoveSubCat, cSecond));
    EXPECT_EQ(Levels(L"Rock"), Texts{});
    EXPECT_FALSE(Get(cRock, &_clsCat::RemoveSubCat, cSecond)) << "it is gone";
    EXPECT_FALSE(Get(cRock, &_clsCat::RemoveSubCat, nullptr));
    EXPECT_EQ(CutsIn(cSecond), 1) << "a level keeps its cuts";
}

TEST_F(CategoryEditingTest, RulesAreIgnoredAndSavedThroughTheirObject)
{
    const auto cRules = Get(Level(L"Rock", L"1"), &_clsCat::get_Rules);
    EXPECT_FALSE(Get(cRules, &_clsCatRules::get_IgnoreRules));
    Do(cRules, &_clsCatRules::put_IgnoreRules, VARIANT_BOOL{1}); // any nonzero value is true
    EXPECT_TRUE(Get(cRules, &_clsCatRules::get_IgnoreRules));
    const auto file =
        Folder() / L"Scheduler" / L"Rules" / (L"Rock\u00AC\u00AC\u00AC" + std::wstring(L"1.rls"));
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
    Do(cViolation, &_clsRuleViolation::put_ViolationIndex, -7);
    EXPECT_EQ(Get(cViolation, &_clsRuleViolation::get_ViolationIndex), -7);
    for (const int lValue : {0, 1, 3, 99, -1}) // not checked against the enumeration
    {
        const auto eValue = static_cast<::eRuleViolation>(lValue);
        Do(cViolation, &_clsRuleViolation::put_Violation, eValue);
        EXPECT_EQ(Get(cViolation, &_clsRuleViolation::get_Violation), eValue);
    }
    Do(cViolation, &_clsRuleViolation::putref_Cut, Cut(L"First"));
    Do(cViolation, &_clsRuleViolation::putref_Cut, nullptr);
    EXPECT_FALSE(Get(cViolation, &_clsRuleViolation::get_Cut));
}

TEST_F(CategoryEditingTest, AMassChangeMovesCutsAndReportsNewLevels)
{
    const auto cFrom = Level(L"Rock", L"1");
    const auto cTo = Level(L"Rock", L"2");
    const auto colCuts = CollectionOf(Cut(L"First"));
    const auto colNone = CollectionOf({});
    const auto changeNothing = [&] {
        for (const auto eOption : {::eCopyHere, ::eMoveHere, ::eMoveExclusiveHere})
        {
            MassChange(eOption, cFrom, cTo, nullptr);
            MassChange(eOption, cFrom, cTo, colNone);
            MassChange(eOption, cFrom, nullptr, colCuts);
            MassChange(eOption, ComPtr<_clsCollection>(), cTo, colCuts);
            MassChange(eOption, colNone, cTo, colCuts);
        }
        MassChange(::eCancel, cFrom, cTo, colCuts);
        Do(m_cMan, &_clsSchedMan::DoMassCatChange, ::eMoveHere, nullptr, nullptr, nullptr, nullptr);
    };
    EXPECT_EQ(BoxesOf(changeNothing), Texts{});
    EXPECT_EQ(TitlesIn(cFrom), (Texts{L"First", L"Second"}));
    EXPECT_EQ(TitlesIn(cTo), Texts{L"Third"});
    EXPECT_FALSE(MassChange(::eMoveHere, cFrom, cTo, colCuts));
    EXPECT_EQ(TitlesIn(cTo), (Texts{L"Third", L"First"}));
}

TEST_F(CategoryEditingTest, RemovingACutCollectsTheCategoriesItLeft)
{
    const auto cSecond = Cut(L"Second");
    const auto colAffected = RemoveFromCategory(MainCat(L"Pop"), cSecond);
    EXPECT_TRUE(IsSame(ItemAt<_clsCat>(colAffected, Text(L"pop")), MainCat(L"Pop")));
    // A collection of the caller's receives each category once.
    const auto colGiven = CollectionOf({});
    for (int i = 0; i < 2; ++i)
        EXPECT_TRUE(IsSame(RemoveFromCategory(nullptr, cSecond, 0, colGiven), colGiven));
    EXPECT_EQ(Get(colGiven, &_clsCollection::get_Count), 1);
    EXPECT_EQ(Get(cSecond, &_clsCut::get_CategoryText), L"");
}

TEST_F(CategoryEditingTest, ACutIsRemovedFromTheLevelThatIsNamed)
{
    const auto cFirst = Cut(L"First");
    VARIANT_BOOL bCreated = VARIANT_FALSE;
    EXPECT_TRUE(Get(Level(L"Rock", L"2"), &_clsCat::AddCut, cFirst, &bCreated)) << "not the cut's own level";
    const auto remove = [&](LONG lLevel) {
        return Get(RemoveFromCategory(MainCat(L"Rock"), cFirst, lLevel), &_clsCollection::get_Count);
    };
    EXPECT_EQ(remove(7), 0) << "no such level";
    EXPECT_EQ(remove(2), 1);
    EXPECT_EQ(TitlesIn(Level(L"Rock", L"2")), Texts{L"Third"});
    EXPECT_EQ(TitlesIn(Level(L"Rock", L"1")), (Texts{L"First", L"Second"}));
    EXPECT_EQ(Get(cFirst, &_clsCut::get_CategoryText), L"Rock") << "still in level 1";
    EXPECT_EQ(remove(0), 1) << "its own level";
    EXPECT_EQ(TitlesIn(Level(L"Rock", L"1")), Texts{L"Second"});
    EXPECT_EQ(Get(cFirst, &_clsCut::get_CategoryText), L"");
}

TEST_F(CategoryEditingTest, ItemsOfTheWrongKindAreShownUnderTheMembersTitle)
{
    const auto cLevel = Level(L"Rock", L"2");
    const auto colWrong = CollectionOf({Long(1)});
    const Texts colSaid = BoxesOf([&] {
        Do(m_cMan, &_clsSchedMan::MoveCutsInCategory, cLevel, colWrong, 1);
        Do(m_cMan, &_clsSchedMan::ShuffleCategories, colWrong, false);
        EXPECT_EQ(Get(m_cMan, &_clsSchedMan::ListCats, colWrong), L"");
        EXPECT_FALSE(Get(m_cMan, &_clsSchedMan::DeleteCats, colWrong));
        MassChange(eCopyHere, colWrong, cLevel, CollectionOf(cLevel));
        MassChange(eCopyHere, cLevel, cLevel, colWrong);
    });
    Texts colExpected;
    for (const wchar_t* sMember : {L"InsertCuts", L"ShuffleCategories", L"ListCats", L"DeleteCats",
                                   L"DoMassCatChange", L"DoMassCatChange"})
        colExpected.push_back(L"Error in " + std::wstring(sMember) + L" [cSchedMan]: 13 Type mismatch");
    EXPECT_EQ(colSaid, colExpected);
    EXPECT_EQ(TitlesIn(cLevel), Texts{L"Third"});
}

TEST_F(CategoryEditingTest, AForeignCategoryIsATypeMismatch)
{
    const auto cForeign = NewObject<HostCatObject>();
    VARIANT_BOOL bResult = VARIANT_TRUE;
    EXPECT_EQ(m_cMan->SaveHistoryAndOrdering(cForeign.Get(), &bResult), ErrorResult(13));
    EXPECT_EQ(BoxesOf([&] { EXPECT_EQ(Get(m_cMan, &_clsSchedMan::ListCats, CollectionOf(cForeign)), L""); }),
              Texts{L"Error in ListCats [cSchedMan]: 13 Type mismatch"});
}

// ---- shuffling

class ShufflingTest : public SmallStationTest
{
protected:
    static void ExpectShuffled(const Texts& colBefore, const Texts& colAfter)
    {
        EXPECT_NE(colAfter, colBefore) << "one chance in many";
        EXPECT_EQ(Sorted(colAfter), Sorted(colBefore));
    }
};

TEST_F(ShufflingTest, AShuffleThatIsToBeConfirmedNeedsAYes)
{
    for (int i = 0; i < 30; ++i)
        AddCut(L"Song" + std::to_wstring(i), L"Gold");
    const Texts colBefore = TitlesIn(Level(L"Gold", L"1"));
    const auto colCats = CollectionOf({Object(MainCat(L"Gold")), Object(Level(L"Rock", L"2"))});
    const auto shuffle = [&] { Do(m_cMan, &_clsSchedMan::ShuffleCategories, colCats, true); };
    const Texts colQuestion{L"Confirm Shuffle.: Really shuffle these categories: Gold, Rock 2"};
    EXPECT_EQ(BoxesOf(shuffle, {{IDNO, L""}}), colQuestion);
    EXPECT_EQ(TitlesIn(Level(L"Gold", L"1")), colBefore);
    EXPECT_EQ(BoxesOf(shuffle, {{IDYES, L""}}), colQuestion);
    ExpectShuffled(colBefore, TitlesIn(Level(L"Gold", L"1")));
    Do(m_cMan, &_clsSchedMan::ShuffleCategories, CollectionOf(MainCat(L"Rock")), false);
    EXPECT_EQ(Sorted(TitlesIn(Level(L"Rock", L"1"))), (Texts{L"First", L"Second"})) << "without a question";
}

TEST_F(ShufflingTest, AShuffledCollectionIsANewOneWithTheSameItemsAndKeys)
{
    const auto colOld = CollectionOf({});
    for (std::int32_t i = 1; i <= 20; ++i)
        Do(colOld, &_clsCollection::Add, Long(i), Text(std::to_wstring(i)), Variant::Omitted(),
           Variant::Omitted());
    const Texts colBefore = ItemsOf(colOld);
    Variant cVariable = Object(colOld);
    Do(m_cMan, &_clsSchedMan::RandomizeCollection, &cVariable);
    const auto colNew = ObjectIn<_clsCollection>(cVariable);
    EXPECT_FALSE(IsSame(colNew, colOld));
    EXPECT_EQ(ItemsOf(colOld), colBefore) << "the collection handed in stays as it is";
    ExpectShuffled(colBefore, ItemsOf(colNew));
    const Variant cItem = Get(colNew, &_clsCollection::get_Item, Text(L"7"));
    EXPECT_EQ(cItem.lVal, 7);

    const auto colHosts = NewObject<HostCollection>();
    colHosts->m_colItems = {{L"a", Long(1)}, {L"b", Long(2)}};
    cVariable = Object(colHosts);
    Do(m_cMan, &_clsSchedMan::RandomizeCollection, &cVariable);
    EXPECT_EQ(Sorted(ItemsOf(cVariable.pdispVal)), (Texts{L"1", L"2"}));
    cVariable = Object(CollectionOf({}));
    Do(m_cMan, &_clsSchedMan::RandomizeCollection, &cVariable);
    EXPECT_EQ(ItemsOf(cVariable.pdispVal), Texts{});
}

TEST_F(ShufflingTest, AShuffledCollectionReachesATypedVariable)
{
    const auto colOld = CollectionOf({Long(1), Long(2)});
    IDispatch* pVariable = ComPtr<_clsCollection>(colOld).Detach();
    VARIANT reference = ReferenceTo(VT_DISPATCH, pVariable);
    Do(m_cMan, &_clsSchedMan::RandomizeCollection, &reference);
    const auto colNew = ComPtr<IDispatch>::Adopt(pVariable);
    EXPECT_FALSE(IsSame(colNew, colOld));
    EXPECT_EQ(ItemsOf(colNew).size(), 2u);
    EXPECT_EQ(reference.vt, VT_BYREF | VT_DISPATCH);
    EXPECT_EQ(ReferencesTo(colOld), 1u) << "the variable released it";
    Variant cVariable = Object(colOld);
    reference = ByReference(cVariable);
    Do(m_cMan, &_clsSchedMan::RandomizeCollection, &reference);
    EXPECT_FALSE(IsSame(ObjectIn<IDispatch>(cVariable), colOld));
    EXPECT_EQ(reference.vt, VT_BYREF | VT_VARIANT);
}

TEST_F(ShufflingTest, AnErrorBoxShowsWhatCannotBeShuffled)
{
    EXPECT_EQ(m_cMan->RandomizeCollection(nullptr), E_POINTER);
    const std::pair<Variant, const wchar_t*> colCases[] = {{Object(m_cMan), L"451 "},
                                                           {Variant(static_cast<IDispatch*>(nullptr)), L""},
                                                           {Variant(), L""},
                                                           {Long(7), L"91 "}};
    for (const auto& [cValue, sNumber] : colCases)
    {
        Variant cVariable = cValue;
        const Texts colSaid = BoxesOf([&] { Do(m_cMan, &_clsSchedMan::RandomizeCollection, &cVariable); });
        ASSERT_EQ(colSaid.size(), 1u);
        EXPECT_TRUE(colSaid[0].starts_with(std::wstring(L"Error in Randomize Collection : ") + sNumber))
            << testing::PrintToString(colSaid[0]);
        EXPECT_EQ(cVariable.vt, cValue.vt);
        EXPECT_EQ(cVariable.llVal, cValue.llVal) << "it stays as it was";
    }
}

// ---- objects that a host kept from before a population

class StaleTest : public SmallStationTest
{
protected:
    StaleTest() : m_cOldRock(MainCat(L"Rock")), m_cOldLevel(Level(L"Rock", L"1"))
    {
        Populate();
        EXPECT_FALSE(IsSame(m_cOldLevel, Level(L"Rock", L"1")));
    }
    // Every cut is once in each category it names, and in no other.
    ~StaleTest() override
    {
        std::map<std::wstring, Texts> expected{{L"Rock", {}}, {L"Pop", {}}};
        ForEachItem(AllCuts().Get(), [&](const Variant& cItem) {
            const auto cCut = ObjectIn<_clsCut>(cItem);
            const auto sNames = Get(cCut, &_clsCut::get_CategoryText);
            for (auto& [sName, colTitles] : expected)
                if (sNames.find(sName) != std::wstring::npos)
                    colTitles.push_back(Get(cCut, &_clsCut::get_Title));
        });
        for (const auto& [sName, colTitles] : expected)
            EXPECT_EQ(Sorted(TitlesIn(MainCat(sName))), Sorted(colTitles)) << testing::PrintToString(sName);
    }
    ComPtr<_clsCut> FirstCut() { return ItemAt<_clsCut>(CutsOf(Level(L"Rock", L"1")), Long(1)); }

    ComPtr<_clsCat> m_cOldRock;
    ComPtr<_clsCat> m_cOldLevel;
    BoxAnswerer m_cAnswerer; // an edit may be refused with a box
};

TEST_F(StaleTest, MovingInAStaleLevelLosesAndDoublesNoCut)
{
    for (const auto& cOld : {m_cOldLevel, m_cOldRock})
        m_cMan->MoveCutsInCategory(cOld.Get(), CollectionOf(FirstCut()).Get(), 99);
    EXPECT_EQ(CutsIn(Level(L"Rock", L"1")), 2);
}

TEST_F(StaleTest, RemovingFromAStaleCategoryKeepsNamesAndLevelsEqual)
{
    for (const auto& cOld : {m_cOldRock, m_cOldLevel})
        RemoveFromCategory(cOld, FirstCut());
}

TEST_F(StaleTest, MovingIntoAStaleLevelKeepsNamesAndLevelsEqual)
{
    MassChange(::eMoveHere, m_cOldLevel, m_cOldLevel, CollectionOf(FirstCut()));
}

} // namespace
} // namespace ravlo
