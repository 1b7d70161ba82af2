#pragma once
// ClIpExtractFeatures: turns a prepared capture into what the classifier
// needs. From the prepared image and the fast mask it makes the final finger
// mask, the masked image (the finger on mid grey) that every feature stage
// reads, and the 42 features in their fixed order: brightness and entropy of
// the dark and bright ridge areas here, the rest from the feature stages.
#include "image/ArrayStatic.h"
#include "processing/IpStageBase.h"

class ClHistogram;

class ClIpExtractFeatures : public NewIpBase::ClIpStageBase
{
public:
    // Places of the vector that this driver fills itself or leaves constant.
    enum EFeature
    {
        eDarkMean = 0,
        eDarkDeviation = 1,
        eDarkEntropy = 2,
        eBrightMean = 3,
        eBrightDeviation = 4,
        eBrightEntropy = 5,
        eFeatureCount = 42
    };

    ClIpExtractFeatures();

    void SetDefaults() override;
    ClProcessorBase* NewInstance() const override;
    const char* GetName() const override { return "ClIpExtractFeatures"; }
    int32_t Process() override;

    // Mean and deviation of the bins 1 to 255 of an area's histogram and
    // the entropy sum p log2 p of the bins 1 to 254. Bin 0 is the image
    // outside the area: it counts only in the deviation's divisor.
    static void AreaStatistics(const ClHistogram& histogram, double adOut[3]);

    ClImage* pInImage = nullptr;    // the prepared capture, 8-bit, 320 by 480
    ClImage* pInFastMask = nullptr; // the fast mask, 0 and 255
    ClImage* pOutMask = nullptr;    // receives the final finger mask
    // The feature vector, replaced as a whole at the end of a run; the flow
    // hands it to the net.
    TpArrayStatic<double> m_Features;

    // The images of the last run, named as the algorithm names them.
    ClImage HighEnvelope, LowEnvelope, StretchedImage, SoftMask;
    ClImage FinalMask, BrightArea, DarkArea, BlurredMask, MaskedImage;

private:
    void StretchContrast();
    void MakeFinalMask();
    void MakeAreasAndMaskedImage();
    // Mean, deviation and entropy of the masked image over one area.
    void AddAreaFeatures(ClImage& area, TpArrayDynamic<double, 10>& features);
    void AddStageFeatures(TpArrayDynamic<double, 10>& features);
    void RunStage(ClProcessorBase& stage);

    ClImage m_Scratch;
    ClImage m_Labels;
};
