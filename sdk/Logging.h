#pragma once
// The trace of the exported functions. Where a line goes is decided when the
// library is loaded, by what the process offers: the optional logging library
// "libVelmoranLoggingFacility.so", else a debug sink "OutputDebugStringA"
// exported by the host program, else nowhere. The choice is a stack of
// policies, each wrapping the next one down. A failing sink throws -49.
#include <cstdarg>
#include <cstdint>

#include "sdk/DynamicLibraryLoader.h"

namespace Sentivo
{
// A line is at most 1023 characters: it is built on the stack, no heap.
constexpr int kLogLineSize = 1024;

// Formats into szLine. Returns null, or the reason when the line does not
// fit, which the caller throws as -49 once its argument list is closed.
const char* FormatLogLine(char (&szLine)[kLogLineSize], const char* szFormat, va_list args);
void ThrowLogFailure(const char* szReason);

enum ELogLevel : int32_t
{
    eLogError = 3,
    eLogRemark = 5,
    eLogTrace = 7
};
} // namespace Sentivo

// The bottom of the stack: no sink.
class ClLoggingNone
{
public:
    virtual ~ClLoggingNone() = default;
};

// Carries the formatting operation. With no sink below it, a line logged here
// is formatted and dropped.
template <typename T> class TpLogging : public T
{
public:
    ~TpLogging() override = default;

    static void Log(int32_t, const char* szFormat, ...) __attribute__((format(printf, 2, 3)))
    {
        char szLine[Sentivo::kLogLineSize];
        va_list args;
        va_start(args, szFormat);
        const char* szFailure = Sentivo::FormatLogLine(szLine, szFormat, args);
        va_end(args);
        if (szFailure != nullptr)
            Sentivo::ThrowLogFailure(szFailure);
    }
};

// The host program's debug sink, found in the process itself.
template <typename T> class TpLoggingDebugOut : public TpLogging<T>
{
public:
    using PfnOutputDebugString = void (*)(const char*);

    TpLoggingDebugOut()
    {
        try
        {
            m_Library.Load(nullptr);
            m_Library.GetSymbol(&m_pfnOutputDebugString, "OutputDebugStringA");
        }
        catch (const ClExDynamicLibraryLoadFail&)
        {
            m_pfnOutputDebugString = nullptr;
            m_Library.Unload();
        }
    }
    ~TpLoggingDebugOut() override = default;

    ClDynamicLibrary m_Library;
    PfnOutputDebugString m_pfnOutputDebugString = nullptr;
};

// The optional logging library.
template <typename T> class TpLoggingVlmLF : public TpLogging<T>
{
public:
    using PfnLog = int32_t (*)(int32_t, const char*);
    using PfnFlush = int32_t (*)();

    TpLoggingVlmLF()
    {
        try
        {
            m_Library.Load("libVelmoranLoggingFacility.so");
            m_Library.GetSymbol(&m_pfnLog, "VlmLFLog");
            m_Library.GetSymbol(&m_pfnFlush, "VlmLFFlush");
        }
        catch (const ClExDynamicLibraryLoadFail& e)
        {
            // A missing logging library is the normal case, not an error.
            m_pfnLog = nullptr;
            m_Library.Unload();
            TpLogging<T>::Log(Sentivo::eLogRemark, "Logging(VlmLF): %s", e.GetMessage());
        }
    }
    ~TpLoggingVlmLF() override = default;

    ClDynamicLibrary m_Library;
    PfnLog m_pfnLog = nullptr;
    PfnFlush m_pfnFlush = nullptr;
};

using ClSdkLoggingStack = TpLogging<TpLoggingVlmLF<TpLoggingDebugOut<ClLoggingNone>>>;

// Writes one trace line to the first sink that exists.
void SdkLog(int32_t nLevel, const char* szFormat, ...) __attribute__((format(printf, 2, 3)));
