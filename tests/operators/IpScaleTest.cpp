#include <gtest/gtest.h>

#include "operators/IpScale.h"
#include "support/SampleReference.h"

using namespace TestImages;

TEST(IpScale, MultipliesAndClampsToTheOutputRange)
{
    // 8-bit by 2: 200 gives 255, 100 gives 200.
    ClImage bytes = OneRow(ClImage::eUInt8, {200, 100});
    ClIpScale scale;
    scale.m_dScaleFactor = 2.0;
    ASSERT_EQ(scale.Run(&bytes), 0);
    EXPECT_EQ(RowOf(bytes), (std::vector<double>{255, 200}));

    // Every type against the formula (16-bit by 0 among them); factors of
    // exactly 1 and 0 copy and clear, so that no -0.0 appears.
    for (double dFactor : {0.37, -2.5, 3.0, 1.0, 0.0})
    {
        SCOPED_TRACE(dFactor);
        scale.m_dScaleFactor = dFactor;
        ExpectOnEveryType(scale,
                          [dFactor](auto s, int32_t, double lo, double hi)
                          {
                              using T = decltype(s);
                              if (dFactor == 1.0 || dFactor == 0.0)
                                  return dFactor == 1.0 ? s : T(0);
                              const double v = dFactor * static_cast<double>(s);
                              return SampleFromDouble<T>(v < lo ? lo : v > hi ? hi : v);
                          });
    }
}
