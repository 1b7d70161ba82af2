// Ridge statistics: ridge pixels lie more than 10 below the wide mean.
#include <algorithm>
#include <cmath>
#include <vector>

#include <gtest/gtest.h>

#include "detection/IpRidgeStatistics.h"
#include "support/DetectionImages.h"

using namespace TestImages;

TEST(IpRidgeStatistics, RidgePixelsLieMoreThanTenBelowTheWideMeanOfWidths11_3_5)
{
    // Mean ratios, then variance ratios; 7.0 where nothing was written.
    auto ratios = [](ClImage image)
    {
        ClIpRidgeStatistics stage;
        stage.pInImage = &image;
        std::fill_n(stage.m_adMeanRatios, 3, 7.0);
        std::fill_n(stage.m_adVarianceRatios, 3, 7.0);
        EXPECT_EQ(stage.Run(), 0);
        std::vector<double> out(stage.m_adMeanRatios, stage.m_adMeanRatios + 3);
        out.insert(out.end(), stage.m_adVarianceRatios, stage.m_adVarianceRatios + 3);
        return out;
    };
    // One dark line in a field of 100: its width-11 mean is (1000 + v) / 11,
    // 99 for v = 89 (exactly 10 deeper: no ridge) and 98 for v = 87, whose
    // width-3 mean is 287 / 3 = 95 and width-5 mean 487 / 5 = 97. The 21
    // ridge pixels are equal, so the variance ratios are 0 / 0.
    std::vector<int> row(41, 100);
    row[20] = 89;
    EXPECT_EQ(ratios(Striped(row, 21)), std::vector<double>(6, 7.0));
    row[20] = 87;
    const std::vector<double> out = ratios(Striped(row, 21));
    EXPECT_DOUBLE_EQ(out[0], 98.0 / 87);
    EXPECT_DOUBLE_EQ(out[1], 95.0 / 87);
    EXPECT_DOUBLE_EQ(out[2], 97.0 / 87);
    EXPECT_TRUE(std::isnan(out[3]) && std::isnan(out[4]) && std::isnan(out[5]));
    // A single ridge pixel is too few: nothing is written.
    EXPECT_EQ(ratios(Spot(41, 41, 100, 20, 20, 0)), std::vector<double>(6, 7.0));
    ClIpRidgeStatistics stage;
    ExpectThrows([&] { stage.Run(); }, -701, "Input image not assigned");
}
