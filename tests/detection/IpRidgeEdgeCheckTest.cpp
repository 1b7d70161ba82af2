// The ridge edge measure: refusals, degenerate images and the limit of
// exactly half a deviation.
#include <array>
#include <cmath>

#include <gtest/gtest.h>

#include "detection/IpRidgeEdgeCheck.h"
#include "support/DetectionImages.h"

using LiveDetection::ClIpRidgeEdgeCheck;
using namespace TestImages;

TEST(IpRidgeEdgeCheck, RefusalsDegenerateImagesAndAQuotientOfExactlyHalfADeviation)
{
    using Features = std::array<double, 4>;
    const Features kUntouched = {-7.0, -7.0, -7.0, -7.0};
    // Runs the check; a failure leaves the vector untouched.
    auto edgeFeatures = [&](ClImage image, int32_t nExpected = 0, const char* szText = nullptr)
    {
        Features features = kUntouched;
        ClIpRidgeEdgeCheck check;
        check.pInImage = &image, check.padOutFeatures = features.data();
        if (nExpected == 0)
            EXPECT_EQ(check.Run(), 0);
        else
            ExpectThrows([&] { check.Run(); }, nExpected, szText);
        return features;
    };
    ClImage image = Filled(8, 8, 100);
    ClIpRidgeEdgeCheck check;
    ExpectThrows([&] { check.Run(); }, -701, "Input image not assigned");
    check.pInImage = &image;
    ExpectThrows([&] { check.Run(); }, -701, "Feature vector not assigned");
    EXPECT_EQ(edgeFeatures(Blank(ClImage::eInt16, 8, 8), -33,
                           "Input pixel type \"int16\" not supported by processor."),
              kUntouched);
    // All 255; no inner column; no inner row; and a 3 x 3 image whose only
    // dark pixel is on the border, which the mean grey does not count.
    for (const ClImage& degenerate :
         {Filled(320, 480, 255), Filled(2, 50, 100), Filled(50, 2, 100), Spot(3, 3, 255, 1, 0, 0)})
        EXPECT_EQ(edgeFeatures(degenerate, -15, "No fingerprint found"), kUntouched);
    // Flat: no gradient and no pixel below the mean, so the mean gradient is
    // NaN and clears nothing, and no point stands above its neighbourhood.
    // A dark pixel, inside or on the border, or a dark line one pixel wide:
    // their edges lie on the bright side, which is cleared.
    for (const ClImage& flat :
         {Filled(3, 3, 0), Filled(320, 480, 254), Spot(7, 7, 200, 3, 3, 100),
          Spot(7, 7, 200, 0, 0, 100), Striped({200, 200, 200, 50, 200, 200, 200}, 6)})
    {
        const Features f = edgeFeatures(flat);
        EXPECT_TRUE(f[0] == 0.0 && f[1] == 0.0 && std::isnan(f[2]) && std::isnan(f[3]));
    }
    // A line of 50 between grounds of 200 and 150, three rows: mean grey
    // 127.8, edges 150 and 100 in the inner row: n = 2, m = 125, d = 50 / 1,
    // and both quotients are exactly 0.5, not above half a deviation.
    EXPECT_EQ(edgeFeatures(Striped({200, 200, 200, 50, 50, 50, 150, 150, 150, 150, 150}, 3)),
              (Features{125.0, 50.0, 0.0, 0.0}));
}
