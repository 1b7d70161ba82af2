#include "ApiSession.h"

#include <stdexcept>

namespace SentivoTool
{

ApiSession::ApiSession()
{
    Expect(SentivoInitialize(nullptr), "SentivoInitialize");
    const int32_t nCode = SentivoCreateHandle(&m_hHandle);
    if (nCode != ZRC_SUCCESS)
    {
        SentivoUninitialize();
        Expect(nCode, "SentivoCreateHandle");
    }
}

ApiSession::~ApiSession()
{
    SentivoDestroyHandle(&m_hHandle);
    SentivoUninitialize();
}

std::string ApiSession::Property(const char* szName) const
{
    uint32_t nSize = 0;
    const int32_t nCode = SentivoGetPropertyA(m_hHandle, szName, nullptr, &nSize);
    if (nCode != ZRC_ERROR_TEMPLATE_SIZE)
        Expect(nCode, szName);
    std::string value(nSize, '\0');
    Expect(SentivoGetPropertyA(m_hHandle, szName, value.data(), &nSize), szName);
    value.resize(nSize - 1);
    return value;
}

void ApiSession::SetProperty(const char* szName, const std::string& value) const
{
    Expect(SentivoSetPropertyA(m_hHandle, szName, value.c_str()), szName);
}

void ApiSession::Expect(int32_t nCode, const char* szWhat)
{
    if (nCode != ZRC_SUCCESS)
        throw std::runtime_error(std::string(szWhat) + ": " + std::to_string(nCode) + " " +
                                 SentivoGetErrorDescriptionA(nCode));
}

} // namespace SentivoTool
