// Scaling multiplies and clamps to the output range.
#include "operators/IpScale.h"

#include <gtest/gtest.h>

#include "support/SampleReference.h"

using namespace TestImages;

TEST(IpScale, MultipliesAndClampsToTheOutputRange)
{
    // Factors of exactly 1 and 0 copy and clear, so that no -0.0 appears.
    ClIpScale scale;
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
