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

// One lifting step on a line held as n even and n odd values. Sums and
// products are formed in double and rounded to the sample type on storing.
// bUndo subtracts instead of adding (the inverse). A line of one value has
// no neighbour to extrapolate from; its missing neighbour is taken equal to
// it, which keeps the step invertible.
template <typename T, bool bUndo> inline T Apply(T x, double d)
{
    return bUndo ? static_cast<T>(double(x) - d) : static_cast<T>(double(x) + d);
}

// On o, from e: o[i] += c (e[i] + e[i + 1]); o[n - 1] += c (3 e[n - 1] - e[n - 2]).
template <typename T, bool bUndo> void LiftOdd(T* e, T* o, int64_t n, double c)
{
    for (int64_t i = 0; i + 1 < n; ++i)
        o[i] = Apply<T, bUndo>(o[i], c * (double(e[i]) + double(e[i + 1])));
    const double last = double(e[n - 1]);
    const double before = n > 1 ? double(e[n - 2]) : last;
    o[n - 1] = Apply<T, bUndo>(o[n - 1], c * (last + last + last - before));
}

// On e, from o: e[0] += c (3 o[0] - o[1]); e[i] += c (o[i - 1] + o[i]).
template <typename T, bool bUndo> void LiftEven(T* e, T* o, int64_t n, double c)
{
    const double first = double(o[0]);
    const double after = n > 1 ? double(o[1]) : first;
    e[0] = Apply<T, bUndo>(e[0], c * (first + first + first - after));
    for (int64_t i = 1; i < n; ++i)
        e[i] = Apply<T, bUndo>(e[i], c * (double(o[i - 1]) + double(o[i])));
}

// The lines of one pass lie one after the other in the work buffer, each as
// n even values followed by n odd values.
template <typename T, bool bUndo>
void LiftLines(T* pWork, int64_t nLines, int64_t n, int nCoefficient, bool bOnOdd)
{
    const double c = Constants<T>::c[nCoefficient];
    for (int64_t l = 0; l < nLines; ++l)
    {
        T* e = pWork + l * 2 * n;
        if (bOnOdd)
            LiftOdd<T, bUndo>(e, e + n, n, c);
        else
            LiftEven<T, bUndo>(e, e + n, n, c);
    }
}

template <typename T> void Lift(T* pWork, int64_t nLines, int64_t n)
{
    LiftLines<T, false>(pWork, nLines, n, 0, true);
    LiftLines<T, false>(pWork, nLines, n, 1, false);
    LiftLines<T, false>(pWork, nLines, n, 2, true);
    LiftLines<T, false>(pWork, nLines, n, 3, false);
}

template <typename T> void Unlift(T* pWork, int64_t nLines, int64_t n)
{
    LiftLines<T, true>(pWork, nLines, n, 3, false);
    LiftLines<T, true>(pWork, nLines, n, 2, true);
    LiftLines<T, true>(pWork, nLines, n, 1, false);
    LiftLines<T, true>(pWork, nLines, n, 0, true);
}

// Sample at logical row r, column x of an image of H rows, nPitch apart.
template <typename T> inline T& At(T* pData, int64_t nPitch, int64_t H, int64_t r, int64_t x)
{
    return pData[(H - 1 - r) * nPitch + x];
}

template <typename T>
void Forward(T* pData, int64_t nPitch, int64_t W, int64_t H, int32_t nLevels, T* pWork)
{
    const double K = Constants<T>::K, J = Constants<T>::J;
    int64_t w = W, h = H;
    for (int32_t nLevel = 0; nLevel < nLevels; ++nLevel, w /= 2, h /= 2)
    {
        const int64_t nh = h / 2, nw = w / 2;
        // Columns: even logical rows, then odd ones, per column.
        for (int64_t x = 0; x < w; ++x)
            for (int64_t i = 0; i < nh; ++i)
            {
                pWork[x * h + i] = At(pData, nPitch, H, 2 * i, x);
                pWork[x * h + nh + i] = At(pData, nPitch, H, 2 * i + 1, x);
            }
        Lift(pWork, w, nh);
        for (int64_t x = 0; x < w; ++x)
            for (int64_t i = 0; i < nh; ++i)
            {
                At(pData, nPitch, H, i, x) = static_cast<T>(double(pWork[x * h + i]) * K);
                At(pData, nPitch, H, nh + i, x) = static_cast<T>(double(pWork[x * h + nh + i]) * J);
            }
        // Rows: even columns, then odd ones, per logical row.
        for (int64_t r = 0; r < h; ++r)
        {
            const T* pRow = &At(pData, nPitch, H, r, 0);
            for (int64_t i = 0; i < nw; ++i)
            {
                pWork[r * w + i] = pRow[2 * i];
                pWork[r * w + nw + i] = pRow[2 * i + 1];
            }
        }
        Lift(pWork, h, nw);
        for (int64_t r = 0; r < h; ++r)
        {
            T* pRow = &At(pData, nPitch, H, r, 0);
            for (int64_t i = 0; i < nw; ++i)
            {
                pRow[i] = static_cast<T>(double(pWork[r * w + i]) * K);
                pRow[nw + i] = static_cast<T>(double(pWork[r * w + nw + i]) * J);
            }
        }
    }
}

template <typename T>
void Inverse(T* pData, int64_t nPitch, int64_t W, int64_t H, int32_t nLevels, T* pWork)
{
    const double K = Constants<T>::K, J = Constants<T>::J;
    int64_t w = W >> (nLevels - 1), h = H >> (nLevels - 1);
    for (int32_t nLevel = 0; nLevel < nLevels; ++nLevel, w *= 2, h *= 2)
    {
        const int64_t nh = h / 2, nw = w / 2;
        // Rows first: divided by K and J, unlifted, put back interleaved.
        for (int64_t r = 0; r < h; ++r)
        {
            const T* pRow = &At(pData, nPitch, H, r, 0);
            for (int64_t i = 0; i < nw; ++i)
            {
                pWork[r * w + i] = static_cast<T>(double(pRow[i]) / K);
                pWork[r * w + nw + i] = static_cast<T>(double(pRow[nw + i]) / J);
            }
        }
        Unlift(pWork, h, nw);
        for (int64_t r = 0; r < h; ++r)
        {
            T* pRow = &At(pData, nPitch, H, r, 0);
            for (int64_t i = 0; i < nw; ++i)
            {
                pRow[2 * i] = pWork[r * w + i];
                pRow[2 * i + 1] = pWork[r * w + nw + i];
            }
        }
        // Then columns.
        for (int64_t x = 0; x < w; ++x)
            for (int64_t i = 0; i < nh; ++i)
            {
                pWork[x * h + i] = static_cast<T>(double(At(pData, nPitch, H, i, x)) / K);
                pWork[x * h + nh + i] = static_cast<T>(double(At(pData, nPitch, H, nh + i, x)) / J);
            }
        Unlift(pWork, w, nh);
        for (int64_t x = 0; x < w; ++x)
            for (int64_t i = 0; i < nh; ++i)
            {
                At(pData, nPitch, H, 2 * i, x) = pWork[x * h + i];
                At(pData, nPitch, H, 2 * i + 1, x) = pWork[x * h + nh + i];
            }
    }
}

} // namespace WaveletD97
