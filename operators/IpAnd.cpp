#include "operators/IpAnd.h"

#include <algorithm>

ClProcessorBase* ClIpAnd::NewInstance() const
{
    return NewProcessor<ClIpAnd>();
}

bool ClIpAnd::CheckInput()
{
    if (!ClIp2to1Base::CheckInput())
        return false;
    const ClImage& first = *m_pInImage1;
    const ClImage& second = *m_pInImage2;
    return first.DataType() == second.DataType() && (first.DataType() & 64) == 0 &&
           (first.Planes() == second.Planes() || second.Planes() == 1);
}

int32_t ClIpAnd::Dispatch(const ClImage& first, const ClImage& second, ClImage& out,
                          int32_t nOverlapWidth, int32_t nOverlapHeight, uint32_t nFirstPlanes,
                          uint32_t nSecondPlanes, int64_t nFirstStart, int64_t,
                          int64_t nSecondStart, int64_t, int64_t nOutStart, int64_t)
{
    // Each step combines nPixelBytes bytes of the first with one byte of the
    // second: equal planes step over width × planes single bytes, three or
    // four planes against one over pixels.
    int64_t nPixelBytes;
    if (nFirstPlanes == nSecondPlanes)
        nPixelBytes = 1;
    else if (nSecondPlanes == 1 && (nFirstPlanes == 3 || nFirstPlanes == 4))
        nPixelBytes = nFirstPlanes;
    else
        return 0;
    const int64_t nPixels = nFirstPlanes == nSecondPlanes
                                ? static_cast<int64_t>(nOverlapWidth) * nFirstPlanes
                                : nOverlapWidth;
    if (nPixels <= 0 || nOverlapHeight <= 0 || first.Data() == nullptr ||
        second.Data() == nullptr || out.Data() == nullptr)
        return 0;

    const int64_t nRowStep = first.RowStride();
    const int64_t nFirstOffset = nFirstStart * first.SampleSize();
    const int64_t nSecondOffset = nSecondStart * second.SampleSize();
    const int64_t nOutOffset = nOutStart * out.SampleSize();
    for (int32_t y = 0; y < nOverlapHeight; ++y)
    {
        const int64_t o1 = nFirstOffset + y * nRowStep;
        const int64_t o2 = nSecondOffset + y * nRowStep;
        const int64_t oo = nOutOffset + y * nRowStep;
        // The row step is the first's; rows that would leave the second's or
        // the output's buffer are cut where the buffer ends.
        const int64_t nFit =
            std::min({nPixels, (first.ByteSize() - o1) / nPixelBytes, second.ByteSize() - o2,
                      (out.ByteSize() - oo) / nPixelBytes});
        if (nFit <= 0)
            break;
        const uint8_t* pFirst = first.Data() + o1;
        const uint8_t* pSecond = second.Data() + o2;
        uint8_t* pOut = out.Data() + oo;
        if (nPixelBytes == 1)
        {
            for (int64_t x = 0; x < nFit; ++x)
                pOut[x] = pFirst[x] & pSecond[x];
            continue;
        }
        for (int64_t x = 0; x < nFit; ++x)
        {
            const uint8_t b = pSecond[x];
            for (int64_t k = 0; k < nPixelBytes; ++k)
                pOut[x * nPixelBytes + k] = pFirst[x * nPixelBytes + k] & b;
        }
    }
    return 0;
}
