#include "results/parts/PartColumns.h"

#include "results/parts/PartTexts.h"

namespace {

QVariant knownMs(double ms)
{
    return ms < 0 ? QVariant() : QVariant(ms);
}

} // namespace

ExportColumn PartColumns::column(int id)
{
    using Column = ExportColumn;
    switch (id) {
    case Mark:
        return {tr("标记"), Column::Text, 0, 8};
    case Time:
        return {tr("时间"), Column::Time, 0, 24};
    case Station:
        return {tr("工位"), Column::Text, 0, 10};
    case Model:
        return {tr("型号"), Column::Text, 0, 18};
    case PlcIndex:
        return {tr("PLC 索引"), Column::Number, 0, 10};
    case Outcome:
        return {tr("结果"), Column::Text, 0, 11};
    case Reason:
        return {tr("原因"), Column::Text, 0, 30};
    case Angle:
        return {PartTexts::value(Statistics::Angle), Column::Number, 3, 12};
    case X:
        return {PartTexts::value(Statistics::X), Column::Number, 3, 12};
    case Y:
        return {PartTexts::value(Statistics::Y), Column::Number, 3, 12};
    case Score:
        return {PartTexts::value(Statistics::Score), Column::Number, 1, 10};
    case ImageMs:
        return {tr("图像 ms"), Column::Number, 1, 11};
    case ResultMs:
        return {tr("检测 ms"), Column::Number, 1, 11};
    case ReplyMs:
        return {tr("应答 ms"), Column::Number, 1, 11};
    case User:
        return {tr("用户"), Column::Text, 0, 14};
    case Calibration:
        return {tr("标定"), Column::Text, 0, 14};
    default:
        return {tr("备注"), Column::Text, 0, 40};
    }
}

QString PartColumns::text(const PartRow& row, int id)
{
    const PartRecord& part = row.part;
    switch (id) {
    case Time:
        return PartTexts::time(row.wall);
    case PlcIndex:
        return QString::number(part.plcIndex);
    case Angle:
        return PartTexts::sent(part.angle);
    case X:
        return PartTexts::sent(part.x, row.placed);
    case Y:
        return PartTexts::sent(part.y, row.placed);
    case Score:
        return QString::number(part.score, 'f', 1);
    case ImageMs:
        return PartTexts::milliseconds(part.imageMs);
    case ResultMs:
        return PartTexts::milliseconds(part.resultMs);
    case ReplyMs:
        return PartTexts::milliseconds(part.replyMs);
    default:
        return value(row, id).toString();
    }
}

QVariant PartColumns::value(const PartRow& row, int id)
{
    const PartRecord& part = row.part;
    switch (id) {
    case Mark:
        return row.marked ? QStringLiteral("★") : QString();
    case Time:
        return row.wall;
    case Station:
        return PartTexts::station(part.station);
    case Model:
        return part.model;
    case PlcIndex:
        return part.plcIndex;
    case Outcome:
        return PartTexts::outcome(part.outcome);
    case Reason:
        return PartTexts::reason(row);
    case Angle:
        return part.angle;
    case X:
        return row.placed ? QVariant(part.x) : QVariant();
    case Y:
        return row.placed ? QVariant(part.y) : QVariant();
    case Score:
        return part.score;
    case ImageMs:
        return knownMs(part.imageMs);
    case ResultMs:
        return knownMs(part.resultMs);
    case ReplyMs:
        return knownMs(part.replyMs);
    case User:
        return part.user;
    case Calibration:
        return part.calibration;
    default:
        return row.comment;
    }
}
