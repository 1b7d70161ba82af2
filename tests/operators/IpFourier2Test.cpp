#include <cmath>
#include <complex>

#include <gtest/gtest.h>

#include "operators/IpFourier2.h"
#include "support/OperatorTestImages.h"

using namespace TestImages;
using Fourier::ClIpFourier2;

TEST(IpFourier2, ForwardMatchesTheSumsAndInverseGivesTheImageBack)
{
    // A spectrum w / 2 + 1 wide, the origin word keeping w's parity, against
    // the sums of f(y, x) exp(-2πi (v y / h + u x / w)); one object both ways.
    const std::pair<int32_t, int32_t> sizes[] = {{1, 1}, {5, 1}, {1, 4}, {4, 3}, {5, 3},
                                                 {5, 5}, {6, 4}, {7, 3}, {2, 9}, {320, 480}};
    for (const auto& [w, h] : sizes)
    {
        SCOPED_TRACE(std::to_string(w) + " x " + std::to_string(h));
        const ClImage source = RandomImage(ClImage::eDouble64, w, h, 1, 131, 100.0);
        auto maxDifference = [&](const ClImage& image, double dFactor)
        {
            double dMax = 0.0;
            for (int32_t i = 0; i < w * h; ++i)
                dMax = std::max(dMax, std::fabs(At<double>(image, i % w, i / w) -
                                                dFactor * At<double>(source, i % w, i / w)));
            return dMax;
        };
        ClImage in(source), spectrum, back;
        ClIpFourier2 fourier;
        ASSERT_EQ(fourier.Run(&in, &spectrum), 0);
        ASSERT_TRUE(spectrum.DataType() == ClImage::eDouble64 && spectrum.Width() == w / 2 + 1 &&
                    spectrum.Height() == h && spectrum.Planes() == 2);
        EXPECT_EQ(spectrum.Origin(), 200u * 256 + static_cast<uint32_t>(w % 2));
        const int32_t nStep = w * h > 100 ? 53 : 1;
        for (int32_t v = 0; v < h; v += nStep)
            for (int32_t u = 0; u <= w / 2; u += nStep)
            {
                std::complex<double> sum = 0.0;
                for (int32_t i = 0; i < w * h; ++i)
                    sum += At<double>(source, i % w, i / w) *
                           std::polar(1.0, -2.0 * M_PI *
                                               (double(v) * (i / w) / h + double(u) * (i % w) / w));
                const std::complex<double> z{At<double>(spectrum, u, v, 0),
                                             At<double>(spectrum, u, v, 1)};
                EXPECT_NEAR(std::abs(z - sum), 0.0, 1e-7) << v << "," << u;
            }
        ASSERT_EQ(fourier.Run(&spectrum, &back), 0);
        ASSERT_TRUE(back.Width() == w && back.Height() == h && back.Planes() == 1);
        EXPECT_LE(maxDifference(back, 1.0), 1e-9);
        // In place both ways; unscaled, the inverse gives w × h times the image.
        back.Assign(source);
        fourier.m_bScaleNorm = false;
        ASSERT_EQ(fourier.Run(&back), 0);
        ASSERT_EQ(fourier.Run(&back), 0);
        ASSERT_TRUE(back.Width() == w && back.Height() == h && back.Planes() == 1);
        EXPECT_LE(maxDifference(back, w * h), 1e-9 * w * h);
    }
}
