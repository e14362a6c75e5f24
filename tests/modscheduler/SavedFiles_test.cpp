// SPDX-License-Identifier: MIT
#include "modscheduler/SavedFiles.h"

#include "base/RuntimeError.h"
#include "platform/memory/FailingFiles.h"
#include "platform/memory/MemoryFiles.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace ravlo::test
{
namespace
{

using State = SavedFiles::State;
using Result = SavedFiles::Result;
using Unseen = SavedFiles::Unseen;

const std::wstring sPath = L"C:\\Rock.sif";
const std::wstring sBak = sPath + L".bak";
const SavedFiles::Author cOne = &sPath; // any two addresses
const SavedFiles::Author cTwo = &sBak;

class SavedFilesTest : public testing::Test
{
protected:
    Result Save(const std::string& bytes, SavedFiles::Author cAuthor = cOne,
                Unseen eUnseen = Unseen::KeepAside)
    {
        return cSaved.Replace(sPath, cSaved.Begin(), bytes, cAuthor, eUnseen);
    }
    std::optional<std::string> Bytes(const std::wstring& sFile) const
    {
        if (!cDisk.FileExists(sFile))
            return std::nullopt;
        return cDisk.Get(sFile);
    }

    MemoryFiles cDisk;
    SavedFiles cSaved{cDisk};
};

TEST_F(SavedFilesTest, WhatWasReadIsReplacedWithoutACopy)
{
    cDisk.Put(sPath, "old");
    EXPECT_EQ(cSaved.StateOf(sPath, cOne), State::NotSeen);
    EXPECT_EQ(cSaved.Read(L"c:\\ROCK.SIF", cOne), "old");
    EXPECT_EQ(cSaved.StateOf(sPath, cOne), State::Known) << "in any case of the name";
    EXPECT_EQ(Save("new"), Result::Written);
    EXPECT_EQ(Bytes(sPath), "new");
    EXPECT_EQ(Bytes(sBak), std::nullopt);
}

TEST_F(SavedFilesTest, WhatWasNotUnderstoodIsKeptOnce)
{
    cDisk.Put(sPath, "odd");
    cSaved.Read(sPath, cOne);
    cSaved.NotUnderstood(sPath, cOne);
    EXPECT_EQ(cSaved.StateOf(sPath, cOne), State::NotUnderstood);
    EXPECT_EQ(Save("new"), Result::Written);
    EXPECT_EQ(Bytes(sBak), "odd");
    EXPECT_EQ(Save("newer"), Result::Written);
    EXPECT_EQ(Bytes(sBak), "odd");
    EXPECT_EQ(Bytes(sBak + L"2"), std::nullopt);
    cSaved.NotUnderstood(sPath, cOne);
    cSaved.Delete(sPath, cOne);
    EXPECT_EQ(cSaved.StateOf(sPath, cOne), State::Absent);
}

TEST_F(SavedFilesTest, WhatNobodyHasSeenIsKeptOrLeftAlone)
{
    cDisk.Put(sPath, "theirs");
    EXPECT_EQ(Save("ours", cOne, Unseen::LeaveAlone), Result::LeftAlone);
    EXPECT_EQ(Bytes(sPath), "theirs");
    EXPECT_EQ(Save("ours"), Result::Written);
    EXPECT_EQ(Bytes(sPath), "ours");
    EXPECT_EQ(Bytes(sBak), "theirs");
    EXPECT_EQ(Save("again", cOne, Unseen::LeaveAlone), Result::Written) << "it is our own now";
}

TEST_F(SavedFilesTest, AFileCreatedByOthersSinceIsNotSeen)
{
    EXPECT_EQ(cSaved.Read(sPath, cOne), std::nullopt);
    EXPECT_EQ(cSaved.StateOf(sPath, cOne), State::Absent);
    cDisk.Put(sPath, "theirs");
    EXPECT_EQ(Save("ours", cOne, Unseen::LeaveAlone), Result::LeftAlone);
    EXPECT_EQ(Save("ours"), Result::Written);
    EXPECT_EQ(Bytes(sBak), "theirs");
}

TEST_F(SavedFilesTest, AFileThatCannotBeCheckedIsNotAbsent)
{
    cDisk.Put(sPath, "old");
    cDisk.SetAway(L"C:", error::PathNotFound);
    EXPECT_THROW(cSaved.Read(sPath, cOne), RuntimeError);
    EXPECT_THROW(cSaved.Peek(sPath), RuntimeError);
    EXPECT_EQ(cSaved.StateOf(sPath, cOne), State::NotSeen);
    EXPECT_THROW(Save("new"), RuntimeError);
    cDisk.SetAway(L"C:", 0);
    EXPECT_EQ(Save("new"), Result::Written);
    EXPECT_EQ(Bytes(sBak), "old");
}

TEST_F(SavedFilesTest, EachAuthorHasItsOwnReading)
{
    cDisk.Put(sPath, "old");
    cDisk.SetUnreadable(sPath, error::PermissionDenied);
    EXPECT_THROW(cSaved.Read(sPath, cOne), RuntimeError);
    cDisk.SetUnreadable(sPath, 0);
    EXPECT_EQ(cSaved.Read(sPath, cTwo), "old");
    EXPECT_EQ(cSaved.Peek(sPath), "old");
    EXPECT_EQ(cSaved.StateOf(sPath, cTwo), State::Known);
    EXPECT_EQ(cSaved.StateOf(sPath, cOne), State::NotSeen);
    EXPECT_EQ(Save("two's", cTwo), Result::Written);
    EXPECT_EQ(Bytes(sBak), std::nullopt);
    EXPECT_EQ(Save("one's", cOne), Result::Written);
    EXPECT_EQ(Bytes(sBak), "two's") << "of which the first author knows nothing";
}

TEST_F(SavedFilesTest, AnAuthorThatHasEndedLeavesNoMark)
{
    cDisk.Put(sPath, "odd");
    cSaved.Read(sPath, cOne);
    cSaved.NotUnderstood(sPath, cOne);
    cSaved.Forget(cOne);
    EXPECT_EQ(cSaved.StateOf(sPath, cOne), State::Known) << "the next one at that address";
}

TEST_F(SavedFilesTest, CopiesAreNumberedAndTheLastOneIsReplaced)
{
    for (int lIncident = 1; lIncident <= 11; ++lIncident)
    {
        cDisk.Put(sPath, "odd " + std::to_string(lIncident));
        cSaved.NotUnderstood(sPath, cOne);
        EXPECT_EQ(Save("new"), Result::Written);
    }
    EXPECT_EQ(Bytes(sBak), "odd 1");
    for (int lCopy = 2; lCopy < SavedFiles::lMostCopies; ++lCopy)
        EXPECT_EQ(Bytes(sBak + std::to_wstring(lCopy)), "odd " + std::to_string(lCopy));
    EXPECT_EQ(Bytes(sBak + L"9"), "odd 11");
    EXPECT_EQ(Bytes(sBak + L"10"), std::nullopt);
}

TEST_F(SavedFilesTest, WhatCannotBeReadIsPutAwayWholeOrReturns)
{
    // Nothing but the file itself is written for what cannot be read.
    for (const int lGood : {1, 2, 3, 4})
    {
        MemoryFiles cFiles{{sPath, "old"}};
        cFiles.SetUnreadable(sPath, error::DeviceIo);
        FailingFiles cFailing(cFiles, lGood);
        SavedFiles cKeeper(cFailing);
        EXPECT_THROW(cKeeper.Replace(sPath, cKeeper.Begin(), "new", cOne), RuntimeError);
        EXPECT_EQ(cFiles.Get(sPath), "old");
        EXPECT_FALSE(cFiles.FileExists(sBak));
        EXPECT_EQ(cKeeper.Replace(sPath, cKeeper.Begin(), "new", cOne), Result::Written);
        EXPECT_EQ(cFiles.Get(sBak), "old");
        EXPECT_EQ(cFiles.Get(sPath), "new");
    }
}

TEST_F(SavedFilesTest, OlderContentNeverReplacesNewer)
{
    const SavedFiles::Stamp lOlder = cSaved.Begin();
    const SavedFiles::Stamp lNewer = cSaved.Begin();
    EXPECT_EQ(cSaved.Replace(sPath, lNewer, "newer", cOne), Result::Written);
    EXPECT_EQ(cSaved.NewestOf(sPath), lNewer);
    EXPECT_EQ(cSaved.Replace(sPath, lOlder, "older", cTwo), Result::Overtaken);
    EXPECT_EQ(Bytes(sPath), "newer");
}

TEST_F(SavedFilesTest, ADeletedFileIsNotBroughtBackByAnOlderSave)
{
    cDisk.Put(sPath, "old");
    const SavedFiles::Stamp lOlder = cSaved.Begin();
    cSaved.Delete(sPath, cOne);
    EXPECT_EQ(cSaved.Replace(sPath, lOlder, "older", cOne), Result::Overtaken);
    EXPECT_EQ(Bytes(sPath), std::nullopt);
    EXPECT_EQ(cSaved.StateOf(sPath, cOne), State::Absent);
    EXPECT_EQ(Save("new"), Result::Written);
    EXPECT_NO_THROW(cSaved.Delete(L"C:\\none.sif", cOne));
    cDisk.SetAway(L"C:", error::PathNotFound);
    EXPECT_THROW(cSaved.Delete(sPath, cOne), RuntimeError);
}

TEST_F(SavedFilesTest, ASaveWithoutPatienceTriesALockedFileOnce)
{
    cDisk.Put(sPath, "old");
    cSaved.Read(sPath, cOne);
    cDisk.SetLocked(sPath, -1);
    const int lBefore = cDisk.AttemptsOn(sPath);
    EXPECT_THROW(cSaved.Replace(sPath, cSaved.Begin(), "new", cOne, Unseen::KeepAside, Patience::None),
                 RuntimeError);
    EXPECT_EQ(cDisk.AttemptsOn(sPath) - lBefore, 1);
    cDisk.SetLocked(sPath, 2);
    EXPECT_EQ(Save("new"), Result::Written);
    EXPECT_EQ(Bytes(sPath), "new");
}

// Reading, then saving over what was read in full, in part, or not at all.
TEST_F(SavedFilesTest, AnyFailingStepLeavesOldOrNewAndLosesNothing)
{
    for (const State eState : {State::Known, State::NotUnderstood, State::NotSeen})
        for (const bool bStaysBroken : {false, true})
            for (int lGood = 0;; ++lGood)
            {
                MemoryFiles cFiles{{sPath, "old"}};
                FailingFiles cFailing(cFiles, lGood);
                cFailing.bCountReads = cFailing.bCountLooks = true;
                cFailing.bStaysBroken = bStaysBroken;
                SavedFiles cKeeper(cFailing);
                bool bRead = false;
                bool bWritten = false;
                try
                {
                    if (eState != State::NotSeen)
                        bRead = cKeeper.Read(sPath, cOne) == "old" && eState == State::Known;
                    if (eState == State::NotUnderstood)
                        cKeeper.NotUnderstood(sPath, cOne);
                }
                catch (const RuntimeError&)
                {
                    bRead = false; // the station works without what it could not read
                }
                try
                {
                    bWritten = cKeeper.Replace(sPath, cKeeper.Begin(), "new", cOne) == Result::Written;
                }
                catch (const RuntimeError&)
                {
                    EXPECT_TRUE(cFailing.bFailed);
                }
                const bool bOldInPlace = cFiles.FileExists(sPath) && cFiles.Get(sPath) == "old";
                const bool bOldKept = cFiles.FileExists(sBak) && cFiles.Get(sBak) == "old";
                EXPECT_TRUE(bOldInPlace || bOldKept || (bRead && bWritten));
                EXPECT_EQ(bWritten, cFiles.FileExists(sPath) && cFiles.Get(sPath) == "new");
                if (!cFailing.bFailed)
                    break;
                cFailing.bStaysBroken = false;
                EXPECT_EQ(cKeeper.Replace(sPath, cKeeper.Begin(), "newer", cOne), Result::Written);
                EXPECT_EQ(cFiles.Get(sPath), "newer");
                EXPECT_EQ(cFiles.FileExists(sBak), !bRead) << "kept once, and only what was not read";
            }
}

} // namespace
} // namespace ravlo::test
