// SPDX-License-Identifier: MIT
#include "base/DecimalDigits.h"

#include <array>
#include <cstdio>

namespace ravlo
{

namespace
{

// What printf writes, with '.' for the locale's decimal point, which may be of several bytes.
std::string Printed(const char* sFormat, int places, double dValue)
{
    std::array<char, 512> aText; // the largest double has 309 digits before the point
    const int length = std::snprintf(aText.data(), aText.size(), sFormat, places, dValue);
    const std::string sText(aText.data(), static_cast<std::size_t>(length));
    const std::size_t point = sText.find_first_not_of("-0123456789");
    if (places <= 0 || point == std::string::npos || sText[point] == 'i' || sText[point] == 'n')
        return sText;
    return sText.substr(0, point) + "." + sText.substr(sText.find_first_of("0123456789", point));
}

} // namespace

std::string FixedDigits(double dValue, int places) { return Printed("%.*f", places, dValue); }
std::string ScientificDigits(double dValue, int places) { return Printed("%.*e", places, dValue); }

} // namespace ravlo
