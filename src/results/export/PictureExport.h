#pragma once

#include "results/data/PartReader.h"
#include "results/export/ExportOutcome.h"

#include <QCoreApplication>

class ExportProgress;

/// Writes the pictures of parts, named by day, time, station, model and outcome: the one with the result's drawing, or
/// else the camera's. What the disk has lost meanwhile is counted. A thread's.
class PictureExport
{
    Q_DECLARE_TR_FUNCTIONS(PictureExport)

public:
    QString home;
    PartFilter filter;

    ExportOutcome toZip(const QString& path, ExportProgress& progress) const;
    /// A new folder; a number follows its name when there is one already.
    ExportOutcome toFolder(const QString& path, ExportProgress& progress) const;

private:
    struct Picture
    {
        QString from;
        QString name;
    };
    /// False with an error in `outcome`.
    bool list(QVector<Picture>& pictures, ExportOutcome& outcome, ExportProgress& progress) const;
};
