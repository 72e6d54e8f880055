#pragma once

#include "common/Scheduler.h"
#include "db/QSqliteWheelHubZd.h"
#include "support/TempHome.h"
#include "workflow/ModelManager.h"

/// A cell of two stations with its model library and index tables in a home of its own.
struct ModelCell
{
    TempHome home;
    QSqliteWheelHubZd library{home.path("/DBFiles/")};
    PlcIndexTable indices{home.path()};
    std::unique_ptr<ModelManager> models;

    ModelCell()
    {
        QDir().mkpath(home.path("/DBFiles"));
        library.createTable();
        restart();
        QString error;
        models->addModel(QStringLiteral("五辐"), 1, &error);
        models->addModel(QStringLiteral("钢圈"), 2, &error);
    }

    /// As a program that starts anew on the same library and tables.
    void restart()
    {
        models = std::make_unique<ModelManager>(library, indices, QStringList{"工位1", "工位2"}, Scheduler::system());
    }

    /// "name=index" of every model of the library, calibrated ones with a '*'.
    QString listed() const
    {
        QStringList texts;
        for (int row = 0; row < models->modelCount(); ++row)
            texts << QStringLiteral("%1=%2%3")
                         .arg(models->modelName(row))
                         .arg(models->plcIndex(row))
                         .arg(models->isCalibrated(row) ? "*" : "");
        return texts.join(' ');
    }

    /// As listed(), a station's table as its file holds it.
    QString stored(const QString& station) const
    {
        PlcIndexTable file(home.path());
        file.load();
        QStringList texts;
        const PlcIndexTable::StationTable table = file.table(station);
        for (auto it = table.begin(); it != table.end(); ++it)
            texts << QStringLiteral("%1=%2").arg(it.key()).arg(it.value());
        return texts.join(' ');
    }
};
