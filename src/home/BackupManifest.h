#pragma once

#include "home/HomeParts.h"

#include <QByteArray>
#include <QDateTime>
#include <QVector>

/// What a backup says of itself, in "manifest.json" at its end.
struct BackupManifest
{
    struct File
    {
        QString path; ///< below the home
        qint64 size = 0;
        QByteArray sha256; ///< in hexadecimal digits
    };

    static constexpr int format = 1;
    static constexpr const char* fileName = "manifest.json";

    QString program; ///< the version that made it
    QString machine; ///< its name
    QDateTime made;
    int homeVersion = 0;
    HomeParts::Set parts;
    QVector<File> files;

    qint64 bytes() const;
    QByteArray toJson() const;
    /// Reads what toJson() wrote; false, with the reason, for anything else, so for a path that leads out of a home.
    bool read(const QByteArray& json, QString* error);
};
