// The trace of the exported functions and the limits of a log line. The test
// program exports OutputDebugStringA, so it is the debug sink of the library.
#include <cerrno>
#include <cstring>
#include <mutex>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "image/ImageTestSupport.h"
#include "sdk/Logging.h"
#include "sentivo/sentivo.h"

namespace
{
std::vector<std::string> g_DebugLines;
std::mutex g_DebugLinesMutex;
} // namespace

// Called from any thread, as the platform's sink is: the concurrency tests
// of this program call the library on eight at once.
extern "C" __attribute__((visibility("default"))) void OutputDebugStringA(const char* szText)
{
    const std::lock_guard<std::mutex> lock(g_DebugLinesMutex);
    g_DebugLines.emplace_back(szText);
}

TEST(Logging, LineLimitIs1023Characters)
{
    g_DebugLines.clear();
    const std::string longest(1023, 'a');
    EXPECT_NO_THROW(SdkLog(Sentivo::eLogTrace, "%s", longest.c_str()));
    // One character over has its own remark, a longer line is an overflow;
    // a refused line reaches no sink.
    auto log = [](size_t n) { SdkLog(Sentivo::eLogTrace, "%s", std::string(n, 'b').c_str()); };
    ExpectThrows([&] { log(1024); }, ZRC_ERROR_LOGGING, "Logging Message bigger than 1024 bytes.");
    ExpectThrows([&] { log(5000); }, ZRC_ERROR_LOGGING, std::strerror(EOVERFLOW));
    EXPECT_EQ(g_DebugLines, (std::vector<std::string>{longest, "\n"}));
}

TEST(Logging, ExportedFunctionsWriteEnterLeaveAndErrorLinesToTheDebugSink)
{
    // Handle creation and destruction write nothing.
    g_DebugLines.clear();
    ASSERT_EQ(SentivoInitialize(nullptr), ZRC_SUCCESS);
    SentivoHandle hHandle = nullptr;
    ASSERT_EQ(SentivoCreateHandle(&hHandle), ZRC_SUCCESS);
    double dScore = 1.0;
    EXPECT_EQ(SentivoDetectFake(hHandle, nullptr), ZRC_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(SentivoEvaluateLiveliness(hHandle, &dScore), ZRC_ERROR_PARAM_IS_MISSING);
    EXPECT_EQ(dScore, 0.0);
    EXPECT_EQ(SentivoDestroyHandle(&hHandle), ZRC_SUCCESS);
    ASSERT_EQ(SentivoUninitialize(), ZRC_SUCCESS);

    std::vector<std::string> lines;
    for (size_t i = 0; i < g_DebugLines.size(); i += 2)
    {
        lines.push_back(g_DebugLines[i]);
        EXPECT_EQ(g_DebugLines[i + 1], "\n");
    }
    const std::vector<std::string> expected = {
        "SentivoInitialize((nil)) Enter",
        "SentivoInitialize((nil)) Leave",
        "SentivoDetectFake Enter",
        "SentivoDetectFake Error(-44): One(or more) parameter(s) is(are) invalid.",
        "SentivoEvaluateLiveliness Enter",
        "SentivoEvaluateLiveliness Error(-37): One of the required parameter is missing.",
        "SentivoUninitialize(void) Enter",
        "SentivoUninitialize(void) Leave",
    };
    EXPECT_EQ(lines, expected);
}
