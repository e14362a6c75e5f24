// SPDX-License-Identifier: MIT
#include "comkit/InterfaceDescription.h"

#include "comkit/TypeAttributes.h"

namespace ravlo
{

namespace
{

constexpr VARTYPE vtVariantReference = VT_BYREF | VT_VARIANT;

// The view of a dual interface that has its vtable.
ComPtr<ITypeInfo> VTableView(ITypeInfo& cInfo)
{
    HREFTYPE hType = 0;
    ComPtr<ITypeInfo> cView;
    if (SUCCEEDED(cInfo.GetRefTypeOfImplType(static_cast<UINT>(-1), &hType)))
        ThrowIfFailed(cInfo.GetRefTypeInfo(hType, cView.Receive()));
    else
        cView = ComPtr<ITypeInfo>(&cInfo);
    return cView;
}

// An enumeration, or the interface with its GUID.
struct UserType
{
    bool bObject = true;
    IID iid = IID_NULL;
};
UserType Resolve(ITypeInfo& cInfo, HREFTYPE hType)
{
    UserType result;
    ComPtr<ITypeInfo> cType;
    if (SUCCEEDED(cInfo.GetRefTypeInfo(hType, cType.Receive())))
    {
        const TypeAttributes attributes(*cType);
        result.bObject = attributes->typekind != TKIND_ENUM;
        result.iid = attributes->guid;
    }
    return result;
}

} // namespace

InterfaceDescription::Parameter InterfaceDescription::Describe(ITypeInfo& cInfo, const ELEMDESC& element)
{
    Parameter parameter;
    const USHORT wFlags = element.paramdesc.wParamFlags;
    parameter.bIn = (wFlags & PARAMFLAG_FIN) != 0;
    parameter.bResult = (wFlags & PARAMFLAG_FRETVAL) != 0;
    parameter.bOptional = (wFlags & PARAMFLAG_FOPT) != 0;
    if ((wFlags & PARAMFLAG_FHASDEFAULT) != 0)
        parameter.cDefault.emplace(element.paramdesc.pparamdescex->varDefaultValue);

    const TYPEDESC* pType = &element.tdesc;
    if ((wFlags & PARAMFLAG_FOUT) != 0 && pType->vt == VT_PTR)
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
        const UserType type = Resolve(cInfo, pType->hreftype);
        parameter.bObject = bPointer && type.bObject;
        parameter.vt = parameter.bObject ? static_cast<VARTYPE>(VT_DISPATCH) : static_cast<VARTYPE>(VT_I4);
        parameter.iid = type.iid;
    }
    else if (pType->vt == VT_DISPATCH || pType->vt == VT_UNKNOWN)
    {
        parameter.bObject = true;
        parameter.iid = pType->vt == VT_DISPATCH ? IID_IDispatch : IID_IUnknown;
    }
    return parameter;
}

InterfaceDescription::InterfaceDescription(REFIID iid, ComPtr<ITypeInfo> cInfo)
    : m_iid(iid), m_cInfo(std::move(cInfo))
{
    const ComPtr<ITypeInfo> cView = VTableView(*m_cInfo);
    const WORD functions = TypeAttributes(*cView)->cFuncs;
    for (WORD i = 0; i < functions; ++i)
    {
        FUNCDESC* pFunction = nullptr;
        ThrowIfFailed(cView->GetFuncDesc(i, &pFunction));
        Member member;
        member.lMember = pFunction->memid;
        member.eKind = pFunction->invkind;
        member.lOffset = static_cast<ULONG_PTR>(pFunction->oVft & ~3); // the low bits are flags
        for (SHORT j = 0; j < pFunction->cParams; ++j)
            member.colParameters.push_back(Describe(*cView, pFunction->lprgelemdescParam[j]));
        cView->ReleaseFuncDesc(pFunction);
        m_colMembers.push_back(std::move(member));
    }
}

const InterfaceDescription::Member* InterfaceDescription::Find(DISPID lMember, WORD wFlags) const noexcept
{
    const auto find = [&](int lKinds) -> const Member* {
        for (const Member& member : m_colMembers)
            if (member.lMember == lMember && (member.eKind & lKinds) != 0)
                return &member;
        return nullptr;
    };
    if (const Member* pExact = find(wFlags))
        return pExact;
    // Script engines read properties as methods, and set objects by value.
    constexpr int lReads = INVOKE_FUNC | INVOKE_PROPERTYGET;
    constexpr int lWrites = INVOKE_PROPERTYPUT | INVOKE_PROPERTYPUTREF;
    return (wFlags & lWrites) != 0 ? find(lWrites) : find(lReads);
}

