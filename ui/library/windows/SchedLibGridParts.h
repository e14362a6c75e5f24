// SPDX-License-Identifier: MIT
#pragma once

// For the parts of clsSchedLibGridWindow alone.

#include "ui/library/clsSchedLibGridView.h"

#include <cstddef>

namespace ravlo
{

// The list paints nothing while one exists: changing many rows would repaint at each.
class PaintingOff
{
public:
    explicit PaintingOff(clsSchedLibGridView& cView) : m_cView(cView) { m_cView.SetRedraw(false); }
    ~PaintingOff() { m_cView.SetRedraw(true); }
    PaintingOff(const PaintingOff&) = delete;
    PaintingOff& operator=(const PaintingOff&) = delete;

private:
    clsSchedLibGridView& m_cView;
};

inline int AsRow(std::size_t row) { return static_cast<int>(row); }

} // namespace ravlo
