// SPDX-License-Identifier: MIT
#pragma once

#include "fuzz/com/Members.h"

#include <cstddef>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace ravlo::fuzz
{

// Random objects, texts and numbers of a host. Objects that calls return are passed in again.
class RandomValues
{
public:
    RandomValues(unsigned lSeed, std::wstring sFolder) : m_cChance(lSeed), m_sFolder(std::move(sFolder)) {}

    std::size_t Below(std::size_t count) { return m_cChance() % count; }
    bool OneIn(std::size_t count) { return Below(count) == 0; }

    // Keeps an object among about a hundred; the first ones are never replaced.
    void Keep(const VARIANT& value);
    void KeepForEver(IDispatch* pObject);
    // An object of that interface if there is one; any for IID_NULL. Null when there is none at all.
    ComPtr<IDispatch> Object(REFIID iid);

    // A value for a parameter; usually one of the right type.
    Variant For(const Parameter& parameter);
    std::wstring Text();

    // Releases everything.
    void Clear();

private:
    struct Kept
    {
        IID iid;
        ComPtr<IDispatch> cObject;
    };
    Variant Fitting(const Parameter& parameter);
    Variant Any();
    std::int32_t Number();
    double Real();

    std::mt19937 m_cChance;
    std::wstring m_sFolder;
    std::vector<Kept> m_colKept;
    std::size_t m_forEver = 0;
};

} // namespace ravlo::fuzz
