#pragma once
// Compile-time facts about the eight sample formats of ClImage, the one
// selection from a run-time data type to a typed template, and the conversion
// of a double to a sample.
#include <cmath>
#include <cstdint>
#include <limits>
#include <type_traits>
#include <utility>

#include "image/FpImage.h"
#include "sentivo/sentivo_errors.h"

template <typename T> struct SampleTraits;

// The data type of each sample type.
#define SENTIVO_SAMPLE_TRAITS(CppType, Enumerator)                                                 \
    template <> struct SampleTraits<CppType>                                                       \
    {                                                                                              \
        static constexpr ClImage::EDataType eType = ClImage::Enumerator;                           \
    };
SENTIVO_SAMPLE_TRAITS(uint8_t, eUInt8)
SENTIVO_SAMPLE_TRAITS(uint16_t, eUInt16)
SENTIVO_SAMPLE_TRAITS(uint32_t, eUInt32)
SENTIVO_SAMPLE_TRAITS(int8_t, eInt8)
SENTIVO_SAMPLE_TRAITS(int16_t, eInt16)
SENTIVO_SAMPLE_TRAITS(int32_t, eInt32)
SENTIVO_SAMPLE_TRAITS(float, eFloat32)
SENTIVO_SAMPLE_TRAITS(double, eDouble64)
#undef SENTIVO_SAMPLE_TRAITS

// Tag that carries a sample type into a generic lambda without a value.
template <typename T> struct SampleTag
{
    using Type = T;
};

// The plain selection on the data type that every operator family uses: calls
// f(SampleTag<T>{}) for the sample type T of eType and returns its result, or
// ZRC_ERROR_INTERNAL (-101) for a value that is no sample format.
template <typename F> int32_t SelectDataType(ClImage::EDataType eType, F&& f)
{
    switch (eType)
    {
    case ClImage::eUInt8:
        return f(SampleTag<uint8_t>{});
    case ClImage::eUInt16:
        return f(SampleTag<uint16_t>{});
    case ClImage::eUInt32:
        return f(SampleTag<uint32_t>{});
    case ClImage::eInt8:
        return f(SampleTag<int8_t>{});
    case ClImage::eInt16:
        return f(SampleTag<int16_t>{});
    case ClImage::eInt32:
        return f(SampleTag<int32_t>{});
    case ClImage::eFloat32:
        return f(SampleTag<float>{});
    case ClImage::eDouble64:
        return f(SampleTag<double>{});
    default:
        return ZRC_ERROR_INTERNAL;
    }
}

// Double to 32-bit integer as the processor's truncating conversion does it:
// toward zero, and NaN, infinities and values outside the 32-bit signed range
// give -2147483648 instead of undefined behaviour.
inline int32_t TruncateToInt32(double dValue)
{
    if (!(dValue > -2147483649.0 && dValue < 2147483648.0))
        return std::numeric_limits<int32_t>::min();
    return static_cast<int32_t>(dValue);
}

// The same rule at 64 bits.
inline int64_t TruncateToInt64(double dValue)
{
    if (!(dValue >= -9223372036854775808.0 && dValue < 9223372036854775808.0))
        return std::numeric_limits<int64_t>::min();
    return static_cast<int64_t>(dValue);
}

// Double to sample: floating samples take the value (out-of-range doubles
// become infinities for float, as the hardware does); integer samples keep the
// low bytes of the truncated 32-bit value, so they wrap; 32-bit unsigned
// samples go through the 64-bit conversion.
template <typename T> inline T SampleFromDouble(double dValue)
{
    if constexpr (std::is_same_v<T, double>)
    {
        return dValue;
    }
    else if constexpr (std::is_same_v<T, float>)
    {
        if (std::isfinite(dValue) && std::fabs(dValue) > std::numeric_limits<float>::max())
            return dValue > 0 ? std::numeric_limits<float>::infinity()
                              : -std::numeric_limits<float>::infinity();
        return static_cast<float>(dValue);
    }
    else if constexpr (std::is_same_v<T, uint32_t>)
    {
        return static_cast<uint32_t>(static_cast<uint64_t>(TruncateToInt64(dValue)));
    }
    else
    {
        return static_cast<T>(static_cast<uint32_t>(TruncateToInt32(dValue)));
    }
}
