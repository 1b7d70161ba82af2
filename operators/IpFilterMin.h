#pragma once
// ClIpFilterMin: the minimum of a sliding window, along rows (Mode X), down
// columns (Mode Y) or both, one pass after the other (Mode XY).
#include "operators/IpFilterExtreme.h"

class ClIpFilterMin : public TpIpFilterExtreme<false>
{
public:
    ClProcessorBase* NewInstance() const override { return NewProcessor<ClIpFilterMin>(); }
    const char* GetName() const override { return "ClIpFilterMin"; }
};
