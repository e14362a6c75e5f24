// SPDX-License-Identifier: MIT
#pragma once

#include "LibraryFakes.h"
#include "scheduler/SchedulerWindows.h"

#include <gtest/gtest.h>

namespace ravlo::test
{

// Windows of a manager, of which only the category window does something.
class CategoryWindows final : public SchedulerWindows
{
public:
    explicit CategoryWindows(clsSchedMan& cSchedMan) : m_cSchedMan(cSchedMan)
    {
        m_cSchedMan.SetWindows(this);
    }
    ~CategoryWindows() override { m_cSchedMan.SetWindows(nullptr); }
    CategoryWindows(const CategoryWindows&) = delete;
    CategoryWindows& operator=(const CategoryWindows&) = delete;

    std::function<void(CategoryRequest&)> OnCategory;
    std::int32_t lAnswer = lNotChosen;
    bool LibraryExists() const override { return false; }
    bool LibraryShowing() const override { return false; }
    void ReloadLibrary() override {}
    void RefreshLibrary() override {}
    void ShowLibrary() override {}
    std::int32_t ShowCategory(CategoryRequest& request) override
    {
        OnCategory(request);
        return lAnswer;
    }

private:
    clsSchedMan& m_cSchedMan;
};

// Rock has the levels 1 (a, b, c) and 2 (d), Jazz the level 1 (c, e); f is in no category.
inline void Fill(ScreenLibrary& library)
{
    library.Add(L"a", L"Rock", 1);
    library.Add(L"b", L"Rock", 1);
    library.Add(L"c", L"Rock/Jazz", 1);
    library.Add(L"d", L"Rock", 2);
    library.Add(L"e", L"Jazz", 1);
    library.Add(L"f", L"", 1);
}

// The window before it is shown.
class NewLibraryTest : public ScreenLibraryTest
{
protected:
    NewLibraryTest() { Fill(*this); }

    void Do(LibraryCommand eCommand) { cForm.Do(eCommand); }
    void Tick(const std::wstring& sName, std::int32_t lLevel)
    {
        cForm.Panes().NodeCheck(Node(sName, lLevel), true);
    }
    Keys Ticked() const
    {
        Keys colKeys;
        for (const CategoryTreePresenter::Node lNode : Tree().Checked())
            colKeys.push_back(Tree().At(lNode).sKey);
        return colKeys;
    }
    void AddLevel(const std::wstring& sName, std::int32_t lLevel)
    {
        MainCat(sName)->AddSubCat(std::make_shared<clsCat>(cLibrary.cMod, sName, lLevel));
    }
    void CreateMainCat(std::wstring sName) { Man().CreateMainCat(sName); }
    void ForgetSifs()
    {
        for (const wchar_t* sName : {L"Rock", L"Jazz"})
            if (SifSaved(sName))
                cPorts.cFiles.Delete(SifPath(sName));
    }
    void ExpectIdle()
    {
        EXPECT_FALSE(cView.Busy());
        EXPECT_FALSE(cView.lBarMax);
        Do(LibraryCommand::mnuHelp);
        EXPECT_EQ(Said().back(), L"Help") << "nothing runs any more";
    }
};

// The window shows all audio.
class frmUILibTest : public NewLibraryTest
{
protected:
    frmUILibTest() { Show(); }
};

// Rock 1 is shown.
class ShownLevelTest : public frmUILibTest
{
protected:
    ShownLevelTest() { ShowNode(L"Rock", 1); }
};

} // namespace ravlo::test
