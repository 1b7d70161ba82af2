#pragma once
// Base of the functor line of neighbourhood filters: one input, one output,
// an optional region of interest (a box, or a mask that no filter supports
// yet) and an in-place flag. The concrete filter supplies Execute.
#include <cstdint>

#include "image/FpImage.h"
#include "processing/ProcessorBase.h"

class ClIpFunctor1To1Base : public ClProcessorBase
{
public:
    enum ERegionOfInterest : int32_t
    {
        eRoiAll = 0, // "ROI_ALL"
        eRoiBox = 1, // "ROI_BOX"
        eRoiMask = 2 // "ROI_MASK"
    };

    ClIpFunctor1To1Base();

    void SetDefaults() override;
    void DefineParameters(ClParameterContainer& container) override;

    // Checks, sizes the target and runs Execute; an output that is the input
    // is served through a temporary unless the in-place flag is set.
    int32_t Process() override;

    // Throws ClException for a missing or empty image and a bad region.
    virtual void CheckParameters();
    // The filter itself, from input into an output already sized by
    // PrepareOutput (or into the input itself when working in place).
    virtual int32_t Execute(ClImage& input, ClImage& output) = 0;
    // Sizes the output like the input.
    virtual void PrepareOutput(ClImage& output);

    ClImage* m_pInImage;
    ClImage* m_pOutImage;
    int32_t m_nRegionOfInterest;
    // Box edges, inclusive; bottom is the smaller row number.
    int32_t m_nROILeft;
    int32_t m_nROIRight;
    int32_t m_nROIBottom;
    int32_t m_nROITop;
    ClImage* m_pROIMask;
    bool m_bInPlace;
};
