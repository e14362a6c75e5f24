// SPDX-License-Identifier: MIT
// The embedded database as hosts see it, alone and next to another program on its file.
#include "com/Station.h"
#include "comkit/RecordedPlays.h"

#include <algorithm>
#include <fstream>

namespace ravlo
{
namespace
{

class DataBaseTest : public ComStationTest
{
protected:
    HRESULT AddItems(const std::vector<Variant>& colItems)
    {
        LONG lAdded = 0;
        return Try(m_cDataBase, &_clsDataBase::AddCuts, CollectionOf(colItems), &lAdded);
    }
    // A database object of another program on the same file.
    ComPtr<_clsDataBase> Other() const
    {
        const auto cOther = Create<_clsDataBase>(CLSID_clsDataBase);
        Do(cOther, &_clsDataBase::Open, File());
        return cOther;
    }
    Texts TitlesOnDisk() const { return Titles(Get(Other(), &_clsDataBase::get_Cuts)); }
};

TEST_F(DataBaseTest, ItIsOpenedOnceAndClosedAtWill)
{
    EXPECT_EQ(Get(m_cDataBase, &_clsDataBase::get_FileName), File());
    EXPECT_EQ(Try(m_cDataBase, &_clsDataBase::Open, File()), ErrorResult(55));
    for (int i = 0; i < 2; ++i)
        Do(m_cDataBase, &_clsDataBase::Close);
    ComPtr<_clsCollection> colCuts;
    EXPECT_EQ(m_cDataBase->get_Cuts(colCuts.Receive()), ErrorResult(91));
    EXPECT_FALSE(colCuts);
}

TEST_F(DataBaseTest, CutsAreAlwaysTheSameObjectsInTheSameOrder)
{
    const auto cFirst = AddCut(L"First");
    const auto cSecond = AddCut(L"Second");
    EXPECT_EQ(Titles(AllCuts()), (Texts{L"First", L"Second"}));
    EXPECT_TRUE(IsSame(AllCuts(), AllCuts()));
    EXPECT_TRUE(IsSame(Get(m_cDataBase, &_clsDataBase::CutByKey, L"c:\\SECOND.MP3"), cSecond))
        << "a new cut that is added becomes the database's own object";
    EXPECT_TRUE(
        IsSame(Get(m_cDataBase, &_clsDataBase::CutByArtistTitle, L"Artist of First", L"First"), cFirst));
    EXPECT_FALSE(Cut(L"nowhere"));
    EXPECT_TRUE(IsSame(ItemAt<_clsCut>(AllCuts(), Text(L"C:\\First.mp3")), cFirst));
}

TEST_F(DataBaseTest, TheListOfCutsChangesThroughTheDatabaseOnly)
{
    const auto cFirst = AddCut(L"First");
    EXPECT_EQ(AllCuts()->Add(Object(cFirst), Text(L"x"), Variant::Omitted(), Variant::Omitted()),
              ErrorResult(445));
    EXPECT_EQ(AllCuts()->Remove(Long(1)), ErrorResult(445));
    EXPECT_EQ(TakeErrorInfo().sDescription, L"Use AddCuts and RemoveCuts to change the database");
    EXPECT_EQ(Titles(AllCuts()), Texts{L"First"});
}

TEST_F(DataBaseTest, CutsAreTakenFromAnyCollectionAndOfAnyKind)
{
    const auto cHosts = NewObject<HostCutObject>(L"C:\\hosts.mp3");
    cHosts->m_sTitle = L"From the host";
    cHosts->FileIn(L"Rock");
    const auto colHosts = NewObject<HostCollection>();
    colHosts->m_colItems.emplace_back(L"", Object(cHosts));
    EXPECT_EQ(Get(m_cDataBase, &_clsDataBase::AddCuts, colHosts), 1);
    EXPECT_EQ(Titles(AllCuts()), Texts{L"From the host"});
    LONG lAdded = 0;
    EXPECT_EQ(m_cDataBase->AddCuts(nullptr, &lAdded), ErrorResult(91));
    EXPECT_EQ(m_cDataBase->AddCuts(m_cMan.Get(), &lAdded), ErrorResult(451));
    EXPECT_EQ(AddItems({Text(L"no cut")}), ErrorResult(13));
    EXPECT_EQ(AddItems({Object(NewCut(L"HOSTS"))}), ErrorResult(457)) << "the key exists";
    EXPECT_EQ(Try(m_cDataBase, &_clsDataBase::AddCuts, CollectionOf(NewCut(L"One")), nullptr), E_POINTER);
    EXPECT_EQ(Titles(AllCuts()), Texts{L"From the host"});
}

TEST_F(DataBaseTest, ItsEventsCarryCollectionsOfItsOwnCuts)
{
    const auto cSink = NewObject<Sink>(DIID___clsDataBase);
    std::vector<std::pair<DISPID, Texts>> colHeard;
    cSink->m_onEvent = [&](DISPID lEvent, DISPPARAMS& arguments) {
        if (lEvent <= 3)
            colHeard.emplace_back(lEvent, Titles(arguments.rgvarg[0].pdispVal));
    };
    Advise(PointOf(m_cDataBase, DIID___clsDataBase), cSink);
    const auto cCut = AddCut(L"First");
    Do(cCut, &_clsCut::put_Title, L"Renamed");
    EXPECT_EQ(Get(m_cDataBase, &_clsDataBase::ModifyCuts, CollectionOf(cCut)), 1);
    RemoveCut(cCut);
    EXPECT_EQ(colHeard, (decltype(colHeard){{1, {L"First"}}, {2, {L"Renamed"}}, {3, {L"Renamed"}}}));
}

TEST_F(DataBaseTest, ALibraryFileIsImported)
{
    const auto file = Folder() / L"library.csv";
    std::ofstream(file)
        << "path,artist,title,categories,level\nC:\\a.mp3,A,One,Rock,2\nC:\\b.mp3,B,Two,Rock/Pop,1\n";
    LONG lImported = 0;
    EXPECT_EQ(Get(m_cDataBase, &_clsDataBase::ImportCsv, file.wstring()), 2);
    EXPECT_EQ(Titles(AllCuts()), (Texts{L"One", L"Two"}));
    EXPECT_EQ(Try(m_cDataBase, &_clsDataBase::ImportCsv, L"C:\\nowhere.csv", &lImported), ErrorResult(53));
}

TEST_F(DataBaseTest, PlaysAreReportedAsCsv)
{
    const auto cCut = AddCut(L"First");
    Do(cCut, &_clsCut::put_LastPlayed, DATE{46000.5});
    Do(cCut, &_clsCut::put_Title, L"Renamed");
    EXPECT_EQ(Get(m_cDataBase, &_clsDataBase::PlaysCsv, DATE{46000}, DATE{46001}, L"artist"),
              L"artist,plays,duration,first,last\n"
              L"Artist of First,1,0:00:00,2025-12-09T12:00:00,2025-12-09T12:00:00\n");
    Bstr sReport;
    EXPECT_EQ(m_cDataBase->PlaysCsv(0, 1, Bstr(L"album").Get(), sReport.Receive()), ErrorResult(5));
}

TEST_F(DataBaseTest, ItsPlaysAreFoundByTheMembersName)
{
    const auto cCut = AddCut(L"First");
    for (const DATE dtPlayed : {45999.5, 46000.5, 46001.5})
        Do(cCut, &_clsCut::put_LastPlayed, dtPlayed);
    const auto sPlays = RecordedPlaysOf(*m_cDataBase.Get(), 46000, 46001);
    ASSERT_TRUE(sPlays);
    EXPECT_TRUE(
        sPlays->starts_with(L"start,artist,title,album,duration,key,categories,level\n2025-12-09T12:00:00,"));
    EXPECT_EQ(std::count(sPlays->begin(), sPlays->end(), L'\n'), 2);
    const auto cHosts = NewObject<HostDataBaseObject>();
    EXPECT_EQ(RecordedPlaysOf(*cHosts.Get(), 46000, 46001), std::nullopt) << "it has no such name";
    Do(m_cDataBase, &_clsDataBase::Close);
    EXPECT_THROW(RecordedPlaysOf(*m_cDataBase.Get(), 46000, 46001), RuntimeError);
}

TEST_F(DataBaseTest, TheKeyIsSetOnFreeCutsOnly)
{
    const auto cCut = AddCut(L"First");
    EXPECT_EQ(Try(cCut, &_clsCut::put_Key, L"C:\\other.mp3"), ErrorResult(70));
    const auto cCopy = Get(cCut, &_clsCut::CloneCut);
    EXPECT_EQ(Try(cCopy, &_clsCut::put_Key, L"C:\\other.mp3"), S_OK);
    EXPECT_EQ(Get(cCopy, &_clsCut::get_Path), L"C:\\other.mp3");
    EXPECT_EQ(Get(cCut, &_clsCut::get_Key), L"C:\\First.mp3");
    EXPECT_EQ(Get(cCopy, &_clsCut::get_ID), Get(cCut, &_clsCut::get_ID));
}

template <class Value>
using Properties = std::vector<
    std::pair<HRESULT (STDMETHODCALLTYPE _clsCut::*)(Value*), HRESULT (STDMETHODCALLTYPE _clsCut::*)(Value)>>;

TEST_F(DataBaseTest, EveryPropertyOfACutIsReadBackAsItWasSet)
{
    const auto cCut = NewCut(L"First");
    std::wstring sValue = L"value ";
    for (const auto& [get, put] : Properties<BSTR>{{&_clsCut::get_Key, &_clsCut::put_Key},
                                                   {&_clsCut::get_SecondaryKey, &_clsCut::put_SecondaryKey},
                                                   {&_clsCut::get_Path, &_clsCut::put_Path},
                                                   {&_clsCut::get_Artist, &_clsCut::put_Artist},
                                                   {&_clsCut::get_Title, &_clsCut::put_Title},
                                                   {&_clsCut::get_Album, &_clsCut::put_Album},
                                                   {&_clsCut::get_CategoryText, &_clsCut::put_CategoryText},
                                                   {&_clsCut::get_CategoryKey, &_clsCut::put_CategoryKey}})
    {
        sValue += L'\u00E4';
        Do(cCut, put, sValue);
        EXPECT_EQ(Get(cCut, get), sValue);
    }
    LONG lValue = 61000;
    for (const auto& [get, put] : Properties<LONG>{{&_clsCut::get_Year, &_clsCut::put_Year},
                                                   {&_clsCut::get_CatLevel, &_clsCut::put_CatLevel},
                                                   {&_clsCut::get_RunTimemS, &_clsCut::put_RunTimemS},
                                                   {&_clsCut::get_KindCode, &_clsCut::put_KindCode},
                                                   {&_clsCut::get_DurationmS, &_clsCut::put_DurationmS}})
    {
        lValue += 1000;
        Do(cCut, put, lValue);
        EXPECT_EQ(Get(cCut, get), lValue);
    }
    EXPECT_EQ(Get(cCut, &_clsCut::get_DurationText), L"1:06");
    for (const auto& [get, put] :
         Properties<VARIANT_BOOL>{{&_clsCut::get_Opener, &_clsCut::put_Opener},
                                  {&_clsCut::get_MustBeOpener, &_clsCut::put_MustBeOpener}})
    {
        EXPECT_FALSE(Get(cCut, get));
        Do(cCut, put, VARIANT_BOOL{1}); // any nonzero value is true
        EXPECT_TRUE(Get(cCut, get));
    }
    EXPECT_EQ(Get(cCut, &_clsCut::get_LastPlayed), 0);
    Do(cCut, &_clsCut::put_LastPlayed, 45000.75);
    EXPECT_EQ(Get(cCut, &_clsCut::get_LastPlayed), 45000.75);
    EXPECT_EQ(Get(cCut, &_clsCut::get_ID), 0);
}

TEST_F(DataBaseTest, TheCategoriesOfACutAreALiveCollectionOfNames)
{
    const auto cCut = AddCut(L"First", L"Rock/Pop");
    const auto colNames = Get(cCut, &_clsCut::get_Categories);
    const auto add = [&](const Variant& cName, const Variant& cKey = Variant::Omitted(),
                         const Variant& cBefore = Variant::Omitted()) {
        return colNames->Add(cName, cKey, cBefore, Variant::Omitted());
    };
    EXPECT_EQ(add(Text(L"Jazz"), Text(L"jazz")), S_OK);
    EXPECT_EQ(add(Text(L"Blues"), Variant::Omitted(), Text(L"pop")), S_OK);
    EXPECT_EQ(Get(cCut, &_clsCut::get_CategoryText), L"Rock/Blues/Pop/Jazz");
    EXPECT_EQ(add(Text(L"ROCK")), ErrorResult(457));
    EXPECT_EQ(add(Text(L"Soul"), Text(L"another key")), ErrorResult(5));
    EXPECT_EQ(add(Long(1)), ErrorResult(13));
    Do(colNames, &_clsCollection::Remove, Text(L"ROCK"));
    EXPECT_EQ(ItemsOf(colNames), (Texts{L"Blues", L"Pop", L"Jazz"}));
    Do(cCut, &_clsCut::put_CategoryText, L"Gold");
    EXPECT_EQ(ItemsOf(colNames), Texts{L"Gold"});
    EXPECT_TRUE(IsSame(Get(cCut, &_clsCut::get_Categories), colNames));
}

TEST_F(DataBaseTest, ACutAndAListOutliveTheDatabaseObject)
{
    const auto cCut = AddCut(L"First");
    const auto colCuts = AllCuts();
    Do(cCut, &_clsCut::put_Album, L"Album");
    m_cDataBase = nullptr;
    EXPECT_EQ(Get(cCut, &_clsCut::get_Title), L"First");
    EXPECT_EQ(Titles(colCuts), Texts{L"First"});
    const auto cStored = Get(Other(), &_clsDataBase::CutByKey, L"C:\\First.mp3");
    EXPECT_EQ(Get(cStored, &_clsCut::get_Album), L"Album") << "the change is in the file";
}

// ---- the parts of the database: batches, gathered plays, other programs

class DataBasePartsTest : public DataBaseTest
{
protected:
    DataBasePartsTest() : m_cFirst(AddCut(L"First")) {}
    ComPtr<IBatchedChanges> Changes() const { return m_cDataBase.As<IBatchedChanges>(); }
    ComPtr<ISharedDataBase> Shared() const { return m_cDataBase.As<ISharedDataBase>(); }
    ComPtr<IGatheredPlays> Plays() const { return m_cDataBase.As<IGatheredPlays>(); }
    void Begin() { Do(Changes(), &IBatchedChanges::BeginBatch); }
    void Rename(const wchar_t* sTitle) { Do(m_cFirst, &_clsCut::put_Title, sTitle); }
    DATE LastPlayedOnDisk() const
    {
        return Get(Get(Other(), &_clsDataBase::CutByKey, L"C:\\First.mp3"), &_clsCut::get_LastPlayed);
    }

