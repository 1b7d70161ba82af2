#pragma once
// The trained liveness net: 42 features in, layers of 4, 2 and 1 logistic
// neurons. An object is only a view on the constant layer tables.
#include "classifier/NeuralNetData.h"

namespace NeuralNet
{

class ClTrainedNeuralNet : public TpNeuralNetData<ClTrainedNeuralNet>
{
};

template <> const NeuralNetLayer TpNeuralNetData<ClTrainedNeuralNet>::ms_aLayers[];
template <> const unsigned int TpNeuralNetData<ClTrainedNeuralNet>::ms_nLayerCount;

} // namespace NeuralNet
