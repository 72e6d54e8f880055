#include "results/parts/PartFilterBar.h"

#include "common/forms/DialogForm.h"
#include "db/PartTable.h"
#include "results/parts/PartTexts.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QEvent>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QTimer>
#include <QToolButton>

namespace {

constexpr int settleMs = 250;

QDateTimeEdit* timeField(QWidget* parent)
{
    auto* field = new QDateTimeEdit(parent);
    field->setDisplayFormat(QStringLiteral("yyyy-MM-dd hh:mm"));
    field->setCalendarPopup(true);
    return field;
}

QDateTime midnight(int daysAgo)
{
    return QDateTime(QDate::currentDate().addDays(-daysAgo), QTime(0, 0));
}

} // namespace

PartFilterBar::PartFilterBar(QWidget* parent)
    : QWidget(parent)
    , m_rows(new QBoxLayout(QBoxLayout::LeftToRight, this))
    , m_where(new QWidget(this))
    , m_what(new QWidget(this))
    , m_earlier(new QToolButton(this))
    , m_period(new QComboBox(this))
    , m_later(new QToolButton(this))
    , m_from(timeField(this))
    , m_to(timeField(this))
    , m_station(new QComboBox(this))
    , m_model(new QComboBox(this))
    , m_marked(new QCheckBox(this))
    , m_text(new QLineEdit(this))
    , m_settled(new QTimer(this))
{
    m_rows->setContentsMargins(0, 0, 0, 0);
    m_rows->addWidget(m_where);
    m_rows->addWidget(m_what, 1);
    auto* where = new QHBoxLayout(m_where);
    auto* what = new QHBoxLayout(m_what);
    for (QHBoxLayout* row : {where, what})
        row->setContentsMargins(0, 0, 0, 0);
    for (int i = 0; i < 3; ++i) {
        m_outcomes[i] = new QCheckBox(this);
        m_outcomes[i]->setChecked(true);
    }
    m_model->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_model->setMinimumContentsLength(10);
    m_text->setClearButtonEnabled(true);
    m_text->setMinimumWidth(90);
    m_earlier->setArrowType(Qt::LeftArrow);
    m_later->setArrowType(Qt::RightArrow);
    for (QWidget* each : {static_cast<QWidget*>(m_earlier), static_cast<QWidget*>(m_period),
                          static_cast<QWidget*>(m_later), static_cast<QWidget*>(m_from), static_cast<QWidget*>(m_to),
                          static_cast<QWidget*>(m_station), static_cast<QWidget*>(m_model)})
        where->addWidget(each);
    where->addStretch();
    for (QAbstractButton* each : {m_outcomes[0], m_outcomes[1], m_outcomes[2], m_marked})
        what->addWidget(each);
    what->addWidget(m_text, 1);
    m_settled->setSingleShot(true);
    m_settled->setInterval(settleMs);
    retranslate();
    showPeriod();
    DialogForm::prepareFields(this);

    connect(m_earlier, &QToolButton::clicked, this, [this] { step(-1); });
    connect(m_later, &QToolButton::clicked, this, [this] { step(1); });
    const auto settle = [this] { m_settled->start(); };
    connect(m_settled, &QTimer::timeout, this, &PartFilterBar::changed);
    connect(m_period, qOverload<int>(&QComboBox::currentIndexChanged), this, &PartFilterBar::showPeriod);
    for (QComboBox* box : {m_period, m_station, m_model})
        connect(box, qOverload<int>(&QComboBox::currentIndexChanged), this, settle);
    for (QDateTimeEdit* field : {m_from, m_to})
        connect(field, &QDateTimeEdit::dateTimeChanged, this, settle);
    for (QAbstractButton* button : {m_outcomes[0], m_outcomes[1], m_outcomes[2], m_marked})
        connect(button, &QAbstractButton::toggled, this, settle);
    connect(m_text, &QLineEdit::textChanged, this, settle);
}

PartFilter PartFilterBar::filter() const
{
    PartFilter filter;
    const qint64 now = PartTable::wallNow();
    const Shifts::Shift shift = m_shifts.at(now);
    const auto span = [&filter](qint64 from, qint64 to) {
        filter.from = PartTable::timeOf(from);
        filter.to = PartTable::timeOf(to);
    };
    switch (Period(m_period->currentIndex())) {
    case Today:
        filter.from = midnight(0);
        break;
    case Yesterday:
        filter.from = midnight(1);
        filter.to = midnight(0);
        break;
    case ThisShift:
        span(shift.begin, shift.end);
        break;
    case LastShift:
        span(m_shifts.previous(shift).begin, shift.begin);
        break;
    case Week:
        filter.from = midnight(6);
        break;
    case Month:
        filter.from = midnight(29);
        break;
    case All:
        break;
    case Own:
        filter.from = m_from->dateTime();
        filter.to = m_to->dateTime();
        break;
    }
    if (endsNow()) // parts of a clock that was far ahead are none of these days
        filter.to = midnight(-2);
    filter.station = m_station->currentIndex();
    filter.model = m_model->currentIndex() > 0 ? m_model->currentText() : QString();
    filter.found = m_outcomes[int(PartOutcome::Found)]->isChecked();
    filter.notFound = m_outcomes[int(PartOutcome::NotFound)]->isChecked();
    filter.refused = m_outcomes[int(PartOutcome::Refused)]->isChecked();
    filter.markedOnly = m_marked->isChecked();
    filter.text = m_text->text().trimmed();
    return filter;
}

bool PartFilterBar::endsNow() const
{
    const int period = m_period->currentIndex();
    return period == Today || period == Week || period == Month;
}

