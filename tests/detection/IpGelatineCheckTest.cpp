// The gelatine step ratio: NaN or infinity when degenerate, refusals in
// order.
#include <cmath>
#include <vector>

#include <gtest/gtest.h>

#include "detection/IpGelatineCheck.h"
#include "support/DetectionImages.h"

using namespace TestImages;

TEST(IpGelatineCheck, NaNOrInfinityWhenDegenerateAndRefusalsInOrder)
{
    // The two mean squared steps, then the ratio.
    auto steps = [](ClImage image, ClImage mask)
    {
        std::vector<double> out = {-1.0, -1.0};
        ClIpGelatineCheck stage;
        stage.pInImage = &image, stage.pInMask = &mask;
        stage.m_pdOutSteps = out.data();
        EXPECT_EQ(stage.Run(), 0);
        out.push_back(stage.dOutResult);
        return out;
    };
    // A mask of one row, or a single row: no pair, 0 / 0 everywhere.
    const std::vector<int> ridges = {90, 140, 200, 140, 90, 140, 200, 140};
    const ClImage line = ImageOf(6, 8, [](int32_t, int32_t y) { return y == 3 ? 255 : 0; });
    for (const std::vector<double>& out :
         {steps(Striped(ridges, 6, true), line), steps(Grid(8, ridges), Grid(8, ridges))})
        for (double d : out)
            EXPECT_TRUE(std::isnan(d));
    // Variation along the rows only: every step is 0, so 0 over 0.
    const std::vector<double> flat = steps(Striped(ridges, 6), Striped(ridges, 6));
    EXPECT_TRUE(flat[0] == 0.0 && flat[1] == 0.0 && std::isnan(flat[2]));
    // Darker down every column: no rising step, infinity.
    EXPECT_EQ(steps(Striped({100, 90, 80, 79}, 3, true), Filled(3, 4, 1)),
              (std::vector<double>{67.0, 0.0, INFINITY}));
    ClImage image = Filled(8, 8, 1), small = Filled(1, 1, 255);
    double adSteps[2];
    ClIpGelatineCheck stage;
    ExpectThrows([&] { stage.Run(); }, -701, "Input image not assigned");
    stage.pInImage = &image;
    ExpectThrows([&] { stage.Run(); }, -701, "Mask image not assigned");
    stage.pInMask = &image;
    ExpectThrows([&] { stage.Run(); }, -701, "Output pointer not assigned");
    stage.m_pdOutSteps = adSteps;
    EXPECT_EQ(stage.Run(), 0);
    // A mask of another size is refused, not read beyond its end.
    stage.pInMask = &small;
    ExpectThrows([&] { stage.Run(); }, -44);
}
