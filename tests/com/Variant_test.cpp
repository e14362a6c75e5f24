// SPDX-License-Identifier: MIT
#include "base/RuntimeError.h"
#include "com/ComTest.h"
#include "comkit/Collection.h"

namespace ravlo
{
namespace
{

using StoreThroughTest = ComTest;

// Stores a value into a variable of type vt and returns the variable's new value.
template <class Value> Value Stored(VARTYPE vt, Value before, const Variant& cValue)
{
    VARIANT reference = ReferenceTo(vt, before);
    StoreThrough(reference, cValue);
    EXPECT_EQ(reference.vt, VT_BYREF | vt);
    return before;
}

TEST_F(StoreThroughTest, AVariableKeepsItsType)
{
    EXPECT_EQ(Stored<BYTE>(VT_UI1, 1, Text(L"200")), 200);
    EXPECT_EQ(Stored<SHORT>(VT_I2, 1, Long(-7)), -7);
    EXPECT_EQ(Stored<VARIANT_BOOL>(VT_BOOL, VARIANT_FALSE, Long(5)), VARIANT_TRUE);
    EXPECT_EQ(Stored<LONG>(VT_I4, 1, Text(L"70000")), 70000);
    EXPECT_EQ(Stored<float>(VT_R4, 1.0f, Text(L"2.5")), 2.5f);
    EXPECT_EQ(Stored<double>(VT_R8, 1.0, Long(3)), 3.0);
    EXPECT_EQ(Stored<LONGLONG>(VT_I8, 1, Long(4)), 4);
    Bstr sText;
    *sText.Receive() = Stored<BSTR>(VT_BSTR, NewBstr(L"before"), Long(12));
    EXPECT_EQ(sText.Text(), L"12");
}

TEST_F(StoreThroughTest, WhatDoesNotFitIsRefusedAndChangesNothing)
{
    LONG lValue = 1;
    VARIANT number = ReferenceTo(VT_I4, lValue);
    EXPECT_THROW(StoreThrough(number, Text(L"one")), RuntimeError);
    EXPECT_EQ(lValue, 1);
    DECIMAL decimal{};
    VARIANT unusual = ReferenceTo(VT_DECIMAL, decimal);
    EXPECT_THROW(StoreThrough(unusual, Long(1)), RuntimeError) << "nobody declares such variables";
}

TEST_F(StoreThroughTest, AnObjectVariableReleasesTheOldOne)
{
    const auto colOld = CollectionOf({});
    const auto colNew = CollectionOf({});
    IUnknown* pVariable = ComPtr<IUnknown>(colOld.Get()).Detach();
    VARIANT reference = ReferenceTo(VT_UNKNOWN, pVariable);
    StoreThrough(reference, Object(colNew));
    EXPECT_TRUE(IsSame(ComPtr<IUnknown>::Adopt(pVariable), colNew));
    EXPECT_EQ(ReferencesTo(colOld), 1u);
}

} // namespace
} // namespace ravlo
