// SPDX-License-Identifier: MIT
#pragma once

#include "host/client/Scheduler.h"
#include "host/day/CommandLine.h"

#include <RavloScheduler.h>

namespace ravlo
{

// An option as the object takes it; omitted for the station's own.
Variant OptionVariant(const std::optional<bool>& bOn);

// The scheduler's rotation object for a populated scheduler. Throws the object's errors.
class RotationObject
{
public:
    explicit RotationObject(Scheduler& cScheduler);

    bool FairRotation() const;
    bool FeaturedArtists() const;
    // Saves the options that are given; the others stay.
    void Set(const RotationSwitches& rotation);
    // Puts the options that are given in force for as long as the scheduler lives; saves nothing.
    void UseForThisRun(const RotationSwitches& rotation);

    _clsRotation& Object() const noexcept { return *m_cRotation; }
    // Throws the object's error for a call of it that failed.
    void Check(HRESULT hResult) const;

private:
    ComPtr<_clsRotation> m_cRotation;
};

} // namespace ravlo
