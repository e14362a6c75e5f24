// SPDX-License-Identifier: MIT
#include "host/client/MediaLibrary.h"

#include "base/Text.h"
#include "comkit/Errors.h"
#include "host/client/EventListener.h"

namespace ravlo
{

namespace
{

constexpr DISPID lProgressStart = 4; // of the database's events

MediaLibrary::Entry EntryOf(IDispatch& cItem)
{
    MediaLibrary::Entry entry;
    entry.cCut = ComPtr<IDispatch>(&cItem).As<_clsCut>();
    if (!entry.cCut)
        throw RuntimeError(E_NOINTERFACE, L"The database holds an item that is no cut");
    Bstr sCategories;
    LONG lLevel = 0;
    ThrowIfFailed(entry.cCut->get_CategoryText(sCategories.Receive()));
    ThrowIfFailed(entry.cCut->get_CatLevel(&lLevel));
    ThrowIfFailed(entry.cCut->get_LastPlayed(&entry.dtLastPlayed));
    entry.lLevel = lLevel;
    for (const std::wstring& sName : Split(sCategories.Text(), L"/"))
        if (!sName.empty())
            entry.categories.push_back(sName);
    return entry;
}

} // namespace

void ForEach(_clsCollection& cCollection, const std::function<void(IDispatch& cItem)>& fVisit)
{
    ComPtr<IUnknown> cUnknown;
    ThrowIfFailed(cCollection.get__NewEnum(cUnknown.Receive()));
    const auto cEnum = cUnknown.As<IEnumVARIANT>();
    if (!cEnum)
        throw RuntimeError(E_NOINTERFACE, L"The collection cannot be walked");
    for (;;)
    {
        Variant item;
        ULONG lFetched = 0;
        if (cEnum->Next(1, &item, &lFetched) != S_OK || lFetched != 1)
            return;
        const auto cItem = ObjectIn<IDispatch>(item);
        if (cItem)
            fVisit(*cItem);
    }
}

MediaLibrary::MediaLibrary()
{
    void* pvObject = nullptr;
    ThrowIfFailed(CoCreateInstance(CLSID_clsDataBase, nullptr, CLSCTX_INPROC_SERVER, __uuidof(_clsDataBase),
                                   &pvObject));
    m_cDataBase = ComPtr<_clsDataBase>::Adopt(static_cast<_clsDataBase*>(pvObject));
}

MediaLibrary::~MediaLibrary() { m_cDataBase->Close(); }

void MediaLibrary::Open(const std::wstring& sFile)
{
    ThrowIfFailed(m_cDataBase->Open(Bstr(sFile).Get()), *m_cDataBase.Get(), __uuidof(_clsDataBase));
}

std::int32_t MediaLibrary::Import(const ImportCall& call, const Progress& progress, std::wstring& sReport)
{
    const ProgressListener listener(
        *m_cDataBase.Get(), DIID___clsDataBase, lProgressStart,
        {progress, progress, [&](const std::wstring& sStatus) { sReport = sStatus; }});
    LONG lCuts = 0;
    ThrowIfFailed(call(*m_cDataBase, &lCuts), *m_cDataBase.Get(), __uuidof(_clsDataBase));
    return lCuts;
}

std::int32_t MediaLibrary::ImportCsv(const std::wstring& sFile, const Progress& progress,
                                     std::wstring& sReport)
{
    const auto call = [&](_clsDataBase& cDataBase, LONG* plCuts) {
        return cDataBase.ImportCsv(Bstr(sFile).Get(), plCuts);
    };
    return Import(call, progress, sReport);
}

std::wstring MediaLibrary::ImportReport() const
{
    Bstr sText;
    ThrowIfFailed(m_cDataBase->get_LastImportReport(sText.Receive()), *m_cDataBase.Get(),
                  __uuidof(_clsDataBase));
    std::wstring sReport;
    for (const std::wstring& sLine : Split(sText.Text(), sCrLf))
        sReport += sLine + L"\n";
    return sReport;
}

std::wstring MediaLibrary::PlaysCsv(DateTime dtFrom, DateTime dtTo, const std::wstring& sBy) const
{
    Bstr sText;
    ThrowIfFailed(m_cDataBase->PlaysCsv(dtFrom, dtTo, Bstr(sBy).Get(), sText.Receive()), *m_cDataBase.Get(),
                  __uuidof(_clsDataBase));
    return sText.Text();
}

std::vector<MediaLibrary::Entry> MediaLibrary::Entries() const
{
    ComPtr<_clsCollection> cCuts;
    ThrowIfFailed(m_cDataBase->get_Cuts(cCuts.Receive()), *m_cDataBase.Get(), __uuidof(_clsDataBase));
    std::vector<Entry> entries;
    ForEach(*cCuts, [&](IDispatch& cItem) { entries.push_back(EntryOf(cItem)); });
    return entries;
}

void MediaLibrary::TakeInChanges()
{
    if (const auto cShared = m_cDataBase.As<ISharedDataBase>())
        ThrowIfFailed(cShared->TakeInChanges(), *cShared.Get(), __uuidof(ISharedDataBase));
}

ComPtr<_clsCut> MediaLibrary::NewCut() const
{
    ComPtr<_clsCut> cCut;
    ThrowIfFailed(m_cDataBase->NewCut(cCut.Receive()), *m_cDataBase.Get(), __uuidof(_clsDataBase));
    return cCut;
}

} // namespace ravlo
