// ClIpFunctorMean against a plain evaluation of its fixed-point definition,
// over every sample type and mode, plus hand-worked values.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "operators/IpFunctorMean.h"
#include "support/OperatorTestImages.h"

using TestImages::At;

namespace
{

// Accumulator of the definition: int for 8/16-bit, 64-bit for 32-bit data,
// the sample type for floating data.
template <typename T>
using Acc = std::conditional_t<std::is_floating_point_v<T>, T,
                               std::conditional_t<sizeof(T) == 4, int64_t, int32_t>>;

template <typename T> Acc<T> Weight(int32_t w)
{
    using A = Acc<T>;
    if constexpr (std::is_integral_v<A>)
    {
        const int32_t nRaw = 2048 / w + 1;
        return static_cast<A>(nRaw / ((int64_t(nRaw) * w) >> 11));
    }
    else
    {
        A sum = 0;
        for (int32_t k = 0; k < w; ++k)
            sum += A(1) / A(w);
        return (A(1) / A(w)) / sum;
    }
}

// Integer sums are kept exact and wrapped to the accumulator's width at the
// end (what wrapping at every step gives); floating sums run in the order
// of the definition.
template <typename T> struct Sum
{
    using A = Acc<T>;
    std::conditional_t<std::is_integral_v<A>, int64_t, A> value = 0;
    void Add(A weight, A sample) { value += weight * sample; }
    T Result(int nShift) const
    {
        if constexpr (std::is_integral_v<A>)
            return static_cast<T>(static_cast<A>(static_cast<std::make_unsigned_t<A>>(value)) >>
                                  nShift);
        else
            return static_cast<T>(value);
    }
};

// The sample at position k of the kernel for output (x, y) in mode X, Y or
// directed: positions beyond the image repeat the border; a directed walk
// takes |k - h| whole steps from the centre, fewer if one would leave.
template <typename T>
T Tap(const ClImage& in, int32_t x, int32_t y, int64_t k, int64_t h, int64_t sx, int64_t sy)
{
    int64_t px = x * 128 + 64, py = y * 128 + 64;
    const int64_t nSign = k < h ? -1 : 1;
    for (int64_t j = 0; j < std::abs(k - h); ++j)
    {
        const int64_t nx = px + nSign * sx, ny = py + nSign * sy;
        if (nx < 0 || ny < 0 || nx >= 128 * in.Width() || ny >= 128 * in.Height())
            break;
        px = nx, py = ny;
    }
    return At<T>(in, int32_t(px / 128), int32_t(py / 128));
}

template <typename T>
T Reference(const ClImage& in, int32_t x, int32_t y, int32_t w, int32_t nMode, int dx, int dy)
{
    const int64_t h = w / 2;
    auto clamped = [&](int64_t xx, int64_t yy)
    {
        return At<T>(in, int32_t(std::clamp<int64_t>(xx, 0, in.Width() - 1)),
                     int32_t(std::clamp<int64_t>(yy, 0, in.Height() - 1)));
    };
    Sum<T> s;
    if (nMode == eModeXY)
    {
        for (int32_t kx = 0; kx < w; ++kx)
        {
            Sum<T> column; // the vertical kernel first
            for (int32_t ky = 0; ky < w; ++ky)
                column.Add(Weight<T>(w), clamped(x - h + kx, y - h + ky));
            s.value += Weight<T>(w) * column.value;
        }
        return s.Result(22);
    }
    if (nMode == eModeX || nMode == eModeY)
    {
        for (int32_t k = 0; k < w; ++k)
            s.Add(Weight<T>(w), nMode == eModeX ? clamped(x - h + k, y) : clamped(x, y - h + k));
        return s.Result(11);
    }
    const int sy = nMode == eModeDirected ? dy : -dy; // the orthogonal mode flips the row step
    for (int64_t k = h; k >= 0; --k)                  // backward from the centre,
        s.Add(Weight<T>(w), Tap<T>(in, x, y, k, h, dx, sy));
    for (int64_t k = h + 1; k < w; ++k) // then forward
        s.Add(Weight<T>(w), Tap<T>(in, x, y, k, h, dx, sy));
    return s.Result(11);
}

ClImage Constant(ClImage::EDataType eType, int32_t w, int32_t h, double dValue)
{
    ClImage image;
    image.Create(eType, w, h);
    SelectDataType(eType,
                   [&](auto tag)
                   {
                       image.Fill(static_cast<typename decltype(tag)::Type>(dValue));
                       return 0;
                   });
    return image;
}

} // namespace

