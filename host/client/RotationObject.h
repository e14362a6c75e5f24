// SPDX-License-Identifier: MIT
#pragma once

#include "host/client/Scheduler.h"
#include "host/day/CommandLine.h"

#include <RavloScheduler.h>

namespace ravlo
{

// The scheduler's rotation object for a populated scheduler. Throws the object's errors.
class RotationObject
{
public:
    explicit RotationObject(Scheduler& cScheduler);

    bool FairRotation() const;
    bool FeaturedArtists() const;
    // Saves the options that are given; the others stay.
    void Set(const RotationSwitches& rotation);

    _clsRotation& Object() const noexcept { return *m_cRotation; }
    // Throws the object's error for a call of it that failed.
    void Check(HRESULT hResult) const;

private:
    ComPtr<_clsRotation> m_cRotation;
};

// Puts the options that are given in force and, at its end, those before back. Restore does that too, and
// throws when it cannot.
class RotationForARun
{
public:
    RotationForARun(RotationObject& cRotation, const RotationSwitches& rotation);
    RotationForARun(const RotationForARun&) = delete;
    RotationForARun& operator=(const RotationForARun&) = delete;
    ~RotationForARun();
    void Restore();

private:
    RotationObject& m_cRotation;
    RotationSwitches m_before;
};

} // namespace ravlo
