#include "operators/IpConvertDataType.h"

#include <algorithm>

#include "processing/SelectDataTypes.h"

namespace
{

template <typename TIn, typename TOut, bool bRound> void Convert(const ClImage& in, ClImage& out)
{
    const int32_t nHeight = std::min(in.Height(), out.Height());
    const int64_t nSamples = std::min(static_cast<int64_t>(in.Width()) * in.Planes(),
                                      static_cast<int64_t>(out.Width()) * out.Planes());
    for (int32_t y = 0; y < nHeight; ++y)
    {
        const TIn* pIn = in.Row<TIn>(y);
        TOut* pOut = out.Row<TOut>(y);
        for (int64_t i = 0; i < nSamples; ++i)
        {
            if constexpr (bRound)
                pOut[i] = SampleFromDouble<TOut>(static_cast<double>(pIn[i]) + 0.5);
            else
                pOut[i] = CastSample<TOut>(pIn[i]);
        }
    }
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
