// SPDX-License-Identifier: MIT
#include "com/SchedManFace.h"

#include "com/CatFace.h"
#include "com/HostDatabase.h"
#include "com/LateBoundLibrary.h"
#include "ui/windows/SchedulerUi.h"

namespace ravlo
{

const ClassIdentity SchedManFace::identity{
    CLSID_clsSchedMan, LIBID_RavloScheduler,         IID__clsSchedMan, &DIID___clsSchedMan, L"RavloScheduler",
    L"clsSchedMan",    L"RavloScheduler.clsSchedMan"};

namespace
{

// The dispatch ids of __clsSchedMan.
enum SchedulerEvent : DISPID
{
    eShowHelpEvent = 1,
    eProgressStart = 2,
    eProgress = 3,
    eProgressDone = 4,
    eRequestEditCut = 5,
};

Variant Text(const std::wstring& sText) { return Variant(std::wstring_view(sText)); }

// Replaces, and releases, the object in a by-reference argument. Does nothing when the caller passes none.
void Replace(_clsCat** ppTarget, const std::shared_ptr<clsCat>& cCat)
{
    if (ppTarget)
        ComPtr<_clsCat>::Adopt(std::exchange(*ppTarget, CatOut(cCat).Detach()));
}
void Replace(BSTR* psTarget, const std::wstring& sText)
{
    if (psTarget)
        SysFreeString(std::exchange(*psTarget, NewBstr(sText)));
}

template <class Adapter, class Item>
ComPtr<_clsCollection> CollectionOut(const std::shared_ptr<OrderedKeyedCollection<Item>>& colItems)
{
    if (!colItems)
        return nullptr;
    return FaceOfCollection<Adapter>(colItems);
}

// A new collection, keyed by the cuts' keys.
ComPtr<_clsCollection> CollectionOfCuts(const Cuts& colCuts)
{
    const auto colResult = std::make_shared<CutCollection>();
    for (const std::shared_ptr<Cut>& cCut : colCuts)
        colResult->Add(TextKey(cCut->Key()), cCut);
    return CollectionOut<CutAdapter>(colResult);
}

// Null means no cuts.
Cuts CutsOrNone(IDispatch* colCuts) { return colCuts ? CutsIn(colCuts) : Cuts(); }

struct KeyedItem
{
    Variant cItem;
    std::optional<std::wstring> sKey;
};

// The items of an automation collection, with their keys when it is this library's own.
std::vector<KeyedItem> ItemsOf(const ComPtr<IDispatch>& colItems)
{
    std::vector<KeyedItem> colResult;
    const CollectionFace* pFace = FaceMap<CollectionFace>::Instance().Find(colItems.Get());
    if (!pFace)
    {
        ForEachItem(colItems.Get(), [&](const Variant& cItem) {
            colResult.push_back({cItem, std::nullopt});
        });
        return colResult;
    }
    const CollectionModel& cModel = pFace->Model();
    for (std::size_t i = 0; i < cModel.Count(); ++i)
        colResult.push_back({cModel.At(i), cModel.KeyAt(i)});
    return colResult;
}

// Adds the categories that colTarget does not contain yet, under their names.
void AddMissing(const CatCollection& colFound, _clsCollection& colTarget)
{
    for (std::size_t i = 0; i < colFound.Count(); ++i)
    {
        const Variant cKey = Text(colFound.At(i)->CatName());
        VARIANT_BOOL bExists = VARIANT_FALSE;
        const auto call = [&](auto&& member) {
            ThrowIfFailed(Outgoing(member), colTarget, IID__clsCollection);
        };
        call([&] { return colTarget.Exists(cKey, &bExists); });
        if (bExists != VARIANT_FALSE)
            continue;
        const Variant cCat = CatAdapter::ToVariant(colFound.At(i));
        const Variant cOmitted = Variant::Omitted();
        call([&] { return colTarget.Add(cCat, cKey, cOmitted, cOmitted); });
    }
}

} // namespace

SchedManFace::SchedManFace(std::shared_ptr<clsSchedMan> cSchedMan)
    : Dispatch(identity), m_cSchedMan(std::move(cSchedMan)),
      m_cEvents(*static_cast<_clsSchedMan*>(this), DIID___clsSchedMan),
      m_cWindows(NewSchedulerUi(m_cSchedMan)),
      m_cEntry(m_cSchedMan.get(), this, static_cast<_clsSchedMan*>(this))
{
    m_cSchedMan->SetEvents(this);
    m_cSchedMan->SetWindows(m_cWindows.get());
}

SchedManFace::~SchedManFace()
{
    m_cSchedMan->SetWindows(nullptr);
    m_cSchedMan->SetEvents(nullptr);
}

// Runs a member that takes the items of a host's collection. An item of another kind, or an object that is no
// collection, is an error like any other: shown under the member's title, and nothing is done.
template <class Result, class Body>
Result SchedManFace::WithItems(const wchar_t* sTitle, Result failure, Body&& body)
{
    return TrapCritical(m_cSchedMan->Mod(), sTitle, std::move(failure), std::forward<Body>(body));
}
template <class Body> void SchedManFace::WithItems(const wchar_t* sTitle, Body&& body)
{
    TrapCritical(m_cSchedMan->Mod(), sTitle, std::forward<Body>(body));
}

STDMETHODIMP SchedManFace::get_colIllegalChars(_clsCollection** pVal)
{
    return Return(pVal, [&] { return CollectionOut<TextAdapter>(m_cSchedMan->colIllegalChars()); });
}

STDMETHODIMP SchedManFace::RaiseEditRequestCutEvent(_clsCut* cCut, VARIANT* Result)
{
    return Guard([&] { RaiseRequestEditCut(cCut, Out(Result)); });
}

STDMETHODIMP SchedManFace::get_ArtistHistoryCut(BSTR sArtist, _clsCut** pVal)
{
    return Return(pVal, [&] { return CutOut(m_cSchedMan->ArtistHistoryCut(TextOf(sArtist))); });
}
STDMETHODIMP SchedManFace::get_AlbumHistoryCut(BSTR sAlbum, _clsCut** pVal)
{
    return Return(pVal, [&] { return CutOut(m_cSchedMan->AlbumHistoryCut(TextOf(sAlbum))); });
}
STDMETHODIMP SchedManFace::get_TitleHistoryCut(BSTR sTitle, _clsCut** pVal)
{
    return Return(pVal, [&] { return CutOut(m_cSchedMan->TitleHistoryCut(TextOf(sTitle))); });
}

STDMETHODIMP SchedManFace::get_DataBase(_clsDataBase** pVal)
{
    return Return(pVal, [&] {
        // Each database that came through this face is a HostDatabase.
        const auto cDataBase = std::dynamic_pointer_cast<HostDatabase>(m_cSchedMan->DataBase());
        return cDataBase ? cDataBase->Host() : nullptr;
    });
}

STDMETHODIMP SchedManFace::get_AppPath(BSTR* pVal) { return Get(pVal, m_cSchedMan, &clsSchedMan::AppPath); }

STDMETHODIMP SchedManFace::colSavedCatNames(_clsCollection** pVal)
{
    return Return(pVal, [&] { return CollectionOut<TextAdapter>(m_cSchedMan->colSavedCatNames()); });
}

STDMETHODIMP SchedManFace::PopulateFromDataBase(_clsDataBase* cDataBase, BSTR strAppPath)
{
    return Guard([&] { m_cSchedMan->PopulateFromDataBase(HostDatabase::Of(cDataBase), TextOf(strAppPath)); });
}

STDMETHODIMP SchedManFace::get_colMainCats(_clsCollection** pVal)
{
    return Return(pVal, [&] { return CollectionOut<CatAdapter>(m_cSchedMan->colMainCats()); });
}

STDMETHODIMP SchedManFace::get_colCuts(BSTR sCatName, LONG lCatLevel, _clsCollection** pVal)
{
    return Return(pVal, [&] {
        return CollectionOut<CutAdapter>(m_cSchedMan->colCuts(TextOf(sCatName), FromHost(lCatLevel)));
    });
}

STDMETHODIMP SchedManFace::SaveCatNames(VARIANT_BOOL* pVal)
{
    return Get(pVal, m_cSchedMan, &clsSchedMan::SaveCatNames);
}
STDMETHODIMP SchedManFace::SaveHistoryAndOrdering(_clsCat* cMainCat, VARIANT_BOOL* pVal)
{
    return Return(pVal, [&] { return m_cSchedMan->SaveHistoryAndOrdering(CatFrom(cMainCat)); });
}

STDMETHODIMP SchedManFace::ShowLibraryUI()
{
    return Guard([&] { m_cSchedMan->ShowLibraryUI(); });
}

// Fills a host's view. Logs its errors and returns them to the host.
template <class Body> HRESULT SchedManFace::FillHostsView(const wchar_t* sWhere, Body&& body)
{
    return Guard([&] {
        try
        {
            body();
        }
        catch (...)
        {
            m_cSchedMan->Mod().LogError(sWhere, CurrentError());
            throw;
        }
    });
}

STDMETHODIMP SchedManFace::PopulateTreeView(IDispatch* oTv)
{
    return FillHostsView(L"PopulateTreeView [clsSchedMan]", [&] {
        if (!oTv)
            throw RuntimeError(error::ObjectNotSet);
        LateBoundTree cTree(*oTv);
        const std::shared_ptr<CatCollection> colMainCats = m_cSchedMan->colMainCats();
        cTree.Fill(NodesOf(colMainCats.get()));
    });
}
STDMETHODIMP SchedManFace::ShowGridCuts(IDispatch* oGrid, BSTR* strCatKey, IDispatch* oTv,
                                        IDispatch* oImageList, VARIANT_BOOL* bShowingAllAudio,
                                        VARIANT_BOOL* bShowingMoreThanOneLevel, _clsCat** cCatShown)
{
    return FillHostsView(L"ShowGridCuts [clsSchedMan]", [&] {
        if (!oGrid)
            return;
        std::optional<LateBoundTree> cTree;
        if (oTv && oImageList) // the images are used for nothing else
            cTree.emplace(*oTv);
        const std::optional<ListedCuts> listed = ListCuts(*m_cSchedMan, TextOf(Out(strCatKey)));
        if (!listed)
            return;
        FillGrid(*oGrid, *m_cSchedMan, *listed);
        if (cTree)
            cTree->ShowAsOpen(listed->strCatKey);
        Replace(strCatKey, listed->strCatKey);
        Replace(cCatShown, listed->cCatShown);
        if (bShowingAllAudio)
            *bShowingAllAudio = BoolOf(listed->bShowingAllAudio);
        if (bShowingMoreThanOneLevel)
            *bShowingMoreThanOneLevel = BoolOf(listed->bShowingMoreThanOneLevel);
    });
}
STDMETHODIMP SchedManFace::MoveCutsInCategory(_clsCat* cCat, IDispatch* colCutsInsert, LONG PosInto)
{
    return Guard([&] {
        const std::shared_ptr<clsCat> cTarget = CatFrom(cCat);
        WithItems(L"Error in InsertCuts [cSchedMan]", [&] {
            m_cSchedMan->MoveCutsInCategory(cTarget, CutsOrNone(colCutsInsert), FromHost(PosInto));
        });
    });
}
STDMETHODIMP SchedManFace::RandomizeCollection(VARIANT* ColNew)
{
    return Guard([&] {
        VARIANT& colNew = Out(ColNew);
        WithItems(L"Error in Randomize Collection ", [&] {
            const auto colItems = ItemsOf(ObjectIn<IDispatch>(colNew));
            const auto colShuffled = std::make_shared<ItemCollection>();
            for (const std::size_t position : m_cSchedMan->RandomOrderOf(colItems.size()))
            {
                const KeyedItem& item = colItems[position];
                const TextKey cKey(item.sKey.value_or(std::wstring()));
                colShuffled->Insert(colShuffled->Count(), item.sKey ? &cKey : nullptr, item.cItem);
            }
            StoreThrough(colNew, Variant(static_cast<IDispatch*>(NewCollection(colShuffled).Get())));
        });
    });
}
STDMETHODIMP SchedManFace::ShuffleCategories(IDispatch* colCats, VARIANT_BOOL bConfirmFirst)
{
    return Guard([&] {
        WithItems(L"Error in ShuffleCategories [cSchedMan]",
                  [&] { m_cSchedMan->ShuffleCategories(CatsIn(colCats), FromHost(bConfirmFirst)); });
    });
}
STDMETHODIMP SchedManFace::CreateMainCat(BSTR* sName, VARIANT_BOOL* pVal)
{
    return Return(pVal, [&] {
        std::wstring sNameUsed = sName ? TextOf(*sName) : std::wstring();
        const bool bCreated = m_cSchedMan->CreateMainCat(sNameUsed);
        if (bCreated)
            Replace(sName, sNameUsed);
        return bCreated;
    });
}
STDMETHODIMP SchedManFace::CreateCatLevel(_clsCat* cMainCatIn, VARIANT_BOOL* pVal)
{
    return Return(pVal, [&] { return m_cSchedMan->CreateCatLevel(CatFrom(cMainCatIn)); });
}

STDMETHODIMP SchedManFace::UpdateArtistTitleHistory(_clsCut* cCut)
{
    return Guard([&] { m_cSchedMan->UpdateArtistTitleHistory(CutFrom(cCut)); });
}

STDMETHODIMP SchedManFace::ListCats(IDispatch* colCats, BSTR* pVal)
{
    const auto list = [&] { return m_cSchedMan->ListCats(CatsIn(colCats)); };
    return Return(pVal, [&] { return WithItems(L"Error in ListCats [cSchedMan]", std::wstring(), list); });
}

STDMETHODIMP SchedManFace::RemoveCutFromCategory(_clsCat* cMainCat, _clsCut* cCut,
                                                 _clsCollection** colMainCatsIN, LONG LevelToRemoveFrom)
{
    return Guard([&] {
        _clsCollection*& colAffected = Out(colMainCatsIN);
        const auto colFound = std::make_shared<CatCollection>();
        m_cSchedMan->RemoveCutFromCategory(CatFrom(cMainCat), CutFrom(cCut), *colFound,
                                           FromHost(LevelToRemoveFrom));
        if (!colAffected)
            colAffected = CollectionOut<CatAdapter>(colFound).Detach();
        else
            AddMissing(*colFound, *colAffected);
    });
}

STDMETHODIMP SchedManFace::DeleteCats(IDispatch* colCats, VARIANT_BOOL* pVal)
{
    const auto remove = [&] { return m_cSchedMan->DeleteCats(CatsIn(colCats)); };
    return Return(pVal, [&] { return WithItems(L"Error in DeleteCats [cSchedMan]", false, remove); });
}
STDMETHODIMP SchedManFace::DoMassCatChange(::eCatDragOptions eCatDragOption, IDispatch* colSubCatsFrom,
                                           _clsCat* cSubCatTo, IDispatch* colCutsToChange,
                                           VARIANT_BOOL* bCreatedNewSubCats)
{
    return Guard([&] {
        bool bCreated = false;
        const std::shared_ptr<clsCat> cTo = CatFrom(cSubCatTo);
        WithItems(L"Error in DoMassCatChange [cSchedMan]", [&] {
            m_cSchedMan->DoMassCatChange(static_cast<eCatDragOptions>(eCatDragOption), CatsIn(colSubCatsFrom),
                                         cTo, CutsOrNone(colCutsToChange), bCreated);
        });
        if (bCreated && bCreatedNewSubCats)
            *bCreatedNewSubCats = VARIANT_TRUE;
    });
}
STDMETHODIMP SchedManFace::ShowCatUI(_clsCat** cMainCatChosen, _clsCat** cSubCatChosen,
                                     VARIANT_BOOL* bOpenerChosen, BSTR sCaption, _clsCollection** colSelCuts,
                                     VARIANT_BOOL bAllowNew, VARIANT_BOOL bAllowMultiSelect, _clsCut* cCut,
                                     VARIANT* pVal)
{
    return Guard([&] {
        VARIANT& result = Out(pVal);
        CategoryRequest request;
        request.cMainCatChosen = CatFrom(cMainCatChosen ? *cMainCatChosen : nullptr);
        request.cSubCatChosen = CatFrom(cSubCatChosen ? *cSubCatChosen : nullptr);
        request.bOpenerChosen = bOpenerChosen && *bOpenerChosen != VARIANT_FALSE;
        request.sCaption = TextOf(sCaption);
        request.bAllowNew = FromHost(bAllowNew);
        request.bAllowMultiSelect = FromHost(bAllowMultiSelect);
        request.cCut = CutFrom(cCut);
        const std::int32_t lAnswer = m_cSchedMan->ShowCatUI(request);
        if (lAnswer == lChosen)
        {
            Replace(cMainCatChosen, request.cMainCatChosen);
            Replace(cSubCatChosen, request.cSubCatChosen);
            if (bOpenerChosen)
                *bOpenerChosen = BoolOf(request.bOpenerChosen);
            if (colSelCuts)
                ComPtr<_clsCollection>::Adopt(
                    std::exchange(*colSelCuts, CollectionOfCuts(request.colSelCuts).Detach()));
        }
        result = Variant(lAnswer).Detach();
    });
}

STDMETHODIMP SchedManFace::get_NextCutFromRotation(BSTR strSubCatKey, VARIANT_BOOL bMustBeOpener,
                                                   _clsCut* cPrevSchedCut, _clsCat** cMainCat,
                                                   _clsCat** cSubCat, BSTR* sMainCatKey,
                                                   VARIANT_BOOL bForEditablePlaylist, VARIANT_BOOL bSave,
                                                   _clsCut** pVal)
{
    return Guard([&] {
        _clsCut*& cResult = Out(pVal);
        const RotationAnswer answer =
            m_cSchedMan->NextCutFromRotation({TextOf(strSubCatKey), FromHost(bMustBeOpener),
                                              CutFrom(cPrevSchedCut), FromHost(bForEditablePlaylist)},
                                             FromHost(bSave));
        Replace(cMainCat, answer.cMainCat);
        Replace(cSubCat, answer.cSubCat);
        Replace(sMainCatKey, answer.sMainCatKey);
        cResult = CutOut(answer.cCut).Detach();
    });
}

STDMETHODIMP SchedManFace::get_RotatesAllowed(VARIANT_BOOL* pVal)
{
    return Get(pVal, m_cSchedMan, &clsSchedMan::RotatesAllowed);
}
STDMETHODIMP SchedManFace::put_RotatesAllowed(VARIANT_BOOL newVal)
{
    return Put(newVal, m_cSchedMan, &clsSchedMan::SetRotatesAllowed);
}
STDMETHODIMP SchedManFace::ShowHelp()
{
    return Guard([&] { m_cSchedMan->ShowHelp(); });
}
STDMETHODIMP SchedManFace::get_UIShowing(VARIANT_BOOL* pVal)
{
    return Get(pVal, m_cSchedMan, &clsSchedMan::UIShowing);
}
STDMETHODIMP SchedManFace::ReloadAll()
{
    return Guard([&] { m_cSchedMan->ReloadAll(); });
}

void SchedManFace::ShowHelpEvent() { m_cEvents.Fire(eShowHelpEvent, {}); }

void SchedManFace::ProgressStart(const std::wstring& sReason, std::int32_t lMax)
{
    m_cEvents.Fire(eProgressStart, {Text(sReason), Variant(lMax)});
}

void SchedManFace::Progress(const std::wstring& strProgress, std::int32_t lCount, std::int32_t lMax)
{
    m_cEvents.Fire(eProgress, {Text(strProgress), Variant(lCount), Variant(lMax)});
}

void SchedManFace::ProgressDone(const std::wstring& sStatus, const std::wstring&)
{
    m_cEvents.Fire(eProgressDone, {Text(sStatus)});
}

std::optional<std::int32_t> SchedManFace::RequestEditCut(const std::shared_ptr<Cut>& cCut)
{
    Variant cResult;
    RaiseRequestEditCut(CutOut(cCut).Get(), cResult);
    if (cResult.vt == VT_EMPTY)
        return std::nullopt;
    const std::optional<Variant> cLong = cResult.As(VT_I4);
    return cLong ? std::optional<std::int32_t>(static_cast<std::int32_t>(cLong->lVal)) : std::nullopt;
}

// Gives the listeners a variable of their own, of any type, for the answer.
void SchedManFace::RaiseRequestEditCut(_clsCut* pCut, VARIANT& result)
{
    Variant cAnswer = Variant::Dereferenced(result);
    VARIANT reference{};
    reference.vt = VT_BYREF | VT_VARIANT;
    reference.pvarVal = &cAnswer;
    m_cEvents.Fire(eRequestEditCut, {Variant(static_cast<IDispatch*>(pCut)), reference});
    StoreThrough(result, std::move(cAnswer));
}

std::shared_ptr<clsSchedMan> SchedManFrom(_clsSchedMan* pManager)
{
    if (!pManager)
        return nullptr;
    if (const SchedManFace* pFace = FaceMap<SchedManFace>::Instance().Find(pManager))
        return pFace->Core();
    throw RuntimeError(error::TypeMismatch);
}

} // namespace ravlo