TEST(IpFunctorMean, FixedPointConstantsOfTheStatedWidths)
{
    ClIpFunctorMean mean;
    ClImage in = Constant(ClImage::eUInt8, 9, 7, 200),
            bright = Constant(ClImage::eUInt8, 9, 7, 255), out;
    for (int32_t nMode : {eModeX, eModeY, eModeXY})
    {
        ASSERT_EQ(0, mean.Run(&in, &out, 3, nMode)); // 683 x 3 = 2049: (200 * 2049) >> 11 = 200
        EXPECT_EQ(200, At<uint8_t>(out, 0, 0));
        ASSERT_EQ(0, mean.Run(&bright, &out, 5, nMode)); // 410 x 5 = 2050: 255 stays
        EXPECT_EQ(255, At<uint8_t>(out, 8, 6));
    }
    // 293 x 7 = 2051: a bright 16-bit constant comes out brighter.
    ClImage words = Constant(ClImage::eUInt16, 9, 7, 60000);
    ASSERT_EQ(0, mean.Run(&words, &out, 7, eModeX));
    EXPECT_EQ(60087, At<uint16_t>(out, 4, 3));
    // 98 x 21 = 2058: (255 * 2058) >> 11 = 256 wraps to 0 in 8 bits.
    ASSERT_EQ(0, mean.Run(&bright, &out, 21, eModeX));
    EXPECT_EQ(0, At<uint8_t>(out, 4, 3));

    // Width 4 runs as 5, 0 and below as 3; the member keeps it.
    for (auto [nWidth, nRuns] : {std::pair{4, 5}, {0, 3}, {-8, 3}})
    {
        ASSERT_EQ(0, mean.Run(&in, &out, nWidth, eModeX));
        EXPECT_EQ(nRuns, mean.m_nFilterWidth);
    }
}

TEST(IpFunctorMean, DirectedModesWalkWholeStepsAndStopAtTheBorder)
{
    // Half-pixel steps along 10, 20, 30, 40, 50: pixel 2 takes 20, 30, 30,
    // 40, 40; pixel 0 cannot step left and repeats itself; pixel 4 cannot
    // step right.
    ClImage row = Constant(ClImage::eUInt8, 5, 1, 0), out;
    for (int32_t x = 0; x < 5; ++x)
        At<uint8_t>(row, x, 0) = static_cast<uint8_t>(10 * (x + 1));
    ClImage dx = Constant(ClImage::eInt8, 5, 1, 64), dy = Constant(ClImage::eInt8, 5, 1, 0);
    ClIpFunctorMean mean;
    ASSERT_EQ(0, mean.Run(&row, &out, 5, eModeDirected, &dx, &dy));
    const int expected[] = {14, 22, 32, 42, 48};
    for (int32_t x = 0; x < 5; ++x)
        EXPECT_EQ(expected[x], At<uint8_t>(out, x, 0)) << x;

    // Zero steps average the pixel with itself.
    ClImage in = TestImages::RandomImage(ClImage::eUInt8, 6, 5, 1, 8),
            zero = Constant(ClImage::eInt8, 6, 5, 0);
    ASSERT_EQ(0, mean.Run(&in, &out, 3, eModeDirectedOrtho, &zero, &zero));
    EXPECT_TRUE(TestImages::SameSamples(in, out));
}

