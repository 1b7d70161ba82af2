#include "classifier/FeatureScaling.h"

namespace NeuralNet
{

// clang-format off
const double g_FeatureMean[nFeatureCount] = {
    104.46696478630528, // 0 DarkMean
    0.0, // 1 DarkDeviation
    -6.480114785284863, // 2 DarkEntropy
    162.98293860395387, // 3 BrightMean
    8.527939064444423, // 4 BrightDeviation
    -6.200224777091563, // 5 BrightEntropy
    35.34164463494065, // 6 MinDeviation
    33.751568254486095, // 7 MaxDeviation
    1.936457009086641, // 8 MidDeviation
    -0.023014743193363, // 9 HipassDeviationRatio
    -0.028815352964061, // 10 HipassMeanRatio
    1.373238516658591, // 11 RidgeMeanRatio11
    1.07430689778072, // 12 RidgeMeanRatio3
    1.178378378177488, // 13 RidgeMeanRatio5
    0.996090108805806, // 14 GelatineRatio
    0.119081680062309, // 15 MoonDeviation
    65.21464013530857, // 16 RidgeEdge0
    15.459294147384233, // 17 RidgeEdge1
    0.727589400582213, // 18 RidgeEdge2
    0.453732952255134, // 19 RidgeEdge3
    0.71935115010067, // 20 Uchida0
    0.278791916399292, // 21 Uchida1
    0.501949610832434, // 22 Uchida2
    0.217401539268235, // 23 Uchida3
    0.223157694433142, // 24 Uchida4
    0.998143066499963, // 25 Uchida5
    0.065977447749597, // 26 Uchida6
    0.060825917473679, // 27 Uchida7
    0.140646436484112, // 28 Uchida8
    0.163161081099452, // 29 Uchida9
    0.150141493943246, // 30 Uchida10
    0.165976130057201, // 31 SpectrumRatio62
    0.727709952519974, // 32 SpectrumRatio31
    0.856390396736136, // 33 Spectrum19
    0.623879168831645, // 34 Spectrum31
    0.392390096306712, // 35 Spectrum42
    0.142313880124923, // 36 Spectrum62
    0.118136394300315, // 37 Spectrum65
    0.0, // 38 Spectrum90
    0.0, // 39 Reserved39
    0.0, // 40 Reserved40
    0.0, // 41 Reserved41
};

const double g_FeatureScale[nFeatureCount] = {
    6.098534080868522, // 0 DarkMean
    1.0, // 1 DarkDeviation
    0.21952038136248, // 2 DarkEntropy
    9.645526316194275, // 3 BrightMean
    1.817549522492898, // 4 BrightDeviation
    0.318161336250016, // 5 BrightEntropy
    5.335619641166868, // 6 MinDeviation
    7.648654662646644, // 7 MaxDeviation
    0.445122110016773, // 8 MidDeviation
    0.007046413452938, // 9 HipassDeviationRatio
    0.00628127655543, // 10 HipassMeanRatio
    0.080839224976134, // 11 RidgeMeanRatio11
    0.014447876367146, // 12 RidgeMeanRatio3
    0.035177416783914, // 13 RidgeMeanRatio5
    0.032085607828947, // 14 GelatineRatio
    0.006366783476171, // 15 MoonDeviation
    10.6348908870219, // 16 RidgeEdge0
    2.030630227881811, // 17 RidgeEdge1
    0.00583680361884, // 18 RidgeEdge2
    0.009882448502571, // 19 RidgeEdge3
    0.051027580648969, // 20 Uchida0
    0.039022739257489, // 21 Uchida1
    0.00045359606019, // 22 Uchida2
    0.051136593495436, // 23 Uchida3
    0.039163934471731, // 24 Uchida4
    0.05437952854082, // 25 Uchida5
    0.014253504688211, // 26 Uchida6
    0.011773431100702, // 27 Uchida7
    0.025600730408477, // 28 Uchida8
    0.024107161240032, // 29 Uchida9
    0.02489844085965, // 30 Uchida10
    0.032683337714612, // 31 SpectrumRatio62
    0.068279368212779, // 32 SpectrumRatio31
    0.028985289180131, // 33 Spectrum19
    0.068548512265606, // 34 Spectrum31
    0.055055060762635, // 35 Spectrum42
    0.029535688626883, // 36 Spectrum62
    0.024962550351462, // 37 Spectrum65
    1.0, // 38 Spectrum90
    1.0, // 39 Reserved39
    1.0, // 40 Reserved40
    1.0, // 41 Reserved41
};
// clang-format on

} // namespace NeuralNet
