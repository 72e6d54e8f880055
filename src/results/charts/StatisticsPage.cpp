#include "results/charts/StatisticsPage.h"

#include "common/forms/DialogForm.h"
#include "common/forms/InlineMessage.h"
#include "db/PartTable.h"
#include "platform/System.h"
#include "results/charts/ResultPlot.h"
#include "results/data/PartReader.h"
#include "results/data/ToleranceStore.h"
#include "results/export/forms/ExportBar.h"
#include "results/export/forms/ExportMenus.h"
#include "results/parts/PartFilterBar.h"
#include "results/parts/PartTexts.h"

#include <QComboBox>
#include <QDoubleValidator>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QTimer>

#include <cmath>

namespace {

/// A chart that comes sooner needs no word.
constexpr int msUntilSaid = 400;

constexpr int kinds = Charts::Failures + 1;
constexpr int mostMarks = 2000;

/// The audit lines that a chart marks, by the beginnings of their keys.
QStringList markedKeys()
{
    return {QStringLiteral("Station"),         QStringLiteral("station1_4p"),    QStringLiteral("station2_4p"),
            QStringLiteral("station_xytrans"), QStringLiteral("use4pointstand"), QStringLiteral("model")};
}

QLineEdit* limitField(QWidget* parent)
{
    auto* field = new QLineEdit(parent);
    auto* validator = new QDoubleValidator(field);
    validator->setLocale(QLocale::c());
    field->setValidator(validator);
    field->setInputMethodHints(Qt::ImhFormattedNumbersOnly);
    field->setMaximumWidth(90);
    return field;
}

double limitOf(const QLineEdit* field)
{
    bool good = false;
    const double limit = field->text().toDouble(&good);
    return good ? limit : qQNaN();
}

void fill(QComboBox* box, const QStringList& texts)
{
    const QSignalBlocker quiet(box);
    while (box->count() < texts.size())
        box->addItem({});
    for (int i = 0; i < texts.size(); ++i)
        box->setItemText(i, texts.at(i));
}

} // namespace

struct StatisticsPage::Read
{
    Charts::Answer answer;
    QVector<LogRow> marks;
    QStringList models;
    Statistics::Tally tally;
    QString error;
};

StatisticsPage::StatisticsPage(QWidget* parent)
    : QWidget(parent)
    , m_filter(new PartFilterBar(this))
    , m_kind(new QComboBox(this))
    , m_value(new QComboBox(this))
    , m_span(new QComboBox(this))
    , m_limits(new QLabel(this))
    , m_least(limitField(this))
    , m_most(limitField(this))
    , m_message(new InlineMessage(this))
    , m_plot(new ResultPlot(this))
    , m_lower(new ResultPlot(this))
    , m_summary(new QLabel(this))
    , m_exports(new ExportBar(this))
    , m_background(Background::AtEnd::Wait)
{
    auto* fields = new QHBoxLayout;
    for (QWidget* field :
         {static_cast<QWidget*>(m_kind), static_cast<QWidget*>(m_value), static_cast<QWidget*>(m_span),
          static_cast<QWidget*>(m_limits), static_cast<QWidget*>(m_least), static_cast<QWidget*>(m_most)})
        fields->addWidget(field);
    fields->addStretch();
    auto* column = new QVBoxLayout(this);
    column->addWidget(m_filter);
    column->addLayout(fields);
    column->addWidget(m_message);
    column->addWidget(m_plot, 3);
    column->addWidget(m_lower, 2);
    column->addWidget(m_summary);
    m_summary->setWordWrap(true);
    m_plot->hide();
    m_lower->hide();
    column->addStretch();
    column->addWidget(m_exports);
    ExportMenus::addChart(m_exports, m_plot, [this] { return m_answer; });
    m_message->sayOrHide(Tone::Plain, {});
    DialogForm::prepareFields(this);
    retranslate();

    connect(m_filter, &PartFilterBar::changed, this, [this] {
        loadTolerance();
        ask();
    });
    for (QComboBox* box : {m_kind, m_value, m_span})
        connect(box, qOverload<int>(&QComboBox::currentIndexChanged), this, [this] {
            loadTolerance();
            ask();
        });
    for (QLineEdit* field : {m_least, m_most})
        connect(field, &QLineEdit::editingFinished, this, &StatisticsPage::storeTolerance);
    for (ResultPlot* plot : {m_plot, m_lower})
        connect(plot, &ResultPlot::partPicked, this, &StatisticsPage::partWanted);
    connect(m_plot, &ResultPlot::placePicked, this, &StatisticsPage::onPlacePicked);
}

StatisticsPage::~StatisticsPage()
{
    if (m_goOn)
        *m_goOn = false;
}

void StatisticsPage::setHome(const QString& home)
{
    m_home = home;
}

void StatisticsPage::find()
{
    m_filter->find();
}

void StatisticsPage::setShifts(const Shifts& shifts)
{
    m_shifts = shifts;
    m_filter->setShifts(shifts);
}

void StatisticsPage::choose(Charts::Kind kind)
{
    m_kind->setCurrentIndex(kind);
}

void StatisticsPage::refresh()
{
    loadTolerance();
    ask();
}

Statistics::Tolerance StatisticsPage::tolerance() const
{
    return {limitOf(m_least), limitOf(m_most)};
}

