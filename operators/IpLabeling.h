#pragma once
// ClIpLabeling: numbers the 4-connected regions of zero samples of a binary
// 8-bit image (non-zero samples are background) by a scan-line seed fill with
// an explicit stack. Labels 1 to the region count follow the row-major order
// of each region's first pixel; background keeps label 0.
#include <cstdint>

#include "image/ArrayDynamic.h"
#include "image/FpImage.h"
#include "processing/ProcessorBase.h"

class ClIpLabeling : public ClProcessorBase
{
public:
    struct StPos
    {
        int32_t x;
        int32_t y;
    };
    // The seed stack, growing by 100 entries when full.
    class ClLineParts : public TpArrayDynamic<StPos, 100>
    {
    };

    using ClProcessorBase::Run;
    int32_t Run(ClImage* pIn, ClImage* pOut);

    ClProcessorBase* NewInstance() const override;
    const char* GetName() const override { return "ClIpLabeling"; }
    int32_t Process() override;

    int32_t GetRegionCount() const { return m_nRegionCount; }

    ClImage* m_pInImage = nullptr;
    ClImage* m_pOutImage = nullptr; // eInt32 label image, sized by the run
    int32_t m_nRegionCount = 0;

private:
    void Fill(const ClImage& input, ClImage& labels, int32_t x, int32_t y, int32_t nLabel);

    ClLineParts m_LineParts;
};