QString PartFilterBar::problem() const
{
    const PartFilter own = filter();
    if (own.from.isValid() && own.to.isValid() && own.from >= own.to)
        return tr("起始时间不早于结束时间");
    if (!own.found && !own.notFound && !own.refused)
        return tr("请至少选择一种结果");
    return {};
}

void PartFilterBar::setFilter(Period period, int station, bool found, bool notFound, bool refused)
{
    m_period->setCurrentIndex(period);
    m_station->setCurrentIndex(station);
    m_model->setCurrentIndex(0);
    m_outcomes[int(PartOutcome::Found)]->setChecked(found);
    m_outcomes[int(PartOutcome::NotFound)]->setChecked(notFound);
    m_outcomes[int(PartOutcome::Refused)]->setChecked(refused);
    m_marked->setChecked(false);
    m_text->clear();
    m_settled->start();
}

void PartFilterBar::setTimes(const QDateTime& from, const QDateTime& to)
{
    m_from->setDateTime(from);
    m_to->setDateTime(to);
    m_period->setCurrentIndex(Own);
    m_settled->start();
}

void PartFilterBar::setShifts(const Shifts& shifts)
{
    if (shifts.toText() == m_shifts.toText())
        return;
    m_shifts = shifts;
    if (m_period->currentIndex() == ThisShift || m_period->currentIndex() == LastShift)
        m_settled->start();
}

void PartFilterBar::find()
{
    m_text->setFocus();
    m_text->selectAll();
}

void PartFilterBar::setModels(const QStringList& models)
{
    const QString chosen = m_model->currentIndex() > 0 ? m_model->currentText() : QString();
    const QSignalBlocker quiet(m_model);
    while (m_model->count() > 1)
        m_model->removeItem(1);
    m_model->addItems(models);
    m_model->setCurrentIndex(qMax(0, m_model->findText(chosen)));
}

/// The fields tell the times of a period, and can be changed for one's own alone.
void PartFilterBar::showPeriod()
{
    const bool own = m_period->currentIndex() == Own;
    for (QDateTimeEdit* field : {m_from, m_to})
        field->setVisible(own);
    for (QToolButton* button : {m_earlier, m_later})
        button->setEnabled(m_period->currentIndex() != All);
    arrange();
    if (own && m_from->dateTime() >= m_to->dateTime()) {
        m_from->setDateTime(midnight(0));
        m_to->setDateTime(midnight(-1));
    }
}

void PartFilterBar::step(int direction)
{
    const PartFilter shown = filter();
    const qint64 begin = PartTable::wallOf(shown.from);
    const qint64 end = PartTable::wallOf(endsNow() ? midnight(-1) : shown.to);
    const Shifts::Shift shift = m_shifts.at(begin);
    if (m_shifts.count() > 1 && shift.begin == begin && shift.end == end) {
        const Shifts::Shift other = direction < 0 ? m_shifts.previous(shift) : m_shifts.next(shift);
        return showSpan(other.begin, other.end);
    }
    showSpan(begin + direction * (end - begin), end + direction * (end - begin));
}

void PartFilterBar::showSpan(qint64 begin, qint64 end)
{
    const Shifts::Shift now = m_shifts.at(PartTable::wallNow());
    const Shifts::Shift last = m_shifts.previous(now);
    const qint64 days[] = {PartTable::wallOf(midnight(1)), PartTable::wallOf(midnight(0)),
                           PartTable::wallOf(midnight(-1))};
    const std::pair<Period, QPair<qint64, qint64>> known[] = {{Today, {days[1], days[2]}},
                                                              {Yesterday, {days[0], days[1]}},
                                                              {ThisShift, {now.begin, now.end}},
                                                              {LastShift, {last.begin, last.end}}};
    for (const auto& [period, span] : known) {
        if (span == qMakePair(begin, end))
            return m_period->setCurrentIndex(period);
    }
    setTimes(PartTable::timeOf(begin), PartTable::timeOf(end));
}

QSize PartFilterBar::minimumSizeHint() const
{
    const QSize where = m_where->minimumSizeHint();
    const QSize what = m_what->minimumSizeHint();
    const bool two = m_rows->direction() == QBoxLayout::TopToBottom;
    const int height = two ? where.height() + m_rows->spacing() + what.height() : qMax(where.height(), what.height());
    return {qMax(where.width(), what.width()), height};
}

/// In one row where there is room, otherwise in two.
void PartFilterBar::arrange()
{
    const int wanted = m_where->sizeHint().width() + m_rows->spacing() + m_what->sizeHint().width();
    m_rows->setDirection(wanted <= width() ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom);
    updateGeometry();
}

void PartFilterBar::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    arrange();
}

void PartFilterBar::retranslate()
{
    const auto fill = [](QComboBox* box, const QStringList& texts) {
        const QSignalBlocker quiet(box);
        while (box->count() < texts.size())
            box->addItem({});
        for (int i = 0; i < texts.size(); ++i)
            box->setItemText(i, texts.at(i));
    };
    fill(m_period,
         {tr("今天"), tr("昨天"), tr("本班"), tr("上一班"), tr("近7天"), tr("近30天"), tr("全部"), tr("自定义")});
    fill(m_station, {tr("两个工位"), PartTexts::station(1), PartTexts::station(2)});
    fill(m_model, {tr("所有型号")});
    for (int i = 0; i < 3; ++i)
        m_outcomes[i]->setText(PartTexts::outcome(PartOutcome(i)));
    m_marked->setText(tr("已标记"));
    m_earlier->setToolTip(tr("更早：前一天、前一班"));
    m_later->setToolTip(tr("更晚：后一天、后一班"));
    for (QToolButton* button : {m_earlier, m_later})
        button->setAccessibleName(button->toolTip());
    m_text->setPlaceholderText(tr("型号、原因或用户"));
    arrange();
}

void PartFilterBar::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LanguageChange)
        retranslate();
}
