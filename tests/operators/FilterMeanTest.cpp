// ClIpFunctorMean against a plain evaluation of its fixed-point definition,
// over every sample type and mode, plus hand-worked values.
#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

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
// end, which is what wrapping at every step gives; floating sums are formed
// in the order of the definition.
template <typename T> struct Sum
{
    using A = Acc<T>;
    std::conditional_t<std::is_integral_v<A>, int64_t, A> value = 0;
    void Add(A weight, double sample) { value += weight * static_cast<A>(sample); }
    T Result(int nShift) const
    {
        if constexpr (std::is_integral_v<A>)
            return static_cast<T>(static_cast<A>(static_cast<std::make_unsigned_t<A>>(value)) >>
                                  nShift);
        else
            return static_cast<T>(value);
    }
};

template <typename T> T Sample(const ClImage& in, int64_t x, int64_t y)
{
    return At<T>(in, static_cast<int32_t>(std::clamp<int64_t>(x, 0, in.Width() - 1)),
                 static_cast<int32_t>(std::clamp<int64_t>(y, 0, in.Height() - 1)));
}

template <typename T> T ReferenceLine(const ClImage& in, int32_t x, int32_t y, int32_t w, bool bY)
{
    Sum<T> s;
    for (int32_t k = 0; k < w; ++k)
        s.Add(Weight<T>(w), bY ? Sample<T>(in, x, y - w / 2 + k) : Sample<T>(in, x - w / 2 + k, y));
    return s.Result(11);
}

template <typename T> T ReferenceBox(const ClImage& in, int32_t x, int32_t y, int32_t w)
{
    const Acc<T> weight = Weight<T>(w);
    Sum<T> outer;
    for (int32_t kx = 0; kx < w; ++kx)
    {
        Sum<T> column;
        for (int32_t ky = 0; ky < w; ++ky)
            column.Add(weight, Sample<T>(in, x - w / 2 + kx, y - w / 2 + ky));
        if constexpr (std::is_integral_v<Acc<T>>)
            outer.value += weight * column.value;
        else
            outer.Add(weight, column.value);
    }
    return outer.Result(22);
}

// The walk: position k of the kernel lies |k - h| steps from the centre,
// fewer if a step on the way would leave the image.
template <typename T>
T ReferenceDirected(const ClImage& in, int32_t x, int32_t y, int32_t w, int sx, int sy)
{
    const int64_t h = w / 2, cx = x * 128 + 64, cy = y * 128 + 64;
    auto position = [&](int64_t nSteps, int nSign, int64_t& px, int64_t& py)
    {
        px = cx;
        py = cy;
        for (int64_t j = 1; j <= nSteps; ++j)
        {
            const int64_t nx = cx + j * nSign * sx, ny = cy + j * nSign * sy;
            if (nx < 0 || ny < 0 || nx >= 128 * in.Width() || ny >= 128 * in.Height())
                return;
            px = nx;
            py = ny;
        }
    };
    Sum<T> s;
    for (int64_t k = h; k >= 0; --k)
    {
        int64_t px, py;
        position(h - k, -1, px, py);
        s.Add(Weight<T>(w), At<T>(in, int32_t(px / 128), int32_t(py / 128)));
    }
    for (int64_t k = h + 1; k < w; ++k)
    {
        int64_t px, py;
        position(k - h, 1, px, py);
        s.Add(Weight<T>(w), At<T>(in, int32_t(px / 128), int32_t(py / 128)));
    }
    return s.Result(11);
}

ClImage Constant(ClImage::EDataType eType, int32_t w, int32_t h, double dValue)
{
    ClImage image;
    image.Create(eType, w, h);
    SelectDataType(eType,
                   [&](auto tag)
                   {
                       using T = typename decltype(tag)::Type;
                       image.Fill<T>(static_cast<T>(dValue));
                       return 0;
                   });
    return image;
}

} // namespace

