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
    void* h = dlopen("libVelmoranLoggingFacility.so", RTLD_NOW | RTLD_NOLOAD);
    void (*Reset)(int nFailAt, int bFailFlush) = Get<decltype(Reset)>("FakeLogReset");
    int (*Flushes)() = Get<decltype(Flushes)>("FakeLogFlushes");
    const char* (*Line)(int, int32_t*) = Get<decltype(Line)>("FakeLogLine");

    template <typename F> F Get(const char* szName)
    {
        EXPECT_NE(h, nullptr) << "the library did not load the logging library";
        return reinterpret_cast<F>(dlsym(h, szName));
    }
    // "level text" of every line.
    std::vector<std::string> Lines() const
    {
        std::vector<std::string> lines;
        int32_t nLevel = 0;
        for (int i = 0; const char* szLine = Line(i, &nLevel); ++i)
            lines.push_back(std::to_string(nLevel) + " " + szLine);
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
    EXPECT_EQ(log.Lines(), (std::vector<std::string>{
                               "7 SentivoInitialize((nil)) Enter",
                               "7 SentivoInitialize((nil)) Leave",
                               "7 SentivoReset Enter",
                               "3 SentivoReset Error(-42): The handle parameter is set to NULL.",
                               "7 SentivoUninitialize(void) Enter",
                               "7 SentivoUninitialize(void) Leave",
                           }));
    EXPECT_EQ(log.Flushes(), 6);
    EXPECT_EQ(g_nDebugLines, 0);
}

TEST(LoggingFacility, AFailingLineTurnsTheCallIntoLoggingErrorAndWhenEveryLineFailsItThrows)
{
    FakeLog log;
    ASSERT_EQ(SentivoInitialize(nullptr), ZRC_SUCCESS);
    SentivoHandle hHandle = nullptr;
    ASSERT_EQ(SentivoCreateHandle(&hHandle), ZRC_SUCCESS);
    // The Enter line fails (or its flush does), the Error line of the handler gets through.
    for (int bFailFlush : {0, 1})
    {
        log.Reset(1, bFailFlush);
        EXPECT_EQ(SentivoReset(hHandle), ZRC_ERROR_LOGGING);
        const std::vector<std::string> lines = log.Lines();
        EXPECT_EQ(lines.size(), 1u + bFailFlush);
        EXPECT_EQ(lines.back(), "3 SentivoReset Error(-49): An error occurred in the log function, "
                                "maybe log full.");
    }

    // Every line fails: the Error line in the handler fails again and the
    // exception leaves; the trace of the two set-up functions stands outside
    // their try block; the silent functions write nothing and keep working.
    log.Reset(-1, 0);
    EXPECT_THROW(SentivoDetectFinger(hHandle), std::exception);
    EXPECT_THROW(SentivoInitialize(nullptr), std::exception);
    EXPECT_THROW(SentivoUninitialize(), std::exception);
    EXPECT_EQ(SentivoDestroyHandle(&hHandle), ZRC_SUCCESS);
    log.Reset(0, 0);
    ASSERT_EQ(SentivoUninitialize(), ZRC_SUCCESS);
}
