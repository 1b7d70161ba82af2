// Rank and running-mean filters against plain window definitions, over
// random images of every sample type, odd sizes and windows wider than the
// image.
#include <gtest/gtest.h>

#include <algorithm>
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

const std::pair<int32_t, int32_t> kSizes[] = {{1, 1}, {1, 7},  {7, 1},  {2, 2},
                                              {5, 3}, {13, 9}, {31, 17}};
const int32_t kWidths[] = {0, 1, 2, 3, 4, 5, 7, 11, 40};

ClImage Row(std::vector<int> values)
{
    ClImage image;
    image.Create(ClImage::eUInt8, static_cast<int32_t>(values.size()), 1);
    for (size_t i = 0; i < values.size(); ++i)
        image.Row<uint8_t>(0)[i] = static_cast<uint8_t>(values[i]);
    return image;
}

std::vector<int> Samples(const ClImage& row)
{
    return std::vector<int>(row.Row<uint8_t>(0), row.Row<uint8_t>(0) + row.Width());
}

// Window [lo, hi] of output i along a line of n: half width h, cut off.
std::pair<long, long> Window(long i, long n, long h)
{
    return {std::max(0L, i - h), std::min(n - 1, i + h)};
}

// Applies f(line, i) to every sample of every row (or column) of plane 0.
template <typename T, typename F> ClImage MapLines(const ClImage& in, bool bColumns, F f)
{
    ClImage out;
    out.CreateLike(in);
    const int32_t nLines = bColumns ? in.Width() : in.Height(),
                  n = bColumns ? in.Height() : in.Width();
    for (int32_t l = 0; l < nLines; ++l)
    {
        std::vector<T> line(n);
        for (int32_t i = 0; i < n; ++i)
            line[i] = bColumns ? At<T>(in, l, i) : At<T>(in, i, l);
        for (int32_t i = 0; i < n; ++i)
            (bColumns ? At<T>(out, l, i) : At<T>(out, i, l)) = f(line, i);
    }
    return out;
}

// Applies f(window samples, count) over the box of half width h, cut off at
// the image (bClamp false) or with clamped coordinates.
template <typename T, typename F> ClImage MapBoxes(const ClImage& in, long h, bool bClamp, F f)
{
    ClImage out;
    out.CreateLike(in);
    for (int32_t y = 0; y < in.Height(); ++y)
        for (int32_t x = 0; x < in.Width(); ++x)
        {
            std::vector<T> window;
            for (long dy = -h; dy <= h; ++dy)
                for (long dx = -h; dx <= h; ++dx)
                {
                    const long xx = x + dx, yy = y + dy;
                    if (bClamp || (xx >= 0 && yy >= 0 && xx < in.Width() && yy < in.Height()))
                        window.push_back(At<T>(in, std::clamp<long>(xx, 0, in.Width() - 1),
                                               std::clamp<long>(yy, 0, in.Height() - 1)));
                }
            At<T>(out, x, y) = f(window);
        }
    return out;
}

// The mean: integer sums start at the rounding term (bRound) and divide
// toward zero; floating sums in double.
template <typename T> T Mean(const std::vector<T>& v, long lo, long hi, long nDivisor, long nRound)
{
    std::conditional_t<std::is_integral_v<T>, int64_t, double> s =
        std::is_integral_v<T> ? nRound : 0;
    for (long j = lo; j <= hi; ++j)
        s += v[j];
    return static_cast<T>(s / nDivisor);
}

// Integers must agree exactly; floating running sums drift by rounding.
template <typename T> void ExpectClose(const ClImage& expected, const ClImage& actual)
{
    const double dTolerance = std::is_same_v<T, float> ? 0.05 : 1e-7;
    if constexpr (std::is_integral_v<T>)
        EXPECT_TRUE(TestImages::SameSamples(expected, actual));
    else
        for (int32_t y = 0; y < expected.Height(); ++y)
            for (int32_t x = 0; x < expected.Width(); ++x)
                ASSERT_NEAR(At<T>(expected, x, y), At<T>(actual, x, y), dTolerance);
}

// Runs check(tag, image) for a random image of every type and size.
template <typename F> void ForAllImages(F check)
{
    uint32_t nSeed = 1;
    for (ClImage::EDataType eType : TestImages::AllTypes())
        for (auto [w, h] : kSizes)
        {
            ClImage in = TestImages::RandomImage(eType, w, h, 1, nSeed++);
            SelectDataType(eType,
                           [&](auto tag)
                           {
                               SCOPED_TRACE(testing::Message()
                                            << ClImage::TypeText(eType) << " " << w << "x" << h);
                               check(tag, in);
                               return 0;
                           });
        }
}

} // namespace

