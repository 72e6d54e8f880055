#pragma once

/// Keys of the maps that travel to and from the engine. Values are listed with the type that the QVariant holds.
namespace ResultKeys {

constexpr const char* originImage = "originImage";   ///< QImage, the captured image; also the key of the task's input
constexpr const char* taskCali = "taskCali";         ///< bool, the model that ran has been taught
constexpr const char* solutionName = "solutionName"; ///< QString, the solution that ran; decides the station
constexpr const char* taskName = "taskName";         ///< QString, the task's (model's) name; starts every log line
constexpr const char* taskTime = "tasktime";         ///< double, run time of the task in milliseconds
constexpr const char* algoResult = "AlgoResult"; ///< QVariantMap with the keys below; missing when no task could run

constexpr const char* angle = "angle";             ///< double, degrees; 361 when nothing was found
constexpr const char* error = "error";             ///< int, error code, 0 when a hole was found
constexpr const char* score = "score";             ///< double, match score from 0 to 1
constexpr const char* image = "image";             ///< QImage with the drawing of the result
constexpr const char* resultTip = "resultTip";     ///< QString, short result text for the operator
constexpr const char* centerPoint = "centerPoint"; ///< QPointF, found centre; middle of the top-left pixel is (0, 0)

/// Evidence kept with an algorithm result: what shows that the view drifts long before a hole is missed. An engine may
/// leave these out.
constexpr const char* edgePoints = "edgePoints";       ///< int, points that the hole's outline rests on
constexpr const char* residual = "residual";           ///< double, their root mean square distance from it, pixels
constexpr const char* runnerUpScore = "runnerUpScore"; ///< double, score of the second best candidate
constexpr const char* hubCenter = "hubCenter";         ///< QPointF, hub centre in pixels
constexpr const char* hubRadius = "hubRadius";         ///< double, outer edge of the rim, pixels
constexpr const char* holeRadius = "holeRadius";       ///< double, pixels
/// QPointF, hole's centre in pixels, also where a solution answers with the hub's; missing when nothing was found
constexpr const char* holeCenter = "holeCenter";

} // namespace ResultKeys
