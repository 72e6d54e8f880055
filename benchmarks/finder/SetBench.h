#pragma once

#include <QString>
#include <QStringList>

/// What shall be measured on folders of pictures.
struct SetOptions
{
    QStringList folders;
    bool taught = true;  ///< with the parameters of each picture's model
    bool builtIn = true; ///< with the model "auto"
    bool rivals = true;
    QString misses; ///< PNG to write; empty: none
    QString json;
    bool help = false;
};

QString setUsage();

/// Reads the arguments, the program's name among them. False with a sentence that names the option.
bool parseSetOptions(const QStringList& arguments, SetOptions* options, QString* error);

/// Scores all ways on each folder that the options name, prints a table for each and writes what else is asked for.
/// False when a folder cannot be used or a file cannot be written; `error` says which and why.
bool benchmarkSets(const SetOptions& options, QString* error);
