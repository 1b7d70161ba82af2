// ClWaveletD97: round trips, the bands of a constant image and level limits.
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <string>

#include "operators/WaveletD97.h"
#include "sdk/Exception.h"
#include "support/OperatorTestImages.h"

using TestImages::At;

namespace
{

// "code remark" of what Transform throws, or "".
std::string Failure(ClImage& image, int32_t nLevel)
{
    try
    {
        ClWaveletD97().Transform(image, nLevel);
        return "";
    }
    catch (const ClException& e)
    {
        return std::to_string(e.GetCode()) + " " + TestImages::Remark(e.GetMessage());
    }
}

} // namespace

TEST(ClWaveletD97, RoundTripsUpToRounding)
{
    uint32_t nSeed = 40;
    for (auto [w, h, nLevels] : {std::tuple{2, 2, 1}, {6, 10, 1}, {24, 16, 3}, {320, 480, 5}})
        for (ClImage::EDataType eType : {ClImage::eDouble64, ClImage::eFloat32})
        {
            SCOPED_TRACE(testing::Message() << w << "x" << h << " levels " << nLevels << " "
                                            << ClImage::TypeText(eType));
            ClImage image = TestImages::RandomImage(eType, w, h, 1, nSeed++, 255.0), original;
            original.Assign(image);
            ClWaveletD97().Transform(image, nLevels);
            EXPECT_FALSE(TestImages::SameSamples(original, image));
            ClWaveletD97().Transform(image, -nLevels);
            const bool bDouble = eType == ClImage::eDouble64;
            auto at = [&](const ClImage& i, int32_t n)
            { return bDouble ? At<double>(i, n % w, n / w) : At<float>(i, n % w, n / w); };
            double dWorst = 0;
            for (int32_t n = 0; n < w * h; ++n)
                dWorst = std::max(dWorst, std::fabs(at(original, n) - at(image, n)));
            EXPECT_LT(dWorst, bDouble ? 1e-10 : 2e-3);
        }
}

TEST(ClWaveletD97, ConstantImageCarriesTwiceItsValuePerLevel)
{
    // The approximation is the logical top-left quarter: stored rows at the
    // bottom of the buffer. The details hold only a trace of rounding.
    ClImage image;
    image.Create(ClImage::eDouble64, 16, 8);
    image.Fill(1.25);
    ClWaveletD97().Transform(image, 2);
    for (int32_t y = 0; y < 8; ++y)
        for (int32_t x = 0; x < 16; ++x)
            ASSERT_NEAR(y >= 6 && x < 4 ? 5.0 : 0.0, At<double>(image, x, y), 1e-10)
                << x << "," << y;
}

TEST(ClWaveletD97, LevelLimitsAndTypesAreRefusedWithTheImageUntouched)
{
    // Levels run while 2^|level| divides both dimensions (320 is 2^6 x 5,
    // 480 is 2^5 x 15); level 0 fails with the same message.
    const std::string dimensions = "-101 Image dimensions have to be multiples of 2^(abs(nLevel))";
    for (auto [w, h] : {std::pair{320, 480}, {1, 1}, {4, 2}})
        for (int32_t nLevel : {INT32_MIN, -6, -5, -1, 0, 1, 2, 5, 6, 40})
        {
            ClImage image = TestImages::RandomImage(ClImage::eDouble64, w, h, 1, 70), original;
            original.Assign(image);
            const int64_t d = std::abs(int64_t(nLevel)) < 31 ? int64_t(1) << std::abs(nLevel) : 0;
            const bool bFits = nLevel != 0 && d != 0 && w % d == 0 && h % d == 0;
            EXPECT_EQ(bFits ? "" : dimensions, Failure(image, nLevel))
                << w << "x" << h << " " << nLevel;
            EXPECT_TRUE(bFits || TestImages::SameSamples(original, image));
        }
    ClImage bytes = TestImages::RandomImage(ClImage::eUInt8, 7, 5, 1, 71); // dimensions first
    EXPECT_EQ(dimensions, Failure(bytes, 1));
    ClImage words = TestImages::RandomImage(ClImage::eInt16, 8, 4, 1, 72);
    EXPECT_EQ("-101 Only floating point images are allowed by now", Failure(words, 2));
}
