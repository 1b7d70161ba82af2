// The high-pass check on hand-made images: contrast, brightness and too few
// pixels.
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include "detection/IpCheckHipass.h"
#include "support/DetectionImages.h"

using namespace TestImages;

TEST(IpCheckHipass, HandCasesOfContrastBrightnessAndFewPixels)
{
    // The mean ratio and the deviation ratio, preset to a marker.
    auto hipass = [](ClImage image)
    {
        ClIpCheckHipass stage;
        stage.pInImage = &image;
        stage.HipassMeanRatio = stage.HipassDeviationRatio = 5.0;
        EXPECT_EQ(stage.Run(), 0);
        return std::vector<double>{stage.HipassMeanRatio, stage.HipassDeviationRatio};
    };
    // 3 by 3: every window spans the image. A dark centre t under a range
    // of 33 stretches to 0 and its mean to 2040 / 9 = 226, the rest r to 255,
    // which stays out: one pixel gives its own detail. A range of 32 is no
    // contrast, a flat image has none. Over 0..255 (corner c) a centre of 224
    // stays out and the corner alone has the mean (510 + 224) / 4 = 183.
    for (auto [c, t, r, dDetail] : {std::tuple{33, 0, 33, -226.0}, std::tuple{32, 0, 32, 0.0},
                                    std::tuple{0, 0, 0, 0.0}, std::tuple{0, 224, 255, -183.0}})
        EXPECT_EQ(hipass(Grid(3, {c, r, r, r, t, r, r, r, r})), (std::vector<double>{dDetail, 0.0}))
            << r << ' ' << t;
    // A centre of 223 has the mean 2008 / 9 = 223 and detail 0: N 2, Se -183,
    // See 183², both value sums 223 (plain, not squared); the deviation is
    // taken around the ratio r, not around the mean detail.
    const double mean = 223.0 / 2, v = 223.0 - 2 * mean * mean, r = -183.0 / 2 / mean;
    const std::vector<double> out = hipass(Grid(3, {0, 255, 255, 255, 223, 255, 255, 255, 255}));
    EXPECT_DOUBLE_EQ(out[0], r);
    EXPECT_DOUBLE_EQ(out[1], (183.0 * 183.0 - 2 * r * r) / v);
    ClIpCheckHipass stage;
    ExpectThrows([&] { stage.Run(); }, -701, "Input image not assigned");
}
