// SPDX-License-Identifier: MIT
#include "com/ComTest.h"

namespace ravlo
{

namespace
{

struct Class
{
    const char* sName;
    const wchar_t* sProgID;
    const CLSID* pClsid;
    const IID* pIid;
    const IID* pSource; // null without events
};

class ClassTest : public ComTest, public testing::WithParamInterface<Class>
{
protected:
    ComPtr<IUnknown> Make() { return Create<IUnknown>(*GetParam().pClsid); }
};

TEST_P(ClassTest, IsFoundByItsNameAndItsVersionedName)
{
    for (const wchar_t* sSuffix : {L"", L".1"})
    {
        CLSID clsid{};
        EXPECT_EQ(CLSIDFromProgID((GetParam().sProgID + std::wstring(sSuffix)).c_str(), &clsid), S_OK);
        EXPECT_TRUE(Create<IUnknown>(clsid).As<IUnknown>(*GetParam().pIid)) << "created by name";
    }
}

TEST_P(ClassTest, AnswersItsInterfacesFromEachOfThemAsOneObject)
{
    const auto cObject = Make();
    for (const IID& iid : {IID_IUnknown, IID_IDispatch, *GetParam().pIid, IID_ISupportErrorInfo,
                           IID_IProvideClassInfo, IID_IProvideClassInfo2})
    {
        const auto cOther = cObject.As<IUnknown>(iid);
        ASSERT_TRUE(cOther);
        EXPECT_EQ(IdentityOf(cOther.Get()).Get(), cObject.Get());
        EXPECT_TRUE(cOther.As<IUnknown>(*GetParam().pIid));
    }
    EXPECT_FALSE(cObject.As<IUnknown>(IID_IClassFactory));
}

TEST_P(ClassTest, HasConnectionPointsOnlyWithEvents)
{
    const auto cContainer = Make().As<IConnectionPointContainer>();
    EXPECT_EQ(static_cast<bool>(cContainer), GetParam().pSource != nullptr);
}

TEST_P(ClassTest, NamesItsClassAndItsEvents)
{
    const auto cProvider = Make().As<IProvideClassInfo2>();
    ComPtr<ITypeInfo> cInfo;
    ASSERT_EQ(cProvider->GetClassInfo(cInfo.Receive()), S_OK);
    TYPEATTR* pAttributes = nullptr;
    ASSERT_EQ(cInfo->GetTypeAttr(&pAttributes), S_OK);
    EXPECT_EQ(pAttributes->guid, *GetParam().pClsid);
    cInfo->ReleaseTypeAttr(pAttributes);

    GUID source{};
    const HRESULT hResult = cProvider->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &source);
    EXPECT_EQ(hResult, GetParam().pSource ? S_OK : E_INVALIDARG);
    EXPECT_EQ(source, GetParam().pSource ? *GetParam().pSource : GUID_NULL);
    EXPECT_EQ(cProvider->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID + 1, &source), E_INVALIDARG);
}

TEST_P(ClassTest, SupportsErrorInformationForItsOwnInterfaceOnly)
{
    const auto cSupport = Make().As<ISupportErrorInfo>();
    EXPECT_EQ(cSupport->InterfaceSupportsErrorInfo(*GetParam().pIid), S_OK);
    EXPECT_EQ(cSupport->InterfaceSupportsErrorInfo(IID_IConnectionPointContainer), S_FALSE);
}

TEST_P(ClassTest, DescribesItselfAsOneDispatchInterface)
{
    const auto cDispatch = Make().As<IDispatch>();
    UINT lCount = 99;
    EXPECT_EQ(cDispatch->GetTypeInfoCount(&lCount), S_OK);
    EXPECT_EQ(lCount, 1u);
    ComPtr<ITypeInfo> cInfo;
    EXPECT_EQ(cDispatch->GetTypeInfo(1, LOCALE_USER_DEFAULT, cInfo.Receive()), DISP_E_BADINDEX);
    ASSERT_EQ(cDispatch->GetTypeInfo(0, LOCALE_USER_DEFAULT, cInfo.Receive()), S_OK);
    TYPEATTR* pAttributes = nullptr;
    ASSERT_EQ(cInfo->GetTypeAttr(&pAttributes), S_OK);
    EXPECT_EQ(pAttributes->guid, *GetParam().pIid);
    EXPECT_EQ(pAttributes->typekind, TKIND_DISPATCH);
    cInfo->ReleaseTypeAttr(pAttributes);
}

TEST_P(ClassTest, RefusesAggregation)
{
    const auto cOuter = Make();
    void* pvObject = &pvObject;
    EXPECT_EQ(
        CoCreateInstance(*GetParam().pClsid, cOuter.Get(), CLSCTX_INPROC_SERVER, IID_IUnknown, &pvObject),
        CLASS_E_NOAGGREGATION);
    EXPECT_EQ(pvObject, nullptr);
}

INSTANTIATE_TEST_SUITE_P(
    Com, ClassTest,
    testing::Values(Class{"clsSchedMan", L"RavloScheduler.clsSchedMan", &CLSID_clsSchedMan, &IID__clsSchedMan,
                          &DIID___clsSchedMan},
                    Class{"clsCat", L"RavloScheduler.clsCat", &CLSID_clsCat, &IID__clsCat, nullptr},
                    Class{"clsCatRules", L"RavloScheduler.clsCatRules", &CLSID_clsCatRules, &IID__clsCatRules,
                          nullptr},
                    Class{"clsRuleViolation", L"RavloScheduler.clsRuleViolation", &CLSID_clsRuleViolation,
                          &IID__clsRuleViolation, nullptr},
                    Class{"clsCollection", L"KorvaCollection.clsCollection", &CLSID_clsCollection,
                          &IID__clsCollection, nullptr},
                    Class{"clsValueList", L"KorvaCollection.clsValueList", &CLSID_clsValueList,
                          &IID__clsValueList, nullptr},
                    Class{"clsDataBase", L"RavloBase.clsDataBase", &CLSID_clsDataBase, &IID__clsDataBase,
                          &DIID___clsDataBase},
                    Class{"clsCut", L"RavloBase.clsCut", &CLSID_clsCut, &IID__clsCut, nullptr}),
    [](const auto& parameters) { return std::string(parameters.param.sName); });

