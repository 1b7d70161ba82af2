#pragma once
// ClIpJoinPlanes: puts up to four one-plane images together into one image of
// interleaved planes; absent planes can be filled with a constant.
#include "image/FpImage.h"
#include "processing/ProcessorBase.h"

class ClIpJoinPlanes : public ClProcessorBase
{
public:
    static constexpr uint32_t kMaxPlanes = 4;

    ClIpJoinPlanes();

    void DescribeInterface(ClParameterInterface& list) override;
    void SetDefaults() override;
    void DefineParameters(ClParameterContainer& container) override;
    ClProcessorBase* NewInstance() const override;
    const char* GetName() const override { return "ClIpJoinPlanes"; }
    int32_t Process() override;

    // Stores the images and runs; a null plane counts as absent.
    int32_t Run(ClImage* pOut, ClImage* pPlane0, ClImage* pPlane1 = nullptr,
                ClImage* pPlane2 = nullptr, ClImage* pPlane3 = nullptr);
    using ClProcessorBase::Run;

    ClImage* m_pInPlane[kMaxPlanes];
    // Values of absent planes; NaN gives whatever its truncation gives.
    double m_dInFillcolors[kMaxPlanes];
    ClImage* m_pOutImage;
    ClImage::EContent m_eOutContent;
    bool m_bFillEmptyPlanes;
    // Planes of the output when the content is eUnknown.
    uint32_t m_nPlanes;

private:
    // Planes of the output for the content, or 0 for a content that is not
    // joined here.
    uint32_t PlanesOfContent() const;
};
