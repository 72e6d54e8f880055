#include "dialogs/cameras/HistogramView.h"

#include "common/LookColors.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {
constexpr QSize usualSize(256, 84);
constexpr int endWidth = 5;           ///< of the mark for what is overexposed
constexpr double worthAMark = 0.0005; ///< a few glints harm nothing
} // namespace

HistogramView::HistogramView(QWidget* parent)
    : QWidget(parent)
{
    setMinimumSize(120, 60);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
}

void HistogramView::setMeasures(const PictureMeasures& measures)
{
    m_measures = measures;
    update();
}

QSize HistogramView::sizeHint() const
{
    return usualSize;
}

void HistogramView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const LookColors& look = lookColors();
    const QRectF ground = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    painter.setPen(look.border);
    painter.setBrush(look.field);
    painter.drawRect(ground);
    const auto& shares = m_measures.histogram;
    const double highest = *std::max_element(shares.begin(), shares.end());
    const QRectF room = ground.adjusted(1, 2, -1 - endWidth, 0);
    const double width = room.width() / double(shares.size());
    for (size_t level = 0; level < shares.size() && highest > 0; ++level) {
        // By the root, so that a dark background does not press all the rest to the floor.
        const double height = room.height() * std::sqrt(shares[level] / highest);
        painter.fillRect(QRectF(room.left() + double(level) * width, room.bottom() - height, width + 0.5, height),
                         look.accent);
    }
    if (m_measures.overexposed >= worthAMark)
        painter.fillRect(QRectF(room.right(), ground.top() + 1, endWidth, ground.height() - 1), look.bad.ink);
}
