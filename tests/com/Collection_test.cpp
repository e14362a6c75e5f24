// SPDX-License-Identifier: MIT
#include "com/ComTest.h"

namespace ravlo
{

namespace
{

using Texts = std::vector<std::wstring>;

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
    bool Exists(const Variant& cKey)
    {
        VARIANT_BOOL bExists = VARIANT_FALSE;
        EXPECT_EQ(m_col->Exists(cKey, &bExists), S_OK);
        return bExists != VARIANT_FALSE;
    }
    std::wstring Item(const Variant& cIndex)
    {
        Variant cItem;
        EXPECT_EQ(m_col->get_Item(cIndex, &cItem), S_OK);
        return TextOf(cItem.bstrVal);
    }
    Texts Items() { return ItemsOf(m_col.Get()); }

    ComPtr<_clsCollection> m_col = Create<_clsCollection>(CLSID_clsCollection);
};

TEST_F(CollectionTest, ItemsComeByPositionFromOneAndByKeyWithoutRegardToCase)
{
    AddKeyed({L"Rock", L"Pop"});
    EXPECT_EQ(Item(Long(1)), L"Rock!");
    EXPECT_EQ(Item(Long(2)), L"Pop!");
    EXPECT_EQ(Item(Text(L"POP")), L"Pop!");
    EXPECT_EQ(Get(m_col, &_clsCollection::get_Count), 2);
    EXPECT_TRUE(Exists(Text(L"rock")));
    EXPECT_FALSE(Exists(Text(L"jazz")));
    EXPECT_TRUE(Exists(Long(2)));
    EXPECT_FALSE(Exists(Long(3)));
}

TEST_F(CollectionTest, AnyNumberIsAPositionAndADigitTextIsAKey)
{
    AddKeyed({L"2", L"1"});
    Variant cPosition;
    cPosition.vt = VT_R8;
    cPosition.dblVal = 2.0;
    EXPECT_EQ(Item(cPosition), L"1!");
    cPosition.vt = VT_I2;
    cPosition.iVal = 1;
    EXPECT_EQ(Item(cPosition), L"2!");
    EXPECT_EQ(Item(Text(L"2")), L"2!");
}

struct IndexError
{
    const char* sName;
    Variant cIndex;
    int lError;
};

TEST_F(CollectionTest, AMissingItemIsTheErrorHostsKnow)
{
    AddKeyed({L"a"});
    Variant cHuge;
    cHuge.vt = VT_R8;
    cHuge.dblVal = 1e12;
    Variant cNull;
    cNull.vt = VT_NULL;
    const IndexError colCases[] = {{"missing key", Text(L"b"), 5},     {"empty key", Text(L""), 5},
                                   {"position 0", Long(0), 9},         {"position past the end", Long(2), 9},
                                   {"negative position", Long(-1), 9}, {"huge position", cHuge, 9},
                                   {"Empty", Variant(), 13},           {"Null", cNull, 13},
                                   {"an object", Object(m_col), 13}};
    for (const IndexError& oneCase : colCases)
    {
        Variant cItem;
        EXPECT_EQ(m_col->get_Item(oneCase.cIndex, &cItem), ErrorResult(oneCase.lError)) << oneCase.sName;
        EXPECT_EQ(m_col->Remove(oneCase.cIndex), ErrorResult(oneCase.lError)) << oneCase.sName;
    }
    EXPECT_EQ(Items(), Texts{L"a!"});
}

TEST_F(CollectionTest, AddingAnExistingKeyIsError457AndChangesNothing)
{
    AddKeyed({L"Rock"});
    EXPECT_EQ(Add(Text(L"other"), Text(L"ROCK")), ErrorResult(457));
    const ErrorText error = TakeErrorInfo();
    EXPECT_EQ(error.sDescription, L"This key is already associated with an element of this collection");
    EXPECT_EQ(error.sSource, L"KorvaCollection.clsCollection");
    EXPECT_EQ(Items(), Texts{L"Rock!"});
}

TEST_F(CollectionTest, AKeyMustBeATextOrLeftOut)
{
    EXPECT_EQ(Add(Text(L"a"), Long(1)), ErrorResult(13));
    EXPECT_EQ(Add(Text(L"b"), Variant()), S_OK); // what script languages pass for undefined
    EXPECT_EQ(Items(), Texts{L"b"});
}

TEST_F(CollectionTest, BeforeAndAfterPlaceTheNewItem)
{
    AddKeyed({L"b", L"d"});
    EXPECT_EQ(Add(Text(L"a"), Text(L"a"), Text(L"B")), S_OK);
    EXPECT_EQ(Add(Text(L"c"), Text(L"c"), Long(3)), S_OK);
    EXPECT_EQ(Add(Text(L"e"), Text(L"e"), Variant::Omitted(), Text(L"d")), S_OK);
    EXPECT_EQ(Items(), (Texts{L"a", L"b!", L"c", L"d!", L"e"}));
    EXPECT_EQ(Add(Text(L"f"), Text(L"f"), Long(1), Long(1)), ErrorResult(5));
    EXPECT_EQ(Add(Text(L"f"), Text(L"f"), Long(9)), ErrorResult(9));
    EXPECT_EQ(Add(Text(L"f"), Text(L"f"), Variant::Omitted(), Text(L"x")), ErrorResult(5));
    EXPECT_EQ(Get(m_col, &_clsCollection::get_Count), 5);
}

TEST_F(CollectionTest, ItemsAreRemovedByPositionAndByKey)
{
    AddKeyed({L"a", L"b", L"c"});
    EXPECT_EQ(m_col->Remove(Text(L"B")), S_OK);
    EXPECT_EQ(m_col->Remove(Long(1)), S_OK);
    EXPECT_EQ(Items(), Texts{L"c!"});
}

TEST_F(CollectionTest, TakesValuesAndObjectsOfAnyKind)
{
    const auto cCat = Create<_clsCat>(CLSID_clsCat);
    ASSERT_EQ(Add(Object(cCat), Text(L"cat")), S_OK);
    Variant cNumber = Long(42);
    ASSERT_EQ(Add(Variant(ByReference(cNumber))), S_OK);
    cNumber.lVal = 0; // a copy was taken
    Variant cItem;
    ASSERT_EQ(m_col->get_Item(Text(L"cat"), &cItem), S_OK);
    EXPECT_TRUE(IsSame(ObjectIn<_clsCat>(cItem), cCat));
    cItem = Variant();
    ASSERT_EQ(m_col->get_Item(Long(2), &cItem), S_OK);
    EXPECT_EQ(cItem.vt, VT_I4);
    EXPECT_EQ(cItem.lVal, 42);
}

class EnumerationTest : public CollectionTest
{
protected:
    ComPtr<IEnumVARIANT> NewEnum() { return Get(m_col, &_clsCollection::get__NewEnum).As<IEnumVARIANT>(); }
    static std::wstring Next(const ComPtr<IEnumVARIANT>& cEnum)
    {
        Variant cItem;
        ULONG lFetched = 7;
        const HRESULT hResult = cEnum->Next(1, &cItem, &lFetched);
        EXPECT_EQ(lFetched, hResult == S_OK ? 1u : 0u);
        return hResult == S_OK ? TextOf(cItem.bstrVal) : L"(end)";
    }
};

TEST_F(EnumerationTest, SkipResetAndCloneKeepTheirPlace)
{
    AddKeyed({L"a", L"b", L"c"});
    const auto cEnum = NewEnum();
    EXPECT_EQ(cEnum->Skip(1), S_OK);
    ComPtr<IEnumVARIANT> cClone;
    ASSERT_EQ(cEnum->Clone(cClone.Receive()), S_OK);
    EXPECT_EQ(Next(cEnum), L"b!");
    EXPECT_EQ(Next(cClone), L"b!");
    EXPECT_EQ(cEnum->Skip(2), S_FALSE);
    EXPECT_EQ(Next(cEnum), L"(end)");
    EXPECT_EQ(cEnum->Reset(), S_OK);
    EXPECT_EQ(Next(cEnum), L"a!");
    EXPECT_EQ(Next(cClone), L"c!");
}

TEST_F(EnumerationTest, AnEnumeratorYieldsSeveralItemsAtOnce)
{
    AddKeyed({L"a", L"b", L"c"});
    const auto cEnum = NewEnum();
    Variant colItems[4];
    ULONG lFetched = 0;
    EXPECT_EQ(cEnum->Next(4, colItems, &lFetched), S_FALSE);
    EXPECT_EQ(lFetched, 3u);
    EXPECT_EQ(TextOf(colItems[2].bstrVal), L"c!");
}

TEST_F(EnumerationTest, TheCollectionMayChangeDuringAWalk)
{
    AddKeyed({L"a", L"b", L"c"});
    const auto cEnum = NewEnum();
    EXPECT_EQ(Next(cEnum), L"a!");
    ASSERT_EQ(m_col->Remove(Long(3)), S_OK);
    ASSERT_EQ(m_col->Remove(Long(2)), S_OK);
    EXPECT_EQ(Next(cEnum), L"(end)");
    AddKeyed({L"d", L"e"});
    EXPECT_EQ(Next(cEnum), L"d!");
    EXPECT_EQ(cEnum->Skip(5), S_FALSE);
}

TEST_F(EnumerationTest, AnEnumeratorKeepsItsCollectionAlive)
{
    AddKeyed({L"a"});
    const auto cEnum = NewEnum();
    m_col = nullptr;
    EXPECT_EQ(Next(cEnum), L"a!");
}

TEST_F(EnumerationTest, AFailureHandsOutNothingAndKeepsThePlace)
{
    const auto cDataBase = Create<_clsDataBase>(CLSID_clsDataBase);
    const Bstr sFile{(Folder() / L"station.db").wstring()};
    ASSERT_EQ(cDataBase->Open(sFile.Get()), S_OK);
    std::vector<Variant> colNew;
    for (const wchar_t* sKey : {L"a", L"b", L"c"})
    {
        const auto cCut = Get(cDataBase, &_clsDataBase::NewCut);
        ASSERT_EQ(cCut->put_Key(Bstr(sKey).Get()), S_OK);
        colNew.push_back(Object(cCut));
    }
    Get(cDataBase, &_clsDataBase::AddCuts, CollectionOf(colNew));
    const auto colCuts = Get(cDataBase, &_clsDataBase::get_Cuts);
    const auto cEnum = Get(colCuts, &_clsCollection::get__NewEnum).As<IEnumVARIANT>();
    ASSERT_EQ(cEnum->Skip(1), S_OK);

    ASSERT_EQ(cDataBase->Close(), S_OK);
    Variant colItems[2];
    ULONG lFetched = 7;
    EXPECT_EQ(cEnum->Next(2, colItems, &lFetched), ErrorResult(91));
    EXPECT_EQ(TakeErrorInfo().sDescription, L"The database is not open.");
    EXPECT_EQ(lFetched, 0u);
    EXPECT_EQ(colItems[0].vt, VT_EMPTY);
    EXPECT_EQ(cEnum->Skip(1), ErrorResult(91));
    EXPECT_EQ(TakeErrorInfo().sDescription, L"The database is not open.");

    ASSERT_EQ(cDataBase->Open(sFile.Get()), S_OK);
    ASSERT_EQ(cEnum->Next(1, colItems, &lFetched), S_OK);
    EXPECT_EQ(Get(ObjectIn<_clsCut>(colItems[0]), &_clsCut::get_Key), L"b");
}

TEST_F(EnumerationTest, APlaceForTheItemsIsDemanded)
{
    AddKeyed({L"a"});
    const auto cEnum = NewEnum();
    Variant colItems[2];
    ULONG lFetched = 0;
    EXPECT_EQ(cEnum->Next(1, nullptr, &lFetched), E_POINTER);
    EXPECT_EQ(cEnum->Next(2, colItems, nullptr), E_POINTER) << "only a single item needs no count";
    EXPECT_EQ(cEnum->Next(1, colItems, nullptr), S_OK);
    EXPECT_EQ(TextOf(colItems[0].bstrVal), L"a!");
    EXPECT_EQ(cEnum->Clone(nullptr), E_POINTER);
}

class ValueListTest : public ComTest
{
protected:
    ComPtr<_clsValueList> m_list = Create<_clsValueList>(CLSID_clsValueList);
};

TEST_F(ValueListTest, ValuesComeOutInAscendingOrderNumbersBeforeTexts)
{
    Variant cDouble;
    cDouble.vt = VT_R8;
    cDouble.dblVal = 2.5;
    for (const Variant& cValue :
         {Text(L"beta"), Long(10), Text(L"Alpha"), Long(-3), cDouble, Text(L"ALPHA"), Text(L"10")})
        ASSERT_EQ(m_list->Add(cValue), S_OK);
    EXPECT_EQ(ItemsOf(m_list.Get()), (Texts{L"-3", L"2.5", L"10", L"10", L"Alpha", L"ALPHA", L"beta"}));
    EXPECT_EQ(Get(m_list, &_clsValueList::get_Count), 7);
}

TEST_F(ValueListTest, PositionsCountFromOneInAscendingOrder)
{
    for (const std::int32_t lValue : {30, 10, 20})
        ASSERT_EQ(m_list->Add(Long(lValue)), S_OK);
    Variant cItem;
    ASSERT_EQ(m_list->get_Item(Long(2), &cItem), S_OK);
    EXPECT_EQ(cItem.lVal, 20);
    ASSERT_EQ(m_list->Remove(Long(1)), S_OK);
    EXPECT_EQ(ItemsOf(m_list.Get()), (Texts{L"20", L"30"}));
    EXPECT_EQ(m_list->Remove(Long(3)), ErrorResult(9));
    EXPECT_EQ(m_list->get_Item(Long(0), &cItem), ErrorResult(9));
    EXPECT_EQ(m_list->get_Item(Text(L"20"), &cItem), ErrorResult(13));
}

TEST_F(ValueListTest, OnlyNumbersAndTextsHaveAnOrder)
{
    Variant cNull;
    cNull.vt = VT_NULL;
    for (const Variant& cValue : {Variant(), cNull, Object(m_list)})
        EXPECT_EQ(m_list->Add(cValue), ErrorResult(13));
    EXPECT_EQ(Get(m_list, &_clsValueList::get_Count), 0);
}

} // namespace

} // namespace ravlo
