#pragma once
// The running extreme of ClIpFilterMin and ClIpFilterMax: the extreme of a
// window of 2h + 1 samples sliding along lines; near the ends of a line the
// window is cut off (no padding of the result).
//
// A pass works on lines given as elements: element i of the lines starts at
// sample i * stride and holds nLanes adjacent samples, each lane being one
// line. A row pass has a row's planes as its lanes and its pixels as its
// elements; a column pass has all samples of a row as its lanes and the rows
// as its elements, so that both directions walk memory row by row.
//
// Integer samples take the doubling scheme: the cut-off window has the
// extreme of the window over the line padded with the identity (0 or the
// type's least value for the maximum, the type's greatest for the minimum),
// which is that of two overlapping windows of the largest power of two
// p <= 2h + 1, and windows of 2k are extremes of two windows of k. That is
// constant work per sample, in loops over adjacent samples.
//
// Floating samples keep the running update with a rescan when the extreme
// leaves the window: with NaN the comparisons depend on their order, and the
// results are those of that order.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <type_traits>

#include "image/ArrayStatic.h"
#include "image/FpImage.h"
#include "sdk/Exception.h"

namespace RunningExtreme
{

// Where the lines of a pass lie: nCount elements, nStride samples apart, of
// nLanes adjacent samples each.
struct Lines
{
    ptrdiff_t nStride;
    int64_t nLanes;
    int64_t nCount;
};

// Calls f(i, nSamples) for runs of adjacent samples, starting at element i,
// that together cover every lane of nElements elements. Packed elements (the
// stride equals the lane count) lie back to back and form a single run, so
// that a row pass runs along the whole row rather than one pixel at a time.
template <typename F> inline void ForEachRun(int64_t nElements, int64_t nLanes, bool bPacked, F&& f)
{
    if (bPacked)
        f(0, nElements * nLanes);
    else
        for (int64_t i = 0; i < nElements; ++i)
            f(i, nLanes);
}

template <bool bMax, typename T> inline T Extreme(T a, T b)
{
    if constexpr (bMax)
        return a < b ? b : a;
    else
        return b < a ? b : a;
}

// Doubling scheme for one set of lines of integer samples, h at most
// nCount - 1. pA and pB hold (nCount + 2h) x nLanes samples each.
template <bool bMax, typename T>
void Doubling(const T* pSrc, ptrdiff_t nSrcStride, T* pDst, ptrdiff_t nDstStride,
              const Lines& lines, int64_t h, T* pA, T* pB)
{
    const int64_t L = lines.nLanes, n = lines.nCount, N = n + 2 * h, w = 2 * h + 1;
    const T identity = bMax ? std::numeric_limits<T>::lowest() : std::numeric_limits<T>::max();

    // The padded lines, packed: h identity elements, the line, h more.
    std::fill(pA, pA + h * L, identity);
    std::fill(pA + (h + n) * L, pA + N * L, identity);
    ForEachRun(n, L, nSrcStride == L,
               [&](int64_t i, int64_t nSamples)
               {
                   std::memcpy(pA + (h + i) * L, pSrc + i * nSrcStride,
                               static_cast<size_t>(nSamples) * sizeof(T));
               });

    // m holds the extremes of windows of k padded elements, starting at each
    // element up to N - k.
    const T* m = pA;
    T* pNext = pB;
    int64_t k = 1;
    for (; 2 * k <= w; k *= 2)
    {
        const T* a = m;
        const T* b = m + k * L;
        const int64_t nSamples = (N - 2 * k + 1) * L;
        for (int64_t j = 0; j < nSamples; ++j)
            pNext[j] = Extreme<bMax>(a[j], b[j]);
        m = pNext;
        pNext = pNext == pB ? pA : pB;
    }

    // The window of element i covers padded elements i .. i + w - 1, that
    // is the windows of k from i and from i + w - k.
    const T* b = m + (w - k) * L;
    ForEachRun(n, L, nDstStride == L,
               [&](int64_t i, int64_t nSamples)
               {
                   const T* pa = m + i * L;
                   const T* pb = b + i * L;
                   T* pOut = pDst + i * nDstStride;
                   for (int64_t j = 0; j < nSamples; ++j)
                       pOut[j] = Extreme<bMax>(pa[j], pb[j]);
               });
}

// True when a may replace the current extreme b (ties replace).
template <bool bMax, typename T> inline bool Replaces(T a, T b)
{
    if constexpr (bMax)
        return a >= b;
    else
        return a <= b;
}

// The extreme of elements nFirst..nLast of one lane, in that order.
template <bool bMax, typename T>
inline T Rescan(const T* pSrc, ptrdiff_t nStride, int64_t nFirst, int64_t nLast)
{
    T m = pSrc[nFirst * nStride];
    for (int64_t j = nFirst + 1; j <= nLast; ++j)
    {
        const T v = pSrc[j * nStride];
        if (bMax ? v > m : v < m)
            m = v;
    }
    return m;
}

// Running update for one set of lines, h at most nCount - 1: the extreme of
// the first window by a scan; then each entering sample that may replace the
// extreme does so; otherwise, when the leaving sample equals the extreme,
// the window is rescanned. m holds one extreme per lane.
template <bool bMax, typename T>
void Rescanning(const T* pSrc, ptrdiff_t nSrcStride, T* pDst, ptrdiff_t nDstStride,
                const Lines& lines, int64_t h, T* m)
{
    const int64_t L = lines.nLanes, n = lines.nCount;
    for (int64_t x = 0; x < L; ++x)
        m[x] = pDst[x] = Rescan<bMax>(pSrc + x, nSrcStride, 0, h);
    for (int64_t i = 1; i < n; ++i)
    {
        const int64_t nEnter = i + h, nLeave = i - h - 1;
        const T* pLeave = nLeave >= 0 ? pSrc + nLeave * nSrcStride : nullptr;
        const T* pEnter = nEnter < n ? pSrc + nEnter * nSrcStride : nullptr;
        const int64_t nLast = std::min(nEnter, n - 1);
        for (int64_t x = 0; x < L; ++x)
        {
            if (pEnter != nullptr && Replaces<bMax>(pEnter[x], m[x]))
                m[x] = pEnter[x];
            else if (pLeave != nullptr && pLeave[x] == m[x])
                m[x] = Rescan<bMax>(pSrc + x, nSrcStride, i - h, nLast);
        }
        T* pRow = pDst + i * nDstStride;
        for (int64_t x = 0; x < L; ++x)
            pRow[x] = m[x];
    }
}

// A scratch array of nSize elements; a size beyond the array's 32-bit count
// is an allocation that cannot be made.
template <typename T> inline void CreateScratch(TpArrayStatic<T>& scratch, int64_t nSize)
{
    if (nSize > static_cast<int64_t>(UINT32_MAX))
        SENTIVO_THROW_BAD_ALLOC();
    scratch.Create(static_cast<uint32_t>(nSize));
}

// One pass of the filter over every row (bColumns false) or every column.
// An input that is the output is moved to a temporary first.
template <bool bMax, typename T>
int32_t Pass(ClImage* pIn, ClImage* pOut, int32_t nWidth, bool bColumns)
{
    if (pIn == nullptr)
        SENTIVO_THROW("m_pInImage is not set", ZRC_ERROR_BAD_POINTER);
    if (pOut == nullptr)
        SENTIVO_THROW("m_pOutImage is not set", ZRC_ERROR_BAD_POINTER);
    ClImage moved;
    if (pIn == pOut)
    {
        moved.Swap(*pIn);
        pIn = &moved;
    }
    pOut->CreateLike(*pIn);

    const int64_t W = pIn->Width(), H = pIn->Height(), P = pIn->Planes();
    const ptrdiff_t nInPitch = static_cast<ptrdiff_t>(pIn->RowPitch());
    const ptrdiff_t nOutPitch = static_cast<ptrdiff_t>(pOut->RowPitch());
    // A row pass is H sets of lines with the planes as lanes; a column pass
    // is one set with a whole row as lanes.
    const Lines lines = bColumns ? Lines{nInPitch, W * P, H} : Lines{P, P, W};
    const int64_t nSets = bColumns ? 1 : H;
    const ptrdiff_t nSrcStride = lines.nStride;
    const ptrdiff_t nDstStride = bColumns ? nOutPitch : P;
    // A window wider than the line covers the whole line anyway.
    const int64_t h = std::clamp<int64_t>(nWidth / 2, 0, lines.nCount - 1);
    const T* pSrc = pIn->Row<T>(0);
    T* pDst = pOut->Row<T>(0);

    if constexpr (std::is_integral_v<T>)
    {
        // The columns of a column pass are taken in strips of lanes whose
        // padded lines fill about 16 KB: the scratch then stays in the cache
        // and is small enough to be reused rather than mapped afresh.
        const int64_t nPadded = lines.nCount + 2 * h;
        const int64_t nStrip =
            bColumns ? std::clamp<int64_t>(16384 / (nPadded * int64_t(sizeof(T))) / 16 * 16, 16,
                                           lines.nLanes)
                     : lines.nLanes;
        TpArrayStatic<T> a, b;
        CreateScratch(a, nPadded * nStrip);
        CreateScratch(b, nPadded * nStrip);
        for (int64_t s = 0; s < nSets; ++s)
            for (int64_t nFirst = 0; nFirst < lines.nLanes; nFirst += nStrip)
            {
                const Lines strip{lines.nStride, std::min(nStrip, lines.nLanes - nFirst),
                                  lines.nCount};
                Doubling<bMax>(pSrc + s * nInPitch + nFirst, nSrcStride,
                               pDst + s * nOutPitch + nFirst, nDstStride, strip, h, a.Data(),
                               b.Data());
            }
    }
    else
    {
        TpArrayStatic<T> extremes;
        CreateScratch(extremes, lines.nLanes);
        for (int64_t s = 0; s < nSets; ++s)
            Rescanning<bMax>(pSrc + s * nInPitch, nSrcStride, pDst + s * nOutPitch, nDstStride,
                             lines, h, extremes.Data());
    }
    return 0;
}

} // namespace RunningExtreme
