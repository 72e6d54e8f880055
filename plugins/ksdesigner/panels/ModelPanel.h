#pragma once

#include "model/ModelId.h"

#include <QWidget>

#include <functional>
#include <memory>

class ITaskList;
class ModelDrafts;

namespace Ui {
class ModelPanel;
}

/// Lists solutions and their models, and adds, copies, renames and removes models. Built-in models carry a mark, models
/// with unsaved changes another.
class ModelPanel : public QWidget
{
    Q_OBJECT

public:
    /// Both outlive the panel.
    ModelPanel(ITaskList* solutions, ModelDrafts* drafts, QWidget* parent = nullptr);
    ~ModelPanel() override;

    /// The chosen model; its model name is empty when the solution has none.
    ModelId current() const;
    /// Does nothing for an unknown model.
    void select(const ModelId& id);

public slots:
    /// Reads the lists anew, keeping the choice where it still exists.
    void refresh();

signals:
    /// Also when the same model was read anew. Null when the solution has no model or there is no solution.
    void modelChosen(const ModelId& id);
    /// The store refused a change; the reason is in the text.
    void failed(const QString& message);
    /// A change was stored.
    void done(const QString& message);

private:
    void connectAll();
    void refreshModels(const QString& wanted);
    void showModel(int row);
    void showCurrent();
    void updateMarks();
    using Store = std::function<bool(const QString& name, QString* error)>;
    /// Asks for a name and stores a model under it.
    void askNewModel(const QString& question, const QString& proposal, const Store& store);
    void askRename();
    void askRemove();
    void askSolution();
    void report(bool succeeded, const QString& message, const QString& error);
    /// The stem, with a number behind it when it is taken.
    QString freeName(const QString& stem) const;

    ITaskList* m_solutions;
    ModelDrafts* m_drafts;
    std::unique_ptr<Ui::ModelPanel> m_ui;
    ModelId m_shown;
};
