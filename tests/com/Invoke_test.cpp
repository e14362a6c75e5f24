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
    template <class I>
    static HRESULT Put(const ComPtr<I>& cObject, const wchar_t* sName, const VARIANT& value)
    {
        return Call(cObject.Get(), sName, wPut, {value}).hResult;
    }
    // Sets a property to a value, and expects to read the same value of the same type.
    template <class I> static void PutAndGet(const ComPtr<I>& cObject, const wchar_t* sName, VARIANT value)
    {
        EXPECT_EQ(Put(cObject, sName, value), S_OK);
        const Variant cResult = Call(cObject.Get(), sName, wGet).cResult;
        EXPECT_EQ(cResult.vt, value.vt);
        EXPECT_EQ(TextIn(cResult), TextIn(Variant(value)));
    }
    HRESULT Add(std::vector<VARIANT> colArguments, std::vector<NamedArgument> colNamed = {})
    {
        return Call(m_col.Get(), L"Add", wCall, std::move(colArguments), std::move(colNamed)).hResult;
    }
    Called AddCut(const VARIANT& cCut, const VARIANT& bCreated)
    {
        return Call(m_cCat.Get(), L"AddCut", wCall, {cCut, bCreated});
    }

    ComPtr<_clsSchedMan> m_cMan = Create<_clsSchedMan>(CLSID_clsSchedMan);
    ComPtr<_clsCat> m_cCat = Create<_clsCat>(CLSID_clsCat);
    ComPtr<_clsCollection> m_col = Create<_clsCollection>(CLSID_clsCollection);
    ComPtr<_clsCut> m_cCut = Create<_clsCut>(CLSID_clsCut);
    ComPtr<_clsRuleViolation> m_cViolation = Create<_clsRuleViolation>(CLSID_clsRuleViolation);
};

TEST_F(InvokeTest, PropertiesAreSetAndReadByNameInAnyCase)
{
    EXPECT_EQ(Put(m_cCat, L"catname", Text(L"Rock")), S_OK);
    EXPECT_EQ(TextIn(Call(m_cCat.Get(), L"CATNAME", wGet).cResult), L"Rock");
    EXPECT_EQ(Call(m_cCat.Get(), L"NoSuchMember", wGet).hResult, DISP_E_UNKNOWNNAME);
}

TEST_F(InvokeTest, PropertiesAndMethodsMayBeCalledAsEachOther)
{
    Do(m_cCat, &_clsCat::put_CatLevel, 4);
    for (const WORD wFlags : {wGet, wCall, wRead})
        EXPECT_EQ(Call(m_cCat.Get(), L"CatLevel", wFlags).cResult.lVal, 4) << wFlags;
    const Called method = Call(m_cMan.Get(), L"colSavedCatNames", wGet);
    EXPECT_EQ(method.hResult, S_OK);
    EXPECT_EQ(method.cResult.vt, VT_DISPATCH);
}

TEST_F(InvokeTest, ValuesAreConvertedToTheDeclaredType)
{
    EXPECT_EQ(Put(m_cCat, L"CatLevel", Text(L"7")), S_OK);
    EXPECT_EQ(Get(m_cCat, &_clsCat::get_CatLevel), 7);
    EXPECT_EQ(Put(m_cCat, L"CatName", Long(12)), S_OK);
    EXPECT_EQ(Get(m_cCat, &_clsCat::get_CatName), L"12");
    Variant cVariable = Long(9);
    EXPECT_EQ(Put(m_cCat, L"CatLevel", ByReference(cVariable)), S_OK);
    EXPECT_EQ(Get(m_cCat, &_clsCat::get_CatLevel), 9);
    EXPECT_EQ(Put(m_cViolation, L"MinsAgo", Double(1.5)), S_OK);
    const Called single = Call(m_cViolation.Get(), L"MinsAgo", wGet);
    EXPECT_EQ(single.cResult.vt, VT_R4);
    EXPECT_EQ(single.cResult.fltVal, 1.5f);
    PutAndGet(m_cViolation, L"Violation", Long(77));
    Variant cDate = Double(45000.25);
    cDate.vt = VT_DATE;
    PutAndGet(m_cCut, L"LastPlayed", cDate);
    PutAndGet(m_cCut, L"Opener", Variant(true));
}

