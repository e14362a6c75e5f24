// SPDX-License-Identifier: MIT
// Late-bound calls as script engines and other hosts make them.
#include "com/HostObjects.h"
#include "comkit/InterfaceDescription.h"

namespace ravlo
{

namespace
{

constexpr WORD wCall = DISPATCH_METHOD;
constexpr WORD wGet = DISPATCH_PROPERTYGET;
constexpr WORD wRead = DISPATCH_METHOD | DISPATCH_PROPERTYGET;
constexpr WORD wPut = DISPATCH_PROPERTYPUT;
constexpr WORD wPutRef = DISPATCH_PROPERTYPUTREF;

class InvokeTest : public ComTest
{
protected:
    ComPtr<_clsSchedMan> m_cMan = Create<_clsSchedMan>(CLSID_clsSchedMan);
    ComPtr<_clsCat> m_cCat = Create<_clsCat>(CLSID_clsCat);
    ComPtr<_clsCollection> m_col = Create<_clsCollection>(CLSID_clsCollection);
    ComPtr<_clsCut> m_cCut = Create<_clsCut>(CLSID_clsCut);
};

std::wstring TextIn(const Variant& cValue)
{
    const auto cText = cValue.As(VT_BSTR);
    return cText ? TextOf(cText->bstrVal) : L"(no text)";
}

TEST_F(InvokeTest, PropertiesAreSetAndReadByNameInAnyCase)
{
    EXPECT_EQ(Call(m_cCat.Get(), L"catname", wPut, {Text(L"Rock")}).hResult, S_OK);
    EXPECT_EQ(TextIn(Call(m_cCat.Get(), L"CATNAME", wGet).cResult), L"Rock");
    EXPECT_EQ(Call(m_cCat.Get(), L"NoSuchMember", wGet).hResult, DISP_E_UNKNOWNNAME);
}

TEST_F(InvokeTest, APropertyCanBeReadAsAMethod)
{
    ASSERT_EQ(m_cCat->put_CatLevel(4), S_OK);
    for (const WORD wFlags : {wGet, wCall, wRead})
        EXPECT_EQ(Call(m_cCat.Get(), L"CatLevel", wFlags).cResult.lVal, 4) << wFlags;
}

TEST_F(InvokeTest, AMethodCanBeCalledAsAProperty)
{
    const Called called = Call(m_cMan.Get(), L"colSavedCatNames", wGet);
    EXPECT_EQ(called.hResult, S_OK);
    EXPECT_EQ(called.cResult.vt, VT_DISPATCH);
}

TEST_F(InvokeTest, ValuesAreConvertedToTheDeclaredType)
{
    EXPECT_EQ(Call(m_cCat.Get(), L"CatLevel", wPut, {Text(L"7")}).hResult, S_OK);
    EXPECT_EQ(Get(m_cCat, &_clsCat::get_CatLevel), 7);
    EXPECT_EQ(Call(m_cCat.Get(), L"CatName", wPut, {Long(12)}).hResult, S_OK);
    EXPECT_EQ(Get(m_cCat, &_clsCat::get_CatName), L"12");
    Variant cVariable = Long(9);
    EXPECT_EQ(Call(m_cCat.Get(), L"CatLevel", wPut, {ByReference(cVariable)}).hResult, S_OK);
    EXPECT_EQ(Get(m_cCat, &_clsCat::get_CatLevel), 9);
}

TEST_F(InvokeTest, SinglesDatesAndBooleansArriveAsTheyAre)
{
    const auto cViolation = Create<_clsRuleViolation>(CLSID_clsRuleViolation);
    Variant cDouble;
    cDouble.vt = VT_R8;
    cDouble.dblVal = 1.5;
    EXPECT_EQ(Call(cViolation.Get(), L"MinsAgo", wPut, {cDouble}).hResult, S_OK);
    const Called single = Call(cViolation.Get(), L"MinsAgo", wGet);
    EXPECT_EQ(single.cResult.vt, VT_R4);
    EXPECT_EQ(single.cResult.fltVal, 1.5f);
    EXPECT_EQ(Call(cViolation.Get(), L"Violation", wPut, {Long(77)}).hResult, S_OK);
    EXPECT_EQ(Call(cViolation.Get(), L"Violation", wGet).cResult.lVal, 77);

    Variant cDate;
    cDate.vt = VT_DATE;
    cDate.date = 45000.25;
    EXPECT_EQ(Call(m_cCut.Get(), L"LastPlayed", wPut, {cDate}).hResult, S_OK);
    const Called date = Call(m_cCut.Get(), L"LastPlayed", wGet);
    EXPECT_EQ(date.cResult.vt, VT_DATE);
    EXPECT_EQ(date.cResult.date, 45000.25);
    EXPECT_EQ(Call(m_cCut.Get(), L"Opener", wPut, {Variant(true)}).hResult, S_OK);
    const Called opener = Call(m_cCut.Get(), L"Opener", wGet);
    EXPECT_EQ(opener.cResult.vt, VT_BOOL);
    EXPECT_EQ(opener.cResult.boolVal, VARIANT_TRUE);
}

TEST_F(InvokeTest, AValueOfTheWrongKindNamesItsArgument)
{
    const Called text = Call(m_cCat.Get(), L"CatLevel", wPut, {Text(L"many")});
    EXPECT_EQ(text.hResult, DISP_E_TYPEMISMATCH);
    EXPECT_EQ(text.lArgument, 0u);
    Variant cFlag(false);
    const Called object = Call(m_cCat.Get(), L"AddCut", wCall, {Object(m_col), ByReference(cFlag)});
    EXPECT_EQ(object.hResult, DISP_E_TYPEMISMATCH);
    EXPECT_EQ(object.lArgument, 1u);
}

TEST_F(InvokeTest, TheNumberOfArgumentsIsChecked)
{
    EXPECT_EQ(Call(m_cMan.Get(), L"ShowHelp", wCall, {Long(1)}).hResult, DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(Call(m_cMan.Get(), L"SaveHistoryAndOrdering", wCall).hResult, DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(Call(m_cMan.Get(), L"SaveHistoryAndOrdering", wCall, {Variant::Omitted()}).hResult,
              DISP_E_PARAMNOTOPTIONAL);
    EXPECT_EQ(Call(m_cMan.Get(), L"colCuts", wRead).hResult, DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(Call(m_cCat.Get(), L"CatLevel", wPut, {Long(1), Long(2)}).hResult, DISP_E_BADPARAMCOUNT);
}

TEST_F(InvokeTest, OptionalArgumentsMayBeLeftOutInTheMiddle)
{
    ASSERT_EQ(Call(m_col.Get(), L"Add", wCall, {Text(L"b"), Text(L"b")}).hResult, S_OK);
    ASSERT_EQ(Call(m_col.Get(), L"Add", wCall, {Text(L"a"), Variant::Omitted(), Long(1)}).hResult, S_OK);
    EXPECT_EQ(ItemsOf(m_col.Get()), (std::vector<std::wstring>{L"a", L"b"}));
}

TEST_F(InvokeTest, ArgumentsMayBeNamed)
{
    ASSERT_EQ(Call(m_col.Get(), L"Add", wCall, {}, {{L"key", Text(L"k1")}, {L"item", Text(L"one")}}).hResult,
              S_OK);
    ASSERT_EQ(Call(m_col.Get(), L"Add", wCall, {Text(L"zero")}, {{L"Before", Text(L"K1")}}).hResult, S_OK);
    EXPECT_EQ(ItemsOf(m_col.Get()), (std::vector<std::wstring>{L"zero", L"one"}));
    EXPECT_EQ(Call(m_col.Get(), L"Add", wCall, {Text(L"x")}, {{L"Item", Text(L"twice")}}).hResult,
              DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(Call(m_col.Get(), L"Add", wCall, {}, {{L"Nothing", Text(L"x")}}).hResult, DISP_E_UNKNOWNNAME);
}

TEST_F(InvokeTest, TheDefaultMemberIsTheItem)
{
    ASSERT_EQ(Call(m_col.Get(), L"Add", wCall, {Text(L"one"), Text(L"k")}).hResult, S_OK);
    Variant cIndex = Text(L"k");
    DISPPARAMS arguments{&cIndex, nullptr, 1, 0};
    Variant cResult;
    ASSERT_EQ(m_col->Invoke(DISPID_VALUE, IID_NULL, LOCALE_USER_DEFAULT, wRead, &arguments, &cResult, nullptr,
                            nullptr),
              S_OK);
    EXPECT_EQ(TextIn(cResult), L"one");
}

TEST_F(InvokeTest, ArgumentsOfACollectionPropertyGoToTheCollection)
{
    EXPECT_EQ(TextIn(Call(m_cMan.Get(), L"colIllegalChars", wRead, {Long(9)}).cResult), L"\"");
    const Called missing = Call(m_cMan.Get(), L"colIllegalChars", wRead, {Long(10)});
    EXPECT_EQ(missing.hResult, DISP_E_EXCEPTION);
    EXPECT_EQ(missing.hError, ErrorResult(9));
    EXPECT_EQ(Call(m_cMan.Get(), L"colMainCats", wRead, {Long(1)}).hResult, DISP_E_BADPARAMCOUNT)
        << "there is no collection before population";
}

TEST_F(InvokeTest, EmptyAndNullAreNoObject)
{
    Variant cNull;
    cNull.vt = VT_NULL;
    Variant cFlag(false);
    for (const Variant& cNothing : {Variant(), cNull, Variant(static_cast<IDispatch*>(nullptr))})
        EXPECT_EQ(Call(m_cCat.Get(), L"AddCut", wCall, {cNothing, ByReference(cFlag)}).cResult.boolVal,
                  VARIANT_FALSE);
}

TEST_F(InvokeTest, AnObjectIsAskedForTheParametersInterface)
{
    // A variable that holds the object as IUnknown, as some hosts pass it.
    const Variant cUnknown(static_cast<IUnknown*>(m_cCut.Get()));
    const auto cViolation = Create<_clsRuleViolation>(CLSID_clsRuleViolation);
    EXPECT_EQ(Call(cViolation.Get(), L"Cut", wPutRef, {cUnknown}).hResult, S_OK);
    EXPECT_TRUE(IsSame(Get(cViolation, &_clsRuleViolation::get_Cut), m_cCut));
}

TEST_F(InvokeTest, AnObjectIsSetByValueToo)
{
    const auto cMain = Create<_clsCat>(CLSID_clsCat);
    EXPECT_EQ(Call(m_cCat.Get(), L"MainCat", wPut, {Object(cMain)}).hResult, S_OK);
    EXPECT_TRUE(IsSame(Get(m_cCat, &_clsCat::get_MainCat), cMain));
    EXPECT_EQ(Call(m_cCat.Get(), L"CatName", wPutRef, {Text(L"by reference")}).hResult, S_OK);
    EXPECT_EQ(Get(m_cCat, &_clsCat::get_CatName), L"by reference");
}

// NextCutFromRotation on an unpopulated manager gives a placeholder; what it gives back is none, none and no
// text.
class OutputTest : public InvokeTest
{
protected:
    Called Ask(const VARIANT& cMainCat, const VARIANT& cSubCat, const VARIANT& sMainCatKey)
    {
        return Call(m_cMan.Get(), L"NextCutFromRotation", wRead,
                    {Text(L"Rock\t1"), Variant(false), Variant(), cMainCat, cSubCat, sMainCatKey});
    }
};

TEST_F(OutputTest, VariablesOfAnyTypeReceiveOutputs)
{
    Variant cMainCat = Object(m_cCat);
    Variant cSubCat = Long(5);
    Variant sKey = Object(m_col);
    const Called called = Ask(ByReference(cMainCat), ByReference(cSubCat), ByReference(sKey));
    ASSERT_EQ(called.hResult, S_OK);
    EXPECT_EQ(called.cResult.vt, VT_DISPATCH);
    EXPECT_EQ(cMainCat.vt, VT_DISPATCH);
    EXPECT_EQ(cMainCat.pdispVal, nullptr);
    EXPECT_EQ(cSubCat.vt, VT_DISPATCH);
    EXPECT_EQ(cSubCat.pdispVal, nullptr);
    EXPECT_EQ(sKey.vt, VT_BSTR);
}

TEST_F(OutputTest, TypedReferencesKeepTheirTypes)
{
    IDispatch* pMainCat = ComPtr<IDispatch>(m_cCat).Detach();
    IUnknown* pSubCat = nullptr;
    BSTR sKey = NewBstr(L"before");
    VARIANT mainCat{};
    mainCat.vt = VT_BYREF | VT_DISPATCH;
    mainCat.ppdispVal = &pMainCat;
    VARIANT subCat{};
    subCat.vt = VT_BYREF | VT_UNKNOWN;
    subCat.ppunkVal = &pSubCat;
    VARIANT key{};
    key.vt = VT_BYREF | VT_BSTR;
    key.pbstrVal = &sKey;
    ASSERT_EQ(Ask(mainCat, subCat, key).hResult, S_OK);
    EXPECT_EQ(pMainCat, nullptr) << "the category it held is let go";
    EXPECT_EQ(pSubCat, nullptr);
    EXPECT_NE(TextOf(sKey), L"before");
    SysFreeString(sKey);
}

TEST_F(OutputTest, PlainValuesReceiveNoOutputs)
{
    EXPECT_EQ(Ask(Variant(), Long(1), Text(L"x")).hResult, S_OK);
}

TEST_F(OutputTest, ABooleanComesBackIntoEveryKindOfVariable)
{
    // Placement a level 1 cut in a main category makes the level.
    ASSERT_EQ(m_cCut->put_CatLevel(1), S_OK);
    ASSERT_EQ(m_cCut->put_Key(Bstr(L"C:\\a.mp3").Get()), S_OK);
    Variant cVariable;
    ASSERT_EQ(Call(m_cCat.Get(), L"AddCut", wCall, {Object(m_cCut), ByReference(cVariable)}).hResult, S_OK);
    EXPECT_EQ(cVariable.vt, VT_BOOL);
    EXPECT_EQ(cVariable.boolVal, VARIANT_TRUE);

    ASSERT_EQ(m_cCut->put_CatLevel(2), S_OK);
    LONG lFlag = 0;
    VARIANT flag{};
    flag.vt = VT_BYREF | VT_I4;
    flag.plVal = &lFlag;
    ASSERT_EQ(Call(m_cCat.Get(), L"AddCut", wCall, {Object(m_cCut), flag}).hResult, S_OK);
    EXPECT_EQ(lFlag, -1);
}

TEST_F(OutputTest, ARefusedCallChangesNoVariable)
{
    Variant cCollection = Text(L"unchanged");
    const Called called = Call(m_cMan.Get(), L"RemoveCutFromCategory", wCall,
                               {Object(m_col), Object(m_cCut), ByReference(cCollection)});
    EXPECT_EQ(called.hResult, DISP_E_TYPEMISMATCH);
    EXPECT_EQ(TextIn(cCollection), L"unchanged");
}

TEST_F(OutputTest, AnObjectOfAnotherInterfaceIsNoEmptyVariable)
{
    Variant cMainCat = Object(m_col);
    Variant cSubCat;
    Variant cKey;
    EXPECT_EQ(Ask(ByReference(cMainCat), ByReference(cSubCat), ByReference(cKey)).hResult,
              DISP_E_TYPEMISMATCH);
    EXPECT_TRUE(IsSame(ObjectIn<IUnknown>(cMainCat), m_col)) << "the variable keeps it";
}

// A category of a host's own that places a cut, makes a level, and then fails.
class FailingCat final : public HostCatObject
{
public:
    STDMETHODIMP AddCut(_clsCut*, VARIANT_BOOL* bCreatedNewSubCat, VARIANT_BOOL*) override
    {
        if (m_bStores)
            *bCreatedNewSubCat = VARIANT_TRUE;
        return ErrorResult(6);
    }

    bool m_bStores = true;
};

TEST_F(InvokeTest, AFailedMembersOutputsAreReturned)
{
    ComPtr<ITypeInfo> cInfo;
    ASSERT_EQ(m_cCat->GetTypeInfo(0, LOCALE_NEUTRAL, cInfo.Receive()), S_OK);
    const InterfaceDescription description(IID__clsCat, cInfo);
    const auto cCat = NewObject<FailingCat>();
    std::wstring sMember = L"AddCut";
    LPOLESTR pMember = sMember.data();
    DISPID lMember = 0;
    ASSERT_EQ(cInfo->GetIDsOfNames(&pMember, 1, &lMember), S_OK);
    const Variant cCut = Object(m_cCut);
    const auto add = [&](Variant& cCreated) {
        VARIANT colReversed[] = {ByReference(cCreated), cCut};
        const DISPPARAMS arguments{colReversed, nullptr, 2, 0};
        Variant cResult;
        EXCEPINFO info{};
        EXPECT_EQ(description.Invoke(cCat.Get(), lMember, LOCALE_NEUTRAL, wCall, arguments, &cResult, &info,
                                     nullptr),
                  DISP_E_EXCEPTION);
        EXPECT_EQ(info.scode, ErrorResult(6));
        EXPECT_EQ(cResult.vt, VT_EMPTY);
    };
    Variant cCreated(false);
    add(cCreated);
    EXPECT_EQ(cCreated.boolVal, VARIANT_TRUE);
    cCat->m_bStores = false;
    Variant cNoFlag = Text(L"kept");
    add(cNoFlag);
    EXPECT_EQ(TextIn(cNoFlag), L"kept") << "nothing was stored there";
}

TEST_F(InvokeTest, AnErrorComesAsAnExceptionWithNumberTextAndSource)
{
    const Called called = Call(m_col.Get(), L"Item", wRead, {Text(L"missing")});
    EXPECT_EQ(called.hResult, DISP_E_EXCEPTION);
    EXPECT_EQ(called.hError, ErrorResult(5));
    EXPECT_EQ(called.sError, L"Invalid procedure call or argument");
    EXPECT_EQ(called.sSource, L"KorvaCollection.clsCollection");
}

TEST_F(InvokeTest, AnEarlyBoundErrorLeavesItsTextWithTheThread)
{
    const auto cDataBase = Create<_clsDataBase>(CLSID_clsDataBase);
    ComPtr<_clsCollection> colCuts;
    EXPECT_EQ(cDataBase->get_Cuts(colCuts.Receive()), ErrorResult(91));
    const ErrorText error = TakeErrorInfo();
    EXPECT_EQ(error.sDescription, L"The database is not open.");
    EXPECT_EQ(error.sSource, L"RavloBase.clsDataBase");
}

TEST_F(InvokeTest, AMissingPlaceForAResultIsRefused)
{
    // That nothing is made for nobody to own, the end of the test checks.
    EXPECT_EQ(m_cCat->get_CatName(nullptr), E_POINTER);
    EXPECT_EQ(m_cCat->get_SubCats(nullptr), E_POINTER);
    EXPECT_EQ(m_cCat->get_Rules(nullptr), E_POINTER);
    EXPECT_EQ(m_cMan->get_colIllegalChars(nullptr), E_POINTER);
    EXPECT_EQ(m_cCut->CloneCut(nullptr), E_POINTER);
    EXPECT_EQ(m_cMan->get_UIShowing(nullptr), E_POINTER);
    EXPECT_EQ(m_cMan->RaiseEditRequestCutEvent(m_cCut.Get(), nullptr), E_POINTER);
    EXPECT_EQ(m_cCat->Invoke(1, IID_NULL, 0, wGet, nullptr, nullptr, nullptr, nullptr), E_POINTER);
}

} // namespace

} // namespace ravlo
