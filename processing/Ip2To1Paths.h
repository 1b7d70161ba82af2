#pragma once
// The sample loops of the two-to-one operators over the overlap of their
// inputs: the per-type loop with an inlined sample function, and the 8-bit
// table path that replaces it for large 8-bit pairs.
#include <cstring>

#include "image/ArrayStatic.h"
#include "image/FpImage.h"
#include "image/SampleTraits.h"

namespace Ip2To1Paths
{

// Where the overlap lies in the three buffers, in samples from each buffer's
// start, and how many samples a row is apart.
struct Overlap
{
    int32_t nWidth;
    int32_t nHeight;
    uint32_t nFirstPlanes;
    uint32_t nSecondPlanes;
    int64_t nFirstStart;
    int64_t nFirstPitch;
    int64_t nSecondStart;
    int64_t nSecondPitch;
    int64_t nOutStart;
    int64_t nOutPitch;
};

// Whether nRows rows of nSamples samples from nStart, nPitch apart, stay
// inside the image's buffer.
inline bool InsideBuffer(const ClImage& image, int64_t nStart, int64_t nPitch, int64_t nRows,
                         int64_t nSamples)
{
    if (image.Data() == nullptr || image.SampleSize() == 0 || nStart < 0 || nPitch < 0)
        return false;
    const int64_t nTotal = image.ByteSize() / image.SampleSize();
    return nStart + (nRows - 1) * nPitch + nSamples <= nTotal;
}

// The plane pairs the loops handle: equal planes, and three planes against
// one. Everything else does nothing.
inline bool HandledPlanes(uint32_t nFirstPlanes, uint32_t nSecondPlanes)
{
    return nFirstPlanes == nSecondPlanes || (nFirstPlanes == 3 && nSecondPlanes == 1);
}

// Output sample = op(first sample, second sample) over the overlap. Equal
// planes run over width × planes samples per row; three planes against one
// combine the second's sample with each of the first's three. A negative
// overlap does nothing. The geometry is checked against the three buffers
// first, so no call can make the loop leave them.
template <typename T1, typename T2, typename TO, typename Op>
void RunLoop(const ClImage& first, const ClImage& second, ClImage& out, const Overlap& g, Op&& op)
{
    if (g.nWidth <= 0 || g.nHeight <= 0 || !HandledPlanes(g.nFirstPlanes, g.nSecondPlanes))
        return;
    const int64_t nFirstSamples = static_cast<int64_t>(g.nWidth) * g.nFirstPlanes;
    const int64_t nSecondSamples = static_cast<int64_t>(g.nWidth) * g.nSecondPlanes;
    if (!InsideBuffer(first, g.nFirstStart, g.nFirstPitch, g.nHeight, nFirstSamples) ||
        !InsideBuffer(second, g.nSecondStart, g.nSecondPitch, g.nHeight, nSecondSamples) ||
        !InsideBuffer(out, g.nOutStart, g.nOutPitch, g.nHeight, nFirstSamples))
        return;

    const T1* pFirst = reinterpret_cast<const T1*>(first.Data()) + g.nFirstStart;
    const T2* pSecond = reinterpret_cast<const T2*>(second.Data()) + g.nSecondStart;
    TO* pOut = reinterpret_cast<TO*>(out.Data()) + g.nOutStart;
    for (int32_t y = 0; y < g.nHeight; ++y)
    {
        if (g.nFirstPlanes == g.nSecondPlanes)
        {
            for (int64_t i = 0; i < nFirstSamples; ++i)
                pOut[i] = op(pFirst[i], pSecond[i]);
        }
        else
        {
            for (int64_t x = 0; x < g.nWidth; ++x)
            {
                const T2 b = pSecond[x];
                pOut[3 * x] = op(pFirst[3 * x], b);
                pOut[3 * x + 1] = op(pFirst[3 * x + 1], b);
                pOut[3 * x + 2] = op(pFirst[3 * x + 2], b);
            }
        }
        pFirst += g.nFirstPitch;
        pSecond += g.nSecondPitch;
        pOut += g.nOutPitch;
    }
}

// Table path for two one-byte inputs: a cleared table of 65536 entries of the
// output's type, entry (a − first lower bound) × 256 + (b − second lower bound)
// being op(a, b) for a and b running over the inputs' bounds in steps of 1;
// then each output sample is table[first byte × 256 + second byte], the bytes
// read as unsigned. At most 256 steps are taken per input, so bounds wider
// than a byte cannot index past the table.
template <typename TO, typename Op>
void RunTable(const ClImage& first, const ClImage& second, ClImage& out, const Overlap& g, Op&& op)
{
    TpArrayStatic<TO> table(65536);
    std::memset(static_cast<void*>(table.Data()), 0, 65536 * sizeof(TO));
    const double dLower1 = first.LowerBound();
    const double dUpper1 = first.UpperBound();
    const double dLower2 = second.LowerBound();
    const double dUpper2 = second.UpperBound();
    for (int32_t ia = 0; ia < 256 && dLower1 + ia <= dUpper1; ++ia)
    {
        for (int32_t ib = 0; ib < 256 && dLower2 + ib <= dUpper2; ++ib)
            table[ia * 256 + ib] = SampleFromDouble<TO>(op(dLower1 + ia, dLower2 + ib));
    }
    RunLoop<uint8_t, uint8_t, TO>(first, second, out, g,
                                  [&](uint8_t a, uint8_t b)
                                  { return table[static_cast<uint32_t>(a) * 256 + b]; });
}

} // namespace Ip2To1Paths