TEST(IpFunctorMean, MatchesTheDefinitionOnRandomImagesOfEveryType)
{
    uint32_t nSeed = 100;
    for (ClImage::EDataType eType : TestImages::AllTypes())
        for (auto [w, h] : {std::pair{1, 1}, {1, 6}, {7, 1}, {5, 3}, {13, 9}})
        {
            ClImage in = TestImages::RandomImage(eType, w, h, 1, nSeed++);
            ClImage dx = TestImages::RandomImage(ClImage::eInt8, w, h, 1, nSeed++);
            ClImage dy = TestImages::RandomImage(ClImage::eInt8, w, h, 1, nSeed++);
            for (int32_t nWidth : {3, 5, 9, 31})
                for (int32_t nMode : {eModeX, eModeY, eModeXY, eModeDirected, eModeDirectedOrtho})
                {
                    ClIpFunctorMean mean;
                    ClImage out;
                    ASSERT_EQ(0, mean.Run(&in, &out, nWidth, nMode, &dx, &dy));
                    SelectDataType(
                        eType,
                        [&](auto tag)
                        {
                            using T = typename decltype(tag)::Type;
                            for (int32_t y = 0; y < h; ++y)
                                for (int32_t x = 0; x < w; ++x)
                                {
                                    const T expected =
                                        Reference<T>(in, x, y, nWidth, nMode, At<int8_t>(dx, x, y),
                                                     At<int8_t>(dy, x, y));
                                    EXPECT_TRUE(TestImages::BitEqual(expected, At<T>(out, x, y)))
                                        << ClImage::TypeText(eType) << " " << w << "x" << h
                                        << " width " << nWidth << " mode " << nMode << " at " << x
                                        << "," << y;
                                }
                            return 0;
                        });
                }
        }
}

TEST(IpFunctorMean, ABoxChangesOnlyItsSamples)
{
    ClImage in = TestImages::RandomImage(ClImage::eInt16, 10, 8, 1, 31);
    ClImage out = TestImages::RandomImage(ClImage::eInt16, 10, 8, 1, 32), before;
    before.Assign(out);
    ClIpFunctorMean mean;
    mean.m_nRegionOfInterest = ClIpFunctor1To1Base::eRoiBox;
    mean.m_nROILeft = 2, mean.m_nROIRight = 9, mean.m_nROIBottom = 1, mean.m_nROITop = 4;
    ASSERT_EQ(0, mean.Run(&in, &out, 5, eModeXY));
    for (int32_t y = 0; y < 8; ++y)
        for (int32_t x = 0; x < 10; ++x)
            EXPECT_EQ(x >= 2 && y >= 1 && y <= 4 ? Reference<int16_t>(in, x, y, 5, eModeXY, 0, 0)
                                                 : At<int16_t>(before, x, y),
                      At<int16_t>(out, x, y))
                << x << "," << y;
}

TEST(IpFunctorMean, RefusesMaskRegionsUnknownRegionsModesAndTypes)
{
    ClImage in = TestImages::RandomImage(ClImage::eUInt8, 6, 4, 1, 3), out;
    ClImage mask = TestImages::RandomImage(ClImage::eUInt8, 6, 1, 1, 4);
    ClIpFunctorMean mean;
    mean.m_pROIMask = &mask;
    auto refusal = [&](int32_t nRegion, int32_t nMode) -> std::string
    {
        mean.m_nRegionOfInterest = nRegion;
        try
        {
            return std::to_string(mean.Run(&in, &out, 3, nMode));
        }
        catch (const ClException& e)
        {
            return std::to_string(e.GetCode()) + " " + TestImages::Remark(e.GetMessage());
        }
    };
    EXPECT_EQ("-44 Mask region of interest not supported yet",
              refusal(ClIpFunctor1To1Base::eRoiMask, eModeX));
    EXPECT_EQ("-44 unknown region of interest", refusal(7, eModeX));
    EXPECT_EQ("-6 Unknown error code.", refusal(ClIpFunctor1To1Base::eRoiAll, 5));
    ClImage odd;
    odd.Create(ClImage::eDefaultType, 3, 3);
    EXPECT_EQ(ZRC_ERROR_INTERNAL, mean.Run(&odd, &out, 3, eModeX));
}
