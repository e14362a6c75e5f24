// SPDX-License-Identifier: MIT
// Many changes as one on the disk: the embedded database's own side of it, and what the scheduler makes of a
// host's.
#include "com/BoxAnswerer.h"
#include "com/Station.h"

namespace ravlo
{

namespace
{

using Texts = std::vector<std::wstring>;

class BatchTest : public ComStationTest
{
protected:
    ComPtr<IBatchedChanges> Changes() { return m_cDataBase.As<IBatchedChanges>(); }
    void Rename(const ComPtr<_clsCut>& cCut, const wchar_t* sTitle)
    {
        EXPECT_EQ(cCut->put_Title(Bstr(sTitle).Get()), S_OK);
    }
    // What another program that opens the file finds.
    Texts TitlesOnDisk()
    {
        const auto cOther = Create<_clsDataBase>(CLSID_clsDataBase);
        EXPECT_EQ(cOther->Open(Bstr((Folder() / L"station.db").wstring()).Get()), S_OK);
        ComPtr<_clsCollection> colCuts;
        EXPECT_EQ(cOther->get_Cuts(colCuts.Receive()), S_OK);
        const Texts colTitles = Titles(colCuts.Get());
        EXPECT_EQ(cOther->Close(), S_OK);
        return colTitles;
    }
};

TEST_F(BatchTest, ChangesComeToTheDiskTogether)
{
    const auto cFirst = AddCut(L"First", L"Rock", 1);
    const auto cSecond = AddCut(L"Second", L"Rock", 1);
    const auto cChanges = Changes();
    ASSERT_TRUE(cChanges);
    ASSERT_EQ(cChanges->BeginBatch(), S_OK);
    Rename(cFirst, L"One");
    Rename(cSecond, L"Two");
    EXPECT_EQ(TitlesOnDisk(), (Texts{L"First", L"Second"}));
    ASSERT_EQ(cChanges->CommitBatch(), S_OK);
    EXPECT_EQ(TitlesOnDisk(), (Texts{L"One", L"Two"}));
}

TEST_F(BatchTest, ARollbackUndoesThemOnTheDiskAndInTheCuts)
{
    const auto cCut = AddCut(L"First", L"Rock", 1);
    ASSERT_EQ(Changes()->BeginBatch(), S_OK);
    Rename(cCut, L"One");
    ASSERT_EQ(Changes()->RollbackBatch(), S_OK);
    EXPECT_EQ(Get(cCut, &_clsCut::get_Title), L"First");
    EXPECT_EQ(TitlesOnDisk(), Texts{L"First"});
}

TEST_F(BatchTest, BatchesNest)
{
    const auto cCut = AddCut(L"First", L"Rock", 1);
    ASSERT_EQ(Changes()->BeginBatch(), S_OK);
    Rename(cCut, L"Outer");
    ASSERT_EQ(Changes()->BeginBatch(), S_OK);
    Rename(cCut, L"Inner");
    ASSERT_EQ(Changes()->RollbackBatch(), S_OK);
    EXPECT_EQ(Get(cCut, &_clsCut::get_Title), L"Outer");
    ASSERT_EQ(Changes()->CommitBatch(), S_OK);
    EXPECT_EQ(TitlesOnDisk(), Texts{L"Outer"});
}

TEST_F(BatchTest, WithoutABatchThereIsNothingToEnd)
{
    for (const auto end : {&IBatchedChanges::CommitBatch, &IBatchedChanges::RollbackBatch})
    {
        EXPECT_EQ((Changes().Get()->*end)(), ErrorResult(5));
        const ErrorText text = TakeErrorInfo();
        EXPECT_EQ(text.sDescription, L"No batch of changes was begun.");
        EXPECT_EQ(text.sSource, L"RavloBase.clsDataBase");
    }
    ASSERT_EQ(m_cDataBase->Close(), S_OK);
    EXPECT_EQ(Changes()->BeginBatch(), ErrorResult(91));
    EXPECT_EQ(TakeErrorInfo().sDescription, L"The database is not open.");
}

TEST_F(BatchTest, ClosingAndLettingGoUndoWhatIsOpen)
{
    const auto cCut = AddCut(L"First", L"Rock", 1);
    ASSERT_EQ(Changes()->BeginBatch(), S_OK);
    Rename(cCut, L"One");
    ASSERT_EQ(m_cDataBase->Close(), S_OK);
    EXPECT_EQ(Changes()->CommitBatch(), ErrorResult(5));
    EXPECT_EQ(TitlesOnDisk(), Texts{L"First"});

    const Bstr sFile{(Folder() / L"station.db").wstring()};
    ASSERT_EQ(m_cDataBase->Open(sFile.Get()), S_OK);
    const auto cAgain = Get(m_cDataBase, &_clsDataBase::CutByKey, L"C:\\First.mp3");
    ASSERT_EQ(Changes()->BeginBatch(), S_OK);
    Rename(cAgain, L"One");
    m_cDataBase = nullptr;
    EXPECT_EQ(TitlesOnDisk(), Texts{L"First"});
}

TEST_F(BatchTest, ItIsAPartOfItsDatabase)
{
    const auto cChanges = Changes();
    EXPECT_TRUE(IsSame(cChanges, m_cDataBase));
    EXPECT_EQ(cChanges.As<ISupportErrorInfo>()->InterfaceSupportsErrorInfo(IID_IBatchedChanges), S_OK);
    EXPECT_EQ(cChanges.As<ISupportErrorInfo>()->InterfaceSupportsErrorInfo(IID__clsDataBase), S_OK);
    EXPECT_EQ(cChanges.As<ISupportErrorInfo>()->InterfaceSupportsErrorInfo(IID__clsCut), S_FALSE);
    m_cDataBase = nullptr;
    EXPECT_TRUE(cChanges.As<_clsDataBase>()) << "one reference keeps the whole";
}

// A scheduler over a host's database, and forty cuts of it that move from Rock 1 to Rock 2.
class HostBatchTest : public ComTest
{
protected:
    HostBatchTest()
    {
        for (int i = 1; i <= 40; ++i)
            m_cDataBase->AddCut(L"Song" + std::to_wstring(i), L"Rock", 1);
        m_cDataBase->AddCut(L"Other", L"Rock", 2);
    }
    ComPtr<_clsCat> Level(const wchar_t* sLevel)
    {
        const auto colMainCats = Get(m_cMan, &_clsSchedMan::get_colMainCats);
        Variant cItem;
        EXPECT_EQ(colMainCats->get_Item(Text(L"Rock\t0"), &cItem), S_OK);
        ComPtr<_clsCollection> colLevels;
        EXPECT_EQ(ObjectIn<_clsCat>(cItem)->get_SubCats(colLevels.Receive()), S_OK);
        cItem = Variant();
        EXPECT_EQ(colLevels->get_Item(Text(sLevel), &cItem), S_OK);
        return ObjectIn<_clsCat>(cItem);
    }
    long CutsIn(const wchar_t* sLevel) { return Get(Level(sLevel), &_clsCat::get_TotalCuts); }
    void MoveAll()
    {
        ASSERT_EQ(m_cMan->PopulateFromDataBase(m_cDataBase.Get(), Bstr(Folder().wstring()).Get()), S_OK);
        const auto colCuts = Get(Level(L"1"), &_clsCat::get_SchedCuts);
        const auto colFrom = CollectionOf({Object(Level(L"1"))});
        ASSERT_EQ(
            m_cMan->DoMassCatChange(::eMoveHere, colFrom.Get(), Level(L"2").Get(), colCuts.Get(), nullptr),
            S_OK);
    }

