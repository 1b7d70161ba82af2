// ClIpFilterMin and ClIpFilterMax against the extreme of each cut-off window,
// gathered sample by sample, on random images of every type, every window
// width up to 31 and wider than the image; floating samples with NaN against
// the running rule as the design states it, one line at a time.
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>
#include <vector>

#include "operators/IpFilterMax.h"
#include "operators/IpFilterMin.h"
#include "support/OperatorTestImages.h"
#include "WindowReference.h"

using TestImages::At;
using WindowReference::LineBox;
using WindowReference::Walk;

namespace
{

std::vector<int> FilterRow(TpIpFilterExtreme<true>& max, TpIpFilterExtreme<false>& min, bool bMax,
                           std::vector<uint8_t> values, int32_t nWidth)
{
    ClImage in, out;
    in.Create(ClImage::eUInt8, int32_t(values.size()), 1);
    std::copy(values.begin(), values.end(), in.Row<uint8_t>(0));
    EXPECT_EQ(0, bMax ? max.Run(&in, &out, nWidth, eModeX) : min.Run(&in, &out, nWidth, eModeX));
    return std::vector<int>(out.Row<uint8_t>(0), out.Row<uint8_t>(0) + out.Width());
}

// The widths tried: every width up to 31, wider than every image, and the
// extremes of the member.
const std::vector<int32_t>& Widths()
{
    static const std::vector<int32_t> widths = []
    {
        std::vector<int32_t> v = {INT32_MIN, 0, 40, 127, INT32_MAX};
        for (int32_t w = 1; w <= 31; ++w)
            v.push_back(w);
        return v;
    }();
    return widths;
}

// The plain definition: along rows (Mode X), down columns (Mode Y) or rows
// then columns (Mode XY), each sample the extreme of its cut-off window of
// 2 (w / 2) + 1 samples; a width of 1 or less copies.
template <typename T> ClImage CutOffExtreme(bool bMax, const ClImage& in, int32_t nMode, int32_t w)
{
    ClImage result = in;
    if (w <= 1)
        return result;
    auto extreme = [bMax](const std::vector<T>& v)
    {
        T m = v[0];
        for (T s : v)
            m = bMax ? std::max(m, s) : std::min(m, s);
        return m;
    };
    const long h = w / 2;
    if (nMode & eModeX)
        result = Walk<T>(result, LineBox(in.Width(), in.Height(), h, true), extreme);
    if (nMode & eModeY)
        result = Walk<T>(result, LineBox(in.Width(), in.Height(), h, false), extreme);
    return result;
}

// The running rule as stated, on one line of n samples nStep apart: the
// extreme of the first window by a scan; an entering sample that is at
// least as extreme replaces it; otherwise, when the leaving sample equals
// it, the window is rescanned, the earlier sample winning ties.
template <typename T> void RunningLine(bool bMax, const T* x, T* out, long nStep, long n, long h)
{
    h = std::min(h, n - 1);
    auto scan = [&](long a, long b)
    {
        T m = x[a * nStep];
        for (long j = a + 1; j <= b; ++j)
            if (bMax ? x[j * nStep] > m : x[j * nStep] < m)
                m = x[j * nStep];
        return m;
    };
    T m = scan(0, h);
    out[0] = m;
    for (long i = 1; i < n; ++i)
    {
        const long nEnter = i + h, nLeave = i - h - 1;
        if (nEnter < n && (bMax ? x[nEnter * nStep] >= m : x[nEnter * nStep] <= m))
            m = x[nEnter * nStep];
        else if (nLeave >= 0 && x[nLeave * nStep] == m)
            m = scan(i - h, std::min(nEnter, n - 1));
        out[i * nStep] = m;
    }
}

template <typename T> ClImage RunningRule(bool bMax, const ClImage& in, int32_t nMode, int32_t w)
{
    ClImage result = in;
    if (w <= 1)
        return result;
    for (bool bX : {true, false})
    {
        if (!(nMode & (bX ? eModeX : eModeY)))
            continue;
        ClImage source = result;
        result.Assign(source);
        const long W = in.Width(), H = in.Height(), P = in.Planes();
        for (long p = 0; p < P; ++p)
            for (long j = 0; j < (bX ? H : W); ++j)
            {
                const long nStart = bX ? j * in.RowPitch() + p : j * P + p;
                RunningLine(bMax, source.Row<T>(0) + nStart, result.Row<T>(0) + nStart,
                            bX ? P : long(in.RowPitch()), bX ? W : H, long(w / 2));
            }
    }
    return result;
}

// Runs both filters over every mode and width on the image against the
// reference, sample for sample and bit for bit.
template <typename T, typename R> void ExpectAllWidths(const ClImage& in, R reference)
{
    ClIpFilterMin min;
    ClIpFilterMax max;
    for (bool bMax : {false, true})
        for (int32_t nMode : {eModeX, eModeY, eModeXY})
            for (int32_t nWidth : Widths())
            {
                SCOPED_TRACE(testing::Message() << in.Width() << "x" << in.Height() << " max "
                                                << bMax << " mode " << nMode << " " << nWidth);
                ClImage input = in, out;
                ASSERT_EQ(0, bMax ? max.Run(&input, &out, nWidth, nMode)
                                  : min.Run(&input, &out, nWidth, nMode));
                const ClImage expected = reference(bMax, in, nMode, nWidth);
                ASSERT_TRUE(TestImages::SameSamples(expected, out));
            }
}

template <typename T> void ExpectOnRandomImages(ClImage::EDataType eType, uint32_t& nSeed)
{
    // Values at the type's limits are the padding of the fast scheme; a few
    // values make ties.
    constexpr T lo = std::numeric_limits<T>::lowest(), hi = std::numeric_limits<T>::max();
    const std::vector<T> limits = {lo, T(lo + 1), T(0), T(1), T(hi - 1), hi};
    ExpectAllWidths<T>(TestImages::RandomImage(eType, 6, 5, 3, nSeed++), CutOffExtreme<T>);
    for (auto [w, h] : WindowReference::Sizes())
    {
        ExpectAllWidths<T>(TestImages::RandomImage(eType, w, h, 1, nSeed++), CutOffExtreme<T>);
        if constexpr (std::is_integral_v<T>)
            ExpectAllWidths<T>(WindowReference::ImageOf(eType, w, h, 1, limits, nSeed++),
                               CutOffExtreme<T>);
    }
}

} // namespace

