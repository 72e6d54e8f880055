#include "dialogs/calibration/CalibrationFit.h"
#include "guided/calibration/CalibrationPages.h"

#include <QHeaderView>
#include <QLabel>
#include <QTableWidget>
#include <QVBoxLayout>

#include <cmath>
#include <numeric>

namespace {

constexpr int shownResiduals = 8; // of a board: the worst

QString millimetres(double value)
{
    return QString::number(std::abs(value) < 0.0005 ? 0 : value, 'f', 3); // never "-0.000"
}

} // namespace

ResidualPage::ResidualPage(CalibrationDraft& draft, CalibrationPicture& picture)
    : CalibrationPage(draft, picture)
{
    auto* rows = new QVBoxLayout(this);
    m_table = new QTableWidget(0, 3, this);
    m_table->setObjectName(QStringLiteral("residualTable"));
    m_table->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    m_table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_table->setTabKeyNavigation(false);
    rows->addWidget(m_table, 1);
    m_facts = addCaption(rows);
    m_facts->setObjectName(QStringLiteral("factsLabel"));
}

QString ResidualPage::hint() const
{
    return tr("残差是标定与各点实际坐标之差，应小于所需的精度；最大的点若明显大于其他点，请回去检查它。");
}

void ResidualPage::enter()
{
    showPoints();
    const auto left = m_draft.residuals();
    m_table->setRowCount(0);
    if (!left)
        return m_facts->clear();
    QVector<int> order(left->each.size());
    std::iota(order.begin(), order.end(), 0);
    const auto size = [&](int i) { return std::hypot(left->each[i].x(), left->each[i].y()); };
    if (m_draft.method != CalibrationDraft::Method::Points) {
        std::stable_sort(order.begin(), order.end(), [&](int a, int b) { return size(a) > size(b); });
        order = order.mid(0, shownResiduals);
    }
    m_table->setRowCount(order.size());
    QStringList names;
    for (int row = 0; row < order.size(); ++row) {
        const int i = order[row];
        names << (m_draft.method == CalibrationDraft::Method::Points
                      ? QStringLiteral("P%1").arg(i + 1)
                      : tr("行%1列%2").arg(i / m_draft.board.columns + 1).arg(i % m_draft.board.columns + 1));
        int column = 0;
        for (const double value : {left->each[i].x(), left->each[i].y(), size(i)})
            m_table->setItem(row, column++, new QTableWidgetItem(millimetres(value)));
    }
    m_table->setVerticalHeaderLabels(names);
    retranslate();
}

void ResidualPage::retranslate()
{
    m_table->setHorizontalHeaderLabels({tr("X（mm）"), tr("Y（mm）"), tr("距离（mm）")});
    const auto left = m_draft.residuals();
    const auto map = m_draft.map();
    if (!left || !map)
        return;
    const Calibration own = Calibration::fourPoint(*map);
    QStringList facts{
        tr("残差：均方根 %1 mm，最大 %2 mm").arg(millimetres(left->rms), millimetres(left->largest)),
        tr("比例：X %1，Y %2 mm/像素").arg(FieldNumber::text(own.mmPerPixelX()), FieldNumber::text(own.mmPerPixelY()))};
    const auto lens = m_draft.lens();
    const auto corner = m_draft.lensAtCorner();
    if (lens && corner)
        facts << tr("镜头畸变：在图像角上 %1 像素，相当于 %2 mm（%3）")
                     .arg(lens->atCorner(), 0, 'f', 1)
                     .arg(*corner, 0, 'f', 2)
                     .arg(lens->strength > 0 ? tr("桶形") : tr("枕形"));
    else
        facts << tr("镜头畸变：用标定板才能测出");
    m_facts->setText(facts.join(QLatin1Char('\n')));
}
