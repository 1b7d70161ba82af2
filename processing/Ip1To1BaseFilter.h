#pragma once
// The functor line's filter base: adds the window width, the direction mode
// and the two signed 8-bit step images (Dx, Dy) that the directed modes walk.
#include "processing/FilterMode.h"
#include "processing/IpFunctor1To1Base.h"

class ClIp1To1BaseFilter : public ClIpFunctor1To1Base
{
public:
    ClIp1To1BaseFilter();

    void SetDefaults() override;
    void DefineParameters(ClParameterContainer& container) override;
    // The base check, then the step images of the directed modes.
    void CheckParameters() override;

    int32_t m_nMode;
    int32_t m_nFilterWidth;
    ClImage* m_pDxImage;
    ClImage* m_pDyImage;
};
