#pragma once

#include <QStringList>
#include <QVariantMap>

/// Optional interface of an engine: its solutions and their models, for dialogs that teach and edit. GUI thread.
///
/// A model is a map of plain numbers by name. The bundled engine's names: "rim_radius", "ring_radius", "hole_radius"
/// (pixels), each with its "<name>_tol" (percent), "score_limit" (0 to 1), "hole_depth" (millimetres
/// behind the rim's edge), "taught" (bool).
class ISolutionStore
{
public:
    static constexpr const char* id = "valvecell.ISolutionStore/1";

    /// The models of a solution that can be run, built-in ones included, in name order; empty for an unknown solution.
    virtual QStringList models(const QString& solution) = 0;

    /// Whether the model comes with the engine and can be neither changed nor removed.
    virtual bool isBuiltIn(const QString& model) = 0;

    /// A copy of a model's parameters; empty for an unknown model.
    virtual QVariantMap parameters(const QString& solution, const QString& model) = 0;

    /// Stores a model, a new one or over the old one; the next task uses it. On failure the stored model stays as it
    /// was, false is returned and `error` says which value or file is wrong and why.
    virtual bool saveModel(const QString& solution, const QString& model, const QVariantMap& parameters,
                           QString* error) = 0;

    /// Removes a model; a task in hand finishes with the parameters that it began with.
    virtual bool removeModel(const QString& solution, const QString& model, QString* error) = 0;

    /// Adds an empty solution.
    virtual bool addSolution(const QString& solution, QString* error) = 0;

protected:
    ~ISolutionStore() = default;
};
