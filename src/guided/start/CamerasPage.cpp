#include "config/ksGlobalConfig.h"
#include "guided/start/StartPages.h"

#include <valvecell/Extension.h>
#include <valvecell/ICameraList.h>
#include <valvecell/ICoreCtrl.h>

#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace {
constexpr int pollMs = 300;
}

CamerasPage::CamerasPage(ICoreCtrl* core, ksGlobalConfig& config)
    : m_core(core)
    , m_config(config)
{
    auto* rows = new QVBoxLayout(this);
    m_state = addText(rows, "cameraState");
    m_list = addList(rows, "cameraList");
    m_take[0] = addButton(rows, "take1Button");
    m_take[1] = addButton(rows, "take2Button");
    auto* last = new QHBoxLayout;
    rows->addLayout(last);
    m_look = addButton(last, "lookButton");
    m_manage = addButton(last, "manageButton");
    m_poll.setInterval(pollMs);
    connect(&m_poll, &QTimer::timeout, this, &CamerasPage::list);
    connect(m_list, &QListWidget::currentRowChanged, this, &CamerasPage::retranslate);
    connect(m_take[0], &QPushButton::clicked, this, [this] { takeFor(1); });
    connect(m_take[1], &QPushButton::clicked, this, [this] { takeFor(2); });
    connect(m_look, &QPushButton::clicked, this, &CamerasPage::look);
    connect(m_manage, &QPushButton::clicked, this, &CamerasPage::camerasWanted);
}

QString CamerasPage::hint() const
{
    return tr("接通相机，等它们出现在列表中；选择一台，分配给工位。");
}

void CamerasPage::enter()
{
    look();
}

void CamerasPage::look()
{
    auto* discovery = m_core ? extensionOf<ICameraDiscovery>(m_core) : nullptr;
    if (discovery) {
        discovery->discover();
        m_poll.start();
    }
    list();
}

void CamerasPage::list()
{
    auto* discovery = m_core ? extensionOf<ICameraDiscovery>(m_core) : nullptr;
    const bool looking = discovery && discovery->isDiscovering();
    if (!looking)
        m_poll.stop();
    m_found = discovery ? discovery->found() : QVector<FoundCamera>();
    const int row = m_list->currentRow();
    m_list->clear();
    for (const FoundCamera& camera : qAsConst(m_found)) {
        QStringList parts{camera.vendor, camera.model, camera.serial, camera.address};
        if (!camera.configuredAs.isEmpty())
            parts << tr("已配置为“%1”").arg(camera.configuredAs);
        else if (!camera.problem.isEmpty())
            parts << camera.problem;
        parts.removeAll(QString());
        m_list->addItem(parts.join(QStringLiteral("  ")));
    }
    if (row < m_list->count())
        m_list->setCurrentRow(std::max(0, row));
    retranslate();
    if (looking)
        m_state->setText(tr("正在查找相机…"));
}

QString CamerasPage::freeKey() const
{
    auto* list = extensionOf<ICameraList>(m_core);
    int number = 1;
    while (!list->isNewKey(QStringLiteral("cam%1").arg(number), nullptr) && number < 1000)
        ++number;
    return QStringLiteral("cam%1").arg(number);
}

/// One that is configured already keeps its key.
void CamerasPage::takeFor(int station)
{
    auto* list = m_core ? extensionOf<ICameraList>(m_core) : nullptr;
    const int row = m_list->currentRow();
    if (!list || row < 0 || row >= m_found.size())
        return;
    const FoundCamera& camera = m_found[row];
    QString key = camera.configuredAs;
    QString error;
    if (key.isEmpty()) {
        key = freeKey();
        QVariantMap settings = list->defaultSettings(camera.type);
        for (auto it = camera.settings.begin(); it != camera.settings.end(); ++it)
            settings.insert(it.key(), it.value());
        if (!list->changeCameras({{key, camera.type, settings}}, {}, &error))
            return note(tr("未能添加相机：%1").arg(error));
    }
    QString& own = m_config.station(station).camKey;
    const AuditChange change{QStringLiteral("station_camkey_%1").arg(station), own, key};
    own = key;
    if (!m_config.save(&error))
        return note(tr("工位%1使用相机“%2”，但未能保存：%3").arg(station).arg(key, error));
    note({});
    emit settingsApplied({change});
    look();
}

void CamerasPage::retranslate()
{
    const bool chosen = m_list->currentRow() >= 0 && m_core && extensionOf<ICameraList>(m_core);
    const QStringList keys = m_core ? m_core->cameraKeys() : QStringList();
    for (int i = 0; i < 2; ++i) {
        const QString key = m_config.station(i + 1).camKey;
        m_take[i]->setText(key.isEmpty() ? tr("选中的相机用于工位%1").arg(i + 1)
                                         : tr("选中的相机用于工位%1（现在：%2）").arg(i + 1).arg(key));
        m_take[i]->setEnabled(chosen);
    }
    m_state->setText(keys.isEmpty() ? tr("还没有配置相机") : tr("已配置的相机：%1").arg(keys.join(tr("、"))));
    m_look->setText(tr("重新查找(&L)"));
    m_look->setEnabled(m_core && extensionOf<ICameraDiscovery>(m_core));
    m_manage->setText(tr("相机管理(&M)…"));
}
