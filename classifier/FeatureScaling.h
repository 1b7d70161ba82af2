#pragma once
// Standardisation of the 42 features before they enter the trained net: input i
// becomes (x - g_FeatureMean[i]) / g_FeatureScale[i]. Both tables are bound to
// the order of the feature vector; the dead places 1 and 38 to 41 hold the
// neutral pair 0.0 and 1.0.

namespace NeuralNet
{

constexpr unsigned int nFeatureCount = 42;

// Mean of each feature over the training set, in feature vector order.
extern const double g_FeatureMean[nFeatureCount];
// Divisor of each feature (its spread over the training set), same order.
extern const double g_FeatureScale[nFeatureCount];

} // namespace NeuralNet
