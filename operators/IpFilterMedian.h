#pragma once
// ClIpFilterMedian: the median of a sliding window. Along a line (Mode X or
// Y) the window is symmetric and shrinks near the ends so that its half
// width is at most the distance to the border; it is kept as a sorted index
// list. The XY box (8-bit data) repeats the border and keeps a histogram.
#include <cstddef>
#include <cstdint>

#include "image/ArrayStatic.h"
#include "processing/IpFilterBase.h"

class ClIpFilterMedian : public ClIpFilterBase
{
public:
    using ClProcessorBase::Run;
    int32_t Run(ClImage* pIn, ClImage* pOut, int32_t nWidth, int32_t nMode);

    ClProcessorBase* NewInstance() const override;
    const char* GetName() const override { return "ClIpFilterMedian"; }

    // Missing images and widths below 3 give -35, empty images -14.
    int32_t FilterXUnsigned() override { return FilterLines(false); }
    int32_t FilterYUnsigned() override { return FilterLines(true); }
    int32_t FilterXYUnsigned() override { return FilterHistogram(); }
    int32_t FilterXSigned() override { return FilterLines(false); }
    int32_t FilterYSigned() override { return FilterLines(true); }
    int32_t FilterXYSigned() override { return FilterHistogram(); }

private:
    int32_t CheckImages() const;
    int32_t FilterLines(bool bColumns);
    // Widths 3 to 100 (forced odd afterwards, the member keeps it), 8-bit
    // data only: other types give -33.
    int32_t FilterHistogram();
};

