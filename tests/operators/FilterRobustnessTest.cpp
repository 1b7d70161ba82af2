// Every neighbourhood operator, fed odd parameters (negative, huge and even
// widths, unknown modes, one-pixel, one-row and empty images, several
// planes), answers with one of its codes or exceptions and stays inside its
// buffers; the sanitizer build checks the latter.
#include <gtest/gtest.h>

#include <climits>
#include <set>

#include "operators/IpFilterMax.h"
#include "operators/IpFilterMedian.h"
#include "operators/IpFilterMid.h"
#include "operators/IpFilterMin.h"
#include "operators/IpFunctorMean.h"
#include "operators/IpLabeling.h"
#include "operators/WaveletD97.h"
#include "sdk/Exception.h"
#include "support/OperatorTestImages.h"

namespace
{

std::vector<ClImage> OddImages()
{
    std::vector<ClImage> images;
    images.push_back(TestImages::RandomImage(ClImage::eUInt8, 1, 1, 1, 1));
    images.push_back(TestImages::RandomImage(ClImage::eInt16, 1, 5, 1, 2));
    images.push_back(TestImages::RandomImage(ClImage::eFloat32, 5, 1, 1, 3));
    images.push_back(TestImages::RandomImage(ClImage::eUInt8, 2, 3, 3, 4));
    images.push_back(TestImages::RandomImage(ClImage::eInt8, 3, 2, 1, 5));
    images.push_back(ClImage());
    return images;
}

const int32_t kModes[] = {0, eModeX, eModeY, eModeXY, eModeDirected, eModeDirectedOrtho, 99};

// Runs f and returns its code, or the code of the exception it threw.
template <typename F> int32_t Outcome(F f)
{
    try
    {
        return f();
    }
    catch (const ClException& e)
    {
        return e.GetCode();
    }
}

} // namespace

TEST(FilterRobustness, RankFiltersAnswerOddParametersWithTheirCodes)
{
    const std::set<int32_t> codes = {0, -6, -10, -14, -33, -35, -101, -701};
    const int32_t widths[] = {INT32_MIN, -5, 0, 1, 2, 3, 4, 99, 100, 101, INT32_MAX};
    for (ClImage& in : OddImages())
        for (int32_t nMode : kModes)
            for (int32_t nWidth : widths)
            {
                ClImage out;
                ClIpFilterMin min;
                ClIpFilterMax max;
                ClIpFilterMid mid;
                ClIpFilterMedian median;
                mid.m_nMode = nMode;
                const int32_t results[] = {
                    Outcome([&] { return min.Run(&in, &out, nWidth, nMode); }),
                    Outcome([&] { return max.Run(&in, &out, nWidth, nMode); }),
                    Outcome([&] { return mid.Run(&in, &out, nWidth); }),
                    Outcome([&] { return median.Run(&in, &out, nWidth, nMode); }),
                    Outcome([&] { return median.Run(&in, &in, nWidth, nMode); })};
                for (int32_t nResult : results)
                    EXPECT_TRUE(codes.count(nResult))
                        << nResult << " mode " << nMode << " width " << nWidth << " " << in.Width()
                        << "x" << in.Height();
            }
}

TEST(FilterRobustness, MeanFilterAndLabelingAnswerOddParametersWithTheirCodes)
{
    const std::set<int32_t> codes = {0, -6, -44, -101, -701};
    for (ClImage& in : OddImages())
    {
        ClImage dx = TestImages::RandomImage(ClImage::eInt8, std::max(in.Width(), 1),
                                             std::max(in.Height(), 1), 1, 6);
        ClImage dy = dx;
        for (int32_t nMode : kModes)
            for (int32_t nWidth : {INT32_MIN, -1, 0, 2, 7, 1001})
                for (int32_t nRegion : {0, 1, 2, 3})
                {
                    ClIpFunctorMean mean;
                    ClImage out;
                    mean.m_nRegionOfInterest = nRegion;
                    mean.m_nROIRight = std::max(in.Width() - 1, 1);
                    mean.m_nROITop = std::max(in.Height() - 1, 1);
                    mean.m_pROIMask = &dx;
                    const int32_t nResult =
                        Outcome([&] { return mean.Run(&in, &out, nWidth, nMode, &dx, &dy); });
                    EXPECT_TRUE(codes.count(nResult)) << nResult << " mode " << nMode;
                    mean.m_bInPlace = true;
                    const int32_t nInPlace =
                        Outcome([&] { return mean.Run(&in, &in, nWidth, nMode, &dx, &dy); });
                    EXPECT_TRUE(codes.count(nInPlace)) << nInPlace << " mode " << nMode;
                }

        ClIpLabeling labeling;
        ClImage labels;
        const int32_t nLabeled = Outcome([&] { return labeling.Run(&in, &labels); });
        EXPECT_TRUE(nLabeled == 0 || nLabeled == ZRC_ERROR_INTERNAL) << nLabeled;
    }
}

TEST(FilterRobustness, WaveletRefusesOrTransformsTinyImages)
{
    for (int32_t nLevel : {INT32_MIN, -3, -1, 1, 2, 3, 31, INT32_MAX})
        for (auto size : {std::pair<int32_t, int32_t>{2, 2}, {4, 2}, {8, 8}, {1, 1}})
        {
            ClImage image =
                TestImages::RandomImage(ClImage::eDouble64, size.first, size.second, 1, 9);
            const int32_t nResult = Outcome(
                [&]
                {
                    ClWaveletD97().Transform(image, nLevel);
                    return 0;
                });
            EXPECT_TRUE(nResult == 0 || nResult == ZRC_ERROR_INTERNAL) << nResult;
        }
    ClImage empty;
    EXPECT_EQ(ZRC_ERROR_INTERNAL, Outcome(
                                      [&]
                                      {
                                          ClWaveletD97().Transform(empty, 1);
                                          return 0;
                                      }));
}
