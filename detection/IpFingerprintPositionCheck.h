#pragma once
// ClIpFingerprintPositionCheck: judges from the fast mask whether a print
// lies on the platen, large enough, reaching the lower edge and not skewed.
// It has no output: it returns, or throws the code that tells the user what
// to correct.
#include "processing/IpStageBase.h"

class ClIpFingerprintPositionCheck : public NewIpBase::ClIpStageBase
{
public:
    ClIpFingerprintPositionCheck();

    void SetDefaults() override { pInImage = nullptr; }
    ClProcessorBase* NewInstance() const override;
    const char* GetName() const override { return "ClIpFingerprintPositionCheck"; }
    int32_t Process() override;

    ClImage* pInImage = nullptr;

private:
    void CheckArea() const;
    void CheckSkew() const;
};
