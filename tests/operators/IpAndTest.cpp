#include <tuple>

#include <gtest/gtest.h>

#include "operators/IpAnd.h"
#include "support/SampleReference.h"

using namespace TestImages;

TEST(IpAnd, CombinesBytesRowByRowWithTheFirstsStride)
{
    // Width × planes bytes a row at the first's stride; a one-plane second gives
    // a byte per pixel of a first of 3 or 4 planes; the rest keeps its 0x77.
    const std::tuple<ClImage::EDataType, uint32_t, uint32_t> cases[] = {
        {ClImage::eInt8, 1, 1},  {ClImage::eUInt8, 2, 2},  {ClImage::eInt8, 4, 4},
        {ClImage::eUInt8, 3, 1}, {ClImage::eUInt8, 4, 1},  {ClImage::eUInt16, 1, 1},
        {ClImage::eInt32, 3, 3}, {ClImage::eUInt16, 3, 1}, {ClImage::eUInt8, 2, 1}};
    ClIpAnd op;
    for (const auto& [eType, nFirstPlanes, nSecondPlanes] : cases)
        for (int32_t nWidth = 1; nWidth <= 33; ++nWidth)
        {
            SCOPED_TRACE(testing::Message() << ClImage::TypeText(eType) << " " << nFirstPlanes
                                            << "/" << nSecondPlanes << " width " << nWidth);
            const ClImage first = RandomImage(eType, nWidth, 3, nFirstPlanes, 111 + nWidth);
            const ClImage second = RandomImage(eType, nWidth, 3, nSecondPlanes, 150 + nWidth);
            ClImage in1(first), in2(second), out;
            out.Create(eType, nWidth, 3, nFirstPlanes);
            std::memset(out.Data(), 0x77, static_cast<size_t>(out.ByteSize()));
            ASSERT_EQ(op.Run(&in1, &in2, &out), 0);
            const int64_t nStride = first.RowStride(), nBytes = nWidth * nFirstPlanes;
            const bool bEqual = nFirstPlanes == nSecondPlanes;
            const bool bOneToMany = nSecondPlanes == 1 && nFirstPlanes >= 3;
            int nWrong = 0;
            for (int64_t y = 0; y < 3; ++y)
                for (int64_t k = 0; k < nBytes * static_cast<int64_t>(first.SampleSize()); ++k)
                {
                    const int64_t nSecond = y * nStride + (bEqual ? k : k / nFirstPlanes);
                    const bool bCombined =
                        k < nBytes && (bEqual || bOneToMany) && nSecond < second.ByteSize();
                    const uint8_t expected =
                        bCombined ? first.Data()[y * nStride + k] & second.Data()[nSecond] : 0x77;
                    nWrong += out.Data()[y * nStride + k] != expected;
                }
            EXPECT_EQ(nWrong, 0);
        }
    ClImage u8 = RandomImage(ClImage::eUInt8, 4, 4, 1, 115), out; // mixed types: refused
    ClImage i8 = RandomImage(ClImage::eInt8, 4, 4, 1, 116);
    EXPECT_EQ(op.Run(&u8, &i8, &out), ZRC_ERROR_PARAM_IS_MISSING);
    EXPECT_EQ(out.Data(), nullptr);
}
