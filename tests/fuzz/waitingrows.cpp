#include "db/WaitingRows.h"

#include "Harness.h"

#include <QJsonDocument>

FUZZ_TARGET(waitingrows)
{
    int leftOut = 0;
    const auto rows = WaitingRows::fromJson(QJsonDocument::fromJson(bytes).object(), &leftOut);
    for (const WaitingRows::Row& row : rows)
        fuzz::require(row.time.isValid() && qIsFinite(row.result.angle), "a row has its time and angle");
    const QJsonObject written = WaitingRows::toJson(rows);
    const auto again = WaitingRows::fromJson(written, &leftOut);
    fuzz::require(leftOut == 0 && WaitingRows::toJson(again) == written, "what is written is read back as it was");
}
