#include "dialogs/plcmonitor/QPlcMonitorUI.h"

#include "common/CsvFile.h"
#include "common/forms/DialogForm.h"
#include "dialogs/plcmonitor/FrameList.h"
#include "ui_QPlcMonitorUI.h"
#include "workflow/PlcFrames.h"
#include "workflow/PlcLink.h"

#include <QDateTime>
#include <QFileDialog>
#include <QScrollBar>
#include <QShowEvent>

namespace {
constexpr int refreshMs = 100;
constexpr int allCommands = -1;
} // namespace

QPlcMonitorUI::QPlcMonitorUI(const PlcLink& link, QWidget* parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::QPlcMonitorUI>())
    , m_link(&link)
    , m_frames(new FrameList(this))
{
    m_ui->setupUi(this);
    DialogForm::prepare(this);
    m_ui->table->setModel(m_frames);
    m_ui->table->horizontalHeader()->setStretchLastSection(true);
    m_refresh.setInterval(refreshMs);
    m_refresh.setSingleShot(true);
    listCommands();
    layOutColumns();
    connectAll();
    count();
}

QPlcMonitorUI::~QPlcMonitorUI()
{
    DialogForm::takeDown(this);
}

void QPlcMonitorUI::connectAll()
{
    connect(&m_refresh, &QTimer::timeout, this, &QPlcMonitorUI::showNoted);
    connect(m_ui->pauseButton, &QPushButton::toggled, this, &QPlcMonitorUI::showNoted);
    connect(m_ui->heartbeatBox, &QCheckBox::toggled, this, &QPlcMonitorUI::filter);
    const auto chosen = QOverload<int>::of(&QComboBox::currentIndexChanged);
    connect(m_ui->wayBox, chosen, this, &QPlcMonitorUI::filter);
    connect(m_ui->commandBox, chosen, this, &QPlcMonitorUI::filter);
    connect(m_ui->textEdit, &QLineEdit::textChanged, this, &QPlcMonitorUI::filter);
    connect(m_ui->clearButton, &QPushButton::clicked, this, &QPlcMonitorUI::clearFrames);
    connect(m_ui->saveButton, &QPushButton::clicked, this, &QPlcMonitorUI::askFile);
    connect(m_ui->closeButton, &QPushButton::clicked, this, &QPlcMonitorUI::reject);
}

void QPlcMonitorUI::listCommands()
{
    for (const quint8 code : {plc::ModelIndex, plc::Trigger, plc::Result1, plc::Result2, plc::NotFound, plc::Shutdown})
        m_ui->commandBox->addItem(FrameText::command(code), code);
    m_ui->commandBox->setItemData(0, allCommands);
}

void QPlcMonitorUI::layOutColumns()
{
    const QFontMetrics metrics = m_ui->table->fontMetrics();
    const auto fit = [&](FrameText::Column column, const QString& widest) {
        const int text =
            std::max(metrics.horizontalAdvance(widest), metrics.horizontalAdvance(FrameText::title(column)));
        m_ui->table->horizontalHeader()->resizeSection(column, text + metrics.height());
    };
    fit(FrameText::Time, QStringLiteral("00:00:00 000"));
    fit(FrameText::Direction, FrameText::direction(true));
    fit(FrameText::Command, FrameText::command(plc::Shutdown));
    fit(FrameText::Words, QStringLiteral("0 0 359 999 -999 -999 -999 -999"));
}

void QPlcMonitorUI::note(const SComFrame& frame, bool received)
{
    if (m_noted.size() >= 2 * FrameList::kept) // a long pause: what the list would forget at once need not wait for it
        m_noted.remove(0, FrameList::kept);
    m_noted.append({QDateTime::currentMSecsSinceEpoch(), received, frame});
    if (!m_refresh.isActive())
        m_refresh.start();
}

void QPlcMonitorUI::showNoted()
{
    if (!m_ui->pauseButton->isChecked()) {
        const QScrollBar* bar = m_ui->table->verticalScrollBar();
        const bool following = bar->value() == bar->maximum();
        m_frames->append(m_noted);
        m_noted.clear();
        if (following)
            m_ui->table->scrollToBottom();
    }
    count();
}

void QPlcMonitorUI::filter()
{
    FrameFilter wanted;
    wanted.hideHeartbeats = m_ui->heartbeatBox->isChecked();
    wanted.way = static_cast<FrameFilter::Way>(m_ui->wayBox->currentIndex());
    wanted.command = m_ui->commandBox->currentData().toInt();
    wanted.text = m_ui->textEdit->text().trimmed();
    m_frames->setFilter(wanted);
    m_ui->table->scrollToBottom();
    count();
}

void QPlcMonitorUI::clearFrames()
{
    m_noted.clear();
    m_frames->clear();
    m_ui->message->clear();
    count();
}

void QPlcMonitorUI::count()
{
    const QString shown = tr("显示 %1 帧，共 %2 帧").arg(m_frames->rowCount()).arg(m_frames->total());
    const bool paused = m_ui->pauseButton->isChecked();
    m_ui->countLabel->setText(paused ? tr("%1，已暂停，%2 帧待显示").arg(shown).arg(m_noted.size()) : shown);
    m_ui->saveButton->setEnabled(m_frames->rowCount() > 0 && !m_saving);
}

/// A file dialog of the program's own: the platform's would block, and cannot be told the language.
void QPlcMonitorUI::askFile()
{
    auto* dialog = new QFileDialog(this, tr("保存PLC通信记录"), QDir::homePath(), tr("CSV文件 (*.csv)"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setOption(QFileDialog::DontUseNativeDialog);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setDefaultSuffix(QStringLiteral("csv"));
    const QString now = QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-hhmmss"));
    dialog->selectFile(QStringLiteral("plc-%1.csv").arg(now));
    connect(dialog, &QFileDialog::fileSelected, this, &QPlcMonitorUI::saveTo);
    dialog->open();
}

void QPlcMonitorUI::saveTo(const QString& path)
{
    if (m_saving)
        return;
    m_saving = true;
    m_background.run([path, lines = m_frames->table()] { return CsvFile::write(path, lines); },
                     [this, path](const QString& error) { onSaved(path, error); });
    count();
}

void QPlcMonitorUI::onSaved(const QString& path, const QString& error)
{
    m_saving = false;
    if (error.isEmpty())
        m_ui->message->say(Tone::Plain, tr("已保存到 %1").arg(path));
    else
        m_ui->message->say(Tone::Error, tr("未能保存：%1").arg(error));
    count();
}

void QPlcMonitorUI::showEvent(QShowEvent* event)
{
    if (!event->spontaneous() && m_link && !m_listening)
        m_listening = connect(m_link, &PlcLink::frameSeen, this, &QPlcMonitorUI::note);
    QDialog::showEvent(event);
}

void QPlcMonitorUI::hideEvent(QHideEvent* event)
{
    if (!event->spontaneous()) {
        disconnect(m_listening);
        m_listening = {};
    }
    QDialog::hideEvent(event);
}

void QPlcMonitorUI::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange) {
        m_ui->retranslateUi(this);
        m_frames->retranslate();
        layOutColumns();
        m_ui->message->clear();
        count();
    }
    QDialog::changeEvent(event);
}
