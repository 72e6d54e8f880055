#pragma once

#include "common/AuditChange.h"
#include "dialogs/models/ModelActions.h"
#include "dialogs/models/QModelEditUI.h"

#include <QDialog>

#include <memory>

class ModelView;
class QFileDialog;

namespace Ui {
class QModelMangerUI;
}

/// The model manager: the list of models, and what is done with them. Each change is asked for or confirmed inside the
/// dialog and then stored at once; the list follows the changes of others. GUI thread.
class QModelMangerUI : public QDialog
{
    Q_OBJECT

public:
    /// Both outlive the dialog; `engine` may be null: then models have no parameters to copy or export.
    QModelMangerUI(ModelManager& models, IEngine* engine, QWidget* parent = nullptr);
    ~QModelMangerUI() override;

signals:
    /// What was changed and stored. Names: "model/NAME" for a new, removed or renamed model, "model/NAME/plcIndex" and
    /// "model/NAME/calibrated".
    void modelsChanged(const AuditChanges& changes);
    /// The PLC index table is to be shown.
    void indexTableWanted();
    /// The guide through the teaching of a model is to be opened: of a new one, or of that name.
    void teachingWanted(const QString& name);
    /// The library with what each model did is to be opened.
    void libraryWanted();

protected:
    void changeEvent(QEvent* event) override;

private:
    void connectAll();
    void refresh();
    void showChosen();
    QString chosen() const;
    void choose(const QString& name);

    void add();
    void modify();
    void copy();
    void askRemove();
    void remove(const QString& name, bool withParameters);
    void askImport();
    void import(const QString& path);
    void askExport();
    void exportTo(const QString& path, const QString& name);

    void begin(QModelEditUI::Task task);
    QString saved(const QString& name) const;
    void done(const QString& name, const QString& text);
    void fail(const QString& text);
    QString overwritten(const QString& name, const QStringList& solutions) const;
    QFileDialog* askFile(const QString& title);

    std::unique_ptr<Ui::QModelMangerUI> m_ui;
    ModelManager& m_models;
    ModelActions m_actions;
    ModelView* m_view;
    QModelEditUI* m_edit;
};
