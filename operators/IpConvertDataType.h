#pragma once
// ClIpConvertDataType: converts every sample to another sample type, adding
// 0.5 before the truncation unless the rounding flag is cleared. Integer
// results wrap; nothing is clamped.
#include "processing/Ip1To1BaseOld.h"

class ClIpConvertDataType : public ClIp1to1Base
{
public:
    ClProcessorBase* NewInstance() const override;
    const char* GetName() const override { return "ClIpConvertDataType"; }
    int32_t Dispatch(const ClImage& in, ClImage& out) override;

    int32_t Run(ClImage* pIn, ClImage* pOut, ClImage::EDataType eOutType);
    using ClIp1to1Base::Run;

    // Adds 0.5 to each sample before the conversion, floating outputs
    // included. The stages that must keep 8-bit values exactly clear it.
    bool m_bRound = true;
};
