#include <tuple>

#include <gtest/gtest.h>

#include "classifier/FeatureScaling.h"
#include "classifier/PrNeuralNet.h"
#include "classifier/TrainedNeuralNet.h"
#include "image/ImageTestSupport.h"

using std::make_tuple;

TEST(PrNeuralNet, TheMeanFeatureVectorGivesTheStatedOutputsAndAMisfitVectorIsRefused)
{
    const NeuralNet::ClTrainedNeuralNet trained;
    TpArrayStatic<double> out(1);
    out[0] = 7.0;
    NeuralNet::ClPrNeuralNet net;
    net.m_pNetData = &trained;
    net.m_pOutFeatures = &out;
    net.m_pdMean = NeuralNet::g_FeatureMean;
    net.m_pdScale = NeuralNet::g_FeatureScale;
    // A vector of any other length than 42 leaves the output as it was, and
    // the 42-entry tables are not read past their end.
    for (uint32_t nSize : {41u, 43u})
    {
        TpArrayStatic<double> misfit(nSize);
        for (uint32_t i = 0; i < nSize; ++i)
            misfit[i] = 0.5;
        net.m_pInFeatures = &misfit;
        ExpectThrows([&] { net.Run(); }, -44, "neural net error\n");
        EXPECT_EQ(make_tuple(out.Size(), out[0]), make_tuple(1u, 7.0));
    }

    // The result is the buffer the last of three layers wrote, as long as the
    // input; its elements 1 to 3 still hold the first hidden layer's outputs.
    TpArrayStatic<double> in(NeuralNet::nFeatureCount);
    for (uint32_t i = 0; i < in.Size(); ++i)
        in[i] = NeuralNet::g_FeatureMean[i];
    net.m_pInFeatures = &in;
    EXPECT_EQ(net.Run(), 0);
    ASSERT_EQ(out.Size(), 42u);
    EXPECT_EQ(make_tuple(out[0], out[1], out[2], out[3]),
              make_tuple(0.5545188653296096, 0.34261872788038406, 0.9223840822143281,
                         0.8467127864601454));
}
