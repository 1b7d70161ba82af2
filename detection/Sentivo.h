#pragma once
// ClSentivo: the top-level processor. One run judges one capture: the finger
// half checks that a finger lies still and well placed, the fake half turns
// the capture into a score. The object keeps state between runs (the band
// profile of the previous capture, whether a finger was found, the prepared
// images of the last finger detection), so a handle holds one for its life.
#include <cstdint>

#include "classifier/TrainedNeuralNet.h"
#include "image/ArrayStatic.h"
#include "image/FpImage.h"
#include "processing/IpProcessorBase.h"

class ClSentivo : public NewIpBase::ClIpProcessorBase
{
public:
    // The capture geometry every stage is built for.
    static constexpr int32_t kImageWidth = 320;
    static constexpr int32_t kImageHeight = 480;
    static constexpr int kProfileBands = 28;

    // Bits of m_nMode.
    enum : uint8_t
    {
        eModeFinger = 1,
        eModeFake = 2
    };

    ClSentivo();
    ~ClSentivo() override = default;

    ClProcessorBase* NewInstance() const override;
    const char* GetName() const override { return "ClSentivo"; }
    void DefineParameters(ClParameterContainer& container) override;
    int32_t Init() override;
    void CheckInputImages() override;
    int32_t Process() override;

    // The score of a net output: the share of the false rejection rate in
    // both error rates at the threshold row the output stands for.
    double ScoreOfNetOutput(double dNetOutput) const;
    // Each setter fills in the other two query values.
    void SetQueryScore(const double& dScore);
    void SetQueryFAR(const double& dFAR);
    void SetQueryFRR(const double& dFRR);
    double& GetQueryScore() { return dQueryScore; }
    double& GetQueryFAR() { return dQueryFAR; }
    double& GetQueryFRR() { return dQueryFRR; }

    // The verdict of the falloff check on the filtered light difference:
    // whether its bands fall as a finger's do.
    static bool FalloffOfBands(const ClImage& difference);

    const ClImage& ValidAreaMask() const { return m_ValidAreaMask; }

    ClImage* pInCurrentImage = nullptr;
    ClImage* pInBacklightImage = nullptr;
    ClImage* pInDarkImage = nullptr;
    double dOutScore = 0.0;
    bool bMovementDetection = true;
    bool m_bStrict = true;
    int32_t nSecurityLevel = 1;
    uint8_t m_nMode = eModeFinger | eModeFake;
    double dQueryScore = 0.0;
    double dQueryFAR = 0.0;
    double dQueryFRR = 0.0;
    NeuralNet::ClTrainedNeuralNet m_Net;
    double m_PreviousProfile[kProfileBands] = {};
    bool m_bFingerFound = false;
    ClImage m_PreparedImage;
    ClImage m_FastMask;
    ClImage m_BacklightImage;
    TpArrayStatic<double> m_NetOutput;
    ClImage m_FinalMask;

    // What a run measured on its way, for tools that show a run. A tool
    // hooks a record in; the flow only writes to it and is the same without
    // it. Null in normal use.
    struct StRunRecord
    {
        bool bMovement;                 // the movement test was reached
        double dMovementSum;
        bool bPrepared;                 // the fast mask was made
        int8_t nFalloff;                // -1 not run, 0 rejected, 1 passed
        TpArrayStatic<double> Features; // empty until the features were made
        bool bNet;                      // the net ran
        double dNetOutput;
        ClImage MaskedImage;            // empty until the feature driver made it
        StRunRecord() { Clear(); }
        void Clear();
    };
    StRunRecord* m_pRecord = nullptr;

private:
    void BuildValidAreaMask();
    void RunFingerHalf();
    void RunFakeHalf();
    // Whether the light difference falls from band to band as a finger's
    // does; run at the strict level only.
    bool FalloffPasses();

    // The platen's valid area: a rectangle with a margin of 11 pixels that
    // ends at the bottom in a half-circle of radius 165. No stage reads it
    // yet; it is kept with the object as the capture's reference geometry.
    ClImage m_ValidAreaMask;
};
