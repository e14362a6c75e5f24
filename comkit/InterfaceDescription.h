// SPDX-License-Identifier: MIT
#pragma once

#include "comkit/Variant.h"

#include <optional>
#include <vector>

namespace ravlo
{

// A dual interface's members as its type library describes them, and late-bound calls of them.
//
// Late-bound calls are lenient, so that script hosts can call every member: - an argument for a by-reference
// parameter may be a reference of any type or a plain value: the member works on a temporary of the declared
// type, and a reference receives the stored value, converted to its own type, also when the member failed
// afterwards; - an object is queried for the parameter's own interface; Empty and Null are no object; -
// arguments may be named or left out; what is left out gets its declared default, else an empty value; - a
// property is read also by callers that ask for a method, and set by value or by reference as declared; -
// arguments for a property without parameters go to the default member of the object it returns.
class InterfaceDescription
{
public:
    // cInfo describes the dual interface iid.
    InterfaceDescription(REFIID iid, ComPtr<ITypeInfo> cInfo);

    const IID& Iid() const noexcept { return m_iid; }
    ITypeInfo& Info() const noexcept { return *m_cInfo; }

    // IDispatch::Invoke on pObject, an object's pointer to this interface. Throws only for lack of memory.
    HRESULT Invoke(IDispatch* pObject, DISPID lMember, LCID lcid, WORD wFlags, const DISPPARAMS& arguments,
                   VARIANT* pResult, EXCEPINFO* pExcepInfo, UINT* pArgErr) const;

private:
    struct Parameter
    {
        VARTYPE vt = VT_EMPTY; // of the value itself, also when it is passed by reference
        bool bByReference = false;
        bool bIn = false;     // its value is used
        bool bResult = false; // the last one, whose value is the call's result
        bool bOptional = false;
        bool bObject = false; // an interface pointer; vt is VT_DISPATCH or VT_UNKNOWN then
        IID iid{};            // of that interface
        std::optional<Variant> cDefault;
    };
    struct Member
    {
        DISPID lMember = 0;
        INVOKEKIND eKind = INVOKE_FUNC;
        ULONG_PTR lOffset = 0; // of its slot in the vtable, in bytes
        std::vector<Parameter> colParameters;

        std::size_t Arguments() const noexcept // without the result
        {
            return colParameters.size() - (!colParameters.empty() && colParameters.back().bResult ? 1u : 0u);
        }
    };
    class Call;

    static Parameter Describe(ITypeInfo& cInfo, const ELEMDESC& element);
    const Member* Find(DISPID lMember, WORD wFlags) const noexcept;

    IID m_iid;
    ComPtr<ITypeInfo> m_cInfo;
    std::vector<Member> m_colMembers;
};

} // namespace ravlo
