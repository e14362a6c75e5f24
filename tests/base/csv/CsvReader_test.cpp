// SPDX-License-Identifier: MIT
#include "base/csv/CsvReader.h"

#include <gtest/gtest.h>

#include <random>
#include <stdexcept>
#include <string>
#include <vector>

namespace ravlo
{
namespace
{

using namespace std::string_literals;

// "line[field|field]" for a row, "line!stray" and "line!open" for bad ones.
class Lines : public CsvSink
{
public:
    void OnRow(std::size_t line, std::span<const std::string> fields) override
    {
        sLines += std::to_string(line) + "[";
        for (std::size_t i = 0; i < fields.size(); ++i)
            sLines += (i > 0 ? "|" : "") + fields[i];
        sLines += "] ";
        colNumbers.push_back(line);
    }
    void OnBadRow(std::size_t line, CsvFault eFault) override
    {
        sLines += std::to_string(line) + (eFault == CsvFault::StrayQuote ? "!stray " : "!open ");
        colNumbers.push_back(line);
    }
    std::string sLines;
    std::vector<std::size_t> colNumbers;
};

struct Case
{
    const char* sRule;
    std::string bytes;
    std::string sExpected;
};

const Case cases[] = {
    {"no bytes give no rows", "", ""},
    {"fields are divided by commas", "a,b,c\n", "1[a|b|c] "},
    {"the last line needs no line end", "a\nb", "1[a] 2[b] "},
    {"lines end with CRLF, LF or CR", "a\r\nb\nc\rd", "1[a] 2[b] 3[c] 4[d] "},
    {"empty lines are no rows but count", "\r\n\na\n\n\rb\n", "3[a] 6[b] "},
    {"empty fields count", ",\n,,", "1[|] 2[||] "},
    {"an empty quoted field is a row", "\"\"\n", "1[] "},
    {"blanks belong to the field", " a , b\t\n", "1[ a | b\t] "},
    {"a line of blanks is a row", "  \n", "1[  ] "},
    {"a quoted field may contain commas", "\"a,b\",c\n", "1[a,b|c] "},
    {"two quotation marks mean one", "\"say \"\"hi\"\"\",\"\"\"\"\n", "1[say \"hi\"|\"] "},
    {"a quoted field may contain line ends, which count", "\"a\r\nb\n\",c\nd\n", "1[a\r\nb\n|c] 4[d] "},
    {"an empty line inside a quoted field belongs to it", "\"\n\n\"\nd\n", "1[\n\n] 4[d] "},
    {"a field may contain any byte", "a\0b,\xFF\xFE\n"s, "1[a\0b|\xFF\xFE] "s},
    {"a quotation mark inside an unquoted field spoils its row", "a\nb\"c\",d\ne\n", "1[a] 2!stray 3[e] "},
    {"text after a closing quotation mark spoils its row", "\"a\"b,c\nd\n", "1!stray 2[d] "},
    {"a blank before the quotation mark spoils its row", "a, \"b\"\nc\n", "1!stray 2[c] "},
    {"a quotation mark that is never closed costs only its row", "a\n\"b,c\nd\ne", "1[a] 2!open 3[d] 4[e] "},
    {"one that a later row seems to close costs only its row", "\"a,b\nc,d\n\"e\",f\ng\n",
     "1!stray 2[c|d] 3[e|f] 4[g] "},
    {"a bad row on the last line is reported", "a\n\"", "1[a] 2!open "},
    {"every row may be bad", "\"a\n\"b\n\"c", "1!stray 2!stray 3!open "},
};

TEST(CsvDelimiter, IsTheMostFrequentOneOfTheFirstLine)
{
    EXPECT_EQ(DelimiterOf(""), ',');
    EXPECT_EQ(DelimiterOf("a;b;c,d\nx,y,z,1,2"), ';');
    EXPECT_EQ(DelimiterOf("\"x;y;z\",b"), ',');
    EXPECT_EQ(DelimiterOf("a\tb"), '\t');
    struct Sink : CsvSink
    {
        void OnRow(std::size_t, std::span<const std::string> fields) override { sAll += fields[1]; }
        void OnBadRow(std::size_t, CsvFault) override {}
        std::string sAll;
    } cSink;
    ReadCsv("a;\"b;,\"\n1;2\n", cSink, ';');
    EXPECT_EQ(cSink.sAll, "b;,2");
}

TEST(CsvReader, TakesRowsApart)
{
    for (const auto& test : cases)
    {
        Lines cLines;
        ReadCsv(test.bytes, cLines);
        EXPECT_EQ(cLines.sLines, test.sExpected) << test.sRule;
    }
}

TEST(CsvReader, AFieldMayBeLong)
{
    const std::string sLong(100'000, 'x');
    Lines cLines;
    ReadCsv("\"" + sLong + "\"," + sLong, cLines);
    EXPECT_EQ(cLines.sLines, "1[" + sLong + "|" + sLong + "] ");
}

TEST(CsvReader, WhatTheSinkThrowsComesThrough)
{
    class Thrower : public CsvSink
    {
    public:
        void OnRow(std::size_t line, std::span<const std::string>) override
        {
            ++lCalls;
            if (line == 2)
                throw std::out_of_range("two");
        }
        void OnBadRow(std::size_t, CsvFault) override { throw std::out_of_range("bad"); }
        int lCalls = 0;
    };
    Thrower cThrower;
    EXPECT_THROW(ReadCsv("a\nb\nc\n", cThrower), std::out_of_range);
    EXPECT_EQ(cThrower.lCalls, 2);
    EXPECT_THROW(ReadCsv("\"a", cThrower), std::out_of_range) << "of a bad row too";
}

TEST(CsvReader, AnyBytesAreReadToTheEnd)
{
    constexpr unsigned lSeed = 20240611;
    std::mt19937 random(lSeed);
    const std::string sAlphabet = "ab,\"\"\r\n\0\xC3"s;
    for (int lRound = 0; lRound < 3000; ++lRound)
    {
        std::string bytes;
        for (auto lLeft = random() % 60; lLeft > 0; --lLeft)
            bytes += sAlphabet[random() % sAlphabet.size()];
        Lines cLines;
        ReadCsv(bytes, cLines);
        for (std::size_t i = 1; i < cLines.colNumbers.size(); ++i)
            ASSERT_LT(cLines.colNumbers[i - 1], cLines.colNumbers[i])
                << "seed " << lSeed << " round " << lRound;
        const auto lLast = cLines.colNumbers.empty() ? 0 : cLines.colNumbers.back();
        ASSERT_LE(lLast, CountLines(bytes)) << "seed " << lSeed << " round " << lRound;
    }
}

TEST(CsvReader, CountsLinesWithAnyLineEnd)
{
    const std::pair<std::string, std::size_t> counts[] = {
        {"", 0}, {"a", 1}, {"a\n", 1}, {"a\nb", 2}, {"\r\n\r\n", 2}, {"a\rb\nc\r\nd", 4}, {"\n\r", 2}};
    for (const auto& [bytes, lines] : counts)
        EXPECT_EQ(CountLines(bytes), lines) << ::testing::PrintToString(bytes);
}

} // namespace
} // namespace ravlo