namespace RunningMedian
{

// The window as a sorted index list: the samples by slot (position modulo
// the capacity), the slots in sorted order, and the rank of each slot.
template <typename T> class ClSortedWindow
{
public:
    explicit ClSortedWindow(uint32_t nCapacity)
        : m_Values(nCapacity), m_Order(nCapacity), m_Rank(nCapacity), m_nCapacity(nCapacity)
    {
    }

    void Clear() { m_nSize = 0; }

    // Appends with the next rank and moves down while the neighbour below
    // is larger.
    void Insert(int64_t nPosition, T value)
    {
        const uint32_t nSlot = static_cast<uint32_t>(nPosition % m_nCapacity);
        m_Values[nSlot] = value;
        uint32_t k = m_nSize++;
        while (k > 0 && m_Values[m_Order[k - 1]] > value)
        {
            m_Order[k] = m_Order[k - 1];
            m_Rank[m_Order[k]] = k;
            --k;
        }
        m_Order[k] = nSlot;
        m_Rank[nSlot] = k;
    }

    // Closes the gap in the order that the entry leaves.
    void Remove(int64_t nPosition)
    {
        const uint32_t nSlot = static_cast<uint32_t>(nPosition % m_nCapacity);
        for (uint32_t k = m_Rank[nSlot]; k + 1 < m_nSize; ++k)
        {
            m_Order[k] = m_Order[k + 1];
            m_Rank[m_Order[k]] = k;
        }
        --m_nSize;
    }

    T Median() const { return m_Values[m_Order[m_nSize / 2]]; }

private:
    TpArrayStatic<T> m_Values;
    TpArrayStatic<uint32_t> m_Order;
    TpArrayStatic<uint32_t> m_Rank;
    uint32_t m_nCapacity;
    uint32_t m_nSize = 0;
};

template <typename T> inline T MedianOf3(T a, T b, T c)
{
    const T lo = a < b ? a : b;
    const T hi = a < b ? b : a;
    return c < lo ? lo : (c > hi ? hi : c);
}

// One line of n samples, nStep apart. Output i is the median of samples
// i - r to i + r with r = min(h, i, n - 1 - i).
template <typename T>
void Line(const T* pSrc, ptrdiff_t nSrcStep, T* pDst, ptrdiff_t nDstStep, int64_t n, int64_t h,
          ClSortedWindow<T>& window)
{
    pDst[0] = pSrc[0];
    if (h == 1)
    {
        // Width 3: the three-sample median; the end samples stay.
        for (int64_t i = 1; i + 1 < n; ++i)
            pDst[i * nDstStep] =
                MedianOf3(pSrc[(i - 1) * nSrcStep], pSrc[i * nSrcStep], pSrc[(i + 1) * nSrcStep]);
        if (n > 1)
            pDst[(n - 1) * nDstStep] = pSrc[(n - 1) * nSrcStep];
        return;
    }
    window.Clear();
    window.Insert(0, pSrc[0]);
    int64_t nLow = 0, nHigh = 0;
    for (int64_t i = 1; i < n; ++i)
    {
        int64_t r = h;
        if (i < r)
            r = i;
        if (n - 1 - i < r)
            r = n - 1 - i;
        while (nLow < i - r)
            window.Remove(nLow++);
        while (nHigh < i + r)
        {
            ++nHigh;
            window.Insert(nHigh, pSrc[nHigh * nSrcStep]);
        }
        pDst[i * nDstStep] = window.Median();
    }
}

// The largest window a line of n samples can hold with half width h.
inline uint32_t Capacity(int64_t n, int64_t h)
{
    const int64_t r = h < (n - 1) / 2 ? h : (n - 1) / 2;
    return static_cast<uint32_t>(2 * r + 1);
}

template <typename T> void Lines(const ClImage& in, ClImage& out, int64_t h, bool bColumns)
{
    const int64_t W = in.Width(), H = in.Height(), P = in.Planes();
    const ptrdiff_t nInPitch = static_cast<ptrdiff_t>(in.RowPitch());
    const ptrdiff_t nOutPitch = static_cast<ptrdiff_t>(out.RowPitch());
    const T* pSrc = in.Row<T>(0);
    T* pDst = out.Row<T>(0);
    ClSortedWindow<T> window(Capacity(bColumns ? H : W, h));
    if (!bColumns)
    {
        for (int64_t y = 0; y < H; ++y)
            for (int64_t p = 0; p < P; ++p)
                Line(pSrc + y * nInPitch + p, P, pDst + y * nOutPitch + p, P, W, h, window);
    }
    else
    {
        for (int64_t x = 0; x < W * P; ++x)
            Line(pSrc + x, nInPitch, pDst + x, nOutPitch, H, h, window);
    }
}

// The histogram median of the w x w box around each sample, coordinates
// clamped to the image. Signed samples use the bin value + 128.
template <typename T> void Histogram(const ClImage& in, ClImage& out, int64_t w)
{
    static_assert(sizeof(T) == 1, "the histogram median serves 8-bit samples");
    constexpr int32_t kOffset = std::is_signed_v<T> ? 128 : 0;
    const int64_t W = in.Width(), H = in.Height(), P = in.Planes(), h = w / 2;
    const int32_t nHalf = static_cast<int32_t>(w * w / 2);
    auto clamp = [](int64_t v, int64_t nLast) { return v < 0 ? 0 : (v > nLast ? nLast : v); };
    TpArrayStatic<const T*> rows(static_cast<uint32_t>(w));
    uint16_t bins[256];
    for (int64_t y = 0; y < H; ++y)
    {
        for (int64_t k = 0; k < w; ++k)
            rows[k] = in.Row<T>(static_cast<int32_t>(clamp(y - h + k, H - 1)));
        T* pDst = out.Row<T>(static_cast<int32_t>(y));
        for (int64_t p = 0; p < P; ++p)
        {
            auto bin = [&](int64_t nRow, int64_t x)
            { return int32_t(rows[nRow][x * P + p]) + kOffset; };
            for (int32_t b = 0; b < 256; ++b)
                bins[b] = 0;
            for (int64_t k = 0; k < w; ++k)
                for (int64_t j = 0; j < w; ++j)
                    ++bins[bin(k, clamp(j - h, W - 1))];
            // The first median is read from the histogram, which gives the
            // middle element of the sorted window.
            int32_t m = 0, c = 0;
            while (c + bins[m] <= nHalf)
                c += bins[m++];
            pDst[p] = static_cast<T>(m - kOffset);
            for (int64_t x = 1; x < W; ++x)
            {
                const int64_t nLeave = clamp(x - 1 - h, W - 1), nEnter = clamp(x + h, W - 1);
                for (int64_t k = 0; k < w; ++k)
                {
                    const int32_t a = bin(k, nLeave);
                    --bins[a];
                    c -= a < m;
                    const int32_t b = bin(k, nEnter);
                    ++bins[b];
                    c += b < m;
                }
                if (c <= nHalf)
                {
                    while (c + bins[m] <= nHalf)
                        c += bins[m++];
                }
                else
                {
                    do
                        c -= bins[--m];
                    while (c > nHalf);
                }
                pDst[x * P + p] = static_cast<T>(m - kOffset);
            }
        }
    }
}

// The 3 x 3 box, coordinates clamped: each column of three is sorted once
// per row, and the median of the nine is the median of (largest column
// minimum, median of the column medians, smallest column maximum).
template <typename T> void Box3(const ClImage& in, ClImage& out)
{
    const int64_t W = in.Width(), H = in.Height(), P = in.Planes(), n = W * P;
    TpArrayStatic<T> sorted(static_cast<uint32_t>(3 * n));
    T* pLow = sorted.Data();
    T* pMid = pLow + n;
    T* pHigh = pMid + n;
    auto lesser = [](T a, T b) { return b < a ? b : a; };
    auto greater = [](T a, T b) { return a < b ? b : a; };
    for (int64_t y = 0; y < H; ++y)
    {
        const T* a = in.Row<T>(static_cast<int32_t>(y > 0 ? y - 1 : 0));
        const T* b = in.Row<T>(static_cast<int32_t>(y));
        const T* c = in.Row<T>(static_cast<int32_t>(y + 1 < H ? y + 1 : H - 1));
        for (int64_t i = 0; i < n; ++i)
        {
            const T lo = lesser(a[i], b[i]), hi = greater(a[i], b[i]);
            pLow[i] = lesser(lo, c[i]);
            pHigh[i] = greater(hi, c[i]);
            pMid[i] = MedianOf3(a[i], b[i], c[i]);
        }
        T* pDst = out.Row<T>(static_cast<int32_t>(y));
        // Sample i combines its column with the columns l and r beside it.
        auto combine = [&](int64_t i, int64_t l, int64_t r)
        {
            const T low = greater(greater(pLow[l], pLow[i]), pLow[r]);
            const T high = lesser(lesser(pHigh[l], pHigh[i]), pHigh[r]);
            pDst[i] = MedianOf3(low, MedianOf3(pMid[l], pMid[i], pMid[r]), high);
        };
        // The first and the last pixel stand in for their missing neighbour;
        // the pixels between need no test, and their loop vectorises.
        int64_t i = 0;
        for (; i < n && i < P; ++i)
            combine(i, i, i + P < n ? i + P : i);
        for (; i < n - P; ++i)
            combine(i, i - P, i + P);
        for (; i < n; ++i)
            combine(i, i - P, i);
    }
}

} // namespace RunningMedian
