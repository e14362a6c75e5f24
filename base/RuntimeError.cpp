// SPDX-License-Identifier: MIT
#include "base/RuntimeError.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace ravlo
{

namespace
{

struct Standard
{
    std::int32_t lNumber;
    const wchar_t* sDescription;
};

// The classic automation run-time errors, ascending.
constexpr Standard aStandard[] = {
    {3, L"Return without GoSub"},
    {5, L"Invalid procedure call or argument"},
    {6, L"Overflow"},
    {7, L"Out of memory"},
    {9, L"Subscript out of range"},
    {10, L"This array is fixed or temporarily locked"},
    {11, L"Division by zero"},
    {13, L"Type mismatch"},
    {14, L"Out of string space"},
    {16, L"Expression too complex"},
    {17, L"Can't perform requested operation"},
    {18, L"User interrupt occurred"},
    {20, L"Resume without error"},
    {28, L"Out of stack space"},
    {35, L"Sub or Function not defined"},
    {47, L"Too many DLL application clients"},
    {48, L"Error in loading DLL"},
    {49, L"Bad DLL calling convention"},
    {51, L"Internal error"},
    {52, L"Bad file name or number"},
    {53, L"File not found"},
    {54, L"Bad file mode"},
    {55, L"File already open"},
    {57, L"Device I/O error"},
    {58, L"File already exists"},
    {59, L"Bad record length"},
    {61, L"Disk full"},
    {62, L"Input past end of file"},
    {63, L"Bad record number"},
    {67, L"Too many files"},
    {68, L"Device unavailable"},
    {70, L"Permission denied"},
    {71, L"Disk not ready"},
    {74, L"Can't rename with different drive"},
    {75, L"Path/File access error"},
    {76, L"Path not found"},
    {91, L"Object variable or With block variable not set"},
    {92, L"For loop not initialized"},
    {93, L"Invalid pattern string"},
    {94, L"Invalid use of Null"},
    {424, L"Object required"},
    {429, L"ActiveX component can't create object"},
    {430, L"Class does not support Automation or does not support expected interface"},
    {432, L"File name or class name not found during Automation operation"},
    {438, L"Object doesn't support this property or method"},
    {440, L"Automation error"},
    {445, L"Object doesn't support this action"},
    {446, L"Object doesn't support named arguments"},
    {447, L"Object doesn't support current locale setting"},
    {448, L"Named argument not found"},
    {449, L"Argument not optional"},
    {450, L"Wrong number of arguments or invalid property assignment"},
    {451, L"Object not a collection"},
    {452, L"Invalid ordinal"},
    {453, L"Specified DLL function not found"},
    {454, L"Code resource not found"},
    {455, L"Code resource lock error"},
    {457, L"This key is already associated with an element of this collection"},
    {458, L"Variable uses an Automation type not supported in Visual Basic"},
    {461, L"Method or data member not found"},
    {462, L"The remote server machine does not exist or is unavailable"},
};

std::string AsciiOf(const std::wstring& sText)
{
    std::string sAscii;
    for (const wchar_t c : sText)
        sAscii += c >= L' ' && c <= L'~' ? static_cast<char>(c) : '?';
    return sAscii;
}

} // namespace

RuntimeError::RuntimeError(std::int32_t lNumber) : RuntimeError(lNumber, StandardDescription(lNumber)) {}

RuntimeError::RuntimeError(std::int32_t lNumber, std::wstring sDescription) : m_lNumber(lNumber)
{
    std::string sWhat = AsciiOf(sDescription);
    m_cTexts = std::make_shared<const Texts>(Texts{std::move(sDescription), std::move(sWhat)});
}

std::wstring StandardDescription(std::int32_t lNumber)
{
    const Standard* pFound = std::lower_bound(std::begin(aStandard), std::end(aStandard), lNumber,
                                              [](const Standard& cEntry, std::int32_t lWanted) {
        return cEntry.lNumber < lWanted;
    });
    if (pFound == std::end(aStandard) || pFound->lNumber != lNumber)
        return L"Application-defined or object-defined error";
    return pFound->sDescription;
}

} // namespace ravlo
