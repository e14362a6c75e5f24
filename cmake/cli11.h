// SPDX-License-Identifier: MIT
#pragma once

// CLI11 without the standard streams, whose locales would be a third of RavloHost.exe: include this header
// instead of <CLI/CLI.hpp>. CLI11 writes its texts into a string, knows letters and blanks as the "C" locale
// does, and reads no file.

#include <algorithm>
#include <cctype>
#include <fstream>
#include <iomanip>
#include <locale>
#include <sstream>
#include <string>
#include <type_traits>

namespace ravlo::cli11
{

struct Width
{
    explicit Width(int lWidth) : width(static_cast<std::size_t>(lWidth)) {}
    std::size_t width;
};

// Contains what has been written, and is read line by line.
class Text
{
public:
    Text() = default;
    explicit Text(const std::string& /*sFile*/) {}
    bool good() const { return false; } // no file can be opened

    const std::string& str() const { return m_sText; }
    void str(const std::string& sText) { m_sText = sText; }
    std::size_t tellp() const { return m_sText.size(); }
    void put(char c) { m_sText += c; }

    // As with a stream, a width is the least length of the next text.
    Text& operator<<(const std::string& sText)
    {
        m_sText += sText;
        m_sText.append(m_width - std::min(m_width, sText.size()), ' ');
        m_width = 0;
        return *this;
    }
    Text& operator<<(const char* sText) { return *this << std::string(sText); }
    Text& operator<<(char c) { return *this << std::string(1, c); }
    template <class Number, class = std::enable_if_t<std::is_integral_v<Number>>>
    Text& operator<<(Number number)
    {
        return *this << std::to_string(number);
    }
    Text& operator<<(Width width)
    {
        m_width = width.width;
        return *this;
    }
    Text& operator<<(std::ios_base& (*)(std::ios_base&)) { return *this; } // std::left, which holds anyway

    bool ReadLine(std::string& sLine, char cEnd)
    {
        if (m_read >= m_sText.size())
            return false;
        const std::size_t end = std::min(m_sText.find(cEnd, m_read), m_sText.size());
        sLine = m_sText.substr(m_read, end - m_read);
        m_read = end + 1;
        return true;
    }

private:
    std::string m_sText;
    std::size_t m_width = 0;
    std::size_t m_read = 0;
};

inline bool getline(Text& cText, std::string& sLine, char cEnd = '\n') { return cText.ReadLine(sLine, cEnd); }

// What CLI11 would print by itself, which nobody sees: the host prints.
inline Text& Unseen()
{
    static Text cUnseen;
    return cUnseen;
}

struct Locale
{
};
template <class Char> bool isspace(Char c, Locale)
{
    return std::isspace(static_cast<unsigned char>(c)) != 0;
}
template <class Char> bool isalpha(Char c, Locale)
{
    return std::isalpha(static_cast<unsigned char>(c)) != 0;
}
template <class Char> Char tolower(Char c, Locale)
{
    return static_cast<Char>(std::tolower(static_cast<unsigned char>(c)));
}

inline constexpr const char* sEndOfLine = "\n";
inline constexpr const char* sNothing = "";

} // namespace ravlo::cli11

// CLI11 spells each of these with std:: in front.
namespace std
{
namespace ravlo_cli11 = ::ravlo::cli11;
using ::ravlo::cli11::getline;
using ::ravlo::cli11::isalpha;
using ::ravlo::cli11::isspace;
using ::ravlo::cli11::tolower;
} // namespace std

#define CLI11_HAS_FILESYSTEM 0
#ifndef _GLIBCXX_IOSTREAM // <iostream> alone would start the streams
#define _GLIBCXX_IOSTREAM
#define RAVLO_CLI11_IOSTREAM
#endif
#define stringstream ravlo_cli11::Text
#define ostringstream ravlo_cli11::Text
#define ostream ravlo_cli11::Text
#define istream ravlo_cli11::Text
#define ifstream ravlo_cli11::Text
#define cout ravlo_cli11::Unseen()
#define cerr ravlo_cli11::Unseen()
#define endl ravlo_cli11::sEndOfLine
#define flush ravlo_cli11::sNothing
#define setw ravlo_cli11::Width
#define locale ravlo_cli11::Locale
#include <CLI/CLI.hpp>
#undef stringstream
#undef ostringstream
#undef ostream
#undef istream
#undef ifstream
#undef cout
#undef cerr
#undef endl
#undef flush
#undef setw
#undef locale
#ifdef RAVLO_CLI11_IOSTREAM
#undef _GLIBCXX_IOSTREAM
#undef RAVLO_CLI11_IOSTREAM
#endif
