#pragma once
// One initialisation of the library and one handle through its C interface,
// for the commands that show what an integrator sees: the version, the image
// check and the threshold properties.
#include <cstdint>
#include <string>

#include "sentivo/sentivo.h"

namespace SentivoTool
{

class ApiSession
{
public:
    ApiSession();
    ~ApiSession();
    ApiSession(const ApiSession&) = delete;
    ApiSession& operator=(const ApiSession&) = delete;

    SentivoHandle Handle() const { return m_hHandle; }
    std::string Property(const char* szName) const;
    void SetProperty(const char* szName, const std::string& value) const;

    // Throws std::runtime_error with the call and the library's text when
    // nCode is not ZRC_SUCCESS.
    static void Expect(int32_t nCode, const char* szWhat);

private:
    SentivoHandle m_hHandle = nullptr;
};

} // namespace SentivoTool