TEST(IpFilterExtreme, StatedRowExamples)
{
    ClIpFilterMax max;
    ClIpFilterMin min;
    EXPECT_EQ((std::vector<int>{1, 1, 1, 7}), FilterRow(max, min, false, {5, 1, 7, 8}, 3));
    EXPECT_EQ((std::vector<int>{5, 7, 8, 8}), FilterRow(max, min, true, {5, 1, 7, 8}, 3));
    // An even width runs as the next odd one; a wide window covers the row.
    EXPECT_EQ((std::vector<int>{7, 8, 8, 8}), FilterRow(max, min, true, {5, 1, 7, 8}, 4));
    EXPECT_EQ((std::vector<int>{1, 1, 1, 1}), FilterRow(max, min, false, {5, 1, 7, 8}, 127));
}

TEST(IpFilterExtreme, IntegerSamplesAreTheExtremeOfTheCutOffWindow)
{
    uint32_t nSeed = 1;
    ExpectOnRandomImages<uint8_t>(ClImage::eUInt8, nSeed);
    ExpectOnRandomImages<uint16_t>(ClImage::eUInt16, nSeed);
    ExpectOnRandomImages<uint32_t>(ClImage::eUInt32, nSeed);
    ExpectOnRandomImages<int8_t>(ClImage::eInt8, nSeed);
    ExpectOnRandomImages<int16_t>(ClImage::eInt16, nSeed);
    ExpectOnRandomImages<int32_t>(ClImage::eInt32, nSeed);
}

