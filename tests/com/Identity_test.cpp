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

GUID GuidOf(ITypeInfo& cInfo, TYPEKIND eKind)
{
    TYPEATTR* pAttributes = nullptr;
    EXPECT_EQ(cInfo.GetTypeAttr(&pAttributes), S_OK);
    EXPECT_EQ(pAttributes->typekind, eKind);
    const GUID guid = pAttributes->guid;
    cInfo.ReleaseTypeAttr(pAttributes);
    return guid;
}

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
    const bool bEvents = GetParam().pSource != nullptr;
    EXPECT_EQ(static_cast<bool>(cObject.As<IConnectionPointContainer>()), bEvents);
}

TEST_P(ClassTest, NamesItsClassAndItsEvents)
{
    const auto cProvider = Make().As<IProvideClassInfo2>();
    EXPECT_EQ(GuidOf(*Get(cProvider, &IProvideClassInfo2::GetClassInfo), TKIND_COCLASS), *GetParam().pClsid);
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
    EXPECT_EQ(Get(cDispatch, &IDispatch::GetTypeInfoCount), 1u);
    ComPtr<ITypeInfo> cInfo;
    EXPECT_EQ(cDispatch->GetTypeInfo(1, LOCALE_USER_DEFAULT, cInfo.Receive()), DISP_E_BADINDEX);
    ASSERT_EQ(cDispatch->GetTypeInfo(0, LOCALE_USER_DEFAULT, cInfo.Receive()), S_OK);
    EXPECT_EQ(GuidOf(*cInfo, TKIND_DISPATCH), *GetParam().pIid);
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

// A class with the library's and its own name.
#define RAVLO_CLASS(library, name, source)                                                                   \
    Class { #name, L"" #library "." #name, &CLSID_##name, &IID__##name, source }

INSTANTIATE_TEST_SUITE_P(Com, ClassTest,
                         testing::Values(RAVLO_CLASS(RavloScheduler, clsSchedMan, &DIID___clsSchedMan),
                                         RAVLO_CLASS(RavloScheduler, clsCat, nullptr),
                                         RAVLO_CLASS(RavloScheduler, clsCatRules, nullptr),
                                         RAVLO_CLASS(RavloScheduler, clsRuleViolation, nullptr),
                                         RAVLO_CLASS(RavloScheduler, clsRotation, &DIID___clsRotation),
                                         RAVLO_CLASS(KorvaCollection, clsCollection, nullptr),
                                         RAVLO_CLASS(KorvaCollection, clsValueList, nullptr),
                                         RAVLO_CLASS(RavloBase, clsDataBase, &DIID___clsDataBase),
                                         RAVLO_CLASS(RavloBase, clsCut, nullptr)),
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

ComPtr<_clsCat> NewCat(LONG lLevel)
{
    const auto cCat = Create<_clsCat>(CLSID_clsCat);
    Do(cCat, &_clsCat::put_CatLevel, lLevel);
    return cCat;
}

TEST_F(ComTest, CoreObjectHasOneFaceWhileReferenced)
{
    const auto cMain = NewCat(0);
    auto cLevel = NewCat(3);
    EXPECT_TRUE(Get(cMain, &_clsCat::AddSubCat, cLevel));
    EXPECT_TRUE(IsSame(Get(cLevel, &_clsCat::get_MainCat), cMain));
    const auto colLevels = Get(cMain, &_clsCat::get_SubCats);
    EXPECT_TRUE(IsSame(colLevels, Get(cMain, &_clsCat::get_SubCats)));
    EXPECT_TRUE(IsSame(ItemAt<_clsCat>(colLevels, Text(L"3")), cLevel));
    EXPECT_TRUE(IsSame(Get(cLevel, &_clsCat::get_Rules), Get(cLevel, &_clsCat::get_Rules)));
    cLevel = nullptr;
    EXPECT_EQ(Get(ItemAt<_clsCat>(colLevels, Long(1)), &_clsCat::get_CatLevel), 3)
        << "a new face of the core";
}

TEST_F(ComTest, SubCatsTakesOnlyWhatCanBeALevel)
{
    const auto cMain = NewCat(0);
    const auto cLevel = NewCat(1);
    const auto colLevels = Get(cMain, &_clsCat::get_SubCats);
    const auto colOfLevel = Get(cLevel, &_clsCat::get_SubCats);
    const auto add = [](const ComPtr<_clsCollection>& colCats, const ComPtr<_clsCat>& cCat) {
        return Try(colCats, &_clsCollection::Add, Object(cCat), Variant::Omitted(), Variant::Omitted(),
                   Variant::Omitted());
    };
    EXPECT_EQ(add(colLevels, cMain), ErrorResult(5)) << "a main category";
    EXPECT_EQ(add(colOfLevel, cLevel), ErrorResult(5)) << "itself";
    ASSERT_EQ(add(colLevels, cLevel), S_OK);
    EXPECT_TRUE(IsSame(Get(cLevel, &_clsCat::get_MainCat), cMain));
    EXPECT_EQ(add(colOfLevel, NewCat(2)), ErrorResult(5)) << "a level has no levels";
    EXPECT_EQ(add(colOfLevel, cMain), ErrorResult(5)) << "its own main category";
    Do(cMain, &_clsCat::put_CatLevel, 2);
    EXPECT_EQ(add(colLevels, cMain), ErrorResult(5)) << "itself under any number";
    const Called late =
        Call(colLevels.Get(), L"Add", DISPATCH_METHOD, {Object(cMain), Text(L"9")}); // as scripts do
    EXPECT_EQ(late.hResult, DISP_E_EXCEPTION);
    EXPECT_EQ(late.hError, ErrorResult(5));
    EXPECT_EQ(Get(colLevels, &_clsCollection::get_Count), 1);
    Get(cMain, &_clsCat::get_AverageRunTimemS);
}

} // namespace
} // namespace ravlo
