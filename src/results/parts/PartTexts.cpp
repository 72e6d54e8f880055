#include "results/parts/PartTexts.h"

#include "db/CellError.h"
#include "db/PartTable.h"

QString PartTexts::outcome(PartOutcome outcome)
{
    switch (outcome) {
    case PartOutcome::Found:
        return tr("找到");
    case PartOutcome::NotFound:
        return tr("未找到");
    case PartOutcome::Refused:
        break;
    }
    return tr("拒绝");
}

QString PartTexts::error(int code)
{
    switch (CellError(code)) {
    case CellError::NoImage:
        return tr("没有图像");
    case CellError::Overdue:
        return tr("图像超时");
    case CellError::NoResult:
        return tr("检测没有结果");
    case CellError::NotSent:
        return tr("通信线路已断开");
    case CellError::NoModel:
        return tr("PLC 索引没有型号");
    case CellError::Overrun:
        return tr("触发过多");
    case CellError::NotCarried:
        return tr("坐标超出范围");
    case CellError::Calibration:
        return tr("标定不可用");
    }
    return code == 0 ? QString() : tr("错误 %1").arg(code);
}

QString PartTexts::reason(const PartRow& row)
{
    if (row.part.outcome == PartOutcome::Found)
        return {};
    return row.tip.isEmpty() ? error(row.error) : row.tip;
}

QString PartTexts::station(int station)
{
    return station > 0 ? tr("工位%1").arg(station) : tr("未知");
}

QString PartTexts::value(Statistics::Value value)
{
    const QString names[] = {tr("角度 °"), tr("X"), tr("Y"), tr("得分 %"), tr("应答时间 ms")};
    return names[value];
}

QString PartTexts::time(qint64 wall)
{
    return PartTable::timeOf(wall).toString(QStringLiteral("yyyy-MM-dd hh:mm:ss.zzz"));
}

QString PartTexts::clock(qint64 wall)
{
    return PartTable::timeOf(wall).toString(QStringLiteral("hh:mm:ss"));
}

QString PartTexts::sent(double value, bool known)
{
    return known ? QString::number(value, 'f', 3) : QStringLiteral("–");
}

QString PartTexts::milliseconds(double ms)
{
    return ms < 0 ? QString() : QString::number(ms, 'f', 1);
}
