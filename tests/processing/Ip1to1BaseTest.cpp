#include <gtest/gtest.h>

#include "processing/Ip1to1Base.h"
#include "sdk/Exception.h"
#include "support/OperatorTestImages.h"

using namespace TestImages;

namespace
{

// A one-to-one operator for the base's own rules: 2 × s + 1.5, counting its
// calls and those of PrepareOutput.
class ClTwiceAndAHalf : public NewIpBase::ClIp1to1Base
{
public:
    explicit ClTwiceAndAHalf(bool bInPlace = false, bool bLookup = true)
    {
        m_bInPlace = bInPlace;
        m_bUseLookup = bLookup;
        for (ClImage::EDataType eType : AllTypes())
            AddDataType(eType);
    }
    ClProcessorBase* NewInstance() const override { return NewProcessor<ClTwiceAndAHalf>(); }
    const char* GetName() const override { return "ClTwiceAndAHalf"; }
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
    void Accept(ClImage::EDataType eType) { AddDataType(eType); }

    int nCalls = 0;
    int nPrepared = 0;
};

template <typename T> T Expected(T s)
{
    return SampleFromDouble<T>(2.0 * static_cast<double>(s) + 1.5);
}

} // namespace

TEST(Ip1to1Base, DirectAndTablePathsMatchThePixelFunctionOnEveryType)
{
    for (ClImage::EDataType eType : AllTypes())
    {
        SCOPED_TRACE(ClImage::TypeText(eType));
        const ClImage source = RandomImage(eType, 9, 7, 1, 21);
        ClImage in(source);
        ClImage out;
        ClTwiceAndAHalf op;
        ASSERT_EQ(op.Run(&in, &out), 0);
        ASSERT_EQ(out.DataType(), eType);
        ASSERT_EQ(out.Width(), 9);
        ASSERT_EQ(out.Height(), 7);
        (void)SelectDataType(
            eType,
            [&](auto tag)
            {
                using T = typename decltype(tag)::Type;
                for (int32_t y = 0; y < 7; ++y)
                    for (int32_t x = 0; x < 9; ++x)
                        EXPECT_TRUE(BitEqual(At<T>(out, x, y), Expected(At<T>(source, x, y))))
                            << x << "," << y;
                return 0;
            });
        // The 8-bit table asks the pixel function once per byte value; the
        // direct path once per sample.
        EXPECT_EQ(op.nCalls, eType == ClImage::eUInt8 ? 256 : 63);
    }

    // Truncation toward zero and wrapping, worked by hand.
    ClImage small;
    small.Create(ClImage::eInt8, 3, 1);
    small.Row<int8_t>(0)[0] = 100;  // 201.5 -> 201 -> -55
    small.Row<int8_t>(0)[1] = -3;   // -4.5 -> -4
    small.Row<int8_t>(0)[2] = -128; // -254.5 -> -254 -> 2
    ClTwiceAndAHalf op;
    ASSERT_EQ(op.Run(&small), 0);
    EXPECT_EQ(small.Row<int8_t>(0)[0], -55);
    EXPECT_EQ(small.Row<int8_t>(0)[1], -4);
    EXPECT_EQ(small.Row<int8_t>(0)[2], 2);
}

TEST(Ip1to1Base, TablePathCoversAllPlanesAndDirectPathOnlyWidthSamples)
{
    const ClImage source = RandomImage(ClImage::eUInt8, 5, 3, 3, 22);
    ClImage table(source);
    table.Assign(source);
    ClTwiceAndAHalf lookup(true, true);
    ASSERT_EQ(lookup.Run(&table), 0);
    ClImage direct;
    direct.Assign(source);
    ClTwiceAndAHalf noLookup(true, false);
    ASSERT_EQ(noLookup.Run(&direct), 0);
    for (int32_t y = 0; y < 3; ++y)
        for (int32_t i = 0; i < 15; ++i)
        {
            const uint8_t s = source.Row<uint8_t>(y)[i];
            EXPECT_EQ(table.Row<uint8_t>(y)[i], Expected(s));
            // The direct path walks width (5) samples of the 15 in a row.
            EXPECT_EQ(direct.Row<uint8_t>(y)[i], i < 5 ? Expected(s) : s) << i;
        }
}

