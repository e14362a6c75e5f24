// SPDX-License-Identifier: MIT
#include "fuzz/com/Members.h"

#include "comkit/TypeAttributes.h"

namespace ravlo::fuzz
{

namespace
{

IID InterfaceBehind(ITypeInfo& cInfo, HREFTYPE hType)
{
    ComPtr<ITypeInfo> cType;
    if (FAILED(cInfo.GetRefTypeInfo(hType, cType.Receive())))
        return IID_NULL;
    const TypeAttributes attributes(*cType);
    return attributes->typekind == TKIND_ENUM ? IID_NULL : attributes->guid;
}

Parameter ParameterOf(ITypeInfo& cInfo, const TYPEDESC& type)
{
    Parameter parameter;
    const TYPEDESC* pType = &type;
    // An object is passed as a pointer; one more pointer, or a pointer to anything else, is by reference.
    if (pType->vt == VT_PTR && pType->lptdesc->vt != VT_USERDEFINED)
    {
        parameter.bByReference = true;
        pType = pType->lptdesc;
    }
    const bool bPointer = pType->vt == VT_PTR;
    if (bPointer)
        pType = pType->lptdesc;
    parameter.vt = pType->vt;
    if (pType->vt == VT_USERDEFINED)
    {
        parameter.iid = InterfaceBehind(cInfo, pType->hreftype);
        parameter.vt = bPointer ? VT_DISPATCH : VT_I4;
    }
    return parameter;
}

void AddMembers(std::vector<Member>& colMembers, ITypeInfo& cInfo, REFIID iid)
{
    const TypeAttributes attributes(cInfo);
    for (UINT lFunction = 0; lFunction < attributes->cFuncs; ++lFunction)
    {
        FUNCDESC* pFunction = nullptr;
        if (FAILED(cInfo.GetFuncDesc(lFunction, &pFunction)))
            continue;
        constexpr MEMBERID lOwnIds =
            0x60000000; // IDispatch's own members, which a host does not call by number
        if (pFunction->memid < lOwnIds)
        {
            Bstr sName;
            cInfo.GetDocumentation(pFunction->memid, sName.Receive(), nullptr, nullptr, nullptr);
            Member member{iid, sName.Text(), pFunction->memid, static_cast<WORD>(pFunction->invkind), {}};
            for (SHORT lParameter = 0; lParameter < pFunction->cParams; ++lParameter)
                member.colParameters.push_back(
                    ParameterOf(cInfo, pFunction->lprgelemdescParam[lParameter].tdesc));
            colMembers.push_back(std::move(member));
        }
        cInfo.ReleaseFuncDesc(pFunction);
    }
}

// Adds the default interface of a class, as IDispatch sees it; a class that hosts cannot create is reached by
// calls.
void AddClass(Surface& surface, ITypeInfo& cClass)
{
    const TypeAttributes attributes(cClass);
    if (attributes->typekind != TKIND_COCLASS)
        return;
    if ((attributes->wTypeFlags & TYPEFLAG_FCANCREATE) != 0)
        surface.colClasses.push_back(attributes->guid);
    for (UINT lInterface = 0; lInterface < attributes->cImplTypes; ++lInterface)
    {
        INT lFlags = 0;
        HREFTYPE hType = 0;
        ComPtr<ITypeInfo> cInterface;
        cClass.GetImplTypeFlags(lInterface, &lFlags);
        if ((lFlags & IMPLTYPEFLAG_FSOURCE) != 0 || FAILED(cClass.GetRefTypeOfImplType(lInterface, &hType)) ||
            FAILED(cClass.GetRefTypeInfo(hType, cInterface.Receive())))
            continue;
        const IID iid = TypeAttributes(*cInterface)->guid;
        ComPtr<ITypeInfo> cView;
        if (SUCCEEDED(cInterface->GetRefTypeOfImplType(static_cast<UINT>(-1), &hType)) &&
            SUCCEEDED(cInterface->GetRefTypeInfo(hType, cView.Receive())) &&
            TypeAttributes(*cView)->typekind == TKIND_DISPATCH)
            AddMembers(surface.colMembers, *cView, iid);
        else
            AddMembers(surface.colMembers, *cInterface, iid);
    }
}

} // namespace

Surface ReadSurface(const std::vector<GUID>& colLibraries)
{
    Surface surface;
    for (const GUID& libid : colLibraries)
    {
        ComPtr<ITypeLib> cLibrary;
        if (FAILED(LoadRegTypeLib(libid, 1, 0, LOCALE_NEUTRAL, cLibrary.Receive())))
            continue;
        for (UINT lType = 0; lType < cLibrary->GetTypeInfoCount(); ++lType)
        {
            ComPtr<ITypeInfo> cType;
            if (SUCCEEDED(cLibrary->GetTypeInfo(lType, cType.Receive())))
                AddClass(surface, *cType);
        }
    }
    return surface;
}

IID InterfaceOf(IDispatch& cObject)
{
    ComPtr<ITypeInfo> cInfo;
    if (FAILED(cObject.GetTypeInfo(0, LOCALE_NEUTRAL, cInfo.Receive())))
        return IID_NULL;
    return TypeAttributes(*cInfo)->guid;
}

} // namespace ravlo::fuzz