    ComPtr<_clsCut> m_cFirst;
};

TEST_F(DataBasePartsTest, EachIsAPartOfTheOneDatabase)
{
    EXPECT_TRUE(IsSame(Changes(), m_cDataBase));
    EXPECT_TRUE(IsSame(Shared(), m_cDataBase));
    EXPECT_TRUE(IsSame(Plays(), m_cDataBase));
    auto cPlays = Plays();
    const auto cSupport = cPlays.As<ISupportErrorInfo>();
    for (const IID& iid : {IID_ISharedDataBase, IID_IGatheredPlays, IID_IBatchedChanges, IID__clsDataBase})
        EXPECT_EQ(cSupport->InterfaceSupportsErrorInfo(iid), S_OK);
    EXPECT_EQ(cSupport->InterfaceSupportsErrorInfo(IID__clsCut), S_FALSE);
    Do(m_cDataBase, &_clsDataBase::Close);
    EXPECT_EQ(Changes()->BeginBatch(), ErrorResult(91));
    EXPECT_EQ(TakeErrorInfo().sDescription, L"The database is not open.");
    EXPECT_EQ(Shared()->TakeInChanges(), ErrorResult(91));
    EXPECT_EQ(cPlays->BeginGathering(), ErrorResult(91));
    EXPECT_EQ(cPlays->WriteGathered(), ErrorResult(91));
    m_cDataBase = nullptr;
    EXPECT_TRUE(cPlays.As<_clsDataBase>()) << "one reference keeps the whole";
}

TEST_F(DataBasePartsTest, ABatchReachesTheDiskAsAWholeOrNotAtAll)
{
    const auto cSecond = AddCut(L"Second");
    const auto end = [&](auto member) { Do(Changes(), member); };
    Begin();
    Rename(L"One");
    Do(cSecond, &_clsCut::put_Title, L"Two");
    EXPECT_EQ(TitlesOnDisk(), (Texts{L"First", L"Second"}));
    end(&IBatchedChanges::CommitBatch);
    EXPECT_EQ(TitlesOnDisk(), (Texts{L"One", L"Two"}));
    Begin();
    Rename(L"Outer");
    Begin();
    Rename(L"Inner");
    end(&IBatchedChanges::RollbackBatch);
    EXPECT_EQ(Titles(AllCuts()), (Texts{L"Outer", L"Two"}));
    end(&IBatchedChanges::RollbackBatch);
    EXPECT_EQ(Titles(AllCuts()), (Texts{L"One", L"Two"}));
    EXPECT_EQ(TitlesOnDisk(), (Texts{L"One", L"Two"}));
    for (const auto member : {&IBatchedChanges::CommitBatch, &IBatchedChanges::RollbackBatch})
    {
        EXPECT_EQ(Try(Changes(), member), ErrorResult(5));
        const ErrorText text = TakeErrorInfo();
        EXPECT_EQ(text.sDescription, L"No batch of changes was begun.");
        EXPECT_EQ(text.sSource, L"RavloBase.clsDataBase");
    }
}

TEST_F(DataBasePartsTest, ClosingAndReleasingUndoAnOpenBatch)
{
    Begin();
    Rename(L"One");
    Reopen();
    EXPECT_EQ(Changes()->CommitBatch(), ErrorResult(5));
    EXPECT_EQ(TitlesOnDisk(), Texts{L"First"});
    m_cFirst = Cut(L"First");
    Begin();
    Rename(L"One");
    m_cDataBase = nullptr;
    EXPECT_EQ(TitlesOnDisk(), Texts{L"First"});
}

TEST_F(DataBasePartsTest, ManagersFollowAnotherProgramsChanges)
{
    Populate();
    const auto cOther = Other();
    const auto change = [&](auto member, const wchar_t* sTitle) {
        EXPECT_EQ(Get(cOther, member, CollectionOf(NewCut(sTitle))), 1);
    };
    change(&_clsDataBase::AddCuts, L"Second");
    EXPECT_EQ(TitlesIn(Level(L"Rock", L"1")), Texts{L"First"});
    Do(Shared(), &ISharedDataBase::TakeInChanges);
    EXPECT_EQ(TitlesIn(Level(L"Rock", L"1")), (Texts{L"First", L"Second"}));
    change(&_clsDataBase::RemoveCuts, L"Second");
    change(&_clsDataBase::AddCuts, L"Third");
    Populate();
    EXPECT_EQ(Sorted(TitlesIn(Level(L"Rock", L"1"))), (Texts{L"First", L"Third"}))
        << "a population takes them in, too";
}

TEST_F(DataBasePartsTest, GatheredPlaysReachTheDiskWhenTheyAreWritten)
{
    const auto play = [&](DATE dtWhen) { Do(m_cFirst, &_clsCut::put_LastPlayed, dtWhen); };
    Do(Plays(), &IGatheredPlays::BeginGathering);
    play(45000);
    EXPECT_EQ(LastPlayedOnDisk(), 0);
    Do(Plays(), &IGatheredPlays::WriteGathered);
    EXPECT_EQ(LastPlayedOnDisk(), 45000);
    play(45001);
    Do(Plays(), &IGatheredPlays::EndGathering);
    play(45002);
    EXPECT_EQ(LastPlayedOnDisk(), 45002);

    const auto cOther = Other().As<IBatchedChanges>();
    Do(cOther, &IBatchedChanges::BeginBatch);
    Do(Plays(), &IGatheredPlays::BeginGathering);
    play(45003);
    EXPECT_EQ(Plays()->WriteGathered(), ErrorResult(70));
    EXPECT_NE(TakeErrorInfo().sDescription.find(L"is being written to by another program."),
              std::wstring::npos);
    EXPECT_EQ(Plays()->EndGathering(), ErrorResult(70));
    Do(cOther, &IBatchedChanges::RollbackBatch);
    Do(Plays(), &IGatheredPlays::EndGathering);
    EXPECT_EQ(LastPlayedOnDisk(), 45003);
}

} // namespace
} // namespace ravlo
