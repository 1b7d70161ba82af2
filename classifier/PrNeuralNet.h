#pragma once
// Evaluates a feed-forward net of logistic layers on one vector of doubles.
// The inputs can be standardised by a mean and a divisor per input and
// projected linearly before they enter the first layer.
#include <cstdint>

#include "classifier/NeuralNetData.h"
#include "image/ArrayStatic.h"
#include "processing/ProcessorBase.h"

namespace NeuralNet
{

class ClPrNeuralNet : public ClProcessorBase
{
public:
    // All fields are set by the caller directly; none is owned.
    const ClNeuralNetData* m_pNetData = nullptr;
    // The vector to classify; left unchanged.
    const TpArrayStatic<double>* m_pInFeatures = nullptr;
    // Receives the result; element 0 is the net's output.
    TpArrayStatic<double>* m_pOutFeatures = nullptr;
    // One mean and one divisor per input; used only when both are set.
    const double* m_pdMean = nullptr;
    const double* m_pdScale = nullptr;
    // Projection matrix, one row per input and m_nProjectionSize columns, row
    // after row; none when null or when m_nProjectionSize is 0 or less.
    const double* m_pdProjection = nullptr;
    int32_t m_nProjectionSize = 0;

    ~ClPrNeuralNet() override = default;
    ClProcessorBase* NewInstance() const override;
    const char* GetName() const override { return "ClPrNeuralNet"; }
    int32_t Init() override;
    int32_t Process() override;

private:
    // out[o] = logistic(bias[o] + sum of in[i] * weight of input i of neuron o).
    static void EvaluateLayer(const NeuralNetLayer& layer, const double* pdIn, double* pdOut);
};

} // namespace NeuralNet
