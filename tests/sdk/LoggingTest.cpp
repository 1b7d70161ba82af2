// The trace of the exported functions and the limits of a log line. The test
// program exports OutputDebugStringA, so it is the debug sink of the library.
#include <cerrno>
#include <cstring>
#include <mutex>
#include <string>
#include <utility>
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

// A debug sink may be called from any thread, as the platform's own is: the
// concurrency tests of this program call the library on eight at once.
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
    ASSERT_EQ(g_DebugLines.size(), 2u);
    EXPECT_EQ(g_DebugLines[0], longest);
    EXPECT_EQ(g_DebugLines[1], "\n");

    // One character over has its own remark, a longer line is an overflow.
    for (const std::pair<size_t, const char*>& line :
         {std::pair<size_t, const char*>{1024, "Logging Message bigger than 1024 bytes."},
          {5000, std::strerror(EOVERFLOW)}})
        ExpectThrows([&]
                     { SdkLog(Sentivo::eLogTrace, "%s", std::string(line.first, 'b').c_str()); },
                     ZRC_ERROR_LOGGING, line.second);
    EXPECT_EQ(g_DebugLines.size(), 2u) << "a refused line reaches no sink";
}

TEST(Logging, ExportedFunctionsWriteEnterLeaveAndErrorLines)
{
    g_DebugLines.clear();
    ASSERT_EQ(SentivoInitialize(nullptr), ZRC_SUCCESS);
    SentivoHandle hHandle = nullptr;
    ASSERT_EQ(SentivoCreateHandle(&hHandle), ZRC_SUCCESS);
    EXPECT_EQ(SentivoReset(hHandle), ZRC_SUCCESS);
    EXPECT_EQ(SentivoDetectFinger(nullptr), ZRC_ERROR_NO_HANDLE);
    double dScore = 1.0;
    EXPECT_EQ(SentivoDetectFake(hHandle, nullptr), ZRC_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(SentivoEvaluateLiveliness(hHandle, &dScore), ZRC_ERROR_PARAM_IS_MISSING);
    EXPECT_EQ(dScore, 0.0);
    EXPECT_EQ(SentivoDestroyHandle(&hHandle), ZRC_SUCCESS);
    ASSERT_EQ(SentivoUninitialize(), ZRC_SUCCESS);
    EXPECT_EQ(SentivoUninitialize(), ZRC_ERROR_NOT_INITIALIZED);

    std::vector<std::string> lines;
    for (size_t i = 0; i < g_DebugLines.size(); i += 2)
    {
        lines.push_back(g_DebugLines[i]);
        EXPECT_EQ(g_DebugLines[i + 1], "\n");
    }
    // Handle creation and destruction write nothing.
    const std::vector<std::string> expected = {
        "SentivoInitialize((nil)) Enter",
        "SentivoInitialize((nil)) Leave",
        "SentivoReset Enter",
        "SentivoReset Leave",
        "SentivoDetectFinger Enter",
        "SentivoDetectFinger Error(-42): The handle parameter is set to NULL.",
        "SentivoDetectFake Enter",
        "SentivoDetectFake Error(-44): One(or more) parameter(s) is(are) invalid.",
        "SentivoEvaluateLiveliness Enter",
        "SentivoEvaluateLiveliness Error(-37): One of the required parameter is missing.",
        "SentivoUninitialize(void) Enter",
        "SentivoUninitialize(void) Leave",
        "SentivoUninitialize(void) Enter",
        "SentivoUninitialize(void) Error(-2): Prior initialization is necessary.",
    };
    EXPECT_EQ(lines, expected);
}
