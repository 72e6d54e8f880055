#pragma once

#include <QMap>
#include <QStringList>
#include <QVariantMap>

class IEngine;
class IModelExamples;
class ISolutionStore;

/// The parameters of one model by solution.
using SolutionParameters = QMap<QString, QVariantMap>;

/// A model's parameters in all solutions of the engine, changed everywhere or nowhere. An engine without a solution
/// store has no parameters, and all changes of none succeed. GUI thread.
class EngineModels
{
public:
    /// `engine` may be null, and outlives this object.
    explicit EngineModels(IEngine* engine);

    /// Whether the engine lets its models be read and changed.
    bool hasStore() const { return m_store; }

    /// The engine's solutions as they are now; empty without a solution store.
    QStringList solutions() const;

    /// Of every solution that has the model; built-in models have none.
    SolutionParameters parameters(const QString& model) const;

    /// Whether a solution at least has been taught the model.
    bool isTaught(const QString& model) const;

    /// Stores the model in these solutions, over what it was there. On failure all are as before, and `error` says
    /// why.
    bool save(const QString& model, const SolutionParameters& parameters, QString* error);

    /// Gives a model what another one has been shown, in every solution that has both; nothing is to be done where the
    /// engine keeps no examples. On failure `error` says why; what was copied until then stays.
    bool copyExamples(const QString& from, const QString& to, QString* error);

    /// Removes the model from every solution. On failure it is in all of them again.
    bool remove(const QString& model, QString* error);

private:
    /// Brings these solutions to what they were, as far as the engine lets it; what it refuses is reported in the log.
    void putBack(const QString& model, const SolutionParameters& before, const QStringList& solutions);

    IEngine* m_engine;
    ISolutionStore* m_store;
    IModelExamples* m_examples;
};
