// SPDX-License-Identifier: MIT
#pragma once

#include "base/RuntimeError.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <ostream>
#include <string>

namespace ravlo
{

// The run-time error that some work raised; number 0 when it raised none.
struct Raised
{
    std::int32_t lNumber = 0;
    std::wstring sDescription;
    bool operator==(const Raised&) const = default;
};
inline std::ostream& operator<<(std::ostream& stream, const Raised& raised)
{
    return stream << raised.lNumber << ": " << testing::PrintToString(raised.sDescription);
}

template <class Work> Raised RaisedBy(Work work)
{
    try
    {
        work();
        return {};
    }
    catch (const RuntimeError& e)
    {
        return {e.Number(), e.Description()};
    }
}

template <class Work> std::int32_t NumberRaisedBy(Work work) { return RaisedBy(work).lNumber; }

} // namespace ravlo
