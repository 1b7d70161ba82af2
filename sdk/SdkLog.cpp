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

const char* FormatLogLine(char (&szLine)[kLogLineSize], const char* szFormat, va_list args)
{
    const int nLength = std::vsnprintf(szLine, sizeof(szLine), szFormat, args);
    if (nLength >= 0 && nLength < kLogLineSize)
        return nullptr;
    if (nLength == kLogLineSize)
        return "Logging Message bigger than 1024 bytes.";
    // A longer line is a failure of the bounded print, reported as an
    // overflow; any other failure keeps the print's own error number.
    if (nLength > kLogLineSize)
        errno = EOVERFLOW;
    static thread_local char szError[256];
    return strerror_r(errno, szError, sizeof(szError));
}

void ThrowLogFailure(const char* szReason)
{
    SENTIVO_THROW(szReason, ZRC_ERROR_LOGGING);
}

} // namespace Sentivo

void SdkLog(int32_t nLevel, const char* szFormat, ...)
{
    char szLine[Sentivo::kLogLineSize];
    va_list args;
    va_start(args, szFormat);
    const char* szFailure = Sentivo::FormatLogLine(szLine, szFormat, args);
    va_end(args);
    if (szFailure != nullptr)
        Sentivo::ThrowLogFailure(szFailure);

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
