// SPDX-License-Identifier: MIT
#pragma once

#include "comkit/ComPtr.h"
#include "comkit/Errors.h"

#include <windows.h>

#include <cstdio>
#include <cstdlib>

namespace ravlo::bench
{

// A new object of a server DLL that lies next to the program, without registration.
template <class I> ComPtr<I> New(const wchar_t* sLibrary, REFCLSID clsid)
{
    using GetClassObject = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);
    const HMODULE hDll = ::LoadLibraryW(sLibrary);
    if (!hDll)
        throw RuntimeError(error::FileNotFound);
    const auto get = reinterpret_cast<GetClassObject>(
        reinterpret_cast<void*>(::GetProcAddress(hDll, "DllGetClassObject")));
    void* pvFactory = nullptr;
    ThrowIfFailed(get(clsid, IID_IClassFactory, &pvFactory));
    const auto cFactory = ComPtr<IClassFactory>::Adopt(static_cast<IClassFactory*>(pvFactory));
    void* pvObject = nullptr;
    ThrowIfFailed(cFactory->CreateInstance(nullptr, __uuidof(I), &pvObject));
    return ComPtr<I>::Adopt(static_cast<I*>(pvObject));
}

// Runs a benchmark in a single-threaded apartment. Returns the exit status of the program: success when all
// figures are within their limits.
template <class Benchmark> int RunComBench(Benchmark isWithinLimits)
{
    if (FAILED(::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)))
        return EXIT_FAILURE;
    try
    {
        return isWithinLimits() ? EXIT_SUCCESS : EXIT_FAILURE;
    }
    catch (const RuntimeError& cError)
    {
        std::printf("%d %ls\n", static_cast<int>(cError.Number()), cError.Description().c_str());
        return EXIT_FAILURE;
    }
}

} // namespace ravlo::bench