/// Limits are a model's: without one chosen there are none to be set.
void StatisticsPage::loadTolerance()
{
    const auto kind = Charts::Kind(m_kind->currentIndex());
    const bool limited = kind == Charts::Trend || kind == Charts::Distribution;
    m_value->setVisible(Charts::needsValue(kind));
    m_span->setVisible(Charts::needsSpan(kind));
    const QString model = m_filter->filter().model;
    for (QWidget* each :
         {static_cast<QWidget*>(m_limits), static_cast<QWidget*>(m_least), static_cast<QWidget*>(m_most)})
        each->setVisible(limited);
    for (QLineEdit* field : {m_least, m_most})
        field->setEnabled(!model.isEmpty());
    m_limits->setText(model.isEmpty() ? tr("公差（请先选择型号）") : tr("公差"));
    const Statistics::Tolerance known =
        model.isEmpty() ? Statistics::Tolerance()
                        : ToleranceStore::load(m_home, model, Statistics::Value(m_value->currentIndex()));
    const auto text = [](double limit) { return std::isfinite(limit) ? QString::number(limit, 'g', 10) : QString(); };
    m_least->setText(text(known.lower));
    m_most->setText(text(known.upper));
}

void StatisticsPage::storeTolerance()
{
    const Statistics::Tolerance wanted = tolerance();
    if (wanted.lower >= wanted.upper)
        return m_message->sayOrHide(Tone::Warning, tr("下限必须小于上限"));
    const QString model = m_filter->filter().model;
    const QString error = ToleranceStore::store(m_home, model, Statistics::Value(m_value->currentIndex()), wanted);
    if (error.isEmpty())
        return ask();
    m_message->sayOrHide(Tone::Error, tr("不能保存公差：%1").arg(error));
}

void StatisticsPage::ask()
{
    const QString problem = m_filter->problem();
    m_message->sayOrHide(Tone::Warning, problem);
    if (!problem.isEmpty() || m_home.isEmpty())
        return;
    if (m_plot->isHidden())
        m_message->sayOrHide(Tone::Plain, tr("正在读取…"));
    if (m_goOn)
        *m_goOn = false;
    m_goOn = std::make_shared<std::atomic<bool>>(true);
    m_background.clear();
    Charts::Question question{Charts::Kind(m_kind->currentIndex()), Statistics::Value(m_value->currentIndex()),
                              Statistics::Span(m_span->currentIndex()), tolerance(), m_shifts};
    const auto work = [home = m_home, filter = m_filter->filter(), question, goOn = m_goOn] {
        platform::lowerThreadPriority(); // the production goes first
        Read read;
        PartReader reader(home);
        if (!reader.open()) {
            read.error = reader.error();
            return read;
        }
        read.models = reader.models();
        const PartSeries series = reader.series(filter, Charts::columnsFor(question), [goOn] { return goOn->load(); });
        read.error = reader.error();
        if (!read.error.isEmpty()) // some of the parts would be no chart of them
            return read;
        for (const qint8 outcome : series.outcome)
            read.tally.add(PartOutcome(outcome));
        read.answer = Charts::answer(series, question);
        LogReader log(home);
        if (series.size() > 0 && log.open())
            read.marks = log.changes(PartTable::timeOf(series.wall.first()), PartTable::timeOf(series.wall.last()),
                                     markedKeys(), mostMarks);
        return read;
    };
    m_background.run(work, [this, number = ++m_number](const Read& read) {
        if (number == m_number)
            take(read);
    });
    m_reading = true;
    QTimer::singleShot(msUntilSaid, this, [this, number = m_number] {
        if (m_reading && number == m_number)
            m_summary->setText(tr("正在读取…"));
    });
}

void StatisticsPage::draw()
{
    const double yield = m_tally.yield();
    m_summary->setText(m_failed ? QString()
                                : tr("%1 个工件，找到 %2，未找到 %3，拒绝 %4，找到率 %5 %")
                                      .arg(m_tally.parts())
                                      .arg(m_tally.found)
                                      .arg(m_tally.notFound)
                                      .arg(m_tally.refused)
                                      .arg(qIsNaN(yield) ? QStringLiteral("–") : QString::number(yield, 'f', 2)));
    const bool any = m_tally.parts() > 0; // axes of nothing would lie
    m_plot->setVisible(any);
    m_lower->setVisible(any && Charts::hasLower(m_answer.question.kind));
    Charts::show(m_answer, m_marks, m_plot, m_lower);
}

void StatisticsPage::take(const Read& read)
{
    m_reading = false;
    const bool empty = read.error.isEmpty() && read.tally.parts() == 0;
    m_message->sayOrHide(empty ? Tone::Plain : Tone::Error,
                         empty ? tr("没有符合条件的工件，请选择更长的时间或放宽条件") : read.error);
    if (read.error.isEmpty())
        m_filter->setModels(read.models);
    m_failed = !read.error.isEmpty();
    m_answer = read.answer;
    m_marks = read.marks;
    m_tally = read.tally;
    draw();
    emit shown();
}

/// A bar of a chart along time leads to its parts.
void StatisticsPage::onPlacePicked(const QPointF& place)
{
    for (const Statistics::Bucket& bucket : qAsConst(m_answer.buckets)) {
        if (place.x() >= bucket.begin && place.x() < bucket.end)
            return emit partsWanted(PartTable::timeOf(bucket.begin), PartTable::timeOf(bucket.end));
    }
}

void StatisticsPage::retranslate()
{
    QStringList names;
    for (int kind = 0; kind < kinds; ++kind)
        names << Charts::nameOf(Charts::Kind(kind));
    fill(m_kind, names);
    names.clear();
    for (const Statistics::Value value : Statistics::values)
        names << PartTexts::value(value);
    fill(m_value, names);
    fill(m_span, {tr("按小时"), tr("按班次"), tr("按天")});
    m_limits->setText(m_most->isEnabled() ? tr("公差") : tr("公差（请先选择型号）"));
    m_least->setPlaceholderText(tr("下限"));
    m_most->setPlaceholderText(tr("上限"));
}

void StatisticsPage::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    if ((event->type() == QEvent::LanguageChange || event->type() == QEvent::PaletteChange) && m_number > 0)
        draw();
}