TEST_F(InvokeTest, AValueOfTheWrongKindNamesItsArgument)
{
    const Called text = Call(m_cCat.Get(), L"CatLevel", wPut, {Text(L"many")});
    EXPECT_EQ(text.hResult, DISP_E_TYPEMISMATCH);
    EXPECT_EQ(text.lArgument, 0u);
    Variant cFlag(false);
    const Called object = AddCut(Object(m_col), ByReference(cFlag));
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

TEST_F(InvokeTest, ArgumentsMayBeNamedAndLeftOut)
{
    EXPECT_EQ(Add({}, {{L"key", Text(L"k1")}, {L"item", Text(L"one")}}), S_OK);
    EXPECT_EQ(Add({Text(L"zero")}, {{L"Before", Text(L"K1")}}), S_OK);
    EXPECT_EQ(Add({Text(L"a"), Variant::Omitted(), Long(1)}), S_OK);
    EXPECT_EQ(ItemsOf(m_col), (Texts{L"a", L"zero", L"one"}));
    EXPECT_EQ(Add({Text(L"x")}, {{L"Item", Text(L"twice")}}), DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(Add({}, {{L"Nothing", Text(L"x")}}), DISP_E_UNKNOWNNAME);
}

TEST_F(InvokeTest, TheDefaultMemberIsTheItem)
{
    ASSERT_EQ(Add({Text(L"one"), Text(L"k")}), S_OK);
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

TEST_F(InvokeTest, ObjectsArePassedInEveryWay)
{
    Variant cFlag(false);
    for (const Variant& cNothing : {Variant(), Null(), Variant(static_cast<IDispatch*>(nullptr))})
        EXPECT_EQ(AddCut(cNothing, ByReference(cFlag)).cResult.boolVal, VARIANT_FALSE);
    // As IUnknown, which is asked for the parameter's interface.
    const Variant cUnknown(static_cast<IUnknown*>(m_cCut.Get()));
    EXPECT_EQ(Call(m_cViolation.Get(), L"Cut", wPutRef, {cUnknown}).hResult, S_OK);
    EXPECT_TRUE(IsSame(Get(m_cViolation, &_clsRuleViolation::get_Cut), m_cCut));
    // Objects are set by value, too, and values by reference.
    const auto cMain = Create<_clsCat>(CLSID_clsCat);
    EXPECT_EQ(Put(m_cCat, L"MainCat", Object(cMain)), S_OK);
    EXPECT_TRUE(IsSame(Get(m_cCat, &_clsCat::get_MainCat), cMain));
    EXPECT_EQ(Call(m_cCat.Get(), L"CatName", wPutRef, {Text(L"by reference")}).hResult, S_OK);
    EXPECT_EQ(Get(m_cCat, &_clsCat::get_CatName), L"by reference");
}

// NextCutFromRotation on an unpopulated manager gives a placeholder; its outputs are none, none and no text.
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
    for (const Variant& cCat : {cMainCat, cSubCat})
    {
        EXPECT_EQ(cCat.vt, VT_DISPATCH);
        EXPECT_EQ(cCat.pdispVal, nullptr);
    }
    EXPECT_EQ(sKey.vt, VT_BSTR);
    EXPECT_EQ(Ask(Variant(), Long(1), Text(L"x")).hResult, S_OK) << "plain values receive none";
}

TEST_F(OutputTest, TypedReferencesKeepTheirTypes)
{
    IDispatch* pMainCat = ComPtr<IDispatch>(m_cCat).Detach();
    IUnknown* pSubCat = nullptr;
    BSTR sKey = NewBstr(L"before");
    ASSERT_EQ(
        Ask(ReferenceTo(VT_DISPATCH, pMainCat), ReferenceTo(VT_UNKNOWN, pSubCat), ReferenceTo(VT_BSTR, sKey))
            .hResult,
        S_OK);
    EXPECT_EQ(pMainCat, nullptr) << "the category it held is released";
    EXPECT_EQ(pSubCat, nullptr);
    EXPECT_NE(TextOf(sKey), L"before");
    SysFreeString(sKey);
}

TEST_F(OutputTest, ABooleanIsReturnedIntoEveryKindOfVariable)
{
    // A cut in a main category makes its level.
    Do(m_cCut, &_clsCut::put_CatLevel, 1);
    Do(m_cCut, &_clsCut::put_Key, L"C:\\a.mp3");
    Variant cVariable;
    EXPECT_EQ(AddCut(Object(m_cCut), ByReference(cVariable)).hResult, S_OK);
    EXPECT_EQ(cVariable.vt, VT_BOOL);
    EXPECT_EQ(cVariable.boolVal, VARIANT_TRUE);
    Do(m_cCut, &_clsCut::put_CatLevel, 2);
    LONG lFlag = 0;
    EXPECT_EQ(AddCut(Object(m_cCut), ReferenceTo(VT_I4, lFlag)).hResult, S_OK);
    EXPECT_EQ(lFlag, -1);
}

TEST_F(OutputTest, ARefusedCallChangesNoVariable)
{
    Variant cCollection = Text(L"unchanged");
    const Called called = Call(m_cMan.Get(), L"RemoveCutFromCategory", wCall,
                               {Object(m_col), Object(m_cCut), ByReference(cCollection)});
    EXPECT_EQ(called.hResult, DISP_E_TYPEMISMATCH);
    EXPECT_EQ(TextIn(cCollection), L"unchanged");
    Variant cMainCat = Object(m_col); // of another interface
    Variant cEmpty;
    EXPECT_EQ(Ask(ByReference(cMainCat), ByReference(cEmpty), ByReference(cEmpty)).hResult,
              DISP_E_TYPEMISMATCH);
    EXPECT_TRUE(IsSame(ObjectIn<IUnknown>(cMainCat), m_col));
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
    const auto cInfo = Get(m_cCat, &IDispatch::GetTypeInfo, 0u, LCID{LOCALE_NEUTRAL});
    const InterfaceDescription description(IID__clsCat, cInfo);
    const auto cCat = NewObject<FailingCat>();
    std::wstring sMember = L"AddCut";
    LPOLESTR pMember = sMember.data();
    DISPID lMember = 0;
    ASSERT_EQ(cInfo->GetIDsOfNames(&pMember, 1, &lMember), S_OK);
    const auto add = [&](Variant& cCreated) {
        const Variant cCut = Object(m_cCut);
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

TEST_F(InvokeTest, AnErrorHasNumberTextAndSource)
{
    const Called called = Call(m_col.Get(), L"Item", wRead, {Text(L"missing")});
    EXPECT_EQ(called.hResult, DISP_E_EXCEPTION);
    EXPECT_EQ(called.hError, ErrorResult(5));
    EXPECT_EQ(called.sError, L"Invalid procedure call or argument");
    EXPECT_EQ(called.sSource, L"KorvaCollection.clsCollection");

    const auto cDataBase = Create<_clsDataBase>(CLSID_clsDataBase);
    ComPtr<_clsCollection> colCuts;
    EXPECT_EQ(cDataBase->get_Cuts(colCuts.Receive()), ErrorResult(91));
    const ErrorText error = TakeErrorInfo(); // where early-bound calls leave it
    EXPECT_EQ(error.sDescription, L"The database is not open.");
    EXPECT_EQ(error.sSource, L"RavloBase.clsDataBase");
}

TEST_F(InvokeTest, AMissingPlaceForAResultIsRefused)
{
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