// One late-bound call: the arguments in the vtable's order and types, each with its storage.
class InterfaceDescription::Call
{
public:
    Call(const Member& member, LCID lcid)
        : m_member(member), m_lcid(lcid), m_colArguments(member.colParameters.size())
    {
    }

    HRESULT Take(const DISPPARAMS& arguments, UINT* pArgErr);
    HRESULT Run(IDispatch* pObject);
    // Returns the result, and the values stored in the caller's by-reference arguments.
    void GiveBack(VARIANT* pResult);
    // Returns only the by-reference arguments: a member may store something before it fails.
    void GiveBackAfterFailure();

private:
    struct Argument
    {
        Variant cValue;             // of the parameter's own type
        VARIANT* pCaller = nullptr; // the caller's argument, null when it was left out
        VARIANT passed{};           // what the vtable call is given
        bool bUnreadable = false;   // the caller's value could not be converted: cValue started as zero
    };

    HRESULT Fill(const Parameter& parameter, Argument& argument) const;
    HRESULT FillObject(const Parameter& parameter, Argument& argument, const Variant& cGiven) const;
    void FillLeftOut(const Parameter& parameter, Argument& argument) const;
    void Pass(const Parameter& parameter, Argument& argument) const noexcept;
    void Return(VARIANT& caller, Variant& cValue) const;

    const Member& m_member;
    LCID m_lcid;
    std::vector<Argument> m_colArguments;
};

HRESULT InterfaceDescription::Call::Take(const DISPPARAMS& arguments, UINT* pArgErr)
{
    const std::size_t count = m_member.Arguments();
    for (UINT i = 0; i < arguments.cArgs; ++i)
    {
        std::size_t position = arguments.cArgs - 1 - i;
        if (i < arguments.cNamedArgs)
        {
            const DISPID lName = arguments.rgdispidNamedArgs[i];
            position = lName == DISPID_PROPERTYPUT ? count - 1 : static_cast<std::size_t>(lName);
            if (position >= count || m_colArguments[position].pCaller)
            {
                if (pArgErr)
                    *pArgErr = i;
                return DISP_E_PARAMNOTFOUND;
            }
        }
        if (position >= count || m_colArguments[position].pCaller)
            return DISP_E_BADPARAMCOUNT;
        m_colArguments[position].pCaller = &arguments.rgvarg[i];
    }
    for (std::size_t i = 0; i < m_colArguments.size(); ++i)
    {
        const HRESULT hResult = Fill(m_member.colParameters[i], m_colArguments[i]);
        if (FAILED(hResult))
        {
            if (pArgErr && m_colArguments[i].pCaller)
                *pArgErr = static_cast<UINT>(m_colArguments[i].pCaller - arguments.rgvarg);
            return hResult;
        }
    }
    return S_OK;
}

HRESULT InterfaceDescription::Call::Fill(const Parameter& parameter, Argument& argument) const
{
    const bool bLeftOut = !argument.pCaller || IsOmitted(*argument.pCaller);
    if (bLeftOut && !parameter.bOptional && !parameter.cDefault && !parameter.bResult)
        return argument.pCaller ? DISP_E_PARAMNOTOPTIONAL : DISP_E_BADPARAMCOUNT;
    if (bLeftOut)
    {
        FillLeftOut(parameter, argument);
    }
    else if (parameter.bByReference && parameter.vt == VT_VARIANT &&
             argument.pCaller->vt == vtVariantReference)
    {
        argument.passed = *argument.pCaller; // the caller's own variable
        return S_OK;
    }
    else
    {
        const Variant cGiven = Variant::Dereferenced(*argument.pCaller);
        HRESULT hResult = S_OK;
        if (parameter.bObject)
            hResult = FillObject(parameter, argument, cGiven);
        else if (parameter.vt == VT_VARIANT)
            argument.cValue = cGiven;
        else
            hResult = Outgoing([&] {
                return VariantChangeTypeEx(&argument.cValue, const_cast<Variant*>(&cGiven), m_lcid, 0,
                                           parameter.vt);
            });
        if (hResult == E_INVALIDARG) // of some kinds of values that cannot be converted
            hResult = DISP_E_TYPEMISMATCH;
        if (FAILED(hResult))
        {
            // A variable that only receives a value may contain anything before the call. An object that a
            // member uses must not become null.
            const bool bObjectGiven = (cGiven.vt == VT_DISPATCH || cGiven.vt == VT_UNKNOWN) && cGiven.punkVal;
            if (!parameter.bByReference || (parameter.bIn && parameter.bObject && bObjectGiven))
                return hResult;
            FillLeftOut(parameter, argument);
            argument.bUnreadable = true;
        }
    }
    Pass(parameter, argument);
    return S_OK;
}

