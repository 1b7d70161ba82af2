#include "processing/Ip2To1Base.h"

#include "support/SampleReference.h"

using namespace TestImages;

namespace
{

// a − b ÷ 2, counting its calls; the overlap of the last run is visible.
struct ClHalfDifference : TpTestProcessor<ClIp2to1Base>
{
    double PixelOp(const ClImage&, const ClImage&, const ClImage&, double a, double b) override
    {
        ++nCalls;
        return a - b / 2.0;
    }
    int32_t nCalls = 0;
    using ClIp2to1Base::m_bUseLookup, ClIp2to1Base::m_nOverlapWidth, ClIp2to1Base::m_nOverlapHeight;
};

// Runs op on one-plane images at the offset into a canvas of type eOut and
// compares it with the placement rules: the fill colour, the first image at
// its shift, the second at its shift, then the overlap combined.
void ExpectCanvas(ClHalfDifference& op, int32_t dx, int32_t dy, const ClImage& first,
                  const ClImage& second, ClImage::EDataType eOut)
{
    ClImage in1(first), in2(second), out;
    op.m_bSizeMustBeEqual = false;
    op.m_nOffsetX = dx, op.m_nOffsetY = dy;
    ASSERT_EQ(op.Run(&in1, &in2, &out, eOut), 0);
    const int32_t ax = std::abs(dx), ay = std::abs(dy), w1 = first.Width(), h1 = first.Height();
    const int32_t w2 = second.Width(), h2 = second.Height();
    const int32_t cw = dx < 0 ? std::max(w2, w1 + ax) : std::max(w1, w2 + ax);
    const int32_t ch = dy < 0 ? std::max(h2, h1 + ay) : std::max(h1, h2 + ay);
    ClImage canvas;
    canvas.Create(ClImage::eDouble64, cw, ch);
    canvas.Fill<double>(op.m_dFillColor);
    // Each image is copied row by row into the canvas's buffer, cut off at its end.
    auto place = [&](const ClImage& image, int32_t x0, int32_t y0)
    {
        for (int32_t y = 0; y < image.Height(); ++y)
            for (int32_t x = 0; x < image.Width(); ++x)
                if (const int32_t n = (y0 + y) * cw + x0 + x; n < cw * ch)
                    At<double>(canvas, n % cw, n / cw) = SampleAt(image, x, y);
    };
    // A negative offset shifts both images by its amount.
    const int32_t sx = dx < 0 ? ax : 0, sy = dy < 0 ? ay : 0;
    place(first, sx, sy);
    place(second, sx + std::max(dx, 0), sy + std::max(dy, 0));
    // The overlap: min size less the offset, read from the first at the
    // positive offset and from the second at the negative one.
    const int32_t ow = std::min(w1, w2) - ax, oh = std::min(h1, h2) - ay;
    EXPECT_EQ(op.m_nOverlapWidth, ow);
    EXPECT_EQ(op.m_nOverlapHeight, oh);
    const bool bTable = op.m_bUseLookup && first.DataType() == ClImage::eUInt8 &&
                        second.DataType() == ClImage::eUInt8;
    EXPECT_EQ(op.nCalls, bTable ? 65536 : ow > 0 && oh > 0 ? ow * oh : 0);
    for (int32_t y = 0; y < oh; ++y)
        for (int32_t x = 0; x < ow; ++x)
            At<double>(canvas, ax + x, ay + y) =
                SampleAt(first, x + std::max(dx, 0), y + std::max(dy, 0)) -
                SampleAt(second, x + sx, y + sy) / 2.0;

    ASSERT_TRUE(out.DataType() == eOut && out.Height() == ch && out.Width() == cw);
    EXPECT_EQ(CountWrong(canvas, out,
                         [](auto s, int32_t, int32_t, auto o)
                         { return SampleFromDouble<decltype(o)>(s); }),
              0);
}

} // namespace

TEST(Ip2to1Base, CanvasPlacementFillAndOverlapForAnyOffset)
{
    // Table path with an offset, offsets of every sign, beyond the overlap
    // (nothing combined), and a wider second that a negative shift runs into
    // the next canvas row but not past the buffer; the fill colour truncated
    // on an integer canvas.
    ClHalfDifference table;
    ExpectCanvas(table, 2, 3, RandomImage(ClImage::eUInt8, 10, 10, 1, 41),
                 RandomImage(ClImage::eUInt8, 5, 5, 1, 42), ClImage::eDouble64);
    const int32_t cases[][4] = {{3, 2, 4, 4}, {-2, -1, 4, 4}, {-1, 2, 4, 4}, {2, -3, 4, 4},
                                {0, 1, 4, 4}, {-4, 0, 4, 4},  {7, 0, 4, 4},  {-1, 0, 7, 5}};
    for (const auto& [dx, dy, w2, h2] : cases)
        for (ClImage::EDataType eOut : {ClImage::eDouble64, ClImage::eInt32})
        {
            SCOPED_TRACE(std::to_string(dx) + "," + std::to_string(dy));
            ClHalfDifference op;
            op.m_dFillColor = 17.9;
            ExpectCanvas(op, dx, dy, RandomImage(ClImage::eInt16, 6, 5, 1, 43),
                         RandomImage(ClImage::eUInt8, w2, h2, 1, 44), eOut);
        }
    // Loop and table on every type triple.
    for (bool bLookup : {true, false})
        for (ClImage::EDataType e1 : AllTypes())
            for (ClImage::EDataType e2 : AllTypes())
                for (ClImage::EDataType eOut : AllTypes())
                {
                    SCOPED_TRACE(testing::Message() << bLookup << " " << e1 << e2 << eOut);
                    ClHalfDifference op;
                    op.m_bUseLookup = bLookup;
                    ExpectCanvas(op, 0, 0, RandomImage(e1, 5, 3, 1, 55),
                                 RandomImage(e2, 5, 3, 1, 56), eOut);
                }
}

TEST(Ip2to1Base, InputChecksSizesAndCodes)
{
    ClImage a = RandomImage(ClImage::eUInt8, 4, 4, 1, 59), first;
    ClImage b = RandomImage(ClImage::eUInt8, 4, 3, 1, 60), empty, out;
    ClHalfDifference op;
    // Sizes must be equal by default: other sizes and any offset give -44;
    // missing images or data -37; no sample format -101, output alone.
    EXPECT_EQ(op.Run(&a, &b, &out), ZRC_ERROR_INVALID_PARAMETER);
    op.m_nOffsetX = 1;
    EXPECT_EQ(op.Run(&a, &a, &out), ZRC_ERROR_INVALID_PARAMETER);
    op.SetDefaults();
    EXPECT_EQ(op.Run(&a, nullptr, &out), ZRC_ERROR_PARAM_IS_MISSING);
    EXPECT_EQ(op.Run(&a, &empty, &out), ZRC_ERROR_PARAM_IS_MISSING);
    EXPECT_EQ(op.Run(&a, &a, &out, static_cast<ClImage::EDataType>(3)), ZRC_ERROR_INTERNAL);
    EXPECT_EQ(out.Data(), nullptr);
    // The output may be one of the inputs.
    first.Assign(a);
    ASSERT_EQ(ClHalfDifference().Run(&first, &a, &first), 0);
    EXPECT_EQ(CountWrong(a, first,
                         [](auto s, int32_t, int32_t, auto o)
                         { return SampleFromDouble<decltype(o)>(s - s / 2.0); }),
              0);
}
