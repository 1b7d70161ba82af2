// Mid and median against plain window definitions on random images.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <climits>
#include <vector>

#include "image/ImageTestSupport.h"
#include "operators/IpFilterMedian.h"
#include "operators/IpFilterMid.h"
#include "support/OperatorTestImages.h"

using TestImages::At;

namespace
{

constexpr int kMid = 0, kMedian = 1;

struct Filters
{
    ClIpFilterMid mid;
    ClIpFilterMedian median;
    ClIpFilterBase* all[2] = {&mid, &median};
};

int32_t RunFilter(ClIpFilterBase& filter, ClImage* pIn, ClImage* pOut, int32_t nWidth,
                  int32_t nMode)
{
    filter.m_pInImage = pIn, filter.m_pOutImage = pOut;
    filter.m_nFilterWidth = nWidth, filter.m_nMode = nMode;
    return filter.Run();
}

// The samples a filter makes of one 8-bit row.
std::vector<int> FilterRow(ClIpFilterBase& filter, std::vector<uint8_t> values, int32_t nWidth)
{
    ClImage in, out;
    in.Create(ClImage::eUInt8, int32_t(values.size()), 1);
    std::copy(values.begin(), values.end(), in.Row<uint8_t>(0));
    EXPECT_EQ(0, RunFilter(filter, &in, &out, nWidth, eModeX));
    return std::vector<int>(out.Row<uint8_t>(0), out.Row<uint8_t>(0) + out.Width());
}

// The image whose sample (x, y, p) combines the samples of plane p in the
// box {x0, x1, y0, y1} = box(x, y), coordinates clamped to the image.
template <typename T, typename B, typename C> ClImage Walk(const ClImage& in, B box, C combine)
{
    ClImage out;
    out.CreateLike(in);
    for (uint32_t p = 0; p < in.Planes(); ++p)
        for (long y = 0; y < in.Height(); ++y)
            for (long x = 0; x < in.Width(); ++x)
            {
                const auto [x0, x1, y0, y1] = box(x, y);
                std::vector<T> v;
                for (long j = y0; j <= y1; ++j)
                    for (long i = x0; i <= x1; ++i)
                        v.push_back(At<T>(in, std::clamp<long>(i, 0, in.Width() - 1),
                                          std::clamp<long>(j, 0, in.Height() - 1), p));
                At<T>(out, x, y, p) = combine(v);
            }
    return out;
}

// The code a run must give and, when it is 0, the expected image; nMember
// becomes the width the filter must leave in its member.
template <typename T>
int32_t Expected(int eFilter, int32_t nMode, int32_t& nMember, const ClImage& in, ClImage& expected)
{
    if (eFilter == kMid)
        nMember |= 1; // forced odd before the run
    long w = nMember;
    const long W = in.Width(), H = in.Height();
    const bool bSquare = nMode == eModeXY; // one pass over a square
    expected = in;
    if (w <= 1)
        return 0; // copied, whatever the mode
    if (eFilter == kMedian && (w < 3 || (bSquare && w > 100)))
        return ZRC_ERROR_PARAM_OUT_OF_RANGE;
    if (eFilter == kMedian && bSquare && sizeof(T) != 1) // a histogram, 8-bit only
        return ZRC_ERROR_FORMAT_NOTSUPPORTED;
    if (eFilter == kMedian && bSquare)
        nMember |= 1;
    if (eFilter == kMid && bSquare && (W < w || H < w))
        return 0;                    // smaller images are copied
    if (eFilter == kMid && !bSquare) // shortened below the line length
        if ((nMember = int32_t(w = std::min(w, (nMode == eModeY ? H : W) - 1))) == 0)
            return ZRC_ERROR_INTERNAL;
    // Windows are cut off at the image's ends, except the median's: its
    // square is clamped, and along a line it stays symmetric, its half width
    // at most the distance to the border.
    const long h = w / 2;
    auto range = [&](long i, long n)
    {
        const long r = bSquare ? h : std::min({h, i, n - 1 - i});
        return eFilter == kMedian ? std::pair{i - r, i + r}
                                  : std::pair{std::max(0L, i - h), std::min(n - 1, i + h)};
    };
    auto window = [&](bool bX, bool bY)
    {
        return [&, bX, bY](long x, long y)
        {
            const auto [x0, x1] = bX ? range(x, W) : std::pair{x, x};
            const auto [y0, y1] = bY ? range(y, H) : std::pair{y, y};
            return std::array{x0, x1, y0, y1};
        };
    };
    // Mid: integer sums start at the rounding term (none on the square) and
    // divide toward zero, by at most w along a line; floating sums run in double.
    auto combine = [&](std::vector<T> v)
    {
        const long n = long(v.size());
        std::conditional_t<std::is_integral_v<T>, int64_t, double> s = 0;
        if constexpr (std::is_integral_v<T>)
            s = bSquare ? 0 : h;
        for (T x : v)
            s += x;
        if (eFilter == kMid)
            return static_cast<T>(s / (bSquare ? n : std::min(n, w)));
        const long k = n / 2;
        std::nth_element(v.begin(), v.begin() + k, v.end());
        return v[k];
    };
    if (bSquare)
        expected = Walk<T>(in, window(true, true), combine);
    if (!bSquare && (nMode & eModeX))
        expected = Walk<T>(expected, window(true, false), combine);
    if (!bSquare && (nMode & eModeY)) // Mode XY is Mode X, then Mode Y on its result
        expected = Walk<T>(expected, window(false, true), combine);
    return 0;
}

// Runs every filter, mode and width on the image against the definitions
// (floating running sums of the mid drift by rounding), reusing the objects.
template <typename T> void CheckAll(const ClImage& in)
{
    Filters f;
    for (int eFilter : {kMid, kMedian})
        for (int32_t nMode : {eModeX, eModeY, eModeXY})
            for (int32_t nWidth : {INT32_MIN, 1, 2, 3, 4, 7, 40})
            {
                SCOPED_TRACE(testing::Message() << in.Width() << "x" << in.Height() << " "
                                                << eFilter << " " << nMode << " " << nWidth);
                ClImage input = in, out, expected;
                int32_t nMember = nWidth;
                const int32_t nCode = Expected<T>(eFilter, nMode, nMember, in, expected);
                ASSERT_EQ(nCode, RunFilter(*f.all[eFilter], &input, &out, nWidth, nMode));
                EXPECT_EQ(nMember, f.all[eFilter]->m_nFilterWidth);
                const double dTolerance = eFilter == kMid && std::is_floating_point_v<T>
                                              ? sizeof(T) == 4 ? 0.05 : 1e-7
                                              : 0;
                for (int32_t y = 0; nCode == 0 && y < in.Height(); ++y)
                    for (int64_t i = 0; i < int64_t(in.Width()) * in.Planes(); ++i)
                        ASSERT_NEAR(expected.Row<T>(y)[i], out.Row<T>(y)[i], dTolerance);
            }
}

} // namespace

