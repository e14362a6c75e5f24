// SPDX-License-Identifier: MIT
#include "bench/Radio.h"

#include "media/PlainCut.h"

#include <map>

namespace ravlo::bench
{

namespace
{

constexpr std::int64_t cutsPerArtist = 10;
constexpr std::int64_t cutsPerAlbum = 12;

} // namespace

std::shared_ptr<Cut> RadioDataBase::NewCut() const { return NewPlainCut(); }

std::shared_ptr<Cut> MadeUpCut(std::int64_t number)
{
    std::shared_ptr<Cut> cCut = NewPlainCut();
    const std::wstring sArtist = L"Artist number " + std::to_wstring(number / cutsPerArtist);
    const std::wstring sTitle = L"Title number " + std::to_wstring(number);
    cCut->SetKey(L"D:\\Music\\" + sArtist + L"\\" + sTitle + L".mp3");
    cCut->SetArtist(sArtist);
    cCut->SetTitle(sTitle);
    cCut->SetAlbum(L"Album number " + std::to_wstring(number / cutsPerAlbum));
    cCut->SetCatLevel(1);
    cCut->SetRunTimemS(1'000);
    cCut->SetDurationmS(1'000);
    return cCut;
}

std::shared_ptr<Cut> LibraryCut(std::int64_t number)
{
    std::shared_ptr<Cut> cCut = MadeUpCut(number);
    cCut->SetCatLevel(static_cast<std::int32_t>(number % 4 + 1));
    cCut->AddCategoryName(L"Category " + std::to_wstring(number % 6));
    if (number % 3 == 0)
        cCut->AddCategoryName(L"Category " + std::to_wstring((number + 1) % 6));
    return cCut;
}

Radio::Radio(std::int64_t cuts)
{
    cMod.StoreAppPath(L"C:\\Host");
    for (std::int64_t i = 0; i < cuts; ++i)
    {
        const std::shared_ptr<Cut> cCut = MadeUpCut(i);
        cCut->SetLastPlayed(context.cClock.Now() - 1);
        cDataBase->Add(cCut);
        bool bCreated = false;
        cLevel->AddCut(cCut, bCreated);
        cHistory.Record(*cCut, *cDataBase);
    }
}

Radio& Radio::OfSize(std::int64_t cuts)
{
    static std::map<std::int64_t, std::unique_ptr<Radio>> colRadios;
    std::unique_ptr<Radio>& cRadio = colRadios[cuts];
    if (!cRadio)
        cRadio = std::make_unique<Radio>(cuts);
    return *cRadio;
}

} // namespace ravlo::bench
