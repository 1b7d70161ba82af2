#pragma once
// ClIp2to1Base: two input images, the second placed at an offset from the
// first, combined sample by sample into one output of a free type. The base
// checks the inputs, builds the output canvas that holds both images,
// computes where their overlap lies in each buffer and selects the loop for
// the three pixel types; outside the overlap the canvas keeps the inputs'
// samples on the fill colour.
#include "image/FpImage.h"
#include "processing/Ip2To1Paths.h"
#include "processing/ProcessorBase.h"
#include "processing/SelectDataTypes.h"

class ClIp2to1Base : public ClProcessorBase
{
public:
    static constexpr uint32_t kMaxFillPlanes = 4;

    ClIp2to1Base();

    void DescribeInterface(ClParameterInterface& list) override;
    void SetDefaults() override;
    void DefineParameters(ClParameterContainer& container) override;
    // True when both inputs and the output are set and both inputs have data.
    bool CheckInput() override;
    // -37 without inputs; -44 for differing sizes or any offset while the
    // sizes must be equal.
    int32_t Init() override;
    int32_t Process() override;

    int32_t Run(ClImage* pFirst, ClImage* pSecond, ClImage* pOut,
                ClImage::EDataType eOutType = ClImage::eDefaultType);
    using ClProcessorBase::Run;

    // Combines the overlap: for each overlap row, equal planes run over width
    // × planes samples, three planes against one use the second's sample for
    // all three, other pairs do nothing. Two 8-bit inputs with the lookup flag
    // go through a 65536-entry table. -101 for an unknown type.
    virtual int32_t Dispatch(const ClImage& first, const ClImage& second, ClImage& out,
                             int32_t nOverlapWidth, int32_t nOverlapHeight, uint32_t nFirstPlanes,
                             uint32_t nSecondPlanes, int64_t nFirstStart, int64_t nFirstPitch,
                             int64_t nSecondStart, int64_t nSecondPitch, int64_t nOutStart,
                             int64_t nOutPitch);
    // The function of one pair of samples.
    virtual double PixelOp(const ClImage& first, const ClImage& second, const ClImage& out,
                           double dFirst, double dSecond);

    ClImage* m_pInImage1 = nullptr;
    ClImage* m_pInImage2 = nullptr;
    ClImage* m_pOutImage = nullptr;
    // Sample type of the output; eDefaultType takes the first input's type.
    ClImage::EDataType m_eOutImageType = ClImage::eDefaultType;
    bool m_bSizeMustBeEqual = true;
    // Background of a one-plane canvas.
    double m_dFillColor = 0.0;
    // Background of a canvas of two to four planes. Nothing in the system
    // assigns them; they start at the fill colour.
    double m_dPlaneFillColors[kMaxFillPlanes];
    // Where the second image lies relative to the first. The platform's long
    // these stand for is 32 bits wide; all geometry is computed in 64 bits.
    int32_t m_nOffsetX = 0;
    int32_t m_nOffsetY = 0;

protected:
    // The loops of Dispatch over the overlap with op as the function of one
    // pair of samples (as doubles). An operator passes its own PixelOp,
    // named with its class, so that the call is bound when compiled and
    // inlined rather than made virtually per sample; the base's own Dispatch
    // serves a class that supplies PixelOp alone.
    template <typename Op>
    int32_t DispatchPixels(const ClImage& first, const ClImage& second, ClImage& out,
                           const Ip2To1Paths::Overlap& overlap, Op&& op);

    // Computed per run: the overlap and where it starts in each buffer, in
    // samples. The starts are 64-bit so that no offset can wrap them.
    int32_t m_nOverlapWidth = 0;
    int32_t m_nOverlapHeight = 0;
    int64_t m_nOutStart = 0;
    int64_t m_nIn1Start = 0;
    int64_t m_nIn2Start = 0;
    // Selects the table path of the base's own Dispatch.
    bool m_bUseLookup = true;

private:
    bool HasImages() const;
};

template <typename Op>
int32_t ClIp2to1Base::DispatchPixels(const ClImage& first, const ClImage& second, ClImage& out,
                                     const Ip2To1Paths::Overlap& overlap, Op&& op)
{
    return SelectDataTypes(
        first.DataType(), second.DataType(), out.DataType(),
        [&](auto tag1, auto tag2, auto tagOut)
        {
            using T1 = typename decltype(tag1)::Type;
            using T2 = typename decltype(tag2)::Type;
            using TO = typename decltype(tagOut)::Type;
            if constexpr (std::is_same_v<T1, uint8_t> && std::is_same_v<T2, uint8_t>)
            {
                if (m_bUseLookup)
                {
                    Ip2To1Paths::RunTable<TO>(first, second, out, overlap, op);
                    return 0;
                }
            }
            Ip2To1Paths::RunLoop<T1, T2, TO>(
                first, second, out, overlap,
                [&](T1 a, T2 b) {
                    return SampleFromDouble<TO>(op(static_cast<double>(a), static_cast<double>(b)));
                });
            return 0;
        });
}