TEST(IpFunctorMean, FixedPointConstantsOfWidthsThreeAndFive)
{
    ClIpFunctorMean mean;
    ClImage in = Constant(ClImage::eUInt8, 9, 7, 200), out;
    for (int32_t nMode : {eModeX, eModeY, eModeXY})
    {
        // Raw weight trunc(683.67) = 683, sum 2049: (200 * 2049) >> 11 = 200.
        ASSERT_EQ(0, mean.Run(&in, &out, 3, nMode));
        EXPECT_EQ(200, At<uint8_t>(out, 4, 3));
        EXPECT_EQ(200, At<uint8_t>(out, 0, 0));
    }
    // Width 5: raw weight 410, sum 2050; 255 stays 255.
    ClImage bright = Constant(ClImage::eUInt8, 9, 7, 255);
    ASSERT_EQ(0, mean.Run(&bright, &out, 5, eModeXY));
    EXPECT_EQ(255, At<uint8_t>(out, 8, 6));

    // Width 7: weights 293 add up to 2051, so a bright 16-bit constant comes
    // out brighter: (60000 * 2051) >> 11 = 60087.
    ClImage words = Constant(ClImage::eUInt16, 9, 7, 60000);
    ASSERT_EQ(0, mean.Run(&words, &out, 7, eModeX));
    EXPECT_EQ(60087, At<uint16_t>(out, 4, 3));
    // Width 21: 98 * 21 = 2058, and (255 * 2058) >> 11 = 256 wraps to 0.
    ASSERT_EQ(0, mean.Run(&bright, &out, 21, eModeX));
    EXPECT_EQ(0, At<uint8_t>(out, 4, 3));

    // Width 4 runs as 5, width 0 and below as 3; the member keeps it.
    ASSERT_EQ(0, mean.Run(&in, &out, 4, eModeX));
    EXPECT_EQ(5, mean.m_nFilterWidth);
    ASSERT_EQ(0, mean.Run(&in, &out, 0, eModeX));
    EXPECT_EQ(3, mean.m_nFilterWidth);
    ASSERT_EQ(0, mean.Run(&in, &out, -8, eModeX));
    EXPECT_EQ(3, mean.m_nFilterWidth);
}

TEST(IpFunctorMean, DirectedModesWalkWholeStepsAndStopAtTheBorder)
{
    ClImage row;
    row.Create(ClImage::eUInt8, 5, 1);
    for (int32_t x = 0; x < 5; ++x)
        At<uint8_t>(row, x, 0) = static_cast<uint8_t>(10 * (x + 1));
    ClImage dx = Constant(ClImage::eInt8, 5, 1, 64), dy = Constant(ClImage::eInt8, 5, 1, 0), out;

    // Half-pixel steps: pixel 2 takes 20, 30, 30, 40, 40; pixel 0 cannot
    // step left and repeats itself; pixel 4 cannot step right.
    ClIpFunctorMean mean;
    ASSERT_EQ(0, mean.Run(&row, &out, 5, eModeDirected, &dx, &dy));
    const int expected[] = {14, 22, 32, 42, 48};
    for (int32_t x = 0; x < 5; ++x)
        EXPECT_EQ(expected[x], At<uint8_t>(out, x, 0)) << x;

    // Zero steps average the pixel with itself.
    ClImage in = TestImages::RandomImage(ClImage::eUInt8, 6, 5, 1, 8);
    ClImage zero = Constant(ClImage::eInt8, 6, 5, 0);
    ASSERT_EQ(0, mean.Run(&in, &out, 3, eModeDirectedOrtho, &zero, &zero));
    EXPECT_TRUE(TestImages::SameSamples(in, out));

    // Whole-pixel steps (-128, one pixel backward; the weights are equal, so
    // the direction of the walk does not matter) along a row or a column
    // are modes X and Y, in the orthogonal mode too.
    for (ClImage::EDataType eType : {ClImage::eUInt8, ClImage::eInt16, ClImage::eUInt32})
    {
        ClImage img = TestImages::RandomImage(eType, 7, 6, 1, 9), lineOut;
        ClImage back = Constant(ClImage::eInt8, 7, 6, -128),
                none = Constant(ClImage::eInt8, 7, 6, 0);
        ASSERT_EQ(0, mean.Run(&img, &lineOut, 5, eModeX));
        for (int32_t nMode : {eModeDirected, eModeDirectedOrtho})
        {
            ASSERT_EQ(0, mean.Run(&img, &out, 5, nMode, &back, &none));
            EXPECT_TRUE(TestImages::SameSamples(lineOut, out)) << ClImage::TypeText(eType);
        }
        ASSERT_EQ(0, mean.Run(&img, &lineOut, 5, eModeY));
        for (int32_t nMode : {eModeDirected, eModeDirectedOrtho})
        {
            ASSERT_EQ(0, mean.Run(&img, &out, 5, nMode, &none, &back));
            EXPECT_TRUE(TestImages::SameSamples(lineOut, out)) << ClImage::TypeText(eType);
        }
    }
}

