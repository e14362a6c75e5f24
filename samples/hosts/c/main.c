/* SPDX-License-Identifier: MIT */
/* A playout host in C that is bound early, through the headers made from the type libraries: it fills a small library,
   asks for three cuts and reports their plays.
     c_host FOLDER */
#define COBJMACROS
#define CINTERFACE
#include "KorvaCollection.h"
#include "RavloBase.h"
#include "RavloScheduler.h"

#include <stdio.h>
#include <stdlib.h>
#include <windows.h>

static void Check(HRESULT hr)
{
    if (SUCCEEDED(hr))
        return;
    printf("%08lx\n", (unsigned long)hr);
    exit(1);
}

/* Sets a text property, and frees the text. */
#define PUT_TEXT(put, object, text) \
    do                              \
    {                               \
        BSTR value = (text);        \
        Check(put(object, value));  \
        SysFreeString(value);       \
    } while (0)

static BSTR Numbered(const wchar_t* before, int number, const wchar_t* after)
{
    wchar_t text[64];
    _snwprintf(text, 64, L"%ls%d%ls", before, number, after);
    return SysAllocString(text);
}

static void AddCuts(_clsDataBase* dataBase)
{
    _clsCollection* cuts = NULL;
    VARIANT leftOut;
    long added = 0;
    int number;

    V_VT(&leftOut) = VT_ERROR;
    V_ERROR(&leftOut) = DISP_E_PARAMNOTFOUND;
    Check(CoCreateInstance(&CLSID_clsCollection, NULL, CLSCTX_INPROC_SERVER, &IID__clsCollection, (void**)&cuts));
    for (number = 1; number <= 3; ++number)
    {
        VARIANT item;
        _clsCut* cut = NULL;
        Check(_clsDataBase_NewCut(dataBase, &cut));
        PUT_TEXT(_clsCut_put_Key, cut, Numbered(L"C:\\Music\\", number, L".mp3"));
        PUT_TEXT(_clsCut_put_Artist, cut, Numbered(L"Artist", number, L""));
        PUT_TEXT(_clsCut_put_Title, cut, Numbered(L"Song", number, L""));
        PUT_TEXT(_clsCut_put_CategoryText, cut, SysAllocString(L"Rock"));
        Check(_clsCut_put_CatLevel(cut, 1));
        Check(_clsCut_put_RunTimemS(cut, 180000));
        V_VT(&item) = VT_DISPATCH;
        V_DISPATCH(&item) = (IDispatch*)cut;
        Check(_clsCollection_Add(cuts, item, leftOut, leftOut, leftOut));
        _clsCut_Release(cut);
    }
    Check(_clsDataBase_AddCuts(dataBase, (IDispatch*)cuts, &added));
    _clsCollection_Release(cuts);
}

static DATE Now(void)
{
    SYSTEMTIME now;
    DATE date = 0;
    GetLocalTime(&now);
    SystemTimeToVariantTime(&now, &date);
    return date;
}

static void PickAndPlay(_clsSchedMan* scheduler)
{
    BSTR level = SysAllocString(L"Rock\t1");
    BSTR mainCatKey = NULL;
    BSTR title = NULL;
    _clsCat* mainCat = NULL;
    _clsCat* subCat = NULL;
    _clsCut* cut = NULL;

    Check(_clsSchedMan_get_NextCutFromRotation(scheduler, level, VARIANT_FALSE, NULL, &mainCat, &subCat, &mainCatKey,
                                               VARIANT_FALSE, VARIANT_TRUE, &cut));
    Check(_clsCut_get_Title(cut, &title));
    printf("%ls ", title);
    Check(_clsCut_put_LastPlayed(cut, Now()));
    Check(_clsSchedMan_UpdateArtistTitleHistory(scheduler, cut));
    SysFreeString(level);
    SysFreeString(mainCatKey);
    SysFreeString(title);
    _clsCat_Release(mainCat);
    _clsCat_Release(subCat);
    _clsCut_Release(cut);
}

int wmain(int count, wchar_t** arguments)
{
    _clsDataBase* dataBase = NULL;
    _clsSchedMan* scheduler = NULL;
    wchar_t file[MAX_PATH];
    BSTR path;
    int pick;

    if (count != 2)
        return 2;
    Check(CoInitialize(NULL));
    _snwprintf(file, MAX_PATH, L"%ls\\host.db", arguments[1]);
    path = SysAllocString(file);
    Check(CoCreateInstance(&CLSID_clsDataBase, NULL, CLSCTX_INPROC_SERVER, &IID__clsDataBase, (void**)&dataBase));
    Check(_clsDataBase_Open(dataBase, path));
    SysFreeString(path);
    AddCuts(dataBase);

    path = SysAllocString(arguments[1]);
    Check(CoCreateInstance(&CLSID_clsSchedMan, NULL, CLSCTX_INPROC_SERVER, &IID__clsSchedMan, (void**)&scheduler));
    Check(_clsSchedMan_PopulateFromDataBase(scheduler, dataBase, path));
    SysFreeString(path);
    Check(_clsSchedMan_put_RotatesAllowed(scheduler, VARIANT_TRUE));
    printf("Played: ");
    for (pick = 0; pick < 3; ++pick)
        PickAndPlay(scheduler);
    printf("\n");
    _clsSchedMan_Release(scheduler);
    _clsDataBase_Release(dataBase);
    CoUninitialize();
    printf("ALL OK\n");
    return 0;
}
