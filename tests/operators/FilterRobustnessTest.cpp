// Every neighbourhood operator, fed odd parameters (negative, huge and even
// widths, unknown modes and regions, one-pixel, one-row and empty images,
// several planes, in place), answers with one of its codes or exceptions;
// the sanitizer build checks that it stays inside its buffers meanwhile.
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

TEST(FilterRobustness, OddParametersGetCodesNotStrayAccesses)
{
    std::vector<ClImage> images = {TestImages::RandomImage(ClImage::eUInt8, 1, 1, 1, 1),
                                   TestImages::RandomImage(ClImage::eInt16, 1, 5, 1, 2),
                                   TestImages::RandomImage(ClImage::eFloat32, 5, 1, 1, 3),
                                   TestImages::RandomImage(ClImage::eUInt8, 2, 3, 3, 4),
                                   TestImages::RandomImage(ClImage::eInt8, 3, 2, 1, 5),
                                   ClImage()};
    const std::set<int32_t> codes = {0, -6, -10, -14, -33, -35, -44, -101, -701};
    for (ClImage& in : images)
    {
        ClImage dx = TestImages::RandomImage(ClImage::eInt8, std::max(in.Width(), 1),
                                             std::max(in.Height(), 1), 1, 6);
        for (int32_t nMode : {0, 1, 2, 3, 8, 16, 99})
        {
            for (int32_t nWidth : {INT32_MIN, -5, 0, 1, 2, 3, 4, 99, 100, 101, INT32_MAX})
            {
                ClImage out;
                ClIpFilterMin min;
                ClIpFilterMax max;
                ClIpFilterMid mid;
                ClIpFilterMedian median;
                mid.m_nMode = nMode;
                for (int32_t nResult :
                     {Outcome([&] { return min.Run(&in, &out, nWidth, nMode); }),
                      Outcome([&] { return max.Run(&in, &out, nWidth, nMode); }),
                      Outcome([&] { return mid.Run(&in, &out, nWidth); }),
                      Outcome([&] { return median.Run(&in, &out, nWidth, nMode); })})
                    EXPECT_TRUE(codes.count(nResult))
                        << nResult << " mode " << nMode << " width " << nWidth;
            }
            // The mean filter's kernel has one entry per width unit, so its
            // widths stay moderate here.
            for (int32_t nWidth : {INT32_MIN, -1, 0, 2, 7, 1001})
                for (int32_t nRegion : {0, 1, 2, 3})
                    for (bool bInPlace : {false, true})
                    {
                        ClIpFunctorMean mean;
                        ClImage out;
                        mean.m_nRegionOfInterest = nRegion;
                        mean.m_nROIRight = std::max(in.Width() - 1, 1);
                        mean.m_nROITop = std::max(in.Height() - 1, 1);
                        mean.m_pROIMask = &dx;
                        mean.m_bInPlace = bInPlace;
                        const int32_t nResult = Outcome(
                            [&] {
                                return mean.Run(&in, bInPlace ? &in : &out, nWidth, nMode, &dx,
                                                &dx);
                            });
                        EXPECT_TRUE(codes.count(nResult)) << nResult << " mode " << nMode;
                    }
        }
        ClIpLabeling labeling;
        ClImage labels;
        EXPECT_TRUE(codes.count(Outcome([&] { return labeling.Run(&in, &labels); })));
    }

    for (int32_t nLevel : {INT32_MIN, -3, -1, 1, 2, 3, 31, INT32_MAX})
        for (auto [w, h] : {std::pair{2, 2}, {4, 2}, {8, 8}, {1, 1}})
        {
            ClImage image = TestImages::RandomImage(ClImage::eDouble64, w, h, 1, 9);
            const int32_t nResult = Outcome(
                [&]
                {
                    ClWaveletD97().Transform(image, nLevel);
                    return 0;
                });
            EXPECT_TRUE(nResult == 0 || nResult == ZRC_ERROR_INTERNAL) << nResult;
        }
}
