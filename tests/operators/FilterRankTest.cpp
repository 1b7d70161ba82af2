// Min, max, mid and median against plain window definitions, over random
// images of every sample type, odd sizes, several planes, every mode and
// widths from negative to huge (the sanitizer build watches the buffers).
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <vector>

#include "image/ImageTestSupport.h"
#include "operators/IpFilterMax.h"
#include "operators/IpFilterMedian.h"
#include "operators/IpFilterMid.h"
#include "operators/IpFilterMin.h"
#include "support/OperatorTestImages.h"

using TestImages::At;

namespace
{

constexpr int kMin = 0, kMax = 1, kMid = 2, kMedian = 3;

// Runs a filter; the code of the run or of the exception it threw.
int32_t RunFilter(ClIpFilterBase& filter, ClImage* pIn, ClImage* pOut, int32_t nWidth,
                  int32_t nMode)
{
    filter.m_pInImage = pIn, filter.m_pOutImage = pOut;
    filter.m_nFilterWidth = nWidth, filter.m_nMode = nMode;
    try
    {
        return filter.Run();
    }
    catch (const ClException& e)
    {
        return e.GetCode();
    }
}

// The samples a filter makes of one 8-bit row.
std::vector<int> FilterRow(ClIpFilterBase& filter, std::vector<uint8_t> values, int32_t nWidth,
                           int32_t nMode = eModeX)
{
    ClImage in, out;
    in.Create(ClImage::eUInt8, int32_t(values.size()), 1);
    std::copy(values.begin(), values.end(), in.Row<uint8_t>(0));
    EXPECT_EQ(0, RunFilter(filter, &in, &out, nWidth, nMode));
    return std::vector<int>(out.Row<uint8_t>(0), out.Row<uint8_t>(0) + out.Width());
}

// The samples of plane p in columns x0 to x1 and rows y0 to y1, with the
// coordinates clamped to the image.
template <typename T>
std::vector<T> Window(const ClImage& in, long x0, long x1, long y0, long y1, uint32_t p)
{
    std::vector<T> v;
    for (long y = y0; y <= y1; ++y)
        for (long x = x0; x <= x1; ++x)
            v.push_back(At<T>(in, std::clamp<long>(x, 0, in.Width() - 1),
                              std::clamp<long>(y, 0, in.Height() - 1), p));
    return v;
}

// The image of f(source, x, y, plane) over every sample.
template <typename T, typename F> ClImage Map(const ClImage& in, F f)
{
    ClImage out;
    out.CreateLike(in);
    for (uint32_t p = 0; p < in.Planes(); ++p)
        for (long y = 0; y < in.Height(); ++y)
            for (long x = 0; x < in.Width(); ++x)
                At<T>(out, x, y, p) = f(in, x, y, p);
    return out;
}

// Integer sums start at the rounding term and divide toward zero; floating
// sums run in double.
template <typename T> T Mean(const std::vector<T>& v, long nDivisor, long nRound)
{
    std::conditional_t<std::is_integral_v<T>, int64_t, double> s =
        std::is_integral_v<T> ? nRound : 0;
    for (T x : v)
        s += x;
    return static_cast<T>(s / nDivisor);
}

template <typename T> T Middle(std::vector<T> v)
{
    std::nth_element(v.begin(), v.begin() + v.size() / 2, v.end());
    return v[v.size() / 2];
}

// The code a run must give and, when it is 0, the expected image; nMember
// becomes the width the filter must leave in its member.
template <typename T>
int32_t Expected(int eFilter, int32_t nMode, int32_t& nMember, const ClImage& in, ClImage& expected)
{
    if (eFilter == kMid)
        nMember |= 1; // forced odd before the run
    long w = nMember;
    expected = in;
    if (w <= 1)
        return 0; // copied, whatever the mode
    if (nMode != eModeX && nMode != eModeY && nMode != eModeXY)
        return nMode == eModeDirected || nMode == eModeDirectedOrtho ? ZRC_ERROR_FORMAT_NOTSUPPORTED
                                                                     : -6;
    if (eFilter == kMedian && w < 3)
        return ZRC_ERROR_PARAM_OUT_OF_RANGE;
    const long W = in.Width(), H = in.Height();
    if (eFilter == kMedian && nMode == eModeXY) // a histogram of the clamped box, 8-bit only
    {
        if (w > 100 || sizeof(T) != 1)
            return w > 100 ? ZRC_ERROR_PARAM_OUT_OF_RANGE : ZRC_ERROR_FORMAT_NOTSUPPORTED;
        nMember |= 1;
        expected = Map<T>(
            in, [&](const ClImage& src, long x, long y, uint32_t p)
            { return Middle(Window<T>(src, x - w / 2, x + w / 2, y - w / 2, y + w / 2, p)); });
        return 0;
    }
    if (eFilter == kMid && nMode == eModeXY) // the cut-off box; smaller images are copied
    {
        if (W >= w && H >= w)
            expected = Map<T>(in,
                              [&](const ClImage& src, long x, long y, uint32_t p)
                              {
                                  const long h = w / 2;
                                  const auto v =
                                      Window<T>(src, std::max(0L, x - h), std::min(W - 1, x + h),
                                                std::max(0L, y - h), std::min(H - 1, y + h), p);
                                  return Mean(v, long(v.size()), 0);
                              });
        return 0;
    }
    if (eFilter == kMid) // shortened below the line length
    {
        nMember = int32_t(w = std::min(w, (nMode == eModeY ? H : W) - 1));
        if (w == 0)
            return ZRC_ERROR_INTERNAL;
    }
    // Along a line the window is cut off at the ends; the median's stays
    // symmetric, its half width at most the distance to the border.
    auto line = [&](bool bColumn)
    {
        return [&, bColumn](const ClImage& src, long x, long y, uint32_t p)
        {
            const long i = bColumn ? y : x, n = bColumn ? H : W, h = w / 2,
                       r = std::min({h, i, n - 1 - i});
            const long lo = eFilter == kMedian ? i - r : std::max(0L, i - h),
                       hi = eFilter == kMedian ? i + r : std::min(n - 1, i + h);
            const std::vector<T> v =
                bColumn ? Window<T>(src, x, x, lo, hi, p) : Window<T>(src, lo, hi, y, y, p);
            if (eFilter == kMedian)
                return Middle(v);
            if (eFilter == kMid) // the divisor is at most w
                return Mean(v, std::min(long(v.size()), w), h);
            return eFilter == kMin ? *std::min_element(v.begin(), v.end())
                                   : *std::max_element(v.begin(), v.end());
        };
    };
    if (nMode & eModeX)
        expected = Map<T>(expected, line(false));
    if (nMode & eModeY) // Mode XY is Mode X, then Mode Y on its result
        expected = Map<T>(expected, line(true));
    return 0;
}

// Runs every filter, mode and width on the image and compares the results
// with the definitions; floating running sums of the mean drift by rounding.
// The objects are used again and again, as callers may.
template <typename T> void CheckAll(const ClImage& in)
{
    ClIpFilterMin min;
    ClIpFilterMax max;
    ClIpFilterMid mid;
    ClIpFilterMedian median;
    ClIpFilterBase* filters[] = {&min, &max, &mid, &median};
    for (int eFilter : {kMin, kMax, kMid, kMedian})
        for (int32_t nMode : {1, 2, 3, 8, 16, 0, 4, 99})
            for (int32_t nWidth : {INT32_MIN, -5, 0, 1, 2, 3, 4, 5, 7, 11, 40, INT32_MAX})
            {
                SCOPED_TRACE(testing::Message()
                             << in.DataType() << " " << in.Width() << "x" << in.Height() << "x"
                             << in.Planes() << " filter " << eFilter << " mode " << nMode
                             << " width " << nWidth);
                ClImage input = in, out, expected;
                int32_t nMember = nWidth;
                const int32_t nCode = Expected<T>(eFilter, nMode, nMember, in, expected);
                ASSERT_EQ(nCode, RunFilter(*filters[eFilter], &input, &out, nWidth, nMode));
                EXPECT_EQ(nMember, filters[eFilter]->m_nFilterWidth);
                if (nCode != 0)
                    continue;
                for (int32_t y = 0;
                     eFilter == kMid && std::is_floating_point_v<T> && y < in.Height(); ++y)
                    for (int64_t i = 0; i < int64_t(in.Width()) * in.Planes(); ++i)
                        ASSERT_NEAR(expected.Row<T>(y)[i], out.Row<T>(y)[i],
                                    (std::is_same_v<T, float> ? 0.05 : 1e-7));
                ASSERT_TRUE((eFilter == kMid && std::is_floating_point_v<T>) ||
                            TestImages::SameSamples(expected, out));
            }
}

} // namespace

