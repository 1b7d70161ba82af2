// The functor line's checks of images, boxes, masks and step images, and
// its work through a temporary when output and input are one object.
#include <gtest/gtest.h>

#include <string>

#include "processing/Ip1To1BaseFilter.h"
#include "sdk/Exception.h"
#include "support/OperatorTestImages.h"

using TestImages::At;

namespace
{

// Adds 1 to every 8-bit sample and records the output it was given.
class ClPlusOne : public ClIp1To1BaseFilter
{
public:
    ClProcessorBase* NewInstance() const override { return NewProcessor<ClPlusOne>(); }
    const char* GetName() const override { return "ClPlusOne"; }
    int32_t Execute(ClImage& input, ClImage& output) override
    {
        m_pExecutedOut = &output;
        for (int32_t y = 0; y < input.Height(); ++y)
            for (int32_t x = 0; x < input.Width(); ++x)
                At<uint8_t>(output, x, y) = static_cast<uint8_t>(At<uint8_t>(input, x, y) + 1);
        return 0;
    }
    const ClImage* m_pExecutedOut = nullptr;
};

// "code remark" of what the check throws, or "".
std::string Refusal(ClIp1To1BaseFilter& filter)
{
    try
    {
        filter.CheckParameters();
        return "";
    }
    catch (const ClException& e)
    {
        return std::to_string(e.GetCode()) + " " + TestImages::Remark(e.GetMessage());
    }
}

ClImage Image(ClImage::EDataType eType, int32_t w, int32_t h)
{
    return TestImages::RandomImage(eType, w, h, 1, 11);
}

} // namespace

TEST(IpFunctor1To1Base, RefusesMissingImagesBadBoxesAndMasks)
{
    ClPlusOne f;
    EXPECT_EQ("-701 Input image not assigned", Refusal(f));
    ClImage empty, in = Image(ClImage::eUInt8, 8, 6), out;
    f.m_pInImage = &empty;
    EXPECT_EQ("-44 Input image contains no data", Refusal(f));
    f.m_pInImage = &in;
    EXPECT_EQ("-701 Output image not assigned", Refusal(f));
    f.m_pOutImage = &out;

    f.m_nRegionOfInterest = ClIpFunctor1To1Base::eRoiBox;
    auto box = [&](int32_t l, int32_t r, int32_t b, int32_t t)
    {
        f.m_nROILeft = l, f.m_nROIRight = r, f.m_nROIBottom = b, f.m_nROITop = t;
        return Refusal(f);
    };
    const std::string outside = "-44 ROI box must be placed inside the image";
    EXPECT_EQ("", box(0, 7, 0, 5)); // right = width - 1, top = height - 1
    EXPECT_EQ(outside, box(0, 8, 0, 5));
    EXPECT_EQ(outside, box(0, 7, 0, 6));
    EXPECT_EQ(outside, box(-1, 7, 0, 5));
    EXPECT_EQ("-44 Illegal ROI box", box(3, 3, 0, 5));
    EXPECT_EQ("-44 Illegal ROI box", box(0, 7, 4, 2));

    f.m_nRegionOfInterest = ClIpFunctor1To1Base::eRoiMask;
    EXPECT_EQ("-701 No mask assigned", Refusal(f));
    f.m_pROIMask = &empty;
    EXPECT_EQ("-44 Mask contains no data", Refusal(f));
    ClImage imageShaped = Image(ClImage::eUInt8, 8, 6), wordRow = Image(ClImage::eUInt16, 8, 1);
    ClImage byteRow = Image(ClImage::eUInt8, 8, 1);
    f.m_pROIMask = &imageShaped;
    EXPECT_EQ("-44 Mask seems not to be a mask", Refusal(f));
    f.m_pROIMask = &wordRow;
    EXPECT_EQ("-44 Mask seems not to be a mask", Refusal(f));
    f.m_pROIMask = &byteRow;
    EXPECT_EQ("", Refusal(f));
}

TEST(Ip1To1BaseFilter, DirectedModesNeedSigned8BitStepImagesOfTheInputSize)
{
    ClPlusOne f;
    ClImage in = Image(ClImage::eUInt8, 8, 6), out, dx = Image(ClImage::eInt8, 8, 6);
    ClImage dy = Image(ClImage::eInt8, 8, 6), unsignedDy = Image(ClImage::eUInt8, 8, 6);
    ClImage narrowDx = Image(ClImage::eInt8, 7, 6), shortDy = Image(ClImage::eInt8, 8, 5);
    f.m_pInImage = &in;
    f.m_pOutImage = &out;
    auto steps = [&](ClImage* pDx, ClImage* pDy)
    {
        f.m_pDxImage = pDx;
        f.m_pDyImage = pDy;
        return Refusal(f);
    };
    for (int32_t nMode : {eModeDirected, eModeDirectedOrtho})
    {
        f.m_nMode = nMode;
        EXPECT_EQ("-44 InDxImage not provided", steps(nullptr, &dy));
        EXPECT_EQ("-44 InDyImage not provided", steps(&dx, nullptr));
        EXPECT_EQ("-44 In[Dx|Dy]Iimage must be signed 8 bit", steps(&dx, &unsignedDy));
        EXPECT_EQ("-44 InDxImage size must be equal to InImage", steps(&narrowDx, &dy));
        EXPECT_EQ("-44 InDyImage size must be equal to InImage", steps(&dx, &shortDy));
        EXPECT_EQ("", steps(&dx, &dy));
    }
    f.m_nMode = eModeXY; // the other modes do not look at the step images
    EXPECT_EQ("", steps(nullptr, nullptr));
}

TEST(IpFunctor1To1Base, WorksInPlaceThroughATemporaryUnlessAskedNotTo)
{
    ClPlusOne f;
    const ClImage original = Image(ClImage::eUInt8, 5, 4);
    ClImage image;
    image.Assign(original);
    f.m_pInImage = f.m_pOutImage = &image;
    ASSERT_EQ(0, f.Run());
    EXPECT_NE(&image, f.m_pExecutedOut);
    for (int32_t y = 0; y < image.Height(); ++y)
        for (int32_t x = 0; x < image.Width(); ++x)
            ASSERT_EQ(uint8_t(At<uint8_t>(original, x, y) + 1), At<uint8_t>(image, x, y));

    // With the in-place flag the filter gets the one object as its output.
    f.m_bInPlace = true;
    const uint8_t* pBuffer = image.Data();
    ASSERT_EQ(0, f.Run());
    EXPECT_EQ(&image, f.m_pExecutedOut);
    EXPECT_EQ(pBuffer, image.Data());
    EXPECT_EQ(uint8_t(At<uint8_t>(original, 0, 0) + 2), At<uint8_t>(image, 0, 0));
}
