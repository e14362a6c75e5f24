// SPDX-License-Identifier: MIT
#include "model/clsCat.h"
#include "support/EngineTest.h"
#include "support/OutOfMemory.h"

#include <gtest/gtest.h>

#include <new>
#include <regex>
#include <stdexcept>
#include <type_traits>

namespace ravlo::test
{
namespace
{

static_assert(std::is_nothrow_copy_constructible_v<RuntimeError>);

template <class Exception> RuntimeError ErrorOf(const Exception& exception)
{
    try
    {
        throw exception;
    }
    catch (...)
    {
        const Memory cNone(0);
        return CurrentError();
    }
}

TEST(OutOfMemory, ErrorIsReportedWithoutMemory)
{
    const RuntimeError cFull(error::DiskFull, L"The disk is full, and this text is a long one");
    EXPECT_EQ(ErrorOf(cFull).Number(), error::DiskFull);
    EXPECT_EQ(ErrorOf(cFull).Description(), cFull.Description());
    for (const RuntimeError& cError :
         {ErrorOf(std::bad_alloc()), ErrorOf(std::runtime_error("a text there is no memory for"))})
    {
        EXPECT_EQ(cError.Number(), 7);
        EXPECT_EQ(cError.Description(), StandardDescription(7));
    }
}

TEST(OutOfMemory, ALineOfTheLogIsWrittenWholeOrNotAtAll)
{
    static constexpr std::wstring_view sLong = L"a line for which there may be no memory";
    const std::regex whole(
        "(0[12]/03/24 12:00:00 (RavloScheduler debugging log created\\.|first|last|a line for "
        "which there may be no memory)\r\n)+");
    const std::wstring sLog = L"C:\\Radio\\Debugging Logs\\Scheduler\\Scheduler ";
    for (const bool bNextDay : {false, true})
        for (int lAllocations = 0;; ++lAllocations)
        {
            RadioPorts cPorts;
            ModScheduler cMod(cPorts.Ports());
            cMod.StoreAppPath(sRadio);
            {
                const ModScheduler::LogScope cScope(cMod);
                cMod.WriteDebugLog(L"first");
                cPorts.cClock.Advance(bNextDay ? 86'400'000 : 0);
                {
                    const Memory cMemory(lAllocations);
                    cMod.WriteDebugLog(sLong);
                }
                cMod.WriteDebugLog(L"last");
            }
            const std::string log = cPorts.cFiles.Get(sLog + (bNextDay ? L"02.deb" : L"01.deb"));
            EXPECT_TRUE(std::regex_match(log, whole)) << log;
            EXPECT_TRUE(log.ends_with(" last\r\n"));
            if (!bRanOut)
                break;
        }
}

TEST(OutOfMemory, ALevelIsAddedWholeOrNotAtAll)
{
    for (int lAllocations = 0;; ++lAllocations)
    {
        RadioPorts cPorts;
        ModScheduler cMod(cPorts.Ports());
        const auto cMainCat = std::make_shared<clsCat>(cMod, L"Pop", 0);
        for (const std::int32_t lLevel : {1, 4, 7})
            cMainCat->AddSubCat(std::make_shared<clsCat>(cMod, L"Pop", lLevel));
        const auto cNew = std::make_shared<clsCat>(cMod, L"Pop", 2);
        bool bAdded = false;
        bool bFailed = false;
        try
        {
            const Memory cMemory(lAllocations);
            bAdded = cMainCat->AddSubCat(cNew);
        }
        catch (const std::bad_alloc&)
        {
            bFailed = true; // not even the box could be made
        }
        bFailed = bFailed || !bAdded;
        std::vector<std::int32_t> colLevels;
        for (const std::shared_ptr<clsCat>& cSubCat : *cMainCat->SubCats())
            colLevels.push_back(cSubCat->CatLevel());
        EXPECT_EQ(colLevels,
                  bFailed ? (std::vector<std::int32_t>{1, 4, 7}) : (std::vector<std::int32_t>{1, 2, 4, 7}))
            << lAllocations;
        EXPECT_EQ(cNew->MainCat(), bFailed ? nullptr : cMainCat);
        if (!bRanOut)
            break;
    }
}

} // namespace
} // namespace ravlo::test
