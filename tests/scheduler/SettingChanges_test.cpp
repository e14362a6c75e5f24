// SPDX-License-Identifier: MIT
#include "scheduler/UndoTest.h"

namespace ravlo::test
{
namespace
{

class SettingChangesTest : public UndoTest
{
protected:
    static constexpr clsCatRules::Edit Artist(std::int32_t lMins) { return {lMins, {}, {}, {}}; }
    std::int32_t ArtistOf(const std::wstring& sName, std::int32_t lLevel) const
    {
        return *Level(sName, lLevel)->PresentRules()->Stored().lArtist;
    }
    // The error's text.
    std::wstring Refused(std::wstring (clsSchedMan::*reverse)())
    {
        try
        {
            return (Man().*reverse)();
        }
        catch (const RuntimeError& cError)
        {
            return cError.Description();
        }
    }
    const std::wstring sRules = std::wstring(sRadio) + L"Scheduler\\Rules\\Pop\u00AC\u00AC\u00AC1.rls";
};

TEST_F(SettingChangesTest, ValuesChangedSinceStayAsTheyAre)
{
    Man().ApplyRules(Level(L"Pop", 1), {20, 30, {}, {}});
    Level(L"Pop", 1)->Rules()->SetTitleSepMins(40);
    EXPECT_EQ(Man().Undo(),
              L"Undone: separations of Pop 1 (the title separation was changed since and stays as it is)");
    EXPECT_EQ(ArtistOf(L"Pop", 1), clsCatRules::lNotSet);
    EXPECT_EQ(Level(L"Pop", 1)->Rules()->TitleSepMins(), 40);
    EXPECT_EQ(Man().Redo(), L"Redone: separations of Pop 1") << "of what the undo has set back";
    EXPECT_EQ(ArtistOf(L"Pop", 1), 20);
    Man().SetFairRotation(true);
    cPorts.cFiles.Put(sOptionsPath, "FairRotation=0\r\n"); // another program
    EXPECT_EQ(Man().Undo(),
              L"Undone: fair rotation (the fair rotation was changed since and stays as it is)");
    EXPECT_FALSE(Man().CanRedo());
}

TEST_F(SettingChangesTest, WhatSetsTheSameValueMakesNoStep)
{
    Man().ChangeRules(Level(L"Pop", 1), Artist(20));
    Man().SetFairRotation(true);
    EXPECT_EQ(Man().UndoText(), L"Undo fair rotation");
    Man().Undo();
    Man().ChangeRules(Level(L"Pop", 1), Artist(20));
    Man().SetFairRotation(false);
    EXPECT_EQ(Man().RedoText(), L"Redo fair rotation");
    Man().Redo();
    Man().SetFairRotation(false);
    EXPECT_EQ(Man().UndoText(), L"Undo end of fair rotation");
}

TEST_F(SettingChangesTest, ALevelThatIsGoneHasNoRulesToSetBack)
{
    Man().ChangeRules(Level(L"Pop", 1), Artist(20));
    Removed({CutOf(L"p"), CutOf(L"q")});
    MainCat(L"Pop")->SubCats()->Remove(std::wstring_view(L"1"));
    EXPECT_EQ(Man().Undo(), L"Undone: artist separation of Pop 1 (Pop 1 is gone)");
    EXPECT_FALSE(Man().CanRedo());
}

TEST_F(SettingChangesTest, OneThatCannotBeSavedChangesNothing)
{
    cPorts.cFiles.Put(sRules, File(L"Pop")); // too short or long: any file that is there
    Man().ChangeRules(Level(L"Pop", 1), Artist(20));
    const std::wstring sBefore = State();
    cPorts.cFiles.SetReadOnly(sRules, true);
    EXPECT_EQ(NumberOf([&] { Man().ChangeRules(Level(L"Pop", 1), Artist(30)); }), error::PathFileAccess);
    EXPECT_EQ(State(), sBefore);
    EXPECT_EQ(Refused(&clsSchedMan::Undo),
              L"Could not undo the artist separation of Pop 1; nothing was changed: " + StandardText(75) +
                  L" The next undo passes it over.");
    EXPECT_EQ(State(), sBefore);
    EXPECT_EQ(boxes, Boxes());
    EXPECT_EQ(Man().Undo(), L"Undone: artist separation of Pop 1 (it could not be done)");
    EXPECT_EQ(State(), sBefore);
    EXPECT_FALSE(Man().CanUndo() || Man().CanRedo());
    cPorts.cFiles.SetReadOnly(sRules, false);
    Level(L"Pop", 1)->Rules()->SetTitleSepMins(5);
    EXPECT_EQ(ArtistOf(L"Pop", 1), 20) << "what failed is not saved later";
}

TEST_F(SettingChangesTest, RulesThatCannotBeReadAreNotChanged)
{
    Man().ChangeRules(Level(L"Pop", 1), Artist(20));
    const std::string saved = cPorts.cFiles.Get(sRules);
    cPorts.cFiles.SetUnreadable(sRules, error::PermissionDenied);
    cLib.Restart();
    for (const std::int32_t lNumber : {NumberOf([&] { Man().ChangeRules(Level(L"Pop", 1), Artist(30)); }),
                                       NumberOf([&] { Man().Undo(); })})
        EXPECT_EQ(lNumber, error::PathFileAccess);
    cPorts.cFiles.SetUnreadable(sRules, 0);
    EXPECT_EQ(cPorts.cFiles.Get(sRules), saved);
    cPorts.cClock.Advance(1'000);
    EXPECT_EQ(Man().Undo(), L"Undone: artist separation of Pop 1");
    EXPECT_EQ(ArtistOf(L"Pop", 1), clsCatRules::lNotSet);
}

TEST_F(SettingChangesTest, OneInsideAChangeOfCutsIsAStepBeforeIt)
{
    const std::wstring sBefore = State();
    CutOf(L"b")->OnCall = [&](std::string_view sMember) {
        if (sMember == "RemoveCategoryName")
            Man().SetFairRotation(true);
    };
    Remove({L"a", L"b"}, L"Rock");
    CutOf(L"b")->OnCall = nullptr;
    EXPECT_EQ(Man().Undo(), L"Undone: removal of 2 cuts from Rock 1");
    EXPECT_TRUE(Man().Options().bFairRotation);
    EXPECT_EQ(Man().Undo(), L"Undone: fair rotation");
    EXPECT_EQ(State(), sBefore);
}

TEST_F(SettingChangesTest, ARenamedCategoryKeepsItsSteps)
{
    Man().ChangeRules(Level(L"Pop", 1), Artist(20));
    EXPECT_TRUE(Man().RenameMainCat(L"Pop", L"Folk"));
    Man().ChangeRules(Level(L"Folk", 1), Artist(30));
    for (const wchar_t* sStep :
         {L"artist separation of Folk 1", L"renaming of Pop to Folk", L"artist separation of Pop 1"})
        EXPECT_EQ(Man().Undo(), std::wstring(L"Undone: ") + sStep);
    EXPECT_EQ(ArtistOf(L"Pop", 1), clsCatRules::lNotSet);
}

} // namespace
} // namespace ravlo::test
