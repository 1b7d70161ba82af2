#pragma once
// ClIpFilterMid: in spite of its name the mean of a sliding window, by
// running sums. Along a line the sum starts with the rounding term h = w / 2
// and the window is cut off at the ends; the XY box has no rounding term and
// divides by the number of samples the cut-off window holds.
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

    // Selects the alternative XY routine; it gives the same results.
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
    const S s0 = std::is_integral_v<S> ? S(w / 2) : S(0);
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
