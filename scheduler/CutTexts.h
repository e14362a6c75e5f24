// SPDX-License-Identifier: MIT
#pragma once

#include "media/Cut.h"
#include "modscheduler/ModScheduler.h"
#include "scheduler/OrderRecords.h"

#include <cstddef>
#include <string>

namespace ravlo
{

// Reads the texts of cuts for the records of one main category. An artist or title that cannot be read
// becomes blank in the record; nothing reads it back. Of throws for a cut without a key, which cannot be
// saved.
class CutTexts
{
public:
    CutTexts(ModScheduler& cMod, const std::wstring& sCatName) noexcept : m_cMod(cMod), m_sCatName(sCatName)
    {
    }
    OrderTexts Of(const Cut& cCut);
    // Logs in one line which texts could not be read.
    void Report();

private:
    template <class Read> std::string TextOrBlank(const std::wstring& sKey, Read&& read);

    ModScheduler& m_cMod;
    const std::wstring& m_sCatName;
    std::size_t m_unread = 0;
    std::wstring m_sFirst; // the first text that could not be read: its cut and why
};

} // namespace ravlo
