#pragma once
// ClIpSimpleBacklightCheck: reduces a capture to 28 numbers, one per
// horizontal band of 16 rows: the mean of the band's 256 darkest pixels of
// the dark image less that of the backlight image. The finger half compares
// the profile of one capture with that of the previous one to see a moving
// finger; the stage itself only measures.
#include "processing/IpStageBase.h"

class ClIpSimpleBacklightCheck : public NewIpBase::ClIpStageBase
{
public:
    static constexpr int kBands = 28;

    ClIpSimpleBacklightCheck();

    void SetDefaults() override;
    ClProcessorBase* NewInstance() const override;
    const char* GetName() const override { return "ClIpSimpleBacklightCheck"; }
    int32_t Process() override;

    ClImage* pInBacklightImage = nullptr;
    ClImage* pInDarkImage = nullptr;
    // Where the 28 values go: the own profile unless the caller redirects it.
    double m_adProfile[kBands] = {};
    double* m_pdOutProfile = m_adProfile;
};
