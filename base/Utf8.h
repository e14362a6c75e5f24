// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace ravlo
{

// UTF-8 as in the database file and in every CSV. Strings are UTF-16 or UTF-32, as wide as wchar_t.

// Keeps everything that a UTF-16 host can pass: half a surrogate pair becomes the three bytes of its code,
// which TextFromStore reads back. A value past the last code point becomes U+FFFD.
std::string Utf8Of(std::wstring_view sText);

// The inverse of Utf8Of. Each byte that is not UTF-8 becomes U+FFFD.
std::wstring TextFromStore(std::string_view bytes);

// Nothing when the bytes are not well-formed UTF-8 (halves of surrogate pairs and overlong forms are not).
std::optional<std::wstring> TextFromUtf8(std::string_view bytes);

// The bytes behind the mark that some editors write at the beginning of a UTF-8 file.
std::string_view WithoutByteOrderMark(std::string_view bytes) noexcept;

} // namespace ravlo