TEST(Ip1to1Base, InPlaceAndSwapRulesKeepTheCallersObject)
{
    const ClImage source = RandomImage(ClImage::eUInt16, 6, 4, 1, 23);

    // Not in place, one object for both roles: the result lands in the same
    // object through a temporary and a swap, in a new buffer.
    ClImage image;
    image.Assign(source);
    const uint8_t* pOld = image.Data();
    ClImage keeper(image); // holds the old buffer so its address stays unused
    ClTwiceAndAHalf copying(false);
    ASSERT_EQ(copying.Run(&image), 0);
    EXPECT_NE(image.Data(), pOld);
    EXPECT_EQ(copying.nPrepared, 1);
    EXPECT_EQ(At<uint16_t>(image, 5, 3), Expected(At<uint16_t>(source, 5, 3)));
    EXPECT_TRUE(SameSamples(keeper, source));

    // In place on one object: no PrepareOutput, the buffer is overwritten.
    ClImage inPlace;
    inPlace.Assign(source);
    pOld = inPlace.Data();
    ClTwiceAndAHalf overwriting(true);
    ASSERT_EQ(overwriting.Run(&inPlace), 0);
    EXPECT_EQ(inPlace.Data(), pOld);
    EXPECT_EQ(overwriting.nPrepared, 0);
    EXPECT_EQ(At<uint16_t>(inPlace, 2, 1), Expected(At<uint16_t>(source, 2, 1)));

    // In place with a separate output: the output is prepared like the input.
    ClImage in(source);
    ClImage out;
    ASSERT_EQ(overwriting.Run(&in, &out), 0);
    EXPECT_EQ(overwriting.nPrepared, 1);
    EXPECT_TRUE(SameSamples(in, source));
    EXPECT_EQ(At<uint16_t>(out, 0, 0), Expected(At<uint16_t>(source, 0, 0)));
}

TEST(Ip1to1Base, MissingImagesAndTypesAreReported)
{
    ClTwiceAndAHalf op;
    ClImage image = RandomImage(ClImage::eUInt8, 2, 2, 1, 24);
    auto codeAndRemark = [](auto&& call)
    {
        try
        {
            call();
        }
        catch (const ClException& e)
        {
            return std::make_pair(e.GetCode(), Remark(e.GetMessage()));
        }
        return std::make_pair(0, std::string("no exception"));
    };

    EXPECT_EQ(codeAndRemark([&] { op.Run(nullptr, &image); }),
              std::make_pair(ZRC_ERROR_BAD_POINTER, std::string("Input image not assigned")));
    EXPECT_EQ(codeAndRemark([&] { op.Run(&image, nullptr); }),
              std::make_pair(ZRC_ERROR_BAD_POINTER, std::string("m_pOutImage is not set")));
    op.m_pInImage = nullptr;
    EXPECT_EQ(codeAndRemark([&] { op.Process(); }),
              std::make_pair(ZRC_ERROR_BAD_POINTER, std::string("m_pInImage is not set")));
    ClImage empty;
    op.m_pInImage = &empty;
    op.m_pOutImage = &image;
    EXPECT_EQ(codeAndRemark([&] { op.Process(); }),
              std::make_pair(ZRC_ERROR_BAD_POINTER, std::string("m_pInImage->Data() is not set")));
    EXPECT_FALSE(op.CheckInput());
    op.m_pInImage = &image;
    EXPECT_TRUE(op.CheckInput());

    // A type missing from the list is refused before any work.
    struct ClFloatOnly : NewIpBase::ClIp1to1Base
    {
        ClFloatOnly() { AddDataType(ClImage::eFloat32); }
        ClProcessorBase* NewInstance() const override { return nullptr; }
        const char* GetName() const override { return "ClFloatOnly"; }
    } floatOnly;
    ClImage out;
    const auto refused = codeAndRemark([&] { floatOnly.Run(&image, &out); });
    EXPECT_EQ(refused.first, ZRC_ERROR_FORMAT_NOTSUPPORTED);
    EXPECT_EQ(refused.second, "Input pixel type \"uint8\" not supported by processor.");
    EXPECT_EQ(out.Data(), nullptr);

    // A data type that is no sample format reaches Dispatch only if accepted;
    // the selection then gives -101.
    ClImage odd;
    odd.Create(ClImage::eDefaultType, 2, 2);
    op.Accept(ClImage::eDefaultType);
    ClImage oddOut;
    EXPECT_EQ(op.Run(&odd, &oddOut), ZRC_ERROR_INTERNAL);
}
