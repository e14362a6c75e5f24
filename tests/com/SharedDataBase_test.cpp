// SPDX-License-Identifier: MIT
// The embedded database beside another program on its file, and plays that it gathers.
#include "com/Station.h"

namespace ravlo
{

namespace
{

using Texts = std::vector<std::wstring>;

class SharedDataBaseTest : public ComStationTest
{
protected:
    SharedDataBaseTest()
    {
        EXPECT_EQ(m_cOther->Open(Bstr((Folder() / L"station.db").wstring()).Get()), S_OK);
    }
    ~SharedDataBaseTest() override { m_cOther->Close(); }

    ComPtr<ISharedDataBase> Shared() { return m_cDataBase.As<ISharedDataBase>(); }
    ComPtr<IGatheredPlays> Plays() { return m_cDataBase.As<IGatheredPlays>(); }
    // What the other program does.
    void AddInOther(const std::wstring& sTitle)
    {
        LONG lAdded = 0;
        EXPECT_EQ(m_cOther->AddCuts(CollectionOf({Object(NewCut(sTitle, L"Rock", 1))}).Get(), &lAdded), S_OK);
        EXPECT_EQ(lAdded, 1);
    }
    // The last play of a cut as the file has it.
    DATE LastPlayedOnDisk(const wchar_t* sKey)
    {
        const auto cReader = Create<_clsDataBase>(CLSID_clsDataBase);
        EXPECT_EQ(cReader->Open(Bstr((Folder() / L"station.db").wstring()).Get()), S_OK);
        ComPtr<_clsCut> cCut;
        EXPECT_EQ(cReader->CutByKey(Bstr(sKey).Get(), cCut.Receive()), S_OK);
        DATE dtLast = -1;
        EXPECT_EQ(cCut->get_LastPlayed(&dtLast), S_OK);
        EXPECT_EQ(cReader->Close(), S_OK);
        return dtLast;
    }

    ComPtr<_clsDataBase> m_cOther = Create<_clsDataBase>(CLSID_clsDataBase);
};

TEST_F(SharedDataBaseTest, AnOpenManagerFollowsAnotherProgramsChanges)
{
    AddCut(L"First", L"Rock", 1);
    Populate();
    AddInOther(L"Second");
    EXPECT_EQ(TitlesIn(Level(L"Rock", L"1")), Texts{L"First"});
    ASSERT_EQ(Shared()->TakeInChanges(), S_OK);
    EXPECT_EQ(TitlesIn(Level(L"Rock", L"1")), (Texts{L"First", L"Second"}));
}

TEST_F(SharedDataBaseTest, APopulationSeesAnotherProgramsChanges)
{
    AddCut(L"First", L"Rock", 1);
    Populate();
    AddInOther(L"Second");
    Populate();
    EXPECT_EQ(TitlesIn(Level(L"Rock", L"1")), (Texts{L"First", L"Second"}));
    const auto cGone = Get(m_cOther, &_clsDataBase::CutByKey, L"C:\\Second.mp3");
    Get(m_cOther, &_clsDataBase::RemoveCuts, CollectionOf({Object(cGone)}));
    Populate();
    EXPECT_EQ(TitlesIn(Level(L"Rock", L"1")), Texts{L"First"});
}

TEST_F(SharedDataBaseTest, GatheredPlaysReachTheDiskWhenTheyAreWritten)
{
    const auto cCut = AddCut(L"First", L"Rock", 1);
    ASSERT_EQ(Plays()->BeginGathering(), S_OK);
    ASSERT_EQ(cCut->put_LastPlayed(45000), S_OK);
    EXPECT_EQ(LastPlayedOnDisk(L"C:\\First.mp3"), 0);
    ASSERT_EQ(Plays()->WriteGathered(), S_OK);
    EXPECT_EQ(LastPlayedOnDisk(L"C:\\First.mp3"), 45000);
    ASSERT_EQ(cCut->put_LastPlayed(45001), S_OK);
    ASSERT_EQ(Plays()->EndGathering(), S_OK);
    ASSERT_EQ(cCut->put_LastPlayed(45002), S_OK);
    EXPECT_EQ(LastPlayedOnDisk(L"C:\\First.mp3"), 45002);
}

TEST_F(SharedDataBaseTest, WhatAnotherProgramLocksStaysGathered)
{
    const auto cCut = AddCut(L"First", L"Rock", 1);
    ASSERT_EQ(m_cOther.As<IBatchedChanges>()->BeginBatch(), S_OK);
    ASSERT_EQ(Plays()->BeginGathering(), S_OK);
    ASSERT_EQ(cCut->put_LastPlayed(45000), S_OK);
    EXPECT_EQ(Plays()->WriteGathered(), ErrorResult(70));
    EXPECT_NE(TakeErrorInfo().sDescription.find(L"is being written to by another program."),
              std::wstring::npos);
    EXPECT_EQ(Plays()->EndGathering(), ErrorResult(70));
    ASSERT_EQ(m_cOther.As<IBatchedChanges>()->RollbackBatch(), S_OK);
    EXPECT_EQ(Plays()->EndGathering(), S_OK);
    EXPECT_EQ(LastPlayedOnDisk(L"C:\\First.mp3"), 45000);
}

TEST_F(SharedDataBaseTest, BothArePartsOfTheirDatabase)
{
    for (const IID& iid : {IID_ISharedDataBase, IID_IGatheredPlays})
    {
        EXPECT_EQ(m_cDataBase.As<ISupportErrorInfo>()->InterfaceSupportsErrorInfo(iid), S_OK);
    }
    EXPECT_TRUE(IsSame(Shared(), m_cDataBase));
    EXPECT_TRUE(IsSame(Plays(), m_cDataBase));
    ASSERT_EQ(m_cDataBase->Close(), S_OK);
    EXPECT_EQ(Shared()->TakeInChanges(), ErrorResult(91));
    EXPECT_EQ(Plays()->BeginGathering(), ErrorResult(91));
    EXPECT_EQ(Plays()->WriteGathered(), ErrorResult(91));
}

} // namespace

} // namespace ravlo
