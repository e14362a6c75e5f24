// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace ravlo
{

// UTF-8 as the database file and every CSV hold it. Strings are UTF-16 or UTF-32, as wide as wchar_t
// is.

// Loses nothing a UTF-16 host can hand in: half a surrogate pair becomes the three bytes of its code, and
// comes back through TextFromStore. A value past the last code point becomes U+FFFD.
std::string Utf8Of(std::wstring_view sText);

// The way back for bytes that Utf8Of made. Bytes that are no UTF-8 become U+FFFD each.
std::wstring TextFromStore(std::string_view bytes);

// Nothing when the bytes are not well-formed UTF-8 (halves of surrogate pairs and overlong forms are not).
std::optional<std::wstring> TextFromUtf8(std::string_view bytes);

} // namespace ravlo
