#pragma once
// ClIpGetMoonValues: how much fine structure a wavelet denoising takes out of
// a print. The result, the spread of what was removed, is one feature.
#include "processing/IpStageBase.h"

class ClIpGetMoonValues : public NewIpBase::ClIpStageBase
{
public:
    ClIpGetMoonValues();

    void SetDefaults() override;
    void DefineParameters(ClParameterContainer& container) override;
    ClProcessorBase* NewInstance() const override;
    const char* GetName() const override { return "ClIpGetMoonValues"; }
    int32_t Process() override;

    // Steps of Process that work on one image, public so that each can be
    // checked on its own. Both take the double image of a run, W and H
    // multiples of 4.
    //
    // The noise scale: the standard deviation of the samples of the three
    // quarters that hold the detail bands (stored rows 0 to H/2 - 1 of the
    // left half, then every row of the right half, each row by row).
    static double PixelSigma(const ClImage& image);
    // Hard thresholding of the two-level coefficients: the level 1 bands
    // with dT1, the level 2 bands with dT2, the approximation (stored rows
    // from 3H/4, columns below W/4) untouched.
    static void CutDetailBands(ClImage& coefficients, double dT1, double dT2);

    ClImage* pInImage = nullptr;
    double dOutDeviation = 0.0;
    // Where the result is written; the parameter binds through it.
    double* m_pdOutDeviation = &dOutDeviation;

private:
    void CheckGeometry() override;
};
