#include "panels/PartWords.h"

#include "db/CellError.h"
#include "db/PartTable.h"
#include "results/parts/PartTexts.h"
#include "workflow/ResultHandler.h"

PartRow PartWords::rowOf(int station, const StationReading& reading)
{
    PartRow row;
    row.wall = PartTable::wallOf(reading.time);
    row.part.station = station;
    row.part.model = reading.model;
    row.part.plcIndex = reading.plcIndex;
    row.part.outcome = reading.found                        ? PartOutcome::Found
                       : reading.angle >= plc::refusedAngle ? PartOutcome::Refused
                                                            : PartOutcome::NotFound;
    row.part.angle = reading.angle;
    row.part.x = reading.x;
    row.part.y = reading.y;
    row.part.sourceImage = reading.sourceImage;
    row.placed = reading.found;
    row.error = reading.error;
    row.tip = reading.tip.trimmed();
    row.resultImage = reading.resultImage;
    return row;
}

QString PartWords::timeAndModel(const PartRow& part)
{
    const QString time = PartTexts::clock(part.wall);
    return part.part.model.isEmpty() ? time : time + QStringLiteral("  ") + part.part.model;
}

QString PartWords::sent(const PartRow& part)
{
    if (part.error == static_cast<int>(CellError::NotSent))
        return tr("未发送：通信线路已断开");
    if (part.part.outcome == PartOutcome::Found)
        return QStringLiteral("%1°  X %2  Y %3")
            .arg(plc::cutText(part.part.angle), plc::cutText(part.part.x), plc::cutText(part.part.y));
    if (part.error == static_cast<int>(CellError::NoModel) && part.part.plcIndex < 1)
        return tr("未答复：型号已清零");
    const QString why = PartTexts::reason(part);
    const QString code = QString::number(part.part.angle, 'f', 0);
    return tr("已发送%1：%2").arg(code, why.isEmpty() ? PartTexts::outcome(part.part.outcome) : why);
}

QString PartWords::tip(const PartRow& part)
{
    return QStringLiteral("%1\n%2\n%3\n%4")
        .arg(PartTexts::time(part.wall), PartTexts::outcome(part.part.outcome),
             part.part.model.isEmpty() ? PartTexts::station(part.part.station) : part.part.model, sent(part));
}
