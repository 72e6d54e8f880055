#include "common/forms/NumberField.h"
#include "guided/calibration/CalibrationPages.h"
#include "guided/calibration/CalibrationPicture.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace {
constexpr double farthest = 1e6; // millimetres
}

RealPage::RealPage(CalibrationDraft& draft, CalibrationPicture& picture)
    : CalibrationPage(draft, picture)
{
    auto* rows = new QVBoxLayout(this);
    for (const char* name : {"real1", "real2", "real3", "real4"})
        m_points.append(addRow(rows, name, true));
    m_length = addRow(rows, "length", false);
    m_pitch = addRow(rows, "pitch", false);
    m_origin = addRow(rows, "origin", true);
    m_turn = addRow(rows, "turn", false);
    for (const Row& row : {m_length, m_pitch})
        row.first->setMinimum(0);
    m_upwards = new QCheckBox(this);
    m_upwards->setObjectName(QStringLiteral("upwardsBox"));
    rows->addWidget(m_upwards);
    rows->addStretch(1);
    connect(m_upwards, &QCheckBox::toggled, this, &RealPage::take);
}

RealPage::Row RealPage::addRow(QVBoxLayout* rows, const char* name, bool two)
{
    Row row{addCaption(rows), new DecimalField(this), two ? new DecimalField(this) : nullptr};
    auto* line = new QHBoxLayout;
    rows->addLayout(line);
    const QString own = QLatin1String(name);
    row.first->setObjectName(own + (two ? QStringLiteral("X") : QStringLiteral("Edit")));
    if (two)
        row.second->setObjectName(own + QStringLiteral("Y"));
    for (DecimalField* field : {row.first, row.second}) {
        if (!field)
            continue;
        field->setMinimum(-farthest);
        field->setMaximum(farthest);
        line->addWidget(field);
        connect(field, &QLineEdit::textEdited, this, &RealPage::take);
    }
    return row;
}

QString RealPage::hint() const
{
    if (m_draft.method != CalibrationDraft::Method::Points)
        return m_draft.fourPoint ? tr("输入点距；要得到机器坐标，再输入首点的位置和行的方向。")
                                 : tr("输入标定板的点距，比例由所有点算出。");
    return m_draft.fourPoint ? tr("输入每个点的机器坐标，单位毫米。") : tr("输入两点的实际距离，单位毫米。");
}

QString RealPage::problem() const
{
    for (const Row& row : m_points + QVector<Row>{m_length, m_pitch, m_origin, m_turn}) {
        for (const DecimalField* field : {row.first, row.second}) {
            if (field && !field->isHidden() && !field->problem().isEmpty())
                return field->problem();
        }
    }
    return m_draft.problem();
}

void RealPage::show(const Row& row, bool shown)
{
    row.caption->setVisible(shown);
    row.first->setVisible(shown);
    if (row.second)
        row.second->setVisible(shown);
}

void RealPage::enter()
{
    const bool byHand = m_draft.method == CalibrationDraft::Method::Points;
    m_showing = true;
    for (int i = 0; i < 4; ++i) {
        m_points[i].first->setValue(m_draft.real[i].x());
        m_points[i].second->setValue(m_draft.real[i].y());
        show(m_points[i], byHand && m_draft.fourPoint);
    }
    m_length.first->setValue(m_draft.length);
    m_pitch.first->setValue(m_draft.board.pitch);
    m_origin.first->setValue(m_draft.boardOrigin.x());
    m_origin.second->setValue(m_draft.boardOrigin.y());
    m_turn.first->setValue(m_draft.boardTurn);
    m_upwards->setChecked(m_draft.yUpwards);
    m_showing = false;
    show(m_length, byHand && !m_draft.fourPoint);
    show(m_pitch, !byHand);
    show(m_origin, !byHand && m_draft.fourPoint);
    show(m_turn, !byHand && m_draft.fourPoint);
    m_upwards->setVisible(!byHand && m_draft.fourPoint);
    showPoints();
    DecimalField* first = byHand ? (m_draft.fourPoint ? m_points[0].first : m_length.first) : m_pitch.first;
    first->setFocus();
    first->selectAll();
}

void RealPage::take()
{
    if (m_showing)
        return;
    for (int i = 0; i < 4; ++i)
        m_draft.real[i] = {m_points[i].first->value(), m_points[i].second->value()};
    m_draft.length = m_length.first->value();
    m_draft.board.pitch = m_pitch.first->value();
    m_draft.boardOrigin = {m_origin.first->value(), m_origin.second->value()};
    m_draft.boardTurn = m_turn.first->value();
    m_draft.yUpwards = m_upwards->isChecked();
    emit changed();
}

void RealPage::retranslate()
{
    for (int i = 0; i < 4; ++i)
        m_points[i].caption->setText(tr("P%1 的机器坐标 X，Y（mm）").arg(i + 1));
    m_length.caption->setText(tr("P1 到 P2 的实际距离（mm）"));
    m_pitch.caption->setText(tr("点距（mm）"));
    m_origin.caption->setText(tr("首点的机器坐标 X，Y（mm）"));
    m_turn.caption->setText(tr("从机器 X 轴到标定板行的角度（°）"));
    m_upwards->setText(tr("机器 Y 轴在图像中向上"));
}
