#pragma once
// Layers of a feed-forward net as constant data: the record of one layer, the
// interface through which the evaluator reads a net, and the template that
// serves a net's static layer array through that interface.
#include <cstdint>

#include "sdk/Exception.h"

namespace NeuralNet
{

// One fully connected layer. The weights of neuron o are contiguous: the weight
// of input i of neuron o is pdWeights[o * nInputs + i].
struct NeuralNetLayer
{
    uint32_t nInputs;
    uint32_t nOutputs;
    const double* pdBias;
    const double* pdWeights;
};

// A net as the evaluator sees it: a count of layers and each layer by index.
class ClNeuralNetData
{
public:
    virtual ~ClNeuralNetData() = default;
    virtual const NeuralNetLayer* GetLayer(unsigned int nIndex) const = 0;
    virtual unsigned int GetLayerCount() const = 0;
};

// Serves the static layer array that belongs to the instantiation for T. The
// concrete net defines ms_aLayers and ms_nLayerCount of its instantiation.
template <typename T> class TpNeuralNetData : public ClNeuralNetData
{
public:
    const NeuralNetLayer* GetLayer(unsigned int nIndex) const override
    {
        if (nIndex >= ms_nLayerCount)
            SENTIVO_THROW_CODE(ZRC_ERROR_PARAM_OUT_OF_RANGE);
        return &ms_aLayers[nIndex];
    }

    unsigned int GetLayerCount() const override { return ms_nLayerCount; }

private:
    static const NeuralNetLayer ms_aLayers[];
    static const unsigned int ms_nLayerCount;
};

} // namespace NeuralNet
