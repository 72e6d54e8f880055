#include "dialogs/devices/QDeviceManagerUI.h"

#include "common/forms/DialogForm.h"
#include "config/ksSysConfig.h"
#include "ui_QDeviceManagerUI.h"

#include <valvecell/Extension.h>
#include <valvecell/ISerialPort.h>
#include <valvecell/ISerialStatus.h>

#include <QApplication>
#include <QClipboard>
#include <QShowEvent>

namespace {

constexpr int tickMs = 1000;

enum Column { Name, Working, Version, File, columns };

QString caption(const QString& module)
{
    static const QPair<const char*, const char*> captions[] = {
        {"ksCoreCtrl", QT_TRANSLATE_NOOP("QDeviceManagerUI", "核心控制")},
        {"ksbengine", QT_TRANSLATE_NOOP("QDeviceManagerUI", "算法引擎")},
        {"ksdesigner", QT_TRANSLATE_NOOP("QDeviceManagerUI", "方案设计")},
        {"SerialPortTool", QT_TRANSLATE_NOOP("QDeviceManagerUI", "串口")},
        {"QUserInfo", QT_TRANSLATE_NOOP("QDeviceManagerUI", "用户管理")},
    };
    for (const auto& [name, text] : captions) {
        if (module == QLatin1String(name))
            return QStringLiteral("%1 (%2)").arg(QCoreApplication::translate("QDeviceManagerUI", text), module);
    }
    return module;
}

void setCell(QTableWidget* table, int row, int column, const QString& text)
{
    if (!table->item(row, column))
        table->setItem(row, column, new QTableWidgetItem);
    table->item(row, column)->setText(text);
    table->item(row, column)->setToolTip(text);
}

/// A message without its marks for line breaks.
QString plain(const QLabel* label)
{
    return label->text().remove(QChar(0x200b));
}

} // namespace

QDeviceManagerUI::QDeviceManagerUI(Source source, const ksSysConfig& config, QWidget* parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::QDeviceManagerUI>())
    , m_source(std::move(source))
    , m_config(config)
{
    m_ui->setupUi(this);
    DialogForm::prepare(this);
    m_ui->modules->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    m_ui->modules->horizontalHeader()->setSectionResizeMode(File, QHeaderView::Stretch);
    m_tick.setInterval(tickMs);
    connect(&m_tick, &QTimer::timeout, this, &QDeviceManagerUI::refresh);
    connect(m_ui->copyButton, &QPushButton::clicked, this, &QDeviceManagerUI::copy);
    connect(m_ui->closeButton, &QPushButton::clicked, this, &QDeviceManagerUI::reject);
    refresh();
}

QDeviceManagerUI::~QDeviceManagerUI()
{
    DialogForm::takeDown(this);
}

void QDeviceManagerUI::showEvent(QShowEvent* event)
{
    m_ui->message->clear();
    refresh();
    m_tick.start();
    QDialog::showEvent(event);
}

void QDeviceManagerUI::hideEvent(QHideEvent* event)
{
    m_tick.stop();
    QDialog::hideEvent(event);
}

void QDeviceManagerUI::refresh()
{
    showModules();
    showLine();
}

void QDeviceManagerUI::showModules()
{
    const QVector<ModuleInfo> modules = m_source.modules();
    QStringList problems;
    m_ui->modules->setRowCount(modules.size());
    for (int row = 0; row < modules.size(); ++row) {
        const ModuleInfo& module = modules[row];
        setCell(m_ui->modules, row, Name, caption(module.name));
        setCell(m_ui->modules, row, Working, module.working ? tr("正常") : tr("不可用"));
        setCell(m_ui->modules, row, Version, module.version.isEmpty() ? QStringLiteral("–") : module.version);
        setCell(m_ui->modules, row, File, module.file);
        m_ui->modules->item(row, Working)->setBackground(module.working ? QBrush() : QBrush(toneGround(Tone::Error)));
        if (!module.working)
            problems << tr("%1：%2").arg(caption(module.name), module.problem);
    }
    m_ui->problems->sayOrHide(Tone::Error, problems.join(QLatin1Char('\n')));
}

QVector<QPair<QLabel*, QLabel*>> QDeviceManagerUI::facts() const
{
    return {{m_ui->portCaption, m_ui->portLabel},       {m_ui->stateCaption, m_ui->stateLabel},
            {m_ui->deviceCaption, m_ui->deviceLabel},   {m_ui->attemptsCaption, m_ui->attemptsLabel},
            {m_ui->inCaption, m_ui->inLabel},           {m_ui->outCaption, m_ui->outLabel},
            {m_ui->droppedCaption, m_ui->droppedLabel}, {m_ui->badCaption, m_ui->badLabel},
            {m_ui->crcCaption, m_ui->crcLabel}};
}

void QDeviceManagerUI::showLine()
{
    m_ui->portLabel->setText(QStringLiteral("%1, %2").arg(m_config.comPort).arg(m_config.baudRate));
    ISerialPort* port = m_source.port();
    const auto* line = extensionOf<ISerialStatus>(port);
    if (line)
        return showStatus(line->status());
    const auto all = facts();
    for (const auto& [name, value] : all) {
        if (value != m_ui->portLabel)
            value->setText(QStringLiteral("–"));
    }
    m_ui->lineMessage->sayOrHide(Tone::Warning, port ? tr("此串口模块不提供状态") : tr("没有串口模块，不能与PLC通信"));
}

void QDeviceManagerUI::showStatus(const SerialStatus& status)
{
    m_ui->stateLabel->setText(status.open ? tr("已打开") : tr("未打开"));
    setTone(m_ui->stateLabel, status.open ? Tone::Plain : Tone::Error);
    m_ui->deviceLabel->setText(status.device.isEmpty() ? QStringLiteral("–") : status.device);
    m_ui->attemptsLabel->setText(QString::number(status.openAttempts));
    m_ui->inLabel->setText(QString::number(status.framesIn));
    m_ui->outLabel->setText(QString::number(status.framesOut));
    m_ui->droppedLabel->setText(QString::number(status.framesDropped));
    m_ui->badLabel->setText(QString::number(status.badBytes));
    m_ui->crcLabel->setText(QString::number(status.crcErrors));
    const QString last = status.lastError.isEmpty() ? QString() : tr("最近的错误：%1").arg(status.lastError);
    m_ui->lineMessage->sayOrHide(status.open ? Tone::Plain : Tone::Error, last);
}

QString QDeviceManagerUI::text() const
{
    QStringList lines;
    for (int row = 0; row < m_ui->modules->rowCount(); ++row) {
        QStringList cells;
        for (int column = 0; column < columns; ++column)
            cells << m_ui->modules->item(row, column)->text();
        lines << cells.join(QLatin1Char('\t'));
    }
    lines << plain(m_ui->problems);
    const auto all = facts();
    for (const auto& [name, value] : all)
        lines << name->text() + QLatin1Char('\t') + value->text();
    lines << plain(m_ui->lineMessage);
    lines.removeAll(QString());
    return lines.join(QLatin1Char('\n'));
}

void QDeviceManagerUI::copy()
{
    refresh();
    QApplication::clipboard()->setText(text());
    m_ui->message->say(Tone::Plain, tr("已复制到剪贴板"));
}

void QDeviceManagerUI::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange) {
        m_ui->retranslateUi(this);
        m_ui->message->clear();
        refresh();
    }
    QDialog::changeEvent(event);
}
