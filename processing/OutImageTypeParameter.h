#pragma once
// The output type setting shared by the bases with a free output type: the
// description record "OutImageType" and the enumeration parameter of the same
// name, both listing the eight sample types and "default".
#include "image/FpImage.h"

class ClParameterContainer;
class ClParameterInterface;

void DescribeOutImageType(ClParameterInterface& list, ClImage::EDataType& eMember);
void DefineOutImageType(ClParameterContainer& container, ClImage::EDataType& eMember);
