#pragma once
// ClIpPrepareFeatureExtraction: makes the two images that everything after
// it works on: the normalised capture and the fast mask, 255 where the
// normalised image shows ridge texture. The position check judges the mask;
// the feature driver refines it into the final finger mask.
#include "processing/IpStageBase.h"

class ClIpPrepareFeatureExtraction : public NewIpBase::ClIpStageBase
{
public:
    ClIpPrepareFeatureExtraction();

    void SetDefaults() override;
    ClProcessorBase* NewInstance() const override;
    const char* GetName() const override { return "ClIpPrepareFeatureExtraction"; }
    int32_t Process() override;
    // Steps 6-9 on the smoothed texture: 255 where it is above 32, then
    // isolated texture removed. Public so that its limits can be tested on
    // a texture of known values.
    void MakeFastMask(ClImage& texture, ClImage& mask);

    ClImage* pInImage = nullptr;
    ClImage* pOutMask = nullptr;  // the fast mask, 8-bit, 0 and 255
    ClImage* pOutImage = nullptr; // the normalised image

private:
    // Scratch images of a run, kept with the object.
    ClImage m_Envelope;  // local maximum, then the maximum of the texture
    ClImage m_Texture;   // local maximum less the pixel
    ClImage m_Smoothed;  // box means of the texture, then of the mask
};
