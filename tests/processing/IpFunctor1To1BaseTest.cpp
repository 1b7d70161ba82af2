// The functor line's checks of images, boxes and step images.
#include "processing/Ip1To1BaseFilter.h"
#include "support/SampleReference.h"

using namespace TestImages;

namespace
{

// Adds 1 to every 8-bit sample and records the output it was given.
struct ClPlusOne : TpTestProcessor<ClIp1To1BaseFilter>
{
    int32_t Execute(ClImage& input, ClImage& output) override
    {
        m_pExecutedOut = &output;
        for (int32_t y = 0; y < input.Height(); ++y)
            for (int32_t x = 0; x < input.Width(); ++x)
                At<uint8_t>(output, x, y) = static_cast<uint8_t>(At<uint8_t>(input, x, y) + 1);
        return 0;
    }
    // "code remark" of what the check throws, or "".
    std::string Refusal()
    {
        try
        {
            CheckParameters();
            return "";
        }
        catch (const ClException& e)
        {
            return std::to_string(e.GetCode()) + " " + Remark(e.GetMessage());
        }
    }
    const ClImage* m_pExecutedOut = nullptr;
};

} // namespace

TEST(IpFunctor1To1Base, RefusesBadImagesBoxesAndStepsAndWorksInPlace)
{
    ClPlusOne f;
    EXPECT_EQ("-701 Input image not assigned", f.Refusal());
    ClImage in = RandomImage(ClImage::eUInt8, 8, 6, 1, 11), out;
    f.m_pInImage = &in;
    EXPECT_EQ("-701 Output image not assigned", f.Refusal());
    f.m_pOutImage = &out;

    f.m_nRegionOfInterest = ClIpFunctor1To1Base::eRoiBox; // right = width - 1, top = height - 1
    const char* szOutside = "-44 ROI box must be placed inside the image";
    for (auto [l, r, b, t, szRefusal] : {std::tuple{0, 7, 0, 5, ""},
                                         {0, 8, 0, 5, szOutside},
                                         {0, 7, 0, 6, szOutside},
                                         {3, 3, 0, 5, "-44 Illegal ROI box"}})
    {
        f.m_nROILeft = l, f.m_nROIRight = r, f.m_nROIBottom = b, f.m_nROITop = t;
        EXPECT_EQ(szRefusal, f.Refusal()) << l << " " << r << " " << b << " " << t;
    }

    // Directed modes need signed 8-bit step images of the input's size; the
    // other modes do not look at them.
    f.m_nRegionOfInterest = ClIpFunctor1To1Base::eRoiAll;
    ClImage dx = RandomImage(ClImage::eInt8, 8, 6, 1, 11), dy = dx;
    ClImage unsignedDy = RandomImage(ClImage::eUInt8, 8, 6, 1, 11),
            shortDy = RandomImage(ClImage::eInt8, 8, 5, 1, 11);
    for (auto [pDy, nMode, szRefusal] :
         {std::tuple{&unsignedDy, eModeDirectedOrtho, "-44 In[Dx|Dy]Iimage must be signed 8 bit"},
          {&shortDy, eModeDirected, "-44 InDyImage size must be equal to InImage"},
          {&dy, eModeDirected, ""},
          {nullptr, eModeXY, ""}})
    {
        f.m_pDxImage = pDy ? &dx : nullptr, f.m_pDyImage = pDy, f.m_nMode = nMode;
        EXPECT_EQ(std::string(szRefusal), f.Refusal()) << nMode;
    }

    // One object as input and output: the work goes through a temporary
    // unless the in-place flag is set.
    const ClImage original = RandomImage(ClImage::eUInt8, 5, 4, 1, 11);
    ClImage image;
    image.Assign(original);
    f.m_pInImage = f.m_pOutImage = &image;
    ASSERT_EQ(0, f.Run());
    EXPECT_NE(&image, f.m_pExecutedOut);
    EXPECT_EQ(uint8_t(At<uint8_t>(original, 4, 3) + 1), At<uint8_t>(image, 4, 3));
    f.m_bInPlace = true;
    const uint8_t* pBuffer = image.Data();
    ASSERT_EQ(0, f.Run());
    EXPECT_EQ(&image, f.m_pExecutedOut);
    EXPECT_EQ(pBuffer, image.Data());
    EXPECT_EQ(uint8_t(At<uint8_t>(original, 4, 3) + 2), At<uint8_t>(image, 4, 3));
}
