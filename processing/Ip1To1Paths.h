#pragma once
// The two sample loops shared by the one-to-one bases: the 8-bit table path
// and the direct path. Both stop at the smaller of the two images, so an
// operator whose output is shaped differently cannot make them leave a
// buffer.
#include <algorithm>

#include "image/ArrayStatic.h"
#include "image/FpImage.h"
#include "image/SampleTraits.h"
#include "processing/SelectDataTypes.h"

namespace Ip1To1Paths
{

// Table path: a 256-entry table of the output's sample type, entry i being
// op(i) truncated toward zero, then every sample (planes × width per row)
// replaced by its entry. The input is read as unsigned bytes.
template <typename TOut, typename Op> void RunTable(const ClImage& in, ClImage& out, Op&& op)
{
    TpArrayStatic<TOut> table(256);
    for (int32_t i = 0; i < 256; ++i)
        table[i] = SampleFromDouble<TOut>(op(static_cast<double>(i)));

    const int32_t nHeight = std::min(in.Height(), out.Height());
    const int64_t nSamples = std::min(static_cast<int64_t>(in.Width()) * in.Planes(),
                                      static_cast<int64_t>(out.Width()) * out.Planes());
    for (int32_t y = 0; y < nHeight; ++y)
    {
        const uint8_t* pIn = in.Row<uint8_t>(y);
        TOut* pOut = out.Row<TOut>(y);
        for (int64_t i = 0; i < nSamples; ++i)
            pOut[i] = table[pIn[i]];
    }
}

// Direct path: op per sample, truncated toward zero. It walks width samples
// per row, not planes × width, so on a multi-plane image it covers only the
// first part of each row; that is a limit of the path, kept as it is.
template <typename TIn, typename TOut, typename Op>
void RunDirect(const ClImage& in, ClImage& out, Op&& op)
{
    const int32_t nHeight = std::min(in.Height(), out.Height());
    const int64_t nSamples = std::min(static_cast<int64_t>(in.Width()),
                                      static_cast<int64_t>(out.Width()) * out.Planes());
    for (int32_t y = 0; y < nHeight; ++y)
    {
        const TIn* pIn = in.Row<TIn>(y);
        TOut* pOut = out.Row<TOut>(y);
        for (int64_t i = 0; i < nSamples; ++i)
            pOut[i] = SampleFromDouble<TOut>(op(static_cast<double>(pIn[i])));
    }
}

// The selection on input and output type shared by both one-to-one bases:
// 8-bit input with the lookup flag takes the table path, everything else the
// direct path; an unknown type gives -101.
template <typename Op> int32_t Dispatch(const ClImage& in, ClImage& out, bool bUseLookup, Op&& op)
{
    return SelectDataTypes(in.DataType(), out.DataType(),
                           [&](auto inTag, auto outTag)
                           {
                               using TIn = typename decltype(inTag)::Type;
                               using TOut = typename decltype(outTag)::Type;
                               if constexpr (std::is_same_v<TIn, uint8_t>)
                               {
                                   if (bUseLookup)
                                   {
                                       RunTable<TOut>(in, out, op);
                                       return 0;
                                   }
                               }
                               RunDirect<TIn, TOut>(in, out, op);
                               return 0;
                           });
}

} // namespace Ip1To1Paths
