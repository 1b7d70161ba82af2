#include <gtest/gtest.h>

#include "processing/Ip2to1Base.h"
#include "processing/SelectDataTypes.h"
#include "support/OperatorTestImages.h"

using namespace TestImages;

namespace
{

// A two-to-one operator for the base's rules: a − b ÷ 2, counting its calls
// and whether Process ran; the geometry of the last run is visible.
class ClHalfDifference : public ClIp2to1Base
{
public:
    ClProcessorBase* NewInstance() const override { return NewProcessor<ClHalfDifference>(); }
    const char* GetName() const override { return "ClHalfDifference"; }
    int32_t Process() override
    {
        bProcessed = true;
        return ClIp2to1Base::Process();
    }
    double PixelOp(const ClImage&, const ClImage&, const ClImage&, double a, double b) override
    {
        ++nCalls;
        return a - b / 2.0;
    }
    void SetLookup(bool bOn) { m_bUseLookup = bOn; }
    int32_t OverlapWidth() const { return m_nOverlapWidth; }
    int32_t OverlapHeight() const { return m_nOverlapHeight; }
    int64_t OutStart() const { return m_nOutStart; }
    int64_t FirstStart() const { return m_nIn1Start; }
    int64_t SecondStart() const { return m_nIn2Start; }

    int nCalls = 0;
    bool bProcessed = false;
};

// The canvas as the placement rules describe it, one plane, in doubles:
// the fill colour, the first image at its shift, the second at its shift,
// then the overlap combined.
std::vector<std::vector<double>> ExpectedCanvas(const ClImage& first, const ClImage& second,
                                                int32_t dx, int32_t dy, double dFill)
{
    const int32_t ax = std::abs(dx), ay = std::abs(dy);
    const int32_t w1 = first.Width(), h1 = first.Height(), w2 = second.Width(),
                  h2 = second.Height();
    const int32_t cw = dx < 0 ? std::max(w2, w1 + ax) : std::max(w1, w2 + ax);
    const int32_t ch = dy < 0 ? std::max(h2, h1 + ay) : std::max(h1, h2 + ay);
    std::vector<std::vector<double>> canvas(ch, std::vector<double>(cw, dFill));
    auto sample = [](const ClImage& image, int32_t x, int32_t y)
    {
        double d = 0;
        (void)SelectDataType(image.DataType(),
                             [&](auto tag)
                             {
                                 d = static_cast<double>(
                                     At<typename decltype(tag)::Type>(image, x, y));
                                 return 0;
                             });
        return d;
    };
    // A negative offset shifts both images by its amount.
    const int32_t sx = dx < 0 ? ax : 0, sy = dy < 0 ? ay : 0;
    for (int32_t y = 0; y < h1; ++y)
        for (int32_t x = 0; x < w1; ++x)
            canvas[sy + y][sx + x] = sample(first, x, y);
    const int32_t tx = sx + std::max(dx, 0), ty = sy + std::max(dy, 0);
    for (int32_t y = 0; y < h2 && ty + y < ch; ++y)
        for (int32_t x = 0; x < w2 && tx + x < cw; ++x)
            canvas[ty + y][tx + x] = sample(second, x, y);
    // The overlap: min size less the offset, read from the first at the
    // positive offset and from the second at the negative one.
    const int32_t ow = std::min(w1, w2) - ax, oh = std::min(h1, h2) - ay;
    for (int32_t y = 0; y < oh; ++y)
        for (int32_t x = 0; x < ow; ++x)
        {
            const double a = sample(first, x + std::max(dx, 0), y + std::max(dy, 0));
            const double b = sample(second, x + (dx < 0 ? ax : 0), y + (dy < 0 ? ay : 0));
            canvas[ay + y][ax + x] = a - b / 2.0;
        }
    return canvas;
}

void ExpectCanvas(const ClImage& out, const std::vector<std::vector<double>>& expected)
{
    ASSERT_EQ(out.Height(), static_cast<int32_t>(expected.size()));
    ASSERT_EQ(out.Width(), static_cast<int32_t>(expected[0].size()));
    for (int32_t y = 0; y < out.Height(); ++y)
        for (int32_t x = 0; x < out.Width(); ++x)
            EXPECT_EQ(At<double>(out, x, y), expected[y][x]) << x << "," << y;
}

} // namespace

