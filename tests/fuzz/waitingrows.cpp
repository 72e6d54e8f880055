#include "db/WaitingRows.h"

#include "Harness.h"

FUZZ_TARGET(waitingrows)
{
    int leftOut = 0;
    QByteArray written;
    const auto rows = WaitingRows::parse(bytes, &leftOut);
    for (const WaitingRow& row : rows) {
        fuzz::require(row.time.isValid() && qIsFinite(row.result.angle), "a row has its time and angle");
        written += WaitingRows::lineOf(row);
    }
    QByteArray again;
    const auto read = WaitingRows::parse(written, &leftOut);
    for (const WaitingRow& row : read)
        again += WaitingRows::lineOf(row);
    fuzz::require(leftOut == 0 && again == written, "what is written is read back as it was");
}
