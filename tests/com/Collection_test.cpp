// SPDX-License-Identifier: MIT
#include "com/Station.h"

namespace ravlo
{
namespace
{

class CollectionTest : public ComTest
{
protected:
    HRESULT Add(const Variant& cItem, const Variant& cKey = Variant::Omitted(),
                const Variant& cBefore = Variant::Omitted(), const Variant& cAfter = Variant::Omitted())
    {
        return m_col->Add(cItem, cKey, cBefore, cAfter);
    }
    void AddKeyed(std::initializer_list<const wchar_t*> colNames)
    {
        for (const wchar_t* sName : colNames)
            ASSERT_EQ(Add(Text(std::wstring(sName) + L"!"), Text(sName)), S_OK);
    }
    bool Exists(const Variant& cKey) { return Get(m_col, &_clsCollection::Exists, cKey); }
    std::wstring Item(const Variant& cIndex)
    {
        return TextOf(Get(m_col, &_clsCollection::get_Item, cIndex).bstrVal);
    }
    Texts Items() { return ItemsOf(m_col); }

    ComPtr<_clsCollection> m_col = Create<_clsCollection>(CLSID_clsCollection);
};

TEST_F(CollectionTest, NumbersArePositionsFromOneAndTextsAreKeys)
{
    AddKeyed({L"Rock", L"Pop", L"1"});
    Variant cShort;
    cShort.vt = VT_I2;
    cShort.iVal = 1;
    EXPECT_EQ(Item(cShort), L"Rock!");
    EXPECT_EQ(Item(Long(2)), L"Pop!");
    EXPECT_EQ(Item(Double(3)), L"1!");
    EXPECT_EQ(Item(Text(L"POP")), L"Pop!");
    EXPECT_EQ(Item(Text(L"1")), L"1!");
    EXPECT_EQ(Get(m_col, &_clsCollection::get_Count), 3);
    EXPECT_TRUE(Exists(Text(L"rock")));
    EXPECT_FALSE(Exists(Text(L"jazz")));
    EXPECT_TRUE(Exists(Long(3)));
    EXPECT_FALSE(Exists(Long(4)));
    Do(m_col, &_clsCollection::Remove, Text(L"POP"));
    Do(m_col, &_clsCollection::Remove, Long(1));
    EXPECT_EQ(Items(), Texts{L"1!"});
}

TEST_F(CollectionTest, AMissingItemIsTheErrorHostsKnow)
{
    AddKeyed({L"a"});
    const struct
    {
        const char* sName;
        Variant cIndex;
        int lError;
    } colCases[] = {{"missing key", Text(L"b"), 5},     {"empty key", Text(L""), 5},
                    {"position 0", Long(0), 9},         {"position past the end", Long(2), 9},
                    {"negative position", Long(-1), 9}, {"huge position", Double(1e12), 9},
                    {"Empty", Variant(), 13},           {"Null", Null(), 13},
                    {"an object", Object(m_col), 13}};
    for (const auto& oneCase : colCases)
    {
        Variant cItem;
        EXPECT_EQ(m_col->get_Item(oneCase.cIndex, &cItem), ErrorResult(oneCase.lError)) << oneCase.sName;
        EXPECT_EQ(m_col->Remove(oneCase.cIndex), ErrorResult(oneCase.lError)) << oneCase.sName;
    }
    EXPECT_EQ(Items(), Texts{L"a!"});
}

TEST_F(CollectionTest, AKeyIsAUniqueTextOrLeftOut)
{
    AddKeyed({L"Rock"});
    EXPECT_EQ(Add(Text(L"other"), Text(L"ROCK")), ErrorResult(457));
    const ErrorText error = TakeErrorInfo();
    EXPECT_EQ(error.sDescription, L"This key is already associated with an element of this collection");
    EXPECT_EQ(error.sSource, L"KorvaCollection.clsCollection");
    EXPECT_EQ(Add(Text(L"a"), Long(1)), ErrorResult(13));
    EXPECT_EQ(Add(Text(L"b"), Variant()), S_OK); // what script languages pass for undefined
    EXPECT_EQ(Items(), (Texts{L"Rock!", L"b"}));
}

TEST_F(CollectionTest, BeforeAndAfterPlaceTheNewItem)
{
    AddKeyed({L"b", L"d"});
    EXPECT_EQ(Add(Text(L"a"), Text(L"a"), Text(L"B")), S_OK);
    EXPECT_EQ(Add(Text(L"c"), Text(L"c"), Long(3)), S_OK);
    EXPECT_EQ(Add(Text(L"e"), Text(L"e"), Variant::Omitted(), Text(L"d")), S_OK);
    EXPECT_EQ(Add(Text(L"f"), Text(L"f"), Long(1), Long(1)), ErrorResult(5));
    EXPECT_EQ(Add(Text(L"f"), Text(L"f"), Long(9)), ErrorResult(9));
    EXPECT_EQ(Add(Text(L"f"), Text(L"f"), Variant::Omitted(), Text(L"x")), ErrorResult(5));
    EXPECT_EQ(Items(), (Texts{L"a", L"b!", L"c", L"d!", L"e"}));
}

TEST_F(CollectionTest, TakesValuesAndObjectsOfAnyKind)
{
    const auto cCat = Create<_clsCat>(CLSID_clsCat);
    ASSERT_EQ(Add(Object(cCat), Text(L"cat")), S_OK);
    Variant cNumber = Long(42);
    ASSERT_EQ(Add(Variant(ByReference(cNumber))), S_OK);
    cNumber.lVal = 0; // the collection has a copy
    EXPECT_TRUE(IsSame(ItemAt<_clsCat>(m_col, Text(L"cat")), cCat));
    const Variant cItem = Get(m_col, &_clsCollection::get_Item, Long(2));
    EXPECT_EQ(cItem.vt, VT_I4);
    EXPECT_EQ(cItem.lVal, 42);
}

ComPtr<IEnumVARIANT> EnumOf(const ComPtr<_clsCollection>& colItems)
{
    return Get(colItems, &_clsCollection::get__NewEnum).As<IEnumVARIANT>();
}

class EnumerationTest : public CollectionTest
{
protected:
    EnumerationTest() { AddKeyed({L"a", L"b", L"c"}); }
    static std::wstring Next(const ComPtr<IEnumVARIANT>& cEnum)
    {
        Variant cItem;
        ULONG lFetched = 7;
        const HRESULT hResult = cEnum->Next(1, &cItem, &lFetched);
        EXPECT_EQ(lFetched, hResult == S_OK ? 1u : 0u);
        return hResult == S_OK ? TextOf(cItem.bstrVal) : L"(end)";
    }

