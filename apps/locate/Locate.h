#pragma once

#include "finder/FindResult.h"
#include "finder/HoleModel.h"

#include <QImage>
#include <QJsonObject>
#include <QStringList>
#include <QVariantMap>
#include <QVector>

#include <functional>

/// What shall be run on every image.
struct LocatePlan
{
    finder::HoleModel model;
    QJsonObject parameters; ///< by file name: values that stand in for the model's
    QVariantMap edited;     ///< values that stand in for all of these in a second run; empty for none
    int jobs = 1;           ///< threads
};

struct LocateRun
{
    finder::FindResult result;
    double milliseconds = 0; ///< of the location, without reading and decoding the file
};

/// What the engine says of one file.
struct Located
{
    QString file;    ///< path
    QString problem; ///< why it could not be judged, so that nothing is known of a hole; empty when it was
    LocateRun present;
    LocateRun edited;
    bool compared = false; ///< whether the edited values were run
};

/// Null, with the reason, when the file cannot be read or is no image.
QImage readImage(const QString& path, QString* problem);

/// The images behind the arguments, by their absolute paths: files as given, folders with all images in them and below
/// them in path order. A path that is neither is listed as well, so that its line says that it cannot be read.
/// \param empty folders that hold no image
QStringList imageFiles(const QStringList& arguments, QStringList* empty);

/// What the names of images end in, for a message: "*.bmp, *.png".
QString imagePatternText();

/// Runs the finder on all files. `done` is called on this thread, in the order of the files, as soon as all before it
/// are done.
void locateAll(const QStringList& files, const LocatePlan& plan, const std::function<void(const Located&)>& done);
