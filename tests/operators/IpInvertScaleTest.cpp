#include <random>

#include <gtest/gtest.h>

#include "operators/IpInvert.h"
#include "operators/IpScale.h"
#include "support/OperatorTestImages.h"

using namespace TestImages;

namespace
{

// Samples that differ from (b − (s − a) − a) × (b − a) ÷ (b − a) + a, with a
// and b the image's bounds; only width samples per row are covered on
// multi-plane images other than 8-bit.
template <typename T> int WrongInversions(const ClImage& source, const ClImage& result)
{
    const double a = source.LowerBound(), b = source.UpperBound();
    const int64_t nSamples = static_cast<int64_t>(source.Width()) * source.Planes();
    int nWrong = 0;
    for (int32_t y = 0; y < source.Height(); ++y)
        for (int64_t i = 0; i < nSamples; ++i)
        {
            const T s = source.Row<T>(y)[i];
            const bool bCovered = source.DataType() == ClImage::eUInt8 || i < source.Width();
            const T expected =
                bCovered ? SampleFromDouble<T>((b - (s - a) - a) * (b - a) / (b - a) + a) : s;
            nWrong += !BitEqual(result.Row<T>(y)[i], expected);
        }
    return nWrong;
}

// Samples that differ from the factor times the sample, clamped to the
// bounds; factors of exactly 1 and 0 copy and clear (so no -0.0 appears).
template <typename T> int WrongScalings(const ClImage& in, const ClImage& out, double dFactor)
{
    const double lo = in.LowerBound(), hi = in.UpperBound();
    const int64_t nSamples = static_cast<int64_t>(in.Width()) * in.Planes();
    int nWrong = 0;
    for (int32_t y = 0; y < in.Height(); ++y)
        for (int64_t i = 0; i < nSamples; ++i)
        {
            const double v = dFactor * static_cast<double>(in.Row<T>(y)[i]);
            T expected = SampleFromDouble<T>(v < lo ? lo : v > hi ? hi : v);
            if (dFactor == 1.0)
                expected = in.Row<T>(y)[i];
            else if (dFactor == 0.0)
                expected = T(0);
            nWrong += !BitEqual(out.Row<T>(y)[i], expected);
        }
    return nWrong;
}

} // namespace

TEST(IpInvert, MirrorsTheRangeOnEveryType)
{
    ClImage bytes;
    bytes.Create(ClImage::eUInt8, 3, 1);
    bytes.Row<uint8_t>(0)[0] = 0;
    bytes.Row<uint8_t>(0)[1] = 255;
    bytes.Row<uint8_t>(0)[2] = 100;
    ClIpInvert invert;
    ASSERT_EQ(invert.Run(&bytes), 0);
    EXPECT_EQ(bytes.Row<uint8_t>(0)[0], 255);
    EXPECT_EQ(bytes.Row<uint8_t>(0)[1], 0);
    EXPECT_EQ(bytes.Row<uint8_t>(0)[2], 155);

    ClImage real;
    real.Create(ClImage::eFloat32, 2, 1);
    real.Row<float>(0)[0] = 0.25f;
    real.Row<float>(0)[1] = -1.0f;
    ASSERT_EQ(invert.Run(&real), 0);
    EXPECT_EQ(real.Row<float>(0)[0], -0.25f);
    EXPECT_EQ(real.Row<float>(0)[1], 1.0f);

    // Integer types with their default ranges: unsigned max − s, signed −1 − s.
    ClImage shorts;
    shorts.Create(ClImage::eInt16, 2, 1);
    shorts.Row<int16_t>(0)[0] = 5;
    shorts.Row<int16_t>(0)[1] = -32768;
    ASSERT_EQ(invert.Run(&shorts), 0);
    EXPECT_EQ(shorts.Row<int16_t>(0)[0], -6);
    EXPECT_EQ(shorts.Row<int16_t>(0)[1], 32767);

    // In place on an image with its own bounds: input and output ranges are
    // one, so 20 in [10, 50] becomes 40.
    ClImage ranged;
    ranged.Create(ClImage::eUInt16, 1, 1);
    ranged.SetBounds(10, 50);
    ranged.Row<uint16_t>(0)[0] = 20;
    ASSERT_EQ(invert.Run(&ranged), 0);
    EXPECT_EQ(ranged.Row<uint16_t>(0)[0], 40);

    // Random images of every type against the formula; other types than
    // 8-bit run the direct path, width samples per row only.
    for (ClImage::EDataType eType : AllTypes())
        for (uint32_t nPlanes : {1u, 3u})
        {
            SCOPED_TRACE(ClImage::TypeText(eType));
            const ClImage source = RandomImage(eType, 9, 5, nPlanes, 81, 1.0);
            ClImage image;
            image.Assign(source);
            ASSERT_EQ(invert.Run(&image), 0);
            EXPECT_EQ(SelectDataType(
                          eType, [&](auto tag)
                          { return WrongInversions<typename decltype(tag)::Type>(source, image); }),
                      0);
        }
}