TEST(RankFilters, StatedExamples)
{
    ClImage in = Row({10, 20, 30, 40}), out;
    ClIpFilterMid mid;
    mid.m_nMode = eModeX;
    ASSERT_EQ(0, mid.Run(&in, &out, 3));
    EXPECT_EQ((std::vector<int>{15, 20, 30, 35}), Samples(out));
    ASSERT_EQ(0, mid.Run(&in, &out, 9)); // shortened to the row, kept in the member
    EXPECT_EQ(3, mid.m_nFilterWidth);
    ClImage single = Row({7});
    EXPECT_EQ(ZRC_ERROR_INTERNAL, mid.Run(&single, &out, 3)); // width 0 after shortening
    mid.m_nMode = eModeDirected;
    EXPECT_EQ(ZRC_ERROR_FORMAT_NOTSUPPORTED, mid.Run(&in, &out, 3));

    ClImage dip = Row({5, 1, 7, 8});
    ClIpFilterMin min;
    ASSERT_EQ(0, min.Run(&dip, &out, 3, eModeX));
    EXPECT_EQ((std::vector<int>{1, 1, 1, 7}), Samples(out));
    ClIpFilterMax max;
    ASSERT_EQ(0, max.Run(&dip, &out, 3, eModeX));
    EXPECT_EQ((std::vector<int>{5, 7, 8, 8}), Samples(out));
    EXPECT_EQ(ZRC_ERROR_FORMAT_NOTSUPPORTED, max.Run(&dip, &out, 3, eModeDirectedOrtho));
    min.m_pInImage = &dip;
    min.m_pOutImage = nullptr;
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

    ClIpFilterMedian median;
    ClImage bigger = TestImages::RandomImage(ClImage::eUInt8, 6, 5, 1, 4);
    const uint8_t* pBefore = out.Data();
    EXPECT_EQ(ZRC_ERROR_PARAM_OUT_OF_RANGE, median.Run(&bigger, &out, 2, eModeX));
    EXPECT_EQ(pBefore, out.Data()); // the output stays as it was
    EXPECT_EQ(4, out.Width());
    EXPECT_EQ(ZRC_ERROR_PARAM_OUT_OF_RANGE, median.Run(&bigger, &out, 101, eModeXY));
    ASSERT_EQ(0, median.Run(&bigger, &out, 100, eModeXY)); // tested before the forcing to odd
    EXPECT_EQ(101, median.m_nFilterWidth);
    ASSERT_EQ(0, median.Run(&single, &out, 5, eModeXY));
    EXPECT_EQ(7, At<uint8_t>(out, 0, 0));
    ClImage empty, words = TestImages::RandomImage(ClImage::eUInt16, 6, 5, 1, 7);
    EXPECT_EQ(ZRC_ERROR_BITMAP_DIMENSION, median.Run(&empty, &out, 3, eModeX));
    EXPECT_EQ(ZRC_ERROR_FORMAT_NOTSUPPORTED, median.Run(&words, &out, 3, eModeXY)); // 8-bit only
}

TEST(IpFilterMid, MatchesTheWindowMeanOnRandomImagesOfEveryType)
{
    ForAllImages(
        [](auto tag, ClImage& in)
        {
            using T = typename decltype(tag)::Type;
            for (int32_t nMode : {eModeX, eModeY, eModeXY})
                for (int32_t nWidth : kWidths)
                {
                    SCOPED_TRACE(testing::Message() << "mode " << nMode << " width " << nWidth);
                    ClIpFilterMid mid;
                    mid.m_nMode = nMode;
                    ClImage out;
                    const int32_t nResult = mid.Run(&in, &out, nWidth);
                    long w = nWidth | 1;
                    if (w <= 1 || (nMode == eModeXY && (in.Width() < w || in.Height() < w)))
                    {
                        ASSERT_EQ(0, nResult);
                        EXPECT_TRUE(TestImages::SameSamples(in, out)); // copied
                    }
                    else if (nMode == eModeXY)
                    {
                        ASSERT_EQ(0, nResult);
                        ExpectClose<T>(MapBoxes<T>(in, w / 2, false,
                                                   [](auto& v) {
                                                       return Mean(v, 0, long(v.size()) - 1,
                                                                   long(v.size()), 0);
                                                   }),
                                       out);
                    }
                    else
                    {
                        const long n = nMode == eModeY ? in.Height() : in.Width();
                        w = std::min(w, n - 1);
                        EXPECT_EQ(w, mid.m_nFilterWidth);
                        ASSERT_EQ(w == 0 ? ZRC_ERROR_INTERNAL : 0, nResult);
                        if (w > 0) // the divisor is the window's count, at most w
                            ExpectClose<T>(MapLines<T>(in, nMode == eModeY,
                                                       [&](auto& v, long i)
                                                       {
                                                           auto [lo, hi] = Window(i, n, w / 2);
                                                           return Mean(v, lo, hi,
                                                                       std::min(hi - lo + 1, w),
                                                                       w / 2);
                                                       }),
                                           out);
                    }
                }
        });
}

