#include "Evaluation.h"

#include <charconv>
#include <cmath>

#include <nlohmann/json.hpp>

#include "classifier/ScoreMapping.h"

namespace SentivoTool
{

Evaluation Evaluate(const std::vector<std::string>& sources, const std::vector<ResultFile>& files,
                    double dValue, bool bFar)
{
    Evaluation evaluation;
    evaluation.sources = sources;
    for (const ResultFile& file : files)
        for (const BatchRecord& record : file.records)
        {
            if (!record.label)
            {
                ++evaluation.nUnlabelled;
                continue;
            }
            const bool bLive = *record.label == "live";
            ++(bLive ? evaluation.nLive : evaluation.nFake);
            if (record.score)
                (bLive ? evaluation.scores.live : evaluation.scores.fake).push_back(*record.score);
            else
            {
                ++evaluation.failed[record.nFingerCode];
                ++(bLive ? evaluation.nFailedLive : evaluation.nFailedFake);
            }
        }

    double dScore = 0.0, dFar = 0.0, dFrr = 0.0;
    if (bFar)
    {
        NeuralNet::QueryByFAR(dValue, dScore, dFar, dFrr);
        // The rate as the user wrote it: the shortest text that reads back
        // as the same double ("far 0.1", not "far 0.10000000000000001").
        char szRate[32];
        const std::to_chars_result end = std::to_chars(szRate, szRate + sizeof(szRate), dValue);
        evaluation.thresholdFrom = "far " + std::string(szRate, end.ptr);
    }
    else
    {
        dScore = dValue;
        evaluation.thresholdFrom = "given";
    }
    evaluation.dThreshold = dScore;
    NeuralNet::QueryByScore(dScore, dScore, evaluation.dLibraryFar, evaluation.dLibraryFrr);

    evaluation.apcer = Apcer(evaluation.scores.fake, evaluation.dThreshold);
    evaluation.bpcer = Bpcer(evaluation.scores.live, evaluation.dThreshold);
    evaluation.points = OperatingPoints(evaluation.scores);
    evaluation.eer = EqualErrorRate(evaluation.points);
    evaluation.bpcer20 = BpcerAtApcerOf(evaluation.scores, evaluation.points, 5);
    evaluation.bpcer100 = BpcerAtApcerOf(evaluation.scores, evaluation.points, 1);
    return evaluation;
}

std::string MetricsJson(const Evaluation& evaluation)
{
    using Json = nlohmann::ordered_json;
    auto optional = [](const std::optional<double>& value)
    { return value ? Json(*value) : Json(nullptr); };
    // The point above every score has no finite threshold: null.
    auto threshold = [](const std::optional<BpcerAtApcer>& value)
    { return value && std::isfinite(value->dThreshold) ? Json(value->dThreshold) : Json(nullptr); };
    Json failed = Json::object();
    for (const auto& [nCode, nCount] : evaluation.failed)
        failed[std::to_string(nCode)] = nCount;

    Json json;
    json["live"] = evaluation.nLive;
    json["fake"] = evaluation.nFake;
    json["unlabelled"] = evaluation.nUnlabelled;
    json["live_scored"] = evaluation.scores.live.size();
    json["fake_scored"] = evaluation.scores.fake.size();
    json["failed"] = failed;
    json["failed_live"] = evaluation.nFailedLive;
    json["failed_fake"] = evaluation.nFailedFake;
    json["threshold"] = evaluation.dThreshold;
    json["threshold_from"] = evaluation.thresholdFrom;
    json["apcer"] = optional(evaluation.apcer);
    json["bpcer"] = optional(evaluation.bpcer);
    json["eer"] = optional(evaluation.eer);
    json["bpcer20"] = evaluation.bpcer20 ? Json(evaluation.bpcer20->dBpcer) : Json(nullptr);
    json["bpcer20_threshold"] = threshold(evaluation.bpcer20);
    json["bpcer100"] = evaluation.bpcer100 ? Json(evaluation.bpcer100->dBpcer) : Json(nullptr);
    json["bpcer100_threshold"] = threshold(evaluation.bpcer100);
    json["library_far"] = evaluation.dLibraryFar;
    json["library_frr"] = evaluation.dLibraryFrr;
    json["sources"] = evaluation.sources;
    return json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

} // namespace SentivoTool
