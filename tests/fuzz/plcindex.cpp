#include "Harness.h"
#include "workflow/PlcIndexTable.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

FUZZ_TARGET(plcindex)
{
    const QString path = fuzz::homeFile("/user/plcIndex.json", bytes);
    PlcIndexTable tables(fuzz::home());
    tables.load();
    const QStringList stations = QJsonDocument::fromJson(bytes).object().keys();
    for (const QString& station : stations) {
        const PlcIndexTable::StationTable table = tables.table(station);
        for (const qint32 index : table)
            fuzz::require(index < 1 ? tables.modelOf(station, index).isEmpty()
                                    : table.value(tables.modelOf(station, index)) == index,
                          "an index means a model that has it");
    }
    if (!fuzz::isChosen(bytes))
        return;
    QFile::remove(path);
    fuzz::require(tables.save(), "tables can be saved");
    PlcIndexTable again(fuzz::home());
    again.load();
    for (const QString& station : stations)
        fuzz::require(again.table(station) == tables.table(station), "what is saved is read back as it was");
}
