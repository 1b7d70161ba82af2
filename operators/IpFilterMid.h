#pragma once
// ClIpFilterMid: in spite of its name the mean of a sliding window, by
// running sums. Along a line the sum starts with the rounding term h = w / 2
// and the window is cut off at the ends; the XY box has no rounding term and
// divides by the number of samples the cut-off window holds.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "image/ArrayStatic.h"
#include "processing/IpFilterBase.h"

class ClIpFilterMid : public ClIpFilterBase
{
public:
    using ClProcessorBase::Run;
    // Runs with the mode already set (Mode XY unless changed).
    int32_t Run(ClImage* pIn, ClImage* pOut, int32_t nWidth);

    ClProcessorBase* NewInstance() const override;
    const char* GetName() const override { return "ClIpFilterMid"; }
    // Forces the width odd by setting its lowest bit; the member keeps it.
    int32_t Init() override;
    int32_t FilterSinglePlane() override;

    // The design's choice of an alternative Mode XY routine. The routines
    // give the same results, so both settings run the one routine there is.
    bool m_bAlternativeXY = false;

private:
    template <typename T> int32_t FilterType();
};

namespace RunningMean
{

// Sums: 64-bit integers for integer samples, the sample's own type for
// floating samples.
template <typename T> using Sum = std::conditional_t<std::is_floating_point_v<T>, T, int64_t>;

template <typename T, typename S> inline T Quotient(S s, int64_t nDivisor)
{
    if constexpr (std::is_integral_v<S>)
        return static_cast<T>(s / nDivisor); // integer division, toward zero
    else
        return static_cast<T>(s / static_cast<S>(nDivisor));
}

// Slides a window of w values along a line of n >= w values that are nStep
// apart, writing sum / (values in the window * nRows). The sum starts at s
// (the rounding term); the window grows over the first h outputs and
// shrinks over the last h, and the interior divides by w.
template <typename T, typename V, typename S>
void Slide(const V* pSrc, ptrdiff_t nSrcStep, T* pDst, ptrdiff_t nDstStep, int64_t n, int64_t w,
           S s, int64_t nRows)
{
    const int64_t h = w / 2;
    for (int64_t j = 0; j < h; ++j)
        s += pSrc[j * nSrcStep];
    int64_t i = 0;
    for (; i < h; ++i)
    {
        s += pSrc[(i + h) * nSrcStep];
        pDst[i * nDstStep] = Quotient<T>(s, (h + 1 + i) * nRows);
    }
    for (; i <= n - h - 1; ++i)
    {
        s += pSrc[(i + h) * nSrcStep];
        pDst[i * nDstStep] = Quotient<T>(s, w * nRows);
        s -= pSrc[(i - h) * nSrcStep];
    }
    for (int64_t nDivisor = 2 * h; i < n; ++i, --nDivisor)
    {
        pDst[i * nDstStep] = Quotient<T>(s, nDivisor * nRows);
        s -= pSrc[(i - h) * nSrcStep];
    }
}

// The mean of the cut-off box of 2 hx + 1 columns and 2 hy + 1 rows around
// each sample of a one-plane 8-bit image, with nBias added to each sum: the
// quotient (nBias + sum) / (samples in the box), rounded down. Mode X is a
// box of one row, Mode Y one of one column, both with the rounding term as
// bias; Mode XY has no bias.
//
// One sum per column over the rows of the box is kept row by row;
// the sums of the box along a row are differences of a prefix sum of the
// column sums, padded at both ends so that the cut-off box needs no test.
//
// The quotient is taken in single precision, which gives the integer
// quotient exactly while the box holds at most 65535 samples: sum + bias
// is then below 256 x 65535 < 2^24 and converts exactly, as does the
// count; the exact quotient is below 256, where half a unit in the last
// place of a float is at most 2^-17, while a quotient that is not whole
// lies at least 1 / count > 2^-16 below the next integer. Rounding to
// nearest thus neither reaches the next integer nor falls below the
// integer part, and truncation yields the integer quotient.
// pSums[x] = pValues[0] + ... + pValues[x], as four interleaved chains of
// additions over the quarters of the row, then the quarters' offsets.
template <typename C> inline void RunningSums(const C* pValues, uint32_t* pSums, int64_t n)
{
    const int64_t q = n / 4;
    uint32_t r0 = 0, r1 = 0, r2 = 0, r3 = 0;
    for (int64_t i = 0; i < q; ++i)
    {
        pSums[i] = r0 += pValues[i];
        pSums[q + i] = r1 += pValues[q + i];
        pSums[2 * q + i] = r2 += pValues[2 * q + i];
        pSums[3 * q + i] = r3 += pValues[3 * q + i];
    }
    for (int64_t i = 4 * q; i < n; ++i)
        pSums[i] = r3 += pValues[i];
    const uint32_t anOffsets[3] = {r0, r0 + r1, r0 + r1 + r2};
    for (int k = 1; k < 4; ++k)
    {
        const int64_t nEnd = k < 3 ? (k + 1) * q : n;
        for (int64_t i = k * q; i < nEnd; ++i)
            pSums[i] += anOffsets[k - 1];
    }
}

template <typename C>
void BoxMean8Sums(const ClImage& in, ClImage& out, int64_t hx, int64_t hy, uint32_t nBias)
{
    const int64_t W = in.Width(), H = in.Height(), nBoxWidth = 2 * hx + 1;
    TpArrayStatic<C> columns(static_cast<uint32_t>(W));
    TpArrayStatic<uint32_t> prefix(static_cast<uint32_t>(W + nBoxWidth));
    TpArrayStatic<float> counts(static_cast<uint32_t>(W));
    C* pColumns = columns.Data();
    uint32_t* pPrefix = prefix.Data();
    float* pCounts = counts.Data();
    for (int64_t x = 0; x < W; ++x)
    {
        pColumns[x] = 0;
        pCounts[x] = static_cast<float>(std::min(W - 1, x + hx) - std::max<int64_t>(0, x - hx) + 1);
    }
    // Prefix entry hx + 1 + x sums the columns 0..x; the hx + 1 entries
    // before are 0 and the hx entries behind repeat the whole row's sum.
    for (int64_t k = 0; k <= hx; ++k)
        pPrefix[k] = 0;

    // The box of row y holds rows y - hy .. y + hy of the image: the column
    // sums gain row y + hy and lose row y - hy - 1 where they exist.
    for (int64_t y = 0; y < hy; ++y)
    {
        const uint8_t* pRow = in.Row<uint8_t>(static_cast<int32_t>(y));
        for (int64_t x = 0; x < W; ++x)
            pColumns[x] = static_cast<C>(pColumns[x] + pRow[x]);
    }
    for (int64_t y = 0; y < H; ++y)
    {
        const uint8_t* pEnter =
            y + hy < H ? in.Row<uint8_t>(static_cast<int32_t>(y + hy)) : nullptr;
        const uint8_t* pLeave =
            y > hy ? in.Row<uint8_t>(static_cast<int32_t>(y - hy - 1)) : nullptr;
        if (pEnter != nullptr && pLeave != nullptr)
            for (int64_t x = 0; x < W; ++x)
                pColumns[x] = static_cast<C>(pColumns[x] + pEnter[x] - pLeave[x]);
        else if (pEnter != nullptr)
            for (int64_t x = 0; x < W; ++x)
                pColumns[x] = static_cast<C>(pColumns[x] + pEnter[x]);
        else if (pLeave != nullptr)
            for (int64_t x = 0; x < W; ++x)
                pColumns[x] = static_cast<C>(pColumns[x] - pLeave[x]);

        // The running sum is a chain of dependent additions. The row runs as
        // four quarters at once, each its own chain, and the quarters then
        // get the totals of those before them (whole numbers: the same sums).
        uint32_t* pRunning = pPrefix + hx + 1;
        RunningSums(pColumns, pRunning, W);
        const uint32_t nRunning = W > 0 ? pRunning[W - 1] : 0;
        for (int64_t k = W + hx + 1; k < W + nBoxWidth; ++k)
            pPrefix[k] = nRunning;

        // Counts and rows are exact in float, and so is their product.
        const int64_t nRows = std::min(H - 1, y + hy) - std::max<int64_t>(0, y - hy) + 1;
        const float fRows = static_cast<float>(nRows);
        uint8_t* pDst = out.Row<uint8_t>(static_cast<int32_t>(y));
        for (int64_t x = 0; x < W; ++x)
        {
            const uint32_t nSum = pPrefix[x + nBoxWidth] - pPrefix[x] + nBias;
            const float fQuotient =
                static_cast<float>(static_cast<int32_t>(nSum)) / (pCounts[x] * fRows);
            pDst[x] = static_cast<uint8_t>(static_cast<int32_t>(fQuotient));
        }
    }
}

// The column sums need 16 bits while a column of the box holds at most 257
// samples, which is every box of the flow; 16-bit sums halve the work of
// keeping them.
inline void BoxMean8(const ClImage& in, ClImage& out, int64_t hx, int64_t hy, uint32_t nBias)
{
    if (255 * (2 * hy + 1) <= 65535)
        BoxMean8Sums<uint16_t>(in, out, hx, hy, nBias);
    else
        BoxMean8Sums<uint32_t>(in, out, hx, hy, nBias);
}

// Whether BoxMean8 serves an image and an odd box: 8-bit samples in one
// plane, and at most 65535 samples in the box.
template <typename T> inline bool FitsBoxMean8(const ClImage& in, int64_t hx, int64_t hy)
{
    return std::is_same_v<T, uint8_t> && in.Planes() == 1 && (2 * hx + 1) * (2 * hy + 1) <= 65535;
}

// Mode X (bColumns false) or Mode Y. A width that is not below the line
// length is shortened to length - 1, and the member keeps it; a width of 0
// then gives -101. Integer sums start at the rounding term h; floating sums
// need none and start at 0.
template <typename T> int32_t Pass(const ClImage& in, ClImage& out, int32_t& nWidth, bool bColumns)
{
    const int64_t W = in.Width(), H = in.Height(), P = in.Planes();
    const int64_t n = bColumns ? H : W;
    if (nWidth >= n)
        nWidth = static_cast<int32_t>(n - 1);
    if (nWidth <= 0)
        return ZRC_ERROR_INTERNAL;
    out.CreateLike(in);

    using S = Sum<T>;
    const int64_t w = nWidth;
    const int64_t h = w / 2;
    // A width shortened to an even length divides the interior by w while
    // the window holds w + 1 samples; only odd widths are boxes.
    if ((w & 1) != 0 && FitsBoxMean8<T>(in, bColumns ? 0 : h, bColumns ? h : 0))
    {
        BoxMean8(in, out, bColumns ? 0 : h, bColumns ? h : 0, static_cast<uint32_t>(h));
        return 0;
    }
    const S s0 = std::is_integral_v<S> ? S(h) : S(0);
    const ptrdiff_t nInPitch = static_cast<ptrdiff_t>(in.RowPitch());
    const ptrdiff_t nOutPitch = static_cast<ptrdiff_t>(out.RowPitch());
    const T* pSrc = in.Row<T>(0);
    T* pDst = out.Row<T>(0);
    if (!bColumns)
    {
        for (int64_t y = 0; y < H; ++y)
            for (int64_t p = 0; p < P; ++p)
                Slide(pSrc + y * nInPitch + p, P, pDst + y * nOutPitch + p, P, W, w, s0, 1);
    }
    else
    {
        for (int64_t x = 0; x < W * P; ++x)
            Slide(pSrc + x, nInPitch, pDst + x, nOutPitch, H, w, s0, 1);
    }
    return 0;
}

// Mode XY: one running sum per column over the rows of the window, slid
// along each row; the divisor is the number of samples in the cut-off
// window. An image smaller than the window in either direction is copied.
template <typename T> int32_t PassXY(const ClImage& in, ClImage& out, int32_t nWidth)
{
    const int64_t W = in.Width(), H = in.Height(), P = in.Planes();
    if (nWidth <= 0)
        return ZRC_ERROR_INTERNAL;
    if (W < nWidth || H < nWidth)
    {
        out.Assign(in);
        return 0;
    }
    out.CreateLike(in);

    using S = Sum<T>;
    const int64_t w = nWidth, h = w / 2, nSamples = W * P;
    if ((w & 1) != 0 && FitsBoxMean8<T>(in, h, h))
    {
        BoxMean8(in, out, h, h, 0);
        return 0;
    }
    TpArrayStatic<S> columns(static_cast<uint32_t>(nSamples));
    S* pColumns = columns.Data();
    for (int64_t x = 0; x < nSamples; ++x)
        pColumns[x] = 0;
    for (int64_t y = 0; y < h; ++y)
    {
        const T* pRow = in.Row<T>(static_cast<int32_t>(y));
        for (int64_t x = 0; x < nSamples; ++x)
            pColumns[x] += pRow[x];
    }
    int64_t nRows = h;
    for (int64_t y = 0; y < H; ++y)
    {
        if (y + h < H)
        {
            const T* pRow = in.Row<T>(static_cast<int32_t>(y + h));
            for (int64_t x = 0; x < nSamples; ++x)
                pColumns[x] += pRow[x];
            ++nRows;
        }
        T* pDst = out.Row<T>(static_cast<int32_t>(y));
        for (int64_t p = 0; p < P; ++p)
            Slide(pColumns + p, P, pDst + p, P, W, w, S(0), nRows);
        if (y >= h)
        {
            const T* pRow = in.Row<T>(static_cast<int32_t>(y - h));
            for (int64_t x = 0; x < nSamples; ++x)
                pColumns[x] -= pRow[x];
            --nRows;
        }
    }
    return 0;
}

} // namespace RunningMean