TEST(IpScale, MultipliesAndClampsToTheOutputRange)
{
    ClImage bytes;
    bytes.Create(ClImage::eUInt8, 3, 1);
    bytes.Row<uint8_t>(0)[0] = 200;
    bytes.Row<uint8_t>(0)[1] = 100;
    bytes.Row<uint8_t>(0)[2] = 0;
    ClIpScale scale;
    scale.m_dScaleFactor = 2.0;
    const uint8_t* pOld = bytes.Data();
    ClImage keeper(bytes);
    ASSERT_EQ(scale.Run(&bytes), 0);
    // Not in place: the result comes through a temporary into the same object.
    EXPECT_NE(bytes.Data(), pOld);
    EXPECT_EQ(bytes.Row<uint8_t>(0)[0], 255);
    EXPECT_EQ(bytes.Row<uint8_t>(0)[1], 200);
    EXPECT_EQ(bytes.Row<uint8_t>(0)[2], 0);
    char szText[64];
    scale.GetStatusText(szText, sizeof(szText));
    EXPECT_STREQ(szText, "ScaleFactor = 2");

    ClImage shorts = RandomImage(ClImage::eInt16, 5, 4, 1, 82);
    scale.m_dScaleFactor = 0.0;
    ASSERT_EQ(scale.Run(&shorts), 0);
    for (int32_t y = 0; y < 4; ++y)
        for (int32_t x = 0; x < 5; ++x)
            EXPECT_EQ(At<int16_t>(shorts, x, y), 0);

    ClImage real = RandomImage(ClImage::eDouble64, 2, 2, 1, 83, 1.0);
    scale.m_dScaleFactor = 1.0;
    const ClImage source(real);
    ClImage copy;
    ASSERT_EQ(scale.Run(&real, &copy), 0);
    EXPECT_TRUE(SameSamples(copy, source));
    scale.GetStatusText(szText, sizeof(szText));
    EXPECT_STREQ(szText, "ScaleFactor = 1.0000");

    // Every type, one and three planes, several factors, against the formula.
    for (double dFactor : {0.37, -2.5, 3.0, 1.0, 0.0})
        for (ClImage::EDataType eType : AllTypes())
            for (uint32_t nPlanes : {1u, 3u})
            {
                SCOPED_TRACE(std::string(ClImage::TypeText(eType)) + " x " +
                             std::to_string(dFactor));
                const ClImage in = RandomImage(eType, 7, 3, nPlanes, 84, 1.0);
                ClImage input(in), out;
                scale.m_dScaleFactor = dFactor;
                ASSERT_EQ(scale.Run(&input, &out), 0);
                EXPECT_EQ(SelectDataType(eType,
                                         [&](auto tag) {
                                             return WrongScalings<typename decltype(tag)::Type>(
                                                 in, out, dFactor);
                                         }),
                          0);
            }
}
