#pragma once
// The one exception tree of the library. Working code throws ClException or
// one of its descendants; the exported functions catch ClException by
// reference and return its code. The text of a ClException is the table's
// description of its code, a line feed, and the place-specific remark.
#include <cstdint>
#include <exception>

#include "sentivo/sentivo_errors.h"

class ClVelmoranException : public std::exception
{
public:
    ~ClVelmoranException() override = default;
    const char* what() const noexcept override { return GetMessage(); }
    virtual const char* GetMessage() const noexcept = 0;
};

namespace Vlm
{

class CXException : public ClVelmoranException
{
public:
    ~CXException() override = default;
    const char* what() const noexcept override { return GetDescription(); }
    const char* GetMessage() const noexcept override { return GetDescription(); }
    virtual const char* GetDescription() const noexcept = 0;
};

// A failed system call, described by the C library's text for its error number.
class CXSystemException : public CXException
{
public:
    explicit CXSystemException(int32_t nError);
    ~CXSystemException() override = default;
    const char* GetDescription() const noexcept override;
    virtual int32_t GetError() const noexcept { return m_nError; }

protected:
    int32_t m_nError;
    mutable char m_szBuffer[256];
};

// Raised where a process-wide resource cannot be created at load time. On this
// platform its text is the same C library text as that of its base.
class CXSystemSpecificException : public CXSystemException
{
public:
    explicit CXSystemSpecificException(int32_t nError) : CXSystemException(nError) {}
    ~CXSystemSpecificException() override = default;
};

} // namespace Vlm

class ClException : public ClVelmoranException
{
public:
    ClException(const char* szMessage, int32_t nCode, bool bOwnsMessage = false,
                const char* szFile = "Unknown", int32_t nLine = -1);
    ClException(const ClException& other);
    ClException& operator=(const ClException& other);
    ~ClException() override;

    const char* what() const noexcept override { return GetMessage(); }
    const char* GetMessage() const noexcept override { return m_szMessage; }
    int32_t GetCode() const noexcept { return m_nCode; }
    const char* GetFile() const noexcept { return m_szFile; }
    int32_t GetLine() const noexcept { return m_nLine; }

protected:
    // For subclasses that build their text themselves.
    struct NoText
    {
    };
    ClException(NoText, int32_t nCode, const char* szFile, int32_t nLine);
    // Replaces the text by "%s\n%s" of the two parts.
    void BuildText(const char* szFirstLine, const char* szRemark);
    void BuildCopy(const char* szText);

    char* m_szMessage;
    const char* m_szFile;
    int32_t m_nLine;
    int32_t m_nCode;
    bool m_bOwnsMessage;
};

// A bare code: its text is the table's description twice, on two lines.
class ClExVelmoran : public ClException
{
public:
    explicit ClExVelmoran(int32_t nCode, const char* szFile = "Unknown", int32_t nLine = -1);
};

class ClExBadAlloc : public ClException
{
public:
    using ClException::ClException;
};

class ClExRange : public ClException
{
public:
    using ClException::ClException;
};

// A failed system call: code -105, first line the system's text for errno.
class ClExSystem : public ClException
{
public:
    explicit ClExSystem(const char* szMessage, const char* szFile = "Unknown", int32_t nLine = -1);
};

// A shared library or an entry point cannot be had: -200 (load), -204
// (unload) or -206 (entry point).
class ClExDynamicLibraryLoadFail : public ClExSystem
{
public:
    ClExDynamicLibraryLoadFail(const char* szName, int32_t nCode, const char* szFile = "Unknown",
                               int32_t nLine = -1);
};

class ClExStream : public ClException
{
public:
    using ClException::ClException;
};

class ClExStreamUnexpectedEnd : public ClExStream
{
public:
    using ClExStream::ClExStream;
};

// Throw helpers that record the source position.
#define SENTIVO_THROW(szMessage, nCode)                                                            \
    throw ClException((szMessage), (nCode), false, __FILE__, __LINE__)
#define SENTIVO_THROW_CODE(nCode) throw ClExVelmoran((nCode), __FILE__, __LINE__)
#define SENTIVO_THROW_BAD_ALLOC()                                                                  \
    throw ClExBadAlloc("Memory allocation failed", ZRC_ERROR_OUT_OF_MEMORY, false, __FILE__,       \
                       __LINE__)
