// SPDX-License-Identifier: MIT
// The public interface is a promise: identifiers, dispatch ids, member order, parameter types and flags never
// change. typelibs/<library>.txt is what was promised.
#include "com/ComTest.h"

#include <algorithm>
#include <fstream>
#include <map>
#include <sstream>

namespace ravlo
{
namespace
{

std::string Narrow(const std::wstring& sText) { return std::string(sText.begin(), sText.end()); }

std::string TextOfGuid(REFGUID guid)
{
    wchar_t sText[40];
    StringFromGUID2(guid, sText, 40);
    return Narrow(sText);
}

// The name of a type, its member, or a library.
template <class Described> std::string NameOf(Described& cDescribed, MEMBERID lMember)
{
    Bstr sName;
    cDescribed.GetDocumentation(lMember, sName.Receive(), nullptr, nullptr, nullptr);
    return Narrow(sName.Text());
}

std::string LibraryOf(ITypeInfo& cInfo)
{
    ComPtr<ITypeLib> cLibrary;
    UINT lIndex = 0;
    cInfo.GetContainingTypeLib(cLibrary.Receive(), &lIndex);
    return NameOf(*cLibrary, MEMBERID_NIL);
}

// "Library._clsCut" for a type of another library.
std::string NameOfReference(ITypeInfo& cInfo, HREFTYPE hType)
{
    ComPtr<ITypeInfo> cType;
    if (FAILED(cInfo.GetRefTypeInfo(hType, cType.Receive())))
        return "(unresolved)";
    const std::string sLibrary = LibraryOf(*cType);
    return (sLibrary == LibraryOf(cInfo) ? "" : sLibrary + ".") + NameOf(*cType, MEMBERID_NIL);
}

std::string TypeText(ITypeInfo& cInfo, const TYPEDESC& type)
{
    static const std::map<VARTYPE, const char*> colNames = {{VT_I2, "short"},
                                                            {VT_I4, "long"},
                                                            {VT_R4, "float"},
                                                            {VT_R8, "double"},
                                                            {VT_DATE, "DATE"},
                                                            {VT_BSTR, "BSTR"},
                                                            {VT_DISPATCH, "IDispatch*"},
                                                            {VT_UNKNOWN, "IUnknown*"},
                                                            {VT_BOOL, "VARIANT_BOOL"},
                                                            {VT_VARIANT, "VARIANT"},
                                                            {VT_VOID, "void"},
                                                            {VT_HRESULT, "HRESULT"}};
    if (type.vt == VT_PTR)
        return TypeText(cInfo, *type.lptdesc) + "*";
    if (type.vt == VT_USERDEFINED)
        return NameOfReference(cInfo, type.hreftype);
    const auto found = colNames.find(type.vt);
    return found != colNames.end() ? std::string(found->second) : std::to_string(type.vt);
}

std::string ParameterText(ITypeInfo& cInfo, const ELEMDESC& element, const std::string& sName)
{
    const USHORT wFlags = element.paramdesc.wParamFlags;
    std::string sFlags;
    const auto add = [&](USHORT wFlag, const char* sFlag) {
        if ((wFlags & wFlag) != 0)
            sFlags.append(sFlags.empty() ? "" : " ").append(sFlag);
    };
    add(PARAMFLAG_FIN, "in");
    add(PARAMFLAG_FOUT, "out");
    add(PARAMFLAG_FOPT, "optional");
    add(PARAMFLAG_FRETVAL, "retval");
    if ((wFlags & PARAMFLAG_FHASDEFAULT) != 0)
    {
        const auto cDefault = Variant(element.paramdesc.pparamdescex->varDefaultValue).As(VT_BSTR);
        sFlags.append(" default ").append(Narrow(TextOf(cDefault->bstrVal)));
    }
    std::ostringstream text;
    text << "[" << sFlags << "] " << TypeText(cInfo, element.tdesc) << (sName.empty() ? "" : " ") << sName;
    return text.str();
}

std::string FunctionText(ITypeInfo& cInfo, UINT lIndex)
{
    FUNCDESC* pFunction = nullptr;
    cInfo.GetFuncDesc(lIndex, &pFunction);
    BSTR colNames[20] = {};
    UINT lNames = 0;
    cInfo.GetNames(pFunction->memid, colNames, 20, &lNames);
    static const std::map<int, const char*> colKinds = {{INVOKE_FUNC, ""},
                                                        {INVOKE_PROPERTYGET, "get "},
                                                        {INVOKE_PROPERTYPUT, "put "},
                                                        {INVOKE_PROPERTYPUTREF, "putref "}};
    std::ostringstream text;
    text << "  ";
    if (pFunction->funckind == FUNC_PUREVIRTUAL)
        text << "slot " << pFunction->oVft / static_cast<int>(sizeof(void*)) << " ";
    text << "id " << pFunction->memid << " " << colKinds.at(pFunction->invkind)
         << Narrow(TextOf(colNames[0]));
    if ((pFunction->wFuncFlags & FUNCFLAG_FRESTRICTED) != 0)
        text << " restricted";
    text << "(";
    for (SHORT i = 0; i < pFunction->cParams; ++i)
    {
        const auto lName = static_cast<UINT>(i) + 1;
        text << (i ? ", " : "")
             << ParameterText(cInfo, pFunction->lprgelemdescParam[i],
                              lName < lNames ? Narrow(TextOf(colNames[lName])) : std::string());
    }
    text << ") " << TypeText(cInfo, pFunction->elemdescFunc.tdesc) << "\n";
    for (UINT i = 0; i < lNames; ++i)
        SysFreeString(colNames[i]);
    cInfo.ReleaseFuncDesc(pFunction);
    return text.str();
}

std::string MembersText(ITypeInfo& cInfo, const TYPEATTR& attributes)
{
    std::ostringstream text;
    if (attributes.typekind == TKIND_ENUM)
        for (WORD i = 0; i < attributes.cVars; ++i)
        {
            VARDESC* pVariable = nullptr;
            cInfo.GetVarDesc(i, &pVariable);
            text << "  " << NameOf(cInfo, pVariable->memid) << " = " << pVariable->lpvarValue->lVal << "\n";
            cInfo.ReleaseVarDesc(pVariable);
        }
    if (attributes.typekind == TKIND_COCLASS)
        for (WORD i = 0; i < attributes.cImplTypes; ++i)
        {
            INT lFlags = 0;
            HREFTYPE hType = 0;
            cInfo.GetImplTypeFlags(i, &lFlags);
            cInfo.GetRefTypeOfImplType(i, &hType);
            text << "  " << ((lFlags & IMPLTYPEFLAG_FDEFAULT) != 0 ? "default " : "")
                 << ((lFlags & IMPLTYPEFLAG_FSOURCE) != 0 ? "source " : "") << NameOfReference(cInfo, hType)
                 << "\n";
        }
    for (WORD i = 0; i < attributes.cFuncs; ++i)
        text << FunctionText(cInfo, i);
    return text.str();
}

// One type with its flags and members. A dual interface is walked through its vtable.
std::string DescribeType(ITypeInfo& cInfo)
{
    TYPEATTR* pAttributes = nullptr;
    cInfo.GetTypeAttr(&pAttributes);
    static const std::map<int, const char*> colKinds = {{TKIND_ENUM, "enum"},
                                                        {TKIND_COCLASS, "coclass"},
                                                        {TKIND_DISPATCH, "dispinterface"},
                                                        {TKIND_INTERFACE, "interface"},
                                                        {TKIND_ALIAS, "alias"}};
    const bool bDual = (pAttributes->wTypeFlags & TYPEFLAG_FDUAL) != 0;
    std::string sText = std::string(bDual ? "dual interface" : colKinds.at(pAttributes->typekind)) + " " +
                        NameOf(cInfo, MEMBERID_NIL) + " " + TextOfGuid(pAttributes->guid);
    if ((pAttributes->wTypeFlags & TYPEFLAG_FOLEAUTOMATION) != 0)
        sText += " oleautomation";
    if ((pAttributes->wTypeFlags & TYPEFLAG_FNONEXTENSIBLE) != 0)
        sText += " nonextensible";
    if (pAttributes->typekind == TKIND_COCLASS && (pAttributes->wTypeFlags & TYPEFLAG_FCANCREATE) != 0)
        sText += " creatable";
    sText += "\n";
    HREFTYPE hType = 0;
    ComPtr<ITypeInfo> cView;
    if (bDual && SUCCEEDED(cInfo.GetRefTypeOfImplType(static_cast<UINT>(-1), &hType)) &&
        SUCCEEDED(cInfo.GetRefTypeInfo(hType, cView.Receive())))
    {
        TYPEATTR* pView = nullptr;
        cView->GetTypeAttr(&pView);
        sText += MembersText(*cView, *pView);
        cView->ReleaseTypeAttr(pView);
    }
    else
    {
        sText += MembersText(cInfo, *pAttributes);
    }
    cInfo.ReleaseTypeAttr(pAttributes);
    return sText;
}

std::string DescribeLibrary(ITypeLib& cLibrary)
{
    TLIBATTR* pAttributes = nullptr;
    cLibrary.GetLibAttr(&pAttributes);
    std::ostringstream text;
    text << "library " << NameOf(cLibrary, MEMBERID_NIL) << " " << TextOfGuid(pAttributes->guid) << " "
         << pAttributes->wMajorVerNum << "." << pAttributes->wMinorVerNum << "\n";
    cLibrary.ReleaseTLibAttr(pAttributes);
    std::vector<std::string> colTypes; // sorted: their order in the library does not matter
    for (UINT i = 0; i < cLibrary.GetTypeInfoCount(); ++i)
    {
        ComPtr<ITypeInfo> cInfo;
        cLibrary.GetTypeInfo(i, cInfo.Receive());
        colTypes.push_back(DescribeType(*cInfo));
    }
    std::sort(colTypes.begin(), colTypes.end());
    for (const std::string& sType : colTypes)
        text << "\n" << sType;
    return text.str();
}

std::string Promised(const std::string& sLibrary)
{
    std::ifstream file(std::string(RAVLO_TEST_DATA) + "typelibs/" + sLibrary + ".txt");
    std::stringstream text;
    text << file.rdbuf();
    return text.str();
}

struct Library
{
    const char* sName;
    const GUID* pLibid;
};
struct TypeLibraryTest : ComTest, testing::WithParamInterface<Library>
{
};

TEST_P(TypeLibraryTest, IsWhatWasPromised)
{
    ComPtr<ITypeLib> cLibrary;
    ASSERT_EQ(LoadRegTypeLib(*GetParam().pLibid, 1, 0, LOCALE_NEUTRAL, cLibrary.Receive()), S_OK);
    EXPECT_EQ(DescribeLibrary(*cLibrary), Promised(GetParam().sName));
}

INSTANTIATE_TEST_SUITE_P(Com, TypeLibraryTest,
                         testing::Values(Library{"RavloScheduler", &LIBID_RavloScheduler},
                                         Library{"RavloBase", &LIBID_RavloBase},
                                         Library{"KorvaCollection", &LIBID_KorvaCollection}),
                         [](const auto& parameters) { return std::string(parameters.param.sName); });

// Both servers carry the types they share: a host may ship and register either alone.
TEST_F(ComTest, BothServersCarryTheSameTypes)
{
    const auto describe = [](const wchar_t* sPath) {
        ComPtr<ITypeLib> cLibrary;
        EXPECT_EQ(LoadTypeLibEx(sPath, REGKIND_NONE, cLibrary.Receive()), S_OK) << Narrow(sPath);
        return cLibrary ? DescribeLibrary(*cLibrary) : std::string();
    };
    const std::wstring sFolder = std::filesystem::path(RAVLO_TEST_BIN).wstring();
    EXPECT_EQ(describe((sFolder + L"RavloSched.dll\\2").c_str()),
              describe((sFolder + L"RavloBase.dll").c_str()));
    EXPECT_EQ(describe((sFolder + L"RavloSched.dll\\3").c_str()),
              describe((sFolder + L"RavloBase.dll\\2").c_str()));
}

} // namespace
} // namespace ravlo
