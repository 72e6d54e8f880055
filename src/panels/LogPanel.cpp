#include "panels/LogPanel.h"

#include "common/LookColors.h"
#include "ui_LogPanel.h"
#include "workflow/StationLog.h"

#include <QApplication>
#include <QClipboard>
#include <QEvent>
#include <QScrollBar>
#include <QSyntaxHighlighter>

#include <algorithm>
#include <iterator>

namespace {

constexpr int flushMs = 50;
constexpr int typingMs = 200;

QColor inkOf(LogKind kind)
{
    const LookColors& colors = lookColors();
    switch (kind) {
    case LogKind::Found:
        return colors.good.ink;
    case LogKind::ModelSwitch:
        return colors.accent;
    case LogKind::NotFound:
        return colors.bad.ink;
    case LogKind::Refused:
        return colors.caution.ink;
    case LogKind::Plain:
        break;
    }
    return colors.text;
}

/// Colours whole lines, by the look that is worn when they are shown.
class LineColors : public QSyntaxHighlighter
{
public:
    using QSyntaxHighlighter::QSyntaxHighlighter;

protected:
    void highlightBlock(const QString& line) override { setFormat(0, line.size(), inkOf(logKind(line))); }
};

} // namespace

LogPanel::LogPanel(QWidget* parent)
    : QWidget(parent)
    , m_ui(std::make_unique<Ui::LogPanel>())
{
    m_ui->setupUi(this);
    setAttribute(Qt::WA_StyledBackground);
    m_ui->view->setMaximumBlockCount(maxLines);
    new LineColors(m_ui->view->document());
    // The view follows its end by itself only as long as nothing but lines moves it.
    QScrollBar* const bar = m_ui->view->verticalScrollBar();
    connect(bar, &QScrollBar::valueChanged, this, [this, bar](int value) { m_follows = value >= bar->maximum(); });
    connect(bar, &QScrollBar::rangeChanged, this, [this, bar](int, int maximum) {
        if (m_follows)
            bar->setValue(maximum);
    });
    for (QTimer* timer : {&m_flush, &m_filter})
        timer->setSingleShot(true);
    m_flush.setInterval(flushMs);
    m_filter.setInterval(typingMs);
    connect(&m_flush, &QTimer::timeout, this, &LogPanel::showPending);
    connect(&m_filter, &QTimer::timeout, this, &LogPanel::showAll);
    connect(m_ui->filterEdit, &QLineEdit::textChanged, &m_filter, qOverload<>(&QTimer::start));
    connect(m_ui->troubleButton, &QPushButton::toggled, this, &LogPanel::showAll);
    connect(m_ui->copyButton, &QPushButton::clicked, this, &LogPanel::copy);
}

LogPanel::~LogPanel() = default;

void LogPanel::setStation(int number)
{
    m_number = number;
    retranslate();
}

void LogPanel::append(const QString& line)
{
    m_lines.push_back(line);
    if (m_lines.size() > maxLines)
        m_lines.pop_front();
    m_pending = qMin(m_pending + 1, m_lines.size());
    if (!m_flush.isActive())
        m_flush.start();
}

bool LogPanel::isShown(const QString& line) const
{
    return line.contains(m_ui->filterEdit->text(), Qt::CaseInsensitive) &&
           (!m_ui->troubleButton->isChecked() || isTrouble(logKind(line)));
}

QStringList LogPanel::shownOf(size_t count) const
{
    QStringList lines;
    std::copy_if(m_lines.end() - static_cast<std::ptrdiff_t>(count), m_lines.end(), std::back_inserter(lines),
                 [this](const QString& line) { return isShown(line); });
    return lines;
}

QStringList LogPanel::shownLines() const
{
    return shownOf(m_lines.size());
}

void LogPanel::showPending()
{
    const QStringList lines = shownOf(m_pending);
    m_pending = 0;
    if (!lines.isEmpty())
        m_ui->view->appendPlainText(lines.join(QLatin1Char('\n')));
}

void LogPanel::showAll()
{
    m_flush.stop();
    m_pending = 0;
    m_ui->view->setPlainText(shownLines().join(QLatin1Char('\n')));
    m_ui->view->moveCursor(QTextCursor::End);
    m_ui->view->moveCursor(QTextCursor::StartOfLine);
    m_ui->view->verticalScrollBar()->setValue(m_ui->view->verticalScrollBar()->maximum());
    m_follows = true;
}

void LogPanel::copy() const
{
    const QString selected = m_ui->view->textCursor().selectedText();
    const QString all = shownLines().join(QLatin1Char('\n'));
    QApplication::clipboard()->setText(selected.isEmpty() ? all : QString(selected).replace(QChar(0x2029), '\n'));
}

void LogPanel::retranslate()
{
    m_ui->retranslateUi(this);
    m_ui->titleLabel->setText(tr("工位%1日志").arg(m_number));
}

void LogPanel::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    else if (event->type() == QEvent::PaletteChange || event->type() == QEvent::StyleChange)
        showAll(); // in the colours of the look that is worn now
}
