#pragma once
// ClIpSplitPlanes: breaks an image of up to four interleaved planes into
// one-plane images, one per requested plane.
#include "image/FpImage.h"
#include "processing/ProcessorBase.h"

class ClIpSplitPlanes : public ClProcessorBase
{
public:
    static constexpr uint32_t kMaxPlanes = 4;

    ClIpSplitPlanes() = default;

    void DescribeInterface(ClParameterInterface& list) override;
    void DefineParameters(ClParameterContainer& container) override;
    ClProcessorBase* NewInstance() const override;
    const char* GetName() const override { return "ClIpSplitPlanes"; }
    int32_t Process() override;

    // Stores the images and runs; a null plane is skipped.
    int32_t Run(ClImage* pIn, ClImage* pPlane0, ClImage* pPlane1 = nullptr,
                ClImage* pPlane2 = nullptr, ClImage* pPlane3 = nullptr);
    using ClProcessorBase::Run;

    ClImage* m_pInImage = nullptr;
    ClImage* m_pOutPlane[kMaxPlanes] = {nullptr, nullptr, nullptr, nullptr};
};
