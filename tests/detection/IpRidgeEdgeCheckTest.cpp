#include "detection/IpRidgeEdgeCheck.h"

#include <array>
#include <cmath>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "BmpFile.h"
#include "image/Bitmap.h"
#include "image/ImageTestSupport.h"
#include "parameters/ParameterContainer.h"
#include "support/OperatorTestImages.h"

using LiveDetection::ClIpRidgeEdgeCheck;
using Features = std::array<double, 4>;

namespace
{

const Features kUntouched = {-7.0, -7.0, -7.0, -7.0};

// nLength rows that each are the profile, or nLength such columns.
ClImage Stripes(const std::vector<uint8_t>& profile, int32_t nLength, bool bColumns = false)
{
    const int32_t n = static_cast<int32_t>(profile.size());
    ClImage image;
    image.Create(ClImage::eUInt8, bColumns ? nLength : n, bColumns ? n : nLength);
    for (int32_t y = 0; y < image.Height(); ++y)
        for (int32_t x = 0; x < image.Width(); ++x)
            image.Row<uint8_t>(y)[x] = profile[bColumns ? y : x];
    return image;
}

ClImage Grey(int32_t nWidth, int32_t nHeight, uint8_t nValue)
{
    return Stripes(std::vector<uint8_t>(nWidth, nValue), nHeight);
}

// Runs the check; a failure leaves the vector untouched.
Features EdgeFeatures(ClImage& image, int32_t nExpected = 0, const char* szText = nullptr)
{
    Features features = kUntouched;
    ClIpRidgeEdgeCheck check;
    check.pInImage = &image;
    check.padOutFeatures = features.data();
    if (nExpected == 0)
        EXPECT_EQ(check.Run(), 0);
    else
        ExpectThrows([&] { check.Run(); }, nExpected, szText);
    return features;
}

} // namespace

TEST(IpRidgeEdgeCheck, RefusesMissingImageThenMissingVectorThenType)
{
    ClImage image = Grey(8, 8, 100), words;
    words.Create(ClImage::eInt16, 8, 8);
    Features features = kUntouched;
    for (auto [pImage, pFeatures, nCode, szText] :
         {std::tuple{(ClImage*)nullptr, (double*)nullptr, -701, "Input image not assigned"},
          std::tuple{&image, (double*)nullptr, -701, "Feature vector not assigned"},
          std::tuple{&words, features.data(), -33,
                     "Input pixel type \"int16\" not supported by processor."}})
    {
        ClIpRidgeEdgeCheck check;
        check.pInImage = pImage;
        check.padOutFeatures = pFeatures;
        ExpectThrows([&] { check.Run(); }, nCode, szText);
    }
    EXPECT_EQ(features, kUntouched);

    ClParameterContainer container;
    ClIpRidgeEdgeCheck().DefineParameters(container);
    ASSERT_EQ(container.GetChildCount(), 2u);
    EXPECT_STREQ(container.GetChild(0)->GetName(), "pInImage");
    EXPECT_STREQ(container.GetChild(1)->GetName(), "padOutFeatures");
    EXPECT_EQ(container.GetChild(1)->GetFlags(), ClParameter::eFlagOutput);
}

TEST(IpRidgeEdgeCheck, NoUsableInnerPixelIsNoFingerprint)
{
    // All 255; no inner column; no inner row; and a 3 x 3 image whose only
    // dark pixel is on the border, which the mean grey does not count.
    ClImage white = Grey(320, 480, 255), narrow = Grey(2, 50, 100), low = Grey(50, 2, 100),
            framed = Grey(3, 3, 255);
    framed.Row<uint8_t>(0)[1] = 0;
    for (ClImage* pImage : {&white, &narrow, &low, &framed})
        EXPECT_EQ(EdgeFeatures(*pImage, -15, "No fingerprint found"), kUntouched);
}

