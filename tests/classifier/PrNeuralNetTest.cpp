#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <initializer_list>
#include <tuple>
#include <vector>

#include "classifier/FeatureScaling.h"
#include "classifier/PrNeuralNet.h"
#include "classifier/TrainedNeuralNet.h"
#include "image/ArrayDynamic.h"
#include "image/ImageTestSupport.h"

using NeuralNet::ClNeuralNetData;
using NeuralNet::ClPrNeuralNet;
using NeuralNet::g_FeatureMean;
using NeuralNet::g_FeatureScale;
using NeuralNet::NeuralNetLayer;
using std::make_tuple;

namespace
{

// A net made of any layers, for shapes the trained net does not have.
class ClToyNet : public ClNeuralNetData
{
public:
    ClToyNet(std::initializer_list<NeuralNetLayer> layers) : m_Layers(layers) {}
    const NeuralNetLayer* GetLayer(unsigned int n) const override { return &m_Layers.at(n); }
    unsigned int GetLayerCount() const override { return unsigned(m_Layers.size()); }

private:
    std::vector<NeuralNetLayer> m_Layers;
};

// An input vector that counts how often its size is asked for.
class ClCountingArray : public TpArrayStatic<double>
{
public:
    using TpArrayStatic<double>::TpArrayStatic;
    uint32_t Size() const override
    {
        ++m_nSizeCalls;
        return TpArrayStatic<double>::Size();
    }
    mutable int m_nSizeCalls = 0;
};

double Logistic(double x)
{
    return 1.0 / (std::exp(-x) + 1.0);
}

const NeuralNet::ClTrainedNeuralNet g_Trained;

} // namespace

TEST(TrainedNeuralNet, Has42InputsThenLayersOf4And2And1NeuronsStoredNeuronByNeuron)
{
    const unsigned int anWidths[] = {42, 4, 2, 1};
    ASSERT_EQ(g_Trained.GetLayerCount(), 3u);
    for (unsigned int l = 0; l < 3; ++l)
        EXPECT_EQ(make_tuple(g_Trained.GetLayer(l)->nInputs, g_Trained.GetLayer(l)->nOutputs),
                  make_tuple(anWidths[l], anWidths[l + 1]));
    for (unsigned int nIndex : {3u, 0xFFFFFFFFu})
        ExpectThrows<ClExVelmoran>([&] { g_Trained.GetLayer(nIndex); }, -35);

    // Weight of input i of neuron o at o * 42 + i; input 38 is dead.
    const double* pdWeights = g_Trained.GetLayer(0)->pdWeights;
    EXPECT_EQ(make_tuple(pdWeights[1 * 42 + 0], pdWeights[3 * 42 + 3], pdWeights[2 * 42 + 37],
                         pdWeights[3 * 42 + 38], g_FeatureMean[38], g_FeatureScale[38]),
              make_tuple(-0.58653682386241, 3.767709638420699, -0.746795912388893, 0.0, 0.0, 1.0));
}

TEST(PrNeuralNet, TheMeanFeatureVectorGivesTheOutputOfTheBiasesAlone)
{
    TpArrayStatic<double> in(NeuralNet::nFeatureCount), out;
    for (uint32_t i = 0; i < in.Size(); ++i)
        in[i] = g_FeatureMean[i];
    ClPrNeuralNet net;
    net.m_pInFeatures = &in;
    net.m_pOutFeatures = &out;
    net.m_pdMean = g_FeatureMean;
    net.m_pdScale = g_FeatureScale;

    // The result is the buffer the last layer wrote, as long as the input: of
    // three layers buffer 1, whose elements 1 to 3 still hold outputs of the
    // first layer; of one layer buffer 1; of two buffer 0, which keeps the
    // standardised inputs (all 0.0) past the second layer's width.
    const ClToyNet first{*g_Trained.GetLayer(0)},
        firstTwo{*g_Trained.GetLayer(0), *g_Trained.GetLayer(1)};
    for (auto [pNet, d0, d1, d2, d3] :
         {make_tuple<const ClNeuralNetData*>(&g_Trained, 0.5545188653296096, 0.34261872788038406,
                                             0.9223840822143281, 0.8467127864601454),
          make_tuple<const ClNeuralNetData*>(&first, 0.2531265515968631, 0.34261872788038406,
                                             0.9223840822143281, 0.8467127864601454),
          make_tuple<const ClNeuralNetData*>(&firstTwo, 0.5569533082189524, 0.3869981676885355, 0.0,
                                             0.0)})
    {
        net.m_pNetData = pNet;
        EXPECT_EQ(net.Run(), 0);
        ASSERT_EQ(out.Size(), 42u);
        EXPECT_EQ(make_tuple(out[0], out[1], out[2], out[3]), make_tuple(d0, d1, d2, d3));
    }
    EXPECT_EQ(in[0], g_FeatureMean[0]);

    // With only one of the two tables the raw features reach the net. The
    // result is sized through the vector's own Resize.
    TpArrayDynamic<double, 8> raw;
    net.m_pNetData = &g_Trained;
    net.m_pOutFeatures = &raw;
    net.m_pdScale = nullptr;
    net.Run();
    const double dRaw = raw[0];
    net.m_pdMean = nullptr;
    net.Run();
    EXPECT_EQ(make_tuple(raw.Size(), raw[0]), make_tuple(42u, dRaw));
    net.m_pdScale = g_FeatureScale;
    net.Run();
    EXPECT_EQ(raw[0], dRaw);
    EXPECT_NE(dRaw, 0.5545188653296096);
}