TEST(IpFunctorMean, MatchesTheDefinitionOnRandomImagesOfEveryType)
{
    const struct
    {
        int32_t w, h;
    } sizes[] = {{1, 1}, {1, 6}, {7, 1}, {5, 3}, {13, 9}};
    uint32_t nSeed = 100;
    for (ClImage::EDataType eType : TestImages::AllTypes())
        for (const auto& size : sizes)
        {
            ClImage in = TestImages::RandomImage(eType, size.w, size.h, 1, nSeed++);
            ClImage dx = TestImages::RandomImage(ClImage::eInt8, size.w, size.h, 1, nSeed++);
            ClImage dy = TestImages::RandomImage(ClImage::eInt8, size.w, size.h, 1, nSeed++);
            for (int32_t nWidth : {3, 5, 9, 31})
                for (int32_t nMode : {eModeX, eModeY, eModeXY, eModeDirected, eModeDirectedOrtho})
                {
                    SCOPED_TRACE(testing::Message()
                                 << ClImage::TypeText(eType) << " " << size.w << "x" << size.h
                                 << " width " << nWidth << " mode " << nMode);
                    ClIpFunctorMean mean;
                    ClImage out;
                    ASSERT_EQ(0, mean.Run(&in, &out, nWidth, nMode, &dx, &dy));
                    SelectDataType(
                        eType,
                        [&](auto tag)
                        {
                            using T = typename decltype(tag)::Type;
                            for (int32_t y = 0; y < size.h; ++y)
                                for (int32_t x = 0; x < size.w; ++x)
                                {
                                    T expected;
                                    if (nMode == eModeX || nMode == eModeY)
                                        expected =
                                            ReferenceLine<T>(in, x, y, nWidth, nMode == eModeY);
                                    else if (nMode == eModeXY)
                                        expected = ReferenceBox<T>(in, x, y, nWidth);
                                    else
                                        expected = ReferenceDirected<T>(
                                            in, x, y, nWidth, At<int8_t>(dx, x, y),
                                            nMode == eModeDirected ? At<int8_t>(dy, x, y)
                                                                   : -At<int8_t>(dy, x, y));
                                    EXPECT_TRUE(TestImages::BitEqual(expected, At<T>(out, x, y)))
                                        << x << "," << y << ": " << +expected << " "
                                        << +At<T>(out, x, y);
                                }
                            return 0;
                        });
                }
        }
}

TEST(IpFunctorMean, ABoxChangesOnlyItsSamples)
{
    ClImage in = TestImages::RandomImage(ClImage::eInt16, 10, 8, 1, 31);
    ClImage out = TestImages::RandomImage(ClImage::eInt16, 10, 8, 1, 32);
    const ClImage before = [&]
    {
        ClImage copy;
        copy.Assign(out);
        return copy;
    }();
    ClIpFunctorMean mean;
    mean.m_nRegionOfInterest = ClIpFunctor1To1Base::eRoiBox;
    mean.m_nROILeft = 2;
    mean.m_nROIRight = 9;
    mean.m_nROIBottom = 1;
    mean.m_nROITop = 4;
    ASSERT_EQ(0, mean.Run(&in, &out, 5, eModeXY));
    for (int32_t y = 0; y < 8; ++y)
        for (int32_t x = 0; x < 10; ++x)
        {
            const bool bInside = x >= 2 && y >= 1 && y <= 4;
            EXPECT_EQ(bInside ? ReferenceBox<int16_t>(in, x, y, 5) : At<int16_t>(before, x, y),
                      At<int16_t>(out, x, y))
                << x << "," << y;
        }
}

TEST(IpFunctorMean, RefusesMaskRegionsUnknownRegionsModesAndTypes)
{
    ClImage in = TestImages::RandomImage(ClImage::eUInt8, 6, 4, 1, 3), out;
    ClImage mask = TestImages::RandomImage(ClImage::eUInt8, 6, 1, 1, 4);
    ClIpFunctorMean mean;
    mean.m_nRegionOfInterest = ClIpFunctor1To1Base::eRoiMask;
    mean.m_pROIMask = &mask;
    auto remark = [&](int32_t nMode) -> std::string
    {
        try
        {
            mean.Run(&in, &out, 3, nMode);
            return "";
        }
        catch (const ClException& e)
        {
            return std::to_string(e.GetCode()) + " " + TestImages::Remark(e.GetMessage());
        }
    };
    EXPECT_EQ("-44 Mask region of interest not supported yet", remark(eModeX));
    mean.m_nRegionOfInterest = 7;
    EXPECT_EQ("-44 unknown region of interest", remark(eModeX));
    mean.m_nRegionOfInterest = ClIpFunctor1To1Base::eRoiAll;
    EXPECT_EQ("-6 Unknown error code.", remark(5));

    ClImage odd;
    odd.Create(ClImage::eDefaultType, 3, 3);
    EXPECT_EQ(ZRC_ERROR_INTERNAL, mean.Run(&odd, &out, 3, eModeX));
}
