#pragma once
// ClWaveletD97: two-dimensional 9/7 wavelet transform by lifting, in place on
// an eFloat32 or eDouble64 image. The transform sees the image upside down
// (logical row r is stored row H - 1 - r), works columns before rows, and
// extrapolates the missing neighbour at the end of a line linearly
// (2 x[last] - x[last - 1]) rather than by mirroring. The moon-value
// thresholds rest on exactly these coefficients.
#include <cstdint>

#include "image/FpImage.h"

class ClWaveletD97
{
public:
    virtual ~ClWaveletD97() = default;

    // nLevel > 0: forward with that many levels; nLevel < 0: inverse with
    // -nLevel levels. Both dimensions must be multiples of 2^|nLevel|.
    void Transform(ClImage& image, int32_t nLevel);

private:
    // Rows are nPitch samples apart; the first nWidth samples of each are
    // transformed.
    void ForwardFloat(float* pData, int64_t nPitch, int32_t nWidth, int32_t nHeight,
                      int32_t nLevels);
    void ForwardDouble(double* pData, int64_t nPitch, int32_t nWidth, int32_t nHeight,
                       int32_t nLevels);
    void InverseFloat(float* pData, int64_t nPitch, int32_t nWidth, int32_t nHeight,
                      int32_t nLevels);
    void InverseDouble(double* pData, int64_t nPitch, int32_t nWidth, int32_t nHeight,
                       int32_t nLevels);
};

