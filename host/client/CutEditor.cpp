// SPDX-License-Identifier: MIT
#include "host/client/CutEditor.h"

#include "comkit/Errors.h"
#include "host/client/Categories.h"
#include "host/day/CutEdit.h"
#include "platform/windows/CentredDialog.h"
#include "platform/windows/WindowContent.h"

#include <exception>

namespace ravlo
{

namespace
{

// The dialog's input and result.
struct Editing
{
    HWND hOwner;
    std::wstring sPath;
    EditedCut values;
};

std::wstring ControlText(HWND hDialog, int lControl) { return TextIn(::GetDlgItem(hDialog, lControl)); }

void Fill(HWND hDialog, const Editing& editing)
{
    const CutFields fields = FieldsOf(editing.values);
    const std::pair<int, const std::wstring&> colTexts[] = {
        {lCutPath, editing.sPath},  {lCutArtist, fields.sArtist}, {lCutTitle, fields.sTitle},
        {lCutAlbum, fields.sAlbum}, {lCutYear, fields.sYear},     {lCutCategories, fields.sCategories},
        {lCutLevel, fields.sLevel},
    };
    for (const auto& [lControl, sText] : colTexts)
        ::SetDlgItemTextW(hDialog, lControl, sText.c_str());
    ::CheckDlgButton(hDialog, lCutOpener, fields.bOpener ? BST_CHECKED : BST_UNCHECKED);
}

// Shows the owner's icon in the caption.
void TakeIcon(HWND hDialog, HWND hOwner)
{
    const LRESULT lIcon = hOwner ? ::SendMessageW(hOwner, WM_GETICON, ICON_SMALL, 0) : 0;
    ::SendMessageW(hDialog, WM_SETICON, ICON_SMALL, lIcon);
}

int ControlOf(CutField eField) noexcept
{
    switch (eField)
    {
    case CutField::Year:
        return lCutYear;
    case CutField::Categories:
        return lCutCategories;
    case CutField::Level:
        break;
    }
    return lCutLevel;
}

// Reads the fields. Returns false when one is wrong, after saying why and moving the focus to it.
bool Take(HWND hDialog, Editing& editing)
{
    const std::variant<EditedCut, CutProblem> taken = ValuesOf(
        {ControlText(hDialog, lCutArtist), ControlText(hDialog, lCutTitle), ControlText(hDialog, lCutAlbum),
         ControlText(hDialog, lCutYear), ControlText(hDialog, lCutCategories),
         ControlText(hDialog, lCutLevel), ::IsDlgButtonChecked(hDialog, lCutOpener) == BST_CHECKED},
        editing.values);
    if (const auto* values = std::get_if<EditedCut>(&taken))
    {
        editing.values = *values;
        return true;
    }
    const CutProblem& problem = std::get<CutProblem>(taken);
    const CentredOnOwner centred(hDialog);
    ::MessageBoxW(hDialog, problem.sText.c_str(), L"Edit Cut", MB_OK | MB_ICONEXCLAMATION);
    const HWND hControl = ::GetDlgItem(hDialog, ControlOf(problem.eField));
    ::SendMessageW(hDialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(hControl), TRUE);
    return false;
}

INT_PTR CALLBACK OnEditorMessage(HWND hDialog, UINT lMessage, WPARAM wParam, LPARAM lParam)
{
    if (lMessage == WM_INITDIALOG)
    {
        ::SetWindowLongPtrW(hDialog, DWLP_USER, lParam);
        const auto& opened = *reinterpret_cast<const Editing*>(lParam);
        Fill(hDialog, opened);
        TakeIcon(hDialog, opened.hOwner);
        CentreDialog(hDialog, opened.hOwner);
        return TRUE;
    }
    if (lMessage != WM_COMMAND)
        return FALSE;
    auto& editing = *reinterpret_cast<Editing*>(::GetWindowLongPtrW(hDialog, DWLP_USER));
    if (LOWORD(wParam) == IDCANCEL || (LOWORD(wParam) == IDOK && Take(hDialog, editing)))
        ::EndDialog(hDialog, LOWORD(wParam));
    return TRUE;
}

std::wstring Get(_clsCut& cCut, HRESULT (STDMETHODCALLTYPE _clsCut::*get)(BSTR*))
{
    Bstr sText;
    ThrowIfFailed((cCut.*get)(sText.Receive()), cCut, __uuidof(_clsCut));
    return sText.Text();
}

EditedCut ValuesIn(_clsCut& cCut)
{
    LONG lYear = 0;
    LONG lLevel = 0;
    VARIANT_BOOL bOpener = VARIANT_FALSE;
    ThrowIfFailed(cCut.get_Year(&lYear), cCut, __uuidof(_clsCut));
    ThrowIfFailed(cCut.get_CatLevel(&lLevel), cCut, __uuidof(_clsCut));
    ThrowIfFailed(cCut.get_Opener(&bOpener), cCut, __uuidof(_clsCut));
    return {Get(cCut, &_clsCut::get_Artist),
            Get(cCut, &_clsCut::get_Title),
            Get(cCut, &_clsCut::get_Album),
            static_cast<std::int32_t>(lYear),
            Get(cCut, &_clsCut::get_CategoryText),
            static_cast<std::int32_t>(lLevel),
            bOpener != VARIANT_FALSE};
}

void Put(_clsCut& cCut, const EditedCut& values)
{
    const auto Check = [&](HRESULT hr) { ThrowIfFailed(hr, cCut, __uuidof(_clsCut)); };
    Check(cCut.put_Artist(Bstr(values.sArtist).Get()));
    Check(cCut.put_Title(Bstr(values.sTitle).Get()));
    Check(cCut.put_Album(Bstr(values.sAlbum).Get()));
    Check(cCut.put_Year(values.lYear));
    Check(cCut.put_CatLevel(values.lLevel));
    Check(cCut.put_CategoryText(Bstr(values.sCategoryText).Get()));
    Check(cCut.put_Opener(BoolOf(values.bOpener)));
}

void Announce(_clsCut& cCut, _clsDataBase& cDataBase)
{
    const ComPtr<_clsCollection> colCuts = NewCollection();
    Append(*colCuts, cCut);
    LONG lCuts = 0;
    ThrowIfFailed(cDataBase.ModifyCuts(colCuts.Get(), &lCuts), cDataBase, __uuidof(_clsDataBase));
}

// All or nothing: when the database refuses a change, the cut gets its old values back.
void Change(_clsCut& cCut, _clsDataBase& cDataBase, const EditedCut& before, const EditedCut& after)
{
    try
    {
        Put(cCut, after);
    }
    catch (...)
    {
        const std::exception_ptr failure = std::current_exception();
        try
        {
            Put(cCut, before);
        }
        catch (...)
        {
            // Fails at the refused change, which had no effect; the ones before it are undone.
        }
        std::rethrow_exception(failure);
    }
    Announce(cCut, cDataBase);
}

} // namespace

bool EditCut(HWND hOwner, _clsCut& cCut, _clsDataBase& cDataBase)
{
    Editing editing{hOwner, Get(cCut, &_clsCut::get_Path), ValuesIn(cCut)};
    const EditedCut before = editing.values;
    const INT_PTR lAnswer = ::DialogBoxParamW(::GetModuleHandleW(nullptr), MAKEINTRESOURCEW(lCutDialog),
                                              hOwner, OnEditorMessage, reinterpret_cast<LPARAM>(&editing));
    if (lAnswer != IDOK)
        return false;
    if (editing.values == before)
        return true;
    Change(cCut, cDataBase, before, editing.values);
    return true;
}

} // namespace ravlo
