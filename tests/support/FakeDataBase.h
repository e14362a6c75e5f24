// SPDX-License-Identifier: MIT
#pragma once

#include "base/CaseFolding.h"
#include "base/RuntimeError.h"
#include "media/DataBase.h"
#include "media/PlainCut.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace ravlo::test
{

// A copy of all of a cut's values that belongs to no database.
inline std::shared_ptr<Cut> PlainCopyOf(const Cut& cCut)
{
    auto cCopy = std::make_shared<PlainCut>(ValuesOf(cCut), cCut.ID());
    cCopy->SetCategoryKey(cCut.CategoryKey());
    cCopy->SetMustBeOpener(cCut.MustBeOpener());
    cCopy->SetKindCode(cCut.KindCode());
    return cCopy;
}

// A cut of a database in memory. Each member can be made to fail (error 91, as when a cut's record is
// gone).
class FakeCut final : public Cut
{
public:
    FakeCut() : FakeCut(std::make_shared<Record>()) {}
    // Another object for the same cut: what happens to one happens to both.
    std::shared_ptr<FakeCut> Twin() const { return std::shared_ptr<FakeCut>(new FakeCut(m_cRecord)); }

private:
    // A host's cut may have an empty category name.
    class Values final : public PlainCut
    {
    public:
        void AddCategoryName(const std::wstring& sName) override
        {
            CutValues next = PlainCut::Values();
            if (!HasCategoryName(sName))
                next.colCategories.emplace_back(sName);
            Change(std::move(next));
        }
    };
    struct Record
    {
        std::shared_ptr<Cut> cValues = std::make_shared<Values>();
        std::set<std::string, std::less<>> failing;
        std::map<std::string_view, int> calls; // by literals
        bool bClonesNothing = false;
        std::int32_t lID = 0;
        std::function<void(std::string_view sMember)> OnCall;
    };
    std::shared_ptr<Record> m_cRecord;
    explicit FakeCut(std::shared_ptr<Record> cRecord) : m_cRecord(std::move(cRecord)) {}

public:
    // Names of members that fail from now on, e.g. "Artist".
    std::set<std::string, std::less<>>& failing = m_cRecord->failing;
    std::map<std::string_view, int>& calls = m_cRecord->calls;
    bool& bClonesNothing = m_cRecord->bClonesNothing;
    std::int32_t& lID = m_cRecord->lID; // the database's number
    // Called at the start of every member's call, with its name: a host's cut may do anything there.
    std::function<void(std::string_view sMember)>& OnCall = m_cRecord->OnCall;

    TextKey Key() const override { return In("Key").Key(); }
    // The database's own look at the key, which neither fails nor counts as a call.
    TextKey StoredKey() const { return m_cRecord->cValues->Key(); }
    std::wstring SecondaryKey() const override { return In("SecondaryKey").SecondaryKey(); }
    std::int32_t ID() const override
    {
        In("ID");
        return lID;
    }
    std::wstring Path() const override { return In("Path").Path(); }
    std::wstring Artist() const override { return In("Artist").Artist(); }
    std::wstring Title() const override { return In("Title").Title(); }
    std::wstring Album() const override { return In("Album").Album(); }
    std::int32_t Year() const override { return In("Year").Year(); }
    std::int32_t RunTimemS() const override { return In("RunTimemS").RunTimemS(); }
    std::int32_t DurationmS() const override { return In("DurationmS").DurationmS(); }
    std::wstring DurationText() const override { return In("DurationText").DurationText(); }
    DateTime LastPlayed() const override { return In("LastPlayed").LastPlayed(); }
    bool Opener() const override { return In("Opener").Opener(); }
    std::int32_t CatLevel() const override { return In("CatLevel").CatLevel(); }
    std::vector<std::wstring> CategoryNames() const override { return In("CategoryNames").CategoryNames(); }
    bool HasCategoryName(std::wstring_view sName) const override
    {
        return In("HasCategoryName").HasCategoryName(sName);
    }
    void AddCategoryName(const std::wstring& sName) override { In("AddCategoryName").AddCategoryName(sName); }
    void RemoveCategoryName(const std::wstring& sName) override
    {
        In("RemoveCategoryName").RemoveCategoryName(sName);
    }
    std::wstring CategoryText() const override { return In("CategoryText").CategoryText(); }
    void SetCategoryText(const std::wstring& sText) override { In("SetCategoryText").SetCategoryText(sText); }
    void SetKey(const std::wstring& sKey) override { In("SetKey").SetKey(sKey); }
    void SetSecondaryKey(const std::wstring& sKey) override { In("SetSecondaryKey").SetSecondaryKey(sKey); }
    void SetPath(const std::wstring& sPath) override { In("SetPath").SetPath(sPath); }
    void SetArtist(const std::wstring& sArtist) override { In("SetArtist").SetArtist(sArtist); }
    void SetTitle(const std::wstring& sTitle) override { In("SetTitle").SetTitle(sTitle); }
    void SetAlbum(const std::wstring& sAlbum) override { In("SetAlbum").SetAlbum(sAlbum); }
    void SetYear(std::int32_t lYear) override { In("SetYear").SetYear(lYear); }
    void SetRunTimemS(std::int32_t lRunTime) override { In("SetRunTimemS").SetRunTimemS(lRunTime); }
    void SetDurationmS(std::int32_t lDuration) override { In("SetDurationmS").SetDurationmS(lDuration); }
    void SetLastPlayed(DateTime dtWhen) override { In("SetLastPlayed").SetLastPlayed(dtWhen); }
    void SetOpener(bool bOpener) override { In("SetOpener").SetOpener(bOpener); }
    void SetCatLevel(std::int32_t lLevel) override { In("SetCatLevel").SetCatLevel(lLevel); }
    std::wstring CategoryKey() const override { return In("CategoryKey").CategoryKey(); }
    void SetCategoryKey(const std::wstring& sKey) override { In("SetCategoryKey").SetCategoryKey(sKey); }
    bool MustBeOpener() const override { return In("MustBeOpener").MustBeOpener(); }
    void SetMustBeOpener(bool bMust) override { In("SetMustBeOpener").SetMustBeOpener(bMust); }
    std::int32_t KindCode() const override { return In("KindCode").KindCode(); }
    void SetKindCode(std::int32_t lKind) override { In("SetKindCode").SetKindCode(lKind); }
    std::shared_ptr<Cut> CloneCut() const override
    {
        In("CloneCut");
        return bClonesNothing ? nullptr : m_cRecord->cValues->CloneCut();
    }

private:
    Cut& In(std::string_view sMember) const // a literal
    {
        ++calls[sMember];
        if (OnCall)
            OnCall(sMember);
        if (!failing.empty() && failing.contains(sMember))
            throw RuntimeError(error::ObjectNotSet);
        return *m_cRecord->cValues;
    }
};

// A media database in memory. Hands out each cut as the same object, unless told otherwise.
class FakeDataBase final : public DataBase
{
public:
    Cuts colCuts;
    std::vector<DataBaseEvents*> colListeners;
    bool bFreshObjects = false; // another object for the same cut each time, as a host's database may
    bool bAllCutsFails = false;
    bool bFails = false;       // every look-up
    bool bNewCutFails = false; // NewCut alone
    bool bNewCutIsNothing = false;
    std::shared_ptr<Cut> cNewCut; // what NewCut gives, once; a plain cut otherwise

    std::function<void()> OnAllCuts; // called before the cuts are handed over

    Cuts AllCuts() const override
    {
        if (OnAllCuts)
            OnAllCuts();
        if (bAllCutsFails)
            throw RuntimeError(error::DeviceIo);
        Cuts colOut;
        for (const std::shared_ptr<Cut>& cCut : colCuts)
            colOut.push_back(HandedOut(cCut));
        return colOut;
    }
    std::shared_ptr<Cut> CutByKey(const TextKey& cKey) const override
    {
        return First([&](const Cut& cCut) {
            const auto* pFake = dynamic_cast<const FakeCut*>(&cCut);
            return (pFake ? pFake->StoredKey() : cCut.Key()) == cKey;
        });
    }
    std::shared_ptr<Cut> CutByArtistTitle(const std::wstring& sArtist,
                                          const std::wstring& sTitle) const override
    {
        if (sArtist.empty() && sTitle.empty())
            return nullptr;
        return First([&](const Cut& cCut) {
            return EqualIgnoringCase(cCut.Artist(), sArtist) && EqualIgnoringCase(cCut.Title(), sTitle);
        });
    }
    std::shared_ptr<Cut> NewCut() const override
    {
        if (bNewCutFails)
            throw RuntimeError(error::DeviceIo);
        if (bNewCutIsNothing)
            return nullptr;
        return cNewCut ? cNewCut : NewPlainCut();
    }
    void Advise(DataBaseEvents& cEvents) override
    {
        if (std::find(colListeners.begin(), colListeners.end(), &cEvents) == colListeners.end())
            colListeners.push_back(&cEvents);
    }
    void Unadvise(DataBaseEvents& cEvents) noexcept override { std::erase(colListeners, &cEvents); }

    // Notifies every listener: Announce(&DataBaseEvents::CutsAdded, colCuts).
    template <class... Parameters, class... Arguments>
    void Announce(void (DataBaseEvents::*pEvent)(Parameters...), const Arguments&... arguments)
    {
        for (DataBaseEvents* cListener : std::vector(colListeners))
            (cListener->*pEvent)(arguments...);
    }

    // Makes a cut of the database.
    std::shared_ptr<FakeCut> Add(const std::wstring& sKey, const std::wstring& sCategoryText,
                                 std::int32_t lLevel, std::int32_t lRunTimemS = 180'000)
    {
        auto cCut = std::make_shared<FakeCut>();
        cCut->SetKey(sKey);
        cCut->SetArtist(L"Artist of " + sKey);
        cCut->SetTitle(L"Title of " + sKey);
        cCut->SetCategoryText(sCategoryText);
        cCut->SetCatLevel(lLevel);
        cCut->SetRunTimemS(lRunTimemS);
        cCut->lID = ++m_lLastID;
        cCut->calls.clear();
        colCuts.push_back(cCut);
        return cCut;
    }

    // Makes cuts of the database, written as TreeText writes a tree: "Rock 1: a b | Pop 1: a". Returns the
    // first, if any.
    std::shared_ptr<FakeCut> AddTree(const std::wstring& sTree)
    {
        const std::size_t first = colCuts.size();
        std::wistringstream cWords(L"| " + sTree);
        std::wstring sName;
        std::int32_t lLevel = 0;
        wchar_t colon = L':';
        for (std::wstring sWord; cWords >> sWord;)
            if (sWord == L"|")
                cWords >> sName >> lLevel >> colon;
            else if (const std::shared_ptr<FakeCut> cKnown = Own(sWord))
                cKnown->AddCategoryName(sName);
            else
                Add(sWord, sName, lLevel);
        return first < colCuts.size() ? std::static_pointer_cast<FakeCut>(colCuts[first]) : nullptr;
    }
    // The cut with a key that Add has made; none when there is none.
    std::shared_ptr<FakeCut> Own(const std::wstring& sKey) const
    {
        for (const std::shared_ptr<Cut>& cCut : colCuts)
            if (const auto cFake = std::dynamic_pointer_cast<FakeCut>(cCut);
                cFake && cFake->StoredKey() == TextKey(sKey))
                return cFake;
        return nullptr;
    }

    void Remove(const Cut& cCut)
    {
        std::erase_if(colCuts, [&](const std::shared_ptr<Cut>& cOwn) { return cOwn.get() == &cCut; });
    }

private:
    std::int32_t m_lLastID = 0;

    std::shared_ptr<Cut> HandedOut(const std::shared_ptr<Cut>& cCut) const
    {
        const auto* pFake = bFreshObjects ? dynamic_cast<const FakeCut*>(cCut.get()) : nullptr;
        return pFake ? pFake->Twin() : cCut;
    }
    std::shared_ptr<Cut> First(const std::function<bool(const Cut&)>& matches) const
    {
        if (bFails)
            throw RuntimeError(error::DeviceIo);
        for (const std::shared_ptr<Cut>& cCut : colCuts)
        {
            if (matches(*cCut))
                return HandedOut(cCut);
        }
        return nullptr;
    }
};

} // namespace ravlo::test
