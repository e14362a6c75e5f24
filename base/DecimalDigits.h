// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace ravlo
{

// A number in exact decimal digits, with that many places after a '.', also in a program with another locale.
// Ties round to even. Precondition: places <= 150. (std::to_chars would bring 170 kB of tables.)
std::string FixedDigits(double dValue, int places);      // ddd.ddd
std::string ScientificDigits(double dValue, int places); // d.ddde+dd

} // namespace ravlo
