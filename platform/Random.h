// SPDX-License-Identifier: MIT
#pragma once

namespace ravlo
{

// Random numbers.
class Random
{
public:
    virtual ~Random() = default;
    // Seeds the generator from the timer.
    virtual void Randomize() = 0;
    // A fraction, at least 0 and below 1, uniformly distributed.
    virtual double Next() = 0;
};

} // namespace ravlo