TEST(RankFilters, StatedExamples)
{
    ClIpFilterMin min;
    ClIpFilterMax max;
    ClIpFilterMid mid;
    ClIpFilterMedian median;
    EXPECT_EQ((std::vector<int>{15, 20, 30, 35}), FilterRow(mid, {10, 20, 30, 40}, 3));
    EXPECT_EQ((std::vector<int>{15, 20, 30, 35}), FilterRow(mid, {10, 20, 30, 40}, 9));
    EXPECT_EQ(3, mid.m_nFilterWidth); // shortened to the row, kept in the member
    EXPECT_EQ((std::vector<int>{1, 1, 1, 7}), FilterRow(min, {5, 1, 7, 8}, 3));
    EXPECT_EQ((std::vector<int>{5, 7, 8, 8}), FilterRow(max, {5, 1, 7, 8}, 3));
    ClImage bigger = TestImages::RandomImage(ClImage::eUInt8, 6, 5, 1, 4), out, empty;
    ExpectThrows([&] { min.Run(&bigger, nullptr, 3, eModeX); }, -701, "m_pOutImage is not set");

    ASSERT_EQ(0, median.Run(&bigger, &out, 3, eModeX));
    const uint8_t* pBefore = out.Data();
    EXPECT_EQ(ZRC_ERROR_PARAM_OUT_OF_RANGE, median.Run(&bigger, &out, 2, eModeX));
    EXPECT_EQ(pBefore, out.Data()); // the output stays as it was
    EXPECT_EQ(ZRC_ERROR_PARAM_OUT_OF_RANGE, median.Run(&bigger, &out, 101, eModeXY));
    ASSERT_EQ(0, median.Run(&bigger, &out, 100, eModeXY)); // tested before the forcing to odd
    EXPECT_EQ(101, median.m_nFilterWidth);
    EXPECT_EQ((std::vector<int>{7}), FilterRow(median, {7}, 5, eModeXY));
    EXPECT_EQ(ZRC_ERROR_BITMAP_DIMENSION, median.Run(&empty, &out, 3, eModeX));
    for (ClIpFilterBase* pFilter :
         {(ClIpFilterBase*)&min, (ClIpFilterBase*)&max, (ClIpFilterBase*)&mid}) // unknown data type
        EXPECT_EQ(ZRC_ERROR_INTERNAL, RunFilter(*pFilter, &empty, &out, 3, eModeX));
}

TEST(RankFilters, MatchTheirWindowDefinitionsOnRandomImagesOfEveryType)
{
    const std::tuple<int32_t, int32_t, uint32_t> kSizes[] = {
        {1, 1, 1}, {1, 7, 1}, {7, 1, 1}, {2, 2, 1}, {5, 3, 1}, {13, 9, 1}, {31, 17, 1}, {6, 5, 3}};
    uint32_t nSeed = 1;
    for (ClImage::EDataType eType : TestImages::AllTypes())
        for (auto [w, h, nPlanes] : kSizes)
        {
            const ClImage in = TestImages::RandomImage(eType, w, h, nPlanes, nSeed++);
            SelectDataType(eType,
                           [&](auto tag)
                           {
                               CheckAll<typename decltype(tag)::Type>(in);
                               return 0;
                           });
        }
}
