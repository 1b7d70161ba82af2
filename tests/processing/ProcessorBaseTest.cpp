#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "image/FpImage.h"
#include "parameters/ParameterContainer.h"
#include "processing/IpProcessorBase.h"
#include "processing/ProcessorBase.h"
#include "sdk/Exception.h"

namespace
{

// A log sink that keeps every line.
class ClRecordingLog : public ClProcessorLog
{
public:
    void Begin(const char* szLabel) override
    {
        m_Begins.push_back(szLabel != nullptr ? szLabel : "<null>");
    }
    void End(const char* szFormat, ...) override
    {
        char szLine[1024];
        va_list args;
        va_start(args, szFormat);
        std::vsnprintf(szLine, sizeof(szLine), szFormat, args);
        va_end(args);
        m_Ends.push_back(szLine);
    }
    std::vector<std::string> m_Begins;
    std::vector<std::string> m_Ends;
};

// A processor whose hooks return what the test asks and record their calls.
class ClScriptedProcessor : public ClProcessorBase
{
public:
    ClProcessorBase* NewInstance() const override { return NewProcessor<ClScriptedProcessor>(); }
    const char* GetName() const override { return "ClScriptedProcessor"; }
    int32_t Init() override
    {
        m_Calls += "I";
        return m_nInit;
    }
    int32_t Process() override
    {
        m_Calls += "P";
        return m_nProcess;
    }
    int32_t Finalize(int32_t nResult) override
    {
        m_Calls += "F";
        m_nFinalizeArgument = nResult;
        return m_nFinalize;
    }
    void GetStatusText(char* szBuffer, uint32_t nSize) override
    {
        ++m_nStatusCalls;
        if (m_szStatus != nullptr)
            CopyStatusText(szBuffer, nSize, m_szStatus);
        else
            ClProcessorBase::GetStatusText(szBuffer, nSize);
    }

    int32_t m_nInit = 0;
    int32_t m_nProcess = 0;
    int32_t m_nFinalize = 0;
    int32_t m_nFinalizeArgument = 1234;
    int m_nStatusCalls = 0;
    const char* m_szStatus = nullptr;
    std::string m_Calls;
};

// A processor with published members and defaults of its own.
class ClTunedProcessor : public ClProcessorBase
{
public:
    ClProcessorBase* NewInstance() const override { return NewProcessor<ClTunedProcessor>(); }
    const char* GetName() const override { return "ClTunedProcessor"; }
    int32_t Process() override { return 0; }
    void SetDefaults() override
    {
        nFilterWidth = 3;
        dGain = 0.5;
        bMovementDetection = true;
    }
    void DefineParameters(ClParameterContainer& container) override
    {
        ClProcessorBase::DefineParameters(container);
        container.AddInt("nFilterWidth")->Bind(nFilterWidth, ClParameter::eFlagInput);
        container.AddDouble("dGain")->Bind(dGain, ClParameter::eFlagInput);
        container.AddBool("bMovementDetection")->Bind(bMovementDetection, ClParameter::eFlagInput);
        container.AddImage("pInImage")->Bind(pInImage, ClParameter::eFlagInput);
    }

