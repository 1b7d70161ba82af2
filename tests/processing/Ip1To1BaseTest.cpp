// The one-to-one base: table and direct paths, in-place and swap rules, and
// the tables of every shape.
#include "processing/Ip1To1Base.h"

#include <cmath>
#include <functional>

#include "support/SampleReference.h"

using namespace TestImages;

namespace
{

// 2 × s + 1.5, counting its calls and those of PrepareOutput.
struct ClTwiceAndAHalf : TpTestProcessor<NewIpBase::ClIp1to1Base>
{
    explicit ClTwiceAndAHalf(bool bInPlace = false, bool bLookup = true)
    {
        m_bInPlace = bInPlace;
        m_bUseLookup = bLookup;
        for (ClImage::EDataType eType : AllTypes())
            AddDataType(eType);
    }
    void PrepareOutput(ClImage& out) override
    {
        ++nPrepared;
        ClIp1to1Base::PrepareOutput(out);
    }
    double PixelOp(const ClImage&, const ClImage&, double dSample) override
    {
        ++nCalls;
        return 2.0 * dSample + 1.5;
    }
    int nCalls = 0, nPrepared = 0;
};

const auto Expected = [](auto s) { return SampleFromDouble<decltype(s)>(2.0 * s + 1.5); };

} // namespace

TEST(Ip1to1Base, TableAndDirectPathsFollowThePixelFunctionOnEveryType)
{
    // Three planes in place: the 8-bit table covers planes × width samples
    // per row, the direct path only width samples, leaving the rest.
    for (ClImage::EDataType eType : AllTypes())
        for (bool bLookup : {true, false})
        {
            SCOPED_TRACE(std::string(ClImage::TypeText(eType)) + (bLookup ? " lookup" : ""));
            const ClImage source = RandomImage(eType, 9, 7, 3, 21);
            ClImage image;
            image.Assign(source);
            ClTwiceAndAHalf op(true, bLookup);
            ASSERT_EQ(op.Run(&image), 0);
            const bool bTable = bLookup && eType == ClImage::eUInt8;
            EXPECT_EQ(op.nCalls, bTable ? 256 : 63);
            EXPECT_EQ(CountWrong(source, image,
                                 [&](auto s, int32_t i, int32_t, auto)
                                 { return bTable || i < 9 ? Expected(s) : s; }),
                      0);
        }
    // Truncation toward zero and wrapping: 201.5 -> -55; -4.5 -> -4; -254.5 -> 2.
    ClImage small = OneRow(ClImage::eInt8, {100, -3, -128});
    ASSERT_EQ(ClTwiceAndAHalf().Run(&small), 0);
    EXPECT_EQ(RowOf(small), (std::vector<double>{-55, -4, 2}));
}

TEST(Ip1to1Base, InPlaceAndSwapRulesKeepTheCallersObject)
{
    // Only in place on one object is PrepareOutput skipped and the input's
    // buffer overwritten; one object without the flag goes through a swap.
    const ClImage source = RandomImage(ClImage::eUInt16, 6, 4, 1, 23);
    for (bool bInPlace : {false, true})
        for (bool bOneObject : {false, true})
        {
            SCOPED_TRACE(std::string(bInPlace ? "in place" : "") + (bOneObject ? " one" : ""));
            ClImage in, other;
            in.Assign(source);
            const ClImage keeper(in); // shares the input's buffer
            ClImage& out = bOneObject ? in : other;
            ClTwiceAndAHalf op(bInPlace);
            ASSERT_EQ(op.Run(&in, &out), 0);
            EXPECT_EQ(
                CountWrong(source, out, [](auto s, int32_t, int32_t, auto) { return Expected(s); }),
                0);
            const bool bOverwritten = bInPlace && bOneObject;
            EXPECT_EQ(op.nPrepared, bOverwritten ? 0 : 1);
            EXPECT_EQ(out.Data() == keeper.Data(), bOverwritten);
            EXPECT_EQ(SameSamples(keeper, source), !bOverwritten);
        }
}

TEST(Ip1to1Base, TablesOfEveryShapeAreAppliedEntryByEntry)
{
    // Steps at every entry (applied by comparison), two values in three runs,
    // NaN entries and a line, into every output type, on rows of widths up to
    // 31 holding all 256 bytes.
    std::vector<std::function<double(double)>> tables = {
        [](double s) { return s >= 10 && s < 20 ? 2.0 : 1.0; },
        [](double s) { return s < 100 ? std::nan("") : 7.0; },
        [](double s) { return 3.0 * s - 100.0; }};
    for (int32_t k = 0; k <= 256; k += (k < 4 || k > 250) ? 1 : 7)
        tables.push_back([k](double s) { return s >= k ? -3.25 : 200.0; });
    for (ClImage::EDataType eOut : AllTypes())
        for (int32_t nWidth = 1; nWidth <= 31; nWidth += 3)
        {
            ClImage in = RandomImage(ClImage::eUInt8, nWidth, 256 / nWidth + 1, 1, 40 + nWidth);
            for (int32_t i = 0; i < 256; ++i)
                in.Row<uint8_t>(i / nWidth)[i % nWidth] = static_cast<uint8_t>(i);
            for (size_t t = 0; t < tables.size(); ++t)
            {
                SCOPED_TRACE(testing::Message()
                             << ClImage::TypeText(eOut) << " " << nWidth << " " << t);
                ClImage out;
                out.CreateAs(in, eOut);
                SelectDataType(eOut,
                               [&](auto tag)
                               {
                                   using TOut = typename decltype(tag)::Type;
                                   Ip1To1Paths::RunTable<TOut>(in, out, tables[t]);
                                   return 0;
                               });
                EXPECT_EQ(CountWrong(in, out,
                                     [&](auto s, int32_t, int32_t, auto o)
                                     { return SampleFromDouble<decltype(o)>(tables[t](s)); }),
                          0);
            }
        }
}
