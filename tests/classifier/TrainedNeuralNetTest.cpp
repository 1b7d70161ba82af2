#include <gtest/gtest.h>

#include "classifier/FeatureScaling.h"
#include "classifier/TrainedNeuralNet.h"
#include "sdk/Exception.h"

using NeuralNet::ClTrainedNeuralNet;
using NeuralNet::NeuralNetLayer;

TEST(TrainedNeuralNet, Has42InputsThenLayersOf4And2And1NeuronsAndNoFourthLayer)
{
    const ClTrainedNeuralNet net;
    const NeuralNet::ClNeuralNetData& data = net;
    ASSERT_EQ(data.GetLayerCount(), 3u);
    const unsigned int anInputs[3] = {42, 4, 2};
    const unsigned int anOutputs[3] = {4, 2, 1};
    for (unsigned int l = 0; l < 3; ++l)
    {
        EXPECT_EQ(data.GetLayer(l)->nInputs, anInputs[l]) << "layer " << l;
        EXPECT_EQ(data.GetLayer(l)->nOutputs, anOutputs[l]) << "layer " << l;
    }
    for (unsigned int nIndex : {3u, 0xFFFFFFFFu})
    {
        try
        {
            data.GetLayer(nIndex);
            ADD_FAILURE() << "no exception for layer " << nIndex;
        }
        catch (const ClExVelmoran& e)
        {
            EXPECT_EQ(e.GetCode(), ZRC_ERROR_PARAM_OUT_OF_RANGE);
        }
    }
}

TEST(TrainedNeuralNet, StoresTheWeightsOfOneNeuronContiguously)
{
    const NeuralNetLayer* pLayer = ClTrainedNeuralNet().GetLayer(0);
    // Weight of input i of neuron o at o * 42 + i.
    EXPECT_EQ(pLayer->pdWeights[1 * 42 + 0], -0.58653682386241);
    EXPECT_EQ(pLayer->pdWeights[3 * 42 + 3], 3.767709638420699);
    EXPECT_EQ(pLayer->pdWeights[2 * 42 + 37], -0.746795912388893);
    // The dead inputs 1 and 38 to 41 weigh nothing in any neuron and enter
    // through the neutral pair of mean 0.0 and divisor 1.0.
    for (unsigned int i : {1u, 38u, 39u, 40u, 41u})
    {
        for (unsigned int o = 0; o < 4; ++o)
            EXPECT_EQ(pLayer->pdWeights[o * 42 + i], 0.0) << "neuron " << o << " input " << i;
        EXPECT_EQ(NeuralNet::g_FeatureMean[i], 0.0) << "feature " << i;
        EXPECT_EQ(NeuralNet::g_FeatureScale[i], 1.0) << "feature " << i;
    }
    EXPECT_EQ(ClTrainedNeuralNet().GetLayer(1)->pdWeights[1 * 4 + 0], -0.536032231852721);
}
