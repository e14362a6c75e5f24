// SPDX-License-Identifier: MIT
#include "base/Text.h"

#include "base/DecimalDigits.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>

namespace ravlo
{

namespace
{

std::wstring Widened(const std::string& sAscii) { return std::wstring(sAscii.begin(), sAscii.end()); }

bool IsDigit(wchar_t c) { return c >= L'0' && c <= L'9'; }

bool IsBlank(wchar_t c) { return c == L' ' || (c >= L'\t' && c <= L'\r'); }

// '$' in addition to the invariant locale's own sign, since people type it.
bool IsCurrencySign(wchar_t c) { return c == L'$' || c == L'\u00A4'; }

int HexDigit(wchar_t c)
{
    if (IsDigit(c))
        return c - L'0';
    if (c >= L'A' && c <= L'F')
        return c - L'A' + 10;
    if (c >= L'a' && c <= L'f')
        return c - L'a' + 10;
    return std::numeric_limits<int>::max();
}

// d.dddddd times ten to the exponent, without trailing zeros.
struct Decimal
{
    std::string sDigits;
    int lExponent;
};

// Rounded half away from zero, as the platform's conversion does it, and therefore from the exact value: a
// printing function would round ties to even.
Decimal SevenDigitsOf(float sngValue)
{
    constexpr int lKept = 7;
    constexpr int lExact = 111; // digits after the point; no single has more
    const std::string sText = ScientificDigits(static_cast<double>(sngValue), lExact); // d.ddd...e+dd
    Decimal cDecimal{sText.substr(0, 1) + sText.substr(2, lKept - 1),
                     std::atoi(sText.c_str() + sText.find('e') + 1)};
    if (sText[lKept + 1] >= '5')
    {
        const std::size_t last = cDecimal.sDigits.find_last_not_of('9');
        if (last == std::string::npos)
            return {"1", cDecimal.lExponent + 1};
        cDecimal.sDigits.resize(last + 1);
        ++cDecimal.sDigits[last];
    }
    cDecimal.sDigits.resize(cDecimal.sDigits.find_last_not_of('0') + 1);
    return cDecimal;
}

std::wstring ExponentText(const Decimal& cDecimal)
{
    const std::string& sDigits = cDecimal.sDigits;
    const std::string sExponent = std::to_string(std::abs(cDecimal.lExponent));
    const std::string sText = sDigits.substr(0, 1) + (sDigits.size() > 1 ? "." : "") + sDigits.substr(1) +
                              (cDecimal.lExponent < 0 ? "E-" : "E+") + (sExponent.size() < 2 ? "0" : "") +
                              sExponent;
    return Widened(sText);
}

std::wstring PlainText(const Decimal& cDecimal)
{
    // Digits before the point.
    const auto whole = static_cast<std::size_t>(std::max(0, cDecimal.lExponent + 1));
    std::string sDigits = std::string(static_cast<std::size_t>(std::max(0, -1 - cDecimal.lExponent)), '0');
    sDigits += cDecimal.sDigits;
    if (sDigits.size() <= whole)
        return Widened(sDigits + std::string(whole - sDigits.size(), '0'));
    return Widened((whole == 0 ? "0" : sDigits.substr(0, whole)) + "." + sDigits.substr(whole));
}

// Reads one number from start to end, in the order of its parts.
class NumberReader
{
public:
    explicit NumberReader(std::wstring_view sText) : m_sRest(sText) {}

    std::optional<double> Value()
    {
        while (SkipBlanks() || TakeLeadingMark())
        {
        }
        if (!m_bMarked && Peek() == L'&')
            return BasedValue();
        if (!TakeDigits() || !TakeExponent())
            return std::nullopt;
        while (SkipBlanks() || TakeTrailingMark())
        {
        }
        if (!m_sRest.empty() || m_bOpenParenthesis)
            return std::nullopt;
        const std::optional<double> dMagnitude = Magnitude();
        return dMagnitude && m_bNegative ? -*dMagnitude : dMagnitude;
    }

private:
    wchar_t Peek() const { return m_sRest.empty() ? L'\0' : m_sRest.front(); }
    bool Take()
    {
        m_sRest.remove_prefix(1);
        return true;
    }

