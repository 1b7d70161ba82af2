// Rank and running-mean filters against plain window definitions, over
// random images of every sample type, odd sizes and windows wider than the
// image.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "operators/IpFilterMax.h"
#include "operators/IpFilterMedian.h"
#include "operators/IpFilterMid.h"
#include "operators/IpFilterMin.h"
#include "sdk/Exception.h"
#include "support/OperatorTestImages.h"

using TestImages::At;

namespace
{

struct Size
{
    int32_t w, h;
};
const Size kSizes[] = {{1, 1}, {1, 7}, {7, 1}, {2, 2}, {5, 3}, {13, 9}, {31, 17}};
const long kWidths[] = {0, 1, 2, 3, 4, 5, 7, 11, 40};

ClImage Row(ClImage::EDataType eType, std::vector<double> values)
{
    ClImage image;
    image.Create(eType, static_cast<int32_t>(values.size()), 1);
    SelectDataType(eType,
                   [&](auto tag)
                   {
                       using T = typename decltype(tag)::Type;
                       for (size_t i = 0; i < values.size(); ++i)
                           image.Row<T>(0)[i] = static_cast<T>(values[i]);
                       return 0;
                   });
    return image;
}

std::vector<int> Samples(const ClImage& image)
{
    std::vector<int> v;
    for (int32_t y = 0; y < image.Height(); ++y)
        for (int32_t x = 0; x < image.Width(); ++x)
            v.push_back(At<uint8_t>(image, x, y));
    return v;
}

// Applies f to every row (or every column) of plane 0 and collects the lines.
template <typename T, typename F> ClImage MapLines(const ClImage& in, bool bColumns, F f)
{
    ClImage out;
    out.CreateLike(in);
    const int32_t nLines = bColumns ? in.Width() : in.Height();
    const int32_t n = bColumns ? in.Height() : in.Width();
    for (int32_t l = 0; l < nLines; ++l)
    {
        std::vector<T> line(n);
        for (int32_t i = 0; i < n; ++i)
            line[i] = bColumns ? At<T>(in, l, i) : At<T>(in, i, l);
        const std::vector<T> result = f(line);
        for (int32_t i = 0; i < n; ++i)
            (bColumns ? At<T>(out, l, i) : At<T>(out, i, l)) = result[i];
    }
    return out;
}

template <typename T> std::vector<T> ExtremeLine(const std::vector<T>& v, long h, bool bMax)
{
    const long n = static_cast<long>(v.size());
    std::vector<T> out(n);
    for (long i = 0; i < n; ++i)
    {
        auto first = v.begin() + std::max(0L, i - h), last = v.begin() + std::min(n - 1, i + h) + 1;
        out[i] = bMax ? *std::max_element(first, last) : *std::min_element(first, last);
    }
    return out;
}

// Running mean along a line: rounding term h for integers, divided by the
// samples in the window, at most w.
template <typename T> std::vector<T> MeanLine(const std::vector<T>& v, long w)
{
    const long n = static_cast<long>(v.size()), h = w / 2;
    std::vector<T> out(n);
    for (long i = 0; i < n; ++i)
    {
        const long lo = std::max(0L, i - h), hi = std::min(n - 1, i + h);
        const long nDivisor = std::min(hi - lo + 1, w);
        if constexpr (std::is_integral_v<T>)
        {
            int64_t s = h;
            for (long j = lo; j <= hi; ++j)
                s += v[j];
            out[i] = static_cast<T>(s / nDivisor);
        }
        else
        {
            double s = 0;
            for (long j = lo; j <= hi; ++j)
                s += v[j];
            out[i] = static_cast<T>(s / nDivisor);
        }
    }
    return out;
}

template <typename T> std::vector<T> MedianLine(const std::vector<T>& v, long h)
{
    const long n = static_cast<long>(v.size());
    std::vector<T> out(n);
    for (long i = 0; i < n; ++i)
    {
        const long r = std::min({h, i, n - 1 - i});
        std::vector<T> window(v.begin() + (i - r), v.begin() + (i + r + 1));
        std::sort(window.begin(), window.end());
        out[i] = window[r];
    }
    return out;
}

// Mean of the window cut off at the image border, without rounding term.
template <typename T> ClImage MeanBox(const ClImage& in, long w)
{
    ClImage out;
    out.CreateLike(in);
    const long h = w / 2;
    for (int32_t y = 0; y < in.Height(); ++y)
        for (int32_t x = 0; x < in.Width(); ++x)
        {
            std::conditional_t<std::is_integral_v<T>, int64_t, double> s = 0;
            long nCount = 0;
            for (long yy = std::max(0L, y - h); yy <= std::min<long>(in.Height() - 1, y + h); ++yy)
                for (long xx = std::max(0L, x - h); xx <= std::min<long>(in.Width() - 1, x + h);
                     ++xx)
                {
                    s += At<T>(in, xx, yy);
                    ++nCount;
                }
            At<T>(out, x, y) = static_cast<T>(s / nCount);
        }
    return out;
}

// Median of the w x w box with coordinates clamped to the image.
template <typename T> ClImage MedianBox(const ClImage& in, long w)
{
    ClImage out;
    out.CreateLike(in);
    const long h = w / 2;
    for (int32_t y = 0; y < in.Height(); ++y)
        for (int32_t x = 0; x < in.Width(); ++x)
        {
            std::vector<T> window;
            for (long dy = -h; dy <= h; ++dy)
                for (long dx = -h; dx <= h; ++dx)
                    window.push_back(At<T>(in, std::clamp<long>(x + dx, 0, in.Width() - 1),
                                           std::clamp<long>(y + dy, 0, in.Height() - 1)));
            std::sort(window.begin(), window.end());
            At<T>(out, x, y) = window[window.size() / 2];
        }
    return out;
}

// Floating running sums drift by rounding; integers must agree exactly.
template <typename T> void ExpectNear(const ClImage& expected, const ClImage& actual)
{
    ASSERT_EQ(expected.Width(), actual.Width());
    ASSERT_EQ(expected.Height(), actual.Height());
    if constexpr (std::is_integral_v<T>)
    {
        EXPECT_TRUE(TestImages::SameSamples(expected, actual));
    }
    else
    {
        const double dTolerance = std::is_same_v<T, float> ? 0.05 : 1e-7;
        for (int32_t y = 0; y < expected.Height(); ++y)
            for (int32_t x = 0; x < expected.Width(); ++x)
                ASSERT_NEAR(At<T>(expected, x, y), At<T>(actual, x, y), dTolerance)
                    << x << "," << y;
    }
}

// Runs check<T>(image, seed) for every sample type, size and seed.
template <typename F> void ForAllImages(F check)
{
    uint32_t nSeed = 1;
    for (ClImage::EDataType eType : TestImages::AllTypes())
        for (const Size& size : kSizes)
        {
            ClImage in = TestImages::RandomImage(eType, size.w, size.h, 1, nSeed++);
            SelectDataType(eType,
                           [&](auto tag)
                           {
                               check(tag, in);
                               return 0;
                           });
        }
}

const int32_t kLineModes[] = {eModeX, eModeY, eModeXY};

} // namespace

