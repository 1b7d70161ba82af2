#include <tuple>

#include <gtest/gtest.h>

#include "operators/IpAnd.h"
#include "support/SampleReference.h"

using namespace TestImages;

TEST(IpAnd, CombinesBytesRowByRowWithTheFirstsStride)
{
    ClImage out;
    ClIpAnd op;
    // Per row, width × planes bytes at the first's stride in all three
    // buffers: the whole row of one-byte samples, half of one of 16-bit ones.
    // A one-plane second gives one byte per pixel of a first of three or four
    // planes (other pairs do nothing) and is not read past its buffer; what
    // is not combined keeps the output's 0x77.
    const std::tuple<ClImage::EDataType, uint32_t, uint32_t> cases[] = {
        {ClImage::eInt8, 1, 1},  {ClImage::eUInt8, 3, 3},  {ClImage::eInt8, 4, 4},
        {ClImage::eUInt8, 3, 1}, {ClImage::eUInt8, 4, 1},  {ClImage::eUInt16, 1, 1},
        {ClImage::eInt32, 3, 3}, {ClImage::eUInt16, 3, 1}, {ClImage::eUInt8, 2, 1}};
    for (const auto& [eType, nFirstPlanes, nSecondPlanes] : cases)
    {
        SCOPED_TRACE(std::string(ClImage::TypeText(eType)) + " " + std::to_string(nFirstPlanes) +
                     "/" + std::to_string(nSecondPlanes));
        const ClImage first = RandomImage(eType, 7, 5, nFirstPlanes, 111);
        const ClImage second = RandomImage(eType, 7, 5, nSecondPlanes, 112);
        ClImage in1(first), in2(second);
        out.Create(eType, 7, 5, nFirstPlanes);
        std::memset(out.Data(), 0x77, static_cast<size_t>(out.ByteSize()));
        ASSERT_EQ(op.Run(&in1, &in2, &out), 0);
        const int64_t nStride = first.RowStride(), nBytes = 7 * nFirstPlanes;
        const bool bEqual = nFirstPlanes == nSecondPlanes;
        const bool bOneToMany = nSecondPlanes == 1 && nFirstPlanes >= 3;
        int nWrong = 0;
        for (int64_t y = 0; y < 5; ++y)
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
}

TEST(IpAnd, RefusesMixedTypes)
{
    ClImage u8 = RandomImage(ClImage::eUInt8, 4, 4, 1, 115);
    ClImage i8 = RandomImage(ClImage::eInt8, 4, 4, 1, 116), out;
    EXPECT_EQ(ClIpAnd().Run(&u8, &i8, &out), ZRC_ERROR_PARAM_IS_MISSING);
    EXPECT_EQ(out.Data(), nullptr);
}

TEST(IpAnd, RowsOfEveryWidthAreCombinedByteForByte)
{
    // Equal planes of one-byte samples over rows of every width up to 33,
    // padding included in the buffers but not combined.
    for (ClImage::EDataType eType : {ClImage::eUInt8, ClImage::eInt8})
        for (int32_t nWidth = 1; nWidth <= 33; ++nWidth)
            for (uint32_t nPlanes : {1u, 2u})
            {
                SCOPED_TRACE(testing::Message()
                             << ClImage::TypeText(eType) << " " << nWidth << " " << nPlanes);
                const ClImage first = RandomImage(eType, nWidth, 3, nPlanes, 130 + nWidth);
                const ClImage second = RandomImage(eType, nWidth, 3, nPlanes, 170 + nWidth);
                ClImage in1(first), in2(second), out;
                ASSERT_EQ(ClIpAnd().Run(&in1, &in2, &out), 0);
                int nWrong = 0;
                for (int32_t y = 0; y < 3; ++y)
                    for (int64_t i = 0; i < int64_t(nWidth) * nPlanes; ++i)
                        nWrong += out.Row<uint8_t>(y)[i] !=
                                  (first.Row<uint8_t>(y)[i] & second.Row<uint8_t>(y)[i]);
                EXPECT_EQ(nWrong, 0);
            }
}