TEST(Ip2to1Base, GeometryOfAFirstOfTenAndASecondOfFiveAtTwoThree)
{
    ClImage first = RandomImage(ClImage::eUInt8, 10, 10, 1, 41);
    ClImage second = RandomImage(ClImage::eUInt8, 5, 5, 1, 42);
    ClImage out;
    ClHalfDifference op;
    op.m_bSizeMustBeEqual = false;
    op.m_nOffsetX = 2;
    op.m_nOffsetY = 3;
    ASSERT_EQ(op.Run(&first, &second, &out, ClImage::eDouble64), 0);
    EXPECT_EQ(out.Width(), 10);
    EXPECT_EQ(out.Height(), 10);
    EXPECT_EQ(op.OverlapWidth(), 3);
    EXPECT_EQ(op.OverlapHeight(), 2);
    // Row 3, column 2 of the first (pitch 12 bytes); the second from its
    // start; the output at column 2, row 3 of a ten-double row.
    EXPECT_EQ(op.FirstStart(), 3 * 12 + 2);
    EXPECT_EQ(op.SecondStart(), 0);
    EXPECT_EQ(op.OutStart(), 3 * 10 + 2);
    EXPECT_EQ(out.Content(), ClImage::eGrayscale);
    ExpectCanvas(out, ExpectedCanvas(first, second, 2, 3, 0.0));
}

TEST(Ip2to1Base, PlacementFillAndOverlapForPositiveAndNegativeOffsets)
{
    const int32_t offsets[][2] = {{3, 2}, {-2, -1}, {-1, 2}, {2, -3}, {0, 1}, {-4, 0}};
    for (const auto& o : offsets)
    {
        SCOPED_TRACE(std::to_string(o[0]) + "," + std::to_string(o[1]));
        ClImage first = RandomImage(ClImage::eInt16, 6, 5, 1, 43);
        ClImage second = RandomImage(ClImage::eUInt8, 4, 4, 1, 44);
        ClImage out;
        ClHalfDifference op;
        op.m_bSizeMustBeEqual = false;
        op.m_dFillColor = 17.9; // truncated to 17 nowhere: the canvas holds doubles
        op.m_nOffsetX = o[0];
        op.m_nOffsetY = o[1];
        ASSERT_EQ(op.Run(&first, &second, &out, ClImage::eDouble64), 0);
        ExpectCanvas(out, ExpectedCanvas(first, second, o[0], o[1], 17.9));
    }

    // The fill colour is truncated to an integer canvas.
    ClImage first = RandomImage(ClImage::eUInt8, 3, 3, 1, 45);
    ClImage second = RandomImage(ClImage::eUInt8, 1, 1, 1, 46);
    ClImage out;
    ClHalfDifference op;
    op.m_bSizeMustBeEqual = false;
    op.m_dFillColor = 17.9;
    op.m_nOffsetX = 3;
    ASSERT_EQ(op.Run(&first, &second, &out), 0);
    ASSERT_EQ(out.Width(), 4);
    EXPECT_EQ(At<uint8_t>(out, 3, 1), 17);
    EXPECT_EQ(At<uint8_t>(out, 3, 0), At<uint8_t>(second, 0, 0));
}

TEST(Ip2to1Base, ANegativeShiftRunsTheSecondIntoTheNextRowButNotPastTheBuffer)
{
    // The second (6 wide) is placed at column 1 of a 6-wide canvas: its last
    // sample of row 0 lands on column 0 of row 1; that of row 1 would lie
    // past the buffer and is not written.
    ClImage first = RandomImage(ClImage::eDouble64, 2, 2, 1, 47);
    ClImage second = RandomImage(ClImage::eDouble64, 6, 2, 1, 48);
    ClImage out;
    ClHalfDifference op;
    op.m_bSizeMustBeEqual = false;
    op.m_nOffsetX = -1;
    ASSERT_EQ(op.Run(&first, &second, &out), 0);
    ASSERT_EQ(out.Width(), 6);
    ASSERT_EQ(out.Height(), 2);
    EXPECT_EQ(At<double>(out, 0, 1), At<double>(second, 5, 0));
    EXPECT_EQ(At<double>(out, 5, 1), At<double>(second, 4, 1));
    EXPECT_EQ(At<double>(out, 1, 0),
              At<double>(first, 0, 0) - At<double>(second, 1, 0) / 2.0); // overlap 1 x 2
    EXPECT_EQ(At<double>(out, 2, 0), At<double>(second, 1, 0));
}

