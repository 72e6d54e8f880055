#include "results/logs/LogPage.h"

#include "common/forms/DialogForm.h"
#include "common/forms/InlineMessage.h"
#include "db/log/LogLine.h"
#include "results/ViewState.h"
#include "results/export/forms/ExportBar.h"
#include "results/export/forms/ExportMenus.h"
#include "results/logs/LogTableModel.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QEvent>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTableView>
#include <QTimer>

#include <utility>

namespace {

constexpr int settleMs = 250;
constexpr int liveMs = 1000;
constexpr int daysAtFirst = 7;
constexpr int secondsAround = 60;

/// A later version with other columns does not take them for its own.
const QString columnsName = QStringLiteral("Logs/Columns%1").arg(LogTableModel::ColumnCount);

QDateEdit* dayField(QWidget* parent, QDate day)
{
    auto* field = new QDateEdit(day, parent);
    field->setDisplayFormat(QStringLiteral("yyyy-MM-dd"));
    field->setCalendarPopup(true);
    return field;
}

} // namespace

LogPage::LogPage(QWidget* parent)
    : QWidget(parent)
    , m_table(new LogTableModel(this))
    , m_message(new InlineMessage(this))
    , m_from(dayField(this, QDate::currentDate().addDays(1 - daysAtFirst)))
    , m_to(dayField(this, QDate::currentDate()))
    , m_kind(new QComboBox(this))
    , m_text(new QLineEdit(this))
    , m_user(new QLineEdit(this))
    , m_live(new QCheckBox(this))
    , m_view(new QTableView(this))
    , m_line(new QPlainTextEdit(this))
    , m_parts(new QPushButton(this))
    , m_count(new QLabel(this))
    , m_exports(new ExportBar(this))
    , m_settled(new QTimer(this))
    , m_next(new QTimer(this))
    , m_looking(Background::AtEnd::Wait)
{
    build();
    retranslate();
    ExportMenus::addLog(m_exports, [this] { return ExportMenus::Log{m_home, m_table->filter()}; });
    m_settled->setSingleShot(true);
    m_settled->setInterval(settleMs);
    m_next->setInterval(liveMs);
    const auto settle = [this] { m_settled->start(); };
    connect(m_settled, &QTimer::timeout, this, &LogPage::refresh);
    connect(m_next, &QTimer::timeout, this, &LogPage::lookForNew);
    for (QDateEdit* field : {m_from, m_to})
        connect(field, &QDateEdit::dateChanged, this, settle);
    connect(m_kind, qOverload<int>(&QComboBox::currentIndexChanged), this, settle);
    for (QLineEdit* field : {m_text, m_user})
        connect(field, &QLineEdit::textChanged, this, settle);
    connect(m_live, &QCheckBox::toggled, this, &LogPage::setLive);
    connect(m_table, &PagedTableBase::refreshed, this, &LogPage::onRefreshed);
    connect(m_table, &PagedTableBase::searched, this, [this](int percent) {
        const QString text = tr("正在查找更早的日志：已查 %1%").arg(percent);
        m_count->setText(text);
        m_message->sayOrHide(Tone::Plain, m_table->rowCount() == 0 ? text : QString());
    });
    connect(m_table, &PagedTableBase::counted, this, [this](int lines) {
        m_lines = lines;
        showNothing(lines);
        m_count->setText(tr("%1 行").arg(QLocale().toString(lines)));
    });
    connect(m_view->selectionModel(), &QItemSelectionModel::currentRowChanged, this, [this] { showChosen(); });
    connect(m_parts, &QPushButton::clicked, this, [this] {
        const LogRow* row = m_table->rowAt(m_view->currentIndex().row());
        const QDateTime time =
            row ? QDateTime::fromString(row->time, QStringLiteral("yyyy-MM-dd hh:mm:ss")) : QDateTime();
        if (time.isValid())
            emit partsWanted(time.addSecs(-secondsAround), time.addSecs(secondsAround));
    });
}

LogPage::~LogPage() = default;

void LogPage::build()
{
    m_view->setModel(m_table);
    m_view->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_view->setSelectionMode(QAbstractItemView::SingleSelection);
    m_view->setAlternatingRowColors(true);
    m_view->setWordWrap(false);
    m_view->verticalHeader()->hide();
    m_view->horizontalHeader()->setStretchLastSection(true);
    m_view->setColumnWidth(LogTableModel::Time,
                           m_view->fontMetrics().horizontalAdvance(QStringLiteral("2026-00-00 00:00:00")) + 24);
    m_view->setColumnWidth(LogTableModel::Level,
                           m_view->fontMetrics().horizontalAdvance(QStringLiteral("Information")) + 24);
    m_line->setReadOnly(true);
    m_line->setFixedHeight(m_line->fontMetrics().lineSpacing() * 4 + 14);
    m_text->setClearButtonEnabled(true);
    m_user->setClearButtonEnabled(true);
    auto* fields = new QHBoxLayout;
    for (QWidget* field : {static_cast<QWidget*>(m_from), static_cast<QWidget*>(m_to), static_cast<QWidget*>(m_kind)})
        fields->addWidget(field);
    fields->addWidget(m_text, 2);
    fields->addWidget(m_user, 1);
    fields->addWidget(m_live);
    auto* foot = new QHBoxLayout;
    foot->addWidget(m_count);
    foot->addWidget(m_exports, 1);
    foot->addWidget(m_parts);
    auto* column = new QVBoxLayout(this);
    column->addLayout(fields);
    column->addWidget(m_message);
    column->addWidget(m_view, 1);
    column->addWidget(m_line);
    column->addLayout(foot);
    m_message->sayOrHide(Tone::Plain, {});
    DialogForm::prepareFields(this);
}

