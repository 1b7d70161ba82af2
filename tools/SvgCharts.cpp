#include "SvgCharts.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "classifier/RateTables.h"

namespace SentivoTool
{

namespace
{

const char* const kLiveColour = "#2a7fb8";
const char* const kFakeColour = "#d95f02";
const char* const kLibraryColour = "#7a7a7a";
const char* const kThresholdColour = "#c0392b";

std::string Num(double dValue)
{
    char szText[32];
    std::snprintf(szText, sizeof(szText), "%.2f", dValue);
    return szText;
}

std::string Percent(double dShare)
{
    char szText[32];
    std::snprintf(szText, sizeof(szText), "%g %%", dShare * 100.0);
    return szText;
}

std::string Open(int nWidth, int nHeight, const char* szTitle)
{
    return "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" + std::to_string(nWidth) +
           "\" height=\"" + std::to_string(nHeight) + "\" viewBox=\"0 0 " + std::to_string(nWidth) +
           " " + std::to_string(nHeight) +
           "\" font-family=\"sans-serif\" font-size=\"12\">\n<title>" + szTitle +
           "</title>\n<rect width=\"100%\" height=\"100%\" fill=\"white\"/>\n";
}

std::string Line(double x1, double y1, double x2, double y2, const std::string& style)
{
    return "<line x1=\"" + Num(x1) + "\" y1=\"" + Num(y1) + "\" x2=\"" + Num(x2) + "\" y2=\"" +
           Num(y2) + "\" " + style + "/>\n";
}

std::string Text(double x, double y, const std::string& text, const char* szAnchor = "middle",
                 const std::string& extra = "")
{
    return "<text x=\"" + Num(x) + "\" y=\"" + Num(y) + "\" text-anchor=\"" + szAnchor + "\"" +
           (extra.empty() ? "" : " " + extra) + ">" + XmlText(text) + "</text>\n";
}

std::string LegendEntry(double x, double y, const char* szColour, const std::string& text,
                        const std::string& dash = "")
{
    return Line(x, y - 4, x + 24, y - 4,
                std::string("stroke=\"") + szColour + "\" stroke-width=\"3\"" +
                    (dash.empty() ? "" : " stroke-dasharray=\"" + dash + "\"")) +
           Text(x + 30, y, text, "start");
}

} // namespace

std::string XmlText(const std::string& text)
{
    std::string out;
    for (const char c : text)
    {
        switch (c)
        {
        case '&':
            out += "&amp;";
            break;
        case '<':
            out += "&lt;";
            break;
        case '>':
            out += "&gt;";
            break;
        case '"':
            out += "&quot;";
            break;
        default:
            out += c;
        }
    }
    return out;
}

double NormalDeviate(double p)
{
    // Bisection on the distribution function 0.5 erfc(-x / sqrt 2): plain,
    // and exact to the last bits within a hundred steps.
    double dLow = -40.0, dHigh = 40.0;
    for (int i = 0; i < 100; ++i)
    {
        const double dMid = 0.5 * (dLow + dHigh);
        if (0.5 * std::erfc(-dMid / std::sqrt(2.0)) < p)
            dLow = dMid;
        else
            dHigh = dMid;
    }
    return 0.5 * (dLow + dHigh);
}

std::string ScoresSvg(const Evaluation& evaluation)
{
    constexpr int kWidth = 640, kHeight = 360, kBins = 20;
    constexpr double L = 70, T = 40, W = 540, H = 260;
    const std::vector<double>* apSets[] = {&evaluation.scores.live, &evaluation.scores.fake};
    const char* aszColours[] = {kLiveColour, kFakeColour};
    std::vector<double> shares[2];
    double dTop = 0.0;
    for (int c = 0; c < 2; ++c)
    {
        const std::vector<size_t> counts = Histogram(*apSets[c], kBins, 0.0, 100.0);
        for (const size_t nCount : counts)
        {
            shares[c].push_back(apSets[c]->empty() ? 0.0
                                                   : static_cast<double>(nCount) /
                                                         static_cast<double>(apSets[c]->size()));
            dTop = std::max(dTop, shares[c].back());
        }
    }
    // The share axis ends at the next tenth above the highest bar.
    dTop = std::max(0.1, std::ceil(dTop * 10.0 - 1e-9) / 10.0);
    auto px = [&](double dScore) { return L + std::clamp(dScore, 0.0, 100.0) / 100.0 * W; };
    auto py = [&](double dShare) { return T + H - dShare / dTop * H; };

    std::string svg = Open(kWidth, kHeight, "Score histograms of live and fake captures");
    svg += Text(L + W / 2, 20, "Scores of live and fake captures (share of each class)");
    for (int c = 0; c < 2; ++c)
        for (int b = 0; b < kBins; ++b)
        {
            if (shares[c][b] <= 0.0)
                continue;
            const double x = px(5.0 * b) + 1 + c * (W / kBins / 2 - 1);
            svg += "<rect x=\"" + Num(x) + "\" y=\"" + Num(py(shares[c][b])) + "\" width=\"" +
                   Num(W / kBins / 2 - 1) + "\" height=\"" + Num(H - (py(shares[c][b]) - T)) +
                   "\" fill=\"" + aszColours[c] + "\"/>\n";
        }
    // Axes, ticks and labels.
    svg += Line(L, T + H, L + W, T + H, "stroke=\"black\"");
    svg += Line(L, T, L, T + H, "stroke=\"black\"");
    for (int s = 0; s <= 100; s += 10)
    {
        svg += Line(px(s), T + H, px(s), T + H + 5, "stroke=\"black\"");
        svg += Text(px(s), T + H + 18, std::to_string(s));
    }
    for (int i = 0; i <= 5; ++i)
    {
        const double dShare = dTop * i / 5.0;
        svg += Line(L - 5, py(dShare), L, py(dShare), "stroke=\"black\"");
        svg += Text(L - 8, py(dShare) + 4, Percent(dShare), "end");
    }
    svg += Text(L + W / 2, kHeight - 12, "score");
    svg += Text(18, T + H / 2, "share of the class", "middle",
                "transform=\"rotate(-90 18 " + Num(T + H / 2) + ")\"");
    // The threshold.
    const double xt = px(evaluation.dThreshold);
    svg += Line(xt, T, xt, T + H,
                std::string("stroke=\"") + kThresholdColour +
                    "\" stroke-width=\"2\" stroke-dasharray=\"6 4\"");
    svg += Text(xt - 4, T + 12, "threshold " + Num(evaluation.dThreshold), "end",
                std::string("fill=\"") + kThresholdColour + "\"");
    svg += LegendEntry(L + 10, T + 16, kLiveColour,
                       "live (" + std::to_string(evaluation.scores.live.size()) + ")");
    svg += LegendEntry(L + 10, T + 34, kFakeColour,
                       "fake (" + std::to_string(evaluation.scores.fake.size()) + ")");
    if (evaluation.scores.live.empty() && evaluation.scores.fake.empty())
        svg += Text(L + W / 2, T + H / 2, "no scored captures");
    return svg + "</svg>\n";
}

std::string DetSvg(const Evaluation& evaluation)
{
    constexpr int kSize = 560;
    constexpr double L = 80, T = 40, S = 440;
    constexpr double kLow = 0.0005, kHigh = 0.995;
    const double zLow = NormalDeviate(kLow), zHigh = NormalDeviate(kHigh);
    auto scale = [&](double p)
    { return (NormalDeviate(std::clamp(p, kLow, kHigh)) - zLow) / (zHigh - zLow) * S; };
    auto px = [&](double p) { return L + scale(p); };
    auto py = [&](double p) { return T + S - scale(p); };
    auto polyline = [&](const std::vector<std::pair<double, double>>& points, const char* szColour,
                        const char* szExtra)
    {
        std::string text = "<polyline fill=\"none\" stroke=\"" + std::string(szColour) +
                           "\" stroke-width=\"2\" " + szExtra + " points=\"";
        for (const auto& [a, b] : points)
            text += Num(px(a)) + "," + Num(py(b)) + " ";
        return text + "\"/>\n";
    };

    std::string svg = Open(kSize, kSize + 40, "DET curve");
    svg += Text(L + S / 2, 20, "DET curve: measured and the library's rate tables");
    const double aTicks[] = {0.001, 0.005, 0.01, 0.02, 0.05, 0.1, 0.2,
                             0.4,   0.6,   0.8,  0.9,  0.95, 0.99};
    for (const double p : aTicks)
    {
        svg += Line(px(p), T, px(p), T + S, "stroke=\"#e4e4e4\"");
        svg += Line(L, py(p), L + S, py(p), "stroke=\"#e4e4e4\"");
        svg += Text(L - 6, py(p) + 4, Percent(p), "end", "font-size=\"10\"");
        // Across, the labels of neighbours close on the scale would overlap.
        if (p != 0.005 && p != 0.02 && p != 0.1 && p != 0.9)
            svg += Text(px(p), T + S + 16, Percent(p), "middle", "font-size=\"10\"");
    }
    svg += "<rect x=\"" + Num(L) + "\" y=\"" + Num(T) + "\" width=\"" + Num(S) + "\" height=\"" +
           Num(S) + "\" fill=\"none\" stroke=\"black\"/>\n";
    svg += Line(px(kLow), py(kLow), px(kHigh), py(kHigh),
                "stroke=\"#b0b0b0\" stroke-dasharray=\"2 3\"");
    svg += Text(L + S / 2, T + S + 36, "APCER (library: FAR)");
    svg += Text(20, T + S / 2, "BPCER (library: FRR)", "middle",
                "transform=\"rotate(-90 20 " + Num(T + S / 2) + ")\"");

    std::vector<std::pair<double, double>> library;
    for (int32_t k = 0; k < NeuralNet::nRateTableSize; ++k)
        library.emplace_back(NeuralNet::FarTable[k], NeuralNet::FrrTable[k]);
    svg += polyline(library, kLibraryColour, "stroke-dasharray=\"6 4\"");
    std::vector<std::pair<double, double>> measured;
    for (const OperatingPoint& point : evaluation.points)
        measured.emplace_back(point.dApcer, point.dBpcer);
    if (!measured.empty())
        svg += polyline(measured, kLiveColour, "");
    if (evaluation.eer)
        svg += "<circle cx=\"" + Num(px(*evaluation.eer)) + "\" cy=\"" + Num(py(*evaluation.eer)) +
               "\" r=\"5\" fill=\"none\" stroke=\"black\" stroke-width=\"2\"/>\n";
    if (evaluation.apcer && evaluation.bpcer)
        svg += "<circle cx=\"" + Num(px(*evaluation.apcer)) + "\" cy=\"" +
               Num(py(*evaluation.bpcer)) + "\" r=\"5\" fill=\"" + kThresholdColour + "\"/>\n";

    const double y0 = kSize + 10;
    svg += LegendEntry(L, y0, kLiveColour, "measured");
    svg += LegendEntry(L + 120, y0, kLibraryColour, "library rate tables", "6 4");
    svg += "<circle cx=\"" + Num(L + 300) + "\" cy=\"" + Num(y0 - 4) +
           "\" r=\"5\" fill=\"none\" stroke=\"black\" stroke-width=\"2\"/>\n" +
           Text(L + 310, y0, "EER", "start");
    svg += "<circle cx=\"" + Num(L + 360) + "\" cy=\"" + Num(y0 - 4) + "\" r=\"5\" fill=\"" +
           kThresholdColour + "\"/>\n" + Text(L + 370, y0, "at threshold", "start");
    if (measured.empty())
        svg += Text(L + S / 2, T + S / 2, "no measured curve: needs scored live and fake captures");
    return svg + "</svg>\n";
}

} // namespace SentivoTool
