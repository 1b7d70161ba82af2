#include "processing/OutImageTypeParameter.h"

#include "parameters/ParameterContainer.h"
#include "parameters/ParameterInterface.h"

namespace
{

const ClImage::EDataType kTypes[] = {ClImage::eUInt8,   ClImage::eInt8,     ClImage::eUInt16,
                                     ClImage::eInt16,   ClImage::eUInt32,   ClImage::eInt32,
                                     ClImage::eFloat32, ClImage::eDouble64, ClImage::eDefaultType};
const int32_t kValues[] = {1, 129, 2, 130, 4, 132, 196, 200, 255};
const char kTexts[] = "unsigned char\0signed char\0unsigned short\0signed short\0unsigned int\0"
                      "signed int\0float\0double\0default\0";

} // namespace

void DescribeOutImageType(ClParameterInterface& list, ClImage::EDataType& eMember)
{
    // A one-byte number from 0 to 255 whose values carry the type names.
    static_assert(sizeof(ClImage::EDataType) == sizeof(uint8_t), "the data type is one byte");
    list.Add(reinterpret_cast<uint8_t&>(eMember), "OutImageType", "In: OutImage Datatype",
             ClParameterInterface::eInput, 0, 255)
        .SetEntries(kTexts, kValues);
}

void DefineOutImageType(ClParameterContainer& container, ClImage::EDataType& eMember)
{
    TpParameterEnumPointer<ClImage::EDataType>* pType =
        container.AddEnum<ClImage::EDataType>("OutImageType");
    pType->Bind(eMember, ClParameter::eFlagInput);
    for (ClImage::EDataType eType : kTypes)
        pType->AddEntry(eType, ClImage::TypeEnumText(eType));
}
