#pragma once

#include "db/StationDB.h"
#include "support/TempHome.h"

#include <QColor>
#include <QImage>

/// A home with recorded parts: found, not found, refused and found in turn, at the stations in turn, of two models.
class PartsHome : public TempHome
{
public:
    /// `step`: milliseconds from one to the next. `pictures`: each has one.
    void addParts(int count, const QDateTime& start, qint64 step = 1000, bool pictures = false)
    {
        StationDB database(path("/DBFiles/Pellix.db"));
        QVERIFY(database.open());
        for (int i = 0; i < count; ++i)
            QVERIFY(database.insertResult(part(i, pictures), start.addMSecs(i * step)));
    }

    static StationResult part(int i, bool pictures = false)
    {
        static const PartOutcome outcomes[] = {PartOutcome::Found, PartOutcome::NotFound, PartOutcome::Refused,
                                               PartOutcome::Found};
        StationResult result;
        PartRecord& part = result.part;
        part.station = 1 + i % 2;
        part.model = i % 8 < 4 ? QStringLiteral("五辐/17") : QStringLiteral("=cmd|A1");
        part.outcome = outcomes[i % 4];
        const bool found = part.outcome == PartOutcome::Found;
        part.angle = found ? 358.5 + i % 3 : part.outcome == PartOutcome::Refused ? 999 : 361;
        part.x = found ? 100.125 + i % 50 : 0;
        part.y = found ? -20.25 + (i * i) % 7 : 0;
        part.plcIndex = 7;
        part.score = result.matchScore = 90 + i % 10;
        part.imageMs = 12.5;
        part.replyMs = 80 + i % 30;
        part.user = QStringLiteral("李工");
        result.angle = part.angle;
        result.errorType = found ? 0 : part.outcome == PartOutcome::Refused ? 104 : 16;
        result.stationName = QStringLiteral("Station_%1").arg(part.station);
        result.value2 = QStringLiteral("%1_%2").arg(part.station).arg(part.model);
        result.value3 = QStringLiteral("score=0.9;plc=7;x=%1;y=%2").arg(part.x).arg(part.y);
        result.resultTip = found ? QString() : i % 4 == 1 ? QStringLiteral("-没有找到气门孔") : QString();
        if (pictures)
            result.value1 = QStringLiteral("/DBFiles/Images/%1.jpg").arg(i);
        return result;
    }
};