TEST(IpFilterExtreme, FloatingSamplesWithoutNaNAreTheExtremeOfTheCutOffWindow)
{
    uint32_t nSeed = 100;
    ExpectOnRandomImages<float>(ClImage::eFloat32, nSeed);
    ExpectOnRandomImages<double>(ClImage::eDouble64, nSeed);
}

TEST(IpFilterExtreme, FloatingSamplesWithNaNFollowTheRunningRule)
{
    // With NaN (and zeros of both signs) the result depends on the order of
    // the comparisons, which the running rule fixes.
    auto run = [](auto zero, ClImage::EDataType eType)
    {
        using T = decltype(zero);
        const T nan = std::numeric_limits<T>::quiet_NaN(), inf = std::numeric_limits<T>::infinity();
        const std::vector<T> values = {nan, nan, -inf, -1, T(-0.0), T(0), 2, inf};
        uint32_t nSeed = 200;
        for (auto [w, h] : WindowReference::Sizes())
            ExpectAllWidths<T>(WindowReference::ImageOf(eType, w, h, 1, values, nSeed++),
                               RunningRule<T>);
    };
    run(float(0), ClImage::eFloat32);
    run(double(0), ClImage::eDouble64);
}

TEST(IpFilterExtreme, PlanesOfOneImageAreFilteredApart)
{
    // The hook filters an image of several planes as it is, each plane on
    // its own; the base splits planes before it, so only a direct call
    // reaches this.
    for (ClImage::EDataType eType : {ClImage::eUInt8, ClImage::eInt16, ClImage::eDouble64})
        for (int32_t nMode : {eModeX, eModeY, eModeXY})
            for (int32_t nWidth : {3, 8, 31})
            {
                SCOPED_TRACE(testing::Message() << int(eType) << " " << nMode << " " << nWidth);
                ClImage in = TestImages::RandomImage(eType, 11, 7, 3, 300 + nWidth), out;
                ClIpFilterMax max;
                max.m_pInImage = &in, max.m_pOutImage = &out;
                max.m_nFilterWidth = nWidth, max.m_nMode = nMode;
                ASSERT_EQ(0, max.FilterSinglePlane());
                SelectDataType(eType,
                               [&](auto tag)
                               {
                                   using T = typename decltype(tag)::Type;
                                   EXPECT_TRUE(TestImages::SameSamples(
                                       CutOffExtreme<T>(true, in, nMode, nWidth), out));
                                   return 0;
                               });
            }
}

TEST(IpFilterExtreme, TallImagesGoDownTheirColumnsInStrips)
{
    // Columns of 300 rows are taken in strips of a few dozen lanes (16 for
    // 32-bit samples), the last one narrower: every strip must meet its own
    // columns only.
    uint32_t nSeed = 500;
    for (ClImage::EDataType eType : {ClImage::eUInt8, ClImage::eInt16, ClImage::eInt32})
        SelectDataType(eType,
                       [&](auto tag)
                       {
                           using T = typename decltype(tag)::Type;
                           const ClImage in = TestImages::RandomImage(eType, 101, 300, 1, nSeed++);
                           ClIpFilterMin min;
                           ClIpFilterMax max;
                           for (bool bMax : {false, true})
                               for (int32_t nMode : {eModeY, eModeXY})
                                   for (int32_t nWidth : {3, 8, 21, 127})
                                   {
                                       SCOPED_TRACE(testing::Message()
                                                    << int(eType) << " " << bMax << " " << nMode
                                                    << " " << nWidth);
                                       ClImage input = in, out;
                                       EXPECT_EQ(0, bMax ? max.Run(&input, &out, nWidth, nMode)
                                                         : min.Run(&input, &out, nWidth, nMode));
                                       EXPECT_TRUE(TestImages::SameSamples(
                                           CutOffExtreme<T>(bMax, in, nMode, nWidth), out));
                                   }
                           return 0;
                       });
}
