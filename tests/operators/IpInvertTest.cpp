// Inversion mirrors the range of every type.
#include "operators/IpInvert.h"

#include <vector>

#include <gtest/gtest.h>

#include "support/SampleReference.h"

using namespace TestImages;
using Row = std::vector<double>;

TEST(IpInvert, MirrorsTheRangeOnEveryType)
{
    // Beyond 8 bits the direct path inverts only width samples of each row.
    ClIpInvert invert;
    ExpectOnEveryType(invert,
                      [](auto s, int32_t i, double a, double b)
                      {
                          using T = decltype(s);
                          if (!std::is_same_v<T, uint8_t> && i >= 9)
                              return s;
                          return SampleFromDouble<T>((b - (s - a) - a) * (b - a) / (b - a) + a);
                      });
    ClImage ranged = OneRow(ClImage::eUInt16, {20}); // own bounds: 20 in [10, 50] gives 40
    ranged.SetBounds(10, 50);
    ASSERT_EQ(invert.Run(&ranged), 0);
    EXPECT_EQ(RowOf(ranged), Row{40});
}
