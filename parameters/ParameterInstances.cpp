// The typed parameters that the processors and the SDK handle use, compiled
// in full once here so that every member of each instance is checked.
#include "image/FpImage.h"
#include "parameters/ParameterContainer.h"

template class TpParameter<double>;
template class TpParameterNumeric<double>;
template class TpParameterNumeric<unsigned int>;
template class TpParameterNumeric<int>;
template class TpParameterNumeric<long>;
template class TpParameterEnumPointer<bool>;
template class TpParameterEnumPointer<char*>;
template class TpParameterEnumPointer<ClImage*>;
template class TpParameterEnumPointer<int>;
template class TpParameterEnumPointer<long>;
template class TpParameterEnumPointer<unsigned char>;
template class TpParameterEnumPointer<ClImage::EContent>;
template class TpParameterString<char*, ClParameter, 0>;
