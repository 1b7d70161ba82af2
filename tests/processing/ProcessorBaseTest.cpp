#include <cstdarg>
#include <cstdio>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "image/FpImage.h"
#include "parameters/ParameterContainer.h"
#include "parameters/ParameterTestSupport.h"
#include "processing/IpProcessorBase.h"
#include "processing/ProcessorBase.h"

namespace
{

// A log sink that keeps every line, "B " for a Begin and "E " for an End.
class ClRecordingLog : public ClProcessorLog
{
public:
    void Begin(const char* szLabel) override
    {
        m_Lines.push_back(std::string("B ") + (szLabel != nullptr ? szLabel : "<null>"));
    }
    void End(const char* szFormat, ...) override
    {
        char szLine[1024];
        va_list args;
        va_start(args, szFormat);
        std::vsnprintf(szLine, sizeof(szLine), szFormat, args);
        va_end(args);
        m_Lines.push_back(std::string("E ") + szLine);
    }
    std::vector<std::string> m_Lines;
};

// A processor whose hooks return what the test asks and record their calls.
class ClScriptedProcessor : public ClProcessorBase
{
public:
    ClProcessorBase* NewInstance() const override { return NewProcessor<ClScriptedProcessor>(); }
    const char* GetName() const override { return "ClScriptedProcessor"; }
    int32_t Init() override { return Record("I", m_nInit); }
    int32_t Process() override { return Record("P", m_nProcess); }
    int32_t Finalize(int32_t nResult) override
    {
        return Record("F" + std::to_string(nResult), m_nFinalize);
    }
    void GetStatusText(char* szBuffer, uint32_t nSize) override
    {
        m_Calls += "S";
        CopyStatusText(szBuffer, nSize, m_szStatus);
    }

    int32_t Record(const std::string& hook, int32_t nResult)
    {
        m_Calls += hook;
        return nResult;
    }

    int32_t m_nInit = 0, m_nProcess = 0, m_nFinalize = 0;
    const char* m_szStatus = "";
    std::string m_Calls;
};

// The two host hooks are process-wide: every test leaves them null.
class ProcessorBase : public ::testing::Test
{
protected:
    void TearDown() override
    {
        ClProcessorBase::s_pDefaultLog = nullptr;
        ClProcessorBase::s_pTimingTable = nullptr;
    }
};

} // namespace

TEST_F(ProcessorBase, RunOrderAndResults)
{
    ClScriptedProcessor processor;
    EXPECT_EQ(processor.Run(), 0);
    EXPECT_EQ(processor.m_Calls, "IPF0"); // no sink: no status text

    // Init not 0: returned at once, without Process or Finalize.
    processor.m_nInit = -5;
    EXPECT_EQ(processor.Run(), -5);
    // A failing Process is returned, not thrown, and Finalize sees it.
    processor.m_nInit = 0;
    processor.m_nProcess = -35;
    EXPECT_EQ(processor.Run(), -35);
    EXPECT_EQ(processor.m_Calls, "IPF0IIPF-35");

    // A failing Finalize throws its own code, even after a good Process.
    processor.m_nProcess = 0;
    processor.m_nFinalize = 7;
    ExpectThrows([&] { processor.Run(); }, 7, "Finalization failed");

    // The status text is empty by default and must fit its buffer.
    char szBuffer[8] = "X";
    processor.ClProcessorBase::GetStatusText(szBuffer, 1);
    EXPECT_STREQ(szBuffer, "");
    ExpectThrows([&] { processor.ClProcessorBase::GetStatusText(szBuffer, 0); }, ZRC_ERROR_INTERNAL,
                 "Unexpected zero-length string");
    processor.m_szStatus = "too long for it";
    ExpectThrows([&] { processor.GetStatusText(szBuffer, sizeof(szBuffer)); }, ZRC_ERROR_INTERNAL,
                 "String-Length exceeded available size");
    processor.m_szStatus = "1234567";
    processor.GetStatusText(szBuffer, sizeof(szBuffer));
    EXPECT_STREQ(szBuffer, "1234567");
}