TEST(Ip2to1Base, OverlapLoopsAndThePlanePairs)
{
    // Offsets beyond the overlap: negative overlap, no sample combined.
    ClImage first = RandomImage(ClImage::eFloat32, 5, 5, 1, 49);
    ClImage second = RandomImage(ClImage::eFloat32, 5, 5, 1, 50);
    ClImage out;
    ClHalfDifference op;
    op.m_bSizeMustBeEqual = false;
    op.m_nOffsetX = 7;
    ASSERT_EQ(op.Run(&first, &second, &out), 0);
    EXPECT_EQ(op.OverlapWidth(), -2);
    EXPECT_EQ(op.nCalls, 0);
    EXPECT_EQ(out.Width(), 12);
    EXPECT_EQ(At<float>(out, 6, 2), 0.0f);
    EXPECT_EQ(At<float>(out, 8, 2), At<float>(second, 1, 2));

    // Three planes against one: the second's sample meets all three.
    ClImage colour = RandomImage(ClImage::eInt32, 4, 3, 3, 51);
    ClImage grey = RandomImage(ClImage::eInt32, 4, 3, 1, 52);
    ClHalfDifference mixed;
    ASSERT_EQ(mixed.Run(&colour, &grey, &out, ClImage::eDouble64), 0);
    ASSERT_EQ(out.Planes(), 3u);
    for (int32_t y = 0; y < 3; ++y)
        for (int32_t x = 0; x < 4; ++x)
            for (uint32_t p = 0; p < 3; ++p)
                EXPECT_EQ(At<double>(out, x, y, p),
                          At<int32_t>(colour, x, y, p) - At<int32_t>(grey, x, y) / 2.0);

    // A one-plane second on a three-plane canvas is placed into all three.
    ClHalfDifference placed;
    placed.m_bSizeMustBeEqual = false;
    placed.m_nOffsetY = 1;
    ASSERT_EQ(placed.Run(&colour, &grey, &out, ClImage::eDouble64), 0);
    ASSERT_EQ(out.Height(), 4);
    for (uint32_t p = 0; p < 3; ++p)
        EXPECT_EQ(At<double>(out, 2, 3, p), At<int32_t>(grey, 2, 2));

    // Equal sizes without offsets: no fill, no placement, only Dispatch
    // writes, and a pair of one and three planes it leaves alone.
    ClImage reused;
    reused.Create(ClImage::eInt32, 4, 3, 1);
    reused.Fill<int32_t>(99);
    ClHalfDifference untouched;
    untouched.m_dFillColor = 5.0;
    ASSERT_EQ(untouched.Run(&grey, &colour, &reused), 0);
    EXPECT_EQ(untouched.nCalls, 0);
    EXPECT_EQ(At<int32_t>(reused, 3, 2), 99);

    // Two planes: the plane fill colours start at the fill colour and can be
    // set one by one.
    ClImage two1 = RandomImage(ClImage::eUInt16, 2, 2, 2, 53);
    ClImage two2 = RandomImage(ClImage::eUInt16, 1, 1, 2, 54);
    ClHalfDifference planes;
    planes.m_bSizeMustBeEqual = false;
    planes.m_nOffsetX = 2;
    planes.m_dPlaneFillColors[1] = 300.0;
    EXPECT_EQ(planes.m_dPlaneFillColors[0], 0.0);
    ASSERT_EQ(planes.Run(&two1, &two2, &out), 0);
    EXPECT_EQ(At<uint16_t>(out, 2, 1, 0), 0);
    EXPECT_EQ(At<uint16_t>(out, 2, 1, 1), 300);
}

