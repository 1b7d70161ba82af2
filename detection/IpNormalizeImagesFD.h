#pragma once
// Sentivo::ClIpNormalizeImagesFD: removes from a capture what is not ridge
// structure. The image is band-passed in the frequency domain (slow
// illumination changes and pixel noise go, the ridges oscillate around mid
// grey) and scaled into the 8-bit range; an image without enough contrast
// becomes flat grey instead. Works on the capture size, 320 by 480, only.
#include "processing/Ip1To1Base.h"

namespace Sentivo
{

class ClIpNormalizeImagesFD : public NewIpBase::ClIp1to1Base
{
public:
    static constexpr int32_t kWidth = 320;
    static constexpr int32_t kHeight = 480;
    static constexpr int32_t kSpectrumWidth = kWidth / 2 + 1;

    ClIpNormalizeImagesFD();

    ClProcessorBase* NewInstance() const override;
    const char* GetName() const override { return "ClIpNormalizeImagesFD"; }
    // The base's test of the input, then the capture size (-44).
    void CheckInputImages() override;
    int32_t Process() override;

    // The filter of the half spectrum, 480 rows of 161 entries: a Butterworth
    // high pass of order 4 at radius 12 times a low pass of order 4 at radius
    // 100. Built once per process, on first use, thread-safely.
    static const double* BandPassTable();
};

} // namespace Sentivo
