/* A logging library for the tests: it records every line and can be told to
 * fail a given call. */
#include <stdint.h>
#include <string.h>

#define FAKE_MAX_LINES 64

static char g_Lines[FAKE_MAX_LINES][1100];
static int32_t g_Levels[FAKE_MAX_LINES];
static int g_nLines = 0;
static int g_nFlushes = 0;
static int g_nCalls = 0;
static int g_nFailAt = 0; /* 1-based number of the VlmLFLog call that fails (or whose flush fails);
                             0 none, -1 every call */
static int g_bFailFlush = 0;

int32_t VlmLFLog(int32_t level, const char* text)
{
    ++g_nCalls;
    if (g_nFailAt < 0 || (g_nFailAt != 0 && g_nCalls == g_nFailAt && !g_bFailFlush))
        return 1;
    if (g_nLines < FAKE_MAX_LINES)
    {
        strncpy(g_Lines[g_nLines], text, sizeof(g_Lines[0]) - 1);
        g_Levels[g_nLines] = level;
        ++g_nLines;
    }
    return 0;
}

int32_t VlmLFFlush(void)
{
    ++g_nFlushes;
    if (g_nFailAt != 0 && g_nCalls == g_nFailAt && g_bFailFlush)
        return 1;
    return 0;
}

/* Test controls. */
void FakeLogReset(int nFailAt, int bFailFlush)
{
    g_nLines = 0;
    g_nFlushes = 0;
    g_nCalls = 0;
    g_nFailAt = nFailAt;
    g_bFailFlush = bFailFlush;
}

int FakeLogCount(void)
{
    return g_nLines;
}
int FakeLogFlushes(void)
{
    return g_nFlushes;
}
const char* FakeLogLine(int i)
{
    return g_Lines[i];
}
int32_t FakeLogLevel(int i)
{
    return g_Levels[i];
}
