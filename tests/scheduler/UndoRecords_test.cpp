// SPDX-License-Identifier: MIT
#include "scheduler/UndoRecords.h"

#include <gtest/gtest.h>

namespace ravlo::test
{
namespace
{

using Category = ChangeRecord::Category;

TextKey Key(const wchar_t* sText) { return TextKey(sText); }

ChangeRecord FullRecord()
{
    ChangeRecord record;
    record.colCuts = {{Key(L"D:\\b.mp3"), {1, L"Rock"}, ChangeRecord::State{-2, L"Pop/Rock"}},
                      {Key(L"D:\\\x00C4.mp3"), {2'147'483'647, L""}, {}}};
    record.colOrders = {{Category{L"Rock", 1}, {Key(L"D:\\a.mp3"), Key(L"D:\\b.mp3"), Key(L"D:\\c.mp3")}},
                        {Category{L"Pop", 3}, {}},
                        {Category{L"Rock", 2}, {Key(L"D:\\c.mp3"), Key(L"D:\\a.mp3")}}};
    record.colMade = {{L"Jazz", 0}, {L"Jazz", 1}};
    record.colDeleted = {{L"Soul", 4}, {L"Soul", 0, 7}};
    record.colRenamed = {{L"rock", L"ROCK"}};
    return record;
}

ChangeRecord SettingsRecord()
{
    using Value = ChangeRecord::Value;
    ChangeRecord record;
    record.settings = {{L"Pop", 2}, {{Value::ArtistSeparation, -1, 90}, {Value::IgnoreRules, 0, 1}}};
    return record;
}

ChangeRecord OptionRecord(std::size_t items)
{
    ChangeRecord record;
    record.settings.colItems.assign(items, {ChangeRecord::Value::FairRotation, 0, 1});
    return record;
}

// What a record says, as text.
std::wstring TextOf(const ChangeRecord& record)
{
    std::wstring sText;
    const auto state = [](const ChangeRecord::State& s) {
        return std::to_wstring(s.lCatLevel) + L" " + s.sCategoryText;
    };
    const auto category = [](const Category& c) {
        return L"|" + c.sCatName + L" " + std::to_wstring(c.lLevel) + L" " + std::to_wstring(c.position);
    };
    for (const ChangeRecord::Cut& cut : record.colCuts)
        sText += L"|" + cut.cKey.Text() + L": " + state(cut.before) + L" > " +
                 (cut.after ? state(*cut.after) : L"?");
    for (const ChangeRecord::Order& order : record.colOrders)
    {
        sText += category(order.category) + L":";
        for (const TextKey& cKey : order.colKeys)
            sText += L" " + cKey.Text();
    }
    for (const Category& made : record.colMade)
        sText += L" made " + category(made);
    for (const Category& deleted : record.colDeleted)
        sText += L" deleted " + category(deleted);
    for (const ChangeRecord::Renamed& renamed : record.colRenamed)
        sText += L"|" + renamed.sFrom + L" > " + renamed.sTo;
    return sText;
}

UndoContent Content()
{
    UndoContent content;
    ChangeRecord small;
    small.colMade = {{L"Jazz", 2}};
    content.colUndo = {{1, L"new level Jazz 2", EncodeRecord(small, content.cTables)},
                       {2, L"move of 2 cuts to \x00C4", EncodeRecord(FullRecord(), content.cTables)}};
    content.colRedo = {{3, L"new level Jazz 2", EncodeRecord(small, content.cTables)},
                       {4, L"separations of Pop 2", EncodeRecord(SettingsRecord(), content.cTables)},
                       {5, L"fair rotation", EncodeRecord(OptionRecord(1), content.cTables)}};
    return content;
}

TEST(UndoRecords, AFileIsReadBackAsItWasWritten)
{
    const std::string bytes = EncodeUndoFile(Content());
    const std::optional<UndoContent> read = DecodeUndoFile(bytes);
    ASSERT_TRUE(read);
    ASSERT_EQ(read->colUndo.size(), 2u);
    ASSERT_EQ(read->colRedo.size(), 3u);
    EXPECT_EQ(read->colUndo[1].sWhat, L"move of 2 cuts to \x00C4");
    const std::optional<ChangeRecord> record = DecodeRecord(read->colUndo[1].bytes, read->cTables);
    ASSERT_TRUE(record);
    EXPECT_EQ(TextOf(*record), TextOf(FullRecord()));
    EXPECT_EQ(DecodeRecord(read->colRedo[1].bytes, read->cTables)->settings, SettingsRecord().settings);
    EXPECT_EQ(DecodeRecord(read->colRedo[2].bytes, read->cTables)->settings, OptionRecord(1).settings);
    EXPECT_EQ(EncodeUndoFile(*read), bytes);
    EXPECT_EQ(EncodeUndoFile(*DecodeUndoFile(EncodeUndoFile({}))), EncodeUndoFile({}));
}

TEST(UndoRecords, TheBytesAreTheDocumentedOnes)
{
    UndoContent content;
    ChangeRecord record;
    record.colCuts = {{Key(L"D:\\b"), {1, L"Rock"}, ChangeRecord::State{-1, L"Pop"}}};
    record.colOrders = {{Category{L"Pop", 2}, {Key(L"D:\\a"), Key(L"D:\\b"), Key(L"D:\\a")}}};
    record.colDeleted = {{L"Pop", 0, 128}};
    content.colUndo = {{1, L"x", EncodeRecord(record, content.cTables)}};
    const std::string step{1,                           // cuts
                           1, 2, 1, 1,      1, 0,       // D:\b, 1 Rock, -1 Pop
                           1, 0, 4, 0,      3, 0, 0, 3, // Pop 2: a, b, a
                           0,                           // made
                           1, 0, 0, '\x80', 1,          // deleted: Pop, at 128
                           0};                          // renamed
    const std::string body =
        std::string("\2\0\4D:\\a\3\1b\2\3Pop\4Rock\1\1x", 23) + static_cast<char>(step.size()) + step + '\0';
    EXPECT_EQ(EncodeUndoFile(content).substr(21), body);
    EXPECT_TRUE(EncodeUndoFile(content).starts_with("RavloUndo 1\r\n"));
}

TEST(UndoRecords, SettingsAreASixthListOfARecordOfNothingElse)
{
    UndoTables cTables;
    EXPECT_EQ(EncodeRecord(SettingsRecord(), cTables),
              std::string({0, 0, 0, 0, 0,      // no list of a change of cuts
                           2, 0, 1, '\xB4', 1, // artist: -1, 90
                           3, 0, 2,            // ignoring: 0, 1
                           0, 4}));            // Pop 2
    EXPECT_EQ(EncodeRecord(OptionRecord(1), cTables), std::string({0, 0, 0, 0, 0, 1, 4, 0, 2, 1, 0}));
    ChangeRecord mixed = FullRecord();
    mixed.settings = SettingsRecord().settings;
    ChangeRecord option = SettingsRecord();
    option.settings.colItems[0].eValue = ChangeRecord::Value::FairRotation;
    for (const ChangeRecord& refused : {mixed, option, OptionRecord(2)})
        EXPECT_FALSE(DecodeRecord(EncodeRecord(refused, cTables), cTables));
}

TEST(UndoRecords, DamageAnywhereRefusesTheWholeFile)
{
    const std::string bytes = EncodeUndoFile(Content());
    for (std::size_t at = 0; at < bytes.size(); ++at)
    {
        EXPECT_FALSE(DecodeUndoFile(bytes.substr(0, at))) << at;
        std::string damaged = bytes;
        damaged[at] = static_cast<char>(damaged[at] ^ 0x10);
        EXPECT_FALSE(DecodeUndoFile(damaged)) << at;
    }
    EXPECT_FALSE(DecodeUndoFile(bytes + '\0'));
}

TEST(UndoRecords, WrongContentUnderARightCheckIsRefused)
{
    const std::string body = EncodeUndoFile(Content()).substr(21);
    ASSERT_TRUE(DecodeUndoFile(SealUndoFile(body)));
    std::size_t refused = 0;
    for (std::size_t at = 0; at < body.size(); ++at)
        for (const char byte : {'\0', '\1', '\x7F', '\xFF'})
        {
            std::string damaged = body;
            damaged[at] = byte;
            const std::optional<UndoContent> read = DecodeUndoFile(SealUndoFile(damaged));
            refused += read ? 0u : 1u;
            EXPECT_TRUE(!read || DecodeUndoFile(EncodeUndoFile(*read)));
            EXPECT_FALSE(DecodeUndoFile(SealUndoFile(body.substr(0, at))));
        }
    EXPECT_GT(refused, body.size());
    UndoTables cTables;
    const std::string record = EncodeRecord(FullRecord(), cTables);
    EXPECT_FALSE(DecodeRecord(record + '\0', cTables)) << "more than a record";
}

} // namespace
} // namespace ravlo::test
