// SPDX-License-Identifier: MIT
#pragma once

#include "support/FakeDataBase.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>

namespace ravlo::test
{

// A database with batches, which it counts. A batch that ends without Commit puts the cuts back as they were
// when it began; so does a refused commit.
class BatchingDataBase final : public DataBase
{
public:
    FakeDataBase cInner;
    int lBegun = 0;
    int lCommitted = 0;
    int lRolledBack = 0;
    bool bHasBatches = true;
    std::function<void()> OnCommit; // right before and right after each
    bool bRefusesCommit = false;
    bool bRefusesBegin = false;

    Cuts AllCuts() const override { return cInner.AllCuts(); }
    std::shared_ptr<Cut> CutByKey(const TextKey& cKey) const override { return cInner.CutByKey(cKey); }
    std::shared_ptr<Cut> CutByArtistTitle(const std::wstring& sArtist,
                                          const std::wstring& sTitle) const override
    {
        return cInner.CutByArtistTitle(sArtist, sTitle);
    }
    std::shared_ptr<Cut> NewCut() const override { return cInner.NewCut(); }
    void Advise(DataBaseEvents& cEvents) override { cInner.Advise(cEvents); }
    void Unadvise(DataBaseEvents& cEvents) noexcept override { cInner.Unadvise(cEvents); }
    std::unique_ptr<Batch> BeginBatch() override
    {
        if (!bHasBatches)
            return nullptr;
        if (bRefusesBegin)
            throw RuntimeError(error::DeviceIo);
        ++lBegun;
        EXPECT_FALSE(bOpen);
        bOpen = true;
        return std::make_unique<OneBatch>(*this);
    }

    bool bOpen = false;

private:
    struct OneBatch final : Batch
    {
        explicit OneBatch(BatchingDataBase& cOwner) : cDataBase(cOwner)
        {
            for (const std::shared_ptr<Cut>& cCut : cOwner.cInner.colCuts)
                colBefore.push_back(cCut->CloneCut());
        }
        ~OneBatch() override
        {
            cDataBase.bOpen = false;
            if (bCommitted)
                return;
            ++cDataBase.lRolledBack;
            for (std::size_t cut = 0; cut < colBefore.size(); ++cut)
                Restore(*cDataBase.cInner.colCuts[cut], *colBefore[cut]);
        }
        // A rollback succeeds even when the cut's members are set to fail.
        static void Restore(Cut& cCut, const Cut& cBefore)
        {
            auto* pFake = dynamic_cast<FakeCut*>(&cCut);
            const std::set<std::string, std::less<>> failing =
                pFake ? std::exchange(pFake->failing, {}) : std::set<std::string, std::less<>>();
            cCut.SetCategoryText(cBefore.CategoryText());
            cCut.SetCatLevel(cBefore.CatLevel());
            if (pFake)
                pFake->failing = failing;
        }
        void Commit() override
        {
            if (cDataBase.bRefusesCommit)
                throw RuntimeError(error::DiskFull);
            if (cDataBase.OnCommit)
                cDataBase.OnCommit();
            bCommitted = true;
            ++cDataBase.lCommitted;
            if (cDataBase.OnCommit)
                cDataBase.OnCommit();
        }
        BatchingDataBase& cDataBase;
        Cuts colBefore;
        bool bCommitted = false;
    };
};

} // namespace ravlo::test