HRESULT InterfaceDescription::Call::FillObject(const Parameter& parameter, Argument& argument,
                                               const Variant& cGiven) const
{
    argument.cValue = Variant(static_cast<IDispatch*>(nullptr));
    argument.cValue.vt = parameter.vt;
    if (cGiven.vt == VT_EMPTY || cGiven.vt == VT_NULL)
        return S_OK;
    if (cGiven.vt != VT_DISPATCH && cGiven.vt != VT_UNKNOWN)
        return DISP_E_TYPEMISMATCH;
    if (!cGiven.punkVal)
        return S_OK;
    void* pvObject = nullptr;
    if (FAILED(Outgoing([&] { return cGiven.punkVal->QueryInterface(parameter.iid, &pvObject); })))
        return DISP_E_TYPEMISMATCH;
    argument.cValue.punkVal = static_cast<IUnknown*>(pvObject);
    return S_OK;
}

void InterfaceDescription::Call::FillLeftOut(const Parameter& parameter, Argument& argument) const
{
    argument.cValue = parameter.cDefault ? *parameter.cDefault : Variant();
    if (parameter.cDefault)
    {
        VariantChangeTypeEx(&argument.cValue, &argument.cValue, LOCALE_INVARIANT, 0, parameter.vt);
    }
    else if (parameter.vt != VT_VARIANT)
    {
        argument.cValue.vt = parameter.vt; // a zero of that type: 0, no string, no object
    }
    else if (!parameter.bByReference)
    {
        argument.cValue.vt = VT_ERROR;
        argument.cValue.scode = DISP_E_PARAMNOTFOUND;
    }
}

void InterfaceDescription::Call::Pass(const Parameter& parameter, Argument& argument) const noexcept
{
    if (!parameter.bByReference)
    {
        argument.passed = argument.cValue;
        return;
    }
    argument.passed.vt = static_cast<VARTYPE>(VT_BYREF | parameter.vt);
    argument.passed.byref =
        parameter.vt == VT_VARIANT ? static_cast<void*>(&argument.cValue) : &argument.cValue.byref;
}

HRESULT InterfaceDescription::Call::Run(IDispatch* pObject)
{
    std::vector<VARTYPE> colTypes;
    std::vector<VARIANT*> colArguments;
    for (std::size_t i = 0; i < m_colArguments.size(); ++i)
    {
        const Parameter& parameter = m_member.colParameters[i];
        colTypes.push_back(parameter.bByReference ? static_cast<VARTYPE>(VT_BYREF | parameter.vt)
                                                  : parameter.vt);
        colArguments.push_back(parameter.bByReference || parameter.vt != VT_VARIANT
                                   ? &m_colArguments[i].passed
                                   : &m_colArguments[i].cValue);
    }
    Variant cCallResult;
    const HRESULT hResult =
        DispCallFunc(pObject, m_member.lOffset, CC_STDCALL, VT_ERROR, static_cast<UINT>(colTypes.size()),
                     colTypes.data(), colArguments.data(), &cCallResult);
    return FAILED(hResult) ? hResult : cCallResult.scode;
}

void InterfaceDescription::Call::GiveBack(VARIANT* pResult)
{
    for (std::size_t i = 0; i < m_colArguments.size(); ++i)
    {
        const Parameter& parameter = m_member.colParameters[i];
        Argument& argument = m_colArguments[i];
        if (parameter.bResult)
        {
            if (pResult)
                *pResult = argument.cValue.Detach();
        }
        else if (parameter.bByReference && argument.pCaller && (argument.pCaller->vt & VT_BYREF) != 0 &&
                 argument.passed.byref != argument.pCaller->byref)
        {
            Return(*argument.pCaller, argument.cValue);
        }
    }
}

void InterfaceDescription::Call::GiveBackAfterFailure()
{
    for (std::size_t i = 0; i < m_colArguments.size(); ++i)
    {
        Argument& argument = m_colArguments[i];
        if (m_member.colParameters[i].bResult || (argument.bUnreadable && argument.cValue.llVal == 0))
            argument.pCaller = nullptr; // nothing was stored: the caller's value stays
    }
    GiveBack(nullptr);
}

