#pragma once
// ClIpAnd: bitwise AND of two images of the same integer type, byte by byte.
#include "processing/Ip2To1Base.h"

class ClIpAnd : public ClIp2to1Base
{
public:
    ClProcessorBase* NewInstance() const override;
    const char* GetName() const override { return "ClIpAnd"; }
    // True when both inputs and the output are set, the inputs have data of
    // one type that is not floating, and their planes are equal or the second
    // has one plane.
    bool CheckInput() override;
    // Works on bytes: the counts are overlap width × planes without the sample
    // size, and the first image's row stride steps all three images, so only
    // 8-bit images are covered in full. Both limits belong to the operator.
    int32_t Dispatch(const ClImage& first, const ClImage& second, ClImage& out,
                     int32_t nOverlapWidth, int32_t nOverlapHeight, uint32_t nFirstPlanes,
                     uint32_t nSecondPlanes, int64_t nFirstStart, int64_t nFirstPitch,
                     int64_t nSecondStart, int64_t nSecondPitch, int64_t nOutStart,
                     int64_t nOutPitch) override;
};
