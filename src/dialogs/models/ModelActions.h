#pragma once

#include "common/AuditChange.h"
#include "dialogs/models/ModelFile.h"

#include <QCoreApplication>

class ModelManager;

/// What the model manager does, over model library, index tables and engine: each operation is done whole, or, with
/// the reason in `error`, not at all. What it changed is returned in `audit`. GUI thread.
class ModelActions
{
    Q_DECLARE_TR_FUNCTIONS(ModelActions)

public:
    /// Both outlive this object; `engine` may be null.
    ModelActions(ModelManager& models, IEngine* engine);

    /// The library's entry of a model; with an empty name when there is none.
    ModelEntry entry(const QString& name) const;

    /// A name and an index that are free, made from `wanted`.
    ModelEntry proposal(const QString& wanted) const;

    /// The name may be known to the engine already: its parameters are then the new model's.
    bool add(const ModelEntry& entry, QString* error);
    /// Renaming renames the engine's model too.
    bool modify(const QString& name, const ModelEntry& entry, QString* error);
    /// The engine's parameters are copied too.
    bool copy(const QString& source, const ModelEntry& entry, QString* error);
    /// Without `withParameters` the engine keeps its model, which no index means any more.
    bool remove(const QString& name, bool withParameters, QString* error);

    /// Replaces a file of that name.
    bool exportTo(const QString& path, const QString& name, QString* error) const;
    /// Adds the model under the name of `entry` with the parameters of `file`, as far as the engine has their
    /// solutions.
    bool import(const ModelFile& file, const ModelEntry& entry, QString* error);

    /// Stores the model with these parameters: a new one, or in the place of what these solutions knew by its name. The
    /// index may have changed.
    bool teach(const ModelEntry& entry, const SolutionParameters& parameters, QString* error);

    /// The solutions of a file that this engine has not.
    QStringList unknownSolutions(const ModelFile& file) const;

    const EngineModels& engine() const { return m_engine; }

    /// What was changed since the last call.
    AuditChanges takeAudit();

private:
    // Each is whole or not at all by itself.
    /// `source` is the model whose examples go along; empty for none.
    bool addWithParameters(const ModelEntry& entry, const SolutionParameters& parameters, const QString& source,
                           QString* error);
    bool rename(const QString& name, const QString& newName, QString* error);
    bool changeValues(const ModelEntry& before, const ModelEntry& after, QString* error);
    void note(const QString& what, const QString& before, const QString& after);

    ModelManager& m_models;
    EngineModels m_engine;
    AuditChanges m_audit;
};
