#pragma once
// ClIpFunctorMean: smooths an image with a uniform kernel in fixed-point
// arithmetic (11-bit weights for integer samples), along a row, down a
// column, as a separable box, or along a per-pixel direction given by two
// signed 8-bit step images. Border samples are repeated.
#include <algorithm>
#include <cstdint>
#include <type_traits>

#include "image/ArrayStatic.h"
#include "image/FpImage.h"
#include "image/SampleTraits.h"
#include "processing/Ip1To1BaseFilter.h"
#include "sdk/Exception.h"

class ClIpFunctorMean : public ClIp1To1BaseFilter
{
public:
    using ClProcessorBase::Run;
    int32_t Run(ClImage* pIn, ClImage* pOut, int32_t nWidth, int32_t nMode);
    int32_t Run(ClImage* pIn, ClImage* pOut, int32_t nWidth, int32_t nMode, ClImage* pDx,
                ClImage* pDy);

    ClProcessorBase* NewInstance() const override;
    const char* GetName() const override { return "ClIpFunctorMean"; }
    int32_t Execute(ClImage& input, ClImage& output) override;
};

namespace MeanFilter
{

// Accumulator of a sample type: int for 8- and 16-bit data, 64-bit integers
// for 32-bit data, the sample's own type for floating data.
template <typename T> struct Accumulator
{
    using Type = int32_t;
};
template <> struct Accumulator<uint32_t>
{
    using Type = int64_t;
};
template <> struct Accumulator<int32_t>
{
    using Type = int64_t;
};
template <> struct Accumulator<float>
{
    using Type = float;
};
template <> struct Accumulator<double>
{
    using Type = double;
};

// One accumulator value: arrays of it are the kernel and the row
// accumulators.
template <typename T> using ClFilterBackbuffer = T;

// The fixed-point weights carry 11 bits; a second pass carries 22.
constexpr int kShift = 11;

// acc + weight * value. Integer accumulators wrap on overflow as the
// processor's registers do (16-bit data in the XY mode exceed 32 bits).
template <typename A> inline A MulAdd(A acc, A weight, A value)
{
    if constexpr (std::is_integral_v<A>)
    {
        using U = std::make_unsigned_t<A>;
        return static_cast<A>(static_cast<U>(acc) + static_cast<U>(weight) * static_cast<U>(value));
    }
    else
    {
        return acc + weight * value;
    }
}

// An integer sum is shifted down by the weights' bits and cast to the
// sample type (8-bit results of 256 or more wrap); a floating sum is stored.
template <typename T, typename A> inline T Store(A acc, int nShift)
{
    if constexpr (std::is_integral_v<A>)
        return static_cast<T>(acc >> nShift);
    else
        return static_cast<T>(acc);
}

// Weights of an odd width w. Integer: trunc(2048 / w + 1) each, divided by
// (their sum >> 11), which is 1 for all usual widths, so they add up to a
// little more than 2048. Floating: 1 / w each (in float for float data),
// divided by their sum.
template <typename A> void BuildKernel(TpArrayStatic<ClFilterBackbuffer<A>>& kernel, int32_t w)
{
    kernel.Create(static_cast<uint32_t>(w));
    if constexpr (std::is_integral_v<A>)
    {
        const int32_t nRaw = TruncateToInt32(2048.0 / w + 1.0);
        const int64_t nScale = (static_cast<int64_t>(nRaw) * w) >> kShift;
        for (int32_t k = 0; k < w; ++k)
            kernel[k] = static_cast<A>(nRaw / nScale);
    }
    else
    {
        const A raw = A(1) / static_cast<A>(w);
        A sum = 0;
        for (int32_t k = 0; k < w; ++k)
        {
            kernel[k] = raw;
            sum += raw;
        }
        for (int32_t k = 0; k < w; ++k)
            kernel[k] = kernel[k] / sum;
    }
}

// Columns x0..x1 and rows y0..y1, inclusive, of the output are written.
struct Box
{
    int32_t x0, x1, y0, y1;
};

inline int64_t Clamp(int64_t v, int64_t nLast)
{
    return v < 0 ? 0 : (v > nLast ? nLast : v);
}

// The horizontal kernel along one row, for columns x0..x1: the sum of
// weight k x the sample at column x - h + k, positions beyond the row
// repeating its end sample, stored with nShift. Column c of the source is
// at pSrc[(c - nSrcFirst) x P]. The interior, where no position is clamped,
// runs kernel position by kernel position over the whole stretch into
// pSums, each sum still adding its terms in kernel order: the stretch then
// vectorises and every sum is the one the plain order gives.
template <typename T, typename A, typename S>
void Horizontal(const S* pSrc, int64_t nSrcFirst, T* pDst, const A* pW, int32_t w, int64_t nLast,
                int64_t P, int64_t x0, int64_t x1, int nShift, A* pSums)
{
    const int64_t h = w / 2;
    auto at = [&](int64_t c, int64_t p) { return static_cast<A>(pSrc[(c - nSrcFirst) * P + p]); };
    auto border = [&](int64_t x)
    {
        for (int64_t p = 0; p < P; ++p)
        {
            A acc = 0;
            for (int32_t k = 0; k < w; ++k)
                acc = MulAdd(acc, pW[k], at(Clamp(x - h + k, nLast), p));
            pDst[x * P + p] = Store<T>(acc, nShift);
        }
    };
    const int64_t nFirstInside = std::max(x0, h), nLastInside = std::min(x1, nLast - h);
    int64_t x = x0;
    for (; x <= x1 && x < nFirstInside; ++x)
        border(x);
    if (x <= nLastInside)
    {
        const int64_t nCount = (nLastInside - x + 1) * P;
        for (int32_t k = 0; k < w; ++k)
        {
            const S* s = pSrc + (x - h + k - nSrcFirst) * P;
            const A weight = pW[k];
            if (k == 0)
                for (int64_t i = 0; i < nCount; ++i)
                    pSums[i] = MulAdd(A(0), weight, static_cast<A>(s[i]));
            else
                for (int64_t i = 0; i < nCount; ++i)
                    pSums[i] = MulAdd(pSums[i], weight, static_cast<A>(s[i]));
        }
        T* pOut = pDst + x * P;
        for (int64_t i = 0; i < nCount; ++i)
            pOut[i] = Store<T>(pSums[i], nShift);
        x = nLastInside + 1;
    }
    for (; x <= x1; ++x)
        border(x);
}

template <typename T, typename A>
void FilterX(const ClImage& in, ClImage& out, const A* pW, int32_t w, const Box& box)
{
    const int64_t nLast = in.Width() - 1, P = in.Planes();
    TpArrayStatic<A> sums(static_cast<uint32_t>(in.Width() * P));
    for (int32_t y = box.y0; y <= box.y1; ++y)
        Horizontal<T>(in.Row<T>(y), 0, out.Row<T>(y), pW, w, nLast, P, box.x0, box.x1, kShift,
                      sums.Data());
}

// Adds weight * row for the w rows around y (clamped to the image) into
// the accumulator, which covers samples nFirst to nFirst + nCount - 1.
template <typename T, typename A>
void AccumulateRows(const ClImage& in, const A* pW, int32_t w, int64_t y, int64_t nFirst,
                    int64_t nCount, A* pAcc)
{
    const int64_t nLastRow = in.Height() - 1, h = w / 2;
    // Each sum starts at 0 and adds its first term with the first row.
    for (int32_t k = 0; k < w; ++k)
    {
        const T* s = in.Row<T>(static_cast<int32_t>(Clamp(y - h + k, nLastRow))) + nFirst;
        const A weight = pW[k];
        if (k == 0)
            for (int64_t i = 0; i < nCount; ++i)
                pAcc[i] = MulAdd(A(0), weight, static_cast<A>(s[i]));
        else
            for (int64_t i = 0; i < nCount; ++i)
                pAcc[i] = MulAdd(pAcc[i], weight, static_cast<A>(s[i]));
    }
}

template <typename T, typename A>
void FilterY(const ClImage& in, ClImage& out, const A* pW, int32_t w, const Box& box)
{
    const int64_t P = in.Planes(), nFirst = box.x0 * P, nCount = (box.x1 - box.x0 + 1) * P;
    TpArrayStatic<ClFilterBackbuffer<A>> acc(static_cast<uint32_t>(nCount));
    for (int32_t y = box.y0; y <= box.y1; ++y)
    {
        AccumulateRows<T>(in, pW, w, y, nFirst, nCount, acc.Data());
        T* pDst = out.Row<T>(y) + nFirst;
        for (int64_t i = 0; i < nCount; ++i)
            pDst[i] = Store<T>(acc[i], kShift);
    }
}

// Separable: the vertical kernel into one accumulator row, then the
// horizontal kernel over that row; the two sets of weights make 22 bits.
template <typename T, typename A>
void FilterXY(const ClImage& in, ClImage& out, const A* pW, int32_t w, const Box& box)
{
    const int64_t nLast = in.Width() - 1, P = in.Planes(), h = w / 2;
    const int64_t cx0 = std::max<int64_t>(0, box.x0 - h);
    const int64_t cx1 = std::min<int64_t>(nLast, box.x1 + h);
    TpArrayStatic<ClFilterBackbuffer<A>> acc(static_cast<uint32_t>((cx1 - cx0 + 1) * P));
    TpArrayStatic<A> sums(static_cast<uint32_t>(in.Width() * P));
    for (int32_t y = box.y0; y <= box.y1; ++y)
    {
        AccumulateRows<T>(in, pW, w, y, cx0 * P, (cx1 - cx0 + 1) * P, acc.Data());
        Horizontal<T>(acc.Data(), cx0, out.Row<T>(y), pW, w, nLast, P, box.x0, box.x1, 2 * kShift,
                      sums.Data());
    }
}

// Walks in whole steps of 1/128 pixel from the centre of each pixel: the
// centre weight and those below it backward, the others forward. A step
// that leaves the image is undone, so the walk then repeats its last pixel.
template <typename T, typename A>
void FilterDirected(const ClImage& in, ClImage& out, const A* pW, int32_t w, const Box& box,
                    const ClImage& dx, const ClImage& dy, bool bOrtho)
{
    const int64_t P = in.Planes(), h = w / 2;
    const int64_t nLimitX = int64_t(in.Width()) * 128, nLimitY = int64_t(in.Height()) * 128;
    const int64_t nDxPlanes = dx.Planes(), nDyPlanes = dy.Planes();
    auto step = [&](int64_t& px, int64_t& py, int64_t sx, int64_t sy)
    {
        const int64_t nx = px + sx, ny = py + sy;
        if (nx < 0 || ny < 0 || nx >= nLimitX || ny >= nLimitY)
            return;
        px = nx;
        py = ny;
    };
    auto sample = [&](int64_t px, int64_t py, int64_t p)
    { return static_cast<A>(in.Row<T>(static_cast<int32_t>(py >> 7))[(px >> 7) * P + p]); };
    for (int32_t y = box.y0; y <= box.y1; ++y)
    {
        const int8_t* pDx = dx.Row<int8_t>(y);
        const int8_t* pDy = dy.Row<int8_t>(y);
        T* pDst = out.Row<T>(y);
        for (int64_t x = box.x0; x <= box.x1; ++x)
        {
            const int64_t sx = pDx[x * nDxPlanes];
            // The orthogonal mode flips only the row component.
            const int64_t sy = bOrtho ? -int64_t(pDy[x * nDyPlanes]) : int64_t(pDy[x * nDyPlanes]);
            for (int64_t p = 0; p < P; ++p)
            {
                A acc = 0;
                int64_t px = x * 128 + 64, py = int64_t(y) * 128 + 64;
                for (int64_t k = h; k >= 0; --k)
                {
                    acc = MulAdd(acc, pW[k], sample(px, py, p));
                    step(px, py, -sx, -sy);
                }
                px = x * 128 + 64;
                py = int64_t(y) * 128 + 64;
                step(px, py, sx, sy);
                for (int64_t k = h + 1; k < w; ++k)
                {
                    acc = MulAdd(acc, pW[k], sample(px, py, p));
                    step(px, py, sx, sy);
                }
                pDst[x * P + p] = Store<T>(acc, kShift);
            }
        }
    }
}

// One member per sample type: the kernel, then the loops of the mode.
template <typename T>
int32_t Filter(const ClImage& in, ClImage& out, int32_t nMode, int32_t w, const Box& box,
               const ClImage* pDx, const ClImage* pDy)
{
    using A = typename Accumulator<T>::Type;
    TpArrayStatic<ClFilterBackbuffer<A>> kernel;
    switch (nMode)
    {
    case eModeX:
        BuildKernel(kernel, w);
        FilterX<T>(in, out, kernel.Data(), w, box);
        return 0;
    case eModeY:
        BuildKernel(kernel, w);
        FilterY<T>(in, out, kernel.Data(), w, box);
        return 0;
    case eModeXY:
        BuildKernel(kernel, w);
        FilterXY<T>(in, out, kernel.Data(), w, box);
        return 0;
    case eModeDirected:
    case eModeDirectedOrtho:
        BuildKernel(kernel, w);
        FilterDirected<T>(in, out, kernel.Data(), w, box, *pDx, *pDy, nMode == eModeDirectedOrtho);
        return 0;
    default:
        SENTIVO_THROW_CODE(kErrorUnknownFilterMode);
    }
}

} // namespace MeanFilter
