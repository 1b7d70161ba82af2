#include <cerrno>
#include <cstdio>
#include <cstring>

#include "sdk/Logging.h"

namespace
{

// The two sinks, found once when the library is loaded: the debug output
// first, then the logging library.
TpLoggingDebugOut<ClLoggingNone> g_DebugOut;
TpLoggingVlmLF<TpLoggingDebugOut<ClLoggingNone>> g_LoggingFacility;

} // namespace

namespace Sentivo
{

void FormatLogLine(char (&szLine)[kLogLineSize], const char* szFormat, va_list args)
{
    const int nLength = std::vsnprintf(szLine, sizeof(szLine), szFormat, args);
    if (nLength == kLogLineSize)
        SENTIVO_THROW("Logging Message bigger than 1024 bytes.", ZRC_ERROR_LOGGING);
    if (nLength < 0 || nLength > kLogLineSize)
    {
        // A longer line is a failure of the bounded print; it reports it as
        // an overflow.
        if (nLength > kLogLineSize)
            errno = EOVERFLOW;
        char szError[256];
        const int nError = errno;
        const char* szText = strerror_r(nError, szError, sizeof(szError));
        SENTIVO_THROW(szText, ZRC_ERROR_LOGGING);
    }
}

} // namespace Sentivo

void SdkLog(int32_t nLevel, const char* szFormat, ...)
{
    char szLine[Sentivo::kLogLineSize];
    va_list args;
    va_start(args, szFormat);
    try
    {
        Sentivo::FormatLogLine(szLine, szFormat, args);
    }
    catch (...)
    {
        va_end(args);
        throw;
    }
    va_end(args);

    if (g_LoggingFacility.m_pfnLog != nullptr)
    {
        // Every line is flushed at once; the flush has no text of its own.
        if (g_LoggingFacility.m_pfnLog(nLevel, szLine) != 0)
            SENTIVO_THROW("VlmLFLog: returns error.", ZRC_ERROR_LOGGING);
        if (g_LoggingFacility.m_pfnFlush() != 0)
            SENTIVO_THROW("VlmLFLog: returns error.", ZRC_ERROR_LOGGING);
    }
    else if (g_DebugOut.m_pfnOutputDebugString != nullptr)
    {
        g_DebugOut.m_pfnOutputDebugString(szLine);
        g_DebugOut.m_pfnOutputDebugString("\n");
    }
}