TEST(IpRidgeEdgeCheck, ImagesWithoutDarkSideEdgesGiveZeroZeroNaNNaN)
{
    // Flat: no gradient and no pixel below the mean, so the mean gradient is
    // NaN and clears nothing, and no point stands above its neighbourhood.
    // A dark pixel, inside or on the border, or a dark line one pixel wide:
    // their edges lie on the bright side, which is cleared.
    ClImage dot = Grey(7, 7, 200), corner = Grey(7, 7, 200), flat0 = Grey(3, 3, 0),
            flat = Grey(320, 480, 254), line = Stripes({200, 200, 200, 50, 200, 200, 200}, 6);
    dot.Row<uint8_t>(3)[3] = 100;
    corner.Row<uint8_t>(0)[0] = 100;
    for (ClImage* pImage : {&flat0, &flat, &dot, &corner, &line})
    {
        const Features f = EdgeFeatures(*pImage);
        EXPECT_TRUE(f[0] == 0.0 && f[1] == 0.0 && std::isnan(f[2]) && std::isnan(f[3]));
    }
}

TEST(IpRidgeEdgeCheck, DarkLinesGiveTheirDarkSideEdgeStrengths)
{
    // Five rows of 15: lines of 50 (columns 3-5) and of 130 (9-11) on 200.
    // - Mean grey of the inner columns: (7 x 200 + 150 + 390) / 13 = 149.2.
    // - Edges: 150 in columns 2, 3, 5, 6 and 70 in 8, 9, 11, 12 of the inner
    //   rows; the bright columns 2, 6, 8, 12 are cleared.
    // - Mean gradient of the 30 dark pixels of all rows, borders included:
    //   1320 / 30 = 44. Over the inner rows alone it would be 73.3, and the
    //   fainter line's 70s would go.
    // - The 12 points left stand above their 3 x 3 mean: m = 110, each
    //   |v - m| = 40, d = 480 / 11 (divided by n - 1), r = 11 / 12.
    // The same lines as columns measure the same: both directions weigh alike.
    const std::vector<uint8_t> profile = {200, 200, 200, 50,  50,  50,  200, 200,
                                          200, 130, 130, 130, 200, 200, 200};
    for (bool bColumns : {false, true})
    {
        ClImage image = Stripes(profile, 5, bColumns);
        EXPECT_EQ(EdgeFeatures(image), (Features{110.0, 480.0 / 11.0, 1.0, 0.0}));
    }
    // A line of 50 between grounds of 200 and 150, three rows: mean grey
    // 127.8, edges 150 and 100 in the inner row: n = 2, m = 125, d = 50 / 1,
    // and both quotients are exactly 0.5, not above half a deviation.
    ClImage step = Stripes({200, 200, 200, 50, 50, 50, 150, 150, 150, 150, 150}, 3);
    EXPECT_EQ(EdgeFeatures(step), (Features{125.0, 50.0, 0.0, 0.0}));
}

TEST(IpRidgeEdgeCheck, AnyContentGivesBoundedFeatures)
{
    for (auto [W, H] : {std::pair{3, 3}, std::pair{4, 3}, std::pair{3, 17}, std::pair{64, 48}})
    {
        ClImage noise = TestImages::RandomImage(ClImage::eUInt8, W, H, 1, 100 + W + H);
        const Features f = EdgeFeatures(noise);
        EXPECT_TRUE(f[1] >= 0.0 && f[2] >= f[3] && f[3] >= 0.0 && f[2] <= 1.0) << W << "x" << H;
    }
}

TEST(IpRidgeEdgeCheck, AgreesWithTheConformanceSetOnItsMaskedImages)
{
    // Indices 16-19 of three conformance runs, from an independent
    // implementation.
    for (auto [szRun, expected] :
         {std::pair{"live_a_1", Features{76.81707005097172, 17.06799154558861, 0.7281577265352279,
                                         0.45724961895865085}},
          std::pair{"skewed_1", Features{72.06652892311016, 16.758843688709206, 0.7198561946902655,
                                         0.44607300884955753}},
          std::pair{"smooth_c_0", Features{97.26539521526668, 16.088478967169703,
                                           0.7308898305084746, 0.463135593220339}}})
    {
        SentivoTool::BmpFile file = SentivoTool::ReadBmpFile(std::string(SENTIVO_SOURCE_DIR) +
                                                             "/tests/conformance/intermediates/" +
                                                             szRun + "/masked_image.bmp");
        ClBitmap bitmap;
        bitmap.Attach(file.Block(), file.BlockSize());
        ClImage masked(bitmap);
        const Features features = EdgeFeatures(masked);
        for (int i = 0; i < 4; ++i)
            EXPECT_NEAR(features[i], expected[i], 1e-9 * expected[i]) << szRun << ", " << i;
    }
}
