#include "workflow/StationLog.h"

#include "common/Scheduler.h"
#include "workflow/PlcFrames.h"
#include "workflow/Trigger.h"

#include <QPair>
#include <QPointF>

namespace {

// The words by which the kind of a line is known.
const QString nothingFound = QStringLiteral(" no found Value");
const QString uncalibrated = QStringLiteral(" No Cali!!!");
const QString noTaskRan = QStringLiteral(" No Task!!!");
const QString noImage = QStringLiteral(" No Image!!!");
const QString noResultCame = QStringLiteral(" No Result!!!");
const QString notSent = QStringLiteral(" Not Sent!!!");
const QString cannotCapture = QStringLiteral("不能拍照");
const QString settingFailed = QStringLiteral("型号设置失败");
const QString switchedTo = QStringLiteral("切换型号为");
const QString angleIs = QStringLiteral(" angle :");

} // namespace

LogKind logKind(const QString& line)
{
    static const QPair<QString, LogKind> words[] = {
        {nothingFound, LogKind::NotFound}, {uncalibrated, LogKind::NotFound}, {noTaskRan, LogKind::NotFound},
        {noImage, LogKind::NotFound},      {noResultCame, LogKind::NotFound}, {notSent, LogKind::NotFound},
        {cannotCapture, LogKind::Refused}, {settingFailed, LogKind::Refused}, {switchedTo, LogKind::ModelSwitch},
        {angleIs, LogKind::Found},
    };
    for (const auto& word : words) {
        if (line.contains(word.first))
            return word.second;
    }
    return LogKind::Plain;
}

QString StationLog::time() const
{
    return m_scheduler.now().toString(QStringLiteral("hh:mm:ss zzz"));
}

QString StationLog::timeColon() const
{
    return time() + QLatin1Char(':');
}

QString StationLog::switched(int station, const QString& model, int index) const
{
    return QStringLiteral("★工位%1:%2[%3],型号索引ID为[%4],时间:%5")
        .arg(QString::number(station), switchedTo, model, QString::number(index), time());
}

QString StationLog::notSwitched(int station, int index) const
{
    const QString format = index > 0 ? QStringLiteral("★工位%1:型号切换失败,对应的索引不存在,型号索引ID为[%2],时间:%3")
                                     : QStringLiteral("★工位%1:型号清零,型号索引ID为[%2],时间:%3");
    return format.arg(QString::number(station), QString::number(index), time());
}

/// The two commas differ, and are kept: plants filter their logs by these texts.
QString StationLog::noModel(int station, int index) const
{
    const QString format =
        station == 1 ? QStringLiteral("%1:%2,模型库中不存在索引%3") : QStringLiteral("%1:%2，模型库中不存在索引%3");
    return format.arg(timeColon(), settingFailed, QString::number(index));
}

QString StationLog::noPicture(int index) const
{
    return QStringLiteral("%1:该型号ID:%2在模型库中不存在，%3！！！")
        .arg(timeColon(), QString::number(index), cannotCapture);
}

QString StationLog::refused(int station, const QString& model, int index, bool answered) const
{
    const QString format =
        answered ? QStringLiteral("●工位%1:收到触发信号,因索引不合法所以没触发相机拍照,发送了999角度数据,型号为[%2],"
                                  "型号索引ID为[%3],时间:%4")
                 : QStringLiteral("●工位%1:收到触发信号,因索引不合法所以没触发相机拍照,型号为[%2],型号索引ID为[%3],"
                                  "时间:%4");
    const QString name = model.isEmpty() ? QStringLiteral("空") : model;
    return format.arg(QString::number(station), name, QString::number(index), time());
}

QString StationLog::result(const QString& task, double angle, const QPointF& machine) const
{
    const bool found = angle < plc::nothingFoundAngle;
    const double shown = found ? angle : plc::nothingFoundAngle;
    const QString line = timeColon() + task + angleIs + plc::cutText(shown);
    return line + (found ? QStringLiteral(" center:(%1,%2)").arg(plc::cutText(machine.x()), plc::cutText(machine.y()))
                         : nothingFound);
}

QString StationLog::noResult(const QString& task, const QString& reason) const
{
    return timeColon() + task + reason;
}

QString StationLog::tooMany() const
{
    return timeColon() + QStringLiteral("等待的触发过多，") + cannotCapture + QStringLiteral("！！！");
}

QString StationLog::noCalibration()
{
    return uncalibrated;
}

QString StationLog::noTask()
{
    return noTaskRan;
}

QString StationLog::because(Failure failure)
{
    return failure == Failure::NoResult ? noResultCame : noImage;
}

QString StationLog::lineGone()
{
    return notSent;
}
