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
#include <tuple>
#include <type_traits>
#include <vector>

namespace ravlo
{

using Texts = std::vector<std::wstring>;

// What a call answers that fails with this run-time error.
constexpr HRESULT ErrorResult(int lNumber)
{
    return static_cast<HRESULT>(0x800A0000u | static_cast<unsigned>(lNumber));
}

// The thread's error information. Taking it clears it.
struct ErrorText
{
    std::wstring sDescription;
    std::wstring sSource;
};
ErrorText TakeErrorInfo();

// A host with COM and a scratch folder. After every test neither server may have a living object, nor hold
// one of the host's.
class ComTest : public testing::Test
{
protected:
    ComTest();
    ~ComTest() override;

    const std::filesystem::path& Folder() const { return m_folder; }
    // Makes the scheduler write its debug log; Log returns all of it.
    void StartLog() const { std::filesystem::create_directories(LogFolder()); }
    std::string Log() const;
    int LogLinesWith(std::string_view sText) const;

private:
    std::filesystem::path LogFolder() const { return Folder() / L"Debugging Logs" / L"Scheduler"; }

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

// How often an object is held.
template <class I> ULONG ReferencesTo(const ComPtr<I>& cObject)
{
    cObject->AddRef();
    return cObject->Release();
}

inline Variant Text(std::wstring_view sText) { return Variant(sText); }
inline Variant Long(std::int32_t lValue) { return Variant(lValue); }
inline Variant Double(double dValue)
{
    Variant cResult;
    cResult.vt = VT_R8;
    cResult.dblVal = dValue;
    return cResult;
}
inline Variant Null()
{
    Variant cResult;
    cResult.vt = VT_NULL;
    return cResult;
}
template <class I> Variant Object(const ComPtr<I>& cObject)
{
    return Variant(static_cast<IDispatch*>(cObject.Get()));
}

// A value that a member stores, as a test takes it: a text, a bool, an owned object or value, a number.
template <class Value> struct Result
{
    Value value{};
    Value* Place() { return &value; }
    Value Take() const { return value; }
};
template <> struct Result<BSTR>
{
    Bstr sText;
    BSTR* Place() { return sText.Receive(); }
    std::wstring Take() const { return sText.Text(); }
};
template <> struct Result<VARIANT_BOOL>
{
    VARIANT_BOOL bValue = 12345; // neither true nor false
    VARIANT_BOOL* Place() { return &bValue; }
    bool Take() const
    {
        EXPECT_TRUE(bValue == VARIANT_TRUE || bValue == VARIANT_FALSE) << bValue;
        return bValue == VARIANT_TRUE;
    }
};
template <> struct Result<VARIANT>
{
    Variant cValue;
    VARIANT* Place() { return &cValue; }
    Variant Take() const { return cValue; }
};
template <class I> struct Result<I*>
{
    ComPtr<I> cObject;
    I** Place() { return cObject.Receive(); }
    ComPtr<I> Take() const { return cObject; }
};

// An argument as a member takes it.
struct BstrArgument
{
    Bstr sText;
    operator BSTR() const noexcept { return sText.Get(); }
};
inline BstrArgument In(const std::wstring& sText) { return {Bstr(sText)}; }
inline BstrArgument In(const wchar_t* sText) { return {Bstr(sText)}; }
inline VARIANT_BOOL In(bool bValue) { return BoolOf(bValue); }
template <class I> I* In(const ComPtr<I>& cObject) { return cObject.Get(); }
template <class Value> const Value& In(const Value& value) { return value; }

// Calls a member and returns its answer.
template <class Object, class I, class... Parameters, class... Arguments>
HRESULT Try(const Object& cObject, HRESULT (STDMETHODCALLTYPE I::*member)(Parameters...),
            const Arguments&... arguments)
{
    return (cObject.Get()->*member)(In(arguments)...);
}

// Calls a member, which must succeed.
template <class Object, class Member, class... Arguments>
void Do(const Object& cObject, Member member, const Arguments&... arguments)
{
    EXPECT_EQ(Try(cObject, member, arguments...), S_OK);
}

// Calls a member, which must succeed, and returns what it stores in its last parameter.
template <class Object, class I, class... Parameters, class... Arguments>
auto Get(const Object& cObject, HRESULT (STDMETHODCALLTYPE I::*member)(Parameters...),
         const Arguments&... arguments)
{
    using Last = std::tuple_element_t<sizeof...(Parameters) - 1, std::tuple<Parameters...>>;
    Result<std::remove_pointer_t<Last>> result;
    EXPECT_EQ((cObject.Get()->*member)(In(arguments)..., result.Place()), S_OK);
    return result.Take();
}

// An object in a collection.
template <class I> ComPtr<I> ItemAt(const ComPtr<_clsCollection>& colItems, const Variant& cIndex)
{
    return ObjectIn<I>(Get(colItems, &_clsCollection::get_Item, cIndex));
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
// A reference to a variable of type vt.
template <class Value> VARIANT ReferenceTo(VARTYPE vt, Value& variable)
{
    VARIANT reference{};
    reference.vt = static_cast<VARTYPE>(VT_BYREF | vt);
    reference.byref = &variable;
    return reference;
}

// The value as text; "(object)" if it cannot be one.
std::wstring TextIn(const VARIANT& value);

// The items a collection yields to For Each, as texts.
Texts ItemsOf(IDispatch* colItems);
template <class I> Texts ItemsOf(const ComPtr<I>& colItems) { return ItemsOf(colItems.Get()); }

// A clsCollection of items without keys.
ComPtr<_clsCollection> CollectionOf(const std::vector<Variant>& colItems);
template <class I> ComPtr<_clsCollection> CollectionOf(const ComPtr<I>& cItem)
{
    return CollectionOf({Object(cItem)});
}

} // namespace ravlo