TEST_F(ProcessorBase, LogLinesGoToTheDefaultSink)
{
    ClScriptedProcessor unlogged;
    unlogged.EnableLog(true); // no default sink: stays off
    EXPECT_FALSE(unlogged.IsLogEnabled());

    ClRecordingLog log;
    ClProcessorBase::s_pDefaultLog = &log;
    ClScriptedProcessor processor;
    processor.Run();
    processor.m_szStatus = "width 3";
    processor.Run();
    processor.m_nInit = -1; // an Init that stops the run writes no End
    processor.Run();
    processor.LogBegin("planning");
    processor.LogEnd("planned");
    processor.LogEnd(nullptr);
    EXPECT_EQ(log.m_Lines,
              (std::vector<std::string>{"B <null>", "E ClScriptedProcessor ", "B <null>",
                                        "E ClScriptedProcessor width 3", "B <null>", "B planning",
                                        "E planned", "E ClScriptedProcessor width 3"}));

    // Switched off, nothing reaches the sink; switched on, the default sink again.
    processor.EnableLog(false);
    processor.m_nInit = 0;
    processor.Run();
    processor.LogBegin("x");
    processor.LogEnd("y");
    EXPECT_EQ(log.m_Lines.size(), 8u);
    unlogged.EnableLog(true);
    EXPECT_TRUE(unlogged.IsLogEnabled());
}

TEST_F(ProcessorBase, ConnectParametersRecordsTrueDefaults)
{
    struct ClTuned : ClScriptedProcessor
    {
        void SetDefaults() override
        {
            nFilterWidth = 3;
            pInImage = nullptr;
        }
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

    // The members keep their values, and the parameters know the defaults of SetDefaults.
    EXPECT_EQ(processor.nFilterWidth, 9);
    EXPECT_EQ(processor.pInImage, &image);
    EXPECT_EQ(Text(*root.Find("nFilterWidth"), true), "3");
    EXPECT_FALSE(root.IsDefault());
    root.ResetValue();
    EXPECT_EQ(processor.nFilterWidth, 3);
    EXPECT_EQ(processor.pInImage, nullptr);
}

TEST_F(ProcessorBase, DataTypeCheckNamesTheRefusedType)
{
    // The list keeps each type once.
    class ClTypeList : public NewIpBase::ClImageDataTypeCheck
    {
    public:
        void CheckInputImages() override {}
        using ClImageDataTypeCheck::AcceptsDataType;
        using ClImageDataTypeCheck::AddDataType;
        using ClImageDataTypeCheck::AddDataTypes;
        using ClImageDataTypeCheck::GetDataTypeCount;
    } list;
    const ClImage::EDataType types[] = {ClImage::eUInt8, ClImage::eInt16, ClImage::eUInt8};
    list.AddDataTypes(types, 3);
    list.AddDataType(ClImage::eInt16);
    EXPECT_EQ(list.GetDataTypeCount(), 2u);
    EXPECT_TRUE(list.AcceptsDataType(ClImage::eInt16));
    EXPECT_FALSE(list.AcceptsDataType(ClImage::eUInt16));

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

    const std::pair<ClImage::EDataType, const char*> refused[] = {
        {ClImage::eFloat32, "float32"},
        {ClImage::eUnknownType, "unknown"},
        {static_cast<ClImage::EDataType>(3), "not valid"}};
    for (const auto& [eType, szName] : refused)
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

TEST_F(ProcessorBase, TimingTableKeepsOneRowPerClass)
{
    struct ClOther : ClScriptedProcessor
    {
    } other;
    ClScriptedProcessor first, second;
    ClProcessorTimingTable table;
    ClProcessorBase::s_pTimingTable = &table;
    first.Run();
    other.Run();
    second.Run();
    first.m_nInit = -1;
    first.Run(); // stopped by Init: not timed
    ASSERT_EQ(table.Size(), 2u);
    EXPECT_EQ(*table[0].pType, typeid(ClScriptedProcessor));
    EXPECT_EQ(table[0].nRuns, 2u);
    EXPECT_EQ(*table[1].pType, typeid(ClOther));
    EXPECT_EQ(table[1].nRuns, 1u);
}