    ComPtr<IEnumVARIANT> m_cEnum = EnumOf(m_col);
};

TEST_F(EnumerationTest, SkipResetAndCloneKeepTheirPlace)
{
    EXPECT_EQ(m_cEnum->Skip(1), S_OK);
    const auto cClone = Get(m_cEnum, &IEnumVARIANT::Clone);
    EXPECT_EQ(Next(m_cEnum), L"b!");
    EXPECT_EQ(Next(cClone), L"b!");
    EXPECT_EQ(m_cEnum->Skip(2), S_FALSE);
    EXPECT_EQ(Next(m_cEnum), L"(end)");
    EXPECT_EQ(m_cEnum->Reset(), S_OK);
    EXPECT_EQ(Next(m_cEnum), L"a!");
    EXPECT_EQ(Next(cClone), L"c!");
}

TEST_F(EnumerationTest, SeveralItemsComeAtOnceIntoAPlaceThatIsGiven)
{
    Variant colItems[4];
    ULONG lFetched = 0;
    EXPECT_EQ(m_cEnum->Next(4, colItems, &lFetched), S_FALSE);
    EXPECT_EQ(lFetched, 3u);
    EXPECT_EQ(TextOf(colItems[2].bstrVal), L"c!");
    EXPECT_EQ(m_cEnum->Reset(), S_OK);
    EXPECT_EQ(m_cEnum->Next(1, nullptr, &lFetched), E_POINTER);
    EXPECT_EQ(m_cEnum->Next(2, colItems, nullptr), E_POINTER) << "only a single item needs no count";
    Variant cItem;
    EXPECT_EQ(m_cEnum->Next(1, &cItem, nullptr), S_OK);
    EXPECT_EQ(TextOf(cItem.bstrVal), L"a!");
    EXPECT_EQ(m_cEnum->Clone(nullptr), E_POINTER);
}

TEST_F(EnumerationTest, TheCollectionMayChangeDuringAWalkWhichKeepsItAlive)
{
    EXPECT_EQ(Next(m_cEnum), L"a!");
    Do(m_col, &_clsCollection::Remove, Long(3));
    Do(m_col, &_clsCollection::Remove, Long(2));
    EXPECT_EQ(Next(m_cEnum), L"(end)");
    AddKeyed({L"d", L"e"});
    m_col = nullptr;
    EXPECT_EQ(Next(m_cEnum), L"d!");
    EXPECT_EQ(m_cEnum->Skip(5), S_FALSE);
}

TEST_F(ComStationTest, AFailedEnumerationHandsOutNothingAndKeepsItsPlace)
{
    for (const wchar_t* sTitle : {L"a", L"b", L"c"})
        AddCut(sTitle);
    const auto cEnum = EnumOf(AllCuts());
    EXPECT_EQ(cEnum->Skip(1), S_OK);
    Do(m_cDataBase, &_clsDataBase::Close);
    Variant colItems[2];
    ULONG lFetched = 7;
    EXPECT_EQ(cEnum->Next(2, colItems, &lFetched), ErrorResult(91));
    EXPECT_EQ(TakeErrorInfo().sDescription, L"The database is not open.");
    EXPECT_EQ(lFetched, 0u);
    EXPECT_EQ(colItems[0].vt, VT_EMPTY);
    EXPECT_EQ(cEnum->Skip(1), ErrorResult(91));
    EXPECT_EQ(TakeErrorInfo().sDescription, L"The database is not open.");
    Do(m_cDataBase, &_clsDataBase::Open, File());
    ASSERT_EQ(cEnum->Next(1, colItems, &lFetched), S_OK);
    EXPECT_EQ(Get(ObjectIn<_clsCut>(colItems[0]), &_clsCut::get_Title), L"b");
}

class ValueListFaceTest : public ComTest
{
protected:
    HRESULT Add(const Variant& cValue) { return m_list->Add(cValue); }

