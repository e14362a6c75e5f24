// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <string>

namespace ravlo
{

// One row of a CSV file: the fields between commas, quoted as in RFC 4180 where they need it, ended with LF.
std::wstring CsvLine(std::span<const std::wstring> fields);

} // namespace ravlo
