#include "ModelProposer.h"

#include "finder/Finder.h"
#include "finder/ImageConversion.h"

#include <valvecell/IModelTeacher.h>

#include <QDebug>

#include <algorithm>
#include <exception>

namespace {

using Hints = IModelProposer::Hints;
using Proposal = IModelProposer::Proposal;

constexpr double smallestCrop = 0.5; // of the image's shorter side: a wheel needs as much around a click on its centre

QPointF asPoint(const cv::Point2d& point)
{
    return {point.x, point.y};
}

/// The part of the image whose middle is the clicked centre: the finder looks for the hub in the middle of an image.
cv::Rect around(const cv::Mat& gray, const std::optional<QPointF>& center)
{
    const cv::Rect whole(0, 0, gray.cols, gray.rows);
    if (!center)
        return whole;
    const int x = qRound(center->x());
    const int y = qRound(center->y());
    const int halfWidth = std::min(x, gray.cols - 1 - x);
    const int halfHeight = std::min(y, gray.rows - 1 - y);
    const cv::Rect crop(x - halfWidth, y - halfHeight, 2 * halfWidth + 1, 2 * halfHeight + 1);
    const int least = int(smallestCrop * std::min(gray.cols, gray.rows));
    return halfWidth > 0 && halfHeight > 0 && std::min(crop.width, crop.height) >= least ? crop : whole;
}

/// What the built-in model sees, in pixels of the whole image: the hub, and the best place for a hole even where it is
/// not sure of it.
void glance(const cv::Mat& gray, const Hints& hints, finder::Outline* hub, Proposal* seen)
{
    const cv::Rect part = around(gray, hints.center);
    const cv::Point2d corner(part.tl());
    finder::Finder finder;
    const finder::FindResult found = finder.find(gray(part), finder::autoModel());
    *hub = found.hub;
    hub->center += corner;
    seen->center = asPoint(hub->center);
    seen->rimRadius = hub->radius;
    if (found.found()) {
        seen->hole = asPoint(found.hole + corner);
        seen->holeRadius = found.holeRadius;
    } else if (!finder.trace().holes.empty()) {
        const finder::Outline outline = finder.trace().holes.front().outline();
        seen->hole = asPoint(outline.center + corner);
        seen->holeRadius = outline.radius;
    }
    if (hints.hole)
        seen->hole = *hints.hole;
}

/// How the proposed model answers the image it was made from.
void confirm(const cv::Mat& gray, Proposal* proposal)
{
    finder::HoleModel model;
    if (!finder::applyParameters(proposal->parameters, &model, &proposal->error))
        return;
    const finder::FindResult found = finder::Finder().find(gray, model);
    proposal->center = asPoint(found.hub.center);
    proposal->rimRadius = found.hub.radius;
    proposal->hole = asPoint(found.hole);
    proposal->holeRadius = found.holeRadius;
    proposal->angle = found.angle;
    proposal->score = found.score;
}

} // namespace

ModelProposer::ModelProposer(IModelTeacher* teacher)
    : m_teacher(teacher)
{
}

Proposal ModelProposer::proposeModel(const QImage& image, const Hints& hints)
{
    Proposal proposal;
    try {
        const finder::GrayImage source = finder::toGray(image);
        if (source.gray.empty()) {
            proposal.error = finder::resultTip(finder::FindError::BadImage);
            return proposal;
        }
        finder::Outline hub;
        glance(source.gray, hints, &hub, &proposal);
        if (!(hub.radius > 0)) {
            proposal.error = hints.center ? tr("在所点中心周围没有看到轮毂：请换一幅整个轮毂都在内的清晰图像")
                                          : tr("没有看到轮毂：请点击轮毂的中心");
            return proposal;
        }
        if (proposal.hole.isNull()) {
            proposal.error = tr("没有看到气门孔：请点击气门孔的中心");
            return proposal;
        }
        const QPointF rim = proposal.center + QPointF(hub.radiusAt(0), 0);
        proposal.parameters = m_teacher->propose(image, rim, proposal.hole, &proposal.error);
        if (!proposal.parameters.isEmpty())
            confirm(source.gray, &proposal);
        else if (!hints.hole)
            proposal.error = tr("%1；请点击气门孔的中心").arg(proposal.error);
    } catch (const std::exception& problem) {
        qWarning("the image cannot be taught from: %s", problem.what());
        proposal.error = finder::resultTip(finder::FindError::BadImage);
    }
    return proposal;
}