namespace WaveletD97
{

// Lifting coefficients c0 to c3, the scale K and its reciprocal J. The
// single-precision members use the float values, K and J held as doubles.
template <typename T> struct Constants;
template <> struct Constants<double>
{
    static constexpr double c[4] = {-1.586134342069365, -0.052980118571886, 0.882911075541188,
                                    0.443506852051114};
    static constexpr double K = 1.149604398860242;
    static constexpr double J = 0.869864451624781;
};
template <> struct Constants<float>
{
    static constexpr double c[4] = {double(-1.5861343145370483f), double(-0.05298011749982834f),
                                    double(0.8829110860824585f), double(0.4435068666934967f)};
    static constexpr double K = double(1.1496044397354126f);
    static constexpr double J = double(0.8698644638061523f);
};

// The lifting steps work on lines of n even values e and n odd values o.
// nLanes lines may lie side by side: value i of lane x is e[i * nLanes + x]
// (the columns of a pass are lifted so, row by row, with the arithmetic of
// each column unchanged). Sums and products are formed in double and
// rounded to the sample type on storing; bUndo subtracts (the inverse).
template <typename T, bool bUndo> inline T Apply(T x, double d)
{
    return bUndo ? static_cast<T>(double(x) - d) : static_cast<T>(double(x) + d);
}

// On o, from e: o[i] += c (e[i] + e[i + 1]); o[n - 1] += c (3 e[n - 1] - e[n - 2]).
// A line of one value has no neighbour to extrapolate from; its missing
// neighbour is taken equal to it, which keeps the step invertible. The
// lanes of the values lie back to back, so the steps that pair neighbours
// run as one loop over all lanes of all values, which vectorises for the
// rows (one lane) as for the columns.
template <typename T, bool bUndo>
void LiftOdd(const T* e, T* o, int64_t n, int64_t nLanes, double c)
{
    const int64_t nPaired = (n - 1) * nLanes;
    for (int64_t j = 0; j < nPaired; ++j)
        o[j] = Apply<T, bUndo>(o[j], c * (double(e[j]) + double(e[j + nLanes])));
    const T* pLast = e + (n - 1) * nLanes;
    const T* pBefore = n > 1 ? pLast - nLanes : pLast;
    T* oLast = o + (n - 1) * nLanes;
    for (int64_t x = 0; x < nLanes; ++x)
    {
        const double last = double(pLast[x]), before = double(pBefore[x]);
        oLast[x] = Apply<T, bUndo>(oLast[x], c * (last + last + last - before));
    }
}

// On e, from o: e[0] += c (3 o[0] - o[1]); e[i] += c (o[i - 1] + o[i]).
template <typename T, bool bUndo>
void LiftEven(T* e, const T* o, int64_t n, int64_t nLanes, double c)
{
    const T* pAfter = n > 1 ? o + nLanes : o;
    for (int64_t x = 0; x < nLanes; ++x)
    {
        const double first = double(o[x]), after = double(pAfter[x]);
        e[x] = Apply<T, bUndo>(e[x], c * (first + first + first - after));
    }
    for (int64_t j = nLanes; j < n * nLanes; ++j)
        e[j] = Apply<T, bUndo>(e[j], c * (double(o[j - nLanes]) + double(o[j])));
}

// Steps c0 (on o), c1 (on e), c2 (on o), c3 (on e); the inverse undoes them
// in the opposite order.
template <typename T> void Lift(T* e, T* o, int64_t n, int64_t nLanes)
{
    const double* c = Constants<T>::c;
    LiftOdd<T, false>(e, o, n, nLanes, c[0]);
    LiftEven<T, false>(e, o, n, nLanes, c[1]);
    LiftOdd<T, false>(e, o, n, nLanes, c[2]);
    LiftEven<T, false>(e, o, n, nLanes, c[3]);
}

template <typename T> void Unlift(T* e, T* o, int64_t n, int64_t nLanes)
{
    const double* c = Constants<T>::c;
    LiftEven<T, true>(e, o, n, nLanes, c[3]);
    LiftOdd<T, true>(e, o, n, nLanes, c[2]);
    LiftEven<T, true>(e, o, n, nLanes, c[1]);
    LiftOdd<T, true>(e, o, n, nLanes, c[0]);
}

// Row of logical index r of an image of H rows, nPitch apart.
template <typename T> inline T* LogicalRow(T* pData, int64_t nPitch, int64_t H, int64_t r)
{
    return pData + (H - 1 - r) * nPitch;
}

// Forward: per level, columns then rows; the even values scaled by K make
// the low half, the odd ones scaled by J the high half; then w and h halve.
template <typename T>
void Forward(T* pData, int64_t nPitch, int64_t W, int64_t H, int32_t nLevels, T* pWork)
{
    const double K = Constants<T>::K, J = Constants<T>::J;
    int64_t w = W, h = H;
    for (int32_t nLevel = 0; nLevel < nLevels; ++nLevel, w /= 2, h /= 2)
    {
        const int64_t nh = h / 2, nw = w / 2;
        // Columns: e holds the even logical rows, o the odd ones.
        T* e = pWork;
        T* o = pWork + nh * w;
        for (int64_t i = 0; i < nh; ++i)
        {
            const T* pEven = LogicalRow(pData, nPitch, H, 2 * i);
            const T* pOdd = LogicalRow(pData, nPitch, H, 2 * i + 1);
            for (int64_t x = 0; x < w; ++x)
            {
                e[i * w + x] = pEven[x];
                o[i * w + x] = pOdd[x];
            }
        }
        Lift(e, o, nh, w);
        for (int64_t i = 0; i < nh; ++i)
        {
            T* pLow = LogicalRow(pData, nPitch, H, i);
            T* pHigh = LogicalRow(pData, nPitch, H, nh + i);
            for (int64_t x = 0; x < w; ++x)
            {
                pLow[x] = static_cast<T>(double(e[i * w + x]) * K);
                pHigh[x] = static_cast<T>(double(o[i * w + x]) * J);
            }
        }
        // Rows: each logical row split into even and odd columns.
        for (int64_t r = 0; r < h; ++r)
        {
            T* pRow = LogicalRow(pData, nPitch, H, r);
            T* re = pWork + r * w;
            T* ro = re + nw;
            for (int64_t i = 0; i < nw; ++i)
            {
                re[i] = pRow[2 * i];
                ro[i] = pRow[2 * i + 1];
            }
            Lift(re, ro, nw, 1);
            for (int64_t i = 0; i < nw; ++i)
            {
                pRow[i] = static_cast<T>(double(re[i]) * K);
                pRow[nw + i] = static_cast<T>(double(ro[i]) * J);
            }
        }
    }
}

// Inverse: from the smallest level up, rows then columns, each divided by
// K and J (not multiplied by the reciprocals), unlifted and interleaved.
template <typename T>
void Inverse(T* pData, int64_t nPitch, int64_t W, int64_t H, int32_t nLevels, T* pWork)
{
    const double K = Constants<T>::K, J = Constants<T>::J;
    int64_t w = W >> (nLevels - 1), h = H >> (nLevels - 1);
    for (int32_t nLevel = 0; nLevel < nLevels; ++nLevel, w *= 2, h *= 2)
    {
        const int64_t nh = h / 2, nw = w / 2;
        for (int64_t r = 0; r < h; ++r)
        {
            T* pRow = LogicalRow(pData, nPitch, H, r);
            T* re = pWork + r * w;
            T* ro = re + nw;
            for (int64_t i = 0; i < nw; ++i)
            {
                re[i] = static_cast<T>(double(pRow[i]) / K);
                ro[i] = static_cast<T>(double(pRow[nw + i]) / J);
            }
            Unlift(re, ro, nw, 1);
            for (int64_t i = 0; i < nw; ++i)
            {
                pRow[2 * i] = re[i];
                pRow[2 * i + 1] = ro[i];
            }
        }
        T* e = pWork;
        T* o = pWork + nh * w;
        for (int64_t i = 0; i < nh; ++i)
        {
            const T* pLow = LogicalRow(pData, nPitch, H, i);
            const T* pHigh = LogicalRow(pData, nPitch, H, nh + i);
            for (int64_t x = 0; x < w; ++x)
            {
                e[i * w + x] = static_cast<T>(double(pLow[x]) / K);
                o[i * w + x] = static_cast<T>(double(pHigh[x]) / J);
            }
        }
        Unlift(e, o, nh, w);
        for (int64_t i = 0; i < nh; ++i)
        {
            T* pEven = LogicalRow(pData, nPitch, H, 2 * i);
            T* pOdd = LogicalRow(pData, nPitch, H, 2 * i + 1);
            for (int64_t x = 0; x < w; ++x)
            {
                pEven[x] = e[i * w + x];
                pOdd[x] = o[i * w + x];
            }
        }
    }
}

} // namespace WaveletD97