TEST(IpFilterMinMax, MatchTheWindowExtremesOnRandomImagesOfEveryType)
{
    ForAllImages(
        [](auto tag, ClImage& in)
        {
            using T = typename decltype(tag)::Type;
            for (bool bMax : {false, true})
                for (int32_t nMode : {eModeX, eModeY, eModeXY})
                    for (int32_t nWidth : kWidths)
                    {
                        SCOPED_TRACE(testing::Message()
                                     << "mode " << nMode << " width " << nWidth << " max " << bMax);
                        ClIpFilterMin min;
                        ClIpFilterMax max;
                        ClImage out;
                        ASSERT_EQ(0, bMax ? max.Run(&in, &out, nWidth, nMode)
                                          : min.Run(&in, &out, nWidth, nMode));
                        ClImage expected = in;
                        auto extreme = [&](auto& v, long i)
                        {
                            auto [lo, hi] = Window(i, long(v.size()), nWidth / 2);
                            return bMax ? *std::max_element(v.begin() + lo, v.begin() + hi + 1)
                                        : *std::min_element(v.begin() + lo, v.begin() + hi + 1);
                        };
                        if (nWidth > 1 && (nMode & eModeX))
                            expected = MapLines<T>(expected, false, extreme);
                        if (nWidth > 1 && (nMode & eModeY))
                            expected = MapLines<T>(expected, true, extreme);
                        EXPECT_TRUE(TestImages::SameSamples(expected, out));
                    }
        });
}

TEST(IpFilterMedian, MatchesTheSortedWindowOnRandomImagesOfEveryType)
{
    ForAllImages(
        [](auto tag, ClImage& in)
        {
            using T = typename decltype(tag)::Type;
            for (int32_t nMode : {eModeX, eModeY})
                for (int32_t nWidth : kWidths)
                {
                    if (nWidth == 2)
                        continue; // refused
                    SCOPED_TRACE(testing::Message() << "mode " << nMode << " width " << nWidth);
                    ClIpFilterMedian median;
                    ClImage out;
                    ASSERT_EQ(0, median.Run(&in, &out, nWidth, nMode));
                    // Symmetric window, its half width at most the distance to the border.
                    auto middle = [&](auto& v, long i)
                    {
                        const long r = std::min({long(nWidth / 2), i, long(v.size()) - 1 - i});
                        std::vector<T> window(v.begin() + (i - r), v.begin() + (i + r + 1));
                        std::nth_element(window.begin(), window.begin() + r, window.end());
                        return window[r];
                    };
                    EXPECT_TRUE(TestImages::SameSamples(
                        nWidth <= 1 ? in : MapLines<T>(in, nMode == eModeY, middle), out));
                }
        });
}

TEST(IpFilterMedian, XYMatchesTheClampedBoxMedianOn8BitImages)
{
    ForAllImages(
        [](auto tag, ClImage& in)
        {
            using T = typename decltype(tag)::Type;
            if constexpr (sizeof(T) == 1)
                for (int32_t nWidth : {3, 4, 5, 9, 40})
                {
                    ClIpFilterMedian median;
                    ClImage out;
                    ASSERT_EQ(0, median.Run(&in, &out, nWidth, eModeXY));
                    auto middle = [](std::vector<T>& v)
                    {
                        std::nth_element(v.begin(), v.begin() + v.size() / 2, v.end());
                        return v[v.size() / 2];
                    };
                    EXPECT_TRUE(
                        TestImages::SameSamples(MapBoxes<T>(in, nWidth / 2, true, middle), out))
                        << nWidth;
                }
        });
}
