#include "guided/teaching/TeachingPicture.h"

#include "common/TaskResult.h"
#include "viewer/ResultOverlay.h"
#include "viewer/ksImgViewer.h"

#include <QVBoxLayout>

TeachingPicture::TeachingPicture(QWidget* parent)
    : QWidget(parent)
    , m_viewer(new ksImgViewer(this))
{
    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins({});
    rows->addWidget(m_viewer);
    m_viewer->setObjectName(QStringLiteral("picture"));
    m_viewer->setMinimumSize(320, 240);
    connect(m_viewer, &ksImgViewer::pixelClicked, this, [this](const QPoint& pixel) { emit clicked(pixel); });
}

void TeachingPicture::setPicture(const QImage& picture)
{
    m_viewer->setImage(picture);
    m_viewer->fitImage();
}

void TeachingPicture::showProposal(const IModelProposer::Proposal& proposal)
{
    m_viewer->setImage(m_viewer->image()); // takes away what was drawn
    if (proposal.rimRadius > 0)
        m_viewer->showResult({proposal.hole, proposal.holeRadius, proposal.center, proposal.rimRadius, proposal.angle});
}

void TeachingPicture::showResult(const QImage& picture, const TaskResult& result)
{
    setPicture(picture);
    if (result.found)
        m_viewer->showResult({result.hole, result.holeRadius, result.hubCenter, result.hubRadius, result.angle});
}
