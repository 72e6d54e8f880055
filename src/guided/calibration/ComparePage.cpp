#include "guided/calibration/CalibrationPages.h"
#include "guided/calibration/CalibrationPicture.h"

#include <QHeaderView>
#include <QLabel>
#include <QTableWidget>
#include <QVBoxLayout>

namespace {

QString placeText(const QPointF& place)
{
    return QStringLiteral("%1\n%2").arg(place.x(), 0, 'f', 3).arg(place.y(), 0, 'f', 3);
}

} // namespace

ComparePage::ComparePage(CalibrationDraft& draft, CalibrationPicture& picture, std::function<Pair()> calibrations)
    : CalibrationPage(draft, picture)
    , m_calibrations(std::move(calibrations))
{
    auto* rows = new QVBoxLayout(this);
    m_table = new QTableWidget(0, 3, this);
    m_table->setObjectName(QStringLiteral("compareTable"));
    m_table->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    m_table->verticalHeader()->setDefaultSectionSize(56);
    m_table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_table->setTabKeyNavigation(false);
    rows->addWidget(m_table, 1);
    m_note = addCaption(rows);
    connect(&m_picture, &CalibrationPicture::clicked, this, &ComparePage::moveTo);
    connect(&m_picture, &CalibrationPicture::markerMoved, this, [this](int, const QPointF& point) {
        if (isVisible()) {
            m_place = point;
            refresh();
        }
    });
}

QString ComparePage::hint() const
{
    return tr("同一位置按现在的标定和新标定各得到什么坐标；在图像中点击可以比较别处。无误后按“应用”，随时可以撤销。");
}

void ComparePage::setLastPart(const QString& name, const std::optional<QPointF>& pixel)
{
    m_partName = name;
    m_part = pixel;
    if (isVisible())
        refresh();
}

void ComparePage::enter()
{
    if (!m_placed || !QRectF(m_draft.picture.rect()).contains(m_place))
        m_place = QRectF(m_draft.picture.rect()).center();
    m_placed = true;
    m_picture.setSnapping(true);
    m_picture.setBoard({}, 1);
    m_picture.setMarkers({m_place}, tr("测试点"));
    refresh();
}

void ComparePage::moveTo(const QPointF& point)
{
    if (!isVisible())
        return;
    m_place = point;
    m_picture.setMarkers({m_place}, tr("测试点"));
    refresh();
}

void ComparePage::addPlace(const QString& name, const QPointF& pixel, const Pair& pair)
{
    const int row = m_table->rowCount();
    m_table->insertRow(row);
    m_table->setVerticalHeaderItem(row, new QTableWidgetItem(name));
    const QPointF after = pair.after.toMachine(pixel);
    const bool known = pair.before.problem().isEmpty();
    const QPointF before = pair.before.toMachine(pixel);
    m_table->setItem(row, 0, new QTableWidgetItem(known ? placeText(before) : tr("无标定")));
    m_table->setItem(row, 1, new QTableWidgetItem(placeText(after)));
    m_table->setItem(row, 2, new QTableWidgetItem(known ? placeText(after - before) : QString()));
}

void ComparePage::refresh()
{
    const Pair pair = m_calibrations();
    m_table->setRowCount(0);
    if (m_part)
        addPlace(tr("上一个零件"), *m_part, pair);
    addPlace(tr("测试点"), m_place, pair);
    m_note->setText(m_part ? tr("上一个零件：%1").arg(m_partName) : tr("此工位还没有可比较的零件记录"));
}

void ComparePage::retranslate()
{
    m_table->setHorizontalHeaderLabels({tr("现在 X/Y"), tr("新 X/Y"), tr("差 mm")});
    if (isVisible())
        refresh();
}
