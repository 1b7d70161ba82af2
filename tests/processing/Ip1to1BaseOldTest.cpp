#include <gtest/gtest.h>

#include "processing/Ip1to1BaseOld.h"
#include "processing/SelectDataTypes.h"
#include "support/OperatorTestImages.h"

using namespace TestImages;

namespace
{

// An old-style operator for the base's rules: s ÷ 3 − 7.25.
class ClThirdLessSeven : public ClIp1to1Base
{
public:
    ClProcessorBase* NewInstance() const override { return NewProcessor<ClThirdLessSeven>(); }
    const char* GetName() const override { return "ClThirdLessSeven"; }
    double PixelOp(const ClImage&, const ClImage&, double dSample) override
    {
        ++nCalls;
        return dSample / 3.0 - 7.25;
    }
    void SetLookup(bool bOn) { m_bUseLookup = bOn; }
    int nCalls = 0;
};

} // namespace

TEST(Ip1to1BaseOld, EveryInputAndOutputTypePairFollowsThePixelFunction)
{
    for (ClImage::EDataType eIn : AllTypes())
        for (ClImage::EDataType eOut : AllTypes())
        {
            SCOPED_TRACE(std::string(ClImage::TypeText(eIn)) + " -> " + ClImage::TypeText(eOut));
            const ClImage source = RandomImage(eIn, 5, 3, 1, 31);
            ClImage in(source);
            ClImage out;
            ClThirdLessSeven op;
            op.m_pInImage = &in;
            op.m_pOutImage = &out;
            op.m_eOutImageType = eOut;
            ASSERT_EQ(op.Run(), 0);
            ASSERT_EQ(out.DataType(), eOut);
            EXPECT_EQ(op.nCalls, eIn == ClImage::eUInt8 ? 256 : 15);
            (void)SelectDataTypes(
                eIn, eOut,
                [&](auto inTag, auto outTag)
                {
                    using TIn = typename decltype(inTag)::Type;
                    using TOut = typename decltype(outTag)::Type;
                    for (int32_t y = 0; y < 3; ++y)
                        for (int32_t x = 0; x < 5; ++x)
                        {
                            const double d =
                                static_cast<double>(At<TIn>(source, x, y)) / 3.0 - 7.25;
                            EXPECT_TRUE(BitEqual(At<TOut>(out, x, y), SampleFromDouble<TOut>(d)));
                        }
                    return 0;
                });
        }

    // Worked by hand: 8-bit 30 -> 2.75 -> 2 into bytes; 0 -> -7.25 -> -7 -> 249.
    ClImage bytes;
    bytes.Create(ClImage::eUInt8, 2, 1);
    bytes.Row<uint8_t>(0)[0] = 30;
    bytes.Row<uint8_t>(0)[1] = 0;
    ClThirdLessSeven op;
    op.m_pInImage = &bytes;
    op.m_pOutImage = &bytes;
    ASSERT_EQ(op.Run(), 0);
    EXPECT_EQ(bytes.Row<uint8_t>(0)[0], 2);
    EXPECT_EQ(bytes.Row<uint8_t>(0)[1], 249);
}

TEST(Ip1to1BaseOld, OutputTypeContentAndTheSameObject)
{
    ClImage source = RandomImage(ClImage::eUInt8, 4, 4, 1, 32);
    source.SetContent(ClImage::eUnknown);
    source.SetOrigin(0x1234);
    ClImage image(source);
    image.Assign(source);
    ClThirdLessSeven op;
    op.m_pInImage = &image;
    op.m_pOutImage = &image;
    op.m_eOutImageType = ClImage::eFloat32;
    ASSERT_EQ(op.Run(), 0);
    EXPECT_EQ(image.DataType(), ClImage::eFloat32);
    EXPECT_EQ(image.Content(), ClImage::eUnknown);
    EXPECT_EQ(image.Origin(), 0x1234u);
    EXPECT_EQ(image.LowerBound(), -1.0);
    EXPECT_EQ(At<float>(image, 3, 3),
              SampleFromDouble<float>(At<uint8_t>(source, 3, 3) / 3.0 - 7.25));

    // SetDefaults brings back the input's own type.
    op.SetDefaults();
    EXPECT_EQ(op.m_eOutImageType, ClImage::eDefaultType);

    // Without the lookup flag an 8-bit image runs the direct path, width
    // samples per row: on three planes only the first third of a row.
    ClImage colour = RandomImage(ClImage::eUInt8, 4, 2, 3, 33);
    ClImage colourOut;
    colourOut.Create(ClImage::eUInt8, 4, 2, 3);
    colourOut.Fill<uint8_t>(200);
    op.SetLookup(false);
    op.m_pInImage = &colour;
    op.m_pOutImage = &colourOut;
    ASSERT_EQ(op.Run(), 0);
    EXPECT_EQ(op.nCalls, 256 + 8);
    EXPECT_EQ(colourOut.Row<uint8_t>(1)[3],
              SampleFromDouble<uint8_t>(colour.Row<uint8_t>(1)[3] / 3.0 - 7.25));
    EXPECT_EQ(colourOut.Row<uint8_t>(1)[4], 200);
}

TEST(Ip1to1BaseOld, MissingImagesAndUnknownTypesGiveCodes)
{
    ClImage image = RandomImage(ClImage::eInt16, 3, 3, 1, 34);
    ClImage empty;
    ClImage out;
    ClThirdLessSeven op;
    op.m_pOutImage = &out;
    EXPECT_EQ(op.Run(), ZRC_ERROR_BITMAP_PTR);
    op.m_pInImage = &empty;
    EXPECT_EQ(op.Run(), ZRC_ERROR_BITMAP_PTR);
    op.m_pInImage = &image;
    op.m_pOutImage = nullptr;
    EXPECT_EQ(op.Run(), ZRC_ERROR_BITMAP_PTR);

    // An output type that is no sample format: -101, the output untouched.
    op.m_pOutImage = &out;
    op.m_eOutImageType = static_cast<ClImage::EDataType>(3);
    EXPECT_EQ(op.Run(), ZRC_ERROR_INTERNAL);
    op.m_eOutImageType = ClImage::eUnknownType;
    EXPECT_EQ(op.Run(), ZRC_ERROR_INTERNAL);
    EXPECT_EQ(out.Data(), nullptr);

    // An input of a type that is no sample format.
    ClImage odd;
    odd.Create(ClImage::eDefaultType, 2, 2);
    op.m_pInImage = &odd;
    op.m_eOutImageType = ClImage::eUInt8;
    EXPECT_EQ(op.Run(), ZRC_ERROR_INTERNAL);
    EXPECT_EQ(op.nCalls, 0);
}
