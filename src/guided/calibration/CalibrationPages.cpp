#include "guided/calibration/CalibrationPages.h"

#include "guided/calibration/CalibrationPicture.h"

#include <QLabel>
#include <QVBoxLayout>

CalibrationPage::CalibrationPage(CalibrationDraft& draft, CalibrationPicture& picture)
    : m_draft(draft)
    , m_picture(picture)
{
}

QLabel* CalibrationPage::addCaption(QVBoxLayout* rows)
{
    auto* label = new QLabel(this);
    label->setWordWrap(true);
    rows->addWidget(label);
    return label;
}

void CalibrationPage::showPoints()
{
    const bool byHand = m_draft.method == CalibrationDraft::Method::Points;
    QVector<QPointF> markers;
    for (int i = 0; byHand && i < m_draft.markers(); ++i)
        markers.append(m_draft.pixels[i]);
    m_picture.setMarkers(markers);
    m_picture.setBoard(byHand ? QVector<QPointF>() : m_draft.found, m_draft.board.columns);
}
