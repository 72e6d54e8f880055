#pragma once

#include "finder/FindResult.h"
#include "finder/HoleModel.h"

#include <QJsonObject>
#include <QStringList>
#include <QVector>

#include <functional>

/// What the engine says of one file.
struct Located
{
    QString file; ///< path
    bool read = false;
    finder::FindResult result;
    double milliseconds = 0; ///< of the location, without reading and decoding the file
};

/// The images behind the arguments: files as given, folders with all their images in name order. A path that is
/// neither is listed as it is, so that its line tells that it cannot be read.
QStringList imageFiles(const QStringList& arguments);

/// Runs the finder on all files on `jobs` threads. `parameters` holds, by file name, values that stand in for the
/// model's. `done` is called on this thread, in the order of the files, as soon as all before it are done.
void locateAll(const QStringList& files, const finder::HoleModel& model, const QJsonObject& parameters, int jobs,
               const std::function<void(const Located&)>& done);

/// One output line.
QJsonObject lineOf(const Located& located);