TEST(RankFilters, StatedExamplesAndMedianLimits)
{
    Filters f;
    EXPECT_EQ((std::vector<int>{15, 20, 30, 35}), FilterRow(f.mid, {10, 20, 30, 40}, 3));

    ClImage in = TestImages::RandomImage(ClImage::eUInt8, 6, 5, 1, 4), out;
    ASSERT_EQ(0, f.median.Run(&in, &out, 3, eModeX));
    const uint8_t* pBefore = out.Data();
    EXPECT_EQ(ZRC_ERROR_PARAM_OUT_OF_RANGE, f.median.Run(&in, &out, 2, eModeX));
    EXPECT_EQ(pBefore, out.Data()); // the output stays as it was
    EXPECT_EQ(ZRC_ERROR_PARAM_OUT_OF_RANGE, f.median.Run(&in, &out, 101, eModeXY));
    ASSERT_EQ(0, f.median.Run(&in, &out, 100, eModeXY)); // tested before the forcing to odd
    EXPECT_EQ(101, f.median.m_nFilterWidth);
}

TEST(RankFilters, MatchTheirWindowDefinitionsOnRandomImagesOfEveryType)
{
    uint32_t nSeed = 1;
    for (ClImage::EDataType eType : TestImages::AllTypes())
        for (auto [w, h, nPlanes] :
             {std::tuple{1, 1, 1u}, {1, 7, 1u}, {7, 1, 1u}, {5, 3, 1u}, {13, 9, 1u}, {6, 5, 3u}})
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
