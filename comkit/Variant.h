// SPDX-License-Identifier: MIT
#pragma once

#include "comkit/ComPtr.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>

namespace ravlo
{

// Returns a string that its receiver frees with SysFreeString.
BSTR NewBstr(std::wstring_view sText);

// Returns an empty text for null.
std::wstring TextOf(BSTR sText);

// An owned BSTR.
class Bstr
{
public:
    Bstr() noexcept = default;
    explicit Bstr(std::wstring_view sText) : m_sText(NewBstr(sText)) {}
    Bstr(const Bstr&) = delete;
    Bstr& operator=(const Bstr&) = delete;
    ~Bstr() { SysFreeString(m_sText); }

    BSTR Get() const noexcept { return m_sText; }
    BSTR Detach() noexcept { return std::exchange(m_sText, nullptr); }
    BSTR* Receive() noexcept
    {
        SysFreeString(std::exchange(m_sText, nullptr));
        return &m_sText;
    }
    std::wstring Text() const { return TextOf(m_sText); }

private:
    BSTR m_sText = nullptr;
};

// Clears a VARIANT. Swallows what the release of an object in it throws.
void Clear(VARIANT& value) noexcept;

constexpr VARIANT_BOOL BoolOf(bool bValue) noexcept { return bValue ? VARIANT_TRUE : VARIANT_FALSE; }

// An owned VARIANT; empty when new.
class Variant : public VARIANT
{
public:
    Variant() noexcept : VARIANT{} {} // every byte zero, so that setting vt alone makes a zero of that type
    explicit Variant(const VARIANT& value);
    explicit Variant(std::wstring_view sText);
    explicit Variant(std::int32_t lValue) noexcept;
    explicit Variant(bool bValue) noexcept;
    explicit Variant(IDispatch* pObject) noexcept; // adds a reference; null is Nothing
    explicit Variant(IUnknown* pObject) noexcept;
    Variant(const Variant& other) : Variant(static_cast<const VARIANT&>(other)) {}
    Variant(Variant&& other) noexcept;
    Variant& operator=(Variant other) noexcept;
    ~Variant() { Clear(*this); }

    // Gives the value to the caller, who clears it.
    VARIANT Detach() noexcept;

    // The value of an optional argument that is left out.
    static Variant Omitted() noexcept;
    // What a by-reference VARIANT refers to; the value itself otherwise.
    static Variant Dereferenced(const VARIANT& value);

    // The value as another type by the platform's conversion in the invariant locale; nothing when there is
    // none.
    std::optional<Variant> As(VARTYPE vt) const;
};

// Replaces the value of a caller's variable: of the one that a by-reference VARIANT refers to, in that
// variable's type, else of the VARIANT itself. Throws error 13, and changes nothing, when the value cannot be
// converted.
void StoreThrough(VARIANT& place, Variant cValue);

// Converts a core value for the caller, who owns the result. Further overloads are next to their types.
template <class Number>
requires std::is_arithmetic_v<Number>
constexpr Number ToHost(Number number) noexcept { return number; }
constexpr VARIANT_BOOL ToHost(bool bValue) noexcept { return BoolOf(bValue); }
inline BSTR ToHost(const std::wstring& sText) { return NewBstr(sText); }
inline VARIANT ToHost(Variant cValue) noexcept { return cValue.Detach(); }
template <class I> I* ToHost(ComPtr<I> cObject) noexcept { return cObject.Detach(); }

// The reverse, for values that are no objects.
template <class Number>
requires std::is_floating_point_v<Number>
constexpr Number FromHost(Number number) noexcept { return number; }
constexpr std::int32_t FromHost(LONG lValue) noexcept { return static_cast<std::int32_t>(lValue); }
constexpr bool FromHost(VARIANT_BOOL bValue) noexcept { return bValue != VARIANT_FALSE; }
inline std::wstring FromHost(BSTR sText) { return TextOf(sText); }

// Whether the value is a number, a date or a boolean, as opposed to a text, an object or none.
bool IsNumber(const VARIANT& value) noexcept;

// Whether an optional argument was left out.
bool IsOmitted(const VARIANT& value) noexcept;

// Returns interface I of the object in a VARIANT or in the variable it refers to; null when there is no
// object or it does not have it.
template <class I> ComPtr<I> ObjectIn(const VARIANT& value)
{
    const Variant cValue = Variant::Dereferenced(value);
    if (cValue.vt != VT_DISPATCH && cValue.vt != VT_UNKNOWN)
        return nullptr;
    return ComPtr<IUnknown>(cValue.punkVal).As<I>();
}

} // namespace ravlo
