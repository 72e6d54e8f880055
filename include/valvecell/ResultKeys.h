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
constexpr const char* holeRadius = "holeRadius";       ///< double, the bore's upper edge, pixels
/// QPointF, hole's centre in pixels, also where a solution answers with the hub's; missing when nothing was found
constexpr const char* holeCenter = "holeCenter";
/// How the hole's centre was measured: by a fit to all pixels of its mouth, or where that was not possible by its
/// outline.
constexpr const char* mouthPixels =
    "mouthPixels"; ///< int, pixels that the mouth's fit rests on; 0: the outline is used
constexpr const char* mouthResidual = "mouthResidual"; ///< double, gray levels that the fit leaves, standard deviation
constexpr const char* mouthSpread = "mouthSpread";     ///< double, expected standard deviation of the centre, pixels
constexpr const char* mouthBlur = "mouthBlur";         ///< double, standard deviation of the lens blur, pixels
constexpr const char* mouthFilled = "mouthFilled";     ///< bool, a valve or something else stands in the hole
constexpr const char* mouthEdge = "mouthEdge";         ///< int, 0: plain, 1: chamfer, 2: counterbore
constexpr const char* outerRadius = "outerRadius";     ///< double, outer edge of chamfer or counterbore, pixels

} // namespace ResultKeys
