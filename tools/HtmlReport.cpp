#include "HtmlReport.h"

#include <cmath>
#include <cstdio>

#include "SvgCharts.h"
#include "sentivo/sentivo.h"

namespace SentivoTool
{

namespace
{

std::string Rate(const std::optional<double>& value)
{
    if (!value)
        return "none";
    char szText[32];
    std::snprintf(szText, sizeof(szText), "%.2f %%", *value * 100.0);
    return szText;
}

std::string Score(double dScore)
{
    if (!std::isfinite(dScore))
        return "above every score";
    char szText[32];
    std::snprintf(szText, sizeof(szText), "%.4f", dScore);
    return szText;
}

std::string Row(const std::string& name, const std::string& value, const std::string& note = "")
{
    return "<tr><th>" + name + "</th><td>" + value + "</td><td>" + note + "</td></tr>\n";
}

// An SVG as it stands, without anything before its root element.
std::string Inline(const std::string& svg)
{
    const size_t nStart = svg.find("<svg");
    return nStart == std::string::npos ? svg : svg.substr(nStart);
}

} // namespace

std::string ReportHtml(const Evaluation& evaluation, const std::string& scoresSvg,
                       const std::string& detSvg)
{
    const Evaluation& e = evaluation;
    std::string html = "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
                       "<title>Liveness evaluation</title>\n<style>\n"
                       "body{font-family:sans-serif;margin:2em;max-width:70em;color:#222}\n"
                       "table{border-collapse:collapse;margin:0.5em 0 1.5em}\n"
                       "th,td{border:1px solid #ccc;padding:0.3em 0.7em;text-align:left}\n"
                       "th{background:#f3f3f3}\n.figures{display:flex;flex-wrap:wrap;gap:2em}\n"
                       "</style>\n</head>\n<body>\n<h1>Liveness evaluation</h1>\n<p>Results: ";
    for (size_t i = 0; i < e.sources.size(); ++i)
        html += (i ? ", " : "") + ("<code>" + XmlText(e.sources[i]) + "</code>");
    html += "</p>\n";

    html += "<h2>Captures</h2>\n<table>\n<tr><th></th><th>all</th><th>scored</th>"
            "<th>without a score</th></tr>\n";
    html += "<tr><th>live</th><td>" + std::to_string(e.nLive) + "</td><td>" +
            std::to_string(e.scores.live.size()) + "</td><td>" + std::to_string(e.nFailedLive) +
            "</td></tr>\n";
    html += "<tr><th>fake</th><td>" + std::to_string(e.nFake) + "</td><td>" +
            std::to_string(e.scores.fake.size()) + "</td><td>" + std::to_string(e.nFailedFake) +
            "</td></tr>\n</table>\n";
    if (e.nUnlabelled > 0)
        html +=
            "<p>Captures without a label, left out: " + std::to_string(e.nUnlabelled) + ".</p>\n";
    if (!e.failed.empty())
    {
        html += "<h3>Captures without a score, by code</h3>\n<table>\n"
                "<tr><th>code</th><th>the library's description</th><th>captures</th></tr>\n";
        for (const auto& [nCode, nCount] : e.failed)
            html += "<tr><td>" + std::to_string(nCode) + "</td><td>" +
                    XmlText(SentivoGetErrorDescriptionA(nCode)) + "</td><td>" +
                    std::to_string(nCount) + "</td></tr>\n";
        html += "</table>\n";
    }

    html += "<h2>Measures</h2>\n<p>A capture is accepted as live when its score is at least "
            "the threshold. APCER is the share of fake (attack) captures accepted, BPCER the "
            "share of live captures rejected, both over the captures with a score.</p>\n"
            "<table>\n<tr><th>measure</th><th>value</th><th>note</th></tr>\n";
    html += Row("threshold", Score(e.dThreshold),
                e.thresholdFrom == "given" ? "as given"
                                           : "the library's threshold for a false acceptance "
                                             "rate of " +
                                                 e.thresholdFrom.substr(4));
    html += Row("APCER", Rate(e.apcer), "at the threshold");
    html += Row("BPCER", Rate(e.bpcer), "at the threshold");
    html += Row("library FAR / FRR", Rate(e.dLibraryFar) + " / " + Rate(e.dLibraryFrr),
                "what the library's rate tables expect at the threshold");
    html += Row("EER", Rate(e.eer), "where the DET curve crosses APCER = BPCER");
    html += Row("BPCER20", e.bpcer20 ? Rate(e.bpcer20->dBpcer) : "none",
                e.bpcer20 ? "BPCER where APCER &le; 5 %, threshold " + Score(e.bpcer20->dThreshold)
                          : "");
    html += Row(
        "BPCER100", e.bpcer100 ? Rate(e.bpcer100->dBpcer) : "none",
        e.bpcer100 ? "BPCER where APCER &le; 1 %, threshold " + Score(e.bpcer100->dThreshold) : "");
    html += "</table>\n";

    html += "<h2>Figures</h2>\n<div class=\"figures\">\n<figure>\n" + Inline(scoresSvg) +
            "<figcaption>Score histograms of both classes with the threshold.</figcaption>\n"
            "</figure>\n<figure>\n" +
            Inline(detSvg) +
            "<figcaption>DET curve of the results beside the curve of the library's rate "
            "tables.</figcaption>\n</figure>\n</div>\n</body>\n</html>\n";
    return html;
}

} // namespace SentivoTool
