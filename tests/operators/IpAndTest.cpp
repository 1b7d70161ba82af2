#include <gtest/gtest.h>

#include "operators/IpAnd.h"
#include "support/OperatorTestImages.h"

using namespace TestImages;

TEST(IpAnd, CombinesBytesOfEqualAndOneToManyPlanes)
{
    ClImage a, b, out;
    a.Create(ClImage::eUInt8, 1, 1);
    b.Create(ClImage::eUInt8, 1, 1);
    a.Row<uint8_t>(0)[0] = 0xF0;
    b.Row<uint8_t>(0)[0] = 0x3C;
    ClIpAnd op;
    ASSERT_EQ(op.Run(&a, &b, &out), 0);
    EXPECT_EQ(At<uint8_t>(out, 0, 0), 0x30);

    for (uint32_t nPlanes : {1u, 3u, 4u})
    {
        SCOPED_TRACE(nPlanes);
        const ClImage first = RandomImage(ClImage::eInt8, 7, 5, nPlanes, 111);
        const ClImage second = RandomImage(ClImage::eInt8, 7, 5, nPlanes, 112);
        ClImage in1(first), in2(second);
        ASSERT_EQ(op.Run(&in1, &in2, &out), 0);
        for (int32_t y = 0; y < 5; ++y)
            for (int32_t x = 0; x < 7; ++x)
                for (uint32_t p = 0; p < nPlanes; ++p)
                    EXPECT_EQ(At<int8_t>(out, x, y, p),
                              At<int8_t>(first, x, y, p) & At<int8_t>(second, x, y, p));
    }
}

TEST(IpAnd, OnePlaneSecondIsSteppedByTheFirstsStride)
{
    // Three or four planes against one: per pixel all bytes of the first meet
    // one byte of the second. Rows step by the first's stride (24 or 28
    // bytes) in the second too; the second (8-byte rows, 40 bytes) thus
    // reaches only two rows, and the rest of the output keeps its bytes.
    for (uint32_t nPlanes : {3u, 4u})
    {
        SCOPED_TRACE(nPlanes);
        const ClImage first = RandomImage(ClImage::eUInt8, 7, 5, nPlanes, 111);
        const ClImage second = RandomImage(ClImage::eUInt8, 7, 5, 1, 112);
        ClImage in1(first), in2(second);
        ClImage out;
        out.Create(ClImage::eUInt8, 7, 5, nPlanes);
        out.Fill<uint8_t>(0x77);
        ClIpAnd op;
        ASSERT_EQ(op.Run(&in1, &in2, &out), 0);
        const int64_t nStride = first.RowStride();
        for (int32_t y = 0; y < 5; ++y)
            for (int32_t x = 0; x < 7; ++x)
                for (uint32_t p = 0; p < nPlanes; ++p)
                {
                    const int64_t nSecond = y * nStride + x;
                    const uint8_t expected =
                        nSecond < second.ByteSize()
                            ? At<uint8_t>(first, x, y, p) & second.Data()[nSecond]
                            : 0x77;
                    EXPECT_EQ(At<uint8_t>(out, x, y, p), expected) << x << "," << y;
                }
    }
}

TEST(IpAnd, WiderSamplesAreCoveredOnlyForTheirFirstBytes)
{
    // Width × planes bytes per row of 16-bit samples: half the row.
    const ClImage first = RandomImage(ClImage::eUInt16, 6, 3, 1, 113);
    const ClImage second = RandomImage(ClImage::eUInt16, 6, 3, 1, 114);
    ClImage in1(first), in2(second);
    ClImage out;
    out.Create(ClImage::eUInt16, 6, 3);
    out.Fill<uint16_t>(0x5A5A);
    ClIpAnd op;
    ASSERT_EQ(op.Run(&in1, &in2, &out), 0);
    for (int32_t y = 0; y < 3; ++y)
        for (int32_t x = 0; x < 6; ++x)
            EXPECT_EQ(At<uint16_t>(out, x, y),
                      x < 3 ? At<uint16_t>(first, x, y) & At<uint16_t>(second, x, y) : 0x5A5A);
}

TEST(IpAnd, RefusesMixedFloatingAndUnmatchedInputs)
{
    ClImage u8 = RandomImage(ClImage::eUInt8, 4, 4, 1, 115);
    ClImage i8 = RandomImage(ClImage::eInt8, 4, 4, 1, 116);
    ClImage f32 = RandomImage(ClImage::eFloat32, 4, 4, 1, 117);
    ClImage two = RandomImage(ClImage::eUInt8, 4, 4, 2, 118);
    ClImage three = RandomImage(ClImage::eUInt8, 4, 4, 3, 119);
    ClImage out;
    ClIpAnd op;
    EXPECT_EQ(op.Run(&u8, &i8, &out), ZRC_ERROR_PARAM_IS_MISSING);
    EXPECT_EQ(op.Run(&f32, &f32, &out), ZRC_ERROR_PARAM_IS_MISSING);
    EXPECT_EQ(op.Run(&two, &three, &out), ZRC_ERROR_PARAM_IS_MISSING);
    EXPECT_EQ(op.Run(&u8, &u8, nullptr), ZRC_ERROR_PARAM_IS_MISSING);
    EXPECT_EQ(out.Data(), nullptr);
    EXPECT_EQ(op.Run(&three, &u8, &out), 0);

    // Three planes against two pass the check but combine nothing.
    EXPECT_FALSE((op.m_pInImage1 = &two, op.m_pInImage2 = &three, op.CheckInput()));
}

TEST(IpAnd, FirstStrideStepsAllImagesWithinTheirBuffers)
{
    // With the size check off, a narrower second is still stepped by the
    // first's stride; what would fall past its buffer is not read.
    ClImage wide = RandomImage(ClImage::eUInt8, 16, 4, 1, 120);
    ClImage narrow = RandomImage(ClImage::eUInt8, 4, 4, 1, 121);
    ClImage out;
    ClIpAnd op;
    op.m_bSizeMustBeEqual = false;
    ASSERT_EQ(op.Run(&wide, &narrow, &out), 0);
    // Row 0: the overlap's 4 bytes; row 1 of the overlap would read the
    // second at byte 16, past its end, so the canvas keeps the placed second.
    for (int32_t x = 0; x < 4; ++x)
    {
        EXPECT_EQ(At<uint8_t>(out, x, 0), At<uint8_t>(wide, x, 0) & At<uint8_t>(narrow, x, 0));
        EXPECT_EQ(At<uint8_t>(out, x, 1), At<uint8_t>(narrow, x, 1));
    }
    EXPECT_EQ(At<uint8_t>(out, 9, 1), At<uint8_t>(wide, 9, 1));
}
