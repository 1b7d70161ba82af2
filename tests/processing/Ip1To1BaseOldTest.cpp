// The old one-to-one base: every input and output type pair follows the
// pixel function.
#include "processing/Ip1To1BaseOld.h"

#include "support/SampleReference.h"

using namespace TestImages;

namespace
{

// s ÷ 3 − 7.25, counting its calls.
struct ClThirdLessSeven : TpTestProcessor<ClIp1to1Base>
{
    double PixelOp(const ClImage&, const ClImage&, double dSample) override
    {
        ++nCalls;
        return dSample / 3.0 - 7.25;
    }
    int32_t RunOn(ClImage* pIn, ClImage* pOut, ClImage::EDataType eOut)
    {
        m_pInImage = pIn, m_pOutImage = pOut, m_eOutImageType = eOut;
        return Run();
    }
    int nCalls = 0;
};

} // namespace

TEST(Ip1to1BaseOld, EveryInputAndOutputTypePairFollowsThePixelFunction)
{
    // Three planes into a cleared output: the 8-bit table covers them all,
    // the direct path the first width samples of a row.
    for (ClImage::EDataType eIn : AllTypes())
        for (ClImage::EDataType eOut : AllTypes())
        {
            SCOPED_TRACE(std::string(ClImage::TypeText(eIn)) + " -> " + ClImage::TypeText(eOut));
            const ClImage source = RandomImage(eIn, 5, 3, 3, 31);
            ClImage in(source), out;
            out.Create(eOut, 5, 3, 3);
            std::memset(out.Data(), 0, static_cast<size_t>(out.ByteSize()));
            ClThirdLessSeven op;
            ASSERT_EQ(op.RunOn(&in, &out, eOut), 0);
            ASSERT_EQ(out.DataType(), eOut);
            const bool bTable = eIn == ClImage::eUInt8;
            EXPECT_EQ(op.nCalls, bTable ? 256 : 15);
            EXPECT_EQ(CountWrong(source, out,
                                 [&](auto s, int32_t i, int32_t, auto o)
                                 {
                                     using TO = decltype(o);
                                     return bTable || i < 5 ? SampleFromDouble<TO>(s / 3.0 - 7.25)
                                                            : TO(0);
                                 }),
                      0);
        }
    // One object for both roles: 30 -> 2.75 and 0 -> -7.25 into floats,
    // whose bounds are the type's; a type that is no sample format: -101.
    ClImage image = OneRow(ClImage::eUInt8, {30, 0}), out;
    ClThirdLessSeven op;
    ASSERT_EQ(op.RunOn(&image, &image, ClImage::eFloat32), 0);
    EXPECT_EQ(RowOf(image), (std::vector<double>{2.75, -7.25}));
    EXPECT_EQ(image.LowerBound(), -1.0);
    EXPECT_EQ(op.RunOn(&image, &out, static_cast<ClImage::EDataType>(3)), ZRC_ERROR_INTERNAL);
    EXPECT_EQ(out.Data(), nullptr);
}
