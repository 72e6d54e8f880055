#include "config/ksSysConfig.h"
#include "guided/start/StartPages.h"

#include <valvecell/Extension.h>
#include <valvecell/ISerialPort.h>
#include <valvecell/ISerialPorts.h>
#include <valvecell/ISerialStatus.h>

#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

PortPage::PortPage(ISerialPort* port, ksSysConfig& settings, Scheduler& scheduler)
    : m_port(port)
    , m_settings(settings)
    , m_ports({[this](const QString& name) { open(name); },
               [this] {
                   auto* status = extensionOf<ISerialStatus>(m_port);
                   return status ? status->status().framesIn : quint64(0);
               }},
              scheduler)
{
    auto* rows = new QVBoxLayout(this);
    m_state = addText(rows, "portState");
    m_list = addList(rows, "portList");
    m_search = addButton(rows, "searchButton");
    m_use = addButton(rows, "useButton");
    connect(m_search, &QPushButton::clicked, this, [this] {
        QStringList names;
        for (int i = 0; i < m_list->count(); ++i)
            names << m_list->item(i)->data(Qt::UserRole).toString();
        note({});
        m_ports.start(names, m_stored);
        retranslate();
    });
    connect(m_use, &QPushButton::clicked, this, &PortPage::useChosen);
    connect(m_list, &QListWidget::currentRowChanged, this, &PortPage::retranslate);
    connect(&m_ports, &PortSearch::trying, this, [this](const QString& name) {
        retranslate();
        m_state->setText(tr("正在监听 %1 …").arg(name));
    });
    connect(&m_ports, &PortSearch::found, this, &PortPage::keep);
    connect(&m_ports, &PortSearch::nothingFound, this, [this] {
        retranslate();
        note(tr("在任何串口都没有收到 PLC 的帧：请检查 PLC 是否运行、接线和波特率 %1").arg(m_settings.baudRate));
    });
}

QString PortPage::hint() const
{
    return tr("让 PLC 运行，按“查找”：程序逐个打开串口，收到 PLC 心跳的就是它。");
}

void PortPage::enter()
{
    m_stored = m_settings.comPort;
    auto* ports = m_port ? extensionOf<ISerialPorts>(m_port) : nullptr;
    if (ports)
        m_background.run(ports->finder(), [this](const QVector<FoundPort>& found) {
            m_list->clear();
            for (const FoundPort& each : found) {
                auto* item = new QListWidgetItem(QStringLiteral("%1  %2").arg(each.name, each.description), m_list);
                item->setData(Qt::UserRole, each.name);
            }
            retranslate();
        });
    retranslate();
}

void PortPage::leave()
{
    m_ports.stop();
}

bool PortPage::isOpen() const
{
    auto* status = extensionOf<ISerialStatus>(m_port);
    return status && status->status().open;
}

/// Not stored: what is tried is none of the plant's settings yet.
void PortPage::open(const QString& port)
{
    const QString before = m_settings.comPort;
    m_settings.comPort = port;
    emit settingsApplied({{QStringLiteral("COM/Port"), before, port}});
    m_settings.comPort = m_stored;
}

void PortPage::useChosen()
{
    if (const QListWidgetItem* item = m_list->currentItem()) {
        m_ports.stop();
        const QString name = item->data(Qt::UserRole).toString();
        open(name);
        keep(name);
    }
}

void PortPage::keep(const QString& port)
{
    m_settings.comPort = port;
    m_stored = port;
    const bool saved = m_settings.save();
    retranslate();
    note(saved ? QString() : tr("串口 %1 已启用，但未能保存").arg(port));
}

void PortPage::retranslate()
{
    m_state->setText(isOpen() ? tr("串口 %1 已打开").arg(m_settings.comPort)
                              : tr("串口 %1 没有打开").arg(m_settings.comPort));
    m_search->setText(tr("查找 PLC(&F)"));
    m_search->setEnabled(m_port && m_list->count() > 0 && !m_ports.isRunning());
    m_use->setText(tr("使用选中的串口(&U)"));
    m_use->setEnabled(m_port && m_list->currentItem());
}
