#include "parameters/Parameter.h"

#include <cstring>
#include <new>

#include "sdk/Exception.h"

void ReplaceOwnedText(char*& szTarget, const char* szSource)
{
    char* szCopy = nullptr;
    if (szSource != nullptr)
    {
        const size_t nSize = std::strlen(szSource) + 1;
        szCopy = new (std::nothrow) char[nSize];
        if (szCopy == nullptr)
            SENTIVO_THROW_BAD_ALLOC();
        std::memcpy(szCopy, szSource, nSize);
    }
    delete[] szTarget;
    szTarget = szCopy;
}

ClParameter::ClParameter() : m_pType(&typeid(ClParameter)) {}

ClParameter::~ClParameter()
{
    delete[] m_szName;
    delete[] m_szDescription;
}

void ClParameter::SetName(const char* szName)
{
    ReplaceOwnedText(m_szName, szName);
}

void ClParameter::SetDescription(const char* szDescription)
{
    ReplaceOwnedText(m_szDescription, szDescription);
}

void ClParameter::CopyTo(ClParameter& target) const
{
    target.m_pType = m_pType;
    target.m_nFlags = m_nFlags;
    std::memcpy(target.m_Tag, m_Tag, sizeof(m_Tag));
    target.SetName(m_szName);
    target.SetDescription(m_szDescription);
}

void ClParameter::SetText(const char*)
{
    SENTIVO_THROW("Abstract function", ZRC_ERROR_INTERNAL);
}

bool ClParameter::GetText(char*, uint32_t&) const
{
    SENTIVO_THROW("Abstract function", ZRC_ERROR_INTERNAL);
}

bool ClParameter::GetDefaultText(char*, uint32_t&) const
{
    SENTIVO_THROW("Abstract function", ZRC_ERROR_INTERNAL);
}
