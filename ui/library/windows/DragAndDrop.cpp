// SPDX-License-Identifier: MIT
#include "ui/library/windows/DragAndDrop.h"

#include "ui/library/windows/CountedObject.h"

#include <cstring>
#include <shlobj.h>
#include <string_view>
#include <utility>

namespace ravlo
{

namespace
{

FORMATETC TextFormat(CLIPFORMAT lFormat) { return {lFormat, nullptr, DVASPECT_CONTENT, -1, TYMED_HGLOBAL}; }

HGLOBAL CopyOf(const void* pBytes, std::size_t bytes)
{
    const HGLOBAL hMemory = ::GlobalAlloc(GMEM_MOVEABLE, bytes);
    if (void* pMemory = hMemory ? ::GlobalLock(hMemory) : nullptr)
    {
        std::memcpy(pMemory, pBytes, bytes);
        ::GlobalUnlock(hMemory);
    }
    return hMemory;
}

HGLOBAL AnsiCopyOf(const std::wstring& sText) noexcept
{
    const int lBytes = ::WideCharToMultiByte(CP_ACP, 0, sText.c_str(), -1, nullptr, 0, nullptr, nullptr);
    const HGLOBAL hMemory = ::GlobalAlloc(GMEM_MOVEABLE, static_cast<std::size_t>(lBytes));
    if (void* pMemory = hMemory ? ::GlobalLock(hMemory) : nullptr)
    {
        ::WideCharToMultiByte(CP_ACP, 0, sText.c_str(), -1, static_cast<char*>(pMemory), lBytes, nullptr,
                              nullptr);
        ::GlobalUnlock(hMemory);
    }
    return hMemory;
}

// A text, in both forms of plain text.
class TextData final : public CountedObject<IDataObject>
{
public:
    explicit TextData(std::wstring sText) : m_sText(std::move(sText)) {}

    STDMETHODIMP GetData(FORMATETC* pFormat, STGMEDIUM* pMedium) override
    {
        const HRESULT hOffered = QueryGetData(pFormat);
        if (hOffered != S_OK)
            return hOffered;
        *pMedium = {};
        pMedium->tymed = TYMED_HGLOBAL;
        pMedium->hGlobal = pFormat->cfFormat == CF_UNICODETEXT
                               ? CopyOf(m_sText.c_str(), (m_sText.size() + 1) * sizeof(wchar_t))
                               : AnsiCopyOf(m_sText);
        return pMedium->hGlobal ? S_OK : E_OUTOFMEMORY;
    }
    STDMETHODIMP QueryGetData(FORMATETC* pFormat) override
    {
        const bool bText = pFormat->cfFormat == CF_UNICODETEXT || pFormat->cfFormat == CF_TEXT;
        return bText && (pFormat->tymed & TYMED_HGLOBAL) != 0 ? S_OK : DV_E_FORMATETC;
    }
    STDMETHODIMP EnumFormatEtc(DWORD lDirection, IEnumFORMATETC** ppFormats) override
    {
        if (lDirection != DATADIR_GET)
            return E_NOTIMPL;
        const FORMATETC formats[] = {TextFormat(CF_UNICODETEXT), TextFormat(CF_TEXT)};
        return ::SHCreateStdEnumFmtEtc(ARRAYSIZE(formats), formats, ppFormats);
    }
    STDMETHODIMP GetDataHere(FORMATETC*, STGMEDIUM*) override { return E_NOTIMPL; }
    STDMETHODIMP GetCanonicalFormatEtc(FORMATETC*, FORMATETC* pOut) override
    {
        pOut->ptd = nullptr;
        return E_NOTIMPL;
    }
    STDMETHODIMP SetData(FORMATETC*, STGMEDIUM*, BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP DAdvise(FORMATETC*, DWORD, IAdviseSink*, DWORD*) override
    {
        return OLE_E_ADVISENOTSUPPORTED;
    }
    STDMETHODIMP DUnadvise(DWORD) override { return OLE_E_ADVISENOTSUPPORTED; }
    STDMETHODIMP EnumDAdvise(IEnumSTATDATA**) override { return OLE_E_ADVISENOTSUPPORTED; }

private:
    std::wstring m_sText;
};

class LeftButtonDrag final : public CountedObject<IDropSource>
{
public:
    explicit LeftButtonDrag(std::function<void()> moved) : m_moved(std::move(moved)) {}

