// SPDX-License-Identifier: MIT
// The category pane's ticks, and what it says a level can keep.
#include "ui/category/FormTest.h"
#include "ui/category/OutlookText.h"

namespace ravlo::test
{

namespace
{

struct Inherit : Form
{
    Inherit() { SetGlobalMins({61, 62, 63}); }

    using Ticks = std::array<bool, 3>;
    Ticks TicksShown() const
    {
        return {cView.inherit.at(txtArtistSepMins1), cView.inherit.at(txtTitleSepMins1),
                cView.inherit.at(txtAlbumSepMins)};
    }
    void Tick(RuleBox eBox, bool bOn)
    {
        cView.inherit[eBox] = bOn;
        cForm->InheritClick(eBox);
    }
    // The artist, title and album minutes in the rules file of Rock 3.
    Minutes Stored()
    {
        const auto cRules = clsCatRules::Read(cMod, L"Rock\u00AC\u00AC\u00AC3");
        return {cRules->InheritsArtist() ? -1 : cRules->ArtistSepMins(),
                cRules->InheritsTitle() ? -1 : cRules->TitleSepMins(), cRules->AlbumSepMins()};
    }
};

} // namespace

TEST_F(Inherit, TicksShowWhichMinutesAreNotTheLevelsOwn)
{
    Rules(L"Rock", 3).SetTitleSepMins(20);
    OpenRules(L"Rock", 3, [&] {
        EXPECT_EQ(TicksShown(), (Ticks{true, false, true}));
        EXPECT_EQ(TextsOf(RulesPane::Category), (Texts{L"61", L"20", L"-1"}));
        EXPECT_FALSE(cView.bApply);
        Rules(L"Rock", 1).Apply({0, {}, 0, {}});
        ClickLevel(L"1");
        EXPECT_EQ(TicksShown(), (Ticks{false, true, false})) << "zero is the level's own";
    });
}

TEST_F(Inherit, ATickedBoxIsStoredAsNotSet)
{
    Rules(L"Rock", 3).Apply({10, 20, 30, {}});
    OpenRules(L"Rock", 3, [&] {
        for (const RuleBox eBox : BoxesOf(RulesPane::Category))
            Tick(eBox, true);
        EXPECT_EQ(TextsOf(RulesPane::Category), (Texts{L"61", L"62", L"-1"}));
        EXPECT_TRUE(cView.bApply);
        EXPECT_EQ(Stored(), (Minutes{10, 20, 30})) << "only Apply saves";
        cForm->ApplyClick();
        EXPECT_FALSE(cView.bApply);
    });
    EXPECT_EQ(Stored(), (Minutes{-1, -1, -1}));
    cMod.SetGlobalArtistSepMins(5);
    EXPECT_EQ(Mins(L"Rock", 3), (Minutes{5, 62, -1})) << "follows the station";
}

TEST_F(Inherit, AnUntickedBoxMakesTheShownMinutesTheLevelsOwn)
{
    OpenRules(L"Rock", 3, [&] {
        for (const RuleBox eBox : BoxesOf(RulesPane::Category))
            Tick(eBox, false);
        EXPECT_EQ(TextsOf(RulesPane::Category), (Texts{L"61", L"62", L"63"}));
        cForm->ApplyClick();
        EXPECT_EQ(TicksShown(), Ticks());
    });
    EXPECT_EQ(Stored(), (Minutes{61, 62, 63}));
    EXPECT_EQ(cSchedMan->Undo(), L"Undone: separations of Rock 3");
    EXPECT_EQ(Stored(), (Minutes{-1, -1, -1}));
}

TEST_F(Inherit, TypingTakesTheTickAway)
{
    OpenRules(L"Rock", 3, [&] {
        Type(txtArtistSepMins1, L"7");
        Type(txtAlbumSepMins, L"-5");
        EXPECT_EQ(TicksShown(), (Ticks{false, true, false}));
        cForm->ApplyClick();
        EXPECT_EQ(TicksShown(), (Ticks{false, true, true})) << "below zero is no album rule";
    });
    EXPECT_EQ(Stored(), (Minutes{7, -1, -1}));
}

TEST_F(Inherit, ATextThatIsNoNumberKeepsTheTick)
{
    OpenRules(L"Rock", 3, [&] {
        Type(txtArtistSepMins1, L"soon");
        cForm->ApplyClick();
        EXPECT_EQ(TicksShown(), (Ticks{true, true, true}));
        EXPECT_EQ(cView.texts.at(txtArtistSepMins1), L"61");
    });
    EXPECT_EQ(Stored(), (Minutes{-1, -1, -1}));
}

TEST_F(Inherit, IgnoringTheRulesDisablesTheTicksWithTheirBoxes)
{
    OpenRules(L"Rock", 3, [&] {
        for (const bool bIgnore : {true, false})
        {
            ClickIgnore(bIgnore);
            EXPECT_EQ(cView.inheritEnabled,
                      (std::map<RuleBox, bool>{{txtArtistSepMins1, !bIgnore}, {txtTitleSepMins1, !bIgnore}}));
        }
    });
}

TEST_F(Inherit, ATickIsAPendingChangeThatNoDiscards)
{
    Rules(L"Rock", 3).SetArtistSepMins(10);
    Answers(BoxAnswer::No);
    OpenRules(L"Rock", 3, [&] {
        Tick(txtArtistSepMins1, true);
        ClickLevel(L"1");
    });
    EXPECT_EQ(Shown(), (Boxes{PendingChanges(L"Rock")}));
    EXPECT_EQ(Stored()[0], 10);
}

// ---- what the level can keep ----

namespace
{

LevelOutlook LevelOf(std::size_t cuts, std::size_t ofArtist, std::size_t ofTitle, AskingRate rate = {})
{
    LevelOutlook level;
    level.makeUp = {cuts, {}, {TextKey(L"Abba"), ofArtist}, ofArtist, ofTitle};
    level.rate = rate;
    return level;
}

} // namespace

TEST(Outlook, MinutesAreSaidWhereTheLastPlaysTell)
{
    const AskingRate everyThreeMins{1, 480};
    EXPECT_EQ(OutlookText(LevelOf(84, 12, 1, everyThreeMins), 21, 252),
              L"Attainable for this level: artist 21 min, title 252 min. By its last plays it is asked about "
              L"every 3 min. Abba has 12 of its 84 cuts.");
    EXPECT_EQ(OutlookText(LevelOf(10, 5, 5, {1, 144}), 0, 0),
              L"Attainable for this level: artist 20 min, title 20 min. By its last plays it is asked about "
              L"every 10 min. Abba has 5 of its 10 cuts.");
}

TEST(Outlook, NamesEachSeparationThatCannotBeKept)
{
    const LevelOutlook level = LevelOf(84, 12, 1, {1, 480});
    const auto sentence = [&](std::int32_t lArtist, std::int32_t lTitle) {
        const std::wstring sText = OutlookText(level, lArtist, lTitle);
        const std::size_t start = sText.find(L"min. ") + 5;
        return sText.substr(start, sText.find(L" By its") - start);
    };
    EXPECT_EQ(sentence(22, 252), L"Artist 22 cannot be kept.");
    EXPECT_EQ(sentence(21, 253), L"Title 253 cannot be kept.");
    EXPECT_EQ(sentence(22, 253), L"Artist 22 and title 253 cannot be kept.");
}

TEST(Outlook, PlacesAreSaidWhereTheRateIsNotKnown)
{
    const std::wstring sEnd =
        L" How many minutes that is cannot be told: too few of its cuts have played of late.";
    EXPECT_EQ(
        OutlookText(LevelOf(84, 12, 1), 60, 60),
        L"Attainable for this level: artist every 7 cuts, title every 84 cuts. Abba has 12 of its 84 cuts." +
            sEnd);
    EXPECT_EQ(OutlookText(LevelOf(1, 1, 1), 60, 60),
              L"Attainable for this level: artist every cut, title every cut." + sEnd)
        << "an artist with one cut is not worth naming";
    EXPECT_EQ(OutlookText({}, 60, 60), L"This level has no cuts.");
}

TEST(Outlook, TheRateIsSaidToTheTenthBelowTenMinutes)
{
    const auto rate = [](std::uint32_t asked) {
        const std::wstring sText = OutlookText(LevelOf(2, 1, 1, {1, asked}), 0, 0);
        const std::size_t start = sText.find(L"every ") + 6;
        return sText.substr(start, sText.size() - 1 - start);
    };
    const std::pair<std::uint32_t, const wchar_t*> rates[] = {
        {420, L"3.4 min"}, {480, L"3 min"}, {145, L"9.9 min"}, {100, L"14 min"}, {100'000, L"0.1 min"}};
    for (const auto& [asked, sText] : rates)
        EXPECT_EQ(rate(asked), sText);
}

TEST_F(Inherit, TheLevelsOutlookFollowsTheLevelAndTheTypedMinutes)
{
    OpenRules(L"Rock", 1, [&] {
        EXPECT_EQ(cView.sOutlook.substr(0, 50), L"Attainable for this level: artist every 2 cuts, ti");
        ClickLevel(L"ALL");
        EXPECT_EQ(cView.sOutlook, L"Choose a level to see what its cuts can keep.");
        for (int i = 0; i < 4; ++i)
            Add(L"played" + std::to_wstring(i), L"Rock", 3, L"Mango", L"T" + std::to_wstring(i))
                ->SetLastPlayed(cPorts.cClock.Now() - i * 10 / 1440.0);
        Repopulate();
        ClickLevel(L"3");
        const std::wstring sBegin = L"Attainable for this level: artist 10 min, title 50 min.";
        EXPECT_EQ(cView.sOutlook, sBegin + L" Artist 61 and title 62 cannot be kept. By its last plays it is "
                                           L"asked about every 10 min. Mango has 5 of its 5 cuts.");
        Type(txtArtistSepMins1, L"-10");
        Type(txtTitleSepMins1, L"50.2");
        EXPECT_EQ(cView.sOutlook.substr(sBegin.size(), 7), L" By its");
        Type(txtTitleSepMins1, L"51");
        EXPECT_EQ(cView.sOutlook.substr(sBegin.size(), 9), L" Title 51");
        ClickIgnore(true);
        EXPECT_EQ(cView.sOutlook.substr(sBegin.size(), 7), L" By its") << "nothing to keep";
        Answers(BoxAnswer::No);
    });
}

TEST_F(Inherit, CutsAreReadOnlyWhileTheCategoryPaneIsShown)
{
    const auto reads = [&] { return CutOf(2)->calls["LastPlayed"]; };
    Open(L"Rock", 1, [&] {
        ClickLevel(L"3");
        EXPECT_EQ(reads(), 0);
        cForm->TabClick(RulesPane::Category);
        EXPECT_EQ(reads(), 1);
        Type(txtArtistSepMins1, L"1");
        EXPECT_EQ(reads(), 1) << "not at each key";
    });
}

} // namespace ravlo::test
