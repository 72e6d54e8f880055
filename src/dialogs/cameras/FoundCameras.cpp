#include "dialogs/cameras/FoundCameras.h"

#include "common/forms/InlineMessage.h"
#include "dialogs/cameras/CameraNames.h"
#include "ui_FoundCameras.h"

#include <QEvent>

namespace {
constexpr int lookMs = 200;
constexpr int widestColumn = 135; ///< so that the last is seen, too; the whole is in the tip
} // namespace

FoundCameras::FoundCameras(QWidget* parent)
    : QWidget(parent)
    , m_ui(std::make_unique<Ui::FoundCameras>())
{
    m_ui->setupUi(this);
    m_ui->foundTable->setColumnCount(columns);
    m_ui->foundTable->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    m_ui->foundTable->horizontalHeader()->setStretchLastSection(true);
    m_ui->foundTable->horizontalHeader()->setMaximumSectionSize(widestColumn);
    fill();
    showState();
    m_tick.setInterval(lookMs);
    connect(&m_tick, &QTimer::timeout, this, &FoundCameras::look);
    connect(m_ui->searchButton, &QPushButton::clicked, this, &FoundCameras::search);
    connect(m_ui->foundTable, &QTableWidget::itemSelectionChanged, this, &FoundCameras::choose);
}

FoundCameras::~FoundCameras() = default;

void FoundCameras::setDiscovery(ICameraDiscovery* discovery)
{
    m_discovery = discovery;
    setVisible(discovery != nullptr);
}

void FoundCameras::search()
{
    if (!m_discovery)
        return;
    m_discovery->discover();
    m_searching = true;
    m_tick.start();
    showState();
}

void FoundCameras::look()
{
    if (m_discovery->isDiscovering())
        return;
    m_tick.stop();
    m_searching = false;
    m_searched = true;
    m_found = m_discovery->found();
    fill();
    showState();
}

void FoundCameras::fill()
{
    const QSignalBlocker quiet(m_ui->foundTable); // nobody chose anything
    m_ui->foundTable->setHorizontalHeaderLabels(
        {tr("类型"), tr("厂商"), tr("型号"), tr("序列号"), tr("用户名称"), tr("地址"), tr("说明")});
    m_ui->foundTable->clearSelection();
    m_ui->foundTable->setRowCount(m_found.size());
    for (int row = 0; row < m_found.size(); ++row)
        setRow(row, m_found[row]);
}

void FoundCameras::setRow(int row, const FoundCamera& camera)
{
    const QString note = noteOf(camera);
    const QString texts[columns] = {CameraNames::of(camera.type),
                                    camera.vendor,
                                    camera.model,
                                    camera.serial,
                                    camera.userName,
                                    camera.address,
                                    note};
    for (int column = 0; column < columns; ++column) {
        auto* item = new QTableWidgetItem(texts[column]);
        item->setToolTip(texts[column]);
        if (column == Note && !camera.problem.isEmpty())
            item->setBackground(toneGround(Tone::Warning));
        m_ui->foundTable->setItem(row, column, item);
    }
}

QString FoundCameras::noteOf(const FoundCamera& camera)
{
    const QString used = camera.configuredAs.isEmpty() ? QString() : tr("已配置为“%1”").arg(camera.configuredAs);
    return camera.problem.isEmpty() || used.isEmpty() ? used + camera.problem : tr("%1；%2").arg(used, camera.problem);
}

/// What is said is about the chosen camera, once there is one.
void FoundCameras::showState()
{
    const int row = m_ui->foundTable->selectedItems().isEmpty() ? -1 : m_ui->foundTable->currentRow();
    const bool isChosen = row >= 0 && row < m_found.size();
    m_ui->searchBar->setVisible(m_searching);
    m_ui->searchButton->setEnabled(!m_searching);
    setTone(m_ui->searchState, isChosen && !m_found[row].problem.isEmpty() ? Tone::Warning : Tone::Plain);
    const QString note = isChosen ? noteOf(m_found[row]) : QString();
    m_ui->searchState->setText(m_searching       ? tr("正在搜索相机，也可以直接在下面填写")
                               : !note.isEmpty() ? note
                               : !m_found.empty() ? tr("找到 %1 个相机，选择一个即填入下面").arg(m_found.size())
                               : m_searched ? tr("没有找到相机：检查电源、网线和网段，或直接在下面填写")
                                            : tr("可以搜索网络和总线上的相机"));
}

void FoundCameras::choose()
{
    showState();
    const int row = m_ui->foundTable->currentRow();
    if (!m_ui->foundTable->selectedItems().isEmpty() && row < m_found.size())
        emit chosen(m_found[row]);
}

void FoundCameras::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange) {
        m_ui->retranslateUi(this);
        fill();
        showState();
        if (m_discovery && !m_found.isEmpty())
            search(); // the module's texts
    }
    QWidget::changeEvent(event);
}
