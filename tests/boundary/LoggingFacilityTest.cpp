// The trace through the optional logging library: run with the stand-in
// library on the search path, so the shared product finds it when it loads.
#include <dlfcn.h>
#include <exception>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "sentivo/sentivo.h"

namespace
{

int g_nDebugLines = 0;

struct FakeLog
{
    void (*Reset)(int nFailAt, int bFailFlush);
    int (*Count)();
    int (*Flushes)();
    const char* (*Line)(int);
    int32_t (*Level)(int);

    FakeLog()
    {
        void* h = dlopen("libVelmoranLoggingFacility.so", RTLD_NOW | RTLD_NOLOAD);
        EXPECT_NE(h, nullptr) << "the library did not load the logging library";
        Reset = reinterpret_cast<decltype(Reset)>(dlsym(h, "FakeLogReset"));
        Count = reinterpret_cast<decltype(Count)>(dlsym(h, "FakeLogCount"));
        Flushes = reinterpret_cast<decltype(Flushes)>(dlsym(h, "FakeLogFlushes"));
        Line = reinterpret_cast<decltype(Line)>(dlsym(h, "FakeLogLine"));
        Level = reinterpret_cast<decltype(Level)>(dlsym(h, "FakeLogLevel"));
    }

    std::vector<std::string> Lines() const
    {
        std::vector<std::string> lines;
        for (int i = 0; i < Count(); ++i)
            lines.push_back(std::to_string(Level(i)) + " " + Line(i));
        return lines;
    }
};

} // namespace

// Present, but the logging library comes first: it must stay silent.
extern "C" __attribute__((visibility("default"))) void OutputDebugStringA(const char*)
{
    ++g_nDebugLines;
}

TEST(LoggingFacility, TakesEveryLineWithItsLevelAndFlushesEach)
{
    FakeLog log;
    log.Reset(0, 0);
    ASSERT_EQ(SentivoInitialize(nullptr), ZRC_SUCCESS);
    EXPECT_EQ(SentivoReset(nullptr), ZRC_ERROR_NO_HANDLE);
    ASSERT_EQ(SentivoUninitialize(), ZRC_SUCCESS);
    const std::vector<std::string> expected = {
        "7 SentivoInitialize((nil)) Enter",
        "7 SentivoInitialize((nil)) Leave",
        "7 SentivoReset Enter",
        "3 SentivoReset Error(-42): The handle parameter is set to NULL.",
        "7 SentivoUninitialize(void) Enter",
        "7 SentivoUninitialize(void) Leave",
    };
    EXPECT_EQ(log.Lines(), expected);
    EXPECT_EQ(log.Flushes(), 6);
    EXPECT_EQ(g_nDebugLines, 0);
}

TEST(LoggingFacility, AFailingLineTurnsTheCallIntoLoggingError)
{
    FakeLog log;
    ASSERT_EQ(SentivoInitialize(nullptr), ZRC_SUCCESS);
    SentivoHandle hHandle = nullptr;
    ASSERT_EQ(SentivoCreateHandle(&hHandle), ZRC_SUCCESS);

    // The Enter line fails, the Error line of the handler gets through.
    log.Reset(1, 0);
    EXPECT_EQ(SentivoReset(hHandle), ZRC_ERROR_LOGGING);
    ASSERT_EQ(log.Count(), 1);
    EXPECT_EQ(std::string(log.Line(0)),
              "SentivoReset Error(-49): An error occurred in the log function, maybe log full.");

    // A failing flush counts as a failing line.
    log.Reset(1, 1);
    EXPECT_EQ(SentivoReset(hHandle), ZRC_ERROR_LOGGING);

    log.Reset(0, 0);
    EXPECT_EQ(SentivoDestroyHandle(&hHandle), ZRC_SUCCESS);
    ASSERT_EQ(SentivoUninitialize(), ZRC_SUCCESS);
}

TEST(LoggingFacility, WhenEveryLineFailsTheExceptionLeavesTheLibrary)
{
    FakeLog log;
    ASSERT_EQ(SentivoInitialize(nullptr), ZRC_SUCCESS);
    SentivoHandle hHandle = nullptr;
    ASSERT_EQ(SentivoCreateHandle(&hHandle), ZRC_SUCCESS);

    log.Reset(-1, 0);
    // The Enter line fails, and the Error line in the handler fails again.
    EXPECT_THROW(SentivoDetectFinger(hHandle), std::exception);
    // The trace of the two set-up functions stands outside their try block.
    EXPECT_THROW(SentivoInitialize(nullptr), std::exception);
    EXPECT_THROW(SentivoUninitialize(), std::exception);
    // The silent functions write nothing and keep working.
    EXPECT_EQ(SentivoDestroyHandle(&hHandle), ZRC_SUCCESS);

    log.Reset(0, 0);
    ASSERT_EQ(SentivoUninitialize(), ZRC_SUCCESS);
}
