#include "panels/AlarmStrip.h"

#include "panels/AlarmRow.h"
#include "ui_AlarmStrip.h"
#include "workflow/AlarmBook.h"

#include <QEvent>
#include <QFileInfo>
#include <QStyle>

namespace {

constexpr int mostRows = 3;

/// The stations need their height more than the alarms do.
int rowsIn(int windowHeight)
{
    return windowHeight < 700 ? 1 : windowHeight < 900 ? 2 : mostRows;
}

struct Texts
{
    Q_DECLARE_TR_FUNCTIONS(AlarmStrip)
};

QString withReason(const Alarm& alarm)
{
    return alarm.detail.isEmpty() ? alarm.subject : QStringLiteral("%1 (%2)").arg(alarm.subject, alarm.detail);
}

QString what(const Alarm& alarm)
{
    switch (alarm.kind) {
    case Alarm::Starting:
        return Texts::tr("系统正在启动，暂不应答触发");
    case Alarm::NoImage:
        return Texts::tr("工位%1没有图像：%2").arg(alarm.subject, alarm.detail);
    case Alarm::NoResult:
        return Texts::tr("工位%1没有检测结果：%2").arg(alarm.subject, alarm.detail);
    case Alarm::CalibrationUnusable:
        return Texts::tr("工位%1标定不可用：%2").arg(alarm.subject, alarm.detail);
    case Alarm::ClockJumped:
        return Texts::tr("系统时间突变为%1，已暂停按天数清理图像；核对时间后按“已知悉”继续").arg(alarm.detail);
    case Alarm::ProtectionOff:
        return Texts::tr("在线模式下未启用“型号无效时拒绝触发”");
    case Alarm::FileGone:
        return Texts::tr("文件%1被删除，请恢复").arg(QFileInfo(alarm.subject).fileName());
    case Alarm::PortLost:
        return Texts::tr("PLC串口断开：%1").arg(alarm.detail.isEmpty() ? alarm.subject : alarm.detail);
    case Alarm::PlcSilent:
        return Texts::tr("PLC没有发送数据");
    case Alarm::ConfigDamaged:
        return Texts::tr("配置文件有误：%1").arg(withReason(alarm));
    case Alarm::CameraUnknown:
        return alarm.detail.isEmpty() ? Texts::tr("工位%1没有设置相机").arg(alarm.subject)
                                      : Texts::tr("工位%1的相机%2不存在").arg(alarm.subject, alarm.detail);
    case Alarm::LibraryUnusable:
        return Texts::tr("型号库不能使用：%1").arg(alarm.detail);
    case Alarm::CameraLost:
        return Texts::tr("相机%1不可用：%2").arg(alarm.subject, alarm.detail);
    case Alarm::CameraFloods:
        return Texts::tr("相机%1不断送来未请求的图像，已丢弃").arg(alarm.subject);
    case Alarm::ModuleFault:
        return Texts::tr("模块%1：%2").arg(alarm.subject, alarm.detail);
    case Alarm::ReportUnwritten:
        return alarm.detail;
    case Alarm::ForwardingTroubled:
        return Texts::tr("记录转发：%1").arg(alarm.detail);
    case Alarm::DiskLow:
        return Texts::tr("磁盘空间不足，剩余%1 GB").arg(alarm.detail);
    case Alarm::ImagesUnwritable:
        return Texts::tr("图像不能保存");
    case Alarm::ImagesGivenUp:
        return Texts::tr("图像保存过慢，已放弃图像");
    case Alarm::ResultsWaiting:
        return Texts::tr("结果数据库不能写入，等待补写%1条").arg(alarm.detail);
    case Alarm::DatabaseMovedAside:
        return Texts::tr("数据库文件不能使用，原文件已另存为%1").arg(QFileInfo(alarm.subject).fileName());
    }
    return {};
}

/// What helps, and the dialog where it is done.
struct Help
{
    QString sentence;
    const char* action = ""; ///< of the main window
    QString dialog;          ///< its name there
};

Help helpOf(const Alarm& alarm)
{
    switch (alarm.kind) {
    case Alarm::Starting:
        return {Texts::tr("请稍候"), "", {}};
    case Alarm::PortLost:
        return {alarm.detail.isEmpty() ? Texts::tr("检查串口线和端口设置，恢复后自动连接")
                                       : Texts::tr("恢复后自动连接"),
                "actionSystem", Texts::tr("系统设置")};
    case Alarm::PlcSilent:
        return {Texts::tr("检查PLC是否运行、波特率和接线"), "actionPlc", Texts::tr("PLC监视")};
    case Alarm::CameraLost:
    case Alarm::NoImage:
        return {Texts::tr("检查相机的供电、网线和触发"), "actionCamera", Texts::tr("相机管理")};
    case Alarm::CameraFloods:
        return {Texts::tr("关闭相机的连续采集或外部触发"), "actionCamera", Texts::tr("相机管理")};
    case Alarm::ModuleFault:
        return {Texts::tr("请将系统日志交给该模块的提供者"), "actionDevice", Texts::tr("设备管理")};
    case Alarm::ReportUnwritten:
        return {Texts::tr("检查报告文件夹和磁盘，恢复后自动补写"), "actionSystem", Texts::tr("系统设置")};
    case Alarm::ForwardingTroubled:
        return {Texts::tr("记录保存在本机，改正后自动补发"), "actionSystem", Texts::tr("系统设置")};
    case Alarm::CameraUnknown:
        return {Texts::tr("为该工位选择现有的相机"), "actionSystem", Texts::tr("系统设置")};
    case Alarm::NoResult:
        return {Texts::tr("检查该工位的方案和型号参数"), "actionSetting", Texts::tr("方案设计")};
    case Alarm::CalibrationUnusable:
        return {Texts::tr("重新标定该工位"), "actionStandard", Texts::tr("图像标定")};
    case Alarm::DiskLow:
    case Alarm::ImagesUnwritable:
    case Alarm::ResultsWaiting:
        return {Texts::tr("检查磁盘，释放空间或缩短保存天数"), "actionSystem", Texts::tr("系统设置")};
    case Alarm::ImagesGivenUp:
        return {Texts::tr("减少保存的图像，或更换更快的磁盘"), "actionSystem", Texts::tr("系统设置")};
    case Alarm::DatabaseMovedAside:
        return {Texts::tr("已启用新文件；旧数据请由工程师从另存文件恢复"), "", {}};
    case Alarm::ClockJumped:
        return {Texts::tr("核对系统时间，然后按“已知悉”"), "", {}};
    case Alarm::ProtectionOff:
        return {Texts::tr("请在系统设置中启用，除非工厂有意关闭"), "actionSystem", Texts::tr("系统设置")};
    case Alarm::FileGone:
        return {Texts::tr("请由本机的管理人员从备份恢复"), "", {}};
    case Alarm::ConfigDamaged:
        return {Texts::tr("错误的项使用默认值：请核对设置并重新保存"), "actionSystem", Texts::tr("系统设置")};
    case Alarm::LibraryUnusable:
        return {Texts::tr("检查DBFiles文件夹的权限，恢复后自动使用"), "actionDevice", Texts::tr("设备管理")};
    }
    return {};
}

} // namespace

