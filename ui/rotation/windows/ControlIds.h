// SPDX-License-Identifier: MIT
#pragma once

namespace ravlo
{

// The controls of a rotation list's window. Close is IDCANCEL.
enum RotationListId : int
{
    eIdListHeading = 100,
    eIdRotationList,
    eIdListSentence,
    eIdListCopy,
    eIdListRefresh,
};

inline constexpr const wchar_t* sRotationListClass = L"RavloRotationList";

} // namespace ravlo