    STDMETHODIMP QueryContinueDrag(BOOL bEscape, DWORD lKeys) override
    {
        if (bEscape || (lKeys & MK_RBUTTON) != 0)
            return DRAGDROP_S_CANCEL;
        return (lKeys & MK_LBUTTON) != 0 ? S_OK : DRAGDROP_S_DROP;
    }
    STDMETHODIMP GiveFeedback(DWORD) override
    {
        m_moved();
        return DRAGDROP_S_USEDEFAULTCURSORS;
    }

private:
    std::function<void()> m_moved;
};

// The text in a data object; empty when there is none.
std::wstring TextIn(IDataObject& cData)
{
    FORMATETC format = TextFormat(CF_UNICODETEXT);
    STGMEDIUM medium{};
    if (FAILED(cData.GetData(&format, &medium)))
        return {};
    std::wstring sText;
    if (const auto* pText = static_cast<const wchar_t*>(::GlobalLock(medium.hGlobal)))
    {
        const std::wstring_view sAll(pText, ::GlobalSize(medium.hGlobal) / sizeof(wchar_t));
        sText = sAll.substr(0, sAll.find(L'\0'));
        ::GlobalUnlock(medium.hGlobal);
    }
    ::ReleaseStgMedium(&medium);
    return sText;
}

class DropTarget final : public CountedObject<IDropTarget>
{
public:
    explicit DropTarget(DropSite& cSite) : m_cSite(cSite) {}

    STDMETHODIMP DragEnter(IDataObject* pData, DWORD lKeys, POINTL point, DWORD* pEffect) override
    {
        return Guard([&] { m_sText = pData ? TextIn(*pData) : std::wstring(); }, pEffect) == S_OK
                   ? DragOver(lKeys, point, pEffect)
                   : E_UNEXPECTED;
    }
    STDMETHODIMP DragOver(DWORD, POINTL point, DWORD* pEffect) override
    {
        return Guard(
            [&] {
            const bool bTaken = !m_sText.empty() && m_cSite.DragOver({point.x, point.y}, m_sText);
            // The user is asked after the drop what to do, so any effect that the source allows is right.
            *pEffect &= bTaken ? DWORD{DROPEFFECT_MOVE | DROPEFFECT_COPY} : DWORD{DROPEFFECT_NONE};
            if ((*pEffect & DROPEFFECT_MOVE) != 0)
                *pEffect = DROPEFFECT_MOVE;
            },
            pEffect);
    }
    STDMETHODIMP DragLeave() override
    {
        m_sText.clear();
        return Guard([&] { m_cSite.DragLeft(); }, nullptr);
    }
    STDMETHODIMP Drop(IDataObject*, DWORD lKeys, POINTL point, DWORD* pEffect) override
    {
        DragOver(lKeys, point, pEffect);
        return Guard(
            [&] {
            const std::wstring sText = std::exchange(m_sText, {});
            m_cSite.DragLeft();
            if (*pEffect != DROPEFFECT_NONE)
                m_cSite.Dropped({point.x, point.y}, sText);
            // The rows stay until the drop is carried out: the source must delete nothing.
            *pEffect &= DWORD{DROPEFFECT_COPY};
            },
            pEffect);
    }

private:
    // No exception reaches the source of the drag.
    template <class Body> HRESULT Guard(Body&& body, DWORD* pEffect) noexcept
    {
        try
        {
            body();
            return S_OK;
        }
        catch (...)
        {
            m_cSite.OnException();
            if (pEffect)
                *pEffect = DROPEFFECT_NONE;
            return E_UNEXPECTED;
        }
    }

    DropSite& m_cSite;
    std::wstring m_sText; // of what is dragged over the window
};

} // namespace

DropRegistration::DropRegistration(HWND hWindow, DropSite& cSite) : m_hWindow(hWindow)
{
    auto* const pTarget = new DropTarget(cSite);
    ::RegisterDragDrop(hWindow, pTarget);
    pTarget->Release();
}

DropRegistration::~DropRegistration() { ::RevokeDragDrop(m_hWindow); }

void DragText(const std::wstring& sText, const std::function<void()>& moved)
{
    auto* const pData = new TextData(sText);
    auto* const pSource = new LeftButtonDrag(moved);
    DWORD lEffect = DROPEFFECT_NONE;
    ::DoDragDrop(pData, pSource, DROPEFFECT_COPY | DROPEFFECT_MOVE, &lEffect);
    pData->Release();
    pSource->Release();
}

} // namespace ravlo
