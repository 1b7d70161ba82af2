// The processor framework (order of the hooks, result codes, defaults, data
// types), the filter line's common rules (narrow widths copied, no in-place
// use, the choice of hook, XY as two passes, colour plane by plane) and the
// functor line's checks of images, boxes and step images.
#include <gtest/gtest.h>

#include <string>

#include "image/ImageTestSupport.h"
#include "parameters/ParameterContainer.h"
#include "processing/Ip1To1BaseFilter.h"
#include "processing/IpFilterBase.h"
#include "processing/IpProcessorBase.h"
#include "support/OperatorTestImages.h"

using namespace TestImages;

namespace
{

// Hooks return what the test asks and record their calls.
class ClScriptedProcessor : public ClProcessorBase
{
public:
    ClProcessorBase* NewInstance() const override { return nullptr; }
    const char* GetName() const override { return "ClScriptedProcessor"; }
    int32_t Init() override { return m_Calls += "I", m_nInit; }
    int32_t Process() override { return m_Calls += "P", m_nProcess; }
    int32_t Finalize(int32_t nResult) override
    {
        m_Calls += "F" + std::to_string(nResult);
        return m_nFinalize;
    }
    int32_t m_nInit = 0, m_nProcess = 0, m_nFinalize = 0;
    std::string m_Calls;
};

// Records the hooks called. On 8-bit data X adds 1 and Y doubles, so the
// order of two passes shows in the samples.
class ClRecordingFilter : public ClIpFilterBase
{
public:
    ClProcessorBase* NewInstance() const override { return NewProcessor<ClRecordingFilter>(); }
    const char* GetName() const override { return "ClRecordingFilter"; }
    int32_t FilterXUnsigned() override { return Pass("Xu", 1, 1); }
    int32_t FilterYUnsigned() override { return Pass("Yu", 2, 0); }
    int32_t FilterXSigned() override { return Pass("Xs", 1, 1); }
    int32_t FilterYSigned() override { return Pass("Ys", 2, 0); }
    int32_t FilterDirectedUnsigned(bool b) override { return Pass(b ? "DOu" : "Du", 1, 0); }
    int32_t FilterDirectedSigned(bool b) override { return Pass(b ? "DOs" : "Ds", 1, 0); }
    int32_t Run(ClImage* pIn, ClImage* pOut, int32_t nMode, int32_t nWidth = 3)
    {
        m_pInImage = pIn, m_pOutImage = pOut, m_nMode = nMode, m_nFilterWidth = nWidth;
        return ClIpFilterBase::Run();
    }
    std::string m_Calls;

private:
    int32_t Pass(const char* szName, int nFactor, int nAdd)
    {
        m_Calls += std::string(szName) + " ";
        const ClImage& in = *m_pInImage;
        m_pOutImage->CreateLike(in);
        for (int32_t y = 0; in.DataType() == ClImage::eUInt8 && y < in.Height(); ++y)
            for (int64_t i = 0; i < in.Width() * int64_t(in.Planes()); ++i)
                m_pOutImage->Row<uint8_t>(y)[i] = uint8_t(in.Row<uint8_t>(y)[i] * nFactor + nAdd);
        return 0;
    }
};

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

TEST(ProcessorBase, RunOrderAndResults)
{
    // Init not 0 is returned at once; a failing Process is returned, not
    // thrown, and Finalize sees it; a failing Finalize throws its own code.
    ClScriptedProcessor processor;
    EXPECT_EQ(processor.Run(), 0);
    processor.m_nInit = -5;
    EXPECT_EQ(processor.Run(), -5);
    processor.m_nInit = 0;
    processor.m_nProcess = -35;
    EXPECT_EQ(processor.Run(), -35);
    EXPECT_EQ(processor.m_Calls, "IPF0IIPF-35");
    processor.m_nProcess = 0;
    processor.m_nFinalize = 7;
    ExpectThrows([&] { processor.Run(); }, 7, "Finalization failed");
}

TEST(ProcessorBase, ConnectParametersRecordsTrueDefaults)
{
    struct ClTuned : ClScriptedProcessor
    {
        void SetDefaults() override { nFilterWidth = 3, pInImage = nullptr; }
        void DefineParameters(ClParameterContainer& container) override
        {
            container.AddInt("nFilterWidth")->Bind(nFilterWidth, ClParameter::eFlagInput);
            container.AddImage("pInImage")->Bind(pInImage, ClParameter::eFlagInput);
        }
        int nFilterWidth = 9;
        ClImage* pInImage = nullptr;
    } processor;
    ClImage image;
    processor.pInImage = &image;
    ClParameterContainer root;
    processor.ConnectParameters(root);
    // The members keep their values; the parameters know the defaults of SetDefaults.
    EXPECT_EQ(processor.nFilterWidth, 9);
    EXPECT_EQ(processor.pInImage, &image);
    root.ResetValue();
    EXPECT_EQ(processor.nFilterWidth, 3);
    EXPECT_EQ(processor.pInImage, nullptr);
}

TEST(ProcessorBase, DataTypeCheckNamesTheRefusedType)
{
    // A stage for 16-bit input: Init throws where CheckInput reports.
    class ClTypedStage : public NewIpBase::ClIpProcessorBase
    {
    public:
        ClTypedStage() { AddDataType(ClImage::eUInt16); }
        ClProcessorBase* NewInstance() const override { return nullptr; }
        const char* GetName() const override { return "ClTypedStage"; }
        void CheckInputImages() override { CheckDataType(image); }
        int32_t Process() override { return ++nProcessCalls; }
        ClImage image;
        int nProcessCalls = 0;
    } stage;
    stage.image.Create(ClImage::eUInt16, 4, 4);
    EXPECT_TRUE(stage.CheckInput());
    EXPECT_EQ(stage.Run(), 1);
    for (auto [eType, szName] : {std::pair{ClImage::eFloat32, "float32"},
                                 {ClImage::eUnknownType, "unknown"},
                                 {static_cast<ClImage::EDataType>(3), "not valid"}})
    {
        if (eType == ClImage::eUnknownType)
            stage.image.Clear();
        else
            stage.image.Create(eType, 4, 4);
        EXPECT_FALSE(stage.CheckInput());
        const std::string remark =
            "Input pixel type \"" + std::string(szName) + "\" not supported by processor.";
        ExpectThrows([&] { stage.Run(); }, ZRC_ERROR_FORMAT_NOTSUPPORTED, remark.c_str());
    }
    EXPECT_EQ(stage.nProcessCalls, 1);
}

TEST(IpFilterBase, CopiesNarrowWidthsRefusesInPlaceUseChoosesTheHookAndSplitsPlanes)
{
    ClRecordingFilter filter;
    ClImage in = RandomImage(ClImage::eUInt8, 9, 4, 1, 8), out, original;
    original.Assign(in);
    ASSERT_EQ(0, filter.Run(&in, &out, 99, 0)); // whatever the mode
    EXPECT_TRUE(SameSamples(in, out));
    EXPECT_NE(in.Data(), out.Data());
    EXPECT_EQ(ZRC_ERROR_BITMAP_PTR, filter.Run(&in, &in, eModeX));
    EXPECT_EQ("", filter.m_Calls);
    ExpectThrows<ClExVelmoran>([&] { filter.Run(&in, &out, 4); }, -6, "Unknown error code.");

    ASSERT_EQ(0, filter.Run(&in, &out, eModeXY)); // X, then Y on its result
    for (int32_t y = 0; y < in.Height(); ++y)
        for (int32_t x = 0; x < in.Width(); ++x)
            ASSERT_EQ(uint8_t((At<uint8_t>(in, x, y) + 1) * 2), At<uint8_t>(out, x, y));
    EXPECT_EQ(&in, filter.m_pInImage); // the input is back, untouched
    EXPECT_TRUE(SameSamples(original, in));

    // Signed and floating types take the signed hooks.
    for (auto [eType, nMode, sCalls] : {std::tuple{ClImage::eInt16, eModeY, "Ys "},
                                        {ClImage::eFloat32, eModeXY, "Xs Ys "},
                                        {ClImage::eUInt16, eModeDirected, "Du "},
                                        {ClImage::eInt8, eModeDirectedOrtho, "DOs "}})
    {
        ClRecordingFilter recording;
        ClImage typed = RandomImage(eType, 5, 3, 1, 7);
        ASSERT_EQ(0, recording.Run(&typed, &out, nMode));
        EXPECT_EQ(sCalls, recording.m_Calls) << int(eType);
    }

    // Three planes are filtered one by one, a fourth is joined as it is.
    ClImage colour = RandomImage(ClImage::eUInt8, 6, 5, 4, 9);
    filter.m_Calls.clear();
    ASSERT_EQ(0, filter.Run(&colour, &out, eModeX));
    EXPECT_EQ("Xu Xu Xu ", filter.m_Calls);
    ASSERT_EQ(4u, out.Planes());
    for (uint32_t p = 0; p < 4; ++p)
        for (int32_t y = 0; y < colour.Height(); ++y)
            for (int32_t x = 0; x < colour.Width(); ++x)
                ASSERT_EQ(uint8_t(At<uint8_t>(colour, x, y, p) + (p < 3)),
                          At<uint8_t>(out, x, y, p));
}

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