    bool SkipBlanks()
    {
        if (m_sRest.empty() || !IsBlank(Peek()))
            return false;
        return Take();
    }

    // A sign, once in the whole text.
    bool TakeSign()
    {
        if (m_bSigned || (Peek() != L'+' && Peek() != L'-'))
            return false;
        m_bSigned = m_bMarked = true;
        m_bNegative = m_bNegative || Peek() == L'-';
        return Take();
    }

    bool TakeCurrencySign()
    {
        if (m_bCurrency || !IsCurrencySign(Peek()))
            return false;
        m_bCurrency = m_bMarked = true;
        return Take();
    }

    bool TakeLeadingMark()
    {
        if (TakeSign() || TakeCurrencySign())
            return true;
        if (m_bParentheses || Peek() != L'(')
            return false;
        m_bParentheses = m_bOpenParenthesis = m_bMarked = true;
        return Take();
    }

    bool TakeTrailingMark()
    {
        if (TakeSign() || TakeCurrencySign())
            return true;
        if (!m_bOpenParenthesis || Peek() != L')')
            return false;
        m_bOpenParenthesis = false;
        m_bNegative = true;
        return Take();
    }

    // Digits, thousands commas anywhere after the first of them, and one decimal point.
    bool TakeDigits()
    {
        bool bAny = false;
        bool bPoint = false;
        for (; !m_sRest.empty(); Take())
        {
            const wchar_t c = Peek();
            if (IsDigit(c))
            {
                bAny = true;
                KeepDigit(static_cast<char>('0' + (c - L'0')), bPoint);
            }
            else if (c == L'.' && !bPoint)
                bPoint = true;
            else if (c != L',' || bPoint || !bAny)
                break;
        }
        return bAny;
    }

    void KeepDigit(char c, bool bBehindPoint)
    {
        if (c != '0' || !m_sDigits.empty())
            m_sDigits += c;
        if (bBehindPoint)
            --m_exponent;
    }

    bool TakeExponent()
    {
        const wchar_t c = Peek();
        if (c != L'E' && c != L'e' && c != L'D' && c != L'd')
            return true;
        Take();
        const bool bNegative = Peek() == L'-';
        if (bNegative || Peek() == L'+')
            Take();
        if (!IsDigit(Peek()))
            return false;
        constexpr std::int64_t enough = 1'000'000'000'000; // more than any length: sums cannot overflow
        std::int64_t exponent = 0;
        for (; IsDigit(Peek()); Take())
            exponent = std::min(exponent * 10 + (Peek() - L'0'), enough);
        m_exponent += bNegative ? -exponent : exponent;
        return true;
    }

    // Nothing when it is too large for a double; 0 when it is too small.
    std::optional<double> Magnitude() const
    {
        if (m_sDigits.empty())
            return 0.0;
        constexpr std::int64_t beyond = 400;  // digits before or after the point: no double has as many
        constexpr std::size_t counting = 800; // digits: of all others it counts only whether there are any
        const std::int64_t before = static_cast<std::int64_t>(m_sDigits.size()) + m_exponent;
        if (before > beyond)
            return std::nullopt;
        if (before < -beyond)
            return 0.0;
        std::string sDigits = m_sDigits.substr(0, counting);
        if (m_sDigits.find_first_not_of('0', counting) != std::string::npos)
            sDigits += '1';
        const std::int64_t exponent = before - static_cast<std::int64_t>(sDigits.size());
        // Without a point it reads the same in every locale.
        const double dValue = std::strtod((sDigits + "e" + std::to_string(exponent)).c_str(), nullptr);
        return std::isinf(dValue) ? std::nullopt : std::optional<double>(dValue);
    }