TEST(IpFilterMid, StatedExamples)
{
    ClIpFilterMid mid;
    ClImage in = Row(ClImage::eUInt8, {10, 20, 30, 40}), out;
    mid.m_nMode = eModeX;
    ASSERT_EQ(0, mid.Run(&in, &out, 3));
    EXPECT_EQ((std::vector<int>{15, 20, 30, 35}), Samples(out));

    // A width not below the row is shortened, and the member shows it.
    ASSERT_EQ(0, mid.Run(&in, &out, 9));
    EXPECT_EQ(3, mid.m_nFilterWidth);
    // An even width forced odd: 2 runs as 3.
    ASSERT_EQ(0, mid.Run(&in, &out, 2));
    EXPECT_EQ(3, mid.m_nFilterWidth);

    // A one-sample row leaves a width of 0: -101.
    ClImage single = Row(ClImage::eUInt8, {7});
    EXPECT_EQ(ZRC_ERROR_INTERNAL, mid.Run(&single, &out, 3));

    // XY on an image smaller than the window is a copy.
    ClImage small = TestImages::RandomImage(ClImage::eUInt8, 4, 9, 1, 3);
    mid.m_nMode = eModeXY;
    ASSERT_EQ(0, mid.Run(&small, &out, 5));
    EXPECT_TRUE(TestImages::SameSamples(small, out));

    mid.m_nMode = eModeDirected;
    EXPECT_EQ(ZRC_ERROR_FORMAT_NOTSUPPORTED, mid.Run(&small, &out, 3));
}

