#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <string>
#include <initializer_list>
#include <vector>

#include "classifier/FeatureScaling.h"
#include "classifier/PrNeuralNet.h"
#include "classifier/TrainedNeuralNet.h"
#include "image/ArrayDynamic.h"
#include "sdk/Exception.h"

using NeuralNet::ClNeuralNetData;
using NeuralNet::ClPrNeuralNet;
using NeuralNet::g_FeatureMean;
using NeuralNet::g_FeatureScale;
using NeuralNet::NeuralNetLayer;

namespace
{

// A net made of any layers, for shapes the trained net does not have.
class ClToyNet : public ClNeuralNetData
{
public:
    explicit ClToyNet(std::vector<NeuralNetLayer> layers) : m_Layers(std::move(layers)) {}
    const NeuralNetLayer* GetLayer(unsigned int n) const override { return &m_Layers.at(n); }
    unsigned int GetLayerCount() const override
    {
        return static_cast<unsigned int>(m_Layers.size());
    }

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

TpArrayStatic<double> Vector(std::initializer_list<double> values)
{
    TpArrayStatic<double> v(static_cast<uint32_t>(values.size()));
    uint32_t i = 0;
    for (double d : values)
        v[i++] = d;
    return v;
}

double Logistic(double x)
{
    return 1.0 / (std::exp(-x) + 1.0);
}

// Runs the evaluator and expects a ClException with this code whose text ends
// in a line feed and szRemark.
void ExpectThrows(ClPrNeuralNet& net, int32_t nCode, const char* szRemark)
{
    try
    {
        net.Run();
        ADD_FAILURE() << "no exception, expected " << szRemark;
    }
    catch (const ClException& e)
    {
        EXPECT_EQ(e.GetCode(), nCode);
        const std::string text = e.GetMessage();
        const std::string remark = std::string("\n") + szRemark;
        ASSERT_GE(text.size(), remark.size());
        EXPECT_EQ(text.substr(text.size() - remark.size()), remark);
    }
}

const NeuralNet::ClTrainedNeuralNet g_Trained;

} // namespace

TEST(PrNeuralNet, TheMeanFeatureVectorGivesTheOutputOfTheBiasesAlone)
{
    TpArrayStatic<double> in(NeuralNet::nFeatureCount);
    for (uint32_t i = 0; i < in.Size(); ++i)
        in[i] = g_FeatureMean[i];
    TpArrayStatic<double> out;
    ClPrNeuralNet net;
    net.m_pNetData = &g_Trained;
    net.m_pInFeatures = &in;
    net.m_pOutFeatures = &out;
    net.m_pdMean = g_FeatureMean;
    net.m_pdScale = g_FeatureScale;

    // The reference values are reproduced to the last bit. Three layers: the
    // result is buffer 1, as long as the input; element 0 is the net output,
    // elements 1 to 3 still hold outputs of the first layer.
    EXPECT_EQ(net.Run(), 0);
    ASSERT_EQ(out.Size(), 42u);
    EXPECT_EQ(out[0], 0.5545188653296096);
    EXPECT_EQ(out[1], 0.34261872788038406);
    EXPECT_EQ(out[2], 0.9223840822143281);
    EXPECT_EQ(out[3], 0.8467127864601454);
    EXPECT_EQ(in[0], g_FeatureMean[0]);

    // The first layer alone writes buffer 1.
    ClToyNet first({*g_Trained.GetLayer(0)});
    net.m_pNetData = &first;
    EXPECT_EQ(net.Run(), 0);
    ASSERT_EQ(out.Size(), 42u);
    EXPECT_EQ(out[0], 0.2531265515968631);

    // The first two write buffer 0, which keeps the standardised inputs
    // (all 0.0) past the layer's width.
    ClToyNet firstTwo({*g_Trained.GetLayer(0), *g_Trained.GetLayer(1)});
    net.m_pNetData = &firstTwo;
    EXPECT_EQ(net.Run(), 0);
    ASSERT_EQ(out.Size(), 42u);
    EXPECT_EQ(out[0], 0.5569533082189524);
    EXPECT_EQ(out[1], 0.3869981676885355);
    EXPECT_EQ(out[2], 0.0);

    // With only one of the two tables the raw features reach the net.
    TpArrayDynamic<double, 8> raw;
    net.m_pNetData = &g_Trained;
    net.m_pOutFeatures = &raw;
    net.m_pdMean = nullptr;
    net.m_pdScale = nullptr;
    net.Run();
    ASSERT_EQ(raw.Size(), 42u);
    const double dRawOutput = raw[0];
    EXPECT_NE(dRawOutput, 0.5545188653296096);
    net.m_pdMean = g_FeatureMean;
    net.Run();
    EXPECT_EQ(raw[0], dRawOutput);
    net.m_pdMean = nullptr;
    net.m_pdScale = g_FeatureScale;
    net.Run();
    EXPECT_EQ(raw[0], dRawOutput);
}

TEST(PrNeuralNet, RefusesAVectorThatIsNotAsLongAsTheFirstLayerAndKeepsTheOutput)
{
    for (uint32_t nSize : {41u, 43u})
    {
        TpArrayStatic<double> in(nSize);
        for (uint32_t i = 0; i < nSize; ++i)
            in[i] = 0.5;
        TpArrayStatic<double> out = Vector({7.0, 8.0});
        ClPrNeuralNet net;
        net.m_pNetData = &g_Trained;
        net.m_pInFeatures = &in;
        net.m_pOutFeatures = &out;
        ExpectThrows(net, ZRC_ERROR_INVALID_PARAMETER, "neural net error\n");
        ASSERT_EQ(out.Size(), 2u);
        EXPECT_EQ(out[0], 7.0);
        EXPECT_EQ(out[1], 8.0);
    }
}

TEST(PrNeuralNet, InitChecksTheFieldsInOrderBeforeTouchingTheInput)
{
    ClCountingArray in(42);
    TpArrayStatic<double> out = Vector({1.0});
    ClToyNet empty({});
    ClPrNeuralNet net;
    ExpectThrows(net, ZRC_ERROR_PARAM_IS_MISSING, "Neuronal net has not net data");
    net.m_pInFeatures = &in;
    net.m_pOutFeatures = &out;
    ExpectThrows(net, ZRC_ERROR_PARAM_IS_MISSING, "Neuronal net has not net data");

    net.m_pNetData = &empty;
    ExpectThrows(net, ZRC_ERROR_INVALID_PARAMETER, "Neuronal net has no layer");
    net.m_pNetData = &g_Trained;
    net.m_pInFeatures = nullptr;
    ExpectThrows(net, ZRC_ERROR_PARAM_IS_MISSING, "Inputfeatures are not set");
    net.m_pInFeatures = &in;
    net.m_pOutFeatures = nullptr;
    ExpectThrows(net, ZRC_ERROR_PARAM_IS_MISSING, "Outputfeatures are not set");

    // Nothing was read from the input, so nothing was sized or allocated.
    EXPECT_EQ(in.m_nSizeCalls, 0);
    EXPECT_EQ(out[0], 1.0);
}

TEST(PrNeuralNet, ProjectsTheInputAndSizesTheResultByItsBuffer)
{
    // Three raw inputs onto two columns; column j of input i is entry i * 2 + j.
    const double adProjection[6] = {1.0, 10.0, 2.0, 20.0, 3.0, 30.0};
    const TpArrayStatic<double> in = Vector({0.5, -0.25, 0.125});
    const double dColumn0 = 0.375; // 0.5 * 1 - 0.25 * 2 + 0.125 * 3
    const double dColumn1 = 3.75;  // 0.5 * 10 - 0.25 * 20 + 0.125 * 30

    // Neuron 0 weighs the two columns by (1, 2), neuron 1 by (3, 4).
    const double adBias[2] = {0.5, -1.0};
    const double adWeights[4] = {1.0, 2.0, 3.0, 4.0};
    const double adBiasLast[1] = {0.0};
    const double adWeightLast[1] = {1.0};
    ClToyNet oneLayer({{2, 2, adBias, adWeights}});
    ClToyNet twoLayers({{2, 2, adBias, adWeights}, {1, 1, adBiasLast, adWeightLast}});

    TpArrayStatic<double> out;
    ClPrNeuralNet net;
    net.m_pInFeatures = &in;
    net.m_pOutFeatures = &out;
    net.m_pdProjection = adProjection;
    net.m_nProjectionSize = 2;

    // One layer: buffer 1, as long as the raw input.
    net.m_pNetData = &oneLayer;
    EXPECT_EQ(net.Run(), 0);
    ASSERT_EQ(out.Size(), 3u);
    EXPECT_EQ(out[0], Logistic(0.5 + dColumn0 * 1.0 + dColumn1 * 2.0));
    EXPECT_EQ(out[1], Logistic(-1.0 + dColumn0 * 3.0 + dColumn1 * 4.0));

    // Two layers: buffer 0, as long as the projection; its element 1 still
    // holds the second column.
    net.m_pNetData = &twoLayers;
    EXPECT_EQ(net.Run(), 0);
    ASSERT_EQ(out.Size(), 2u);
    EXPECT_EQ(out[0], Logistic(Logistic(0.5 + dColumn0 * 1.0 + dColumn1 * 2.0)));
    EXPECT_EQ(out[1], dColumn1);

    // A projection size of 0 means none: three raw inputs meet a 2-input layer.
    net.m_nProjectionSize = 0;
    net.m_pNetData = &oneLayer;
    ExpectThrows(net, ZRC_ERROR_INVALID_PARAMETER, "neural net error\n");
}
