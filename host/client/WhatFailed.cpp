// SPDX-License-Identifier: MIT
#include "host/client/WhatFailed.h"

#include "base/Utf8.h"
#include "comkit/Errors.h"
#include "host/day/HostError.h"

namespace ravlo
{

std::wstring WhatFailed()
{
    try
    {
        throw;
    }
    catch (const HostError& error)
    {
        return error.Text();
    }
    catch (const RuntimeError& error)
    {
        return error.Description();
    }
    catch (const ComError& error)
    {
        return error.Description();
    }
    catch (const std::exception& error)
    {
        return TextFromStore(error.what());
    }
}

} // namespace ravlo
