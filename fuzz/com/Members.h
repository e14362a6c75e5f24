// SPDX-License-Identifier: MIT
#pragma once

#include "comkit/Variant.h"

#include <string>
#include <vector>

namespace ravlo::fuzz
{

// The type of a parameter, from the type library.
struct Parameter
{
    VARTYPE vt = VT_VARIANT; // VT_DISPATCH for any object
    bool bByReference = false;
    IID iid = IID_NULL; // of the object, if the type library names it
};

struct Member
{
    IID iid; // of its interface
    std::wstring sName;
    DISPID lId;
    WORD wKind; // DISPATCH_METHOD ...
    std::vector<Parameter> colParameters;
};

// Everything that a host can create and call, read from the type libraries, so that additions are covered at
// once.
struct Surface
{
    std::vector<CLSID> colClasses;  // that a host can create
    std::vector<Member> colMembers; // of all classes' default interfaces
};
Surface ReadSurface(const std::vector<GUID>& colLibraries);

// The interface that an object describes itself with; IID_NULL when it does not.
IID InterfaceOf(IDispatch& cObject);

} // namespace ravlo::fuzz
