#pragma once
// The list of pixel types a processor accepts, set up in its constructor and
// applied to its input images before any work.
#include "image/ArrayDynamic.h"
#include "image/FpImage.h"

namespace NewIpBase
{

class ClImageDataTypeCheck
{
public:
    virtual ~ClImageDataTypeCheck() = default;
    // Applies CheckDataType to each input image; may add checks of its own.
    virtual void CheckInputImages() = 0;

protected:
    // Adds a type unless it is listed already.
    void AddDataType(ClImage::EDataType eType);
    void AddDataTypes(const ClImage::EDataType* pTypes, uint32_t nCount);
    // Throws -33 "Input pixel type \"...\" not supported by processor."
    // for a type missing from the list.
    void CheckDataType(const ClImage& image) const;
    bool AcceptsDataType(ClImage::EDataType eType) const;
    uint32_t GetDataTypeCount() const { return m_AcceptedTypes.Size(); }

private:
    TpArrayDynamic<ClImage::EDataType, 8> m_AcceptedTypes;
};

} // namespace NewIpBase