TEST(IpFilterMid, MatchesTheWindowMeanOnRandomImagesOfEveryType)
{
    ForAllImages(
        [](auto tag, ClImage& in)
        {
            using T = typename decltype(tag)::Type;
            for (int32_t nMode : kLineModes)
                for (long nWidth : kWidths)
                {
                    SCOPED_TRACE(testing::Message()
                                 << ClImage::TypeText(in.DataType()) << " " << in.Width() << "x"
                                 << in.Height() << " mode " << nMode << " width " << nWidth);
                    ClIpFilterMid mid;
                    mid.m_nMode = nMode;
                    ClImage out;
                    const int32_t nResult = mid.Run(&in, &out, nWidth);
                    long w = nWidth | 1;
                    if (w <= 1)
                    {
                        ASSERT_EQ(0, nResult);
                        EXPECT_TRUE(TestImages::SameSamples(in, out));
                        continue;
                    }
                    if (nMode == eModeXY)
                    {
                        ASSERT_EQ(0, nResult);
                        if (in.Width() < w || in.Height() < w)
                            EXPECT_TRUE(TestImages::SameSamples(in, out));
                        else
                            ExpectNear<T>(MeanBox<T>(in, w), out);
                        continue;
                    }
                    const bool bColumns = nMode == eModeY;
                    const long n = bColumns ? in.Height() : in.Width();
                    if (w >= n)
                        w = n - 1;
                    EXPECT_EQ(w, mid.m_nFilterWidth);
                    if (w == 0)
                    {
                        EXPECT_EQ(ZRC_ERROR_INTERNAL, nResult);
                        continue;
                    }
                    ASSERT_EQ(0, nResult);
                    ExpectNear<T>(
                        MapLines<T>(in, bColumns, [w](auto& v) { return MeanLine(v, w); }), out);
                }
        });
}

TEST(IpFilterMinMax, StatedExamples)
{
    ClIpFilterMin min;
    ClImage in = Row(ClImage::eUInt8, {5, 1, 7, 8}), out;
    ASSERT_EQ(0, min.Run(&in, &out, 3, eModeX));
    EXPECT_EQ((std::vector<int>{1, 1, 1, 7}), Samples(out));

    ClIpFilterMax max;
    ASSERT_EQ(0, max.Run(&in, &out, 3, eModeX));
    EXPECT_EQ((std::vector<int>{5, 7, 8, 8}), Samples(out));

    ClImage flat = Row(ClImage::eUInt8, {4, 4, 4, 4, 4});
    ASSERT_EQ(0, min.Run(&flat, &out, 3, eModeX));
    EXPECT_EQ((std::vector<int>{4, 4, 4, 4, 4}), Samples(out));
}

