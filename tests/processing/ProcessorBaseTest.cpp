// The processor framework: order of the hooks, result codes, recorded
// defaults and the names of refused data types.
#include "processing/IpProcessorBase.h"
#include "parameters/ParameterContainer.h"
#include "support/SampleReference.h"

using namespace TestImages;

namespace
{

// Hooks return what the test asks and record their calls.
struct ClScriptedProcessor : TpTestProcessor<ClProcessorBase>
{
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
    EXPECT_EQ(std::make_tuple(processor.nFilterWidth, processor.pInImage),
              std::make_tuple(9, &image));
    root.ResetValue();
    EXPECT_EQ(std::make_tuple(processor.nFilterWidth, processor.pInImage),
              std::make_tuple(3, static_cast<ClImage*>(nullptr)));
}

TEST(ProcessorBase, DataTypeCheckNamesTheRefusedType)
{
    // A stage for 16-bit input: Init throws where CheckInput reports.
    struct ClTypedStage : TpTestProcessor<NewIpBase::ClIpProcessorBase>
    {
        ClTypedStage() { AddDataType(ClImage::eUInt16); }
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