    // &H and &O: an unsigned number of at most 64 bits.
    std::optional<double> BasedValue()
    {
        Take();
        const bool bHex = Peek() == L'H' || Peek() == L'h';
        if (!bHex && Peek() != L'O' && Peek() != L'o')
            return std::nullopt;
        Take();
        const unsigned lShift = bHex ? 4 : 3;
        std::uint64_t value = 0;
        bool bAny = false;
        for (; HexDigit(Peek()) < (1 << lShift); Take())
        {
            if ((value >> (64 - lShift)) != 0)
                return std::nullopt;
            value = (value << lShift) | static_cast<std::uint64_t>(HexDigit(Peek()));
            bAny = true;
        }
        while (SkipBlanks())
        {
        }
        if (!bAny || !m_sRest.empty())
            return std::nullopt;
        return static_cast<double>(value);
    }

    std::wstring_view m_sRest;
    std::string m_sDigits; // significant digits without the point
    std::int64_t m_exponent = 0;
    bool m_bMarked = false;
    bool m_bSigned = false;
    bool m_bNegative = false;
    bool m_bCurrency = false;
    bool m_bParentheses = false;
    bool m_bOpenParenthesis = false;
};

} // namespace

std::wstring Trim(std::wstring_view sText)
{
    const std::size_t first = sText.find_first_not_of(L' ');
    if (first == std::wstring_view::npos)
        return {};
    return std::wstring(sText.substr(first, sText.find_last_not_of(L' ') - first + 1));
}

std::vector<std::wstring> Split(std::wstring_view sText, std::wstring_view sDelimiter)
{
    std::vector<std::wstring> sPieces;
    std::size_t start = 0;
    // An empty delimiter is not found, so the whole text is one piece.
    for (std::size_t found;
         !sDelimiter.empty() && (found = sText.find(sDelimiter, start)) != std::wstring_view::npos;)
    {
        sPieces.emplace_back(sText.substr(start, found - start));
        start = found + sDelimiter.size();
    }
    sPieces.emplace_back(sText.substr(start));
    return sPieces;
}

std::wstring DecimalText(std::int64_t value) { return std::to_wstring(value); }

std::wstring CountText(std::size_t count) { return std::to_wstring(count); }

std::wstring SingleText(float sngValue)
{
    if (std::isnan(sngValue))
        return L"-1.#IND";
    if (std::isinf(sngValue))
        return sngValue < 0 ? L"-1.#INF" : L"1.#INF";
    if (sngValue == 0)
        return L"0"; // without the sign of a negative zero
    const Decimal cDecimal = SevenDigitsOf(std::abs(sngValue));
    const std::wstring sSign = sngValue < 0 ? L"-" : L"";
    if (cDecimal.lExponent < -4 || cDecimal.lExponent >= 7)
        return sSign + ExponentText(cDecimal);
    return sSign + PlainText(cDecimal);
}

std::optional<double> NumericValue(std::wstring_view sText) { return NumberReader(sText).Value(); }

std::optional<std::int32_t> ToLong(double dValue) noexcept
{
    if (!(std::abs(dValue) < 4294967296.0)) // NaN fails the test too
        return std::nullopt;
    double dRounded = std::floor(dValue);
    const double dRest = dValue - dRounded;
    if (dRest > 0.5 || (dRest == 0.5 && std::fmod(dRounded, 2.0) != 0))
        dRounded += 1;
    if (dRounded < std::numeric_limits<std::int32_t>::min() ||
        dRounded > std::numeric_limits<std::int32_t>::max())
        return std::nullopt;
    return static_cast<std::int32_t>(dRounded);
}

std::wstring CategoryKey(const std::wstring& sCatName, std::int32_t lCatLevel)
{
    return sCatName + cTab + DecimalText(lCatLevel);
}

CategoryKeyParts SplitCategoryKey(std::wstring_view sKey) noexcept
{
    const std::size_t tab = sKey.find(cTab);
    if (tab == std::wstring_view::npos)
        return {sKey, std::nullopt};
    return {sKey.substr(0, tab), sKey.substr(tab + 1)};
}

} // namespace ravlo