TEST(IpFilterMinMax, MatchTheWindowExtremesOnRandomImagesOfEveryType)
{
    ForAllImages(
        [](auto tag, ClImage& in)
        {
            using T = typename decltype(tag)::Type;
            for (bool bMax : {false, true})
                for (int32_t nMode : kLineModes)
                    for (long nWidth : kWidths)
                    {
                        SCOPED_TRACE(testing::Message()
                                     << ClImage::TypeText(in.DataType()) << " " << in.Width() << "x"
                                     << in.Height() << " mode " << nMode << " width " << nWidth
                                     << (bMax ? " max" : " min"));
                        ClIpFilterMin min;
                        ClIpFilterMax max;
                        ClImage out;
                        ASSERT_EQ(0, bMax ? max.Run(&in, &out, nWidth, nMode)
                                          : min.Run(&in, &out, nWidth, nMode));
                        if (nWidth <= 1)
                        {
                            EXPECT_TRUE(TestImages::SameSamples(in, out));
                            continue;
                        }
                        auto line = [&](auto& v) { return ExtremeLine(v, nWidth / 2, bMax); };
                        ClImage expected = in;
                        if (nMode & eModeX)
                            expected = MapLines<T>(expected, false, line);
                        if (nMode & eModeY)
                            expected = MapLines<T>(expected, true, line);
                        EXPECT_TRUE(TestImages::SameSamples(expected, out));
                        EXPECT_EQ(nWidth, bMax ? max.m_nFilterWidth : min.m_nFilterWidth);
                    }
        });
}

TEST(IpFilterMinMax, RefuseMissingImagesAndDirectedModes)
{
    ClImage in = TestImages::RandomImage(ClImage::eUInt8, 6, 5, 1, 9), out;
    ClIpFilterMin min;
    min.m_pInImage = &in;
    try
    {
        min.Run();
        FAIL() << "no exception";
    }
    catch (const ClException& e)
    {
        EXPECT_EQ(ZRC_ERROR_BAD_POINTER, e.GetCode());
        EXPECT_EQ("m_pOutImage is not set", TestImages::Remark(e.GetMessage()));
    }
    min.m_pInImage = nullptr;
    min.m_pOutImage = &out;
    EXPECT_EQ(ZRC_ERROR_PARAM_OUT_OF_RANGE, min.Run());

    ClIpFilterMax max;
    EXPECT_EQ(ZRC_ERROR_FORMAT_NOTSUPPORTED, max.Run(&in, &out, 3, eModeDirectedOrtho));
    EXPECT_EQ(ZRC_ERROR_FORMAT_NOTSUPPORTED, max.Run(&in, &out, 3, eModeDirected));

    ClImage unknown;
    unknown.Create(ClImage::eDefaultType, 3, 3);
    EXPECT_EQ(ZRC_ERROR_INTERNAL, max.Run(&unknown, &out, 3, eModeX));
}

TEST(IpFilterMinMax, FilterColourImagesPlaneByPlaneUpToThree)
{
    ClImage in = TestImages::RandomImage(ClImage::eUInt8, 9, 7, 4, 21), out;
    in.SetOrigin(5);
    ClIpFilterMax max;
    ASSERT_EQ(0, max.Run(&in, &out, 5, eModeXY));
    ASSERT_EQ(4u, out.Planes());
    EXPECT_EQ(5u, out.Origin());
    for (uint32_t p = 0; p < 4; ++p)
        for (int32_t y = 0; y < in.Height(); ++y)
            for (int32_t x = 0; x < in.Width(); ++x)
            {
                uint8_t expected = At<uint8_t>(in, x, y, p);
                if (p < 3) // a fourth plane is joined unfiltered
                    for (int32_t yy = std::max(0, y - 2); yy <= std::min(in.Height() - 1, y + 2);
                         ++yy)
                        for (int32_t xx = std::max(0, x - 2); xx <= std::min(in.Width() - 1, x + 2);
                             ++xx)
                            expected = std::max(expected, At<uint8_t>(in, xx, yy, p));
                ASSERT_EQ(expected, At<uint8_t>(out, x, y, p)) << x << "," << y << "," << p;
            }
}

