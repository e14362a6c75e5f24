// SPDX-License-Identifier: MIT
#include "model/clsCat.h"
#include "support/EngineTest.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <new>
#include <stdexcept>
#include <type_traits>

namespace
{

// How many more allocations of this program succeed; below 0: all do.
int lLeft = -1;
bool bRanOut = false;

void* Allocated(std::size_t size) noexcept
{
    if (lLeft == 0)
    {
        bRanOut = true;
        return nullptr;
    }
    if (lLeft > 0)
        --lLeft;
    return std::malloc(size == 0 ? 1 : size);
}

} // namespace

// Not inlined: the compiler would take malloc and delete, or new and free, for a mismatched pair.
[[gnu::noinline]] void* operator new(std::size_t size)
{
    if (void* const p = Allocated(size))
        return p;
    throw std::bad_alloc();
}
[[gnu::noinline]] void* operator new[](std::size_t size) { return operator new(size); }
[[gnu::noinline]] void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    return Allocated(size);
}
[[gnu::noinline]] void* operator new[](std::size_t size, const std::nothrow_t&) noexcept
{
    return Allocated(size);
}
[[gnu::noinline]] void operator delete(void* p) noexcept { std::free(p); }
[[gnu::noinline]] void operator delete[](void* p) noexcept { std::free(p); }
[[gnu::noinline]] void operator delete(void* p, std::size_t) noexcept { std::free(p); }
[[gnu::noinline]] void operator delete[](void* p, std::size_t) noexcept { std::free(p); }
[[gnu::noinline]] void operator delete(void* p, const std::nothrow_t&) noexcept { std::free(p); }
[[gnu::noinline]] void operator delete[](void* p, const std::nothrow_t&) noexcept { std::free(p); }

namespace ravlo::test
{
namespace
{

// While one exists only so many allocations succeed.
class Memory
{
public:
    explicit Memory(int lAllocations) noexcept
    {
        bRanOut = false;
        lLeft = lAllocations;
    }
    ~Memory() { lLeft = -1; }
    Memory(const Memory&) = delete;
    Memory& operator=(const Memory&) = delete;
};

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

TEST(OutOfMemory, AnErrorIsToldWithoutMemory)
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
