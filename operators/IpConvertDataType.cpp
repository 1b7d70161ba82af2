#include "operators/IpConvertDataType.h"

#include "processing/Ip1To1Paths.h"
#include "processing/SelectDataTypes.h"

namespace
{

// Planes × width samples per row: with bRound the sample + 0.5, truncated
// toward zero (floating outputs keep the 0.5); otherwise a plain cast.
template <typename TIn, typename TOut, bool bRound> void Convert(const ClImage& in, ClImage& out)
{
    Ip1To1Paths::MapSamples<TIn, TOut>(in, out, Ip1To1Paths::AllSamples(in, out),
                                       [](TIn sample)
                                       {
                                           if constexpr (bRound)
                                               return SampleFromDouble<TOut>(
                                                   static_cast<double>(sample) + 0.5);
                                           else
                                               return CastSample<TOut>(sample);
                                       });
}

} // namespace

ClProcessorBase* ClIpConvertDataType::NewInstance() const
{
    return NewProcessor<ClIpConvertDataType>();
}

int32_t ClIpConvertDataType::Run(ClImage* pIn, ClImage* pOut, ClImage::EDataType eOutType)
{
    m_pInImage = pIn;
    m_pOutImage = pOut;
    m_eOutImageType = eOutType;
    return Run();
}

int32_t ClIpConvertDataType::Dispatch(const ClImage& in, ClImage& out)
{
    if (out.DataType() == in.DataType())
    {
        out.Assign(in);
        return 0;
    }
    return SelectDataTypes(in.DataType(), out.DataType(),
                           [&](auto inTag, auto outTag)
                           {
                               using TIn = typename decltype(inTag)::Type;
                               using TOut = typename decltype(outTag)::Type;
                               if (m_bRound)
                                   Convert<TIn, TOut, true>(in, out);
                               else
                                   Convert<TIn, TOut, false>(in, out);
                               return 0;
                           });
}
