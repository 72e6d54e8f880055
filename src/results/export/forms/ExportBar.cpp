#include "results/export/forms/ExportBar.h"

#include "common/forms/DialogForm.h"
#include "common/forms/InlineMessage.h"
#include "results/export/ExportProgress.h"

#include <QAction>
#include <QDir>
#include <QEvent>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QMenu>
#include <QProgressBar>
#include <QPushButton>
#include <QStandardPaths>
#include <QTimer>

namespace {

constexpr int lookMs = 100;

/// Where a person finds what was written; the next file goes to the folder of the last.
QString& lastFolder()
{
    static QString folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    return folder;
}

} // namespace

ExportBar::ExportBar(QWidget* parent)
    : QWidget(parent)
    , m_message(new InlineMessage(this))
    , m_bar(new QProgressBar(this))
    , m_cancel(new QPushButton(this))
    , m_button(new QPushButton(this))
    , m_look(new QTimer(this))
    , m_background(Background::AtEnd::Finish)
{
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(m_button);
    row->addWidget(m_cancel);
    row->addWidget(m_bar);
    row->addWidget(m_message, 1);
    row->addStretch();
    m_button->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    m_message->sayOrHide(Tone::Plain, {});
    m_bar->setRange(0, 100);
    m_bar->setMaximumWidth(240);
    m_bar->hide();
    m_cancel->hide();
    m_button->setMenu(new QMenu(m_button));
    m_look->setInterval(lookMs);
    DialogForm::prepareFields(this);
    retranslate();
    connect(m_look, &QTimer::timeout, this, [this] { m_bar->setValue(m_progress->percent()); });
    connect(m_cancel, &QPushButton::clicked, this, [this] { m_progress->cancel(); });
}

/// A program that ends does not wait for a long one.
ExportBar::~ExportBar()
{
    if (m_progress)
        m_progress->cancel();
}

void ExportBar::addChoice(Choice choice)
{
    const int number = m_choices.size();
    m_choices.append(std::move(choice));
    m_actions.append(m_button->menu()->addAction(QString()));
    connect(m_actions.last(), &QAction::triggered, this, [this, number] { ask(number); });
    retranslate();
}

void ExportBar::ask(int choice)
{
    const Choice& chosen = m_choices.at(choice);
    const QString suffix = chosen.suffix.isEmpty() ? QString() : QLatin1Char('.') + chosen.suffix;
    auto* dialog = new QFileDialog(this, chosen.text());
    dialog->setOption(QFileDialog::DontUseNativeDialog);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setDefaultSuffix(chosen.suffix);
    if (!suffix.isEmpty())
        dialog->setNameFilter(QLatin1Char('*') + suffix);
    dialog->setDirectory(lastFolder());
    dialog->selectFile(chosen.name() + suffix);
    connect(dialog, &QFileDialog::fileSelected, this, [this, choice](const QString& path) {
        lastFolder() = QFileInfo(path).path();
        write(choice, path);
    });
    dialog->open();
}

void ExportBar::write(int choice, const QString& path)
{
    if (m_look->isActive())
        return;
    m_progress = std::make_shared<ExportProgress>();
    m_button->setEnabled(false);
    m_bar->setValue(0);
    m_bar->show();
    m_cancel->show();
    m_message->sayOrHide(Tone::Plain, {});
    m_look->start();
    m_background.run(
        [work = m_choices.at(choice).prepare(), path, progress = m_progress] { return work(path, *progress); },
        [this](const ExportOutcome& outcome) { finish(outcome); });
}

void ExportBar::finish(const ExportOutcome& outcome)
{
    m_look->stop();
    m_bar->hide();
    m_cancel->hide();
    m_button->setEnabled(true);
    const QString path = QDir::toNativeSeparators(outcome.path);
    if (!outcome.error.isEmpty())
        m_message->sayOrHide(Tone::Error, tr("没有导出：%1").arg(outcome.error));
    else if (!outcome.isGood())
        m_message->sayOrHide(Tone::Warning, tr("导出已取消"));
    else if (outcome.missing > 0)
        m_message->sayOrHide(Tone::Warning, tr("已写入 %1，缺少 %2 张图片").arg(path).arg(outcome.missing));
    else
        m_message->sayOrHide(Tone::Plain, tr("已写入 %1").arg(path));
    emit finished(outcome);
}

void ExportBar::retranslate()
{
    m_button->setText(tr("导出"));
    m_cancel->setText(tr("取消"));
    for (int i = 0; i < m_choices.size(); ++i)
        m_actions.at(i)->setText(m_choices.at(i).text());
}

void ExportBar::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LanguageChange)
        retranslate();
}
