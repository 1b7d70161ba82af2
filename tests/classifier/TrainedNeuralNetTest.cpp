#include <gtest/gtest.h>

#include "classifier/FeatureScaling.h"
#include "classifier/TrainedNeuralNet.h"
#include "sdk/Exception.h"

using NeuralNet::ClNeuralNetData;
using NeuralNet::ClTrainedNeuralNet;
using NeuralNet::NeuralNetLayer;

TEST(TrainedNeuralNet, Has42InputsThenLayersOf4And2And1Neurons)
{
    const ClTrainedNeuralNet net;
    const ClNeuralNetData& data = net;
    ASSERT_EQ(data.GetLayerCount(), 3u);
    const unsigned int anInputs[3] = {42, 4, 2};
    const unsigned int anOutputs[3] = {4, 2, 1};
    for (unsigned int l = 0; l < 3; ++l)
    {
        const NeuralNetLayer* pLayer = data.GetLayer(l);
        ASSERT_NE(pLayer, nullptr);
        EXPECT_EQ(pLayer->nInputs, anInputs[l]) << "layer " << l;
        EXPECT_EQ(pLayer->nOutputs, anOutputs[l]) << "layer " << l;
        EXPECT_NE(pLayer->pdBias, nullptr);
        EXPECT_NE(pLayer->pdWeights, nullptr);
    }
    // Every object is a view on the same tables.
    EXPECT_EQ(ClTrainedNeuralNet().GetLayer(1), net.GetLayer(1));
}

TEST(TrainedNeuralNet, RefusesALayerIndexPastTheLast)
{
    const ClTrainedNeuralNet net;
    for (unsigned int nIndex : {3u, 4u, 0xFFFFFFFFu})
    {
        try
        {
            net.GetLayer(nIndex);
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
    EXPECT_EQ(pLayer->pdWeights[0 * 42 + 0], 0.304752262808873);
    EXPECT_EQ(pLayer->pdWeights[1 * 42 + 0], -0.58653682386241);
    EXPECT_EQ(pLayer->pdWeights[3 * 42 + 3], 3.767709638420699);
    EXPECT_EQ(pLayer->pdWeights[2 * 42 + 37], -0.746795912388893);
    EXPECT_EQ(pLayer->pdWeights[3 * 42 + 37], -0.878377593650053);
    // The dead inputs 1 and 38 to 41 weigh nothing in any neuron.
    for (unsigned int o = 0; o < 4; ++o)
    {
        for (unsigned int i : {1u, 38u, 39u, 40u, 41u})
            EXPECT_EQ(pLayer->pdWeights[o * 42 + i], 0.0) << "neuron " << o << " input " << i;
    }
    const NeuralNetLayer* pHidden = ClTrainedNeuralNet().GetLayer(1);
    EXPECT_EQ(pHidden->pdWeights[1 * 4 + 0], -0.536032231852721);
}

TEST(FeatureScaling, DeadPlacesHoldTheNeutralPair)
{
    for (unsigned int i : {1u, 38u, 39u, 40u, 41u})
    {
        EXPECT_EQ(NeuralNet::g_FeatureMean[i], 0.0) << "feature " << i;
        EXPECT_EQ(NeuralNet::g_FeatureScale[i], 1.0) << "feature " << i;
    }
    for (unsigned int i = 0; i < NeuralNet::nFeatureCount; ++i)
        EXPECT_GT(NeuralNet::g_FeatureScale[i], 0.0) << "feature " << i;
    EXPECT_EQ(NeuralNet::g_FeatureMean[0], 104.46696478630528);
    EXPECT_EQ(NeuralNet::g_FeatureScale[37], 0.024962550351462);
}
