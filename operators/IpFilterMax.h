#pragma once
// ClIpFilterMax: the maximum of a sliding window, along rows (Mode X), down
// columns (Mode Y) or both, one pass after the other (Mode XY).
#include "operators/IpFilterExtreme.h"

class ClIpFilterMax : public TpIpFilterExtreme<true>
{
public:
    ClProcessorBase* NewInstance() const override { return NewProcessor<ClIpFilterMax>(); }
    const char* GetName() const override { return "ClIpFilterMax"; }
};