TEST(PrNeuralNet, InitChecksTheFieldsInOrderAndAMisfitVectorKeepsTheOutput)
{
    ClCountingArray in(42);
    TpArrayStatic<double> out(1);
    out[0] = 7.0;
    const ClToyNet empty{};
    ClPrNeuralNet net;
    ExpectThrows([&] { net.Run(); }, -37, "Neuronal net has not net data");
    net.m_pInFeatures = &in;
    net.m_pOutFeatures = &out;
    ExpectThrows([&] { net.Run(); }, -37, "Neuronal net has not net data");
    net.m_pNetData = &empty;
    ExpectThrows([&] { net.Run(); }, -44, "Neuronal net has no layer");
    net.m_pNetData = &g_Trained;
    net.m_pInFeatures = nullptr;
    ExpectThrows([&] { net.Run(); }, -37, "Inputfeatures are not set");
    net.m_pInFeatures = &in;
    net.m_pOutFeatures = nullptr;
    ExpectThrows([&] { net.Run(); }, -37, "Outputfeatures are not set");
    // Nothing was read from the input, so nothing was sized or allocated.
    EXPECT_EQ(in.m_nSizeCalls, 0);

    net.m_pOutFeatures = &out;
    for (uint32_t nSize : {41u, 43u})
    {
        TpArrayStatic<double> misfit(nSize);
        for (uint32_t i = 0; i < nSize; ++i)
            misfit[i] = 0.5;
        net.m_pInFeatures = &misfit;
        ExpectThrows([&] { net.Run(); }, -44, "neural net error\n");
        EXPECT_EQ(make_tuple(out.Size(), out[0]), make_tuple(1u, 7.0));
    }
}

TEST(PrNeuralNet, ProjectsTheInputAndSizesTheResultByItsBuffer)
{
    // Three raw inputs onto two columns; column j of input i is entry i * 2 + j.
    const double adProjection[6] = {1.0, 10.0, 2.0, 20.0, 3.0, 30.0};
    TpArrayStatic<double> in(3), out;
    in[0] = 0.5, in[1] = -0.25, in[2] = 0.125;
    const double dColumn0 = 0.375; // 0.5 * 1 - 0.25 * 2 + 0.125 * 3
    const double dColumn1 = 3.75;  // 0.5 * 10 - 0.25 * 20 + 0.125 * 30

    // Neuron 0 weighs the two columns by (1, 2), neuron 1 by (3, 4).
    const double adBias[2] = {0.5, -1.0}, adWeights[4] = {1.0, 2.0, 3.0, 4.0}, dZero = 0, dOne = 1;
    const ClToyNet oneLayer{{2, 2, adBias, adWeights}},
        twoLayers{{2, 2, adBias, adWeights}, {1, 1, &dZero, &dOne}};
    const double dNeuron0 = Logistic(0.5 + dColumn0 * 1.0 + dColumn1 * 2.0);
    ClPrNeuralNet net;
    net.m_pInFeatures = &in;
    net.m_pOutFeatures = &out;
    net.m_pdProjection = adProjection;
    net.m_nProjectionSize = 2;

    // One layer: buffer 1, as long as the raw input.
    net.m_pNetData = &oneLayer;
    EXPECT_EQ(net.Run(), 0);
    ASSERT_EQ(out.Size(), 3u);
    EXPECT_EQ(make_tuple(out[0], out[1]),
              make_tuple(dNeuron0, Logistic(-1.0 + dColumn0 * 3.0 + dColumn1 * 4.0)));
    // Two layers: buffer 0, as long as the projection; its element 1 still
    // holds the second column.
    net.m_pNetData = &twoLayers;
    EXPECT_EQ(net.Run(), 0);
    ASSERT_EQ(out.Size(), 2u);
    EXPECT_EQ(make_tuple(out[0], out[1]), make_tuple(Logistic(dNeuron0), dColumn1));

    // A projection size of 0 means none: three raw inputs meet a 2-input layer.
    net.m_nProjectionSize = 0;
    net.m_pNetData = &oneLayer;
    ExpectThrows([&] { net.Run(); }, -44, "neural net error\n");
}
