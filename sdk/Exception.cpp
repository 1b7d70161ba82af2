#include "sdk/Exception.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <type_traits>
#include <utility>

#include "sdk/ErrorTable.h"

namespace
{

// glibc offers the GNU strerror_r (returns the text) or the XSI one (fills
// the buffer); both are handled so the text always ends up in szBuffer.
const char* SystemText(int nError, char* szBuffer, size_t nSize)
{
    auto pick = [&](auto result) -> const char*
    {
        if constexpr (std::is_same_v<decltype(result), char*>)
            return result;
        else
            return result == 0 ? szBuffer : "Unknown system error";
    };
    szBuffer[0] = '\0';
    return pick(strerror_r(nError, szBuffer, nSize));
}

} // namespace

namespace Vlm
{

CXSystemException::CXSystemException(int32_t nError) : m_nError(nError)
{
    m_szBuffer[0] = '\0';
}

const char* CXSystemException::GetDescription() const noexcept
{
    const char* szText = SystemText(m_nError, m_szBuffer, sizeof(m_szBuffer));
    if (szText != m_szBuffer)
    {
        std::snprintf(m_szBuffer, sizeof(m_szBuffer), "%s", szText);
    }
    return m_szBuffer;
}

} // namespace Vlm

ClException::ClException(const char* szMessage, int32_t nCode, bool bOwnsMessage,
                         const char* szFile, int32_t nLine)
    : m_szMessage(nullptr), m_szFile(szFile), m_nLine(nLine), m_nCode(nCode),
      m_bOwnsMessage(bOwnsMessage)
{
    BuildText(ErrorDescription(nCode), szMessage);
}

ClException::ClException(NoText, int32_t nCode, const char* szFile, int32_t nLine)
    : m_szMessage(nullptr), m_szFile(szFile), m_nLine(nLine), m_nCode(nCode), m_bOwnsMessage(false)
{
}

void ClException::BuildText(const char* szFirstLine, const char* szRemark)
{
    if (szFirstLine == nullptr)
        szFirstLine = "";
    if (szRemark == nullptr)
        szRemark = "";
    const size_t nSize = std::strlen(szFirstLine) + 1 + std::strlen(szRemark) + 1;
    char* szText = static_cast<char*>(std::malloc(nSize));
    if (szText == nullptr)
    {
        throw ClExBadAlloc("Memory allocation failed", ZRC_ERROR_OUT_OF_MEMORY, false, __FILE__,
                           __LINE__);
    }
    std::snprintf(szText, nSize, "%s\n%s", szFirstLine, szRemark);
    if (m_bOwnsMessage)
        std::free(m_szMessage);
    m_szMessage = szText;
    m_bOwnsMessage = true;
}

ClException::ClException(const ClException& other)
    : ClVelmoranException(other), m_szMessage(other.m_szMessage), m_szFile(other.m_szFile),
      m_nLine(other.m_nLine), m_nCode(other.m_nCode), m_bOwnsMessage(false)
{
    if (other.m_bOwnsMessage && other.m_szMessage != nullptr)
    {
        m_szMessage = nullptr;
        BuildCopy(other.m_szMessage);
    }
    m_bOwnsMessage = other.m_bOwnsMessage;
}

ClException& ClException::operator=(const ClException& other)
{
    if (this != &other)
    {
        ClException copy(other);
        std::swap(m_szMessage, copy.m_szMessage);
        std::swap(m_bOwnsMessage, copy.m_bOwnsMessage);
        m_szFile = other.m_szFile;
        m_nLine = other.m_nLine;
        m_nCode = other.m_nCode;
    }
    return *this;
}

ClException::~ClException()
{
    if (m_bOwnsMessage)
        std::free(m_szMessage);
}

void ClException::BuildCopy(const char* szText)
{
    const size_t nSize = std::strlen(szText) + 1;
    char* szCopy = static_cast<char*>(std::malloc(nSize));
    if (szCopy == nullptr)
    {
        throw ClExBadAlloc("Memory allocation failed", ZRC_ERROR_OUT_OF_MEMORY, false, __FILE__,
                           __LINE__);
    }
    std::memcpy(szCopy, szText, nSize);
    m_szMessage = szCopy;
}

ClExVelmoran::ClExVelmoran(int32_t nCode, const char* szFile, int32_t nLine)
    : ClException(ErrorDescription(nCode), nCode, false, szFile, nLine)
{
}

ClExSystem::ClExSystem(const char* szMessage, const char* szFile, int32_t nLine)
    : ClException(NoText{}, ZRC_ERROR_FROM_SYSTEM_FUNCTION, szFile, nLine)
{
    const int nError = errno;
    BuildText(ErrorDescription(ZRC_ERROR_FROM_SYSTEM_FUNCTION), szMessage);
    char szBuffer[256];
    const char* szSystem = SystemText(nError, szBuffer, sizeof(szBuffer));
    // The system's sentence replaces the table's as the first line, without
    // its trailing line breaks.
    char szTrimmed[256];
    std::snprintf(szTrimmed, sizeof(szTrimmed), "%s", szSystem);
    for (size_t n = std::strlen(szTrimmed);
         n > 0 && static_cast<unsigned char>(szTrimmed[n - 1]) < ' '; --n)
    {
        if (szTrimmed[n - 1] == '\n' || szTrimmed[n - 1] == '\r')
            szTrimmed[n - 1] = '\0';
    }
    BuildText(szTrimmed, szMessage);
}

ClExDynamicLibraryLoadFail::ClExDynamicLibraryLoadFail(const char* szName, int32_t nCode,
                                                       const char* szFile, int32_t nLine)
    : ClExSystem(szName, szFile, nLine)
{
    m_nCode = nCode;
}
