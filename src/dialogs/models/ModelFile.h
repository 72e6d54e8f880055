#pragma once

#include "dialogs/models/EngineModels.h"

/// What the model library knows of a model.
struct ModelEntry
{
    QString name;
    int index = 0; ///< PLC index
    bool calibrated = false;
};

/// One model with its engine parameters as a file, to carry it to another cell:
/// {"format": "valvecell-model", "version": 1, "name", "plcIndex", "calibrated", "parameters": {solution: {name:
/// value}}}. UTF-8; parameters are numbers, switches and texts. Any thread.
struct ModelFile
{
    ModelEntry entry;
    SolutionParameters parameters; ///< without solutions for an engine that has no parameters

    /// Reads a file that anybody may have written. On failure file and reason are returned in `error`. Name and index
    /// are not judged here, but where they are used.
    static bool read(const QString& path, ModelFile* file, QString* error);

    /// Replaces the file in one step.
    bool write(const QString& path, QString* error) const;
};