    ComPtr<HostDataBaseObject> m_cDataBase = NewObject<HostDataBaseObject>();
    ComPtr<_clsSchedMan> m_cMan = Create<_clsSchedMan>(CLSID_clsSchedMan);
};

TEST_F(HostBatchTest, AMassChangeIsCommittedOnce)
{
    m_cDataBase->m_batches.emplace();
    MoveAll();
    EXPECT_EQ(m_cDataBase->m_batches->m_colCalls, (Texts{L"begin", L"commit"}));
    EXPECT_EQ(CutsIn(L"2"), 41);
}

TEST_F(HostBatchTest, AHostWithoutBatchesWorksAsEver)
{
    MoveAll();
    EXPECT_EQ(CutsIn(L"2"), 41);
}

TEST_F(HostBatchTest, ChangesAreMadeWithoutABatchThatCannotBegin)
{
    m_cDataBase->m_batches.emplace().m_hBegin = ErrorResult(70);
    BoxAnswerer cAnswerer;
    MoveAll();
    const Texts colSaid = cAnswerer.Stop();
    ASSERT_EQ(colSaid.size(), 1u);
    EXPECT_TRUE(colSaid[0].starts_with(L"Error in DoMassCatChange [cSchedMan]: 70 ")) << colSaid[0].size();
    EXPECT_EQ(m_cDataBase->m_batches->m_colCalls, Texts{L"begin"}) << "what was not begun is not ended";
    EXPECT_EQ(CutsIn(L"2"), 41);
}

TEST_F(HostBatchTest, AFailedCommitLeavesTheCutsAsTheHostRestoredThem)
{
    HostBatches& batches = m_cDataBase->m_batches.emplace();
    batches.m_hCommit = ErrorResult(61);
    batches.m_onCommit = [this] {
        for (const auto& [sKey, cItem] : m_cDataBase->m_colCuts->m_colItems)
            if (sKey != L"C:\\Other.mp3")
                static_cast<HostCutObject*>(cItem.pdispVal)->m_lLevel = 1; // as the host's disk has it
    };
    BoxAnswerer cAnswerer;
    MoveAll();
    const Texts colSaid = cAnswerer.Stop();
    ASSERT_EQ(colSaid.size(), 1u);
    EXPECT_TRUE(colSaid[0].starts_with(L"Error in DoMassCatChange [cSchedMan]: 61 "));
    EXPECT_EQ(batches.m_colCalls, (Texts{L"begin", L"commit"})) << "a failed commit is over: no rollback";
    EXPECT_EQ(CutsIn(L"1"), 40);
    EXPECT_EQ(CutsIn(L"2"), 1);
}

} // namespace

} // namespace ravlo