    int nFilterWidth = 9;
    double dGain = 2.0;
    bool bMovementDetection = false;
    ClImage* pInImage = nullptr;
};

// A stage that accepts 8-bit and 16-bit unsigned input.
class ClTypedStage : public NewIpBase::ClIpProcessorBase
{
public:
    ClTypedStage()
    {
        const ClImage::EDataType types[] = {ClImage::eUInt8, ClImage::eUInt16, ClImage::eUInt8};
        AddDataTypes(types, 3);
        AddDataType(ClImage::eUInt16);
    }
    ClProcessorBase* NewInstance() const override { return NewProcessor<ClTypedStage>(); }
    const char* GetName() const override { return "ClTypedStage"; }
    void CheckInputImages() override { CheckDataType(*pInImage); }
    int32_t Process() override
    {
        ++m_nProcessCalls;
        return 0;
    }
    ClImage* pInImage = nullptr;
    int m_nProcessCalls = 0;
};

// The type list on its own, to count its entries.
class ClTypeList : public NewIpBase::ClImageDataTypeCheck
{
public:
    void CheckInputImages() override {}
    using ClImageDataTypeCheck::AcceptsDataType;
    using ClImageDataTypeCheck::AddDataType;
    using ClImageDataTypeCheck::AddDataTypes;
    using ClImageDataTypeCheck::GetDataTypeCount;
};

template <int N> class ClNumberedProcessor : public ClScriptedProcessor
{
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

std::string RemarkOf(const ClException& e)
{
    const char* szNewLine = std::strchr(e.GetMessage(), '\n');
    return szNewLine != nullptr ? szNewLine + 1 : "";
}

} // namespace

TEST_F(ProcessorBase, RunOrderAndResults)
{
    ClScriptedProcessor processor;
    EXPECT_EQ(processor.Run(), 0);
    EXPECT_EQ(processor.m_Calls, "IPF");
    EXPECT_EQ(processor.m_nFinalizeArgument, 0);

    // Init not 0: returned at once, without Process or Finalize.
    processor.m_Calls.clear();
    processor.m_nInit = -5;
    EXPECT_EQ(processor.Run(), -5);
    EXPECT_EQ(processor.m_Calls, "I");

    // A failing Process is returned, not thrown, and Finalize sees it.
    processor.m_Calls.clear();
    processor.m_nInit = 0;
    processor.m_nProcess = -35;
    EXPECT_EQ(processor.Run(), -35);
    EXPECT_EQ(processor.m_Calls, "IPF");
    EXPECT_EQ(processor.m_nFinalizeArgument, -35);

    // A failing Finalize throws its own code, even after a good Process.
    processor.m_nProcess = 0;
    processor.m_nFinalize = 7;
    try
    {
        processor.Run();
        ADD_FAILURE() << "Finalize 7 must throw";
    }
    catch (const ClException& e)
    {
        EXPECT_EQ(e.GetCode(), 7);
        EXPECT_EQ(RemarkOf(e), "Finalization failed");
    }
    EXPECT_EQ(processor.m_nStatusCalls, 0); // no sink: no status text
}

TEST_F(ProcessorBase, LogLinesGoToTheDefaultSink)
{
    ClRecordingLog log;
    ClProcessorBase::s_pDefaultLog = &log;
    ClScriptedProcessor processor;
    EXPECT_TRUE(processor.IsLogEnabled());

    EXPECT_EQ(processor.Run(), 0);
    EXPECT_EQ(log.m_Begins, (std::vector<std::string>{"<null>"}));
    EXPECT_EQ(log.m_Ends, (std::vector<std::string>{"ClScriptedProcessor "}));
    EXPECT_EQ(processor.m_nStatusCalls, 1);

    processor.m_szStatus = "width 3";
    processor.Run();
    EXPECT_EQ(log.m_Ends.back(), "ClScriptedProcessor width 3");

    // An Init that stops the run writes no End.
    processor.m_nInit = -1;
    processor.Run();
    EXPECT_EQ(log.m_Begins.size(), 3u);
    EXPECT_EQ(log.m_Ends.size(), 2u);

    processor.LogBegin("planning");
    processor.LogEnd("planned");
    processor.LogEnd(nullptr);
    EXPECT_EQ(log.m_Begins.back(), "planning");
    EXPECT_EQ(log.m_Ends[2], "planned");
    EXPECT_EQ(log.m_Ends[3], "ClScriptedProcessor width 3");

    // Switched off, nothing reaches the sink.
    processor.EnableLog(false);
    EXPECT_FALSE(processor.IsLogEnabled());
    processor.m_nInit = 0;
    processor.Run();
    processor.LogBegin("x");
    processor.LogEnd("y");
    EXPECT_EQ(log.m_Begins.size(), 4u);
    EXPECT_EQ(log.m_Ends.size(), 4u);
    processor.EnableLog(true);
    EXPECT_TRUE(processor.IsLogEnabled());
}

TEST_F(ProcessorBase, EnableLogWithoutADefaultSinkStaysOff)
{
    ClScriptedProcessor processor;
    EXPECT_FALSE(processor.IsLogEnabled());
    processor.EnableLog(true);
    EXPECT_FALSE(processor.IsLogEnabled());
    processor.LogBegin("ignored");
    processor.LogEnd(nullptr);
    processor.Run();
    EXPECT_EQ(processor.m_nStatusCalls, 0);
}

TEST_F(ProcessorBase, StatusTextNeedsRoom)
{
    ClScriptedProcessor processor;
    char szBuffer[8];
    try
    {
        processor.GetStatusText(szBuffer, 0);
        ADD_FAILURE() << "a zero-sized status buffer must throw";
    }
    catch (const ClException& e)
    {
        EXPECT_EQ(e.GetCode(), ZRC_ERROR_INTERNAL);
        EXPECT_EQ(RemarkOf(e), "Unexpected zero-length string");
    }
    processor.m_szStatus = "too long for it";
    try
    {
        processor.GetStatusText(szBuffer, sizeof(szBuffer));
        ADD_FAILURE() << "an oversized status text must throw";
    }
    catch (const ClException& e)
    {
        EXPECT_EQ(e.GetCode(), ZRC_ERROR_INTERNAL);
        EXPECT_EQ(RemarkOf(e), "String-Length exceeded available size");
    }
    processor.m_szStatus = "1234567";
    processor.GetStatusText(szBuffer, sizeof(szBuffer));
    EXPECT_STREQ(szBuffer, "1234567");
}

TEST_F(ProcessorBase, ConnectParametersRecordsTrueDefaults)
{
    ClImage image;
    ClTunedProcessor processor;
    processor.pInImage = &image;
    ClParameterContainer root;
    processor.ConnectParameters(root);

    // The members keep their values...
    EXPECT_EQ(processor.nFilterWidth, 9);
    EXPECT_EQ(processor.dGain, 2.0);
    EXPECT_FALSE(processor.bMovementDetection);
    EXPECT_EQ(processor.pInImage, &image);

    // ...and the parameters know the defaults of SetDefaults.
    char szText[32];
    uint32_t nSize = sizeof(szText);
    ASSERT_TRUE(root.Find("nFilterWidth")->GetDefaultText(szText, nSize));
    EXPECT_STREQ(szText, "3");
    nSize = sizeof(szText);
    ASSERT_TRUE(root.Find("DGAIN")->GetText(szText, nSize));
    EXPECT_STREQ(szText, "2.0");
    EXPECT_FALSE(root.IsDefault());

    root.Find("nFilterWidth")->SetText("5");
    EXPECT_EQ(processor.nFilterWidth, 5);
    root.ResetValue();
    EXPECT_EQ(processor.nFilterWidth, 3);
    EXPECT_EQ(processor.dGain, 0.5);
    EXPECT_TRUE(processor.bMovementDetection);
    EXPECT_TRUE(root.IsDefault());
}

TEST_F(ProcessorBase, DataTypeCheckNamesTheRefusedType)
{
    ClTypeList list;
    const ClImage::EDataType types[] = {ClImage::eUInt8, ClImage::eInt16, ClImage::eUInt8};
    list.AddDataTypes(types, 3);
    list.AddDataType(ClImage::eInt16);
    list.AddDataType(ClImage::eInt16);
    EXPECT_EQ(list.GetDataTypeCount(), 2u); // duplicates are kept once
    EXPECT_TRUE(list.AcceptsDataType(ClImage::eInt16));
    EXPECT_FALSE(list.AcceptsDataType(ClImage::eUInt16));
    for (int i = 0; i < 9; ++i) // beyond one growth step
        list.AddDataType(static_cast<ClImage::EDataType>(10 + i));
    EXPECT_EQ(list.GetDataTypeCount(), 11u);
    EXPECT_TRUE(list.AcceptsDataType(ClImage::eUInt8));
    EXPECT_TRUE(list.AcceptsDataType(static_cast<ClImage::EDataType>(18)));

    ClTypedStage stage;

    ClImage image;
    stage.pInImage = &image;
    image.Create(ClImage::eUInt16, 4, 4);
    EXPECT_TRUE(stage.CheckInput());
    EXPECT_EQ(stage.Run(), 0);
    EXPECT_EQ(stage.m_nProcessCalls, 1);

    const struct
    {
        ClImage::EDataType eType;
        const char* szRemark;
    } refused[] = {
        {ClImage::eFloat32, "Input pixel type \"float32\" not supported by processor."},
        {ClImage::eUnknownType, "Input pixel type \"unknown\" not supported by processor."},
        {static_cast<ClImage::EDataType>(3),
         "Input pixel type \"not valid\" not supported by processor."},
    };
    for (const auto& c : refused)
    {
        if (c.eType == ClImage::eUnknownType)
            image.Clear();
        else
            image.Create(c.eType, 4, 4);
        EXPECT_FALSE(stage.CheckInput());
        try
        {
            stage.Run();
            ADD_FAILURE() << "type " << int(c.eType) << " must be refused";
        }
        catch (const ClException& e)
        {
            EXPECT_EQ(e.GetCode(), ZRC_ERROR_FORMAT_NOTSUPPORTED);
            EXPECT_EQ(RemarkOf(e), c.szRemark);
        }
    }
    EXPECT_EQ(stage.m_nProcessCalls, 1);
}

TEST_F(ProcessorBase, TimingTableKeepsOneRowPerClass)
{
    ClProcessorTimingTable table;
    ClProcessorBase::s_pTimingTable = &table;

    ClScriptedProcessor first, second;
    ClTunedProcessor tuned;
    first.Run();
    second.Run();
    tuned.Run();
    first.m_nInit = -1;
    first.Run(); // stopped by Init: not timed
    ASSERT_EQ(table.Size(), 2u);
    EXPECT_EQ(*table[0].pType, typeid(ClScriptedProcessor));
    EXPECT_EQ(table[0].nRuns, 2u);
    EXPECT_GE(table[0].dSeconds, 0.0);
    EXPECT_EQ(*table[1].pType, typeid(ClTunedProcessor));
    EXPECT_EQ(table[1].nRuns, 1u);

    // More classes than one growth step of the table.
    ClNumberedProcessor<0>().Run();
    ClNumberedProcessor<1>().Run();
    ClNumberedProcessor<2>().Run();
    ClNumberedProcessor<3>().Run();
    ClNumberedProcessor<4>().Run();
    ClNumberedProcessor<5>().Run();
    ClNumberedProcessor<6>().Run();
    ClNumberedProcessor<7>().Run();
    ClNumberedProcessor<8>().Run();
    ClNumberedProcessor<0>().Run();
    ASSERT_EQ(table.Size(), 11u);
    EXPECT_EQ(*table[2].pType, typeid(ClNumberedProcessor<0>));
    EXPECT_EQ(table[2].nRuns, 2u);
    EXPECT_EQ(*table[10].pType, typeid(ClNumberedProcessor<8>));
    EXPECT_EQ(table[0].nRuns, 2u);
}