void LogPage::setHome(const QString& home)
{
    keepColumns();
    m_home = home;
    m_newest = m_chosen = -1;
    m_table->setHome(home);
    m_view->horizontalHeader()->restoreState(ViewState::load(home, columnsName));
}

void LogPage::keepColumns() const
{
    ViewState::keep(m_home, columnsName, m_view->horizontalHeader()->saveState());
}

void LogPage::hideEvent(QHideEvent* event)
{
    keepColumns();
    QWidget::hideEvent(event);
}

void LogPage::setLive(bool on)
{
    on ? m_next->start() : m_next->stop();
    m_newest = m_chosen = -1;
    refresh();
}

/// Who scrolled back reads: nothing moves under his eyes.
void LogPage::lookForNew()
{
    if (!isVisible() || m_view->verticalScrollBar()->value() > 0)
        return;
    const auto newest = [home = m_home] {
        LogReader reader(home);
        return reader.open() ? reader.lastRow() : -1;
    };
    m_looking.clear();
    m_looking.run(newest, [this](qint64 line) {
        if (line != std::exchange(m_newest, line))
            refresh();
    });
}

void LogPage::onRefreshed(int lines, const QString& error, bool frozen)
{
    m_failed = !error.isEmpty();
    m_frozen = frozen;
    if (m_failed) {
        m_count->clear();
        m_message->sayOrHide(Tone::Error, error);
    } else {
        showNothing(lines);
    }
    for (int row = 0; m_chosen >= 0 && m_table->rowAt(row); ++row) {
        if (m_table->rowAt(row)->id == m_chosen)
            return m_view->selectRow(row);
    }
    if (lines == 0)
        showChosen();
}

void LogPage::showNothing(int lines)
{
    if (lines == 0)
        m_message->sayOrHide(Tone::Plain, tr("没有符合条件的日志。请选择更多的日期，或放宽类型、内容和用户条件。"));
    else
        m_message->sayOrHide(Tone::Plain, m_frozen ? tr("该文件夹不能写入，只能查看") : QString());
}

void LogPage::find()
{
    m_text->setFocus();
    m_text->selectAll();
}

/// A page that reaches to the present day goes on into the next one.
void LogPage::followDays()
{
    const QDate today = QDate::currentDate();
    const QDate before = std::exchange(m_today, today);
    const QSignalBlocker quiet(m_to);
    if (m_to->date() == before && before < today)
        m_to->setDate(today);
}

void LogPage::refresh()
{
    followDays();
    if (m_live->isChecked() && m_to->date() < QDate::currentDate())
        m_to->setDate(QDate::currentDate());
    if (m_from->date() > m_to->date())
        return m_message->sayOrHide(Tone::Warning, tr("起始日期晚于结束日期"));
    LogFilter filter;
    filter.from = m_from->date();
    filter.to = m_to->date();
    filter.changesOnly = m_kind->currentIndex() == Changes;
    filter.least = m_kind->currentIndex() == Faults ? SystemLog::Warning : SystemLog::Trace;
    filter.worst = m_kind->currentIndex() == Informations ? SystemLog::Information : SystemLog::Error;
    filter.text = m_text->text().trimmed();
    filter.user = m_user->text().trimmed();
    filter.byArrival = m_live->isChecked();
    m_table->setFilter(filter);
    m_table->refresh();
}

void LogPage::showChosen()
{
    const LogRow* row = m_table->rowAt(m_view->currentIndex().row());
    m_parts->setEnabled(row != nullptr);
    if (!row)
        return m_table->rowCount() == 0 ? m_line->clear() : void();
    m_chosen = row->id;
    m_line->setPlainText(row->isChange
                             ? tr("%1\n原值：%2\n新值：%3\n用户：%4").arg(row->name, row->before, row->after, row->user)
                             : row->message);
}

void LogPage::retranslate()
{
    const QStringList kinds{tr("所有类型"), tr("错误和警告"), tr("更改"), tr("信息")};
    const QSignalBlocker quiet(m_kind);
    while (m_kind->count() < kinds.size())
        m_kind->addItem({});
    for (int i = 0; i < kinds.size(); ++i)
        m_kind->setItemText(i, kinds.at(i));
    m_text->setPlaceholderText(tr("内容"));
    m_user->setPlaceholderText(tr("用户"));
    m_live->setText(tr("实时"));
    m_parts->setText(tr("查看当时的工件"));
    m_count->setText(tr("%1 行").arg(QLocale().toString(m_lines)));
}

void LogPage::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LanguageChange)
        retranslate();
}
