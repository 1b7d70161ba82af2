/* A logging library for the tests: it records every line and can be told to
 * fail a given call. */
#include <stddef.h>
#include <stdint.h>
#include <string.h>

#define FAKE_MAX_LINES 64

static char g_Lines[FAKE_MAX_LINES][1100];
static int32_t g_Levels[FAKE_MAX_LINES];
static int g_nLines, g_nFlushes, g_nCalls, g_bFailFlush;
static int g_nFailAt; /* 1-based VlmLFLog call that fails (or its flush); 0 none, -1 every call */

int32_t VlmLFLog(int32_t level, const char* text)
{
    ++g_nCalls;
    if (g_nFailAt < 0 || (g_nFailAt != 0 && g_nCalls == g_nFailAt && !g_bFailFlush))
        return 1;
    if (g_nLines < FAKE_MAX_LINES)
    {
        strncpy(g_Lines[g_nLines], text, sizeof(g_Lines[0]) - 1);
        g_Levels[g_nLines++] = level;
    }
    return 0;
}

int32_t VlmLFFlush(void)
{
    ++g_nFlushes;
    return g_nFailAt != 0 && g_nCalls == g_nFailAt && g_bFailFlush;
}

/* Test controls. */
void FakeLogReset(int nFailAt, int bFailFlush)
{
    g_nLines = g_nFlushes = g_nCalls = 0;
    g_nFailAt = nFailAt;
    g_bFailFlush = bFailFlush;
}

int FakeLogFlushes(void)
{
    return g_nFlushes;
}
/* Line i and its level, or NULL behind the last line. */
const char* FakeLogLine(int i, int32_t* pLevel)
{
    if (i >= g_nLines)
        return NULL;
    *pLevel = g_Levels[i];
    return g_Lines[i];
}