TEST_F(ComTest, AFactoryLocksItsServer)
{
    ComPtr<IClassFactory> cFactory;
    ASSERT_EQ(CoGetClassObject(CLSID_clsCat, CLSCTX_INPROC_SERVER, nullptr, IID_IClassFactory,
                               reinterpret_cast<void**>(cFactory.Receive())),
              S_OK);
    ASSERT_EQ(cFactory->LockServer(TRUE), S_OK);
    const auto cUnknown = cFactory.As<IUnknown>(IID_IUnknown);
    EXPECT_TRUE(cUnknown);
    EXPECT_EQ(cFactory->LockServer(FALSE), S_OK);
}

TEST_F(ComTest, AServerIsUnloadedWhenItsLastObjectIsGone)
{
    auto cCat = Create<_clsCat>(CLSID_clsCat);
    CoFreeUnusedLibrariesEx(0, 0);
    EXPECT_NE(GetModuleHandleW(L"RavloSched.dll"), nullptr);
    cCat = nullptr;
    CoFreeUnusedLibrariesEx(0, 0);
    EXPECT_EQ(GetModuleHandleW(L"RavloSched.dll"), nullptr);
}

TEST_F(ComTest, CoreObjectHasOneFaceWhileReferenced)
{
    const auto cMain = Create<_clsCat>(CLSID_clsCat);
    const auto cLevel = Create<_clsCat>(CLSID_clsCat);
    ASSERT_EQ(cLevel->put_CatLevel(3), S_OK);
    EXPECT_TRUE(Get(cMain, &_clsCat::AddSubCat, cLevel));

    EXPECT_TRUE(IsSame(Get(cLevel, &_clsCat::get_MainCat), cMain));
    ComPtr<_clsCollection> colFirst;
    ASSERT_EQ(cMain->get_SubCats(colFirst.Receive()), S_OK);
    EXPECT_TRUE(IsSame(colFirst, Get(cMain, &_clsCat::get_SubCats)));
    EXPECT_TRUE(IsSame(ItemAt<_clsCat>(colFirst, Text(L"3")), cLevel));
    EXPECT_TRUE(IsSame(Get(cLevel, &_clsCat::get_Rules), Get(cLevel, &_clsCat::get_Rules)));
}

TEST_F(ComTest, AFaceThatCameBackIsANewObjectOverTheSameCore)
{
    const auto cMain = Create<_clsCat>(CLSID_clsCat);
    VARIANT_BOOL bAdded = VARIANT_FALSE;
    {
        const auto cLevel = Create<_clsCat>(CLSID_clsCat);
        ASSERT_EQ(cLevel->put_CatLevel(5), S_OK);
        ASSERT_EQ(cMain->AddSubCat(cLevel.Get(), &bAdded), S_OK);
    }
    const auto colLevels = Get(cMain, &_clsCat::get_SubCats);
    EXPECT_EQ(Get(ItemAt<_clsCat>(colLevels, Long(1)), &_clsCat::get_CatLevel), 5);
}

TEST_F(ComTest, SubCatsTakesOnlyWhatCanBeALevel)
{
    const auto cMain = Create<_clsCat>(CLSID_clsCat);
    const auto cLevel = Create<_clsCat>(CLSID_clsCat);
    const auto cOther = Create<_clsCat>(CLSID_clsCat);
    ASSERT_EQ(cLevel->put_CatLevel(1), S_OK);
    ComPtr<_clsCollection> colLevels;
    ComPtr<_clsCollection> colOfLevel;
    ASSERT_EQ(cMain->get_SubCats(colLevels.Receive()), S_OK);
    ASSERT_EQ(cLevel->get_SubCats(colOfLevel.Receive()), S_OK);
    const auto Add = [](const ComPtr<_clsCollection>& colCats, const ComPtr<_clsCat>& cCat) {
        return colCats->Add(Variant(static_cast<IDispatch*>(cCat.Get())), Variant::Omitted(),
                            Variant::Omitted(), Variant::Omitted());
    };
    constexpr HRESULT hInvalidCall = static_cast<HRESULT>(0x800A0005);
    EXPECT_EQ(Add(colLevels, cMain), hInvalidCall) << "a main category";
    EXPECT_EQ(Add(colOfLevel, cLevel), hInvalidCall) << "itself";
    ASSERT_EQ(Add(colLevels, cLevel), S_OK);
    EXPECT_TRUE(IsSame(Get(cLevel, &_clsCat::get_MainCat), cMain));
    ASSERT_EQ(cOther->put_CatLevel(2), S_OK);
    EXPECT_EQ(Add(colOfLevel, cOther), hInvalidCall) << "a level has no levels";
    ASSERT_EQ(cMain->put_CatLevel(2), S_OK);
    EXPECT_EQ(Add(colLevels, cMain), hInvalidCall) << "itself, whatever its number";
    Get(cMain, &_clsCat::get_AverageRunTimemS);
}

} // namespace

} // namespace ravlo
