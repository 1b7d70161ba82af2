// The intensity spreads: white pixels stay out of the sums but not out of the
// count.
#include <vector>

#include <gtest/gtest.h>

#include "detection/IpFingerMinMaxMean.h"
#include "support/DetectionImages.h"

using namespace TestImages;

TEST(IpFingerMinMaxMean, WhiteStaysOutOfTheSumsButNotOutOfTheCount)
{
    auto spreads = [](ClImage image)
    {
        ClIpFingerMinMaxMean stage;
        stage.pInImage = &image;
        EXPECT_EQ(stage.Run(), 0);
        return std::vector<double>{stage.MinDeviation, stage.MaxDeviation, stage.MidDeviation};
    };
    // One row of three: the width-21 minimum is 100 throughout, the maximum
    // all white, and the mean box, larger than the image, leaves it as it
    // is. The spread of the mean counts 100 and 200 around 150, over 3 - 1.
    EXPECT_EQ(spreads(Grid(3, {100, 200, 255})), (std::vector<double>{0.0, 0.0, 50.0}));
    // Constant images have no spread; all white falls back to the middle.
    for (int nValue : {0, 128, 254, 255})
        EXPECT_EQ(spreads(Filled(30, 30, nValue)), std::vector<double>(3, 0.0)) << nValue;
    ClIpFingerMinMaxMean stage;
    ExpectThrows([&] { stage.Run(); }, -701, "Input image not assigned");
}
