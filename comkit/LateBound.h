// SPDX-License-Identifier: MIT
#pragma once

#include "comkit/ComPtr.h"
#include "comkit/Variant.h"

#include <dispex.h>
#include <map>
#include <string>
#include <vector>

namespace ravlo
{

// Another automation object, called by name. Its failures become RuntimeErrors.
class LateBound
{
public:
    explicit LateBound(IDispatch& cObject) : m_cObject(&cObject), m_cScriptObject(m_cObject.As<IDispatchEx>())
    {
    }

    // Whether the object has a member of that name.
    bool Has(const wchar_t* sName);
    Variant Get(const wchar_t* sName, const std::vector<Variant>& colArguments = {});
    void Put(const wchar_t* sName, const std::vector<Variant>& colArguments, const Variant& value);
    Variant Call(const wchar_t* sName, const std::vector<Variant>& colArguments);

private:
    HRESULT Find(const wchar_t* sName, DISPID& lId);
    DISPID IdOf(const wchar_t* sName);
    Variant Invoke(const wchar_t* sName, WORD wFlags, std::vector<Variant> colReversed);

    ComPtr<IDispatch> m_cObject;
    // Set for a script's object, whose members may change; otherwise null.
    ComPtr<IDispatchEx> m_cScriptObject;
    std::map<std::wstring, DISPID> m_colIds; // looked up once: a grid is called for every cell
};

} // namespace ravlo