TEST(IpFilterMedian, StatedExamplesAndRefusals)
{
    ClIpFilterMedian median;
    ClImage in = TestImages::RandomImage(ClImage::eUInt8, 6, 5, 1, 4);
    ClImage out = TestImages::RandomImage(ClImage::eUInt8, 2, 2, 1, 5);
    const ClImage before = out;

    // Width 2 is refused and leaves the output as it was.
    EXPECT_EQ(ZRC_ERROR_PARAM_OUT_OF_RANGE, median.Run(&in, &out, 2, eModeX));
    EXPECT_EQ(before.Data(), out.Data());
    EXPECT_EQ(2, out.Width());

    // The XY range is tested before the forcing to odd.
    EXPECT_EQ(ZRC_ERROR_PARAM_OUT_OF_RANGE, median.Run(&in, &out, 101, eModeXY));
    ASSERT_EQ(0, median.Run(&in, &out, 100, eModeXY));
    EXPECT_EQ(101, median.m_nFilterWidth);

    ClImage pixel = TestImages::RandomImage(ClImage::eUInt8, 1, 1, 1, 6);
    ASSERT_EQ(0, median.Run(&pixel, &out, 5, eModeXY));
    EXPECT_EQ(At<uint8_t>(pixel, 0, 0), At<uint8_t>(out, 0, 0));

    ClImage empty;
    EXPECT_EQ(ZRC_ERROR_BITMAP_DIMENSION, median.Run(&empty, &out, 3, eModeX));
    median.m_pOutImage = nullptr;
    median.m_pInImage = &in;
    EXPECT_EQ(ZRC_ERROR_PARAM_OUT_OF_RANGE, median.Run());

    // Only 8-bit data have the histogram median.
    ClImage wide = TestImages::RandomImage(ClImage::eUInt16, 6, 5, 1, 7);
    EXPECT_EQ(ZRC_ERROR_FORMAT_NOTSUPPORTED, median.Run(&wide, &out, 3, eModeXY));
    EXPECT_EQ(ZRC_ERROR_FORMAT_NOTSUPPORTED, median.Run(&wide, &out, 3, eModeDirected));
}

TEST(IpFilterMedian, MatchesTheSortedWindowOnRandomImagesOfEveryType)
{
    ForAllImages(
        [](auto tag, ClImage& in)
        {
            using T = typename decltype(tag)::Type;
            for (int32_t nMode : {eModeX, eModeY})
                for (long nWidth : kWidths)
                {
                    if (nWidth == 2)
                        continue; // refused, see above
                    SCOPED_TRACE(testing::Message()
                                 << ClImage::TypeText(in.DataType()) << " " << in.Width() << "x"
                                 << in.Height() << " mode " << nMode << " width " << nWidth);
                    ClIpFilterMedian median;
                    ClImage out;
                    ASSERT_EQ(0, median.Run(&in, &out, nWidth, nMode));
                    if (nWidth <= 1)
                    {
                        EXPECT_TRUE(TestImages::SameSamples(in, out));
                        continue;
                    }
                    EXPECT_TRUE(TestImages::SameSamples(
                        MapLines<T>(in, nMode == eModeY,
                                    [&](auto& v) { return MedianLine(v, nWidth / 2); }),
                        out));
                }
        });
}

TEST(IpFilterMedian, XYMatchesTheClampedBoxMedianOn8BitImages)
{
    uint32_t nSeed = 50;
    for (ClImage::EDataType eType : {ClImage::eUInt8, ClImage::eInt8})
        for (const Size& size : kSizes)
            for (long nWidth : {3L, 4L, 5L, 9L, 40L})
            {
                SCOPED_TRACE(testing::Message() << ClImage::TypeText(eType) << " " << size.w << "x"
                                                << size.h << " width " << nWidth);
                ClImage in = TestImages::RandomImage(eType, size.w, size.h, 1, nSeed++), out;
                ClIpFilterMedian median;
                ASSERT_EQ(0, median.Run(&in, &out, nWidth, eModeXY));
                const ClImage expected = eType == ClImage::eUInt8
                                             ? MedianBox<uint8_t>(in, nWidth | 1)
                                             : MedianBox<int8_t>(in, nWidth | 1);
                EXPECT_TRUE(TestImages::SameSamples(expected, out));
            }
}
