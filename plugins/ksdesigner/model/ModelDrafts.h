#pragma once

#include "ModelId.h"

#include <QMap>
#include <QObject>
#include <QStringList>
#include <QVariantMap>

class ExampleStore;
class ISolutionStore;

/// The engine's models with the changes that nobody saved yet. A draft stays until it is saved, reverted, or edited
/// back to what is stored. GUI thread.
///
/// Operations that can fail return false, leave everything as it was, and say in `error` what is wrong, in the
/// operator's language where the reason is the designer's own.
class ModelDrafts : public QObject
{
    Q_OBJECT

public:
    /// Both outlive this object.
    ModelDrafts(ISolutionStore* store, ExampleStore* examples, QObject* parent = nullptr);

    /// In the engine's order, built-in ones included.
    QStringList models(const QString& solution) const;
    bool isBuiltIn(const ModelId& id) const;
    /// Whether there is a draft; its values may be wrong, even no numbers.
    bool isUnsaved(const ModelId& id) const { return m_drafts.contains(id); }
    QList<ModelId> unsaved() const { return m_drafts.keys(); }

    /// The draft, or what is stored when there is none.
    QVariantMap parameters(const ModelId& id) const;
    /// What the engine runs today; empty for an unknown model.
    QVariantMap stored(const ModelId& id) const;

    /// Replaces the draft; does nothing for a built-in model.
    void edit(const ModelId& id, const QVariantMap& parameters);
    /// Keeps an example of the hole, as of IModelExamples, until the draft is saved, and stores it then; of a model
    /// without a draft at once. It goes with the draft.
    bool attach(const ModelId& id, const QVariantMap& example, QString* error);
    /// Forgets the draft.
    void revert(const ModelId& id);
    /// Stores the draft and forgets it; the next task of the cell uses it. Refused while ParameterRules finds a
    /// problem.
    bool save(const ModelId& id, QString* error);

    /// Stores a new model; see nameProblem() for its name.
    bool add(const ModelId& id, const QVariantMap& parameters, QString* error);
    /// Stores a model's parameters as they stand and its examples under another name.
    bool copy(const ModelId& id, const QString& name, QString* error);
    /// Stores the model under another name and removes the old one; draft and examples go along.
    bool rename(const ModelId& id, const QString& name, QString* error);
    /// Removes the model and its draft. There is no way back.
    bool remove(const ModelId& id, QString* error);
    /// Adds a solution without models of its own.
    bool addSolution(const QString& solution, QString* error);

    /// Parameters for a new model: those of the solution's first built-in model, not taught.
    QVariantMap freshParameters(const QString& solution) const;
    /// Why a solution cannot have a new model of this name; empty when it can.
    QString nameProblem(const QString& solution, const QString& name) const;

signals:
    /// A model's parameters or its unsaved state changed.
    void changed(const ModelId& id);
    /// Models or solutions were added, renamed or removed.
    void listChanged();

private:
    bool storeAs(const ModelId& id, const QString& name, const QVariantMap& parameters, QString* error);

    ISolutionStore* m_store;
    ExampleStore* m_examples;
    QMap<ModelId, QVariantMap> m_drafts;
    QMap<ModelId, QVariantMap> m_attached; ///< examples that wait for their draft to be saved
};
