// SPDX-License-Identifier: MIT
#pragma once

#include "comkit/Variant.h"

#include <KorvaCollection.h>
#include <RavloBase.h>
#include <RavloScheduler.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace ravlo
{

// What a failed call answered: the run-time error's HRESULT.
constexpr HRESULT ErrorResult(int lNumber)
{
    return static_cast<HRESULT>(0x800A0000u | static_cast<unsigned>(lNumber));
}

// The text and the source the thread's error information holds; taking it clears it.
struct ErrorText
{
    std::wstring sDescription;
    std::wstring sSource;
};
ErrorText TakeErrorInfo();

// A host of its own: COM, a scratch folder, and, after every test, the check that neither server has a living
// object and that neither holds one of the host's.
class ComTest : public testing::Test
{
protected:
    ComTest();
    ~ComTest() override;

    const std::filesystem::path& Folder() const { return m_folder; }

private:
    std::filesystem::path m_folder;
};

template <class I> ComPtr<I> Create(const CLSID& clsid)
{
    ComPtr<I> cResult;
    void* pvResult = nullptr;
    const HRESULT hResult = CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, __uuidof(I), &pvResult);
    EXPECT_EQ(hResult, S_OK);
    if (SUCCEEDED(hResult))
        cResult = ComPtr<I>::Adopt(static_cast<I*>(pvResult));
    return cResult;
}

template <class I, class J> bool IsSame(const ComPtr<I>& cLeft, const ComPtr<J>& cRight)
{
    return IdentityOf(cLeft.Get()).Get() == IdentityOf(cRight.Get()).Get();
}

inline Variant Text(std::wstring_view sText) { return Variant(sText); }
inline Variant Long(std::int32_t lValue) { return Variant(lValue); }
template <class I> Variant Object(const ComPtr<I>& cObject)
{
    return Variant(static_cast<IDispatch*>(cObject.Get()));
}

// The text a property of type BSTR yields.
template <class I>
std::wstring TextOfProperty(const ComPtr<I>& cObject, HRESULT (STDMETHODCALLTYPE I::*get)(BSTR*))
{
    Bstr sText;
    EXPECT_EQ((cObject.Get()->*get)(sText.Receive()), S_OK);
    return sText.Text();
}
template <class I> long LongOfProperty(const ComPtr<I>& cObject, HRESULT (STDMETHODCALLTYPE I::*get)(LONG*))
{
    LONG lValue = -12345;
    EXPECT_EQ((cObject.Get()->*get)(&lValue), S_OK);
    return lValue;
}

// A late-bound call by name: arguments in order, named ones after them.
struct NamedArgument
{
    std::wstring sName;
    VARIANT value;
};
struct Called
{
    HRESULT hResult = E_FAIL;
    Variant cResult;
    HRESULT hError = S_OK; // of the exception, when there was one
    std::wstring sError;
    std::wstring sSource;
    UINT lArgument = 999; // the offending argument's index, counted from the last
};
Called Call(IDispatch* pObject, std::wstring_view sMember, WORD wFlags,
            std::vector<VARIANT> colArguments = {}, std::vector<NamedArgument> colNamed = {});

// VT_BYREF | VT_VARIANT, as script engines pass variables.
VARIANT ByReference(Variant& cVariable);

// The items a collection yields to For Each, as texts.
std::vector<std::wstring> ItemsOf(IDispatch* colItems);

// A clsCollection of a few texts: items, all with a key or none.
ComPtr<_clsCollection> CollectionOf(const std::vector<Variant>& colItems);

} // namespace ravlo
