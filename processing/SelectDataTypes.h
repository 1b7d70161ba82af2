#pragma once
// Selection on two or three data types at once, nested from the one plain
// selection of SelectDataType: f receives one SampleTag per image, so a
// family's single template yields its 64 or 512 members. An unknown type at
// any level gives ZRC_ERROR_INTERNAL (-101).
#include "image/SampleTraits.h"

template <typename F>
int32_t SelectDataTypes(ClImage::EDataType eFirst, ClImage::EDataType eSecond, F&& f)
{
    return SelectDataType(
        eFirst, [&](auto first)
        { return SelectDataType(eSecond, [&](auto second) { return f(first, second); }); });
}

template <typename F>
int32_t SelectDataTypes(ClImage::EDataType eFirst, ClImage::EDataType eSecond,
                        ClImage::EDataType eThird, F&& f)
{
    return SelectDataType(eFirst,
                          [&](auto first)
                          {
                              return SelectDataType(eSecond,
                                                    [&](auto second) {
                                                        return SelectDataType(
                                                            eThird, [&](auto third)
                                                            { return f(first, second, third); });
                                                    });
                          });
}

// The eight sample formats, for operators that accept them all.
inline constexpr ClImage::EDataType kAllSampleTypes[] = {
    ClImage::eUInt8, ClImage::eUInt16, ClImage::eUInt32,  ClImage::eInt8,
    ClImage::eInt16, ClImage::eInt32,  ClImage::eFloat32, ClImage::eDouble64};
inline constexpr uint32_t kSampleTypeCount = sizeof(kAllSampleTypes) / sizeof(kAllSampleTypes[0]);

// Whether a value is one of the eight sample formats.
inline bool IsSampleType(ClImage::EDataType eType)
{
    return SelectDataType(eType, [](auto) { return 0; }) == 0;
}

// A sample converted to another sample type by a plain cast. A floating value
// becomes an integer sample by the truncating conversion (which also keeps
// out-of-range values defined); integers keep their low bytes.
template <typename TOut, typename TIn> inline TOut CastSample(TIn value)
{
    if constexpr (std::is_floating_point_v<TIn>)
        return SampleFromDouble<TOut>(static_cast<double>(value));
    else
        return static_cast<TOut>(value);
}
