#include "processing/ImageDataTypeCheck.h"

#include <cstdio>

#include "sdk/Exception.h"

namespace NewIpBase
{

void ClImageDataTypeCheck::AddDataType(ClImage::EDataType eType)
{
    if (!AcceptsDataType(eType))
        m_AcceptedTypes.Add(eType);
}

void ClImageDataTypeCheck::AddDataTypes(const ClImage::EDataType* pTypes, uint32_t nCount)
{
    for (uint32_t i = 0; i < nCount; ++i)
        AddDataType(pTypes[i]);
}

bool ClImageDataTypeCheck::AcceptsDataType(ClImage::EDataType eType) const
{
    for (ClImage::EDataType eAccepted : m_AcceptedTypes)
    {
        if (eAccepted == eType)
            return true;
    }
    return false;
}

void ClImageDataTypeCheck::CheckDataType(const ClImage& image) const
{
    if (AcceptsDataType(image.DataType()))
        return;
    char szMessage[128];
    std::snprintf(szMessage, sizeof(szMessage),
                  "Input pixel type \"%s\" not supported by processor.",
                  ClImage::TypeText(image.DataType()));
    SENTIVO_THROW(szMessage, ZRC_ERROR_FORMAT_NOTSUPPORTED);
}

} // namespace NewIpBase
