#pragma once

#include "batch/BatchRunner.h"
#include "model/ModelId.h"

#include <valvecell/IModelExamples.h>

#include <QSortFilterProxyModel>
#include <QWidget>

#include <memory>

class BatchTable;
class ExampleStore;
class IEngine;
class ModelDrafts;

namespace Ui {
class BatchPanel;
}

/// Shows the rows worth a look, or all.
class NotableRows : public QSortFilterProxyModel
{
    Q_OBJECT

public:
    using QSortFilterProxyModel::QSortFilterProxyModel;
    void setOnlyNotable(bool only);

protected:
    bool filterAcceptsRow(int row, const QModelIndex& parent) const override;

private:
    bool m_only = false;
};

/// Runs a folder of images, or a day of the archive, with the stored model and, side by side, with the edited
/// parameters or another model; as a table and as a file.
class BatchPanel : public QWidget
{
    Q_OBJECT

public:
    /// All outlive the panel.
    BatchPanel(IEngine* engine, ModelDrafts* drafts, ExampleStore* examples, QWidget* parent = nullptr);
    ~BatchPanel() override;

    /// The model whose stored parameters are run. A run under way goes on with what it began with.
    void setModel(const ModelId& id);

public slots:
    /// All images in it and below it are run.
    void setFolder(const QString& folder);
    /// Ends a run that is under way; its rows stay.
    void stop();
    /// Writes the rows as they are filtered and sorted; done() or failed() follows.
    void exportTo(const QString& path);

signals:
    void failed(const QString& message);
    void done(const QString& message);
    /// A row was double-clicked.
    void imageWanted(const QString& path);

protected:
    void showEvent(QShowEvent* event) override;

private:
    enum class Against { Nothing, Draft, Model };

    void connectAll();
    void setUpTable();
    void chooseFolder();
    void chooseExport();
    /// The days of the archive, latest first; hidden when there are none.
    void listDays();
    /// What the stored parameters can be compared with.
    void listOpponents();
    void addOpponent(const QString& text, Against kind, const QString& model = {});
    Against against() const;
    Recipe storedRecipe(const ModelId& id) const;
    BatchRunner::Plan plan() const;
    void toggle();
    void start();
    void takeRow(const BatchRow& row);
    void fitColumns();
    void finish();
    void updateState();
    /// Lets a person judge the row that is chosen.
    void review();
    void learn(IModelExamples::Kind kind);

    ModelDrafts* m_drafts;
    ExampleStore* m_examples;
    std::unique_ptr<Ui::BatchPanel> m_ui;
    TaskRunner* m_runner;
    BatchRunner* m_batch;
    BatchTable* m_table;
    NotableRows* m_rows;
    ModelId m_id;
    ModelId m_ran; ///< whose rows the table holds
    QString m_folder;
    Background m_background{Background::AtEnd::Wait};
};