void InterfaceDescription::Call::Return(VARIANT& caller, Variant& cValue) const
{
    if (caller.vt == vtVariantReference)
    {
        Clear(*caller.pvarVal);
        *caller.pvarVal = cValue.Detach();
        return;
    }
    const auto vt = static_cast<VARTYPE>(caller.vt & ~VT_BYREF);
    Variant cConverted;
    if (FAILED(Outgoing([&] { return VariantChangeTypeEx(&cConverted, &cValue, m_lcid, 0, vt); })))
        return; // the caller's variable cannot store it
    switch (vt)
    {
    case VT_BSTR:
        SysFreeString(*caller.pbstrVal);
        *caller.pbstrVal = cConverted.Detach().bstrVal;
        break;
    case VT_DISPATCH:
    case VT_UNKNOWN:
        // Released last, when the caller's variable no longer points to it.
        ComPtr<IUnknown>::Adopt(std::exchange(*caller.ppunkVal, cConverted.Detach().punkVal));
        break;
    case VT_I1:
    case VT_UI1:
        *caller.pbVal = cConverted.bVal;
        break;
    case VT_BOOL:
    case VT_I2:
    case VT_UI2:
        *caller.piVal = cConverted.iVal;
        break;
    case VT_I4:
    case VT_UI4:
    case VT_INT:
    case VT_UINT:
    case VT_R4:
    case VT_ERROR:
        *caller.plVal = cConverted.lVal;
        break;
    case VT_I8:
    case VT_UI8:
    case VT_R8:
    case VT_CY:
    case VT_DATE:
        *caller.pllVal = cConverted.llVal;
        break;
    default:
        break;
    }
}

namespace
{

// Fills in the error that a failed member left, for a caller that knows only Invoke.
HRESULT Except(HRESULT hResult, EXCEPINFO* pExcepInfo) noexcept
{
    if (!pExcepInfo)
        return DISP_E_EXCEPTION;
    *pExcepInfo = EXCEPINFO{};
    pExcepInfo->scode = hResult;
    ComPtr<IErrorInfo> cInfo;
    if (GetErrorInfo(0, cInfo.Receive()) == S_OK)
    {
        cInfo->GetSource(&pExcepInfo->bstrSource);
        cInfo->GetDescription(&pExcepInfo->bstrDescription);
        cInfo->GetHelpFile(&pExcepInfo->bstrHelpFile);
        cInfo->GetHelpContext(&pExcepInfo->dwHelpContext);
    }
    return DISP_E_EXCEPTION;
}

} // namespace

HRESULT InterfaceDescription::Invoke(IDispatch* pObject, DISPID lMember, LCID lcid, WORD wFlags,
                                     const DISPPARAMS& arguments, VARIANT* pResult, EXCEPINFO* pExcepInfo,
                                     UINT* pArgErr) const
{
    const Member* pMember = Find(lMember, wFlags);
    if (!pMember)
        return DISP_E_MEMBERNOTFOUND;
    const bool bToDefaultMember = pMember->eKind == INVOKE_PROPERTYGET && pMember->Arguments() == 0 &&
                                  arguments.cArgs > 0 && pMember->colParameters.back().vt == VT_DISPATCH;
    Call call(*pMember, lcid);
    const DISPPARAMS none{};
    HRESULT hResult = call.Take(bToDefaultMember ? none : arguments, pArgErr);
    if (FAILED(hResult))
        return hResult;
    SetErrorInfo(0, nullptr);
    hResult = call.Run(pObject);
    if (FAILED(hResult))
    {
        const HRESULT hExcept = Except(hResult, pExcepInfo); // first: releasing values may leave another text
        call.GiveBackAfterFailure();
        return hExcept;
    }
    if (!bToDefaultMember)
    {
        call.GiveBack(pResult);
        return hResult;
    }
    Variant cObject;
    call.GiveBack(&cObject);
    if (cObject.vt != VT_DISPATCH || !cObject.pdispVal)
        return DISP_E_BADPARAMCOUNT;
    return Outgoing([&] {
        return cObject.pdispVal->Invoke(DISPID_VALUE, IID_NULL, lcid, wFlags,
                                        const_cast<DISPPARAMS*>(&arguments), pResult, pExcepInfo, pArgErr);
    });
}

} // namespace ravlo
