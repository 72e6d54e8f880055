#include "panels/FailurePictures.h"

#include "common/ImageFile.h"
#include "common/LookColors.h"
#include "db/PartTable.h"
#include "panels/OutcomeColors.h"
#include "panels/PartWords.h"
#include "panels/StationTally.h"
#include "panels/TextFit.h"
#include "results/parts/PartTexts.h"

#include <QHelpEvent>
#include <QPainter>
#include <QTimer>
#include <QToolTip>

#include <algorithm>

namespace {

constexpr QSize smallBox(320, 240);
constexpr int leastWidth = 92;
constexpr int mostWidth = 220;
constexpr int leastHeight = 56;
constexpr int cellGap = 6;
constexpr int captionHeight = 16;
constexpr int writingMs = 10000;
constexpr int retryMs = 1000;
constexpr int attemptsWhileWritten = 5;

} // namespace

FailurePictures::FailurePictures(QWidget* parent)
    : QWidget(parent)
    , m_background(Background::AtEnd::Wait)
{
    setCursor(Qt::PointingHandCursor);
}

void FailurePictures::take(qint64 wall, const QImage& small)
{
    m_wanted.removeAll(wall);
    m_small.insert(wall, small);
    update();
    emit loaded();
}

/// The file of a part that has just ended is still being written.
void FailurePictures::read(const PartRow& part, int attempts)
{
    m_background.run([path = m_home + part.picture()] { return ImageFile::readScaled(path, smallBox); },
                     [this, part, attempts](const QImage& small) {
                         if (small.isNull() && attempts > 1)
                             QTimer::singleShot(retryMs, this, [this, part, attempts] { read(part, attempts - 1); });
                         else
                             take(part.wall, small);
                     });
}

void FailurePictures::keepPicture(const PartRow& part, const QImage& picture)
{
    if (m_wanted.contains(part.wall) || m_small.contains(part.wall))
        return;
    m_wanted.append(part.wall);
    m_background.run([picture] { return picture.scaled(smallBox, Qt::KeepAspectRatio, Qt::SmoothTransformation); },
                     [this, wall = part.wall](const QImage& small) { take(wall, small); });
}

void FailurePictures::setParts(const QVector<PartRow>& parts)
{
    m_parts = parts;
    std::reverse(m_parts.begin(), m_parts.end());
    QHash<qint64, QImage> known;
    for (const PartRow& part : qAsConst(m_parts)) {
        const auto own = m_small.constFind(part.wall);
        if (own != m_small.constEnd()) {
            known.insert(part.wall, *own);
        } else if (!m_wanted.contains(part.wall)) {
            m_wanted.append(part.wall);
            const bool young = part.wall > PartTable::wallNow() - writingMs;
            read(part, young ? attemptsWhileWritten : 1);
        }
    }
    m_small = known;
    update();
}

/// As many columns and rows as cells of at least the least size fit, which are not more than the parts.
QSize FailurePictures::grid() const
{
    const int columns = qMax(1, (width() + cellGap) / (leastWidth + cellGap));
    const int rows = qMax(1, (height() + cellGap) / (leastHeight + captionHeight + cellGap));
    const int all = StationTally::failuresKept;
    const int used = qMin(rows, (all + columns - 1) / columns);
    return {qMin(columns, (all + used - 1) / used), used};
}

int FailurePictures::shown() const
{
    return qMin(m_parts.size(), grid().width() * grid().height());
}

QRect FailurePictures::cellOf(int place) const
{
    const QSize cells = grid();
    const int cellWidth = qMin(mostWidth, (width() + cellGap) / cells.width() - cellGap);
    const int cellHeight = qMin((height() + cellGap) / cells.height() - cellGap, cellWidth * 4 / 5 + captionHeight);
    return {(place % cells.width()) * (cellWidth + cellGap), (place / cells.width()) * (cellHeight + cellGap),
            cellWidth, cellHeight};
}

const PartRow* FailurePictures::partAt(const QPoint& position) const
{
    for (int i = 0; i < shown(); ++i) {
        if (cellOf(i).contains(position))
            return &m_parts.at(i);
    }
    return nullptr;
}

void FailurePictures::mouseReleaseEvent(QMouseEvent* event)
{
    const PartRow* part = partAt(event->pos());
    if (part && event->button() == Qt::LeftButton)
        emit partWanted(part->wall);
}

bool FailurePictures::event(QEvent* event)
{
    if (event->type() != QEvent::ToolTip)
        return QWidget::event(event);
    auto* help = static_cast<QHelpEvent*>(event);
    const PartRow* part = partAt(help->pos());
    QToolTip::showText(help->globalPos(), part ? PartWords::tip(*part) : QString(), this);
    return true;
}

void FailurePictures::paintCell(QPainter& painter, const QRect& cell, const PartRow& part) const
{
    const LookColors& look = lookColors();
    const LampColors lamp = lampColors(lampOf(part.part.outcome));
    const QRect picture = cell.adjusted(0, 0, 0, -captionHeight);
    painter.fillRect(picture, look.window);
    painter.setPen(look.faint);
    const QImage small = m_small.value(part.wall);
    if (!small.isNull()) {
        QRect place(QPoint(), small.size().scaled(picture.size(), Qt::KeepAspectRatio));
        place.moveCenter(picture.center());
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawImage(place, small);
    } else if (isGone(part.wall)) {
        drawFitted(painter, picture.adjusted(4, 0, -4, 0), Qt::AlignCenter, tr("图像已被清理"), 13, 10);
    }
    const QRect foot(cell.left(), cell.bottom() - captionHeight + 1, cell.width(), captionHeight);
    painter.fillRect(foot, lamp.ground);
    painter.setPen(lamp.ink);
    painter.setFont(font());
    const QString text = PartTexts::clock(part.wall) + QStringLiteral("  ") + PartTexts::reason(part);
    drawFitted(painter, foot.adjusted(4, 0, -4, 0), Qt::AlignVCenter | Qt::AlignLeft, text, 12, 11);
}

void FailurePictures::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    for (int i = 0; i < shown(); ++i)
        paintCell(painter, cellOf(i), m_parts.at(i));
    if (!m_parts.isEmpty())
        return;
    painter.setPen(lookColors().faint);
    drawFitted(painter, rect().adjusted(4, 0, -4, 0), Qt::AlignCenter, tr("没有未找到的工件"), 14, 11);
}
