#include "panels/AlarmStrip.h"

#include "ui_AlarmStrip.h"
#include "workflow/AlarmBook.h"

#include <QEvent>
#include <QFileInfo>
#include <QStyle>

namespace {

constexpr int mostLines = 3;

struct Texts
{
    Q_DECLARE_TR_FUNCTIONS(AlarmStrip)
};

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
        return Texts::tr("PLC串口断开：%1").arg(alarm.subject);
    case Alarm::CameraLost:
        return Texts::tr("相机%1不可用：%2").arg(alarm.subject, alarm.detail);
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

QString sentence(const Alarm& alarm)
{
    return alarm.count > 1 ? QStringLiteral("%1  ×%2").arg(what(alarm)).arg(alarm.count) : what(alarm);
}

QString timeOf(const Alarm& alarm)
{
    return alarm.since.toString(QStringLiteral("hh:mm:ss"));
}

} // namespace

AlarmStrip::AlarmStrip(QWidget* parent)
    : QWidget(parent)
    , m_ui(std::make_unique<Ui::AlarmStrip>())
{
    m_ui->setupUi(this);
    setAttribute(Qt::WA_StyledBackground);
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

void AlarmStrip::refresh()
{
    if (!m_book)
        return;
    const QVector<Alarm>& alarms = m_book->alarms();
    setVisible(!alarms.isEmpty());
    const int shown = qMin(alarms.size(), mostLines);
    QStringList times;
    QStringList texts;
    for (const Alarm& alarm : alarms.mid(0, shown)) {
        times << timeOf(alarm);
        texts << sentence(alarm);
    }
    m_ui->timeLabel->setText(times.join(QLatin1Char('\n')));
    m_ui->textLabel->setText(texts.join(QLatin1Char('\n')));
    m_ui->moreLabel->setText(alarms.size() > shown ? tr("另有%1条").arg(alarms.size() - shown) : QString());
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
