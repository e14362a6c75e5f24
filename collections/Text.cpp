// SPDX-License-Identifier: MIT
#include "collections/Text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <system_error>

namespace ravlo
{

namespace
{

std::wstring Widened(const char* pFirst, const char* pLast) { return std::wstring(pFirst, pLast); }

bool IsDigit(wchar_t c) { return c >= L'0' && c <= L'9'; }

bool IsBlank(wchar_t c) { return c == L' ' || (c >= L'\t' && c <= L'\r'); }

// '$' besides the invariant locale's own sign, since that is what people type.
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

// Reads one number from front to back, in the order of its parts.
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

    // Digits, thousands commas anywhere behind the first of them, and one decimal point.
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
            --m_lExponent;
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
        constexpr std::int64_t lEnough = 1'000'000'000'000; // more than any text is long, so no sum overflows
        std::int64_t lExponent = 0;
        for (; IsDigit(Peek()); Take())
            lExponent = std::min(lExponent * 10 + (Peek() - L'0'), lEnough);
        m_lExponent += bNegative ? -lExponent : lExponent;
        return true;
    }

    // Nothing when it is larger than a double can hold; what is too small is 0.
    std::optional<double> Magnitude() const
    {
        if (m_sDigits.empty())
            return 0.0;
        const std::string sNumber = m_sDigits + "e" + std::to_string(m_lExponent);
        double dValue = 0;
        const auto [pEnd, eError] = std::from_chars(sNumber.data(), sNumber.data() + sNumber.size(), dValue);
        if (eError == std::errc())
            return dValue;
        const bool bLarge = static_cast<std::int64_t>(m_sDigits.size()) + m_lExponent > 0;
        return bLarge ? std::nullopt : std::optional<double>(0.0);
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
        std::uint64_t lValue = 0;
        bool bAny = false;
        for (; HexDigit(Peek()) < (1 << lShift); Take())
        {
            if ((lValue >> (64 - lShift)) != 0)
                return std::nullopt;
            lValue = (lValue << lShift) | static_cast<std::uint64_t>(HexDigit(Peek()));
            bAny = true;
        }
        while (SkipBlanks())
        {
        }
        if (!bAny || !m_sRest.empty())
            return std::nullopt;
        return static_cast<double>(lValue);
    }

    std::wstring_view m_sRest;
    std::string m_sDigits; // significant digits without the point
    std::int64_t m_lExponent = 0;
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
    const std::size_t lFirst = sText.find_first_not_of(L' ');
    if (lFirst == std::wstring_view::npos)
        return {};
    return std::wstring(sText.substr(lFirst, sText.find_last_not_of(L' ') - lFirst + 1));
}

std::vector<std::wstring> Split(std::wstring_view sText, std::wstring_view sDelimiter)
{
    std::vector<std::wstring> sPieces;
    std::size_t lStart = 0;
    // An empty delimiter stands nowhere, so the whole text is one piece.
    for (std::size_t lFound; !sDelimiter.empty() && (lFound = sText.find(sDelimiter, lStart)) != sText.npos;)
    {
        sPieces.emplace_back(sText.substr(lStart, lFound - lStart));
        lStart = lFound + sDelimiter.size();
    }
    sPieces.emplace_back(sText.substr(lStart));
    return sPieces;
}

std::wstring DecimalText(std::int64_t lValue) { return std::to_wstring(lValue); }

std::wstring SingleText(float sngValue)
{
    if (std::isnan(sngValue))
        return L"-1.#IND";
    if (std::isinf(sngValue))
        return sngValue < 0 ? L"-1.#INF" : L"1.#INF";
    if (sngValue == 0)
        return L"0"; // without the sign of a negative zero
    char aText[32];
    const auto [pEnd, eError] = std::to_chars(aText, aText + sizeof aText, static_cast<double>(sngValue),
                                              std::chars_format::general, 7);
    std::wstring sText = Widened(aText, pEnd);
    if (const std::size_t lExponent = sText.find(L'e'); lExponent != std::wstring::npos)
        sText[lExponent] = L'E';
    return sText;
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

} // namespace ravlo