    ComPtr<_clsValueList> m_list = Create<_clsValueList>(CLSID_clsValueList);
};

TEST_F(ValueListFaceTest, ValuesAscendNumbersBeforeTexts)
{
    for (const Variant& cValue :
         {Text(L"beta"), Long(10), Text(L"Alpha"), Long(-3), Double(2.5), Text(L"ALPHA"), Text(L"10")})
        ASSERT_EQ(Add(cValue), S_OK);
    EXPECT_EQ(ItemsOf(m_list), (Texts{L"-3", L"2.5", L"10", L"10", L"Alpha", L"ALPHA", L"beta"}));
    EXPECT_EQ(Get(m_list, &_clsValueList::get_Count), 7);
    for (const Variant& cValue : {Variant(), Null(), Object(m_list)})
        EXPECT_EQ(Add(cValue), ErrorResult(13)) << "it has no order";
    EXPECT_EQ(Get(m_list, &_clsValueList::get_Count), 7);
}

TEST_F(ValueListFaceTest, PositionsCountFromOneInAscendingOrder)
{
    for (const std::int32_t lValue : {30, 10, 20})
        ASSERT_EQ(Add(Long(lValue)), S_OK);
    Variant cItem = Get(m_list, &_clsValueList::get_Item, Long(2));
    EXPECT_EQ(cItem.lVal, 20);
    Do(m_list, &_clsValueList::Remove, Long(1));
    EXPECT_EQ(ItemsOf(m_list), (Texts{L"20", L"30"}));
    EXPECT_EQ(m_list->Remove(Long(3)), ErrorResult(9));
    EXPECT_EQ(m_list->get_Item(Long(0), &cItem), ErrorResult(9));
    EXPECT_EQ(m_list->get_Item(Text(L"20"), &cItem), ErrorResult(13));
}

} // namespace
} // namespace ravlo
