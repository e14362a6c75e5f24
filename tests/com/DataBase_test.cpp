// SPDX-License-Identifier: MIT
// The embedded database as hosts see it.
#include "com/Station.h"

#include <fstream>

namespace ravlo
{

namespace
{

using Texts = std::vector<std::wstring>;

class DataBaseTest : public ComStationTest
{
protected:
    ComPtr<_clsCollection> AllCuts()
    {
        ComPtr<_clsCollection> colCuts;
        EXPECT_EQ(m_cDataBase->get_Cuts(colCuts.Receive()), S_OK);
        return colCuts;
    }
};

TEST_F(DataBaseTest, ItIsOpenedOnceAndClosedAtWill)
{
    const std::wstring sFile = (Folder() / L"station.db").wstring();
    EXPECT_EQ(Get(m_cDataBase, &_clsDataBase::get_FileName), sFile);
    EXPECT_EQ(m_cDataBase->Open(Bstr(sFile).Get()), ErrorResult(55));
    EXPECT_EQ(m_cDataBase->Close(), S_OK);
    EXPECT_EQ(m_cDataBase->Close(), S_OK);
    ComPtr<_clsCollection> colCuts;
    EXPECT_EQ(m_cDataBase->get_Cuts(colCuts.Receive()), ErrorResult(91));
    EXPECT_FALSE(colCuts);
}

TEST_F(DataBaseTest, CutsComeInOrderByPositionByKeyAndAlwaysAsTheSameObjects)
{
    const auto cFirst = AddCut(L"First", L"Rock", 1);
    const auto cSecond = AddCut(L"Second", L"Rock", 1);
    EXPECT_EQ(Titles(AllCuts().Get()), (Texts{L"First", L"Second"}));
    EXPECT_TRUE(IsSame(AllCuts(), AllCuts()));
    EXPECT_TRUE(IsSame(Get(m_cDataBase, &_clsDataBase::CutByKey, L"c:\\SECOND.MP3"), cSecond))
        << "a new cut that was added became the database's own object";
    EXPECT_TRUE(
        IsSame(Get(m_cDataBase, &_clsDataBase::CutByArtistTitle, L"Artist of First", L"First"), cFirst));
    EXPECT_FALSE(Get(m_cDataBase, &_clsDataBase::CutByKey, L"nowhere"));
    Variant cItem;
    ASSERT_EQ(AllCuts()->get_Item(Text(L"C:\\First.mp3"), &cItem), S_OK);
    EXPECT_TRUE(IsSame(ObjectIn<_clsCut>(cItem), cFirst));
}

TEST_F(DataBaseTest, TheListOfCutsChangesThroughTheDatabaseOnly)
{
    const auto cFirst = AddCut(L"First", L"Rock", 1);
    EXPECT_EQ(AllCuts()->Add(Object(cFirst), Text(L"x"), Variant::Omitted(), Variant::Omitted()),
              ErrorResult(445));
    EXPECT_EQ(AllCuts()->Remove(Long(1)), ErrorResult(445));
    EXPECT_EQ(TakeErrorInfo().sDescription, L"Use AddCuts and RemoveCuts to change the database");
    EXPECT_EQ(Get(AllCuts(), &_clsCollection::get_Count), 1);
}

TEST_F(DataBaseTest, CutsAreTakenFromAnyCollectionAndOfAnyKind)
{
    const auto cHosts = NewObject<HostCutObject>(L"C:\\hosts.mp3");
    cHosts->m_sTitle = L"From the host";
    cHosts->FileIn(L"Rock");
    const auto colHosts = NewObject<HostCollection>();
    colHosts->m_colItems.emplace_back(L"", Object(cHosts));
    LONG lAdded = 0;
    EXPECT_EQ(Get(m_cDataBase, &_clsDataBase::AddCuts, colHosts), 1);
    EXPECT_EQ(Titles(AllCuts().Get()), Texts{L"From the host"});
    EXPECT_EQ(m_cDataBase->AddCuts(nullptr, &lAdded), ErrorResult(91));
    EXPECT_EQ(m_cDataBase->AddCuts(CollectionOf({Text(L"no cut")}).Get(), &lAdded), ErrorResult(13));
    EXPECT_EQ(m_cDataBase->AddCuts(m_cMan.Get(), &lAdded), ErrorResult(451));
}

TEST_F(DataBaseTest, WithoutAPlaceForTheNumberNothingIsDone)
{
    EXPECT_EQ(m_cDataBase->AddCuts(CollectionOf({Object(NewCut(L"One", L"Rock", 1))}).Get(), nullptr),
              E_POINTER);
    EXPECT_EQ(Get(AllCuts(), &_clsCollection::get_Count), 0);
}

TEST_F(DataBaseTest, AnExistingKeyIsError457)
{
    AddCut(L"First", L"Rock", 1);
    LONG lAdded = 0;
    EXPECT_EQ(m_cDataBase->AddCuts(CollectionOf({Object(NewCut(L"FIRST", L"Rock", 1))}).Get(), &lAdded),
              ErrorResult(457));
}

TEST_F(DataBaseTest, ItsEventsCarryCollectionsOfItsOwnCuts)
{
    const auto cSink = NewObject<Sink>(DIID___clsDataBase);
    std::vector<Texts> colTitles;
    cSink->m_onEvent = [&](DISPID lEvent, DISPPARAMS& arguments) {
        if (lEvent <= 3)
            colTitles.push_back(Titles(arguments.rgvarg[0].pdispVal));
    };
    Advise(PointOf(m_cDataBase, DIID___clsDataBase), cSink);
    const auto cCut = AddCut(L"First", L"Rock", 1);
    ASSERT_EQ(cCut->put_Title(Bstr(L"Renamed").Get()), S_OK);
    const auto colCuts = CollectionOf({Object(cCut)});
    EXPECT_EQ(Get(m_cDataBase, &_clsDataBase::ModifyCuts, colCuts), 1);
    EXPECT_EQ(Get(m_cDataBase, &_clsDataBase::RemoveCuts, colCuts), 1);
    std::vector<DISPID> colEvents;
    for (const Heard& heard : cSink->m_colHeard)
        if (heard.lEvent <= 3)
            colEvents.push_back(heard.lEvent);
    EXPECT_EQ(colEvents, (std::vector<DISPID>{1, 2, 3}));
    EXPECT_EQ(colTitles, (std::vector<Texts>{{L"First"}, {L"Renamed"}, {L"Renamed"}}));
}

TEST_F(DataBaseTest, ALibraryFileIsImported)
{
    const auto file = Folder() / L"library.csv";
    std::ofstream(file)
        << "path,artist,title,categories,level\nC:\\a.mp3,A,One,Rock,2\nC:\\b.mp3,B,Two,Rock/Pop,1\n";
    LONG lImported = 0;
    EXPECT_EQ(Get(m_cDataBase, &_clsDataBase::ImportCsv, file.wstring()), 2);
    EXPECT_EQ(Titles(AllCuts().Get()), (Texts{L"One", L"Two"}));
    EXPECT_EQ(m_cDataBase->ImportCsv(Bstr(L"C:\\nowhere.csv").Get(), &lImported), ErrorResult(53));
}

TEST_F(DataBaseTest, AChangeIsThereAfterReopening)
{
    const auto cCut = AddCut(L"First", L"Rock", 1);
    ASSERT_EQ(cCut->put_Album(Bstr(L"Album").Get()), S_OK);
    ASSERT_EQ(m_cDataBase->Close(), S_OK);
    ASSERT_EQ(m_cDataBase->Open(Bstr((Folder() / L"station.db").wstring()).Get()), S_OK);
    const auto cFound = Get(m_cDataBase, &_clsDataBase::CutByKey, L"C:\\First.mp3");
    EXPECT_EQ(Get(cFound, &_clsCut::get_Album), L"Album");
}

TEST_F(DataBaseTest, TheKeyIsSetOnFreeCutsOnly)
{
    const auto cCut = AddCut(L"First", L"Rock", 1);
    EXPECT_EQ(cCut->put_Key(Bstr(L"C:\\other.mp3").Get()), ErrorResult(70));
    const auto cCopy = Get(cCut, &_clsCut::CloneCut);
    EXPECT_EQ(cCopy->put_Key(Bstr(L"C:\\other.mp3").Get()), S_OK);
    EXPECT_EQ(Get(cCopy, &_clsCut::get_Path), L"C:\\other.mp3");
    EXPECT_EQ(Get(cCut, &_clsCut::get_Key), L"C:\\First.mp3");
    EXPECT_EQ(Get(cCopy, &_clsCut::get_ID), Get(cCut, &_clsCut::get_ID));
}

TEST_F(DataBaseTest, EveryPropertyOfACutIsReadBackAsItWasSet)
{
    const auto cCut = NewCut(L"First", L"Rock", 1);
    struct TextProperty
    {
        HRESULT (STDMETHODCALLTYPE _clsCut::*get)(BSTR*);
        HRESULT (STDMETHODCALLTYPE _clsCut::*put)(BSTR);
    };
    std::wstring sValue = L"value ";
    for (const TextProperty& property : {TextProperty{&_clsCut::get_Key, &_clsCut::put_Key},
                                         {&_clsCut::get_SecondaryKey, &_clsCut::put_SecondaryKey},
                                         {&_clsCut::get_Path, &_clsCut::put_Path},
                                         {&_clsCut::get_Artist, &_clsCut::put_Artist},
                                         {&_clsCut::get_Title, &_clsCut::put_Title},
                                         {&_clsCut::get_Album, &_clsCut::put_Album},
                                         {&_clsCut::get_CategoryText, &_clsCut::put_CategoryText},
                                         {&_clsCut::get_CategoryKey, &_clsCut::put_CategoryKey}})
    {
        sValue += L'\u00E4';
        ASSERT_EQ((cCut.Get()->*property.put)(Bstr(sValue).Get()), S_OK);
        EXPECT_EQ(Get(cCut, property.get), sValue);
    }
    struct LongProperty
    {
        HRESULT (STDMETHODCALLTYPE _clsCut::*get)(LONG*);
        HRESULT (STDMETHODCALLTYPE _clsCut::*put)(LONG);
    };
    LONG lValue = 61000;
    for (const LongProperty& property : {LongProperty{&_clsCut::get_Year, &_clsCut::put_Year},
                                         {&_clsCut::get_CatLevel, &_clsCut::put_CatLevel},
                                         {&_clsCut::get_RunTimemS, &_clsCut::put_RunTimemS},
                                         {&_clsCut::get_KindCode, &_clsCut::put_KindCode},
                                         {&_clsCut::get_DurationmS, &_clsCut::put_DurationmS}})
    {
        lValue += 1000;
        ASSERT_EQ((cCut.Get()->*property.put)(lValue), S_OK);
        EXPECT_EQ(Get(cCut, property.get), lValue);
    }
    EXPECT_EQ(Get(cCut, &_clsCut::get_DurationText), L"1:06");
    struct BoolProperty
    {
        HRESULT (STDMETHODCALLTYPE _clsCut::*get)(VARIANT_BOOL*);
        HRESULT (STDMETHODCALLTYPE _clsCut::*put)(VARIANT_BOOL);
    };
    for (const BoolProperty& property :
         {BoolProperty{&_clsCut::get_Opener, &_clsCut::put_Opener},
          BoolProperty{&_clsCut::get_MustBeOpener, &_clsCut::put_MustBeOpener}})
    {
        VARIANT_BOOL bValue = VARIANT_TRUE;
        EXPECT_EQ((cCut.Get()->*property.get)(&bValue), S_OK);
        EXPECT_EQ(bValue, VARIANT_FALSE);
        EXPECT_EQ((cCut.Get()->*property.put)(1), S_OK); // any nonzero value is true
        EXPECT_EQ((cCut.Get()->*property.get)(&bValue), S_OK);
        EXPECT_EQ(bValue, VARIANT_TRUE);
    }
    EXPECT_EQ(Get(cCut, &_clsCut::get_LastPlayed), 0);
    EXPECT_EQ(cCut->put_LastPlayed(45000.75), S_OK);
    EXPECT_EQ(Get(cCut, &_clsCut::get_LastPlayed), 45000.75);
    EXPECT_EQ(Get(cCut, &_clsCut::get_ID), 0);
}

TEST_F(DataBaseTest, TheCategoriesOfACutAreALiveCollectionOfNames)
{
    const auto cCut = AddCut(L"First", L"Rock/Pop", 1);
    const auto colNames = Get(cCut, &_clsCut::get_Categories);
    const auto add =
        [&](const Variant& cName, const Variant& cKey, const Variant& cBefore = Variant::Omitted()) {
        return colNames->Add(cName, cKey, cBefore, Variant::Omitted());
    };
    EXPECT_EQ(add(Text(L"Jazz"), Text(L"jazz")), S_OK);
    EXPECT_EQ(add(Text(L"Blues"), Variant::Omitted(), Text(L"pop")), S_OK);
    EXPECT_EQ(Get(cCut, &_clsCut::get_CategoryText), L"Rock/Blues/Pop/Jazz");
    EXPECT_EQ(add(Text(L"ROCK"), Variant::Omitted()), ErrorResult(457));
    EXPECT_EQ(add(Text(L"Soul"), Text(L"another key")), ErrorResult(5));
    EXPECT_EQ(add(Long(1), Variant::Omitted()), ErrorResult(13));
    EXPECT_EQ(colNames->Remove(Text(L"ROCK")), S_OK);
    EXPECT_EQ(ItemsOf(colNames.Get()), (Texts{L"Blues", L"Pop", L"Jazz"}));
    ASSERT_EQ(cCut->put_CategoryText(Bstr(L"Gold").Get()), S_OK);
    EXPECT_EQ(ItemsOf(colNames.Get()), Texts{L"Gold"});
    EXPECT_TRUE(IsSame(Get(cCut, &_clsCut::get_Categories), colNames));
}

TEST_F(DataBaseTest, ACutAndAListOutliveTheDatabaseObject)
{
    const auto cCut = AddCut(L"First", L"Rock", 1);
    const auto colCuts = AllCuts();
    m_cDataBase = nullptr;
    EXPECT_EQ(Get(cCut, &_clsCut::get_Title), L"First");
    EXPECT_EQ(Titles(colCuts.Get()), Texts{L"First"});
}

} // namespace

} // namespace ravlo
