// SPDX-License-Identifier: MIT
#include "scheduler/CutTexts.h"

#include "base/Text.h"

namespace ravlo
{

OrderTexts CutTexts::Of(const Cut& cCut)
{
    const std::wstring sKey = cCut.Key().Text();
    return {TextOrBlank(sKey, [&] { return cCut.Artist(); }), TextOrBlank(sKey, [&] { return cCut.Title(); }),
            m_cMod.Ports().cCodePage.Encode(sKey)};
}

template <class Read> std::string CutTexts::TextOrBlank(const std::wstring& sKey, Read&& read)
{
    try
    {
        return m_cMod.Ports().cCodePage.Encode(read());
    }
    catch (const RuntimeError& cError)
    {
        if (++m_unread == 1)
            m_sFirst = sKey + L": " + DecimalText(cError.Number()) + L" " + cError.Description();
        return {};
    }
}

void CutTexts::Report()
{
    if (m_unread != 0)
        m_cMod.WriteDebugLog(L"Saved as blanks in the order of " + m_sCatName +
                             L", texts that cannot be read: " + CountText(m_unread) + L", the first of " +
                             m_sFirst);
}

} // namespace ravlo