QString AlarmStrip::sentence(const Alarm& alarm)
{
    return alarm.count > 1 ? QStringLiteral("%1  ×%2").arg(what(alarm)).arg(alarm.count) : what(alarm);
}

QString AlarmStrip::remedy(const Alarm& alarm)
{
    return helpOf(alarm).sentence;
}

AlarmStrip::AlarmStrip(QWidget* parent)
    : QWidget(parent)
    , m_ui(std::make_unique<Ui::AlarmStrip>())
{
    m_ui->setupUi(this);
    setAttribute(Qt::WA_StyledBackground);
    m_ui->row->setAlignment(m_ui->buttons, Qt::AlignTop);
    for (int i = 0; i < mostRows; ++i) {
        auto* row = new AlarmRow(this);
        m_ui->rows->addWidget(row);
        m_rows.append(row);
        connect(row, &AlarmRow::actionWanted, this, &AlarmStrip::actionWanted);
    }
    connect(m_ui->historyButton, &QPushButton::clicked, this,
            [this] { emit actionWanted(QStringLiteral("actionAlarms")); });
    hide();
}

AlarmStrip::~AlarmStrip() = default;

void AlarmStrip::setBook(AlarmBook* book)
{
    m_book = book;
    connect(book, &AlarmBook::changed, this, &AlarmStrip::refresh);
    connect(m_ui->acknowledgeButton, &QPushButton::clicked, book, &AlarmBook::acknowledge);
    refresh();
}

void AlarmStrip::setFolded(bool folded)
{
    m_folded = folded;
    refresh();
}

void AlarmStrip::refresh()
{
    if (!m_book)
        return;
    const QVector<Alarm>& alarms = m_book->alarms();
    setVisible(!alarms.isEmpty());
    const int shown = qMin(alarms.size(), m_folded ? 1 : rowsIn(window()->height()));
    for (int i = 0; i < m_rows.size(); ++i) {
        m_rows[i]->setVisible(i < shown);
        if (i >= shown)
            continue;
        const Help help = helpOf(alarms[i]);
        m_rows[i]->show(alarms[i].since, sentence(alarms[i]), help.sentence, QLatin1String(help.action), help.dialog);
    }
    m_ui->moreLabel->setText(alarms.size() > shown ? tr("另有%1条").arg(alarms.size() - shown) : QString());
    m_ui->moreLabel->setVisible(alarms.size() > shown);
    const bool known = std::all_of(alarms.begin(), alarms.end(), [](const Alarm& alarm) { return alarm.acknowledged; });
    m_ui->acknowledgeButton->setVisible(!known);
    setKnown(known);
}

/// The style sheet gives what is known a quieter colour.
void AlarmStrip::setKnown(bool known)
{
    if (property("known") == QVariant(known))
        return;
    setProperty("known", known);
    style()->unpolish(this);
    style()->polish(this);
}

void AlarmStrip::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() != QEvent::LanguageChange)
        return;
    m_ui->retranslateUi(this);
    refresh();
}