TEST(Ip2to1Base, LoopAndTableMatchThePixelFunctionForEveryTypeTriple)
{
    for (ClImage::EDataType e1 : AllTypes())
        for (ClImage::EDataType e2 : AllTypes())
            for (ClImage::EDataType eOut : AllTypes())
            {
                const ClImage first = RandomImage(e1, 5, 3, 1, 55);
                const ClImage second = RandomImage(e2, 5, 3, 1, 56);
                ClImage in1(first), in2(second), out;
                ClHalfDifference op;
                ASSERT_EQ(op.Run(&in1, &in2, &out, eOut), 0);
                ASSERT_EQ(out.DataType(), eOut);
                const bool bTable = e1 == ClImage::eUInt8 && e2 == ClImage::eUInt8;
                EXPECT_EQ(op.nCalls, bTable ? 65536 : 15);
                int nWrong = 0;
                (void)SelectDataTypes(
                    e1, e2, eOut,
                    [&](auto t1, auto t2, auto tOut)
                    {
                        using T1 = typename decltype(t1)::Type;
                        using T2 = typename decltype(t2)::Type;
                        using TO = typename decltype(tOut)::Type;
                        for (int32_t y = 0; y < 3; ++y)
                            for (int32_t x = 0; x < 5; ++x)
                            {
                                const double d = static_cast<double>(At<T1>(first, x, y)) -
                                                 static_cast<double>(At<T2>(second, x, y)) / 2.0;
                                nWrong += !BitEqual(At<TO>(out, x, y), SampleFromDouble<TO>(d));
                            }
                        return 0;
                    });
                EXPECT_EQ(nWrong, 0) << ClImage::TypeText(e1) << " " << ClImage::TypeText(e2) << " "
                                     << ClImage::TypeText(eOut);
            }

    // The table path and the loop agree on 8-bit pairs.
    const ClImage first = RandomImage(ClImage::eUInt8, 33, 17, 1, 57);
    const ClImage second = RandomImage(ClImage::eUInt8, 33, 17, 1, 58);
    for (ClImage::EDataType eOut : AllTypes())
    {
        ClImage in1(first), in2(second), viaTable, viaLoop;
        ClHalfDifference table, loop;
        loop.SetLookup(false);
        ASSERT_EQ(table.Run(&in1, &in2, &viaTable, eOut), 0);
        ASSERT_EQ(loop.Run(&in1, &in2, &viaLoop, eOut), 0);
        EXPECT_EQ(loop.nCalls, 33 * 17);
        EXPECT_TRUE(SameSamples(viaTable, viaLoop)) << ClImage::TypeText(eOut);
    }
}

TEST(Ip2to1Base, InputChecksSizesAndCodes)
{
    ClImage a = RandomImage(ClImage::eUInt8, 4, 4, 1, 59);
    ClImage b = RandomImage(ClImage::eUInt8, 4, 3, 1, 60);
    ClImage out;
    ClHalfDifference op;

    // Default: sizes must be equal, so other sizes and any offset give -44
    // without Process.
    EXPECT_EQ(op.Run(&a, &b, &out), ZRC_ERROR_INVALID_PARAMETER);
    EXPECT_FALSE(op.bProcessed);
    op.m_nOffsetX = 1;
    EXPECT_EQ(op.Run(&a, &a, &out), ZRC_ERROR_INVALID_PARAMETER);
    EXPECT_FALSE(op.bProcessed);
    EXPECT_EQ(out.Data(), nullptr);
    op.SetDefaults();
    EXPECT_EQ(op.m_nOffsetX, 0);
    EXPECT_TRUE(op.m_bSizeMustBeEqual);

    // Missing images or data: -37.
    ClImage empty;
    EXPECT_EQ(op.Run(&a, nullptr, &out), ZRC_ERROR_PARAM_IS_MISSING);
    EXPECT_EQ(op.Run(&a, &a, nullptr), ZRC_ERROR_PARAM_IS_MISSING);
    EXPECT_EQ(op.Run(&empty, &a, &out), ZRC_ERROR_PARAM_IS_MISSING);
    EXPECT_EQ(op.Run(&a, &empty, &out), ZRC_ERROR_PARAM_IS_MISSING);
    EXPECT_FALSE(op.CheckInput());
    EXPECT_EQ(op.Process(), ZRC_ERROR_PARAM_IS_MISSING);

    // An output type that is no sample format gives -101 and leaves the
    // output alone; an input type likewise.
    EXPECT_EQ(op.Run(&a, &a, &out, static_cast<ClImage::EDataType>(3)), ZRC_ERROR_INTERNAL);
    EXPECT_EQ(out.Data(), nullptr);
    ClImage odd;
    odd.Create(ClImage::eDefaultType, 4, 4);
    EXPECT_EQ(op.Run(&a, &odd, &out, ClImage::eUInt8), ZRC_ERROR_INTERNAL);

    // An offset whose canvas no image can hold is refused.
    op.m_bSizeMustBeEqual = false;
    op.m_nOffsetX = std::numeric_limits<int32_t>::max();
    EXPECT_EQ(op.Run(&a, &b, &out), ZRC_ERROR_PARAM_OUT_OF_RANGE);
    op.m_nOffsetX = std::numeric_limits<int32_t>::min();
    EXPECT_EQ(op.Run(&a, &b, &out), ZRC_ERROR_PARAM_OUT_OF_RANGE);

    // The output may be one of the inputs.
    const ClImage original(a);
    ClImage first;
    first.Assign(original);
    ClHalfDifference same;
    ASSERT_EQ(same.Run(&first, &a, &first), 0);
    EXPECT_EQ(At<uint8_t>(first, 1, 2),
              SampleFromDouble<uint8_t>(At<uint8_t>(original, 1, 2) - At<uint8_t>(a, 1, 2) / 2.0));
}
