#pragma once
// The sample loops of the one-to-one operators: one row walk that maps
// every sample of a row through a function, and on it the two paths of the
// one-to-one bases, the 8-bit table path and the direct path. Every loop
// stops at the smaller of the two images, so an operator whose output is
// shaped differently cannot make one leave a buffer.
#include <algorithm>
#include <cstring>

#include "image/ArrayStatic.h"
#include "image/FpImage.h"
#include "image/SampleTraits.h"
#include "processing/SelectDataTypes.h"

namespace Ip1To1Paths
{

// Planes × width samples per row, as far as both images reach.
inline int64_t AllSamples(const ClImage& in, const ClImage& out)
{
    return std::min(static_cast<int64_t>(in.Width()) * in.Planes(),
                    static_cast<int64_t>(out.Width()) * out.Planes());
}

// out sample = f(in sample) for the first nSamples samples of every row
// that both images have. The function is a template argument, so it is
// inlined and the loop vectorises where the function allows.
template <typename TIn, typename TOut, typename F>
void MapSamples(const ClImage& in, ClImage& out, int64_t nSamples, F&& f)
{
    const int32_t nHeight = std::min(in.Height(), out.Height());
    for (int32_t y = 0; y < nHeight; ++y)
    {
        const TIn* pIn = in.Row<TIn>(y);
        TOut* pOut = out.Row<TOut>(y);
        for (int64_t i = 0; i < nSamples; ++i)
            pOut[i] = f(pIn[i]);
    }
}

// Table path: a 256-entry table of the output's sample type, entry i being
// op(i) truncated toward zero, then every sample (planes × width per row)
// replaced by its entry. The input is read as unsigned bytes.
//
// A table of one value up to some entry and another from there on (a
// binarisation's) is applied by comparing each sample with that entry, a
// loop the compiler vectorises; the samples get the same entries.
template <typename TOut, typename Op> void RunTable(const ClImage& in, ClImage& out, Op&& op)
{
    TpArrayStatic<TOut> table(256);
    for (int32_t i = 0; i < 256; ++i)
        table[i] = SampleFromDouble<TOut>(op(static_cast<double>(i)));
    const TOut* pTable = table.Data();
    const int64_t nSamples = AllSamples(in, out);

    // The entries compare bit for bit, so that NaN entries are steps too.
    auto same = [](TOut a, TOut b) { return std::memcmp(&a, &b, sizeof(TOut)) == 0; };
    int32_t nStep = 1;
    while (nStep < 256 && same(pTable[nStep], pTable[0]))
        ++nStep;
    int32_t nEnd = nStep;
    while (nEnd < 256 && same(pTable[nEnd], pTable[nStep]))
        ++nEnd;
    if (nEnd == 256)
    {
        // A table of one value has its "step" at 255, to the same value.
        const uint8_t nFirstHigh = static_cast<uint8_t>(std::min(nStep, 255));
        const TOut low = pTable[0], high = pTable[nFirstHigh];
        MapSamples<uint8_t, TOut>(
            in, out, nSamples, [=](uint8_t nSample) { return nSample >= nFirstHigh ? high : low; });
        return;
    }
    MapSamples<uint8_t, TOut>(in, out, nSamples,
                              [pTable](uint8_t nSample) { return pTable[nSample]; });
}

// Direct path: op per sample, truncated toward zero. It walks width samples
// per row, not planes × width, so on a multi-plane image it covers only the
// first part of each row; that is a limit of the path, kept as it is.
template <typename TIn, typename TOut, typename Op>
void RunDirect(const ClImage& in, ClImage& out, Op&& op)
{
    const int64_t nSamples = std::min(static_cast<int64_t>(in.Width()),
                                      static_cast<int64_t>(out.Width()) * out.Planes());
    MapSamples<TIn, TOut>(in, out, nSamples,
                          [&op](TIn sample)
                          { return SampleFromDouble<TOut>(op(static_cast<double>(sample))); });
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
