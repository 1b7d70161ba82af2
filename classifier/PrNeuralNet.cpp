#include "classifier/PrNeuralNet.h"

#include <cmath>

#include "sdk/Exception.h"

namespace NeuralNet
{

ClProcessorBase* ClPrNeuralNet::NewInstance() const
{
    return NewProcessor<ClPrNeuralNet>();
}

int32_t ClPrNeuralNet::Init()
{
    if (m_pNetData == nullptr)
        SENTIVO_THROW("Neuronal net has not net data", ZRC_ERROR_PARAM_IS_MISSING);
    if (m_pNetData->GetLayerCount() == 0)
        SENTIVO_THROW("Neuronal net has no layer", ZRC_ERROR_INVALID_PARAMETER);
    if (m_pInFeatures == nullptr)
        SENTIVO_THROW("Inputfeatures are not set", ZRC_ERROR_PARAM_IS_MISSING);
    if (m_pOutFeatures == nullptr)
        SENTIVO_THROW("Outputfeatures are not set", ZRC_ERROR_PARAM_IS_MISSING);
    return 0;
}

int32_t ClPrNeuralNet::Process()
{
    const uint32_t n = m_pInFeatures->Size();
    TpArrayStatic<double> x(n);
    for (uint32_t i = 0; i < n; ++i)
        x[i] = (*m_pInFeatures)[i];

    // Without a projection the standardisation tables hold one entry per net
    // input: a vector of another length is refused before they are read. The
    // outcome (-44, output untouched) is the one the later check would give.
    const bool bProject = m_pdProjection != nullptr && m_nProjectionSize > 0;
    if (!bProject && m_pNetData->GetLayer(0)->nInputs != n)
        SENTIVO_THROW("neural net error\n", ZRC_ERROR_INVALID_PARAMETER);

    if (m_pdMean != nullptr && m_pdScale != nullptr)
    {
        for (uint32_t i = 0; i < n; ++i)
            x[i] = (x[i] - m_pdMean[i]) / m_pdScale[i];
    }

    if (bProject)
    {
        const uint32_t k = static_cast<uint32_t>(m_nProjectionSize);
        TpArrayStatic<double> projected(k);
        for (uint32_t j = 0; j < k; ++j)
        {
            projected[j] = 0.0;
            for (uint32_t i = 0; i < n; ++i)
                projected[j] = projected[j] + m_pdProjection[i * k + j] * x[i];
        }
        x.Swap(projected);
    }

    const unsigned int nLayers = m_pNetData->GetLayerCount();
    if (m_pNetData->GetLayer(0)->nInputs != x.Size())
        SENTIVO_THROW("neural net error\n", ZRC_ERROR_INVALID_PARAMETER);

    // The two buffers alternate as input and output of the layers. Buffer 0
    // starts as the (projected) input; buffer 1 is as long as the raw input,
    // whatever a projection made of it. Every layer must fit both; the trained
    // net (widths 4, 2, 1 against 42) does. The result keeps the length of
    // its buffer, so that it is as long as the input vector; only element 0
    // of a one-output net has a meaning.
    TpArrayStatic<double> buffers[2] = {x, TpArrayStatic<double>(n)};
    // Places that no layer writes read as 0.0 rather than as leftovers.
    for (uint32_t i = 0; i < n; ++i)
        buffers[1][i] = 0.0;

    // A layer that does not fit its buffers would read or write past them.
    for (unsigned int l = 0; l < nLayers; ++l)
    {
        const NeuralNetLayer& layer = *m_pNetData->GetLayer(l);
        if (layer.nInputs > buffers[l % 2].Size() || layer.nOutputs > buffers[(l + 1) % 2].Size())
            SENTIVO_THROW("neural net error\n", ZRC_ERROR_INVALID_PARAMETER);
    }
    for (unsigned int l = 0; l < nLayers; ++l)
        EvaluateLayer(*m_pNetData->GetLayer(l), buffers[l % 2].Data(), buffers[(l + 1) % 2].Data());

    const TpArrayStatic<double>& result = buffers[nLayers % 2];
    m_pOutFeatures->Resize(result.Size());
    for (uint32_t i = 0; i < result.Size(); ++i)
        (*m_pOutFeatures)[i] = result[i];
    return 0;
}

void ClPrNeuralNet::EvaluateLayer(const NeuralNetLayer& layer, const double* pdIn, double* pdOut)
{
    const uint32_t nIn = layer.nInputs;
    for (uint32_t o = 0; o < layer.nOutputs; ++o)
    {
        const double* pdWeights = layer.pdWeights + static_cast<size_t>(o) * nIn;
        double dSum = layer.pdBias[o];
        // One multiply and one add per input, in input order.
        for (uint32_t i = 0; i < nIn; ++i)
            dSum = pdIn[i] * pdWeights[i] + dSum;
        pdOut[o] = 1.0 / (std::exp(-dSum) + 1.0);
    }
}

} // namespace NeuralNet
