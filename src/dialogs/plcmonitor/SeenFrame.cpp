#include "dialogs/plcmonitor/SeenFrame.h"

#include "workflow/PlcFrames.h"

#include <QDateTime>

namespace {

constexpr int angleWord = 2;
constexpr int xWord = 4;
constexpr int yWord = 6;

double number(const SComFrame& frame, int word)
{
    return frame.data[word] + frame.data[word + 1] / 1000.0;
}

QString text(double value)
{
    return QString::number(value, 'f', 3);
}

} // namespace

bool SeenFrame::isHeartbeat() const
{
    return !received && frame.command == plc::Heartbeat;
}

bool SeenFrame::isWithoutResult() const
{
    if (received)
        return false;
    const bool result = frame.command == plc::Result1 || frame.command == plc::Result2;
    return frame.command == plc::NotFound || (result && frame.data[angleWord] >= 360);
}

QString FrameText::title(Column column)
{
    switch (column) {
    case Time:
        return tr("时间");
    case Direction:
        return tr("方向");
    case Command:
        return tr("命令");
    case Words:
        return tr("数据字 0 … 7");
    case Meaning:
        return tr("含义");
    case ColumnCount:
        break;
    }
    return {};
}

QStringList FrameText::cells(const SeenFrame& seen)
{
    const QDateTime time = QDateTime::fromMSecsSinceEpoch(seen.time);
    return {time.toString(QStringLiteral("yyyy-MM-dd hh:mm:ss zzz")), direction(seen.received),
            command(seen.frame.command), words(seen.frame), meaning(seen)};
}

QString FrameText::direction(bool received)
{
    return received ? tr("PLC → 程序") : tr("程序 → PLC");
}

QString FrameText::command(quint8 code)
{
    const bool letter = code > ' ' && code < 0x7F;
    return letter ? QString(QLatin1Char(static_cast<char>(code)))
                  : QStringLiteral("0x") + QString::number(code, 16).rightJustified(2, QLatin1Char('0')).toUpper();
}

QString FrameText::words(const SComFrame& frame)
{
    QStringList words;
    for (const qint16 word : frame.data)
        words << QString::number(word);
    return words.join(QLatin1Char(' '));
}

QString FrameText::meaning(const SeenFrame& seen)
{
    return seen.received ? received(seen.frame) : sent(seen.frame);
}

QString FrameText::received(const SComFrame& frame)
{
    switch (frame.command) {
    case plc::ModelIndex:
        return tr("型号索引：工位1 = %1，工位2 = %2").arg(frame.data[0]).arg(frame.data[1]);
    case plc::Trigger:
        if (const int station = plc::triggeredStation(frame); station > 0)
            return tr("触发工位%1").arg(station);
        return tr("触发，没有代码为%1的工位，忽略").arg(frame.data[0]);
    case plc::Shutdown:
        return tr("关闭程序");
    default:
        return tr("未知命令，忽略");
    }
}

QString FrameText::sent(const SComFrame& frame)
{
    switch (frame.command) {
    case plc::Heartbeat:
        return tr("心跳");
    case plc::Result1:
        return result(1, frame);
    case plc::Result2:
        return result(2, frame);
    case plc::NotFound:
        return tr("工位%1没有有效结果").arg(frame.data[0] - 5);
    default:
        return {};
    }
}

QString FrameText::result(int station, const SComFrame& frame)
{
    const double angle = number(frame, angleWord);
    const auto is = [angle](double special) { return qFuzzyCompare(angle, special); };
    if (is(plc::refusedAngle))
        return tr("工位%1：999，触发被拒绝").arg(station);
    if (is(plc::nothingFoundAngle))
        return tr("工位%1：361，未找到").arg(station);
    if (is(plc::noAngleAngle))
        return tr("工位%1：365，结果没有角度").arg(station);
    return tr("工位%1：角度 %2°，X %3 mm，Y %4 mm")
        .arg(station)
        .arg(text(angle), text(number(frame, xWord)), text(number(frame, yWord)));
}
