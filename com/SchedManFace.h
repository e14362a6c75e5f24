// SPDX-License-Identifier: MIT
#pragma once

#include "comkit/Collection.h"
#include "comkit/FaceMap.h"
#include "scheduler/clsSchedMan.h"
#include "ui/windows/SchedulerUi.h"

#include <RavloScheduler.h>

#include <memory>

namespace ravlo
{

// _clsSchedMan over its own manager, whose events it raises.
class SchedManFace final : public Dispatch<_clsSchedMan>, private SchedulerEvents
{
public:
    explicit SchedManFace(std::shared_ptr<clsSchedMan> cSchedMan);
    ~SchedManFace() override;

    const std::shared_ptr<clsSchedMan>& Core() const noexcept { return m_cSchedMan; }

    STDMETHODIMP get_colIllegalChars(_clsCollection** pVal) override;
    STDMETHODIMP RaiseEditRequestCutEvent(_clsCut* cCut, VARIANT* Result) override;
    STDMETHODIMP get_ArtistHistoryCut(BSTR sArtist, _clsCut** pVal) override;
    STDMETHODIMP get_AlbumHistoryCut(BSTR sAlbum, _clsCut** pVal) override;
    STDMETHODIMP get_TitleHistoryCut(BSTR sTitle, _clsCut** pVal) override;
    STDMETHODIMP get_DataBase(_clsDataBase** pVal) override;
    STDMETHODIMP get_AppPath(BSTR* pVal) override;
    STDMETHODIMP colSavedCatNames(_clsCollection** pVal) override;
    STDMETHODIMP PopulateFromDataBase(_clsDataBase* cDataBase, BSTR strAppPath) override;
    STDMETHODIMP get_colMainCats(_clsCollection** pVal) override;
    STDMETHODIMP get_colCuts(BSTR sCatName, LONG lCatLevel, _clsCollection** pVal) override;
    STDMETHODIMP SaveCatNames(VARIANT_BOOL* pVal) override;
    STDMETHODIMP SaveHistoryAndOrdering(_clsCat* cMainCat, VARIANT_BOOL* pVal) override;
    STDMETHODIMP ShowLibraryUI() override;
    STDMETHODIMP PopulateTreeView(IDispatch* oTv) override;
    STDMETHODIMP ShowGridCuts(IDispatch* oGrid, BSTR* strCatKey, IDispatch* oTv, IDispatch* oImageList,
                              VARIANT_BOOL* bShowingAllAudio, VARIANT_BOOL* bShowingMoreThanOneLevel,
                              _clsCat** cCatShown) override;
    STDMETHODIMP MoveCutsInCategory(_clsCat* cCat, IDispatch* colCutsInsert, LONG PosInto) override;
    STDMETHODIMP RandomizeCollection(VARIANT* ColNew) override;
    STDMETHODIMP ShuffleCategories(IDispatch* colCats, VARIANT_BOOL bConfirmFirst) override;
    STDMETHODIMP CreateMainCat(BSTR* sName, VARIANT_BOOL* pVal) override;
    STDMETHODIMP CreateCatLevel(_clsCat* cMainCatIn, VARIANT_BOOL* pVal) override;
    STDMETHODIMP UpdateArtistTitleHistory(_clsCut* cCut) override;
    STDMETHODIMP ListCats(IDispatch* colCats, BSTR* pVal) override;
    STDMETHODIMP RemoveCutFromCategory(_clsCat* cMainCat, _clsCut* cCut, _clsCollection** colMainCatsIN,
                                       LONG LevelToRemoveFrom) override;
    STDMETHODIMP DeleteCats(IDispatch* colCats, VARIANT_BOOL* pVal) override;
    STDMETHODIMP DoMassCatChange(::eCatDragOptions eCatDragOption, IDispatch* colSubCatsFrom,
                                 _clsCat* cSubCatTo, IDispatch* colCutsToChange,
                                 VARIANT_BOOL* bCreatedNewSubCats) override;
    STDMETHODIMP ShowCatUI(_clsCat** cMainCatChosen, _clsCat** cSubCatChosen, VARIANT_BOOL* bOpenerChosen,
                           BSTR sCaption, _clsCollection** colSelCuts, VARIANT_BOOL bAllowNew,
                           VARIANT_BOOL bAllowMultiSelect, _clsCut* cCut, VARIANT* pVal) override;
    STDMETHODIMP get_NextCutFromRotation(BSTR strSubCatKey, VARIANT_BOOL bMustBeOpener,
                                         _clsCut* cPrevSchedCut, _clsCat** cMainCat, _clsCat** cSubCat,
                                         BSTR* sMainCatKey, VARIANT_BOOL bForEditablePlaylist,
                                         VARIANT_BOOL bSave, _clsCut** pVal) override;
    STDMETHODIMP get_RotatesAllowed(VARIANT_BOOL* pVal) override;
    STDMETHODIMP put_RotatesAllowed(VARIANT_BOOL newVal) override;
    STDMETHODIMP ShowHelp() override;
    STDMETHODIMP get_UIShowing(VARIANT_BOOL* pVal) override;
    STDMETHODIMP ReloadAll() override;

    HealthWindows& Windows() noexcept { return *m_cWindows; }

    static const ClassIdentity identity;

protected:
    EventSource* Events() noexcept override { return &m_cEvents; }

private:
    template <class Body> HRESULT FillHostsView(const wchar_t* sWhere, Body&& body);
    template <class Result, class Body> Result WithItems(const wchar_t* sTitle, Result failure, Body&& body);
    template <class Body> void WithItems(const wchar_t* sTitle, Body&& body);
    void ShowHelpEvent() override;
    void ProgressStart(const std::wstring& sReason, std::int32_t lMax) override;
    void Progress(const std::wstring& strProgress, std::int32_t lCount, std::int32_t lMax) override;
    void ProgressDone(const std::wstring& sStatus, const std::wstring& sDetail) override;
    std::optional<std::int32_t> RequestEditCut(const std::shared_ptr<Cut>& cCut) override;
    void RaiseRequestEditCut(_clsCut* pCut, VARIANT& result);

    std::shared_ptr<clsSchedMan> m_cSchedMan;
    EventSource m_cEvents;
    std::unique_ptr<SchedulerUi> m_cWindows;
    FaceEntry<SchedManFace> m_cEntry;
};

// Returns the manager of a face; null for null. Throws error 13 for an object that is no face of this
// library.
std::shared_ptr<clsSchedMan> SchedManFrom(_clsSchedMan* pManager);

} // namespace ravlo
