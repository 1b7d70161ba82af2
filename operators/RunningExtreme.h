#pragma once
// The running extreme of ClIpFilterMin and ClIpFilterMax: a window of
// 2h + 1 samples slides along a line; near the ends it is cut off (no
// padding). The extreme is updated from the entering sample and the line is
// rescanned only when the leaving sample was the extreme.
#include <cstddef>
#include <cstdint>

#include "image/ArrayStatic.h"
#include "image/FpImage.h"
#include "sdk/Exception.h"

namespace RunningExtreme
{

// True when a may replace the current extreme b (ties replace).
template <bool bMax, typename T> inline bool Replaces(T a, T b)
{
    if constexpr (bMax)
        return a >= b;
    else
        return a <= b;
}

template <bool bMax, typename T>
inline T Rescan(const T* pSrc, ptrdiff_t nStep, int64_t nFirst, int64_t nLast)
{
    T m = pSrc[nFirst * nStep];
    for (int64_t j = nFirst + 1; j <= nLast; ++j)
    {
        const T v = pSrc[j * nStep];
        if (bMax ? v > m : v < m)
            m = v;
    }
    return m;
}

// One line of n samples, nStep apart in the source and the target.
template <bool bMax, typename T>
void Line(const T* pSrc, ptrdiff_t nSrcStep, T* pDst, ptrdiff_t nDstStep, int64_t n, int64_t h)
{
    if (h < 0)
        h = 0;
    if (h > n - 1)
        h = n - 1; // a wider window covers the whole line anyway
    T m = Rescan<bMax>(pSrc, nSrcStep, 0, h);
    pDst[0] = m;
    for (int64_t i = 1; i < n; ++i)
    {
        const int64_t nEnter = i + h, nLeave = i - h - 1;
        if (nEnter < n)
        {
            const T s = pSrc[nEnter * nSrcStep];
            if (Replaces<bMax>(s, m))
                m = s;
            else if (nLeave >= 0 && pSrc[nLeave * nSrcStep] == m)
                m = Rescan<bMax>(pSrc, nSrcStep, i - h, nEnter);
        }
        else if (nLeave >= 0 && pSrc[nLeave * nSrcStep] == m)
        {
            m = Rescan<bMax>(pSrc, nSrcStep, i - h, n - 1);
        }
        pDst[i * nDstStep] = m;
    }
}

// The same rule down nCount columns side by side, row after row, so that
// rows are read contiguously; m holds the running extreme of each column.
template <bool bMax, typename T>
void Columns(const T* pSrc, ptrdiff_t nSrcPitch, T* pDst, ptrdiff_t nDstPitch, int64_t nCount,
             int64_t n, int64_t h, T* m)
{
    if (h < 0)
        h = 0;
    if (h > n - 1)
        h = n - 1;
    for (int64_t x = 0; x < nCount; ++x)
        m[x] = Rescan<bMax>(pSrc + x, nSrcPitch, 0, h);
    for (int64_t x = 0; x < nCount; ++x)
        pDst[x] = m[x];
    for (int64_t i = 1; i < n; ++i)
    {
        const int64_t nEnter = i + h, nLeave = i - h - 1;
        const T* pLeave = nLeave >= 0 ? pSrc + nLeave * nSrcPitch : nullptr;
        if (nEnter < n)
        {
            const T* pEnter = pSrc + nEnter * nSrcPitch;
            for (int64_t x = 0; x < nCount; ++x)
            {
                const T s = pEnter[x];
                if (Replaces<bMax>(s, m[x]))
                    m[x] = s;
                else if (pLeave != nullptr && pLeave[x] == m[x])
                    m[x] = Rescan<bMax>(pSrc + x, nSrcPitch, i - h, nEnter);
            }
        }
        else if (pLeave != nullptr)
        {
            for (int64_t x = 0; x < nCount; ++x)
                if (pLeave[x] == m[x])
                    m[x] = Rescan<bMax>(pSrc + x, nSrcPitch, i - h, n - 1);
        }
        T* pRow = pDst + i * nDstPitch;
        for (int64_t x = 0; x < nCount; ++x)
            pRow[x] = m[x];
    }
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

    const int64_t h = nWidth / 2;
    const int64_t W = pIn->Width(), H = pIn->Height(), P = pIn->Planes();
    const ptrdiff_t nInPitch = static_cast<ptrdiff_t>(pIn->RowPitch());
    const ptrdiff_t nOutPitch = static_cast<ptrdiff_t>(pOut->RowPitch());
    const T* pSrc = pIn->Row<T>(0);
    T* pDst = pOut->Row<T>(0);
    if (!bColumns)
    {
        for (int64_t y = 0; y < H; ++y)
            for (int64_t p = 0; p < P; ++p)
                Line<bMax>(pSrc + y * nInPitch + p, P, pDst + y * nOutPitch + p, P, W, h);
    }
    else
    {
        TpArrayStatic<T> extremes(static_cast<uint32_t>(W * P));
        Columns<bMax>(pSrc, nInPitch, pDst, nOutPitch, W * P, H, h, extremes.Data());
    }
    return 0;
}

} // namespace RunningExtreme
