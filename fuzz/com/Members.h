// SPDX-License-Identifier: MIT
#pragma once

#include "comkit/Variant.h"

#include <string>
#include <vector>

namespace ravlo::fuzz
{

// What a parameter takes, by the type library.
struct Parameter
{
    VARTYPE vt = VT_VARIANT; // VT_DISPATCH for any object
    bool bByReference = false;
    IID iid = IID_NULL; // of the object, where it is said
};

struct Member
{
    IID iid; // of its interface
    std::wstring sName;
    DISPID lId;
    WORD wKind; // DISPATCH_METHOD ...
    std::vector<Parameter> colParameters;
};

// All that a host can create and call, read from the type libraries: what is added there is here at once.
struct Surface
{
    std::vector<CLSID> colClasses;
    std::vector<Member> colMembers; // of the classes' default interfaces
};
Surface ReadSurface(const std::vector<GUID>& colLibraries);

// The interface by which an object describes itself; IID_NULL when it does not.
IID InterfaceOf(IDispatch& cObject);

} // namespace ravlo::fuzz
