// SPDX-License-Identifier: MIT
// Lets a test program run out of memory. Replaces the allocation functions, so include it in one source file
// of a program only.
#pragma once

#include <cstdlib>
#include <new>

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

} // namespace ravlo::test
